// TablasCanales: the channel plans and the option tables of the modulator output pages.
//
// Read-only data compiled into the program. The output pages build their channel, modulation,
// interleaving and frequency-step selects from these tables, and the encoder input page its
// video-codec select. A page stores the chosen position (or, for the mode tables, the value
// of the parallel value table), never the label; no channel frequency is held here: the unit
// that receives the stored plan and position derives it.
//
// Users: the COFDM output page (plans 0..10, ModosSalidaCOFDM, FrecuencyStepCOFDM), the
// ISDB-T output page (plans 0 and 12, the ISDB-T tables, FrecuencyStepCOFDM), the
// COFDM/QAM-B output page (the plans and ModosSalidaCOFDMQAMB) and the encoder input page
// (VideoCodecTextos / VideoCodecValores).
#pragma once

#include "cteshtml/cteshtml.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// ---------------------------------------------------------------------------
// Channel plans
// ---------------------------------------------------------------------------

inline constexpr int COFDM_NUMTABLASCANALES = 15;   // plans 0..14
inline constexpr int COFDM_MAXCANALESTABLA = 160;   // label slots per plan
inline constexpr std::size_t COFDM_TAMNOMBRETABLA = 20;
inline constexpr std::size_t COFDM_TAMETIQUETACANAL = 5;  // 4 visible characters and a NUL

// One channel plan, 821 bytes. A channel is identified by its position 0..numCanales-1;
// that position is what the output module stores and what the channel select's options
// carry as value. Label slots at and beyond numCanales are all zero.
struct COFDM_TablaCanales {
    char nombre[COFDM_TAMNOMBRETABLA];                                    // NUL-padded plan name
    uint8_t numCanales;                                                    // 0..160
    char etiquetas[COFDM_MAXCANALESTABLA][COFDM_TAMETIQUETACANAL];        // labels, blanks kept
};
static_assert(sizeof(COFDM_TablaCanales) == 821, "a channel plan record is 821 bytes");

// Indexed by plan number: 0 "FREQUENCY" (no channels: the frequency is typed in),
// 1 "CCIR N.Z.Ind", 2 "China Taiwan", 3 "Chile M/N", 4 "Italy", 5 "France", 6 "Russia(OIR)",
// 7 "Ireland", 8 "South Africa", 9 "Poland", 10 "Australia", 11 "CATV", 12 "Broadcast",
// 13 "T-Channels", 14 "Terrestrial".
extern const COFDM_TablaCanales COFDM_TablasdeCanales[COFDM_NUMTABLASCANALES];

// ---------------------------------------------------------------------------
// Modulation, transmission-mode, interleaving, frequency-step and codec tables
// ---------------------------------------------------------------------------

// COFDM modulation modes and the value stored for each. Values 0..2 are terrestrial OFDM
// modes, 12..16 cable QAM modes; the page treats a stored value in neither range as 0.
inline constexpr std::size_t COFDM_NUMMODOSSALIDA = 8;
inline constexpr char ModosSalidaCOFDM[COFDM_NUMMODOSSALIDA][15] = {
    "COFDM(QPSK)", "COFDM(16QAM)", "COFDM(64QAM)", "16QAM", "32QAM", "64QAM", "128QAM", "256QAM",
};
inline constexpr uint8_t ValoresModosSalidaCOFDM[COFDM_NUMMODOSSALIDA] = {0, 1, 2, 12, 13, 14, 15, 16};

// COFDM/QAM-B modulation modes, positions 0..4.
inline constexpr std::size_t COFDM_NUMMODOSSALIDAQAMB = 5;
inline constexpr char ModosSalidaCOFDMQAMB[COFDM_NUMMODOSSALIDAQAMB][15] = {
    "COFDM(QPSK)", "COFDM(16QAM)", "COFDM(64QAM)", "64QAM B", "256QAM B",
};

// ISDB-T modulation modes, positions 0..6. The last three carry blanks that the COFDM
// table's texts do not have; they are the ISDB-T page's own captions.
inline constexpr std::size_t COFDM_NUMMODOSISDBT = 7;
inline constexpr char ModosSalidaISDBT[COFDM_NUMMODOSISDBT][15] = {
    "ISDBT(DQPSK)", "ISDBT(QPSK)", "ISDBT(16QAM)", "ISDBT(64QAM)", "COFDM (QPSK)", "COFDM (16 QAM)", "COFDM (64 QAM)",
};

