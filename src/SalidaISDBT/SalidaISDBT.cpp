// SalidaISDBT.cpp: the rows of the ISDB-T pages and the page entries.
#include "SalidaISDBT/SalidaISDBT_int.h"

#include "utils/utils.h"
#include "utilsXML/utilsXML.h"

#include <type_traits>

static_assert(std::is_same_v<decltype(&SALISDBT_SondeoRapido), SALCOMUN_FuncionPagina>);
static_assert(std::is_same_v<decltype(&SALISDBT_SondeoDetallado), SALCOMUN_FuncionPagina>);
static_assert(std::is_same_v<decltype(&SALISDBT_GeneraTransporte), SALCOMUN_FuncionPagina>);
static_assert(std::is_same_v<decltype(&SALISDBT_GeneraSalida), SALCOMUN_FuncionPagina>);
static_assert(std::is_same_v<decltype(&SALISDBT_GrabaTransporte), SALCOMUN_FuncionGrabar>);
static_assert(std::is_same_v<decltype(&SALISDBT_GrabaSalida), SALCOMUN_FuncionGrabar>);

// ---------------------------------------------------------------------------
// Options of the output page
// ---------------------------------------------------------------------------

std::vector<CTESHTML_Opcion> SALISDBTINT_OpcionesPlan()
{
    return {COFDM_OpcionTabla(SALISDBT_PlanFrecuencia), COFDM_OpcionTabla(SALISDBT_PlanBroadcast)};
}

std::vector<CTESHTML_Opcion> SALISDBTINT_OpcionesPaso()
{
    return CTESHTML_OpcionesEtiquetas(FrecuencyStepCOFDM, 0, COFDM_NUMPASOSFRECUENCIA - 1);
}

std::vector<CTESHTML_Opcion> SALISDBTINT_OpcionesModo()
{
    return CTESHTML_OpcionesEtiquetas(ModosSalidaISDBT, 0, SALISDBT_UltimoModo);
}

// The transmission modes a mode offers: all three in ISDB-T modes, 2K and 8K in DVB-T modes.
std::vector<CTESHTML_Opcion> SALISDBTINT_OpcionesOFDM(bool modoISDBT)
{
    if (modoISDBT)
        return CTESHTML_OpcionesEtiquetas(OFDMSalidaISDBT, 0, COFDM_NUMOFDMISDBT - 1);
    std::vector<CTESHTML_Opcion> opciones;
    for (int posicion : SALISDBT_OFDMsCOFDM)
        opciones.push_back(CTESHTML_OpcionesEtiquetas(OFDMSalidaISDBT, posicion, posicion).front());
    return opciones;
}

std::vector<CTESHTML_Opcion> SALISDBTINT_OpcionesInterleaving()
{
    return CTESHTML_OpcionesEtiquetas(InterleavingSalidaISDBT, 0, SALISDBT_UltimoInterleaving);
}


