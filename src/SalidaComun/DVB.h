// DVB.h: what the families whose transport stream carries DVB service information (COFDM,
// ISDB-T, COFDM/QAM-B) share: the transport page (one painter, one closing row, one save),
// the frequency and step rules of their output rows, the fields a mode does not use, and the
// COFDM output row, which the COFDM and COFDM/QAM-B families paint with their own modes.
#pragma once

#include "SalidaComun/SalidaComun.h"

// ---------------------------------------------------------------------------
// Options
// ---------------------------------------------------------------------------

// "bwsal", "ingrd", "fecsal": the OFDM signal's bandwidth, guard interval and code rate, the
// same in every DVB family.
inline constexpr SALCOMUN_Opcion SALCOMUN_AnchosBanda[] = {
    {"0", "8 MHz"},
    {"1", "7 MHz"},
    {"2", "6 MHz"},
};
inline constexpr SALCOMUN_Opcion SALCOMUN_IntervalosGuarda[] = {
    {"0", "1/32"},
    {"1", "1/16"},
    {"2", "1/8"},
    {"3", "1/4"},
};
inline constexpr SALCOMUN_Opcion SALCOMUN_FECs[] = {
    {"0", "1/2"}, {"1", "2/3"}, {"2", "3/4"}, {"3", "5/6"}, {"4", "7/8"},
};

// "mlcn": how the logical channel numbers are signalled in the NIT.
inline constexpr SALCOMUN_Opcion SALCOMUN_TiposLCN[] = {
    {"0", "Generic"},
    {"1", "UK"},
    {"2", "NOR V1"},
    {"3", "NOR V2"},
};
inline constexpr char SALCOMUN_TipoLCNDefecto[] = "0";

// "nitvs", "sdtvs": table versions 0..31, or 32 "Auto" (the unit counts them itself).
inline constexpr int SALCOMUN_UltimaVersion = 31;
inline constexpr SALCOMUN_Opcion SALCOMUN_VersionAuto = {"32", "Auto"};

// "outchn" with plan 0: the whole megahertz typed in.
inline constexpr int SALCOMUN_FrecuenciaMinima = 46;
inline constexpr int SALCOMUN_FrecuenciaMaxima = 862;

// "frecstep" with a channel plan: the step is fixed, carried hidden with this value.
inline constexpr char SALCOMUN_PasoConPlan[] = "2";
// Frequency steps offered with plan 0: positions 0..11 of FrecuencyStepCOFDM in OFDM modes
// ("143 kHz" never), only these four in QAM modes.
inline constexpr int SALCOMUN_UltimoPasoOFDM = 11;
inline constexpr int SALCOMUN_PasosQAM[] = {0, 3, 6, 9};
// In QAM modes a stored step from this position on selects position 0.
inline constexpr int SALCOMUN_PrimerPasoFueraQAM = 10;

// ---------------------------------------------------------------------------
// Templates
// ---------------------------------------------------------------------------

// The DVB columns of the transport page, from "TS ID" to "Audio PID"; the column after
// "LCN type" has no title.
#define SALCOMUN_TH_TRANSPORTE_DVB                                                                             \
    SALCOMUN_TH("TS ID") SALCOMUN_TH("NET. ID") SALCOMUN_TH("NETWORK NAME")                          \
    SALCOMUN_TH("OR. NET. ID") SALCOMUN_TH("NIT VS.") SALCOMUN_TH("SDT VS.")                         \
    SALCOMUN_TH("LCN type") SALCOMUN_TH("") SALCOMUN_TH("LCN") SALCOMUN_TH("IN Name")             \
    SALCOMUN_TH("IN SID") SALCOMUN_TH("OUT Name") SALCOMUN_TH("OUT SID")                             \
    SALCOMUN_TH("Video PID") SALCOMUN_TH("Audio PID")

inline constexpr char htmlinfotransporteinicioCOFDM[] =
    SALCOMUN_ABRETABLA SALCOMUN_TH_ORDEN(0) SALCOMUN_TH_TRANSPORTE_DVB SALCOMUN_TH("Select") "</tr>";
// order, model, the fifteen DVB columns, forzarconfig name and id, its checked marker, hidden
// fields
inline constexpr char htmlinfotransporteCOFDM[] =
    "<tr>" SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD6 SALCOMUN_TD6 SALCOMUN_TD3 SALCOMUN_TD_SELECCION
    "</tr>";
// unit count, "nitvs_all", "sdtvs_all"
inline constexpr char htmlultimalineaTransporteCOFDM[] =
    SALCOMUN_TD_ULTIMA_ROTULO SALCOMUN_TD_AUTO("tsid", "NumeraCampo('tsid',1,1,0);")
        SALCOMUN_TD_AUTO("ntid", "NumeraCampo('ntid',1,1,0);") SALCOMUN_TD_ULTIMA_VACIA(1)
            SALCOMUN_TD_AUTO("onid", "NumeraCampo('onid',1,1,0);") SALCOMUN_TD_ULTIMA SALCOMUN_TD_ULTIMA
                SALCOMUN_TD_ULTIMA_VACIA(6) SALCOMUN_TD_AUTO("svcid", "NumeraCampo('svcid',1,1,1);")
                    SALCOMUN_TD_ULTIMA_VACIA(2) SALCOMUN_TD_FORZARCONF;
