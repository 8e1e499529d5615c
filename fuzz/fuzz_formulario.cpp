// fuzz_formulario: any bytes as the POST body of a request, through every decoding the
// request entry and the saves make of it: the form text (LoadInput), the command search, the
// search for a control byte, each pair's value at the destination sizes the saves use
// (GetValueKeys, SALCOMUN_Valores), the per-line lists ("line_value_...") and the map of the
// IP-service lines, the address and number checks, the shell-style dump (HandleString).
//
// Besides what ASan and UBSan catch, the decoder breaks a rule when the form text is not the
// body, a value is cut beyond its destination or inside a UTF-8 character, a destination of
// another name is touched, a per-line list splits otherwise than at '_', or a descriptor is
// left open.
#include "support.h"

#include "SalidaComun/SalidaComun.h"
#include "cambioIP/cambioIP_int.h"
#include "proccgilib/proccgilib.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace fuzz;

// Destination sizes: the one-byte presence mark, tiny ones, the accessors' 17 and 41 and the
// saves' 500.
constexpr std::size_t kCapacities[] = {1, 2, 3, 17, 41, SALCOMUN_TAMVALOR};
// Keys looked up per input (the first ones of the form).
constexpr std::size_t kMaxKeys = 16;

// A destination of exactly its capacity on the heap, so that one byte too many is caught.
struct Destination {
    explicit Destination(std::size_t capacity) : bytes(new char[capacity]), capacity(capacity)
    {
        std::memset(bytes.get(), 'x', capacity);
    }
    std::unique_ptr<char[]> bytes;
    std::size_t capacity;
};

bool Continuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// The names of the form's pairs, as written and as decoded.
std::vector<std::string> KeysOf(std::string_view form)
{
    std::vector<std::string> keys;
    std::set<std::string> seen;
    auto add = [&](std::string key) {
        if (keys.size() < kMaxKeys && !key.empty() && seen.insert(key).second)
            keys.push_back(std::move(key));
    };
    while (!form.empty() && keys.size() < kMaxKeys) {
        const std::size_t amp = form.find('&');
        const std::string_view pair = form.substr(0, amp);
        form.remove_prefix(amp == std::string_view::npos ? form.size() : amp + 1);
        const std::string_view raw = pair.substr(0, pair.find('='));
        add(std::string(raw));
        std::string decoded(pair);
        ParseString(decoded.data());
        decoded.resize(std::strlen(decoded.c_str()));
        add(decoded.substr(0, decoded.find('=')));
    }
    return keys;
}

// A per-line list is split at every '_': pieces in pairs, a lone last piece dropped.
void CheckLines(std::string_view list)
{
    const std::vector<PROCCGI_ParLinea> pairs = PROCCGI_ParesLinea(list);
    const std::size_t pieces = list.empty() ? 0 : static_cast<std::size_t>(std::count(list.begin(), list.end(), '_')) + 1;
    if (pairs.size() != pieces / 2)
        Fail("the list \"%.*s\" gave %zu pairs for %zu pieces", static_cast<int>(list.size()), list.data(),
             pairs.size(), pieces);
    for (const PROCCGI_ParLinea &pair : pairs)
        if (pair.valor.find('_') != std::string::npos)
            Fail("a value of the list \"%.*s\" holds '_'", static_cast<int>(list.size()), list.data());
}

