// SalidaQAM.cpp: the QAM module's page entries and row painters: quick and detailed status,
// transport (service names, ATSC virtual channels, PIDs, service ids, IP-input services)
// and output (channel table and channel, modulation, baud rate, interleaving, level).
#include "SalidaQAM/SalidaQAM.h"
#include "SalidaQAM/SalidaQAM_int.h"

#include "utils/utils.h"
#include "utilsXML/utilsXML.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <type_traits>

// The entries and saves fill the QAM slots of the dispatch tables.
static_assert(std::is_same_v<decltype(&SALQAM_SondeoRapido), SALCOMUN_FuncionPagina>);
static_assert(std::is_same_v<decltype(&SALQAM_SondeoDetallado), SALCOMUN_FuncionPagina>);
static_assert(std::is_same_v<decltype(&SALQAM_GeneraTransporte), SALCOMUN_FuncionPagina>);
static_assert(std::is_same_v<decltype(&SALQAM_GeneraSalida), SALCOMUN_FuncionPagina>);
static_assert(std::is_same_v<decltype(&SALQAM_GrabaTransporte), SALCOMUN_FuncionGrabar>);
static_assert(std::is_same_v<decltype(&SALQAM_GrabaSalida), SALCOMUN_FuncionGrabar>);

namespace {

// Buffer size of the page reads.
constexpr std::size_t TAM_TEXTO = 50;

// Sizes of the QAM transport columns shared with the other families.
constexpr SALCOMUN_MedidasLinea SALQAMINT_Medidas = {7, 5, 4};

// The mode the unit's QAM modulator reads when its value is missing.
constexpr char SALQAMINT_ModoDefecto[] = "0";
constexpr char SALQAMINT_InterleavingDefecto[] = "0";

// Annex A modes ("16A".."1024A") begin with "2" or above; Annex B ("256B", "64B") with 0 or 1.
bool SALQAMINT_EsAnexoA(std::string_view modo)
{
    return !modo.empty() && modo.front() >= '2';
}

std::string SALQAMINT_ModoSalida(xmlDocPtr config)
{
    return UTILSXML_LeeTexto(UTILSXML_LeeSALQAMModoSalida, config, TAM_TEXTO, SALQAMINT_ModoDefecto);
}

// The row of a table type; a type that cannot be read, or is none of the three, is shown as
// "CVCT 1".
const SALQAM_RangoMayor &SALQAMINT_Rango(std::string_view tipo)
{
    for (const SALQAM_RangoMayor &rango : SALQAM_RangosMayor)
        if (tipo == rango.tipo)
            return rango;
    for (const SALQAM_RangoMayor &rango : SALQAM_RangosMayor)
        if (std::string_view(SALQAM_TipoTablaDefecto) == rango.tipo)
            return rango;
    return SALQAM_RangosMayor[0];
}

// The ATSC virtual-channel cells of one line: table type, major and minor number.
struct SALQAMINT_CeldasATSC {
    std::string tipo;
    std::string mayor;
    std::string menor;
};

SALQAMINT_CeldasATSC SALQAMINT_PintaATSC(const SALCOMUN_Fila &fila, int linea, const std::string &tipoLeido,
                                         const std::string &mayor, const std::string &menor, bool anexoA)
{
    const SALQAM_RangoMayor &rango = SALQAMINT_Rango(tipoLeido);
    std::string mayorMostrado = mayor;
    if (rango.unaParte) {
        const unsigned long parteMayor = std::strtoul(mayor.c_str(), nullptr, 10) & 15UL;
        const unsigned long parteMenor = std::strtoul(menor.c_str(), nullptr, 10) & 1023UL;
        mayorMostrado = UTILS_Formatea("%u", static_cast<unsigned>((parteMayor << 10) + parteMenor));
    }
    SALQAMINT_CeldasATSC celdas;
    celdas.tipo = SALCOMUN_CampoSelect(fila, fila.Nombre("autochan", linea), strJSCambiotableTypeQAM,
                                       SALCOMUN_Opciones(SALQAM_TiposTabla), rango.tipo, anexoA);
    celdas.mayor = SALCOMUN_CampoEntero(fila, htmlinput, fila.Nombre("mchn", linea), 5, 5, rango.minimo, rango.maximo,
                                        mayorMostrado, anexoA);
    celdas.menor = SALCOMUN_CampoEntero(fila, htmlinput, fila.Nombre("chnm", linea), 3, 3, 0, 999, menor, anexoA);
    return celdas;
}

// The ten service columns of the transport row, in page order.
enum SALQAMINT_ColumnaTransporte : int {
    COL_NOMBREENTRADA,
    COL_SIDENTRADA,
    COL_NOMBRESALIDA,
    COL_TIPOTABLA,
    COL_MAYOR,
    COL_MENOR,
    COL_TSID,
    COL_PIDVIDEO,
    COL_PIDAUDIO,
    COL_SIDSALIDA,
    COL_NUMCOLUMNAS
};
using SALQAMINT_Columnas = std::array<SALCOMUN_Columna, COL_NUMCOLUMNAS>;

void SALQAMINT_AnadeLinea(SALQAMINT_Columnas &columnas, const SALCOMUN_LineaTransporte &comun,
                          const SALQAMINT_CeldasATSC &atsc)
{
    columnas[COL_NOMBREENTRADA].Linea(comun.nombreEntrada);
    columnas[COL_SIDENTRADA].Linea(comun.sidEntrada);
    columnas[COL_NOMBRESALIDA].Linea(comun.nombreSalida);
    columnas[COL_TIPOTABLA].Linea(atsc.tipo);
    columnas[COL_MAYOR].Linea(atsc.mayor);
    columnas[COL_MENOR].Linea(atsc.menor);
    columnas[COL_PIDVIDEO].Linea(comun.pidVideo);
    columnas[COL_PIDAUDIO].Linea(comun.pidAudio);
    columnas[COL_SIDSALIDA].Linea(comun.sidSalida + comun.ocultos);
}

// The channel widget of the output row for the unit's channel table.
std::string SALQAMINT_WidgetCanal(const SALCOMUN_Fila &fila, long tabla, const std::string &canal)
{
    const SALQAM_WidgetCanal *widget = &SALQAM_WidgetsCanal[0];
    for (const SALQAM_WidgetCanal &candidato : SALQAM_WidgetsCanal)
        if (candidato.tabla == tabla)
            widget = &candidato;
    const std::string nombre = fila.Nombre("outchn");
    switch (widget->clase) {
    case SALQAM_CanalSelect:
        return SALCOMUN_CampoSelect(fila, nombre, strJSOnBlurOnChangeCompruebacambios,
                                    SALCOMUN_Opciones(SALQAM_CanalesT), SALCOMUN_Corta(canal, widget->corte));
    case SALQAM_CanalFrecuencia: {
        const std::string valor = SALCOMUN_Corta(
            canal, SALCOMUN_TieneDecimales(canal) ? widget->corte : SALQAM_CorteFrecuenciaEntera);
        const std::string alSalir = UTILS_Formatea(strJSvalidaFrecuencia, widget->minimo, widget->maximo, "Channel");
        return CTESHTML_Input(widget->plantilla, nombre, widget->tam, nombre, strJSPermitirreales, alSalir,
                              strJSOnBlurOnChangeCompruebacambios, valor, widget->maxLongitud) +
               fila.Anterior(nombre, valor);
    }
    case SALQAM_CanalEntero:
    default:
        return SALCOMUN_CampoEntero(fila, widget->plantilla, nombre, widget->tam, widget->maxLongitud, widget->minimo,
                                    widget->maximo, SALCOMUN_Corta(canal, widget->corte));
    }
}

}  // namespace