// the fifteen DVB columns
inline constexpr char htmlConfigTotalTransportConfigCOFDM[] =
    SALCOMUN_ABRECONFIGTOTAL("Transport Configuration:") SALCOMUN_TH_TRANSPORTE_DVB "</tr><tr>" SALCOMUN_TD6
        SALCOMUN_TD6 SALCOMUN_TD3 "</tr></tbody></table>";

// The read-only "0x" before a field edited as four hexadecimal digits.
inline constexpr char htmlcaptioncerox[] =
    "<input readonly class='inputsinbordesniespaciado' disabled value='0x' type='text'>";
// A field the unit's mode does not use: its value carried hidden, and "n/a" shown.
inline constexpr char htmlnoaplicablemodo[] = "%sn/a";

#define SALCOMUN_TH_SALIDA_COFDM                                                                                 \
    SALCOMUN_TH("Table") SALCOMUN_TH("Channel") SALCOMUN_TH("Freq. Adj.") SALCOMUN_TH("Level")    \
    SALCOMUN_TH("Mode") SALCOMUN_TH("BW") SALCOMUN_TH("Guard Interval") SALCOMUN_TH("FEC")        \
    SALCOMUN_TH("CELL ID") SALCOMUN_TH("Baudrate") SALCOMUN_TH("Output") SALCOMUN_TH("RF Loop")

// The COFDM output row.
inline constexpr char htmlinfosalidainicioCOFDM[] =
    SALCOMUN_ABRETABLA SALCOMUN_TH_ORDEN(0) SALCOMUN_TH_SALIDA_COFDM SALCOMUN_TH("Select") "</tr>";
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
    SALCOMUN_ABRECONFIGTOTAL("Output Configuration:") SALCOMUN_TH_SALIDA_COFDM "</tr><tr>" SALCOMUN_TD6
        SALCOMUN_TD6 "</tr></tbody></table>";

// ---------------------------------------------------------------------------
// Painters and save
// ---------------------------------------------------------------------------

// An identifier edited as four hexadecimal digits (minimo..0xffff) behind a read-only "0x".
std::string SALCOMUN_CampoHexa(const SALCOMUN_Fila &fila, const std::string &nombre, unsigned minimo,
                               std::string_view valor);
// A field the unit's mode does not use: the stored value goes back hidden, "n/a" is shown.
std::string SALCOMUN_NoAplicable(const std::string &nombre, std::string_view valor);
// NIT and SDT versions: 0..31 and 32 "Auto".
std::vector<CTESHTML_Opcion> SALCOMUN_OpcionesVersion();

// A transport row of the unit's configuration document (the unit's DVB identifiers and
// tables on the first line, then one line per encoder channel and, when bit 0 of `opciones`
// says the model has IP inputs, per selected IP service), or with configTotal the advanced
// page's "Transport Configuration:" block. `tipoUnidad` is the family's index.
int SALCOMUN_PintaLineaTransporteDVB(int tipoUnidad, xmlDocPtr config, int esMaster, int configTotal, uint8_t canales,
                                     int opciones, const char *modelo, const char *sufijo);
// The closing row of the transport page for `unidades` units.
std::string SALCOMUN_CierreTransporteDVB(int unidades);
// The transport page's save.
extern const SALCOMUN_PaginaGrabar SALCOMUN_GrabarTransporteDVB;

// The frequency steps of plan 0: 0..11 in OFDM modes, 0, 3, 6 and 9 in QAM modes.
std::vector<CTESHTML_Opcion> SALCOMUN_OpcionesPaso(bool modoQAM);

// What tells the COFDM output rows of the families that paint them apart: the family index,
// the mode select (its event, its choices, the stored mode as painted, which modes are cable
// QAM), the plans offered in a mode, and whether the baud rate is editable in QAM modes.
struct SALCOMUN_VarianteCOFDM {
    int tipoUnidad;
    const char *eventoModo;
    std::vector<CTESHTML_Opcion> (*opcionesModo)();
    int (*modo)(std::string_view guardado);
    bool (*esModoQAM)(long modo);
    std::vector<CTESHTML_Opcion> (*opcionesPlan)(bool modoQAM);
    bool baudiosEnQAM;
};

// An output row of a COFDM family (SALIDACOFDM), or with configTotal the advanced page's
// "Output Configuration:" block.
int SALCOMUN_PintaLineaSalidaCOFDM(const SALCOMUN_VarianteCOFDM &variante, xmlDocPtr config, int esMaster,
                                   int configTotal, uint8_t canales, const char *modelo, const char *sufijo);
// Its closing row for `unidades` units: the plans of every mode, the steps of plan 0, the modes.
std::string SALCOMUN_CierreSalidaCOFDM(const SALCOMUN_VarianteCOFDM &variante, int unidades);
// The COFDM output page's save: every key required (the settings a mode does not use come
// back from their hidden inputs), each value written as received.
extern const SALCOMUN_PaginaGrabar SALCOMUN_GrabarSalidaCOFDM;
