// SalidaQAM_int.h: what only the QAM module itself uses: its row painters, the option
// tables and rules of its pages, and its HTML templates (printf formats filled through
// UTILS_Formatea, "%%" prints one '%'; cells arrive composed and escaped). The browser's
// copy of the option tables is generated from here (tools/genera_tablas).
#pragma once

#include "SalidaQAM/SalidaQAM.h"

// ---------------------------------------------------------------------------
// Row painters (called by the entries; 0 always)
// ---------------------------------------------------------------------------

// A status row of the unit's status document (detailed 0 quick, 1 detailed), or with
// configTotal the advanced page's "Unit Status:" block.
int SALQAMINT_PintaLineaSondeo(xmlDocPtr status, int esMaster, int configTotal, int detallado, uint8_t canales,
                               const char *modelo, const char *sufijo);
// A transport row of the unit's configuration document, or with configTotal the advanced
// page's "Transport Configuration:" block. Bit 0 of `opciones`: the model has IP inputs.
int SALQAMINT_PintaLineaTransporte(xmlDocPtr config, int esMaster, int configTotal, uint8_t canales, int opciones,
                                   const char *modelo, const char *sufijo);
// An output row, or with configTotal the advanced page's "Output Configuration:" block.
int SALQAMINT_PintaLineaSalida(xmlDocPtr config, int esMaster, int configTotal, uint8_t canales,
                               const char *modelo, const char *sufijo);

// ---------------------------------------------------------------------------
// Option tables of the QAM pages
// ---------------------------------------------------------------------------

// The family index carried by the rows' hidden "tipounidad".
inline constexpr int SALQAM_TipoUnidad = 0;

// "autochan": the ATSC virtual-channel table of a service.
inline constexpr SALCOMUN_Opcion SALQAM_TiposTabla[] = {
    {"0", "TVCT"},
    {"1", "CVCT 1"},
    {"2", "CVCT 2"},
};
// Table type shown when the stored one cannot be read.
inline constexpr char SALQAM_TipoTablaDefecto[] = "1";

// Range of the major channel number by table type; the one-part number of "CVCT 1" is shown
// as ((major AND 15) << 10) + (minor AND 1023).
struct SALQAM_RangoMayor {
    const char *tipo;
    int minimo;
    int maximo;
    bool unaParte;
};
inline constexpr SALQAM_RangoMayor SALQAM_RangosMayor[] = {
    {"0", 1, 99, false},     // TVCT: terrestrial, two-part number
    {"1", 1, 16383, true},   // CVCT 1: cable, one-part number
    {"2", 0, 999, false},    // CVCT 2: cable, two-part number
};

// "outtab": the channel table of the modulator.
inline constexpr SALCOMUN_Opcion SALQAM_TablasCanales[] = {
    {"1", "CATV"},
    {"2", "T_CHANNELS"},
    {"3", "BROADCAST"},
    {"4", "FREQUENCY"},
};

// "outchn" with the T_CHANNELS table: the position of the channel.
inline constexpr SALCOMUN_Opcion SALQAM_CanalesT[] = {
    {"0", "T7"}, {"1", "T8"}, {"2", "T9"}, {"3", "T10"}, {"4", "T11"}, {"5", "T12"}, {"6", "T13"}, {"7", "T14"},
};

// "outmod": 0 and 1 are Annex B, 2..8 Annex A.
inline constexpr SALCOMUN_Opcion SALQAM_ModosSalida[] = {
    {"0", "256B"}, {"1", "64B"},  {"2", "16A"},  {"3", "32A"},   {"4", "64A"},
    {"5", "128A"}, {"6", "256A"}, {"7", "512A"}, {"8", "1024A"},
};