// ISDB-T transmission modes (carrier count).
inline constexpr std::size_t COFDM_NUMOFDMISDBT = 3;
inline constexpr char OFDMSalidaISDBT[COFDM_NUMOFDMISDBT][15] = {
    "Mode 1(2K)", "Mode 2(4K)", "Mode 3(8K)",
};

// ISDB-T time interleaving.
inline constexpr std::size_t COFDM_NUMINTERLEAVINGISDBT = 16;
inline constexpr char InterleavingSalidaISDBT[COFDM_NUMINTERLEAVINGISDBT][15] = {
    "None",    "Mode1",  "Mode2",   "Mode3",  "I128_J1", "I128_J2", "I64_J2",  "I128_J3",
    "I32_J4",  "I128_J4", "I16_J8", "I128_J5", "I8_J16", "I128_J6", "I128_J7", "I128_J8",
};

// The fractional part of an output frequency, in kHz, offered beside the whole megahertz.
// Position 12 ("143 kHz") stands out of order on purpose.
inline constexpr std::size_t COFDM_NUMPASOSFRECUENCIA = 13;
inline constexpr char FrecuencyStepCOFDM[COFDM_NUMPASOSFRECUENCIA][10] = {
    "000 kHz", "125 kHz", "166 kHz", "250 kHz", "333 kHz", "375 kHz", "500 kHz",
    "625 kHz", "666 kHz", "750 kHz", "833 kHz", "875 kHz", "143 kHz",
};

// Video codecs of the encoder inputs and the value stored for each.
inline constexpr std::size_t COFDM_NUMCODECSVIDEO = 6;
inline constexpr char VideoCodecTextos[COFDM_NUMCODECSVIDEO][15] = {
    "MPEG2", "H264 AUTO(4.0)", "H264-HIGH(4.1)", "H264(4.2)", "H264(5.0)", "H264(5.1)",
};
inline constexpr uint8_t VideoCodecValores[COFDM_NUMCODECSVIDEO] = {0, 1, 5, 6, 7, 8};

// ---------------------------------------------------------------------------
// Select builders
// ---------------------------------------------------------------------------

// The channel position that a stored channel text selects in plan `plan`: the text read as
// a decimal number (leading blanks and a sign allowed, reading stops at the first
// non-digit, no digits read as 0); a number in 0..count-1 is the selected position, any
// other number (at or beyond the count, negative, too large) selects position 0.
// A plan number outside 0..14 gives 0.
int COFDM_CanalSeleccionado(int plan, std::string_view canalGuardado);

// The choices of plan `plan`'s channel select: one per position k = 0..count-1, value k
// printed "%d", text the label with its blanks. Plan 0 ("FREQUENCY") and plan numbers
// outside 0..14 have none.
std::vector<CTESHTML_Opcion> COFDM_OpcionesCanales(int plan);

// The channel select of plan `plan` (1..14) for the stored channel text: htmlselectbox with
// name, id and extra attributes as given, the plan's choices, the position chosen by
// COFDM_CanalSeleccionado marked selected. Plan 0 shows a typed frequency field instead of
// this select; asked for anyway (or for a plan outside 0..14) it gives a select without
// options.
std::string COFDM_SelectCanales(std::string_view nombre, std::string_view id, std::string_view atributos, int plan,
                                std::string_view canalGuardado);

// The choice of the plan select for plan `plan`: value the plan number printed "%d", text the
// plan's name. For a plan outside 0..14 both are empty.
CTESHTML_Opcion COFDM_OpcionTabla(int plan);

// A mode select from a text table and its parallel value table (ModosSalidaCOFDM with
// ValoresModosSalidaCOFDM, VideoCodecTextos with VideoCodecValores): choice i has the value
// valores[i] printed "%d" and the text textos[i]; the choice whose value equals
// valorGuardado is marked selected (none when no value equals it). Both tables must have
// the same number of entries.
template <std::size_t N, std::size_t Ancho, typename Valor>
std::string COFDM_SelectModos(std::string_view nombre, std::string_view id, std::string_view atributos,
                              const char (&textos)[N][Ancho], const Valor (&valores)[N], int valorGuardado)
{
    return CTESHTML_SelectBox(nombre, id, atributos, CTESHTML_OpcionesTablas(textos, valores, N),
                              std::to_string(valorGuardado));
}
