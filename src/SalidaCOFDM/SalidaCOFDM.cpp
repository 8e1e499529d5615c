// SalidaCOFDM.cpp: the COFDM module's page entries and row painters: quick and detailed
// status, transport (DVB network identifiers, NIT and SDT versions, logical channel numbers,
// service names, PIDs and ids, IP-input services) and output (channel plan and channel,
// frequency step, level, mode and the OFDM settings, baud rate).
#include "SalidaCOFDM/SalidaCOFDM.h"
#include "SalidaCOFDM/SalidaCOFDM_int.h"

#include "utils/utils.h"
#include "utilsXML/utilsXML.h"

#include <array>
#include <cstdio>
#include <span>
#include <type_traits>

// The entries and saves fill the COFDM slots of the dispatch tables.
static_assert(std::is_same_v<decltype(&SALCOFDM_SondeoRapido), SALCOMUN_FuncionPagina>);
static_assert(std::is_same_v<decltype(&SALCOFDM_SondeoDetallado), SALCOMUN_FuncionPagina>);
static_assert(std::is_same_v<decltype(&SALCOFDM_GeneraTransporte), SALCOMUN_FuncionPagina>);
static_assert(std::is_same_v<decltype(&SALCOFDM_GeneraSalida), SALCOMUN_FuncionPagina>);
static_assert(std::is_same_v<decltype(&SALCOFDM_GrabaTransporte), SALCOMUN_FuncionGrabar>);
static_assert(std::is_same_v<decltype(&SALCOFDM_GrabaSalida), SALCOMUN_FuncionGrabar>);

