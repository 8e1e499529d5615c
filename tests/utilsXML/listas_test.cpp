// IP input, service and IP output lists of the configuration and status documents:
// creation with the default values, deletion that keeps the numbering dense, and the
// copies between entries.
#include "utilsXML/utilsXML.h"
#include "utilsXML/utilsXML_int.h"

#include "documentos.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace {

using namespace store_test;
using Valores = std::vector<std::optional<std::string>>;

const char *const camposServicio[] = {"NOMBRE", "SEL", "SERVICEID", "NOMBREOUT", "SERVICEIDOUT", "LCN",
                                      "CHNUMBER/TABLETYPE", "CHNUMBER/MAJOR", "CHNUMBER/MINOR"};
const char *const camposSalida[] = {"ENABLED", "IPDEST", "PUERTO", "IPORIG", "PUERTOORIGEN", "PKTES",
                                    "PROTOCOL", "FEC", "ROWFEC", "COLFEC", "FECTYPE"};

std::string entrada(int n) { return "/ENCODERCONFIG/SERVICIOSIP/INPUT" + std::to_string(n); }
std::string servicio(int n, int s) { return entrada(n) + "/ISER" + std::to_string(s); }
std::string salida(int n) { return "/ENCODERCONFIG/SALIDAIP/SALIDA" + std::to_string(n); }
std::string entradaStatus(int n) { return "/ENCODERSTATUS/SERVICIOSIP/INPUT" + std::to_string(n); }
std::string servicioStatus(int n, int s) { return entradaStatus(n) + "/ISER" + std::to_string(s); }

Valores valoresServicio(xmlDocPtr doc, int n, int s)
{
    Valores valores;
    for (const char *campo : camposServicio)
        valores.push_back(texto(doc, servicio(n, s) + "/" + campo));
    return valores;
}

Valores valoresSalida(xmlDocPtr doc, int n)
{
    Valores valores;
    for (const char *campo : camposSalida)
        valores.push_back(texto(doc, salida(n) + "/" + campo));
    return valores;
}

// Every service of an IP input, in order.
std::vector<Valores> serviciosDe(xmlDocPtr doc, int n)
{
    std::vector<Valores> servicios;
    for (int s = 1; cuenta(doc, servicio(n, s)) > 0; ++s)
        servicios.push_back(valoresServicio(doc, n, s));
    return servicios;
}

std::vector<std::pair<std::string, std::string>> serviciosStatusDe(xmlDocPtr doc, int n)
{
    std::vector<std::pair<std::string, std::string>> servicios;
    for (int s = 1; cuenta(doc, servicioStatus(n, s)) > 0; ++s)
        servicios.emplace_back(texto(doc, servicioStatus(n, s) + "/BITRATE").value_or("?"),
                               texto(doc, servicioStatus(n, s) + "/MAXBITRATE").value_or("?"));
    return servicios;
}

// ---------------------------------------------------------------------------
// IP inputs
// ---------------------------------------------------------------------------

TEST(EntradasIP, TheFirstInputOfAnEmptyListIsNumberOne)
{
    Doc doc = cargaVersion("config_v3.xml");
    quita(doc.get(), entrada(1));
    fija(doc.get(), "/ENCODERCONFIG/SERVICIOSIP/NUMINP", "0");

    EXPECT_EQ(UTILSXML_CreaNuevaentradaIP(doc.get()), 1);
    EXPECT_EQ(hijos(doc.get(), "/ENCODERCONFIG/SERVICIOSIP"), (std::vector<std::string>{"NUMINP", "INPUT1"}));
    EXPECT_EQ(hijos(doc.get(), entrada(1)), std::vector<std::string>{"NUM"});
    EXPECT_EQ(texto(doc.get(), entrada(1) + "/NUM"), "0");
    EXPECT_EQ(texto(doc.get(), "/ENCODERCONFIG/SERVICIOSIP/NUMINP"), "1");
}

