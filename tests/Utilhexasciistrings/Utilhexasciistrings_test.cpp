// Hexadecimal text and bytes, reversed copies, number parsing, appending and cutting.
#include "Utilhexasciistrings/Utilhexasciistrings.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;
constexpr uint8_t relleno = 0xEE;  // marks bytes a conversion must leave alone

struct CasoHex2bin {
    const char *nombre;
    const char *texto;
    size_t n;
    Bytes esperado;  // the first four output bytes, starting from relleno
};

void PrintTo(const CasoHex2bin &caso, std::ostream *salida)
{
    *salida << caso.nombre;
}

class Hex2binTest : public ::testing::TestWithParam<CasoHex2bin> {};

TEST_P(Hex2binTest, ConvertsUpToTheFirstNonDigit)
{
    const CasoHex2bin &caso = GetParam();
    Bytes salida(4, relleno);
    hex2bin(salida.data(), caso.texto, caso.n);
    EXPECT_EQ(salida, caso.esperado);
}

INSTANTIATE_TEST_SUITE_P(Textos, Hex2binTest, ::testing::Values(
    CasoHex2bin{"Mayusculas", "AB", 1, {0xAB, relleno, relleno, relleno}},
    CasoHex2bin{"Minusculas", "ab", 1, {0xAB, relleno, relleno, relleno}},
    CasoHex2bin{"BajoNoHexa", "1g", 1, {0x00, relleno, relleno, relleno}},
    CasoHex2bin{"AltoNoHexa", "g1", 1, {0x00, relleno, relleno, relleno}},
    CasoHex2bin{"VariosBytes", "0aFf7C", 3, {0x0A, 0xFF, 0x7C, relleno}},
    CasoHex2bin{"SoloLosPedidos", "0102030405", 2, {0x01, 0x02, relleno, relleno}},
    CasoHex2bin{"TextoCortoTerminaEnCero", "12", 3, {0x12, 0x00, relleno, relleno}},
    CasoHex2bin{"CifraSueltaAlFinal", "123", 3, {0x12, 0x00, relleno, relleno}},
    CasoHex2bin{"TextoVacio", "", 2, {0x00, relleno, relleno, relleno}},
    CasoHex2bin{"CeroBytes", "AB", 0, {relleno, relleno, relleno, relleno}}),
    [](const auto &info) { return std::string(info.param.nombre); });

TEST(Hex2binTest, NullOutputOrTextDoesNothing)
{
    hex2bin(nullptr, "AB", 1);
    Bytes salida(2, relleno);
    hex2bin(salida.data(), nullptr, 1);
    EXPECT_EQ(salida, Bytes(2, relleno));
}

TEST(Bin2hexTest, UpperCaseHighNibbleFirst)
{
    const Bytes entrada = {0x01, 0xAB, 0xFF, 0x00};
    char salida[16];
    std::memset(salida, 'x', sizeof(salida));
    bin2hex(salida, entrada.data(), entrada.size());
    EXPECT_STREQ(salida, "01ABFF00");
}

TEST(Bin2hexTest, ZeroBytesGiveTheEmptyText)
{
    char salida[4] = "xyz";
    bin2hex(salida, nullptr, 0);
    EXPECT_STREQ(salida, "");
    bin2hex(nullptr, nullptr, 3);  // no output: nothing happens
}

TEST(Memcpy2Test, CopiesReversed)
{
    const Bytes origen = {1, 2, 3, 4, 5};
    Bytes destino(5, relleno);
    EXPECT_EQ(memcpy2(destino.data(), origen.data(), origen.size()), destino.data());
    EXPECT_EQ(destino, (Bytes{5, 4, 3, 2, 1}));
}

TEST(Memcpy2Test, SameBufferIsReversedInPlace)
{
    for (Bytes buffer : {Bytes{1, 2, 3, 4}, Bytes{1, 2, 3}, Bytes{7}}) {
        Bytes esperado(buffer.rbegin(), buffer.rend());
        memcpy2(buffer.data(), buffer.data(), buffer.size());
        EXPECT_EQ(buffer, esperado);
    }
}

TEST(Memcpy2Test, ZeroCountDoesNothing)
{
    const Bytes origen = {1, 2};
    Bytes destino(2, relleno);
    memcpy2(destino.data(), origen.data(), 0);
    EXPECT_EQ(destino, Bytes(2, relleno));
}

TEST(Bin2hexVARTest, LeastSignificantByteFirstBecomesAnOrdinaryNumber)
{
    const Bytes entrada = {0x01, 0x02};
    char salida[5];
    bin2hexVAR(salida, entrada.data(), entrada.size());
    EXPECT_STREQ(salida, "0201");
}

TEST(Hex2binVARTest, InverseOfBin2hexVAR)
{
    Bytes salida(2, relleno);
    hex2binVAR(salida.data(), "0201", 2);
    EXPECT_EQ(salida, (Bytes{0x01, 0x02}));
}

