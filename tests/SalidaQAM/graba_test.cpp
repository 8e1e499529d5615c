// Saves of the QAM transport and output pages, checked on the document afterwards: every
// written element holds what was posted and nothing else changed.
#include "SalidaQAM/SalidaQAM.h"

#include "qam_test.h"

#include <functional>
#include <map>

namespace {

using namespace qam_test;

using Guardado = int (*)(xmlDocPtr, char *);

int Graba(Guardado guardado, xmlDocPtr documento, const std::string &formulario)
{
    std::string copia = formulario;  // the saves take the engine's modifiable text
    return guardado(documento, copia.data());
}

// A form text from key=value items, in order.
std::string Formulario(const std::vector<std::pair<std::string, std::string>> &claves)
{
    std::string texto;
    for (const auto &[clave, valor] : claves)
        texto += (texto.empty() ? "" : "&") + clave + "=" + valor;
    return texto;
}

// The document a save should leave: the original with these element texts set.
Doc Esperado(Doc original, const std::map<std::string, std::string> &cambios)
{
    for (const auto &[ruta, valor] : cambios)
        Fija(original.get(), ruta, valor);
    return original;
}

const std::string kQAM = "/ENCODERCONFIG/SALIDAQAM/";
const std::string kTS = "/ENCODERCONFIG/SALIDATS/";
const std::string kIP = "/ENCODERCONFIG/SERVICIOSIP/";

// --- Output save -------------------------------------------------------------------------

const std::vector<std::pair<std::string, std::string>> kSalida = {
    {"numcanales", "2"}, {"outtab", "4"},   {"outchn", "123.25"}, {"outbau", "6.9"}, {"outout", "2"},
    {"outint", "8"},     {"outmod", "5"},   {"outlev", "42"},     {"outrfl", "0"},   {"sufijo", "_010.000.000.021"},
};

const std::map<std::string, std::string> kSalidaEscrita = {
    {kQAM + "TABLA", "4"},        {kQAM + "FREC", "123.25"},   {kQAM + "BAUDRATE", "6.9"}, {kQAM + "SALIDA", "2"},
    {kQAM + "INTERLEAVING", "8"}, {kQAM + "MODOSALIDA", "5"}, {kQAM + "NIVEL", "42"},     {kQAM + "RFLOOP", "0"},
};

TEST(GrabaSalida, WritesEveryKeyAndNothingElse)
{
    Doc config = Demo("network.010.000.000.021.xml");
    EXPECT_EQ(Graba(SALQAM_GrabaSalida, config.get(), Formulario(kSalida)), 0);
    EXPECT_EQ(Serializa(config.get()), Serializa(Esperado(Demo("network.010.000.000.021.xml"), kSalidaEscrita).get()));
}

TEST(GrabaSalida, ValuesAreDecodedAndStoredAsReceived)
{
    Doc config = Demo("network.010.000.000.021.xml");
    auto claves = kSalida;
    claves[2].second = "12%2C5+x";  // "12,5 x"
    EXPECT_EQ(Graba(SALQAM_GrabaSalida, config.get(), Formulario(claves)), 0);
    EXPECT_EQ(Texto(config.get(), kQAM + "FREC"), "12,5 x");
}

class GrabaSalidaFallida : public testing::TestWithParam<std::string> {};

// A write that fails leaves the earlier writes in place, and the later ones are still made.
TEST_P(GrabaSalidaFallida, OtherKeysStillWrittenAndResultSix)
{
    const std::string ruta = kQAM + GetParam();
    Doc config = Demo("network.010.000.000.021.xml");
    Quita(config.get(), ruta);
    EXPECT_EQ(Graba(SALQAM_GrabaSalida, config.get(), Formulario(kSalida)), 6);
    auto cambios = kSalidaEscrita;
    cambios.erase(ruta);
    Doc esperado = Esperado(Demo("network.010.000.000.021.xml"), cambios);
    Quita(esperado.get(), ruta);
    EXPECT_EQ(Serializa(config.get()), Serializa(esperado.get()));
}

INSTANTIATE_TEST_SUITE_P(Elementos, GrabaSalidaFallida,
                         testing::Values("TABLA", "FREC", "BAUDRATE", "SALIDA", "INTERLEAVING", "MODOSALIDA", "NIVEL",
                                         "RFLOOP"));

// --- Refused saves (both pages) -----------------------------------------------------------------

const std::vector<std::pair<std::string, std::string>> kTransporte = {
    {"numcanales", "2"},         {"tsid", "4000"},          {"cnam", "1_ALPHA_2_BETA"}, {"svpid", "1_300_2_310"},
    {"sapid", "1_301_2_311"},    {"mchn", "1_5_2_6"},       {"chnm", "1_7_2_8"},        {"autochan", "1_2_2_0"},
    {"svcid", "1_900_2_901"},    {"haysalidaip", "0"},      {"ntotserv", "2"},
};

const std::map<std::string, std::string> kTransporteEscrito = {
    {kTS + "TSID", "4000"},
    {kTS + "CANAL1/NOMBRE", "ALPHA"},           {kTS + "CANAL2/NOMBRE", "BETA"},
    {kTS + "CANAL1/VIDEOPID", "300"},           {kTS + "CANAL2/VIDEOPID", "310"},
    {kTS + "CANAL1/AUDIOPID", "301"},           {kTS + "CANAL2/AUDIOPID", "311"},
    {kTS + "CANAL1/CHNUMBER/MAJOR", "5"},       {kTS + "CANAL2/CHNUMBER/MAJOR", "6"},
    {kTS + "CANAL1/CHNUMBER/MINOR", "7"},       {kTS + "CANAL2/CHNUMBER/MINOR", "8"},
    {kTS + "CANAL1/CHNUMBER/TABLETYPE", "2"},   {kTS + "CANAL2/CHNUMBER/TABLETYPE", "0"},
    {kTS + "CANAL1/SERVICEID", "900"},          {kTS + "CANAL2/SERVICEID", "901"},
};

struct CasoRechazo {
    std::string nombre;
    Guardado guardado;
    const std::vector<std::pair<std::string, std::string>> *claves;
    std::string clave;   // key changed
    std::string valor;   // new value; "<none>" removes the key
};

std::string NombreRechazo(const testing::TestParamInfo<CasoRechazo> &info)
{
    return info.param.nombre;
}

class Rechazo : public testing::TestWithParam<CasoRechazo> {};

TEST_P(Rechazo, ResultSevenAndNothingWritten)
{
    const CasoRechazo &caso = GetParam();
    std::vector<std::pair<std::string, std::string>> claves;
    for (const auto &par : *caso.claves) {
        if (par.first != caso.clave)
            claves.push_back(par);
        else if (caso.valor != "<none>")
            claves.push_back({par.first, caso.valor});
    }
    Doc config = Demo("network.xml");
    const std::string antes = Serializa(config.get());
    EXPECT_EQ(Graba(caso.guardado, config.get(), Formulario(claves)), 7);
    EXPECT_EQ(Serializa(config.get()), antes);
}

std::vector<CasoRechazo> CasosRechazo()
{
    std::vector<CasoRechazo> casos;
    const struct {
        const char *pagina;
        Guardado guardado;
        const std::vector<std::pair<std::string, std::string>> *claves;
        std::vector<const char *> requeridas;
    } paginas[] = {
        {"Salida", SALQAM_GrabaSalida, &kSalida,
         {"numcanales", "outtab", "outchn", "outbau", "outout", "outint", "outmod", "outlev", "outrfl"}},
        {"Transporte", SALQAM_GrabaTransporte, &kTransporte,
         {"numcanales", "tsid", "cnam", "svpid", "sapid", "mchn", "chnm", "svcid"}},
    };
    auto anade = [&](const std::string &nombre, const auto &pagina, const std::string &clave, const std::string &valor) {
        casos.push_back({nombre, pagina.guardado, pagina.claves, clave, valor});
    };
    for (const auto &pagina : paginas) {
        const std::string p = pagina.pagina;
        for (const auto &[etiqueta, valor] : std::vector<std::pair<std::string, std::string>>{
                 {"Cero", "0"}, {"Diez", "10"}, {"Negativo", "-1"}, {"Texto", "x"}, {"Cola", "2x"}})
            anade(p + "NumCanales" + etiqueta, pagina, "numcanales", valor);
        for (const char *clave : pagina.requeridas) {
            anade(p + "Sin_" + clave, pagina, clave, "<none>");
            anade(p + "Vacio_" + clave, pagina, clave, "");
        }
    }
    return casos;
}

INSTANTIATE_TEST_SUITE_P(Claves, Rechazo, testing::ValuesIn(CasosRechazo()), NombreRechazo);

TEST(Rechazo, NoTextIsFour)
{
    Doc config = Demo("network.xml");
    EXPECT_EQ(SALQAM_GrabaSalida(config.get(), nullptr), 4);
    EXPECT_EQ(SALQAM_GrabaTransporte(config.get(), nullptr), 4);
}

// --- Transport save: encoder channels ------------------------------------------------------------

TEST(GrabaTransporte, WritesTsidAndEveryListAndNothingElse)
{
    Doc config = Demo("network.010.000.000.021.xml");
    EXPECT_EQ(Graba(SALQAM_GrabaTransporte, config.get(), Formulario(kTransporte)), 0);
    EXPECT_EQ(Serializa(config.get()),
              Serializa(Esperado(Demo("network.010.000.000.021.xml"), kTransporteEscrito).get()));
}

TEST(GrabaTransporte, TableTypeIsOptional)
{
    auto claves = kTransporte;
    std::erase_if(claves, [](const auto &par) { return par.first == "autochan"; });
    auto escrito = kTransporteEscrito;
    escrito.erase(kTS + "CANAL1/CHNUMBER/TABLETYPE");
    escrito.erase(kTS + "CANAL2/CHNUMBER/TABLETYPE");
    Doc config = Demo("network.010.000.000.021.xml");
    EXPECT_EQ(Graba(SALQAM_GrabaTransporte, config.get(), Formulario(claves)), 0);
    EXPECT_EQ(Serializa(config.get()), Serializa(Esperado(Demo("network.010.000.000.021.xml"), escrito).get()));
}

TEST(GrabaTransporte, OnePartNumberIsWrittenBackUnchanged)
{
    Doc config = Version("config_v1.xml");
    auto claves = kTransporte;
    claves[5].second = "1_3077";
    EXPECT_EQ(Graba(SALQAM_GrabaTransporte, config.get(), Formulario(claves)), 0);
    EXPECT_EQ(Texto(config.get(), kTS + "CANAL1/CHNUMBER/MAJOR"), "3077");
}

// The lists are split at every "_": a name holding one loses what follows, and the pieces
// after it are read as lines and values of their own.
struct CasoNombre {
    const char *lista;
    const char *canal1;
    const char *canal2;
};

class NombreConSubrayado : public testing::TestWithParam<CasoNombre> {};

TEST_P(NombreConSubrayado, IsSplitByTheSave)
{
    auto claves = kTransporte;
    claves[2].second = GetParam().lista;
    Doc config = Demo("network.010.000.000.021.xml");
    EXPECT_EQ(Graba(SALQAM_GrabaTransporte, config.get(), Formulario(claves)), 0);
    EXPECT_EQ(Texto(config.get(), kTS + "CANAL1/NOMBRE"), GetParam().canal1);
    EXPECT_EQ(Texto(config.get(), kTS + "CANAL2/NOMBRE"), GetParam().canal2);
}

INSTANTIATE_TEST_SUITE_P(Listas, NombreConSubrayado,
                         testing::Values(CasoNombre{"1_NEWS_HD", "NEWS", "CCTV"},         // "HD" alone is dropped
                                         CasoNombre{"1_NEWS_HD_2_B", "NEWS", "CCTV"},     // (HD, 2) then "B" dropped
                                         CasoNombre{"1_A_B_C_2_D", "A", "D"},             // (B, C) ignored
                                         CasoNombre{"2_X_1_Y", "Y", "X"}));

TEST(GrabaTransporte, LinesAboveTheChannelCountWithoutIPServicesAreIgnored)
{
    auto claves = kTransporte;
    claves[2].second = "1_ALPHA_2_BETA_3_GAMMA";
    Doc config = Demo("network.010.000.000.022.xml");
    Doc esperado = Demo("network.010.000.000.022.xml");
    EXPECT_EQ(Graba(SALQAM_GrabaTransporte, config.get(), Formulario(claves)), 0);
    EXPECT_EQ(Serializa(config.get()), Serializa(Esperado(std::move(esperado), kTransporteEscrito).get()));
    EXPECT_EQ(Texto(config.get(), kTS + "CANAL3/NOMBRE"), "MENU");
}

class GrabaTransporteFallida : public testing::TestWithParam<std::string> {};

TEST_P(GrabaTransporteFallida, OtherWritesStillMadeAndResultSix)
{
    const std::string ruta = kTS + GetParam();
    Doc config = Demo("network.010.000.000.021.xml");
    Quita(config.get(), ruta);
    EXPECT_EQ(Graba(SALQAM_GrabaTransporte, config.get(), Formulario(kTransporte)), 6);
    auto cambios = kTransporteEscrito;
    cambios.erase(ruta);
    Doc esperado = Esperado(Demo("network.010.000.000.021.xml"), cambios);
    Quita(esperado.get(), ruta);
    EXPECT_EQ(Serializa(config.get()), Serializa(esperado.get()));
}

INSTANTIATE_TEST_SUITE_P(Elementos, GrabaTransporteFallida,
                         testing::Values("TSID", "CANAL1/NOMBRE", "CANAL2/VIDEOPID", "CANAL1/AUDIOPID",
                                         "CANAL2/SERVICEID", "CANAL1/CHNUMBER/MAJOR", "CANAL2/CHNUMBER/MINOR",
                                         "CANAL1/CHNUMBER/TABLETYPE"));

// --- Transport save: IP-input services ---------------------------------------------------------------

// Master unit, two channels; line 3 is service 1 of IP input 2, line 4 service 1 of input 1.
std::vector<std::pair<std::string, std::string>> ConServicios()
{
    return {
        {"numcanales", "2"},  {"tsid", "4000"},
        {"cnam", "1_ALPHA_2_BETA_3_SPORT_4_NEWS"},
        {"svpid", "1_300_2_310_3_999_4_998"},
        {"sapid", "1_301_2_311_3_997_4_996"},
        {"mchn", "1_5_2_6_3_33_4_44"},
        {"chnm", "1_7_2_8_3_55_4_66"},
        {"autochan", "1_2_2_0_3_1_4_2"},
        {"svcid", "1_900_2_901_3_30_4_40"},
        {"haysalidaip", "1"}, {"entip", "3_2_4_1"}, {"lsnumserv", "3_1_4_1"}, {"ntotserv", "4"},
    };
}

const std::map<std::string, std::string> kServiciosEscritos = {
    {kIP + "INPUT2/ISER1/NOMBREOUT", "SPORT"},          {kIP + "INPUT1/ISER1/NOMBREOUT", "NEWS"},
    {kIP + "INPUT2/ISER1/SERVICEIDOUT", "30"},          {kIP + "INPUT1/ISER1/SERVICEIDOUT", "40"},
    {kIP + "INPUT2/ISER1/CHNUMBER/MAJOR", "33"},        {kIP + "INPUT1/ISER1/CHNUMBER/MAJOR", "44"},
    {kIP + "INPUT2/ISER1/CHNUMBER/MINOR", "55"},        {kIP + "INPUT1/ISER1/CHNUMBER/MINOR", "66"},
    {kIP + "INPUT2/ISER1/CHNUMBER/TABLETYPE", "1"},     {kIP + "INPUT1/ISER1/CHNUMBER/TABLETYPE", "2"},
};

std::map<std::string, std::string> Union(std::map<std::string, std::string> a, const std::map<std::string, std::string> &b)
{
    a.insert(b.begin(), b.end());
    return a;
}

TEST(GrabaTransporteIP, ServiceLinesLandOnTheirInputAndService)
{
    Doc config = Demo("network.xml");
    EXPECT_EQ(Graba(SALQAM_GrabaTransporte, config.get(), Formulario(ConServicios())), 0);
    // PIDs of the service lines go nowhere.
    EXPECT_EQ(Serializa(config.get()),
              Serializa(Esperado(Demo("network.xml"), Union(kTransporteEscrito, kServiciosEscritos)).get()));
}

struct CasoIP {
    const char *nombre;
    std::map<std::string, std::string> cambios;  // keys changed in the form
    int resultado;
    bool serviciosEscritos;
};

class GrabaTransporteIPCasos : public testing::TestWithParam<CasoIP> {};

TEST_P(GrabaTransporteIPCasos, ChannelsAlwaysWrittenServicesOnlyWhenHandled)
{
    auto claves = ConServicios();
    for (auto &[clave, valor] : claves)
        if (GetParam().cambios.count(clave))
            valor = GetParam().cambios.at(clave);
    Doc config = Demo("network.xml");
    EXPECT_EQ(Graba(SALQAM_GrabaTransporte, config.get(), Formulario(claves)), GetParam().resultado);
    const auto esperado = GetParam().serviciosEscritos ? Union(kTransporteEscrito, kServiciosEscritos) : kTransporteEscrito;
    EXPECT_EQ(Serializa(config.get()), Serializa(Esperado(Demo("network.xml"), esperado).get()));
}

INSTANTIATE_TEST_SUITE_P(
    Casos, GrabaTransporteIPCasos,
    testing::Values(
        CasoIP{"SinSalidaIP", {{"haysalidaip", "0"}}, 0, false},
        CasoIP{"TotalNoSuperaCanales", {{"ntotserv", "2"}}, 0, false},
        CasoIP{"ParEnLineaDeCanal", {{"entip", "2_1_3_2_4_1"}}, 6, false},
        CasoIP{"ServicioEnLineaDeCanal", {{"lsnumserv", "3_1_1_1_4_1"}}, 6, false},
        CasoIP{"DemasiadasLineas", {{"ntotserv", "999999999"}}, 6, false},
        CasoIP{"ParesMasAllaDelTotalIgnorados", {{"entip", "3_2_4_1_9_1"}, {"lsnumserv", "3_1_4_1_9_2"}}, 0, true}),
    [](const testing::TestParamInfo<CasoIP> &info) { return std::string(info.param.nombre); });

TEST(GrabaTransporteIP, LinesAboveTheTotalAreNotWritten)
{
    auto claves = ConServicios();
    claves.back().second = "3";  // ntotserv: line 4 is out
    Doc config = Demo("network.xml");
    EXPECT_EQ(Graba(SALQAM_GrabaTransporte, config.get(), Formulario(claves)), 0);
    EXPECT_EQ(Texto(config.get(), kIP + "INPUT2/ISER1/NOMBREOUT"), "SPORT");
    EXPECT_EQ(Texto(config.get(), kIP + "INPUT1/ISER1/NOMBREOUT"), "MBRO1");
}

TEST(GrabaTransporteIP, UnmappedServiceLineFails)
{
    auto claves = ConServicios();
    for (auto &[clave, valor] : claves)
        if (clave == "entip")
            valor = "3_2";  // line 4 has no IP input
    Doc config = Demo("network.xml");
    EXPECT_EQ(Graba(SALQAM_GrabaTransporte, config.get(), Formulario(claves)), 6);
    EXPECT_EQ(Texto(config.get(), kIP + "INPUT2/ISER1/NOMBREOUT"), "SPORT");
    EXPECT_EQ(Texto(config.get(), kIP + "INPUT1/ISER1/NOMBREOUT"), "MBRO1");
    EXPECT_EQ(Texto(config.get(), kTS + "CANAL2/NOMBRE"), "BETA");
}

TEST(GrabaTransporteIP, DocumentWithoutIPServicesFails)
{
    Doc config = Version("config_v1.xml");  // version 1: no SERVICIOSIP
    EXPECT_EQ(Graba(SALQAM_GrabaTransporte, config.get(), Formulario(ConServicios())), 6);
    EXPECT_EQ(Texto(config.get(), kTS + "CANAL1/NOMBRE"), "ALPHA");
    EXPECT_EQ(Texto(config.get(), kTS + "TSID"), "4000");
}

}  // namespace