TEST(EntradasIP, ANewInputFollowsTheLastOne)
{
    Doc doc = cargaVersion("config_v4.xml");
    EXPECT_EQ(UTILSXML_CreaNuevaentradaIP(doc.get()), 3);
    EXPECT_EQ(hijos(doc.get(), "/ENCODERCONFIG/SERVICIOSIP"),
              (std::vector<std::string>{"NUMINP", "INPUT1", "INPUT2", "INPUT3"}));
    EXPECT_EQ(texto(doc.get(), entrada(3) + "/NUM"), "0");
    EXPECT_EQ(texto(doc.get(), "/ENCODERCONFIG/SERVICIOSIP/NUMINP"), "3");
}

TEST(EntradasIP, ANegativeCountCreatesNothingAndAMissingCountFails)
{
    Doc doc = cargaVersion("config_v4.xml");
    fija(doc.get(), "/ENCODERCONFIG/SERVICIOSIP/NUMINP", "-1");
    std::string antes = serializa(doc.get());
    EXPECT_EQ(UTILSXML_CreaNuevaentradaIP(doc.get()), 0);
    EXPECT_EQ(serializa(doc.get()), antes);

    quita(doc.get(), "/ENCODERCONFIG/SERVICIOSIP/NUMINP");
    antes = serializa(doc.get());
    EXPECT_EQ(UTILSXML_CreaNuevaentradaIP(doc.get()), -1);
    EXPECT_EQ(UTILSXML_BorraEntradaIP(doc.get(), 1), -1);
    EXPECT_EQ(UTILSXML_CreaNuevaentradaIPenSalidaIP(doc.get(), 1), -1);
    EXPECT_EQ(serializa(doc.get()), antes);
}

TEST(EntradasIP, DeletingTheFirstOfThreeMovesTheOthersDownWithTheirServices)
{
    Doc doc = cargaVersion("config_v4.xml");
    ASSERT_EQ(UTILSXML_CreaNuevaentradaIP(doc.get()), 3);
    ASSERT_EQ(UTILSXML_CreaNuevoServicioEntradaIP(doc.get(), 3), 1);
    ASSERT_EQ(UTILSXML_CreaNuevoServicioEntradaIP(doc.get(), 3), 2);
    fija(doc.get(), servicio(3, 1) + "/NOMBRE", "THIRD ONE");
    fija(doc.get(), servicio(3, 2) + "/NOMBRE", "THIRD TWO");
    fija(doc.get(), servicio(3, 2) + "/CHNUMBER/MINOR", "9");
    const auto segunda = serviciosDe(doc.get(), 2);
    const auto tercera = serviciosDe(doc.get(), 3);
    ASSERT_EQ(segunda.size(), 1u);
    ASSERT_EQ(tercera.size(), 2u);

    EXPECT_EQ(UTILSXML_BorraEntradaIP(doc.get(), 1), 0);
    EXPECT_EQ(texto(doc.get(), "/ENCODERCONFIG/SERVICIOSIP/NUMINP"), "2");
    EXPECT_EQ(cuenta(doc.get(), entrada(3)), 0u);
    EXPECT_EQ(texto(doc.get(), entrada(1) + "/NUM"), "1");
    EXPECT_EQ(serviciosDe(doc.get(), 1), segunda);
    EXPECT_EQ(texto(doc.get(), entrada(2) + "/NUM"), "2");
    EXPECT_EQ(serviciosDe(doc.get(), 2), tercera);
}

TEST(EntradasIP, DeletingTheLastInputOnlyRemovesIt)
{
    Doc doc = cargaVersion("config_v4.xml");
    const auto primera = serviciosDe(doc.get(), 1);
    EXPECT_EQ(UTILSXML_BorraEntradaIP(doc.get(), 2), 0);
    EXPECT_EQ(cuenta(doc.get(), entrada(2)), 0u);
    EXPECT_EQ(serviciosDe(doc.get(), 1), primera);
    EXPECT_EQ(texto(doc.get(), "/ENCODERCONFIG/SERVICIOSIP/NUMINP"), "1");
}

