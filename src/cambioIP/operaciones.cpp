// operaciones.cpp: firmware-update programming, set-top-box remote control and the
// watermarking test settings.
#include "cambioIP/operaciones.h"

#include "cambioIP/cambioIP.h"
#include "cambioIP/cambioIP_int.h"

#include "cteshtml/cteshtml.h"
#include "gestfich/gestfich.h"
#include "proccgilib/proccgilib.h"
#include "utils/utils.h"
#include "utilsXML/utilsXML.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <initializer_list>
#include <memory>
#include <spawn.h>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <vector>

extern char **environ;

const char CMDREMOTE_Tecla[CMDREMOTE_NumTeclas][10] = {
    "power", "poweron", "poweroff", "format", "pause", "rew",    "replay", "stop",     "advance", "ffwd", "record",
    "play",  "guide",   "active",   "list",   "exit",  "back",   "menu",   "info",     "up",      "down", "left",
    "right", "select",  "red",      "green",  "yellow", "blue",  "chanup", "chandown", "prev",    "0",    "1",
    "2",     "3",       "4",        "5",      "6",     "7",      "8",      "9",        "dash",    "enter",
};

const char CMDREMOTE_OPTecla[CMDREMOTE_NumOperaciones][10] = {"keyUp", "keyDown", "keyPress"};

const char CMDREMOTE_Comandos[CMDREMOTE_NumComandos][36] = {
    "tune_stb.sh", "remotekey_stb.sh", "remotekey_stb.sh", "remotekey_stb.sh", "remotekey_stb.sh",
};

const char CMDREMOTE_Ficheros[CMDREMOTE_NumComandos][36] = {
    "tune_result", "remotekey_result", "remotekey_result", "remotekey_result", "remotekey_result",
};

const char CTESHTML_LLamaScriptTune[] = "/root/tune_stb.sh %s %s ";
const char CTESHTML_LLamaScriptTeclaRemota[] = "/root/remotekey_stb.sh %s %s %s ";

