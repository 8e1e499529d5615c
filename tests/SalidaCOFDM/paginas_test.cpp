// COFDM pages on the demo rack's COFDM units (10.0.0.31: two channels, OFDM, plan "France",
// IP-input services; 10.0.0.32: one channel, cable 64QAM, typed frequency) and small variants.
#include "SalidaCOFDM/SalidaCOFDM.h"

#include "../SalidaQAM/qam_test.h"

namespace {

using namespace qam_test;

constexpr char kModelo[] = "710205  - COFDM 2 CMP+HDMI";
const std::string kSufijo = "_010_000_000_031";
const std::string kSalida = "/ENCODERCONFIG/SALIDACOFDM/";

std::string N(const std::string &base)
{
    return base + kSufijo;
}

std::string N(const std::string &base, int linea)
{
    return base + std::to_string(linea) + kSufijo;
}

std::string Pagina(CIP_FuncionPagina funcion, int modo, xmlDocPtr documento, uint8_t canales, int opciones = 0,
                   const char *modelo = kModelo)
{
    return Captura([&] { funcion(modo, documento, 0, canales, opciones, 0, 0, modelo, 3, kSufijo.c_str(), 1, 0); });
}

std::vector<std::string> Valores(const Html &html, const std::string &select)
{
    std::vector<std::string> valores;
    for (xmlNodePtr opcion : Nodos(html.get(), "//select[@name='" + select + "']/option/@value"))
        valores.push_back(reinterpret_cast<const char *>(opcion->children->content));
    return valores;
}

// --- Status -----------------------------------------------------------------------------------

TEST(EstadoCOFDM, QuickRowHasNoEASColumn)
{
    Doc status = Demo("sondeo.010.000.000.031.xml");
    const std::string fila = Pagina(SALCOFDM_SondeoRapido, 1, status.get(), 2);
    const auto celdas = Celdas(fila);
    ASSERT_EQ(celdas.size(), 14u);
    EXPECT_NE(celdas[2].find("alt=\"Temp\""), std::string::npos);
    EXPECT_NE(celdas[3].find("alt=\"ch1\""), std::string::npos);
    EXPECT_EQ(celdas[5], "<strong>n/a</strong>&nbsp");  // CH3 of a two-channel unit
    EXPECT_EQ(celdas[9], "France");
    EXPECT_EQ(celdas[10], "<strong>C34</strong>");
    EXPECT_EQ(celdas[13], "<strong>OK</strong>");
    EXPECT_EQ(fila.find("alt=\"EAS\""), std::string::npos);
    EXPECT_EQ(Pagina(SALCOFDM_SondeoRapido, 0, nullptr, 0).find(">EAS<"), std::string::npos);
    EXPECT_EQ(Celdas(Pagina(SALCOFDM_SondeoDetallado, 1, status.get(), 2)).size(), 8u);
}

// --- Transport --------------------------------------------------------------------------------

TEST(TransporteCOFDM, DvbFieldsAndOneLinePerChannelAndSelectedService)
{
    Doc config = Demo("network.010.000.000.031.xml");
    const std::string fila = Pagina(SALCOFDM_GeneraTransporte, 1, config.get(), 2, 1);
    EXPECT_EQ(Celdas(fila).size(), 18u);
    const Html html(fila);
    for (const auto &[campo, valor] : {std::pair{"tsid", "0411"}, {"ntid", "3001"}, {"onid", "20FA"}}) {
        EXPECT_EQ(html.Input(N(campo)), valor);
        EXPECT_EQ(html.Valor("//input[@name='" + N(campo) + "']/@onblur"),
                  "ValidarHexa(this,'0x1','0xffff');Compruebacambios(this);");
        EXPECT_EQ(html.Valor("//input[@name='" + N(campo) + "']/preceding-sibling::input[1]/@value"), "0x");
    }
    EXPECT_EQ(html.Input(N("nnam")), "HEADEND A");
    EXPECT_EQ(html.Elegida(N("nitvs")), "32");
    EXPECT_EQ(html.Valor("//select[@name='" + N("nitvs") + "']/option[@selected]"), "Auto");
    EXPECT_EQ(html.Elegida(N("mlcn")), "0");

    // Channels 1 and 2, then the selected services IP1.1, IP1.2 and IP2.1.
    const struct {
        int linea;
        const char *lcn, *nombre, *entip;
    } lineas[] = {{1, "21", "RECEPTION", nullptr}, {2, "22", "CONFERENCE", nullptr}, {3, "41", "NEWS 24", "1"},
                  {4, "42", "SPORTS", "1"},         {5, "44", "CINEMA", "2"}};
    for (const auto &linea : lineas) {
        EXPECT_EQ(html.Input(N("lcnn", linea.linea)), linea.lcn);
        EXPECT_EQ(html.Valor("//input[@name='" + N("lcnn", linea.linea) + "']/@onblur"),
                  "ValidarEntero(this,'1','1023');Compruebacambios(this);");
        EXPECT_EQ(html.Input(N("cnam", linea.linea)), linea.nombre);
        EXPECT_EQ(html.Valor("//input[@name='" + N("cnam", linea.linea) + "']/@maxlength"), "20");
        EXPECT_EQ(html.Input(N("entip", linea.linea)), linea.entip ? std::optional<std::string>(linea.entip) : std::nullopt);
    }
    EXPECT_FALSE(html.Existe("//input[@name='" + N("lcnn", 6) + "']"));
    EXPECT_EQ(html.Input(N("ntotserv")), "5");
    EXPECT_EQ(html.Input(N("tipounidad")), "1");
}

TEST(TransporteCOFDM, ClosingRowNumbersIdentifiersAndSetsVersions)
{
    const Html html(Pagina(SALCOFDM_GeneraTransporte, 2, nullptr, 0));
    for (const char *campo : {"tsid", "ntid", "onid"})
        EXPECT_EQ(html.Valor(std::string("//button[@name='auto") + campo + "_all']/@onclick"),
                  std::string("NumeraCampo('") + campo + "',1,1,0);");
    for (const char *select : {"nitvs_all", "sdtvs_all"}) {
        const auto valores = Valores(html, select);
        ASSERT_EQ(valores.size(), 34u);
        EXPECT_EQ(valores[32], "32");
        EXPECT_EQ(html.Elegida(select), "99");
    }
    EXPECT_TRUE(html.Existe("//input[@name='forzarconf']"));
}

// --- Output -----------------------------------------------------------------------------------

// The OFDM settings of the output row: their base names and divs.
const std::pair<const char *, const char *> kCamposOFDM[] = {
    {"bwsal", "divanchobanda"}, {"ingrd", "divintguarda"}, {"fecsal", "divfecsal"}, {"cellid", "divcellid"}};

TEST(SalidaCOFDM, OfdmUnitWithChannelPlan)
{
    Doc config = Demo("network.010.000.000.031.xml");
    const std::string fila = Pagina(SALCOFDM_GeneraSalida, 1, config.get(), 2);
    EXPECT_EQ(Celdas(fila).size(), 15u);
    const Html html(fila);
    EXPECT_EQ(Valores(html, N("outtab")).size(), 11u);
    EXPECT_EQ(html.Elegida(N("outtab")), "5");
    EXPECT_EQ(html.Cuenta("//div[@id='divoutchn" + kSufijo + "']/select[@name='" + N("outchn") + "']/option"), 96u);
    EXPECT_EQ(html.Elegida(N("outchn")), "60");
    EXPECT_EQ(html.Valor("//div[@id='divfrecstep" + kSufijo + "']/input[@type='hidden']/@value"), "2");
    EXPECT_EQ(html.Valor("//div[@id='divfrecstep" + kSufijo + "']"), "n/a");
    EXPECT_EQ(html.Elegida(N("outmod")), "2");
    EXPECT_EQ(html.Elegida(N("fecsal")), "2");
    EXPECT_EQ(html.Input(N("cellid")), "0");
    EXPECT_EQ(html.Valor("//input[@name='" + N("cellid") + "']/@onblur"),
              "ValidarHexa(this,'0x0','0xffff');Compruebacambios(this);");
    for (const auto &[campo, div] : kCamposOFDM)
        EXPECT_FALSE(html.Existe("//div[@id='" + std::string(div) + kSufijo + "']/input[@type='hidden'][@name='" +
                                 N(campo) + "']"))
            << campo;
    EXPECT_TRUE(html.Deshabilitado("input", N("outbau")));
    EXPECT_EQ(html.Input(N("tipounidad")), "1");
}

TEST(SalidaCOFDM, CableModeHidesOfdmSettings)
{
    Doc config = Demo("network.010.000.000.032.xml");
    Fija(config.get(), kSalida + "CELLID", "1F2");
    const Html html(Pagina(SALCOFDM_GeneraSalida, 1, config.get(), 1));
    EXPECT_EQ(html.Elegida(N("outmod")), "14");
    const std::pair<const char *, const char *> valores[] = {
        {"bwsal", "0"}, {"ingrd", "0"}, {"fecsal", "0"}, {"cellid", "1F2"}};
    for (std::size_t i = 0; i < std::size(kCamposOFDM); ++i) {
        const std::string div = "//div[@id='" + std::string(kCamposOFDM[i].second) + kSufijo + "']";
        EXPECT_EQ(html.Valor(div + "/input[@type='hidden'][@name='" + N(valores[i].first) + "']/@value"),
                  valores[i].second);
        EXPECT_EQ(html.Valor(div), "n/a");
        EXPECT_EQ(html.Cuenta(div + "/*"), 1u) << "only the hidden value";
    }
    EXPECT_FALSE(html.Deshabilitado("input", N("outbau")));
    EXPECT_EQ(html.Input(N("outbau")), "6.900");
    const std::string canal = "//div[@id='divoutchn" + kSufijo + "']/input[@name='" + N("outchn") + "']";
    EXPECT_EQ(html.Valor(canal + "/@value"), "346");
    EXPECT_EQ(html.Valor(canal + "/@onblur"), "ValidarEntero(this,'46','862');Compruebacambios(this);");
}

struct CasoSalida {
    const char *nombre;
    std::vector<std::pair<std::string, std::string>> cambios;  // SALIDACOFDM element, text
    std::string select;                                          // base name
    std::optional<std::string> elegida;                          // value selected
    std::string texto;                                           // its text ("" not checked)
    std::vector<std::string> valores;                            // all values ({} not checked)
};

class SelectSalida : public testing::TestWithParam<CasoSalida> {};

TEST_P(SelectSalida, ChoicesAndSelection)
{
    Doc config = Demo("network.010.000.000.032.xml");
    for (const auto &[elemento, texto] : GetParam().cambios)
        Fija(config.get(), kSalida + elemento, texto);
    const Html html(Pagina(SALCOFDM_GeneraSalida, 1, config.get(), 1));
    const std::string nombre = N(GetParam().select);
    EXPECT_EQ(html.Elegida(nombre), GetParam().elegida);
    if (!GetParam().texto.empty()) {
        EXPECT_EQ(html.Valor("//select[@name='" + nombre + "']/option[@selected]"), GetParam().texto);
    }
    if (!GetParam().valores.empty()) {
        EXPECT_EQ(Valores(html, nombre), GetParam().valores);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Casos, SelectSalida,
    testing::Values(
        CasoSalida{"ItalyChannel3", {{"TABLA", "4"}, {"FREC", "3"}}, "outchn", "3", "S01 ", {}},
        CasoSalida{"ItalyChannel100", {{"TABLA", "4"}, {"FREC", "100"}}, "outchn", "0", " A  ", {}},
        CasoSalida{"QamStepsOnly4", {{"MODO", "13"}, {"FRECSTEP", "6"}}, "frecstep", "6", "500 kHz", {"0", "3", "6", "9"}},
        CasoSalida{"QamStepFrom10IsFirst", {{"MODO", "13"}, {"FRECSTEP", "11"}}, "frecstep", "0", "000 kHz", {}},
        CasoSalida{"OfdmSteps0To11", {{"MODO", "1"}, {"FRECSTEP", "11"}}, "frecstep", "11", "875 kHz",
                   {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11"}},
        CasoSalida{"UnknownModeIsQPSK", {{"MODO", "5"}}, "outmod", "0", "COFDM(QPSK)",
                   {"0", "1", "2", "12", "13", "14", "15", "16"}},
        CasoSalida{"PlanBeyond10SelectsNothing", {{"TABLA", "12"}}, "outtab", std::nullopt, "", {}}),
    [](const testing::TestParamInfo<CasoSalida> &info) { return info.param.nombre; });

TEST(SalidaCOFDM, ClosingRowAndAdvancedBlock)
{
    const Html ultima(Pagina(SALCOFDM_GeneraSalida, 2, nullptr, 0));
    EXPECT_EQ(Valores(ultima, "outtab_all").size(), 12u);
    EXPECT_EQ(Valores(ultima, "frecstep_all").size(), 13u);  // 0..11 and "Select", never "143 kHz"
    EXPECT_EQ(Valores(ultima, "outout_all"), (std::vector<std::string>{"0", "4", "1", "2", "3", "99"}));
    for (const char *select : {"outtab_all", "frecstep_all", "outmod_all", "bwsal_all", "ingrd_all", "fecsal_all"})
        EXPECT_EQ(ultima.Elegida(select), "99") << select;
    EXPECT_TRUE(ultima.Existe("//div[@id='tablaselect_all']"));

    Doc config = Demo("network.010.000.000.031.xml");
    const std::string bloque = Pagina(SALCOFDM_GeneraSalida, 3, config.get(), 2);
    EXPECT_EQ(bloque.find("anterior"), std::string::npos);
    EXPECT_EQ(Celdas(bloque).size(), 12u);
    EXPECT_EQ(Html(bloque).Elegida("outchn_tot"), "60");
}

// --- Escaping ---------------------------------------------------------------------------------

TEST(EscapadoCOFDM, DocumentValuesNeverReachThePageRaw)
{
    for (const char *modo : {"1", "14"}) {
        Doc config = Demo("network.010.000.000.031.xml");
        for (const char *campo : {"SALIDATS/TSID", "SALIDATS/NETWORKID/NAME", "SALIDATS/CANAL1/LCN",
                                  "SALIDATS/CANAL2/NOMBRE", "SERVICIOSIP/INPUT1/ISER1/NOMBRE", "SALIDACOFDM/CELLID",
                                  "SALIDACOFDM/BW", "SALIDACOFDM/BAUDRATE", "SALIDACOFDM/NIVEL", "SALIDACOFDM/FREC"})
            Fija(config.get(), std::string("/ENCODERCONFIG/") + campo, kAtaque);
        Fija(config.get(), kSalida + "TABLA", "0");
        Fija(config.get(), kSalida + "MODO", modo);
        const std::string html =
            Pagina(SALCOFDM_GeneraTransporte, 1, config.get(), 2, 1) + Pagina(SALCOFDM_GeneraSalida, 1, config.get(), 2);
        EXPECT_EQ(html.find("<script>"), std::string::npos) << html;
        const Html parseado(html);
        EXPECT_EQ(parseado.Input(N("nnam")), kAtaque);
        EXPECT_EQ(parseado.Input(N("cellid")), kAtaque);
    }
}

}  // namespace
