// proccgilib: fetches the raw form text of the request and extracts named values.
// The form text is never split into a table: callers find the name=value pair they
// want in the raw text and hand that one pair to GetValueKey, which decodes it.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

// Largest POST body accepted; a larger announced CONTENT_LENGTH gives no form text.
inline constexpr long PROCCGI_MaxPost = 1024L * 1024L;

// Heap string owned by the caller (freed with free()).
struct PROCCGI_Libera {
    void operator()(char *texto) const noexcept;
};
using PROCCGI_Texto = std::unique_ptr<char, PROCCGI_Libera>;

// The raw form text of the request (query string of a GET, body of a POST), or null.
char *LoadInput();

// URL-decodes the text in place ('+' to blank, %XY to its byte) after skipping
// leading white space; returns the same pointer.
char *ParseString(char *texto);

// One destination of GetValueKey: the key it wants and a buffer with its capacity.
// A decoded value longer than the capacity is cut to capacidad - 1 bytes (never inside
// a UTF-8 character) and terminated.
struct CampoForm {
    const char *nombre;
    char *destino;
    size_t capacidad;

    CampoForm(const char *n, char *d, size_t c) : nombre(n), destino(d), capacidad(c) {}
    template <size_t N>
    CampoForm(const char *n, char (&d)[N]) : nombre(n), destino(d), capacidad(N) {}
};

// Decodes one name=value pair and copies the value into every destination whose name
// equals the key exactly. Destinations that do not match are left untouched.
void GetValueKey(const char *par, std::initializer_list<CampoForm> campos);

// Prints the pair as the shell assignment FORM_key="value" (with $ " \ ` escaped).
void HandleString(const char *par);

// Heap copy of the text (freed with free()), or null after the out-of-memory message.
char *FP_strdup(const char *texto);

// Splits a copy of the form text at '&' (empty pieces skipped, the text itself left
// whole for the next reader) and hands every piece to GetValueKey with the same list
// of destinations.
void GetValueKeys(const char *formulario, std::initializer_list<CampoForm> campos);

// One pair of a per-line value list: the 1-based line (input, channel, IP line or
// service number) and its value.
struct PROCCGI_ParLinea {
    long linea;
    std::string valor;
};

// Splits a per-line list "line_value_line_value..." at every '_' into pairs (a value
// that itself holds '_' is split too; an empty value stays an empty value). A trailing
// line number without a value is dropped; a line that is not a number reads as 0.
std::vector<PROCCGI_ParLinea> PROCCGI_ParesLinea(std::string_view lista);
