// Saves killed with SIGKILL at random moments of their run: the unit's document is always
// the old one or the new one byte for byte, the unit is queued only once its new document
// is in place, and the next save of the unit leaves no temporary file behind. Half the kills
// fall anywhere in the run; the other half are aimed at the write: they fall at a random
// moment after the first change in the configuration folder, where a document that is not
// replaced whole would be caught torn.
#include "fault/fault_support.h"
#include "support/xml_read.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <poll.h>
#include <random>
#include <sys/inotify.h>
#include <thread>

using namespace cambioip_fault;
using cambioip_test::xmlWellFormed;

namespace {

// Where a successful save tells the daemon about the unit.
enum class Queue { unitLine, commandFile, none };

struct KilledSave {
    const char *name;
    const char *document;  // below config/
    Queue queue;
    const char *queueLine; // the unit's line in fileschanged.list
    const char *answer;    // text an uninterrupted save answers
    std::string body;
    size_t padding = 0;    // bytes of comment added to the document, to make its write long
    std::string path() const { return std::string("config/") + document; }
};

const KilledSave kSaves[] = {
    {"network", "network.010.000.000.021.xml", Queue::unitLine, "network.010.000.000.021\n",
     "Unit with ip 10.0.0.21 added to the queue",
     "command=4&sufijo=.010.000.000.021&networkipdir=10.0.0.21&networkmask=255.255.0.0&gateway=10.0.0.254"
     "&dhcp=0&orden=12"},
    {"network, document near the size limit", "network.010.000.000.021.xml", Queue::unitLine,
     "network.010.000.000.021\n", "Unit with ip 10.0.0.21 added to the queue",
     "command=4&sufijo=.010.000.000.021&networkipdir=10.0.0.21&networkmask=255.255.0.0&gateway=10.0.0.254"
     "&dhcp=0&orden=12",
     900000},
    {"inputs", "network.010.000.000.021.xml", Queue::unitLine, "network.010.000.000.021\n",
     "Unit with ip 10.0.0.21 added to the queue", kInputsSave21},
    {"transport", "network.010.000.000.022.xml", Queue::unitLine, "network.010.000.000.022\n",
     "Unit with ip 10.0.0.22 added to the queue", kTransportSave22},
    {"output", "network.010.000.000.022.xml", Queue::unitLine, "network.010.000.000.022\n",
     "Unit with ip 10.0.0.22 added to the queue", kOutputSave22},
    {"test options of the master", "network.xml", Queue::commandFile, "", "Changes saved for ip", kMasterTestSave},
    {"IP input", "network.010.000.000.031.xml", Queue::unitLine, "network.010.000.000.031\n",
     "Unit with ip 10.0.0.31 added to the queue", kIpSave31},
    {"advanced store", "network.010.000.000.022.xml", Queue::unitLine, "network.010.000.000.022\n",
     "Config Sent (IP: 10.0.0.22, model 710103  - Enc 4 CVBS)<br>\nUnit with ip 10.0.0.22 added to the queue",
     "command=25&sufijo=010.000.000.022&cfgtotenviar=1&networkipdir=10.0.0.22&networkmask=255.255.255.0"
     "&gateway=10.0.0.1&dhcp=0&numcanales=2&eon=1_1_2_0&vidinp=1_0_2_0&vidcod=1_0_2_0&audcod=1_0_2_0"
     "&audinp=1_0_2_0&audlev=1_5_2_5&ccon=1_0_2_0&vidbit=1_4_2_4&audbit=1_2_2_2&asprat=1_1_2_1&gop=1_1_2_1"
     "&maxoutres=1_0_2_0&ffencod=1_0_2_0&tsid=77&cnam=1_LOBBY_2_CAMPUS&svpid=1_100_2_200&sapid=1_101_2_201"
     "&mchn=1_78_2_78&chnm=1_1_2_2&svcid=1_11_2_12&outtab=4&outchn=573.25&outbau=6.9&outout=4&outint=8&outmod=6"
     "&outlev=42&outrfl=1&treset=0&tfab=0&tled=1&teas=0"},
    {"service list store", "network.010.000.000.031.xml", Queue::none, "", "</body></html>",
     "command=30&sufijo=010.000.000.031&entip=1&lsnumserv=2&slselect=1_0_2_0_3_1&cnamOUT=1_NEWS+%26+MORE_3_GONE"
     "&svcidOUT=1_511_2_512_3_513"},
};

constexpr auto kRunLimit = std::chrono::seconds(60);

// What the daemon's files say about the unit: the queue's text, or the command file's.
std::string queued(const TempRoot &root, Queue queue)
{
    const std::string list = root.read("config/fileschanged.list"), command = root.read("config/command.msg");
    switch (queue) {
    case Queue::unitLine: return list;
    case Queue::commandFile: return command;
    case Queue::none: break;
    }
    return list + command;
}

std::string queuedAfterSave(const KilledSave &save)
{
    switch (save.queue) {
    case Queue::unitLine: return save.queueLine;
    case Queue::commandFile: return "2";
    case Queue::none: break;
    }
    return "";
}

// A copy of the rack with the save's document as the save finds it.
void prepare(const TempRoot &root, const KilledSave &save)
{
    root.copyRack("qam");
    if (save.padding > 0) {
        std::string text = root.read(save.path());
        const size_t at = text.find("<IDVERS>");
        ASSERT_NE(at, std::string::npos);
        text.insert(at, "<!-- " + std::string(save.padding, '.') + " -->\n  ");
        root.write(save.path(), text);
    }
}

// Watches the configuration folder for the first change a save makes to it: a file
// created, written or renamed into place.
class FolderWatch {
  public:
    explicit FolderWatch(const fs::path &folder)
        : valid_(inotify_.fd >= 0 &&
                 ::inotify_add_watch(inotify_.fd, folder.c_str(), IN_CREATE | IN_MODIFY | IN_MOVED_TO) >= 0)
    {
    }
    bool valid() const { return valid_; }
    // Waits until the first change or the deadline, or until the run ends; true on a change.
    bool waitChange(CgiProcess &run, std::chrono::steady_clock::time_point deadline)
    {
        while (std::chrono::steady_clock::now() < deadline) {
            pollfd change{inotify_.fd, POLLIN, 0};
            if (::poll(&change, 1, 1) > 0)
                return true;
            if (run.ended())
                return false;
        }
        return false;
    }

