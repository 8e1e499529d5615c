// The input of fuzz_peticion: one whole request on one small rack. fuzz_peticion reads it,
// genera_semillas writes the golden cases in it.
//
//   byte 0   the rack: an index, modulo their number, into the folders of
//            tests/fixtures/racks sorted by name
//   byte 1   bits 0-1, the method: 0 GET (the form text is the query string), 1 POST (the form
//            text is the body, CONTENT_LENGTH its length), 2 POST announcing more bytes than
//            the body holds, 3 no REQUEST_METHOD at all
//            bit 2, the request finds one unit document replaced (see below)
//            bits 3-6, files the request finds in config/: web.lock, control.lock,
//            command.msg (holding "2"), HBK.lock
//   byte 2   below 0x80: "command=<byte % 40>&" goes before the form text; from 0x80 on the
//            form text goes as it is
//   then     the form text, up to the first zero byte or the end of the input
//   then     with bit 2, after that zero byte: one byte choosing the document (an index, modulo
//            their number, into the files of the rack's config/ sorted by name), and the rest
//            of the input is that document's new content
#pragma once

#include <cstdint>

namespace fuzz::peticion {

inline constexpr std::uint8_t MetodoMascara = 0x03;
inline constexpr std::uint8_t MetodoGet = 0;
inline constexpr std::uint8_t MetodoPost = 1;
inline constexpr std::uint8_t MetodoPostCorto = 2;
inline constexpr std::uint8_t MetodoNinguno = 3;
inline constexpr std::uint8_t ReemplazaDocumento = 0x04;

// The files of config/ the input may plant, one bit each from bit 3 on, with their content.
struct FicheroPlantado {
    const char *nombre;
    const char *contenido;
};
inline constexpr FicheroPlantado Plantados[] = {
    {"web.lock", ""},
    {"control.lock", ""},
    {"command.msg", "2"},
    {"HBK.lock", ""},
};
inline constexpr int PrimerBitPlantado = 3;

// Command byte values: below this one a command number goes first.
inline constexpr std::uint8_t ComandoLibre = 0x80;
inline constexpr int ComandosElegibles = 40;

inline constexpr std::uint8_t CabeceraBytes = 3;

}  // namespace fuzz::peticion
