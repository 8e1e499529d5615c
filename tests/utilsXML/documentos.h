// Test helpers for the store: fixture documents in memory, and reads and edits of them
// through libxml2 directly, so that the checks do not depend on the code under test.
#pragma once

#include "support/xml_read.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xpath.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace store_test {

using Doc = cambioip_test::XmlDoc;

// A fixture of tests/fixtures/versions, parsed as the unit's files are.
inline Doc cargaVersion(const std::string &nombre)
{
    const std::string ruta = std::string(CAMBIOIP_FIXTURES) + "/versions/" + nombre;
    return Doc(xmlReadFile(ruta.c_str(), "UTF-8", 0));
}

inline Doc cargaFichero(const std::string &ruta) { return Doc(xmlReadFile(ruta.c_str(), "UTF-8", 0)); }

inline std::vector<xmlNodePtr> nodos(xmlDocPtr documento, const std::string &xpath)
{
    return cambioip_test::xmlNodes(documento, xpath);
}

// Text of the first node matching the XPath; nullopt when there is none.
inline std::optional<std::string> texto(xmlDocPtr documento, const std::string &xpath)
{
    return cambioip_test::xmlText(documento, xpath);
}

inline size_t cuenta(xmlDocPtr documento, const std::string &xpath) { return nodos(documento, xpath).size(); }

// Replaces the text of the first match (plain values without '&').
inline void fija(xmlDocPtr documento, const std::string &xpath, const std::string &valor)
{
    auto encontrados = nodos(documento, xpath);
    if (!encontrados.empty())
        xmlNodeSetContent(encontrados.front(), reinterpret_cast<const xmlChar *>(valor.c_str()));
}

inline void quita(xmlDocPtr documento, const std::string &xpath)
{
    for (xmlNodePtr nodo : nodos(documento, xpath)) {
        xmlUnlinkNode(nodo);
        xmlFreeNode(nodo);
    }
}

// Names of the element children of the first match, in document order.
inline std::vector<std::string> hijos(xmlDocPtr documento, const std::string &xpath)
{
    std::vector<std::string> nombres;
    auto encontrados = nodos(documento, xpath);
    if (encontrados.empty())
        return nombres;
    for (xmlNodePtr hijo = encontrados.front()->children; hijo != nullptr; hijo = hijo->next)
        if (hijo->type == XML_ELEMENT_NODE)
            nombres.emplace_back(reinterpret_cast<const char *>(hijo->name));
    return nombres;
}

inline std::string serializa(xmlDocPtr documento)
{
    xmlChar *memoria = nullptr;
    int longitud = 0;
    xmlDocDumpMemory(documento, &memoria, &longitud);
    std::string resultado(reinterpret_cast<const char *>(memoria), static_cast<size_t>(longitud));
    xmlFree(memoria);
    return resultado;
}

}  // namespace store_test
