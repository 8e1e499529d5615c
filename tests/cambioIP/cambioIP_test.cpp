#include "cambioIP/cambioIP_int.h"

#include <gtest/gtest.h>

namespace {

struct Command {
    const char *form;
    long number;
};

class CommandNumber : public ::testing::TestWithParam<Command> {};

TEST_P(CommandNumber, IsReadFromTheFirstOccurrence)
{
    std::string form = GetParam().form;
    EXPECT_EQ(CIPINT_LeeComando(form.c_str()), GetParam().number);
    EXPECT_EQ(form, GetParam().form) << "the form text is left as it was";
}

INSTANTIATE_TEST_SUITE_P(Quirks, CommandNumber,
                         ::testing::Values(Command{"x=1&command=12", 12}, Command{"command=12&x=1", 12},
                                           Command{"mycommand=3", 3}, Command{"name=command&command=3", 0},
                                           Command{"command=015", 15}, Command{"command=abc", 0},
                                           Command{"command=", 0}, Command{"command=-4", -4},
                                           Command{"x=1", 255}, Command{"", 255},
                                           Command{"commandx=3", 0}, Command{"command=2%30", 20},
                                           Command{"command=20&command=21", 20}));

TEST(CommandNumber, NoFormTextIs255) { EXPECT_EQ(CIPINT_LeeComando(nullptr), 255); }

TEST(BuscaCampo, ReadsUpToTheNextAmpersandIntoABoundedBuffer)
{
    char value[6] = "";
    EXPECT_TRUE(CIPINT_BuscaCampo("a=1&sufijo=.010.000.000.021&b=2", "sufijo", value, sizeof value));
    EXPECT_STREQ(value, ".010.");
    EXPECT_FALSE(CIPINT_BuscaCampo("a=1", "sufijo", value, sizeof value));
    char early[8] = "";
    EXPECT_TRUE(CIPINT_BuscaCampo("name=sufijo_x&sufijo=1", "sufijo", early, sizeof early));
    EXPECT_STREQ(early, "") << "the first occurrence is inside a value and has no '='";
}

}  // namespace
