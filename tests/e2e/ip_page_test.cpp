// The IP input/output page (command 17) and its save (command 28) through the real
// cambioIP.cgi on the demo rack: layouts, default addresses and ports, the line and enabling
// rules, escaping, and saves checked on every element of the document afterwards.
#include "e2e/rack.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <map>
#include <ostream>
#include <memory>

using namespace cambioip_test;

namespace {

const std::string kMaster = "config/network.xml";
const std::string kUnitIn = "config/network.010.000.000.031.xml";   // COFDM, IP input
const std::string kUnitNoIp = "config/network.010.000.000.021.xml"; // QAM, no IP port

std::string page(const TempRoot &root)
{
    CgiResult r = runGet(root, "command=17");
    expectCleanRun(r);
    return r.body();
}

// The whole start tag of the element with this id ("" when absent).
std::string tagWithId(const std::string &body, const std::string &id)
{
    const auto at = body.find("id=\"" + id + "\"");
    if (at == std::string::npos)
        return {};
    const auto start = body.rfind('<', at);
    return body.substr(start, body.find('>', at) + 1 - start);
}

std::string attr(const std::string &tag, const std::string &name)
{
    const auto at = tag.find(" " + name + "=\"");
    if (at == std::string::npos)
        return "<none>";
    const auto from = at + name.size() + 3;
    return tag.substr(from, tag.find('"', from) - from);
}

// Every leaf element of a document by its path, with its text.
using Leaves = std::map<std::string, std::string>;
void collect(xmlNodePtr node, const std::string &path, Leaves &out)
{
    for (xmlNodePtr child = node->children; child != nullptr; child = child->next) {
        if (child->type != XML_ELEMENT_NODE)
            continue;
        const std::string p = path + "/" + reinterpret_cast<const char *>(child->name);
        bool inner = false;
        for (xmlNodePtr g = child->children; g != nullptr; g = g->next)
            inner |= g->type == XML_ELEMENT_NODE;
        if (inner) {
            collect(child, p, out);
            continue;
        }
        std::unique_ptr<xmlChar, void (*)(void *)> text(xmlNodeGetContent(child), xmlFree);
        out[p] = text ? reinterpret_cast<const char *>(text.get()) : "";
    }
}
Leaves leaves(const TempRoot &root, const std::string &file)
{
    Leaves out;
    std::unique_ptr<xmlDoc, void (*)(xmlDocPtr)> doc(xmlReadFile((root.path() / file).c_str(), nullptr, 0), xmlFreeDoc);
    if (xmlNodePtr top = doc ? xmlDocGetRootElement(doc.get()) : nullptr)
        collect(top, "/" + std::string(reinterpret_cast<const char *>(top->name)), out);
    return out;
}

// --- the page ---------------------------------------------------------------------------

struct Layout {
    const char *masterType;
    bool us;
    const char *unitRowNeedle;  // a unit of the master's family, not the master
};
void PrintTo(const Layout &p, std::ostream *os) { *os << p.masterType; }
class IpPageLayout : public ::testing::TestWithParam<Layout> {};

TEST_P(IpPageLayout, ColumnsOfEveryRowMatchTheHeader)
{
    TempRoot root;
    copyDemo(root);
    setMasterType(root, GetParam().masterType);
    const std::string body = page(root);
    const std::vector<std::string> rows = tableRows(body);
    ASSERT_EQ(rows.size(), 5u) << body;  // header, three units, last row
    const std::size_t columns = GetParam().us ? 14 : 13;
    EXPECT_EQ(countOf(rows.front(), "<th "), columns);
    for (std::size_t i = 1; i < rows.size(); ++i)
        EXPECT_EQ(countOf(rows[i], "<td") + countOf(rows[i], "colspan='2'"), columns) << rows[i];
    EXPECT_EQ(rows.front().find(">Standard<") != std::string::npos, GetParam().us);
    EXPECT_EQ(body.find("scanstd") != std::string::npos, GetParam().us);
    EXPECT_NE(rows.front().find("Ordenatabla(1,0);'>Model&nbsp;<img src='/imagenes/Flecha.png'"), std::string::npos);
    EXPECT_NE(rows.front().find("<th class='cabeceraTabla' style='display:none'>FEC Annex</th>"), std::string::npos);
    EXPECT_NE(rowWith(body, GetParam().unitRowNeedle), "");
    // The rows offer SPTS as 0; the last row offers the types the other way round.
    EXPECT_NE(rowWith(body, "iptype\"").find("<option value=\"0\" selected=\"selected\" >SPTS</option>"
                                           "<option value=\"1\"  >MPTS</option>"),
              std::string::npos);
    EXPECT_NE(rows.back().find("<option value=\"0\"  >MPTS</option><option value=\"1\"  >SPTS</option>"
                               "<option value=\"99\" selected=\"selected\" >Select</option>"),
              std::string::npos);
    EXPECT_NE(rows.back().find(allUnitsCaption(3)), std::string::npos);
    EXPECT_TRUE(body.ends_with("</td></tr></tbody></table>" + kClose));
}

INSTANTIATE_TEST_SUITE_P(Families, IpPageLayout,
                         ::testing::Values(Layout{"710109", true, "010_000_000_022"},
                                           Layout{"710205", false, "010_000_000_032"}));

// The IP and Port boxes of line 1 (or 2) of the master after editing its document.
struct Defaults {
    const char *name;
    std::vector<std::pair<std::string, std::string>> edits;
    int line;
    const char *ip;
    const char *port;
};
void PrintTo(const Defaults &p, std::ostream *os) { *os << p.name; }
class IpPageDefaults : public ::testing::TestWithParam<Defaults> {};

TEST_P(IpPageDefaults, ShowStoredOrDirectionDefault)
{
    TempRoot root;
    copyDemo(root);
    for (const auto &[from, to] : GetParam().edits)
        editFile(root, kMaster, from, to);
    const std::string body = page(root);
    const std::string n = std::to_string(GetParam().line);
    EXPECT_EQ(attr(tagWithId(body, "outputIP" + n), "value"), GetParam().ip);
    EXPECT_EQ(attr(tagWithId(body, "outputport" + n), "value"), GetParam().port);
    EXPECT_EQ(attr(tagWithId(body, "anterioroutputport" + n), "value"), GetParam().port);
}

const std::string kDest1 = "<IPDEST>239.10.10.1</IPDEST>";
const std::string kPort1 = "<PUERTO>5001</PUERTO>";
const std::string kSrc1 = "<IPORIG>0.0.0.0</IPORIG>\n      <PUERTOORIGEN>6001</PUERTOORIGEN>\n      <PKTES>7</PKTES>\n      <PROTOCOL>0";
INSTANTIATE_TEST_SUITE_P(
    Modes, IpPageDefaults,
    ::testing::Values(
        Defaults{"OutputMissing", {{kDest1, ""}, {kPort1, ""}}, 1, "226.1.0.2", "5001"},
        Defaults{"OutputPort80", {{kDest1, "<IPDEST>0.0.0.0</IPDEST>"}, {kPort1, "<PUERTO>80</PUERTO>"}}, 1,
                 "226.1.0.2", "5001"},
        Defaults{"OutputLowestPort", {{kPort1, "<PUERTO>1025</PUERTO>"}}, 1, "239.10.10.1", "1025"},
        Defaults{"OutputPortTooHigh", {{"<PUERTO>5002</PUERTO>", "<PUERTO>65536</PUERTO>"}}, 2, "239.10.10.2", "5002"},
        Defaults{"InputMissing", {{"<TXRX>1</TXRX>", "<TXRX>2</TXRX>"}, {kSrc1, "<PKTES>7</PKTES>\n      <PROTOCOL>0"}}, 1,
                 "226.1.1.2", "6001"},
        Defaults{"InputStored",
                 {{"<TXRX>1</TXRX>", "<TXRX>2</TXRX>"},
                  {kSrc1, "<IPORIG>239.30.0.1</IPORIG><PUERTOORIGEN>7777</PUERTOORIGEN><PKTES>7</PKTES><PROTOCOL>0"}},
                 1, "239.30.0.1", "7777"},
        Defaults{"DisabledKeepsStored",
                 {{"<TXRX>1</TXRX>", "<TXRX>0</TXRX>"}, {kDest1, "<IPDEST>0.0.0.0</IPDEST>"}, {kPort1, "<PUERTO>80</PUERTO>"}},
                 1, "0.0.0.0", "80"}),
    [](const auto &info) { return std::string(info.param.name); });

// Which lines get an enable box, which are ticked, which are disabled.
struct Lines {
    const char *name;
    std::vector<std::pair<std::string, std::string>> edits;
    const char *boxes;     // per line: 'x' ticked box, 'o' empty box, '-' no box
    const char *disabled;  // per line: 'd' when the address box is disabled
};
void PrintTo(const Lines &p, std::ostream *os) { *os << p.name; }
class IpPageLines : public ::testing::TestWithParam<Lines> {};

TEST_P(IpPageLines, FollowModeTypeAndEntryCount)
{
    TempRoot root;
    copyDemo(root);
    for (const auto &[from, to] : GetParam().edits)
        editFile(root, kMaster, from, to);
    const std::string body = page(root);
    const std::string boxes = GetParam().boxes;
    for (std::size_t i = 0; i <= boxes.size(); ++i) {
        const std::string n = std::to_string(i + 1);
        const std::string box = tagWithId(body, "ipen" + n);
        const std::string ip = tagWithId(body, "outputIP" + n);
        if (i == boxes.size()) {  // one line past the last: nothing painted
            EXPECT_EQ(ip, "") << n;
            continue;
        }
        EXPECT_EQ(box.empty() ? '-' : box.find("checked") != std::string::npos ? 'x' : 'o', boxes[i]) << n;
        EXPECT_EQ(ip.find(" disabled ") != std::string::npos ? 'd' : '.', GetParam().disabled[i]) << n << ip;
        EXPECT_EQ(tagWithId(body, "serv" + n).find(" disabled") != std::string::npos, GetParam().disabled[i] == 'd');
    }
    EXPECT_EQ(tagWithId(body, "iptype").find(" disabled") != std::string::npos,
              std::string(GetParam().name) == "InputFewerEntries");
}

const std::pair<std::string, std::string> kInput = {"<TXRX>1</TXRX>", "<TXRX>2</TXRX>"};
INSTANTIATE_TEST_SUITE_P(
    Rules, IpPageLines,
    ::testing::Values(
        Lines{"OutputSpts", {}, "xx", ".."},
        Lines{"OutputOneLineOff", {{"<ENABLED>1</ENABLED>\n      <IPDEST>239.10.10.2", "<ENABLED>0</ENABLED><IPDEST>239.10.10.2"}}, "xo", ".d"},
        Lines{"OutputMptsSingleStream", {{"<TIPO>0</TIPO>", "<TIPO>1</TIPO>"}}, "oo", "dd"},
        Lines{"OutputMoreEntries", {{"<NUMINP>2</NUMINP>", "<NUMINP>3</NUMINP>"}}, "xx-", "..d"},
        Lines{"InputFewerEntries", {kInput, {"<NUMINP>2</NUMINP>", "<NUMINP>1</NUMINP>"}}, "x-", ".d"},
        Lines{"Disabled", {{"<TXRX>1</TXRX>", "<TXRX>0</TXRX>"}}, "--", "dd"}),
    [](const auto &info) { return std::string(info.param.name); });

TEST(IpPage, HiddenFieldsCarryBothDirections)
{
    TempRoot root;
    copyDemo(root);
    const std::string body = page(root);
    const std::map<std::string, std::string> expected = {
        {"sourceIP1", "226.1.1.2"}, {"sourceport1", "6001"},      {"destIP1", "239.10.10.1"},
        {"destport2", "5002"},      {"nentip", "2"},              {"anteriorhaysalidaip", "1"},
        {"eon2", "1"},              {"tipounidad", "0"},          {"anteriornumcanales", "2"},
        {"eon1_010_000_000_022", "1"}, {"anteriorhaysalidaip_010_000_000_021", "0"}};
    for (const auto &[id, value] : expected)
        EXPECT_EQ(attr(tagWithId(body, id), "value"), value) << id;
    // A unit without an IP port keeps its IP cells empty.
    EXPECT_EQ(tagWithId(body, "iptxrx_010_000_000_021"), "");
    EXPECT_EQ(tagWithId(body, "outputIP1_010_000_000_021"), "");
}

TEST(IpPage, DocumentValuesAreEscaped)
{
    TempRoot root;
    copyDemo(root);
    editFile(root, kMaster, "<ORDEN>1</ORDEN>", "<ORDEN>&lt;i&gt;1</ORDEN>");
    editFile(root, kMaster, kDest1, "<IPDEST>239.1.1.1\"&gt;&lt;x&gt;</IPDEST>");
    editFile(root, kMaster, "<PUERTOORIGEN>6001</PUERTOORIGEN>", "<PUERTOORIGEN>6001'&amp;</PUERTOORIGEN>");
    const std::string body = page(root);
    EXPECT_NE(body.find("<td><b>&lt;i&gt;1</b></td>"), std::string::npos);
    EXPECT_NE(body.find("value=\"239.1.1.1&quot;&gt;&lt;x&gt;\""), std::string::npos);
    EXPECT_EQ(countOf(body, "value=\"239.1.1.1&quot;&gt;&lt;x&gt;\""), 3u);  // box, twin, destIP1
    EXPECT_NE(body.find("value=\"6001&#39;&amp;\""), std::string::npos);     // sourceport1
    EXPECT_EQ(body.find("<x>"), std::string::npos);
    EXPECT_EQ(body.find("<i>"), std::string::npos);
}

// --- the save ---------------------------------------------------------------------------

const std::string kOut =
    "command=28&sufijo=&numcanales=2&nentip=2&iptype=0&ipen=1_0_2_1_3_1&outputIP=1_239.1.2.3_2_239.1.2.4"
    "&outputport=1_6100_2_6200&ippackets=1_5_2_6&ipproto=1_1_2_0&ipfecen=1_1_2_1&ipfecannex=1_1_2_1&iptxrx=1"
    "&haysalidaip=1&scanstd=1_1_2_1";

struct Save {
    const char *name;
    std::string file;
    std::string record;
    Leaves changes;  // besides CAMBIOSWEB "1"
};
void PrintTo(const Save &p, std::ostream *os) { *os << p.name; }
class IpSave : public ::testing::TestWithParam<Save> {};

TEST_P(IpSave, ChangesExactlyThePostedElements)
{
    TempRoot root;
    copyDemo(root);
    Leaves expected = leaves(root, GetParam().file);
    for (const auto &[path, value] : GetParam().changes) {
        ASSERT_TRUE(expected.count(path)) << path;
        expected[path] = value;
    }
    expected["/ENCODERCONFIG/CAMBIOSWEB"] = "1";
    CgiResult r = runPost(root, GetParam().record);
    expectCleanRun(r);
    EXPECT_NE(r.body().find("Changes saved for ip "), std::string::npos);
    EXPECT_EQ(r.body().find("ERROR"), std::string::npos) << r.body();
    EXPECT_EQ(leaves(root, GetParam().file), expected);
    if (GetParam().file == kMaster)
        EXPECT_EQ(root.read("config/command.msg"), "2");
    else
        EXPECT_EQ(root.read("config/fileschanged.list"), "network.010.000.000.031\n");
}

const std::string kIp = "/ENCODERCONFIG/SALIDAIP/";
INSTANTIATE_TEST_SUITE_P(
    Directions, IpSave,
    ::testing::Values(
        // Line 3 of the lists is beyond nentip: skipped, nothing created.
        Save{"Output", kMaster, kOut,
             {{kIp + "SALIDA1/ENABLED", "0"}, {kIp + "SALIDA1/IPDEST", "239.1.2.3"}, {kIp + "SALIDA2/IPDEST", "239.1.2.4"},
              {kIp + "SALIDA1/PUERTO", "6100"}, {kIp + "SALIDA2/PUERTO", "6200"}, {kIp + "SALIDA1/PKTES", "5"},
              {kIp + "SALIDA2/PKTES", "6"}, {kIp + "SALIDA1/PROTOCOL", "1"}, {kIp + "SALIDA2/PROTOCOL", "0"},
              {kIp + "SALIDA1/ESTANDAR", "1"}, {kIp + "SALIDA2/ESTANDAR", "1"}}},
        Save{"Input", kUnitIn,
             "command=28&sufijo=.010.000.000.031&numcanales=2&nentip=2&iptype=0&ipen=2_0&outputIP=1_239.9.9.9"
             "&outputport=1_7001&ippackets=&ipproto=&ipfecen=&ipfecannex=&iptxrx=2&haysalidaip=1",
             {{kIp + "TIPO", "0"}, {kIp + "SALIDA2/ENABLED", "0"}, {kIp + "SALIDA1/IPORIG", "239.9.9.9"},
              {kIp + "SALIDA1/PUERTOORIGEN", "7001"}}},
        Save{"DisabledStoresNoAddress", kMaster,
             "command=28&numcanales=2&nentip=2&iptype=0&ipen=&outputIP=1_239.9.9.9&outputport=1_7001"
             "&ippackets=2_3&ipproto=&iptxrx=0&haysalidaip=1",
             {{kIp + "TXRX", "0"}, {kIp + "SALIDA2/PKTES", "3"}}}),
    [](const auto &info) { return std::string(info.param.name); });

struct Refused {
    const char *name;
    std::string record;
    std::string message;
};
void PrintTo(const Refused &p, std::ostream *os) { *os << p.name; }
class IpSaveRefused : public ::testing::TestWithParam<Refused> {};

TEST_P(IpSaveRefused, MarksTheDocumentOnlyAndQueuesNothing)
{
    TempRoot root;
    copyDemo(root);
    Leaves expected = leaves(root, kUnitNoIp);
    expected["/ENCODERCONFIG/CAMBIOSWEB"] = "1";
    CgiResult r = runPost(root, "command=28&sufijo=.010.000.000.021&" + GetParam().record);
    expectCleanRun(r);
    EXPECT_EQ(r.body(), kOpen + "Processing data for unit with ip 10.0.0.21, model 710105  - Enc 2 CMP+HDMI<br>\n" +
                            GetParam().message +
                            "Changes saved for ip 10.0.0.21, please wait a few seconds while the unit applies "
                            "them!<br>\n" +
                            kClose);
    EXPECT_EQ(leaves(root, kUnitNoIp), expected);
    EXPECT_FALSE(root.exists("config/fileschanged.list"));
}

const std::string kFull = "numcanales=2&nentip=1&iptype=0&ipen=1_1&outputIP=1_239.1.1.1&outputport=1_6000"
                          "&ippackets=1_7&ipproto=1_0&iptxrx=1";
INSTANTIATE_TEST_SUITE_P(
    Cases, IpSaveRefused,
    ::testing::Values(Refused{"NoIpPort", kFull + "&haysalidaip=0", kNotSupported},
                      Refused{"MissingKey", "numcanales=2&nentip=1&iptype=0&ipen=1_1&outputIP=1_239.1.1.1"
                                            "&outputport=1_6000&ippackets=1_7&iptxrx=1&haysalidaip=1",
                              "BAD data 25.<br>\n" + kInvalidData},
                      Refused{"EmptyMode", kFull + "&haysalidaip=1&iptxrx=", "BAD data 25.<br>\n" + kInvalidData},
                      Refused{"TenInputs", "numcanales=10&" + kFull.substr(13) + "&haysalidaip=1", kInvalidData},
                      Refused{"NoEntries", "numcanales=2&nentip=0&" + kFull.substr(22) + "&haysalidaip=1", kInvalidData}),
    [](const auto &info) { return std::string(info.param.name); });

}  // namespace
