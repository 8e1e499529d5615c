// fuzz_documento: any bytes as a unit document. The bytes are loaded through the project's
// loader (LOAD_XML_RDONLY: the size limit, the parser options), every accessor of the
// configuration and status element lists reads them at several indices and buffer sizes,
// one writer or list operation changes the document and the store's close saves it
// atomically into the scratch folder, where it is loaded again.
//
// What the input's hash chooses (the writer, its indices, where in the input its value
// comes from) changes with every mutation of the document.
//
// Besides what ASan and UBSan catch (every read buffer is exactly its size on the heap), the
// layer breaks a rule when a read is cut otherwise than at its size and a UTF-8 boundary, a
// refused write changes the document, a stored value does not read back byte for byte
// before and after the save, a saved document does not load again, a failed save changes the
// file, a temporary file stays, or a descriptor is left open.
#include "support.h"

#include "funciones_XML/funciones_XML.h"
#include "utilsXML/utilsXML.h"

#include <libxml/tree.h>

#include <cstdint>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace fuzz;

struct FreeDocument {
    void operator()(xmlDoc *document) const { xmlFreeDoc(document); }
};
using Document = std::unique_ptr<xmlDoc, FreeDocument>;

// One row of an element list, with its reader and writer brought to one signature.
struct Accessor {
    const char *path;
    int indices;
    std::uint16_t minimum;
    bool character;  // a one-character flag: no buffer size
    bool tolerant;   // the writer forgives a missing element in an older document
    int (*read)(xmlDocPtr, char *, std::uint16_t, std::uint8_t, std::uint8_t);
    int (*write)(xmlDocPtr, const char *, std::uint8_t, std::uint8_t);
};

#define FUZZ_LEE_0(lee) [](xmlDocPtr d, char *b, std::uint16_t t, std::uint8_t, std::uint8_t) { return lee(d, b, t); }
#define FUZZ_LEE_1(lee) [](xmlDocPtr d, char *b, std::uint16_t t, std::uint8_t i, std::uint8_t) { return lee(d, b, t, i); }
#define FUZZ_LEE_2(lee) \
    [](xmlDocPtr d, char *b, std::uint16_t t, std::uint8_t i, std::uint8_t j) { return lee(d, b, t, i, j); }
#define FUZZ_GRABA_0(graba) [](xmlDocPtr d, const char *v, std::uint8_t, std::uint8_t) { return graba(d, v); }
#define FUZZ_GRABA_1(graba) [](xmlDocPtr d, const char *v, std::uint8_t i, std::uint8_t) { return graba(d, v, i); }
#define FUZZ_GRABA_2(graba) \
    [](xmlDocPtr d, const char *v, std::uint8_t i, std::uint8_t j) { return graba(d, v, i, j); }
#define FUZZ_LEE_CARACTER_0(lee) [](xmlDocPtr d, char *b, std::uint16_t, std::uint8_t, std::uint8_t) { return lee(d, b); }
#define FUZZ_LEE_CARACTER_1(lee) \
    [](xmlDocPtr d, char *b, std::uint16_t, std::uint8_t i, std::uint8_t) { return lee(d, b, i); }
#define FUZZ_GRABA_CARACTER_0(graba) [](xmlDocPtr d, const char *v, std::uint8_t, std::uint8_t) { return graba(d, v[0]); }
#define FUZZ_GRABA_CARACTER_1(graba) \
    [](xmlDocPtr d, const char *v, std::uint8_t i, std::uint8_t) { return graba(d, v[0], i); }

