// utilsXML: the unit configuration store. Where the master keeps the documents of every
// unit of the rack, how they are opened, walked and closed, and the typed accessors of
// the configuration document (ENCODERCONFIG) and the status document (ENCODERSTATUS),
// including the IP input, service and IP output lists that grow and shrink.
//
// Every accessor returns 0 for success and -1 for failure. Readers take the document, the
// caller's buffer and its size (at least the element's minimum), then the index bytes;
// writers take the document, a terminated text, then the index bytes. Values are stored
// and returned exactly as text; the accessors do no conversion. Elements newer than the
// document's CONFIGVERS are refused without touching the buffer or the document.
//
// Single-threaded, like the XML layer below it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <libxml/tree.h>
#include <string>
#include <string_view>
#include <vector>

// ---------------------------------------------------------------------------
// Storage locations and unit files
// ---------------------------------------------------------------------------

// Indexed by the library mode (0 or 1). Fixed texts of the system: callers map them with
// UTILS_MapeaRuta before use; the functions below do so themselves.
extern const char *const UTILSXML_DirectorioConfig[2];  // "/www/jaula/config", "/config"
extern const char *const UTILSXML_FicheroNetwork[2];    // the master's own configuration
extern const char *const UTILSXML_FicheroSondeo[2];     // the master's own inventory/status

// Indexed by the file kind: 0 configuration ("network"), 1 status ("sondeo").
extern const char *const UTILSXML_Nombres_Ficheros[2];
extern const uint32_t UTILSXML_Long_Nombres_Ficheros[2];

// The library mode; 1 ("/config") unless changed. The request entry always sets 1.
extern uint32_t UTILSXML_ModoLibreria;

// Size of the path buffers handed to UTILSXML_MASTER_AbreFicheroNetwork when the caller
// does not pass one.
constexpr size_t UTILSXML_LONG_RUTA = 512;

// Sets the library mode: 1 for a non-zero flag, else 0.
void UTILSXML_SetLibMode(uint8_t modo);
// The configuration directory of the current mode, mapped under CAMBIOIP_ROOT. The text
// belongs to this module and stays valid until the next call.
const char *UTILSXML_MiraPATHConfig();

// The master's own documents of the current mode, loaded read-only (null on failure), and
// their close: with grabar set the document is saved atomically first (a failed save is
// -1 and leaves the file as it was); the document is freed in every case. A null
// document is -1.
xmlDocPtr UTILSXML_AbrirFicheroNetwork();
int UTILSXML_CerrarFicheroNetwork(xmlDocPtr documento, uint8_t grabar);
xmlDocPtr UTILSXML_AbrirFicheroStatus();
int UTILSXML_CerrarFicheroStatus(xmlDocPtr documento, uint8_t grabar);

// The entries of the configuration directory, read once when it is opened and walked in
// the order of their names, so every page lists the units of the rack in the same order
// (by address, the zero-padded unit suffix) whatever order the file system keeps.
struct UTILSXML_Directorio {
    std::vector<std::string> nombres;
    size_t posicion = 0;
};

// The configuration directory opened as a stream of its entries (null when it cannot be
// read), and its close (-1 for a null stream).
UTILSXML_Directorio *UTILSXML_MASTER_AbredirectorioConfig();
int UTILSXML_MASTER_CerrarDirectorioConfig(UTILSXML_Directorio *directorio);

// A unit document of the given kind (0 configuration, 1 status). With an empty ruta the
// next matching entry of the stream is loaded and its full path left in ruta; with a path
// in ruta, that file is looked for among the matching entries (one rewind of the stream
// at most) and loaded. ruta holds tamRuta bytes; a path that does not fit is not loaded.
// The master's own network.xml and sondeo.xml match as well: callers skip them by name.
xmlDocPtr UTILSXML_MASTER_AbreFicheroNetwork(UTILSXML_Directorio *directorio, char *ruta, uint8_t tipo,
                                             size_t tamRuta = UTILSXML_LONG_RUTA);
// Closes a unit document, saving it atomically to ruta first when grabar is set. The
// document is freed in every case; a null document or path is -1 and frees nothing.
int UTILSXML_MASTER_CierraFicheroNetwork(xmlDocPtr documento, const char *ruta, uint8_t grabar);

// Format version of a configuration / status document as a number; 0 when absent.
int UTILSXML_CheckVersionConfig(xmlDocPtr documento);
int UTILSXML_STATUS_CheckVersionConfig(xmlDocPtr documento);

// ---------------------------------------------------------------------------
// Accessors, generated from the element lists
// ---------------------------------------------------------------------------

#define UTILSXMLINT_DECLARA_0(lee, graba)                        \
    int lee(xmlDocPtr documento, char *buffer, uint16_t tam);    \
    int graba(xmlDocPtr documento, const char *valor);
#define UTILSXMLINT_DECLARA_1(lee, graba)                                       \
    int lee(xmlDocPtr documento, char *buffer, uint16_t tam, uint8_t indice);   \
    int graba(xmlDocPtr documento, const char *valor, uint8_t indice);
#define UTILSXMLINT_DECLARA_2(lee, graba)                                                         \
    int lee(xmlDocPtr documento, char *buffer, uint16_t tam, uint8_t entrada, uint8_t servicio); \
    int graba(xmlDocPtr documento, const char *valor, uint8_t entrada, uint8_t servicio);
