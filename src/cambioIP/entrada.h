// entrada.h: the encoder input configuration page (commands 10 and 11): for every unit and
// every encoder input, whether it is enabled, its video and audio connectors, the video
// codec and its encoding options, bitrates, aspect ratio, GOP, audio level and closed
// captions. The page function follows the row-function protocol of the page engine
// (SALCOMUN_FuncionPagina), the save that of the save engine (SALCOMUN_FuncionGrabar). The painter
// also paints the "Input Configuration:" section of the advanced page of one unit.
//
// The model masks as the page engine passes them: entradasVideo is the audio-input mask
// (1 ANALOG, 2 COAXIAL, 4 OPTICAL, 8 HDMI), capacidades the video-input mask (1 Comp.,
// 2 HDMI, 4 CVBS) and parametro the resolution mask (the bits are the "maxoutres" values;
// non-zero also means the model encodes up to 50 Mbit/s and may limit its resolution).
#pragma once

#include <cstdint>
#include <libxml/tree.h>

// Phase 0 the table head, 1 one unit's row (4 without a model text), 2 the last row with the
// unit count and the end of the table, 3 the unit's section of the advanced page; other
// phases print nothing. The head and the last row take their layout from the family with
// the rule 0 default, 1 EU, anything else LAT.
int CIPINT_GeneraEntrada(int fase, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                         int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                         int familia, int parametro);

// The inputs of one unit from its configuration document (`canales` inputs): a page row
// (avanzado 0; no suffix is 4) with the hidden "anterior" twins, or the advanced section
// with the fields named "<key><input>_tot" and no twins (avanzado 1). The layout comes from
// the family with the rule 1 EU, 2 or 3 LAT, anything else default.
int CIPINT_PintaLineaConfigEntrada(xmlDocPtr documento, int esMaster, int avanzado, uint8_t canales, int opciones,
                                   int entradasVideo, int capacidades, const char *modelo, int fila,
                                   const char *sufijo, int familia, int parametro);

// Stores one unit's inputs from the keys "numcanales" (1 to 9) and the per-input lists
// "eon", "vidinp", "vidcod", "ffencod", "audcod", "audinp", "audlev", "ccon", "vidbit",
// "audbit", "asprat", "gop", "maxoutres" ("input_value_input_value..."; inputs above
// numcanales are skipped). 4 without form text; 7 when a key is missing or empty or the
// count is out of range (nothing written); 6 when a write failed (a failed "maxoutres" only
// counts on documents of version 4 or later; the other writes stay); else 0.
int CIPINT_GrabaConfigEntrada(xmlDocPtr documento, char *formulario);
