// support.cpp: the fuzz targets' scratch folder, standard streams and descriptor checks.
#include "support.h"

#include <libxml/parser.h>
#include <libxml/xmlerror.h>
#include <sanitizer/common_interface_defs.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace fuzz {

namespace {

// The scratch folder, removed by the destructor at a normal exit (a crash leaves it to the
// runner, which gives every run its own TMPDIR).
class ScratchFolder {
  public:
    explicit ScratchFolder(const char *target)
    {
        const char *base = std::getenv("TMPDIR");
        std::string folder;
        if (base != nullptr && base[0] != '\0')
            folder = base;
        else if (::access("/dev/shm", W_OK) == 0)
            folder = "/dev/shm";
        else
            folder = "/tmp";
        std::string pattern = folder + "/" + target + ".XXXXXX";
        std::vector<char> name(pattern.begin(), pattern.end());
        name.push_back('\0');
        if (::mkdtemp(name.data()) == nullptr)
            Fail("cannot create the scratch folder %s", pattern.c_str());
        path_ = name.data();
    }
    ~ScratchFolder()
    {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    const fs::path &path() const { return path_; }

  private:
    fs::path path_;
};

void IgnoreXmlMessage(void *, const char *, ...) {}

int MemoryFile(const char *name)
{
    const int fd = ::memfd_create(name, MFD_CLOEXEC);
    if (fd < 0)
        Fail("memfd_create(%s): %s", name, std::strerror(errno));
    return fd;
}

struct CloseFile {
    void operator()(std::FILE *file) const { std::fclose(file); }
};

}  // namespace

void Fail(const char *format, ...)
{
    char message[1024];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message, sizeof message, format, arguments);
    va_end(arguments);
    // Through the sanitizers' report, which libFuzzer keeps on its own descriptor when it
    // closes the program's standard error (-close_fd_mask=2).
    __sanitizer_report_error_summary((std::string("fuzz rule broken: ") + message).c_str());
    std::abort();
}

const fs::path &Scratch(const char *target)
{
    static const ScratchFolder folder(target);
    return folder.path();
}

void SilenceXml()
{
    xmlSetGenericErrorFunc(nullptr, IgnoreXmlMessage);
    xmlSetStructuredErrorFunc(nullptr, nullptr);
}

void DiscardStdout()
{
    const int fd = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (fd < 0 || ::dup2(fd, STDOUT_FILENO) < 0)
        Fail("cannot point standard output at /dev/null");
    ::close(fd);
}

CapturedStdout::CapturedStdout() : fd_(MemoryFile("page"))
{
    // Appending: whatever position the page's stream thinks it has, a request's first byte
    // lands at the start of the emptied file.
    if (::fcntl(fd_, F_SETFL, O_APPEND) != 0 || ::dup2(fd_, STDOUT_FILENO) < 0)
        Fail("cannot point standard output at the page file");
}

CapturedStdout::~CapturedStdout() { ::close(fd_); }

void CapturedStdout::Clear() const
{
    if (::ftruncate(fd_, 0) != 0)
        Fail("cannot empty the page file");
}

std::string CapturedStdout::Head(std::size_t bytes) const
{
    std::string head(bytes, '\0');
    const ssize_t n = ::pread(fd_, head.data(), bytes, 0);
    head.resize(n > 0 ? static_cast<std::size_t>(n) : 0);
    return head;
}

FakeStdin::FakeStdin() : fd_(MemoryFile("body"))
{
    if (::dup2(fd_, STDIN_FILENO) < 0)
        Fail("cannot point standard input at the body file");
}

FakeStdin::~FakeStdin() { ::close(fd_); }

void FakeStdin::Set(std::string_view bytes) const
{
    if (::ftruncate(fd_, 0) != 0 ||
        ::pwrite(fd_, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()) ||
        ::lseek(STDIN_FILENO, 0, SEEK_SET) != 0)
        Fail("cannot write the body file");
}

int LowestFreeFd()
{
    const int fd = ::dup(STDERR_FILENO);
    if (fd < 0)
        Fail("dup: %s", std::strerror(errno));
    ::close(fd);
    return fd;
}

void FdLeakGuard::Check() const
{
    const int after = LowestFreeFd();
    if (after != before_)
        Fail("%s left a descriptor open: the lowest free one was %d before, is %d after", what_, before_, after);
}

std::string ReadFile(const fs::path &path)
{
    std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rb"));
    std::string content;
    if (!file)
        return content;
    char buffer[8192];
    while (const std::size_t n = std::fread(buffer, 1, sizeof buffer, file.get()))
        content.append(buffer, n);
    return content;
}

bool WriteFile(const fs::path &path, std::string_view bytes)
{
    std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "wb"));
    if (!file)
        return false;
    if (std::fwrite(bytes.data(), 1, bytes.size(), file.get()) != bytes.size())
        return false;
    return std::fclose(file.release()) == 0;
}

}  // namespace fuzz
