// genera_tablas: writes the browser's copy of the output pages' tables (www/js/tablas.js).
//
// The page script repaints an output row when the operator changes its channel table or its
// modulation; it must paint what the CGI paints for that table or mode. So the data (channel
// plans, mode and step tables) and the cell fragments come from the same C++ tables and
// builders the CGI uses, never typed again in JavaScript. A fragment carries the marker
// "@N@" where the row's control name goes and "@V@" where its (escaped) value goes.
//
//   genera_tablas <output file>
#include "SalidaCOFDM/SalidaCOFDM_int.h"
#include "SalidaComun/TablasCanales.h"
#include "SalidaComun/SalidaComun.h"
#include "SalidaCODFMQAMB/SalidaCODFMQAMB_int.h"
#include "SalidaISDBT/SalidaISDBT_int.h"
#include "SalidaQAM/SalidaQAM_int.h"
#include "cteshtml/cteshtml.h"
#include "utils/utils.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr char NOMBRE[] = "@N@";
constexpr char VALOR[] = "@V@";

std::string Json(std::string_view texto)
{
    std::string salida = "\"";
    for (const char c : texto) {
        const auto u = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\')
            salida += {'\\', c};
        else if (c == '\n')
            salida += "\\n";
        else if (u < 0x20)
            salida += UTILS_Formatea("\\u%04x", u);
        else if (c == '<')  // never "</script>" inside the file
            salida += "\\u003c";
        else
            salida += c;
    }
    return salida + "\"";
}

std::string JsonOpciones(const std::vector<CTESHTML_Opcion> &opciones)
{
    std::string salida = "[";
    for (std::size_t i = 0; i < opciones.size(); ++i)
        salida += (i ? "," : "") + std::string("[") + Json(opciones[i].valor) + "," + Json(opciones[i].texto) + "]";
    return salida + "]";
}

std::string JsonTabla(std::span<const SALCOMUN_Opcion> tabla)
{
    return JsonOpciones(SALCOMUN_Opciones(tabla));
}

// A row context with no suffix: the fragments get the name marker as their whole name.
SALCOMUN_Fila FilaModelo()
{
    return SALCOMUN_PreparaFila(nullptr, 0, "", false);
}

// A field the unit's mode or plan does not use: the value carried hidden, "n/a" shown.
std::string NoAplicable(std::string_view valor)
{
    return SALCOMUN_NoAplicable(NOMBRE, valor);
}

// --- QAM output row ---------------------------------------------------------

std::string WidgetCanalQAM(const SALQAM_WidgetCanal &widget)
{
    const SALCOMUN_Fila fila = FilaModelo();
    switch (widget.clase) {
    case SALQAM_CanalSelect:
        return SALCOMUN_CampoSelect(fila, NOMBRE, strJSOnBlurOnChangeCompruebacambios,
                                    SALCOMUN_Opciones(SALQAM_CanalesT), VALOR);
    case SALQAM_CanalFrecuencia: {
        const std::string alSalir = UTILS_Formatea(strJSvalidaFrecuencia, widget.minimo, widget.maximo, "Channel");
        return CTESHTML_Input(widget.plantilla, NOMBRE, widget.tam, NOMBRE, strJSPermitirreales, alSalir,
                              strJSOnBlurOnChangeCompruebacambios, VALOR, widget.maxLongitud) +
               fila.Anterior(NOMBRE, VALOR);
    }
    case SALQAM_CanalEntero:
    default:
        return SALCOMUN_CampoEntero(fila, widget.plantilla, NOMBRE, widget.tam, widget.maxLongitud, widget.minimo,
                                    widget.maximo, VALOR);
    }
}

