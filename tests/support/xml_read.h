// Test support: reading a saved document back with libxml2, independently of the store.
#pragma once

#include <libxml/tree.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cambioip_test {

// A parsed document, freed when it goes out of scope.
struct FreeXmlDoc {
    void operator()(xmlDoc *document) const { xmlFreeDoc(document); }
};
using XmlDoc = std::unique_ptr<xmlDoc, FreeXmlDoc>;

// Every node matching the XPath, in document order.
std::vector<xmlNodePtr> xmlNodes(xmlDocPtr document, const std::string &xpath);

// Text of the first node matching the XPath, or nullopt when nothing matches.
std::optional<std::string> xmlText(xmlDocPtr document, const std::string &xpath);

// Text of the first node matching the XPath in the file, or nullopt when the file does
// not parse or nothing matches.
std::optional<std::string> xmlText(const std::filesystem::path &file, const std::string &xpath);

// Whether the file is a well-formed XML document.
bool xmlWellFormed(const std::filesystem::path &file);

}  // namespace cambioip_test
