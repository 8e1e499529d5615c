// A load run through the demo's web server: lighttpd serving cambioIP.cgi on a copy of the QAM
// test rack, with the demo's stand-in control daemon applying what is queued. A few dozen
// clients behave like operators' browsers at once: they open the rack's pages, and apply
// changes as the browser does (take the page lock, post one save per selected unit, release
// the lock). The front panel takes its lock now and then. The run checks that every request
// is answered whole, that no document, queue line or command file is ever seen torn, that
// the lock's answers agree with the lock files, and that no saved change is lost; it prints
// the throughput and latencies.
//   LOAD_CLIENTS (default 32), LOAD_SECONDS (default 20); CAMBIOIP_LOAD_PAUSE_MS as the server's
//   pause after each document load (0 when unset).
#include "load/lock_watch.h"
#include "load/rack_traffic.h"
#include "support/cgi_runner.h"
#include "support/servidor_http.h"
#include "support/xml_read.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <iostream>
#include <iterator>
#include <map>
#include <mutex>
#include <random>
#include <regex>
#include <set>
#include <sstream>
#include <thread>
#include <unistd.h>

using namespace cambioip_test;
using namespace cambioip_test::load;

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto kRequestLimit = std::chrono::seconds(30);
constexpr auto kDrainLimit = std::chrono::seconds(40);
const std::string kCgi = "/cgi-bin/cambioIP.cgi";

long setting(const char *name, long fallback, long low, long high)
{
    const char *text = std::getenv(name);
    if (text == nullptr || *text == '\0')
        return fallback;
    return std::clamp(std::strtol(text, nullptr, 10), low, high);
}

// The kinds of request, each with its latencies.
struct Kind {
    const char *name;
    int command;
};
const Kind kKinds[] = {
    {"page quick status", 1},   {"page detailed status", 2}, {"page network", 3},   {"page inputs", 10},
    {"page transport", 12},     {"page output", 13},         {"page test options", 14},
    {"page unit list", 15},     {"page unit list (tests)", 16}, {"page IP", 17},
    {"lock taken", 5},          {"lock refused", 5},         {"lock release", 6},
    {"save network", 4},        {"save inputs", 11},         {"save transport", 20}, {"save output", 21},
    {"save test options", 22},  {"save IP", 28},
};
constexpr size_t kKindCount = sizeof kKinds / sizeof kKinds[0];
constexpr size_t kPageCount = 10;

// The kind of a request; command 5 counts as "lock taken" until its answer says otherwise.
size_t kindOf(int command)
{
    for (size_t k = 0; k < kKindCount; ++k)
        if (kKinds[k].command == command)
            return k;
    return 0;
}

size_t kindNamed(const std::string &name)
{
    for (size_t k = 0; k < kKindCount; ++k)
        if (name == kKinds[k].name)
            return k;
    return 0;
}

// A save that can be sent: one unit, one page, and its answer when it runs alone.
struct Combo {
    RackUnit unit;
    SaveKind kind;
    std::string expected;
};

struct SaveRecord {
    size_t combo;
    std::string marker;
    Clock::time_point start, end;
};

struct ClientLog {
    std::vector<std::vector<double>> latency = std::vector<std::vector<double>>(kKindCount);
    std::vector<char> lockAnswers;  // '0', '1', or '?' when the answer was no lock answer
    std::vector<SaveRecord> saves;
    long refusals = 0, taken = 0, overlaps = 0, masterSaves = 0;
};

// Failures of the run: counted, the first few kept for the report.
class Failures {
  public:
    void add(const std::string &what)
    {
        std::lock_guard<std::mutex> hold(mutex_);
        if (++count_ <= 12)
            first_.push_back(what);
    }
    long count() const { return count_; }
    const std::vector<std::string> &first() const { return first_; }

  private:
    std::mutex mutex_;
    long count_ = 0;
    std::vector<std::string> first_;
};

// What one look at the rack's files found.
struct Inspection {
    long documents = 0, queueLines = 0, commandSeenEmpty = 0, temporaries = 0;
    std::vector<std::string> torn;
};

