// DVB.cpp: the transport page shared by the DVB families.
#include "SalidaComun/DVB.h"

#include "utils/utils.h"
#include "utilsXML/utilsXML.h"

#include <algorithm>
#include <array>

namespace {

// Buffer sizes of the page reads.
constexpr std::size_t TAM_TEXTO = 50;
constexpr std::size_t TAM_NOMBRE = 49;

// Sizes of the transport columns shared with the other families.
constexpr SALCOMUN_MedidasLinea SALCOMUNINT_Medidas = {20, 4, 4};

// Identifiers edited as four hexadecimal digits.
constexpr int TAM_HEXA = 4;
constexpr unsigned HEXA_MAXIMO = 0xffff;

// The fifteen DVB columns of the transport row, in page order.
enum SALCOMUNINT_ColumnaTransporte : int {
    COL_TSID,
    COL_NTID,
    COL_NNAM,
    COL_ONID,
    COL_NITVS,
    COL_SDTVS,
    COL_MLCN,
    COL_SINTITULO,
    COL_LCN,
    COL_NOMBREENTRADA,
    COL_SIDENTRADA,
    COL_NOMBRESALIDA,
    COL_SIDSALIDA,
    COL_PIDVIDEO,
    COL_PIDAUDIO,
    COL_NUMCOLUMNAS
};
using SALCOMUNINT_Columnas = std::array<SALCOMUN_Columna, COL_NUMCOLUMNAS>;

// The per-unit fields of the transport row, on its first line.
enum class SALCOMUNINT_ClaseRed { Hexa, Nombre, Version, TipoLCN };
struct SALCOMUNINT_CampoRed {
    const char *base;
    int columna;
    SALCOMUNINT_ClaseRed clase;
    UTILSXML_Lector0 lector;
    std::size_t tam;
    const char *defecto;  // shown when the read fails
};
constexpr SALCOMUNINT_CampoRed SALCOMUNINT_CamposRed[] = {
    {"tsid", COL_TSID, SALCOMUNINT_ClaseRed::Hexa, UTILSXML_LeeSALTSTSID, TAM_TEXTO, ""},
    {"ntid", COL_NTID, SALCOMUNINT_ClaseRed::Hexa, UTILSXML_LeeSALTSNETwORKID, TAM_TEXTO, ""},
    {"nnam", COL_NNAM, SALCOMUNINT_ClaseRed::Nombre, UTILSXML_LeeSALTSNETwORKNAME, TAM_NOMBRE, ""},
    {"onid", COL_ONID, SALCOMUNINT_ClaseRed::Hexa, UTILSXML_LeeSALTSORIGNETID, TAM_TEXTO, ""},
    {"nitvs", COL_NITVS, SALCOMUNINT_ClaseRed::Version, UTILSXML_LeeSALTSVersionNIT, TAM_TEXTO, SALCOMUN_VersionAuto.valor},
    {"sdtvs", COL_SDTVS, SALCOMUNINT_ClaseRed::Version, UTILSXML_LeeSALTSVersionSDT, TAM_TEXTO, SALCOMUN_VersionAuto.valor},
    {"mlcn", COL_MLCN, SALCOMUNINT_ClaseRed::TipoLCN, UTILSXML_LeeSALTSLCN, TAM_TEXTO, SALCOMUN_TipoLCNDefecto},
};
constexpr int TAM_NOMBRERED = 8;
constexpr int MAX_NOMBRERED = 12;
constexpr unsigned HEXA_MINIMO_RED = 0x1;

std::string SALCOMUNINT_PintaCampoRed(const SALCOMUN_Fila &fila, const SALCOMUNINT_CampoRed &campo)
{
    const std::string nombre = fila.Nombre(campo.base);
    const std::string valor = UTILSXML_LeeTexto(campo.lector, fila.documento, campo.tam, campo.defecto);
    switch (campo.clase) {
    case SALCOMUNINT_ClaseRed::Hexa:
        return SALCOMUN_CampoHexa(fila, nombre, HEXA_MINIMO_RED, valor);
    case SALCOMUNINT_ClaseRed::Nombre:
        return CTESHTML_Input(htmlinputCHName, nombre, TAM_NOMBRERED, nombre, "", "Compruebacambios(this);", "", valor,
                              MAX_NOMBRERED) +
               fila.Anterior(nombre, valor);
    case SALCOMUNINT_ClaseRed::Version:
        return SALCOMUN_CampoSelect(fila, nombre, strJSOnBlurOnChangeCompruebacambios, SALCOMUN_OpcionesVersion(),
                                    valor);
    case SALCOMUNINT_ClaseRed::TipoLCN:
    default:
        return SALCOMUN_CampoSelect(fila, nombre, strJSOnBlurOnChangeCompruebacambios,
                                    SALCOMUN_Opciones(SALCOMUN_TiposLCN), valor);
    }
}

// "lcnn" of one line: the logical channel number 1..1023.
std::string SALCOMUNINT_CampoLCN(const SALCOMUN_Fila &fila, int linea, std::string_view valor)
{
    return SALCOMUN_CampoEntero(fila, htmlinputLCN, fila.Nombre("lcnn", linea), 3, 4, 1, 1023, valor);
}

void SALCOMUNINT_AnadeLinea(SALCOMUNINT_Columnas &columnas, const SALCOMUN_LineaTransporte &comun,
                            const std::string &lcn)
{
    columnas[COL_LCN].Linea(lcn);
    columnas[COL_NOMBREENTRADA].Linea(comun.nombreEntrada);
    columnas[COL_SIDENTRADA].Linea(comun.sidEntrada);
    columnas[COL_NOMBRESALIDA].Linea(comun.nombreSalida);
    columnas[COL_SIDSALIDA].Linea(comun.sidSalida);
    columnas[COL_PIDVIDEO].Linea(comun.pidVideo);
    columnas[COL_PIDAUDIO].Linea(comun.pidAudio + comun.ocultos);
}

// The IP-service keys are posted only by units with IP inputs.
constexpr SALCOMUN_Clave SALCOMUNINT_ClavesDVB[] = {
    {"numcanales", true},   {"tsid", true},      {"cnam", true},      {"svpid", true},    {"sapid", true},
    {"mlcn", true},         {"lcnn", true},      {"ntid", true},      {"nnam", true},     {"onid", true},
    {"svcid", true},        {"nitvs", true},     {"sdtvs", true},     {"haysalidaip", false},
    {"entip", false},       {"lsnumserv", false}, {"ntotserv", false},
};

// The unit's DVB identifiers and tables, written first and in this order.
constexpr SALCOMUN_CampoUnidad SALCOMUNINT_EscriturasDVB[] = {
    {"tsid", UTILSXML_GrabaSALTSTSID},
    {"ntid", UTILSXML_GrabaSALTSNETwORKID},
    {"nnam", UTILSXML_GrabaSALTSNETwORKNAME},
    {"onid", UTILSXML_GrabaSALTSORIGNETID},
    {"nitvs", UTILSXML_GrabaSALTSVersionNIT},
    {"sdtvs", UTILSXML_GrabaSALTSVersionSDT},
    {"mlcn", UTILSXML_GrabaSALTSLCN},
};

// Per-line lists, in this order; PIDs have no IP-service counterpart (the unit keeps the
// input's PIDs), so their lines above the channel count are dropped.
constexpr SALCOMUN_ListaLineas SALCOMUNINT_ListasDVB[] = {
    {"lcnn", UTILSXML_GrabaSALTSCanalLCN, UTILSXML_GrabaENTRAIPSERVICELCN},
    {"svcid", UTILSXML_GrabaSALTSCanalSERVICEID, UTILSXML_GrabaENTRAIPSERVICEIDOUT},
    {"cnam", UTILSXML_GrabaSALTSCanalNombre, UTILSXML_GrabaENTRAIPSERVNAMEOUT},
    {"svpid", UTILSXML_GrabaSALTSCanalVIDEOPID, nullptr},
    {"sapid", UTILSXML_GrabaSALTSCanalAUDIOPID, nullptr},
};

// ---------------------------------------------------------------------------
// The COFDM output row
// ---------------------------------------------------------------------------

// A number stored as text, printed back as the select's options carry it ("05" selects "5");
// a text without digits is kept so that it selects nothing.
std::string SALCOMUNINT_ValorOpcion(const std::string &texto, long numero)
{
    return numero >= 0 ? std::to_string(numero) : texto;
}

// The settings only an OFDM signal has, each in its own div so that the page script can swap
// it when the mode changes. No options: the cell id, edited in hexadecimal.
struct SALCOMUNINT_CampoOFDM {
    const char *base;
    const char *div;
    UTILSXML_Lector0 lector;
    std::span<const SALCOMUN_Opcion> opciones;
};
constexpr SALCOMUNINT_CampoOFDM SALCOMUNINT_CamposOFDM[] = {
    {"bwsal", "divanchobanda", UTILSXML_LeeSALCODFMBW, SALCOMUN_AnchosBanda},
    {"ingrd", "divintguarda", UTILSXML_LeeSALCODFMGUARDA, SALCOMUN_IntervalosGuarda},
    {"fecsal", "divfecsal", UTILSXML_LeeSALCODFMFEC, SALCOMUN_FECs},
    {"cellid", "divcellid", UTILSXML_LeeSALCODFMCELLID, {}},
};
constexpr std::size_t SALCOMUNINT_NumCamposOFDM = std::size(SALCOMUNINT_CamposOFDM);
constexpr unsigned HEXA_MINIMO_CELDA = 0x0;

std::string SALCOMUNINT_PintaCampoOFDM(const SALCOMUN_Fila &fila, const SALCOMUNINT_CampoOFDM &campo, bool modoQAM)
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
std::string SALCOMUNINT_WidgetCanal(const SALCOMUN_Fila &fila, int plan, const std::string &canal)
{
    const std::string nombre = fila.Nombre("outchn");
    if (plan == 0)
        return SALCOMUN_CampoEntero(fila, htmlinput3digitos, nombre, 3, 3, SALCOMUN_FrecuenciaMinima,
                                    SALCOMUN_FrecuenciaMaxima, SALCOMUN_Corta(canal, 3));
    return COFDM_SelectCanales(nombre, nombre, strJSOnBlurOnChangeCompruebacambios, plan, canal) +
           fila.Anterior(nombre, std::to_string(COFDM_CanalSeleccionado(plan, canal)));
}

// "frecstep": with a plan the step is fixed and carried hidden; with plan 0 a select of the
// steps the mode allows.
std::string SALCOMUNINT_WidgetPaso(const SALCOMUN_Fila &fila, int plan, bool modoQAM, const std::string &paso)
{
    const std::string nombre = fila.Nombre("frecstep");
    if (plan != 0)
        return SALCOMUN_NoAplicable(nombre, SALCOMUN_PasoConPlan);
    const long numero = UTILS_Numero(paso, -1);
    const std::string valor = modoQAM && numero >= SALCOMUN_PrimerPasoFueraQAM ? "0" : SALCOMUNINT_ValorOpcion(paso, numero);
    return SALCOMUN_CampoSelect(fila, nombre, strJSOnBlurOnChangeCompruebacambios, SALCOMUN_OpcionesPaso(modoQAM),
                                valor);
}

// The COFDM output page's save.

// All required: the settings a mode does not use come back from their hidden inputs.
constexpr SALCOMUN_Clave SALCOMUNINT_ClavesSalidaCOFDM[] = {
    {"numcanales", true}, {"outtab", true}, {"outchn", true}, {"outlev", true}, {"outmod", true},
    {"frecstep", true},   {"bwsal", true},  {"ingrd", true},  {"fecsal", true}, {"cellid", true},
    {"outbau", true},     {"outout", true}, {"outrfl", true},
};

// Written in this order, each value as received.
constexpr SALCOMUN_CampoUnidad SALCOMUNINT_EscriturasSalidaCOFDM[] = {
    {"outtab", UTILSXML_GrabaSALCODFMTABLA},
    {"outmod", UTILSXML_GrabaSALCODFMMODO},
    {"ingrd", UTILSXML_GrabaSALCODFMGUARDA},
    {"outbau", UTILSXML_GrabaSALCODFMBAUDRATE},
    {"outchn", UTILSXML_GrabaSALCODFMFREC},
    {"frecstep", UTILSXML_GrabaSALCODFMFRECSTEP},
    {"fecsal", UTILSXML_GrabaSALCODFMFEC},
    {"outout", UTILSXML_GrabaSALCODFMSALIDA},
    {"outlev", UTILSXML_GrabaSALCODFMNIVEL},
    {"bwsal", UTILSXML_GrabaSALCODFMBW},
    {"cellid", UTILSXML_GrabaSALCODFMCELLID},
    {"outrfl", UTILSXML_GrabaSALCODFMLoopRF},
};


}  // namespace

