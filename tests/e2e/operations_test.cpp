// The unit operations through the real cambioIP.cgi: the firmware-update list (command 23),
// the set-top-box scripts (command 27) and the watermarking settings (command 26).
#include "rack.h"

#include <cctype>
#include <cstdio>
#include <optional>
#include <sys/stat.h>

using namespace cambioip_test;

namespace {

const std::string kBadParameter = "<br><h2><center><strong> ERROR! Parametro incorrecto!!!</strong></center></h2>\n";
const std::string kBadStb = "<br><h2><center><strong> ERROR! Invalid Remote STB Command!.<br> please select a valid "
                            "commands and retry!</strong></center></h2>\n";
const std::string kOk = "Answer from STB: ok  <br>\nCommand Issued successfully!<br>\n";
const std::string kTune = "command=27&comandostb=1&stbip=10.0.0.99&mchnstb=7";
const std::string kTuned = "Tuning STB at IP 10.0.0.99 to major channel 7 <br>\n";

std::string urlEncode(const std::string &text)
{
    std::string out;
    for (unsigned char c : text) {
        char hex[4];
        std::snprintf(hex, sizeof hex, "%%%02X", c);
        out += std::isalnum(c) ? std::string(1, static_cast<char>(c)) : std::string(hex);
    }
    return out;
}

mode_t modeOf(const fs::path &file)
{
    struct stat st {};
    stat(file.c_str(), &st);
    return st.st_mode & 0777;
}

class Operations : public ::testing::Test {
  protected:
    void SetUp() override { copyDemo(root_); }
    // A stand-in script in root/: it keeps each argument in a file of its own (newlines
    // stay visible), prints to stdout and stderr (which must not reach the page), leaves
    // the answer in its result file (none: no file) and exits with the code.
    void script(const std::string &name, const std::string &result, const std::string &answer, int code = 0)
    {
        std::string text = "#!/bin/sh\nd=$(dirname \"$0\")\nn=0\necho SCRIPT-OUT; echo SCRIPT-ERR >&2\n"
                           "for a in \"$@\"; do n=$((n+1)); printf '%s' \"$a\" > \"$d/" + name + ".arg$n\"; done\n"
                           "echo $n > \"$d/" + name + ".argc\"\n";
        if (!answer.empty())
            text += "echo '" + answer + "' > \"$d/" + result + "\"\n";
        root_.write("root/" + name, text + "exit " + std::to_string(code) + "\n");
        fs::permissions(root_.path() / "root" / name, fs::perms::owner_all);
    }
    // The arguments the script received; nothing when it did not run.
    std::optional<std::vector<std::string>> argv(const std::string &name) const
    {
        if (!root_.exists("root/" + name + ".argc"))
            return std::nullopt;
        std::vector<std::string> args;
        for (int i = 1, n = std::stoi(root_.read("root/" + name + ".argc")); i <= n; ++i)
            args.push_back(root_.read("root/" + name + ".arg" + std::to_string(i)));
        return args;
    }
    std::string page(const std::string &query, const std::string &cwd = "")
    {
        CgiResult r = runCgi(root_, {{{"REQUEST_METHOD", "GET"}, {"QUERY_STRING", query}}, "", cwd});
        expectCleanRun(r);
        EXPECT_EQ(r.err.find("SCRIPT-ERR"), std::string::npos);
        return r.body();
    }
    TempRoot root_;
};

// --- firmware update list: {sufijo, drop the unit's id, page text, line added} ----

using UpdateCase = std::tuple<std::string, bool, std::string, std::string>;
class UpdateList : public Operations, public ::testing::WithParamInterface<UpdateCase> {};

TEST_P(UpdateList, AppendsTheUnitWhoseDocumentExists)
{
    const auto &[sufijo, dropId, said, added] = GetParam();
    const std::string list = "upload/listupdate.prg", before = "network.010.000.000.022\n";
    root_.write(list, before);
    if (dropId)
        editFile(root_, "config/network.010.000.000.031.xml", "<IDUNIT>ENC-HEAD-04</IDUNIT>", "");
    EXPECT_EQ(page("command=23&sufijo=" + urlEncode(sufijo)), kOpen + said + kClose);
    EXPECT_EQ(root_.read(list), before + added);
    EXPECT_TRUE(added.empty() || modeOf(root_.path() / list) == 0666u);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, UpdateList,
    ::testing::Values(
        UpdateCase{"", false, "Programming update for this unit (id: ENC-HEAD-01)<br>\n", "network\n"},
        UpdateCase{"010.000.000.021", false, "Programming update for unit with id ENC-HEAD-02<br>\n",
                   "network.010.000.000.021\n"},
        UpdateCase{"010.000.000.031", true, "Programming update for unit with id unknown<br>\n",
                   "network.010.000.000.031\n"},
        UpdateCase{"010.000.000.099", false, "<br>ERROR! Unable to save changes for id '010.000.000.099'. \n", ""},
        UpdateCase{"x/../../network.010.000.000.021<b>", false,
                   "<br>ERROR! Unable to save changes for id 'x/../../network.010.000.000.021&lt;b&gt;'. \n", ""}));

TEST_F(Operations, UpdateShowsAnIdentifierThatFillsTheReadWhole)
{
    // The store copies an identifier of exactly 40 bytes without a terminator.
    const std::string id(40, 'I');
    editFile(root_, "config/network.010.000.000.021.xml", "<IDUNIT>ENC-HEAD-02</IDUNIT>", "<IDUNIT>" + id + "</IDUNIT>");
    EXPECT_EQ(page("command=23&sufijo=010.000.000.021"), kOpen + "Programming update for unit with id " + id + "<br>\n" + kClose);
}

// --- set-top-box commands: {query, page text, script that runs (empty: none), its argv} ---

using StbCase = std::tuple<std::string, std::string, std::string, std::vector<std::string>>;
class StbCommands : public Operations, public ::testing::WithParamInterface<StbCase> {};

TEST_P(StbCommands, RunTheRightScriptWithItsArgumentsOrNone)
{
    const auto &[query, said, ran, args] = GetParam();
    script("tune_stb.sh", "tune_result", "ok");
    script("remotekey_stb.sh", "remotekey_result", "ok");
    EXPECT_EQ(page("command=27&stbip=10.0.0.99&" + query), kOpen + said + kClose);
    for (const char *name : {"tune_stb.sh", "remotekey_stb.sh"})
        EXPECT_EQ(argv(name), ran == name ? std::optional(args) : std::nullopt) << name;
}

const std::string kIp = "10.0.0.99";
INSTANTIATE_TEST_SUITE_P(
    Cases, StbCommands,
    ::testing::Values(
        StbCase{"comandostb=1&mchnstb=7", kTuned + kOk, "tune_stb.sh", {"7", kIp}},
        StbCase{"comandostb=2", "Powering ON STB at IP 10.0.0.99<br>\n" + kOk, "remotekey_stb.sh", {"poweron", "2", kIp}},
        StbCase{"comandostb=3", "Powering OFF STB at IP 10.0.0.99<br>\n" + kOk, "remotekey_stb.sh", {"poweroff", "2", kIp}},
        StbCase{"comandostb=5&stbkey=1&stbkeyop=1", "Sending Remote key 'power' to STB at IP 10.0.0.99<br>\n" + kOk,
                "remotekey_stb.sh", {"power", "0", kIp}},
        StbCase{"comandostb=5&stbkey=43&stbkeyop=3", "Sending Remote key 'enter' to STB at IP 10.0.0.99<br>\n" + kOk,
                "remotekey_stb.sh", {"enter", "2", kIp}},
        StbCase{"comandostb=5&stbkey=44&stbkeyop=1", kBadParameter, "", {}},
        StbCase{"comandostb=5&stbkey=1&stbkeyop=0", kBadParameter, "", {}},
        StbCase{"comandostb=5&stbkey=1&stbkeyop=4", kBadParameter, "", {}},
        StbCase{"comandostb=4", "Sending Reset to STB at IP 10.0.0.99<br>\n" + kBadStb, "", {}},
        StbCase{"comandostb=6", kBadStb, "", {}},
        StbCase{"stbip=&comandostb=1", "", "", {}}));

TEST_F(Operations, TheScriptsOutcomeDecidesTheLastLine)
{
    script("tune_stb.sh", "tune_result", "");
    EXPECT_EQ(page(kTune), kOpen + kTuned +
                               "No answer from STB, command execution Failed, Check STB status and/or IP.<br>\n" + kClose);
    const std::string failed = "Answer from STB: &lt;b&gt;busy&lt;/b&gt;  <br>\nCommand Issued but failed!<br>\n";
    script("tune_stb.sh", "tune_result", "<b>busy</b>", 3);
    EXPECT_EQ(page(kTune), kOpen + kTuned + failed + kClose);
    // A script that cannot start fails too; the earlier answer is still shown.
    fs::remove(root_.path() / "root/tune_stb.sh");
    EXPECT_EQ(page(kTune), kOpen + kTuned + failed + kClose);
}

class StbInjection : public Operations, public ::testing::WithParamInterface<std::string> {};

TEST_P(StbInjection, ValuesAreSingleArgumentsAndNeverCommands)
{
    const std::string &v = GetParam();
    script("tune_stb.sh", "tune_result", "ok");
    script("remotekey_stb.sh", "remotekey_result", "ok");
    TempRoot cwd;
    const std::string body = page("command=27&comandostb=1&stbip=" + urlEncode(v) + "&mchnstb=" + urlEncode(v),
                                  cwd.path().string());
    EXPECT_EQ(argv("tune_stb.sh"), (std::vector<std::string>{v, v}));
    EXPECT_EQ(body.find("<i>"), std::string::npos) << body;
    page("command=27&comandostb=5&stbkey=12&stbkeyop=2&stbip=" + urlEncode(v), cwd.path().string());
    EXPECT_EQ(argv("remotekey_stb.sh"), (std::vector<std::string>{"play", "1", v}));
    for (const fs::path &dir : {root_.path(), cwd.path()})
        for (const auto &entry : fs::recursive_directory_iterator(dir))
            EXPECT_NE(entry.path().filename(), "PWNED") << entry.path();
}

INSTANTIATE_TEST_SUITE_P(Values, StbInjection,
                         ::testing::Values("x; touch PWNED", "x | touch PWNED", "x && touch PWNED", "$(touch PWNED)",
                                           "`touch PWNED`", "x\ntouch PWNED", "$(touch \"$CAMBIOIP_ROOT/PWNED\")",
                                           "' \" ; touch PWNED #<i>", "10.0.0.99 touch PWNED"));

// --- watermarking test ------------------------------------------------------------

TEST_F(Operations, WatermarkKeepsOnlyTheLastCompletePair)
{
    const std::string file = "config/watermarkingdata.conf";
    root_.write(file, "old\n");
    for (const char *incomplete : {"modo=2", "waterserial=9", "modo=&waterserial=9"})
        EXPECT_EQ(page(std::string("command=26&") + incomplete), kOpen + kClose);
    EXPECT_EQ(root_.read(file), "old\n");
    page("command=26&modo=1&waterserial=A%26B+C");
    EXPECT_EQ(root_.read(file), "1\nA&B C\n");
    page("command=26&waterserial=222&modo=2");
    EXPECT_EQ(root_.read(file), "2\n222\n");
    EXPECT_EQ(modeOf(root_.path() / file), 0666u);
}

}  // namespace