// One key at one size against the whole value: the cut value is a beginning of the whole one,
// within the size and not inside a character; a destination of another name stays as it was.
std::string CheckKey(const char *form, const std::string &key, std::size_t capacity)
{
    Destination whole(std::strlen(form) + 1);
    Destination cut(capacity);
    Destination other(8);
    GetValueKeys(form, {{key.c_str(), whole.bytes.get(), whole.capacity},
                        {key.c_str(), cut.bytes.get(), cut.capacity},
                        {"\x01", other.bytes.get(), other.capacity}});
    if (std::string_view(other.bytes.get(), other.capacity) != std::string(other.capacity, 'x'))
        Fail("a destination of another name was written for key \"%s\"", key.c_str());
    const char *end = static_cast<const char *>(std::memchr(cut.bytes.get(), '\0', capacity));
    if (whole.bytes[0] == 'x' && std::memchr(whole.bytes.get(), '\0', whole.capacity) == nullptr) {
        // The key matched no pair: neither destination was touched.
        if (end != nullptr || std::string_view(cut.bytes.get(), capacity) != std::string(capacity, 'x'))
            Fail("key \"%s\" wrote a destination without a matching pair", key.c_str());
        return {};
    }
    if (end == nullptr)
        Fail("key \"%s\" left a destination of %zu bytes unterminated", key.c_str(), capacity);
    const std::string value = whole.bytes.get();
    const std::size_t length = static_cast<std::size_t>(end - cut.bytes.get());
    if (value.compare(0, length, cut.bytes.get(), length) != 0)
        Fail("key \"%s\": the value cut at %zu bytes is not a beginning of the whole value", key.c_str(), capacity);
    if (length < value.size()) {
        // Cut to capacity - 1 bytes, less only the bytes of the character that would not fit.
        if (value.size() <= capacity - 1)
            Fail("key \"%s\": a value of %zu bytes was cut in a destination of %zu", key.c_str(), value.size(),
                 capacity);
        if (length > 0 && Continuation(value[length]))
            Fail("key \"%s\": the value cut at %zu bytes splits a UTF-8 character", key.c_str(), capacity);
        for (std::size_t j = length + 1; j <= capacity - 1 && j < value.size(); ++j)
            if (!Continuation(value[j]))
                Fail("key \"%s\": the value cut at %zu bytes is shorter than it needs to be", key.c_str(), capacity);
    }
    return value;
}

// What a transport or IP save does with the lines of its lists above the channel count.
void MapLines(const char *form, std::span<const SALCOMUN_Clave> keys, const std::vector<std::string> &values)
{
    const SALCOMUN_Valores posted(form, keys);
    posted.FaltaRequerida();
    const int channels = SALCOMUN_NumCanales(posted["numcanales"]);
    SALCOMUN_LineasIP lines;
    lines.Prepara(channels, posted["haysalidaip"], posted["ntotserv"], posted["entip"], posted["lsnumserv"]);
    for (const std::string &value : values)
        for (const PROCCGI_ParLinea &pair : PROCCGI_ParesLinea(value))
            if (lines.Contiene(pair.linea))
                lines.Servicio(pair.linea);
}

void Decode(const std::uint8_t *data, std::size_t size)
{
    const std::string body(reinterpret_cast<const char *>(data), size);
    static const FakeStdin input;
    input.Set(body);
    ::setenv("REQUEST_METHOD", "POST", 1);
    ::setenv("CONTENT_LENGTH", std::to_string(size).c_str(), 1);

    const FdLeakGuard guard("the form decoder");
    const PROCCGI_Texto form(LoadInput());
    guard.Check();
    const std::string expected = body.substr(0, body.find('\0'));
    if (size == 0 ? form != nullptr : form == nullptr || expected != form.get())
        Fail("the form text is not the body of %zu bytes", size);
    if (!form)
        return;
    const char *text = form.get();

    CIPINT_LeeComando(text);
    CIPINT_CampoConControl(text);

    const std::vector<std::string> keys = KeysOf(text);
    std::vector<SALCOMUN_Clave> saveKeys;
    std::vector<std::string> values;
    for (std::size_t k = 0; k < keys.size(); ++k) {
        const std::string value = CheckKey(text, keys[k], kCapacities[k % std::size(kCapacities)]);
        saveKeys.push_back({keys[k].c_str(), k % 2 == 0});
        values.push_back(value);
        CheckLines(value);
        CIPINT_EsDireccionIPv4(value);
        CIPINT_EsNumero(value, 0, 255);
        char found[SALCOMUN_TAMVALOR] = {};
        CIPINT_BuscaCampo(text, keys[k].c_str(), found, sizeof found);
    }
    for (const char *key : {"numcanales", "haysalidaip", "ntotserv", "entip", "lsnumserv"})
        saveKeys.push_back({key, false});
    MapLines(text, saveKeys, values);

    std::string copy(text);
    for (char *pair = copy.data(); pair != nullptr;) {
        char *amp = std::strchr(pair, '&');
        if (amp != nullptr)
            *amp = '\0';
        HandleString(pair);
        pair = amp != nullptr ? amp + 1 : nullptr;
    }
    std::string decoded(text);
    ParseString(decoded.data());
    if (std::strlen(decoded.c_str()) > std::strlen(text))
        Fail("decoding made the form text longer");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    DiscardStdout();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Decode(data, size);
    return 0;
}
