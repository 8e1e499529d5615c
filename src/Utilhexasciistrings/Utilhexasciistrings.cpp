// Utilhexasciistrings.cpp: hexadecimal text and bytes, reversed copies, number parsing,
// heap string appending and the cutter for text read from command output.
#include "Utilhexasciistrings/Utilhexasciistrings.h"

#include "utils/utils.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

struct LiberaMalloc {
    void operator()(void *p) const { std::free(p); }
};
using BytesMalloc = std::unique_ptr<uint8_t[], LiberaMalloc>;

// Value 0 to 15 of a hexadecimal digit, -1 for any other character.
int valorHexa(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

}  // namespace

void hex2bin(uint8_t *salida, const char *hexa, size_t n)
{
    if (salida == nullptr || hexa == nullptr || n == 0)
        return;
    for (size_t i = 0; i < n; ++i) {
        // The low character is read only after the high one proved to be a digit, so
        // a short text is never read past its terminator.
        const int alto = valorHexa(hexa[2 * i]);
        if (alto < 0) {
            salida[i] = 0;
            return;
        }
        const int bajo = valorHexa(hexa[2 * i + 1]);
        if (bajo < 0) {
            salida[i] = 0;
            return;
        }
        salida[i] = static_cast<uint8_t>((alto << 4) | bajo);
    }
}

void bin2hex(char *salida, const uint8_t *entrada, size_t n)
{
    if (salida == nullptr)
        return;
    if (entrada == nullptr)
        n = 0;
    constexpr char cifras[] = "0123456789ABCDEF";
    for (size_t i = 0; i < n; ++i) {
        salida[2 * i] = cifras[entrada[i] >> 4];
        salida[2 * i + 1] = cifras[entrada[i] & 0x0F];
    }
    salida[2 * n] = '\0';
}

void *memcpy2(void *destino, const void *origen, size_t n)
{
    if (destino == nullptr || origen == nullptr || n == 0)
        return destino;
    auto *d = static_cast<uint8_t *>(destino);
    const auto *o = static_cast<const uint8_t *>(origen);
    if (d == o) {
        std::reverse(d, d + n);
    } else if (d < o + n && o < d + n) {
        // Overlapping but distinct buffers: go through a copy of the source.
        BytesMalloc copia(static_cast<uint8_t *>(std::malloc(n)));
        if (copia == nullptr)
            return destino;
        std::memcpy(copia.get(), o, n);
        std::reverse_copy(copia.get(), copia.get() + n, d);
    } else {
        std::reverse_copy(o, o + n, d);
    }
    return destino;
}

void bin2hexVAR(char *salida, const uint8_t *entrada, size_t n)
{
    if (salida == nullptr)
        return;
    if (entrada == nullptr || n == 0) {
        bin2hex(salida, entrada, 0);
        return;
    }
    BytesMalloc invertidos(static_cast<uint8_t *>(std::malloc(n)));
    if (invertidos == nullptr) {
        printf_hbk_v7q("bin2hexVAR: ERROR Malloc NULL\n");
        return;
    }
    memcpy2(invertidos.get(), entrada, n);
    bin2hex(salida, invertidos.get(), n);
}

void hex2binVAR(uint8_t *salida, const char *hexa, int n)
{
    if (n < 1)
        return;
    hex2bin(salida, hexa, static_cast<size_t>(n));
    memcpy2(salida, salida, static_cast<size_t>(n));
}

void ascii2dec(uint32_t *resultado, const char *texto, int longitud)
{
    if (resultado == nullptr || texto == nullptr)
        return;
    *resultado = 0;
    if (longitud < 1 || longitud > 10)
        return;
    uint32_t valor = 0;
    for (int i = 0; i < longitud; ++i) {
        // Letters a-f count 10-15, still accumulated in base 10.
        const int cifra = valorHexa(texto[i]);
        if (cifra < 0) {
            *resultado = 0;
            return;
        }
        valor = valor * 10U + static_cast<uint32_t>(cifra);
        *resultado = valor;
    }
}

size_t strappend(char **cadena, const char *texto)
{
    if (cadena == nullptr)
        return 0;
    const size_t anterior = (*cadena != nullptr) ? std::strlen(*cadena) : 0;
    const size_t anadido = (texto != nullptr) ? std::strlen(texto) : 0;
    auto *nueva = static_cast<char *>(std::malloc(anterior + anadido + 1));
    if (nueva == nullptr) {
        printf_hbk_v7q("strappend(): no puede reservar memoria");
        return anterior;
    }
    if (anterior > 0)
        std::memcpy(nueva, *cadena, anterior);
    if (anadido > 0)
        std::memcpy(nueva + anterior, texto, anadido);
    nueva[anterior + anadido] = '\0';
    std::free(*cadena);
    *cadena = nueva;
    return anterior + anadido;
}

char *quitar_str1_str2(char *texto, const char *marca)
{
    if (texto == nullptr)
        return nullptr;
    char *inicio = texto;
    if (marca != nullptr) {
        char *encontrada = std::strstr(texto, marca);
        if (encontrada != nullptr)
            inicio = encontrada + std::strlen(marca);
    }
    char *salto = std::strchr(inicio, '\n');
    if (salto == nullptr)
        return inicio;
    // The double blank wins over the newline even when it comes after it.
    char *dobleBlanco = std::strstr(inicio, "  ");
    char *corte = (dobleBlanco != nullptr) ? dobleBlanco : salto;
    std::memset(corte, 0, std::strlen(corte));
    return inicio;
}

void dec2ascii()
{
}
