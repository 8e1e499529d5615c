// The page engine through the common pages of the real cambioIP.cgi: which units a page
// keeps and counts, unsupported masters and units, and addresses read from file names.
#include "e2e/rack.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace cambioip_test;

namespace {

// The select box of every demo unit names it on every common page.
const char *const kAllBoxes[] = {"name=\"forzarconfig\"",
                                 "name=\"forzarconfig_010_000_000_021\"",
                                 "name=\"forzarconfig_010_000_000_022\"",
                                 "name=\"forzarconfig_010_000_000_031\"",
                                 "name=\"forzarconfig_010_000_000_032\"",
                                 "name=\"forzarconfig_010_000_000_041\"",
                                 "name=\"forzarconfig_010_000_000_051\""};

// --- which units a page keeps ------------------------------------------------------

struct Keeps {
    const char *name;
    const char *query;
    std::vector<std::string> shown;  // select boxes on the page; every other demo unit is absent
};

class PageModes : public ::testing::TestWithParam<Keeps> {};

TEST_P(PageModes, ListAndCountOnlyTheUnitsOfTheMode)
{
    TempRoot root;
    copyDemo(root);
    const Keeps &c = GetParam();
    CgiResult r = runGet(root, c.query);
    expectCleanRun(r);
    const std::string body = r.body();
    for (const char *box : kAllBoxes) {
        const bool expected = std::find(c.shown.begin(), c.shown.end(), box) != c.shown.end();
        EXPECT_EQ(countOf(body, box), expected ? 1u : 0u) << box;
    }
    EXPECT_NE(body.find(allUnitsCaption(static_cast<int>(c.shown.size()))), std::string::npos) << body;
    EXPECT_EQ(body.find("ERROR!"), std::string::npos);
    // header, one row per unit, last row
    EXPECT_EQ(tableRows(body).size(), c.shown.size() + 2);
}

const std::vector<std::string> kQam(std::begin(kAllBoxes), std::begin(kAllBoxes) + 3);

INSTANTIATE_TEST_SUITE_P(
    DemoRack, PageModes,
    ::testing::Values(Keeps{"NetworkShowsTheMastersFamily", "command=3", kQam},
                      Keeps{"TestShowsTheMastersFamily", "command=14", kQam},
                      Keeps{"ListShowsTheMastersModel", "command=15", {kAllBoxes[0]}},
                      Keeps{"ListForTestsShowsEveryUnit", "command=16",
                            std::vector<std::string>(std::begin(kAllBoxes), std::end(kAllBoxes))}),
    [](const auto &info) { return std::string(info.param.name); });

TEST(PageModes, UnitsOfTheMastersModelCountOnTheUnitList)
{
    TempRoot root;
    copyDemo(root);
    UnitDoc twin;
    twin.id = "ENC-TWIN";
    twin.tipo = "710109";
    writeUnit(root, "010.000.000.061", twin);
    const std::string body = runGet(root, "command=15").body();
    EXPECT_NE(body.find("ENC-TWIN"), std::string::npos);
    EXPECT_NE(body.find(allUnitsCaption(2)), std::string::npos);
}

// --- masters the pages do not support -------------------------------------------------

class EmptyMasterType : public ::testing::TestWithParam<const char *> {};

TEST_P(EmptyMasterType, PageIsOnlyDeviceNotSupported)
{
    TempRoot root;
    copyDemo(root);
    setMasterType(root, "");
    CgiResult r = runGet(root, GetParam());
    expectCleanRun(r);
    EXPECT_EQ(r.out, kHeader + kOpen + kNotSupported + kClose);
}

INSTANTIATE_TEST_SUITE_P(Pages, EmptyMasterType,
                         ::testing::Values("command=3", "command=14", "command=15", "command=16"));

struct Placeholder {
    const char *query;
    const char *header;  // a text of the page's header
};

class PlaceholderMaster : public ::testing::TestWithParam<Placeholder> {};

TEST_P(PlaceholderMaster, GetsHeaderAndRowsButNoLastRow)
{
    TempRoot root;
    copyDemo(root);
    setMasterType(root, "65535");
    CgiResult r = runGet(root, GetParam().query);
    expectCleanRun(r);
    const std::string body = r.body();
    ASSERT_EQ(body.rfind(kOpen + "<table id='tabadatos'", 0), 0u) << body;
    EXPECT_NE(body.find(GetParam().header), std::string::npos);
    // The master is the only unit of its family and of its model code.
    EXPECT_NE(body.find("65535 DUMMY"), std::string::npos) << body;
    EXPECT_EQ(countOf(body, kAllBoxes[0]), 1u);
    EXPECT_EQ(tableRows(body).size(), 2u);
    EXPECT_EQ(body.find("Set Configuration for all Units"), std::string::npos);
    EXPECT_EQ(body.find("</tbody></table>"), std::string::npos);
    EXPECT_TRUE(body.ends_with("</tr>" + kNotSupported + kClose)) << body;
}

INSTANTIATE_TEST_SUITE_P(Pages, PlaceholderMaster,
                         ::testing::Values(Placeholder{"command=3", "Network MASK"},
                                           Placeholder{"command=14", ">EAS</th>"},
                                           Placeholder{"command=15", "Version Info"}));

// --- units the pages do not support --------------------------------------------------

TEST(UnknownUnit, CountsAsARowAndPrintsDeviceNotSupportedInItsPlace)
{
    TempRoot root;
    copyDemo(root);
    UnitDoc odd;
    odd.id = "ENC-ODD";
    odd.tipo = "563";
    writeUnit(root, "010.000.000.063", odd);
    CgiResult r = runGet(root, "command=16");
    expectCleanRun(r);
    const std::string body = r.body();
    EXPECT_EQ(countOf(body, kNotSupported), 1u);
    EXPECT_EQ(body.find("ENC-ODD"), std::string::npos) << "the unit's row is not painted";
    EXPECT_NE(body.find(allUnitsCaption(8)), std::string::npos);
    EXPECT_TRUE(body.ends_with("</tbody></table>" + kClose));
}

TEST(UnknownUnit, IsLeftOutOfTheFamilyPages)
{
    TempRoot root;
    copyDemo(root);
    UnitDoc odd;
    odd.tipo = "563";
    writeUnit(root, "010.000.000.063", odd);
    const std::string body = runGet(root, "command=3").body();
    EXPECT_EQ(body.find("ERROR!"), std::string::npos);
    EXPECT_NE(body.find(allUnitsCaption(3)), std::string::npos);
}

// --- addresses read from the unit file names -------------------------------------------

struct WrongAddress {
    const char *name;     // address part of the unit's file names
    const char *query;
    const char *field;    // a field name built from the suffix
};

class AddressInFileName : public ::testing::TestWithParam<WrongAddress> {};

TEST_P(AddressInFileName, FourDigitOctetGivesIpWrongAndTheWrappedSuffix)
{
    TempRoot root;
    copyDemo(root);
    UnitDoc unit;
    unit.id = "ENC-WRAP";
    writeUnit(root, GetParam().name, unit);
    CgiResult r = runGet(root, GetParam().query);
    expectCleanRun(r);
    const std::string body = r.body();
    const auto error = body.find(kIpWrong);
    ASSERT_NE(error, std::string::npos) << body;
    EXPECT_EQ(countOf(body, kIpWrong), 1u);
    // The page goes on: the unit's row follows, named with the octets as read (1234 is 210).
    const auto row = body.find(GetParam().field);
    ASSERT_NE(row, std::string::npos) << body;
    EXPECT_LT(error, row);
    EXPECT_NE(rowWith(body, GetParam().field), "");
}

INSTANTIATE_TEST_SUITE_P(
    Pages, AddressInFileName,
    ::testing::Values(WrongAddress{"010.000.000.1234", "command=16", "forzarconfig_010_000_000_210\""},
                      WrongAddress{"010.000.000.1234", "command=3", "networkipdir_010_000_000_210\""},
                      WrongAddress{"010.1234.000.021", "command=3", "networkipdir_010_210_000_021\""},
                      WrongAddress{"010.000.000.1234", "command=14", "treset_010_000_000_210\""}));

}  // namespace