// "outint": the ITU-T J.83 Annex B interleaver control words (1, 11 and 13 not offered).
inline constexpr SALCOMUN_Opcion SALQAM_Interleavings[] = {
    {"0", "I128_J1"}, {"2", "I128_J2"},  {"3", "I64_J2"},   {"4", "I128_J3"},  {"5", "I32_J4"},  {"6", "I128_J4"},
    {"7", "I16_J8"},  {"8", "I128_J5"},  {"9", "I8_J16"},   {"10", "I128_J6"}, {"12", "I128_J7"}, {"14", "I128_J8"},
};

// The channel widget of "outchn" by channel table (any other table takes the first row).
enum SALQAM_ClaseCanal : int { SALQAM_CanalEntero, SALQAM_CanalSelect, SALQAM_CanalFrecuencia };
struct SALQAM_WidgetCanal {
    int tabla;
    SALQAM_ClaseCanal clase;
    const char *plantilla;  // text inputs: the input fragment
    int tam;
    int maxLongitud;
    int minimo;             // integer check, or the frequency check's bounds
    int maximo;
    std::size_t corte;      // characters of the stored text shown
};
inline constexpr SALQAM_WidgetCanal SALQAM_WidgetsCanal[] = {
    {0, SALQAM_CanalEntero, htmlinput3digitos, 6, 3, 2, 158, 3},
    {1, SALQAM_CanalEntero, htmlinput3digitos, 6, 3, 2, 158, 3},  // CATV
    {2, SALQAM_CanalSelect, nullptr, 0, 0, 0, 0, 1},               // T_CHANNELS: by first character
    {3, SALQAM_CanalEntero, htmlinputLCN, 6, 2, 2, 69, 2},         // BROADCAST
    {4, SALQAM_CanalFrecuencia, htmlinput, 6, 6, 7, 999, 6},       // FREQUENCY: 3 without separator
};
// Characters of a frequency without a decimal separator.
inline constexpr std::size_t SALQAM_CorteFrecuenciaEntera = 3;

// ---------------------------------------------------------------------------
// Page templates
// ---------------------------------------------------------------------------

#define SALQAMINT_TH_SERVICIOS(mayor)                                                                         \
    SALCOMUN_TH("IN Name") SALCOMUN_TH("IN SID") SALCOMUN_TH("OUT Name") SALCOMUN_TH("Table Type")        \
    mayor SALCOMUN_TH("Minor CH. #") SALCOMUN_TH("TS ID") SALCOMUN_TH("Video PID")                          \
    SALCOMUN_TH("Audio PID") SALCOMUN_TH("OUT SID")
#define SALQAMINT_TH_SALIDA                                                                                   \
    SALCOMUN_TH("Table") SALCOMUN_TH("Channel") SALCOMUN_TH("Level") SALCOMUN_TH("Mode")                  \
    SALCOMUN_TH("Interleaving") SALCOMUN_TH("Baudrate (Mbaud)") SALCOMUN_TH("Output") SALCOMUN_TH("RF Loop")

// --- Quick status -----------------------------------------------------------
inline constexpr char htmlsondeorapidoCabeceraQAM[] = SALCOMUN_CABECERA_RAPIDO(SALCOMUN_TH_LEDS);
// order, model, Temp, EAS, CH1..CH4, OUT, RF Loop, table, channel, IP, watermarking, status
inline constexpr char htmlsondeorapidoQAM[] = SALCOMUN_FILA_RAPIDO(SALCOMUN_TD_LEDS);

// --- Detailed status --------------------------------------------------------
inline constexpr char htmlsondeoDetaladoCabeceraQAM[] = SALCOMUN_CABECERA_DETALLADO;
// order, model, ID, serial number, temperature, resolution/frame rate, versions, options
inline constexpr char htmlsondeoDetaladoQAM[] = SALCOMUN_FILA_DETALLADO;

// Advanced page: the eight LEDs, resolution/frame rate and versions.
inline constexpr char htmlConfigTotalUnitStatusQAM[] = SALCOMUN_BLOQUE_ESTADO;

