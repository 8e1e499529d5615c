// funciones_XML: the thin layer over libxml2 through which every read and write of a
// unit's documents goes: a printf-like path pattern becomes an XPath expression, the
// first matching node's text or attribute is read or replaced, documents are loaded
// read-only and saved atomically, element nodes are added and removed.
//
// The layer keeps its working state in module-wide variables: it is single-threaded.
#pragma once

#include <cstdint>
#include <libxml/tree.h>

// Text content of the first node matching the pattern into buffer (at most tam bytes,
// no terminator written: the caller zero-fills the buffer). Over-long text is cut to
// tam - 1 bytes at a UTF-8 character boundary. With hexa set, the content is hexadecimal
// text decoded byte-reversed into tam bytes. 0 or -1.
int FUNCXML_getXMLNodeContent(xmlDocPtr documento, char *buffer, uint8_t hexa, unsigned int tam,
                              const char *patron, ...);
// Replaces the text content of the first node matching the pattern. With longitudHexa
// n > 0, valor is n bytes stored as their byte-reversed hexadecimal text. The text is
// stored exactly as given; a value XML cannot hold (invalid UTF-8, control characters
// other than tab, line feed and carriage return) is refused and the document is left
// unchanged. 0 or -1.
int FUNCXML_setXMLNodeContent(xmlDocPtr documento, const char *valor, int longitudHexa, const char *patron, ...);

// Attribute of the first node matching the pattern into buffer (no UTF-8 cut).
int getXML(xmlDocPtr documento, char *buffer, const char *atributo, uint8_t hexa, unsigned int tam,
           const char *patron, ...);
// Sets (creates or replaces) the attribute of the first node matching the pattern.
int setXML(xmlDocPtr documento, const char *atributo, const char *valor, int longitudHexa, const char *patron, ...);
// The attribute as a new libxml2 string (free with xmlFree), or null.
xmlChar *getXML_malloc(xmlDocPtr documento, int ignorado, const char *atributo, const char *patron, ...);
// The attribute with its \XY escapes decoded, ended by the byte 0x06, in a new buffer
// (free with free()), or null.
uint8_t *getXML_LCD(xmlDocPtr documento, int ignorado, const char *atributo, const char *patron, ...);
// Sets the attribute through setXML, or else adds an element carrying it under the
// front-panel module's CONFIGURACION node.
int AddNodoPropiedadXML(xmlDocPtr documento, const char *atributo, const char *valor, int longitudHexa,
                        const char *patron, uint8_t direccion, const char *elemento);

// Unlinks and frees the first node matching the XPath (a plain string, no pattern).
int FUNCXML_BorraNodoXML(xmlDocPtr documento, const char *ruta);
// Appends a new element with the given text (stored exactly) as the last child of the
// first node matching the parent's XPath.
int FUNCXML_AddNodoXML(xmlDocPtr documento, const char *padre, const char *nombre, const char *contenido);

// Largest file taken for a document: a real unit document is a few kilobytes.
inline constexpr long long FUNCXML_TamMaxDocumento = 1 << 20;

// Loads the file read-only into *documento (freeing a document already there) and
// pauses afterwards for CAMBIOIP_LOAD_PAUSE_MS (250 ms when unset). The loaded
// document, or null; a file that cannot be opened, or is larger than
// FUNCXML_TamMaxDocumento, leaves *documento untouched.
xmlDocPtr LOAD_XML_RDONLY(const char *ruta, xmlDocPtr *documento);

// Writes the document to ruta atomically: a temporary file in the same folder (a name
// the unit-file scan never matches), flushed and fsync'ed, renamed over the original,
// whose permission bits it keeps. A failed save leaves the original byte-identical and
// removes the temporary file. 0 or -1.
int FUNCXML_GuardaDocumento(xmlDocPtr documento, const char *ruta);

// Whether XML 1.0 can hold the text: valid UTF-8 without control characters other than
// tab, line feed and carriage return.
bool FUNCXML_TextoValido(const char *texto);

// Debug dump of the tree to standard output.
int FUNXML_PrintDOM(xmlDocPtr documento);
int FUNXMLINT_PrintDOM(xmlNodePtr nodo, int nivel);

// Cuts the string in place to fit tam - 1 bytes without splitting a UTF-8 character.
void FUNCXML_ajustaUTF8(char *texto, int tam);
