#include "support/cgi_runner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <grp.h>
#include <poll.h>
#include <sstream>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace cambioip_test {

namespace {

// The user the unprivileged runs take (nobody on Debian).
constexpr uid_t kNobody = 65534;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif

fs::path makeTempDir(const char *tag)
{
    std::string pattern = (fs::temp_directory_path() / (std::string("cambioip-") + tag + "-XXXXXX")).string();
    if (mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("mkdtemp failed");
    return pattern;
}

// The path of a command as the shell finds it in PATH.
std::string lookUp(const std::string &command)
{
    if (command.find('/') != std::string::npos)
        return command;
    std::istringstream folders(std::getenv("PATH") != nullptr ? std::getenv("PATH") : "/usr/bin:/bin");
    for (std::string folder; std::getline(folders, folder, ':');)
        if (const fs::path candidate = fs::path(folder.empty() ? "." : folder) / command;
            ::access(candidate.c_str(), X_OK) == 0)
            return candidate;
    return command;
}

}  // namespace

std::string readFile(const fs::path &path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

size_t occurrences(const std::string &text, const std::string &what)
{
    size_t found = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + what.size()))
        ++found;
    return found;
}

TempRoot::TempRoot() : root_(makeTempDir("root"))
{
    for (const char *dir : {"config", "upload", "root"})
        fs::create_directories(root_ / dir);
}

TempRoot::~TempRoot()
{
    std::error_code ignored;
    fs::remove_all(root_, ignored);
}

void TempRoot::copyConfig(const fs::path &fixtureDir) const
{
    fs::path source = fixtureDir.is_absolute() ? fixtureDir : fs::path(CAMBIOIP_FIXTURES) / fixtureDir;
    for (const auto &entry : fs::directory_iterator(source))
        if (entry.is_regular_file())
            fs::copy_file(entry.path(), config() / entry.path().filename(), fs::copy_options::overwrite_existing);
}

void TempRoot::copyRack(const std::string &name, const std::string &into) const
{
    fs::create_directories(root_ / into);
    fs::copy(fs::path(CAMBIOIP_FIXTURES) / "racks" / name, root_ / into,
             fs::copy_options::recursive | fs::copy_options::overwrite_existing);
}

void TempRoot::write(const std::string &relative, const std::string &content) const
{
    fs::path target = root_ / relative;
    fs::create_directories(target.parent_path());
    std::ofstream out(target, std::ios::binary | std::ios::trunc);
    out << content;
}

bool TempRoot::exists(const std::string &relative) const { return fs::exists(root_ / relative); }

std::string TempRoot::read(const std::string &relative) const { return readFile(root_ / relative); }

std::vector<std::string> TempRoot::listing() const
{
    std::vector<std::string> files;
    for (const auto &entry : fs::recursive_directory_iterator(root_))
        if (!entry.is_directory())
            files.push_back(entry.path().lexically_relative(root_).string());
    std::sort(files.begin(), files.end());
    return files;
}

std::string CgiResult::body() const
{
    return out.compare(0, kHeader.size(), kHeader) == 0 ? out.substr(kHeader.size()) : out;
}

std::vector<std::string> testLauncher()
{
    std::vector<std::string> words;
    if (const char *text = std::getenv("CAMBIOIP_TEST_LAUNCHER")) {
        std::istringstream in(text);
        for (std::string word; in >> word;)
            words.push_back(word);
    }
    return words;
}

std::string testProgram()
{
    const char *other = std::getenv("CAMBIOIP_TEST_PROGRAM");
    return other != nullptr && *other != '\0' ? other : CAMBIOIP_CGI;
}

CgiRequest getRequest(const std::string &query) { return {{{"REQUEST_METHOD", "GET"}, {"QUERY_STRING", query}}, "", ""}; }

CgiRequest postRequest(const std::string &body, int pauseMs)
{
    return {{{"REQUEST_METHOD", "POST"},
             {"CONTENT_LENGTH", std::to_string(body.size())},
             {"CAMBIOIP_LOAD_PAUSE_MS", std::to_string(pauseMs)}},
            body,
            ""};
}

