// Saves that cannot write their document: a file-size limit below the document, a full file
// system (no block, or no inode left), a read-only configuration folder, and a web server
// user without write access to the folder. Each answers that the changes were not saved,
// leaves the old document byte for byte, queues nothing and leaves no temporary file.
#include "fault/fault_support.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

using namespace cambioip_fault;

namespace {

enum class Condition { fileSizeLimit, noBlockLeft, noInodeLeft, readOnlyMount, noWriteAccess };

struct LimitCase {
    const char *name;
    Condition condition;
    const char *failedStep;  // the writer's step and error in its diagnostic
};

const LimitCase kCases[] = {
    {"file_size_limit", Condition::fileSizeLimit, "write:File too large"},
    {"no_block_left", Condition::noBlockLeft, "write:No space left on device"},
    {"no_inode_left", Condition::noInodeLeft, "mkstemp:No space left on device"},
    {"read_only_mount", Condition::readOnlyMount, "mkstemp:Read-only file system"},
    {"no_write_access", Condition::noWriteAccess, "mkstemp:Permission denied"},
};

// A save of one page, the document it writes and the address its answer names.
struct PageSave {
    const char *document;  // below config/
    const char *address;
    std::string body;
};

// The first two run at every scale (a unit, queued; the master, with its command file); the
// others join under stress.
const PageSave kSaves[] = {
    {"network.010.000.000.021.xml", "10.0.0.21",
     "command=4&sufijo=.010.000.000.021&networkipdir=10.0.0.121&networkmask=255.255.0.0&gateway=10.0.0.254&dhcp=0"
     "&orden=12"},
    {"network.xml", "10.0.0.10", kMasterTestSave},
    {"network.010.000.000.021.xml", "10.0.0.21", kInputsSave21},
    {"network.010.000.000.022.xml", "10.0.0.22", kTransportSave22},
    {"network.010.000.000.022.xml", "10.0.0.22", kOutputSave22},
    {"network.010.000.000.031.xml", "10.0.0.31", kIpSave31},
};

// A line that another unit's save left waiting for the daemon.
const std::string kWaitingLine = "network.010.000.000.022\n";
const std::string kSavingError =
    "<br><h2><center><strong> ERROR! Saving data.<br> please retry operation in a few seconds.</strong></center></h2>\n";

constexpr auto kRunLimit = std::chrono::seconds(60);

// Gives the folder back its write permission when the test ends, so the root can be removed.
struct RestoreMode {
    fs::path folder;
    ~RestoreMode()
    {
        if (!folder.empty())
            ::chmod(folder.c_str(), 0755);
    }
};

void PrintTo(const LimitCase &c, std::ostream *out) { *out << c.name; }

class FailedWrites : public ::testing::TestWithParam<LimitCase> {};

TEST_P(FailedWrites, KeepTheDocumentAndQueueNothing)
{
    const LimitCase &c = GetParam();
    const size_t saves = stressScale() ? std::size(kSaves) : 2;
    long long runs = 0, checked = 0, lostOrTorn = 0;

    for (size_t s = 0; s < saves; ++s) {
        const PageSave &save = kSaves[s];
        SCOPED_TRACE(save.body.substr(0, save.body.find("&sufijo")) + " " + save.document);
        TempRoot root;
        std::vector<Mount> mounts;
        RestoreMode restore;
        CgiRequest request = postRequest(save.body);

        // The configuration folder on a small tmpfs of its own, for the full and read-only cases.
        if (c.condition == Condition::noBlockLeft || c.condition == Condition::noInodeLeft ||
            c.condition == Condition::readOnlyMount) {
            if (const std::string why = enterPrivateMounts(); !why.empty())
                GTEST_SKIP() << "cannot mount a file system for the configuration folder: " << why;
            mounts.push_back(Mount::tmpfs(root.config(), c.condition == Condition::noInodeLeft ? "size=1m,nr_inodes=64"
                                                                                                : "size=1m"));
            if (!mounts.back().error().empty())
                GTEST_SKIP() << "cannot mount a file system for the configuration folder: " << mounts.back().error();
        }
        root.copyRack("qam");
        root.write("config/fileschanged.list", kWaitingLine);
        const std::string document = std::string("config/") + save.document;
        const std::string before = root.read(document);
        ASSERT_FALSE(before.empty()) << "fixture document missing: " << save.document;

        switch (c.condition) {
        case Condition::fileSizeLimit:
            // Below the document, above the queue: only the document cannot be written.
            ASSERT_GT(before.size(), 2048u);
            request.fileSizeLimit = 2048;
            break;
        case Condition::noBlockLeft:
            ASSERT_GT(fillFileSystem(root.config(), false), 0) << "the file system never filled up";
            break;
        case Condition::noInodeLeft:
            ASSERT_GE(fillFileSystem(root.config(), true), 0) << "the file system never ran out of inodes";
            break;
        case Condition::readOnlyMount:
            mounts.push_back(Mount::readOnlyBind(root.config()));
            if (!mounts.back().error().empty())
                GTEST_SKIP() << "cannot make the configuration folder read-only: " << mounts.back().error();
            break;
        case Condition::noWriteAccess:
            // The web server's user may append to the queue (mode 666, as the program leaves
            // it) but not create files in the folder.
            ASSERT_EQ(::chmod(root.config().c_str(), 0755), 0);
            ASSERT_EQ(::chmod((root.config() / "fileschanged.list").c_str(), 0666), 0);
            ASSERT_EQ(::chmod(root.path().c_str(), 0755), 0);
            if (inOwnUserNamespace())
                GTEST_SKIP() << "an earlier test of this process took a user namespace, where the "
                                "folder's permissions do not bind it; run this test on its own";
            if (::geteuid() == 0) {
                request.unprivileged = true;
            } else {
                ASSERT_EQ(::chmod(root.config().c_str(), 0555), 0);
                restore.folder = root.config();
                if (::access(root.config().c_str(), W_OK) == 0)
                    GTEST_SKIP() << "this user writes through the folder's permissions";
            }
            break;
        }
        const std::vector<std::string> listing = root.listing();

        const CgiResult result = runCgi(root, request, kRunLimit);
        ++runs;
        ASSERT_FALSE(result.timedOut);
        EXPECT_EQ(result.status, 0);
        EXPECT_TRUE(result.out.starts_with(cambioip_test::kHeader));
        const std::string notSaved = "Changes for ip " + std::string(save.address) + " were not saved!<br>\n" + kSavingError;
        EXPECT_NE(result.out.find(notSaved), std::string::npos) << result.out;
        EXPECT_EQ(result.out.find("Changes saved for ip"), std::string::npos) << result.out;
        EXPECT_TRUE(result.out.ends_with("</body></html>\n"));
        EXPECT_NE(result.err.find(std::string(save.document) + ":" + c.failedStep + ":[ERROR]"), std::string::npos)
            << result.err;

        const bool intact = root.read(document) == before;
        ++checked;
        lostOrTorn += intact ? 0 : 1;
        EXPECT_TRUE(intact);
        EXPECT_EQ(root.read("config/fileschanged.list"), kWaitingLine);
        EXPECT_FALSE(root.exists("config/command.msg"));
        EXPECT_EQ(temporaries(root), std::vector<std::string>{});
        EXPECT_EQ(root.listing(), listing);
        if (c.condition == Condition::noBlockLeft || c.condition == Condition::noInodeLeft) {
            // The full file system still took a queue line: the unit's is missing because the
            // program held it back, not because the queue could not grow.
            std::ofstream(root.config() / "fileschanged.list", std::ios::app) << kWaitingLine;
            EXPECT_EQ(root.read("config/fileschanged.list"), kWaitingLine + kWaitingLine);
        }
    }
    printFigures(std::string("failed writes ") + c.name,
                 {{"runs", runs}, {"documents checked", checked}, {"lost or torn", lostOrTorn}});
}

INSTANTIATE_TEST_SUITE_P(Fault, FailedWrites, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<LimitCase> &info) { return std::string(info.param.name); });

}  // namespace