TEST(Hex2binVARTest, RoundTrip)
{
    for (const Bytes &original : {Bytes{0x00}, Bytes{0xDE, 0xAD, 0xBE, 0xEF},
                                  Bytes{0x10, 0x20, 0x30}, Bytes{0xFF, 0x00, 0x7F, 0x80, 0x01}}) {
        std::string texto(2 * original.size() + 1, 'x');
        bin2hexVAR(texto.data(), original.data(), original.size());
        Bytes vuelta(original.size(), relleno);
        hex2binVAR(vuelta.data(), texto.c_str(), static_cast<int>(original.size()));
        EXPECT_EQ(vuelta, original) << texto.c_str();
    }
}

TEST(Hex2binVARTest, CountBelowOneDoesNothing)
{
    Bytes salida(2, relleno);
    hex2binVAR(salida.data(), "0201", 0);
    hex2binVAR(salida.data(), "0201", -3);
    EXPECT_EQ(salida, Bytes(2, relleno));
}

struct CasoAscii2dec {
    const char *nombre;
    const char *texto;
    int longitud;
    uint32_t esperado;
};

void PrintTo(const CasoAscii2dec &caso, std::ostream *salida)
{
    *salida << caso.nombre;
}

class Ascii2decTest : public ::testing::TestWithParam<CasoAscii2dec> {};

TEST_P(Ascii2decTest, ParsesInBaseTen)
{
    const CasoAscii2dec &caso = GetParam();
    uint32_t resultado = 77;
    ascii2dec(&resultado, caso.texto, caso.longitud);
    EXPECT_EQ(resultado, caso.esperado);
}

INSTANTIATE_TEST_SUITE_P(Textos, Ascii2decTest, ::testing::Values(
    CasoAscii2dec{"Digitos", "4321", 4, 4321},
    CasoAscii2dec{"LetraCuentaDiezEnBaseDiez", "1a", 2, 20},
    CasoAscii2dec{"LetrasMayusculas", "F", 1, 15},
    CasoAscii2dec{"CaracterAjeno", "12x", 3, 0},
    CasoAscii2dec{"SoloLosPrimeros", "12x", 2, 12},
    CasoAscii2dec{"TerminadorDentroDeLaLongitud", "12", 5, 0},
    CasoAscii2dec{"DiezCifras", "4294967295", 10, 4294967295U},
    CasoAscii2dec{"SinControlDeDesbordamiento", "4294967296", 10, 0},
    CasoAscii2dec{"LongitudOnce", "12345678901", 11, 0},
    CasoAscii2dec{"LongitudCero", "123", 0, 0},
    CasoAscii2dec{"LongitudNegativa", "123", -1, 0}),
    [](const auto &info) { return std::string(info.param.nombre); });

TEST(Ascii2decTest, NullArgumentsLeaveTheResult)
{
    uint32_t resultado = 77;
    ascii2dec(&resultado, nullptr, 2);
    EXPECT_EQ(resultado, 77U);
    ascii2dec(nullptr, "12", 2);
}

TEST(StrappendTest, AllocatesThenGrows)
{
    char *cadena = nullptr;
    EXPECT_EQ(strappend(&cadena, "ab"), 2U);
    ASSERT_NE(cadena, nullptr);
    EXPECT_STREQ(cadena, "ab");
    EXPECT_EQ(strappend(&cadena, "c"), 3U);
    EXPECT_STREQ(cadena, "abc");
    EXPECT_EQ(strappend(&cadena, ""), 3U);
    EXPECT_STREQ(cadena, "abc");
    std::free(cadena);
}

struct CasoQuitar {
    const char *nombre;
    const char *texto;
    const char *marca;
    const char *esperado;
};

void PrintTo(const CasoQuitar &caso, std::ostream *salida)
{
    *salida << caso.nombre;
}

class QuitarTest : public ::testing::TestWithParam<CasoQuitar> {};

TEST_P(QuitarTest, CutsAfterTheMarker)
{
    const CasoQuitar &caso = GetParam();
    std::string buffer(caso.texto);
    char *resultado = quitar_str1_str2(buffer.data(), caso.marca);
    ASSERT_NE(resultado, nullptr);
    EXPECT_STREQ(resultado, caso.esperado);
    // Whatever was cut is zeroed to the end of the text.
    const size_t fin = static_cast<size_t>(resultado - buffer.data()) + std::strlen(resultado);
    for (size_t i = fin; i < buffer.size(); ++i)
        EXPECT_EQ(buffer[i], '\0') << "byte " << i;
}

INSTANTIATE_TEST_SUITE_P(Textos, QuitarTest, ::testing::Values(
    CasoQuitar{"CorteEnDobleBlanco", "key: value  rest\n", "key: ", "value"},
    CasoQuitar{"SinSaltoQuedaIgual", "key: value  rest", "key: ", "value  rest"},
    CasoQuitar{"CorteEnSalto", "key: value rest\nmore", "key: ", "value rest"},
    CasoQuitar{"DobleBlancoTrasElSalto", "key: ab\ncd  ef", "key: ", "ab\ncd"},
    CasoQuitar{"SinMarcaDesdeElPrincipio", "otra: x\n", "key: ", "otra: x"},
    CasoQuitar{"MarcaEnMedio", "inet addr:10.0.0.1  Bcast\n", "addr:", "10.0.0.1"}),
    [](const auto &info) { return std::string(info.param.nombre); });

TEST(QuitarTest, NullTextGivesNull)
{
    EXPECT_EQ(quitar_str1_str2(nullptr, "key"), nullptr);
}

}  // namespace