namespace {

// Every form value of these operations is read into a buffer of this size.
constexpr size_t CIP_TamValorOperacion = 500;

const char *const CIP_ListaUpdate = "/upload/listupdate.prg";
const char *const CIP_FicheroWatermarking = "/config/watermarkingdata.conf";
// Folder of the set-top-box scripts and of the answers they leave.
const char *const CMDREMOTE_Directorio = "/root";

// The actions of "comandostb".
enum CMDREMOTE_Accion {
    CMDREMOTE_Sintoniza = 1,
    CMDREMOTE_Enciende = 2,
    CMDREMOTE_Apaga = 3,
    CMDREMOTE_Reset = 4,
    CMDREMOTE_EnviaTecla = 5,
};

// Power on and off are sent as a key press (action digit 2).
const char *const CMDREMOTE_OperacionPulsa = "2";


// ---------------------------------------------------------------------------
// Running a set-top-box script without a shell
// ---------------------------------------------------------------------------

struct CMDREMOTEINT_Acciones {
    posix_spawn_file_actions_t acciones;
    CMDREMOTEINT_Acciones() { posix_spawn_file_actions_init(&acciones); }
    ~CMDREMOTEINT_Acciones() { posix_spawn_file_actions_destroy(&acciones); }
    CMDREMOTEINT_Acciones(const CMDREMOTEINT_Acciones &) = delete;
    CMDREMOTEINT_Acciones &operator=(const CMDREMOTEINT_Acciones &) = delete;
};

struct CMDREMOTEINT_Atributos {
    posix_spawnattr_t atributos;
    CMDREMOTEINT_Atributos() { posix_spawnattr_init(&atributos); }
    ~CMDREMOTEINT_Atributos() { posix_spawnattr_destroy(&atributos); }
    CMDREMOTEINT_Atributos(const CMDREMOTEINT_Atributos &) = delete;
    CMDREMOTEINT_Atributos &operator=(const CMDREMOTEINT_Atributos &) = delete;
};

// The argument vector of a command template: its words, split at blanks. The first word
// is the script, a fixed path of the system (mapped under the root); in every other word
// each "%s" takes the next value whole, so a value becomes exactly one argument whatever it
// holds (blanks, ';', '|', quotes, "$(...)", newlines). Empty when the template's
// placeholders and the values do not pair up.
std::vector<std::string> CMDREMOTEINT_Argumentos(std::string_view plantilla,
                                                 std::initializer_list<const char *> valores)
{
    std::vector<std::string> argumentos;
    auto valor = valores.begin();
    size_t inicio = plantilla.find_first_not_of(' ');
    while (inicio != std::string_view::npos) {
        size_t fin = plantilla.find(' ', inicio);
        std::string_view palabra = plantilla.substr(inicio, fin == std::string_view::npos ? fin : fin - inicio);
        if (argumentos.empty()) {
            argumentos.push_back(UTILS_MapeaRuta(std::string(palabra).c_str()));
        } else {
            std::string argumento;
            for (size_t marca; (marca = palabra.find("%s")) != std::string_view::npos;) {
                if (valor == valores.end())
                    return {};
                argumento.append(palabra.substr(0, marca)).append(*valor++);
                palabra.remove_prefix(marca + 2);
            }
            argumentos.push_back(argumento.append(palabra));
        }
        inicio = fin == std::string_view::npos ? fin : plantilla.find_first_not_of(' ', fin);
    }
    if (argumentos.empty() || valor != valores.end())
        return {};
    return argumentos;
}

// Runs the script of the template with the values and waits for it. The script reads
// /dev/null and writes to /dev/null: only its result file reaches the page. The exit
// status, or -1 when it could not start or did not exit by itself.
int CMDREMOTEINT_EjecutaScript(const char *plantilla, std::initializer_list<const char *> valores)
{
    std::vector<std::string> argumentos = CMDREMOTEINT_Argumentos(plantilla, valores);
    if (argumentos.empty())
        return -1;
    std::vector<char *> argv;
    for (std::string &argumento : argumentos)
        argv.push_back(argumento.data());
    argv.push_back(nullptr);

    CMDREMOTEINT_Acciones acciones;
    if (posix_spawn_file_actions_addopen(&acciones.acciones, 0, "/dev/null", O_RDONLY, 0) != 0 ||
        posix_spawn_file_actions_addopen(&acciones.acciones, 1, "/dev/null", O_WRONLY, 0) != 0 ||
        posix_spawn_file_actions_adddup2(&acciones.acciones, 1, 2) != 0)
        return -1;

    // The request ignores SIGPIPE and SIGXFSZ; the script gets the usual dispositions.
    CMDREMOTEINT_Atributos atributos;
    sigset_t porDefecto;
    sigemptyset(&porDefecto);
    sigaddset(&porDefecto, SIGPIPE);
    sigaddset(&porDefecto, SIGXFSZ);
    if (posix_spawnattr_setsigdefault(&atributos.atributos, &porDefecto) != 0 ||
        posix_spawnattr_setflags(&atributos.atributos, POSIX_SPAWN_SETSIGDEF) != 0)
        return -1;

    // What the page has so far must not be written twice or after the script's answer.
    std::fflush(stdout);
    std::fflush(stderr);
    pid_t hijo = 0;
    if (posix_spawn(&hijo, argv[0], &acciones.acciones, &atributos.atributos, argv.data(), environ) != 0)
        return -1;
    int estado = 0;
    while (waitpid(hijo, &estado, 0) < 0) {
        if (errno != EINTR)
            return -1;
    }
    return WIFEXITED(estado) ? WEXITSTATUS(estado) : -1;
}

struct CMDREMOTEINT_CierraResultado {
    void operator()(std::FILE *fichero) const noexcept { GESTFICHINT_CloseFile(fichero); }
};

// Runs the script, then shows the first line of the answer it left in its result file
// and whether it succeeded. An old answer may be shown: the file is not removed first.
int CMDREMOTEINT_EjecutaYResponde(const char *plantilla, std::initializer_list<const char *> valores,
                                  const char *fichero)
{
    const int estado = CMDREMOTEINT_EjecutaScript(plantilla, valores);

    const std::string ruta = UTILS_MapeaRuta(UTILS_Formatea("%s/%s", CMDREMOTE_Directorio, fichero).c_str());
    std::unique_ptr<std::FILE, CMDREMOTEINT_CierraResultado> resultado(GESTFICHINT_OpenFile(ruta.c_str()));
    if (!resultado) {
        UTILS_Imprime("No answer from STB, command execution Failed, Check STB status and/or IP.<br>\n");
        return -1;
    }
    char respuesta[CIP_TamValorOperacion] = {};
    size_t capacidad = sizeof respuesta;
    GESTFICH_ReadFromChanges(respuesta, &capacidad, resultado.get());
    // A line that filled the whole buffer has no terminator of its own.
    respuesta[sizeof respuesta - 1] = '\0';
    if (respuesta[0] != '\0')
        UTILS_ImprimeFormato("Answer from STB: %s  <br>\n", UTILS_Escapa(respuesta).c_str());
    UTILS_Imprime(estado == 0 ? "Command Issued successfully!<br>\n" : "Command Issued but failed!<br>\n");
    return GESTFICHINT_CloseFile(resultado.release());
}

} // namespace

