// SalidaComun: the layer every output module (QAM, COFDM, ISDB-T, COFDM/QAM-B) is built on.
// It holds the protocol between the page and save engines and the family modules (families,
// row and save functions, save results), the page and save frames every family runs, the
// channel plans and modulation option tables (TablasCanales.h), and what every family paints
// and saves the same way, whatever its modulator: the cells of the status rows (LEDs,
// temperature, resolution, versions), the order and model cells, the encoder-channel and
// IP-service lines of the transport row, the select cell, the building blocks of the page
// templates, and the per-line save of encoder channels and selected IP-input services.
// It depends only on cteshtml, utilsXML, proccgilib and utils.
//
// How a family module uses it (SalidaQAM is the worked example):
//
//  * Its public header declares the six entries the engines call and nothing else; the
//    painters, option tables and templates go in its *_int.h.
//  * Page entries: the module fills one SALCOMUN_Familia (its three row painters, the headers
//    of its four pages, the closing rows of its transport and output pages) and each of its
//    four page entries is one call of SALCOMUN_Entrada, which runs the phases.
//  * Status rows: SALCOMUN_LeeEstado(status, connected, channels, model) reads everything a
//    quick or detailed status row and the advanced page's status block show, already escaped
//    and composed; the painter only picks the cells its own templates want (COFDM leaves out
//    the EAS LED).
//  * Configuration rows: SALCOMUN_PreparaFila gives the row's naming context (suffix, or
//    "_tot" on the advanced page, where no previous-value twins are made). The SALCOMUN_Campo*
//    builders paint one control plus its twin. A transport row is a set of SALCOMUN_Columna,
//    one line per service: SALCOMUN_LineaCanal for encoder channel n, then, when the model has
//    IP inputs, SALCOMUN_LineaServicio for every entry of SALCOMUN_ServiciosSeleccionados, the
//    line numbers running on after the channels. The family adds its own columns (ATSC
//    numbers on QAM, LCN on COFDM) on the same lines.
//  * Select cell: "forzarconfig" + suffix, checked by SALCOMUN_MarcaForzar, followed by the
//    row's hidden fields (SALCOMUN_Oculto) — "numcanales", "tipounidad" = family, ...
//  * Saves: each save is one call of SALCOMUN_Graba with the page's tables: the keys
//    (SALCOMUN_Clave, read 500 bytes each), the unit's own writes in order
//    (SALCOMUN_CampoUnidad) and, on a transport page, the per-line lists (SALCOMUN_ListaLineas:
//    channel lines to the channel writer, IP-service lines, mapped by SALCOMUN_LineasIP from
//    "entip", "lsnumserv", "ntotserv" and "haysalidaip", to the service writer).
//
// Escaping: every document value is escaped where it enters a fragment; what these functions
// return is composed HTML, to be put into a template as it is.
#pragma once

#include "SalidaComun/TablasCanales.h"
#include "cteshtml/cteshtml.h"

#include <libxml/tree.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// ---------------------------------------------------------------------------
// The row and save protocol
// ---------------------------------------------------------------------------

// Output families: the index of every per-family dispatch slot of the engines, and the value
// of a configuration row's hidden "tipounidad".
inline constexpr int SALCOMUN_FamiliaQAM = 0;
inline constexpr int SALCOMUN_FamiliaCOFDM = 1;
inline constexpr int SALCOMUN_FamiliaISDBT = 2;
inline constexpr int SALCOMUN_FamiliaCOFDMQAMB = 3;
inline constexpr int SALCOMUN_NumFamilias = 4;

// Page-row function: called by the page engine with the phase (0 header, 1 one unit's row,
// 4 the same without a model text, 2 last row and end of table, 3 the unit's section of the
// advanced page, suffix "_tot"), the unit's document, whether it is the master's own, the
// model's channels, options, video inputs and capabilities, the model text, the row number,
// the unit's field suffix, its output family and the model parameter. 0 or an error code.
using SALCOMUN_FuncionPagina = int (*)(int fase, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                                       int entradasVideo, int capacidades, const char *modelo, int fila,
                                       const char *sufijo, int familia, int parametro);