// Every unit document parses; every line of the queue (and of the daemon's taken copy) is a
// whole "network.<name>" naming a unit of the rack; the command file holds "2" (or nothing,
// between the truncation and the write of a master save).
void inspect(const fs::path &config, Inspection &found)
{
    static const std::regex queueLine("network\\.([0-9]{3}\\.[0-9]{3}\\.[0-9]{3}\\.[0-9]{3})");
    std::error_code error;
    std::vector<std::string> names;
    for (fs::directory_iterator it(config, error), end; !error && it != end; it.increment(error))
        names.push_back(it->path().filename().string());
    for (const std::string &name : names) {
        if ((name.starts_with("network") || name.starts_with("sondeo")) && name.ends_with(".xml")) {
            ++found.documents;
            if (!xmlWellFormed(config / name))
                found.torn.push_back(name + " is not well-formed XML");
        } else if (name.starts_with(".") && name.find(".tmp") != std::string::npos) {
            ++found.temporaries;
        }
    }
    for (const char *queue : {"fileschanged.list", "fileschanged.list.daemon"}) {
        const std::string text = readFile(config / queue);
        if (!text.empty() && text.back() != '\n')
            found.torn.push_back(std::string(queue) + " ends inside a line");
        std::istringstream in(text);
        for (std::string line; std::getline(in, line);) {
            ++found.queueLines;
            std::smatch m;
            if (!std::regex_match(line, m, queueLine) ||
                !fs::exists(config / ("network." + m[1].str() + ".xml")))
                found.torn.push_back(std::string(queue) + " holds the line \"" + line + "\"");
        }
    }
    if (fs::exists(config / "command.msg")) {
        const std::string command = readFile(config / "command.msg");
        if (command.empty())
            ++found.commandSeenEmpty;
        else if (command != "2")
            found.torn.push_back("command.msg holds \"" + command + "\"");
    }
}

// The answer's HTTP part: 200 and the program's content type.
std::string answerFault(const HttpAnswer &answer)
{
    if (answer.status == 0)
        return "no whole answer within the time limit";
    if (answer.status != 200)
        return "status " + std::to_string(answer.status);
    if (answer.headers.find("\r\nContent-Type: text/html;charset=UTF-8") == std::string::npos)
        return "headers without the program's content type: " + answer.headers;
    return "";
}

double percentile(std::vector<double> &values, double q)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    const size_t rank = static_cast<size_t>(std::ceil(q * static_cast<double>(values.size())));
    return values[std::clamp<size_t>(rank, 1, values.size()) - 1];
}

std::string line(const char *format, ...) __attribute__((format(printf, 1, 2)));
std::string line(const char *format, ...)
{
    char buffer[512];
    va_list args;
    va_start(args, format);
    std::vsnprintf(buffer, sizeof buffer, format, args);
    va_end(args);
    return std::string(buffer) + "\n";
}

// The items, each after a blank.
std::string joined(const std::vector<std::string> &items)
{
    std::string list;
    for (const std::string &item : items)
        list += " " + item;
    return list;
}

// Sleeps until `when`, in short steps, so that a run cut short is not held up.
void sleepUntil(Clock::time_point when, const std::atomic<bool> &stop)
{
    while (!stop && Clock::now() < when)
        std::this_thread::sleep_for(std::min<Clock::duration>(std::chrono::milliseconds(50), when - Clock::now()));
}