// ---------------------------------------------------------------------------
// Row painters
// ---------------------------------------------------------------------------

namespace {
extern const SALCOMUN_Familia SALQAMINT_Familia;
}  // namespace

int SALQAMINT_PintaLineaSondeo(xmlDocPtr status, int esMaster, int configTotal, int detallado, uint8_t canales,
                       const char *modelo, const char *)
{
    return SALCOMUN_PintaLineaSondeo(SALQAMINT_Familia, status, esMaster, configTotal, detallado, canales, modelo);
}

int SALQAMINT_PintaLineaTransporte(xmlDocPtr config, int esMaster, int configTotal, uint8_t canales, int opciones,
                                   const char *modelo, const char *sufijo)
{
    const SALCOMUN_Fila fila = SALCOMUN_PreparaFila(config, esMaster, sufijo, configTotal != 0);
    // ATSC virtual channels exist only in Annex B.
    const bool anexoA = SALQAMINT_EsAnexoA(SALQAMINT_ModoSalida(config));
    const bool haySalidaIP = (opciones & 1) != 0;

    SALQAMINT_Columnas columnas;
    columnas[COL_TSID].Linea(SALCOMUN_CampoEntero(fila, htmlinput, fila.Nombre("tsid"), 5, 5, 1, 65535,
                                                  UTILSXML_LeeTexto(UTILSXML_LeeSALTSTSID, config, TAM_TEXTO)));
    int lineas = 0;
    for (int canal = 1; canal <= canales; ++canal) {
        const auto indice = static_cast<uint8_t>(canal);
        const SALCOMUN_LineaTransporte comun = SALCOMUN_LineaCanal(fila, canal, SALQAMINT_Medidas);
        const SALQAMINT_CeldasATSC atsc = SALQAMINT_PintaATSC(
            fila, canal,
            UTILSXML_LeeTexto(UTILSXML_LeeSALTSCanalTABLETYPECHNUMBER, config, TAM_TEXTO, indice, SALQAM_TipoTablaDefecto),
            UTILSXML_LeeTexto(UTILSXML_LeeSALTSCanalMAJORCHNUMBER, config, TAM_TEXTO, indice),
            UTILSXML_LeeTexto(UTILSXML_LeeSALTSCanalMINORCHNUMBER, config, TAM_TEXTO, indice), anexoA);
        SALQAMINT_AnadeLinea(columnas, comun, atsc);
        ++lineas;
    }
    if (haySalidaIP) {
        // The selected services of the IP inputs follow the channels, numbered on from them.
        for (const SALCOMUN_ServicioIP servicio : SALCOMUN_ServiciosSeleccionados(config)) {
            const int linea = ++lineas;
            const uint8_t i = servicio.entrada;
            const uint8_t j = servicio.servicio;
            const SALCOMUN_LineaTransporte comun = SALCOMUN_LineaServicio(fila, linea, servicio, SALQAMINT_Medidas);
            const SALQAMINT_CeldasATSC atsc = SALQAMINT_PintaATSC(
                fila, linea,
                UTILSXML_LeeTexto(UTILSXML_LeeENTRAIPSERVICETABLETYPE, config, TAM_TEXTO, i, j, SALQAM_TipoTablaDefecto),
                UTILSXML_LeeTexto(UTILSXML_LeeENTRAIPSERVICEMAJOR, config, TAM_TEXTO, i, j),
                UTILSXML_LeeTexto(UTILSXML_LeeENTRAIPSERVICEMINOR, config, TAM_TEXTO, i, j), anexoA);
            SALQAMINT_AnadeLinea(columnas, comun, atsc);
        }
    }
    const std::string totalLineas = std::to_string(lineas);

    if (fila.configTotal) {
        // The advanced page carries "numcanales", "tipounidad" and "haysalidaip" itself; the
        // line count goes with the lines so that their IP services can be stored.
        columnas[COL_SIDSALIDA].html += SALCOMUN_Oculto(fila, "ntotserv", totalLineas);
        UTILS_Imprime(UTILS_Formatea(
            htmlConfigTotalTransportConfigQAM, columnas[0].html.c_str(), columnas[1].html.c_str(),
            columnas[2].html.c_str(), columnas[3].html.c_str(), columnas[4].html.c_str(), columnas[5].html.c_str(),
            columnas[6].html.c_str(), columnas[7].html.c_str(), columnas[8].html.c_str(), columnas[9].html.c_str()));
        return 0;
    }

    const std::string ocultos = SALCOMUN_OcultosUnidad(fila, canales, SALQAM_TipoUnidad) +
                                SALCOMUN_Oculto(fila, "haysalidaip", haySalidaIP ? "1" : "0") +
                                SALCOMUN_Oculto(fila, "ntotserv", totalLineas);
    const SALCOMUN_CeldasUnidad unidad = SALCOMUN_CeldasConfig(fila, modelo);
    const std::string forzar = fila.Nombre("forzarconfig");
    UTILS_Imprime(UTILS_Formatea(
        htmlinfotransporteQAM, unidad.orden.c_str(), unidad.modelo.c_str(), columnas[0].html.c_str(), columnas[1].html.c_str(),
        columnas[2].html.c_str(), columnas[3].html.c_str(), columnas[4].html.c_str(), columnas[5].html.c_str(),
        columnas[6].html.c_str(), columnas[7].html.c_str(), columnas[8].html.c_str(), columnas[9].html.c_str(),
        forzar.c_str(), forzar.c_str(), SALCOMUN_MarcaForzar(config), ocultos.c_str()));
    return 0;
}