  private:
    const cambioip_test::Descriptor inotify_{::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)};
    const bool valid_;
};

struct Reference {
    std::string before, after;
    std::chrono::microseconds duration{};  // from the start to the end of a save
    std::chrono::microseconds writing{};   // from its first change in the folder to its end
};

// The document before and after an uninterrupted save on fresh copies of the rack, and how
// long such a save takes and writes (the medians of three).
Reference reference(const KilledSave &save)
{
    Reference made;
    std::vector<std::chrono::microseconds> durations, writings;
    for (int i = 0; i < 3; ++i) {
        TempRoot root;
        prepare(root, save);
        made.before = root.read(save.path());
        FolderWatch watch(root.config());
        EXPECT_TRUE(watch.valid()) << "no inotify";
        const auto start = std::chrono::steady_clock::now();
        CgiProcess run(root, postRequest(save.body));
        const bool changed = watch.waitChange(run, start + kRunLimit);
        const auto firstChange = std::chrono::steady_clock::now();
        EXPECT_TRUE(run.wait(kRunLimit)) << save.name << ": reference save did not end";
        const auto end = std::chrono::steady_clock::now();
        EXPECT_TRUE(changed) << save.name << ": the save ended without a change seen in the folder";
        durations.push_back(std::chrono::duration_cast<std::chrono::microseconds>(end - start));
        writings.push_back(std::chrono::duration_cast<std::chrono::microseconds>(end - firstChange));
        const CgiResult result = run.result();
        EXPECT_EQ(result.status, 0) << save.name;
        EXPECT_NE(result.out.find(save.answer), std::string::npos) << save.name << ": " << result.out;
        EXPECT_EQ(queued(root, save.queue), queuedAfterSave(save)) << save.name;
        const std::string after = root.read(save.path());
        EXPECT_TRUE(i == 0 || after == made.after) << save.name << ": the same save gave another document";
        made.after = after;
    }
    std::sort(durations.begin(), durations.end());
    std::sort(writings.begin(), writings.end());
    made.duration = durations[1];
    made.writing = writings[1];
    return made;
}

