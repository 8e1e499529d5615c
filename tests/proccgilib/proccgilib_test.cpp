#include "proccgilib/proccgilib.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

std::string decoded(std::string text)
{
    ParseString(text.data());
    return text.c_str();
}

struct Decode {
    const char *in;
    const char *out;
};

class ParseStringCases : public ::testing::TestWithParam<Decode> {};

TEST_P(ParseStringCases, DecodesInPlace) { EXPECT_EQ(decoded(GetParam().in), GetParam().out); }

INSTANTIATE_TEST_SUITE_P(Cases, ParseStringCases,
                         ::testing::Values(Decode{"A+B%2Fc%zz", "A B/c%zz"}, Decode{"%41%62", "Ab"},
                                           Decode{"%4", "%4"}, Decode{"%", "%"}, Decode{"x%", "x%"},
                                           Decode{"%%41", "%A"}, Decode{"  \t lead", "lead"},
                                           Decode{"%c3%b1", "\xc3\xb1"}, Decode{"", ""},
                                           Decode{"a%00b", "a"}));

TEST(ParseString, NullIsReturnedAsIs) { EXPECT_EQ(ParseString(nullptr), nullptr); }

// What GetValueKey leaves in one destination of 16 bytes, prefilled with "untouched".
std::string valueOf(const char *pair, const char *key = "a", size_t capacity = 16)
{
    char buffer[64] = "untouched";
    GetValueKey(pair, {{key, buffer, capacity}});
    return buffer;
}

struct Pair {
    const char *pair;
    const char *key;
    const char *value;
};

class GetValueKeyCases : public ::testing::TestWithParam<Pair> {};

TEST_P(GetValueKeyCases, CopiesTheDecodedValueOfAMatchingKey)
{
    EXPECT_EQ(valueOf(GetParam().pair, GetParam().key), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, GetValueKeyCases,
    ::testing::Values(Pair{"a%3Db=1", "a", "b=1"}, Pair{"a=b&c=d", "a", "b&c=d"}, Pair{"name=A+B%2Fc%zz", "name", "A B/c%zz"},
                      Pair{"9x=1", "9x", "untouched"}, Pair{"=1", "", "untouched"},
                      Pair{"command", "command", "untouched"}, Pair{"ip=1", "IP", "untouched"},
                      Pair{"ip=1", "i", "untouched"}, Pair{"ipx=1", "ip", "untouched"},
                      Pair{"_k1=v", "_k1", "v"}, Pair{"a=", "a", ""}, Pair{"a-b=1", "a-b", "untouched"},
                      Pair{"+a=1", "a", "untouched"}, Pair{" \ta=1", "a", "1"}, Pair{"a+=1", "a", "untouched"}, Pair{"k%5F2=x", "k_2", "x"}));

TEST(GetValueKey, EveryMatchingDestinationReceivesTheValue)
{
    char first[8] = "", second[8] = "", other[8] = "keep";
    GetValueKey("ip=10", {{"ip", first}, {"IP", other}, {"ip", second}});
    EXPECT_STREQ(first, "10");
    EXPECT_STREQ(second, "10");
    EXPECT_STREQ(other, "keep");
}

TEST(GetValueKey, NoDestinationsOrNullPairCopyNothing)
{
    char buffer[8] = "keep";
    GetValueKey("a=1", {});
    GetValueKey(nullptr, {{"a", buffer}});
    GetValueKey("a=1", {{nullptr, buffer}, {"a", nullptr, 8}, {"a", buffer, 0}});
    EXPECT_STREQ(buffer, "keep");
}

struct Cut {
    const char *value;
    size_t capacity;
    const char *kept;
};

class Truncation : public ::testing::TestWithParam<Cut> {};

TEST_P(Truncation, CutsToTheDestinationsCapacity)
{
    std::string pair = std::string("a=") + GetParam().value;
    char buffer[32];
    std::memset(buffer, 'Z', sizeof buffer);
    GetValueKey(pair.c_str(), {{"a", buffer, GetParam().capacity}});
    EXPECT_STREQ(buffer, GetParam().kept);
    for (size_t i = GetParam().capacity; i < sizeof buffer; ++i)
        ASSERT_EQ(buffer[i], 'Z') << "wrote past the capacity at " << i;
}

INSTANTIATE_TEST_SUITE_P(Cases, Truncation,
                         ::testing::Values(Cut{"abcdef", 4, "abc"}, Cut{"abc", 4, "abc"}, Cut{"abcd", 4, "abc"},
                                           Cut{"abc", 1, ""}, Cut{"ab%C3%B1", 4, "ab"},
                                           Cut{"ab%C3%B1", 5, "ab\xc3\xb1"}, Cut{"%F0%9F%93%BAx", 4, ""},
                                           Cut{"%F0%9F%93%BAx", 5, "\xf0\x9f\x93\xba"}));

TEST(GetValueKeys, SplitsACopyAndLeavesTheTextWhole)
{
    std::string form = "x=1&&ip=10.0.0.1&mask=255.0.0.0&ip=10.0.0.2";
    char ip[20] = "", mask[20] = "", gw[20] = "none";
    GetValueKeys(form.c_str(), {{"ip", ip}, {"mask", mask}, {"gw", gw}});
    EXPECT_STREQ(ip, "10.0.0.2") << "a later pair of the same key wins";
    EXPECT_STREQ(mask, "255.0.0.0");
    EXPECT_STREQ(gw, "none");
    EXPECT_EQ(form, "x=1&&ip=10.0.0.1&mask=255.0.0.0&ip=10.0.0.2");
}

TEST(HandleString, PrintsAShellAssignmentWithEscapes)
{
    testing::internal::CaptureStdout();
    HandleString("na%24me=a%22b%5Cc%60d%24e+f");
    HandleString("bad key=1");
    HandleString("9=1");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    testing::internal::CaptureStdout();
    HandleString("name=a%22b%5Cc%60d%24e+f");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "FORM_name=\"a\\\"b\\\\c\\`d\\$e f\"\n");
}