// An identifier edited as four hexadecimal digits behind a read-only "0x".
std::string SALCOMUN_CampoHexa(const SALCOMUN_Fila &fila, const std::string &nombre, unsigned minimo,
                                  std::string_view valor)
{
    return std::string(htmlcaptioncerox) +
           CTESHTML_Input(htmlinput, nombre, TAM_HEXA, nombre, strJSPermititHexa,
                          UTILS_Formatea(strJSValidarHexa, minimo, HEXA_MAXIMO), strJSOnBlurOnChangeCompruebacambios,
                          valor, TAM_HEXA) +
           fila.Anterior(nombre, valor);
}

// A field the unit's mode does not use: the stored value goes back hidden, "n/a" is shown.
std::string SALCOMUN_NoAplicable(const std::string &nombre, std::string_view valor)
{
    return UTILS_Formatea(htmlnoaplicablemodo, CTESHTML_Oculto(nombre, nombre, valor).c_str());
}

// NIT and SDT versions: 0..31 and 32 "Auto".
std::vector<CTESHTML_Opcion> SALCOMUN_OpcionesVersion()
{
    std::vector<CTESHTML_Opcion> versiones = CTESHTML_OpcionesRango(0, SALCOMUN_UltimaVersion);
    versiones.push_back({SALCOMUN_VersionAuto.valor, SALCOMUN_VersionAuto.texto});
    return versiones;
}

