// Output page of the QAM module: the channel widget of each table, the mode-dependent
// disabling, the displayed cuts, "bitratetotal", the advanced block and the page frame.
#include "SalidaQAM/SalidaQAM.h"

#include "qam_test.h"

namespace {

using namespace qam_test;

constexpr char kModelo[] = "710105  - Enc 2 CMP+HDMI";
const std::string kSufijo = "_010_000_000_021";

std::string Salida(xmlDocPtr config, uint8_t canales = 2, int esMaster = 0, const char *modelo = kModelo)
{
    return Captura([&] {
        EXPECT_EQ(SALQAM_GeneraSalida(1, config, esMaster, canales, 0, 0, 0, modelo, 1, kSufijo.c_str(), 0, 0), 0);
    });
}

std::string N(const std::string &base)
{
    return base + kSufijo;
}

const std::string kSalidaQAM = "/ENCODERCONFIG/SALIDAQAM/";

// --- Channel widget by table -----------------------------------------------------------

struct CasoCanal {
    const char *tabla;  // nullptr: TABLA removed
    const char *frec;
    const char *clase;   // input class, or "select"
    const char *valor;   // value shown (input) or option selected (select)
    const char *maxlength;
    const char *onblur;
};

class WidgetCanal : public testing::TestWithParam<CasoCanal> {};

TEST_P(WidgetCanal, ChosenByTableInsideItsDiv)
{
    const CasoCanal caso = GetParam();
    Doc config = Demo("network.010.000.000.021.xml");
    if (caso.tabla != nullptr)
        Fija(config.get(), kSalidaQAM + "TABLA", caso.tabla);
    else
        Quita(config.get(), kSalidaQAM + "TABLA");
    Fija(config.get(), kSalidaQAM + "FREC", caso.frec);
    const Html html(Salida(config.get()));
    const std::string div = "//div[@id='div" + kSufijo + "']";
    if (std::string(caso.clase) == "select") {
        EXPECT_EQ(html.Cuenta(div + "/select[@name='" + N("outchn") + "']/option"), 8u);
        EXPECT_EQ(html.Elegida(N("outchn")), caso.valor);
    } else {
        const std::string input = div + "/input[@name='" + N("outchn") + "']";
        EXPECT_EQ(html.Valor(input + "/@class"), caso.clase);
        EXPECT_EQ(html.Valor(input + "/@value"), caso.valor);
        EXPECT_EQ(html.Valor(input + "/@maxlength"), caso.maxlength);
        EXPECT_EQ(html.Valor(input + "/@size"), "6");
        EXPECT_EQ(html.Valor(input + "/@onblur"), caso.onblur);
    }
    EXPECT_EQ(html.Input("anterior" + N("outchn")), caso.valor);
}

INSTANTIATE_TEST_SUITE_P(
    Tablas, WidgetCanal,
    testing::Values(
        CasoCanal{"1", "79", "inputconbordes3digitos", "79", "3", "ValidarEntero(this,'2','158');Compruebacambios(this);"},
        CasoCanal{"1", "1234", "inputconbordes3digitos", "123", "3", "ValidarEntero(this,'2','158');Compruebacambios(this);"},
        CasoCanal{"0", "158", "inputconbordes3digitos", "158", "3", "ValidarEntero(this,'2','158');Compruebacambios(this);"},
        CasoCanal{nullptr, "42", "inputconbordes3digitos", "42", "3", "ValidarEntero(this,'2','158');Compruebacambios(this);"},
        CasoCanal{"2", "5", "select", "5", nullptr, nullptr},
        CasoCanal{"2", "73", "select", "7", nullptr, nullptr},
        CasoCanal{"3", "456", "inputconbordesLCN", "45", "2", "ValidarEntero(this,'2','69');Compruebacambios(this);"},
        CasoCanal{"4", "1234567", "inputconbordes", "123", "6", "ValidarFrecuencia(this,'7','999','Channel');Compruebacambios(this);"},
        CasoCanal{"4", "123.25", "inputconbordes", "123.25", "6", "ValidarFrecuencia(this,'7','999','Channel');Compruebacambios(this);"},
        CasoCanal{"4", "1234,5678", "inputconbordes", "1234,5", "6", "ValidarFrecuencia(this,'7','999','Channel');Compruebacambios(this);"}));

TEST(TablaSalida, UnreadableTableSelectsNothing)
{
    Doc config = Demo("network.010.000.000.021.xml");
    Quita(config.get(), kSalidaQAM + "TABLA");
    const Html html(Salida(config.get()));
    EXPECT_EQ(html.Cuenta("//select[@name='" + N("outtab") + "']/option"), 4u);
    EXPECT_FALSE(html.Elegida(N("outtab")).has_value());
    EXPECT_EQ(html.Valor("//select[@name='" + N("outtab") + "']/@onchange"),
              "CambioTablaCanalesSalida(this);Compruebacambios(this);");
}

TEST(TablaSalida, FrequencyTakesTheDecimalKeyFilter)
{
    Doc config = Demo("network.010.000.000.021.xml");
    Fija(config.get(), kSalidaQAM + "TABLA", "4");
    EXPECT_EQ(Html(Salida(config.get())).Valor("//input[@name='" + N("outchn") + "']/@onkeypress"),
              "return Permitekeypress(event, numeros + puntuacion,this);");
}

// --- Mode-dependent disabling ---------------------------------------------------------------

struct CasoModo {
    const char *modo;  // nullptr: MODOSALIDA removed
    const char *elegido;
    bool anexoA;
};

class AnexoSalida : public testing::TestWithParam<CasoModo> {};

TEST_P(AnexoSalida, InterleavingInAnnexBBaudRateInAnnexA)
{
    Doc config = Demo("network.010.000.000.021.xml");
    if (GetParam().modo != nullptr)
        Fija(config.get(), kSalidaQAM + "MODOSALIDA", GetParam().modo);
    else
        Quita(config.get(), kSalidaQAM + "MODOSALIDA");
    const Html html(Salida(config.get()));
    EXPECT_EQ(html.Elegida(N("outmod")), GetParam().elegido);
    EXPECT_EQ(html.Deshabilitado("select", N("outint")), GetParam().anexoA);
    EXPECT_EQ(html.Deshabilitado("input", N("outbau")), !GetParam().anexoA);
    EXPECT_FALSE(html.Deshabilitado("select", N("outmod")));
    EXPECT_FALSE(html.Deshabilitado("select", N("outtab")));
    EXPECT_FALSE(html.Deshabilitado("input", N("outlev")));
}

INSTANTIATE_TEST_SUITE_P(Modos, AnexoSalida,
                         testing::Values(CasoModo{"0", "0", false}, CasoModo{"1", "1", false}, CasoModo{"2", "2", true},
                                         CasoModo{"3", "3", true}, CasoModo{"4", "4", true}, CasoModo{"5", "5", true},
                                         CasoModo{"6", "6", true}, CasoModo{"7", "7", true}, CasoModo{"8", "8", true},
                                         CasoModo{nullptr, "0", false}));

// --- Displayed values ----------------------------------------------------------------------------

struct CasoBaudios {
    const char *guardado;
    const char *mostrado;
};

class BaudiosSalida : public testing::TestWithParam<CasoBaudios> {};

TEST_P(BaudiosSalida, CutToFiveOrToOneWithoutSeparator)
{
    Doc config = Demo("network.010.000.000.021.xml");
    Fija(config.get(), kSalidaQAM + "BAUDRATE", GetParam().guardado);
    const Html html(Salida(config.get()));
    EXPECT_EQ(html.Input(N("outbau")), GetParam().mostrado);
    EXPECT_EQ(html.Input("anterior" + N("outbau")), GetParam().mostrado);
    EXPECT_EQ(html.Valor("//input[@name='" + N("outbau") + "']/@onblur"),
              "ValidarEnteroConDecimales(this,'1','7.2','4');Compruebacambios(this);");
}

INSTANTIATE_TEST_SUITE_P(Cortes, BaudiosSalida,
                         testing::Values(CasoBaudios{"5.360", "5.360"}, CasoBaudios{"6,9001", "6,900"},
                                         CasoBaudios{"7", "7"}, CasoBaudios{"65536", "6"}, CasoBaudios{"", ""}));

TEST(FilaSalida, SelectsLevelLoopAndFailureDefaults)
{
    Doc config = Demo("network.010.000.000.021.xml");
    Fija(config.get(), kSalidaQAM + "SALIDA", "4");
    Quita(config.get(), kSalidaQAM + "INTERLEAVING");
    const Html html(Salida(config.get()));
    EXPECT_EQ(html.Elegida(N("outout")), "4");
    EXPECT_EQ(html.Elegida(N("outint")), "0");
    EXPECT_EQ(html.Input(N("outlev")), "30");
    EXPECT_EQ(html.Valor("//input[@name='" + N("outlev") + "']/@class"), "inputconbordesLCN");
    EXPECT_TRUE(html.Existe("//input[@name='" + N("outrfl") + "'][@type='checkbox'][@checked]"));
    EXPECT_EQ(html.Input("anterior" + N("outrfl")), "1");
    // The option lists, in page order.
    std::vector<std::string> valores;
    for (xmlNodePtr opcion : Nodos(html.get(), "//select[@name='" + N("outout") + "']/option/@value"))
        valores.push_back(reinterpret_cast<const char *>(opcion->children->content));
    EXPECT_EQ(valores, (std::vector<std::string>{"0", "1", "4", "2", "3"}));
    EXPECT_EQ(html.Cuenta("//select[@name='" + N("outint") + "']/option"), 12u);
    EXPECT_FALSE(html.Existe("//select[@name='" + N("outint") + "']/option[@value='1' or @value='11' or @value='13']"));
}

TEST(FilaSalida, RowCellsAndHiddenFields)
{
    Doc config = Demo("network.010.000.000.021.xml");
    const std::string fila = Salida(config.get());
    // The model cell is closed twice, as the pages have always had it.
    EXPECT_NE(fila.find("</a></td></td><td>"), std::string::npos);
    const Html html(fila);
    EXPECT_EQ(html.Input(N("numcanales")), "2");
    EXPECT_EQ(html.Input(N("tipounidad")), "0");
    // Inputs 1 and 2 active: 14 + 6 Mbit/s of video, 384 + 128 kbit/s of audio.
    EXPECT_EQ(html.Input(N("bitratetotal")), "20512");
    EXPECT_FALSE(html.Existe("//input[@name='" + N("forzarconfig") + "'][@checked]"));
}

struct CasoBitrate {
    const char *documento;
    uint8_t canales;
    const char *total;
};

class BitrateTotal : public testing::TestWithParam<CasoBitrate> {};

TEST_P(BitrateTotal, SumsTheActiveInputs)
{
    Doc config = Demo(GetParam().documento);
    EXPECT_EQ(Html(Salida(config.get(), GetParam().canales)).Input(N("bitratetotal")), GetParam().total);
}

INSTANTIATE_TEST_SUITE_P(
    Unidades, BitrateTotal,
    testing::Values(CasoBitrate{"network.010.000.000.022.xml", 4, "9868"},  // input 4 off: 9.5 Mbit/s + 368 kbit/s
                    CasoBitrate{"network.010.000.000.021.xml", 1, "14384"},
                    CasoBitrate{"network.xml", 2, "21076"}));                // 12 + 8.5 Mbit/s, 384 + 192 kbit/s

// --- Advanced block and page frame -----------------------------------------------------------------

TEST(FilaSalida, AdvancedBlockUsesTotSuffixWithoutPreviousValues)
{
    Doc config = Demo("network.010.000.000.021.xml");
    const std::string html = Captura([&] {
        EXPECT_EQ(SALQAM_GeneraSalida(3, config.get(), 0, 2, 0, 0, 0, kModelo, 0, kSufijo.c_str(), 0, 0), 0);
    });
    EXPECT_NE(html.find("Output Configuration:"), std::string::npos);
    EXPECT_EQ(html.find("anterior"), std::string::npos);
    EXPECT_EQ(html.find("forzarconfig"), std::string::npos);
    EXPECT_EQ(html.find("bitratetotal"), std::string::npos);
    const Html parseado(html);
    EXPECT_EQ(parseado.Elegida("outtab_tot"), "1");
    EXPECT_EQ(parseado.Input("outchn_tot"), "79");
    EXPECT_TRUE(parseado.Existe("//div[@id='div_tot']"));
    EXPECT_EQ(Celdas(html).size(), 8u);
}

TEST(PaginaSalida, HeaderClosingRowAndModes)
{
    const std::string cabecera = Captura([] { SALQAM_GeneraSalida(0, nullptr, 0, 0, 0, 0, 0, nullptr, 0, "", 0, 0); });
    EXPECT_TRUE(cabecera.starts_with("<table id='tabadatos' border=\"1\">"));
    size_t posicion = 0;
    for (const char *columna : {"Model", "Table", "Channel", "Level", "Mode", "Interleaving", "Baudrate (Mbaud)",
                                "Output", "RF Loop", "Select"}) {
        const size_t encontrada = cabecera.find(columna, posicion);
        ASSERT_NE(encontrada, std::string::npos) << columna;
        posicion = encontrada;
    }

    const std::string ultima = Captura([] {
        EXPECT_EQ(SALQAM_GeneraSalida(2, nullptr, 0, 2, 0, 0, 0, nullptr, 3, "_010_000_000_021", 0, 0), 0);
    });
    EXPECT_NE(ultima.find("Set Configuration for all Units (3):"), std::string::npos);
    EXPECT_TRUE(ultima.ends_with("</tr></tbody></table>"));
    const Html html(ultima);
    const struct {
        const char *nombre;
        std::vector<std::string> valores;
    } selects[] = {
        {"outtab_all", {"1", "2", "3", "4", "99"}},
        {"outmod_all", {"0", "1", "2", "3", "4", "5", "6", "7", "8", "99"}},
        {"outint_all", {"0", "2", "3", "4", "5", "6", "7", "8", "9", "10", "12", "14", "99"}},
        {"outout_all", {"0", "4", "1", "2", "3", "99"}},
    };
    for (const auto &select : selects) {
        std::vector<std::string> valores;
        for (xmlNodePtr opcion : Nodos(html.get(), std::string("//select[@name='") + select.nombre + "']/option/@value"))
            valores.push_back(reinterpret_cast<const char *>(opcion->children->content));
        EXPECT_EQ(valores, select.valores) << select.nombre;
        EXPECT_EQ(html.Elegida(select.nombre), "99") << select.nombre;
    }
    EXPECT_EQ(html.Valor("//select[@name='outout_all']/@onclick"), "CambioOUTModeQAMAll(this,\"0\");");
    EXPECT_TRUE(html.Existe("//input[@name='outrfl_all'][@checked]"));
    EXPECT_EQ(html.Valor("//input[@name='outrfl_all']/@onclick"), "SeleccionarChecboxconCheckbox(this,'outrfl','0');");
    EXPECT_TRUE(html.Existe("//input[@name='forzarconf']"));
    EXPECT_EQ(html.Cuenta("//td[@class='ultimalinea']"), 9u);

    Doc config = Demo("network.010.000.000.021.xml");
    EXPECT_EQ(Captura([&] {
                  EXPECT_EQ(SALQAM_GeneraSalida(1, config.get(), 0, 2, 0, 0, 0, nullptr, 1, kSufijo.c_str(), 0, 0), 4);
              }),
              "");
}

// --- Escaping -----------------------------------------------------------------------------------------

TEST(SalidaEscapado, DocumentValuesNeverReachThePageRaw)
{
    for (const char *tabla : {"1", "2", "3", "4"}) {
        Doc config = Demo("network.010.000.000.021.xml");
        for (const char *campo : {"NETWORK/ORDEN", "SALIDAQAM/FREC", "SALIDAQAM/BAUDRATE", "SALIDAQAM/NIVEL",
                                  "SALIDAQAM/SALIDA", "SALIDAQAM/INTERLEAVING", "SALIDAQAM/MODOSALIDA"})
            Fija(config.get(), std::string("/ENCODERCONFIG/") + campo, kAtaque);
        Fija(config.get(), "/ENCODERCONFIG/SALIDAQAM/TABLA", tabla);
        const std::string modelo = "710105 " + kAtaque;
        const std::string html = Salida(config.get(), 2, 0, modelo.c_str()) + Salida(config.get(), 2, 1, modelo.c_str());
        EXPECT_EQ(html.find("<script>"), std::string::npos) << html;
        EXPECT_NE(html.find("value=\"&quot;&gt;&lt;script&gt;x&lt;/script&gt;\""), std::string::npos);
    }
}

}  // namespace