// Save function: copies one unit's posted fields (its form text, keys without suffix) into
// its configuration document, and says how that went.
using SALCOMUN_FuncionGrabar = int (*)(xmlDocPtr documento, char *formulario);
inline constexpr int SALCOMUN_Guardado = 0;        // stored
inline constexpr int SALCOMUN_NadaQueGuardar = 2; // nothing to store for this model
inline constexpr int SALCOMUN_SinTexto = 4;        // no form text
inline constexpr int SALCOMUN_FalloEscritura = 6;  // a write failed; the other writes stay
inline constexpr int SALCOMUN_DatosInvalidos = 7;  // a required key missing or a count out of range; nothing written

// What a family gives the page entries, which are the same in every family: its three row
// painters (a unit's row, or with configTotal its block of the advanced page), the headers
// of its four pages (templates without conversions) and the closing rows for all units of
// its transport and output pages (given the unit count).
struct SALCOMUN_Familia {
    int (*pintaSondeo)(xmlDocPtr status, int esMaster, int configTotal, int detallado, uint8_t canales,
                       const char *modelo, const char *sufijo);
    int (*pintaTransporte)(xmlDocPtr config, int esMaster, int configTotal, uint8_t canales, int opciones,
                           const char *modelo, const char *sufijo);
    int (*pintaSalida)(xmlDocPtr config, int esMaster, int configTotal, uint8_t canales, const char *modelo,
                       const char *sufijo);
    const char *cabeceraRapido;
    const char *cabeceraDetallado;
    const char *cabeceraTransporte;
    const char *cabeceraSalida;
    std::string (*cierreTransporte)(int unidades);
    std::string (*cierreSalida)(int unidades);
    // The status rows and block (see SALCOMUN_PintaLineaSondeo).
    const char *filaRapido;
    const char *filaDetallado;
    const char *bloqueEstado;
    bool ledEAS;  // the quick row shows the emergency-alert LED
};

// The status painter every family uses: a quick (detallado 0) or detailed row of the unit's
// status document, or with configTotal the advanced page's "Unit Status:" block, in the
// family's templates.
int SALCOMUN_PintaLineaSondeo(const SALCOMUN_Familia &familia, xmlDocPtr status, int esMaster, int configTotal,
                              int detallado, uint8_t canales, const char *modelo);

// The four pages a family paints.
enum SALCOMUN_Pagina : int { SALCOMUN_PaginaRapido, SALCOMUN_PaginaDetallado, SALCOMUN_PaginaTransporte, SALCOMUN_PaginaSalida };

// A page entry of a family, phase by phase: 0 prints the page's header; 1 paints the unit's
// row, refusing a unit without a model text (4); 2 prints the closing row for all units (none
// on the status pages; `fila` is the unit count) and the end of the table; 3 paints the
// unit's block of the advanced page (the status block is the quick one on both status pages).
// Any other phase does nothing.
int SALCOMUN_Entrada(const SALCOMUN_Familia &familia, SALCOMUN_Pagina pagina, int fase, xmlDocPtr documento,
                     int esMaster, uint8_t canales, int opciones, const char *modelo, int fila, const char *sufijo);

// ---------------------------------------------------------------------------
// Building blocks of the families' page templates (printf formats filled through
// UTILS_Formatea: "%%" prints one '%'; cells arrive composed and escaped)
// ---------------------------------------------------------------------------

// A header cell that sorts the table by column `indice` (`tipo` 1 on status pages, 0 on
// configuration pages) through the page script's Ordenatabla.
#define SALCOMUN_ORDENABLE(indice, tipo, texto)                                                              \
    "<a class='linkTabla' href=# onclick='Ordenatabla(" #indice "," #tipo ");'>" texto                       \
    "&nbsp;<img src='/imagenes/Flecha.png' border='0' style='vertical-align:-10%%'></a>"

#define SALCOMUN_ABRETABLA "<table id='tabadatos' border=\"1\"><tbody><tr>"
#define SALCOMUN_TH(texto) "<th class='cabeceraTabla'>" texto "</th>"
#define SALCOMUN_TH_ORDEN(tipo)                                                                               \
    "<th class='cabeceraTabla' style='width:3%%;'>" SALCOMUN_ORDENABLE(0, tipo, "#") "</th>"                  \
    "<th class='cabeceraTabla' style='width:10%%;'>" SALCOMUN_ORDENABLE(1, tipo, "Model") "</th>"
