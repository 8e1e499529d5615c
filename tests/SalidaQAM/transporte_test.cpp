// Transport page of the QAM module: ATSC virtual channels and their Annex A disabling, the
// IP-input service lines, hidden fields, the select cell, the advanced block and the page frame.
#include "SalidaQAM/SalidaQAM.h"

#include "qam_test.h"

namespace {

using namespace qam_test;

constexpr char kModelo[] = "710105  - Enc 2 CMP+HDMI";
constexpr char kSufijo[] = "_010_000_000_021";

std::string Transporte(xmlDocPtr config, uint8_t canales, int opciones = 0, int esMaster = 0,
                       const char *sufijo = kSufijo, const char *modelo = kModelo)
{
    return Captura([&] {
        EXPECT_EQ(SALQAM_GeneraTransporte(1, config, esMaster, canales, opciones, 0, 0, modelo, 1, sufijo, 0, 0), 0);
    });
}

std::string N(const std::string &base, int linea)
{
    return base + std::to_string(linea) + kSufijo;
}

// --- ATSC virtual channels ---------------------------------------------------------

// On config_v1.xml: channel 1 "CVCT 1" major 3 minor 5, channel 2 "TVCT" major 60 minor 2.
struct CasoMayor {
    const char *tipoFijado;  // table type written over the stored one, or none
    int canal;
    const char *tipo;     // selected table type
    const char *mostrado; // major shown
    const char *rango;    // integer check
};

class NumeroMayor : public testing::TestWithParam<CasoMayor> {};

TEST_P(NumeroMayor, ShownByTableType)
{
    const CasoMayor caso = GetParam();
    Doc config = Version("config_v1.xml");
    if (caso.tipoFijado != nullptr)
        Fija(config.get(), "/ENCODERCONFIG/SALIDATS/CANAL" + std::to_string(caso.canal) + "/CHNUMBER/TABLETYPE",
             caso.tipoFijado);
    const Html html(Transporte(config.get(), 2));
    EXPECT_EQ(html.Elegida(N("autochan", caso.canal)), caso.tipo);
    EXPECT_EQ(html.Input(N("mchn", caso.canal)), caso.mostrado);
    EXPECT_EQ(html.Input("anterior" + N("mchn", caso.canal)), caso.mostrado);
    EXPECT_EQ(html.Valor("//input[@name='" + N("mchn", caso.canal) + "']/@onblur"),
              std::string("ValidarEntero(this,") + caso.rango + ");Compruebacambios(this);");
}

INSTANTIATE_TEST_SUITE_P(
    TiposTabla, NumeroMayor,
    testing::Values(CasoMayor{nullptr, 1, "1", "3077", "'1','16383'"},  // CVCT 1: (3 << 10) + 5
                    CasoMayor{nullptr, 2, "0", "60", "'1','99'"},       // TVCT
                    CasoMayor{"2", 2, "2", "60", "'0','999'"},          // CVCT 2
                    CasoMayor{"1", 2, "1", "12290", "'1','16383'"}));   // (12 << 10) + 2

TEST(NumeroMayor, OnePartNumberMasksMajorAndMinor)
{
    Doc config = Version("config_v1.xml");
    Fija(config.get(), "/ENCODERCONFIG/SALIDATS/CANAL1/CHNUMBER/MAJOR", "19");    // 19 AND 15 = 3
    Fija(config.get(), "/ENCODERCONFIG/SALIDATS/CANAL1/CHNUMBER/MINOR", "1029");  // 1029 AND 1023 = 5
    EXPECT_EQ(Html(Transporte(config.get(), 2)).Input(N("mchn", 1)), "3077");
}

TEST(NumeroMayor, UnreadableTableTypeIsShownAsCVCT1)
{
    Doc config = Version("config_v1.xml");
    Quita(config.get(), "/ENCODERCONFIG/SALIDATS/CANAL2/CHNUMBER/TABLETYPE");
    const Html html(Transporte(config.get(), 2));
    EXPECT_EQ(html.Elegida(N("autochan", 2)), "1");
    EXPECT_EQ(html.Input(N("mchn", 2)), "12290");  // ((60 AND 15) << 10) + 2
}

// --- Annex A and B ---------------------------------------------------------------------

struct CasoModo {
    const char *modo;  // nullptr: element removed
    bool anexoA;
};

class AnexoTransporte : public testing::TestWithParam<CasoModo> {};

TEST_P(AnexoTransporte, AtscFieldsDisabledInAnnexA)
{
    Doc config = Demo("network.010.000.000.021.xml");
    if (GetParam().modo != nullptr)
        Fija(config.get(), "/ENCODERCONFIG/SALIDAQAM/MODOSALIDA", GetParam().modo);
    else
        Quita(config.get(), "/ENCODERCONFIG/SALIDAQAM/MODOSALIDA");
    const Html html(Transporte(config.get(), 2));
    for (int canal : {1, 2}) {
        EXPECT_EQ(html.Deshabilitado("select", N("autochan", canal)), GetParam().anexoA);
        EXPECT_EQ(html.Deshabilitado("input", N("mchn", canal)), GetParam().anexoA);
        EXPECT_EQ(html.Deshabilitado("input", N("chnm", canal)), GetParam().anexoA);
        EXPECT_FALSE(html.Deshabilitado("input", N("cnam", canal)));
        EXPECT_FALSE(html.Deshabilitado("input", N("svcid", canal)));
    }
}

INSTANTIATE_TEST_SUITE_P(Modos, AnexoTransporte,
                         testing::Values(CasoModo{"0", false}, CasoModo{"1", false}, CasoModo{"2", true},
                                         CasoModo{"3", true}, CasoModo{"4", true}, CasoModo{"5", true},
                                         CasoModo{"6", true}, CasoModo{"7", true}, CasoModo{"8", true},
                                         CasoModo{nullptr, false}));

// --- Encoder lines ------------------------------------------------------------------------

TEST(LineasCanal, OneLinePerChannelAndTsidOnce)
{
    Doc config = Demo("network.010.000.000.022.xml");
    const std::string sufijo = "_010_000_000_022";
    const Html html(Transporte(config.get(), 4, 0, 0, sufijo.c_str()));
    for (int canal = 1; canal <= 4; ++canal) {
        EXPECT_EQ(html.Valor("//input[@name='" + std::to_string(canal) + sufijo + "'][@disabled]/@value"), "n/a");
        EXPECT_EQ(html.Cuenta("//input[@name='" + std::to_string(canal) + sufijo + "']"), 2u) << "IN Name and IN SID";
        EXPECT_EQ(html.Cuenta("//input[@value='C" + std::to_string(canal) + "'][@readonly]"), 1u);
    }
    EXPECT_EQ(html.Input("cnam3" + sufijo), "MENU");
    EXPECT_EQ(html.Valor("//input[@name='cnam3" + sufijo + "']/@maxlength"), "7");
    EXPECT_EQ(html.Input("svpid4" + sufijo), "305");
    EXPECT_EQ(html.Valor("//input[@name='svpid4" + sufijo + "']/@onblur"), "ValidarPID(this,'48','8182');Compruebacambios(this);");
    EXPECT_EQ(html.Input("sapid2" + sufijo), "274");
    EXPECT_EQ(html.Input("svcid1" + sufijo), "301");
    EXPECT_EQ(html.Input("chnm4" + sufijo), "804");
    EXPECT_FALSE(html.Existe("//input[@name='cnam5" + sufijo + "']"));
    EXPECT_EQ(html.Cuenta("//input[@name='tsid" + sufijo + "']"), 1u);
    EXPECT_EQ(html.Input("tsid" + sufijo), "1003");
    EXPECT_EQ(html.Cuenta("//div[@class='divlineadentrodecelda']"), 9u * 4u + 1u);
}

// --- IP-input services ---------------------------------------------------------------------

// The master has two IP inputs of one service each; both are selected here.
Doc MasterConServicios()
{
    Doc config = Demo("network.xml");
    const std::string s1 = "/ENCODERCONFIG/SERVICIOSIP/INPUT1/ISER1/";
    const std::string s2 = "/ENCODERCONFIG/SERVICIOSIP/INPUT2/ISER1/";
    Fija(config.get(), s1 + "SEL", "1");
    Fija(config.get(), s1 + "NOMBRE", "NEWS");
    Fija(config.get(), s1 + "SERVICEID", "11");
    Fija(config.get(), s1 + "NOMBREOUT", "NEWS-OUT");
    Fija(config.get(), s1 + "SERVICEIDOUT", "21");
    Fija(config.get(), s1 + "CHNUMBER/TABLETYPE", "1");
    Fija(config.get(), s1 + "CHNUMBER/MAJOR", "2");
    Fija(config.get(), s1 + "CHNUMBER/MINOR", "9");
    Fija(config.get(), s2 + "SEL", "1");
    Fija(config.get(), s2 + "NOMBRE", "SPORT");
    Fija(config.get(), s2 + "NOMBREOUT", "SPORT-OUT");
    Fija(config.get(), s2 + "SERVICEIDOUT", "22");
    return config;
}

TEST(LineasServicioIP, SelectedServicesFollowTheChannels)
{
    Doc config = MasterConServicios();
    const Html html(Transporte(config.get(), 2, 1, 1, ""));
    const struct {
        int linea;
        const char *entrada, *servicio, *rotulo, *nombreEntrada, *nombre, *sid, *mayor;
    } casos[] = {
        {3, "1", "1", "IP1.1", "NEWS", "NEWS-OUT", "21", "2057"},  // CVCT 1: (2 << 10) + 9
        {4, "2", "1", "IP2.1", "SPORT", "SPORT-OUT", "22", "1"},   // TVCT
    };
    for (const auto &caso : casos) {
        const std::string l = std::to_string(caso.linea);
        EXPECT_EQ(html.Input("entip" + l), caso.entrada);
        EXPECT_EQ(html.Input("lsnumserv" + l), caso.servicio);
        EXPECT_EQ(html.Valor("//input[@name='entip" + l + "']/@type"), "hidden");
        EXPECT_TRUE(html.Existe(std::string("//input[@readonly][@value='") + caso.rotulo + "']"));
        EXPECT_EQ(html.Input("cnam" + l), caso.nombre);
        EXPECT_EQ(html.Input("svcid" + l), caso.sid);
        EXPECT_EQ(html.Input("mchn" + l), caso.mayor);
        EXPECT_EQ(html.Input("svpid" + l), "auto");
        EXPECT_TRUE(html.Deshabilitado("input", "svpid" + l));
        EXPECT_TRUE(html.Deshabilitado("input", "sapid" + l));
        // IN Name is read-only, IN SID read-only and disabled.
        EXPECT_EQ(html.Valor("//input[@name='" + l + "'][not(@disabled)]/@value"), caso.nombreEntrada);
        EXPECT_EQ(html.Valor("//input[@name='" + l + "'][not(@disabled)]/@maxlength"), "30");
        EXPECT_EQ(html.Valor("//input[@name='" + l + "'][@disabled]/@maxlength"), "7");
    }
    EXPECT_EQ(html.Valor("//input[@name='3'][@disabled]/@value"), "11");
    EXPECT_EQ(html.Input("ntotserv"), "4");
    EXPECT_EQ(html.Input("haysalidaip"), "1");
    EXPECT_EQ(html.Input("numcanales"), "2");
}

TEST(LineasServicioIP, OnlySelectedServicesAndOnlyWithIPInputs)
{
    Doc config = MasterConServicios();
    Fija(config.get(), "/ENCODERCONFIG/SERVICIOSIP/INPUT1/ISER1/SEL", "0");
    const Html html(Transporte(config.get(), 2, 1, 1, ""));
    EXPECT_EQ(html.Input("cnam3"), "SPORT-OUT");
    EXPECT_EQ(html.Input("entip3"), "2");
    EXPECT_FALSE(html.Existe("//input[@name='cnam4']"));
    EXPECT_EQ(html.Input("ntotserv"), "3");

    const Html sinIP(Transporte(config.get(), 2, 0, 1, ""));
    EXPECT_FALSE(sinIP.Existe("//input[@name='cnam3']"));
    EXPECT_EQ(sinIP.Input("ntotserv"), "2");
    EXPECT_EQ(sinIP.Input("haysalidaip"), "0");
}

// --- Hidden fields, select cell, model cell ------------------------------------------------

TEST(FilaTransporte, HiddenFieldsAndPreviousValues)
{
    Doc config = Demo("network.010.000.000.021.xml");
    const Html html(Transporte(config.get(), 2));
    EXPECT_EQ(html.Input(std::string("numcanales") + kSufijo), "2");
    EXPECT_EQ(html.Input(std::string("tipounidad") + kSufijo), "0");
    EXPECT_EQ(html.Input(std::string("haysalidaip") + kSufijo), "0");
    EXPECT_EQ(html.Input(std::string("ntotserv") + kSufijo), "2");
    for (const char *base : {"cnam", "mchn", "chnm", "svpid", "sapid", "svcid"})
        for (int canal : {1, 2})
            EXPECT_EQ(html.Input("anterior" + N(base, canal)), html.Input(N(base, canal))) << base << canal;
    EXPECT_EQ(html.Input("anterior" + N("autochan", 1)), "0");
    EXPECT_EQ(html.Input(std::string("anteriortsid") + kSufijo), "1002");
    EXPECT_FALSE(html.Existe(std::string("//input[@name='forzarconfig") + kSufijo + "'][@checked]"));
    EXPECT_EQ(html.Valor("//a/@href"), "javascript:MostrarConfigTotal('.010.000.000.021');");
}

TEST(FilaTransporte, SelectBoxCheckedByWebChangesAndMasterCells)
{
    Doc config = Demo("network.010.000.000.022.xml");  // CAMBIOSWEB 1
    const std::string fila = Transporte(config.get(), 4, 0, 0, "_010_000_000_022");
    EXPECT_TRUE(Html(fila).Existe("//input[@name='forzarconfig_010_000_000_022'][@checked]"));

    Doc master = Demo("network.xml");
    const auto celdas = Celdas(Transporte(master.get(), 2, 1, 1, "", "710109 - x"));
    ASSERT_EQ(celdas.size(), 13u);
    EXPECT_EQ(celdas[0], "<b>1</b>");
    EXPECT_EQ(celdas[1], "<a href=\"javascript:MostrarConfigTotal('');\"><b>710109 - x<br>web connected</b></a>");
}

TEST(FilaTransporte, AdvancedBlockUsesTotSuffixWithoutPreviousValues)
{
    Doc config = MasterConServicios();
    const std::string html = Captura([&] {
        EXPECT_EQ(SALQAM_GeneraTransporte(3, config.get(), 1, 2, 1, 0, 0, "710109 - x", 0, "", 0, 0), 0);
    });
    EXPECT_NE(html.find("Transport Configuration:"), std::string::npos);
    EXPECT_EQ(html.find("anterior"), std::string::npos);
    EXPECT_EQ(html.find("forzarconfig"), std::string::npos);
    const Html parseado(html);
    EXPECT_EQ(parseado.Input("cnam1_tot"), "LOBBY");
    EXPECT_EQ(parseado.Input("tsid_tot"), "1001");
    EXPECT_EQ(parseado.Input("entip4_tot"), "2");
    EXPECT_EQ(parseado.Input("ntotserv_tot"), "4");
    EXPECT_FALSE(parseado.Existe("//input[@name='numcanales_tot']"));
    EXPECT_EQ(Celdas(html).size(), 10u);
}

// --- Page frame -------------------------------------------------------------------------------

TEST(PaginaTransporte, HeaderClosingRowAndModes)
{
    const std::string cabecera = Captura([] { SALQAM_GeneraTransporte(0, nullptr, 0, 0, 0, 0, 0, nullptr, 0, "", 0, 0); });
    EXPECT_TRUE(cabecera.starts_with("<table id='tabadatos' border=\"1\">"));
    EXPECT_NE(cabecera.find("Ordenatabla(0,0);'>#&nbsp;"), std::string::npos);
    EXPECT_NE(cabecera.find("Ordenatabla(1,0);'>Model&nbsp;"), std::string::npos);
    EXPECT_NE(cabecera.find("Ordenatabla(4,0);'>Major CH. #&nbsp;"), std::string::npos);
    size_t posicion = 0;
    for (const char *columna : {"IN Name", "IN SID", "OUT Name", "Table Type", "Major CH. #", "Minor CH. #", "TS ID",
                                "Video PID", "Audio PID", "OUT SID", "Select"}) {
        const size_t encontrada = cabecera.find(columna, posicion);
        ASSERT_NE(encontrada, std::string::npos) << columna;
        posicion = encontrada;
    }

    const std::string ultima = Captura([] {
        EXPECT_EQ(SALQAM_GeneraTransporte(2, nullptr, 0, 2, 0, 0, 0, nullptr, 5, "_010_000_000_021", 0, 0), 0);
    });
    EXPECT_NE(ultima.find("Set Configuration for all Units (5):"), std::string::npos);
    EXPECT_TRUE(ultima.ends_with("</tr></tbody></table>"));
    const Html html(ultima);
    EXPECT_EQ(html.Elegida("autochan_all"), "99");
    EXPECT_EQ(html.Cuenta("//select[@name='autochan_all']/option"), 4u);
    EXPECT_EQ(html.Valor("//select[@name='autochan_all']/@onclick"), "CambioVideocodecAll(this,\"1\");");
    EXPECT_EQ(html.Valor("//button[text()='Automatic channel numbering']/@onclick"),
              "NumeraMajorChNumber(2,1);NumeraMinorChNumber(1,1);");
    EXPECT_TRUE(html.Existe("//button[@onclick=\"NumeraCampo('tsid',1,1,0);\"][text()='Auto']"));
    EXPECT_TRUE(html.Existe("//button[@onclick=\"NumeraCampo('svcid',1,1,1);\"][text()='Auto']"));
    EXPECT_EQ(html.Valor("//input[@name='forzarconf']/@onclick"), "SeleccionarChecboxconCheckbox(this,'forzarconfig','0');");
    EXPECT_EQ(html.Cuenta("//td[@class='ultimalinea']"), 8u);
    EXPECT_EQ(html.Cuenta("//td[@class='ultimalinea'][@colspan='2']"), 3u);
    EXPECT_EQ(html.Cuenta("//td[@class='ultimalinea'][@colspan='3']"), 1u);  // 13 columns in all

    Doc config = Demo("network.010.000.000.021.xml");
    EXPECT_EQ(Captura([&] {
                  EXPECT_EQ(SALQAM_GeneraTransporte(1, config.get(), 0, 2, 0, 0, 0, nullptr, 1, kSufijo, 0, 0), 4);
              }),
              "");
    EXPECT_EQ(Captura([&] {
                  EXPECT_EQ(SALQAM_GeneraTransporte(4, config.get(), 0, 2, 0, 0, 0, kModelo, 1, kSufijo, 0, 0), 0);
              }),
              "");
}

// --- Escaping -----------------------------------------------------------------------------------

TEST(TransporteEscapado, DocumentValuesNeverReachThePageRaw)
{
    Doc config = MasterConServicios();
    for (const char *campo : {"NETWORK/ORDEN", "SALIDATS/TSID", "SALIDATS/CANAL1/NOMBRE", "SALIDATS/CANAL1/VIDEOPID",
                              "SALIDATS/CANAL2/SERVICEID", "SALIDATS/CANAL2/CHNUMBER/MINOR",
                              "SALIDATS/CANAL1/CHNUMBER/TABLETYPE", "SERVICIOSIP/INPUT1/ISER1/NOMBRE",
                              "SERVICIOSIP/INPUT1/ISER1/SERVICEID", "SERVICIOSIP/INPUT2/ISER1/NOMBREOUT",
                              "SERVICIOSIP/INPUT2/ISER1/CHNUMBER/MAJOR"})
        Fija(config.get(), std::string("/ENCODERCONFIG/") + campo, kAtaque);
    const std::string modelo = "710109 " + kAtaque;
    for (int esMaster : {0, 1}) {
        const std::string html = Transporte(config.get(), 2, 1, esMaster, esMaster ? "" : kSufijo, modelo.c_str()) +
                                 Captura([&] { SALQAM_GeneraTransporte(3, config.get(), 0, 2, 1, 0, 0, modelo.c_str(), 0, "", 0, 0); });
        EXPECT_EQ(html.find("<script>"), std::string::npos) << html;
        EXPECT_NE(html.find("&quot;&gt;&lt;script&gt;x&lt;/script&gt;"), std::string::npos);
    }
}

}  // namespace
