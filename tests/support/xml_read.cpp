#include "support/xml_read.h"

#include <libxml/parser.h>
#include <libxml/xpath.h>

#include <memory>

namespace cambioip_test {

namespace {

struct FreeContext {
    void operator()(xmlXPathContext *c) const { xmlXPathFreeContext(c); }
};
struct FreeObject {
    void operator()(xmlXPathObject *o) const { xmlXPathFreeObject(o); }
};

XmlDoc load(const std::filesystem::path &file)
{
    return XmlDoc(
        xmlReadFile(file.c_str(), nullptr, XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
}

}  // namespace

std::vector<xmlNodePtr> xmlNodes(xmlDocPtr document, const std::string &xpath)
{
    std::vector<xmlNodePtr> nodes;
    std::unique_ptr<xmlXPathContext, FreeContext> context(xmlXPathNewContext(document));
    std::unique_ptr<xmlXPathObject, FreeObject> result(
        xmlXPathEvalExpression(reinterpret_cast<const xmlChar *>(xpath.c_str()), context.get()));
    if (result && result->nodesetval)
        for (int i = 0; i < result->nodesetval->nodeNr; ++i)
            nodes.push_back(result->nodesetval->nodeTab[i]);
    return nodes;
}

std::optional<std::string> xmlText(xmlDocPtr document, const std::string &xpath)
{
    std::vector<xmlNodePtr> nodes = xmlNodes(document, xpath);
    if (nodes.empty())
        return std::nullopt;
    xmlChar *content = xmlNodeGetContent(nodes.front());
    std::string text = content ? reinterpret_cast<const char *>(content) : "";
    xmlFree(content);
    return text;
}

std::optional<std::string> xmlText(const std::filesystem::path &file, const std::string &xpath)
{
    auto doc = load(file);
    if (!doc)
        return std::nullopt;
    return xmlText(doc.get(), xpath);
}

bool xmlWellFormed(const std::filesystem::path &file) { return static_cast<bool>(load(file)); }

}  // namespace cambioip_test
