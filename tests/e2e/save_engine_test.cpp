// The save engine through the real cambioIP.cgi, checked on the files afterwards: the
// unit's document, the daemon's queue and the master's command file.
#include "support/cgi_runner.h"
#include "support/xml_read.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace cambioip_test;

namespace {

const std::string kUnit = ".010.000.000.021";
const std::string kUnitFile = "config/network.010.000.000.021.xml";
const std::string kNetwork = "networkipdir=10.0.0.121&networkmask=255.255.0.0&gateway=10.0.0.254&dhcp=0&orden=12";
const std::string kSaved = "Changes saved for ip ";
const std::string kInvalid =
    "<br><h2><center><strong> ERROR! Invalid Data!.<br> please retry operation in a few seconds.</strong></center></h2>\n";
const std::string kNotSupported =
    "<br><h2><center><strong> ERROR! Device not supported.<br> please contact technical support.</strong></center></h2>\n";
const std::string kNoConfig =
    "<br><h2><center><strong> ERROR! Unable to open config data.<br> please contact technical support.</strong></center></h2>\n";

class SaveEngine : public ::testing::Test {
  protected:
    void SetUp() override { root_.copyConfig(std::string(CAMBIOIP_SOURCE_DIR) + "/demo/root/config"); }
    std::string value(const std::string &file, const std::string &xpath) const
    {
        return xmlText(root_.path() / file, xpath).value_or("<missing>");
    }
    mode_t mode(const std::string &file) const
    {
        struct stat st {};
        stat((root_.path() / file).c_str(), &st);
        return st.st_mode & 0777;
    }
    TempRoot root_;
};

TEST_F(SaveEngine, UnitSaveQueuesTheUnitAndMarksItsDocument)
{
    CgiResult r = runPost(root_, "command=4&sufijo=" + kUnit + "&" + kNetwork);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.body(), "<html><head></head><body>\n"
                        "Processing data for unit with ip 10.0.0.21, model 710105  - Enc 2 CMP+HDMI<br>\n"
                        "Unit with ip 10.0.0.21 added to the queue...<br>\n"
                        "Changes saved for ip 10.0.0.21, please wait a few seconds while the unit applies them!<br>\n"
                        "</body></html>\n");
    EXPECT_EQ(root_.read("config/fileschanged.list"), "network.010.000.000.021\n");
    EXPECT_FALSE(root_.exists("config/command.msg"));
    EXPECT_EQ(value(kUnitFile, "/ENCODERCONFIG/NETWORK/IP_ADDRESS"), "10.0.0.121");
    EXPECT_EQ(value(kUnitFile, "/ENCODERCONFIG/CAMBIOSWEB"), "1");
    EXPECT_EQ(mode("config/fileschanged.list"), 0666u);
}

TEST_F(SaveEngine, AddressThatFillsTheReadIsShownWholeAndNothingAfterIt)
{
    // The store copies an address of exactly 300 bytes without a terminator.
    const std::string address(300, 'A');
    std::string text = root_.read(kUnitFile);
    const std::string stored = "<IP_ADDRESS>10.0.0.21</IP_ADDRESS>";
    const size_t at = text.find(stored);
    ASSERT_NE(at, std::string::npos);
    text.replace(at, stored.size(), "<IP_ADDRESS>" + address + "</IP_ADDRESS>");
    root_.write(kUnitFile, text);
    CgiResult r = runPost(root_, "command=4&sufijo=" + kUnit + "&" + kNetwork);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.err.find("AddressSanitizer"), std::string::npos) << r.err;
    EXPECT_EQ(r.body(), "<html><head></head><body>\n"
                        "Processing data for unit with ip " + address + ", model 710105  - Enc 2 CMP+HDMI<br>\n"
                        "Unit with ip " + address + " added to the queue...<br>\n"
                        "Changes saved for ip " + address + ", please wait a few seconds while the unit applies them!<br>\n"
                        "</body></html>\n");
}

TEST_F(SaveEngine, TwoSavesAppendTwoIdenticalLines)
{
    runPost(root_, "command=4&sufijo=" + kUnit + "&" + kNetwork);
    runGet(root_, "command=4&sufijo=" + kUnit + "&" + kNetwork);
    EXPECT_EQ(root_.read("config/fileschanged.list"), "network.010.000.000.021\nnetwork.010.000.000.021\n");
}

TEST_F(SaveEngine, MasterSaveWritesTheCommandByteAndQueuesNothing)
{
    CgiResult r = runPost(root_, "command=4&" + kNetwork);
    EXPECT_NE(r.body().find("Processing data for unit with ip 10.0.0.10, model 710109  - Enc 2 CMP+HDMI+IP EAS<br>\n"),
              std::string::npos)
        << r.body();
    EXPECT_EQ(r.body().find("added to the queue"), std::string::npos);
    EXPECT_EQ(root_.read("config/command.msg"), "2");
    EXPECT_EQ(mode("config/command.msg"), 0666u);
    EXPECT_FALSE(root_.exists("config/fileschanged.list"));
    EXPECT_EQ(value("config/network.xml", "/ENCODERCONFIG/NETWORK/ORDEN"), "12");
    EXPECT_EQ(value("config/network.xml", "/ENCODERCONFIG/CAMBIOSWEB"), "1");
}

