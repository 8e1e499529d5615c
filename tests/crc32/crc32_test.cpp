// CRC-32 calculators: the check values of "123456789", agreement with the bit-by-bit
// definition over every byte value, chained updates, and null data.
#include "crc32/crc32.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// The definitions one bit at a time: reflected (least significant bit first, inverted on
// entry and exit) and direct (most significant bit first, no inversion).
uint32_t bitABitReflejado(uint32_t crc, const std::vector<uint8_t> &datos)
{
    crc = ~crc;
    for (uint8_t b : datos)
        for (int i = 0; i < 8; ++i, b >>= 1)
            crc = ((crc ^ b) & 1U) ? (crc >> 1) ^ 0xEDB88320U : crc >> 1;
    return ~crc;
}

uint32_t bitABitDirecto(uint32_t crc, const std::vector<uint8_t> &datos)
{
    for (uint8_t b : datos)
        for (int i = 7; i >= 0; --i)
            crc = (((crc >> 31) ^ (b >> i)) & 1U) ? (crc << 1) ^ 0x04C11DB7U : crc << 1;
    return crc;
}

struct Calculador {
    const char *nombre;
    uint32_t (*inicia)();
    uint32_t (*actualiza)(uint32_t, const uint8_t *, size_t);
    uint32_t (*definicion)(uint32_t, const std::vector<uint8_t> &);
    uint32_t valorDigitos;  // the CRC of "123456789" from the start value
};

const Calculador calculadores[] = {
    {"standard", CRC32_IniciaCRC, CRC32_CalculaActualizaCrC32, bitABitReflejado, 0xCBF43926U},
    {"MPEG/DVB", CRC32_DVBIniciaCRC, CRC32_DVBCalculaActualizaCrC32, bitABitDirecto, 0x0376E6E7U}};

TEST(Crc32, CheckValueOfTheNineDigitsWhereverTheUpdateIsSplit)
{
    const auto *digitos = reinterpret_cast<const uint8_t *>("123456789");
    for (const Calculador &c : calculadores)
        for (size_t corte = 0; corte <= 9; ++corte)
            EXPECT_EQ(c.actualiza(c.actualiza(c.inicia(), digitos, corte), digitos + corte, 9 - corte), c.valorDigitos)
                << c.nombre << ", split at " << corte;
}

TEST(Crc32, AgreesWithTheBitByBitDefinitionOverEveryByteValue)
{
    std::vector<uint8_t> datos;
    for (int i = 0; i < 1024; ++i)
        datos.push_back(static_cast<uint8_t>(i * 7 + i / 256));
    for (const Calculador &c : calculadores)
        for (uint32_t inicial : {c.inicia(), 0x12345678U})
            EXPECT_EQ(c.actualiza(inicial, datos.data(), datos.size()), c.definicion(inicial, datos)) << c.nombre;
}

TEST(Crc32, NullDataGivesZeroForTheStandardAndKeepsTheRunningValueForDvb)
{
    EXPECT_EQ(CRC32_CalculaActualizaCrC32(0x12345678U, nullptr, 9), 0U);
    EXPECT_EQ(CRC32_DVBCalculaActualizaCrC32(0x12345678U, nullptr, 9), 0x12345678U);
}

}  // namespace