#define SALCOMUN_TH_LEDS                                                                                      \
    SALCOMUN_TH("Temp") SALCOMUN_TH("EAS") SALCOMUN_TH("CH1") SALCOMUN_TH("CH2") SALCOMUN_TH("CH3")           \
    SALCOMUN_TH("CH4") SALCOMUN_TH("OUT") SALCOMUN_TH("RF Loop")
// The quick-status row of the families without an emergency-alert LED.
#define SALCOMUN_TH_LEDS_SIN_EAS                                                                              \
    SALCOMUN_TH("Temp") SALCOMUN_TH("CH1") SALCOMUN_TH("CH2") SALCOMUN_TH("CH3") SALCOMUN_TH("CH4")           \
    SALCOMUN_TH("OUT") SALCOMUN_TH("RF Loop")
#define SALCOMUN_ABRECONFIGTOTAL(titulo)                                                                      \
    "<table class='tablaconfigtotal' border=\"1\"><caption class='captionconfigtotal'>" titulo                \
    "</caption><tbody><tr>"
#define SALCOMUN_TD "<td>%s</td>"
#define SALCOMUN_TD3 SALCOMUN_TD SALCOMUN_TD SALCOMUN_TD
#define SALCOMUN_TD6 SALCOMUN_TD3 SALCOMUN_TD3
#define SALCOMUN_TD_FUERTE "<td><strong>%s</strong></td>"
// The select cell of a configuration row: "forzarconfig" (name, id, checked marker), then
// the row's hidden fields.
#define SALCOMUN_TD_SELECCION "<td><input name=\"%s\" id=\"%s\" type=\"checkbox\" %s >%s</td>"
#define SALCOMUN_TD_ULTIMA_ROTULO                                                                             \
    "<tr><td class='ultimalinea' colspan='2' style='align:left;text-align:left;' >&nbsp;"                     \
    "<b>Set Configuration for all Units (%d):</b></td>"
#define SALCOMUN_TD_ULTIMA "<td class='ultimalinea'>%s</td>"
#define SALCOMUN_TD_ULTIMA_VACIA(columnas) "<td class='ultimalinea' colspan='" #columnas "'>&nbsp;</td>"
// An all-units button that numbers the units' fields in a row.
#define SALCOMUN_TD_AUTO(campo, funcion)                                                                      \
    "<td class='ultimalinea'><button name=\"auto" campo "_all\" id=\"auto" campo "_all\" "                   \
    "onclick=\"" funcion "\" type=\"button\">Auto</button></td>"
// The all-units tick of the RF loop-through.
#define SALCOMUN_TD_BUCLE_TODAS                                                                               \
    "<td class='ultimalinea'><input name=\"outrfl_all\" id=\"outrfl_all\" type=\"checkbox\"  checked=\"yes\" " \
    "onclick=\"SeleccionarChecboxconCheckbox(this,'outrfl','0');\"></td>"
// The all-units select box, which ends the closing row.
#define SALCOMUN_TD_FORZARCONF                                                                                \
    "<td class='ultimalinea'><input name=\"forzarconf\" id=\"forzarconf\" type=\"checkbox\" "                \
    "onclick=\"SeleccionarChecboxconCheckbox(this,'forzarconfig','0');\"></td></tr>"

// The status pages of every family. The quick row shows the emergency-alert LED only in the
// families whose units receive alerts (QAM). The detailed row and the advanced page's status
// block are the same everywhere.
#define SALCOMUN_CABECERA_RAPIDO(leds)                                                                        \
    SALCOMUN_ABRETABLA SALCOMUN_TH_ORDEN(1) leds SALCOMUN_TH("Output Table") SALCOMUN_TH("Output Channel")   \
        SALCOMUN_TH("IP") SALCOMUN_TH("Watermarking ID") SALCOMUN_TH("STATUS") "</tr>"
// order, model, the LEDs, table, channel, IP, watermarking, status
#define SALCOMUN_FILA_RAPIDO(leds) "<tr>" SALCOMUN_TD SALCOMUN_TD leds SALCOMUN_TD SALCOMUN_TD_FUERTE SALCOMUN_TD_FUERTE \
    SALCOMUN_TD_FUERTE SALCOMUN_TD_FUERTE "</tr>"
