// CRC-32 calculators: check values, chaining, null data and the tables.
#include "crc32/crc32.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace {

const std::string_view digitos = "123456789";

const uint8_t *bytes(std::string_view texto)
{
    return reinterpret_cast<const uint8_t *>(texto.data());
}

// Both calculators share their interface; each row describes one of them.
struct Calculador {
    const char *nombre;
    uint32_t (*inicia)();
    uint32_t (*actualiza)(uint32_t, const uint8_t *, size_t);
    const uint32_t *(*tabla)();
    uint32_t valorDigitos;  // CRC of "123456789" from the start value
    uint32_t polinomio;     // the table entry that holds the polynomial
    size_t entradaPolinomio;
};

void PrintTo(const Calculador &caso, std::ostream *salida)
{
    *salida << caso.nombre;
}

class CalculadorTest : public ::testing::TestWithParam<Calculador> {};

TEST_P(CalculadorTest, CheckValueOfTheNineDigits)
{
    const Calculador &c = GetParam();
    EXPECT_EQ(c.actualiza(c.inicia(), bytes(digitos), digitos.size()), c.valorDigitos);
}

TEST_P(CalculadorTest, SplitUpdatesEqualOneUpdate)
{
    const Calculador &c = GetParam();
    for (size_t corte = 0; corte <= digitos.size(); ++corte) {
        uint32_t crc = c.actualiza(c.inicia(), bytes(digitos), corte);
        crc = c.actualiza(crc, bytes(digitos) + corte, digitos.size() - corte);
        EXPECT_EQ(crc, c.valorDigitos) << "cut at " << corte;
    }
}

TEST_P(CalculadorTest, LengthZeroKeepsTheRunningValue)
{
    const Calculador &c = GetParam();
    for (uint32_t valor : {0U, 0xFFFFFFFFU, 0x12345678U})
        EXPECT_EQ(c.actualiza(valor, bytes(digitos), 0), valor);
}

TEST_P(CalculadorTest, TableHoldsThePolynomial)
{
    const Calculador &c = GetParam();
    const uint32_t *tabla = c.tabla();
    ASSERT_NE(tabla, nullptr);
    EXPECT_EQ(tabla[0], 0U);
    EXPECT_EQ(tabla[c.entradaPolinomio], c.polinomio);
    // The same constant table each time it is asked for.
    EXPECT_EQ(c.tabla(), tabla);
}

INSTANTIATE_TEST_SUITE_P(Calculadores, CalculadorTest, ::testing::Values(
    Calculador{"Estandar", CRC32_IniciaCRC, CRC32_CalculaActualizaCrC32, CRC32_MiraTablaCRC,
               0xCBF43926U, 0xEDB88320U, 128},
    Calculador{"MpegDvb", CRC32_DVBIniciaCRC, CRC32_DVBCalculaActualizaCrC32,
               CRC32_DVBMiraTablaCRC, 0x0376E6E7U, 0x04C11DB7U, 1}),
    [](const auto &info) { return std::string(info.param.nombre); });

TEST(Crc32Test, StartValues)
{
    EXPECT_EQ(CRC32_IniciaCRC(), 0U);
    EXPECT_EQ(CRC32_DVBIniciaCRC(), 0xFFFFFFFFU);
}

TEST(Crc32Test, KnownTableEntries)
{
    EXPECT_EQ(CRC32_MiraTablaCRC()[1], 0x77073096U);
    EXPECT_EQ(CRC32_MiraTablaCRC()[128], 0xEDB88320U);
    EXPECT_EQ(CRC32_MiraTablaCRC()[255], 0x2D02EF8DU);
    EXPECT_EQ(CRC32_DVBMiraTablaCRC()[1], 0x04C11DB7U);
    EXPECT_EQ(CRC32_DVBMiraTablaCRC()[255], 0xB1F740B4U);
}

TEST(Crc32Test, StandardNullDataGivesZero)
{
    for (uint32_t valor : {0U, 0xCBF43926U, 0xFFFFFFFFU}) {
        EXPECT_EQ(CRC32_CalculaActualizaCrC32(valor, nullptr, 9), 0U);
        EXPECT_EQ(CRC32_CalculaActualizaCrC32(valor, nullptr, 0), 0U);
    }
}

TEST(Crc32Test, DvbNullDataKeepsTheRunningValue)
{
    for (uint32_t valor : {0U, 0x0376E6E7U, 0xFFFFFFFFU})
        EXPECT_EQ(CRC32_DVBCalculaActualizaCrC32(valor, nullptr, 9), valor);
}

// A PSI section followed by its own CRC, most significant byte first, checks to 0.
TEST(Crc32Test, DvbSectionWithItsCrcYieldsZero)
{
    std::vector<uint8_t> seccion = {0x00, 0xB0, 0x0D, 0x00, 0x01, 0xC1, 0x00,
                                    0x00, 0x00, 0x01, 0xE1, 0x00};
    const uint32_t crc =
        CRC32_DVBCalculaActualizaCrC32(CRC32_DVBIniciaCRC(), seccion.data(), seccion.size());
    for (int desplazamiento = 24; desplazamiento >= 0; desplazamiento -= 8)
        seccion.push_back(static_cast<uint8_t>(crc >> desplazamiento));
    EXPECT_EQ(CRC32_DVBCalculaActualizaCrC32(CRC32_DVBIniciaCRC(), seccion.data(), seccion.size()),
              0U);
}

}  // namespace
