// Golden cases: each tests/golden/cases/<group>/<name>.case is one request on one rack,
// run with the real cambioIP.cgi in a fresh temporary root. Beside it, <name>.out is the
// whole standard output it must print, <name>.err its standard error (when it prints
// any), <name>.files/ every file the request created or changed, as it must be after it,
// and <name>.removed the files it removed, one per line. Everything is compared byte for
// byte; a difference is shown as a unified diff.
//
// Run with case files as arguments it runs those, without any it runs every case.
// GOLDEN_UPDATE=1 (make golden) rewrites the expected files from what the program does
// now, so that a deliberate change of a page or a saved document is reviewed in the diff.
//
// A case file holds one directive per line ('#' starts a comment):
//   rack: <name>             copies tests/fixtures/racks/<name> into the root
//   method: GET|POST|<text>|none   REQUEST_METHOD (GET when absent; none leaves it unset)
//   form: <text>             the form text; several lines are joined with '&'; sent as
//                            QUERY_STRING for GET and as the body for any other method
//   length: <text>|none      CONTENT_LENGTH instead of the body's length
//   env: NAME=value          one more variable of the request's environment
//   file: <path>             an empty file under the root
//   file: <path> = <text>    a file holding the text (\n, \t and \\ are decoded)
//   copy: <path> < <fixture> a copy of a file of tests/fixtures
//   dir: <path>              an empty folder under the root
//   remove: <path>           removes a file or folder of the rack before the request
//   fsize: <bytes>           the largest file the program may write (a full disk)
#include "support/cgi_runner.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string_view>
#include <unistd.h>

using namespace cambioip_test;

namespace {

const fs::path kCases = fs::path(CAMBIOIP_SOURCE_DIR) / "tests/golden/cases";
const fs::path kRacks = fs::path(CAMBIOIP_FIXTURES) / "racks";

struct Case {
    std::string rack;
    std::string method = "GET";
    std::vector<std::string> form;
    bool hasForm = false;
    std::string length;
    std::vector<std::pair<std::string, std::string>> env;
    std::vector<std::pair<std::string, std::string>> files;   // path, content
    std::vector<std::pair<std::string, std::string>> copies;  // path, fixture
    std::vector<std::string> folders;
    std::vector<std::string> removals;
    long fileSizeLimit = -1;
};

std::string trim(const std::string &text)
{
    const auto first = text.find_first_not_of(" \t");
    const auto last = text.find_last_not_of(" \t\r");
    return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

std::string unescape(const std::string &text)
{
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            out += text[i];
            continue;
        }
        const char next = text[++i];
        out += next == 'n' ? '\n' : next == 't' ? '\t' : next;
    }
    return out;
}

// Splits "<left> <sep> <right>" at the first separator surrounded by blanks.
std::pair<std::string, std::string> split(const std::string &text, const std::string &sep)
{
    const auto at = text.find(" " + sep + " ");
    if (at == std::string::npos)
        return {trim(text), ""};
    return {trim(text.substr(0, at)), text.substr(at + sep.size() + 2)};
}

Case parseCase(const fs::path &file)
{
    Case c;
    std::istringstream in(readFile(file));
    std::string line;
    int number = 0;
    while (std::getline(in, line)) {
        ++number;
        if (trim(line).empty() || trim(line)[0] == '#')
            continue;
        const auto colon = line.find(':');
        if (colon == std::string::npos)
            throw std::runtime_error(file.string() + ":" + std::to_string(number) + ": no directive");
        const std::string key = trim(line.substr(0, colon));
        const std::string value = line.substr(colon + 1).starts_with(' ') ? line.substr(colon + 2) : line.substr(colon + 1);
        if (key == "rack") {
            c.rack = trim(value);
        } else if (key == "method") {
            c.method = trim(value);
        } else if (key == "form") {
            c.form.push_back(value);
            c.hasForm = true;
        } else if (key == "length") {
            c.length = trim(value);
        } else if (key == "env") {
            const auto eq = value.find('=');
            c.env.emplace_back(trim(value.substr(0, eq)), eq == std::string::npos ? "" : value.substr(eq + 1));
        } else if (key == "file") {
            auto [path, text] = split(value, "=");
            c.files.emplace_back(path, unescape(text));
        } else if (key == "copy") {
            c.copies.push_back(split(value, "<"));
        } else if (key == "dir") {
            c.folders.push_back(trim(value));
        } else if (key == "fsize") {
            c.fileSizeLimit = std::stol(value);
        } else if (key == "remove") {
            c.removals.push_back(trim(value));
        } else {
            throw std::runtime_error(file.string() + ":" + std::to_string(number) + ": unknown directive " + key);
        }
    }
    return c;
}