int SALCOMUN_PintaLineaTransporteDVB(int tipoUnidad, xmlDocPtr config, int esMaster, int configTotal, uint8_t canales,
                                     int opciones, const char *modelo, const char *sufijo)
{
    const SALCOMUN_Fila fila = SALCOMUN_PreparaFila(config, esMaster, sufijo, configTotal != 0);
    const bool haySalidaIP = (opciones & 1) != 0;

    SALCOMUNINT_Columnas columnas;
    for (const SALCOMUNINT_CampoRed &campo : SALCOMUNINT_CamposRed)
        columnas[campo.columna].Linea(SALCOMUNINT_PintaCampoRed(fila, campo));

    int lineas = 0;
    for (int canal = 1; canal <= canales; ++canal) {
        const std::string lcn =
            UTILSXML_LeeTexto(UTILSXML_LeeSALTSCanalLCN, config, TAM_TEXTO, static_cast<uint8_t>(canal));
        SALCOMUNINT_AnadeLinea(columnas, SALCOMUN_LineaCanal(fila, canal, SALCOMUNINT_Medidas),
                               SALCOMUNINT_CampoLCN(fila, canal, lcn));
        ++lineas;
    }
    if (haySalidaIP) {
        // The selected services of the IP inputs follow the channels, numbered on from them.
        for (const SALCOMUN_ServicioIP servicio : SALCOMUN_ServiciosSeleccionados(config)) {
            const int linea = ++lineas;
            const std::string lcn = UTILSXML_LeeTexto(UTILSXML_LeeENTRAIPSERVICELCN, config, TAM_TEXTO, servicio.entrada,
                                                 servicio.servicio);
            SALCOMUNINT_AnadeLinea(columnas, SALCOMUN_LineaServicio(fila, linea, servicio, SALCOMUNINT_Medidas),
                                   SALCOMUNINT_CampoLCN(fila, linea, lcn));
        }
    }
    const std::string totalLineas = std::to_string(lineas);

    if (fila.configTotal) {
        // The advanced page carries "numcanales", "tipounidad" and "haysalidaip" itself; the
        // line count goes with the lines so that their IP services can be stored.
        columnas[COL_PIDAUDIO].html += SALCOMUN_Oculto(fila, "ntotserv", totalLineas);
        UTILS_Imprime(UTILS_Formatea(
            htmlConfigTotalTransportConfigCOFDM, columnas[0].html.c_str(), columnas[1].html.c_str(),
            columnas[2].html.c_str(), columnas[3].html.c_str(), columnas[4].html.c_str(), columnas[5].html.c_str(),
            columnas[6].html.c_str(), columnas[7].html.c_str(), columnas[8].html.c_str(), columnas[9].html.c_str(),
            columnas[10].html.c_str(), columnas[11].html.c_str(), columnas[12].html.c_str(),
            columnas[13].html.c_str(), columnas[14].html.c_str()));
        return 0;
    }

    const std::string ocultos = SALCOMUN_OcultosUnidad(fila, canales, tipoUnidad) +
                                SALCOMUN_Oculto(fila, "haysalidaip", haySalidaIP ? "1" : "0") +
                                SALCOMUN_Oculto(fila, "ntotserv", totalLineas);
    const SALCOMUN_CeldasUnidad unidad = SALCOMUN_CeldasConfig(fila, modelo);
    const std::string forzar = fila.Nombre("forzarconfig");
    UTILS_Imprime(UTILS_Formatea(
        htmlinfotransporteCOFDM, unidad.orden.c_str(), unidad.modelo.c_str(), columnas[0].html.c_str(),
        columnas[1].html.c_str(), columnas[2].html.c_str(), columnas[3].html.c_str(), columnas[4].html.c_str(),
        columnas[5].html.c_str(), columnas[6].html.c_str(), columnas[7].html.c_str(), columnas[8].html.c_str(),
        columnas[9].html.c_str(), columnas[10].html.c_str(), columnas[11].html.c_str(), columnas[12].html.c_str(),
        columnas[13].html.c_str(), columnas[14].html.c_str(), forzar.c_str(), forzar.c_str(),
        SALCOMUN_MarcaForzar(config), ocultos.c_str()));
    return 0;
}

