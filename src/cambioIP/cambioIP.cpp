// cambioIP.cpp: request entry, command table and page-lock protocol.
#include "cambioIP/cambioIP.h"
#include "cambioIP/cambioIP_int.h"
#include "cambioIP/entrada.h"
#include "cambioIP/operaciones.h"
#include "cambioIP/operaciones_unidad.h"
#include "cambioIP/paginas.h"
#include "cambioIP/salida_ip.h"

#include "gestfich/gestfich.h"
#include "proccgilib/proccgilib.h"
#include "utils/utils.h"
#include "utilsXML/utilsXML.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

// Command number when the request carries no form text or no "command" in it.
constexpr long CIP_SinComando = 255;

const char *const CIP_HtmlInicio = "<html><head></head><body>\n";
const char *const CIP_HtmlFin = "</body></html>\n";
const char *const CIP_HtmlComandoDesconocido =
    "<h2><center><strong> ERROR! command unknown.<br> please contact technical support.</strong></center></h2>\n";

// Command 5: the browser takes the page lock before it lets the operator edit, so that
// the web, the front panel and the control daemon never change the units at once.
// "1" when the daemon is busy, a command waits for it or the front panel holds the
// unit; otherwise the web lock is (re)created and the answer is "0".
int CIPINT_BloqueoWeb()
{
    const char *const ocupados[] = {GESTFICH_BloqueoControl, GESTFICH_FicheroComando, GESTFICH_BloqueoHBK};
    for (const char *fichero : ocupados) {
        if (GESTFICHINT_CheckFile(UTILS_MapeaRuta(fichero).c_str()) != 0) {
            UTILS_Imprime("1");
            return 1;
        }
    }
    if (GESTFICHINT_CreateFile(UTILS_MapeaRuta(GESTFICH_BloqueoWeb).c_str()) != 0) {
        UTILS_Imprime("1");
        return 1;
    }
    UTILS_Imprime("0");
    return 0;
}

// Command 6: releases the page lock; a missing lock is not an error.
int CIPINT_DesbloqueoWeb()
{
    GESTFICHINT_DeleteFile(UTILS_MapeaRuta(GESTFICH_BloqueoWeb).c_str());
    UTILS_Imprime("0");
    return 0;
}

} // namespace

int CIP_SondeoRapido() { return CIPINT_GenerarPagina(&CIP_FuncionesSondeoRapido, 0); }
int CIP_SondeoDetallado() { return CIPINT_GenerarPagina(&CIP_FuncionesSondeoDetallado, 0); }
int CIP_MuestraInfoTransporte() { return CIPINT_GenerarPagina(&CIP_FuncionesTransporte, 0); }
int CIP_MuestraInfoSalida() { return CIPINT_GenerarPagina(&CIP_FuncionesSalida, 0); }
int CIP_GrabaInfoTransporte(char *formulario) { return CIPINT_GrabarPagina(&CIP_FuncionesGrTransporte, formulario); }
int CIP_GrabaInfoSalida(char *formulario) { return CIPINT_GrabarPagina(&CIP_FuncionesGrabarSalida, formulario); }
int CIP_MuestraInfoRed() { return CIPINT_GenerarPagina(&CIP_FuncionesConfigRed, 0); }
int CIP_MuestraInfoTest() { return CIPINT_GenerarPagina(&CIP_FuncionesTest, 0); }
int CIP_MuestraInfoEntrada() { return CIPINT_GenerarPagina(&CIP_FuncionesConfigEntrada, 0); }
int CIP_MuestraInfoOUTPUTIP() { return CIPINT_GenerarPagina(&CIP_FuncionesSalidaIP, 0); }
int CIP_ListaUnidades() { return CIPINT_GenerarPagina(&CIP_FuncionesListaUnidades, 1); }
int CIP_ListaTest() { return CIPINT_GenerarPagina(&CIP_FuncionesListaTest, 2); }
int CIP_GrabaInfoRed(char *formulario) { return CIPINT_GrabarPagina(&CIP_FuncionesGrabarRed, formulario); }
int CIP_GrabaInfoTest(char *formulario) { return CIPINT_GrabarPagina(&CIP_FuncionesGrabarTest, formulario); }
int CIP_GrabaInfoEntrada(char *formulario) { return CIPINT_GrabarPagina(&CIP_FuncionesGrabarEntrada, formulario); }
int CIP_GrabaInfoOUTPUTIP(char *formulario) { return CIPINT_GrabarPagina(&CIP_FuncionesGrabarSalidaIP, formulario); }

