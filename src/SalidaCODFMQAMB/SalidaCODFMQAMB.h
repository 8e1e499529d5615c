// SalidaCODFMQAMB: the output module of the units whose modulator is the combined COFDM/QAM-B
// one, output family 3. The unit transmits either DVB-T (COFDM) or ITU-T J.83 Annex B cable
// QAM, as its mode says, with its settings in the COFDM modulator's block, and its transport
// stream carries the DVB service information.
//
// Like every output module it paints each unit's row of the quick-status, detailed-status,
// transport and output pages, the header and closing row of those pages and the unit's
// sections of the advanced page, and stores the transport and output pages of one unit. The
// status rows, the transport page and the COFDM output row are those the DVB families share
// (SalidaComun/DVB.h), painted with this family's modes and plans. This header holds the six
// entries the engines call; the row painters and rules are private (SalidaCODFMQAMB_int.h).
//
// The four page entries are page-row functions of the page engine (SALCOMUN_FuncionPagina):
//   mode 0 header, 1 this unit's row (4 without a model text), 2 the closing row for all
//   units and the end of the table, 3 the unit's section of the advanced page (suffix "_tot").
// The two saves are save functions of the save engine (SALCOMUN_FuncionGrabar): 0 stored, 4 no
// text, 6 a write failed (the others are still written), 7 a required key is missing,
// "numcanales" is not 1..9 or a value is not one the page offers for the posted mode and plan
// (nothing written).
#pragma once

#include "SalidaComun/SalidaComun.h"

#include <cstdint>
#include <libxml/tree.h>

int SALCOFDMQAMB_SondeoRapido(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                              int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                              int familia, int parametro);
int SALCOFDMQAMB_SondeoDetallado(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                                 int entradasVideo, int capacidades, const char *modelo, int fila,
                                 const char *sufijo, int familia, int parametro);
int SALCOFDMQAMB_GeneraTransporte(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                                  int entradasVideo, int capacidades, const char *modelo, int fila,
                                  const char *sufijo, int familia, int parametro);
int SALCOFDMQAMB_GeneraSalida(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                              int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                              int familia, int parametro);

int SALCOFDMQAMB_GrabaTransporte(xmlDocPtr documento, char *formulario);
int SALCOFDMQAMB_GrabaSalida(xmlDocPtr documento, char *formulario);
