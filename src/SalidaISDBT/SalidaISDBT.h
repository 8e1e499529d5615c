// SalidaISDBT: the output module of the units whose modulator is ISDB-T, output family 2. The
// unit sends an ISDB-T signal, or a DVB-T (COFDM) one in the modes that say so, on a typed
// frequency or on a channel of the Broadcast plan, and its transport stream carries the DVB
// service information.
//
// Like every output module it paints each unit's row of the quick-status, detailed-status,
// transport and output pages, the header and closing row of those pages and the unit's
// sections of the advanced page, and stores the transport and output pages of one unit. The
// status rows, the transport page and its save are those every DVB family shares
// (SalidaComun/DVB.h); the output row and its save are the family's own. This header holds the
// six entries the engines call; the row painters, option rules and page templates are private
// (SalidaISDBT_int.h).
//
// The four page entries are page-row functions of the page engine (SALCOMUN_FuncionPagina):
//   mode 0 header, 1 this unit's row (4 without a model text), 2 the closing row for all
//   units and the end of the table, 3 the unit's section of the advanced page (suffix "_tot").
// The two saves are save functions of the save engine (SALCOMUN_FuncionGrabar): 0 stored, 4 no
// text, 6 a write failed (the others are still written; a document older than version 2 has
// no ISDB-T output settings), 7 a required key is missing, "numcanales" is not 1..9 or a value
// is not one the page offers for the posted mode and plan (nothing written).
#pragma once

#include "SalidaComun/SalidaComun.h"

#include <cstdint>
#include <libxml/tree.h>

int SALISDBT_SondeoRapido(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                          int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                          int familia, int parametro);
int SALISDBT_SondeoDetallado(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                             int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                             int familia, int parametro);
int SALISDBT_GeneraTransporte(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                              int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                              int familia, int parametro);
int SALISDBT_GeneraSalida(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                          int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                          int familia, int parametro);

int SALISDBT_GrabaTransporte(xmlDocPtr documento, char *formulario);
int SALISDBT_GrabaSalida(xmlDocPtr documento, char *formulario);