int SALQAMINT_PintaLineaSalida(xmlDocPtr config, int esMaster, int configTotal, uint8_t canales, const char *modelo,
                               const char *sufijo)
{
    const SALCOMUN_Fila fila = SALCOMUN_PreparaFila(config, esMaster, sufijo, configTotal != 0);

    const std::string tabla = UTILSXML_LeeTexto(UTILSXML_LeeSALQAMTabla, config, TAM_TEXTO);
    const std::string celdaTabla = SALCOMUN_CampoSelect(fila, fila.Nombre("outtab"), strJSCambioTablacanalsalidaQAM,
                                                        SALCOMUN_Opciones(SALQAM_TablasCanales), tabla);
    // The browser swaps the channel widget when the table changes, by the div's id.
    const std::string celdaCanal = CTESHTML_Div(
        "div" + fila.sufijo,
        SALQAMINT_WidgetCanal(fila, UTILS_Numero(tabla), UTILSXML_LeeTexto(UTILSXML_LeeSALQAMFrecoCanal, config, TAM_TEXTO)));

    const std::string modo = SALQAMINT_ModoSalida(config);
    const bool anexoA = SALQAMINT_EsAnexoA(modo);
    const std::string celdaModo = SALCOMUN_CampoSelect(fila, fila.Nombre("outmod"), strJSCambioModoQAM,
                                                       SALCOMUN_Opciones(SALQAM_ModosSalida), modo);

    // The baud rate is chosen only in Annex A; Annex B fixes it by the mode.
    const std::string baudios = UTILSXML_LeeTexto(UTILSXML_LeeSALQAMBaudrate, config, TAM_TEXTO);
    const std::string valorBaudios = SALCOMUN_Corta(baudios, SALCOMUN_TieneDecimales(baudios) ? 5 : 1);
    const std::string nombreBaudios = fila.Nombre("outbau");
    const std::string celdaBaudios =
        CTESHTML_Input(htmlinput, nombreBaudios, 5, nombreBaudios, strJSPermitirreales,
                       UTILS_Formatea(strJSvalidaEntDecimales, "1", "7.2", 4),
                       std::string(strJSOnBlurOnChangeCompruebacambios) + (anexoA ? "" : " disabled"), valorBaudios, 5) +
        fila.Anterior(nombreBaudios, valorBaudios);

    const std::string celdaSalida = SALCOMUN_CampoSelect(
        fila, fila.Nombre("outout"), strJSOnBlurOnChangeCompruebacambios, SALCOMUN_Opciones(SALCOMUN_TiposSalida),
        UTILSXML_LeeTexto(UTILSXML_LeeSALQAMTipoSalida, config, TAM_TEXTO));
    // The interleaver is an Annex B setting.
    const std::string celdaInterleaving = SALCOMUN_CampoSelect(
        fila, fila.Nombre("outint"), strJSOnBlurOnChangeCompruebacambios, SALCOMUN_Opciones(SALQAM_Interleavings),
        UTILSXML_LeeTexto(UTILSXML_LeeSALQAMInterleaving, config, TAM_TEXTO, SALQAMINT_InterleavingDefecto), anexoA);
    const std::string celdaNivel = SALCOMUN_CampoEntero(fila, htmlinputLCN, fila.Nombre("outlev"), 2, 2, 0, 99,
                                                        UTILSXML_LeeTexto(UTILSXML_LeeSALQAMNivel, config, TAM_TEXTO));
    const bool bucle = UTILSXML_LeeTexto(UTILSXML_LeeSALQAMLoopRF, config, TAM_TEXTO).starts_with('1');
    const std::string nombreBucle = fila.Nombre("outrfl");
    const std::string celdaBucle = CTESHTML_Checkbox(nombreBucle, nombreBucle, bucle, strJSOnBlurOnChangeCompruebacambios) +
                                   fila.Anterior(nombreBucle, bucle ? "1" : "0");

    if (fila.configTotal) {
        UTILS_Imprime(UTILS_Formatea(htmlConfigTotalOutputConfigQAM, celdaTabla.c_str(), celdaCanal.c_str(),
                                         celdaNivel.c_str(), celdaModo.c_str(), celdaInterleaving.c_str(),
                                         celdaBaudios.c_str(), celdaSalida.c_str(), celdaBucle.c_str()));
        return 0;
    }

    const std::string ocultos =
        SALCOMUN_OcultosUnidad(fila, canales, SALQAM_TipoUnidad) +
        SALCOMUN_Oculto(fila, "bitratetotal", UTILS_Formatea("%lu", SALCOMUN_BitrateTotal(config, canales)));
    const SALCOMUN_CeldasUnidad unidad = SALCOMUN_CeldasConfig(fila, modelo);
    const std::string forzar = fila.Nombre("forzarconfig");
    UTILS_Imprime(UTILS_Formatea(htmlinfosalidaQAM, unidad.orden.c_str(), unidad.modelo.c_str(), celdaTabla.c_str(),
                                     celdaCanal.c_str(), celdaNivel.c_str(), celdaModo.c_str(),
                                     celdaInterleaving.c_str(), celdaBaudios.c_str(), celdaSalida.c_str(),
                                     celdaBucle.c_str(), forzar.c_str(), forzar.c_str(), SALCOMUN_MarcaForzar(config),
                                     ocultos.c_str()));
    return 0;
}