std::string TablasQAM()
{
    std::string salida = "{\n  \"tablas\": " + JsonTabla(SALQAM_TablasCanales) +
                         ",\n  \"modos\": " + JsonTabla(SALQAM_ModosSalida) +
                         ",\n  \"canalesT\": " + JsonTabla(SALQAM_CanalesT) +
                         ",\n  \"corteFrecuenciaEntera\": " + std::to_string(SALQAM_CorteFrecuenciaEntera) +
                         ",\n  \"widgetsCanal\": [";
    bool primero = true;
    for (const SALQAM_WidgetCanal &widget : SALQAM_WidgetsCanal) {
        const char *clase = widget.clase == SALQAM_CanalSelect       ? "select"
                            : widget.clase == SALQAM_CanalFrecuencia ? "frecuencia"
                                                                     : "entero";
        salida += std::string(primero ? "" : ",") + "\n    {\"tabla\": " + std::to_string(widget.tabla) +
                  ", \"clase\": " + Json(clase) + ", \"corte\": " + std::to_string(widget.corte) +
                  ", \"html\": " + Json(WidgetCanalQAM(widget)) + "}";
        primero = false;
    }
    salida += "\n  ],\n  \"rangosMayor\": [";
    primero = true;
    for (const SALQAM_RangoMayor &rango : SALQAM_RangosMayor) {
        salida += std::string(primero ? "" : ",") + "\n    {\"tipo\": " + Json(rango.tipo) +
                  ", \"minimo\": " + std::to_string(rango.minimo) + ", \"maximo\": " + std::to_string(rango.maximo) +
                  ", \"unaParte\": " + (rango.unaParte ? "true" : "false") + "}";
        primero = false;
    }
    return salida + "\n  ]\n}";
}

// --- COFDM output row -------------------------------------------------------

std::string PlanesCOFDM()
{
    std::string salida = "[";
    for (int plan = 0; plan < COFDM_NUMTABLASCANALES; ++plan) {
        const COFDM_TablaCanales &tabla = COFDM_TablasdeCanales[plan];
        const CTESHTML_Opcion opcion = COFDM_OpcionTabla(plan);
        salida += std::string(plan ? "," : "") + "\n    {\"plan\": " + std::to_string(plan) +
                  ", \"nombre\": " + Json(opcion.texto) + ", \"etiquetas\": [";
        for (int k = 0; k < tabla.numCanales; ++k)
            salida += (k ? "," : "") + Json(std::string_view(tabla.etiquetas[k], ::strnlen(tabla.etiquetas[k],
                                                                                          COFDM_TAMETIQUETACANAL)));
        salida += "]}";
    }
    return salida + "\n  ]";
}

std::string CanalesCOFDM()
{
    const SALCOMUN_Fila fila = FilaModelo();
    std::string salida = "[";
    for (int plan = 0; plan < COFDM_NUMTABLASCANALES; ++plan) {
        // Plan 0: the whole megahertz typed in; a plan: its channel select, the position as twin.
        const std::string html =
            plan == 0 ? SALCOMUN_CampoEntero(fila, htmlinput3digitos, NOMBRE, 3, 3, SALCOMUN_FrecuenciaMinima,
                                             SALCOMUN_FrecuenciaMaxima, VALOR)
                      : COFDM_SelectCanales(NOMBRE, NOMBRE, strJSOnBlurOnChangeCompruebacambios, plan, "") +
                            fila.Anterior(NOMBRE, VALOR);
        salida += std::string(plan ? "," : "") + "\n    " + Json(html);
    }
    return salida + "\n  ]";
}

// One OFDM-only setting: its div, its field as an OFDM mode paints it, and as a QAM mode does.
std::string CampoOFDM(const char *base, const char *div, const std::string &html)
{
    return std::string("\n    {\"base\": ") + Json(base) + ", \"div\": " + Json(div) + ", \"ofdm\": " + Json(html) +
           ", \"qam\": " + Json(NoAplicable(VALOR)) + "}";
}

