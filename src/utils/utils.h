// utils: process-wide helpers shared by every module: the mapping of the system's
// fixed paths under CAMBIOIP_ROOT, the one safe text formatter, the page's escaper and its
// output sink, and the circular log. They sit at the bottom because every layer writes to
// the page, the XML layer's diagnostics included.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdarg>
#include <cstdio>
#include <string>
#include <string_view>

// ---------------------------------------------------------------------------
// Fixed paths
// ---------------------------------------------------------------------------

// Maps one of the system's fixed absolute paths ("/config", "/upload/listupdate.prg",
// "/root/tune_stb.sh", ...) to the path actually used. When CAMBIOIP_ROOT is set and not
// empty, the path is resolved under that directory; otherwise it is used as written.
// Every fixed path goes through here; nothing else prepends the root.
std::string UTILS_MapeaRuta(const char *ruta);

// Pause after each document load, in milliseconds: CAMBIOIP_LOAD_PAUSE_MS when it holds
// a whole number, otherwise the system's 250 ms.
long UTILS_PausaCargaMs();

// ---------------------------------------------------------------------------
// Safe formatting
// ---------------------------------------------------------------------------

// printf-style formatting into a std::string of exactly the needed size, in one pass for
// almost every call. Every HTML and script template is filled through this function.
[[gnu::format(printf, 1, 2)]] std::string UTILS_Formatea(const char *formato, ...);
std::string UTILS_FormateaV(const char *formato, std::va_list argumentos);

// ---------------------------------------------------------------------------
// Text
// ---------------------------------------------------------------------------

// Length of the longest beginning of `texto` that fits in `maximo` bytes without cutting a
// UTF-8 character in two.
std::size_t UTILS_CorteUTF8(std::string_view texto, std::size_t maximo);

// The number at the start of the text as strtol reads it in base 10, or `defecto` when the
// text does not start with one.
long UTILS_Numero(std::string_view texto, long defecto = 0);

// ---------------------------------------------------------------------------
// The page
// ---------------------------------------------------------------------------

// A value of a document or of the request made safe for HTML text and attribute values:
// & < > " ' become entities, everything else stays byte for byte.
std::string UTILS_Escapa(std::string_view texto);

// Writes a piece of the page to standard output, the answer of the request: every part of
// the program writes the page through here.
void UTILS_Imprime(std::string_view html);
// The same, formatted as UTILS_Formatea does; the number of bytes written, as printf counts.
[[gnu::format(printf, 1, 2)]] int UTILS_ImprimeFormato(const char *formato, ...);
int UTILS_ImprimeFormatoV(const char *formato, std::va_list argumentos);

// ---------------------------------------------------------------------------
// Circular log
// ---------------------------------------------------------------------------

// The log file, its size limit and its path, as given at creation.
extern std::FILE *file_log;
extern uint32_t max_size_file_log;
extern char ucNombreFichero[256];

// Opens (truncating) the circular log. 0 on success; 252 for a null path, 254 when a
// log is already open, 253 when the file cannot be opened. A limit of 0 means 102400.
int UTILS_Crea_FicheroLog(const char *ruta, uint32_t limite);

// Messages go to standard output, flushed piece by piece; before each one the log file
// is rewound to its start once it has reached its size limit.
void printf_hbk_v7q(const char *formato, ...);
void printf_hbk_v7q_t(const char *formato, ...);
void perror_hbk_v7q(int error, const char *texto);
int rewind_hbk_v7q();