namespace {

// One row of the command table. A handler either works without the form text (pages,
// the lock protocol) or receives it (saves and unit operations); the lock answers are
// the whole body, without the HTML wrapper.
struct CIP_Comando {
    long comando;
    int (*sinFormulario)();
    int (*conFormulario)(char *formulario);
    bool envoltorio;
};

// Values of "command". Anything not listed (0, negatives, 7-9, 18, 19, 31, 32 and
// above, 255) is answered as an unknown command.
const CIP_Comando CIP_Comandos[] = {
    {1, CIP_SondeoRapido, nullptr, true},
    {2, CIP_SondeoDetallado, nullptr, true},
    {3, CIP_MuestraInfoRed, nullptr, true},
    {4, nullptr, CIP_GrabaInfoRed, true},
    {5, CIPINT_BloqueoWeb, nullptr, false},
    {6, CIPINT_DesbloqueoWeb, nullptr, false},
    {10, CIP_MuestraInfoEntrada, nullptr, true},
    {11, nullptr, CIP_GrabaInfoEntrada, true},
    {12, CIP_MuestraInfoTransporte, nullptr, true},
    {13, CIP_MuestraInfoSalida, nullptr, true},
    {14, CIP_MuestraInfoTest, nullptr, true},
    {15, CIP_ListaUnidades, nullptr, true},
    {16, CIP_ListaTest, nullptr, true},
    {17, CIP_MuestraInfoOUTPUTIP, nullptr, true},
    {20, nullptr, CIP_GrabaInfoTransporte, true},
    {21, nullptr, CIP_GrabaInfoSalida, true},
    {22, nullptr, CIP_GrabaInfoTest, true},
    {23, nullptr, CIP_GrabaInfoUpdate, true},
    {24, nullptr, CIP_MuestraTodalaCongif, true},
    {25, nullptr, CIP_GrabaInfoTotal, true},
    {26, nullptr, [](char *formulario) { TestWatermarking(formulario); return 0; }, true},
    {27, nullptr, [](char *formulario) { EnvioComandosSTB(formulario); return 0; }, true},
    {28, nullptr, CIP_GrabaInfoOUTPUTIP, true},
    {29, nullptr, CIP_MuestraListaServicios, true},
    {30, nullptr, CIP_GrabaListServicios, true},
};

const CIP_Comando *CIPINT_BuscaComandoTabla(long comando)
{
    for (const CIP_Comando &fila : CIP_Comandos)
        if (fila.comando == comando)
            return &fila;
    return nullptr;
}

} // namespace

long CIPINT_LeeComando(const char *formulario)
{
    char valor[500] = {};
    if (formulario == nullptr || !CIPINT_BuscaCampo(formulario, "command", valor, sizeof valor))
        return CIP_SinComando;
    return std::strtol(valor, nullptr, 10);
}

int CIP_Main()
{
    // A client that goes away, or a full disk, never cuts a save in half.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);

    PROCCGI_Texto formulario(LoadInput());
    UTILS_ImprimeFormato("%s%c%c\n", "Content-Type:text/html;charset=UTF-8", 13, 10);

    long comando = CIPINT_LeeComando(formulario.get());
    // The CGI always works on the master's live configuration directory.
    UTILSXML_SetLibMode(1);
    const CIP_Comando *fila = CIPINT_BuscaComandoTabla(comando);
    if (fila == nullptr || fila->conFormulario == nullptr)
        formulario.reset();

    bool envoltorio = fila == nullptr || fila->envoltorio;
    if (envoltorio)
        UTILS_Imprime(CIP_HtmlInicio);

    if (fila == nullptr)
        UTILS_Imprime(CIP_HtmlComandoDesconocido);
    else if (fila->conFormulario != nullptr)
        fila->conFormulario(formulario.get());
    else
        fila->sinFormulario();

    if (envoltorio)
        UTILS_Imprime(CIP_HtmlFin);
    std::fflush(stdout);
    return 0;
}
