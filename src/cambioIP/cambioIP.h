// cambioIP: the request entry of the CGI and the dispatch of one request to a page,
// a save, a unit operation or the page-lock protocol.
#pragma once

#include <cstdint>
#include <libxml/tree.h>

// Output families, the index of every per-family dispatch slot.
inline constexpr int CIP_FamiliaQAM = 0;
inline constexpr int CIP_FamiliaCOFDM = 1;
inline constexpr int CIP_FamiliaISDBT = 2;
inline constexpr int CIP_FamiliaCOFDMQAMB = 3;
inline constexpr int CIP_NumFamilias = 4;

// Page-row function: called by the page engine with the phase (0 header, 1 one unit's
// row, 2 last row and end of table, 3 the unit's section of the advanced page), the
// unit's document, whether it is the master's own, the model's channels, options,
// video inputs and capabilities, the model text, the row number, the unit's field
// suffix, its output family and the model parameter. 0 or an error code.
using CIP_FuncionPagina = int (*)(int fase, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                                  int entradasVideo, int capacidades, const char *modelo, int fila,
                                  const char *sufijo, int familia, int parametro);

// Save function: copies one unit's posted fields into its configuration document.
// 0 stored, 2 nothing to store for this model, 4 no text, 6 a write failed,
// 7 a required key missing or a count out of range.
using CIP_FuncionGrabar = int (*)(xmlDocPtr documento, char *formulario);

// A page: which documents the engine walks (1 status, 0 configuration) and the row
// function of each output family.
struct CIP_TablaPagina {
    int32_t flag;
    CIP_FuncionPagina funciones[CIP_NumFamilias];
};

// A save: the save function of each output family.
struct CIP_TablaGrabar {
    CIP_FuncionGrabar funciones[CIP_NumFamilias];
};

// The whole life of one request: header, command, handler, closing. Always 0.
int CIP_Main();