// ---------------------------------------------------------------------------
// Page entries
// ---------------------------------------------------------------------------

namespace {

// The family as the page entries see it.
std::string SALQAMINT_CierreTransporte(int unidades)
{
    const std::string tipos = SALCOMUN_SelectTodas("autochan", SALQAM_TiposTabla, strJSCambioTodas);
    return UTILS_Formatea(htmlultimalineaTransporteQAM, unidades, tipos.c_str());
}

std::string SALQAMINT_CierreSalida(int unidades)
{
    const std::string tablas = SALCOMUN_SelectTodas("outtab", SALQAM_TablasCanales, strJSCambioTodas);
    const std::string modos = SALCOMUN_SelectTodas("outmod", SALQAM_ModosSalida, strJSCambioTodas);
    const std::string interleavings = SALCOMUN_SelectTodas("outint", SALQAM_Interleavings, strJSCambioTodas);
    const std::string salidas = SALCOMUN_SelectTodas("outout", SALCOMUN_TiposSalidaTodas, strJSCambioSalidaTodas);
    return UTILS_Formatea(htmlultimalineaSalidaQAM, unidades, tablas.c_str(), modos.c_str(), interleavings.c_str(),
                          salidas.c_str());
}

const SALCOMUN_Familia SALQAMINT_Familia = {
    SALQAMINT_PintaLineaSondeo, SALQAMINT_PintaLineaTransporte, SALQAMINT_PintaLineaSalida,
    htmlsondeorapidoCabeceraQAM, htmlsondeoDetaladoCabeceraQAM, htmlinfotransporteinicioQAM, htmlinfosalidainicioQAM,
    SALQAMINT_CierreTransporte, SALQAMINT_CierreSalida,
    htmlsondeorapidoQAM, htmlsondeoDetaladoQAM, htmlConfigTotalUnitStatusQAM, true,
};

}  // namespace