CgiProcess::CgiProcess(const TempRoot &root, const CgiRequest &request)
    : scratch_(makeTempDir("run"))
{
    const fs::path inPath = scratch_ / "stdin", outPath = scratch_ / "stdout", errPath = scratch_ / "stderr";
    const fs::path work = request.workingDir.empty() ? scratch_ / "cwd" : fs::path(request.workingDir);
    std::ofstream(inPath, std::ios::binary) << request.stdinData;
    fs::create_directories(work);

    std::map<std::string, std::string> env = request.env;
    env.try_emplace("CAMBIOIP_ROOT", root.path().string());
    env.try_emplace("CAMBIOIP_LOAD_PAUSE_MS", "0");
    // Sanitizer reports must fail the run, and the runtime needs no symbolizer path. The
    // sanitizer's shadow memory rules out an address-space limit: its RSS limit bounds the run.
    std::string asan = std::getenv("ASAN_OPTIONS") != nullptr ? std::getenv("ASAN_OPTIONS") : "";
    if (kSanitized && request.memoryLimit > 0)
        asan += (asan.empty() ? "" : ":") + std::string("hard_rss_limit_mb=") +
                std::to_string(request.memoryLimit >> 20);
    if (!asan.empty())
        env.try_emplace("ASAN_OPTIONS", asan);
    std::vector<std::string> envText;
    for (const auto &[name, value] : env)
        envText.push_back(name + "=" + value);
    std::vector<char *> envp;
    for (auto &text : envText)
        envp.push_back(text.data());
    envp.push_back(nullptr);

    // CAMBIOIP_TEST_LAUNCHER is a command, split on blanks, that runs the program: an
    // emulator for a build of another machine, e.g. "qemu-arm -L /usr/arm-linux-gnueabihf".
    // A launcher is looked up in PATH here, since only async-signal-safe calls may follow fork.
    std::vector<std::string> words = testLauncher();
    words.push_back(testProgram());
    const std::string executable = words.size() > 1 ? lookUp(words.front()) : words.front();
    std::vector<char *> argv;
    for (auto &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    if (::access(executable.c_str(), X_OK) != 0) {
        ADD_FAILURE() << "cannot start " << words.front() << ": " << std::strerror(errno);
        return;
    }

    if (request.unprivileged) {
        // The run must reach its working folder; nothing lets it write there.
        const fs::perms reachable = fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec |
                                    fs::perms::others_read | fs::perms::others_exec;
        fs::permissions(scratch_, reachable);
        fs::permissions(work, reachable);
    }

    const Descriptor in(::open(inPath.c_str(), O_RDONLY | O_CLOEXEC));
    const Descriptor out(::open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
    const Descriptor err(::open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
    if (in.fd < 0 || out.fd < 0 || err.fd < 0) {
        ADD_FAILURE() << "cannot open the run's standard streams in " << scratch_;
        return;
    }
    const auto bound = [](long value, long extra = 0) {
        return rlimit{static_cast<rlim_t>(value), static_cast<rlim_t>(value + extra)};
    };
    const rlimit fileSize = bound(request.fileSizeLimit), memory = bound(request.memoryLimit),
                 cpu = bound(request.cpuSeconds, 1);
    const bool limitMemory = request.memoryLimit > 0 && !kSanitized;

    pid_ = ::fork();
    if (pid_ == 0) {
        // Only async-signal-safe calls between fork and exec: other threads may run saves too.
        if (::dup2(in.fd, 0) < 0 || ::dup2(out.fd, 1) < 0 || ::dup2(err.fd, 2) < 0 || ::chdir(work.c_str()) != 0)
            ::_exit(125);
        if ((request.fileSizeLimit >= 0 && ::setrlimit(RLIMIT_FSIZE, &fileSize) != 0) ||
            (limitMemory && ::setrlimit(RLIMIT_AS, &memory) != 0) ||
            (request.cpuSeconds > 0 && ::setrlimit(RLIMIT_CPU, &cpu) != 0))
            ::_exit(125);
        if (request.unprivileged &&
            (::setgroups(0, nullptr) != 0 || ::setgid(kNobody) != 0 || ::setuid(kNobody) != 0))
            ::_exit(126);
        ::execve(executable.c_str(), argv.data(), envp.data());
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
    if (::waitpid(pid_, &status, WNOHANG) != pid_)
        return false;
    reap(status);
    return true;
}

bool CgiProcess::wait(std::optional<std::chrono::milliseconds> limit)
{
    if (!limit) {
        int status = 0;
        while (pid_ > 0 && ::waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
        }
        if (pid_ > 0)
            reap(status);
        return true;
    }
    const auto deadline = std::chrono::steady_clock::now() + *limit;
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
    result.timedOut = timedOut_;
    result.out = readFile(scratch_ / "stdout");
    result.err = readFile(scratch_ / "stderr");
    // Nothing may be written to the working folder: every file goes under the root.
    std::error_code ignored;
    if (fs::exists(scratch_ / "cwd"))
        for (const auto &entry : fs::directory_iterator(scratch_ / "cwd", ignored))
            ADD_FAILURE() << "file written outside the root: " << entry.path();
    return result;
}

CgiResult runCgi(const TempRoot &root, const CgiRequest &request, std::optional<std::chrono::milliseconds> limit)
{
    CgiProcess run(root, request);
    run.wait(limit);
    return run.result();
}

CgiResult runGet(const TempRoot &root, const std::string &query) { return runCgi(root, getRequest(query)); }

CgiResult runPost(const TempRoot &root, const std::string &body) { return runCgi(root, postRequest(body)); }

}  // namespace cambioip_test