namespace {

// Buffer size of the page reads.
constexpr std::size_t TAM_TEXTO = 50;

extern const SALCOMUN_Familia SALISDBTINT_Familia;

// The stored mode as painted: 0..6 as it is, anything else, an unreadable mode included, as 0.
int SALISDBTINT_Modo(xmlDocPtr config)
{
    const long modo = UTILS_Numero(UTILSXML_LeeTexto(UTILSXML_LeeSALISDBTModo, config, TAM_TEXTO), -1);
    return modo >= 0 && modo <= SALISDBT_UltimoModo ? static_cast<int>(modo) : 0;
}

// ---------------------------------------------------------------------------
// Output row
// ---------------------------------------------------------------------------

// "outchn": with the Broadcast plan its channel select, otherwise the whole megahertz typed in.
std::string SALISDBTINT_WidgetCanal(const SALCOMUN_Fila &fila, int plan, const std::string &canal)
{
    const std::string nombre = fila.Nombre("outchn");
    if (plan != SALISDBT_PlanBroadcast)
        return SALCOMUN_CampoEntero(fila, htmlinput3digitos, nombre, 3, 3, SALCOMUN_FrecuenciaMinima,
                                    SALCOMUN_FrecuenciaMaxima, SALCOMUN_Corta(canal, 3));
    return COFDM_SelectCanales(nombre, nombre, strJSOnBlurOnChangeCompruebacambios, plan, canal) +
           fila.Anterior(nombre, std::to_string(COFDM_CanalSeleccionado(plan, canal)));
}

// A select of the row, or, when the unit's mode or plan does not use the setting, its stored
// value carried hidden and "n/a", in its own div so that the page script can swap it.
std::string SALISDBTINT_CampoDiv(const SALCOMUN_Fila &fila, const char *div, const char *base, bool usado,
                                 const std::vector<CTESHTML_Opcion> &opciones, const std::string &valor)
{
    const std::string nombre = fila.Nombre(base);
    return CTESHTML_Div(div + fila.sufijo,
                        usado ? SALCOMUN_CampoSelect(fila, nombre, strJSOnBlurOnChangeCompruebacambios, opciones, valor)
                              : SALCOMUN_NoAplicable(nombre, valor));
}

std::string SALISDBTINT_Select(const SALCOMUN_Fila &fila, const char *base, const char *atributos,
                               const std::vector<CTESHTML_Opcion> &opciones, const std::string &valor)
{
    return SALCOMUN_CampoSelect(fila, fila.Nombre(base), atributos, opciones, valor);
}

std::string SALISDBTINT_Lee(UTILSXML_Lector0 lector, xmlDocPtr config)
{
    return UTILSXML_LeeTexto(lector, config, TAM_TEXTO);
}

// --- The family as the page entries see it ------------------------------------

std::string SALISDBTINT_CierreSalida(int unidades)
{
    const auto todas = [](const char *base, const std::vector<CTESHTML_Opcion> &opciones) {
        return SALCOMUN_SelectTodasOpciones(base, opciones, strJSCambioTodas);
    };
    const std::string tablas = todas("outtab", SALISDBTINT_OpcionesPlan());
    const std::string pasos = todas("frecstep", SALISDBTINT_OpcionesPaso());
    const std::string modos = todas("outmod", SALISDBTINT_OpcionesModo());
    const std::string ofdm = todas("outofdm", SALISDBTINT_OpcionesOFDM(true));
    const std::string interleavings = todas("outint", SALISDBTINT_OpcionesInterleaving());
    const std::string anchos = SALCOMUN_SelectTodas("bwsal", SALCOMUN_AnchosBanda, strJSCambioTodas);
    const std::string guardas = SALCOMUN_SelectTodas("ingrd", SALCOMUN_IntervalosGuarda, strJSCambioTodas);
    const std::string fecs = SALCOMUN_SelectTodas("fecsal", SALCOMUN_FECs, strJSCambioTodas);
    const std::string salidas = SALCOMUN_SelectTodas("outout", SALCOMUN_TiposSalidaTodas, strJSCambioSalidaTodas);
    return UTILS_Formatea(htmlultimalineaSalidaISDBT, unidades, tablas.c_str(), pasos.c_str(), modos.c_str(),
                          ofdm.c_str(), interleavings.c_str(), anchos.c_str(), guardas.c_str(), fecs.c_str(),
                          salidas.c_str());
}

const SALCOMUN_Familia SALISDBTINT_Familia = {
    SALISDBTINT_PintaLineaSondeo, SALISDBTINT_PintaLineaTransporte, SALISDBTINT_PintaLineaSalida,
    htmlsondeorapidoCabeceraISDBT, htmlsondeoDetaladoCabeceraISDBT, htmlinfotransporteinicioCOFDM,
    htmlinfosalidainicioISDBT, SALCOMUN_CierreTransporteDVB, SALISDBTINT_CierreSalida,
    htmlsondeorapidoISDBT, htmlsondeoDetaladoISDBT, htmlConfigTotalUnitStatusISDBT, false,
};

}  // namespace

// ---------------------------------------------------------------------------
// Row painters
// ---------------------------------------------------------------------------

