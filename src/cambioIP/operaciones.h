// operaciones.h: the unit operations that are not per-unit tables: putting a unit on the
// firmware-update list (command 23), driving a test set-top box through the master's
// scripts (command 27) and storing the watermarking test settings (command 26).
#pragma once

#include <cstddef>

// Set-top-box remote control. Key number n (1 to 43) is slot n - 1 of the key table; the
// script receives the key action as its 0-based digit. Per action 1 to 5 of "comandostb":
// the script and the result file it leaves in "/root".
inline constexpr std::size_t CMDREMOTE_NumTeclas = 43;
inline constexpr std::size_t CMDREMOTE_NumOperaciones = 3;
inline constexpr std::size_t CMDREMOTE_NumComandos = 5;
extern const char CMDREMOTE_Tecla[CMDREMOTE_NumTeclas][10];
extern const char CMDREMOTE_OPTecla[CMDREMOTE_NumOperaciones][10];
extern const char CMDREMOTE_Comandos[CMDREMOTE_NumComandos][36];
extern const char CMDREMOTE_Ficheros[CMDREMOTE_NumComandos][36];

// The script command lines: channel and box address; key name, action digit and box
// address. The first word is the script, every "%s" word one argument.
extern const char CTESHTML_LLamaScriptTune[];
extern const char CTESHTML_LLamaScriptTeclaRemota[];

// Appends the unit named by "sufijo" ("network.<sufijo>"; empty: the master, "network") to
// the firmware-update list "/upload/listupdate.prg", when its configuration document exists.
// Returns 0, or the length of the error line it printed.
int CIP_GrabaInfoUpdate(char *formulario);

// Decodes "stbip", "comandostb" (1 tune to "mchnstb", 2 power on, 3 power off, 4 reset,
// 5 remote key "stbkey" with action "stbkeyop") and runs the matching script.
void EnvioComandosSTB(char *formulario);

// Run the tune or remote-key script with the values as single arguments, then show its
// answer and whether it succeeded. They return what closing the result file returns, -1
// when there was none, or the error page's result for a missing argument.
int tuneSTB(const char *canal, const char *direccion);
int enviaTeclaRemota(const char *tecla, const char *operacion, const char *direccion);

// Replaces "/config/watermarkingdata.conf" with the two lines "modo" and "waterserial";
// with either missing or empty the old file stays.
void TestWatermarking(char *formulario);
