// Widget helpers: exact markup, selection, and the escaping rule (values escaped, composed
// names and attributes passed as they are).
#include "cteshtml/cteshtml.h"

#include "utils/utils.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace {

TEST(Escapa, EscapesTheFiveMarkupCharacters)
{
    EXPECT_EQ(CTESHTML_Escapa("a&b<c>d\"e'f"), "a&amp;b&lt;c&gt;d&quot;e&#39;f");
    EXPECT_EQ(CTESHTML_Escapa("&amp;"), "&amp;amp;");
    EXPECT_EQ(CTESHTML_Escapa(""), "");
    EXPECT_EQ(CTESHTML_Escapa("Señal 1_2 %s"), "Señal 1_2 %s");
}

TEST(SelectBox, MarksTheOptionEqualToTheCurrentValue)
{
    const std::vector<CTESHTML_Opcion> opciones = {{"0", "256B"}, {"1", "64B"}, {"2", "16A"}};
    EXPECT_EQ(CTESHTML_SelectBox("outmod_010_000_000_021", "outmod_010_000_000_021", strJSCambioModoQAM, opciones, "1"),
              R"(<select name="outmod_010_000_000_021" id="outmod_010_000_000_021" size="1" )"
              R"(onchange="CambioModoQAM(this);Compruebacambios(this);">)"
              R"(<option value="0"  >256B</option>)"
              R"(<option value="1" selected="selected" >64B</option>)"
              R"(<option value="2"  >16A</option>)"
              R"(</select>)");
}

TEST(SelectBox, NoMatchSelectsNothingAndAnEmptyListIsAnEmptySelect)
{
    const std::string html = CTESHTML_SelectBox("a", "a", "", {{"0", "x"}, {"1", "y"}}, "01");
    EXPECT_EQ(html.find("selected"), std::string::npos);
    EXPECT_EQ(CTESHTML_SelectBox("a", "b", "disabled", {}, "0"), R"(<select name="a" id="b" size="1" disabled></select>)");
}

TEST(Opciones, FromParallelTablesFromLabelsAndFromARange)
{
    const char modos[3][15] = {"COFDM(QPSK)", "16QAM", "256QAM"};
    const uint8_t valores[3] = {0, 12, 16};
    const auto deTablas = CTESHTML_OpcionesTablas(modos, valores, 3);
    ASSERT_EQ(deTablas.size(), 3u);
    EXPECT_EQ(deTablas[1].valor, "12");
    EXPECT_EQ(deTablas[1].texto, "16QAM");
    EXPECT_EQ(deTablas[2].valor, "16");
    EXPECT_EQ(CTESHTML_OpcionesTablas(modos, valores, 1).size(), 1u);
    EXPECT_EQ(CTESHTML_OpcionesTablas(modos, valores, 9).size(), 3u);

    // A label fills its slot without a terminator; blanks are kept.
    const char etiquetas[4][5] = {{'C', '0', '2', ' ', '\0'}, {'S', '0', '1', ' ', 'X'}, " A  ", "T07 "};
    const auto deEtiquetas = CTESHTML_OpcionesEtiquetas(etiquetas, 1, 3);
    ASSERT_EQ(deEtiquetas.size(), 3u);
    EXPECT_EQ(deEtiquetas[0].valor, "1");
    EXPECT_EQ(deEtiquetas[0].texto, "S01 X");
    EXPECT_EQ(deEtiquetas[1].texto, " A  ");
    EXPECT_EQ(deEtiquetas[2].valor, "3");
    // A range past the table (an empty plan's count - 1 wrapping around) stops at its end.
    EXPECT_EQ(CTESHTML_OpcionesEtiquetas(etiquetas, 2, static_cast<std::size_t>(-1)).size(), 2u);
    EXPECT_TRUE(CTESHTML_OpcionesEtiquetas(etiquetas, 4, 9).empty());

    const auto rango = CTESHTML_OpcionesRango(0, 14);
    ASSERT_EQ(rango.size(), 15u);
    EXPECT_EQ(rango[14].valor, "14");
    EXPECT_EQ(rango[14].texto, "14");
    EXPECT_TRUE(CTESHTML_OpcionesRango(5, 4).empty());
}

