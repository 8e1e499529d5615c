// Test support for the tests that go through a real web server (the demo's lighttpd, the
// installed configurations): a free loopback port, one HTTP/1.0 request, and the server's
// process, stopped when the test ends.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include <sys/types.h>

namespace cambioip_test {

int freePort();

struct HttpAnswer {
    int status = 0;       // 0: the server did not answer
    std::string headers;  // the status line and headers
    std::string body;
};

// One request to 127.0.0.1:port: a GET, or a form POST when body is given. extraHeaders are
// whole header lines, each ending in "\r\n". Status 0 when the server did not answer in full
// within the limit on the whole exchange.
HttpAnswer httpRequest(int port, const std::string &target, const std::string *body = nullptr,
                       const std::string &extraHeaders = "",
                       std::chrono::milliseconds limit = std::chrono::seconds(60));
// The same request, repeated every 50 ms for up to 5 s until the server answers.
HttpAnswer httpRequestOnceUp(int port, const std::string &target, const std::string &extraHeaders = "");

// "Authorization: Basic ..." for a user and password.
std::string basicAuthorization(const std::string &user, const std::string &password);

// A program started with its arguments and extra environment (NAME=value), standard output
// sent to /dev/null, standard error to errorLog when given; SIGTERM and reaped when the object
// goes away.
class Process {
  public:
    Process(const std::vector<std::string> &argv, const std::vector<std::string> &extraEnv = {},
            const std::string &errorLog = "");
    ~Process();
    Process(const Process &) = delete;
    Process &operator=(const Process &) = delete;
    bool started() const { return pid_ > 0; }

  private:
    pid_t pid_ = -1;
};

// True when the program is there; outside CI a missing one skips the test (the caller says
// so), in CI it fails it, since make deps installs it.
bool programPresent(const std::string &path);

}  // namespace cambioip_test
