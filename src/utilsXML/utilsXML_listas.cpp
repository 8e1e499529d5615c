// utilsXML_listas.cpp: the lists of the unit documents that grow and shrink: the IP
// inputs (INPUT<n>, counted by NUMINP), the services of each IP input (ISER<n>, counted
// by the input's NUM) and the IP outputs (SALIDA<n>, one per IP input, no count of their
// own). Entries are always numbered 1 to count: a new one gets count + 1, and a deleted
// one is filled by moving every later entry one place down.
//
// The configuration and the status document keep their IP inputs the same way; one set
// of operations serves both, driven by the description of each document's list.
#include "utilsXML/utilsXML_int.h"

#include "funciones_XML/funciones_XML.h"

#include <cstdlib>
#include <span>
#include <string>

namespace {

using LeeNumero = int (*)(xmlDocPtr, char *, uint16_t);
using GrabaNumero = int (*)(xmlDocPtr, const char *);
using LeePorEntrada = int (*)(xmlDocPtr, char *, uint16_t, uint8_t);
using GrabaPorEntrada = int (*)(xmlDocPtr, const char *, uint8_t);
using LeePorServicio = int (*)(xmlDocPtr, char *, uint16_t, uint8_t, uint8_t);
using GrabaPorServicio = int (*)(xmlDocPtr, const char *, uint8_t, uint8_t);

// Values and counts travel through 100-byte buffers: a longer value is cut to at most 99
// bytes. One more byte keeps the text terminated whatever the XML layer copies.
constexpr uint16_t TAM_VALOR = 100;

struct CampoServicio {
    LeePorServicio lee;
    GrabaPorServicio graba;
};

struct CampoSalida {
    LeePorEntrada lee;
    GrabaPorEntrada graba;
};

// One element appended to a new entry: under the entry itself (bajo "") or under one of
// its children; a null value makes a container with no text.
struct ValorDefecto {
    const char *bajo;
    const char *nombre;
    const char *valor;
};

// The IP input list of one document.
struct ListaEntradas {
    int (*version)(xmlDocPtr);
    int versionMinima;
    const char *raiz;  // parent of NUMINP and of the INPUT elements
    LeeNumero leeNumEntradas;
    GrabaNumero grabaNumEntradas;
    LeePorEntrada leeNumServicios;
    GrabaPorEntrada grabaNumServicios;
    std::span<const CampoServicio> camposServicio;  // copied, in this order
    std::span<const ValorDefecto> defectosServicio;  // appended to a new service, in this order
};

// ---------------------------------------------------------------------------
// The two documents' lists
// ---------------------------------------------------------------------------

const CampoServicio camposServicioConfig[] = {
    {UTILSXML_LeeENTRAIPSERVNAME, UTILSXML_GrabaENTRAIPSERVNAME},
    {UTILSXML_LeeENTRAIPSERVSEL, UTILSXML_GrabaENTRAIPSERVSEL},
    {UTILSXML_LeeENTRAIPSERVICEID, UTILSXML_GrabaENTRAIPSERVICEID},
    {UTILSXML_LeeENTRAIPSERVNAMEOUT, UTILSXML_GrabaENTRAIPSERVNAMEOUT},
    {UTILSXML_LeeENTRAIPSERVICEIDOUT, UTILSXML_GrabaENTRAIPSERVICEIDOUT},
    {UTILSXML_LeeENTRAIPSERVICELCN, UTILSXML_GrabaENTRAIPSERVICELCN},
    {UTILSXML_LeeENTRAIPSERVICETABLETYPE, UTILSXML_GrabaENTRAIPSERVICETABLETYPE},
    {UTILSXML_LeeENTRAIPSERVICEMAJOR, UTILSXML_GrabaENTRAIPSERVICEMAJOR},
    {UTILSXML_LeeENTRAIPSERVICEMINOR, UTILSXML_GrabaENTRAIPSERVICEMINOR},
};

const ValorDefecto defectosServicioConfig[] = {
    {"", "NOMBRE", "MBRO1"},
    {"", "SEL", "0"},
    {"", "SERVICEID", "1"},
    {"", "NOMBREOUT", "MBRO1"},
    {"", "SERVICEIDOUT", "1"},
    {"", "LCN", "1"},
    {"", "CHNUMBER", nullptr},
    {"/CHNUMBER", "TABLETYPE", "0"},
    {"/CHNUMBER", "MAJOR", "1"},
    {"/CHNUMBER", "MINOR", "1"},
};

const CampoServicio camposServicioStatus[] = {
    {UTILSXML_STATUS_LeeENTRAIPSERVBITRATE, UTILSXML_STATUS_GrabaENTRAIPSERVBITRATE},
    {UTILSXML_STATUS_LeeENTRAIPSERVMAXBITRATE, UTILSXML_STATUS_GrabaENTRAIPSERVMAXBITRATE},
};

const ValorDefecto defectosServicioStatus[] = {
    {"", "BITRATE", "0"},
    {"", "MAXBITRATE", "0"},
};

const ListaEntradas listaConfig = {
    UTILSXML_CheckVersionConfig,
    3,
    "/ENCODERCONFIG/SERVICIOSIP",
    UTILSXML_LeeENTRIPNUM,
    UTILSXML_GrabaENTRIPNUM,
    UTILSXML_LeeENTRAIPNUMSERV,
    UTILSXML_GrabaENTRAIPNUMSERV,
    camposServicioConfig,
    defectosServicioConfig,
};

const ListaEntradas listaStatus = {
    UTILSXML_STATUS_CheckVersionConfig,
    4,
    "/ENCODERSTATUS/SERVICIOSIP",
    UTILSXML_STATUS_LeeENTRIPNUM,
    UTILSXML_STATUS_GrabaENTRIPNUM,
    UTILSXML_STATUS_LeeENTRAIPNUMSERV,
    UTILSXML_STATUS_GrabaENTRAIPNUMSERV,
    camposServicioStatus,
    defectosServicioStatus,
};

// The IP outputs of the configuration document (from version 3).
constexpr int versionSalidas = 3;
const char *const raizSalidas = "/ENCODERCONFIG/SALIDAIP";

// ESTANDAR is not copied: a unit that has it supplies it itself.
const CampoSalida camposSalida[] = {
    {UTILSXML_LeeSALIPEnabled, UTILSXML_GrabaSALIPEnabled},
    {UTILSXML_LeeSALIPIPDEST, UTILSXML_GrabaSALIPIPDEST},
    {UTILSXML_LeeSALIPPuerto, UTILSXML_GrabaSALIPPuerto},
    {UTILSXML_LeeSALIPIPORIG, UTILSXML_GrabaSALIPIPORIG},
    {UTILSXML_LeeSALIPPuertoOrigen, UTILSXML_GrabaSALIPPuertoOrigen},
    {UTILSXML_LeeSALIPPaquetes, UTILSXML_GrabaSALIPPaquetes},
    {UTILSXML_LeeSALIPProtocol, UTILSXML_GrabaSALIPProtocol},
    {UTILSXML_LeeSALIPFEC, UTILSXML_GrabaSALIPFEC},
    {UTILSXML_LeeSALIPROWFEC, UTILSXML_GrabaSALIPROWFEC},
    {UTILSXML_LeeSALIPCOLFEC, UTILSXML_GrabaSALIPCOLFEC},
    {UTILSXML_LeeSALIPFECTYPE, UTILSXML_GrabaSALIPFECTYPE},
};

// ROWFEC and COLFEC start with the port text "1026": that is what the units expect.
const ValorDefecto defectosSalida[] = {
    {"", "ENABLED", "0"},
    {"", "IPDEST", "1.1.1.1"},
    {"", "PUERTO", "1025"},
    {"", "IPORIG", "1.1.1.1"},
    {"", "PUERTOORIGEN", "1026"},
    {"", "PKTES", "1"},
    {"", "PROTOCOL", "0"},
    {"", "FEC", "0"},
    {"", "ROWFEC", "1026"},
    {"", "COLFEC", "1026"},
    {"", "FECTYPE", "0"},
};

// ---------------------------------------------------------------------------
// Helpers
// ---------------------------------------------------------------------------

// Reads a count through its accessor; -1 when the element cannot be read.
template <typename Lector, typename... Indices>
int leeCuenta(Lector lector, xmlDocPtr documento, long &cuenta, Indices... indices)
{
    char texto[TAM_VALOR + 1] = {};
    if (lector(documento, texto, TAM_VALOR, indices...) != 0)
        return -1;
    cuenta = std::strtol(texto, nullptr, 10);
    return 0;
}

std::string numerado(const char *nombre, long numero) { return nombre + std::to_string(numero); }

// Appends a new entry element under padre and its default children. 0 or the first
// failing append's error.
int anadeEntrada(xmlDocPtr documento, const std::string &padre, const std::string &nombre,
                 std::span<const ValorDefecto> defectos)
{
    int error = FUNCXML_AddNodoXML(documento, padre.c_str(), nombre.c_str(), nullptr);
    const std::string entrada = padre + "/" + nombre;
    for (const ValorDefecto &defecto : defectos) {
        if (error != 0)
            break;
        error = FUNCXML_AddNodoXML(documento, (entrada + defecto.bajo).c_str(), defecto.nombre, defecto.valor);
    }
    return error;
}

std::string rutaEntrada(const ListaEntradas &lista, long entrada) { return lista.raiz + std::string("/") + numerado("INPUT", entrada); }

// ---------------------------------------------------------------------------
// IP inputs and their services, either document
// ---------------------------------------------------------------------------

int borraEntrada(const ListaEntradas &lista, xmlDocPtr documento, uint8_t entrada);

int copiaServicio(const ListaEntradas &lista, xmlDocPtr documento, uint8_t entradaDestino, uint8_t servicioDestino,
                  uint8_t entradaOrigen, uint8_t servicioOrigen)
{
    long cuentaOrigen = 0;
    long cuentaDestino = 0;
    if (leeCuenta(lista.leeNumServicios, documento, cuentaOrigen, entradaOrigen) != 0 ||
        leeCuenta(lista.leeNumServicios, documento, cuentaDestino, entradaDestino) != 0)
        return -1;
    if (cuentaOrigen < 1 || cuentaDestino < 1 || servicioDestino > cuentaDestino || servicioOrigen > cuentaOrigen)
        return 0;
    for (const CampoServicio &campo : lista.camposServicio) {
        char valor[TAM_VALOR + 1] = {};
        if (campo.lee(documento, valor, TAM_VALOR, entradaOrigen, servicioOrigen) != 0 ||
            campo.graba(documento, valor, entradaDestino, servicioDestino) != 0)
            return -1;
    }
    return 0;
}

int creaServicio(const ListaEntradas &lista, xmlDocPtr documento, uint8_t entrada)
{
    if (lista.version(documento) < lista.versionMinima)
        return -1;
    long cuenta = 0;
    if (leeCuenta(lista.leeNumServicios, documento, cuenta, entrada) != 0)
        return -1;
    if (cuenta < 0)
        return 0;
    const long nuevo = cuenta + 1;
    int error = anadeEntrada(documento, rutaEntrada(lista, entrada), numerado("ISER", nuevo), lista.defectosServicio);
    if (error != 0) {
        // The system's clean-up after a failed append deletes the IP input that carries
        // the new service's number.
        borraEntrada(lista, documento, static_cast<uint8_t>(nuevo));
        return error;
    }
    if (lista.grabaNumServicios(documento, std::to_string(nuevo).c_str(), entrada) != 0)
        return -1;
    return static_cast<int>(nuevo);
}

int borraServicio(const ListaEntradas &lista, xmlDocPtr documento, uint8_t entrada, uint8_t servicio)
{
    if (lista.version(documento) < lista.versionMinima)
        return -1;
    long cuenta = 0;
    if (leeCuenta(lista.leeNumServicios, documento, cuenta, entrada) != 0)
        return -1;
    if (cuenta < 1 || cuenta < servicio)
        return 0;
    for (long k = servicio; k < cuenta; ++k)
        if (copiaServicio(lista, documento, entrada, static_cast<uint8_t>(k), entrada, static_cast<uint8_t>(k + 1)) != 0)
            break;
    const std::string ultimo = rutaEntrada(lista, entrada) + "/" + numerado("ISER", cuenta);
    if (int error = FUNCXML_BorraNodoXML(documento, ultimo.c_str()); error != 0)
        return error;
    return lista.grabaNumServicios(documento, std::to_string(cuenta - 1).c_str(), entrada) == 0 ? 0 : -1;
}

// Gives the destination input exactly the services of the source input.
int copiaEntrada(const ListaEntradas &lista, xmlDocPtr documento, uint8_t destino, uint8_t origen)
{
    if (lista.version(documento) < lista.versionMinima)
        return -1;
    long entradas = 0;
    if (leeCuenta(lista.leeNumEntradas, documento, entradas) != 0)
        return -1;
    if (entradas < 2 || entradas < destino || entradas < origen)
        return 0;
    long cuentaDestino = 0;
    long cuentaOrigen = 0;
    if (leeCuenta(lista.leeNumServicios, documento, cuentaDestino, destino) != 0 ||
        leeCuenta(lista.leeNumServicios, documento, cuentaOrigen, origen) != 0)
        return -1;
    if (cuentaDestino < 0 || cuentaOrigen < 0)
        return 0;
    for (long k = 1; k <= cuentaOrigen; ++k) {
        if (k > cuentaDestino) {
            int nuevo = creaServicio(lista, documento, destino);
            if (nuevo < 1)
                return nuevo < 0 ? nuevo : -1;
            cuentaDestino = nuevo;
        }
        if (copiaServicio(lista, documento, destino, static_cast<uint8_t>(k), origen, static_cast<uint8_t>(k)) != 0)
            return -1;
    }
    for (long k = cuentaDestino; k > cuentaOrigen; --k)
        if (int error = borraServicio(lista, documento, destino, static_cast<uint8_t>(k)); error != 0)
            return error;
    return 0;
}

int creaEntrada(const ListaEntradas &lista, xmlDocPtr documento)
{
    if (lista.version(documento) < lista.versionMinima)
        return -1;
    long cuenta = 0;
    if (leeCuenta(lista.leeNumEntradas, documento, cuenta) != 0)
        return -1;
    if (cuenta < 0)
        return 0;
    const long nueva = cuenta + 1;
    static const ValorDefecto defectosEntrada[] = {{"", "NUM", "0"}};
    int error = anadeEntrada(documento, lista.raiz, numerado("INPUT", nueva), defectosEntrada);
    if (error != 0) {
        borraEntrada(lista, documento, static_cast<uint8_t>(nueva));
        return error;
    }
    if (lista.grabaNumEntradas(documento, std::to_string(nueva).c_str()) != 0)
        return -1;
    return static_cast<int>(nueva);
}

int borraEntrada(const ListaEntradas &lista, xmlDocPtr documento, uint8_t entrada)
{
    if (lista.version(documento) < lista.versionMinima)
        return -1;
    long cuenta = 0;
    if (leeCuenta(lista.leeNumEntradas, documento, cuenta) != 0)
        return -1;
    if (cuenta < 1 || cuenta < entrada)
        return 0;
    for (long k = entrada; k < cuenta; ++k)
        if (copiaEntrada(lista, documento, static_cast<uint8_t>(k), static_cast<uint8_t>(k + 1)) != 0)
            break;
    if (int error = FUNCXML_BorraNodoXML(documento, rutaEntrada(lista, cuenta).c_str()); error != 0)
        return error;
    return lista.grabaNumEntradas(documento, std::to_string(cuenta - 1).c_str()) == 0 ? 0 : -1;
}

}  // namespace

