// Watches the files that make command 5 refuse the page lock (config/control.lock of the
// control daemon, config/command.msg of a master save, config/HBK.lock of the front panel)
// together with one mark file per client, which the client writes just before it sends
// command 5 and again once the whole answer is in. One inotify queue carries both kinds of
// event in the order they happened, so for every command 5 the watch knows whether a refusing
// file existed at some moment of the request, and whether one existed all through it.
#pragma once

#include "support/cgi_runner.h"

#include <atomic>
#include <chrono>
#include <map>
#include <filesystem>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace cambioip_test::load {

struct LockWindow {
    bool refusedAtSomeMoment = false;  // a refusing file existed at some moment of the request
    bool refusedThroughout = false;    // one refusing file existed from before it to after it
};

class LockWatch {
  public:
    LockWatch(const std::filesystem::path &config, const std::filesystem::path &marks, int clients);
    ~LockWatch();
    LockWatch(const LockWatch &) = delete;
    LockWatch &operator=(const LockWatch &) = delete;

    bool started() const { return started_; }
    // Called by a client just before it sends command 5 and just after the answer.
    void mark(int client);
    // Stops watching once every mark has been written; the results below are then final.
    void stop();

    // One window per command 5 of the client, in the order they were sent.
    const std::vector<LockWindow> &windows(int client) const { return clients_[client].windows; }
    // The events were lost (queue overflow) or a mark could not be written: no verdict holds.
    bool lost() const { return overflow_ || markFailed_; }
    int created(const std::string &name) const;  // times a refusing file appeared
    // How long a refusing file existed in all, as the watch saw it (to a few milliseconds).
    double secondsPresent(const std::string &name) const;

  private:
    struct Client {
        bool inRequest = false;     // the watch's side
        bool markedStart = false;  // the client's side: its last mark began a request
        LockWindow now;
        std::set<std::string> throughout;  // refusing files present since the request began
        std::vector<LockWindow> windows;
    };
    void run();
    void drain();

    std::filesystem::path marks_;
    Descriptor inotify_;
    int configWatch_ = -1, marksWatch_ = -1;
    bool started_ = false;
    std::atomic<bool> stop_{false};
    std::atomic<bool> markFailed_{false};
    bool overflow_ = false;
    std::set<std::string> present_;
    std::map<std::string, std::chrono::steady_clock::time_point> since_;
    std::map<std::string, double> seconds_;
    std::vector<Client> clients_;
    std::map<std::string, int> created_;
    std::thread thread_;
};

}  // namespace cambioip_test::load
