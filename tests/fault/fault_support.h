// Fault-injection support: runs of cambioIP.cgi started in the background (so that a test
// can kill one at a chosen moment, bound its time, memory and CPU, or start it as another
// user), the scale of a run, the figures line every fault test prints, and private mounts
// that give the configuration folder a full or read-only file system.
#pragma once

#include "support/cgi_runner.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace cambioip_fault {

using cambioip_test::CgiRequest;
using cambioip_test::CgiResult;
using cambioip_test::TempRoot;
namespace fs = std::filesystem;

// CAMBIOIP_STRESS=1 (make stress) picks the larger count of a test.
bool stressScale();
int scaled(int normal, int stress);

// Seed of a test's random choices: CAMBIOIP_FAULT_SEED when set, to replay a run, else a
// fresh one. It is printed with the figures.
uint64_t seed();

// Whether this build runs under AddressSanitizer (the program then cannot take an
// address-space limit; its memory is bounded by the sanitizer's own RSS limit instead).
bool sanitized();

// Bounds and identity a run is started with, besides the request's file-size limit.
struct Limits {
    long memoryBytes = -1;     // RLIMIT_AS, or the sanitizer's RSS limit under ASan
    long cpuSeconds = -1;      // RLIMIT_CPU
    bool unprivileged = false; // started as the user nobody (only when the test runs as root)
};

// A run of the program (CAMBIOIP_TEST_PROGRAM, else the build's cambioIP.cgi) with exactly
// the request's variables plus CAMBIOIP_ROOT and CAMBIOIP_LOAD_PAUSE_MS=0 unless the
// request sets them, standard input from the request, output to files. A run still going
// when the object goes away is killed and reaped.
class CgiProcess {
  public:
    CgiProcess(const TempRoot &root, const CgiRequest &request, const Limits &limits = {});
    ~CgiProcess();
    CgiProcess(const CgiProcess &) = delete;
    CgiProcess &operator=(const CgiProcess &) = delete;

    bool started() const { return pid_ > 0; }
    // Whether the run has ended (reaping it when it has).
    bool ended();
    // Waits up to `limit` for the end. A run that has not ended by then is killed, counted
    // as timed out, and false is returned.
    bool wait(std::chrono::milliseconds limit);
    // Kills the run now (SIGKILL) and reaps it; true when it had already ended by itself.
    bool kill();
    bool timedOut() const { return timedOut_; }
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

// One bounded run: started, waited for up to `limit`, killed when it overruns.
CgiResult runBounded(const TempRoot &root, const CgiRequest &request, std::chrono::milliseconds limit,
                     const Limits &limits = {}, bool *timedOut = nullptr);

CgiRequest post(const std::string &body, int pauseMs = 0);
CgiRequest get(const std::string &query);

// Files of the configuration folder whose names begin with '.': the temporaries that
// saves write before renaming them over a document.
std::vector<std::string> temporaries(const TempRoot &root);

// The one line of figures a fault test prints: its name, then "name value" pairs.
void printFigures(const std::string &test, const std::vector<std::pair<std::string, long long>> &figures);

// A mount namespace of this test process alone, so that the mounts below never reach the
// machine and vanish with the process. Empty when entered, else why it cannot be.
std::string enterPrivateMounts();
// Whether enterPrivateMounts had to take a user namespace of its own, where this process is
// root over its own files only and cannot start a run as another user.
bool inOwnUserNamespace();

// A mount over a folder, undone when the object goes away: a small tmpfs, or the folder
// bound onto itself read-only. error() says why it could not be made.
class Mount {
  public:
    static Mount tmpfs(const fs::path &where, const std::string &options);
    static Mount readOnlyBind(const fs::path &where);
    ~Mount();
    Mount(Mount &&other) noexcept;
    Mount &operator=(Mount &&) = delete;
    Mount(const Mount &) = delete;
    const std::string &error() const { return error_; }

  private:
    Mount() = default;
    fs::path where_;
    std::string error_;
};

// Fills the file system of a folder: a file grown until no block is left (or, with
// inodes, empty files created until no inode is left). Returns the number of bytes or
// files it took; -1 when the file system never refused.
long fillFileSystem(const fs::path &folder, bool inodes);

}  // namespace cambioip_fault