// Every file below the root with its content.
std::map<std::string, std::string> snapshot(const TempRoot &root)
{
    std::map<std::string, std::string> files;
    for (const std::string &relative : root.listing())
        files[relative] = root.read(relative);
    return files;
}

// The temporary root's path and the time stamps of the log lines never reach an expected
// file: they differ from run to run.
std::string normalise(std::string text, const TempRoot &root)
{
    const std::string path = root.path().string();
    for (auto at = text.find(path); at != std::string::npos; at = text.find(path, at))
        text.replace(at, path.size(), "$ROOT");
    static const std::regex stamp(R"(\[[0-9]+:[0-9]{2}:[0-9]{2}\])");
    return std::regex_replace(text, stamp, "[TIME]");
}

std::string unifiedDiff(const std::string &expected, const std::string &actual, const std::string &label)
{
    TempRoot scratch;
    scratch.write("expected", expected);
    scratch.write("actual", actual);
    const std::string command = "diff -u --label 'expected " + label + "' --label 'actual " + label + "' '" +
                                (scratch.path() / "expected").string() + "' '" + (scratch.path() / "actual").string() +
                                "' 2>&1";
    std::string out;
    if (FILE *pipe = popen(command.c_str(), "r")) {
        char buffer[4096];
        while (std::size_t n = fread(buffer, 1, sizeof buffer, pipe))
            out.append(buffer, n);
        pclose(pipe);
    }
    return out;
}

void writeExpected(const fs::path &path, const std::string &content)
{
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary | std::ios::trunc) << content;
}

// What a case must leave: file name (relative to the case's folder) -> content.
std::map<std::string, std::string> expectedFiles(const fs::path &stem)
{
    std::map<std::string, std::string> files;
    const std::string name = stem.filename().string();
    for (const char *suffix : {".out", ".err", ".removed"})
        if (fs::exists(stem.string() + suffix))
            files[name + suffix] = readFile(stem.string() + suffix);
    const fs::path dir = stem.string() + ".files";
    if (fs::exists(dir))
        for (const auto &entry : fs::recursive_directory_iterator(dir))
            if (!entry.is_directory())
                files[name + ".files/" + fs::relative(entry.path(), dir).string()] = readFile(entry.path());
    return files;
}

std::string caseName(const fs::path &file)
{
    std::string name = fs::relative(file, kCases).replace_extension().string();
    std::replace_if(name.begin(), name.end(), [](char ch) { return !std::isalnum(static_cast<unsigned char>(ch)); }, '_');
    return name;
}

// The cases named on the command line, or every case.
std::vector<fs::path> chosenCases;

std::vector<fs::path> allCases()
{
    if (!chosenCases.empty())
        return chosenCases;
    std::vector<fs::path> cases;
    if (fs::exists(kCases))
        for (const auto &entry : fs::recursive_directory_iterator(kCases))
            if (entry.path().extension() == ".case")
                cases.push_back(entry.path());
    std::sort(cases.begin(), cases.end());
    return cases;
}

class Golden : public ::testing::TestWithParam<fs::path> {};

