// SalidaCOFDM_int.h: what only the COFDM module itself uses: its row painters, the option
// tables and rules of its pages, and its HTML templates (printf formats filled through
// UTILS_Formatea, "%%" prints one '%'; cells arrive composed and escaped). The browser's
// copy of the option tables is generated from here (tools/genera_tablas).
#pragma once

#include "SalidaCOFDM/SalidaCOFDM.h"
#include "SalidaComun/DVB.h"

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


// Stored mode values: 0..2 OFDM, 12..16 cable QAM; any other value is painted as 0.
inline constexpr int SALCOFDM_ModoDefecto = 0;
inline constexpr int SALCOFDM_UltimoModoOFDM = 2;
inline constexpr int SALCOFDM_PrimerModoQAM = 12;
inline constexpr int SALCOFDM_UltimoModoQAM = 16;

// ---------------------------------------------------------------------------
// Page templates
// ---------------------------------------------------------------------------


// --- Quick status -----------------------------------------------------------
inline constexpr char htmlsondeorapidoCabeceraCOFDM[] = SALCOMUN_CABECERA_RAPIDO(SALCOMUN_TH_LEDS_SIN_EAS);
// order, model, Temp, CH1..CH4, OUT, RF Loop, table, channel, IP, watermarking, status
inline constexpr char htmlsondeorapidoCOFDM[] = SALCOMUN_FILA_RAPIDO(SALCOMUN_TD_LEDS_SIN_EAS);

// --- Detailed status --------------------------------------------------------
inline constexpr char htmlsondeoDetaladoCabeceraCOFDM[] = SALCOMUN_CABECERA_DETALLADO;
// order, model, ID, serial number, temperature, resolution/frame rate, versions, options
inline constexpr char htmlsondeoDetaladoCOFDM[] = SALCOMUN_FILA_DETALLADO;

// Advanced page: the eight LEDs, resolution/frame rate and versions.
inline constexpr char htmlConfigTotalUnitStatusCOFDM[] = SALCOMUN_BLOQUE_ESTADO;



// --- Fragments of the rows --------------------------------------------------