#define SALCOMUN_TD_LEDS SALCOMUN_TD6 SALCOMUN_TD SALCOMUN_TD
#define SALCOMUN_TD_LEDS_SIN_EAS SALCOMUN_TD6 SALCOMUN_TD
#define SALCOMUN_CABECERA_DETALLADO                                                                           \
    SALCOMUN_ABRETABLA SALCOMUN_TH_ORDEN(1) "<th class='cabeceraTabla'>" SALCOMUN_ORDENABLE(2, 1, "ID") "</th>" \
        SALCOMUN_TH("Serial Number") SALCOMUN_TH("Temp") SALCOMUN_TH("Resolution/Framerate")                   \
            SALCOMUN_TH("Version Info") SALCOMUN_TH("Upgrade Options") "</tr>"
// order, model, ID, serial number, temperature, resolution/frame rate, versions, options
#define SALCOMUN_FILA_DETALLADO                                                                               \
    "<tr>" SALCOMUN_TD_FUERTE SALCOMUN_TD_FUERTE SALCOMUN_TD_FUERTE SALCOMUN_TD_FUERTE SALCOMUN_TD_FUERTE         \
        SALCOMUN_TD_FUERTE SALCOMUN_TD_FUERTE SALCOMUN_TD_FUERTE "</tr>"
// The advanced page: the eight LEDs, resolution/frame rate and versions.
#define SALCOMUN_BLOQUE_ESTADO                                                                                \
    SALCOMUN_ABRECONFIGTOTAL("Unit Status:") SALCOMUN_TH_LEDS SALCOMUN_TH("Resolution/Framerate")             \
        SALCOMUN_TH("Version Info") "</tr><tr>" SALCOMUN_TD_LEDS SALCOMUN_TD_FUERTE SALCOMUN_TD_FUERTE          \
            "</tr></tbody></table><br><br>"

// Events of the all-units selects: a value chosen there is copied into every unit's row.
inline constexpr char strJSCambioTodas[] = "onclick='CambioVideocodecAll(this,\"1\");'";
inline constexpr char strJSCambioSalidaTodas[] = "onclick='CambioOUTModeQAMAll(this,\"0\");'";

// ---------------------------------------------------------------------------
// Fragments shared by the output modules
// ---------------------------------------------------------------------------

// One service's line inside a transport cell (several services stack in one cell).
inline constexpr char htmllineadentrodecelda[] = "<div class='divlineadentrodecelda' >%s</div>";
// The channel LEDs a unit does not have: "n/a" followed by a separator, and the last one.
inline constexpr char htmlcanalnoaplicable[] = "<strong>%s</strong>&nbsp";
inline constexpr char htmlcanalnoaplicablefin[] = "<strong>%s</strong>";
// Cells of the detailed status row and of the advanced page's status block.
inline constexpr char htmltemperatura[] = "%s&ordm;C %s&ordm;F";
inline constexpr char htmlresolucion[] = "C1 %s/%s<br>%s%s%s";
inline constexpr char htmlresolucionC2[] = "C2 %s/";
inline constexpr char htmlversiones[] = "Hardware - %s<br>Software - %s<br>Boot - %s<br>O.S. - %s<br>User Interface - %s";
// The read-only line number of an encoder channel's output name ("C1") and of an IP service's
// ("IP1.2"), and the style that gives the caption its width.
inline constexpr char htmlrotulocanal[] = "C%01d";
inline constexpr char htmlrotuloservicio[] = "IP%d.%d";
inline constexpr char htmlestilorotulo[] = "style='width:40px'";

// Text of the cells of channels a unit does not have, and of an IP state that cannot be read.
inline constexpr char SALCOMUN_NoAplica[] = "n/a";
// Resolution and frame rate of a channel that is not encoding.
inline constexpr char SALCOMUN_SinImagen[] = "--";
// Value of the PID fields of an IP service (the unit keeps the input's PIDs).
inline constexpr char SALCOMUN_PIDAuto[] = "auto";

// Capacity of each value read from a save's form text.
inline constexpr std::size_t SALCOMUN_TAMVALOR = 500;
// Upgrade-options cell: output stops once this many characters have been written.
inline constexpr std::size_t SALCOMUN_MAXOPCIONES = 296;
// Most IP-service lines a transport save maps (255 inputs of 255 services fit).
inline constexpr long SALCOMUN_MAXLINEASIP = 65535;