// ---------------------------------------------------------------------------
// Configuration document
// ---------------------------------------------------------------------------

int UTILSXML_CreaNuevaentradaIP(xmlDocPtr documento) { return creaEntrada(listaConfig, documento); }

int UTILSXML_BorraEntradaIP(xmlDocPtr documento, uint8_t entrada) { return borraEntrada(listaConfig, documento, entrada); }

int UTILSXML_CreaNuevoServicioEntradaIP(xmlDocPtr documento, uint8_t entrada)
{
    return creaServicio(listaConfig, documento, entrada);
}

int UTILSXML_BorraServicioEntradaIP(xmlDocPtr documento, uint8_t entrada, uint8_t servicio)
{
    return borraServicio(listaConfig, documento, entrada, servicio);
}

int UTILSXMLINT_CopyEntradaIP(xmlDocPtr documento, uint8_t destino, uint8_t origen)
{
    return copiaEntrada(listaConfig, documento, destino, origen);
}

int UTILSXMLINT_CopyServicioEntradaIP(xmlDocPtr documento, uint8_t entradaDestino, uint8_t servicioDestino,
                                      uint8_t entradaOrigen, uint8_t servicioOrigen)
{
    return copiaServicio(listaConfig, documento, entradaDestino, servicioDestino, entradaOrigen, servicioOrigen);
}