TEST(EntradasIP, NumbersOutsideTheListChangeNothing)
{
    Doc doc = cargaVersion("config_v4.xml");
    const std::string antes = serializa(doc.get());
    EXPECT_EQ(UTILSXML_BorraEntradaIP(doc.get(), 3), 0);
    EXPECT_EQ(UTILSXML_BorraServicioEntradaIP(doc.get(), 2, 2), 0);
    EXPECT_EQ(UTILSXML_BorraEntradaIPenSalidaIP(doc.get(), 3), 0);
    EXPECT_EQ(serializa(doc.get()), antes);

    fija(doc.get(), "/ENCODERCONFIG/SERVICIOSIP/NUMINP", "0");
    const std::string vacio = serializa(doc.get());
    EXPECT_EQ(UTILSXML_BorraEntradaIP(doc.get(), 1), 0);
    EXPECT_EQ(UTILSXML_BorraEntradaIPenSalidaIP(doc.get(), 1), 0);
    EXPECT_EQ(serializa(doc.get()), vacio);
}

TEST(EntradasIP, CopyGivesTheDestinationExactlyTheSourcesServices)
{
    Doc doc = cargaVersion("config_v4.xml");
    const auto primera = serviciosDe(doc.get(), 1);
    const auto segunda = serviciosDe(doc.get(), 2);

    // Fewer services in the source: the destination's extra ones go.
    EXPECT_EQ(UTILSXMLINT_CopyEntradaIP(doc.get(), 1, 2), 0);
    EXPECT_EQ(serviciosDe(doc.get(), 1), segunda);
    EXPECT_EQ(texto(doc.get(), entrada(1) + "/NUM"), "1");

    // More services in the source: the destination gets new ones first.
    Doc otro = cargaVersion("config_v4.xml");
    EXPECT_EQ(UTILSXMLINT_CopyEntradaIP(otro.get(), 2, 1), 0);
    EXPECT_EQ(serviciosDe(otro.get(), 2), primera);
    EXPECT_EQ(texto(otro.get(), entrada(2) + "/NUM"), "3");
    EXPECT_EQ(serviciosDe(otro.get(), 1), primera);
}

TEST(EntradasIP, CopyNeedsTwoInputsInRange)
{
    Doc doc = cargaVersion("config_v3.xml");  // one IP input
    std::string antes = serializa(doc.get());
    EXPECT_EQ(UTILSXMLINT_CopyEntradaIP(doc.get(), 1, 1), 0);
    EXPECT_EQ(serializa(doc.get()), antes);

    Doc cuatro = cargaVersion("config_v4.xml");
    antes = serializa(cuatro.get());
    EXPECT_EQ(UTILSXMLINT_CopyEntradaIP(cuatro.get(), 1, 3), 0);
    EXPECT_EQ(UTILSXMLINT_CopyEntradaIP(cuatro.get(), 3, 1), 0);
    EXPECT_EQ(UTILSXMLINT_CopyServicioEntradaIP(cuatro.get(), 2, 2, 1, 1), 0);  // INPUT2 has one service
    EXPECT_EQ(UTILSXMLINT_CopyServicioEntradaIP(cuatro.get(), 1, 1, 2, 3), 0);
    EXPECT_EQ(UTILSXMLINT_CopyEntradaIPenSalidaIP(cuatro.get(), 3, 1), 0);
    EXPECT_EQ(serializa(cuatro.get()), antes);
}

// ---------------------------------------------------------------------------
// Services of an IP input
// ---------------------------------------------------------------------------