// ---------------------------------------------------------------------------
// Option tables
// ---------------------------------------------------------------------------

// One choice of a fixed select: the value posted and stored, and the label shown.
struct SALCOMUN_Opcion {
    const char *valor;
    const char *texto;
};

// Value and label of the choice that leaves every unit as it is in the all-units row.
inline constexpr char SALCOMUN_ValorSeleccionar[] = "99";
inline constexpr char SALCOMUN_TextoSeleccionar[] = "Select";

// "outout": the modulator's output type, the same in every family; in a unit's row, and in
// the all-units row (a different order, kept).
inline constexpr SALCOMUN_Opcion SALCOMUN_TiposSalida[] = {
    {"0", "NORMAL"}, {"1", "CONT_WAVE"}, {"4", "INVERTED"}, {"2", "MUTE"}, {"3", "NULL"},
};
inline constexpr SALCOMUN_Opcion SALCOMUN_TiposSalidaTodas[] = {
    {"0", "NORMAL"}, {"4", "INVERTED"}, {"1", "CONT_WAVE"}, {"2", "MUTE"}, {"3", "NULL"},
};

// The choices of a table, in table order; conSeleccionar appends 99 "Select" (all-units row).
std::vector<CTESHTML_Opcion> SALCOMUN_Opciones(std::span<const SALCOMUN_Opcion> tabla, bool conSeleccionar = false);

// An all-units select "<base>_all" with the table's choices and 99 "Select" chosen.
std::string SALCOMUN_SelectTodas(std::string_view base, std::span<const SALCOMUN_Opcion> tabla,
                                 std::string_view atributos);
// The same for choices built at run time (channel plans, mode and step tables, number
// ranges): the choices in their order, then 99 "Select", chosen.
std::string SALCOMUN_SelectTodasOpciones(std::string_view base, std::vector<CTESHTML_Opcion> opciones,
                                         std::string_view atributos);

// ---------------------------------------------------------------------------
// Reading the documents
// ---------------------------------------------------------------------------

// The first `n` bytes of a text, never cutting a UTF-8 character.
std::string SALCOMUN_Corta(std::string_view texto, std::size_t n);

// Whether the text is the value of one of the choices.
bool SALCOMUN_Ofrecido(std::string_view valor, const std::vector<CTESHTML_Opcion> &opciones);

// Whether the text is a whole number written with digits only, from minimo to maximo.
bool SALCOMUN_EnRango(std::string_view texto, long minimo, long maximo);

// Whether the text holds a decimal separator ("," or ".").
bool SALCOMUN_TieneDecimales(std::string_view texto);


// ---------------------------------------------------------------------------
// Status rows
// ---------------------------------------------------------------------------

// The eight LEDs of a unit's LED word, in word order (four bits each, least significant first).
enum SALCOMUN_Led : int {
    SALCOMUN_LedTemp = 0,
    SALCOMUN_LedEAS,
    SALCOMUN_LedCH1,
    SALCOMUN_LedCH2,
    SALCOMUN_LedCH3,
    SALCOMUN_LedCH4,
    SALCOMUN_LedOUT,
    SALCOMUN_LedRFLoop,
    SALCOMUN_NumLeds
};

// The unit's LED word (UTILSXML_STATUS_LeeLEDS as an unsigned decimal); 0 when unreadable.
unsigned long SALCOMUN_LeeLeds(xmlDocPtr status);

// State of one LED (0..11): its nibble, with 12..15 read as 0.
int SALCOMUN_EstadoLed(unsigned long palabra, int led);

// The eight LED cells of a unit with `canales` encoder channels: CH2 is "n/a" below two
// channels, CH3 and CH4 below four (the same rule for a three-channel unit).
std::array<std::string, SALCOMUN_NumLeds> SALCOMUN_CeldasLed(unsigned long palabra, uint8_t canales);

// Whether channel 1..4 shows "--" for resolution and frame rate: its state is 0, 4, 6 or 12
// and above.
bool SALCOMUN_CanalSinImagen(unsigned long palabra, int canal);