int SALISDBTINT_PintaLineaSondeo(xmlDocPtr status, int esMaster, int configTotal, int detallado, uint8_t canales,
                                 const char *modelo, const char *)
{
    return SALCOMUN_PintaLineaSondeo(SALISDBTINT_Familia, status, esMaster, configTotal, detallado, canales, modelo);
}

int SALISDBTINT_PintaLineaTransporte(xmlDocPtr config, int esMaster, int configTotal, uint8_t canales, int opciones,
                                     const char *modelo, const char *sufijo)
{
    return SALCOMUN_PintaLineaTransporteDVB(SALISDBT_TipoUnidad, config, esMaster, configTotal, canales, opciones,
                                            modelo, sufijo);
}

int SALISDBTINT_PintaLineaSalida(xmlDocPtr config, int esMaster, int configTotal, uint8_t canales,
                                 const char *modelo, const char *sufijo)
{
    const SALCOMUN_Fila fila = SALCOMUN_PreparaFila(config, esMaster, sufijo, configTotal != 0);

    // The two plans are offered; another stored plan selects nothing and, like an unreadable
    // one, gets the typed frequency.
    const std::string tabla = SALISDBTINT_Lee(UTILSXML_LeeSALISDBTTABLA, config);
    const long numeroTabla = UTILS_Numero(tabla, -1);
    const bool broadcast = numeroTabla == SALISDBT_PlanBroadcast;
    const bool planOfrecido = broadcast || numeroTabla == SALISDBT_PlanFrecuencia;
    const int plan = broadcast ? SALISDBT_PlanBroadcast : SALISDBT_PlanFrecuencia;
    const std::string celdaTabla = SALISDBTINT_Select(fila, "outtab", strJSCambioTablacanalsalidaISDBT,
                                                      SALISDBTINT_OpcionesPlan(),
                                                      planOfrecido ? std::to_string(plan) : tabla);
    const std::string celdaCanal = CTESHTML_Div(
        "divoutchn" + fila.sufijo, SALISDBTINT_WidgetCanal(fila, plan, SALISDBTINT_Lee(UTILSXML_LeeSALISDBTFREC, config)));
    // "143 kHz", the 1/7 MHz offset of ISDB-T channel centres, is offered here and only here.
    const std::string celdaPaso =
        SALISDBTINT_CampoDiv(fila, "divfrecstep", "frecstep", !broadcast, SALISDBTINT_OpcionesPaso(),
                             SALISDBTINT_Lee(UTILSXML_LeeSALISDBTFRECSTEP, config));
    const std::string celdaNivel = SALCOMUN_CampoEntero(fila, htmlinputLCN, fila.Nombre("outlev"), 2, 2, 0, 99,
                                                        SALISDBTINT_Lee(UTILSXML_LeeSALISDBTNIVEL, config));

    const int modo = SALISDBTINT_Modo(config);
    const bool modoISDBT = modo <= SALISDBT_UltimoModoISDBT;
    const std::string celdaModo =
        SALISDBTINT_Select(fila, "outmod", strJSCambioModoISDBT, SALISDBTINT_OpcionesModo(), std::to_string(modo));
    const std::string celdaOFDM =
        SALISDBTINT_Select(fila, "outofdm", strJSOnBlurOnChangeCompruebacambios, SALISDBTINT_OpcionesOFDM(modoISDBT),
                           SALISDBTINT_Lee(UTILSXML_LeeSALISDBTOFDM, config));
    const std::string celdaInterleaving =
        SALISDBTINT_CampoDiv(fila, "divinterleaving", "outint", modoISDBT, SALISDBTINT_OpcionesInterleaving(),
                             SALISDBTINT_Lee(UTILSXML_LeeSALISDBTINTER, config));
    const auto select = [&](const char *base, std::span<const SALCOMUN_Opcion> opciones, UTILSXML_Lector0 lector) {
        return SALISDBTINT_Select(fila, base, strJSOnBlurOnChangeCompruebacambios, SALCOMUN_Opciones(opciones),
                                  SALISDBTINT_Lee(lector, config));
    };
    const std::string celdaAncho = select("bwsal", SALCOMUN_AnchosBanda, UTILSXML_LeeSALISDBTBW);
    const std::string celdaGuarda = select("ingrd", SALCOMUN_IntervalosGuarda, UTILSXML_LeeSALISDBTGUARDA);
    const std::string celdaFEC = select("fecsal", SALCOMUN_FECs, UTILSXML_LeeSALISDBTFEC);
    const std::string celdaSalida = select("outout", SALCOMUN_TiposSalida, UTILSXML_LeeSALISDBTSALIDA);
    const bool bucle = SALISDBTINT_Lee(UTILSXML_LeeSALISDBTRFLOOP, config).starts_with('1');
    const std::string nombreBucle = fila.Nombre("outrfl");
    const std::string celdaBucle =
        CTESHTML_Checkbox(nombreBucle, nombreBucle, bucle, strJSOnBlurOnChangeCompruebacambios) +
        fila.Anterior(nombreBucle, bucle ? "1" : "0");

    if (fila.configTotal) {
        UTILS_Imprime(UTILS_Formatea(htmlConfigTotalOutputConfigISDBT, celdaTabla.c_str(), celdaCanal.c_str(),
                                     celdaPaso.c_str(), celdaNivel.c_str(), celdaModo.c_str(), celdaOFDM.c_str(),
                                     celdaInterleaving.c_str(), celdaAncho.c_str(), celdaGuarda.c_str(),
                                     celdaFEC.c_str(), celdaSalida.c_str(), celdaBucle.c_str()));
        return 0;
    }

    const std::string ocultos =
        SALCOMUN_OcultosUnidad(fila, canales, SALISDBT_TipoUnidad) +
        SALCOMUN_Oculto(fila, "bitratetotal", UTILS_Formatea("%lu", SALCOMUN_BitrateTotal(config, canales)));
    const SALCOMUN_CeldasUnidad unidad = SALCOMUN_CeldasConfig(fila, modelo);
    const std::string forzar = fila.Nombre("forzarconfig");
    UTILS_Imprime(UTILS_Formatea(htmlinfosalidaISDBT, unidad.orden.c_str(), unidad.modelo.c_str(), celdaTabla.c_str(),
                                 celdaCanal.c_str(), celdaPaso.c_str(), celdaNivel.c_str(), celdaModo.c_str(),
                                 celdaOFDM.c_str(), celdaInterleaving.c_str(), celdaAncho.c_str(),
                                 celdaGuarda.c_str(), celdaFEC.c_str(), celdaSalida.c_str(), celdaBucle.c_str(),
                                 forzar.c_str(), forzar.c_str(), SALCOMUN_MarcaForzar(config), ocultos.c_str()));
    return 0;
}

