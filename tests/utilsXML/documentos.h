// Unit documents in memory, read and edited through libxml2 directly, so that the checks
// never depend on the store they check. Shared by the output modules' tests.
#pragma once

#include "support/xml_read.h"

#include <libxml/parser.h>
#include <string>

namespace store_test {

using Doc = cambioip_test::XmlDoc;
using cambioip_test::xmlNodes;
using cambioip_test::xmlText;

inline Doc cargaVersion(const std::string &nombre)
{
    return Doc(xmlReadFile((std::string(CAMBIOIP_FIXTURES) + "/versions/" + nombre).c_str(), "UTF-8", 0));
}

inline std::string serializa(xmlDocPtr documento)
{
    xmlChar *memoria = nullptr;
    int longitud = 0;
    xmlDocDumpMemory(documento, &memoria, &longitud);
    std::string texto(reinterpret_cast<const char *>(memoria), static_cast<size_t>(longitud));
    xmlFree(memoria);
    return texto;
}

// Sets the text of every match verbatim (no entity parsing).
inline void fija(xmlDocPtr documento, const std::string &xpath, const std::string &valor)
{
    for (xmlNodePtr nodo : xmlNodes(documento, xpath)) {
        xmlNodeSetContent(nodo, nullptr);
        xmlNodeAddContent(nodo, reinterpret_cast<const xmlChar *>(valor.c_str()));
    }
}

inline void quita(xmlDocPtr documento, const std::string &xpath)
{
    for (xmlNodePtr nodo : xmlNodes(documento, xpath)) {
        xmlUnlinkNode(nodo);
        xmlFreeNode(nodo);
    }
}

}  // namespace store_test