// The family as the page entries see it.
std::string SALCOMUN_CierreTransporteDVB(int unidades)
{
    const std::string nit =
        SALCOMUN_SelectTodasOpciones("nitvs", SALCOMUN_OpcionesVersion(), strJSCambioTodas);
    const std::string sdt =
        SALCOMUN_SelectTodasOpciones("sdtvs", SALCOMUN_OpcionesVersion(), strJSCambioTodas);
    return UTILS_Formatea(htmlultimalineaTransporteCOFDM, unidades, nit.c_str(), sdt.c_str());
}

const SALCOMUN_PaginaGrabar SALCOMUN_GrabarTransporteDVB = {SALCOMUNINT_ClavesDVB, SALCOMUNINT_EscriturasDVB,
                                                           SALCOMUNINT_ListasDVB};

// The frequency steps of plan 0: 0..11 in OFDM modes, 0, 3, 6 and 9 in QAM modes.
std::vector<CTESHTML_Opcion> SALCOMUN_OpcionesPaso(bool modoQAM)
{
    if (!modoQAM)
        return CTESHTML_OpcionesEtiquetas(FrecuencyStepCOFDM, 0, SALCOMUN_UltimoPasoOFDM);
    std::vector<CTESHTML_Opcion> pasos;
    for (int paso : SALCOMUN_PasosQAM)
        pasos.push_back(CTESHTML_OpcionesEtiquetas(FrecuencyStepCOFDM, paso, paso).front());
    return pasos;
}

