// DVB.h: the transport page of the families whose transport stream carries DVB service
// information (COFDM, ISDB-T, COFDM/QAM-B): one painter, one closing row and one save for all
// of them, and the fields of their output rows that a mode does not use.
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
