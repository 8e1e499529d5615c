// Saves of the COFDM transport and output pages, checked on the document afterwards: every
// written element holds what was posted and nothing else changed.
#include "SalidaCOFDM/SalidaCOFDM.h"

#include "../SalidaQAM/qam_test.h"

#include <cctype>
#include <map>

namespace {

using namespace qam_test;

using Claves = std::vector<std::pair<std::string, std::string>>;
using Cambios = std::map<std::string, std::string>;

int Graba(CIP_FuncionGrabar guardado, xmlDocPtr documento, const Claves &claves)
{
    std::string texto;
    for (const auto &[clave, valor] : claves)
        texto += (texto.empty() ? "" : "&") + clave + "=" + valor;
    return guardado(documento, texto.data());
}

// The document a save should leave: the original with these element texts set and these
// elements removed (the writes that must fail).
std::string Esperado(const std::string &nombre, const Cambios &cambios, const std::string &quitado = {})
{
    Doc documento = Demo(nombre);
    for (const auto &[ruta, valor] : cambios)
        if (ruta != quitado)
            Fija(documento.get(), ruta, valor);
    if (!quitado.empty())
        Quita(documento.get(), quitado);
    return Serializa(documento.get());
}

const std::string kCOFDM = "/ENCODERCONFIG/SALIDACOFDM/";
const std::string kTS = "/ENCODERCONFIG/SALIDATS/";
const std::string kIP = "/ENCODERCONFIG/SERVICIOSIP/";

// --- Output save ------------------------------------------------------------------------------

const Claves kSalida = {
    {"numcanales", "1"}, {"outtab", "4"},  {"outchn", "3"},     {"outlev", "40"}, {"outmod", "13"},
    {"frecstep", "6"},   {"bwsal", "1"},   {"ingrd", "2"},      {"fecsal", "3"},  {"cellid", "1F2"},
    {"outbau", "6.875"}, {"outout", "2"},  {"outrfl", "1"},     {"sufijo", "_010.000.000.032"},
};

const Cambios kSalidaEscrita = {
    {kCOFDM + "TABLA", "4"},  {kCOFDM + "FREC", "3"},   {kCOFDM + "NIVEL", "40"},       {kCOFDM + "MODO", "13"},
    {kCOFDM + "FRECSTEP", "6"}, {kCOFDM + "BW", "1"},   {kCOFDM + "GUARDA", "2"},       {kCOFDM + "FEC", "3"},
    {kCOFDM + "CELLID", "1F2"}, {kCOFDM + "BAUDRATE", "6.875"}, {kCOFDM + "SALIDA", "2"}, {kCOFDM + "RFLOOP", "1"},
};

class GrabaSalidaCOFDM : public testing::TestWithParam<std::string> {};

// With one element missing its write fails: 6, and every other key, before and after it in
// the writing order, is still stored.
TEST_P(GrabaSalidaCOFDM, EveryKeyWrittenAndAFailedWriteLeavesTheOthers)
{
    const std::string quitado = GetParam().empty() ? "" : kCOFDM + GetParam();
    Doc config = Demo("network.010.000.000.032.xml");
    if (!quitado.empty())
        Quita(config.get(), quitado);
    EXPECT_EQ(Graba(SALCOFDM_GrabaSalida, config.get(), kSalida), quitado.empty() ? 0 : 6);
    EXPECT_EQ(Serializa(config.get()), Esperado("network.010.000.000.032.xml", kSalidaEscrita, quitado));
}

// Test name of a removed element: its path in letters, "Ninguno" when nothing is removed.
std::string NombreElemento(const testing::TestParamInfo<std::string> &info)
{
    std::string nombre;
    for (char ch : info.param)
        if (std::isalnum(static_cast<unsigned char>(ch)))
            nombre += ch;
    return nombre.empty() ? "Ninguno" : nombre;
}

INSTANTIATE_TEST_SUITE_P(Elementos, GrabaSalidaCOFDM,
                         testing::Values("", "TABLA", "MODO", "GUARDA", "FRECSTEP", "NIVEL", "CELLID", "RFLOOP"),
                         NombreElemento);

// --- Refused saves ----------------------------------------------------------------------------

const Claves kTransporte = {
    {"numcanales", "2"}, {"tsid", "0A0B"}, {"ntid", "3002"}, {"nnam", "NET+%26+%3C1%3E"}, {"onid", "20FB"},
    {"nitvs", "5"},      {"sdtvs", "32"},  {"mlcn", "2"},    {"lcnn", "1_31_2_32_3_51_4_52_5_53"},
    {"svcid", "1_601_2_602_3_611_4_612_5_613"},   {"cnam", "1_ALPHA_2_BETA_3_NEWS_4_SPORT_5_FILM"},
    {"svpid", "1_300_2_310_3_999"}, {"sapid", "1_301_2_311_5_998"}, {"haysalidaip", "1"},
    {"entip", "3_1_4_1_5_2"},       {"lsnumserv", "3_1_4_2_5_1"},   {"ntotserv", "5"},
};

struct CasoRechazo {
    const char *nombre;
    CIP_FuncionGrabar guardado;
    const Claves *claves;
    std::string clave;
    std::optional<std::string> valor;  // none: the key is left out
};

class RechazoCOFDM : public testing::TestWithParam<CasoRechazo> {};

TEST_P(RechazoCOFDM, ResultSevenAndNothingWritten)
{
    Claves claves;
    for (const auto &par : *GetParam().claves)
        if (par.first != GetParam().clave)
            claves.push_back(par);
        else if (GetParam().valor)
            claves.push_back({par.first, *GetParam().valor});
    Doc config = Demo("network.010.000.000.031.xml");
    const std::string antes = Serializa(config.get());
    EXPECT_EQ(Graba(GetParam().guardado, config.get(), claves), 7);
    EXPECT_EQ(Serializa(config.get()), antes);
}

INSTANTIATE_TEST_SUITE_P(
    Claves, RechazoCOFDM,
    testing::Values(CasoRechazo{"SalidaCero", SALCOFDM_GrabaSalida, &kSalida, "numcanales", "0"},
                    CasoRechazo{"SalidaDiez", SALCOFDM_GrabaSalida, &kSalida, "numcanales", "10"},
                    CasoRechazo{"SalidaSinCellid", SALCOFDM_GrabaSalida, &kSalida, "cellid", std::nullopt},
                    CasoRechazo{"SalidaFrecstepVacio", SALCOFDM_GrabaSalida, &kSalida, "frecstep", ""},
                    CasoRechazo{"TransporteCero", SALCOFDM_GrabaTransporte, &kTransporte, "numcanales", "0"},
                    CasoRechazo{"TransporteDiez", SALCOFDM_GrabaTransporte, &kTransporte, "numcanales", "10"},
                    CasoRechazo{"TransporteSinLcnn", SALCOFDM_GrabaTransporte, &kTransporte, "lcnn", std::nullopt},
                    CasoRechazo{"TransporteSinMlcn", SALCOFDM_GrabaTransporte, &kTransporte, "mlcn", std::nullopt}),
    [](const testing::TestParamInfo<CasoRechazo> &info) { return info.param.nombre; });

TEST(RechazoCOFDM, NoTextIsFour)
{
    Doc config = Demo("network.010.000.000.031.xml");
    EXPECT_EQ(SALCOFDM_GrabaSalida(config.get(), nullptr), 4);
    EXPECT_EQ(SALCOFDM_GrabaTransporte(config.get(), nullptr), 4);
}

// --- Transport save -----------------------------------------------------------------------------

// Lines 3..5 are IP1.1, IP1.2 and IP2.1; their PIDs go nowhere.
const Cambios kTransporteEscrito = {
    {kTS + "TSID", "0A0B"}, {kTS + "NETWORKID/ID", "3002"}, {kTS + "NETWORKID/NAME", "NET & <1>"},
    {kTS + "NETWORKID/ORIGINAL", "20FB"}, {kTS + "NIT/VERSION", "5"}, {kTS + "SDT/VERSION", "32"}, {kTS + "LCN", "2"},
    {kTS + "CANAL1/LCN", "31"},        {kTS + "CANAL2/LCN", "32"},        {kTS + "CANAL1/SERVICEID", "601"},
    {kTS + "CANAL2/SERVICEID", "602"}, {kTS + "CANAL1/NOMBRE", "ALPHA"},  {kTS + "CANAL2/NOMBRE", "BETA"},
    {kTS + "CANAL1/VIDEOPID", "300"},  {kTS + "CANAL2/VIDEOPID", "310"},  {kTS + "CANAL1/AUDIOPID", "301"},
    {kTS + "CANAL2/AUDIOPID", "311"},
    {kIP + "INPUT1/ISER1/LCN", "51"},  {kIP + "INPUT1/ISER1/SERVICEIDOUT", "611"}, {kIP + "INPUT1/ISER1/NOMBREOUT", "NEWS"},
    {kIP + "INPUT1/ISER2/LCN", "52"},  {kIP + "INPUT1/ISER2/SERVICEIDOUT", "612"}, {kIP + "INPUT1/ISER2/NOMBREOUT", "SPORT"},
    {kIP + "INPUT2/ISER1/LCN", "53"},  {kIP + "INPUT2/ISER1/SERVICEIDOUT", "613"}, {kIP + "INPUT2/ISER1/NOMBREOUT", "FILM"},
};

class GrabaTransporteCOFDM : public testing::TestWithParam<std::string> {};

TEST_P(GrabaTransporteCOFDM, UnitChannelAndServiceWritesAndAFailedWriteLeavesTheOthers)
{
    const std::string quitado = GetParam();
    Doc config = Demo("network.010.000.000.031.xml");
    if (!quitado.empty())
        Quita(config.get(), quitado);
    EXPECT_EQ(Graba(SALCOFDM_GrabaTransporte, config.get(), kTransporte), quitado.empty() ? 0 : 6);
    EXPECT_EQ(Serializa(config.get()), Esperado("network.010.000.000.031.xml", kTransporteEscrito, quitado));
}

INSTANTIATE_TEST_SUITE_P(Elementos, GrabaTransporteCOFDM,
                         testing::Values("", kTS + "TSID", kTS + "NETWORKID/NAME", kTS + "LCN", kTS + "CANAL2/LCN",
                                         kTS + "CANAL1/AUDIOPID", kIP + "INPUT1/ISER2/LCN",
                                         kIP + "INPUT2/ISER1/NOMBREOUT"),
                         NombreElemento);

TEST(GrabaTransporteCOFDM, WithoutIPServicesLinesAboveTheChannelsAreDropped)
{
    Claves claves = kTransporte;
    for (auto &[clave, valor] : claves)
        if (clave == "haysalidaip")
            valor = "0";
    Cambios escrito;
    for (const auto &[ruta, valor] : kTransporteEscrito)
        if (!ruta.starts_with(kIP))
            escrito[ruta] = valor;
    Doc config = Demo("network.010.000.000.031.xml");
    EXPECT_EQ(Graba(SALCOFDM_GrabaTransporte, config.get(), claves), 0);
    EXPECT_EQ(Serializa(config.get()), Esperado("network.010.000.000.031.xml", escrito));
}

}  // namespace
