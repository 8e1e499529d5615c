// utilsXML_int.h: the store's own helpers: the generic accessor behind every generated
// reader and writer, the unit-file scan, the version reads and the list copies.
#pragma once

#include "utilsXML/utilsXML.h"

#include <string>

// Which document an element belongs to; decides where its version is read.
enum class UTILSXMLINT_Documento : uint8_t { Config, Status };

// One element of a document: one row of the element lists.
struct UTILSXMLINT_Campo {
    UTILSXMLINT_Documento documento;
    const char *ruta;  // printf pattern filled with the index bytes in order
    uint16_t minimo;   // smallest read buffer accepted
    long version;      // first document version that has the element; 0 = all
};

// Generic reader: null checks, minimum size, version gate, zero-filled buffer, content
// read of the first matching node (over-long text cut at a UTF-8 boundary below tam).
int UTILSXMLINT_LeeCampo(const UTILSXMLINT_Campo &campo, xmlDocPtr documento, char *buffer, uint16_t tam,
                         int indice1, int indice2);
// Generic writer: null checks, version gate, content write of the first matching node.
// A missing node is an error: writers never create elements.
int UTILSXMLINT_GrabaCampo(const UTILSXMLINT_Campo &campo, xmlDocPtr documento, const char *valor,
                           int indice1, int indice2);
// Writer that writes first and looks at the version only when the write fails: a
// document older than the element (or without a version) makes the failure a success.
int UTILSXMLINT_GrabaCampoTolerante(const UTILSXMLINT_Campo &campo, xmlDocPtr documento, const char *valor,
                                    int indice1, int indice2);
// One-character flags.
int UTILSXMLINT_LeeCaracter(const UTILSXMLINT_Campo &campo, xmlDocPtr documento, char *caracter, int indice1,
                            int indice2);
int UTILSXMLINT_GrabaCaracter(const UTILSXMLINT_Campo &campo, xmlDocPtr documento, char caracter, int indice1,
                              int indice2);

// The element's path with its index values; empty if it does not fit.
std::string UTILSXMLINT_Ruta(const char *patron, int indice1, int indice2);

// Version of the document: the decimal text of its CONFIGVERS; 0 when absent.
int UTILSXMLINT_CheckFileVersion(xmlDocPtr documento);
int UTILSXMLINT_CheckStatusFileVersion(xmlDocPtr documento);

// Name of the next entry of the stream that names a unit document of the kind: it begins
// with "network" (kind 0) or "sondeo" (kind 1) and ends in ".xml". Null when none is left,
// for a null stream or for a kind of 2 or more.
const char *UTILSXMLINT_BuscaFichero(UTILSXML_Directorio *directorio, uint8_t tipo);

// List copies (entry source onto entry destination), bounded by the counts.
int UTILSXMLINT_CopyEntradaIP(xmlDocPtr documento, uint8_t destino, uint8_t origen);
int UTILSXMLINT_CopyServicioEntradaIP(xmlDocPtr documento, uint8_t entradaDestino, uint8_t servicioDestino,
                                      uint8_t entradaOrigen, uint8_t servicioOrigen);
int UTILSXMLINT_CopyEntradaIPenSalidaIP(xmlDocPtr documento, uint8_t destino, uint8_t origen);
int UTILSXMLINT_STATUS_CopyEntradaIP(xmlDocPtr documento, uint8_t destino, uint8_t origen);
int UTILSXMLINT_STATUS_CopyServicioEntradaIP(xmlDocPtr documento, uint8_t entradaDestino, uint8_t servicioDestino,
                                             uint8_t entradaOrigen, uint8_t servicioOrigen);

// ---------------------------------------------------------------------------
// Definitions of the generated accessors. The including source defines
// UTILSXMLINT_DOCUMENTO (the document of its list) and includes the list once.
// ---------------------------------------------------------------------------

#define UTILSXMLINT_DEFINE_0(ruta, lee, graba, minimo, version)                                          \
    int lee(xmlDocPtr documento, char *buffer, uint16_t tam)                                             \
    {                                                                                                    \
        return UTILSXMLINT_LeeCampo({UTILSXMLINT_DOCUMENTO, ruta, minimo, version}, documento, buffer,   \
                                    tam, 0, 0);                                                          \
    }                                                                                                    \
    int graba(xmlDocPtr documento, const char *valor)                                                    \
    {                                                                                                    \
        return UTILSXMLINT_GrabaCampo({UTILSXMLINT_DOCUMENTO, ruta, minimo, version}, documento, valor,  \
                                      0, 0);                                                             \
    }
