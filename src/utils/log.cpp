// log.cpp: the circular trace log. Messages go to standard output, flushed piece by
// piece; the log file is rewound to its start once its position reaches the size limit,
// so the trace never grows past that limit.
#include "utils/utils.h"

#include <unistd.h>

#include <algorithm>
#include <cinttypes>
#include <cstddef>
#include <cstring>
#include <ctime>
#include <string>
#include <string_view>

std::FILE *file_log = nullptr;
uint32_t max_size_file_log = 102400;
char ucNombreFichero[256] = "";

namespace {

constexpr uint32_t limitePorDefecto = 102400;

// Printed when the log reaches its limit and starts again from the top (63 bytes).
constexpr std::string_view bannerCircular =
    "--------- HBK V7Q (Fin Fichero. hbkv7q.log Circular) ---------\n";
static_assert(bannerCircular.size() == 63);

void escribe(std::string_view texto)
{
    UTILS_Imprime(texto);
    std::fflush(stdout);
}

void escribeCaracter(char c)
{
    UTILS_Imprime(std::string_view(&c, 1));
    std::fflush(stdout);
}

// Length modifier of a conversion, which decides the type the argument is read as.
enum class Longitud { normal, hh, h, l, ll, j, z, t, L };

// One conversion of a message format: "%[flags][width][.precision][length]letter".
struct Conversion {
    std::string_view especificacion;  // the whole conversion text, from '%' to the letter
    std::string_view cuerpo;          // from '%' up to the length modifier
    bool adornada = false;            // flags, width or precision present
    bool anchoArgumento = false;      // width given as '*'
    bool precisionArgumento = false;  // precision given as '*'
    Longitud longitud = Longitud::normal;
    char letra = '\0';                // '\0' when the format ends inside the conversion
};

// Reads the conversion starting at formato[0] == '%'.
Conversion leeConversion(const char *formato)
{
    Conversion conv;
    const char *p = formato + 1;
    while (*p != '\0' && std::strchr("-+ #0'", *p) != nullptr) {
        conv.adornada = true;
        ++p;
    }
    if (*p == '*') {
        conv.adornada = conv.anchoArgumento = true;
        ++p;
    }
    while (*p >= '0' && *p <= '9') {
        conv.adornada = true;
        ++p;
    }
    if (*p == '.') {
        conv.adornada = true;
        ++p;
        if (*p == '*') {
            conv.precisionArgumento = true;
            ++p;
        }
        while (*p >= '0' && *p <= '9')
            ++p;
    }
    conv.cuerpo = std::string_view(formato, static_cast<size_t>(p - formato));
    switch (*p) {
    case 'h':
        conv.longitud = (p[1] == 'h') ? Longitud::hh : Longitud::h;
        p += (p[1] == 'h') ? 2 : 1;
        break;
    case 'l':
        conv.longitud = (p[1] == 'l') ? Longitud::ll : Longitud::l;
        p += (p[1] == 'l') ? 2 : 1;
        break;
    case 'j': conv.longitud = Longitud::j; ++p; break;
    case 'z': conv.longitud = Longitud::z; ++p; break;
    case 't': conv.longitud = Longitud::t; ++p; break;
    case 'L': conv.longitud = Longitud::L; ++p; break;
    default: break;
    }
    conv.letra = *p;
    const char *fin = (*p != '\0') ? p + 1 : p;
    conv.especificacion = std::string_view(formato, static_cast<size_t>(fin - formato));
    return conv;
}

// Unsigned digits of a value in base 10 or 16.
std::string digitos(uintmax_t valor, unsigned base, bool mayusculas)
{
    const char *cifras = mayusculas ? "0123456789ABCDEF" : "0123456789abcdef";
    char buffer[sizeof(uintmax_t) * 3 + 1];
    size_t pos = sizeof(buffer);
    do {
        buffer[--pos] = cifras[valor % base];
        valor /= base;
    } while (valor != 0);
    return std::string(buffer + pos, sizeof(buffer) - pos);
}

// An adorned or less common conversion, assembled and printed by printf. The argument
// has already been read (and widened); `modificador` is the length modifier of the type
// it is passed as, so the assembled conversion always matches the value.
template <typename T>
void imprimeConPrintf(const Conversion &conv, const char *modificador, bool conAncho, int ancho,
                      bool conPrecision, int precision, T valor)
{
    std::string especificacion(conv.cuerpo);
    especificacion += modificador;
    especificacion += conv.letra;
    if (conAncho && conPrecision)
        UTILS_ImprimeFormato(especificacion.c_str(), ancho, precision, valor);
    else if (conAncho)
        UTILS_ImprimeFormato(especificacion.c_str(), ancho, valor);
    else if (conPrecision)
        UTILS_ImprimeFormato(especificacion.c_str(), precision, valor);
    else
        UTILS_ImprimeFormato(especificacion.c_str(), valor);
    std::fflush(stdout);
}

// Writes one message to standard output, piece by piece, consuming the arguments in
// the order and with the types the format announces.
void escribeMensaje(const char *formato, std::va_list argumentos)
{
    if (formato == nullptr)
        return;
    const char *p = formato;
    while (*p != '\0') {
        if (*p != '%') {
            escribeCaracter(*p++);
            continue;
        }
        if (p[1] == '%') {
            // The trace has always written a doubled percent sign as it stands.
            escribe("%%");
            p += 2;
            continue;
        }
        const Conversion conv = leeConversion(p);
        p += conv.especificacion.size();
        if (conv.letra == '\0') {
            escribe(conv.especificacion);
            break;
        }

        const int ancho = conv.anchoArgumento ? va_arg(argumentos, int) : 0;
        const int precision = conv.precisionArgumento ? va_arg(argumentos, int) : 0;
        const bool conAncho = conv.anchoArgumento;
        const bool conPrecision = conv.precisionArgumento;

        switch (conv.letra) {
        case 'd':
        case 'i': {
            intmax_t valor;
            switch (conv.longitud) {
            case Longitud::hh: valor = static_cast<signed char>(va_arg(argumentos, int)); break;
            case Longitud::h: valor = static_cast<short>(va_arg(argumentos, int)); break;
            case Longitud::l: valor = va_arg(argumentos, long); break;
            case Longitud::ll: valor = va_arg(argumentos, long long); break;
            case Longitud::j: valor = va_arg(argumentos, intmax_t); break;
            case Longitud::z: valor = va_arg(argumentos, ptrdiff_t); break;
            case Longitud::t: valor = va_arg(argumentos, ptrdiff_t); break;
            default: valor = va_arg(argumentos, int); break;
            }
            if (conv.adornada) {
                imprimeConPrintf(conv, "j", conAncho, ancho, conPrecision, precision, valor);
                break;
            }
            if (valor < 0) {
                // '-' and the magnitude, computed unsigned so the most negative value holds.
                escribeCaracter('-');
                escribe(digitos(uintmax_t{0} - static_cast<uintmax_t>(valor), 10, false));
            } else {
                escribe(digitos(static_cast<uintmax_t>(valor), 10, false));
            }
            break;
        }
        case 'u':
        case 'x':
        case 'X':
        case 'o': {
            uintmax_t valor;
            switch (conv.longitud) {
            case Longitud::hh: valor = static_cast<unsigned char>(va_arg(argumentos, unsigned)); break;
            case Longitud::h: valor = static_cast<unsigned short>(va_arg(argumentos, unsigned)); break;
            case Longitud::l: valor = va_arg(argumentos, unsigned long); break;
            case Longitud::ll: valor = va_arg(argumentos, unsigned long long); break;
            case Longitud::j: valor = va_arg(argumentos, uintmax_t); break;
            case Longitud::z: valor = va_arg(argumentos, size_t); break;
            case Longitud::t: valor = va_arg(argumentos, size_t); break;
            default: valor = va_arg(argumentos, unsigned); break;
            }
            if (conv.adornada || conv.letra == 'o')
                imprimeConPrintf(conv, "j", conAncho, ancho, conPrecision, precision, valor);
            else if (conv.letra == 'u')
                escribe(digitos(valor, 10, false));
            else
                escribe(digitos(valor, 16, conv.letra == 'X'));
            break;
        }
        case 'c': {
            const int valor = va_arg(argumentos, int);
            if (conv.adornada || conv.longitud != Longitud::normal)
                imprimeConPrintf(conv, "", conAncho, ancho, conPrecision, precision, valor);
            else
                escribeCaracter(static_cast<char>(valor));
            break;
        }
        case 's': {
            const char *valor = va_arg(argumentos, const char *);
            if (valor == nullptr)
                valor = "(null)";
            if (conv.adornada)
                imprimeConPrintf(conv, "", conAncho, ancho, conPrecision, precision, valor);
            else
                escribe(valor);
            break;
        }
        case 'E':
            // The trace takes a double here and prints nothing for it.
            if (conv.longitud == Longitud::L)
                (void)va_arg(argumentos, long double);
            else
                (void)va_arg(argumentos, double);
            break;
        case 'e':
        case 'f':
        case 'F':
        case 'g':
        case 'G':
        case 'a':
        case 'A':
            if (conv.longitud == Longitud::L)
                imprimeConPrintf(conv, "L", conAncho, ancho, conPrecision, precision,
                                 va_arg(argumentos, long double));
            else
                imprimeConPrintf(conv, "", conAncho, ancho, conPrecision, precision,
                                 va_arg(argumentos, double));
            break;
        case 'p':
            imprimeConPrintf(conv, "", conAncho, ancho, conPrecision, precision,
                             va_arg(argumentos, void *));
            break;
        case 'n':
            // Writing through a pointer taken from a message is never done.
            (void)va_arg(argumentos, void *);
            break;
        default:
            // Not a conversion: written as it stands, no argument taken.
            escribe(conv.especificacion);
            break;
        }
    }
}

// Wrap check: rewinds the log once its position has reached the limit. 1 when below
// the limit (or when no log has been created), otherwise the result of the seek.
int compruebaCircular()
{
    if (file_log == nullptr)
        return 1;
    const long posicion = std::ftell(file_log);
    if (posicion < 0 || static_cast<unsigned long>(posicion) < max_size_file_log)
        return 1;
    escribe(bannerCircular);
    const int resultado = std::fseek(file_log, 0L, SEEK_SET);
    if (resultado != 0) {
        const std::string guiones(52, '-');
        UTILS_ImprimeFormato("\033[H\033[J%s\n%d:rewind_hbk_v7q:[ERROR]\n%s\n", guiones.c_str(),
                    static_cast<int>(getpid()), guiones.c_str());
        std::fflush(stdout);
    }
    return resultado;
}

void escribeMensajeConHora(const char *formato, std::va_list argumentos)
{
    const long t = static_cast<long>(std::time(nullptr));
    UTILS_ImprimeFormato("[%li:%02li:%02li]", t / 3600, (t % 3600) / 60, t % 60);
    std::fflush(stdout);
    escribeMensaje(formato, argumentos);
}

// printf_hbk_v7q_t without the variadic entry, for perror_hbk_v7q.
void mensajeConHora(const char *formato, ...)
{
    std::va_list argumentos;
    va_start(argumentos, formato);
    escribeMensajeConHora(formato, argumentos);
    va_end(argumentos);
}

}  // namespace