TEST_F(SaveEngine, SufijoInsideAnEarlierValueNamesTheMaster)
{
    // The first occurrence of "sufijo" is a value without '=': the unit name stays empty.
    runPost(root_, "command=4&note=sufijo&sufijo=" + kUnit + "&" + kNetwork);
    EXPECT_EQ(root_.read("config/command.msg"), "2");
    EXPECT_FALSE(root_.exists("config/fileschanged.list"));
}

TEST_F(SaveEngine, InvalidDataIsSavedMarkedButNotQueued)
{
    const std::string before = value(kUnitFile, "/ENCODERCONFIG/NETWORK/IP_ADDRESS");
    CgiResult r = runPost(root_, "command=4&sufijo=" + kUnit +
                                     "&networkipdir=10.0.0.99&networkmask=255.0.0.0&gateway=10.0.0.1&dhcp=0");
    const std::string body = r.body();
    size_t error = body.find(kInvalid), saved = body.find(kSaved);
    ASSERT_NE(error, std::string::npos) << body;
    ASSERT_NE(saved, std::string::npos) << body;
    EXPECT_LT(error, saved) << "the error comes first, then the saved text";
    EXPECT_FALSE(root_.exists("config/fileschanged.list"));
    EXPECT_EQ(value(kUnitFile, "/ENCODERCONFIG/NETWORK/IP_ADDRESS"), before) << "nothing of the save is written";
    EXPECT_EQ(value(kUnitFile, "/ENCODERCONFIG/CAMBIOSWEB"), "1");
}

TEST_F(SaveEngine, UnknownModelLeavesTheDocumentByteIdentical)
{
    std::string text = root_.read(kUnitFile);
    size_t at = text.find("<TIPOUNIDAD>710105</TIPOUNIDAD>");
    ASSERT_NE(at, std::string::npos);
    text.replace(at, 31, "<TIPOUNIDAD>563</TIPOUNIDAD>");
    root_.write(kUnitFile, text);
    CgiResult r = runPost(root_, "command=4&sufijo=" + kUnit + "&" + kNetwork);
    EXPECT_EQ(r.body(), "<html><head></head><body>\n" + kNotSupported + "</body></html>\n");
    EXPECT_EQ(root_.read(kUnitFile), text);
    EXPECT_FALSE(root_.exists("config/fileschanged.list"));
}

TEST_F(SaveEngine, PlaceholderModelIsMarkedAndSavedButNotStored)
{
    std::string text = root_.read(kUnitFile);
    size_t at = text.find("<TIPOUNIDAD>710105</TIPOUNIDAD>");
    ASSERT_NE(at, std::string::npos);
    text.replace(at, 31, "<TIPOUNIDAD>65535</TIPOUNIDAD>");
    root_.write(kUnitFile, text);
    CgiResult r = runPost(root_, "command=4&sufijo=" + kUnit + "&" + kNetwork);
    size_t error = r.body().find(kNotSupported);
    ASSERT_NE(error, std::string::npos) << r.body();
    EXPECT_LT(error, r.body().find(kSaved));
    EXPECT_EQ(value(kUnitFile, "/ENCODERCONFIG/CAMBIOSWEB"), "1");
    EXPECT_EQ(value(kUnitFile, "/ENCODERCONFIG/NETWORK/IP_ADDRESS"), "10.0.0.21");
    EXPECT_FALSE(root_.exists("config/fileschanged.list"));
}

TEST_F(SaveEngine, UnitWithoutADocumentCannotBeOpened)
{
    for (const std::string sufijo : {".010.000.000.099", "./../network", "x/../../config/network"}) {
        CgiResult r = runPost(root_, "command=4&sufijo=" + sufijo + "&" + kNetwork);
        EXPECT_EQ(r.body(), "<html><head></head><body>\n" + kNoConfig + "</body></html>\n") << sufijo;
    }
    EXPECT_FALSE(root_.exists("config/fileschanged.list"));
    EXPECT_FALSE(root_.exists("config/command.msg"));
}

TEST_F(SaveEngine, SavedDocumentsStayWellFormedAndKeepTheirMode)
{
    chmod((root_.path() / kUnitFile).c_str(), 0640);
    runPost(root_, "command=4&sufijo=" + kUnit + "&networkipdir=10.0.0.21&networkmask=255.255.255.0"
                   "&gateway=10.0.0.1&dhcp=1&orden=%3Cb%3E%26amp%3B");
    EXPECT_TRUE(xmlWellFormed(root_.path() / kUnitFile));
    EXPECT_EQ(value(kUnitFile, "/ENCODERCONFIG/NETWORK/ORDEN"), "<b>&amp;");
    EXPECT_EQ(mode(kUnitFile), 0640u);
    for (const std::string &file : root_.listing())
        EXPECT_EQ(file.find("config/."), std::string::npos) << "temporary file left: " << file;
}

}  // namespace
