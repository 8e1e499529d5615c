// SalidaCOFDM: the output module of the units whose modulator is COFDM, output family 1. The
// unit sends either a terrestrial OFDM signal or a cable QAM signal, as its mode says, and its
// transport stream carries the DVB service information (network, NIT and SDT versions,
// logical channel numbers).
//
// Like every output module it paints each unit's row of the quick-status, detailed-status,
// transport and output pages, the header and closing row of those pages and the unit's
// sections of the advanced page, and stores the transport and output pages of one unit. What
// the families share (status cells, service lines, select cell, save steps) comes from
// SalidaComun/SalidaComun.h, with the channel plans and option tables.
//
// This header holds the six entries the engines call; the row painters, option tables and
// page templates are private (SalidaCOFDM_int.h).
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

int SALCOFDM_SondeoRapido(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                          int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                          int familia, int parametro);
int SALCOFDM_SondeoDetallado(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                             int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                             int familia, int parametro);
int SALCOFDM_GeneraTransporte(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                              int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                              int familia, int parametro);
int SALCOFDM_GeneraSalida(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                          int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                          int familia, int parametro);

int SALCOFDM_GrabaTransporte(xmlDocPtr documento, char *formulario);
int SALCOFDM_GrabaSalida(xmlDocPtr documento, char *formulario);
