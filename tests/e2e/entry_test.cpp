// Request entry through the real cambioIP.cgi: header, wrapper, command search,
// page-lock protocol, request methods and hostile input.
#include "support/cgi_runner.h"

#include <gtest/gtest.h>

using namespace cambioip_test;

namespace {

const std::string kOpen = "<html><head></head><body>\n";
const std::string kClose = "</body></html>\n";
const std::string kUnknown =
    "<h2><center><strong> ERROR! command unknown.<br> please contact technical support.</strong></center></h2>\n";
const std::string kUnknownPage = kHeader + kOpen + kUnknown + kClose;

void expectClean(const CgiResult &r)
{
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out.compare(0, kHeader.size(), kHeader), 0) << "header must come first";
    EXPECT_EQ(r.err.find("AddressSanitizer"), std::string::npos) << r.err;
    EXPECT_EQ(r.err.find("runtime error"), std::string::npos) << r.err;
    EXPECT_EQ(r.err.find("LeakSanitizer"), std::string::npos) << r.err;
}

// --- unknown commands -----------------------------------------------------------

class UnknownCommand : public ::testing::TestWithParam<std::string> {};

TEST_P(UnknownCommand, AnswersTheUnknownMessageInsideTheWrapper)
{
    TempRoot root;
    CgiResult r = runGet(root, GetParam());
    expectClean(r);
    EXPECT_EQ(r.out, kUnknownPage);
    EXPECT_FALSE(root.exists("config/web.lock"));
}

INSTANTIATE_TEST_SUITE_P(Values, UnknownCommand,
                         ::testing::Values("command=0", "command=-1", "command=-5", "command=7", "command=8",
                                           "command=9", "command=18", "command=19", "command=31", "command=32",
                                           "command=255", "command=4294967301", "command=abc", "command=",
                                           "name=command&command=5", "x=1", ""));

TEST(RequestEntry, NoFormTextAtAllIsUnknown)
{
    TempRoot root;
    CgiResult r = runCgi(root, {});
    expectClean(r);
    EXPECT_EQ(r.out, kUnknownPage);
}

// --- the command search ----------------------------------------------------------

struct Search {
    const char *query;
    bool locks;  // selects command 5
};

class CommandSearch : public ::testing::TestWithParam<Search> {};

TEST_P(CommandSearch, FindsTheFirstOccurrenceAnywhere)
{
    TempRoot root;
    CgiResult r = runGet(root, GetParam().query);
    expectClean(r);
    if (GetParam().locks) {
        EXPECT_EQ(r.out, kHeader + "0");
        EXPECT_TRUE(root.exists("config/web.lock"));
    } else {
        EXPECT_EQ(r.out, kUnknownPage);
    }
}

INSTANTIATE_TEST_SUITE_P(Quirks, CommandSearch,
                         ::testing::Values(Search{"command=5", true}, Search{"x=1&command=5", true},
                                           Search{"command=5&x=1", true}, Search{"mycommand=5", true},
                                           Search{"command=005", true}, Search{"command=5x", true},
                                           Search{"command=%35", true}, Search{"command=+5", true},
                                           Search{"name=command&command=5", false},
                                           Search{"command=abc&command=5", false}));

// --- page lock -------------------------------------------------------------------

struct LockCase {
    const char *present;  // lock file present before the request, or ""
    const char *answer;
    bool webLockAfter;
};

class LockRequest : public ::testing::TestWithParam<LockCase> {};

TEST_P(LockRequest, AnswersOneCharacterWithoutWrapper)
{
    TempRoot root;
    if (*GetParam().present)
        root.write(std::string("config/") + GetParam().present, "");
    CgiResult r = runGet(root, "command=5");
    expectClean(r);
    EXPECT_EQ(r.out, kHeader + GetParam().answer);
    EXPECT_EQ(root.exists("config/web.lock"), GetParam().webLockAfter);
}

INSTANTIATE_TEST_SUITE_P(LockFiles, LockRequest,
                         ::testing::Values(LockCase{"", "0", true}, LockCase{"control.lock", "1", false},
                                           LockCase{"command.msg", "1", false}, LockCase{"HBK.lock", "1", false},
                                           LockCase{"web.lock", "0", true}));

TEST(PageLock, TakingAnExistingWebLockTruncatesIt)
{
    TempRoot root;
    root.write("config/web.lock", "stale");
    EXPECT_EQ(runGet(root, "command=5").out, kHeader + "0");
    EXPECT_EQ(root.read("config/web.lock"), "");
}

