// fuzz_peticion: one whole request of cambioIP.cgi in-process. The input chooses the rack,
// the method, the command, the form text, the lock files the request finds and possibly one
// unit document's bytes (peticion.h); CIP_Main() answers it with CAMBIOIP_ROOT on a copy of
// the rack, the body on standard input and the page in an in-memory file.
//
// Every fixture rack is copied once into the scratch folder and kept in memory; after each
// request only what the request (or the input) changed is put back, found by comparing every
// entry's inode, size, mode and times with those of the pristine copy.
//
// Besides what ASan and UBSan catch, a request breaks a rule when it answers with anything
// but the HTTP header first, returns non-zero, leaves a descriptor open, leaves a save's
// temporary file behind, or leaves a unit document it wrote unreadable.
#include "peticion.h"
#include "support.h"

#include "cambioIP/cambioIP.h"
#include "funciones_XML/funciones_XML.h"
#include "gestfich/gestfich.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace fuzz;
namespace pet = fuzz::peticion;

constexpr std::string_view kHeader = "Content-Type:text/html;charset=UTF-8\r\n\n";

// What tells that an entry changed: a save renames a new file over the old one (another
// inode), an append or a truncation changes the size and the times, a chmod the mode and ctime.
struct Stamp {
    ino_t inode = 0;
    off_t size = 0;
    mode_t mode = 0;
    timespec modified{};
    timespec changed{};

    static Stamp Of(const struct stat &st)
    {
        return {st.st_ino, st.st_size, st.st_mode, st.st_mtim, st.st_ctim};
    }
    bool operator==(const Stamp &other) const
    {
        return inode == other.inode && size == other.size && mode == other.mode &&
               modified.tv_sec == other.modified.tv_sec && modified.tv_nsec == other.modified.tv_nsec &&
               changed.tv_sec == other.changed.tv_sec && changed.tv_nsec == other.changed.tv_nsec;
    }
};

struct CloseDir {
    void operator()(DIR *dir) const { ::closedir(dir); }
};

struct FreeDocument {
    void operator()(xmlDoc *document) const { xmlFreeDoc(document); }
};

using Descriptor = GESTFICH_Descriptor;

