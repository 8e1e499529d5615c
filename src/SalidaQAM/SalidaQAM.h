// SalidaQAM: the output module of the units whose modulator is QAM (Annex A or B), output
// family 0. It paints each unit's row of the quick-status, detailed-status, transport and
// output pages, the header and closing row of those pages and the unit's sections of the
// advanced page, and stores the transport and output pages of one unit.
//
// The four entry functions are page-row functions of the page engine (CIP_FuncionPagina):
//   mode 0 header, 1 this unit's row (4 without a model text), 2 the closing row for all
//   units and the end of the table, 3 the unit's section of the advanced page (suffix "_tot").
// The two saves are save functions of the save engine (CIP_FuncionGrabar): 0 stored, 4 no
// text, 6 a write failed (the others are still written), 7 a required key is missing or
// "numcanales" is not 1..9 (nothing written).
#pragma once

#include "SalidaQAM/SalidaComun.h"
#include "cambioIP/cambioIP.h"

#include <cstdint>
#include <libxml/tree.h>

// ---------------------------------------------------------------------------
// Page entries and saves
// ---------------------------------------------------------------------------

int SALQAM_SondeoRapido(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                        int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                        int familia, int parametro);
int SALQAM_SondeoDetallado(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                           int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                           int familia, int parametro);
int SALQAM_GeneraTransporte(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                            int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                            int familia, int parametro);
int SALQAM_GeneraSalida(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                        int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                        int familia, int parametro);

int SALQAM_GrabaTransporte(xmlDocPtr documento, char *formulario);
int SALQAM_GrabaSalida(xmlDocPtr documento, char *formulario);

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

// "outout" in a unit's row, and in the all-units row (a different order, kept).
inline constexpr SALCOMUN_Opcion SALQAM_TiposSalida[] = {
    {"0", "NORMAL"}, {"1", "CONT_WAVE"}, {"4", "INVERTED"}, {"2", "MUTE"}, {"3", "NULL"},
};
inline constexpr SALCOMUN_Opcion SALQAM_TiposSalidaTodas[] = {
    {"0", "NORMAL"}, {"4", "INVERTED"}, {"1", "CONT_WAVE"}, {"2", "MUTE"}, {"3", "NULL"},
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
