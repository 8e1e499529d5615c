// The channel plans, built at compile time from runs of labels, and the select builders of
// the output pages.
#include "SalidaComun/TablasCanales.h"

#include <cstdlib>
#include <initializer_list>
#include <stdexcept>

namespace {

// A run of channel labels: prefix, then each number primero..ultimo printed with `ancho`
// digits (leading zeros), then suffix. "C02 ".."C04 " is {"C", 2, 4, 2, " "}, " 0  ".." 5  "
// is {" ", 0, 5, 1, "  "}, "100 ".."158 " is {"", 100, 158, 3, " "}. A single label written
// out (" A  ", "10 o", "E05 ") is a run of one label without a number.
struct Tramo {
    const char *prefijo;
    int primero;
    int ultimo;
    int ancho;
    const char *sufijo;

    constexpr Tramo(const char *prefijo_, int primero_, int ultimo_, int ancho_, const char *sufijo_)
        : prefijo(prefijo_), primero(primero_), ultimo(ultimo_), ancho(ancho_), sufijo(sufijo_)
    {
    }
    constexpr Tramo(const char *etiqueta) : prefijo(etiqueta), primero(0), ultimo(0), ancho(0), sufijo("") {}
};

// Stops the build of the program when a plan row is malformed (only ever evaluated while the
// table is being compiled).
constexpr void Exige(bool correcto, const char *motivo)
{
    if (!correcto)
        throw std::logic_error(motivo);
}

constexpr void AnadeTexto(char (&etiqueta)[COFDM_TAMETIQUETACANAL], std::size_t &pos, const char *texto)
{
    for (; *texto != '\0'; ++texto) {
        Exige(pos < COFDM_TAMETIQUETACANAL - 1, "a channel label has more than 4 characters");
        etiqueta[pos++] = *texto;
    }
}

constexpr void AnadeNumero(char (&etiqueta)[COFDM_TAMETIQUETACANAL], std::size_t &pos, int numero, int ancho)
{
    int limite = 1;
    for (int d = 0; d < ancho; ++d)
        limite *= 10;
    Exige(numero >= 0 && numero < limite, "a channel number does not fit its width");
    for (int d = ancho - 1; d >= 0; --d) {
        int divisor = 1;
        for (int e = 0; e < d; ++e)
            divisor *= 10;
        Exige(pos < COFDM_TAMETIQUETACANAL - 1, "a channel label has more than 4 characters");
        etiqueta[pos++] = static_cast<char>('0' + (numero / divisor) % 10);
    }
}

// One plan record from its name, its channel count and its label runs in order. The count
// is written out in each row and must equal the number of labels the runs give; every label
// must be exactly 4 characters. Slots beyond the count stay zero.
constexpr COFDM_TablaCanales Plan(const char *nombre, int numCanales, std::initializer_list<Tramo> tramos)
{
    COFDM_TablaCanales tabla{};
    std::size_t largo = 0;
    for (; nombre[largo] != '\0'; ++largo) {
        Exige(largo < COFDM_TAMNOMBRETABLA - 1, "a plan name has more than 19 characters");
        tabla.nombre[largo] = nombre[largo];
    }
    int canal = 0;
    for (const Tramo &tramo : tramos) {
        Exige(tramo.primero <= tramo.ultimo, "a run of channels is empty");
        for (int numero = tramo.primero; numero <= tramo.ultimo; ++numero) {
            Exige(canal < COFDM_MAXCANALESTABLA, "a plan has more than 160 channels");
            std::size_t pos = 0;
            AnadeTexto(tabla.etiquetas[canal], pos, tramo.prefijo);
            AnadeNumero(tabla.etiquetas[canal], pos, numero, tramo.ancho);
            AnadeTexto(tabla.etiquetas[canal], pos, tramo.sufijo);
            Exige(pos == COFDM_TAMETIQUETACANAL - 1, "a channel label has fewer than 4 characters");
            ++canal;
        }
    }
    Exige(canal == numCanales, "a plan's label runs do not give its channel count");
    tabla.numCanales = static_cast<uint8_t>(canal);
    return tabla;
}

}  // namespace

