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

// ---------------------------------------------------------------------------
// Page templates
// ---------------------------------------------------------------------------

#define SALCOFDMINT_TH_SALIDA                                                                                 \
    SALCOMUN_TH("Table") SALCOMUN_TH("Channel") SALCOMUN_TH("Freq. Adj.") SALCOMUN_TH("Level")    \
    SALCOMUN_TH("Mode") SALCOMUN_TH("BW") SALCOMUN_TH("Guard Interval") SALCOMUN_TH("FEC")        \
    SALCOMUN_TH("CELL ID") SALCOMUN_TH("Baudrate") SALCOMUN_TH("Output") SALCOMUN_TH("RF Loop")

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


// --- Output -----------------------------------------------------------------
inline constexpr char htmlinfosalidainicioCOFDM[] =
    SALCOMUN_ABRETABLA SALCOMUN_TH_ORDEN(0) SALCOFDMINT_TH_SALIDA SALCOMUN_TH("Select") "</tr>";
// order, model, Table, Channel, Freq. Adj., Level, Mode, BW, Guard Interval, FEC, CELL ID,
// Baudrate, Output, RF Loop, forzarconfig name and id, marker, hidden fields
inline constexpr char htmlinfosalidaCOFDM[] =
    "<tr>" SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD6 SALCOMUN_TD6 SALCOMUN_TD_SELECCION "</tr>";
// unit count, "outtab_all", "frecstep_all", "outmod_all", "bwsal_all", "ingrd_all",
// "fecsal_all", "outout_all"
inline constexpr char htmlultimalineaSalidaCOFDM[] =
    SALCOMUN_TD_ULTIMA_ROTULO SALCOMUN_TD_ULTIMA
    "<td class='ultimalinea'><div id=\"tablaselect_all\"></div></td>" SALCOMUN_TD_ULTIMA
        SALCOMUN_TD_ULTIMA_VACIA(1) SALCOMUN_TD_ULTIMA SALCOMUN_TD_ULTIMA SALCOMUN_TD_ULTIMA
            SALCOMUN_TD_ULTIMA SALCOMUN_TD_ULTIMA_VACIA(2) SALCOMUN_TD_ULTIMA
        SALCOMUN_TD_BUCLE_TODAS SALCOMUN_TD_FORZARCONF;
// Table, Channel, Freq. Adj., Level, Mode, BW, Guard Interval, FEC, CELL ID, Baudrate,
// Output, RF Loop
inline constexpr char htmlConfigTotalOutputConfigCOFDM[] =
    SALCOMUN_ABRECONFIGTOTAL("Output Configuration:") SALCOFDMINT_TH_SALIDA "</tr><tr>" SALCOMUN_TD6
        SALCOMUN_TD6 "</tr></tbody></table>";

// --- Fragments of the rows --------------------------------------------------

