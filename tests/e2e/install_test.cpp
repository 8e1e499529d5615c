// make install as an installer uses it: the program and the browser front installed under a
// DESTDIR, each ready server configuration started on a loopback port on a copy of a rack.
// Nothing is served before a login is set; afterwards only with it, and then the pages and a
// save work.
#include "support/cgi_runner.h"
#include "support/servidor_http.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <ostream>
#include <unistd.h>

using namespace cambioip_test;

namespace {

const std::string kPrefix = "/opt/cambioIP";

struct Installed {
    TempRoot dest;  // DESTDIR
    std::string prefix() const { return dest.path().string() + kPrefix; }
};

// Runs a shell command line; its exit status.
int run(const std::string &command)
{
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

struct Server {
    const char *name;
    const char *program;
    int refusedBeforeLogin;  // what a request gets while no login is set
    // Starts the server of the installation at `prefix` on `port`, with the CGI working on `rack`.
    void (*start)(const Installed &, int port, const std::string &rack, std::unique_ptr<Process> &);
};

void startLighttpd(const Installed &installed, int port, const std::string &rack, std::unique_ptr<Process> &server)
{
    // The installed configuration as it is, with what differs on a test machine: the address,
    // the user (the test's own), the locations under DESTDIR and the rack's folder.
    const std::string p = installed.prefix();
    const std::string conf = installed.dest.path().string() + "/test-lighttpd.conf";
    std::ofstream(conf) << "include \"" << p << "/etc/lighttpd.conf\"\n"
                        << "server.port := " << port << "\nserver.bind := \"127.0.0.1\"\n"
                        << "server.username := \"\"\nserver.groupname := \"\"\n"
                        << "server.document-root := \"" << p << "/www\"\n"
                        << "alias.url := ( \"/cgi-bin/\" => \"" << p << "/cgi-bin/\" )\n"
                        << "auth.backend.htpasswd.userfile := \"" << p << "/etc/htpasswd\"\n"
                        << "setenv.add-environment := ( \"CAMBIOIP_ROOT\" => \"" << rack
                        << "\", \"CAMBIOIP_LOAD_PAUSE_MS\" => \"0\" )\n";
    server = std::make_unique<Process>(std::vector<std::string>{"/usr/sbin/lighttpd", "-D", "-f", conf});
}

void startBusybox(const Installed &installed, int port, const std::string &rack, std::unique_ptr<Process> &server)
{
    // The installed configuration with the command line of its header; the CGI inherits the
    // rack's folder from httpd's environment.
    const std::string p = installed.prefix();
    server = std::make_unique<Process>(
        std::vector<std::string>{"/bin/busybox", "httpd", "-f", "-p", "127.0.0.1:" + std::to_string(port), "-r",
                                 "Headend", "-h", p + "/www", "-c", p + "/etc/httpd.conf"},
        std::vector<std::string>{"CAMBIOIP_ROOT=" + rack, "CAMBIOIP_LOAD_PAUSE_MS=0"});
}

void PrintTo(const Server &server, std::ostream *out) { *out << server.name; }

const Server kServers[] = {
    {"lighttpd", "/usr/sbin/lighttpd", 401, startLighttpd},
    {"busybox", "/bin/busybox", 403, startBusybox},
};

class InstalledServer : public ::testing::TestWithParam<Server> {};

TEST_P(InstalledServer, ServesTheRackOnlyWithTheLoginSetByTheInstaller)
{
    const Server &server = GetParam();
    if (!programPresent(server.program))
        GTEST_SKIP() << server.program << " is not installed";

    Installed installed;
    ASSERT_EQ(run("DESTDIR='" + installed.dest.path().string() + "' '" CAMBIOIP_CMAKE "' --install '" CAMBIOIP_BUILD_DIR
                  "' --prefix " + kPrefix + " >/dev/null"),
              0);
    TempRoot rack;
    rack.copyRack("qam");
    const int port = freePort();
    ASSERT_GT(port, 0);

    {
        std::unique_ptr<Process> running;
        server.start(installed, port, rack.path().string(), running);
        ASSERT_TRUE(running->started());
        EXPECT_EQ(httpRequestOnceUp(port, "/cgi-bin/cambioIP.cgi?command=15").status, server.refusedBeforeLogin)
            << "no default password: nothing is served before the installer sets a login";
        EXPECT_EQ(httpRequest(port, "/index.html").status, server.refusedBeforeLogin);
    }

    const std::string login = installed.prefix() + "/sbin/cambioIP-login";
    ASSERT_EQ(run("printf 'Tr3s&cuatro\\n' | '" + login + "' " + server.name + " operador >/dev/null"), 0);
    ASSERT_EQ(run("printf 'otra\\n' | '" + login + "' " + server.name + " jefe >/dev/null"), 0)
        << "a second login is added beside the first";

    std::unique_ptr<Process> running;
    server.start(installed, port, rack.path().string(), running);
    const std::string operador = basicAuthorization("operador", "Tr3s&cuatro");
    HttpAnswer page = httpRequestOnceUp(port, "/cgi-bin/cambioIP.cgi?command=15", operador);
    EXPECT_EQ(page.status, 200) << page.headers;
    EXPECT_NE(page.body.find("tabadatos"), std::string::npos) << page.body;
    EXPECT_EQ(httpRequest(port, "/index.html", nullptr, operador).status, 200);
    EXPECT_EQ(httpRequest(port, "/js/tablas.js", nullptr, operador).status, 200) << "the generated tables are installed";
    EXPECT_EQ(httpRequest(port, "/index.html", nullptr, basicAuthorization("jefe", "otra")).status, 200);

    const HttpAnswer refused[] = {
        httpRequest(port, "/cgi-bin/cambioIP.cgi?command=5"),
        httpRequest(port, "/cgi-bin/cambioIP.cgi?command=5", nullptr, basicAuthorization("operador", "tr3s&cuatro")),
        httpRequest(port, "/js/shell.js", nullptr, basicAuthorization("nadie", "Tr3s&cuatro")),
    };
    for (const HttpAnswer &answer : refused)
        EXPECT_EQ(answer.status, 401) << answer.headers;
    EXPECT_FALSE(rack.exists("config/web.lock")) << "a refused request never reaches the program";

    const std::string save = "command=4&sufijo=.010.000.000.021&networkipdir=10.0.0.21&networkmask=255.255.255.0"
                             "&gateway=10.0.0.1&dhcp=0&orden=42";
    HttpAnswer saved = httpRequest(port, "/cgi-bin/cambioIP.cgi", &save, operador);
    EXPECT_NE(saved.body.find("Unit with ip 10.0.0.21 added to the queue...<br>"), std::string::npos) << saved.body;
    EXPECT_EQ(rack.read("config/fileschanged.list"), "network.010.000.000.021\n");
    EXPECT_NE(rack.read("config/network.010.000.000.021.xml").find("<ORDEN>42</ORDEN>"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Servers, InstalledServer, ::testing::ValuesIn(kServers),
                         [](const auto &info) { return std::string(info.param.name); });

}  // namespace
