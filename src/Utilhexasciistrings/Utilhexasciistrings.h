// Utilhexasciistrings: hexadecimal text to bytes and back (plain and byte-reversed),
// a reversing copy, number parsing, appending with reallocation, and a cutter for
// text taken from command output.
#pragma once

#include <cstddef>
#include <cstdint>

// Two hexadecimal characters per byte, high nibble first. Stops at the first character
// that is not a hexadecimal digit, writing 0 at that byte.
void hex2bin(uint8_t *salida, const char *hexa, size_t n);
// n bytes as 2n upper-case hexadecimal digits and a terminator (salida holds 2n + 1).
void bin2hex(char *salida, const uint8_t *entrada, size_t n);
// Copies n bytes in reverse order; the same buffer is reversed in place.
void *memcpy2(void *destino, const void *origen, size_t n);
// As bin2hex of the n bytes taken in reverse order (least significant byte first in
// memory becomes an ordinary hexadecimal number).
void bin2hexVAR(char *salida, const uint8_t *entrada, size_t n);
// The inverse of bin2hexVAR.
void hex2binVAR(uint8_t *salida, const char *hexa, int n);
// Base-10 accumulation of up to 10 characters; the letters a-f count 10-15.
void ascii2dec(uint32_t *resultado, const char *texto, int longitud);
// Appends texto to the heap string *cadena (allocating it when null); the new length.
size_t strappend(char **cadena, const char *texto);
// The text after the marker, cut at the first double blank or newline.
char *quitar_str1_str2(char *texto, const char *marca);
// Kept for the interface; does nothing.
void dec2ascii();