// "Resolution/Framerate": channel 1, channel 2 for two or more channels, channels 3 and 4
// (htmlc3c4) for four; a channel in a "--" state shows "--" for both. The LED word is read
// again from the document.
std::string SALCOMUN_CeldaResolucion(xmlDocPtr status, uint8_t canales);
// "Temp": Celsius and Fahrenheit.
std::string SALCOMUN_CeldaTemperatura(xmlDocPtr status);
// "Version Info": hardware, software, boot, O.S. and user interface.
std::string SALCOMUN_CeldaVersiones(xmlDocPtr status);
// "Upgrade Options": the text with every "." turned into "<br>", stopped at 296 characters.
std::string SALCOMUN_CeldaOpciones(xmlDocPtr status);

// The order cell: the order number, bold for the unit the browser is connected to.
std::string SALCOMUN_CeldaOrden(std::string_view orden, bool conectada);
// The model cell of a status row: the model text, or strJSMiunidad for the connected unit.
std::string SALCOMUN_CeldaModeloEstado(std::string_view modelo, bool conectada);

// Everything a status row or the advanced page's status block shows, escaped and composed.
struct SALCOMUN_Estado {
    std::string orden;                               // "#"
    std::string modelo;                              // "Model"
    std::array<std::string, SALCOMUN_NumLeds> leds;  // LED cells (SALCOMUN_CeldasLed)
    std::string tabla;                               // "Output Table"
    std::string canal;                               // "Output Channel"
    std::string salidaIP;                            // "IP", "n/a" when unreadable
    std::string watermarking;                        // "Watermarking ID"
    std::string estado;                              // "STATUS"
    std::string id;                                  // "ID"
    std::string numSerie;                            // "Serial Number"
    std::string temperatura;                         // "Temp"
    std::string resolucion;                          // "Resolution/Framerate"
    std::string versiones;                           // "Version Info"
    std::string opciones;                            // "Upgrade Options"
};

SALCOMUN_Estado SALCOMUN_LeeEstado(xmlDocPtr status, bool conectada, uint8_t canales, std::string_view modelo);

// ---------------------------------------------------------------------------
// Configuration rows
// ---------------------------------------------------------------------------

// Naming context of one unit's configuration row or advanced-page section.
struct SALCOMUN_Fila {
    xmlDocPtr documento = nullptr;
    bool conectada = false;    // the unit the browser is connected to
    bool configTotal = false;  // advanced page: suffix "_tot", no previous-value twins
    std::string sufijo;

    // base + suffix
    std::string Nombre(std::string_view base) const;
    // base + line number + suffix (encoder channels and IP services alike)
    std::string Nombre(std::string_view base, int linea) const;
    // The previous-value twin of a control (htmlanterior); nothing on the advanced page.
    std::string Anterior(std::string_view nombre, std::string_view valor) const;
};

// The suffix of the advanced page.
inline constexpr char SALCOMUN_SufijoTotal[] = "_tot";

// configTotal: suffix "_tot" whatever the engine passed; otherwise its suffix (empty for the
// master).
SALCOMUN_Fila SALCOMUN_PreparaFila(xmlDocPtr documento, int esMaster, const char *sufijo, bool configTotal);

// One table cell holding one line per service.
struct SALCOMUN_Columna {
    std::string html;
    void Linea(std::string_view contenido);  // wraps in htmllineadentrodecelda
};

// An integer text input (`plantilla` one of the htmlinput fragments) with the integer key
// filter, strJSvalidaEntero(minimo, maximo) on blur, the change-tracking events and, when
// `deshabilitado`, "disabled"; followed by its twin.
std::string SALCOMUN_CampoEntero(const SALCOMUN_Fila &fila, const char *plantilla, const std::string &nombre, int tam,
                                 int maxLongitud, int minimo, int maximo, std::string_view valor,
                                 bool deshabilitado = false);
// The same with strJSvalidaPID(minimo, maximo).
std::string SALCOMUN_CampoPID(const SALCOMUN_Fila &fila, const std::string &nombre, int tam, int maxLongitud,
                              int minimo, int maximo, std::string_view valor);
// A select with the given events (and "disabled"), followed by its twin.
std::string SALCOMUN_CampoSelect(const SALCOMUN_Fila &fila, const std::string &nombre, std::string_view eventos,
                                 const std::vector<CTESHTML_Opcion> &opciones, std::string_view valor,
                                 bool deshabilitado = false);
