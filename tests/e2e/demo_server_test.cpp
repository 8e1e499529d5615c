// The demo as an operator runs it: demo/run.sh serving the sample rack through lighttpd,
// the page lock taken and released over HTTP.
#include "support/cgi_runner.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <netinet/in.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace cambioip_test;

namespace {

struct Socket {
    int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    ~Socket() { ::close(fd); }
};

sockaddr_in loopback(int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

int freePort()
{
    Socket s;
    sockaddr_in address = loopback(0);
    if (::bind(s.fd, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0)
        return -1;
    socklen_t length = sizeof address;
    ::getsockname(s.fd, reinterpret_cast<sockaddr *>(&address), &length);
    return ntohs(address.sin_port);
}

// One HTTP/1.0 request (a POST when body is given); the whole answer (status line,
// headers, body), or "" when the server does not answer.
std::string httpRequest(int port, const std::string &target, const std::string *body = nullptr)
{
    Socket s;
    sockaddr_in address = loopback(port);
    if (::connect(s.fd, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0)
        return "";
    std::string request = body == nullptr
                              ? "GET " + target + " HTTP/1.0\r\nHost: 127.0.0.1\r\n\r\n"
                              : "POST " + target + " HTTP/1.0\r\nHost: 127.0.0.1\r\n"
                                "Content-Type: application/x-www-form-urlencoded\r\nContent-Length: " +
                                    std::to_string(body->size()) + "\r\n\r\n" + *body;
    if (::write(s.fd, request.data(), request.size()) != static_cast<ssize_t>(request.size()))
        return "";
    std::string answer;
    char buffer[4096];
    for (ssize_t n; (n = ::read(s.fd, buffer, sizeof buffer)) > 0;)
        answer.append(buffer, static_cast<size_t>(n));
    return answer;
}

std::string bodyOf(const std::string &answer)
{
    size_t end = answer.find("\r\n\r\n");
    return end == std::string::npos ? "" : answer.substr(end + 4);
}

TEST(DemoServer, TakesAndReleasesThePageLockOverHttp)
{
    if (access("/usr/sbin/lighttpd", X_OK) != 0) {
        if (std::getenv("CI") != nullptr)
            FAIL() << "lighttpd is missing: make deps installs it";
        GTEST_SKIP() << "lighttpd is not installed";
    }
    TempRoot state;
    int port = freePort();
    ASSERT_GT(port, 0);

    std::string script = std::string(CAMBIOIP_SOURCE_DIR) + "/demo/run.sh";
    std::string portText = std::to_string(port);
    std::string stateDir = (state.path() / "demo").string();
    std::string cgi = CAMBIOIP_CGI;
    char *argv[] = {script.data(), cgi.data(), portText.data(), stateDir.data(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    pid_t pid = 0;
    ASSERT_EQ(posix_spawn(&pid, script.c_str(), &actions, nullptr, argv, environ), 0);
    posix_spawn_file_actions_destroy(&actions);

    std::string answer;
    for (int i = 0; i < 100 && answer.empty(); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        answer = httpRequest(port, "/cgi-bin/cambioIP.cgi?command=5");
    }
    const std::string config = stateDir + "/demo-root/config/";
    EXPECT_EQ(answer.rfind("HTTP/1.0 200", 0), 0u) << answer;
    EXPECT_NE(answer.find("Content-Type: text/html;charset=UTF-8"), std::string::npos) << answer;
    EXPECT_EQ(bodyOf(answer), "0");
    EXPECT_EQ(access((config + "web.lock").c_str(), F_OK), 0) << "the lock lands in the demo's working root";
    EXPECT_EQ(access((config + "network.xml").c_str(), F_OK), 0) << "the working root is a copy of the rack";

    EXPECT_EQ(bodyOf(httpRequest(port, "/cgi-bin/cambioIP.cgi?command=5")), "0") << "taking it again succeeds";
    EXPECT_EQ(bodyOf(httpRequest(port, "/cgi-bin/cambioIP.cgi?command=6")), "0");
    EXPECT_NE(access((config + "web.lock").c_str(), F_OK), 0);

    // A save through the server changes the sample unit's document and queues it.
    const std::string save = "command=4&sufijo=.010.000.000.021&networkipdir=10.0.0.21&networkmask=255.255.255.0"
                             "&gateway=10.0.0.1&dhcp=0&orden=42";
    std::string saved = bodyOf(httpRequest(port, "/cgi-bin/cambioIP.cgi", &save));
    EXPECT_NE(saved.find("Unit with ip 10.0.0.21 added to the queue...<br>"), std::string::npos) << saved;
    EXPECT_EQ(readFile(config + "fileschanged.list"), "network.010.000.000.021\n");
    EXPECT_NE(readFile(config + "network.010.000.000.021.xml").find("<ORDEN>42</ORDEN>"), std::string::npos);
    EXPECT_NE(bodyOf(httpRequest(port, "/cgi-bin/cambioIP.cgi?command=15")).find("tabadatos"), std::string::npos);

    ::kill(pid, SIGINT);
    int status = 0;
    ::waitpid(pid, &status, 0);
}

}  // namespace
