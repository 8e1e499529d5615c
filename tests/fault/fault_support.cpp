#include "fault/fault_support.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <random>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace cambioip_fault {

using cambioip_test::Descriptor;

namespace {

bool writeAll(const fs::path &file, const std::string &text)
{
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out << text;
    out.close();
    return !out.fail();
}

}  // namespace

bool stressScale()
{
    const char *valor = std::getenv("CAMBIOIP_STRESS");
    return valor != nullptr && std::string(valor) == "1";
}

int scaled(int normal, int stress) { return stressScale() ? stress : normal; }

uint64_t seed()
{
    if (const char *fijada = std::getenv("CAMBIOIP_FAULT_SEED"); fijada != nullptr && *fijada != '\0')
        return std::strtoull(fijada, nullptr, 10);
    std::random_device fuente;
    // 62 bits, so that the figures line prints it as it is.
    return ((static_cast<uint64_t>(fuente()) << 32) ^ fuente()) & ((uint64_t{1} << 62) - 1);
}

std::vector<std::string> temporaries(const TempRoot &root)
{
    std::vector<std::string> found;
    for (const auto &entry : fs::directory_iterator(root.config()))
        if (entry.path().filename().string().starts_with("."))
            found.push_back(entry.path().filename().string());
    return found;
}

void printFigures(const std::string &test, const std::vector<std::pair<std::string, long long>> &figures)
{
    std::string line = "[fault figures] " + test + (stressScale() ? " (stress):" : ":");
    for (size_t i = 0; i < figures.size(); ++i)
        line += (i == 0 ? " " : ", ") + figures[i].first + " " + std::to_string(figures[i].second);
    std::cout << line << std::endl;
}

namespace {
bool ownUserNamespace = false;
}  // namespace

bool inOwnUserNamespace() { return ownUserNamespace; }

std::string enterPrivateMounts()
{
    static const std::string reason = [] () -> std::string {
        if (::unshare(CLONE_NEWNS) != 0) {
            const int asRoot = errno;
            // Without the right to mount here, a user namespace of our own may give it.
            const uid_t uid = ::getuid();
            const gid_t gid = ::getgid();
            if (::unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0)
                return std::string("no mount namespace: ") + std::strerror(asRoot) +
                       "; no user namespace either: " + std::strerror(errno);
            if (!writeAll("/proc/self/setgroups", "deny") ||
                !writeAll("/proc/self/uid_map", "0 " + std::to_string(uid) + " 1") ||
                !writeAll("/proc/self/gid_map", "0 " + std::to_string(gid) + " 1"))
                return "cannot map this user in a user namespace";
            ownUserNamespace = true;
        }
        if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
            return std::string("cannot make the mounts private: ") + std::strerror(errno);
        return "";
    }();
    return reason;
}

Mount Mount::tmpfs(const fs::path &where, const std::string &options)
{
    Mount made;
    made.where_ = where;
    if (::mount("tmpfs", where.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, options.c_str()) != 0)
        made.error_ = "mount tmpfs " + options + " on " + where.string() + ": " + std::strerror(errno);
    return made;
}

Mount Mount::readOnlyBind(const fs::path &where)
{
    Mount made;
    made.where_ = where;
    if (::mount(where.c_str(), where.c_str(), nullptr, MS_BIND, nullptr) != 0) {
        made.error_ = "bind " + where.string() + ": " + std::strerror(errno);
        return made;
    }
    if (::mount(nullptr, where.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) != 0) {
        made.error_ = "remount " + where.string() + " read-only: " + std::strerror(errno);
        ::umount2(where.c_str(), MNT_DETACH);
    }
    return made;
}

Mount::Mount(Mount &&other) noexcept : where_(std::move(other.where_)), error_(std::move(other.error_))
{
    other.where_.clear();
}

Mount::~Mount()
{
    if (!where_.empty() && error_.empty())
        ::umount2(where_.c_str(), MNT_DETACH);
}

long fillFileSystem(const fs::path &folder, bool inodes)
{
    // A small file system runs out long before these bounds.
    constexpr long kMaxFiles = 1 << 20;
    constexpr long kMaxWrites = 1 << 22;
    if (inodes) {
        for (long n = 0; n < kMaxFiles; ++n) {
            const std::string name = (folder / ("zz-filler-" + std::to_string(n))).string();
            Descriptor fd(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
            if (fd.fd < 0)
                return errno == ENOSPC ? n : -1;
        }
        return -1;
    }
    Descriptor fd(::open((folder / "zz-filler").c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
    if (fd.fd < 0)
        return -1;
    // Large pieces first, then down to single bytes, so that no block keeps room.
    const std::string piece(65536, 'f');
    long total = 0, writes = 0;
    for (size_t size = piece.size(); size >= 1; size /= 16) {
        while (writes++ < kMaxWrites) {
            const ssize_t written = ::write(fd.fd, piece.data(), size);
            if (written < 0) {
                if (errno != ENOSPC)
                    return -1;
                break;
            }
            total += written;
        }
        if (size == 1)
            return writes < kMaxWrites ? total : -1;
    }
    return -1;
}

}  // namespace cambioip_fault