namespace {

// Buffer sizes of the page reads.
constexpr std::size_t TAM_TEXTO = 50;



// ---------------------------------------------------------------------------
// Mode and option lists
// ---------------------------------------------------------------------------

bool SALCOFDMINT_EsModoQAM(long modo)
{
    return modo >= SALCOFDM_PrimerModoQAM && modo <= SALCOFDM_UltimoModoQAM;
}

// The stored mode as painted: 0..2 (OFDM) and 12..16 (QAM) as they are, anything else,
// an unreadable mode included, as 0.
int SALCOFDMINT_Modo(xmlDocPtr config)
{
    const long modo = UTILS_Numero(UTILSXML_LeeTexto(UTILSXML_LeeSALCODFMMODO, config, TAM_TEXTO, "0"), -1);
    const bool ofdm = modo >= 0 && modo <= SALCOFDM_UltimoModoOFDM;
    return ofdm || SALCOFDMINT_EsModoQAM(modo) ? static_cast<int>(modo) : SALCOFDM_ModoDefecto;
}

std::vector<CTESHTML_Opcion> SALCOFDMINT_OpcionesModo()
{
    return CTESHTML_OpcionesTablas(ModosSalidaCOFDM, ValoresModosSalidaCOFDM, COFDM_NUMMODOSSALIDA);
}

// Plans 0..10, each with its name.
std::vector<CTESHTML_Opcion> SALCOFDMINT_OpcionesPlan()
{
    std::vector<CTESHTML_Opcion> planes;
    for (int plan = 0; plan < SALCOFDM_PlanesOfrecidos; ++plan)
        planes.push_back(COFDM_OpcionTabla(plan));
    return planes;
}

// The frequency steps of plan 0: 0..11 in OFDM modes, 0, 3, 6 and 9 in QAM modes.
std::vector<CTESHTML_Opcion> SALCOFDMINT_OpcionesPaso(bool modoQAM)
{
    if (!modoQAM)
        return CTESHTML_OpcionesEtiquetas(FrecuencyStepCOFDM, 0, SALCOFDM_UltimoPasoOFDM);
    std::vector<CTESHTML_Opcion> pasos;
    for (int paso : SALCOFDM_PasosQAM)
        pasos.push_back(CTESHTML_OpcionesEtiquetas(FrecuencyStepCOFDM, paso, paso).front());
    return pasos;
}


// A number stored as text, printed back as the select's options carry it ("05" selects "5");
// a text without digits is kept so that it selects nothing.
std::string SALCOFDMINT_ValorOpcion(const std::string &texto, long numero)
{
    return numero >= 0 ? std::to_string(numero) : texto;
}

// ---------------------------------------------------------------------------
// Field builders of the COFDM rows
// ---------------------------------------------------------------------------



// ---------------------------------------------------------------------------
// Output row
// ---------------------------------------------------------------------------

// The settings only an OFDM signal has, each in its own div so that the page script can swap
// it when the mode changes. No options: the cell id, edited in hexadecimal.
struct SALCOFDMINT_CampoOFDM {
    const char *base;
    const char *div;
    UTILSXML_Lector0 lector;
    std::span<const SALCOMUN_Opcion> opciones;
};
constexpr SALCOFDMINT_CampoOFDM SALCOFDMINT_CamposOFDM[] = {
    {"bwsal", "divanchobanda", UTILSXML_LeeSALCODFMBW, SALCOMUN_AnchosBanda},
    {"ingrd", "divintguarda", UTILSXML_LeeSALCODFMGUARDA, SALCOMUN_IntervalosGuarda},
    {"fecsal", "divfecsal", UTILSXML_LeeSALCODFMFEC, SALCOMUN_FECs},
    {"cellid", "divcellid", UTILSXML_LeeSALCODFMCELLID, {}},
};
constexpr std::size_t SALCOFDMINT_NumCamposOFDM = std::size(SALCOFDMINT_CamposOFDM);
constexpr unsigned HEXA_MINIMO_CELDA = 0x0;

std::string SALCOFDMINT_PintaCampoOFDM(const SALCOMUN_Fila &fila, const SALCOFDMINT_CampoOFDM &campo, bool modoQAM)
{
    const std::string nombre = fila.Nombre(campo.base);
    const std::string valor = UTILSXML_LeeTexto(campo.lector, fila.documento, TAM_TEXTO);
    std::string contenido;
    if (modoQAM)
        contenido = SALCOMUN_NoAplicable(nombre, valor);
    else if (campo.opciones.empty())
        contenido = SALCOMUN_CampoHexa(fila, nombre, HEXA_MINIMO_CELDA, valor);
    else
        contenido = SALCOMUN_CampoSelect(fila, nombre, strJSOnBlurOnChangeCompruebacambios,
                                         SALCOMUN_Opciones(campo.opciones), valor);
    return CTESHTML_Div(campo.div + fila.sufijo, contenido);
}

// "outchn": with plan 0 the whole megahertz typed in, with a plan the plan's channel select.
std::string SALCOFDMINT_WidgetCanal(const SALCOMUN_Fila &fila, int plan, const std::string &canal)
{
    const std::string nombre = fila.Nombre("outchn");
    if (plan == 0)
        return SALCOMUN_CampoEntero(fila, htmlinput3digitos, nombre, 3, 3, SALCOFDM_FrecuenciaMinima,
                                    SALCOFDM_FrecuenciaMaxima, SALCOMUN_Corta(canal, 3));
    return COFDM_SelectCanales(nombre, nombre, strJSOnBlurOnChangeCompruebacambios, plan, canal) +
           fila.Anterior(nombre, std::to_string(COFDM_CanalSeleccionado(plan, canal)));
}

// "frecstep": with a plan the step is fixed and carried hidden; with plan 0 a select of the
// steps the mode allows.
std::string SALCOFDMINT_WidgetPaso(const SALCOMUN_Fila &fila, int plan, bool modoQAM, const std::string &paso)
{
    const std::string nombre = fila.Nombre("frecstep");
    if (plan != 0)
        return SALCOMUN_NoAplicable(nombre, SALCOFDM_PasoConPlan);
    const long numero = UTILS_Numero(paso, -1);
    const std::string valor = modoQAM && numero >= SALCOFDM_PrimerPasoFueraQAM ? "0" : SALCOFDMINT_ValorOpcion(paso, numero);
    return SALCOMUN_CampoSelect(fila, nombre, strJSOnBlurOnChangeCompruebacambios, SALCOFDMINT_OpcionesPaso(modoQAM),
                                valor);
}

}  // namespace

// ---------------------------------------------------------------------------
// Row painters
// ---------------------------------------------------------------------------

namespace {
extern const SALCOMUN_Familia SALCOFDMINT_Familia;
}  // namespace

int SALCOFDMINT_PintaLineaTransporte(xmlDocPtr config, int esMaster, int configTotal, uint8_t canales, int opciones,
                                     const char *modelo, const char *sufijo)
{
    return SALCOMUN_PintaLineaTransporteDVB(SALCOFDM_TipoUnidad, config, esMaster, configTotal, canales, opciones, modelo,
                                            sufijo);
}

int SALCOFDMINT_PintaLineaSondeo(xmlDocPtr status, int esMaster, int configTotal, int detallado, uint8_t canales,
                       const char *modelo, const char *)
{
    return SALCOMUN_PintaLineaSondeo(SALCOFDMINT_Familia, status, esMaster, configTotal, detallado, canales, modelo);
}