// The output name of a line: its read-only caption ("C1", "IP1.2"), then a channel-name
// input of size 6 with Compruebacambios on blur, and its twin.
std::string SALCOMUN_CampoNombreCanal(const SALCOMUN_Fila &fila, std::string_view rotulo, const std::string &nombre,
                                      int maxLongitud, std::string_view valor);
// A read-only value shown as text (htmlinputlikecaption), "disabled" when asked.
std::string SALCOMUN_CampoSoloLectura(const std::string &nombre, int tam, int maxLongitud, std::string_view valor,
                                      bool deshabilitado);

// Sizes of the common transport columns, which differ between families.
struct SALCOMUN_MedidasLinea {
    int maxNombre;  // maxlength of "cnam"
    int tamPID;     // size of "svpid" / "sapid"
    int tamSID;     // size of "svcid"
};

// The transport cells every family shows on each line, and the line's hidden fields.
struct SALCOMUN_LineaTransporte {
    std::string nombreEntrada;  // "IN Name"
    std::string sidEntrada;     // "IN SID"
    std::string nombreSalida;   // "OUT Name" ("cnam")
    std::string pidVideo;       // "Video PID" ("svpid")
    std::string pidAudio;       // "Audio PID" ("sapid")
    std::string sidSalida;      // "OUT SID" ("svcid")
    std::string ocultos;        // IP services: "entip" and "lsnumserv"
};

// Encoder channel `canal` (1..): "n/a" inputs, the channel's name, PIDs (48..8182) and service
// id (1..65535).
SALCOMUN_LineaTransporte SALCOMUN_LineaCanal(const SALCOMUN_Fila &fila, int canal, const SALCOMUN_MedidasLinea &medidas);

// One selected service of an IP input.
struct SALCOMUN_ServicioIP {
    uint8_t entrada;
    uint8_t servicio;
};

// The services whose SEL is 1, input by input (1..NUMINP), service by service (1..NUM).
std::vector<SALCOMUN_ServicioIP> SALCOMUN_ServiciosSeleccionados(xmlDocPtr config);

// Line `linea` of an IP service: its input name and service id read-only, "IP%d.%d" and its
// output name, "auto" PIDs, its output service id, and the hidden "entip" / "lsnumserv".
SALCOMUN_LineaTransporte SALCOMUN_LineaServicio(const SALCOMUN_Fila &fila, int linea, SALCOMUN_ServicioIP servicio,
                                                const SALCOMUN_MedidasLinea &medidas);

// The "#" and "Model" cells of a configuration row: the unit's ORDEN (bold for the connected
// unit) and CTESHTML_CeldaModelo (the advanced-page link; "web connected" for the master).
struct SALCOMUN_CeldasUnidad {
    std::string orden;
    std::string modelo;
};
SALCOMUN_CeldasUnidad SALCOMUN_CeldasConfig(const SALCOMUN_Fila &fila, const char *modelo);

// The checked marker of the row's "forzarconfig" box: " checked=\"yes\" " when the unit's
// CAMBIOSWEB begins with "1", else "".
const char *SALCOMUN_MarcaForzar(xmlDocPtr config);

// A hidden field (htmlinputhidden) named and identified base + suffix.
std::string SALCOMUN_Oculto(const SALCOMUN_Fila &fila, std::string_view base, std::string_view valor);
// The hidden fields every configuration row carries: "numcanales" ("%01d") and "tipounidad"
// (the family index).
std::string SALCOMUN_OcultosUnidad(const SALCOMUN_Fila &fila, uint8_t canales, int tipoUnidad);

// Sum of the active encoder inputs' bit rates in kbit/s: video (Mbit/s, "." or "," as
// separator) plus audio (the audio bit-rate choice 0 "96" .. 8 "384"), for inputs
// 1..canales whose ACTIVA is '1'.
unsigned long SALCOMUN_BitrateTotal(xmlDocPtr config, uint8_t canales);

// Audio bit rates of the input page's choices, kbit/s by position.
inline constexpr unsigned SALCOMUN_BitratesAudio[] = {96, 112, 128, 160, 192, 224, 256, 320, 384};

// ---------------------------------------------------------------------------
// Saves
// ---------------------------------------------------------------------------

