// crc32.cpp: byte-wise table-driven CRC-32, reflected (zip, Ethernet) and MPEG-2/DVB
// (sections of a transport stream). Both tables are computed by the compiler from their
// polynomials and live in read-only data.
#include "crc32/crc32.h"

#include <array>

namespace {

using TablaCRC = std::array<uint32_t, 256>;

// Reflected table: bits processed least significant first, polynomial 0xEDB88320.
constexpr TablaCRC generaTablaReflejada(uint32_t polinomio)
{
    TablaCRC tabla{};
    for (uint32_t i = 0; i < tabla.size(); ++i) {
        uint32_t c = i;
        for (int bit = 0; bit < 8; ++bit)
            c = (c & 1U) ? (polinomio ^ (c >> 1)) : (c >> 1);
        tabla[i] = c;
    }
    return tabla;
}

// Direct table: bits processed most significant first, polynomial 0x04C11DB7.
constexpr TablaCRC generaTablaDirecta(uint32_t polinomio)
{
    TablaCRC tabla{};
    for (uint32_t i = 0; i < tabla.size(); ++i) {
        uint32_t c = i << 24;
        for (int bit = 0; bit < 8; ++bit)
            c = (c & 0x80000000U) ? ((c << 1) ^ polinomio) : (c << 1);
        tabla[i] = c;
    }
    return tabla;
}

constexpr TablaCRC crc_table = generaTablaReflejada(0xEDB88320U);
constexpr TablaCRC dvb_crc_table = generaTablaDirecta(0x04C11DB7U);

static_assert(crc_table[1] == 0x77073096U && crc_table[128] == 0xEDB88320U);
static_assert(dvb_crc_table[1] == 0x04C11DB7U);

}  // namespace

const uint32_t *CRC32_MiraTablaCRC()
{
    return crc_table.data();
}

uint32_t CRC32_IniciaCRC()
{
    return 0;
}

// The running value is inverted on entry and on exit, so successive updates chain into
// the CRC of the whole data.
uint32_t CRC32_CalculaActualizaCrC32(uint32_t crc, const uint8_t *datos, size_t longitud)
{
    if (datos == nullptr)
        return 0;
    uint32_t c = ~crc;
    for (size_t i = 0; i < longitud; ++i)
        c = crc_table[(c ^ datos[i]) & 0xFFU] ^ (c >> 8);
    return ~c;
}

const uint32_t *CRC32_DVBMiraTablaCRC()
{
    return dvb_crc_table.data();
}

uint32_t CRC32_DVBIniciaCRC()
{
    return 0xFFFFFFFFU;
}

// No inversion: a section followed by its own CRC yields 0.
uint32_t CRC32_DVBCalculaActualizaCrC32(uint32_t crc, const uint8_t *datos, size_t longitud)
{
    if (datos == nullptr)
        return crc;
    uint32_t c = crc;
    for (size_t i = 0; i < longitud; ++i)
        c = dvb_crc_table[((c >> 24) ^ datos[i]) & 0xFFU] ^ (c << 8);
    return c;
}
