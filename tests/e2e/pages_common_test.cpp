// The common pages through the real cambioIP.cgi: the unit list (commands 15, 16), the
// network page and its save (3, 4), the test-options page and its save (14, 22), and the
// escaping of document values on all of them. Saved documents are read back with libxml2.
#include "e2e/rack.h"
#include "support/xml_read.h"

#include <gtest/gtest.h>

#include <initializer_list>

using namespace cambioip_test;

namespace {

std::string page(const TempRoot &root, const std::string &query)
{
    CgiResult r = runGet(root, query);
    expectCleanRun(r);
    return r.body();
}

std::string value(const TempRoot &root, const std::string &file, const std::string &xpath)
{
    return xmlText(root.path() / file, xpath).value_or("<missing>");
}

// Every piece occurs in the text, each after the one before.
void expectInOrder(const std::string &text, std::initializer_list<std::string> pieces)
{
    std::size_t from = 0;
    for (const std::string &piece : pieces) {
        const auto at = text.find(piece, from);
        ASSERT_NE(at, std::string::npos) << "missing or out of order: " << piece << "\nin: " << text;
        from = at + piece.size();
    }
}

const std::string kUnit021 = "010.000.000.021";
const std::string kFile021 = "config/network.010.000.000.021.xml";

// --- unit list -----------------------------------------------------------------------

const std::string kListHeader =
    "<table id='tabadatos' border=\"1\"><tbody><tr><th class='cabeceraTabla' style='width:3%;'><a class='linkTabla' href=# onclick='Ordenatabla(0,0);'>#&nbsp;<img src='/imagenes/Flecha.png' border='0' style='vertical-align:-10%'></a></th><th class='cabeceraTabla' style='width:10%;' ><a class='linkTabla' href=# onclick='Ordenatabla(1,0);'  >Model&nbsp;<img src='/imagenes/Flecha.png' border='0' style='vertical-align:-10%'></a></th><th class='cabeceraTabla'><a class='linkTabla' href=# onclick='Ordenatabla(2,0);'>ID&nbsp;<img src='/imagenes/Flecha.png' border='0' style='vertical-align:-10%'></a></th><th  class='cabeceraTabla'><a class='linkTabla' href=# onclick='Ordenatabla(3,0);'>IP&nbsp;<img src='/imagenes/Flecha.png' border='0' style='vertical-align:-10%'></a></th><th class='cabeceraTabla'>Serial Number</th><th class='cabeceraTabla'>Version Info</th><th class='cabeceraTabla'>Select</th></tr></tr>";

std::string listLastRow(int count)
{
    return "<tr><td class='ultimalinea' colspan='2' style='align:left;text-align:left;' >&nbsp;<b>Set Configuration "
           "for all Units (" +
           std::to_string(count) +
           "):</b></td><td  class='ultimalinea' colspan='4'>&nbsp</td><td  class='ultimalinea'><input "
           "name=\"forzarconf\" id=\"forzarconf\" type=\"checkbox\"  "
           "onclick=\"SeleccionarChecboxconCheckbox(this,'forzarconfig','0');\"></td></tr>";
}

TEST(UnitList, MastersModelPageIsExact)
{
    TempRoot root;
    copyDemo(root);
    const std::string masterRow =
        "<tr><td><strong><b>1</b></strong></td>"
        "<td><strong><b>710109  - Enc 2 CMP+HDMI+IP EAS<br>web connected</b></strong></td>"
        "<td><strong><b>ENC-HEAD-01</b></strong></td><td><strong><b>10.0.0.10</b></strong></td>"
        "<td><strong><b>2210109-0457</b></strong></td>"
        "<td><strong>Hardware - <b>3.2</b><br>Software - <b>5.17</b><br>Boot - <b>2.04</b><br>O.S. - "
        "<b>2.6.37.4</b><br>User Interface - <b>7.3.2</b></strong></td>"
        "<td><input name=\"forzarconfig\" id=\"forzarconfig\" type=\"checkbox\"></td></tr>";
    EXPECT_EQ(page(root, "command=15"), kOpen + kListHeader + masterRow + listLastRow(1) + "</tbody></table>" + kClose);
}

TEST(UnitList, OtherUnitsRowIsPlainWithTheSuffixedBox)
{
    TempRoot root;
    copyDemo(root);
    const std::string body = page(root, "command=16");
    EXPECT_EQ(rowWith(body, "ENC-HEAD-02"),
              "<tr><td><strong>2</strong></td><td><strong>710105  - Enc 2 CMP+HDMI</strong></td>"
              "<td><strong>ENC-HEAD-02</strong></td><td><strong>10.0.0.21</strong></td>"
              "<td><strong>2210105-0112</strong></td>"
              "<td><strong>Hardware - 3.2<br>Software - 5.17<br>Boot - 2.04<br>O.S. - 2.6.37.4<br>User Interface - "
              "7.3.2</strong></td>"
              "<td><input name=\"forzarconfig_010_000_000_021\" id=\"forzarconfig_010_000_000_021\" "
              "type=\"checkbox\"></td></tr>");
    EXPECT_TRUE(body.starts_with(kOpen + kListHeader));
    EXPECT_TRUE(body.ends_with(listLastRow(7) + "</tbody></table>" + kClose));
}

TEST(UnitList, MissingVersionFieldsShowEmptyValues)
{
    TempRoot root;
    copyDemo(root);
    UnitDoc bare;
    bare.id = "ENC-BARE";
    bare.versions = false;
    writeUnit(root, "010.000.000.061", bare);
    const std::string row = rowWith(page(root, "command=16"), "ENC-BARE");
    expectInOrder(row, {"<td><strong>ENC-BARE</strong></td><td><strong>10.0.0.61</strong></td>"
                        "<td><strong></strong></td>"
                        "<td><strong>Hardware - <br>Software - <br>Boot - <br>O.S. - <br>User Interface - "
                        "</strong></td>"});
}

// --- network page ----------------------------------------------------------------------

TEST(NetworkPage, RowCellsInOrder)
{
    TempRoot root;
    copyDemo(root);
    const std::string row = rowWith(page(root, "command=3"), "ENC-HEAD-02");
    expectInOrder(row, {"<tr><td>ENC-HEAD-02</td>", "<td>02:1A:71:00:00:15</td>",
                        "<td><input name=\"dhcpcheck_010_000_000_021\" id=\"dhcpcheck_010_000_000_021\" "
                        "type=\"checkbox\"  ",
                        "EnableDisablegroup(this);",
                        "id=\"networkipdir_010_000_000_021\" size=\"15\" name=\"networkipdir_010_000_000_021\"",
                        "value=\"10.0.0.21\" maxlength=\"15\">",
                        "id=\"lmask_010_000_000_021\" size=\"15\" name=\"networkmask_010_000_000_021\"",
                        "value=\"255.255.255.0\"",
                        "id=\"lgate_010_000_000_021\" size=\"15\" name=\"gateway_010_000_000_021\"",
                        "value=\"10.0.0.1\"",
                        "<input id=\"anteriornetworkipdir_010_000_000_021\" "
                        "name=\"anteriornetworkipdir_010_000_000_021\" value=\"10.0.0.21\" type=\"hidden\">",
                        "name=\"anteriornetworkmask_010_000_000_021\" value=\"255.255.255.0\"",
                        "name=\"anteriorgateway_010_000_000_021\" value=\"10.0.0.1\"",
                        "name=\"anteriordhcpcheck_010_000_000_021\" value=\"0\"",
                        "<input name=\"forzarconfig_010_000_000_021\" id=\"forzarconfig_010_000_000_021\" "
                        "type=\"checkbox\"  >",
                        "<input class=\"inputconbordesLCN\" id=\"orden_010_000_000_021\" size=\"4\" "
                        "name=\"orden_010_000_000_021\" onkeypress=\"return Permitekeypress(event, numeros,this);\" "
                        "onblur=\"ValidarEntero(this,'1','9999');Compruebacambios(this);\"  type=\"text\" "
                        "value=\"2\" maxlength=\"4\">",
                        "name=\"anteriororden_010_000_000_021\" value=\"2\"", "</td></tr>"});
    EXPECT_EQ(countOf(row, "disabled"), 0u);
}

TEST(NetworkPage, DhcpOnChecksTheBoxAndDisablesTheAddresses)
{
    TempRoot root;
    copyDemo(root);
    editFile(root, kFile021, "<IP_AUTO>0</IP_AUTO>", "<IP_AUTO>1</IP_AUTO>");
    const std::string body = page(root, "command=3");
    const std::string row = rowWith(body, "ENC-HEAD-02");
    EXPECT_NE(row.find("id=\"dhcpcheck_010_000_000_021\" type=\"checkbox\"  checked=\"yes\" "), std::string::npos)
        << row;
    EXPECT_EQ(countOf(row, "disabled"), 3u);
    for (const char *id : {"networkipdir_010_000_000_021", "lmask_010_000_000_021", "lgate_010_000_000_021"})
        expectInOrder(row, {std::string("id=\"") + id + "\"", " disabled type=\"text\""});
    EXPECT_NE(row.find("name=\"anteriordhcpcheck_010_000_000_021\" value=\"1\""), std::string::npos);
    EXPECT_EQ(countOf(rowWith(body, "ENC-HEAD-03"), "disabled"), 0u);
}

TEST(NetworkPage, OverlongDhcpFlagIsReportedEscaped)
{
    // A one-character flag holding a longer text: the store's diagnostic shows the text on
    // the page, escaped like every other value.
    TempRoot root;
    copyDemo(root);
    editFile(root, kFile021, "<IP_AUTO>0</IP_AUTO>", "<IP_AUTO>&lt;script&gt;x('1')&amp;&lt;/script&gt;</IP_AUTO>");
    const std::string body = page(root, "command=3");
    EXPECT_NE(body.find("getXML:Long xmlVal__[24 > size 1]:&lt;script&gt;x(&#39;1&#39;)&amp;&lt;/script&gt;\n"),
              std::string::npos)
        << body;
    EXPECT_EQ(body.find("<script>"), std::string::npos);
}

TEST(NetworkPage, ChangesPendingCheckTheSelectBox)
{
    TempRoot root;
    copyDemo(root);  // the unit at 10.0.0.22 has CAMBIOSWEB 1
    const std::string body = page(root, "command=3");
    EXPECT_NE(rowWith(body, "ENC-HEAD-03").find("id=\"forzarconfig_010_000_000_022\" type=\"checkbox\"  checked=\"yes\" "),
              std::string::npos);
    EXPECT_EQ(rowWith(body, "ENC-HEAD-02").find("checked"), std::string::npos);
}

TEST(NetworkPage, LastRowDrivesEveryUnit)
{
    TempRoot root;
    copyDemo(root);
    const std::string body = page(root, "command=3");
    const std::vector<std::string> rows = tableRows(body);
    ASSERT_EQ(rows.size(), 5u);
    expectInOrder(rows.back(), {allUnitsCaption(3), "name=\"dhcpcheck_all\"", "checked=\"yes\"",
                                "SeleccionarChecboxconCheckbox(this,'dhcpcheck','0');",
                                "ActivarPopUpNetworkMask();", " Set Network Mask ", "ActivarPopUpGatewayIP();",
                                " Set Gateway IP ", "SeleccionarChecboxconCheckbox(this,'forzarconfig','0');",
                                "ActivarPopUpAutoNumber();", ">Auto<"});
    EXPECT_TRUE(body.ends_with("</tr></tbody></table>" + kClose));
    expectInOrder(rows.front(), {"Ordenatabla(0,0);'>ID&nbsp;", "Ordenatabla(1,0);'>Model&nbsp;",
                                 "Ordenatabla(2,0);'>#&nbsp;", "Ordenatabla(3,0);'>MAC Address&nbsp;", ">DHCP<",
                                 ">IP Address<", ">Network MASK<", ">Gateway IP<", ">Select<"});
}

// --- the model cell, shared by the network and test pages ---------------------------------

struct ModelCell {
    const char *query;
    const char *rowNeedle;
    const char *cell;
};

class ModelCellLink : public ::testing::TestWithParam<ModelCell> {};

TEST_P(ModelCellLink, LinksToTheAdvancedPageOfTheUnit)
{
    TempRoot root;
    copyDemo(root);
    const std::string row = rowWith(page(root, GetParam().query), GetParam().rowNeedle);
    EXPECT_NE(row.find(std::string("<td>") + GetParam().cell + "</td>"), std::string::npos) << row;
}

const char *const kMasterCell =
    "<a href=\"javascript:MostrarConfigTotal('');\"><b>710109  - Enc 2 CMP+HDMI+IP EAS<br>web connected</b></a>";
const char *const kUnitCell = "<a href=\"javascript:MostrarConfigTotal('.010.000.000.021');\">710105  - Enc 2 CMP+HDMI</a>";

INSTANTIATE_TEST_SUITE_P(Pages, ModelCellLink,
                         ::testing::Values(ModelCell{"command=3", "name=\"forzarconfig\"", kMasterCell},
                                           ModelCell{"command=3", "name=\"forzarconfig_010_000_000_021\"", kUnitCell},
                                           ModelCell{"command=14", "name=\"forzarconfig\"", kMasterCell},
                                           ModelCell{"command=14", "name=\"forzarconfig_010_000_000_021\"", kUnitCell}));

// --- network save ------------------------------------------------------------------------

const std::string kAddresses = "networkipdir=10.0.0.121&networkmask=255.255.0.0&gateway=10.0.0.254";

struct DhcpCase {
    const char *name;
    const char *dhcp;  // the dhcp pair appended to the form, or ""
    const char *stored;
};

class NetworkSaveDhcp : public ::testing::TestWithParam<DhcpCase> {};

TEST_P(NetworkSaveDhcp, StoresEveryFieldAndTheDhcpRule)
{
    TempRoot root;
    copyDemo(root);
    const DhcpCase &c = GetParam();
    // Start from the other state, so that the save visibly writes the flag.
    if (std::string(c.stored) == "0")
        editFile(root, kFile021, "<IP_AUTO>0</IP_AUTO>", "<IP_AUTO>1</IP_AUTO>");
    CgiResult r = runPost(root, "command=4&sufijo=." + kUnit021 + "&" + kAddresses + "&orden=12" + c.dhcp);
    expectCleanRun(r);
    EXPECT_EQ(r.body().find("ERROR!"), std::string::npos) << r.body();
    EXPECT_EQ(value(root, kFile021, "/ENCODERCONFIG/NETWORK/IP_AUTO"), c.stored);
    EXPECT_EQ(value(root, kFile021, "/ENCODERCONFIG/NETWORK/IP_ADDRESS"), "10.0.0.121");
    EXPECT_EQ(value(root, kFile021, "/ENCODERCONFIG/NETWORK/IP_MASK"), "255.255.0.0");
    EXPECT_EQ(value(root, kFile021, "/ENCODERCONFIG/NETWORK/IP_GW"), "10.0.0.254");
    EXPECT_EQ(value(root, kFile021, "/ENCODERCONFIG/NETWORK/ORDEN"), "12");
    EXPECT_EQ(root.read("config/fileschanged.list"), "network." + kUnit021 + "\n");
}

INSTANTIATE_TEST_SUITE_P(Rules, NetworkSaveDhcp,
                         ::testing::Values(DhcpCase{"Zero", "&dhcp=0", "0"}, DhcpCase{"One", "&dhcp=1", "1"},
                                           DhcpCase{"OtherCharacter", "&dhcp=x", "1"},
                                           DhcpCase{"Absent", "", "1"}, DhcpCase{"Empty", "&dhcp=", "1"},
                                           DhcpCase{"FirstCharacterCounts", "&dhcp=01", "0"}),
                         [](const auto &info) { return std::string(info.param.name); });

struct MissingField {
    const char *name;
    const char *form;
};

class NetworkSaveMissing : public ::testing::TestWithParam<MissingField> {};

TEST_P(NetworkSaveMissing, IsInvalidDataAndWritesNothing)
{
    TempRoot root;
    copyDemo(root);
    CgiResult r = runPost(root, std::string("command=4&sufijo=.") + kUnit021 + "&" + GetParam().form);
    expectCleanRun(r);
    const std::string body = r.body();
    EXPECT_NE(body.find(kInvalidData), std::string::npos) << body;
    EXPECT_NE(body.find("Changes saved for ip 10.0.0.21"), std::string::npos);
    EXPECT_FALSE(root.exists("config/fileschanged.list"));
    EXPECT_EQ(value(root, kFile021, "/ENCODERCONFIG/NETWORK/IP_ADDRESS"), "10.0.0.21");
    EXPECT_EQ(value(root, kFile021, "/ENCODERCONFIG/NETWORK/IP_MASK"), "255.255.255.0");
    EXPECT_EQ(value(root, kFile021, "/ENCODERCONFIG/NETWORK/IP_GW"), "10.0.0.1");
    EXPECT_EQ(value(root, kFile021, "/ENCODERCONFIG/NETWORK/IP_AUTO"), "0");
    EXPECT_EQ(value(root, kFile021, "/ENCODERCONFIG/NETWORK/ORDEN"), "2");
}

INSTANTIATE_TEST_SUITE_P(
    Fields, NetworkSaveMissing,
    ::testing::Values(
        MissingField{"Order", "networkipdir=10.0.0.121&networkmask=255.255.0.0&gateway=10.0.0.254&dhcp=1"},
        MissingField{"EmptyOrder", "networkipdir=10.0.0.121&networkmask=255.255.0.0&gateway=10.0.0.254&orden="},
        MissingField{"Address", "networkmask=255.255.0.0&gateway=10.0.0.254&dhcp=1&orden=12"},
        MissingField{"Mask", "networkipdir=10.0.0.121&gateway=10.0.0.254&dhcp=1&orden=12"},
        MissingField{"Gateway", "networkipdir=10.0.0.121&networkmask=255.255.0.0&dhcp=1&orden=12"},
        MissingField{"OnlyThePaintedTwins",
                     "anteriornetworkipdir=10.0.0.121&anteriornetworkmask=255.255.0.0&anteriorgateway=10.0.0.254"
                     "&anteriororden=12"}),
    [](const auto &info) { return std::string(info.param.name); });

// --- test page ---------------------------------------------------------------------------

struct Layout {
    const char *name;
    const char *masterType;
    bool eu;
};

class TestPageLayout : public ::testing::TestWithParam<Layout> {};

TEST_P(TestPageLayout, QamMastersGetTheEasColumnOthersTheEuLayout)
{
    TempRoot root;
    copyDemo(root);
    setMasterType(root, GetParam().masterType);
    const bool eu = GetParam().eu;
    const std::string body = page(root, "command=14");
    const std::vector<std::string> rows = tableRows(body);
    ASSERT_GE(rows.size(), 3u) << body;

    expectInOrder(rows.front(), {"Ordenatabla(0,0);'>#&nbsp;", "Ordenatabla(1,0);'>Model&nbsp;"});
    EXPECT_EQ(rows.front().find(">EAS</th>") != std::string::npos, !eu);
    expectInOrder(rows.front(), {">Reset</th>", ">Restore Factory default configuration</th>", ">LED Blink</th>",
                                 ">Select</th>"});

    const std::string master = rowWith(body, "name=\"forzarconfig\"");
    EXPECT_EQ(countOf(master, "type=\"checkbox\""), eu ? 4u : 5u) << master;
    EXPECT_EQ(countOf(master, "<td>"), eu ? 6u : 7u);
    EXPECT_EQ(master.find("<input id=\"teas\" name=\"teas\" value=\"0\" type=\"hidden\">") != std::string::npos, eu);
    EXPECT_EQ(master.find("name=\"teas\" id=\"teas\" type=\"checkbox\"") != std::string::npos, !eu);
    EXPECT_NE(master.find(std::string("name=\"anteriortipounidad\" value=\"") + (eu ? "1" : "0") + "\""),
              std::string::npos);
    EXPECT_NE(master.find("name=\"anteriornumcanales\" value=\""), std::string::npos);
    expectInOrder(master, {"<tr><td><b>1</b></td>", "name=\"treset\"", "name=\"tfab\"", "name=\"tled\"",
                           "name=\"forzarconfig\""});

    const std::string &last = rows.back();
    EXPECT_EQ(last.find("'teas'") != std::string::npos, !eu);
    expectInOrder(last, {"SeleccionarChecboxconCheckbox(this,'treset','0');",
                         "<td class='ultimalinea' style='display:none'></td>",
                         "SeleccionarChecboxconCheckbox(this,'tfab','0');", "<td class='ultimalinea'>&nbsp;</td>",
                         "SeleccionarChecboxconCheckbox(this,'forzarconfig','0');"});
    EXPECT_EQ(last.find("'tled'"), std::string::npos);
    EXPECT_TRUE(body.ends_with("</tr></tbody></table>" + kClose));
}

INSTANTIATE_TEST_SUITE_P(Families, TestPageLayout,
                         ::testing::Values(Layout{"Qam", "710109", false}, Layout{"Cofdm", "710205", true},
                                           Layout{"Isdbt", "710301", true}, Layout{"CofdmQamB", "710401", true}),
                         [](const auto &info) { return std::string(info.param.name); });

struct EasOption {
    const char *tipo;
    bool hidden;
    const char *channels;
};

class TestPageEasBox : public ::testing::TestWithParam<EasOption> {};

TEST_P(TestPageEasBox, ModelsWithoutTheEasOptionSendAHiddenBox)
{
    TempRoot root;
    copyDemo(root);
    UnitDoc unit;
    unit.tipo = GetParam().tipo;
    writeUnit(root, "010.000.000.061", unit);
    const std::string row = rowWith(page(root, "command=14"), "name=\"forzarconfig_010_000_000_061\"");
    const auto box = row.find("<input name=\"teas_010_000_000_061\" id=\"teas_010_000_000_061\" type=\"checkbox\"");
    ASSERT_NE(box, std::string::npos) << row;
    const std::string boxText = row.substr(box, row.find('>', box) - box);
    EXPECT_EQ(boxText.find(" style='display:none'") != std::string::npos, GetParam().hidden) << boxText;
    EXPECT_NE(boxText.find("onblur=\"Fuerzacambios(this);\" onchange=\"Fuerzacambios(this);\""), std::string::npos);
    EXPECT_NE(row.find(std::string("name=\"anteriornumcanales_010_000_000_061\" value=\"") + GetParam().channels +
                       "\""),
              std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Models, TestPageEasBox,
                         ::testing::Values(EasOption{"710101", true, "2"}, EasOption{"710102", false, "2"},
                                           EasOption{"710103", true, "4"}, EasOption{"710104", false, "4"},
                                           EasOption{"710107", true, "2"}, EasOption{"710109", false, "2"}));

TEST(TestPage, BoxesShowTheStoredFlags)
{
    TempRoot root;
    copyDemo(root);
    UnitDoc unit;
    unit.eas = "1";
    unit.reset = "0";
    unit.factory = "1";
    unit.led = "1";
    unit.cambiosWeb = "1";
    unit.tipo = "710102";
    writeUnit(root, "010.000.000.061", unit);
    const std::string row = rowWith(page(root, "command=14"), "name=\"forzarconfig_010_000_000_061\"");
    const std::pair<const char *, bool> boxes[] = {{"teas", true},
                                                   {"treset", false},
                                                   {"tfab", true},
                                                   {"tled", true},
                                                   {"forzarconfig", true}};
    for (const auto &[base, checked] : boxes) {
        const std::string start = std::string("id=\"") + base + "_010_000_000_061\" type=\"checkbox\" ";
        const auto at = row.find(start);
        ASSERT_NE(at, std::string::npos) << base;
        EXPECT_EQ(row.compare(at + start.size(), 15, " checked=\"yes\" ") == 0, checked) << base;
    }
    EXPECT_NE(row.find("<td><b>9</b></td>"), std::string::npos);
}

// --- test save ---------------------------------------------------------------------------

struct TestSave {
    const char *name;
    const char *form;
    bool accepted;
};

class TestSaveRules : public ::testing::TestWithParam<TestSave> {};

TEST_P(TestSaveRules, ChannelCountIsTakenInEightBits)
{
    TempRoot root;
    copyDemo(root);
    CgiResult r = runPost(root, "command=22&sufijo=." + kUnit021 + "&" + GetParam().form);
    expectCleanRun(r);
    const bool accepted = GetParam().accepted;
    EXPECT_EQ(r.body().find(kInvalidData) == std::string::npos, accepted) << r.body();
    EXPECT_EQ(root.exists("config/fileschanged.list"), accepted);
    const char *stored = accepted ? "1" : "0";
    EXPECT_EQ(value(root, kFile021, "/ENCODERCONFIG/TEST/RESET"), stored);
    EXPECT_EQ(value(root, kFile021, "/ENCODERCONFIG/TEST/FACTORY"), stored);
    EXPECT_EQ(value(root, kFile021, "/ENCODERCONFIG/TEST/LED"), stored);
    EXPECT_EQ(value(root, kFile021, "/ENCODERCONFIG/TEST/EAS"), stored);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, TestSaveRules,
    ::testing::Values(TestSave{"One", "numcanales=1&teas=1&treset=1&tfab=1&tled=1", true},
                      TestSave{"Nine", "numcanales=9&teas=1&treset=1&tfab=1&tled=1", true},
                      TestSave{"TwoHundredFiftySevenIsOne", "numcanales=257&teas=1&treset=1&tfab=1&tled=1", true},
                      TestSave{"Zero", "numcanales=0&teas=1&treset=1&tfab=1&tled=1", false},
                      TestSave{"Ten", "numcanales=10&teas=1&treset=1&tfab=1&tled=1", false},
                      TestSave{"TwoHundredFiftySixIsZero", "numcanales=256&teas=1&treset=1&tfab=1&tled=1", false},
                      TestSave{"NotANumber", "numcanales=abc&teas=1&treset=1&tfab=1&tled=1", false},
                      TestSave{"NoChannelCount", "teas=1&treset=1&tfab=1&tled=1", false},
                      TestSave{"NoReset", "numcanales=2&teas=1&tfab=1&tled=1", false},
                      TestSave{"NoFactory", "numcanales=2&teas=1&treset=1&tled=1", false},
                      TestSave{"EmptyLed", "numcanales=2&teas=1&treset=1&tfab=1&tled=", false}),
    [](const auto &info) { return std::string(info.param.name); });

struct EasSave {
    const char *name;
    const char *before;
    const char *teas;  // the teas pair, or ""
    const char *after;
};

class TestSaveEas : public ::testing::TestWithParam<EasSave> {};

TEST_P(TestSaveEas, EasIsWrittenOnlyWhenSent)
{
    TempRoot root;
    copyDemo(root);
    UnitDoc unit;
    unit.eas = GetParam().before;
    writeUnit(root, "010.000.000.061", unit);
    CgiResult r = runPost(root, std::string("command=22&sufijo=.010.000.000.061&numcanales=2&treset=1&tfab=0&tled=1") +
                                    GetParam().teas);
    expectCleanRun(r);
    const std::string file = "config/network.010.000.000.061.xml";
    EXPECT_EQ(value(root, file, "/ENCODERCONFIG/TEST/EAS"), GetParam().after);
    EXPECT_EQ(value(root, file, "/ENCODERCONFIG/TEST/RESET"), "1");
    EXPECT_EQ(value(root, file, "/ENCODERCONFIG/TEST/FACTORY"), "0");
    EXPECT_EQ(value(root, file, "/ENCODERCONFIG/TEST/LED"), "1");
    EXPECT_EQ(root.read("config/fileschanged.list"), "network.010.000.000.061\n");
}

INSTANTIATE_TEST_SUITE_P(Cases, TestSaveEas,
                         ::testing::Values(EasSave{"AbsentKeepsOn", "1", "", "1"},
                                           EasSave{"AbsentKeepsOff", "0", "", "0"},
                                           EasSave{"ZeroSwitchesOff", "1", "&teas=0", "0"},
                                           EasSave{"OneSwitchesOn", "0", "&teas=1", "1"}),
                         [](const auto &info) { return std::string(info.param.name); });

// --- escaping of document values --------------------------------------------------------

const std::string kHostile = "\"><script>alert(1)</script>";
const std::string kHostileHtml = "&quot;&gt;&lt;script&gt;alert(1)&lt;/script&gt;";

struct Hostile {
    const char *name;
    const char *query;
    bool master;
    std::size_t shown;  // how often the unit's values appear on the page
};

class HostileValues : public ::testing::TestWithParam<Hostile> {};

TEST_P(HostileValues, ReachThePageOnlyEscaped)
{
    TempRoot root;
    copyDemo(root);
    UnitDoc unit;
    unit.id = unit.orden = unit.mac = unit.serial = kHostile;
    unit.tipo = GetParam().master ? "710109" : "710105";
    writeUnit(root, GetParam().master ? "" : "010.000.000.061", unit);
    const std::string body = page(root, GetParam().query);
    EXPECT_EQ(body.find("<script"), std::string::npos) << body;
    EXPECT_EQ(countOf(body, kHostileHtml), GetParam().shown) << body;
    EXPECT_EQ(countOf(body, "alert(1)"), GetParam().shown);
}

// Network: id, MAC, order input and its twin. Test: order. List: order, id, serial.
INSTANTIATE_TEST_SUITE_P(Pages, HostileValues,
                         ::testing::Values(Hostile{"NetworkUnit", "command=3", false, 4},
                                           Hostile{"NetworkMaster", "command=3", true, 4},
                                           Hostile{"TestUnit", "command=14", false, 1},
                                           Hostile{"TestMaster", "command=14", true, 1},
                                           Hostile{"ListMaster", "command=15", true, 3},
                                           Hostile{"ListForTestsUnit", "command=16", false, 3},
                                           Hostile{"ListForTestsMaster", "command=16", true, 3}),
                         [](const auto &info) { return std::string(info.param.name); });

TEST(HostileValues, MastersBoldCellsWrapTheEscapedValue)
{
    TempRoot root;
    copyDemo(root);
    UnitDoc unit;
    unit.id = kHostile;
    unit.tipo = "710109";
    writeUnit(root, "", unit);
    const std::string row = rowWith(page(root, "command=15"), "name=\"forzarconfig\"");
    EXPECT_NE(row.find("<td><strong><b>" + kHostileHtml + "</b></strong></td>"), std::string::npos) << row;
}

}  // namespace
