// Properties shared by the output modules' tests: what a save writes when one of its writes
// fails, how it refuses a bad channel count, and that every choice a row's select offers,
// once stored, is painted back as the choice made.
#pragma once

#include "../utilsXML/documentos.h"
#include "SalidaComun/SalidaComun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <regex>
#include <string>
#include <vector>

namespace salida_test {

using namespace store_test;

// A unit document that has every element.
inline Doc Unidad() { return cargaVersion("config_v5.xml"); }
inline int Graba(SALCOMUN_FuncionGrabar guardado, xmlDocPtr doc, std::string texto) { return guardado(doc, texto.data()); }

// The form gives every element it writes a value the unit does not hold. With any one leaf of
// the document missing, the save still makes every other write (the document ends as the full
// save's minus that leaf) and answers 6 exactly when it had to write the missing one. A channel
// count other than 1..9, or none, refuses the save: 7, nothing written; no text is 4.
inline void CompruebaGuardado(SALCOMUN_FuncionGrabar guardado, const std::string &formulario)
{
    Doc original = Unidad();
    Doc completo = Unidad();
    ASSERT_EQ(Graba(guardado, completo.get(), formulario), 0);
    int escritas = 0;
    for (xmlNodePtr nodo : xmlNodes(original.get(), "/*//*[not(*)][name() != 'CONFIGVERS']")) {
        xmlChar *camino = xmlGetNodePath(nodo);
        const std::string hoja = reinterpret_cast<const char *>(camino);
        xmlFree(camino);
        const bool escrita = xmlText(completo.get(), hoja) != xmlText(original.get(), hoja);
        escritas += escrita;
        Doc sinHoja = Unidad();
        quita(sinHoja.get(), hoja);
        EXPECT_EQ(Graba(guardado, sinHoja.get(), formulario), escrita ? 6 : 0) << hoja;
        Doc esperado(xmlCopyDoc(completo.get(), 1));
        quita(esperado.get(), hoja);
        EXPECT_EQ(serializa(sinHoja.get()), serializa(esperado.get())) << hoja;
    }
    EXPECT_GT(escritas, 0);

    const std::string resto = formulario.substr(formulario.find('&'));  // all but numcanales
    for (const char *numcanales : {"0", "10", "-1", "x", "2x", " 2", "", "0009", "(none)"}) {
        Doc documento = Unidad();
        const std::string clave = std::string("numcanales=") + numcanales;
        EXPECT_EQ(Graba(guardado, documento.get(), numcanales[0] == '(' ? resto : clave + resto), 7) << clave;
        EXPECT_EQ(serializa(documento.get()), serializa(original.get())) << clave;
    }
    EXPECT_EQ(guardado(original.get(), nullptr), 4);
}

// The values of a select's options, the ones marked selected, and its previous-value twin.
struct Select {
    std::vector<std::string> ofrecidas;
    std::vector<std::string> marcadas;
    std::optional<std::string> anterior;
};

inline Select LeeSelect(const std::string &html, const std::string &nombre)
{
    Select select;
    const size_t inicio = std::min(html.find("<select name=\"" + nombre + "\""), html.size());
    const std::string cuerpo = html.substr(inicio, html.find("</select>", inicio) - inicio);
    const std::regex opcion("<option value=\"([^\"]*)\" (selected)?");
    for (std::sregex_iterator it(cuerpo.begin(), cuerpo.end(), opcion), fin; it != fin; ++it) {
        select.ofrecidas.push_back((*it)[1]);
        if ((*it)[2].matched)
            select.marcadas.push_back((*it)[1]);
    }
    std::smatch gemelo;
    if (std::regex_search(html, gemelo, std::regex("name=\"anterior" + nombre + "\" value=\"([^\"]*)\"")))
        select.anterior = gemelo[1];
    return select;
}

// One select of a row: how a choice is stored (with what the select needs to be shown), and
// how the row is painted, with the suffix "_s".
struct CasoSelect {
    std::string nombre;
    std::function<void(xmlDocPtr, const char *)> guarda;
    std::function<void(xmlDocPtr)> pinta;

    Select Pinta(xmlDocPtr documento) const
    {
        testing::internal::CaptureStdout();
        pinta(documento);
        return LeeSelect(testing::internal::GetCapturedStdout(), nombre + "_s");
    }
};

inline void CompruebaSelect(const CasoSelect &caso)
{
    Doc documento = Unidad();
    caso.guarda(documento.get(), "0");
    const std::vector<std::string> ofrecidas = caso.Pinta(documento.get()).ofrecidas;
    ASSERT_FALSE(ofrecidas.empty()) << caso.nombre;
    for (const std::string &valor : ofrecidas) {
        caso.guarda(documento.get(), valor.c_str());
        const Select select = caso.Pinta(documento.get());
        EXPECT_EQ(select.ofrecidas, ofrecidas) << caso.nombre << " stored " << valor;
        EXPECT_EQ(select.marcadas, std::vector<std::string>{valor}) << caso.nombre << " stored " << valor;
        EXPECT_EQ(select.anterior, valor) << caso.nombre << " stored " << valor;
    }
}

}  // namespace salida_test
