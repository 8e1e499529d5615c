#include "load/lock_watch.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace cambioip_test::load {

namespace {

const std::set<std::string> kRefusing = {"control.lock", "command.msg", "HBK.lock"};

}  // namespace

LockWatch::LockWatch(const std::filesystem::path &config, const std::filesystem::path &marks, int clients)
    : marks_(marks), inotify_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)), clients_(static_cast<size_t>(clients))
{
    if (inotify_.fd < 0)
        return;
    configWatch_ =
        ::inotify_add_watch(inotify_.fd, config.c_str(), IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO);
    marksWatch_ = ::inotify_add_watch(inotify_.fd, marks.c_str(), IN_CLOSE_WRITE);
    if (configWatch_ < 0 || marksWatch_ < 0)
        return;
    // Whatever is already there; a file appearing meanwhile is counted once.
    for (const std::string &name : kRefusing)
        if (std::filesystem::exists(config / name)) {
            present_.insert(name);
            since_[name] = std::chrono::steady_clock::now();
        }
    started_ = true;
    thread_ = std::thread([this] { run(); });
}

LockWatch::~LockWatch() { stop(); }

void LockWatch::mark(int client)
{
    // The marks before and after a request go to two files: inotify merges an event with the
    // one queued just before it when both are the same, which would swallow a mark.
    Client &c = clients_[static_cast<size_t>(client)];
    c.markedStart = !c.markedStart;
    const std::string path = (marks_ / ("c" + std::to_string(client) + (c.markedStart ? "a" : "b"))).string();
    if (Descriptor(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644)).fd < 0)
        markFailed_ = true;
}

void LockWatch::stop()
{
    if (!thread_.joinable())
        return;
    stop_ = true;
    thread_.join();
}

double LockWatch::secondsPresent(const std::string &name) const
{
    const auto it = seconds_.find(name);
    return it == seconds_.end() ? 0 : it->second;
}

int LockWatch::created(const std::string &name) const
{
    const auto it = created_.find(name);
    return it == created_.end() ? 0 : it->second;
}

void LockWatch::run()
{
    while (!stop_) {
        pollfd p{inotify_.fd, POLLIN, 0};
        if (::poll(&p, 1, 100) > 0)
            drain();
    }
    drain();  // the marks written before stop() was called
}

void LockWatch::drain()
{
    alignas(inotify_event) char buffer[64 * 1024];
    for (;;) {
        const ssize_t n = ::read(inotify_.fd, buffer, sizeof buffer);
        if (n <= 0)
            return;
        for (ssize_t at = 0; at < n;) {
            const auto *event = reinterpret_cast<const inotify_event *>(buffer + at);
            at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
            if (event->mask & IN_Q_OVERFLOW) {
                overflow_ = true;
                continue;
            }
            const std::string name = event->len > 0 ? event->name : "";
            if (event->wd == marksWatch_) {
                if (name.size() < 3 || name[0] != 'c')
                    continue;
                const size_t index = static_cast<size_t>(std::atoi(name.c_str() + 1));
                if (index >= clients_.size())
                    continue;
                Client &c = clients_[index];
                if (c.inRequest != (name.back() == 'b')) {
                    markFailed_ = true;  // a mark missing: the requests and the windows are out of step
                    continue;
                }
                if (!c.inRequest) {
                    c.now = {!present_.empty(), false};
                    c.throughout = present_;
                } else {
                    c.now.refusedThroughout = !c.throughout.empty();
                    c.windows.push_back(c.now);
                }
                c.inRequest = !c.inRequest;
            } else if (event->wd == configWatch_ && kRefusing.count(name) != 0) {
                if (event->mask & (IN_CREATE | IN_MOVED_TO)) {
                    if (!present_.insert(name).second)
                        continue;
                    since_[name] = std::chrono::steady_clock::now();
                    ++created_[name];
                    for (Client &c : clients_)
                        if (c.inRequest)
                            c.now.refusedAtSomeMoment = true;
                } else {
                    if (present_.erase(name) != 0)
                        seconds_[name] +=
                            std::chrono::duration<double>(std::chrono::steady_clock::now() - since_[name]).count();
                    for (Client &c : clients_)
                        c.throughout.erase(name);
                }
            }
        }
    }
}

}  // namespace cambioip_test::load