int SALQAM_SondeoRapido(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int, int, int,
                        const char *modelo, int, const char *sufijo, int, int)
{
    return SALCOMUN_Entrada(SALQAMINT_Familia, SALCOMUN_PaginaRapido, modo, documento, esMaster, canales, 0, modelo, 0,
                            sufijo);
}

int SALQAM_SondeoDetallado(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int, int, int,
                           const char *modelo, int, const char *sufijo, int, int)
{
    return SALCOMUN_Entrada(SALQAMINT_Familia, SALCOMUN_PaginaDetallado, modo, documento, esMaster, canales, 0, modelo, 0,
                            sufijo);
}

int SALQAM_GeneraTransporte(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones, int, int,
                            const char *modelo, int fila, const char *sufijo, int, int)
{
    return SALCOMUN_Entrada(SALQAMINT_Familia, SALCOMUN_PaginaTransporte, modo, documento, esMaster, canales, opciones, modelo, fila,
                            sufijo);
}

int SALQAM_GeneraSalida(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int, int, int,
                        const char *modelo, int fila, const char *sufijo, int, int)
{
    return SALCOMUN_Entrada(SALQAMINT_Familia, SALCOMUN_PaginaSalida, modo, documento, esMaster, canales, 0, modelo, fila,
                            sufijo);
}
