// The operations on one unit through the real cambioIP.cgi on the demo rack: the service
// list of an IP input (commands 29 and 30) and the advanced configuration page and its
// store (commands 24 and 25), checked on the page and on the files afterwards.
#include "e2e/rack.h"
#include "support/xml_read.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace cambioip_test;

namespace {

const std::string kQam = "010.000.000.021";    // 710105, QAM, no IP port
const std::string kCofdmFile = "config/network.010.000.000.031.xml";
const std::string kQamFile = "config/network.010.000.000.021.xml";
const std::string kWrong = "WRONG INPUT SELECTED OR THIS UNIT HAS NO IP INPUT";
const std::string kSaving =
    "<br><h2><center><strong> ERROR! Saving data.<br> please retry operation in a few seconds.</strong></center></h2>\n";

class UnitOperations : public ::testing::Test {
  protected:
    void SetUp() override { copyDemo(root_); }
    std::string body(const std::string &query) const
    {
        CgiResult r = runGet(root_, query);
        expectCleanRun(r);
        return r.body();
    }
    std::string value(const std::string &file, const std::string &xpath) const
    {
        return xmlText(root_.path() / file, xpath).value_or("<missing>");
    }
    std::string service(int input, int svc, const std::string &leaf) const
    {
        return value(kCofdmFile, "/ENCODERCONFIG/SERVICIOSIP/INPUT" + std::to_string(input) + "/ISER" +
                                     std::to_string(svc) + "/" + leaf);
    }
    TempRoot root_;
};

// --- the service list ---------------------------------------------------------------------

struct ListCase {
    const char *query;
    int rows;  // service rows, or -1 for the wrong-input block
    bool buttons;
};
void PrintTo(const ListCase &c, std::ostream *os) { *os << c.query; }
class ServiceList : public UnitOperations, public ::testing::WithParamInterface<ListCase> {};

TEST_P(ServiceList, ShowsTheServicesOfAnExistingInputOnly)
{
    const std::string page = body(GetParam().query);
    EXPECT_EQ(page.find(kWrong) != std::string::npos, GetParam().rows < 0) << page;
    EXPECT_EQ(countOf(page, "onclick='SelectServiceList(this);'"), GetParam().rows < 0 ? 0u : std::size_t(GetParam().rows));
    EXPECT_EQ(page.find("Store Changes</button>") != std::string::npos, GetParam().buttons);
    EXPECT_TRUE(page.starts_with(kOpen + "<div id=\"listaservicios\"")) << page;
    EXPECT_TRUE(page.ends_with("</div>\n" + kClose));
}

INSTANTIATE_TEST_SUITE_P(
    Inputs, ServiceList,
    ::testing::Values(ListCase{"command=29&sufijo=010.000.000.031&entip=1", 3, true},
                      ListCase{"command=29&sufijo=010.000.000.031&entip=2", 2, true},
                      ListCase{"command=29&sufijo=010.000.000.031&entip=0", -1, true},
                      ListCase{"command=29&sufijo=010.000.000.031&entip=3", -1, true},
                      ListCase{"command=29&sufijo=010.000.000.031", -1, true},
                      ListCase{"command=29&sufijo=010.000.000.021&entip=1", -1, false},
                      ListCase{"command=29&sufijo=010.000.000.099&entip=1", -1, false}));

TEST_F(UnitOperations, ServiceRowsCarryTheDocumentValuesAndBitratesUpToTheStatusCount)
{
    // The unit reports only two services of input 1, and no free bitrate.
    editFile(root_, "config/sondeo.010.000.000.031.xml", "<NUM>3</NUM>", "<NUM>2</NUM>");
    editFile(root_, "config/sondeo.010.000.000.031.xml", "<BITRATEFREE>6.25</BITRATEFREE>", "");
    const std::string page = body("command=29&sufijo=010.000.000.031&entip=1&total=4");
    EXPECT_NE(page.find("<div id=\"lsnumserv\" class=\"fondotranslucido\">3</div>"
                        "<div id=\"entip\" class=\"fondotranslucido\">1</div>"),
              std::string::npos);
    EXPECT_NE(page.find("<div id=\"total\" class=\"fondotranslucido\">4</div>"), std::string::npos);
    EXPECT_NE(page.find("<div id=\"haysalidaip_tot\" class=\"fondotranslucido\">1</div>"), std::string::npos);
    EXPECT_NE(page.find(">INPUT 1 SERVICE LIST<"), std::string::npos);
    EXPECT_EQ(rowWith(page, "slselect-2"),
              "<tr><td  style='width:77px'><input name=\"slselect-2\" id=\"slselect-2\" type=\"checkbox\"  "
              "checked=\"yes\"   onclick='SelectServiceList(this);'></td><td  style='width:231px'><div "
              "id=\"cnam-2\">SPORTS HD</div><div id=\"cnamOUT-2\" class=\"fondotranslucido\">SPORTS</div></td><td  "
              "style='width:104px' ><div id=\"svcid-2\">1102</div><div id=\"svcidOUT-2\" "
              "class=\"fondotranslucido\">412</div></td><td style='width:103px'>7.48/9.80<div "
              "id=\"servbitrate-2\" class=\"fondotranslucido\">7.48</div></td></tr>");
    const std::string third = rowWith(page, "slselect-3");
    EXPECT_NE(third.find("type=\"checkbox\"   onclick"), std::string::npos) << "service 3 is not selected";
    EXPECT_NE(third.find("<td style='width:103px'>--<div id=\"servbitrate-3\" class=\"fondotranslucido\">--</div>"),
              std::string::npos)
        << third;
    EXPECT_NE(page.find("Free Output Bitrate:</b>&nbsp;<span id=\"bitratelibre\">--</span>"), std::string::npos);
}

TEST_F(UnitOperations, DocumentAndRequestValuesAreEscaped)
{
    editFile(root_, kCofdmFile, "<NOMBRE>NEWS 24</NOMBRE>", "<NOMBRE>A&amp;B &lt;i&gt; \"x\" 'y'</NOMBRE>");
    editFile(root_, "config/sondeo.010.000.000.031.xml", "<IDUNIT>ENC-HEAD-04</IDUNIT>", "<IDUNIT>&lt;b&gt;</IDUNIT>");
    const std::string list = body("command=29&sufijo=010.000.000.031&entip=1&total=%3Cs%3E");
    EXPECT_NE(list.find("<div id=\"cnam-1\">A&amp;B &lt;i&gt; &quot;x&quot; &#39;y&#39;</div>"), std::string::npos);
    EXPECT_NE(list.find("<div id=\"total\" class=\"fondotranslucido\">&lt;s&gt;</div>"), std::string::npos);
    const std::string unknown = body("command=29&sufijo=%22%3E%3Cx&entip=1");
    EXPECT_NE(unknown.find("<div id=\"idunit_tot\" class=\"fondotranslucido\">&quot;&gt;&lt;x</div>"),
              std::string::npos);
    EXPECT_NE(body("command=24&sufijo=010.000.000.031").find("FOR THE UNIT ID &lt;b&gt;</th>"), std::string::npos);
}

TEST_F(UnitOperations, ServiceNameThatFillsTheReadIsShownWhole)
{
    // The store copies a name of exactly 50 bytes without a terminator.
    const std::string name(50, 'N');
    editFile(root_, kCofdmFile, "<NOMBRE>NEWS 24</NOMBRE>", "<NOMBRE>" + name + "</NOMBRE>");
    const std::string list = body("command=29&sufijo=010.000.000.031&entip=1");
    EXPECT_NE(list.find("<div id=\"cnam-1\">" + name + "</div>"), std::string::npos) << list;
}

TEST_F(UnitOperations, StoringTheListWritesOnlyTheListedServices)
{
    // Service 3 is beyond lsnumserv: its pairs are ignored. "A&B" comes back byte for byte.
    CgiResult r = runPost(root_, "command=30&sufijo=010.000.000.031&entip=1&lsnumserv=2"
                                 "&slselect=1_0_2_0_3_1&cnamOUT=1_A%26B_3_GONE&svcidOUT=2_99_3_77");
    expectCleanRun(r);
    EXPECT_EQ(r.body(), kOpen + kClose);
    EXPECT_EQ(service(1, 1, "SEL"), "0");
    EXPECT_EQ(service(1, 2, "SEL"), "0");
    EXPECT_EQ(service(1, 3, "SEL"), "0");
    EXPECT_EQ(service(1, 1, "NOMBREOUT"), "A&B");
    EXPECT_EQ(service(1, 3, "NOMBREOUT"), "KIDS TV");
    EXPECT_EQ(service(1, 2, "SERVICEIDOUT"), "99");
    EXPECT_EQ(service(1, 3, "SERVICEIDOUT"), "1103");
    EXPECT_EQ(service(2, 1, "SEL"), "1");
    EXPECT_EQ(value(kCofdmFile, "/ENCODERCONFIG/CAMBIOSWEB"), "1");
    // The list is sent with the unit's next "Apply Selected", not now.
    EXPECT_FALSE(root_.exists("config/fileschanged.list"));
    EXPECT_FALSE(root_.exists("config/command.msg"));
}

struct BadStore {
    const char *body;
    const std::string *error;
};
void PrintTo(const BadStore &c, std::ostream *os) { *os << c.body; }
class BadListStore : public UnitOperations, public ::testing::WithParamInterface<BadStore> {};

TEST_P(BadListStore, ShowsTheErrorAndLeavesTheDocument)
{
    const std::string before = root_.read(kCofdmFile);
    CgiResult r = runPost(root_, GetParam().body);
    expectCleanRun(r);
    EXPECT_EQ(r.body(), kOpen + *GetParam().error + kClose);
    EXPECT_EQ(root_.read(kCofdmFile), before);
}

INSTANTIATE_TEST_SUITE_P(
    Errors, BadListStore,
    ::testing::Values(
        BadStore{"command=30&sufijo=010.000.000.031&entip=1&lsnumserv=3&slselect=1_0&cnamOUT=1_X", &kInvalidData},
        BadStore{"command=30&sufijo=010.000.000.031&entip=0&lsnumserv=3&slselect=1_0&cnamOUT=1_X&svcidOUT=1_1",
                 &kInvalidData},
        BadStore{"command=30&sufijo=010.000.000.099&entip=1&lsnumserv=3&slselect=1_0&cnamOUT=1_X&svcidOUT=1_1",
                 &kSaving}));

// --- the advanced page --------------------------------------------------------------------

struct Advanced {
    const char *sufijo;
    const char *input;  // a column header only this input layout has or lacks
    bool inputHasIt;
    bool testHasEas;
};
void PrintTo(const Advanced &c, std::ostream *os) { *os << (*c.sufijo != '\0' ? c.sufijo : "master"); }
class AdvancedPage : public UnitOperations, public ::testing::WithParamInterface<Advanced> {};

TEST_P(AdvancedPage, ShowsEverySectionOfTheFamilyInOrder)
{
    const std::string page = body(std::string("command=24&sufijo=") + GetParam().sufijo);
    EXPECT_EQ(page.find("ERROR!"), std::string::npos) << page;
    std::size_t at = page.find(">ADVANCED CONFIGURATION FOR THE UNIT ID ");
    for (const char *section : {"Unit Status:", "Input Configuration:", "Transport Configuration:",
                                "Output Configuration:", "IP input/output:", "Network Configuration:", "Test Options:"}) {
        const std::size_t next = page.find(section);
        ASSERT_NE(next, std::string::npos) << section;
        EXPECT_GT(next, at) << section << " out of order";
        at = next;
    }
    const std::string input = page.substr(page.find("Input Configuration:"));
    EXPECT_EQ(input.substr(0, input.find("</tr>", input.find("</tr>") + 5)).find(GetParam().input) != std::string::npos,
              GetParam().inputHasIt);
    const std::string test = page.substr(page.find("Test Options:"));
    EXPECT_EQ(test.find("<th class='cabeceraTabla'>EAS</th>") != std::string::npos, GetParam().testHasEas);
    EXPECT_NE(page.find("name=\"networkipdir_tot\""), std::string::npos);
    EXPECT_TRUE(page.ends_with("</div>\n" + kClose));
}

// The COFDM case needs the COFDM module in the COFDM slots of the page tables.
INSTANTIATE_TEST_SUITE_P(Families, AdvancedPage,
                         ::testing::Values(Advanced{"010.000.000.021", "Closed Caption", true, true},
                                           Advanced{"", "Closed Caption", true, true},
                                           Advanced{"010.000.000.031", "Audio Codec", false, false}));

// --- storing the advanced page ------------------------------------------------------------

const std::string kNet = "networkipdir=10.0.0.121&networkmask=255.255.0.0&gateway=10.0.0.254&dhcp=0&numcanales=2";
const std::string kInput = "eon=1_1_2_0&vidinp=1_0_2_0&vidcod=1_0_2_0&audcod=1_0_2_0&audinp=1_0_2_0&audlev=1_5_2_5"
                           "&ccon=1_0_2_0&vidbit=1_4_2_4&audbit=1_2_2_2&asprat=1_1_2_1&gop=1_1_2_1&maxoutres=1_0_2_0"
                           "&ffencod=1_0_2_0";
const std::string kTs = "tsid=77&cnam=1_CH1_2_CH2&svpid=1_100_2_200&sapid=1_101_2_201&mchn=1_1_2_1&chnm=1_1_2_2"
                        "&svcid=1_11_2_12";
const std::string kOut = "outtab=1&outchn=5&outbau=5.360&outout=0&outint=0&outmod=0&outlev=3&outrfl=1";
const std::string kTest = "treset=1&tfab=0&tled=1&teas=0";
const std::string kIp = "nentip=2&iptype=0&ipen=1_1_2_1&outputIP=1_226.1.0.9_2_226.1.0.8&outputport=1_5009_2_5008"
                        "&ippackets=1_7_2_7&ipproto=1_0_2_0&iptxrx=2&haysalidaip=1";

struct Store {
    const char *name;
    std::string sufijo;
    std::string record;
    std::string file;
    const char *said;       // the end of the answer
    const char *queue;      // fileschanged.list afterwards, or nullptr when absent
    bool command;           // command.msg holds '2'
    const char *errorLine;  // the "Error Storing" line after the error page, or nullptr
    const char *txrx;       // SALIDAIP/TXRX afterwards: stored only for a model with an IP port
};
void PrintTo(const Store &c, std::ostream *os) { *os << c.name; }
class AdvancedStore : public UnitOperations, public ::testing::WithParamInterface<Store> {};

TEST_P(AdvancedStore, StoresEverySectionAndQueuesOnlyWhenAsked)
{
    const Store &c = GetParam();
    CgiResult r = runPost(root_, "command=25&sufijo=" + c.sufijo + "&" + kNet + "&" + c.record);
    expectCleanRun(r);
    const std::string page = r.body();
    EXPECT_NE(page.find("Processing data for unit with ip 10.0.0.121, model "), std::string::npos) << page;
    EXPECT_TRUE(page.ends_with(std::string(c.said) + kClose)) << page;
    if (c.errorLine == nullptr) {
        EXPECT_EQ(page.find("Error Storing"), std::string::npos) << page;
    } else {
        EXPECT_NE(page.find(kInvalidData + c.errorLine), std::string::npos) << page;
    }
    EXPECT_EQ(root_.exists("config/fileschanged.list") ? root_.read("config/fileschanged.list") : "<none>",
              c.queue != nullptr ? c.queue : "<none>");
    EXPECT_EQ(root_.exists("config/command.msg") ? root_.read("config/command.msg") : "<none>", c.command ? "2" : "<none>");
    EXPECT_EQ(value(c.file, "/ENCODERCONFIG/NETWORK/IP_ADDRESS"), "10.0.0.121");
    EXPECT_EQ(value(c.file, "/ENCODERCONFIG/NETWORK/IP_GW"), "10.0.0.254");
    EXPECT_EQ(value(c.file, "/ENCODERCONFIG/CAMBIOSWEB"), "1");
    EXPECT_EQ(value(c.file, "/ENCODERCONFIG/ENTRADA1/AUDIOLEVEL"), "5");
    EXPECT_EQ(value(c.file, "/ENCODERCONFIG/SALIDATS/TSID"), "77");
    EXPECT_EQ(value(c.file, "/ENCODERCONFIG/TEST/RESET"), "1");
    EXPECT_EQ(value(c.file, "/ENCODERCONFIG/SALIDAIP/TXRX"), c.txrx);
}

INSTANTIATE_TEST_SUITE_P(
    Units, AdvancedStore,
    ::testing::Values(
        Store{"StoreOnly", kQam, kInput + "&" + kTs + "&" + kOut + "&" + kTest + "&" + kIp + "&cfgtotenviar=0", kQamFile,
              "Config stored (IP: 10.0.0.121, model 710105  - Enc 2 CMP+HDMI)<br>\n", nullptr, false, nullptr, "0"},
        Store{"SendUnit", kQam, kInput + "&" + kTs + "&" + kOut + "&" + kTest + "&" + kIp + "&cfgtotenviar=1", kQamFile,
              "Unit with ip 10.0.0.121 added to the queue...<br>\n", "network.010.000.000.021\n", false, nullptr, "0"},
        Store{"SendMaster", "", kInput + "&" + kTs + "&" + kOut + "&" + kTest + "&" + kIp + "&cfgtotenviar=1",
              "config/network.xml", "Config Sent (IP: 10.0.0.121, model 710109  - Enc 2 CMP+HDMI+IP EAS)<br>\n",
              nullptr, true, nullptr, "2"},
        Store{"FailingSectionKeepsTheOthers", kQam, kInput + "&" + kTs + "&" + kTest + "&cfgtotenviar=1", kQamFile,
              "added to the queue...<br>\n", "network.010.000.000.021\n", false, "Error Storing Output config<br>\n",
              "0"}));

TEST_F(UnitOperations, AdvancedStoreShowsAnAddressThatFillsTheReadWhole)
{
    // The address is read back from the document; the store copies one of exactly 300 bytes
    // without a terminator.
    const std::string address(300, 'B');
    CgiResult r = runPost(root_, "command=25&sufijo=" + kQam + "&networkipdir=" + address +
                                     "&networkmask=255.255.0.0&gateway=10.0.0.254&dhcp=0&numcanales=2&" + kInput +
                                     "&" + kTs + "&" + kOut + "&" + kTest + "&cfgtotenviar=0");
    expectCleanRun(r);
    const std::string model = ", model 710105  - Enc 2 CMP+HDMI";
    EXPECT_NE(r.body().find("Processing data for unit with ip " + address + model + "<br>\n"), std::string::npos)
        << r.body();
    EXPECT_TRUE(r.body().ends_with("Config stored (IP: " + address + model + ")<br>\n" + kClose)) << r.body();
}

TEST_F(UnitOperations, AdvancedStoreWithoutTheNetworkSettingsWritesNothing)
{
    const std::string before = root_.read(kQamFile);
    CgiResult r = runPost(root_, "command=25&sufijo=" + kQam + "&networkmask=255.0.0.0&gateway=1.1.1.1&dhcp=0"
                                 "&numcanales=2&cfgtotenviar=1&" + kTest);
    expectCleanRun(r);
    EXPECT_EQ(r.body(), kOpen + kInvalidData + kClose);
    EXPECT_EQ(root_.read(kQamFile), before);
    EXPECT_FALSE(root_.exists("config/fileschanged.list"));
}

}  // namespace
