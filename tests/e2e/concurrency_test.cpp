// Two operators save the same unit at the same moment (a network save and a test-options
// save): the saves take turns on the unit, so both changes are in its document afterwards
// and the unit is queued once for each.
#include "support/cgi_runner.h"
#include "support/xml_read.h"

#include <gtest/gtest.h>

#include <thread>

using namespace cambioip_test;

namespace {

// A pause after each load widens the window in which an unguarded save loses the other.
CgiRequest post(const std::string &body) { return postRequest(body, 20); }

TEST(ConcurrentSaves, BothChangesOfOneUnitSurvive)
{
    const std::string unit = "config/network.010.000.000.021.xml";
    for (int round = 0; round < 6; ++round) {
        TempRoot root;
        root.copyRack("qam");
        const std::string orden = std::to_string(100 + round);
        const CgiRequest red = post("command=4&sufijo=.010.000.000.021&networkipdir=10.0.0.21&networkmask=255.255.255.0"
                                    "&gateway=10.0.0.1&dhcp=0&orden=" + orden);
        const CgiRequest prueba = post("command=22&sufijo=.010.000.000.021&numcanales=2&teas=1&treset=0&tfab=0&tled=1");
        CgiResult a, b;
        std::thread first([&] { a = runCgi(root, red); });
        std::thread second([&] { b = runCgi(root, prueba); });
        first.join();
        second.join();
        ASSERT_EQ(a.status, 0);
        ASSERT_EQ(b.status, 0);
        EXPECT_EQ(xmlText(root.path() / unit, "/ENCODERCONFIG/NETWORK/ORDEN"), orden) << "round " << round;
        EXPECT_EQ(xmlText(root.path() / unit, "/ENCODERCONFIG/TEST/LED"), "1") << "round " << round;
        EXPECT_EQ(root.read("config/fileschanged.list"), "network.010.000.000.021\nnetwork.010.000.000.021\n");
    }
}

}  // namespace