// One key of a save: its name and whether the save refuses (7) a form without it.
struct SALCOMUN_Clave {
    const char *nombre;
    bool requerida;
};

// The values of a table of keys in one unit's form text (decoded, each cut to 500 bytes).
class SALCOMUN_Valores {
  public:
    SALCOMUN_Valores(const char *formulario, std::span<const SALCOMUN_Clave> claves);
    // The value of a key of the table; "" when absent (or not in the table).
    const char *operator[](std::string_view nombre) const;
    // Whether a required key is absent or empty.
    bool FaltaRequerida() const;

  private:
    struct Valor {
        SALCOMUN_Clave clave;
        std::array<char, SALCOMUN_TAMVALOR> texto;
    };
    std::vector<Valor> valores_;
};

// The channel count of "numcanales": 1..9, or 0 when the text is not such a decimal number.
int SALCOMUN_NumCanales(std::string_view texto);

using SALCOMUN_GrabaUnidad = int (*)(xmlDocPtr, const char *);
using SALCOMUN_GrabaCanal = int (*)(xmlDocPtr, const char *, uint8_t);
using SALCOMUN_GrabaServicio = int (*)(xmlDocPtr, const char *, uint8_t, uint8_t);

// A per-unit key and its writer.
struct SALCOMUN_CampoUnidad {
    const char *clave;
    SALCOMUN_GrabaUnidad graba;
};

// Writes every key of the table, in table order, as received; 6 when any writer failed (all
// are tried), else 0.
int SALCOMUN_GrabaCampos(xmlDocPtr config, const SALCOMUN_Valores &valores, std::span<const SALCOMUN_CampoUnidad> campos);

// Which IP input and service each posted line above the channel count stands for.
class SALCOMUN_LineasIP {
  public:
    // Handled only when "haysalidaip" is 1 and "ntotserv" exceeds the channel count. Then the
    // "entip" and "lsnumserv" pairs fill the two byte arrays at line - numcanales - 1; a pair
    // whose line is not above the count makes the lists invalid and a line above "ntotserv"
    // is ignored. Returns 6 when the lists are invalid or cannot be held (nothing is handled
    // then), else 0.
    int Prepara(int numcanales, std::string_view haySalidaIP, std::string_view ntotserv, std::string_view entip,
                std::string_view lsnumserv);
    bool Activas() const { return activas_; }
    // Whether the line is an IP service line being handled (channel count < line <= ntotserv).
    bool Contiene(long linea) const;
    SALCOMUN_ServicioIP Servicio(long linea) const;

  private:
    bool activas_ = false;
    int numcanales_ = 0;
    std::vector<uint8_t> entradas_;
    std::vector<uint8_t> servicios_;
};

// A per-line key with the writer of its encoder-channel lines and that of its IP-service
// lines (none: those lines are dropped).
struct SALCOMUN_ListaLineas {
    const char *clave;
    SALCOMUN_GrabaCanal canal;
    SALCOMUN_GrabaServicio servicio;
};

// Writes every list of the table, in table order: lines 1..numcanales to the channel, lines
// the map holds to their IP input and service, other lines nowhere. 6 when any writer failed,
// else 0.
int SALCOMUN_GrabaListas(xmlDocPtr config, const SALCOMUN_Valores &valores, std::span<const SALCOMUN_ListaLineas> listas,
                         int numcanales, const SALCOMUN_LineasIP &lineasIP);

// A save of one page of a family: the keys it reads from the unit's form text, the unit's own
// values written in order and, on a transport page, the per-line lists with the IP services.
struct SALCOMUN_PaginaGrabar {
    std::span<const SALCOMUN_Clave> claves;
    std::span<const SALCOMUN_CampoUnidad> campos;
    std::span<const SALCOMUN_ListaLineas> listas = {};
    // Whether the values are among those the page offers (none: any value is taken).
    bool (*admite)(const SALCOMUN_Valores &valores) = nullptr;
};

// The save of a page, the same in every family: no text gives 4; a required key missing,
// "numcanales" not 1..9 or a value the page does not offer gives 7 and writes nothing; then the unit's values, and with lists the
// IP services' lines and every list, are written: 6 when a write failed (the others are
// still made), else 0.
int SALCOMUN_Graba(xmlDocPtr documento, char *formulario, const SALCOMUN_PaginaGrabar &pagina);
