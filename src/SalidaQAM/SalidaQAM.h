// SalidaQAM: the output module of the units whose modulator is QAM (Annex A or B), output
// family 0. It paints each unit's row of the quick-status, detailed-status, transport and
// output pages, the header and closing row of those pages and the unit's sections of the
// advanced page, and stores the transport and output pages of one unit.
//
// This header holds the six entries the engines call; the row painters, option tables and
// page templates are private (SalidaQAM_int.h).
//
// The four page entries are page-row functions of the page engine (SALCOMUN_FuncionPagina):
//   mode 0 header, 1 this unit's row (4 without a model text), 2 the closing row for all
//   units and the end of the table, 3 the unit's section of the advanced page (suffix "_tot").
// The two saves are save functions of the save engine (SALCOMUN_FuncionGrabar): 0 stored, 4 no
// text, 6 a write failed (the others are still written), 7 a required key is missing or
// "numcanales" is not 1..9 (nothing written).
#pragma once

#include "SalidaComun/SalidaComun.h"

#include <cstdint>
#include <libxml/tree.h>

// ---------------------------------------------------------------------------
// Page entries and saves
// ---------------------------------------------------------------------------

int SALQAM_SondeoRapido(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                        int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                        int familia, int parametro);
int SALQAM_SondeoDetallado(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                           int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                           int familia, int parametro);
int SALQAM_GeneraTransporte(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                            int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                            int familia, int parametro);
int SALQAM_GeneraSalida(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                        int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                        int familia, int parametro);

int SALQAM_GrabaTransporte(xmlDocPtr documento, char *formulario);
int SALQAM_GrabaSalida(xmlDocPtr documento, char *formulario);
