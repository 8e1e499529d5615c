// cambioIP: the request entry of the CGI and the dispatch of one request to a page,
// a save, a unit operation or the page-lock protocol.
#pragma once

#include "SalidaComun/SalidaComun.h"

#include <cstdint>
#include <libxml/tree.h>

// A page: which documents the engine walks (1 status, 0 configuration) and the row
// function of each output family.
struct CIP_TablaPagina {
    int32_t flag;
    SALCOMUN_FuncionPagina funciones[SALCOMUN_NumFamilias];
};

// A save: the save function of each output family.
struct CIP_TablaGrabar {
    SALCOMUN_FuncionGrabar funciones[SALCOMUN_NumFamilias];
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
