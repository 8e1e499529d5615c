// IP input, service and IP output lists. Each case runs one operation on a fixture and
// states the lists it must leave as a change of the lists the fixture had, read straight
// from the tree; every case also checks that the counts and the numbering stay dense.
#include "utilsXML/utilsXML.h"
#include "utilsXML/utilsXML_int.h"

#include "documentos.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace {

using namespace store_test;

struct Listas {
    std::vector<std::vector<std::string>> entradas;  // each service as "NAME=value ..." of its leaves
    std::vector<std::string> salidas;
    bool densas = true;  // NUMINP and every NUM count their entries, numbered 1..count
    bool operator==(const Listas &) const = default;
};

void PrintTo(const Listas &l, std::ostream *salida)
{
    *salida << (l.densas ? "dense" : "NOT dense");
    for (const auto &entrada : l.entradas)
        for (*salida << "\n  input:"; const auto &servicio : entrada)
            *salida << "\n    " << servicio;
    for (const auto &salidaIP : l.salidas)
        *salida << "\n  output: " << salidaIP;
}

// Every leaf under the element as "PATH=value", the path relative to it, in document order.
std::string hojas(xmlDocPtr doc, const std::string &xpath)
{
    std::string texto;
    for (xmlNodePtr hoja : xmlNodes(doc, xpath + "//*[not(*)]")) {
        xmlChar *ruta = xmlGetNodePath(hoja);
        xmlChar *valor = xmlNodeGetContent(hoja);
        texto += (texto.empty() ? "" : " ") + std::string(reinterpret_cast<const char *>(ruta) + xpath.size() + 1) +
                 "=" + reinterpret_cast<const char *>(valor);
        xmlFree(ruta);
        xmlFree(valor);
    }
    return texto;
}

// The entries prefix1, prefix2... under padre while they exist; dense when they are all there is.
std::vector<std::string> numeradas(xmlDocPtr doc, const std::string &padre, const std::string &prefijo, bool &densas)
{
    std::vector<std::string> rutas;
    while (!xmlNodes(doc, padre + "/" + prefijo + std::to_string(rutas.size() + 1)).empty())
        rutas.push_back(padre + "/" + prefijo + std::to_string(rutas.size() + 1));
    densas = densas && xmlNodes(doc, padre + "/*[starts-with(name(),'" + prefijo + "')]").size() == rutas.size();
    return rutas;
}

Listas lee(xmlDocPtr doc)
{
    const std::string raiz = "/" + std::string(reinterpret_cast<const char *>(xmlDocGetRootElement(doc)->name));
    Listas l;
    for (const std::string &entrada : numeradas(doc, raiz + "/SERVICIOSIP", "INPUT", l.densas)) {
        auto &servicios = l.entradas.emplace_back();
        for (const std::string &servicio : numeradas(doc, entrada, "ISER", l.densas))
            servicios.push_back(hojas(doc, servicio));
        l.densas = l.densas && xmlText(doc, entrada + "/NUM") == std::to_string(servicios.size());
    }
    l.densas = l.densas && xmlText(doc, raiz + "/SERVICIOSIP/NUMINP") == std::to_string(l.entradas.size());
    for (const std::string &salida : numeradas(doc, raiz + "/SALIDAIP", "SALIDA", l.densas))
        l.salidas.push_back(hojas(doc, salida));
    return l;
}

const std::string servicioNuevo = "NOMBRE=MBRO1 SEL=0 SERVICEID=1 NOMBREOUT=MBRO1 SERVICEIDOUT=1 LCN=1 "
                                  "CHNUMBER/TABLETYPE=0 CHNUMBER/MAJOR=1 CHNUMBER/MINOR=1";
const std::string salidaNueva = "ENABLED=0 IPDEST=1.1.1.1 PUERTO=1025 IPORIG=1.1.1.1 PUERTOORIGEN=1026 PKTES=1 "
                                "PROTOCOL=0 FEC=0 ROWFEC=1026 COLFEC=1026 FECTYPE=0";

