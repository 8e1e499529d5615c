// crc32: table-driven CRC-32 calculators with incremental update: the common reflected
// CRC-32 (zip, Ethernet) and the non-reflected CRC-32 of MPEG-2 transport stream sections.
#pragma once

#include <cstddef>
#include <cstdint>

const uint32_t *CRC32_MiraTablaCRC();
uint32_t CRC32_IniciaCRC();
uint32_t CRC32_CalculaActualizaCrC32(uint32_t crc, const uint8_t *datos, size_t longitud);

const uint32_t *CRC32_DVBMiraTablaCRC();
uint32_t CRC32_DVBIniciaCRC();
uint32_t CRC32_DVBCalculaActualizaCrC32(uint32_t crc, const uint8_t *datos, size_t longitud);