TEST(ServiciosIP, ANewServiceCarriesTheDefaultValuesInOrder)
{
    Doc doc = cargaVersion("config_v4.xml");
    EXPECT_EQ(UTILSXML_CreaNuevoServicioEntradaIP(doc.get(), 2), 2);
    EXPECT_EQ(texto(doc.get(), entrada(2) + "/NUM"), "2");
    EXPECT_EQ(hijos(doc.get(), entrada(2)), (std::vector<std::string>{"NUM", "ISER1", "ISER2"}));
    EXPECT_EQ(hijos(doc.get(), servicio(2, 2)), (std::vector<std::string>{"NOMBRE", "SEL", "SERVICEID", "NOMBREOUT",
                                                                          "SERVICEIDOUT", "LCN", "CHNUMBER"}));
    EXPECT_EQ(hijos(doc.get(), servicio(2, 2) + "/CHNUMBER"),
              (std::vector<std::string>{"TABLETYPE", "MAJOR", "MINOR"}));
    EXPECT_EQ(valoresServicio(doc.get(), 2, 2), (Valores{"MBRO1", "0", "1", "MBRO1", "1", "1", "0", "1", "1"}));

    char nombre[17];
    EXPECT_EQ(UTILSXML_LeeENTRAIPSERVNAME(doc.get(), nombre, sizeof nombre, 2, 2), 0);
    EXPECT_STREQ(nombre, "MBRO1");
}

TEST(ServiciosIP, AServiceOfAMissingInputFails)
{
    Doc doc = cargaVersion("config_v4.xml");
    const std::string antes = serializa(doc.get());
    EXPECT_EQ(UTILSXML_CreaNuevoServicioEntradaIP(doc.get(), 5), -1);
    EXPECT_EQ(UTILSXML_BorraServicioEntradaIP(doc.get(), 5, 1), -1);
    EXPECT_EQ(serializa(doc.get()), antes);
}

TEST(ServiciosIP, DeletingTheSecondOfThreeMovesTheThirdDown)
{
    Doc doc = cargaVersion("config_v4.xml");
    const Valores primero = valoresServicio(doc.get(), 1, 1);
    const Valores tercero = valoresServicio(doc.get(), 1, 3);
    EXPECT_EQ(UTILSXML_BorraServicioEntradaIP(doc.get(), 1, 2), 0);
    EXPECT_EQ(texto(doc.get(), entrada(1) + "/NUM"), "2");
    EXPECT_EQ(valoresServicio(doc.get(), 1, 1), primero);
    EXPECT_EQ(valoresServicio(doc.get(), 1, 2), tercero);
    EXPECT_EQ(cuenta(doc.get(), servicio(1, 3)), 0u);
}

TEST(ServiciosIP, DeletingServiceFiveOfFourDoesNothing)
{
    Doc doc = cargaVersion("config_v4.xml");
    ASSERT_EQ(UTILSXML_CreaNuevoServicioEntradaIP(doc.get(), 1), 4);
    const std::string antes = serializa(doc.get());
    EXPECT_EQ(UTILSXML_BorraServicioEntradaIP(doc.get(), 1, 5), 0);
    EXPECT_EQ(serializa(doc.get()), antes);
}

struct Largo {
    std::string valor;
    std::string copiado;
};

void PrintTo(const Largo &largo, std::ostream *salida) { *salida << largo.valor.size() << " bytes"; }

class CopiaLarga : public ::testing::TestWithParam<Largo> {};

TEST_P(CopiaLarga, LongValuesAreCopiedCutToNinetyNineBytesAtMost)
{
    Doc doc = cargaVersion("config_v4.xml");
    fija(doc.get(), servicio(1, 3) + "/NOMBRE", GetParam().valor);
    fija(doc.get(), servicio(1, 3) + "/NOMBREOUT", GetParam().valor);
    ASSERT_EQ(UTILSXML_BorraServicioEntradaIP(doc.get(), 1, 2), 0);
    EXPECT_EQ(texto(doc.get(), servicio(1, 2) + "/NOMBRE"), GetParam().copiado);
    EXPECT_EQ(texto(doc.get(), servicio(1, 2) + "/NOMBREOUT"), GetParam().copiado);
    EXPECT_EQ(texto(doc.get(), servicio(1, 2) + "/SERVICEID"), "1103");
}

