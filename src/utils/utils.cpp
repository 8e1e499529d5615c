// utils.cpp: fixed-path mapping, load pause and the safe formatter.
#include "utils/utils.h"

#include <cerrno>
#include <cstdarg>
#include <cstdlib>

std::string UTILS_MapeaRuta(const char *ruta)
{
    std::string resultado;
    const char *raiz = std::getenv("CAMBIOIP_ROOT");
    if (raiz != nullptr && raiz[0] != '\0') {
        resultado = raiz;
        // "/config" under "/tmp/root/" must not become "/tmp/root//config" (nor under "/" "//config").
        while (!resultado.empty() && resultado.back() == '/')
            resultado.pop_back();
    }
    if (ruta != nullptr)
        resultado += ruta;
    return resultado;
}

long UTILS_PausaCargaMs()
{
    constexpr long pausaSistema = 250;
    const char *texto = std::getenv("CAMBIOIP_LOAD_PAUSE_MS");
    if (texto == nullptr || texto[0] == '\0')
        return pausaSistema;
    errno = 0;
    char *fin = nullptr;
    long valor = std::strtol(texto, &fin, 10);
    if (errno != 0 || *fin != '\0' || valor < 0)
        return pausaSistema;
    return valor;
}

std::string UTILS_FormateaV(const char *formato, std::va_list argumentos)
{
    if (formato == nullptr)
        return {};
    // One pass into a buffer that only grows: a template formats a second time only when it
    // is longer than every one before it.
    static std::string buffer(4096, '\0');
    std::va_list copia;
    va_copy(copia, argumentos);
    int longitud = std::vsnprintf(buffer.data(), buffer.size() + 1, formato, copia);
    va_end(copia);
    if (longitud <= 0)
        return {};
    if (static_cast<size_t>(longitud) > buffer.size()) {
        buffer.resize(static_cast<size_t>(longitud) * 2);
        std::vsnprintf(buffer.data(), buffer.size() + 1, formato, argumentos);
    }
    return std::string(buffer.data(), static_cast<size_t>(longitud));
}

std::string UTILS_Formatea(const char *formato, ...)
{
    std::va_list argumentos;
    va_start(argumentos, formato);
    std::string texto = UTILS_FormateaV(formato, argumentos);
    va_end(argumentos);
    return texto;
}

std::string UTILS_Escapa(std::string_view texto)
{
    std::string resultado;
    resultado.reserve(texto.size());
    for (char ch : texto) {
        switch (ch) {
        case '&': resultado += "&amp;"; break;
        case '<': resultado += "&lt;"; break;
        case '>': resultado += "&gt;"; break;
        case '"': resultado += "&quot;"; break;
        case '\'': resultado += "&#39;"; break;
        default: resultado += ch; break;
        }
    }
    return resultado;
}

void UTILS_Imprime(std::string_view html)
{
    // The page goes out in large writes: standard output gets a 64 KiB buffer before its
    // first byte (every byte of the page comes through here).
    static char bufferPagina[1 << 16];
    static const bool preparada = std::setvbuf(stdout, bufferPagina, _IOFBF, sizeof bufferPagina) == 0;
    (void)preparada;
    std::fwrite(html.data(), 1, html.size(), stdout);
}

std::size_t UTILS_CorteUTF8(std::string_view texto, std::size_t maximo)
{
    if (texto.size() <= maximo)
        return texto.size();
    std::size_t corte = maximo;
    // Step back over continuation bytes (10xxxxxx) to the start of the cut character.
    while (corte > 0 && (static_cast<unsigned char>(texto[corte]) & 0xC0) == 0x80)
        --corte;
    return corte;
}

long UTILS_Numero(std::string_view texto, long defecto)
{
    const std::string copia(texto);
    char *fin = nullptr;
    const long numero = std::strtol(copia.c_str(), &fin, 10);
    return fin == copia.c_str() ? defecto : numero;
}

int UTILS_ImprimeFormatoV(const char *formato, std::va_list argumentos)
{
    const std::string texto = UTILS_FormateaV(formato, argumentos);
    UTILS_Imprime(texto);
    return static_cast<int>(texto.size());
}

int UTILS_ImprimeFormato(const char *formato, ...)
{
    std::va_list argumentos;
    va_start(argumentos, formato);
    const int escritos = UTILS_ImprimeFormatoV(formato, argumentos);
    va_end(argumentos);
    return escritos;
}