// ---------------------------------------------------------------------------
// Page entries
// ---------------------------------------------------------------------------

int SALISDBT_SondeoRapido(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int, int, int,
                          const char *modelo, int, const char *sufijo, int, int)
{
    return SALCOMUN_Entrada(SALISDBTINT_Familia, SALCOMUN_PaginaRapido, modo, documento, esMaster, canales, 0, modelo,
                            0, sufijo);
}

int SALISDBT_SondeoDetallado(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int, int, int,
                             const char *modelo, int, const char *sufijo, int, int)
{
    return SALCOMUN_Entrada(SALISDBTINT_Familia, SALCOMUN_PaginaDetallado, modo, documento, esMaster, canales, 0,
                            modelo, 0, sufijo);
}

int SALISDBT_GeneraTransporte(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones, int, int,
                              const char *modelo, int fila, const char *sufijo, int, int)
{
    return SALCOMUN_Entrada(SALISDBTINT_Familia, SALCOMUN_PaginaTransporte, modo, documento, esMaster, canales,
                            opciones, modelo, fila, sufijo);
}

int SALISDBT_GeneraSalida(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int, int, int,
                          const char *modelo, int fila, const char *sufijo, int, int)
{
    return SALCOMUN_Entrada(SALISDBTINT_Familia, SALCOMUN_PaginaSalida, modo, documento, esMaster, canales, 0, modelo,
                            fila, sufijo);
}
