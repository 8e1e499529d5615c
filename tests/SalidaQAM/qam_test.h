// Test helpers of the output modules: the rack's documents in memory, reads and edits of them
// through libxml2 directly (independent of the store), the module's printed HTML captured and
// parsed back.
#pragma once

#include "support/xml_read.h"

#include <gtest/gtest.h>

#include <libxml/HTMLparser.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xpath.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace qam_test {

using Doc = cambioip_test::XmlDoc;

// A document of the demo rack (demo/root/config).
inline Doc Demo(const std::string &nombre)
{
    const std::string ruta = std::string(CAMBIOIP_SOURCE_DIR) + "/demo/root/config/" + nombre;
    Doc documento(xmlReadFile(ruta.c_str(), "UTF-8", 0));
    EXPECT_NE(documento, nullptr) << ruta;
    return documento;
}

// A document of tests/fixtures/versions.
inline Doc Version(const std::string &nombre)
{
    const std::string ruta = std::string(CAMBIOIP_FIXTURES) + "/versions/" + nombre;
    Doc documento(xmlReadFile(ruta.c_str(), "UTF-8", 0));
    EXPECT_NE(documento, nullptr) << ruta;
    return documento;
}

inline std::vector<xmlNodePtr> Nodos(xmlDocPtr documento, const std::string &xpath)
{
    return cambioip_test::xmlNodes(documento, xpath);
}

// Text of the first match (element or attribute); nullopt when nothing matches.
inline std::optional<std::string> Texto(xmlDocPtr documento, const std::string &xpath)
{
    return cambioip_test::xmlText(documento, xpath);
}

// Replaces the text of the first match, verbatim.
inline void Fija(xmlDocPtr documento, const std::string &xpath, const std::string &valor)
{
    auto encontrados = Nodos(documento, xpath);
    ASSERT_FALSE(encontrados.empty()) << xpath;
    xmlNodeSetContent(encontrados.front(), nullptr);
    xmlNodeAddContent(encontrados.front(), reinterpret_cast<const xmlChar *>(valor.c_str()));
}

inline void Quita(xmlDocPtr documento, const std::string &xpath)
{
    auto encontrados = Nodos(documento, xpath);
    ASSERT_FALSE(encontrados.empty()) << xpath;
    for (xmlNodePtr nodo : encontrados) {
        xmlUnlinkNode(nodo);
        xmlFreeNode(nodo);
    }
}

inline std::string Serializa(xmlDocPtr documento)
{
    xmlChar *memoria = nullptr;
    int longitud = 0;
    xmlDocDumpMemory(documento, &memoria, &longitud);
    std::string resultado(reinterpret_cast<const char *>(memoria), static_cast<size_t>(longitud));
    xmlFree(memoria);
    return resultado;
}

// What a call prints on standard output.
template <typename F>
std::string Captura(F &&llamada)
{
    testing::internal::CaptureStdout();
    llamada();
    return testing::internal::GetCapturedStdout();
}

// Printed HTML parsed back: rows are wrapped in a table so that the parser keeps them.
class Html {
  public:
    explicit Html(const std::string &fragmento)
    {
        const std::string pagina = "<html><body><table>" + fragmento + "</table></body></html>";
        doc_.reset(htmlReadMemory(pagina.data(), static_cast<int>(pagina.size()), nullptr, "UTF-8",
                                  HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING | HTML_PARSE_NONET));
    }
    xmlDocPtr get() const { return doc_.get(); }
    std::optional<std::string> Valor(const std::string &xpath) const { return Texto(doc_.get(), xpath); }
    size_t Cuenta(const std::string &xpath) const { return Nodos(doc_.get(), xpath).size(); }
    bool Existe(const std::string &xpath) const { return Cuenta(xpath) > 0; }
    // The value attribute of the input named `nombre`.
    std::optional<std::string> Input(const std::string &nombre) const
    {
        return Valor("//input[@name='" + nombre + "']/@value");
    }
    // The value of the selected option of the select named `nombre`.
    std::optional<std::string> Elegida(const std::string &nombre) const
    {
        return Valor("//select[@name='" + nombre + "']/option[@selected]/@value");
    }
    bool Deshabilitado(const std::string &etiqueta, const std::string &nombre) const
    {
        return Existe("//" + etiqueta + "[@name='" + nombre + "'][@disabled]");
    }

  private:
    Doc doc_;
};

// The contents of the <td> cells of one printed row, in order (rows without nested cells).
inline std::vector<std::string> Celdas(const std::string &fila)
{
    std::vector<std::string> celdas;
    for (size_t inicio = fila.find("<td"); inicio != std::string::npos; inicio = fila.find("<td", inicio)) {
        const size_t contenido = fila.find('>', inicio) + 1;
        const size_t fin = fila.find("</td>", contenido);
        celdas.push_back(fila.substr(contenido, fin - contenido));
        inicio = fin;
    }
    return celdas;
}

// The value an attacker would like to see reach the page raw.
inline const std::string kAtaque = "\"><script>x</script>";

}  // namespace qam_test
