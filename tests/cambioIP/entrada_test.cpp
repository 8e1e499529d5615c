// The encoder input painter and save called directly on a unit document: the section of the
// advanced page (phase 3, only reachable through that page) and the argument checks.
#include "cambioIP/entrada.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <memory>
#include <string>

namespace {

struct FreeDoc {
    void operator()(xmlDoc *d) const { xmlFreeDoc(d); }
};
using Doc = std::unique_ptr<xmlDoc, FreeDoc>;

Doc unit(const char *file)
{
    const std::string path = std::string(CAMBIOIP_SOURCE_DIR) + "/demo/root/config/" + file;
    return Doc(xmlReadFile(path.c_str(), nullptr, XML_PARSE_NONET));
}

// Runs a page phase and returns its result and what it printed.
std::pair<int, std::string> phase(int fase, xmlDocPtr doc, int family, const char *model, const char *suffix)
{
    testing::internal::CaptureStdout();
    const int result = CIPINT_GeneraEntrada(fase, doc, 0, 2, 1, 15, 7, model, 1, suffix, family, 382);
    return {result, testing::internal::GetCapturedStdout()};
}

std::size_t countOf(const std::string &text, const std::string &needle)
{
    std::size_t n = 0;
    for (auto at = text.find(needle); at != std::string::npos; at = text.find(needle, at + 1))
        ++n;
    return n;
}

struct AdvancedCase {
    int family;
    std::size_t columns;
    bool audioCodec, closedCaption;
};

class AdvancedSection : public ::testing::TestWithParam<AdvancedCase> {};

TEST_P(AdvancedSection, NamesEveryFieldTotAndHasNoTwins)
{
    const AdvancedCase &c = GetParam();
    Doc doc = unit("network.010.000.000.031.xml");
    ASSERT_TRUE(doc);
    const auto [result, html] = phase(3, doc.get(), c.family, "710205  - Enc 2 CMP+HDMI+IP", "_010_000_000_031");
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(html.starts_with("<table id='tabaInputConfig' border=\"1\"><tbody><tr><th class='cabeceraTabla' colspan='" +
                                 std::to_string(c.columns) + "'>Input Configuration:</th></tr>"))
        << html;
    EXPECT_TRUE(html.ends_with("</td></tr></tbody></table>"));
    EXPECT_EQ(countOf(html, "<td"), c.columns);
    EXPECT_EQ(countOf(html, "<th"), c.columns + 1);
    for (const char *name : {"eon1_tot", "eon2_tot", "vidinp2_tot", "maxoutres1_tot", "audlev2_tot", "outmod_tot"})
        EXPECT_NE(html.find(std::string("name=\"") + name + "\""), std::string::npos) << name;
    EXPECT_EQ(html.find("anterior"), std::string::npos);
    EXPECT_EQ(html.find("forzarconfig"), std::string::npos);
    EXPECT_EQ(html.find("_010_000_000_031"), std::string::npos);
    EXPECT_EQ(html.find("<select name=\"audcod1_tot\"") != std::string::npos, c.audioCodec);
    EXPECT_EQ(html.find("<input id=\"audcod1_tot\" name=\"audcod1_tot\" value=\"0\" type=\"hidden\">") !=
                  std::string::npos,
              !c.audioCodec);
    EXPECT_EQ(html.find("<input id=\"ccon1_tot\" name=\"ccon1_tot\" value=\"0\" type=\"hidden\">") != std::string::npos,
              !c.closedCaption);
}

INSTANTIATE_TEST_SUITE_P(Layouts, AdvancedSection,
                         ::testing::Values(AdvancedCase{0, 13, true, true}, AdvancedCase{1, 11, false, false},
                                           AdvancedCase{2, 12, true, false}, AdvancedCase{3, 12, true, false},
                                           AdvancedCase{4, 13, true, true}));

TEST(InputPage, MissingArgumentsAndOtherPhases)
{
    Doc doc = unit("network.010.000.000.021.xml");
    ASSERT_TRUE(doc);
    EXPECT_EQ(phase(1, doc.get(), 0, nullptr, "_010_000_000_021"), std::make_pair(4, std::string()));
    EXPECT_EQ(phase(7, doc.get(), 0, "710105", "_010_000_000_021"), std::make_pair(0, std::string()));
    EXPECT_EQ(phase(-1, doc.get(), 0, "710105", "_010_000_000_021"), std::make_pair(0, std::string()));

    testing::internal::CaptureStdout();
    EXPECT_EQ(CIPINT_PintaLineaConfigEntrada(doc.get(), 0, 0, 2, 0, 15, 3, "710105", 0, nullptr, 0, 382), 4);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(CIPINT_GrabaConfigEntrada(doc.get(), nullptr), 4);
}

}  // namespace
