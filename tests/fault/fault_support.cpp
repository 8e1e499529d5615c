#include "fault/fault_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <grp.h>
#include <iostream>
#include <map>
#include <random>
#include <poll.h>
#include <sched.h>
#include <sys/syscall.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace cambioip_fault {

namespace {

// The user the unprivileged runs take (nobody on Debian).
constexpr uid_t kNobody = 65534;

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

fs::path makeScratch()
{
    std::string pattern = (fs::temp_directory_path() / "cambioip-fault-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error(std::string("mkdtemp: ") + std::strerror(errno));
    return pattern;
}

std::string program()
{
    const char *other = std::getenv("CAMBIOIP_TEST_PROGRAM");
    return other != nullptr && *other != '\0' ? other : CAMBIOIP_CGI;
}

bool writeAll(const fs::path &file, const std::string &text)
{
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out << text;
    out.close();
    return !out.fail();
}

}  // namespace

bool stressScale()
{
    const char *valor = std::getenv("CAMBIOIP_STRESS");
    return valor != nullptr && std::string(valor) == "1";
}

int scaled(int normal, int stress) { return stressScale() ? stress : normal; }

uint64_t seed()
{
    if (const char *fijada = std::getenv("CAMBIOIP_FAULT_SEED"); fijada != nullptr && *fijada != '\0')
        return std::strtoull(fijada, nullptr, 10);
    std::random_device fuente;
    // 62 bits, so that the figures line prints it as it is.
    return ((static_cast<uint64_t>(fuente()) << 32) ^ fuente()) & ((uint64_t{1} << 62) - 1);
}

bool sanitized()
{
#if defined(__SANITIZE_ADDRESS__)
    return true;
#else
    return false;
#endif
}

CgiProcess::CgiProcess(const TempRoot &root, const CgiRequest &request, const Limits &limits)
    : scratch_(makeScratch())
{
    const fs::path inPath = scratch_ / "stdin", outPath = scratch_ / "stdout", errPath = scratch_ / "stderr";
    const fs::path work = request.workingDir.empty() ? scratch_ / "cwd" : fs::path(request.workingDir);
    if (!writeAll(inPath, request.stdinData)) {
        ADD_FAILURE() << "cannot write the request body to " << inPath;
        return;
    }
    fs::create_directories(work);

    std::map<std::string, std::string> env = request.env;
    env.try_emplace("CAMBIOIP_ROOT", root.path().string());
    env.try_emplace("CAMBIOIP_LOAD_PAUSE_MS", "0");
    std::string asan = std::getenv("ASAN_OPTIONS") != nullptr ? std::getenv("ASAN_OPTIONS") : "";
    if (sanitized() && limits.memoryBytes > 0)
        asan += (asan.empty() ? "" : ":") + std::string("hard_rss_limit_mb=") +
                std::to_string(limits.memoryBytes >> 20);
    if (!asan.empty())
        env.try_emplace("ASAN_OPTIONS", asan);
    std::vector<std::string> envText;
    for (const auto &[name, value] : env)
        envText.push_back(name + "=" + value);
    std::vector<char *> envp;
    for (auto &text : envText)
        envp.push_back(text.data());
    envp.push_back(nullptr);
    std::string path = program();
    char *argv[] = {path.data(), nullptr};

    if (limits.unprivileged) {
        // The run must reach its working folder; nothing lets it write there.
        fs::permissions(scratch_, fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec |
                                      fs::perms::others_read | fs::perms::others_exec);
        fs::permissions(work, fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec |
                                  fs::perms::others_read | fs::perms::others_exec);
    }

    Descriptor in(::open(inPath.c_str(), O_RDONLY | O_CLOEXEC));
    Descriptor out(::open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
    Descriptor err(::open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
    if (in.fd < 0 || out.fd < 0 || err.fd < 0) {
        ADD_FAILURE() << "cannot open the run's standard streams in " << scratch_;
        return;
    }
    const rlimit fileSize{static_cast<rlim_t>(request.fileSizeLimit), static_cast<rlim_t>(request.fileSizeLimit)};
    const rlimit memory{static_cast<rlim_t>(limits.memoryBytes), static_cast<rlim_t>(limits.memoryBytes)};
    const rlimit cpu{static_cast<rlim_t>(limits.cpuSeconds), static_cast<rlim_t>(limits.cpuSeconds) + 1};
    const bool limitMemory = limits.memoryBytes > 0 && !sanitized();

    pid_ = ::fork();
    if (pid_ == 0) {
        // Only async-signal-safe calls between fork and exec.
        if (::dup2(in.fd, 0) < 0 || ::dup2(out.fd, 1) < 0 || ::dup2(err.fd, 2) < 0 || ::chdir(work.c_str()) != 0)
            ::_exit(125);
        if ((request.fileSizeLimit >= 0 && ::setrlimit(RLIMIT_FSIZE, &fileSize) != 0) ||
            (limitMemory && ::setrlimit(RLIMIT_AS, &memory) != 0) ||
            (limits.cpuSeconds > 0 && ::setrlimit(RLIMIT_CPU, &cpu) != 0))
            ::_exit(125);
        if (limits.unprivileged &&
            (::setgroups(0, nullptr) != 0 || ::setgid(kNobody) != 0 || ::setuid(kNobody) != 0))
            ::_exit(126);
        ::execve(path.c_str(), argv, envp.data());
        ::_exit(127);
    }
    if (pid_ < 0) {
        ADD_FAILURE() << "fork: " << std::strerror(errno);
        return;
    }
    // A descriptor that becomes readable when the run ends wakes the waiter at once.
    pidfd_ = static_cast<int>(::syscall(SYS_pidfd_open, pid_, 0));
}

CgiProcess::~CgiProcess()
{
    if (pid_ > 0)
        kill();
    if (pidfd_ >= 0)
        ::close(pidfd_);
    std::error_code ignored;
    fs::remove_all(scratch_, ignored);
}

void CgiProcess::reap(int status)
{
    status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    pid_ = 0;
}

bool CgiProcess::ended()
{
    if (pid_ <= 0)
        return true;
    int status = 0;
    const pid_t done = ::waitpid(pid_, &status, WNOHANG);
    if (done == pid_) {
        reap(status);
        return true;
    }
    return false;
}

bool CgiProcess::wait(std::chrono::milliseconds limit)
{
    const auto deadline = std::chrono::steady_clock::now() + limit;
    auto nap = std::chrono::microseconds(200);
    while (!ended()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            timedOut_ = true;
            kill();
            return false;
        }
        if (pidfd_ >= 0) {
            const auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
            pollfd wake{pidfd_, POLLIN, 0};
            ::poll(&wake, 1, static_cast<int>(std::clamp<long long>(left.count() + 1, 1, 1000)));
            continue;
        }
        std::this_thread::sleep_for(nap);
        nap = std::min<std::chrono::microseconds>(nap * 2, std::chrono::milliseconds(20));
    }
    return true;
}

bool CgiProcess::kill()
{
    if (pid_ <= 0)
        return status_ != 128 + SIGKILL;
    // A run that ended but is not reaped yet keeps its pid, so the signal cannot reach
    // another process; its status says whether it ended before the signal.
    ::kill(pid_, SIGKILL);
    int status = 0;
    while (::waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
    }
    reap(status);
    return status_ != 128 + SIGKILL;
}

CgiResult CgiProcess::result() const
{
    CgiResult result;
    result.status = status_;
    result.out = cambioip_test::readFile(scratch_ / "stdout");
    result.err = cambioip_test::readFile(scratch_ / "stderr");
    // Nothing may be written to the working folder: every file goes under the root.
    std::error_code ignored;
    if (fs::exists(scratch_ / "cwd"))
        for (const auto &entry : fs::directory_iterator(scratch_ / "cwd", ignored))
            ADD_FAILURE() << "file written outside the root: " << entry.path();
    return result;
}

CgiResult runBounded(const TempRoot &root, const CgiRequest &request, std::chrono::milliseconds limit,
                     const Limits &limits, bool *timedOut)
{
    CgiProcess run(root, request, limits);
    run.wait(limit);
    if (timedOut != nullptr)
        *timedOut = run.timedOut();
    return run.result();
}

CgiRequest post(const std::string &body, int pauseMs)
{
    return {{{"REQUEST_METHOD", "POST"},
             {"CONTENT_LENGTH", std::to_string(body.size())},
             {"CAMBIOIP_LOAD_PAUSE_MS", std::to_string(pauseMs)}},
            body,
            ""};
}

CgiRequest get(const std::string &query) { return {{{"REQUEST_METHOD", "GET"}, {"QUERY_STRING", query}}, "", ""}; }

std::vector<std::string> temporaries(const TempRoot &root)
{
    std::vector<std::string> found;
    for (const auto &entry : fs::directory_iterator(root.config()))
        if (entry.path().filename().string().starts_with("."))
            found.push_back(entry.path().filename().string());
    return found;
}

void printFigures(const std::string &test, const std::vector<std::pair<std::string, long long>> &figures)
{
    std::string line = "[fault figures] " + test + (stressScale() ? " (stress):" : ":");
    for (size_t i = 0; i < figures.size(); ++i)
        line += (i == 0 ? " " : ", ") + figures[i].first + " " + std::to_string(figures[i].second);
    std::cout << line << std::endl;
}

namespace {
bool ownUserNamespace = false;
}  // namespace

bool inOwnUserNamespace() { return ownUserNamespace; }

std::string enterPrivateMounts()
{
    static const std::string reason = [] () -> std::string {
        if (::unshare(CLONE_NEWNS) != 0) {
            const int asRoot = errno;
            // Without the right to mount here, a user namespace of our own may give it.
            const uid_t uid = ::getuid();
            const gid_t gid = ::getgid();
            if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
                return std::string("no mount namespace: ") + std::strerror(asRoot) +
                       "; no user namespace either: " + std::strerror(errno);
            if (!writeAll("/proc/self/setgroups", "deny") ||
                !writeAll("/proc/self/uid_map", "0 " + std::to_string(uid) + " 1") ||
                !writeAll("/proc/self/gid_map", "0 " + std::to_string(gid) + " 1"))
                return "cannot map this user in a user namespace";
            ownUserNamespace = true;
        }
        if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
            return std::string("cannot make the mounts private: ") + std::strerror(errno);
        return "";
    }();
    return reason;
}

Mount Mount::tmpfs(const fs::path &where, const std::string &options)
{
    Mount made;
    made.where_ = where;
    if (::mount("tmpfs", where.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, options.c_str()) != 0)
        made.error_ = "mount tmpfs " + options + " on " + where.string() + ": " + std::strerror(errno);
    return made;
}

Mount Mount::readOnlyBind(const fs::path &where)
{
    Mount made;
    made.where_ = where;
    if (::mount(where.c_str(), where.c_str(), nullptr, MS_BIND, nullptr) != 0) {
        made.error_ = "bind " + where.string() + ": " + std::strerror(errno);
        return made;
    }
    if (::mount(nullptr, where.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) != 0) {
        made.error_ = "remount " + where.string() + " read-only: " + std::strerror(errno);
        ::umount2(where.c_str(), MNT_DETACH);
    }
    return made;
}

Mount::Mount(Mount &&other) noexcept : where_(std::move(other.where_)), error_(std::move(other.error_))
{
    other.where_.clear();
}

Mount::~Mount()
{
    if (!where_.empty() && error_.empty())
        ::umount2(where_.c_str(), MNT_DETACH);
}

long fillFileSystem(const fs::path &folder, bool inodes)
{
    // A small file system runs out long before these bounds.
    constexpr long kMaxFiles = 1 << 20;
    constexpr long kMaxWrites = 1 << 22;
    if (inodes) {
        for (long n = 0; n < kMaxFiles; ++n) {
            const std::string name = (folder / ("zz-filler-" + std::to_string(n))).string();
            Descriptor fd(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
            if (fd.fd < 0)
                return errno == ENOSPC ? n : -1;
        }
        return -1;
    }
    Descriptor fd(::open((folder / "zz-filler").c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
    if (fd.fd < 0)
        return -1;
    // Large pieces first, then down to single bytes, so that no block keeps room.
    const std::string piece(65536, 'f');
    long total = 0, writes = 0;
    for (size_t size = piece.size(); size >= 1; size /= 16) {
        while (writes++ < kMaxWrites) {
            const ssize_t written = ::write(fd.fd, piece.data(), size);
            if (written < 0) {
                if (errno != ENOSPC)
                    return -1;
                break;
            }
            total += written;
        }
        if (size == 1)
            return writes < kMaxWrites ? total : -1;
    }
    return -1;
}

}  // namespace cambioip_fault