// ---------------------------------------------------------------------------
// Firmware update programming
// ---------------------------------------------------------------------------

int CIP_GrabaInfoUpdate(char *formulario)
{
    char sufijo[CIP_TamValorOperacion] = {};
    if (formulario != nullptr)
        GetValueKeys(formulario, {{"sufijo", sufijo}});

    CIPINT_Directorio directorio;
    if (!directorio)
        return UTILS_ImprimeFormato("<br><h2><center><strong> ERROR! Unable to open config data.<br> please contact technical "
                           "support.</strong></center></h2>\n");

    // Another unit is named by its suffix, the part of its file name between "network."
    // and ".xml"; none names the master. The document is only looked for among the
    // directory's unit files.
    const bool master = sufijo[0] == '\0';
    const std::string ruta =
        master ? CIPINT_RutaMaster(0) : UTILS_Formatea("%s/network.%s.xml", UTILSXML_MiraPATHConfig(), sufijo);
    const std::string linea = master ? std::string("network\n") : UTILS_Formatea("network.%s\n", sufijo);

    CIPINT_DocumentoUnidad documento = CIPINT_DocumentoUnidad::Abre(directorio.get(), ruta, 0, true);
    if (!documento)
        return UTILS_ImprimeFormato("<br>ERROR! Unable to save changes for id '%s'. \n", UTILS_Escapa(sufijo).c_str());

    // One byte more than the read: an identifier of exactly 40 bytes stays terminated.
    char id[40 + 1] = {};
    if (UTILSXML_LeeIDUnit(documento.get(), id, sizeof id - 1) != 0)
        std::strcpy(id, "unknown");
    UTILS_ImprimeFormato(master ? "Programming update for this unit (id: %s)<br>\n" : "Programming update for unit with id %s<br>\n",
                UTILS_Escapa(id).c_str());

    // Not reported when it fails: the line above is already on the page.
    GESTFICH_AddFiletoChanges(linea.data(), static_cast<long>(linea.size()), UTILS_MapeaRuta(CIP_ListaUpdate).c_str());

    documento.Cierra(true);
    return 0;
}

// ---------------------------------------------------------------------------
// Set-top-box remote control
// ---------------------------------------------------------------------------

int tuneSTB(const char *canal, const char *direccion)
{
    if (canal == nullptr || direccion == nullptr)
        return CIPINT_ErrorGraveWeb(4);
    return CMDREMOTEINT_EjecutaYResponde(CTESHTML_LLamaScriptTune, {canal, direccion},
                                         CMDREMOTE_Ficheros[CMDREMOTE_Sintoniza - 1]);
}

int enviaTeclaRemota(const char *tecla, const char *operacion, const char *direccion)
{
    if (tecla == nullptr || operacion == nullptr || direccion == nullptr)
        return CIPINT_ErrorGraveWeb(4);
    return CMDREMOTEINT_EjecutaYResponde(CTESHTML_LLamaScriptTeclaRemota, {tecla, operacion, direccion},
                                         CMDREMOTE_Ficheros[CMDREMOTE_EnviaTecla - 1]);
}