TEST(Load, OperatorsAtOnceThroughTheDemoServer)
{
    if (!programPresent("/usr/sbin/lighttpd"))
        GTEST_SKIP() << "lighttpd is not installed";
    xmlInitParser();
    const int clients = static_cast<int>(setting("LOAD_CLIENTS", 32, 1, 256));
    const int seconds = static_cast<int>(setting("LOAD_SECONDS", 20, 1, 600));
    const char *pauseSet = std::getenv("CAMBIOIP_LOAD_PAUSE_MS");
    const std::string pause = pauseSet != nullptr && *pauseSet != '\0' ? pauseSet : "0";

    // The demo's working copy of the rack, made from the QAM test rack before the demo starts.
    TempRoot state;
    const fs::path stateDir = state.path() / "demo", rack = stateDir / "demo-qam", config = rack / "config";
    const fs::path marks = stateDir / "marks", serverLog = stateDir / "server-stderr.log";
    fs::create_directories(marks);
    state.copyRack("qam", "demo/demo-qam");
    ASSERT_TRUE(fs::exists(config / "network.xml"));

    // The lock files are watched from before the server starts.
    LockWatch watch(config, marks, clients);
    ASSERT_TRUE(watch.started()) << "inotify";
    const int port = freePort();
    ASSERT_GT(port, 0);
    std::vector<std::string> env;
    if (pauseSet == nullptr || *pauseSet == '\0')
        env.push_back("CAMBIOIP_LOAD_PAUSE_MS=" + pause);
    Process demo({std::string(CAMBIOIP_SOURCE_DIR) + "/demo/run.sh", CAMBIOIP_CGI, std::to_string(port),
                  stateDir.string()},
                 env, serverLog.string());
    ASSERT_TRUE(demo.started());
    // Command 6 changes nothing on a rack whose lock nobody holds.
    ASSERT_EQ(httpRequestOnceUp(port, kCgi + "?command=6").status, 200) << readFile(serverLog);

    // The pages of the quiet rack: their rows, and the units the saves go to.
    std::map<int, size_t> rows;
    std::map<int, std::string> quiet;
    for (size_t k = 0; k < kPageCount; ++k) {
        const int command = kKinds[k].command;
        const HttpAnswer page =
            httpRequest(port, kCgi + "?command=" + std::to_string(command), nullptr, "", kRequestLimit);
        ASSERT_EQ(answerFault(page), "") << kKinds[k].name;
        rows[command] = rowCount(page.body);
        ASSERT_EQ(pageFault(page.body, rows[command]), "") << kKinds[k].name;
        ASSERT_GT(rows[command], 2u) << kKinds[k].name;
        quiet[command] = page.body;
    }
    const std::vector<RackUnit> units = unitsOfPages(quiet[3], quiet[12], quiet[17]);
    ASSERT_GE(units.size(), 3u) << "the transport page shows the rack's QAM units";

    // The answer of every save when it runs alone, on another copy of the rack: under load each
    // must come back the same. Saves that answer an error alone (documents of old versions that
    // lack an element the save writes) are left out of the mix.
    std::vector<Combo> combos;
    std::vector<std::string> leftOut;
    {
        TempRoot alone;
        alone.copyRack("qam");
        for (const RackUnit &unit : units)
            for (SaveKind kind : kSaveKinds) {
                std::string answers[2];
                for (unsigned serial = 0; serial < 2; ++serial) {
                    const std::string body = saveForm(unit, kind, serial + 1).body;
                    const CgiResult r = runPost(alone, body);
                    answers[serial] = r.out.starts_with(kHeader) ? r.body() : "(no header) " + r.out;
                }
                if (answers[0] == answers[1] && answers[1].find("ERROR!") == std::string::npos &&
                    answers[1].find("Changes saved for ip") != std::string::npos)
                    combos.push_back({unit, kind, answers[1]});
                else
                    leftOut.push_back(std::to_string(saveCommand(kind)) + "/" + unit.label());
            }
    }
    std::vector<std::vector<size_t>> byKind(std::size(kSaveKinds));
    for (size_t c = 0; c < combos.size(); ++c)
        byKind[static_cast<size_t>(combos[c].kind)].push_back(c);
    ASSERT_FALSE(byKind[static_cast<size_t>(SaveKind::Network)].empty());
    ASSERT_FALSE(byKind[static_cast<size_t>(SaveKind::Transport)].empty());

    // The run.
    Failures failures;
    std::vector<ClientLog> logs(static_cast<size_t>(clients));
    std::atomic<unsigned> serial{1};
    std::atomic<int> holders{0};
    std::atomic<long> lastMasterMs{-100000};
    std::atomic<bool> stop{false};
    const Clock::time_point begin = Clock::now(), deadline = begin + std::chrono::seconds(seconds);

    auto client = [&](int id) {
        ClientLog &log = logs[static_cast<size_t>(id)];
        std::mt19937 random(static_cast<unsigned>(7919 * (id + 1)));
        size_t lastKind = 0;  // where the latency of the last request went
        auto send = [&](int command, const std::string *body, std::string &fault) {
            const Clock::time_point t0 = Clock::now();
            const std::string target = body == nullptr ? kCgi + "?command=" + std::to_string(command) : kCgi;
            HttpAnswer answer = httpRequest(port, target, body, "", kRequestLimit);
            const std::chrono::duration<double, std::milli> took = Clock::now() - t0;
            lastKind = kindOf(command);
            log.latency[lastKind].push_back(took.count());
            fault = answerFault(answer);
            return answer;
        };
        auto fail = [&](int command, const std::string &what) {
            failures.add("client " + std::to_string(id) + ", command " + std::to_string(command) + ": " + what);
        };
        // Bounded by the clock, and in count far above what a client can send in the time.
        const long rounds = 2000L * seconds;
        for (long round = 0; round < rounds && Clock::now() < deadline; ++round) {
            std::string fault;
            if (random() % 100 < 65) {
                const int command = kKinds[random() % kPageCount].command;
                const HttpAnswer page = send(command, nullptr, fault);
                if (fault.empty())
                    fault = pageFault(page.body, rows.at(command));
                if (!fault.empty())
                    fail(command, fault);
                continue;
            }
            // Apply: one page's changes to one to three units, under the page lock.
            std::vector<size_t> kinds;
            for (size_t k = 0; k < byKind.size(); ++k)
                if (!byKind[k].empty())
                    kinds.push_back(k);
            std::vector<size_t> choice = byKind[kinds[random() % kinds.size()]];
            std::shuffle(choice.begin(), choice.end(), random);
            // The master's own saves leave the command file, which refuses the lock until the daemon
            // has acted on it: an operator changes the master rarely, here at most every 10 s.
            const auto master = std::find_if(choice.begin(), choice.end(),
                                             [&](size_t c) { return combos[c].unit.suffix.empty(); });
            if (master != choice.end()) {
                const long nowMs = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin).count();
                long last = lastMasterMs;
                if (random() % 4 == 0 && nowMs - last >= 10000 && lastMasterMs.compare_exchange_strong(last, nowMs))
                    std::iter_swap(master, choice.begin());
                else
                    choice.erase(master);
            }
            choice.resize(std::min<size_t>(choice.size(), 1 + random() % 3));
            if (choice.empty())
                continue;

            watch.mark(id);
            const HttpAnswer lock = send(5, nullptr, fault);
            watch.mark(id);
            if (fault.empty() && lock.body != "0" && lock.body != "1")
                fault = "command 5 answered \"" + lock.body + "\"";
            log.lockAnswers.push_back(fault.empty() ? lock.body[0] : '?');
            if (!fault.empty())
                fail(5, fault);
            else if (lock.body == "1") {
                // Refused: the browser sends nothing and owes no release; the operator tries again
                // a moment later.
                ++log.refusals;
                log.latency[kindNamed("lock refused")].push_back(log.latency[lastKind].back());
                log.latency[lastKind].pop_back();
                std::this_thread::sleep_for(std::chrono::milliseconds(200 + random() % 400));
                continue;
            } else {
                ++log.taken;
                if (holders.fetch_add(1) > 0)
                    ++log.overlaps;
                for (size_t c : choice) {
                    const SaveForm form = saveForm(combos[c].unit, combos[c].kind, serial++);
                    const Clock::time_point t0 = Clock::now();
                    const HttpAnswer saved = send(saveCommand(combos[c].kind), &form.body, fault);
                    log.saves.push_back({c, form.marker, t0, Clock::now()});
                    if (combos[c].unit.suffix.empty())
                        ++log.masterSaves;
                    if (fault.empty() && saved.body != combos[c].expected)
                        fault = "save of " + combos[c].unit.label() + " answered \"" + saved.body + "\"";
                    if (!fault.empty())
                        fail(saveCommand(combos[c].kind), fault);
                }
                holders.fetch_sub(1);
            }
            // Released always once the lock may have been taken, as the browser does.
            const HttpAnswer release = send(6, nullptr, fault);
            if (fault.empty() && release.body != "0")
                fault = "command 6 answered \"" + release.body + "\"";
            if (!fault.empty())
                fail(6, fault);
        }
    };

    // The front panel holds its lock for 400 ms every 2.5 s.
    int panelHolds = 0;
    auto frontPanel = [&] {
        const fs::path panel = config / "HBK.lock";
        const auto hold = std::chrono::milliseconds(400), every = std::chrono::milliseconds(2500);
        for (Clock::time_point next = begin + std::chrono::milliseconds(1500); next + hold < deadline; next += every) {
            sleepUntil(next, stop);
            if (stop)
                return;
            Descriptor(::open(panel.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
            ++panelHolds;
            sleepUntil(next + hold, stop);
            ::unlink(panel.c_str());
        }
    };

    // Looks at the rack's files once a second during the run (at least three times).
    Inspection during;
    const int plannedLooks = std::max(3, seconds);
    int looks = 0;
    auto inspector = [&] {
        for (int look = 1; look <= plannedLooks; ++look) {
            sleepUntil(begin + std::chrono::milliseconds(1000L * seconds * look / (plannedLooks + 1)), stop);
            if (stop)
                return;
            inspect(config, during);
            ++looks;
        }
    };

    std::vector<std::thread> threads;
    for (int id = 0; id < clients; ++id)
        threads.emplace_back(client, id);
    std::thread panelThread(frontPanel), inspectorThread(inspector);
    for (std::thread &t : threads)
        t.join();
    const double elapsed = std::chrono::duration<double>(Clock::now() - begin).count();
    stop = true;
    panelThread.join();
    inspectorThread.join();

    // Once the clients are gone the daemon takes what is queued; then nothing moves.
    const Clock::time_point drainBegin = Clock::now();
    auto settled = [&] {
        return readFile(config / "fileschanged.list").empty() && !fs::exists(config / "fileschanged.list.daemon") &&
               !fs::exists(config / "command.msg") && !fs::exists(config / "control.lock");
    };
    while (!settled() && Clock::now() - drainBegin < kDrainLimit)
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    const bool drained = settled();
    const double drainSeconds = std::chrono::duration<double>(Clock::now() - drainBegin).count();
    watch.stop();

    Inspection end;
    inspect(config, end);

    // Every unit saved was queued after its document was written, so once the daemon has taken
    // the whole queue no unit is left pending. The master goes through the command file instead,
    // which the demo's daemon removes after applying: a master save in between stays pending.
    std::set<std::string> saved;
    for (const ClientLog &log : logs)
        for (const SaveRecord &s : log.saves)
            saved.insert(combos[s.combo].unit.suffix);
    std::vector<std::string> pendingUnits;
    bool masterPending = false;
    for (const RackUnit &unit : units) {
        if (saved.count(unit.suffix) == 0)
            continue;  // as the rack left it
        const bool pending = xmlText(config / unit.document(), "/ENCODERCONFIG/CAMBIOSWEB").value_or("") == "1";
        if (unit.suffix.empty())
            masterPending = pending;
        else if (pending)
            pendingUnits.push_back(unit.label());
    }

    // The lock's answers against the lock files.
    long unexplainedRefusals = 0, takenWhileRefused = 0, lockChecked = 0, wholeWhileRefusing = 0;
    bool lockInStep = !watch.lost();
    for (int id = 0; id < clients && lockInStep; ++id) {
        const std::vector<char> &answers = logs[static_cast<size_t>(id)].lockAnswers;
        const std::vector<LockWindow> &windows = watch.windows(id);
        if (answers.size() != windows.size()) {
            lockInStep = false;
            break;
        }
        for (size_t i = 0; i < answers.size(); ++i, ++lockChecked) {
            if (answers[i] == '1' && !windows[i].refusedAtSomeMoment)
                ++unexplainedRefusals;
            if (windows[i].refusedThroughout)
                ++wholeWhileRefusing;
            if (answers[i] == '0' && windows[i].refusedThroughout)
                ++takenWhileRefused;
        }
    }

    // No lost change: the value a unit's document holds at the end was written by one of its last
    // saves, a save that no other save of the same field began after.
    long lostChanges = 0, fieldsChecked = 0;
    std::vector<std::string> lostWhat;
    for (size_t c = 0; c < combos.size(); ++c) {
        const char *path = markerPath(combos[c].kind);
        if (path == nullptr)
            continue;
        std::vector<const SaveRecord *> saves;
        for (const ClientLog &log : logs)
            for (const SaveRecord &s : log.saves)
                if (s.combo == c)
                    saves.push_back(&s);
        if (saves.empty())
            continue;
        Clock::time_point lastStart = saves.front()->start;
        for (const SaveRecord *s : saves)
            lastStart = std::max(lastStart, s->start);
        const std::string file = combos[c].unit.document();
        const std::optional<std::string> stored = xmlText(config / file, path);
        ++fieldsChecked;
        const bool fromALastSave = stored && std::any_of(saves.begin(), saves.end(), [&](const SaveRecord *s) {
                                       return s->end >= lastStart && s->marker == *stored;
                                   });
        if (!fromALastSave) {
            ++lostChanges;
            lostWhat.push_back(file + " " + path + " = " + stored.value_or("(none)"));
        }
    }

    // What the server wrote on its standard error: the daemon's lines and anything else.
    long applied = 0, ignoredLines = 0;
    std::vector<std::string> otherLines;
    {
        std::istringstream in(readFile(serverLog));
        for (std::string text; std::getline(in, text);) {
            if (text.starts_with("demo daemon: applied"))
                ++applied;
            else if (text.starts_with("demo daemon: ignored queue line"))
                ++ignoredLines;
            else
                otherLines.push_back(text);
        }
    }

    // The summary.
    std::vector<std::vector<double>> byKindLatency(kKindCount);
    std::vector<double> all;
    long refusals = 0, taken = 0, overlaps = 0, masterSaves = 0;
    for (ClientLog &log : logs) {
        for (size_t k = 0; k < kKindCount; ++k) {
            byKindLatency[k].insert(byKindLatency[k].end(), log.latency[k].begin(), log.latency[k].end());
            all.insert(all.end(), log.latency[k].begin(), log.latency[k].end());
        }
        refusals += log.refusals;
        taken += log.taken;
        overlaps += log.overlaps;
        masterSaves += log.masterSaves;
    }
    const long torn = static_cast<long>(during.torn.size() + end.torn.size()) + ignoredLines;
    std::string out = "\n";
    out += line("load run: %d clients for %d s against lighttpd + cambioIP.cgi + the demo's daemon, rack qam "
                "(%zu units on the pages, %zu saves of a page to a unit in the mix)",
                clients, seconds, units.size(), combos.size());
    out += line("CAMBIOIP_LOAD_PAUSE_MS=%s (the server's pause after each document load); "
                "one HTTP/1.0 connection per request",
                pause.c_str());
    if (!leftOut.empty())
        out += line("saves left out (they answer an error when run alone):%s", joined(leftOut).c_str());
    out += line("requests: %zu in %.1f s = %.1f per second; failures: %ld", all.size(), elapsed,
                static_cast<double>(all.size()) / elapsed, failures.count());
    out += line("%-28s %8s %10s %10s", "kind", "count", "p50 ms", "p99 ms");
    const auto latencyRow = [&](const std::string &name, std::vector<double> values) {
        const double p50 = percentile(values, 0.50), p99 = percentile(values, 0.99);
        out += line("%-28s %8zu %10.1f %10.1f", name.c_str(), values.size(), p50, p99);
    };
    latencyRow("all", all);
    for (size_t k = 0; k < kKindCount; ++k)
        latencyRow(std::string(kKinds[k].name) + " (" + std::to_string(kKinds[k].command) + ")", byKindLatency[k]);
    out += line("page lock: taken %ld, refused %ld (expected answers), held by two or more clients at once %ld times "
                "(web.lock is shared: allowed)",
                taken, refusals, overlaps);
    out += line("lock answers against the lock files: %s%ld checked (%ld sent and answered while a refusing file "
                "existed); refusals without a refusing file %ld, taken while one existed throughout %ld",
                lockInStep ? "" : "NOT CHECKED (events lost or marks out of step), ", lockChecked, wholeWhileRefusing,
                unexplainedRefusals, takenWhileRefused);
    out += line("refusing files appeared: control.lock %d times, %.1f s in all (daemon rounds); command.msg %d, "
                "%.1f s (%ld master saves); HBK.lock %d, %.1f s (front panel, %d holds)",
                watch.created("control.lock"), watch.secondsPresent("control.lock"), watch.created("command.msg"),
                watch.secondsPresent("command.msg"), masterSaves, watch.created("HBK.lock"),
                watch.secondsPresent("HBK.lock"), panelHolds);
    out += line("daemon: %ld documents applied; queue drained %s after the clients stopped (%.1f s)", applied,
                drained ? "in full" : "NOT in full", drainSeconds);
    out += line("saved units left pending after the daemon took the queue: %zu%s; master: %s", pendingUnits.size(),
                joined(pendingUnits).c_str(), masterPending ? "pending" : "applied or not saved");
    out += line("documents checked: %ld (%d looks during the run, 1 at the end); queue lines checked: %ld; "
                "temporary files seen during the run: %ld, left at the end: %ld",
                during.documents + end.documents, looks, during.queueLines + end.queueLines, during.temporaries,
                end.temporaries);
    out += line("command file seen empty (between its truncation and its write): %ld",
                during.commandSeenEmpty + end.commandSeenEmpty);
    out += line("torn: %ld; lost changes: %ld of %ld saved fields", torn, lostChanges, fieldsChecked);
    out += line("server diagnostics (standard error other than the daemon's): %zu lines", otherLines.size());
    for (size_t i = 0; i < otherLines.size() && i < 5; ++i)
        out += "  " + otherLines[i] + "\n";
    std::cout << out << std::flush;

    for (const std::string &f : failures.first())
        ADD_FAILURE() << f;
    for (const std::string &t : during.torn)
        ADD_FAILURE() << "during the run: " << t;
    for (const std::string &t : end.torn)
        ADD_FAILURE() << "at the end: " << t;
    for (const std::string &l : lostWhat)
        ADD_FAILURE() << "lost change: " << l;
    EXPECT_EQ(failures.count(), 0);
    EXPECT_EQ(torn, 0);
    EXPECT_EQ(ignoredLines, 0) << "the daemon met a queue line it could not read";
    EXPECT_EQ(lostChanges, 0);
    EXPECT_GT(fieldsChecked, 0) << "no save reached a unit";
    EXPECT_GT(taken, 0) << "the lock was never taken";
    EXPECT_EQ(looks, plannedLooks);
    EXPECT_TRUE(lockInStep) << "the lock answers could not be checked against the lock files";
    EXPECT_EQ(unexplainedRefusals, 0);
    EXPECT_EQ(takenWhileRefused, 0);
    EXPECT_GT(watch.created("HBK.lock"), 0) << "the front panel's lock was never seen";
    EXPECT_TRUE(drained) << "the daemon did not take the whole queue";
    EXPECT_TRUE(pendingUnits.empty()) << "a saved unit never reached the queue";
    EXPECT_EQ(end.temporaries, 0) << "a save left its temporary file";
    EXPECT_FALSE(fs::exists(config / "web.lock")) << "every take was followed by a release";
    EXPECT_TRUE(otherLines.empty()) << "the server or the program wrote diagnostics";
}

}  // namespace
