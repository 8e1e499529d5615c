// Hexadecimal text and bytes (plain and byte-reversed, odd lengths, either case), the
// reversing copy, number parsing, appending, and the cutter for command output.
#include "Utilhexasciistrings/Utilhexasciistrings.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;
constexpr uint8_t R = 0xEE;  // fill of the bytes a conversion must leave alone

TEST(Hex2bin, ConvertsUpToTheFirstNonDigitWhichBecomesZero)
{
    const struct { const char *texto; size_t n; Bytes esperado; } casos[] = {
        {"AB", 1, {0xAB, R, R}}, {"ab", 1, {0xAB, R, R}}, {"1g", 1, {0x00, R, R}}, {"g1", 1, {0x00, R, R}},
        {"0aFf7C", 3, {0x0A, 0xFF, 0x7C}}, {"010203", 2, {0x01, 0x02, R}},
        {"12", 3, {0x12, 0x00, R}},   // short text: its terminator becomes the 0
        {"123", 3, {0x12, 0x00, R}},  // odd length: the lone digit is dropped
        {"AB", 0, {R, R, R}}, {nullptr, 2, {R, R, R}}};
    for (const auto &caso : casos) {
        Bytes salida(3, R);
        hex2bin(salida.data(), caso.texto, caso.n);
        EXPECT_EQ(salida, caso.esperado) << testing::PrintToString(caso.texto) << " n=" << caso.n;
    }
}

TEST(Memcpy2, CopiesReversedAlsoInPlaceAndOverlapping)
{
    const Bytes origen = {1, 2, 3, 4, 5};
    Bytes destino(5, R);
    EXPECT_EQ(memcpy2(destino.data(), origen.data(), 5), destino.data());
    memcpy2(destino.data(), origen.data() + 1, 0);  // nothing to copy
    EXPECT_EQ(destino, (Bytes{5, 4, 3, 2, 1}));
    for (Bytes buffer : {Bytes{1, 2, 3, 4}, Bytes{1, 2, 3}}) {
        const Bytes esperado(buffer.rbegin(), buffer.rend());
        memcpy2(buffer.data(), buffer.data(), buffer.size());
        EXPECT_EQ(buffer, esperado);
    }
    Bytes solapado = {1, 2, 3, 4, 5, R};
    memcpy2(solapado.data() + 1, solapado.data(), 5);
    EXPECT_EQ(solapado, (Bytes{1, 5, 4, 3, 2, 1}));
}

TEST(Bin2hex, UpperCaseDigitsAndTheReversedFormReadsBack)
{
    char texto[9];
    bin2hex(texto, Bytes{0x01, 0xAB, 0xFF, 0x00}.data(), 4);
    EXPECT_STREQ(texto, "01ABFF00") << "upper case, high nibble first";
    bin2hexVAR(texto, Bytes{0x01, 0x02}.data(), 2);
    EXPECT_STREQ(texto, "0201");
    bin2hex(texto, nullptr, 3);
    EXPECT_STREQ(texto, "");
    for (const Bytes &original : {Bytes{0x00}, Bytes{0x10, 0x20, 0x30}, Bytes{0xDE, 0xAD, 0xBE, 0xEF}}) {
        bin2hexVAR(texto, original.data(), original.size());
        Bytes vuelta(original.size(), R);
        hex2binVAR(vuelta.data(), texto, static_cast<int>(original.size()));
        EXPECT_EQ(vuelta, original) << texto;
    }
    Bytes salida(2, R);
    hex2binVAR(salida.data(), "0201", 0);
    hex2binVAR(salida.data(), "0201", -3);
    EXPECT_EQ(salida, Bytes(2, R));
}

TEST(Ascii2dec, AccumulatesInBaseTenWithLettersCountingTenToFifteen)
{
    const struct { const char *texto; int longitud; uint32_t esperado; } casos[] = {
        {"4321", 4, 4321}, {"1a", 2, 20}, {"F", 1, 15}, {"12x", 3, 0}, {"12x", 2, 12}, {"12", 5, 0},
        {"4294967295", 10, 4294967295U}, {"4294967296", 10, 0},  // wraps: no overflow check
        {"12345678901", 11, 0}, {"123", 0, 0}, {"123", -1, 0}, {nullptr, 2, 77}};
    for (const auto &caso : casos) {
        uint32_t resultado = 77;
        ascii2dec(&resultado, caso.texto, caso.longitud);
        EXPECT_EQ(resultado, caso.esperado) << testing::PrintToString(caso.texto) << " length " << caso.longitud;
    }
}

TEST(Strappend, AllocatesThenGrows)
{
    char *cadena = nullptr;
    EXPECT_EQ(strappend(&cadena, "ab"), 2U);
    EXPECT_EQ(strappend(&cadena, "c"), 3U);
    EXPECT_EQ(strappend(&cadena, ""), 3U);
    EXPECT_STREQ(cadena, "abc");
    std::free(cadena);
}

TEST(QuitarStr1Str2, CutsAfterTheMarkerAndZeroesTheRest)
{
    const struct { const char *texto, *marca, *esperado; } casos[] = {
        {"key: value  rest\n", "key: ", "value"}, {"key: value  rest", "key: ", "value  rest"},  // no newline
        {"key: value rest\nmore", "key: ", "value rest"}, {"key: ab\ncd  ef", "key: ", "ab\ncd"},  // blanks win
        {"otra: x\n", "key: ", "otra: x"}, {"inet addr:10.0.0.1  Bcast\n", "addr:", "10.0.0.1"}};
    for (const auto &caso : casos) {
        std::string buffer(caso.texto);
        const char *resultado = quitar_str1_str2(buffer.data(), caso.marca);
        EXPECT_STREQ(resultado, caso.esperado) << caso.texto;
        const size_t fin = static_cast<size_t>(resultado - buffer.data()) + std::strlen(resultado);
        EXPECT_EQ(buffer.substr(fin), std::string(buffer.size() - fin, '\0')) << caso.texto;
    }
}

}  // namespace
