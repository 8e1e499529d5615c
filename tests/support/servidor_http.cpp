#include "support/servidor_http.h"

#include "support/cgi_runner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <arpa/inet.h>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char **environ;

namespace cambioip_test {

namespace {

using Clock = std::chrono::steady_clock;

// Non-blocking, so that every wait of a request is bounded by its deadline.
int newSocket() { return ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0); }

// Waits until the socket is ready for `events` or the deadline passes.
bool ready(int fd, short events, Clock::time_point deadline)
{
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0)
            return false;
        pollfd p{fd, events, 0};
        const int n = ::poll(&p, 1, static_cast<int>(left));
        if (n > 0)
            return true;
        if (n < 0 && errno != EINTR)
            return false;
    }
}

sockaddr_in loopback(int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

}  // namespace

int freePort()
{
    const Descriptor s(newSocket());
    sockaddr_in address = loopback(0);
    if (::bind(s.fd, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0)
        return -1;
    socklen_t length = sizeof address;
    ::getsockname(s.fd, reinterpret_cast<sockaddr *>(&address), &length);
    return ntohs(address.sin_port);
}

HttpAnswer httpRequest(int port, const std::string &target, const std::string *body,
                       const std::string &extraHeaders, std::chrono::milliseconds limit)
{
    const Clock::time_point deadline = Clock::now() + limit;
    const Descriptor s(newSocket());
    if (s.fd < 0)
        return {};
    sockaddr_in address = loopback(port);
    if (::connect(s.fd, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0) {
        if (errno != EINPROGRESS || !ready(s.fd, POLLOUT, deadline))
            return {};
        int error = 0;
        socklen_t length = sizeof error;
        if (::getsockopt(s.fd, SOL_SOCKET, SO_ERROR, &error, &length) != 0 || error != 0)
            return {};
    }
    std::string request = (body == nullptr ? "GET " : "POST ") + target + " HTTP/1.0\r\nHost: 127.0.0.1\r\n" +
                          extraHeaders;
    if (body != nullptr)
        request += "Content-Type: application/x-www-form-urlencoded\r\nContent-Length: " +
                   std::to_string(body->size()) + "\r\n\r\n" + *body;
    else
        request += "\r\n";
    for (size_t sent = 0; sent < request.size();) {
        const ssize_t n = ::send(s.fd, request.data() + sent, request.size() - sent, MSG_NOSIGNAL);
        if (n > 0)
            sent += static_cast<size_t>(n);
        else if (n < 0 && (errno == EAGAIN || errno == EINTR)) {
            if (!ready(s.fd, POLLOUT, deadline))
                return {};
        } else
            return {};
    }
    // HTTP/1.0 without keep-alive: the answer is whole when the server closes the connection.
    std::string answer;
    char buffer[16384];
    for (;;) {
        const ssize_t n = ::recv(s.fd, buffer, sizeof buffer, 0);
        if (n > 0)
            answer.append(buffer, static_cast<size_t>(n));
        else if (n == 0)
            break;
        else if (errno == EAGAIN || errno == EINTR) {
            if (!ready(s.fd, POLLIN, deadline))
                return {};
        } else
            return {};
    }

    // The headers end at the first empty line. BusyBox httpd passes the program's own header
    // block through, which ends in "\r\n\n"; lighttpd rewrites it with "\r\n\r\n".
    HttpAnswer result;
    const size_t crlf = answer.find("\n\r\n"), lf = answer.find("\n\n");
    const size_t end = std::min(crlf, lf);
    if (answer.rfind("HTTP/", 0) != 0 || end == std::string::npos)
        return result;
    result.status = std::atoi(answer.c_str() + answer.find(' ') + 1);
    result.headers = answer.substr(0, end);
    result.body = answer.substr(end + (end == crlf ? 3 : 2));
    return result;
}

HttpAnswer httpRequestOnceUp(int port, const std::string &target, const std::string &extraHeaders)
{
    HttpAnswer answer;
    for (int i = 0; i < 100 && answer.status == 0; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        answer = httpRequest(port, target, nullptr, extraHeaders);
    }
    return answer;
}

std::string basicAuthorization(const std::string &user, const std::string &password)
{
    static const char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const std::string in = user + ":" + password;
    std::string out;
    for (size_t i = 0; i < in.size(); i += 3) {
        uint32_t group = static_cast<uint8_t>(in[i]) << 16;
        if (i + 1 < in.size())
            group |= static_cast<uint8_t>(in[i + 1]) << 8;
        if (i + 2 < in.size())
            group |= static_cast<uint8_t>(in[i + 2]);
        out += alphabet[(group >> 18) & 63];
        out += alphabet[(group >> 12) & 63];
        out += i + 1 < in.size() ? alphabet[(group >> 6) & 63] : '=';
        out += i + 2 < in.size() ? alphabet[group & 63] : '=';
    }
    return "Authorization: Basic " + out + "\r\n";
}

Process::Process(const std::vector<std::string> &argv, const std::vector<std::string> &extraEnv,
                 const std::string &errorLog)
{
    std::vector<std::string> env(extraEnv);
    for (char **e = environ; *e != nullptr; ++e)
        env.emplace_back(*e);
    std::vector<char *> args, envp;
    for (const std::string &a : argv)
        args.push_back(const_cast<char *>(a.c_str()));
    args.push_back(nullptr);
    for (const std::string &e : env)
        envp.push_back(const_cast<char *>(e.c_str()));
    envp.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    if (!errorLog.empty())
        posix_spawn_file_actions_addopen(&actions, 2, errorLog.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (posix_spawn(&pid_, args[0], &actions, nullptr, args.data(), envp.data()) != 0)
        pid_ = -1;
    posix_spawn_file_actions_destroy(&actions);
}

Process::~Process()
{
    if (pid_ <= 0)
        return;
    ::kill(pid_, SIGTERM);
    int status = 0;
    ::waitpid(pid_, &status, 0);
}

bool programPresent(const std::string &path)
{
    if (::access(path.c_str(), X_OK) == 0)
        return true;
    if (std::getenv("CI") != nullptr)
        ADD_FAILURE() << path << " is missing: make deps installs it";
    return false;
}

}  // namespace cambioip_test
