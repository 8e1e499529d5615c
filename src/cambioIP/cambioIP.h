// cambioIP: the request entry of the CGI and the dispatch of one request to a page,
// a save, a unit operation or the page-lock protocol.
#pragma once

#include <cstdint>
#include <libxml/tree.h>

// Output families, the index of every per-family dispatch slot.
inline constexpr int CIP_FamiliaQAM = 0;
inline constexpr int CIP_FamiliaCOFDM = 1;
inline constexpr int CIP_FamiliaISDBT = 2;
inline constexpr int CIP_FamiliaCOFDMQAMB = 3;
inline constexpr int CIP_NumFamilias = 4;

// Page-row function: called by the page engine with the phase (0 header, 1 one unit's
// row, 2 last row and end of table, 3 the unit's section of the advanced page), the
// unit's document, whether it is the master's own, the model's channels, options,
// video inputs and capabilities, the model text, the row number, the unit's field
// suffix, its output family and the model parameter. 0 or an error code.
using CIP_FuncionPagina = int (*)(int fase, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                                  int entradasVideo, int capacidades, const char *modelo, int fila,
                                  const char *sufijo, int familia, int parametro);

// Save function: copies one unit's posted fields into its configuration document.
// 0 stored, 2 nothing to store for this model, 4 no text, 6 a write failed,
// 7 a required key missing or a count out of range.
using CIP_FuncionGrabar = int (*)(xmlDocPtr documento, char *formulario);

// A page: which documents the engine walks (1 status, 0 configuration) and the row
// function of each output family.
struct CIP_TablaPagina {
    int32_t flag;
    CIP_FuncionPagina funciones[CIP_NumFamilias];
};

// A save: the save function of each output family.
struct CIP_TablaGrabar {
    CIP_FuncionGrabar funciones[CIP_NumFamilias];
};

// The whole life of one request: header, command, handler, closing. Always 0.
int CIP_Main();

// Prints the error fragment of the code (low 8 bits): 1 config data, 2 device not
// supported, 3 unknown, 4 wrong parameter, 5 IP wrong, 6 saving, 7 invalid data, 100
// invalid set-top-box command; any other value reads as 1. Code 0 prints nothing and
// returns 1; every other code returns 0.
int CIPINT_ErrorGraveWeb(int codigo);

// Prints one page: the header of the master's family, one row per unit kept by the
// mode (0 the master's output family, 1 the master's model code, 2 every unit, other
// values none), in name order, and the last row with the values for all units.
int CIPINT_GenerarPagina(const CIP_TablaPagina *tabla, int modo);

// Stores the posted fields of the one unit named by "sufijo" (none: the master) with its
// family's save function, queues it for the daemon when that succeeded, then marks the
// document as changed by the web and saves it.
int CIPINT_GrabarPagina(const CIP_TablaGrabar *tabla, char *formulario);

// The output modules' status, transport and output pages and saves.
extern const CIP_TablaPagina CIP_FuncionesSondeoRapido;
extern const CIP_TablaPagina CIP_FuncionesSondeoDetallado;
extern const CIP_TablaPagina CIP_FuncionesTransporte;
extern const CIP_TablaPagina CIP_FuncionesSalida;
extern const CIP_TablaGrabar CIP_FuncionesGrTransporte;
extern const CIP_TablaGrabar CIP_FuncionesGrabarSalida;

// The tables of the common pages (unit list, network, test options) and of their saves,
// one slot per output family.
extern const CIP_TablaPagina CIP_FuncionesListaUnidades;
extern const CIP_TablaPagina CIP_FuncionesListaTest;
extern const CIP_TablaPagina CIP_FuncionesConfigRed;
extern const CIP_TablaPagina CIP_FuncionesTest;
extern const CIP_TablaGrabar CIP_FuncionesGrabarRed;
extern const CIP_TablaGrabar CIP_FuncionesGrabarTest;
extern const CIP_TablaPagina CIP_FuncionesConfigEntrada;
extern const CIP_TablaGrabar CIP_FuncionesGrabarEntrada;
extern const CIP_TablaPagina CIP_FuncionesSalidaIP;
extern const CIP_TablaGrabar CIP_FuncionesGrabarSalidaIP;

// Pages: the network and test pages show the units of the master's output family, the
// unit list those of the master's model, the unit list for tests every unit.
int CIP_SondeoRapido();
int CIP_SondeoDetallado();
int CIP_MuestraInfoTransporte();
int CIP_MuestraInfoSalida();
int CIP_GrabaInfoTransporte(char *formulario);
int CIP_GrabaInfoSalida(char *formulario);
int CIP_MuestraInfoRed();
int CIP_MuestraInfoTest();
int CIP_MuestraInfoEntrada();
int CIP_MuestraInfoOUTPUTIP();
int CIP_ListaUnidades();
int CIP_ListaTest();
// Saves of one unit's network settings and test choices from the form text.
int CIP_GrabaInfoRed(char *formulario);
int CIP_GrabaInfoTest(char *formulario);
int CIP_GrabaInfoEntrada(char *formulario);
int CIP_GrabaInfoOUTPUTIP(char *formulario);