#define UTILSXML_CAMPO(ruta, lee, graba, minimo, version, indices) \
    {ruta, indices, minimo, false, false, FUZZ_LEE_##indices(lee), FUZZ_GRABA_##indices(graba)},
#define UTILSXML_CARACTER(ruta, lee, graba, minimo, version, indices) \
    {ruta, indices, minimo, true, false, FUZZ_LEE_CARACTER_##indices(lee), FUZZ_GRABA_CARACTER_##indices(graba)},
const Accessor kConfig[] = {
#include "utilsXML/utilsXML_campos_config.def"
};

#define UTILSXML_CAMPO(ruta, lee, graba, minimo, version, indices) \
    {ruta, indices, minimo, false, false, FUZZ_LEE_##indices(lee), FUZZ_GRABA_##indices(graba)},
#define UTILSXML_CAMPO_TOLERANTE(ruta, lee, graba, minimo, version, indices) \
    {ruta, indices, minimo, false, true, FUZZ_LEE_##indices(lee), FUZZ_GRABA_##indices(graba)},
// The selector byte takes the place of the index.
#define UTILSXML_SELECTOR(rutaSi, rutaNo, lee, graba, minimo, version) \
    {rutaSi, 1, minimo, false, false, FUZZ_LEE_1(lee), FUZZ_GRABA_1(graba)},
const Accessor kStatus[] = {
#include "utilsXML/utilsXML_campos_status.def"
};

// The list operations, with two index bytes each (the ones that take fewer ignore the rest).
using ListOperation = int (*)(xmlDocPtr, std::uint8_t, std::uint8_t);
const ListOperation kListOperations[] = {
    [](xmlDocPtr d, std::uint8_t, std::uint8_t) { return UTILSXML_CreaNuevaentradaIP(d); },
    [](xmlDocPtr d, std::uint8_t e, std::uint8_t) { return UTILSXML_BorraEntradaIP(d, e); },
    [](xmlDocPtr d, std::uint8_t e, std::uint8_t) { return UTILSXML_CreaNuevoServicioEntradaIP(d, e); },
    [](xmlDocPtr d, std::uint8_t e, std::uint8_t s) { return UTILSXML_BorraServicioEntradaIP(d, e, s); },
    [](xmlDocPtr d, std::uint8_t e, std::uint8_t) { return UTILSXML_CreaNuevaentradaIPenSalidaIP(d, e); },
    [](xmlDocPtr d, std::uint8_t e, std::uint8_t) { return UTILSXML_BorraEntradaIPenSalidaIP(d, e); },
    [](xmlDocPtr d, std::uint8_t, std::uint8_t) { return UTILSXML_STATUS_CreaNuevaentradaIP(d); },
    [](xmlDocPtr d, std::uint8_t e, std::uint8_t) { return UTILSXML_STATUS_BorraEntradaIP(d, e); },
    [](xmlDocPtr d, std::uint8_t e, std::uint8_t) { return UTILSXML_STATUS_CreaNuevoServicioEntradaIP(d, e); },
    [](xmlDocPtr d, std::uint8_t e, std::uint8_t s) { return UTILSXML_STATUS_BorraServicioEntradaIP(d, e, s); },
};

constexpr std::uint16_t kWhole = 4096;

// FNV-1a: what the input chooses besides being the document.
std::uint64_t Hash(const std::uint8_t *data, std::size_t size)
{
    std::uint64_t h = 1469598103934665603ULL;
    for (std::size_t i = 0; i < size; ++i)
        h = (h ^ data[i]) * 1099511628211ULL;
    return h;
}

bool Continuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// A read into a heap buffer of exactly `size` bytes, as text (a value of exactly `size` bytes
// comes without terminator); ok is false when the reader failed.
struct Read {
    bool ok = false;
    std::string value;
};

Read ReadField(const Accessor &field, xmlDocPtr document, std::uint16_t size, std::uint8_t i, std::uint8_t j)
{
    std::unique_ptr<char[]> buffer(new char[size]);
    std::memset(buffer.get(), 0, size);
    Read read;
    read.ok = field.read(document, buffer.get(), size, i, j) == 0;
    if (read.ok)
        read.value.assign(buffer.get(), ::strnlen(buffer.get(), size));
    return read;
}

std::string Serialize(xmlDocPtr document)
{
    xmlChar *memory = nullptr;
    int length = 0;
    xmlDocDumpMemory(document, &memory, &length);
    std::string text(memory != nullptr ? reinterpret_cast<const char *>(memory) : "", length > 0 ? length : 0);
    xmlFree(memory);
    return text;
}

// Every read of one field at one pair of indices: at its minimum size, at a size that
// holds any value whole, and one byte below the minimum, which is refused.
void CheckReads(const Accessor &field, xmlDocPtr document, std::uint8_t i, std::uint8_t j)
{
    const Read whole = ReadField(field, document, kWhole, i, j);
    if (field.character)
        return;
    const std::uint16_t size = field.minimum;
    const Read cut = ReadField(field, document, size, i, j);
    if (size > 1 && ReadField(field, document, size - 1, i, j).ok)
        Fail("%s: a read below the minimum size of %u succeeded", field.path, static_cast<unsigned>(size));
    if (!whole.ok || !cut.ok)
        return;
    const std::string &value = whole.value;
    const std::size_t length = cut.value.size();
    if (value.compare(0, length, cut.value) != 0)
        Fail("%s[%u,%u]: the read at %u bytes is not a beginning of the value", field.path, i, j, size);
    if (value.size() <= size) {
        if (length != value.size())
            Fail("%s[%u,%u]: a value of %zu bytes was cut at %u", field.path, i, j, value.size(), size);
    } else if (length > static_cast<std::size_t>(size - 1) || (length > 0 && Continuation(value[length]))) {
        Fail("%s[%u,%u]: a value of %zu bytes was cut at %zu, not below %u at a character", field.path, i, j,
             value.size(), length, size);
    }
}

void CheckAllReads(xmlDocPtr document, std::uint64_t h)
{
    UTILSXML_CheckVersionConfig(document);
    UTILSXML_STATUS_CheckVersionConfig(document);
    const auto a = static_cast<std::uint8_t>(h >> 8);
    const auto b = static_cast<std::uint8_t>(h >> 16);
    for (const std::span<const Accessor> list : {std::span<const Accessor>(kConfig), std::span<const Accessor>(kStatus)}) {
        for (const Accessor &field : list) {
            switch (field.indices) {
            case 0:
                CheckReads(field, document, 0, 0);
                break;
            case 1:
                for (std::uint8_t i : {std::uint8_t{0}, std::uint8_t{1}, std::uint8_t{2}, a})
                    CheckReads(field, document, i, 0);
                break;
            default:
                CheckReads(field, document, 1, 1);
                CheckReads(field, document, 2, 3);
                CheckReads(field, document, a, b);
                break;
            }
        }
    }
}

// The store's folder of the scratch space holds the document alone after a save.
void CheckNoLeftovers(const fs::path &folder)
{
    for (const auto &entry : fs::directory_iterator(folder))
        if (entry.path().filename() != "network.xml")
            Fail("the save left %s", entry.path().filename().c_str());
}

// Removes the document's file when the input is done, whatever happened.
struct RemoveFile {
    fs::path path;
    ~RemoveFile()
    {
        std::error_code ignored;
        fs::remove(path, ignored);
    }
};

void Exercise(const std::uint8_t *data, std::size_t size)
{
    const fs::path folder = Scratch("fuzz_documento");
    const RemoveFile file{folder / "network.xml"};
    const std::string bytes(reinterpret_cast<const char *>(data), size);
    if (!WriteFile(file.path, bytes))
        Fail("cannot write %s", file.path.c_str());

    xmlDocPtr loaded = nullptr;
    Document document(LOAD_XML_RDONLY(file.path.c_str(), &loaded));
    if (!document)
        return;
    const std::uint64_t h = Hash(data, size);
    CheckAllReads(document.get(), h);

    // One change: a writer of either list with a value taken from the input, or a list operation.
    constexpr std::size_t fields = std::size(kConfig) + std::size(kStatus);
    const std::size_t choice = (h >> 24) % (fields + std::size(kListOperations));
    const auto i = static_cast<std::uint8_t>((h >> 40) % 4);
    const auto j = static_cast<std::uint8_t>((h >> 48) % 4);
    const std::size_t from = size > 0 ? (h >> 32) % size : 0;
    std::string value = bytes.substr(from, (h >> 56) % 48);
    value.resize(std::strlen(value.c_str()));

    const Accessor *written = nullptr;
    if (choice < fields) {
        const Accessor &field = choice < std::size(kConfig) ? kConfig[choice] : kStatus[choice - std::size(kConfig)];
        const std::string before = Serialize(document.get());
        if (field.write(document.get(), value.c_str(), i, j) != 0) {
            if (Serialize(document.get()) != before)
                Fail("%s[%u,%u]: a refused write changed the document", field.path, i, j);
        } else if (!field.tolerant) {
            written = &field;
        }
    } else {
        kListOperations[choice - fields](document.get(), i, j);
    }
    auto readsBack = [&](xmlDocPtr d, const char *when) {
        if (written == nullptr)
            return;
        const Read read = ReadField(*written, d, kWhole, i, j);
        const std::string expected = written->character ? std::string(value.empty() ? "" : value.substr(0, 1)) : value;
        if (!read.ok || read.value != expected)
            Fail("%s[%u,%u]: stored \"%s\", read back %s \"%s\" %s", written->path, i, j, expected.c_str(),
                 read.ok ? "" : "nothing,", read.value.c_str(), when);
    };
    readsBack(document.get(), "before the save");

    // The store's close saves atomically and frees the document whatever happens.
    if (UTILSXML_MASTER_CierraFicheroNetwork(document.release(), file.path.c_str(), 1) != 0) {
        if (ReadFile(file.path) != bytes)
            Fail("a failed save changed the file");
        CheckNoLeftovers(folder);
        return;
    }
    CheckNoLeftovers(folder);
    xmlDocPtr reloaded = nullptr;
    Document again(LOAD_XML_RDONLY(file.path.c_str(), &reloaded));
    if (!again)
        Fail("the saved document does not load again");
    readsBack(again.get(), "after the save");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    SilenceXml();
    DiscardStdout();
    ::setenv("CAMBIOIP_LOAD_PAUSE_MS", "0", 1);
    Scratch("fuzz_documento");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const FdLeakGuard guard("the document");
    Exercise(data, size);
    guard.Check();
    return 0;
}