TEST(LoadInput, GetCopiesTheQueryString)
{
    setenv("REQUEST_METHOD", "GET", 1);
    setenv("QUERY_STRING", "command=3&x=%41", 1);
    PROCCGI_Texto text(LoadInput());
    ASSERT_TRUE(text);
    EXPECT_STREQ(text.get(), "command=3&x=%41") << "the form text stays undecoded";
    unsetenv("QUERY_STRING");
    EXPECT_EQ(LoadInput(), nullptr);
    setenv("REQUEST_METHOD", "GET ", 1);
    setenv("QUERY_STRING", "command=3", 1);
    EXPECT_EQ(LoadInput(), nullptr);
    unsetenv("REQUEST_METHOD");
    EXPECT_EQ(LoadInput(), nullptr);
}

TEST(FP_strdup, CopiesOrPassesNull)
{
    PROCCGI_Texto copy(FP_strdup("abc"));
    EXPECT_STREQ(copy.get(), "abc");
    EXPECT_EQ(FP_strdup(nullptr), nullptr);
}

}  // namespace

namespace {

struct PairsCase {
    const char *list;
    std::vector<std::pair<long, std::string>> pairs;
};

class ParesLinea : public ::testing::TestWithParam<PairsCase> {};

TEST_P(ParesLinea, SplitsAtEveryUnderscore)
{
    std::vector<std::pair<long, std::string>> got;
    for (const PROCCGI_ParLinea &p : PROCCGI_ParesLinea(GetParam().list))
        got.emplace_back(p.linea, p.valor);
    EXPECT_EQ(got, GetParam().pairs);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, ParesLinea,
    ::testing::Values(PairsCase{"1_1_3_0", {{1, "1"}, {3, "0"}}}, PairsCase{"", {}}, PairsCase{"2", {}},
                      PairsCase{"1_News_2_Sport", {{1, "News"}, {2, "Sport"}}},
                      PairsCase{"1_My_Channel_2_x", {{1, "My"}, {0, "2"}}},
                      PairsCase{"1__2_x", {{1, ""}, {2, "x"}}}, PairsCase{"1_a_2", {{1, "a"}}},
                      PairsCase{"x_5", {{0, "5"}}}));

}  // namespace