int SALCOMUN_PintaLineaSalidaCOFDM(const SALCOMUN_VarianteCOFDM &variante, xmlDocPtr config, int esMaster,
                                   int configTotal, uint8_t canales, const char *modelo, const char *sufijo)
{
    const SALCOMUN_Fila fila = SALCOMUN_PreparaFila(config, esMaster, sufijo, configTotal != 0);

    const int modo = variante.modo(UTILSXML_LeeTexto(UTILSXML_LeeSALCODFMMODO, config, TAM_TEXTO, "0"));
    const bool modoQAM = variante.esModoQAM(modo);

    // The plans the mode offers; another stored plan selects nothing and, like an unreadable
    // one, gets the typed frequency of plan 0.
    const std::vector<CTESHTML_Opcion> planes = variante.opcionesPlan(modoQAM);
    const std::string tabla = UTILSXML_LeeTexto(UTILSXML_LeeSALCODFMTABLA, config, TAM_TEXTO);
    const long numeroTabla = UTILS_Numero(tabla, -1);
    const bool planOfrecido = std::any_of(planes.begin(), planes.end(), [&](const CTESHTML_Opcion &o) {
        return o.valor == std::to_string(numeroTabla);
    });
    const int plan = planOfrecido ? static_cast<int>(numeroTabla) : 0;
    const std::string celdaTabla = SALCOMUN_CampoSelect(fila, fila.Nombre("outtab"), strJSCambioTablacanalsalidaCOFDM,
                                                        planes, planOfrecido ? std::to_string(plan) : tabla);
    const std::string celdaCanal =
        CTESHTML_Div("divoutchn" + fila.sufijo,
                     SALCOMUNINT_WidgetCanal(fila, plan, UTILSXML_LeeTexto(UTILSXML_LeeSALCODFMFREC, config, TAM_TEXTO)));

    const std::string celdaModo = SALCOMUN_CampoSelect(fila, fila.Nombre("outmod"), variante.eventoModo,
                                                       variante.opcionesModo(), std::to_string(modo));
    const std::string celdaPaso = CTESHTML_Div(
        "divfrecstep" + fila.sufijo,
        SALCOMUNINT_WidgetPaso(fila, plan, modoQAM, UTILSXML_LeeTexto(UTILSXML_LeeSALCODFMFRECSTEP, config, TAM_TEXTO)));

    const std::string celdaNivel = SALCOMUN_CampoEntero(fila, htmlinputLCN, fila.Nombre("outlev"), 2, 2, 0, 99,
                                                        UTILSXML_LeeTexto(UTILSXML_LeeSALCODFMNIVEL, config, TAM_TEXTO));

    std::array<std::string, SALCOMUNINT_NumCamposOFDM> celdasOFDM;
    for (std::size_t i = 0; i < SALCOMUNINT_NumCamposOFDM; ++i)
        celdasOFDM[i] = SALCOMUNINT_PintaCampoOFDM(fila, SALCOMUNINT_CamposOFDM[i], modoQAM);

    // The baud rate is the cable signal's setting: editable in QAM modes, where the family lets
    // it be set at all.
    const std::string baudios = UTILSXML_LeeTexto(UTILSXML_LeeSALCODFMBAUDRATE, config, TAM_TEXTO);
    const std::string valorBaudios = SALCOMUN_Corta(baudios, SALCOMUN_TieneDecimales(baudios) ? 5 : 1);
    const std::string nombreBaudios = fila.Nombre("outbau");
    const std::string celdaBaudios = CTESHTML_Div(
        "divbaudrate" + fila.sufijo,
        CTESHTML_Input(htmlinput, nombreBaudios, 5, nombreBaudios, strJSPermitirreales,
                       UTILS_Formatea(strJSvalidaEntDecimales, "1", "7.2", 4),
                       std::string(strJSOnBlurOnChangeCompruebacambios) + (modoQAM && variante.baudiosEnQAM ? "" : " disabled"), valorBaudios,
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
        SALCOMUN_OcultosUnidad(fila, canales, variante.tipoUnidad) +
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

std::string SALCOMUN_CierreSalidaCOFDM(const SALCOMUN_VarianteCOFDM &variante, int unidades)
{
    // The plans of both kinds of mode, in plan order.
    std::vector<CTESHTML_Opcion> planes = variante.opcionesPlan(false);
    for (const CTESHTML_Opcion &plan : variante.opcionesPlan(true))
        if (std::none_of(planes.begin(), planes.end(), [&](const CTESHTML_Opcion &o) { return o.valor == plan.valor; }))
            planes.push_back(plan);
    std::stable_sort(planes.begin(), planes.end(), [](const CTESHTML_Opcion &a, const CTESHTML_Opcion &b) {
        return UTILS_Numero(a.valor) < UTILS_Numero(b.valor);
    });
    const std::string tablas = SALCOMUN_SelectTodasOpciones("outtab", planes, strJSCambioTodas);
    const std::string pasos =
        SALCOMUN_SelectTodasOpciones("frecstep", SALCOMUN_OpcionesPaso(false), strJSCambioTodas);
    const std::string modos =
        SALCOMUN_SelectTodasOpciones("outmod", variante.opcionesModo(), strJSCambioTodas);
    const std::string anchos = SALCOMUN_SelectTodas("bwsal", SALCOMUN_AnchosBanda, strJSCambioTodas);
    const std::string guardas = SALCOMUN_SelectTodas("ingrd", SALCOMUN_IntervalosGuarda, strJSCambioTodas);
    const std::string fecs = SALCOMUN_SelectTodas("fecsal", SALCOMUN_FECs, strJSCambioTodas);
    const std::string salidas =
        SALCOMUN_SelectTodas("outout", SALCOMUN_TiposSalidaTodas, strJSCambioSalidaTodas);
    return UTILS_Formatea(htmlultimalineaSalidaCOFDM, unidades, tablas.c_str(), pasos.c_str(), modos.c_str(),
                          anchos.c_str(), guardas.c_str(), fecs.c_str(), salidas.c_str());
}

const SALCOMUN_PaginaGrabar SALCOMUN_GrabarSalidaCOFDM = {SALCOMUNINT_ClavesSalidaCOFDM,
                                                         SALCOMUNINT_EscriturasSalidaCOFDM};