TEST(Helpers, ExactMarkup)
{
    EXPECT_EQ(CTESHTML_Anterior("orden_010_000_000_021", "12"),
              R"(<input id="anteriororden_010_000_000_021" name="anteriororden_010_000_000_021" value="12" type="hidden">)");
    EXPECT_EQ(CTESHTML_Input(htmlinputLCN, "orden", 4, "orden", strJSPermititEnteros,
                             UTILS_Formatea(strJSvalidaEntero, 1, 9999), strJSOnBlurOnChangeCompruebacambios, "12", 4),
              R"(<input class="inputconbordesLCN" id="orden" size="4" name="orden" )"
              R"(onkeypress="return Permitekeypress(event, numeros,this);" )"
              R"(onblur="ValidarEntero(this,'1','9999');Compruebacambios(this);" )"
              R"( onblur="Compruebacambios(this);" onchange="Compruebacambios(this);" type="text" value="12" maxlength="4">)");
    EXPECT_EQ(CTESHTML_Input(htmlinputIP, "lmask", 15, "networkmask", strJSPermitirIPs, strJSvalidaIP, "disabled",
                             "255.255.255.0", 15),
              R"(<input class="inputconbordesIP" id="lmask" size="15" name="networkmask" )"
              R"(onkeypress="return Permitekeypress(event, caracteresIPs);" )"
              R"(onblur="ValidarIPOnBlur(this,'','');Compruebacambios(this);" disabled type="text" )"
              R"(value="255.255.255.0" maxlength="15">)");
    EXPECT_EQ(CTESHTML_InputFijo("C1", "style='width:40px'"),
              R"(<input readonly class="inputsinbordes" type="text" value="C1" style='width:40px' >)");
    EXPECT_EQ(CTESHTML_Checkbox("dhcpcheck", "dhcpcheck", true, "onclick=\"EnableDisablegroup(this);\""),
              R"(<input name="dhcpcheck" id="dhcpcheck" type="checkbox"  checked="yes"  onclick="EnableDisablegroup(this);">)");
    EXPECT_EQ(CTESHTML_Checkbox("tled", "tled", false, ""), R"(<input name="tled" id="tled" type="checkbox"  >)");
    EXPECT_EQ(CTESHTML_Oculto("teas_x", "teas_x", "0"), R"(<input id="teas_x" name="teas_x" value="0" type="hidden">)");
    EXPECT_EQ(CTESHTML_Boton("serv1_x", "serv1_x", UTILS_Formatea(strJSClickservicesIP, 1, "_x"), "Select"),
              R"~(<button name="serv1_x" id="serv1_x" onclick="MuestraListaServicios(this,1,'_x')"  type="button">Select</button>)~");
    EXPECT_EQ(CTESHTML_Div("divoutchn_x", "<b>n/a</b>"), R"(<div id="divoutchn_x"><b>n/a</b></div>)");
    EXPECT_EQ(CTESHTML_DivOculto("popup", "<b>x</b>"), R"(<div id="popup" class="fondotranslucido"><b>x</b></div>)");
    EXPECT_EQ(CTESHTML_C3C4("1080I", "29.97", "--", "--"), "<br>C3 1080I/29.97<br>C4 --/--");
    EXPECT_EQ(CTESHTML_Miunidad("710101  - Enc 2 CMP"), "<b>710101  - Enc 2 CMP<br>web connected</b>");
    EXPECT_EQ(CTESHTML_Negrita("12"), "<b>12</b>");
}

TEST(Helpers, InputRefusesATemplateWithOtherPlaceholders)
{
    EXPECT_EQ(CTESHTML_Input(htmlcheckbox, "a", 1, "a", "", "", "", "v", 1), "");
    EXPECT_EQ(CTESHTML_Input(nullptr, "a", 1, "a", "", "", "", "v", 1), "");
    // A copy of an input template's text is still that template.
    const std::string copia = htmlinput3digitos;
    EXPECT_NE(CTESHTML_Input(copia.c_str(), "a", 3, "a", "", "", "", "v", 3), "");
}

TEST(Helpers, InputEnableBoxes)
{
    EXPECT_EQ(CTESHTML_EntradaActiva(2, false, "eon2_x", "eon2_x", true),
              R"(I2<input name="eon2_x" id="eon2_x" type="checkbox" onclick="EnableDisablegroupEntrada(this);" )"
              R"(onblur="Compruebacambios(this);" onchange="Compruebacambios(this);"  checked="yes" >)");
    EXPECT_EQ(CTESHTML_EntradaActiva(1, true, "eon1_x", "eon1_x", false),
              R"(I<input name="eon1_x" id="eon1_x" type="checkbox" onclick="EnableDisablegroupEntrada(this);" )"
              R"(onblur="Compruebacambios(this);" onchange="Compruebacambios(this);" >)");
    EXPECT_EQ(CTESHTML_SalidaIPActiva(3, "ipen3_x", "ipen3_x", false, "disabled"),
              R"(3<input name="ipen3_x" id="ipen3_x" type="checkbox" onclick="EnableDisablegroupSalidaIP(this);" )"
              R"(onblur="Compruebacambios(this);" onchange="Compruebacambios(this);" disabled>)");
}