// One row per plan: name, channel count, label runs in the plan's order. The orders are the
// plans' own and are kept as they are: the Italian letter channels around the S band, the
// Polish alternation of E and K channels, the Australian "10 o"/"11 o" beside " 10 "/" 11 ",
// and the CATV plan's order by ascending frequency in the cable band (2..6, 95..99, 14..22,
// 7..13, 23..94, 100..158).
constexpr COFDM_TablaCanales COFDM_TablasdeCanales[COFDM_NUMTABLASCANALES] = {
    Plan("FREQUENCY", 0, {}),
    Plan("CCIR N.Z.Ind", 104,
         {{"C", 2, 4, 2, " "}, {"L", 1, 3, 2, " "}, {"S", 1, 10, 2, " "}, {"C", 5, 12, 2, " "},
          {"S", 11, 41, 2, " "}, {"C", 21, 69, 2, " "}}),
    Plan("China Taiwan", 61, {{" ", 1, 12, 2, " "}, {"C", 21, 69, 2, " "}}),
    Plan("Chile M/N", 61, {{" ", 2, 13, 2, " "}, {" ", 21, 69, 2, " "}}),
    Plan("Italy", 100,
         {" A  ", " B  ", " C  ", {"S", 1, 10, 2, " "}, " D  ", " E  ", " F  ", " G  ", " H  ", " H1 ", " H2 ",
          {"S", 11, 41, 2, " "}, {"C", 21, 69, 2, " "}}),
    Plan("France", 96, {{"S", 1, 10, 2, " "}, {"L", 5, 10, 2, " "}, {"S", 11, 41, 2, " "}, {"C", 21, 69, 2, " "}}),
    Plan("Russia(OIR)", 99,
         {{"R", 1, 5, 2, " "}, {"S", 1, 8, 2, " "}, {"R", 6, 12, 2, " "}, {"S", 11, 40, 2, " "},
          {"C", 21, 69, 2, " "}}),
    Plan("Ireland", 59, {{" ", 1, 3, 2, " "}, {" ", 5, 11, 2, " "}, {"C", 21, 69, 2, " "}}),
    Plan("South Africa", 59, {{" ", 4, 13, 2, " "}, {"C", 21, 69, 2, " "}}),
    Plan("Poland", 102,
         {{"S", 1, 8, 2, " "}, "E05 ", "K06 ", "E06 ", "K07 ", "E07 ", "K08 ", "E08 ", "K09 ", "E09 ", "K10 ",
          "E10 ", "K11 ", "E11 ", "K12 ", "E12 ", {"S", 9, 38, 2, " "}, {"C", 21, 69, 2, " "}}),
    Plan("Australia", 116,
         {{" ", 0, 5, 1, "  "}, {"S", 2, 5, 2, " "}, " 5A ", {"S", 6, 10, 2, " "}, {" ", 6, 9, 1, "  "}, " 9A ",
          "10 o", " 10 ", "11 o", " 11 ", " 12 ", {"S", 11, 45, 2, " "}, {"H", 21, 75, 2, " "}}),
    Plan("CATV", 157,
         {{" ", 2, 6, 2, " "}, {" ", 95, 99, 2, " "}, {" ", 14, 22, 2, " "}, {" ", 7, 13, 2, " "},
          {" ", 23, 94, 2, " "}, {"", 100, 158, 3, " "}}),
    Plan("Broadcast", 68, {{" ", 2, 69, 2, " "}}),
    Plan("T-Channels", 8, {{"T", 7, 14, 2, " "}}),
    Plan("Terrestrial", 68, {{" ", 2, 69, 2, " "}}),
};

namespace {

bool PlanValido(int plan)
{
    return plan >= 0 && plan < COFDM_NUMTABLASCANALES;
}

}  // namespace

int COFDM_CanalSeleccionado(int plan, std::string_view canalGuardado)
{
    if (!PlanValido(plan))
        return 0;
    const std::string texto(canalGuardado);
    const long canal = std::strtol(texto.c_str(), nullptr, 10);
    return canal >= 0 && canal < COFDM_TablasdeCanales[plan].numCanales ? static_cast<int>(canal) : 0;
}

std::vector<CTESHTML_Opcion> COFDM_OpcionesCanales(int plan)
{
    if (!PlanValido(plan) || COFDM_TablasdeCanales[plan].numCanales == 0)
        return {};
    const COFDM_TablaCanales &tabla = COFDM_TablasdeCanales[plan];
    return CTESHTML_OpcionesEtiquetas(tabla.etiquetas, 0, tabla.numCanales - 1u);
}

std::string COFDM_SelectCanales(std::string_view nombre, std::string_view id, std::string_view atributos, int plan,
                                std::string_view canalGuardado)
{
    return CTESHTML_SelectBox(nombre, id, atributos, COFDM_OpcionesCanales(plan),
                              std::to_string(COFDM_CanalSeleccionado(plan, canalGuardado)));
}

CTESHTML_Opcion COFDM_OpcionTabla(int plan)
{
    if (!PlanValido(plan))
        return {};
    return {std::to_string(plan), CTESHTMLINT_TextoRanura(COFDM_TablasdeCanales[plan].nombre, COFDM_TAMNOMBRETABLA)};
}
