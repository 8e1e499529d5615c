// SalidaCODFMQAMB_int.h: what only the COFDM/QAM-B module itself uses: its row painters, the
// rules of its modes and plans, and its status templates (printf formats filled through
// UTILS_Formatea, "%%" prints one '%'; cells arrive composed and escaped).
#pragma once

#include "SalidaCODFMQAMB/SalidaCODFMQAMB.h"
#include "SalidaComun/DVB.h"

// ---------------------------------------------------------------------------
// Row painters (called by the entries; 0 always)
// ---------------------------------------------------------------------------

// A status row of the unit's status document (detailed 0 quick, without the EAS LED; 1
// detailed), or with configTotal the advanced page's "Unit Status:" block.
int SALCOFDMQAMBINT_PintaLineaSondeo(xmlDocPtr status, int esMaster, int configTotal, int detallado, uint8_t canales,
                                     const char *modelo, const char *sufijo);
// A transport row (the DVB families' transport page), or with configTotal the advanced page's
// "Transport Configuration:" block. Bit 0 of `opciones`: the model has IP inputs.
int SALCOFDMQAMBINT_PintaLineaTransporte(xmlDocPtr config, int esMaster, int configTotal, uint8_t canales,
                                         int opciones, const char *modelo, const char *sufijo);
// An output row (the COFDM output row with this family's modes and plans), or with
// configTotal the advanced page's "Output Configuration:" block.
int SALCOFDMQAMBINT_PintaLineaSalida(xmlDocPtr config, int esMaster, int configTotal, uint8_t canales,
                                     const char *modelo, const char *sufijo);

// ---------------------------------------------------------------------------
// Modes and plans
// ---------------------------------------------------------------------------

// The family index carried by the rows' hidden "tipounidad".
inline constexpr int SALCOFDMQAMB_TipoUnidad = SALCOMUN_FamiliaCOFDMQAMB;

// "outmod" stores the position in ModosSalidaCOFDMQAMB: 0..2 DVB-T, 3 and 4 Annex B cable QAM;
// a stored value outside 0..4 is painted as 0.
inline constexpr int SALCOFDMQAMB_PrimerModoQAM = 3;
inline constexpr int SALCOFDMQAMB_UltimoModo = 4;

// "outtab": DVB-T modes offer the COFDM plans 0..10; Annex B modes a typed frequency and the
// channel ranges of the QAM page.
inline constexpr int SALCOFDMQAMB_PlanesDVBT = 11;
inline constexpr int SALCOFDMQAMB_PlanesAnexoB[] = {0, 11, 12, 13};

// The plans a mode offers (the browser's copy is written from them too).
std::vector<CTESHTML_Opcion> SALCOFDMQAMBINT_OpcionesPlan(bool modoQAM);

// ---------------------------------------------------------------------------
// Status templates
// ---------------------------------------------------------------------------

inline constexpr char htmlsondeorapidoCabeceraCOFDMQAMB[] = SALCOMUN_CABECERA_RAPIDO(SALCOMUN_TH_LEDS_SIN_EAS);
inline constexpr char htmlsondeorapidoCOFDMQAMB[] = SALCOMUN_FILA_RAPIDO(SALCOMUN_TD_LEDS_SIN_EAS);
inline constexpr char htmlsondeoDetaladoCabeceraCOFDMQAMB[] = SALCOMUN_CABECERA_DETALLADO;
inline constexpr char htmlsondeoDetaladoCOFDMQAMB[] = SALCOMUN_FILA_DETALLADO;
inline constexpr char htmlConfigTotalUnitStatusCOFDMQAMB[] = SALCOMUN_BLOQUE_ESTADO;