struct Caso {
    const char *nombre;
    const char *fixture;
    std::function<int(xmlDocPtr)> operacion;
    int resultado;
    std::function<void(Listas &)> cambio;
};

#define OP(llamada) [](xmlDocPtr d) { return llamada; }
#define CAMBIO(cambio) []([[maybe_unused]] Listas &l) { cambio; }
const char *const config = "config_v4.xml";  // inputs of 3 and 1 services, 2 outputs
const char *const status = "status_v4.xml";  // inputs of 3 and 1 services

const Caso casos[] = {
    {"NewInput", config, OP(UTILSXML_CreaNuevaentradaIP(d)), 3, CAMBIO(l.entradas.emplace_back())},
    {"DeleteFirstInput", config, OP(UTILSXML_BorraEntradaIP(d, 1)), 0,
     CAMBIO(l.entradas.erase(l.entradas.begin()))},
    {"DeleteInputOutOfRange", config, OP(UTILSXML_BorraEntradaIP(d, 3)), 0, CAMBIO()},
    {"NewService", config, OP(UTILSXML_CreaNuevoServicioEntradaIP(d, 2)), 2,
     CAMBIO(l.entradas[1].push_back(servicioNuevo))},
    {"DeleteMiddleService", config, OP(UTILSXML_BorraServicioEntradaIP(d, 1, 2)), 0,
     CAMBIO(l.entradas[0].erase(l.entradas[0].begin() + 1))},
    {"DeleteServiceOutOfRange", config, OP(UTILSXML_BorraServicioEntradaIP(d, 1, 4)), 0, CAMBIO()},
    {"CopyInputWithFewerServices", config, OP(UTILSXMLINT_CopyEntradaIP(d, 1, 2)), 0,
     CAMBIO(l.entradas[0] = l.entradas[1])},
    {"CopyInputWithMoreServices", config, OP(UTILSXMLINT_CopyEntradaIP(d, 2, 1)), 0,
     CAMBIO(l.entradas[1] = l.entradas[0])},
    {"CopyService", config, OP(UTILSXMLINT_CopyServicioEntradaIP(d, 2, 1, 1, 3)), 0,
     CAMBIO(l.entradas[1][0] = l.entradas[0][2])},
    {"NewOutputBeyondTheInputs", config, OP(UTILSXML_CreaNuevaentradaIPenSalidaIP(d, 3)), 0, CAMBIO()},
    {"NewInputAndItsOutput", config,
     OP(UTILSXML_CreaNuevaentradaIP(d) == 3 ? UTILSXML_CreaNuevaentradaIPenSalidaIP(d, 3) : -9), 0,
     CAMBIO(l.entradas.emplace_back(); l.salidas.push_back(salidaNueva))},
    {"DeleteFirstOutput", config, OP(UTILSXML_BorraEntradaIPenSalidaIP(d, 1)), 0,
     CAMBIO(l.salidas.erase(l.salidas.begin()))},
    {"CopyOutput", config, OP(UTILSXMLINT_CopyEntradaIPenSalidaIP(d, 1, 2)), 0, CAMBIO(l.salidas[0] = l.salidas[1])},
    {"StatusNewService", status, OP(UTILSXML_STATUS_CreaNuevoServicioEntradaIP(d, 2)), 2,
     CAMBIO(l.entradas[1].push_back("BITRATE=0 MAXBITRATE=0"))},
    {"StatusDeleteFirstInput", status, OP(UTILSXML_STATUS_BorraEntradaIP(d, 1)), 0,
     CAMBIO(l.entradas.erase(l.entradas.begin()))},
    {"StatusCopyInput", status, OP(UTILSXMLINT_STATUS_CopyEntradaIP(d, 2, 1)), 0,
     CAMBIO(l.entradas[1] = l.entradas[0])},
};

class Operacion : public ::testing::TestWithParam<Caso> {};

