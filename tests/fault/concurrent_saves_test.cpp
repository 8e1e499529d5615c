// Eight saves at once, round after round: three pages on one unit, three on another, the IP
// page of a third and the test options of the master, while a page reads the rack. Each
// save writes its own fields with values of its round, so a lost update shows as a value
// of an earlier round; every queue line and the command file must be whole.
#include "fault/fault_support.h"
#include "support/xml_read.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <sstream>

using namespace cambioip_fault;
using cambioip_test::xmlText;
using cambioip_test::xmlWellFormed;

namespace {

// One save of a round: its form, the document it writes and the values it leaves there.
struct RoundSave {
    std::string unit;  // the document's name part ("" for the master)
    std::string body;
    std::vector<std::pair<std::string, std::string>> fields;  // XPath, value
};

std::string documentOf(const std::string &unit) { return unit.empty() ? "network.xml" : "network." + unit + ".xml"; }

std::vector<RoundSave> roundSaves(int round)
{
    const std::string r = std::to_string(round);
    const std::string flag = std::to_string((round + 1) % 2);  // differs from the round before
    const std::string orden21 = std::to_string(1000 + round), orden22 = std::to_string(3000 + round);
    const std::string level = std::to_string(round % 90 + 1), channel = std::to_string(100 + round) + ".25";
    const std::string tsid = std::to_string(2000 + round), name = "R" + r + "N";
    const std::string video1 = r + ".5", video2 = std::to_string(round + 2);
    const std::string address = "239.9." + std::to_string(round % 250) + ".9", port = std::to_string(7000 + round);
    return {
        {"010.000.000.021",
         "command=4&sufijo=.010.000.000.021&networkipdir=10.0.0.21&networkmask=255.255.255.0&gateway=10.0.0.1"
         "&dhcp=0&orden=" + orden21,
         {{"/ENCODERCONFIG/NETWORK/ORDEN", orden21}}},
        {"010.000.000.021",
         "command=22&sufijo=.010.000.000.021&numcanales=2&teas=" + flag + "&treset=" + flag + "&tfab=" + flag +
             "&tled=" + flag,
         {{"/ENCODERCONFIG/TEST/EAS", flag}, {"/ENCODERCONFIG/TEST/RESET", flag},
          {"/ENCODERCONFIG/TEST/FACTORY", flag}, {"/ENCODERCONFIG/TEST/LED", flag}}},
        {"010.000.000.021",
         "command=11&sufijo=.010.000.000.021&numcanales=2&eon=1_1_2_0&vidinp=1_0_2_1&vidcod=1_1_2_5&audcod=1_0_2_1"
         "&audinp=1_2_2_1&audlev=1_9_2_10&ccon=1_0_2_1&vidbit=1_" + video1 + "_2_" + video2 +
             "&audbit=1_4_2_6&asprat=1_0_2_2&gop=1_3_2_7&maxoutres=1_4_2_0&ffencod=1_0_2_1",
         {{"/ENCODERCONFIG/ENTRADA1/BITRATE/VIDEO", video1}, {"/ENCODERCONFIG/ENTRADA2/BITRATE/VIDEO", video2}}},
        {"010.000.000.022",
         "command=21&sufijo=.010.000.000.022&numcanales=4&outtab=4&outchn=" + channel +
             "&outbau=6.9&outout=4&outint=8&outmod=6&outlev=" + level + "&outrfl=1",
         {{"/ENCODERCONFIG/SALIDAQAM/FREC", channel}, {"/ENCODERCONFIG/SALIDAQAM/NIVEL", level}}},
        {"010.000.000.022",
         "command=20&sufijo=.010.000.000.022&numcanales=4&tsid=" + tsid + "&cnam=1_" + name +
             "_2_SOUTH&svpid=1_481_2_497&sapid=1_482_2_498&mchn=1_12_2_13&chnm=1_1_2_2&autochan=1_0_2_2"
             "&svcid=1_601_2_602&haysalidaip=0&ntotserv=4",
         {{"/ENCODERCONFIG/SALIDATS/TSID", tsid}, {"/ENCODERCONFIG/SALIDATS/CANAL1/NOMBRE", name}}},
        {"010.000.000.022",
         "command=4&sufijo=.010.000.000.022&networkipdir=10.0.0.22&networkmask=255.255.255.0&gateway=10.0.0.1"
         "&dhcp=1&orden=" + orden22,
         {{"/ENCODERCONFIG/NETWORK/ORDEN", orden22}}},
        {"010.000.000.031",
         "command=28&sufijo=.010.000.000.031&numcanales=2&nentip=2&iptxrx=2&iptype=0&haysalidaip=1&ipen=1_1_2_0"
         "&outputIP=1_" + address + "_2_239.9.9.10&outputport=1_" + port +
             "_2_7002&ippackets=1_7_2_4&scanstd=1_0_2_0&ipproto=1_0_2_1&ipfecen=1_0_2_0&ipfecannex=1_0_2_0",
         {{"/ENCODERCONFIG/SALIDAIP/SALIDA1/IPORIG", address}, {"/ENCODERCONFIG/SALIDAIP/SALIDA1/PUERTOORIGEN", port}}},
        {"",
         "command=22&sufijo=&numcanales=2&teas=0&treset=0&tfab=" + flag + "&tled=" + flag,
         {{"/ENCODERCONFIG/TEST/FACTORY", flag}, {"/ENCODERCONFIG/TEST/LED", flag}}},
    };
}

std::vector<std::string> lines(const std::string &text)
{
    std::vector<std::string> found;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        found.push_back(line);
    return found;
}

constexpr auto kRunLimit = std::chrono::seconds(60);
// A pause after each load keeps each save on its unit longer, so the saves overlap more.
constexpr int kPauseMs = 3;

TEST(ConcurrentSaves, EverySavedChangeStaysAndEveryLineIsWhole)
{
    const int rounds = scaled(4, 40);
    TempRoot root;
    root.copyRack("qam");
    long long runs = 0, checked = 0, lost = 0, torn = 0, queueLines = 0, unreadableRows = 0;

    for (int round = 0; round < rounds; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const std::vector<RoundSave> saves = roundSaves(round);
        const std::string queueBefore = root.read("config/fileschanged.list");

        std::vector<std::unique_ptr<CgiProcess>> running;
        for (const RoundSave &save : saves)
            running.push_back(std::make_unique<CgiProcess>(root, postRequest(save.body, kPauseMs)));
        CgiProcess reader(root, getRequest("command=13"));
        for (size_t i = 0; i < saves.size(); ++i) {
            ASSERT_TRUE(running[i]->wait(kRunLimit)) << saves[i].body;
            const CgiResult result = running[i]->result();
            ++runs;
            ASSERT_EQ(result.status, 0) << saves[i].body;
            // Every save of the round says its changes were saved, and queued.
            EXPECT_NE(result.out.find("Changes saved for ip"), std::string::npos) << result.out;
            EXPECT_EQ(result.out.find("ERROR!"), std::string::npos) << saves[i].body << "\n" << result.out;
            if (!saves[i].unit.empty()) {
                EXPECT_NE(result.out.find("added to the queue"), std::string::npos) << result.out;
            }
        }
        ASSERT_TRUE(reader.wait(kRunLimit));
        ++runs;
        // A page read during the saves sees every document whole.
        const CgiResult page = reader.result();
        EXPECT_TRUE(page.out.ends_with("</body></html>\n"));
        const bool unreadable = page.out.find("cannot be read") != std::string::npos;
        unreadableRows += unreadable ? 1 : 0;
        EXPECT_FALSE(unreadable) << page.out;

        std::map<std::string, bool> wellFormed;
        for (const RoundSave &save : saves) {
            const fs::path document = root.config() / documentOf(save.unit);
            if (!wellFormed.contains(save.unit)) {
                wellFormed[save.unit] = xmlWellFormed(document);
                ++checked;
                torn += wellFormed[save.unit] ? 0 : 1;
                EXPECT_TRUE(wellFormed[save.unit]) << document;
            }
            for (const auto &[xpath, value] : save.fields) {
                const std::optional<std::string> stored = xmlText(document, xpath);
                lost += stored == value ? 0 : 1;
                EXPECT_EQ(stored, value) << documentOf(save.unit) << " " << xpath;
            }
        }

        // The round appended one whole line per unit save, nothing else.
        const std::string queue = root.read("config/fileschanged.list");
        ASSERT_TRUE(queue.starts_with(queueBefore));
        EXPECT_TRUE(queue.ends_with("\n"));
        std::map<std::string, int> expected, appended;
        for (const RoundSave &save : saves)
            if (!save.unit.empty())
                ++expected["network." + save.unit];
        for (const std::string &line : lines(queue.substr(queueBefore.size()))) {
            ++appended[line];
            ++queueLines;
        }
        EXPECT_EQ(appended, expected);
        EXPECT_EQ(root.read("config/command.msg"), "2");
        EXPECT_EQ(temporaries(root), std::vector<std::string>{});
    }
    printFigures("concurrent saves", {{"rounds", rounds}, {"runs", runs}, {"documents checked", checked},
                                      {"lost updates", lost}, {"torn documents", torn},
                                      {"queue lines checked", queueLines}, {"pages with an unreadable unit", unreadableRows}});
}

}  // namespace
