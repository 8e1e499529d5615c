// The output modules' pages and saves through the real cambioIP.cgi over the sample rack:
// quick status, transport and output pages of a QAM and of a COFDM master's rack.
#include "support/cgi_runner.h"
#include "support/xml_read.h"

#include <gtest/gtest.h>

using namespace cambioip_test;

namespace {

const std::string kUnit21 = "config/network.010.000.000.021.xml";
const std::string kInvalid = "ERROR! Invalid Data!.";

// Replaces the first <tag>...</tag> of a document of the root.
void setFirst(const TempRoot &root, const std::string &file, const std::string &tag, const std::string &value)
{
    std::string text = root.read(file);
    size_t open = text.find("<" + tag + ">");
    size_t close = text.find("</" + tag + ">", open);
    ASSERT_NE(open, std::string::npos) << tag;
    open += tag.size() + 2;
    text.replace(open, close - open, value);
    root.write(file, text);
}

class OutputPages : public ::testing::Test {
  protected:
    void SetUp() override { root_.copyConfig(std::string(CAMBIOIP_SOURCE_DIR) + "/demo/root/config"); }
    std::string page(const std::string &query) const
    {
        CgiResult r = runGet(root_, query);
        EXPECT_EQ(r.status, 0);
        return r.body();
    }
    std::string value(const std::string &file, const std::string &xpath) const
    {
        return xmlText(root_.path() / file, xpath).value_or("<missing>");
    }
    // Makes the master a COFDM unit, so that the family pages show the COFDM units.
    void cofdmMaster() const
    {
        setFirst(root_, "config/network.xml", "TIPOUNIDAD", "710205");
        setFirst(root_, "config/sondeo.xml", "TIPOUNIDAD", "710205");
    }
    TempRoot root_;
};

TEST_F(OutputPages, QuickStatusPaintsMissingChannelsAsNotAvailable)
{
    const std::string body = page("command=1");
    // Three QAM units; the two-channel ones end their channel cells with n/a, n/a.
    EXPECT_NE(body.find("<td><strong>n/a</strong>&nbsp</td><td><strong>n/a</strong></td>"), std::string::npos);
    EXPECT_NE(body.find("alt=\"ch4\""), std::string::npos) << "the four-channel unit shows its fourth LED";
    EXPECT_NE(body.find("<b>710109  - Enc 2 CMP+HDMI+IP EAS<br>web connected</b>"), std::string::npos);
    EXPECT_EQ(body.find("710205"), std::string::npos) << "COFDM units are not on a QAM master's page";
}

TEST_F(OutputPages, LedStatesTwelveAndAbovePaintAsOff)
{
    // Temperature nibble 13 on every QAM unit: "ledoff.png" with the caption "N/A".
    for (const char *file : {"config/sondeo.xml", "config/sondeo.010.000.000.021.xml", "config/sondeo.010.000.000.022.xml"})
        setFirst(root_, file, "LEDS", "13");
    const std::string body = page("command=1");
    EXPECT_NE(body.find("<img src=\"/imagenes/ledoff.png\" alt=\"Temp\" align=\"middle\" border=\"0\" height=\"25\" "
                        "width=\"25\"><br>N/A"),
              std::string::npos);
    EXPECT_EQ(body.find("alt=\"Temp\" align=\"middle\" border=\"0\" height=\"25\" width=\"25\"><br>NORMAL"),
              std::string::npos);
}

TEST_F(OutputPages, CableOnePartChannelNumberIsShownCombined)
{
    setFirst(root_, kUnit21, "TABLETYPE", "1");
    setFirst(root_, kUnit21, "MAJOR", "3");
    setFirst(root_, kUnit21, "MINOR", "5");
    EXPECT_NE(page("command=12").find("value=\"3077\""), std::string::npos);
}

TEST_F(OutputPages, OutputSaveWritesThePostedValues)
{
    page("command=21&sufijo=.010.000.000.021&numcanales=2&outtab=1&outchn=81&outbau=5.361&outout=0&outint=2"
         "&outmod=1&outlev=40&outrfl=0");
    EXPECT_EQ(value(kUnit21, "/ENCODERCONFIG/SALIDAQAM/FREC"), "81");
    EXPECT_EQ(value(kUnit21, "/ENCODERCONFIG/SALIDAQAM/NIVEL"), "40");
    EXPECT_EQ(value(kUnit21, "/ENCODERCONFIG/SALIDAQAM/MODOSALIDA"), "1");
    EXPECT_EQ(root_.read("config/fileschanged.list"), "network.010.000.000.021\n");
}

class ChannelCount : public OutputPages, public ::testing::WithParamInterface<const char *> {};

TEST_P(ChannelCount, OutOfRangeSavesNothing)
{
    const std::string before = root_.read(kUnit21);
    const std::string count = GetParam();
    for (const std::string &save :
         {"command=21&sufijo=.010.000.000.021&numcanales=" + count +
              "&outtab=1&outchn=81&outbau=5&outout=0&outint=2&outmod=1&outlev=40&outrfl=0",
          "command=20&sufijo=.010.000.000.021&numcanales=" + count +
              "&tsid=7&cnam=1_A&svpid=1_49&sapid=1_52&mchn=1_9&chnm=1_1&autochan=1_0&svcid=1_3"}) {
        EXPECT_NE(page(save).find(kInvalid), std::string::npos) << save;
    }
    EXPECT_EQ(value(kUnit21, "/ENCODERCONFIG/SALIDAQAM/FREC"), "79");
    EXPECT_EQ(value(kUnit21, "/ENCODERCONFIG/SALIDATS/CANAL1/NOMBRE"), "CHAPEL");
    EXPECT_FALSE(root_.exists("config/fileschanged.list"));
}

INSTANTIATE_TEST_SUITE_P(Values, ChannelCount, ::testing::Values("0", "10", ""));

TEST_F(OutputPages, TransportSaveSplitsChannelNamesAtUnderscores)
{
    // "News_Sport" is cut at its '_': "Sport" then reads as a line number, and channel 1
    // never receives "Main".
    page("command=20&sufijo=.010.000.000.021&numcanales=2&tsid=7&cnam=2_News_Sport_1_Main&svpid=1_49&sapid=1_52"
         "&mchn=1_9&chnm=1_1&autochan=1_0&svcid=1_3");
    EXPECT_EQ(value(kUnit21, "/ENCODERCONFIG/SALIDATS/CANAL2/NOMBRE"), "News");
    EXPECT_EQ(value(kUnit21, "/ENCODERCONFIG/SALIDATS/CANAL1/NOMBRE"), "CHAPEL");
    EXPECT_EQ(value(kUnit21, "/ENCODERCONFIG/SALIDATS/TSID"), "7");
}

TEST_F(OutputPages, CofdmQuickStatusHasNoEasColumn)
{
    cofdmMaster();
    const std::string body = page("command=1");
    EXPECT_EQ(body.find("<th class='cabeceraTabla'>EAS</th>"), std::string::npos);
    EXPECT_NE(body.find("710206"), std::string::npos);
    EXPECT_EQ(body.find("710105"), std::string::npos) << "QAM units are not on a COFDM master's page";
}

TEST_F(OutputPages, CofdmCableModeHidesTheTerrestrialFields)
{
    cofdmMaster();
    const std::string body = page("command=13");
    // Unit .32 runs in 64QAM (mode 14): bandwidth, guard interval, FEC and cell id are
    // carried as hidden values with "n/a" shown.
    size_t row = body.find("bwsal_010_000_000_032");
    ASSERT_NE(row, std::string::npos) << body;
    size_t rowEnd = body.find("</tr>", row);
    const std::string cells = body.substr(row, rowEnd - row);
    for (const char *field : {"bwsal", "ingrd", "fecsal", "cellid"})
        EXPECT_NE(cells.find(std::string("type=\"hidden\"")), std::string::npos) << field;
    EXPECT_NE(cells.find("n/a"), std::string::npos);
}

TEST_F(OutputPages, DocumentValuesAreEscapedOnEveryOutputPage)
{
    const std::string hostile = "&quot;&gt;&lt;script&gt;alert(1)&lt;/script&gt;";
    for (const char *file : {"config/sondeo.010.000.000.021.xml"}) {
        setFirst(root_, file, "ORDEN", hostile);
        setFirst(root_, file, "IDUNIT", hostile);
    }
    setFirst(root_, kUnit21, "ORDEN", hostile);
    setFirst(root_, kUnit21, "NOMBRE", hostile);
    for (const char *query : {"command=1", "command=2", "command=12", "command=13"}) {
        const std::string body = page(query);
        EXPECT_EQ(body.find("<script"), std::string::npos) << query;
        EXPECT_NE(body.find("&lt;script&gt;"), std::string::npos) << query;
    }
}

}  // namespace