#define UTILSXMLINT_DEFINE_1(ruta, lee, graba, minimo, version)                                          \
    int lee(xmlDocPtr documento, char *buffer, uint16_t tam, uint8_t indice)                             \
    {                                                                                                    \
        return UTILSXMLINT_LeeCampo({UTILSXMLINT_DOCUMENTO, ruta, minimo, version}, documento, buffer,   \
                                    tam, indice, 0);                                                     \
    }                                                                                                    \
    int graba(xmlDocPtr documento, const char *valor, uint8_t indice)                                    \
    {                                                                                                    \
        return UTILSXMLINT_GrabaCampo({UTILSXMLINT_DOCUMENTO, ruta, minimo, version}, documento, valor,  \
                                      indice, 0);                                                        \
    }
#define UTILSXMLINT_DEFINE_2(ruta, lee, graba, minimo, version)                                          \
    int lee(xmlDocPtr documento, char *buffer, uint16_t tam, uint8_t entrada, uint8_t servicio)          \
    {                                                                                                    \
        return UTILSXMLINT_LeeCampo({UTILSXMLINT_DOCUMENTO, ruta, minimo, version}, documento, buffer,   \
                                    tam, entrada, servicio);                                             \
    }                                                                                                    \
    int graba(xmlDocPtr documento, const char *valor, uint8_t entrada, uint8_t servicio)                 \
    {                                                                                                    \
        return UTILSXMLINT_GrabaCampo({UTILSXMLINT_DOCUMENTO, ruta, minimo, version}, documento, valor,  \
                                      entrada, servicio);                                                \
    }
#define UTILSXMLINT_DEFINE_TOLERANTE_0(ruta, lee, graba, minimo, version)                                \
    int lee(xmlDocPtr documento, char *buffer, uint16_t tam)                                             \
    {                                                                                                    \
        return UTILSXMLINT_LeeCampo({UTILSXMLINT_DOCUMENTO, ruta, minimo, version}, documento, buffer,   \
                                    tam, 0, 0);                                                          \
    }                                                                                                    \
    int graba(xmlDocPtr documento, const char *valor)                                                    \
    {                                                                                                    \
        return UTILSXMLINT_GrabaCampoTolerante({UTILSXMLINT_DOCUMENTO, ruta, minimo, version},          \
                                               documento, valor, 0, 0);                                  \
    }
#define UTILSXMLINT_DEFINE_CARACTER_0(ruta, lee, graba, minimo, version)                                 \
    int lee(xmlDocPtr documento, char *caracter)                                                         \
    {                                                                                                    \
        return UTILSXMLINT_LeeCaracter({UTILSXMLINT_DOCUMENTO, ruta, minimo, version}, documento,        \
                                       caracter, 0, 0);                                                  \
    }                                                                                                    \
    int graba(xmlDocPtr documento, char caracter)                                                        \
    {                                                                                                    \
        return UTILSXMLINT_GrabaCaracter({UTILSXMLINT_DOCUMENTO, ruta, minimo, version}, documento,      \
                                         caracter, 0, 0);                                                \
    }
#define UTILSXMLINT_DEFINE_CARACTER_1(ruta, lee, graba, minimo, version)                                 \
    int lee(xmlDocPtr documento, char *caracter, uint8_t indice)                                         \
    {                                                                                                    \
        return UTILSXMLINT_LeeCaracter({UTILSXMLINT_DOCUMENTO, ruta, minimo, version}, documento,        \
                                       caracter, indice, 0);                                             \
    }                                                                                                    \
    int graba(xmlDocPtr documento, char caracter, uint8_t indice)                                        \
    {                                                                                                    \
        return UTILSXMLINT_GrabaCaracter({UTILSXMLINT_DOCUMENTO, ruta, minimo, version}, documento,      \
                                         caracter, indice, 0);                                           \
    }
#define UTILSXMLINT_DEFINE_SELECTOR(rutaSi, rutaNo, lee, graba, minimo, version)                         \
    int lee(xmlDocPtr documento, char *buffer, uint16_t tam, uint8_t selector)                           \
    {                                                                                                    \
        return UTILSXMLINT_LeeCampo({UTILSXMLINT_DOCUMENTO, selector != 0 ? rutaSi : rutaNo, minimo,     \
                                     version},                                                           \
                                    documento, buffer, tam, 0, 0);                                       \
    }                                                                                                    \
    int graba(xmlDocPtr documento, const char *valor, uint8_t selector)                                  \
    {                                                                                                    \
        return UTILSXMLINT_GrabaCampo({UTILSXMLINT_DOCUMENTO, selector != 0 ? rutaSi : rutaNo, minimo,   \
                                       version},                                                         \
                                      documento, valor, 0, 0);                                           \
    }