std::string repite(const std::string &trozo, int veces)
{
    std::string texto;
    for (int i = 0; i < veces; ++i)
        texto += trozo;
    return texto;
}

INSTANTIATE_TEST_SUITE_P(Valores, CopiaLarga,
                         ::testing::Values(Largo{std::string(120, 'A'), std::string(99, 'A')},
                                           Largo{std::string(99, 'B'), std::string(99, 'B')},
                                           Largo{repite("ñ", 60), repite("ñ", 49)},
                                           Largo{"KIDS &amp; TEENS", "KIDS & TEENS"}));

// ---------------------------------------------------------------------------
// IP outputs
// ---------------------------------------------------------------------------

TEST(SalidasIP, AnOutputBeyondTheNumberOfInputsIsNotCreated)
{
    Doc doc = cargaVersion("config_v4.xml");
    const std::string antes = serializa(doc.get());
    EXPECT_EQ(UTILSXML_CreaNuevaentradaIPenSalidaIP(doc.get(), 3), 0);
    EXPECT_EQ(serializa(doc.get()), antes);
}

TEST(SalidasIP, ANewOutputCarriesTheDefaultValuesAndNoStandard)
{
    Doc doc = cargaVersion("config_v5.xml");
    ASSERT_EQ(UTILSXML_CreaNuevaentradaIP(doc.get()), 3);
    EXPECT_EQ(UTILSXML_CreaNuevaentradaIPenSalidaIP(doc.get(), 3), 0);
    EXPECT_EQ(hijos(doc.get(), "/ENCODERCONFIG/SALIDAIP"),
              (std::vector<std::string>{"TXRX", "TIPO", "SALIDA1", "SALIDA2", "SALIDA3"}));
    EXPECT_EQ(hijos(doc.get(), salida(3)), std::vector<std::string>(std::begin(camposSalida), std::end(camposSalida)));
    EXPECT_EQ(valoresSalida(doc.get(), 3),
              (Valores{"0", "1.1.1.1", "1025", "1.1.1.1", "1026", "1", "0", "0", "1026", "1026", "0"}));
    EXPECT_EQ(texto(doc.get(), "/ENCODERCONFIG/SERVICIOSIP/NUMINP"), "3");

    char estandar[17];
    EXPECT_EQ(UTILSXML_LeeSalidaIPESTANDAR(doc.get(), estandar, sizeof estandar, 3), -1);
    EXPECT_EQ(UTILSXML_LeeSalidaIPESTANDAR(doc.get(), estandar, sizeof estandar, 2), 0);
}

TEST(SalidasIP, DeletingTheFirstMovesTheSecondDownButNotItsStandard)
{
    Doc doc = cargaVersion("config_v5.xml");
    const Valores segunda = valoresSalida(doc.get(), 2);
    EXPECT_EQ(UTILSXML_BorraEntradaIPenSalidaIP(doc.get(), 1), 0);
    EXPECT_EQ(valoresSalida(doc.get(), 1), segunda);
    EXPECT_EQ(texto(doc.get(), salida(1) + "/ESTANDAR"), "0");
    EXPECT_EQ(cuenta(doc.get(), salida(2)), 0u);
    // The outputs follow NUMINP: nothing is counted down here.
    EXPECT_EQ(texto(doc.get(), "/ENCODERCONFIG/SERVICIOSIP/NUMINP"), "2");
}

// ---------------------------------------------------------------------------
// Documents older than the lists
// ---------------------------------------------------------------------------

struct Operacion {
    const char *nombre;
    std::function<int(xmlDocPtr)> llamada;
};

