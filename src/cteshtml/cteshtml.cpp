// cteshtml.cpp: the unit-model table, the resolution of a unit's type text, the reading of
// a unit's address out of its file name, and the LED cells of the status rows.
#include "cteshtml/cteshtml.h"

#include "utils/utils.h"

#include <cstdio>
#include <cstdlib>

// clang-format off
const CTESHTML_TipoEncoder TiposEncoder[CTESHTML_NUMTIPOSENCODER] = {
    //  code    description                   ch  video cap  param opt fam
    {710101, " - Enc 2 CMP",                   2,  7,   1,   382,  0,  0},
    {710102, " - Enc 2 CMP EAS",               2,  7,   1,   382,  2,  0},
    {710103, " - Enc 4 CVBS",                  4,  1,   4,   0,    0,  0},
    {710104, " - Enc 4 CVBS EAS",              4,  1,   4,   0,    2,  0},
    {710105, " - Enc 2 CMP+HDMI",              2,  15,  3,   382,  0,  0},
    {710106, " - Enc 2 CMP+HDMI EAS",          2,  15,  3,   382,  2,  0},
    {710107, "IP TEST UNIT A",                 2,  15,  3,   382,  1,  0},
    {710201, " - Enc 4 CVBS",                  4,  1,   4,   0,    0,  1},
    {710202, " - Enc 2 CVBS",                  2,  1,   4,   0,    0,  1},
    {710203, " - Enc 2 CMP+HDMI",              2,  15,  7,   382,  0,  1},
    {710204, " - Enc 4 CVBS",                  4,  1,   4,   0,    1,  1},
    {710205, " - Enc 2 CMP+HDMI+IP",           2,  15,  7,   382,  1,  1},
    {710301, " - Enc 2 CMP+HDMI",              2,  15,  7,   382,  0,  2},
    {710302, " - Enc 4 CVBS",                  4,  1,   4,   0,    0,  2},
    {710303, "IP TEST UNIT B",                 2,  15,  7,   382,  1,  2},
    {710401, "ENC 2 HDMI DUAL",                2,  15,  7,   382,  0,  3},
    {710402, "ENC 4 SD DUAL",                  4,  1,   4,   0,    0,  3},
    {710206, " - Enc 1 HDMI",                  1,  9,   7,   382,  0,  1},
    {710108, " - Enc 2 CMP+HDMI+IP",           2,  15,  3,   382,  1,  0},
    {710109, " - Enc 2 CMP+HDMI+IP EAS",       2,  15,  3,   382,  3,  0},
    {65535,  "DUMMY",                          2,  1,   4,   0,    0,  4},
    {0,      "UNKNOWN",                        2,  1,   4,   0,    0,  5},
};
// clang-format on

uint32_t CTESHTML_Obtienetipounidad(char *modelo, uint8_t *canales, int *opciones, int *entradasVideo,
                                    int *capacidades, int *familia, int *parametro)
{
    const uint32_t codigo = modelo != nullptr ? static_cast<uint32_t>(std::strtoul(modelo, nullptr, 10)) : 0;

    // Every row but the last is searched; a code that none of them has is the unknown model.
    const CTESHTML_TipoEncoder *tipo = &TiposEncoder[CTESHTML_NUMTIPOSENCODER - 1];
    for (std::size_t i = 0; i + 1 < CTESHTML_NUMTIPOSENCODER; ++i) {
        if (TiposEncoder[i].codigo == codigo) {
            tipo = &TiposEncoder[i];
            break;
        }
    }

    if (modelo != nullptr)
        std::snprintf(modelo, CTESHTML_TAMMODELO, "%u %.*s", codigo, static_cast<int>(sizeof tipo->descripcion),
                      tipo->descripcion);
    if (canales != nullptr)
        *canales = tipo->canales;
    if (opciones != nullptr)
        *opciones = tipo->opciones;
    if (entradasVideo != nullptr)
        *entradasVideo = tipo->entradasVideo;
    if (capacidades != nullptr)
        *capacidades = tipo->capacidades;
    if (familia != nullptr)
        *familia = tipo->familia;
    if (parametro != nullptr)
        *parametro = tipo->parametro;
    return codigo;
}

int CTESHTML_MiraIP(const char *texto, uint8_t *a, uint8_t *b, uint8_t *c, uint8_t *d)
{
    if (a == nullptr || b == nullptr || c == nullptr || d == nullptr)
        return 0;
    uint8_t *const octetos[4] = {a, b, c, d};
    for (uint8_t *octeto : octetos)
        *octeto = 0;
    if (texto == nullptr)
        return 0;

    int resultado = 0;
    int actual = 0;   // octet being read, 0..3
    int digitos = 0;  // digits read into it
    for (const char *p = texto; *p != '\0'; ++p) {
        if (*p >= '0' && *p <= '9') {
            *octetos[actual] = static_cast<uint8_t>(*octetos[actual] * 10 + (*p - '0'));
            if (++digitos > 3)
                resultado = 255;
            continue;
        }
        // The address ends with its fourth octet: whatever follows in the file name (".xml",
        // a copy number) is not part of it.
        if (actual == 3 && digitos >= 3)
            break;
        if (*p == '.') {
            if (++actual == 4)
                break;
            digitos = 0;
        }
    }
    return resultado;
}

int CTESHTML_CompruebaEspacios(const char *texto)
{
    if (texto == nullptr)
        return 2;
    for (const char *p = texto; *p != '\0'; ++p)
        if (*p != ' ')
            return 0;
    return 1;
}

std::string CTESHTML_CeldaLed(unsigned long palabraLeds, int led)
{
    static const char(*const TextosPorLed[CTESHTML_NUMLEDS])[10] = {
        TextosLED1, TextosLED2, TextosLED3, TextosLED4, TextosLED5, TextosLED6, TextosLED7, TextosLED8,
    };
    if (led < 1 || led > CTESHTML_NUMLEDS)
        return {};
    unsigned estado = static_cast<unsigned>((palabraLeds >> (4 * (led - 1))) & 0xFu);
    if (estado >= CTESHTML_NUMESTADOSLED)
        estado = 0;
    std::string leyenda = "<br>";
    leyenda += TextosPorLed[led - 1][estado];
    return UTILS_Formatea(htmlled, ImagenesLed[estado], TextosAltLeds[led - 1], leyenda.c_str());
}
