// Fault-injection support: the scale of a run, the figures line every fault test prints, the
// saves of the QAM test rack's pages that several fault tests post, and private mounts that
// give the configuration folder a full or read-only file system. The runs themselves
// (killed, bounded in time, memory and CPU, or started as another user) are
// cambioip_test::CgiProcess and runCgi.
#pragma once

#include "support/cgi_runner.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace cambioip_fault {

using cambioip_test::CgiProcess;
using cambioip_test::CgiRequest;
using cambioip_test::CgiResult;
using cambioip_test::getRequest;
using cambioip_test::postRequest;
using cambioip_test::runCgi;
using cambioip_test::TempRoot;
namespace fs = std::filesystem;

// CAMBIOIP_STRESS=1 (make stress) picks the larger count of a test.
bool stressScale();
int scaled(int normal, int stress);

// Seed of a test's random choices: CAMBIOIP_FAULT_SEED when set, to replay a run, else a
// fresh one. It is printed with the figures.
uint64_t seed();

// Saves of the QAM test rack's pages as the browser posts them.
inline constexpr const char *kInputsSave21 =
    "command=11&sufijo=.010.000.000.021&numcanales=2&eon=1_1_2_0&vidinp=1_0_2_1&vidcod=1_1_2_5&audcod=1_0_2_1"
    "&audinp=1_2_2_1&audlev=1_9_2_10&ccon=1_0_2_1&vidbit=1_7.5_2_12&audbit=1_4_2_6&asprat=1_0_2_2&gop=1_3_2_7"
    "&maxoutres=1_4_2_0&ffencod=1_0_2_1";
inline constexpr const char *kTransportSave22 =
    "command=20&sufijo=.010.000.000.022&numcanales=4&tsid=2000&cnam=1_NORTH_2_SOUTH&svpid=1_481_2_497"
    "&sapid=1_482_2_498&mchn=1_12_2_13&chnm=1_1_2_2&autochan=1_0_2_2&svcid=1_601_2_602&haysalidaip=0&ntotserv=4";
inline constexpr const char *kOutputSave22 =
    "command=21&sufijo=.010.000.000.022&numcanales=4&outtab=4&outchn=573.25&outbau=6.9&outout=4&outint=8"
    "&outmod=6&outlev=42&outrfl=1";
inline constexpr const char *kMasterTestSave = "command=22&sufijo=&numcanales=2&teas=0&treset=0&tfab=1&tled=0";
inline constexpr const char *kIpSave31 =
    "command=28&sufijo=.010.000.000.031&numcanales=2&nentip=2&iptxrx=2&iptype=0&haysalidaip=1&ipen=1_1_2_0"
    "&outputIP=1_239.9.9.9_2_239.9.9.10&outputport=1_7001_2_7002&ippackets=1_7_2_4&scanstd=1_0_2_0"
    "&ipproto=1_0_2_1&ipfecen=1_0_2_0&ipfecannex=1_0_2_0";

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