const Operacion operacionesConfig[] = {
    {"CreaNuevaentradaIP", [](xmlDocPtr d) { return UTILSXML_CreaNuevaentradaIP(d); }},
    {"BorraEntradaIP", [](xmlDocPtr d) { return UTILSXML_BorraEntradaIP(d, 1); }},
    {"CreaNuevoServicioEntradaIP", [](xmlDocPtr d) { return UTILSXML_CreaNuevoServicioEntradaIP(d, 1); }},
    {"BorraServicioEntradaIP", [](xmlDocPtr d) { return UTILSXML_BorraServicioEntradaIP(d, 1, 1); }},
    {"CreaNuevaentradaIPenSalidaIP", [](xmlDocPtr d) { return UTILSXML_CreaNuevaentradaIPenSalidaIP(d, 1); }},
    {"BorraEntradaIPenSalidaIP", [](xmlDocPtr d) { return UTILSXML_BorraEntradaIPenSalidaIP(d, 1); }},
    {"CopyEntradaIP", [](xmlDocPtr d) { return UTILSXMLINT_CopyEntradaIP(d, 1, 2); }},
};

const Operacion operacionesStatus[] = {
    {"STATUS_CreaNuevaentradaIP", [](xmlDocPtr d) { return UTILSXML_STATUS_CreaNuevaentradaIP(d); }},
    {"STATUS_BorraEntradaIP", [](xmlDocPtr d) { return UTILSXML_STATUS_BorraEntradaIP(d, 1); }},
    {"STATUS_CreaNuevoServicioEntradaIP",
     [](xmlDocPtr d) { return UTILSXML_STATUS_CreaNuevoServicioEntradaIP(d, 1); }},
    {"STATUS_BorraServicioEntradaIP", [](xmlDocPtr d) { return UTILSXML_STATUS_BorraServicioEntradaIP(d, 1, 1); }},
    {"STATUS_CopyEntradaIP", [](xmlDocPtr d) { return UTILSXMLINT_STATUS_CopyEntradaIP(d, 1, 2); }},
};

TEST(VersionListas, ConfigurationListsNeedVersionThree)
{
    for (const char *fixture : {"config_v1.xml", "config_v2.xml", "config_noversion.xml"})
        for (const Operacion &operacion : operacionesConfig) {
            Doc doc = cargaVersion(fixture);
            const std::string antes = serializa(doc.get());
            EXPECT_EQ(operacion.llamada(doc.get()), -1) << operacion.nombre << " on " << fixture;
            EXPECT_EQ(serializa(doc.get()), antes) << operacion.nombre << " on " << fixture;
        }
    // The same unversioned document raised to version 3 is accepted.
    Doc doc = cargaVersion("config_noversion.xml");
    xmlNewTextChild(xmlDocGetRootElement(doc.get()), nullptr, BAD_CAST "CONFIGVERS", BAD_CAST "3");
    EXPECT_EQ(UTILSXML_CreaNuevaentradaIP(doc.get()), 3);
}

TEST(VersionListas, StatusListsNeedVersionFour)
{
    for (const char *fixture : {"status_v3.xml", "status_v2.xml"})
        for (const Operacion &operacion : operacionesStatus) {
            Doc doc = cargaVersion(fixture);
            const std::string antes = serializa(doc.get());
            EXPECT_EQ(operacion.llamada(doc.get()), -1) << operacion.nombre << " on " << fixture;
            EXPECT_EQ(serializa(doc.get()), antes) << operacion.nombre << " on " << fixture;
        }
    for (const Operacion &operacion : operacionesStatus) {
        Doc doc = cargaVersion("status_v4.xml");
        fija(doc.get(), "/ENCODERSTATUS/CONFIGVERS", "3");
        EXPECT_EQ(operacion.llamada(doc.get()), -1) << operacion.nombre;
    }
}

// ---------------------------------------------------------------------------
// Status document
// ---------------------------------------------------------------------------

