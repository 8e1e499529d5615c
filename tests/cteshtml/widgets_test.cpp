// Escaping of document and form values where they enter the widget kit.
#include "cteshtml/cteshtml.h"
#include "utils/utils.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace {

// Every helper that takes a value or a label escapes it; the attribute text the program
// composes goes in as it is.
TEST(Widgets, EscapeTheirValuesButNotTheComposedAttributes)
{
    const std::string valor = R"(x"><script>'&</script>)";
    const std::string escapado = UTILS_Escapa(valor);
    const std::string atributos = R"( onblur="Compruebacambios(this);")";
    const struct {
        const char *nombre;
        std::function<std::string()> pinta;
        bool conAtributos;
    } helpers[] = {
        {"SelectBox value", [&] { return CTESHTML_SelectBox("s", "s", atributos, {{valor, "x"}}, valor); }, true},
        {"SelectBox label", [&] { return CTESHTML_SelectBox("s", "s", atributos, {{"0", valor}}, "0"); }, true},
        {"Input", [&] { return CTESHTML_Input(htmlinputCHName, "c", 6, "c", "", "", atributos, valor, 7); }, true},
        {"InputFijo", [&] { return CTESHTML_InputFijo(valor, atributos); }, true},
        {"Boton", [&] { return CTESHTML_Boton("b", "b", atributos, valor); }, true},
        {"Anterior", [&] { return CTESHTML_Anterior("cnam1_x", valor); }, false},
        {"Oculto", [&] { return CTESHTML_Oculto("o", "o", valor); }, false},
        {"C3C4", [&] { return CTESHTML_C3C4(valor, valor, valor, valor); }, false},
        {"Miunidad", [&] { return CTESHTML_Miunidad(valor); }, false},
        {"Negrita", [&] { return CTESHTML_Negrita(valor); }, false},
        {"CeldaModelo master", [&] { return CTESHTML_CeldaModelo(true, "", valor); }, false},
        {"CeldaModelo unit", [&] { return CTESHTML_CeldaModelo(false, "_010_000_000_021", valor); }, false},
    };
    for (const auto &helper : helpers) {
        const std::string html = helper.pinta();
        EXPECT_EQ(html.find(valor), std::string::npos) << helper.nombre << ": " << html;
        EXPECT_NE(html.find(escapado), std::string::npos) << helper.nombre << ": " << html;
        EXPECT_EQ(html.find(atributos) != std::string::npos, helper.conAtributos) << helper.nombre << ": " << html;
    }
    // Composed content is not escaped a second time.
    EXPECT_EQ(CTESHTML_Div("d", CTESHTML_Negrita("a<b")), R"(<div id="d"><b>a&lt;b</b></div>)");
    // Only the text-input templates can be filled as inputs.
    EXPECT_EQ(CTESHTML_Input(htmlcheckbox, "a", 1, "a", "", "", "", "v", 1), "");
    EXPECT_EQ(CTESHTML_Input(nullptr, "a", 1, "a", "", "", "", "v", 1), "");
}

}  // namespace
