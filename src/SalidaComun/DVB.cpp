// DVB.cpp: the transport page shared by the DVB families.
#include "SalidaComun/DVB.h"

#include "utils/utils.h"
#include "utilsXML/utilsXML.h"

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