// IP outputs: their number follows NUMINP, one output per IP input.

int UTILSXMLINT_CopyEntradaIPenSalidaIP(xmlDocPtr documento, uint8_t destino, uint8_t origen)
{
    long entradas = 0;
    if (leeCuenta(UTILSXML_LeeENTRIPNUM, documento, entradas) != 0)
        return -1;
    if (entradas < 1 || destino > entradas || origen > entradas)
        return 0;
    for (const CampoSalida &campo : camposSalida) {
        char valor[TAM_VALOR + 1] = {};
        if (campo.lee(documento, valor, TAM_VALOR, origen) != 0 || campo.graba(documento, valor, destino) != 0)
            return -1;
    }
    return 0;
}

int UTILSXML_CreaNuevaentradaIPenSalidaIP(xmlDocPtr documento, uint8_t salida)
{
    if (UTILSXML_CheckVersionConfig(documento) < versionSalidas)
        return -1;
    long entradas = 0;
    if (leeCuenta(UTILSXML_LeeENTRIPNUM, documento, entradas) != 0)
        return -1;
    if (entradas < salida)
        return 0;
    int error = anadeEntrada(documento, raizSalidas, numerado("SALIDA", salida), defectosSalida);
    if (error != 0) {
        UTILSXML_BorraEntradaIPenSalidaIP(documento, salida);
        return error;
    }
    return 0;
}

