// utilsXML_campos.cpp: the one reader and the one writer behind every accessor of the
// unit documents, and the reads of the documents' format version.
#include "utilsXML/utilsXML_int.h"

#include "funciones_XML/funciones_XML.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

const char *const rutaVersion[] = {"/ENCODERCONFIG/CONFIGVERS", "/ENCODERSTATUS/CONFIGVERS"};

// The decimal text of CONFIGVERS as a number; 0 when the node (or the document) is missing.
// The text is read with a size of 50 into a zeroed buffer one byte larger, so that it is
// always terminated.
int versionDe(xmlDocPtr documento, const char *ruta)
{
    char texto[51] = {};
    if (FUNCXML_getXMLNodeContent(documento, texto, 0, 50, "%s", ruta) != 0)
        return 0;
    long version = std::strtol(texto, nullptr, 10);
    if (version > INT_MAX)
        return INT_MAX;
    if (version < INT_MIN)
        return INT_MIN;
    return static_cast<int>(version);
}

int versionDe(xmlDocPtr documento, UTILSXMLINT_Documento tipo)
{
    return versionDe(documento, rutaVersion[tipo == UTILSXMLINT_Documento::Status ? 1 : 0]);
}

// Whether the document is recent enough to hold the element.
bool versionAdmite(const UTILSXMLINT_Campo &campo, xmlDocPtr documento)
{
    return campo.version <= 0 || versionDe(documento, campo.documento) >= campo.version;
}

}  // namespace

int UTILSXMLINT_CheckFileVersion(xmlDocPtr documento)
{
    return versionDe(documento, UTILSXMLINT_Documento::Config);
}

int UTILSXMLINT_CheckStatusFileVersion(xmlDocPtr documento)
{
    return versionDe(documento, UTILSXMLINT_Documento::Status);
}

int UTILSXML_CheckVersionConfig(xmlDocPtr documento) { return UTILSXMLINT_CheckFileVersion(documento); }

int UTILSXML_STATUS_CheckVersionConfig(xmlDocPtr documento) { return UTILSXMLINT_CheckStatusFileVersion(documento); }

std::string UTILSXMLINT_Ruta(const char *patron, int indice1, int indice2)
{
    // The longest element path with three-digit indices is well below this; the XML layer
    // itself takes at most 99 characters.
    char ruta[100];
    int longitud = std::snprintf(ruta, sizeof ruta, patron, indice1, indice2);
    if (longitud < 0 || static_cast<size_t>(longitud) >= sizeof ruta)
        return {};
    return ruta;
}

int UTILSXMLINT_LeeCampo(const UTILSXMLINT_Campo &campo, xmlDocPtr documento, char *buffer, uint16_t tam,
                         int indice1, int indice2)
{
    if (documento == nullptr || buffer == nullptr)
        return -1;
    if (tam < campo.minimo)
        return -1;
    if (!versionAdmite(campo, documento))
        return -1;
    std::string ruta = UTILSXMLINT_Ruta(campo.ruta, indice1, indice2);
    if (ruta.empty())
        return -1;
    std::memset(buffer, 0, tam);
    // The complete path goes as the argument of "%s": the layer's own "%d" handling
    // would replace the path built so far by the number.
    return FUNCXML_getXMLNodeContent(documento, buffer, 0, tam, "%s", ruta.c_str()) == 0 ? 0 : -1;
}

int UTILSXMLINT_GrabaCampo(const UTILSXMLINT_Campo &campo, xmlDocPtr documento, const char *valor, int indice1,
                           int indice2)
{
    if (documento == nullptr || valor == nullptr)
        return -1;
    if (!versionAdmite(campo, documento))
        return -1;
    std::string ruta = UTILSXMLINT_Ruta(campo.ruta, indice1, indice2);
    if (ruta.empty())
        return -1;
    return FUNCXML_setXMLNodeContent(documento, valor, 0, "%s", ruta.c_str()) == 0 ? 0 : -1;
}

int UTILSXMLINT_GrabaCampoTolerante(const UTILSXMLINT_Campo &campo, xmlDocPtr documento, const char *valor,
                                    int indice1, int indice2)
{
    if (documento == nullptr || valor == nullptr)
        return -1;
    std::string ruta = UTILSXMLINT_Ruta(campo.ruta, indice1, indice2);
    if (!ruta.empty() && FUNCXML_setXMLNodeContent(documento, valor, 0, "%s", ruta.c_str()) == 0)
        return 0;
    // An older unit has no such element, and that is no error.
    return versionDe(documento, campo.documento) < campo.version ? 0 : -1;
}

int UTILSXMLINT_LeeCaracter(const UTILSXMLINT_Campo &campo, xmlDocPtr documento, char *caracter, int indice1,
                            int indice2)
{
    if (documento == nullptr || caracter == nullptr)
        return -1;
    *caracter = 0;
    if (!versionAdmite(campo, documento))
        return -1;
    std::string ruta = UTILSXMLINT_Ruta(campo.ruta, indice1, indice2);
    if (ruta.empty())
        return -1;
    // A size of 1: a one-character text is copied, a longer one fails, an empty one leaves 0.
    return FUNCXML_getXMLNodeContent(documento, caracter, 0, 1, "%s", ruta.c_str()) == 0 ? 0 : -1;
}

int UTILSXMLINT_GrabaCaracter(const UTILSXMLINT_Campo &campo, xmlDocPtr documento, char caracter, int indice1,
                              int indice2)
{
    const char texto[2] = {caracter, '\0'};
    return UTILSXMLINT_GrabaCampo(campo, documento, texto, indice1, indice2);
}

namespace {

// Reads through `lee(buffer)` into a zeroed buffer of tam + 1 bytes.
template <typename Lectura>
std::string UTILSXMLINT_LeeTexto(bool hay, std::size_t tam, std::string_view defecto, bool *leido, Lectura lee)
{
    std::vector<char> buffer(tam + 1, '\0');
    const bool ok = hay && lee(buffer.data(), static_cast<uint16_t>(tam)) == 0;
    if (leido != nullptr)
        *leido = ok;
    return ok ? std::string(buffer.data()) : std::string(defecto);
}

}  // namespace

std::string UTILSXML_LeeTexto(UTILSXML_Lector0 lector, xmlDocPtr documento, std::size_t tam,
                              std::string_view defecto, bool *leido)
{
    return UTILSXMLINT_LeeTexto(lector != nullptr && documento != nullptr, tam, defecto, leido,
                                [&](char *buffer, uint16_t n) { return lector(documento, buffer, n); });
}

std::string UTILSXML_LeeTexto(UTILSXML_Lector1 lector, xmlDocPtr documento, std::size_t tam, uint8_t indice,
                              std::string_view defecto, bool *leido)
{
    return UTILSXMLINT_LeeTexto(lector != nullptr && documento != nullptr, tam, defecto, leido,
                                [&](char *buffer, uint16_t n) { return lector(documento, buffer, n, indice); });
}

std::string UTILSXML_LeeTexto(UTILSXML_Lector2 lector, xmlDocPtr documento, std::size_t tam, uint8_t entrada,
                              uint8_t servicio, std::string_view defecto, bool *leido)
{
    return UTILSXMLINT_LeeTexto(lector != nullptr && documento != nullptr, tam, defecto, leido,
                                [&](char *buffer, uint16_t n) { return lector(documento, buffer, n, entrada, servicio); });
}
