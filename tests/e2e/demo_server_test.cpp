// The demo as an operator runs it: demo/run.sh serving the sample rack through lighttpd with
// its stand-in control daemon; the page lock taken and released over HTTP, and a saved change
// going from pending to applied with nobody touching a file.
#include "support/cgi_runner.h"
#include "support/servidor_http.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>
#include <unistd.h>

using namespace cambioip_test;

namespace {

TEST(DemoServer, ServesTheRackAndItsDaemonAppliesWhatIsSaved)
{
    if (!programPresent("/usr/sbin/lighttpd"))
        GTEST_SKIP() << "lighttpd is not installed";
    TempRoot state;
    const int port = freePort();
    ASSERT_GT(port, 0);
    const std::string stateDir = (state.path() / "demo").string();
    Process demo({std::string(CAMBIOIP_SOURCE_DIR) + "/demo/run.sh", CAMBIOIP_CGI, std::to_string(port), stateDir});
    ASSERT_TRUE(demo.started());

    const HttpAnswer lock = httpRequestOnceUp(port, "/cgi-bin/cambioIP.cgi?command=5");
    const std::string config = stateDir + "/demo-qam/config/";
    EXPECT_EQ(lock.status, 200) << lock.headers;
    EXPECT_NE(lock.headers.find("Content-Type: text/html;charset=UTF-8"), std::string::npos) << lock.headers;
    EXPECT_EQ(lock.body, "0");
    EXPECT_EQ(access((config + "web.lock").c_str(), F_OK), 0) << "the lock lands in the demo's working root";
    EXPECT_EQ(access((config + "network.xml").c_str(), F_OK), 0) << "the working root is a copy of the rack";
    EXPECT_EQ(httpRequest(port, "/cgi-bin/cambioIP.cgi?command=5").body, "0") << "taking it again succeeds";

    // A save while the web holds the lock: stored and queued; the daemon waits for the lock.
    const std::string unit = config + "network.010.000.000.021.xml";
    const std::string save = "command=4&sufijo=.010.000.000.021&networkipdir=10.0.0.21&networkmask=255.255.255.0"
                             "&gateway=10.0.0.1&dhcp=0&orden=42";
    const HttpAnswer saved = httpRequest(port, "/cgi-bin/cambioIP.cgi", &save);
    EXPECT_NE(saved.body.find("Unit with ip 10.0.0.21 added to the queue...<br>"), std::string::npos) << saved.body;
    const std::string pending = readFile(unit);
    EXPECT_NE(pending.find("<ORDEN>42</ORDEN>"), std::string::npos);
    EXPECT_NE(pending.find("<CAMBIOSWEB>1</CAMBIOSWEB>"), std::string::npos);
    EXPECT_NE(httpRequest(port, "/cgi-bin/cambioIP.cgi?command=3").body.find(
                  "name=\"forzarconfig_010_000_000_021\" id=\"forzarconfig_010_000_000_021\" type=\"checkbox\" "
                  " checked=\"yes\" "),
              std::string::npos)
        << "the network page shows the unit pending";
    std::this_thread::sleep_for(std::chrono::milliseconds(3500));
    EXPECT_EQ(readFile(config + "fileschanged.list"), "network.010.000.000.021\n") << "applied under the web's lock";

    // Once the lock is released, the daemon applies the unit: its pending flag, and nothing
    // else, changes, and the queue is emptied.
    EXPECT_EQ(httpRequest(port, "/cgi-bin/cambioIP.cgi?command=6").body, "0");
    std::string applied = pending;
    for (int i = 0; i < 100 && applied == pending; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        applied = readFile(unit);
    }
    std::string expected = pending;
    expected.replace(expected.find("<CAMBIOSWEB>1</CAMBIOSWEB>"), 26, "<CAMBIOSWEB>0</CAMBIOSWEB>");
    EXPECT_EQ(applied, expected);
    for (int i = 0; i < 50 && access((config + "control.lock").c_str(), F_OK) == 0; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(readFile(config + "fileschanged.list"), "");
    EXPECT_NE(access((config + "control.lock").c_str(), F_OK), 0) << "the daemon hands its lock back";
    EXPECT_EQ(httpRequest(port, "/cgi-bin/cambioIP.cgi?command=5").body, "0") << "the rack is free again";
}

}  // namespace
