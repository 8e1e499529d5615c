#include "support/xml_read.h"

#include <libxml/parser.h>
#include <libxml/xpath.h>

#include <memory>

namespace cambioip_test {

namespace {

struct FreeDoc {
    void operator()(xmlDoc *d) const { xmlFreeDoc(d); }
};
struct FreeContext {
    void operator()(xmlXPathContext *c) const { xmlXPathFreeContext(c); }
};
struct FreeObject {
    void operator()(xmlXPathObject *o) const { xmlXPathFreeObject(o); }
};

std::unique_ptr<xmlDoc, FreeDoc> load(const std::filesystem::path &file)
{
    return std::unique_ptr<xmlDoc, FreeDoc>(
        xmlReadFile(file.c_str(), nullptr, XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
}

}  // namespace

std::optional<std::string> xmlText(const std::filesystem::path &file, const std::string &xpath)
{
    auto doc = load(file);
    if (!doc)
        return std::nullopt;
    std::unique_ptr<xmlXPathContext, FreeContext> context(xmlXPathNewContext(doc.get()));
    std::unique_ptr<xmlXPathObject, FreeObject> result(
        xmlXPathEvalExpression(reinterpret_cast<const xmlChar *>(xpath.c_str()), context.get()));
    if (!result || !result->nodesetval || result->nodesetval->nodeNr == 0)
        return std::nullopt;
    xmlChar *content = xmlNodeGetContent(result->nodesetval->nodeTab[0]);
    std::string text = content ? reinterpret_cast<const char *>(content) : "";
    xmlFree(content);
    return text;
}

bool xmlWellFormed(const std::filesystem::path &file) { return static_cast<bool>(load(file)); }

}  // namespace cambioip_test