int SALCOFDMINT_PintaLineaSalida(xmlDocPtr config, int esMaster, int configTotal, uint8_t canales,
                                 const char *modelo, const char *sufijo)
{
    const SALCOMUN_Fila fila = SALCOMUN_PreparaFila(config, esMaster, sufijo, configTotal != 0);

    // Plans 0..10 are offered; another stored plan selects nothing and, like an unreadable
    // one, gets the typed frequency of plan 0.
    const std::string tabla = UTILSXML_LeeTexto(UTILSXML_LeeSALCODFMTABLA, config, TAM_TEXTO);
    const long numeroTabla = UTILS_Numero(tabla, -1);
    const bool planOfrecido = numeroTabla >= 0 && numeroTabla < SALCOFDM_PlanesOfrecidos;
    const int plan = planOfrecido ? static_cast<int>(numeroTabla) : 0;
    const std::string celdaTabla =
        SALCOMUN_CampoSelect(fila, fila.Nombre("outtab"), strJSCambioTablacanalsalidaCOFDM, SALCOFDMINT_OpcionesPlan(),
                             planOfrecido ? std::to_string(plan) : tabla);
    const std::string celdaCanal =
        CTESHTML_Div("divoutchn" + fila.sufijo,
                     SALCOFDMINT_WidgetCanal(fila, plan, UTILSXML_LeeTexto(UTILSXML_LeeSALCODFMFREC, config, TAM_TEXTO)));

    const int modo = SALCOFDMINT_Modo(config);
    const bool modoQAM = SALCOFDMINT_EsModoQAM(modo);
    const std::string celdaModo = SALCOMUN_CampoSelect(fila, fila.Nombre("outmod"), strJSCambioModoCOFDM,
                                                       SALCOFDMINT_OpcionesModo(), std::to_string(modo));
    const std::string celdaPaso = CTESHTML_Div(
        "divfrecstep" + fila.sufijo,
        SALCOFDMINT_WidgetPaso(fila, plan, modoQAM, UTILSXML_LeeTexto(UTILSXML_LeeSALCODFMFRECSTEP, config, TAM_TEXTO)));

    const std::string celdaNivel = SALCOMUN_CampoEntero(fila, htmlinputLCN, fila.Nombre("outlev"), 2, 2, 0, 99,
                                                        UTILSXML_LeeTexto(UTILSXML_LeeSALCODFMNIVEL, config, TAM_TEXTO));

    std::array<std::string, SALCOFDMINT_NumCamposOFDM> celdasOFDM;
    for (std::size_t i = 0; i < SALCOFDMINT_NumCamposOFDM; ++i)
        celdasOFDM[i] = SALCOFDMINT_PintaCampoOFDM(fila, SALCOFDMINT_CamposOFDM[i], modoQAM);

    // The baud rate is the cable signal's setting: editable in QAM modes only.
    const std::string baudios = UTILSXML_LeeTexto(UTILSXML_LeeSALCODFMBAUDRATE, config, TAM_TEXTO);
    const std::string valorBaudios = SALCOMUN_Corta(baudios, SALCOMUN_TieneDecimales(baudios) ? 5 : 1);
    const std::string nombreBaudios = fila.Nombre("outbau");
    const std::string celdaBaudios = CTESHTML_Div(
        "divbaudrate" + fila.sufijo,
        CTESHTML_Input(htmlinput, nombreBaudios, 5, nombreBaudios, strJSPermitirreales,
                       UTILS_Formatea(strJSvalidaEntDecimales, "1", "7.2", 4),
                       std::string(strJSOnBlurOnChangeCompruebacambios) + (modoQAM ? "" : " disabled"), valorBaudios,
                       5) +
            fila.Anterior(nombreBaudios, valorBaudios));

    const std::string celdaSalida = SALCOMUN_CampoSelect(
        fila, fila.Nombre("outout"), strJSOnBlurOnChangeCompruebacambios, SALCOMUN_Opciones(SALCOMUN_TiposSalida),
        UTILSXML_LeeTexto(UTILSXML_LeeSALCODFMSALIDA, config, TAM_TEXTO));
    const bool bucle = UTILSXML_LeeTexto(UTILSXML_LeeSALCODFMLoopRF, config, TAM_TEXTO).starts_with('1');
    const std::string nombreBucle = fila.Nombre("outrfl");
    const std::string celdaBucle =
        CTESHTML_Checkbox(nombreBucle, nombreBucle, bucle, strJSOnBlurOnChangeCompruebacambios) +
        fila.Anterior(nombreBucle, bucle ? "1" : "0");

    if (fila.configTotal) {
        UTILS_Imprime(UTILS_Formatea(htmlConfigTotalOutputConfigCOFDM, celdaTabla.c_str(), celdaCanal.c_str(),
                                           celdaPaso.c_str(), celdaNivel.c_str(), celdaModo.c_str(),
                                           celdasOFDM[0].c_str(), celdasOFDM[1].c_str(), celdasOFDM[2].c_str(),
                                           celdasOFDM[3].c_str(), celdaBaudios.c_str(), celdaSalida.c_str(),
                                           celdaBucle.c_str()));
        return 0;
    }

    const std::string ocultos =
        SALCOMUN_OcultosUnidad(fila, canales, SALCOFDM_TipoUnidad) +
        SALCOMUN_Oculto(fila, "bitratetotal", UTILS_Formatea("%lu", SALCOMUN_BitrateTotal(config, canales)));
    const SALCOMUN_CeldasUnidad unidad = SALCOMUN_CeldasConfig(fila, modelo);
    const std::string forzar = fila.Nombre("forzarconfig");
    UTILS_Imprime(UTILS_Formatea(
        htmlinfosalidaCOFDM, unidad.orden.c_str(), unidad.modelo.c_str(), celdaTabla.c_str(), celdaCanal.c_str(),
        celdaPaso.c_str(), celdaNivel.c_str(), celdaModo.c_str(), celdasOFDM[0].c_str(), celdasOFDM[1].c_str(),
        celdasOFDM[2].c_str(), celdasOFDM[3].c_str(), celdaBaudios.c_str(), celdaSalida.c_str(), celdaBucle.c_str(),
        forzar.c_str(), forzar.c_str(), SALCOMUN_MarcaForzar(config), ocultos.c_str()));
    return 0;
}