TEST(KilledSaves, DocumentIsOldOrNewAndQueuedOnlyWhenNew)
{
    const uint64_t seedUsed = seed();
    std::mt19937_64 random(seedUsed);
    const int killsPerSave = scaled(6, 40);
    long long runs = 0, checked = 0, lostOrTorn = 0, keptOld = 0, tookNew = 0, endedFirst = 0, leftTemporaries = 0,
              aimed = 0;

    for (const KilledSave &save : kSaves) {
        SCOPED_TRACE(save.name);
        const Reference ref = reference(save);
        ASSERT_FALSE(ref.before.empty()) << "fixture document missing: " << save.document;
        ASSERT_NE(ref.before, ref.after) << "the save changes nothing, so a kill could not be seen";
        ++runs;
        // Kill moments spread evenly over the whole save, start to end, and a little past it;
        // or after its first change in the folder, spread evenly over every scale from a
        // microsecond (the write of the document itself) to a little past the end.
        std::uniform_int_distribution<long long> anywhere(0, ref.duration.count() * 5 / 4);
        std::uniform_real_distribution<double> scale(0.0, std::log(static_cast<double>(ref.writing.count()) * 1.25 + 1.0));
        const auto inWrite = [&] { return static_cast<long long>(std::exp(scale(random))) - 1; };
        const std::string document = save.path();

        for (int kill = 0; kill < killsPerSave; ++kill) {
            const bool aimedAtWrite = kill % 2 == 1;
            const long long delay = aimedAtWrite ? inWrite() : anywhere(random);
            SCOPED_TRACE("kill " + std::to_string(kill) + (aimedAtWrite ? " after the first change + " : " after ") +
                         std::to_string(delay) + " us");
            TempRoot root;
            prepare(root, save);
            FolderWatch watch(root.config());
            ASSERT_TRUE(watch.valid());
            bool finished = false;
            {
                auto start = std::chrono::steady_clock::now();
                CgiProcess run(root, postRequest(save.body));
                ASSERT_TRUE(run.started());
                if (aimedAtWrite && watch.waitChange(run, start + kRunLimit)) {
                    start = std::chrono::steady_clock::now();
                    ++aimed;
                }
                std::this_thread::sleep_until(start + std::chrono::microseconds(delay));
                finished = run.kill();
                ++runs;
            }
            const std::string now = root.read(document);
            ++checked;
            const bool isOld = now == ref.before, isNew = now == ref.after;
            if (!isOld && !isNew) {
                ++lostOrTorn;
                ADD_FAILURE() << "the document is neither the old one nor the new one:\n" << now.substr(0, 2000);
                continue;
            }
            EXPECT_TRUE(xmlWellFormed(root.path() / document));
            endedFirst += finished ? 1 : 0;
            (isOld ? keptOld : tookNew) += 1;
            const std::string queue = queued(root, save.queue);
            if (isOld || save.queue == Queue::none) {
                EXPECT_EQ(queue, "") << "queued without its new document";
            } else if (finished) {
                EXPECT_EQ(queue, queuedAfterSave(save));
            } else {
                EXPECT_TRUE(queue.empty() || queue == queuedAfterSave(save)) << "queue: " << queue;
            }
            leftTemporaries += static_cast<long long>(temporaries(root).size());

            // The next save of the unit clears what the killed one left and applies in full.
            const CgiResult next = runCgi(root, postRequest(save.body), kRunLimit);
            ++runs;
            ASSERT_EQ(next.status, 0);
            EXPECT_NE(next.out.find(save.answer), std::string::npos) << next.out;
            EXPECT_EQ(root.read(document), ref.after);
            ++checked;
            EXPECT_EQ(temporaries(root), std::vector<std::string>{});
            if (save.queue != Queue::none) {
                EXPECT_TRUE(queued(root, save.queue).ends_with(queuedAfterSave(save)));
            }
        }
    }
    printFigures("killed saves",
                 {{"runs", runs}, {"kills", static_cast<long long>(std::size(kSaves)) * killsPerSave},
                  {"aimed at the write", aimed}, {"documents checked", checked}, {"lost or torn", lostOrTorn},
                  {"old kept", keptOld}, {"new in place", tookNew}, {"ended before the kill", endedFirst},
                  {"temporaries left by kills", leftTemporaries}, {"seed", static_cast<long long>(seedUsed)}});
    // Kills spread over the save leave both outcomes, and some land while the document is
    // being written (a temporary left, or the new document in place before the end).
    EXPECT_GT(keptOld, 0);
    EXPECT_GT(tookNew, 0);
    EXPECT_GT(leftTemporaries + tookNew - endedFirst, 0) << "no kill landed in the write of a document";
}

}  // namespace