TEST(ListasStatus, ANewInputAndServiceStartAtZero)
{
    Doc doc = cargaVersion("status_v4.xml");
    EXPECT_EQ(UTILSXML_STATUS_CreaNuevaentradaIP(doc.get()), 3);
    EXPECT_EQ(texto(doc.get(), "/ENCODERSTATUS/SERVICIOSIP/NUMINP"), "3");
    EXPECT_EQ(hijos(doc.get(), entradaStatus(3)), std::vector<std::string>{"NUM"});
    EXPECT_EQ(texto(doc.get(), entradaStatus(3) + "/NUM"), "0");

    EXPECT_EQ(UTILSXML_STATUS_CreaNuevoServicioEntradaIP(doc.get(), 3), 1);
    EXPECT_EQ(UTILSXML_STATUS_CreaNuevoServicioEntradaIP(doc.get(), 2), 2);
    EXPECT_EQ(texto(doc.get(), entradaStatus(2) + "/NUM"), "2");
    EXPECT_EQ(hijos(doc.get(), servicioStatus(2, 2)), (std::vector<std::string>{"BITRATE", "MAXBITRATE"}));
    EXPECT_EQ(serviciosStatusDe(doc.get(), 2),
              (std::vector<std::pair<std::string, std::string>>{{"4.60", "6.05"}, {"0", "0"}}));
    EXPECT_EQ(serviciosStatusDe(doc.get(), 3), (std::vector<std::pair<std::string, std::string>>{{"0", "0"}}));
}

TEST(ListasStatus, DeletingTheSecondOfThreeServicesMovesTheThirdDown)
{
    Doc doc = cargaVersion("status_v4.xml");
    EXPECT_EQ(UTILSXML_STATUS_BorraServicioEntradaIP(doc.get(), 1, 2), 0);
    EXPECT_EQ(texto(doc.get(), entradaStatus(1) + "/NUM"), "2");
    EXPECT_EQ(serviciosStatusDe(doc.get(), 1),
              (std::vector<std::pair<std::string, std::string>>{{"3.10", "4.00"}, {"2.25", "2.90"}}));
    EXPECT_EQ(UTILSXML_STATUS_BorraServicioEntradaIP(doc.get(), 1, 5), 0);
    EXPECT_EQ(texto(doc.get(), entradaStatus(1) + "/NUM"), "2");
}

TEST(ListasStatus, DeletingTheFirstInputMovesTheSecondDown)
{
    Doc doc = cargaVersion("status_v4.xml");
    EXPECT_EQ(UTILSXML_STATUS_BorraEntradaIP(doc.get(), 1), 0);
    EXPECT_EQ(texto(doc.get(), "/ENCODERSTATUS/SERVICIOSIP/NUMINP"), "1");
    EXPECT_EQ(texto(doc.get(), entradaStatus(1) + "/NUM"), "1");
    EXPECT_EQ(serviciosStatusDe(doc.get(), 1), (std::vector<std::pair<std::string, std::string>>{{"4.60", "6.05"}}));
    EXPECT_EQ(cuenta(doc.get(), entradaStatus(2)), 0u);
    EXPECT_EQ(texto(doc.get(), "/ENCODERSTATUS/SERVICIOSIP/BITRATEFREE"), "9.70");
}

TEST(ListasStatus, CopiesMoveBothBitRates)
{
    Doc doc = cargaVersion("status_v4.xml");
    EXPECT_EQ(UTILSXMLINT_STATUS_CopyServicioEntradaIP(doc.get(), 2, 1, 1, 2), 0);
    EXPECT_EQ(serviciosStatusDe(doc.get(), 2), (std::vector<std::pair<std::string, std::string>>{{"7.55", "9.85"}}));
    EXPECT_EQ(UTILSXMLINT_STATUS_CopyEntradaIP(doc.get(), 2, 1), 0);
    EXPECT_EQ(serviciosStatusDe(doc.get(), 2), serviciosStatusDe(doc.get(), 1));
    EXPECT_EQ(texto(doc.get(), entradaStatus(2) + "/NUM"), "3");
}

}  // namespace