TEST_P(Golden, AnswersAndFilesMatch)
{
    const fs::path caseFile = GetParam();
    const Case c = parseCase(caseFile);
    TempRoot root;
    if (!c.rack.empty()) {
        ASSERT_TRUE(fs::is_directory(kRacks / c.rack)) << "no rack " << c.rack;
        root.copyRack(c.rack);
    }
    for (const auto &[path, fixture] : c.copies) {
        ASSERT_TRUE(fs::exists(fs::path(CAMBIOIP_FIXTURES) / fixture)) << "no fixture " << fixture;
        root.write(path, readFile(fs::path(CAMBIOIP_FIXTURES) / fixture));
    }
    for (const auto &[path, text] : c.files)
        root.write(path, text);
    for (const std::string &path : c.folders)
        fs::create_directories(root.path() / path);
    for (const std::string &path : c.removals)
        ASSERT_GT(fs::remove_all(root.path() / path), 0u) << "nothing to remove at " << path;

    CgiRequest request;
    std::string form;
    for (const std::string &part : c.form)
        form += (form.empty() ? "" : "&") + part;
    if (c.method != "none")
        request.env["REQUEST_METHOD"] = c.method;
    if (c.method == "GET") {
        if (c.hasForm)
            request.env["QUERY_STRING"] = form;
    } else {
        request.stdinData = form;
        if (c.length != "none")
            request.env["CONTENT_LENGTH"] = c.length.empty() ? std::to_string(form.size()) : c.length;
    }
    for (const auto &[name, value] : c.env)
        request.env[name] = value;
    request.fileSizeLimit = c.fileSizeLimit;

    const auto before = snapshot(root);
    const CgiResult result = runCgi(root, request);
    const auto after = snapshot(root);
    EXPECT_EQ(result.status, 0) << "the program always exits with status 0";

    // What the request left, in the layout of the expected files.
    const fs::path stem = caseFile.parent_path() / caseFile.stem();
    const std::string name = stem.filename().string();
    std::map<std::string, std::string> actual;
    actual[name + ".out"] = normalise(result.out, root);
    if (!result.err.empty())
        actual[name + ".err"] = normalise(result.err, root);
    std::string removed;
    for (const auto &[path, content] : before)
        if (!after.contains(path))
            removed += path + "\n";
    if (!removed.empty())
        actual[name + ".removed"] = removed;
    for (const auto &[path, content] : after) {
        const auto old = before.find(path);
        if (old == before.end() || old->second != content)
            actual[name + ".files/" + path] = normalise(content, root);
    }

    if (std::getenv("GOLDEN_UPDATE") != nullptr && std::string(std::getenv("GOLDEN_UPDATE")) == "1") {
        for (const auto &[file, content] : expectedFiles(stem))
            if (!actual.contains(file))
                fs::remove(caseFile.parent_path() / file);
        fs::remove_all(stem.string() + ".files");
        for (const auto &[file, content] : actual)
            writeExpected(caseFile.parent_path() / file, content);
        return;
    }

    const auto expected = expectedFiles(stem);
    std::set<std::string> names;
    for (const auto &[file, content] : expected)
        names.insert(file);
    for (const auto &[file, content] : actual)
        names.insert(file);
    for (const std::string &file : names) {
        const auto e = expected.find(file);
        const auto a = actual.find(file);
        if (e == expected.end())
            ADD_FAILURE() << file << " is not expected, the request produced:\n" << a->second;
        else if (a == actual.end())
            ADD_FAILURE() << file << " is expected, the request did not produce it";
        else if (e->second != a->second)
            ADD_FAILURE() << file << " differs:\n" << unifiedDiff(e->second, a->second, file);
    }
}

INSTANTIATE_TEST_SUITE_P(Cases, Golden, ::testing::ValuesIn(allCases()),
                         [](const ::testing::TestParamInfo<fs::path> &info) { return caseName(info.param); });

}  // namespace

int main(int argc, char **argv)
{
    for (int i = 1; i < argc; ++i)
        if (!std::string_view(argv[i]).starts_with("--gtest"))
            chosenCases.push_back(fs::absolute(argv[i]));
    ::testing::InitGoogleTest(&argc, argv);
    // Which build answered the cases is part of the result (CAMBIOIP_TEST_PROGRAM and
    // CAMBIOIP_TEST_LAUNCHER choose another one). No case, or a program that is not there,
    // fails the run before any expected file could be compared or rewritten.
    std::string command;
    for (const std::string &word : testLauncher())
        command += word + " ";
    const std::string program = testProgram();
    command += program;
    std::cout << "golden: " << allCases().size() << " cases, program: " << command << std::endl;
    if (allCases().empty()) {
        std::cerr << "golden: no case in " << kCases.string() << std::endl;
        return 1;
    }
    if (access(program.c_str(), X_OK) != 0) {
        std::cerr << "golden: cannot run " << program << ": " << std::strerror(errno) << std::endl;
        return 1;
    }
    return RUN_ALL_TESTS();
}