// --- Transport --------------------------------------------------------------
// "Major CH. #" sorts the page's table; the advanced page's block does not sort.
inline constexpr char htmlinfotransporteinicioQAM[] =
    SALCOMUN_ABRETABLA SALCOMUN_TH_ORDEN(0)
        SALQAMINT_TH_SERVICIOS("<th class='cabeceraTabla'>" SALCOMUN_ORDENABLE(4, 0, "Major CH. #") "</th>")
            SALCOMUN_TH("Select") "</tr>";
// order, model, the ten service columns, forzarconfig name and id, its checked marker,
// hidden fields
inline constexpr char htmlinfotransporteQAM[] =
    "<tr>" SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD
        SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD_SELECCION "</tr>";
// unit count, the "autochan_all" select
inline constexpr char htmlultimalineaTransporteQAM[] =
    SALCOMUN_TD_ULTIMA_ROTULO SALCOMUN_TD_ULTIMA_VACIA(3) SALCOMUN_TD_ULTIMA
    "<td class='ultimalinea' colspan='2'><button name=\"autochnumber_all\" id=\"autochnumber_all\" "
    "onclick=\"NumeraMajorChNumber(2,1);NumeraMinorChNumber(1,1);\" type=\"button\">Automatic channel numbering</button></td>"
    "<td class='ultimalinea'><button name=\"autotsid_all\" id=\"autotsid_all\" "
    "onclick=\"NumeraCampo('tsid',1,1,0);\" type=\"button\">Auto</button></td>" SALCOMUN_TD_ULTIMA_VACIA(2)
    "<td class='ultimalinea'><button name=\"autosvcid_all\" id=\"autosvcid_all\" "
    "onclick=\"NumeraCampo('svcid',1,1,1);\" type=\"button\">Auto</button></td>" SALCOMUN_TD_FORZARCONF;
// the ten service columns
inline constexpr char htmlConfigTotalTransportConfigQAM[] =
    SALCOMUN_ABRECONFIGTOTAL("Transport Configuration:") SALQAMINT_TH_SERVICIOS(SALCOMUN_TH("Major CH. #"))
        "</tr><tr>" SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD
            SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD "</tr></tbody></table>";

// --- Output -----------------------------------------------------------------
inline constexpr char htmlinfosalidainicioQAM[] =
    SALCOMUN_ABRETABLA SALCOMUN_TH_ORDEN(0) SALQAMINT_TH_SALIDA SALCOMUN_TH("Select") "</tr>";
// order, model (its cell closed twice, as the pages have always had it), Table, Channel,
// Level, Mode, Interleaving, Baudrate, Output, RF Loop, forzarconfig name and id, marker,
// hidden fields
inline constexpr char htmlinfosalidaQAM[] =
    "<tr>" SALCOMUN_TD SALCOMUN_TD "</td>" SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD
        SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD_SELECCION "</tr>";
// unit count, "outtab_all", "outmod_all", "outint_all", "outout_all"
inline constexpr char htmlultimalineaSalidaQAM[] =
    SALCOMUN_TD_ULTIMA_ROTULO SALCOMUN_TD_ULTIMA SALCOMUN_TD_ULTIMA_VACIA(2) SALCOMUN_TD_ULTIMA SALCOMUN_TD_ULTIMA
        SALCOMUN_TD_ULTIMA_VACIA(1) SALCOMUN_TD_ULTIMA
        SALCOMUN_TD_BUCLE_TODAS SALCOMUN_TD_FORZARCONF;
// Table, Channel, Level, Mode, Interleaving, Baudrate, Output, RF Loop
inline constexpr char htmlConfigTotalOutputConfigQAM[] =
    SALCOMUN_ABRECONFIGTOTAL("Output Configuration:") SALQAMINT_TH_SALIDA "</tr><tr>" SALCOMUN_TD SALCOMUN_TD
        SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD "</tr></tbody></table>";

