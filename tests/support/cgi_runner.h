// Test support: a fresh temporary root for CAMBIOIP_ROOT and running the real
// cambioIP.cgi in it with a clean CGI environment, as a web server would.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

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
    // Copies a whole rack of tests/fixtures/racks (config/, upload/, root/) into the root.
    void copyRack(const std::string &name) const;
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
    std::string body() const;  // out without the header block
};

struct CgiRequest {
    std::map<std::string, std::string> env;  // CGI variables (REQUEST_METHOD, ...)
    std::string stdinData;                   // POST body as delivered on standard input
    std::string workingDir;                  // empty: a fresh temporary folder
    long fileSizeLimit = -1;                 // RLIMIT_FSIZE of the program, in bytes (-1: none)
};

// The program runCgi runs: CAMBIOIP_TEST_PROGRAM when set, else the build's cambioIP.cgi.
std::string testProgram();
// The command that starts it, from CAMBIOIP_TEST_LAUNCHER split on blanks (an emulator for a
// build of another machine); empty when the program is started directly.
std::vector<std::string> testLauncher();

// Runs cambioIP.cgi (or the program that CAMBIOIP_TEST_PROGRAM names) with exactly the given
// variables plus CAMBIOIP_ROOT=root and CAMBIOIP_LOAD_PAUSE_MS=0 (unless the request sets them).
CgiResult runCgi(const TempRoot &root, const CgiRequest &request);
// The same with another build of the program (the plain build, to compare outputs). Both run
// behind the launcher of CAMBIOIP_TEST_LAUNCHER, when set.
CgiResult runCgiProgram(const std::string &program, const TempRoot &root, const CgiRequest &request);
CgiResult runGet(const TempRoot &root, const std::string &query);
CgiResult runPost(const TempRoot &root, const std::string &body);

// The exact header block every answer starts with.
inline const std::string kHeader = "Content-Type:text/html;charset=UTF-8\r\n\n";

std::string readFile(const fs::path &path);

}  // namespace cambioip_test
