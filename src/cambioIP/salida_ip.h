// salida_ip.h: the IP input/output page (commands 17 and 28). Per unit it sets how the IP
// port carries transport streams: not at all, as an IP output (the unit sends its multiplex
// to multicast groups) or as an IP input (the unit receives streams whose services are
// picked on the service list), with one line per IP stream: address, port, packets per
// datagram, protocol and the hidden FEC settings. The page function follows the row-function
// protocol of the page engine (SALCOMUN_FuncionPagina), the save that of the save engine
// (SALCOMUN_FuncionGrabar); the row painter also paints the "IP input/output:" section of the
// advanced page (phase 3, suffix "_tot").
#pragma once

#include <cstdint>
#include <libxml/tree.h>

// Phase 0 the header, 1 one unit's row (4 without a model text), 2 the last row with the
// unit count and the end of the table, 3 the unit's section of the advanced page; other
// phases print nothing. QAM (family 0) has the US layout with the "Standard" column, every
// other family the plain one.
int CIPINT_GeneraSalidaIP(int fase, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                          int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                          int familia, int parametro);

// The IP settings of one unit from its configuration document: a page row (avanzado 0; no
// suffix is 4) or the advanced section with the fields named "..._tot" (avanzado 1). The
// unit has an IP port when bit 0 of `opciones` is set; without one the IP cells stay empty.
// `canales` is the number of encoder inputs; `familia` picks the layout.
int CIPINT_PintaLineaSalidaIP(xmlDocPtr documento, int esMaster, int avanzado, uint8_t canales, int opciones,
                              int entradasVideo, int capacidades, const char *modelo, int fila,
                              const char *sufijo, int familia, int parametro);

// Stores one unit's IP settings: "iptxrx", "iptype", then the per-line lists ("line_value_...")
// "ipen", "outputIP" and "outputport" (to the destination for an output, to the source for an
// input, nowhere when disabled), "ippackets", "scanstd" (US layout only) and "ipproto", each
// for the lines 1 to "nentip". A missing key prints "BAD data 25.<br>\n" and gives 7;
// "haysalidaip" 0 gives 2; "numcanales" outside 1..9 or "nentip" 0 give 7; nothing is written
// in those cases. 4 without form text, 6 when a write failed (the others stay), else 0.
int CIPINT_GrabaSalidaIP(xmlDocPtr documento, char *formulario);
