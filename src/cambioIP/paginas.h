// paginas.h: the common pages of the rack: the unit list (commands 15 and 16), the network
// configuration (commands 3 and 4) and the test options (commands 14 and 22). The page
// functions follow the row-function protocol of the page engine (SALCOMUN_FuncionPagina), the
// saves that of the save engine (SALCOMUN_FuncionGrabar). The row painters also paint the
// network and test sections of the advanced page of one unit (phase 3, suffix "_tot").
#pragma once

#include <cstdint>
#include <libxml/tree.h>
#include <string>

// ---------------------------------------------------------------------------
// Unit list
// ---------------------------------------------------------------------------

// Phase 0 the header, 1 one unit's row (4 without a model text), 2 the last row with the
// unit count and the end of the table; phase 3 has no section (4); other phases print
// nothing.
int CIPINT_GeneraListaUnidades(int fase, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                               int entradasVideo, int capacidades, const char *modelo, int fila,
                               const char *sufijo, int familia, int parametro);
// One unit's row from its status document: order, model, identifier, address, serial
// number, the five versions and the "forzarconfig" box. The master's row is in bold with
// "web connected" under its model. The row number is not used.
int CIPINT_PintaLineaListaUnidades(xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                                   int entradasVideo, int capacidades, const char *modelo, int fila,
                                   const char *sufijo);

// ---------------------------------------------------------------------------
// Network configuration
// ---------------------------------------------------------------------------

// Phase 0 the header, 1 one unit's row (4 without a model text), 2 the last row with the
// unit count and the end of the table, 3 the unit's section of the advanced page.
int CIPINT_GeneraConfigRed(int fase, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                           int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                           int familia, int parametro);
// The network settings of one unit from its configuration document: a page row
// (avanzado 0; a unit other than the master without a suffix is 4) or the advanced
// section with the fields named "..._tot" (avanzado 1).
int CIPINT_PintaLineaConfigRed(xmlDocPtr documento, int esMaster, int avanzado, uint8_t canales, int opciones,
                               int entradasVideo, int capacidades, const char *modelo, int fila,
                               const char *sufijo);
// Stores "networkipdir", "networkmask", "gateway", "orden" (all required: 7 when one is
// empty, nothing written) and "dhcp" ("0" or "1"; anything else, or none, is "1").
// 4 without form text, 6 when a write failed, else 0.
int CIPINT_GrabaConfigRed(xmlDocPtr documento, char *formulario);

// ---------------------------------------------------------------------------
// Test options
// ---------------------------------------------------------------------------

// Layout flags of the test page: QAM units have an EAS column, the other families none.
inline constexpr int CIP_TestNormal = 0;
inline constexpr int CIP_TestEU = 1;

// Phase 0 the header, 1 one unit's row (4 without a model text), 2 the last row with the
// unit count and the end of the table, 3 the unit's section of the advanced page; the
// plain layout (QAM) and the EU layout (every other family).
int CIPINT_GeneraTest(int fase, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                      int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                      int familia, int parametro);
int CIPINT_GeneraTestEU(int fase, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                        int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                        int familia, int parametro);
// The test boxes of one unit from its configuration document in the layout `tipo`
// (CIP_TestNormal or CIP_TestEU): a page row (avanzado 0; no suffix is 4) or the advanced
// section with the fields named "..._tot" (avanzado 1).
int CIPINT_PintaLineaTest(xmlDocPtr documento, int esMaster, int avanzado, uint8_t canales, int opciones,
                          int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                          int tipo);
// Stores "treset", "tfab" and "tled", and "teas" when it is sent. "numcanales", "treset",
// "tfab" and "tled" are required and "numcanales" taken in 8 bits must be 1 to 9, else 7
// and nothing is written. 4 without form text, 6 when a write failed, else 0.
int CIPINT_GrabaConfigTest(xmlDocPtr documento, char *formulario);

// ---------------------------------------------------------------------------
// Helpers of the page painters
// ---------------------------------------------------------------------------

// A text reader of the store (UTILSXML_Lee...).


// Field suffix of the advanced page, in place of a unit's suffix.
inline constexpr char CIP_SufijoTotal[] = "_tot";