int UTILS_Crea_FicheroLog(const char *ruta, uint32_t limite)
{
    if (ruta == nullptr)
        return 252;
    if (file_log != nullptr)
        return 254;
    file_log = std::fopen(ruta, "w+");
    if (file_log == nullptr)
        return 253;
    max_size_file_log = (limite == 0) ? limitePorDefecto : limite;
    // The path is kept as given, cut to the room there is.
    const size_t longitud = std::min(std::strlen(ruta), sizeof(ucNombreFichero) - 1);
    std::memcpy(ucNombreFichero, ruta, longitud);
    ucNombreFichero[longitud] = '\0';
    return 0;
}

void printf_hbk_v7q(const char *formato, ...)
{
    compruebaCircular();
    std::va_list argumentos;
    va_start(argumentos, formato);
    escribeMensaje(formato, argumentos);
    va_end(argumentos);
}

void printf_hbk_v7q_t(const char *formato, ...)
{
    compruebaCircular();
    std::va_list argumentos;
    va_start(argumentos, formato);
    escribeMensajeConHora(formato, argumentos);
    va_end(argumentos);
}

void perror_hbk_v7q(int error, const char *texto)
{
    compruebaCircular();
    mensajeConHora("%s (errno=%i): ", texto, error);
    UTILS_ImprimeFormato("%s\n", std::strerror(error));
    std::fflush(stdout);
}

int rewind_hbk_v7q()
{
    return compruebaCircular();
}
