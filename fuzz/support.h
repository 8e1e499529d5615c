// What the fuzz targets share: a scratch folder that goes away with the process, the
// program's standard streams pointed at files the target owns, libxml2's parse messages
// silenced, the check that an input leaves no descriptor open, and the report of a broken
// rule (an abort, which libFuzzer keeps as a crash).
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace fuzz {

namespace fs = std::filesystem;

// Reports the broken rule (a SUMMARY line of the sanitizers' report) and aborts.
[[noreturn, gnu::format(printf, 1, 2)]] void Fail(const char *format, ...);

// A folder under $TMPDIR (else /dev/shm when writable, else /tmp) named after the target,
// created once and removed, with everything in it, when the process ends normally.
const fs::path &Scratch(const char *target);

// libxml2 prints every parse error of a broken document on standard error; a fuzz input is
// usually broken, so the messages are dropped.
void SilenceXml();

// Points the program's standard output at /dev/null, so that pages and diagnostics cost a
// write and nothing else. Must run before the program's first byte of output.
void DiscardStdout();

// Points standard output at an in-memory file: Clear() empties it before a request, Head()
// reads its first bytes after it.
class CapturedStdout {
  public:
    CapturedStdout();
    ~CapturedStdout();
    CapturedStdout(const CapturedStdout &) = delete;
    CapturedStdout &operator=(const CapturedStdout &) = delete;
    void Clear() const;
    std::string Head(std::size_t bytes) const;

  private:
    int fd_;
};

// Standard input as an in-memory file: Set() makes its content the given bytes, read from
// the start by the next reader of descriptor 0.
class FakeStdin {
  public:
    FakeStdin();
    ~FakeStdin();
    FakeStdin(const FakeStdin &) = delete;
    FakeStdin &operator=(const FakeStdin &) = delete;
    void Set(std::string_view bytes) const;

  private:
    int fd_;
};

// The lowest descriptor number free now. An input that leaves a file, folder or document
// open takes the lowest free number and so raises it.
int LowestFreeFd();

// Fails when the lowest free descriptor is not the one it was when the guard was made.
class FdLeakGuard {
  public:
    explicit FdLeakGuard(const char *what) : what_(what), before_(LowestFreeFd()) {}
    void Check() const;

  private:
    const char *what_;
    int before_;
};

// The whole content of a file ("" when it cannot be read) and its replacement.
std::string ReadFile(const fs::path &path);
bool WriteFile(const fs::path &path, std::string_view bytes);

}  // namespace fuzz