int UTILSXML_BorraEntradaIPenSalidaIP(xmlDocPtr documento, uint8_t salida)
{
    if (UTILSXML_CheckVersionConfig(documento) < versionSalidas)
        return -1;
    long cuenta = 0;
    if (leeCuenta(UTILSXML_LeeENTRIPNUM, documento, cuenta) != 0)
        return -1;
    if (cuenta < 1 || cuenta < salida)
        return 0;
    for (long k = salida; k < cuenta; ++k)
        if (UTILSXMLINT_CopyEntradaIPenSalidaIP(documento, static_cast<uint8_t>(k), static_cast<uint8_t>(k + 1)) != 0)
            break;
    // No count to write back: the deletion of the matching IP input updates NUMINP.
    const std::string ultima = std::string(raizSalidas) + "/" + numerado("SALIDA", cuenta);
    return FUNCXML_BorraNodoXML(documento, ultima.c_str());
}

// ---------------------------------------------------------------------------
// Status document
// ---------------------------------------------------------------------------

int UTILSXML_STATUS_CreaNuevaentradaIP(xmlDocPtr documento) { return creaEntrada(listaStatus, documento); }

int UTILSXML_STATUS_BorraEntradaIP(xmlDocPtr documento, uint8_t entrada)
{
    return borraEntrada(listaStatus, documento, entrada);
}

int UTILSXML_STATUS_CreaNuevoServicioEntradaIP(xmlDocPtr documento, uint8_t entrada)
{
    return creaServicio(listaStatus, documento, entrada);
}

int UTILSXML_STATUS_BorraServicioEntradaIP(xmlDocPtr documento, uint8_t entrada, uint8_t servicio)
{
    return borraServicio(listaStatus, documento, entrada, servicio);
}

int UTILSXMLINT_STATUS_CopyEntradaIP(xmlDocPtr documento, uint8_t destino, uint8_t origen)
{
    return copiaEntrada(listaStatus, documento, destino, origen);
}

int UTILSXMLINT_STATUS_CopyServicioEntradaIP(xmlDocPtr documento, uint8_t entradaDestino, uint8_t servicioDestino,
                                             uint8_t entradaOrigen, uint8_t servicioOrigen)
{
    return copiaServicio(listaStatus, documento, entradaDestino, servicioDestino, entradaOrigen, servicioOrigen);
}
