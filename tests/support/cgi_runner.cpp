#include "support/cgi_runner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <spawn.h>
#include <sstream>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace cambioip_test {


namespace {

fs::path makeTempDir(const char *tag)
{
    std::string pattern = (fs::temp_directory_path() / (std::string("cambioip-") + tag + "-XXXXXX")).string();
    if (mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("mkdtemp failed");
    return pattern;
}

}  // namespace

std::string readFile(const fs::path &path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
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

void TempRoot::copyRack(const std::string &name) const
{
    fs::copy(fs::path(CAMBIOIP_FIXTURES) / "racks" / name, root_,
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

CgiResult runCgi(const TempRoot &root, const CgiRequest &request)
{
    // CAMBIOIP_TEST_PROGRAM runs the cases against another build of the program, e.g. the
    // statically linked one that make install puts on the master.
    return runCgiProgram(testProgram(), root, request);
}

CgiResult runCgiProgram(const std::string &programPath, const TempRoot &root, const CgiRequest &request)
{
    fs::path scratch = makeTempDir("run");
    fs::path inPath = scratch / "stdin", outPath = scratch / "stdout", errPath = scratch / "stderr";
    {
        std::ofstream in(inPath, std::ios::binary);
        in << request.stdinData;
    }
    fs::path work = request.workingDir.empty() ? scratch / "cwd" : fs::path(request.workingDir);
    fs::create_directories(work);

    std::map<std::string, std::string> env = request.env;
    env.try_emplace("CAMBIOIP_ROOT", root.path().string());
    env.try_emplace("CAMBIOIP_LOAD_PAUSE_MS", "0");
    // Sanitizer reports must fail the run, and the runtime needs no symbolizer path.
    if (const char *asan = std::getenv("ASAN_OPTIONS"))
        env.try_emplace("ASAN_OPTIONS", asan);
    std::vector<std::string> envText;
    for (const auto &[name, value] : env)
        envText.push_back(name + "=" + value);
    std::vector<char *> envp;
    for (auto &text : envText)
        envp.push_back(text.data());
    envp.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, inPath.c_str(), O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 1, outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_addopen(&actions, 2, errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    posix_spawn_file_actions_addchdir_np(&actions, work.c_str());

    // CAMBIOIP_TEST_LAUNCHER is a command, split on blanks, that runs the program: an
    // emulator for a build of another machine, e.g. "qemu-arm -L /usr/arm-linux-gnueabihf".
    std::vector<std::string> words = testLauncher();
    const bool launched = !words.empty();
    words.push_back(programPath);
    std::vector<char *> argv;
    for (auto &word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    const std::string &program = words.front();
    pid_t pid = 0;
    CgiResult result;
    // The program inherits the file-size limit it is started with; ours is put back at once.
    rlimit ours{};
    getrlimit(RLIMIT_FSIZE, &ours);
    if (request.fileSizeLimit >= 0) {
        rlimit limited = ours;
        limited.rlim_cur = static_cast<rlim_t>(request.fileSizeLimit);
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    // A launcher is looked up in PATH, the program itself is started by its path.
    int rc = launched ? posix_spawnp(&pid, program.c_str(), &actions, nullptr, argv.data(), envp.data())
                      : posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), envp.data());
    setrlimit(RLIMIT_FSIZE, &ours);
    posix_spawn_file_actions_destroy(&actions);
    if (rc == 0) {
        int status = 0;
        waitpid(pid, &status, 0);
        result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    } else {
        ADD_FAILURE() << "cannot start " << program << ": " << std::strerror(rc);
    }
    result.out = readFile(outPath);
    result.err = readFile(errPath);
    if (request.workingDir.empty()) {
        // Nothing may be written to the working folder: every file goes under the root.
        for (const auto &entry : fs::directory_iterator(work))
            ADD_FAILURE() << "file written outside the root: " << entry.path();
    }
    std::error_code ignored;
    fs::remove_all(scratch, ignored);
    return result;
}

CgiResult runGet(const TempRoot &root, const std::string &query)
{
    return runCgi(root, {{{"REQUEST_METHOD", "GET"}, {"QUERY_STRING", query}}, "", ""});
}

CgiResult runPost(const TempRoot &root, const std::string &body)
{
    return runCgi(root, {{{"REQUEST_METHOD", "POST"}, {"CONTENT_LENGTH", std::to_string(body.size())}}, body, ""});
}

}  // namespace cambioip_test