// One-character flags: the reader stores the node's single character (0 for an empty
// node; a longer text fails), the writer stores the character as a one-character text.
#define UTILSXMLINT_DECLARA_CARACTER_0(lee, graba) \
    int lee(xmlDocPtr documento, char *caracter);  \
    int graba(xmlDocPtr documento, char caracter);
#define UTILSXMLINT_DECLARA_CARACTER_1(lee, graba)                \
    int lee(xmlDocPtr documento, char *caracter, uint8_t indice); \
    int graba(xmlDocPtr documento, char caracter, uint8_t indice);

#define UTILSXML_CAMPO(ruta, lee, graba, minimo, version, indices) UTILSXMLINT_DECLARA_##indices(lee, graba)
#define UTILSXML_CARACTER(ruta, lee, graba, minimo, version, indices) \
    UTILSXMLINT_DECLARA_CARACTER_##indices(lee, graba)
#include "utilsXML/utilsXML_campos_config.def"

// Selector members: a non-zero selector byte takes the first path of the row.
#define UTILSXML_SELECTOR(rutaSi, rutaNo, lee, graba, minimo, version)           \
    int lee(xmlDocPtr documento, char *buffer, uint16_t tam, uint8_t selector); \
    int graba(xmlDocPtr documento, const char *valor, uint8_t selector);
#define UTILSXML_CAMPO(ruta, lee, graba, minimo, version, indices) UTILSXMLINT_DECLARA_##indices(lee, graba)
#define UTILSXML_CAMPO_TOLERANTE(ruta, lee, graba, minimo, version, indices) \
    UTILSXMLINT_DECLARA_##indices(lee, graba)
#include "utilsXML/utilsXML_campos_status.def"

#undef UTILSXMLINT_DECLARA_0
#undef UTILSXMLINT_DECLARA_1
#undef UTILSXMLINT_DECLARA_2
#undef UTILSXMLINT_DECLARA_CARACTER_0
#undef UTILSXMLINT_DECLARA_CARACTER_1

// ---------------------------------------------------------------------------
// A value as a text
// ---------------------------------------------------------------------------

// The accessors above by the number of indices they take.
using UTILSXML_Lector0 = int (*)(xmlDocPtr, char *, uint16_t);
using UTILSXML_Lector1 = int (*)(xmlDocPtr, char *, uint16_t, uint8_t);
using UTILSXML_Lector2 = int (*)(xmlDocPtr, char *, uint16_t, uint8_t, uint8_t);

// One value read through an accessor into a zeroed buffer of `tam` bytes (the pages' fixed
// sizes; one byte more keeps a value of exactly `tam` bytes whole), as a text; `defecto` when
// there is no accessor or document or the read fails, which `leido` tells when given.
std::string UTILSXML_LeeTexto(UTILSXML_Lector0 lector, xmlDocPtr documento, std::size_t tam,
                              std::string_view defecto = {}, bool *leido = nullptr);
std::string UTILSXML_LeeTexto(UTILSXML_Lector1 lector, xmlDocPtr documento, std::size_t tam, uint8_t indice,
                              std::string_view defecto = {}, bool *leido = nullptr);
std::string UTILSXML_LeeTexto(UTILSXML_Lector2 lector, xmlDocPtr documento, std::size_t tam, uint8_t entrada,
                              uint8_t servicio, std::string_view defecto = {}, bool *leido = nullptr);

// ---------------------------------------------------------------------------
// IP input, service and IP output lists of the configuration document
// ---------------------------------------------------------------------------
// All need a document of version 3 or later (-1 otherwise) and keep the numbering dense
// (1 to count): a new entry gets count + 1, a deleted one is filled by moving every later
// entry one place down. Nothing to do (a count too small, a number out of range) is 0.

// Appends INPUT<count + 1> with NUM "0" and raises NUMINP; the new number, 0 for a
// negative count, or an error.
int UTILSXML_CreaNuevaentradaIP(xmlDocPtr documento);
int UTILSXML_BorraEntradaIP(xmlDocPtr documento, uint8_t entrada);
// Appends ISER<count + 1> with the default values to an IP input and raises its NUM; the
// new number, 0 for a negative count, or an error.
int UTILSXML_CreaNuevoServicioEntradaIP(xmlDocPtr documento, uint8_t entrada);
int UTILSXML_BorraServicioEntradaIP(xmlDocPtr documento, uint8_t entrada, uint8_t servicio);
// Appends SALIDA<salida> with the default values when there are at least that many IP
// inputs; 0 or an error. IP outputs have no count of their own.
int UTILSXML_CreaNuevaentradaIPenSalidaIP(xmlDocPtr documento, uint8_t salida);
int UTILSXML_BorraEntradaIPenSalidaIP(xmlDocPtr documento, uint8_t salida);

// The same lists of the status document (version 4 or later).
int UTILSXML_STATUS_CreaNuevaentradaIP(xmlDocPtr documento);
int UTILSXML_STATUS_BorraEntradaIP(xmlDocPtr documento, uint8_t entrada);
int UTILSXML_STATUS_CreaNuevoServicioEntradaIP(xmlDocPtr documento, uint8_t entrada);
int UTILSXML_STATUS_BorraServicioEntradaIP(xmlDocPtr documento, uint8_t entrada, uint8_t servicio);
