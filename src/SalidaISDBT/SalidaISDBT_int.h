// SalidaISDBT_int.h: what only the ISDB-T module itself uses: its row painters, the option
// rules of its output page, and its HTML templates (printf formats filled through
// UTILS_Formatea, "%%" prints one '%'; cells arrive composed and escaped).
#pragma once

#include "SalidaComun/DVB.h"
#include "SalidaISDBT/SalidaISDBT.h"

// ---------------------------------------------------------------------------
// Row painters (called by the entries; 0 always)
// ---------------------------------------------------------------------------

// A status row of the unit's status document (detailed 0 quick, without the EAS LED; 1
// detailed), or with configTotal the advanced page's "Unit Status:" block.
int SALISDBTINT_PintaLineaSondeo(xmlDocPtr status, int esMaster, int configTotal, int detallado, uint8_t canales,
                                 const char *modelo, const char *sufijo);
// A transport row (the DVB families' transport page), or with configTotal the advanced page's
// "Transport Configuration:" block. Bit 0 of `opciones`: the model has IP inputs.
int SALISDBTINT_PintaLineaTransporte(xmlDocPtr config, int esMaster, int configTotal, uint8_t canales, int opciones,
                                     const char *modelo, const char *sufijo);
// An output row, or with configTotal the advanced page's "Output Configuration:" block.
int SALISDBTINT_PintaLineaSalida(xmlDocPtr config, int esMaster, int configTotal, uint8_t canales,
                                 const char *modelo, const char *sufijo);

// ---------------------------------------------------------------------------
// Output page rules
// ---------------------------------------------------------------------------

// The family index carried by the rows' hidden "tipounidad".
inline constexpr int SALISDBT_TipoUnidad = SALCOMUN_FamiliaISDBT;

// "outtab": the two plans offered, a typed frequency and the Broadcast channels.
inline constexpr int SALISDBT_PlanFrecuencia = 0;
inline constexpr int SALISDBT_PlanBroadcast = 12;

// "outmod": positions 0..3 are ISDB-T modes, 4..6 COFDM (DVB-T) modes; a stored value outside
// 0..6 is painted as 0.
inline constexpr int SALISDBT_UltimoModoISDBT = 3;
inline constexpr int SALISDBT_UltimoModo = 6;

// "outofdm": ISDB-T modes offer the three transmission modes; DVB-T has no 4K mode.
inline constexpr int SALISDBT_OFDMsCOFDM[] = {0, 2};
// "outint": ISDB-T modes offer the time-interleaving depths "None" .. "Mode3".
inline constexpr int SALISDBT_UltimoInterleaving = 3;

// The choices of the output page's selects (the browser's copy is written from them too): the
// two plans, the thirteen steps, the seven modes, the transmission modes of an ISDB-T or a
// DVB-T mode, the time-interleaving depths.
std::vector<CTESHTML_Opcion> SALISDBTINT_OpcionesPlan();
std::vector<CTESHTML_Opcion> SALISDBTINT_OpcionesPaso();
std::vector<CTESHTML_Opcion> SALISDBTINT_OpcionesModo();
std::vector<CTESHTML_Opcion> SALISDBTINT_OpcionesOFDM(bool modoISDBT);
std::vector<CTESHTML_Opcion> SALISDBTINT_OpcionesInterleaving();

// ---------------------------------------------------------------------------
// Page templates
// ---------------------------------------------------------------------------

#define SALISDBTINT_TH_SALIDA                                                                                 \
    SALCOMUN_TH("Table") SALCOMUN_TH("Channel") SALCOMUN_TH("Freq. Adj.") SALCOMUN_TH("Level")                \
    SALCOMUN_TH("Mode") SALCOMUN_TH("Trans. Mode") SALCOMUN_TH("Interleaving") SALCOMUN_TH("BW")              \
    SALCOMUN_TH("Guard Interval") SALCOMUN_TH("FEC") SALCOMUN_TH("Output") SALCOMUN_TH("RF Loop")

// --- Status -------------------------------------------------------------------
inline constexpr char htmlsondeorapidoCabeceraISDBT[] = SALCOMUN_CABECERA_RAPIDO(SALCOMUN_TH_LEDS_SIN_EAS);
inline constexpr char htmlsondeorapidoISDBT[] = SALCOMUN_FILA_RAPIDO(SALCOMUN_TD_LEDS_SIN_EAS);
inline constexpr char htmlsondeoDetaladoCabeceraISDBT[] = SALCOMUN_CABECERA_DETALLADO;
inline constexpr char htmlsondeoDetaladoISDBT[] = SALCOMUN_FILA_DETALLADO;
inline constexpr char htmlConfigTotalUnitStatusISDBT[] = SALCOMUN_BLOQUE_ESTADO;

// --- Output -----------------------------------------------------------------
inline constexpr char htmlinfosalidainicioISDBT[] =
    SALCOMUN_ABRETABLA SALCOMUN_TH_ORDEN(0) SALISDBTINT_TH_SALIDA SALCOMUN_TH("Select") "</tr>";
// order, model, Table, Channel, Freq. Adj., Level, Mode, Trans. Mode, Interleaving, BW, Guard
// Interval, FEC, Output, RF Loop, forzarconfig name and id, marker, hidden fields
inline constexpr char htmlinfosalidaISDBT[] =
    "<tr>" SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD6 SALCOMUN_TD6 SALCOMUN_TD_SELECCION "</tr>";
// unit count, "outtab_all", "frecstep_all", "outmod_all", "outofdm_all", "outint_all",
// "bwsal_all", "ingrd_all", "fecsal_all", "outout_all"
inline constexpr char htmlultimalineaSalidaISDBT[] =
    SALCOMUN_TD_ULTIMA_ROTULO SALCOMUN_TD_ULTIMA
    "<td class='ultimalinea'><div id=\"tablaselect_all\"></div></td>" SALCOMUN_TD_ULTIMA
        SALCOMUN_TD_ULTIMA_VACIA(1) SALCOMUN_TD_ULTIMA SALCOMUN_TD_ULTIMA SALCOMUN_TD_ULTIMA SALCOMUN_TD_ULTIMA
            SALCOMUN_TD_ULTIMA SALCOMUN_TD_ULTIMA SALCOMUN_TD_ULTIMA SALCOMUN_TD_BUCLE_TODAS SALCOMUN_TD_FORZARCONF;
// Table, Channel, Freq. Adj., Level, Mode, Trans. Mode, Interleaving, BW, Guard Interval, FEC,
// Output, RF Loop
inline constexpr char htmlConfigTotalOutputConfigISDBT[] =
    SALCOMUN_ABRECONFIGTOTAL("Output Configuration:") SALISDBTINT_TH_SALIDA "</tr><tr>" SALCOMUN_TD6 SALCOMUN_TD6
    "</tr></tbody></table>";

// The table select's event.
inline constexpr char strJSCambioTablacanalsalidaISDBT[] =
    "onchange=\"CambioTablaCanalesSalidaISDBT(this);Compruebacambios(this);\"";
