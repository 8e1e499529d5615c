// The command number and the unit suffix are looked for as plain text anywhere in the
// form, as the system does: the first occurrence wins, even inside another field.
#include "cambioIP/cambioIP_int.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(LeeComando, TheFirstOccurrenceAnywhereInTheFormGivesTheNumber)
{
    for (const auto &[formulario, comando] :
         {std::pair{"x=1&command=12", 12L}, {"command=12&x=1", 12L}, {"mycommand=3", 3L}, {"command=015", 15L},
          {"command=2%30", 20L}, {"command=-4", -4L}, {"command=abc", 0L}, {"command=", 0L}, {"commandx=3", 0L},
          {"name=command&command=3", 0L}, {"command=20&command=21", 20L}, {"x=1", 255L}, {"", 255L}}) {
        std::string texto = formulario;
        EXPECT_EQ(CIPINT_LeeComando(texto.data()), comando) << formulario;
        EXPECT_EQ(texto, formulario) << "the form text is left as it was";
    }
    EXPECT_EQ(CIPINT_LeeComando(nullptr), 255);
}

TEST(BuscaCampo, ReadsThePairWhereTheKeyFirstOccursIntoABoundedBuffer)
{
    for (const auto &[formulario, hallado, leido] :
         {std::tuple{"a=1&sufijo=.010.000.000.021&b=2", true, ".010."},  // cut to the buffer
          {"sufijo=%2E1&x", true, ".1"}, {"a=1", false, "?"}, {"", false, "?"},
          {"name=sufijo_x&sufijo=1", true, "?"}}) {  // found inside a value: no pair, nothing read
        char valor[6] = "?";
        EXPECT_EQ(CIPINT_BuscaCampo(formulario, "sufijo", valor, sizeof valor), hallado) << formulario;
        EXPECT_STREQ(valor, leido) << formulario;
    }
    EXPECT_FALSE(CIPINT_BuscaCampo(nullptr, "sufijo", nullptr, 0));
}

}  // namespace