TEST(PageLock, WebLockThatCannotBeCreatedAnswersOne)
{
    TempRoot root;
    std::filesystem::create_directory(root.config() / "web.lock");
    EXPECT_EQ(runGet(root, "command=5").out, kHeader + "1");
}

TEST(PageLock, NoConfigDirectoryAnswersOne)
{
    TempRoot root;
    std::filesystem::remove_all(root.config());
    EXPECT_EQ(runGet(root, "command=5").out, kHeader + "1");
}

TEST(PageLock, UnlockAlwaysAnswersZero)
{
    for (bool held : {true, false}) {
        TempRoot root;
        if (held)
            root.write("config/web.lock", "");
        root.write("config/HBK.lock", "");
        CgiResult r = runGet(root, "command=6");
        expectClean(r);
        EXPECT_EQ(r.out, kHeader + "0");
        EXPECT_FALSE(root.exists("config/web.lock"));
        EXPECT_TRUE(root.exists("config/HBK.lock")) << "only the web lock is released";
    }
}

TEST(PageLock, LockThenUnlock)
{
    TempRoot root;
    EXPECT_EQ(runPost(root, "command=5").out, kHeader + "0");
    EXPECT_TRUE(root.exists("config/web.lock"));
    EXPECT_EQ(runPost(root, "command=6").out, kHeader + "0");
    EXPECT_FALSE(root.exists("config/web.lock"));
}

// --- request methods -------------------------------------------------------------

struct MethodCase {
    const char *name;
    std::map<std::string, std::string> env;
    std::string body;
    const char *expectedOut;  // nullptr: the unknown page
    const char *expectedErr;  // substring of standard error, or ""
};

class Method : public ::testing::TestWithParam<MethodCase> {};

TEST_P(Method, ReadsTheFormTextOfItsKind)
{
    TempRoot root;
    const MethodCase &c = GetParam();
    CgiResult r = runCgi(root, {c.env, c.body, ""});
    expectClean(r);
    EXPECT_EQ(r.out, c.expectedOut ? kHeader + c.expectedOut : kUnknownPage);
    if (*c.expectedErr)
        EXPECT_NE(r.err.find(c.expectedErr), std::string::npos) << r.err;
    else
        EXPECT_EQ(r.err, "");
}

const std::string kTenMiB = std::to_string(10L * 1024 * 1024);

INSTANTIATE_TEST_SUITE_P(
    Kinds, Method,
    ::testing::Values(
        MethodCase{"Get", {{"REQUEST_METHOD", "GET"}, {"QUERY_STRING", "command=5"}}, "", "0", ""},
        MethodCase{"GetWithoutQuery", {{"REQUEST_METHOD", "GET"}}, "", nullptr, ""},
        MethodCase{"GetIgnoresBody", {{"REQUEST_METHOD", "GET"}, {"QUERY_STRING", "x=1"}}, "command=5", nullptr, ""},
        MethodCase{"Post", {{"REQUEST_METHOD", "POST"}, {"CONTENT_LENGTH", "9"}}, "command=5", "0", ""},
        MethodCase{"PostIgnoresQuery",
                   {{"REQUEST_METHOD", "POST"}, {"CONTENT_LENGTH", "3"}, {"QUERY_STRING", "command=5"}},
                   "x=1", nullptr, ""},
        MethodCase{"PostReadsOnlyTheAnnouncedLength", {{"REQUEST_METHOD", "POST"}, {"CONTENT_LENGTH", "9"}},
                   "command=6&command=5", "0", ""},
        MethodCase{"PostLengthZero", {{"REQUEST_METHOD", "POST"}, {"CONTENT_LENGTH", "0"}}, "command=5", nullptr, ""},
        MethodCase{"ShortPostStillUsed", {{"REQUEST_METHOD", "POST"}, {"CONTENT_LENGTH", "10"}}, "command=5", "0",
                   "proccgi -- error reading post data, 9 bytes read, 10 expedted\n"},
        MethodCase{"ShortPost3of10", {{"REQUEST_METHOD", "POST"}, {"CONTENT_LENGTH", "10"}}, "com", nullptr,
                   "proccgi -- error reading post data, 3 bytes read, 10 expedted\n"},
        MethodCase{"PostWithoutLength", {{"REQUEST_METHOD", "POST"}}, "command=5", nullptr, "CONTENT_LENGTH"},
        MethodCase{"PostEmptyLength", {{"REQUEST_METHOD", "POST"}, {"CONTENT_LENGTH", ""}}, "command=5", nullptr,
                   "CONTENT_LENGTH"},
        MethodCase{"PostNegativeLength", {{"REQUEST_METHOD", "POST"}, {"CONTENT_LENGTH", "-9"}}, "command=5",
                   nullptr, "CONTENT_LENGTH"},
        MethodCase{"PostNonNumericLength", {{"REQUEST_METHOD", "POST"}, {"CONTENT_LENGTH", "9x"}}, "command=5",
                   nullptr, "CONTENT_LENGTH"},
        MethodCase{"PostTenMiB", {{"REQUEST_METHOD", "POST"}, {"CONTENT_LENGTH", kTenMiB}}, "command=5", nullptr,
                   "CONTENT_LENGTH"},
        MethodCase{"PostHugeLength", {{"REQUEST_METHOD", "POST"}, {"CONTENT_LENGTH", "99999999999999999999999"}},
                   "command=5", nullptr, "CONTENT_LENGTH"},
        MethodCase{"Getx", {{"REQUEST_METHOD", "GETX"}, {"QUERY_STRING", "command=5"}}, "", nullptr, ""},
        MethodCase{"LowerCaseGet", {{"REQUEST_METHOD", "get"}, {"QUERY_STRING", "command=5"}}, "", nullptr, ""},
        MethodCase{"Head", {{"REQUEST_METHOD", "HEAD"}, {"QUERY_STRING", "command=5"}}, "", nullptr, ""}),
    [](const auto &info) { return std::string(info.param.name); });