std::string TablasCOFDM()
{
    const SALCOMUN_Fila fila = FilaModelo();
    const auto select = [&](std::span<const SALCOMUN_Opcion> opciones) {
        return SALCOMUN_CampoSelect(fila, NOMBRE, strJSOnBlurOnChangeCompruebacambios, SALCOMUN_Opciones(opciones),
                                    VALOR);
    };
    const std::string celda = SALCOMUN_CampoHexa(fila, NOMBRE, 0, VALOR);
    std::vector<CTESHTML_Opcion> modos =
        CTESHTML_OpcionesTablas(ModosSalidaCOFDM, ValoresModosSalidaCOFDM, COFDM_NUMMODOSSALIDA);
    return "{\n  \"planes\": " + PlanesCOFDM() +
           ",\n  \"planesOfrecidos\": " + std::to_string(SALCOFDM_PlanesOfrecidos) +
           ",\n  \"modos\": " + JsonOpciones(modos) +
           ",\n  \"ultimoModoOFDM\": " + std::to_string(SALCOFDM_UltimoModoOFDM) +
           ",\n  \"primerModoQAM\": " + std::to_string(SALCOFDM_PrimerModoQAM) +
           ",\n  \"ultimoModoQAM\": " + std::to_string(SALCOFDM_UltimoModoQAM) +
           ",\n  \"pasos\": " + JsonOpciones(CTESHTML_OpcionesEtiquetas(FrecuencyStepCOFDM, 0, COFDM_NUMPASOSFRECUENCIA - 1)) +
           ",\n  \"primerPasoFueraQAM\": " + std::to_string(SALCOMUN_PrimerPasoFueraQAM) +
           ",\n  \"canales\": " + CanalesCOFDM() +
           ",\n  \"pasoConPlan\": " + Json(NoAplicable(SALCOMUN_PasoConPlan)) +
           ",\n  \"pasoOFDM\": " +
           Json(SALCOMUN_CampoSelect(fila, NOMBRE, strJSOnBlurOnChangeCompruebacambios,
                                     SALCOMUN_OpcionesPaso(false), VALOR)) +
           ",\n  \"pasoQAM\": " +
           Json(SALCOMUN_CampoSelect(fila, NOMBRE, strJSOnBlurOnChangeCompruebacambios, SALCOMUN_OpcionesPaso(true), VALOR)) +
           ",\n  \"camposOFDM\": [" + CampoOFDM("bwsal", "divanchobanda", select(SALCOMUN_AnchosBanda)) + "," +
           CampoOFDM("ingrd", "divintguarda", select(SALCOMUN_IntervalosGuarda)) + "," +
           CampoOFDM("fecsal", "divfecsal", select(SALCOMUN_FECs)) + "," + CampoOFDM("cellid", "divcellid", celda) +
           "\n  ]\n}";
}

// --- ISDB-T output row ------------------------------------------------------

std::string TablasISDBT()
{
    const SALCOMUN_Fila fila = FilaModelo();
    const auto select = [&](const std::vector<CTESHTML_Opcion> &opciones) {
        return SALCOMUN_CampoSelect(fila, NOMBRE, strJSOnBlurOnChangeCompruebacambios, opciones, VALOR);
    };
    return "{\n  \"planBroadcast\": " + std::to_string(SALISDBT_PlanBroadcast) +
           ",\n  \"ultimoModoISDBT\": " + std::to_string(SALISDBT_UltimoModoISDBT) +
           ",\n  \"ofdmISDBT\": " + JsonOpciones(SALISDBTINT_OpcionesOFDM(true)) +
           ",\n  \"ofdmCOFDM\": " + JsonOpciones(SALISDBTINT_OpcionesOFDM(false)) +
           ",\n  \"pasos\": " + Json(select(SALISDBTINT_OpcionesPaso())) +
           ",\n  \"interleaving\": " +
           Json(select(SALISDBTINT_OpcionesInterleaving())) +
           ",\n  \"noAplicable\": " + Json(NoAplicable(VALOR)) + "\n}";
}

// --- COFDM/QAM-B output row -------------------------------------------------

std::string TablasCOFDMQAMB()
{
    return "{\n  \"tipoUnidad\": " + std::to_string(SALCOFDMQAMB_TipoUnidad) +
           ",\n  \"primerModoQAM\": " + std::to_string(SALCOFDMQAMB_PrimerModoQAM) +
           ",\n  \"planesDVBT\": " + JsonOpciones(SALCOFDMQAMBINT_OpcionesPlan(false)) + ",\n  \"planesAnexoB\": " + JsonOpciones(SALCOFDMQAMBINT_OpcionesPlan(true)) + "\n}";
}

}  // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: genera_tablas <tablas.js>\n");
        return 2;
    }
    const std::string contenido =
        "// tablas.js: written by the build (tools/genera_tablas) from the CGI's own tables; do not edit.\n"
        "'use strict';\n"
        "var TABLAS = {\n\"qam\": " +
        TablasQAM() + ",\n\"cofdm\": " + TablasCOFDM() + ",\n\"isdbt\": " + TablasISDBT() +
        ",\n\"cofdmqamb\": " + TablasCOFDMQAMB() + "\n};\n";
    const std::string temporal = std::string(argv[1]) + ".tmp";
    {
        std::ofstream salida(temporal, std::ios::binary | std::ios::trunc);
        salida << contenido;
        if (!salida.flush()) {
            std::fprintf(stderr, "genera_tablas: cannot write %s\n", temporal.c_str());
            return 1;
        }
    }
    if (std::rename(temporal.c_str(), argv[1]) != 0) {
        std::fprintf(stderr, "genera_tablas: cannot write %s\n", argv[1]);
        return 1;
    }
    return 0;
}
