#include "gestfich/gestfich.h"
#include "support/cgi_runner.h"

#include <gtest/gtest.h>

#include <cstring>
#include <sys/stat.h>

using namespace cambioip_test;

namespace {

class Gestfich : public ::testing::Test {
  protected:
    void SetUp() override { oldMask_ = umask(022); }
    void TearDown() override { umask(oldMask_); }
    std::string path(const char *name) const { return (root_.config() / name).string(); }
    mode_t mode(const char *name) const
    {
        struct stat st {};
        stat(path(name).c_str(), &st);
        return st.st_mode & 0777;
    }
    TempRoot root_;
    mode_t oldMask_ = 0;
};

TEST_F(Gestfich, QueueAppendsWholeLinesAndOpensTheFileToEveryone)
{
    const std::string line = "network.010.000.000.021\n";
    ASSERT_EQ(GESTFICH_AddFiletoChanges(line.data(), static_cast<long>(line.size()), path("fileschanged.list").c_str()), 0);
    EXPECT_EQ(mode("fileschanged.list"), 0666u);
    chmod(path("fileschanged.list").c_str(), 0600);
    ASSERT_EQ(GESTFICH_AddFiletoChanges(line.data(), static_cast<long>(line.size()), path("fileschanged.list").c_str()), 0);
    EXPECT_EQ(root_.read("config/fileschanged.list"), line + line) << "nothing is deduplicated";
    EXPECT_EQ(mode("fileschanged.list"), 0666u) << "mode is set again after each write";
}

TEST_F(Gestfich, QueueRefusesWhatItCannotAppend)
{
    const char *list = "fileschanged.list";
    EXPECT_EQ(GESTFICH_AddFiletoChanges("x", 0, path(list).c_str()), -1);
    EXPECT_EQ(GESTFICH_AddFiletoChanges("x", -3, path(list).c_str()), -1);
    EXPECT_FALSE(root_.exists("config/fileschanged.list")) << "a refused append creates nothing";
    EXPECT_EQ(GESTFICH_AddFiletoChanges(nullptr, 1, path(list).c_str()), -1);
    EXPECT_EQ(GESTFICH_AddFiletoChanges("x", 1, nullptr), -1);
    EXPECT_EQ(GESTFICH_AddFiletoChanges("x", 1, (root_.path() / "missing" / "list").c_str()), -1);
}

TEST_F(Gestfich, CommandFileHoldsExactlyOneByte)
{
    root_.write("config/command.msg", "old contents");
    ASSERT_EQ(GESTFICH_WriteCommandtoFile(GESTFICH_ComandoCambioMaster, path("command.msg").c_str()), 0);
    EXPECT_EQ(root_.read("config/command.msg"), "2");
    EXPECT_EQ(mode("command.msg"), 0666u);
    EXPECT_EQ(GESTFICH_ReadCommandfromFile(path("command.msg").c_str()), 50);
    EXPECT_EQ(GESTFICH_WriteCommandtoFile(50, (root_.path() / "missing" / "command.msg").c_str()), -1);
}

TEST_F(Gestfich, ReadingAMissingOrEmptyCommandFileGives255)
{
    EXPECT_EQ(GESTFICH_ReadCommandfromFile(path("command.msg").c_str()), 255);
    root_.write("config/command.msg", "");
    EXPECT_EQ(GESTFICH_ReadCommandfromFile(path("command.msg").c_str()), 255);
}

TEST_F(Gestfich, CommandStreamKeepsOneOpenFile)
{
    EXPECT_EQ(GESTFICHINT_WriteCommandFile(1), -1) << "nothing open yet";
    EXPECT_EQ(GESTFICHINT_ReadCommandFile(), 255);
    EXPECT_EQ(GESTFICHINT_CloseCommandFile(), -1);
    ASSERT_EQ(GESTFICHINT_CreateCommandFile(path("cmd").c_str(), 0), 0);
    EXPECT_EQ(GESTFICHINT_WriteCommandFile('7'), 0);
    EXPECT_EQ(GESTFICHINT_CloseCommandFile(), 0);
    ASSERT_EQ(GESTFICHINT_CreateCommandFile(path("cmd").c_str(), 1), 0);
    EXPECT_EQ(GESTFICHINT_ReadCommandFile(), '7');
    EXPECT_EQ(GESTFICHINT_ReadCommandFile(), 255);
    // Reading the command file through the one-shot call closes the open stream.
    EXPECT_EQ(GESTFICH_ReadCommandfromFile(path("cmd").c_str()), '7');
    EXPECT_EQ(GESTFICHINT_CloseCommandFile(), -1);
}

TEST_F(Gestfich, CheckFileIsTrueWhenTheFileExists)
{
    EXPECT_EQ(GESTFICHINT_CheckFile(path("HBK.lock").c_str()), 0);
    ASSERT_EQ(GESTFICHINT_CreateFile(path("HBK.lock").c_str()), 0);
    EXPECT_EQ(GESTFICHINT_CheckFile(path("HBK.lock").c_str()), -1);
    EXPECT_EQ(GESTFICHINT_DeleteFile(path("HBK.lock").c_str()), 0);
    EXPECT_EQ(GESTFICHINT_CheckFile(path("HBK.lock").c_str()), 0);
    EXPECT_NE(GESTFICHINT_DeleteFile(path("HBK.lock").c_str()), 0);
    EXPECT_EQ(GESTFICHINT_CheckFile(nullptr), 0);
}

struct LineCase {
    std::string text;
    size_t capacity;
    int result;
    std::string line;
    size_t capacityAfter;
};

class ReadFromChanges : public ::testing::TestWithParam<LineCase> {};

TEST_P(ReadFromChanges, ReadsOneLine)
{
    TempRoot root;
    root.write("config/list", GetParam().text);
    std::FILE *file = GESTFICHINT_OpenFile((root.config() / "list").c_str());
    ASSERT_NE(file, nullptr);
    char buffer[16];
    std::memset(buffer, 'Z', sizeof buffer);
    size_t capacity = GetParam().capacity;
    EXPECT_EQ(GESTFICH_ReadFromChanges(buffer, &capacity, file), GetParam().result);
    EXPECT_EQ(std::string(buffer, strnlen(buffer, GetParam().capacity)), GetParam().line);
    EXPECT_EQ(capacity, GetParam().capacityAfter);
    EXPECT_EQ(GESTFICHINT_CloseFile(file), 0);
}

INSTANTIATE_TEST_SUITE_P(Cases, ReadFromChanges,
                         ::testing::Values(LineCase{"abc\nnext\n", 16, 0, "abc", 4}, LineCase{"abc", 16, -1, "abc", 16},
                                           LineCase{"", 16, -1, "", 16}, LineCase{"\n", 16, 0, "", 1},
                                           LineCase{"abcdef\n", 4, -1, "abcd", 4}, LineCase{"abc\n", 4, 0, "abc", 4}));

TEST(ReadFromChangesArgs, RefusesMissingArguments)
{
    char buffer[4];
    size_t capacity = 0;
    EXPECT_EQ(GESTFICH_ReadFromChanges(buffer, &capacity, stdin), -1);
    capacity = 4;
    EXPECT_EQ(GESTFICH_ReadFromChanges(nullptr, &capacity, stdin), -1);
    EXPECT_EQ(GESTFICH_ReadFromChanges(buffer, nullptr, stdin), -1);
    EXPECT_EQ(GESTFICH_ReadFromChanges(buffer, &capacity, nullptr), -1);
    EXPECT_EQ(GESTFICHINT_CloseFile(nullptr), -1);
    EXPECT_EQ(GESTFICHINT_OpenFile("/nonexistent/result"), nullptr);
}

TEST_F(Gestfich, WebVersionNeedsTenBytes)
{
    char version[11];
    root_.write("config/short", "123456789");
    EXPECT_EQ(GESTFICHINT_ReadWebVersion(path("short").c_str(), version), -1);
    root_.write("config/long", "0123456789ABC");
    ASSERT_EQ(GESTFICHINT_ReadWebVersion(path("long").c_str(), version), 0);
    EXPECT_STREQ(version, "0123456789");
    EXPECT_EQ(GESTFICHINT_ReadWebVersion(path("missing").c_str(), version), -1);
}

}  // namespace