TEST(RequestEntry, PostOfExactlyOneMiBIsRead)
{
    TempRoot root;
    std::string body = "command=5&pad=" + std::string(1024 * 1024 - 14, 'x');
    ASSERT_EQ(body.size(), 1024u * 1024u);
    CgiResult r = runPost(root, body);
    expectClean(r);
    EXPECT_EQ(r.out, kHeader + "0");
}

// --- hostile input ----------------------------------------------------------------

struct Hostile {
    const char *name;
    std::string query;
    std::string post;  // used when non-empty
};

class HostileInput : public ::testing::TestWithParam<Hostile> {};

TEST_P(HostileInput, EndsWithStatusZeroAndTheHeader)
{
    TempRoot root;
    const Hostile &h = GetParam();
    CgiResult r = h.post.empty() ? runGet(root, h.query) : runPost(root, h.post);
    expectClean(r);
    // Nothing but the lock protocol's own file may appear under the root.
    for (const std::string &file : root.listing())
        EXPECT_EQ(file, "config/web.lock");
}

INSTANTIATE_TEST_SUITE_P(
    Cases, HostileInput,
    ::testing::Values(Hostile{"LongQuery", "a=" + std::string(64 * 1024, 'x') + "&command=5", ""},
                      Hostile{"LongCommandValue", "command=" + std::string(100 * 1024, '9'), ""},
                      Hostile{"LongCommandOfFives", "command=" + std::string(100 * 1024, '5'), ""},
                      Hostile{"LongKeyOfCommands", std::string(20000, 'c') + "command" + std::string(30000, 'd'), ""},
                      Hostile{"CutEscape", "command=%3", ""}, Hostile{"CutEscapeEnd", "command=5%", ""},
                      Hostile{"LoneEscape", "%", ""}, Hostile{"EscapeInKey", "comm%61nd=5", ""},
                      Hostile{"BadEscape", "command=%zz%g1%%", ""},
                      Hostile{"NulInPost", "", std::string("command=5\0command=6&x=\0\0", 24)},
                      Hostile{"OnlyNulPost", "", std::string(64, '\0')},
                      Hostile{"ManyAmpersands", std::string(50000, '&') + "command=5", ""},
                      Hostile{"EscapedNul", "command=5%00rest", ""},
                      Hostile{"HighBytes", "command=\xff\xfe\x80", ""},
                      Hostile{"PathLikeValue", "command=../../../../etc/passwd", ""}),
    [](const auto &info) { return std::string(info.param.name); });

TEST(HostileInput, LongQueryStillFindsTheCommand)
{
    TempRoot root;
    CgiResult r = runGet(root, "a=" + std::string(64 * 1024, 'x') + "&command=5");
    EXPECT_EQ(r.out, kHeader + "0");
}

}  // namespace