void EnvioComandosSTB(char *formulario)
{
    char direccion[CIP_TamValorOperacion] = {};
    char comando[CIP_TamValorOperacion] = {};
    char canal[CIP_TamValorOperacion] = {};
    char tecla[CIP_TamValorOperacion] = {};
    char operacion[CIP_TamValorOperacion] = {};
    if (formulario == nullptr)
        return;
    GetValueKeys(formulario, {{"stbip", direccion},
                              {"comandostb", comando},
                              {"mchnstb", canal},
                              {"stbkey", tecla},
                              {"stbkeyop", operacion}});
    if (comando[0] == '\0' || direccion[0] == '\0')
        return;

    const long accion = UTILS_Numero(comando);
    if (accion < CMDREMOTE_Sintoniza || accion > CMDREMOTE_EnviaTecla) {
        CIPINT_ErrorGraveWeb(100);
        return;
    }
    // The scripts take the box's address and the channel as arguments: only an address
    // and a number reach them, never an option or a second line.
    const char *rechazado = !CIPINT_EsDireccionIPv4(direccion)                          ? "stbip"
                            : accion == CMDREMOTE_Sintoniza && !CIPINT_EsNumero(canal) ? "mchnstb"
                                                                                        : nullptr;
    if (rechazado != nullptr) {
        CIPINT_AvisaRechazo(rechazado);
        CIPINT_ErrorGraveWeb(4);
        return;
    }
    const std::string direccionHtml = UTILS_Escapa(direccion);

    switch (accion) {
    case CMDREMOTE_EnviaTecla: {
        const long numero = UTILS_Numero(tecla);
        const long op = UTILS_Numero(operacion);
        if (numero < 1 || numero > static_cast<long>(CMDREMOTE_NumTeclas) || op < 1 ||
            op > static_cast<long>(CMDREMOTE_NumOperaciones)) {
            CIPINT_ErrorGraveWeb(4);
            return;
        }
        const char *nombre = CMDREMOTE_Tecla[numero - 1];
        UTILS_ImprimeFormato("Sending Remote key '%s' to STB at IP %s<br>\n", nombre, direccionHtml.c_str());
        const std::string digito = UTILS_Formatea("%01d", static_cast<int>(op - 1));
        enviaTeclaRemota(nombre, digito.c_str(), direccion);
        break;
    }
    case CMDREMOTE_Enciende:
    case CMDREMOTE_Apaga: {
        const bool enciende = accion == CMDREMOTE_Enciende;
        UTILS_ImprimeFormato(enciende ? "Powering ON STB at IP %s<br>\n" : "Powering OFF STB at IP %s<br>\n",
                    direccionHtml.c_str());
        enviaTeclaRemota(enciende ? "poweron" : "poweroff", CMDREMOTE_OperacionPulsa, direccion);
        break;
    }
    case CMDREMOTE_Reset:
        // The boxes have no reset through the scripts: the operator is told so.
        UTILS_ImprimeFormato("Sending Reset to STB at IP %s<br>\n", direccionHtml.c_str());
        CIPINT_ErrorGraveWeb(100);
        break;
    case CMDREMOTE_Sintoniza:
        UTILS_ImprimeFormato("Tuning STB at IP %s to major channel %s <br>\n", direccionHtml.c_str(),
                    UTILS_Escapa(canal).c_str());
        tuneSTB(canal, direccion);
        break;
    }
}

// ---------------------------------------------------------------------------
// Watermarking test
// ---------------------------------------------------------------------------

void TestWatermarking(char *formulario)
{
    if (formulario == nullptr)
        return;
    char modo[CIP_TamValorOperacion] = {};
    char serial[CIP_TamValorOperacion] = {};
    GetValueKeys(formulario, {{"modo", modo}, {"waterserial", serial}});
    if (modo[0] == '\0' || serial[0] == '\0')
        return;
    // The daemon reads exactly two lines: a value with a line break would make more.
    const char *rechazado = !CIPINT_SinControl(modo) ? "modo" : !CIPINT_SinControl(serial) ? "waterserial" : nullptr;
    if (rechazado != nullptr) {
        CIPINT_AvisaRechazo(rechazado);
        return;
    }
    // The pair replaces the file at once: a reader sees the old pair or the new one.
    const std::string lineas = std::string(modo) + "\n" + serial + "\n";
    GESTFICH_ReemplazaFichero(UTILS_MapeaRuta(CIP_FicheroWatermarking).c_str(), lineas.data(), lineas.size());
}