TEST_P(Operacion, LeavesTheListsDenseAndChangedAsStated)
{
    Doc doc = cargaVersion(GetParam().fixture);
    Listas esperadas = lee(doc.get());
    ASSERT_TRUE(esperadas.densas);
    ASSERT_EQ(esperadas.entradas.size(), 2u);
    GetParam().cambio(esperadas);
    EXPECT_EQ(GetParam().operacion(doc.get()), GetParam().resultado);
    EXPECT_EQ(lee(doc.get()), esperadas);
}

// On a document older than its lists every operation is refused and changes nothing.
TEST_P(Operacion, IsRefusedByADocumentOlderThanTheLists)
{
    for (const char *fixture : GetParam().fixture == status ? std::vector{"status_v3.xml", "status_v2.xml"}
                                                            : std::vector{"config_v2.xml", "config_noversion.xml"}) {
        Doc doc = cargaVersion(fixture);
        const std::string antes = serializa(doc.get());
        EXPECT_LT(GetParam().operacion(doc.get()), 0) << fixture;
        EXPECT_EQ(serializa(doc.get()), antes) << fixture;
    }
}

INSTANTIATE_TEST_SUITE_P(Casos, Operacion, ::testing::ValuesIn(casos), [](const auto &i) { return i.param.nombre; });

TEST(Operacion, AMissingCountOrAFailedAppendIsAnErrorAndANegativeCountLeavesNothingToDo)
{
    const struct {
        const char *ruta;
        const char *valor;  // none: the element is removed
        std::function<int(xmlDocPtr)> operacion;
        int resultado;
    } casos[] = {{"//SERVICIOSIP/NUMINP", nullptr, OP(UTILSXML_CreaNuevaentradaIP(d)), -1},
                 {"//SERVICIOSIP/NUMINP", nullptr, OP(UTILSXML_BorraEntradaIP(d, 1)), -1},
                 {"//SERVICIOSIP/NUMINP", nullptr, OP(UTILSXML_CreaNuevaentradaIPenSalidaIP(d, 1)), -1},
                 {"//SERVICIOSIP/NUMINP", "-1", OP(UTILSXML_CreaNuevaentradaIP(d)), 0},
                 {"//SERVICIOSIP/INPUT1/NUM", "-1", OP(UTILSXML_CreaNuevoServicioEntradaIP(d, 1)), 0},
                 {"//SERVICIOSIP/INPUT1/NUM", "-1", OP(UTILSXML_BorraServicioEntradaIP(d, 1, 1)), 0},
                 // the clean-up of an output list that cannot take the new output leaves nothing behind
                 {"/ENCODERCONFIG/SALIDAIP", nullptr, OP(UTILSXML_CreaNuevaentradaIPenSalidaIP(d, 1)), -1}};
    for (const auto &caso : casos) {
        Doc doc = cargaVersion("config_v5.xml");
        caso.valor != nullptr ? fija(doc.get(), caso.ruta, caso.valor) : quita(doc.get(), caso.ruta);
        const std::string antes = serializa(doc.get());
        EXPECT_EQ(caso.operacion(doc.get()), caso.resultado) << caso.ruta;
        EXPECT_EQ(serializa(doc.get()), antes) << caso.ruta;
    }
}

// Values travel through 100-byte buffers: a longer one moves cut to 99 bytes.
TEST(Operacion, LongValuesMoveCutToNinetyNineBytes)
{
    Doc doc = cargaVersion("config_v4.xml");
    fija(doc.get(), "/ENCODERCONFIG/SERVICIOSIP/INPUT1/ISER3/NOMBRE", std::string(120, 'A'));
    ASSERT_EQ(UTILSXML_BorraServicioEntradaIP(doc.get(), 1, 2), 0);
    EXPECT_EQ(xmlText(doc.get(), "/ENCODERCONFIG/SERVICIOSIP/INPUT1/ISER2/NOMBRE"), std::string(99, 'A'));
}

}  // namespace
