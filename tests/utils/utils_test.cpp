#include "utils/utils.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

struct Mapping {
    const char *root;  // nullptr: unset
    const char *path;
    const char *mapped;
};

class MapeaRuta : public ::testing::TestWithParam<Mapping> {};

TEST_P(MapeaRuta, ResolvesFixedPathsUnderTheRoot)
{
    if (GetParam().root)
        setenv("CAMBIOIP_ROOT", GetParam().root, 1);
    else
        unsetenv("CAMBIOIP_ROOT");
    EXPECT_EQ(UTILS_MapeaRuta(GetParam().path), GetParam().mapped);
    unsetenv("CAMBIOIP_ROOT");
}

INSTANTIATE_TEST_SUITE_P(
    Cases, MapeaRuta,
    ::testing::Values(Mapping{nullptr, "/config", "/config"}, Mapping{"", "/config/web.lock", "/config/web.lock"},
                      Mapping{"/tmp/r", "/config", "/tmp/r/config"},
                      Mapping{"/tmp/r/", "/upload/listupdate.prg", "/tmp/r/upload/listupdate.prg"},
                      Mapping{"/tmp/r//", "/root/tune_stb.sh", "/tmp/r/root/tune_stb.sh"},
                      Mapping{"/tmp/r", "/www/jaula/config", "/tmp/r/www/jaula/config"},
                      Mapping{"/", "/config", "/config"}));

struct Pause {
    const char *value;  // nullptr: unset
    long ms;
};

class PausaCarga : public ::testing::TestWithParam<Pause> {};

TEST_P(PausaCarga, DefaultsToTheSystemsQuarterSecond)
{
    if (GetParam().value)
        setenv("CAMBIOIP_LOAD_PAUSE_MS", GetParam().value, 1);
    else
        unsetenv("CAMBIOIP_LOAD_PAUSE_MS");
    EXPECT_EQ(UTILS_PausaCargaMs(), GetParam().ms);
    setenv("CAMBIOIP_LOAD_PAUSE_MS", "0", 1);
}

INSTANTIATE_TEST_SUITE_P(Cases, PausaCarga,
                         ::testing::Values(Pause{nullptr, 250}, Pause{"", 250}, Pause{"0", 0}, Pause{"10", 10},
                                           Pause{"-1", 250}, Pause{"abc", 250}, Pause{"5ms", 250}));

TEST(Formatea, SizesTheResultExactly)
{
    EXPECT_EQ(UTILS_Formatea("%s-%03d", "unit", 7), "unit-007");
    std::string big(10000, 'x');
    EXPECT_EQ(UTILS_Formatea("<td>%s</td>", big.c_str()), "<td>" + big + "</td>");
    EXPECT_EQ(UTILS_Formatea("%s", ""), "");
}

}  // namespace
