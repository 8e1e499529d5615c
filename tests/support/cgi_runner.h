// Test support: a fresh temporary root for CAMBIOIP_ROOT and running the real
// cambioIP.cgi in it with a clean CGI environment, as a web server would.
#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>
#include <unistd.h>

namespace cambioip_test {

namespace fs = std::filesystem;

// A temporary folder laid out as the master's file system (config/, upload/, root/);
// removed with everything in it when the object goes away.
class TempRoot {
  public:
    TempRoot();
    ~TempRoot();
    TempRoot(const TempRoot &) = delete;
    TempRoot &operator=(const TempRoot &) = delete;

    const fs::path &path() const { return root_; }
    fs::path config() const { return root_ / "config"; }
    // Copies every file of a fixture folder (relative to tests/fixtures, or absolute)
    // into config/.
    void copyConfig(const fs::path &fixtureDir) const;
    // Copies a whole rack of tests/fixtures/racks (config/, upload/, root/) into the root, or
    // into a folder below it.
    void copyRack(const std::string &name, const std::string &into = "") const;
    void write(const std::string &relative, const std::string &content) const;
    bool exists(const std::string &relative) const;
    std::string read(const std::string &relative) const;
    // Every file below the root, relative to it, sorted.
    std::vector<std::string> listing() const;

  private:
    fs::path root_;
};

struct CgiResult {
    std::string out;  // standard output: header and body
    std::string err;  // standard error
    int status = -1;  // exit status, or 128 + signal
    bool timedOut = false;  // killed because it had not ended within its time limit
    std::string body() const;  // out without the header block
};

struct CgiRequest {
    std::map<std::string, std::string> env;  // CGI variables (REQUEST_METHOD, ...)
    std::string stdinData;                   // POST body as delivered on standard input
    std::string workingDir;                  // empty: a fresh temporary folder
    long fileSizeLimit = -1;                 // RLIMIT_FSIZE of the program, in bytes (-1: none)
    long memoryLimit = -1;     // RLIMIT_AS in bytes, or the sanitizer's RSS limit under ASan (-1: none)
    long cpuSeconds = -1;      // RLIMIT_CPU (-1: none)
    bool unprivileged = false; // started as the user nobody (only when the test runs as root)
};

CgiRequest getRequest(const std::string &query);
// A form POST; pauseMs is the program's pause after each document load.
CgiRequest postRequest(const std::string &body, int pauseMs = 0);

// An open file descriptor, closed when the object goes away.
struct Descriptor {
    int fd = -1;
    explicit Descriptor(int d) : fd(d) {}
    ~Descriptor()
    {
        if (fd >= 0)
            ::close(fd);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
};

// The program runCgi runs: CAMBIOIP_TEST_PROGRAM when set, else the build's cambioIP.cgi.
std::string testProgram();
// The command that starts it, from CAMBIOIP_TEST_LAUNCHER split on blanks (an emulator for a
// build of another machine); empty when the program is started directly.
std::vector<std::string> testLauncher();

// A run of cambioIP.cgi (or the program that CAMBIOIP_TEST_PROGRAM names, behind the launcher
// of CAMBIOIP_TEST_LAUNCHER when set) started in the background, so that a test can kill it at
// a chosen moment or bound its time: exactly the request's variables plus CAMBIOIP_ROOT=root
// and CAMBIOIP_LOAD_PAUSE_MS=0 (unless the request sets them), standard input from the
// request, output to files. A run still going when the object goes away is killed and reaped.
class CgiProcess {
  public:
    CgiProcess(const TempRoot &root, const CgiRequest &request);
    ~CgiProcess();
    CgiProcess(const CgiProcess &) = delete;
    CgiProcess &operator=(const CgiProcess &) = delete;

    bool started() const { return pid_ > 0; }
    // Whether the run has ended (reaping it when it has).
    bool ended();
    // Waits for the end, or up to `limit`: a run that has not ended by then is killed, counted
    // as timed out, and false is returned.
    bool wait(std::optional<std::chrono::milliseconds> limit = std::nullopt);
    // Kills the run now (SIGKILL) and reaps it; true when it had already ended by itself.
    bool kill();
    // Output, diagnostics and exit status (128 + signal when killed); valid once ended.
    CgiResult result() const;

  private:
    void reap(int status);

    fs::path scratch_;
    pid_t pid_ = -1;
    int pidfd_ = -1;
    int status_ = -1;
    bool timedOut_ = false;
};

// Runs the program to its end, or for up to `limit` (see CgiProcess).
CgiResult runCgi(const TempRoot &root, const CgiRequest &request,
                 std::optional<std::chrono::milliseconds> limit = std::nullopt);
CgiResult runGet(const TempRoot &root, const std::string &query);
CgiResult runPost(const TempRoot &root, const std::string &body);

// The exact header block every answer starts with.
inline const std::string kHeader = "Content-Type:text/html;charset=UTF-8\r\n\n";

std::string readFile(const fs::path &path);
// How many times `what` occurs in the text, without overlaps.
size_t occurrences(const std::string &text, const std::string &what);

}  // namespace cambioip_test