// ---------------------------------------------------------------------------
// Page entries
// ---------------------------------------------------------------------------

namespace {


std::string SALCOFDMINT_CierreSalida(int unidades)
{
    const std::string tablas =
        SALCOMUN_SelectTodasOpciones("outtab", SALCOFDMINT_OpcionesPlan(), strJSCambioTodas);
    const std::string pasos =
        SALCOMUN_SelectTodasOpciones("frecstep", SALCOFDMINT_OpcionesPaso(false), strJSCambioTodas);
    const std::string modos =
        SALCOMUN_SelectTodasOpciones("outmod", SALCOFDMINT_OpcionesModo(), strJSCambioTodas);
    const std::string anchos = SALCOMUN_SelectTodas("bwsal", SALCOMUN_AnchosBanda, strJSCambioTodas);
    const std::string guardas = SALCOMUN_SelectTodas("ingrd", SALCOMUN_IntervalosGuarda, strJSCambioTodas);
    const std::string fecs = SALCOMUN_SelectTodas("fecsal", SALCOMUN_FECs, strJSCambioTodas);
    const std::string salidas =
        SALCOMUN_SelectTodas("outout", SALCOMUN_TiposSalidaTodas, strJSCambioSalidaTodas);
    return UTILS_Formatea(htmlultimalineaSalidaCOFDM, unidades, tablas.c_str(), pasos.c_str(), modos.c_str(),
                          anchos.c_str(), guardas.c_str(), fecs.c_str(), salidas.c_str());
}

const SALCOMUN_Familia SALCOFDMINT_Familia = {
    SALCOFDMINT_PintaLineaSondeo, SALCOFDMINT_PintaLineaTransporte, SALCOFDMINT_PintaLineaSalida,
    htmlsondeorapidoCabeceraCOFDM, htmlsondeoDetaladoCabeceraCOFDM, htmlinfotransporteinicioCOFDM, htmlinfosalidainicioCOFDM,
    SALCOMUN_CierreTransporteDVB, SALCOFDMINT_CierreSalida,
    htmlsondeorapidoCOFDM, htmlsondeoDetaladoCOFDM, htmlConfigTotalUnitStatusCOFDM, false,
};

}  // namespace

int SALCOFDM_SondeoRapido(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int, int, int,
                          const char *modelo, int, const char *sufijo, int, int)
{
    return SALCOMUN_Entrada(SALCOFDMINT_Familia, SALCOMUN_PaginaRapido, modo, documento, esMaster, canales, 0, modelo, 0,
                            sufijo);
}

int SALCOFDM_SondeoDetallado(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int, int, int,
                             const char *modelo, int, const char *sufijo, int, int)
{
    return SALCOMUN_Entrada(SALCOFDMINT_Familia, SALCOMUN_PaginaDetallado, modo, documento, esMaster, canales, 0, modelo, 0,
                            sufijo);
}

int SALCOFDM_GeneraTransporte(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones, int, int,
                              const char *modelo, int fila, const char *sufijo, int, int)
{
    return SALCOMUN_Entrada(SALCOFDMINT_Familia, SALCOMUN_PaginaTransporte, modo, documento, esMaster, canales, opciones, modelo, fila,
                            sufijo);
}

int SALCOFDM_GeneraSalida(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int, int, int,
                          const char *modelo, int fila, const char *sufijo, int, int)
{
    return SALCOMUN_Entrada(SALCOFDMINT_Familia, SALCOMUN_PaginaSalida, modo, documento, esMaster, canales, 0, modelo, fila,
                            sufijo);
}