// Every entry below the folder, depth first, as its path relative to the root and its lstat.
template <typename Visit>
void Walk(const fs::path &root, const std::string &relative, Visit &&visit)
{
    const fs::path folder = relative.empty() ? root : root / relative;
    std::unique_ptr<DIR, CloseDir> dir(::opendir(folder.c_str()));
    if (!dir)
        return;
    std::vector<std::string> names;
    while (const dirent *entry = ::readdir(dir.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.emplace_back(name);
    }
    dir.reset();
    for (const std::string &name : names) {
        const std::string path = relative.empty() ? name : relative + "/" + name;
        struct stat st {};
        if (::lstat((root / path).c_str(), &st) != 0)
            continue;
        if (visit(path, st) && S_ISDIR(st.st_mode))
            Walk(root, path, visit);
    }
}

// One fixture rack, copied under the scratch folder, and how to put it back.
class Rack {
  public:
    Rack(const fs::path &fixture, const fs::path &root) : root_(root)
    {
        fs::create_directories(root_);
        fs::copy(fixture, root_, fs::copy_options::recursive);
        Walk(root_, "", [&](const std::string &path, const struct stat &st) {
            if (S_ISDIR(st.st_mode)) {
                folders_.insert(path);
            } else {
                files_[path] = {ReadFile(root_ / path), static_cast<mode_t>(st.st_mode & 07777), Stamp::Of(st)};
                if (path.starts_with("config/"))
                    documents_.push_back(path);
            }
            return true;
        });
        std::sort(documents_.begin(), documents_.end());
    }

    const fs::path &root() const { return root_; }
    const std::vector<std::string> &documents() const { return documents_; }

    // A file the request finds: written now, checked and put back after the request.
    void Plant(const std::string &path, std::string_view content)
    {
        std::error_code ignored;
        fs::remove(root_ / path, ignored);
        if (!WriteFile(root_ / path, content))
            Fail("cannot plant %s", path.c_str());
        struct stat st {};
        ::lstat((root_ / path).c_str(), &st);
        planted_[path] = Stamp::Of(st);
    }

    // Checks what the request left, then puts the pristine rack back.
    void CheckAndRestore()
    {
        std::set<std::string> seen;
        std::vector<std::string> rewrite;
        std::vector<std::string> extra;
        Walk(root_, "", [&](const std::string &path, const struct stat &st) {
            if (S_ISDIR(st.st_mode)) {
                if (!folders_.contains(path)) {
                    extra.push_back(path);
                    return false;
                }
                seen.insert(path);
                return true;
            }
            const auto pristine = files_.find(path);
            const auto planted = planted_.find(path);
            const bool byRequest = planted != planted_.end()    ? !(planted->second == Stamp::Of(st))
                                   : pristine != files_.end() ? !(pristine->second.stamp == Stamp::Of(st))
                                                              : true;
            if (byRequest && S_ISREG(st.st_mode))
                CheckWritten(path);
            if (pristine == files_.end()) {
                extra.push_back(path);
            } else {
                seen.insert(path);
                if (byRequest || planted != planted_.end() || !S_ISREG(st.st_mode))
                    rewrite.push_back(path);
            }
            return false;
        });
        for (const std::string &path : extra) {
            std::error_code ignored;
            fs::remove_all(root_ / path, ignored);
        }
        for (const std::string &folder : folders_)
            if (!seen.contains(folder))
                fs::create_directories(root_ / folder);
        for (auto &[path, file] : files_)
            if (!seen.contains(path))
                rewrite.push_back(path);
        for (const std::string &path : rewrite)
            Put(path);
        planted_.clear();
    }

  private:
    struct File {
        std::string content;
        mode_t mode;
        Stamp stamp;
    };

    // A file the request created or changed.
    void CheckWritten(const std::string &path) const
    {
        const std::string name = fs::path(path).filename().string();
        // A save writes ".<name>.tmp" and six characters, then renames it into place; a
        // failed save removes it.
        if (name.starts_with(".") && name.find(".tmp") != std::string::npos)
            Fail("the request left the temporary file %s", path.c_str());
        if (path.starts_with("config/") && name.ends_with(".xml")) {
            xmlDocPtr loaded = nullptr;
            const std::unique_ptr<xmlDoc, FreeDocument> document(LOAD_XML_RDONLY((root_ / path).c_str(), &loaded));
            if (!document)
                Fail("the request left %s unreadable", path.c_str());
        }
    }

    // Writes the pristine file back in place and takes its new stamp.
    void Put(const std::string &path)
    {
        File &file = files_.at(path);
        const fs::path full = root_ / path;
        struct stat st {};
        if (::lstat(full.c_str(), &st) == 0 && !S_ISREG(st.st_mode)) {
            std::error_code ignored;
            fs::remove_all(full, ignored);
        }
        Descriptor fd(::open(full.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, file.mode));
        if (fd.fd < 0 ||
            ::write(fd.fd, file.content.data(), file.content.size()) != static_cast<ssize_t>(file.content.size()) ||
            ::fchmod(fd.fd, file.mode) != 0 || ::fstat(fd.fd, &st) != 0)
            Fail("cannot put back %s: %s", path.c_str(), std::strerror(errno));
        file.stamp = Stamp::Of(st);
    }

    fs::path root_;
    std::map<std::string, File> files_;
    std::set<std::string> folders_;
    std::vector<std::string> documents_;
    std::map<std::string, Stamp> planted_;
};

struct Harness {
    std::vector<std::unique_ptr<Rack>> racks;
    std::unique_ptr<CapturedStdout> page;
    std::unique_ptr<FakeStdin> body;
};

Harness &State()
{
    static Harness harness;
    return harness;
}

void SetEnv(const char *name, const std::string &value)
{
    if (::setenv(name, value.c_str(), 1) != 0)
        Fail("setenv %s", name);
}

// One request as the input describes it (an input shorter than the header is no request).
void Request(const std::uint8_t *data, std::size_t size)
{
    Harness &h = State();
    if (size < pet::CabeceraBytes || h.racks.empty())
        return;
    Rack &rack = *h.racks[data[0] % h.racks.size()];
    const std::uint8_t flags = data[1];
    const std::uint8_t command = data[2];
    const std::string_view rest(reinterpret_cast<const char *>(data) + pet::CabeceraBytes, size - pet::CabeceraBytes);
    const std::size_t end = rest.find('\0');

    std::string form;
    if (command < pet::ComandoLibre)
        form = "command=" + std::to_string(command % pet::ComandosElegibles) + "&";
    form.append(rest.substr(0, end));

    for (std::size_t i = 0; i < std::size(pet::Plantados); ++i)
        if (flags & (1u << (pet::PrimerBitPlantado + i)))
            rack.Plant(std::string("config/") + pet::Plantados[i].nombre, pet::Plantados[i].contenido);
    if ((flags & pet::ReemplazaDocumento) && end != std::string_view::npos && end + 1 < rest.size() &&
        !rack.documents().empty()) {
        const auto choice = static_cast<std::uint8_t>(rest[end + 1]);
        rack.Plant(rack.documents()[choice % rack.documents().size()], rest.substr(end + 2));
    }

    SetEnv("CAMBIOIP_ROOT", rack.root().string());
    switch (flags & pet::MetodoMascara) {
    case pet::MetodoGet:
        SetEnv("REQUEST_METHOD", "GET");
        SetEnv("QUERY_STRING", form);
        ::unsetenv("CONTENT_LENGTH");
        h.body->Set("");
        break;
    case pet::MetodoPost:
    case pet::MetodoPostCorto: {
        const bool shortBody = (flags & pet::MetodoMascara) == pet::MetodoPostCorto;
        SetEnv("REQUEST_METHOD", "POST");
        ::unsetenv("QUERY_STRING");
        SetEnv("CONTENT_LENGTH", std::to_string(form.size() + (shortBody ? 7 : 0)));
        h.body->Set(form);
        break;
    }
    default:
        ::unsetenv("REQUEST_METHOD");
        SetEnv("QUERY_STRING", form);
        ::unsetenv("CONTENT_LENGTH");
        h.body->Set(form);
        break;
    }

    h.page->Clear();
    const FdLeakGuard guard("the request");
    const int status = CIP_Main();
    guard.Check();
    if (status != 0)
        Fail("CIP_Main returned %d", status);
    const std::string head = h.page->Head(kHeader.size());
    if (head != kHeader)
        Fail("the answer does not start with the HTTP header: \"%s\"", head.c_str());
    rack.CheckAndRestore();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    SilenceXml();
    SetEnv("CAMBIOIP_LOAD_PAUSE_MS", "0");
    Harness &h = State();
    h.page = std::make_unique<CapturedStdout>();
    h.body = std::make_unique<FakeStdin>();
    std::vector<fs::path> fixtures;
    for (const auto &entry : fs::directory_iterator(CAMBIOIP_FUZZ_RACKS))
        if (entry.is_directory())
            fixtures.push_back(entry.path());
    std::sort(fixtures.begin(), fixtures.end());
    for (const fs::path &fixture : fixtures)
        h.racks.push_back(std::make_unique<Rack>(fixture, Scratch("fuzz_peticion") / fixture.filename()));
    if (h.racks.empty())
        Fail("no rack in %s", CAMBIOIP_FUZZ_RACKS);
    // One request first, so that what the process opens once and keeps (the page stream's
    // buffer, libxml2's tables) is in place before descriptors are counted.
    const std::uint8_t warmUp[] = {0, pet::MetodoGet, 15};
    Request(warmUp, sizeof warmUp);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Request(data, size);
    return 0;
}