TEST(CeldaModelo, MasterLinksWithAnEmptyArgumentOthersWithTheDottedSuffix)
{
    EXPECT_EQ(CTESHTML_SufijoConPuntos("_010_000_000_021"), ".010.000.000.021");
    EXPECT_EQ(CTESHTML_SufijoConPuntos(""), "");
    EXPECT_EQ(CTESHTML_CeldaModelo(true, "", "710101  - Enc 2 CMP"),
              R"(<a href="javascript:MostrarConfigTotal('');"><b>710101  - Enc 2 CMP<br>web connected</b></a>)");
    EXPECT_EQ(CTESHTML_CeldaModelo(false, "_010_000_000_021", "710201  - Enc 4 CVBS"),
              R"(<a href="javascript:MostrarConfigTotal('.010.000.000.021');">710201  - Enc 4 CVBS</a>)");
}

// Every helper that takes a value from a document or a form escapes it; the composed
// attribute text beside it comes out unchanged.
constexpr char Ataque[] = R"("><script>alert(1)</script>)";
constexpr char AtaqueEscapado[] = "&quot;&gt;&lt;script&gt;alert(1)&lt;/script&gt;";
constexpr char Atributos[] = " onblur=\"Compruebacambios(this);\" onchange=\"Compruebacambios(this);\"";

struct CasoEscape {
    const char *helper;
    std::function<std::string(const char *valor)> pinta;
    bool llevaAtributos;
};

void PrintTo(const CasoEscape &c, std::ostream *os) { *os << c.helper; }

class EscapaValores : public ::testing::TestWithParam<CasoEscape> {};

TEST_P(EscapaValores, ValueIsEscapedComposedPartsAreNot)
{
    const std::string html = GetParam().pinta(Ataque);
    EXPECT_EQ(html.find("<script"), std::string::npos) << html;
    EXPECT_NE(html.find(AtaqueEscapado), std::string::npos) << html;
    if (GetParam().llevaAtributos) {
        EXPECT_NE(html.find(Atributos), std::string::npos) << html;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Helpers, EscapaValores,
    ::testing::Values(
        CasoEscape{"SelectBoxValor",
                   [](const char *v) { return CTESHTML_SelectBox("s", "s", Atributos, {{v, "x"}}, v); }, true},
        CasoEscape{"SelectBoxTexto",
                   [](const char *v) { return CTESHTML_SelectBox("s", "s", Atributos, {{"0", v}}, "0"); }, true},
        CasoEscape{"Anterior", [](const char *v) { return CTESHTML_Anterior("cnam1_x", v); }, false},
        CasoEscape{"Input",
                   [](const char *v) {
                       return CTESHTML_Input(htmlinputCHName, "cnam1_x", 6, "cnam1_x", strJSPermitirNombrecanal,
                                             "Compruebacambios(this);", Atributos, v, 7);
                   },
                   true},
        CasoEscape{"InputFijo", [](const char *v) { return CTESHTML_InputFijo(v, Atributos); }, true},
        CasoEscape{"Oculto", [](const char *v) { return CTESHTML_Oculto("o", "o", v); }, false},
        CasoEscape{"Boton", [](const char *v) { return CTESHTML_Boton("b", "b", Atributos, v); }, true},
        CasoEscape{"C3C4", [](const char *v) { return CTESHTML_C3C4(v, v, v, v); }, false},
        CasoEscape{"Miunidad", [](const char *v) { return CTESHTML_Miunidad(v); }, false},
        CasoEscape{"Negrita", [](const char *v) { return CTESHTML_Negrita(v); }, false},
        CasoEscape{"CeldaModeloMaster", [](const char *v) { return CTESHTML_CeldaModelo(true, "", v); }, false},
        CasoEscape{"CeldaModeloUnidad",
                   [](const char *v) { return CTESHTML_CeldaModelo(false, "_010_000_000_021", v); }, false}),
    [](const ::testing::TestParamInfo<CasoEscape> &info) { return std::string(info.param.helper); });

TEST(EscapaValores, ComposedContentIsNotEscapedAgain)
{
    const std::string celda = CTESHTML_Negrita("a<b");
    EXPECT_EQ(CTESHTML_Div("d", celda), R"(<div id="d"><b>a&lt;b</b></div>)");
    EXPECT_EQ(CTESHTML_Checkbox("c", "c", false, Atributos).find("&quot;"), std::string::npos);
}

}  // namespace
