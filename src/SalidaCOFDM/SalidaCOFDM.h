// SalidaCOFDM: the output module of the units whose modulator is COFDM, output family 1. The
// unit sends either a terrestrial OFDM signal or a cable QAM signal, as its mode says, and its
// transport stream carries the DVB service information (network, NIT and SDT versions,
// logical channel numbers).
//
// Like every output module it paints each unit's row of the quick-status, detailed-status,
// transport and output pages, the header and closing row of those pages and the unit's
// sections of the advanced page, and stores the transport and output pages of one unit. What
// the families share (status cells, service lines, select cell, save steps) comes from
// SalidaQAM/SalidaComun.h; the channel plans and option tables from TablasCanales.h.
//
// The four entry functions are page-row functions of the page engine (CIP_FuncionPagina):
//   mode 0 header, 1 this unit's row (4 without a model text), 2 the closing row for all
//   units and the end of the table, 3 the unit's section of the advanced page (suffix "_tot").
// The two saves are save functions of the save engine (CIP_FuncionGrabar): 0 stored, 4 no
// text, 6 a write failed (the others are still written), 7 a required key is missing or
// "numcanales" is not 1..9 (nothing written).
#pragma once

#include "SalidaCOFDM/TablasCanales.h"
#include "SalidaQAM/SalidaComun.h"
#include "cambioIP/cambioIP.h"

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

// ---------------------------------------------------------------------------
// Row painters (called by the entries; 0 always)
// ---------------------------------------------------------------------------

// A status row of the unit's status document (detailed 0 quick, without the EAS LED; 1
// detailed), or with configTotal the advanced page's "Unit Status:" block.
int SALCOFDMINT_PintaLineaSondeo(xmlDocPtr status, int esMaster, int configTotal, int detallado, uint8_t canales,
                                 const char *modelo, const char *sufijo);
// A transport row of the unit's configuration document, or with configTotal the advanced
// page's "Transport Configuration:" block. Bit 0 of `opciones`: the model has IP inputs.
int SALCOFDMINT_PintaLineaTransporte(xmlDocPtr config, int esMaster, int configTotal, uint8_t canales, int opciones,
                                     const char *modelo, const char *sufijo);
// An output row, or with configTotal the advanced page's "Output Configuration:" block.
int SALCOFDMINT_PintaLineaSalida(xmlDocPtr config, int esMaster, int configTotal, uint8_t canales,
                                 const char *modelo, const char *sufijo);

// ---------------------------------------------------------------------------
// Option tables of the COFDM pages
// ---------------------------------------------------------------------------

// The family index carried by the rows' hidden "tipounidad".
inline constexpr int SALCOFDM_TipoUnidad = 1;

// Channel plans offered in "outtab": 0 "FREQUENCY" .. 10 "Australia".
inline constexpr int SALCOFDM_PlanesOfrecidos = 11;

// "outchn" with plan 0: the whole megahertz typed in.
inline constexpr int SALCOFDM_FrecuenciaMinima = 46;
inline constexpr int SALCOFDM_FrecuenciaMaxima = 862;

// "frecstep" with a channel plan: the step is fixed, carried hidden with this value.
inline constexpr char SALCOFDM_PasoConPlan[] = "2";
// Frequency steps offered with plan 0: positions 0..11 of FrecuencyStepCOFDM in OFDM modes
// ("143 kHz" never), only these four in QAM modes.
inline constexpr int SALCOFDM_UltimoPasoOFDM = 11;
inline constexpr int SALCOFDM_PasosQAM[] = {0, 3, 6, 9};
// In QAM modes a stored step from this position on selects position 0.
inline constexpr int SALCOFDM_PrimerPasoFueraQAM = 10;

// Stored mode values: 0..2 OFDM, 12..16 cable QAM; any other value is painted as 0.
inline constexpr int SALCOFDM_ModoDefecto = 0;
inline constexpr int SALCOFDM_UltimoModoOFDM = 2;
inline constexpr int SALCOFDM_PrimerModoQAM = 12;
inline constexpr int SALCOFDM_UltimoModoQAM = 16;

// "bwsal", "ingrd", "fecsal": the OFDM signal's bandwidth, guard interval and code rate.
inline constexpr SALCOMUN_Opcion SALCOFDM_AnchosBanda[] = {
    {"0", "8 MHz"},
    {"1", "7 MHz"},
    {"2", "6 MHz"},
};
inline constexpr SALCOMUN_Opcion SALCOFDM_IntervalosGuarda[] = {
    {"0", "1/32"},
    {"1", "1/16"},
    {"2", "1/8"},
    {"3", "1/4"},
};
inline constexpr SALCOMUN_Opcion SALCOFDM_FECs[] = {
    {"0", "1/2"}, {"1", "2/3"}, {"2", "3/4"}, {"3", "5/6"}, {"4", "7/8"},
};

// "outout" uses the QAM page's lists (SALQAM_TiposSalida, SALQAM_TiposSalidaTodas): the
// modulator's output types are the same in both families.

// "mlcn": how the logical channel numbers are signalled in the NIT.
inline constexpr SALCOMUN_Opcion SALCOFDM_TiposLCN[] = {
    {"0", "Generic"},
    {"1", "UK"},
    {"2", "NOR V1"},
    {"3", "NOR V2"},
};
inline constexpr char SALCOFDM_TipoLCNDefecto[] = "0";

// "nitvs", "sdtvs": table versions 0..31, or 32 "Auto" (the unit counts them itself).
inline constexpr int SALCOFDM_UltimaVersion = 31;
inline constexpr SALCOMUN_Opcion SALCOFDM_VersionAuto = {"32", "Auto"};
