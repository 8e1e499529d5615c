// cteshtml: the constant HTML and script fragments that every page is built from, the LED
// image and caption tables of the status pages, the unit-model table, and the small helpers
// that fill the fragments safely.
//
// The fragments are printf formats. Pages fill them through UTILS_Formatea (utils/utils.h),
// which the compiler checks against each fragment's placeholders.
//
// Escaping rule for every page: a value taken from a unit document or from the form is
// escaped (UTILS_Escapa) where it enters a fragment; fragments the program composes
// itself (handlers, bold wrappers, "<br>" splices, whole cells) are not escaped again. The
// helpers at the end of this header follow that rule: they escape their value and label
// arguments and take names, ids and attribute texts as they are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// ---------------------------------------------------------------------------
// Control fragments (placeholders in order)
// ---------------------------------------------------------------------------

// name, id, extra attributes (event handler, disabled, style)
inline constexpr char htmlselectbox[] = "<select name=\"%s\" id=\"%s\" size=\"1\" %s>";
// value, selection marker (htmlselectoptionselected or ""), label
inline constexpr char htmlselectoption[] = "<option value=\"%s\" %s >%s</option>";
inline constexpr char htmlselectoptionselected[] = "selected=\"selected\"";
inline constexpr char htmlselectboxfin[] = "</select>";
// Text inputs, all with the same placeholders: id, size, name, key filter (strJSPermit...),
// blur script (strJSvalida...), extra attributes, value, maximum length. They differ only in
// the style class: plain, IP address, short number, channel name, three digits, read-only.
inline constexpr char htmlinput[] = "<input class=\"inputconbordes\" id=\"%s\" size=\"%d\" name=\"%s\" %s onblur=\"%s\" %s type=\"text\" value=\"%s\" maxlength=\"%d\">";
inline constexpr char htmlinputIP[] = "<input class=\"inputconbordesIP\" id=\"%s\" size=\"%d\" name=\"%s\" %s onblur=\"%s\" %s type=\"text\" value=\"%s\" maxlength=\"%d\">";
inline constexpr char htmlinputLCN[] = "<input class=\"inputconbordesLCN\" id=\"%s\" size=\"%d\" name=\"%s\" %s onblur=\"%s\" %s type=\"text\" value=\"%s\" maxlength=\"%d\">";
inline constexpr char htmlinputCHName[] = "<input class=\"inputconbordesCHName\" id=\"%s\" size=\"%d\" name=\"%s\" %s onblur=\"%s\" %s type=\"text\" value=\"%s\" maxlength=\"%d\">";
inline constexpr char htmlinput3digitos[] = "<input class=\"inputconbordes3digitos\" id=\"%s\" size=\"%d\" name=\"%s\" %s onblur=\"%s\" %s type=\"text\" value=\"%s\" maxlength=\"%d\">";
inline constexpr char htmlinputlikecaption[] = "<input readonly class=\"inputsinbordes\" id=\"%s\" size=\"%d\" name=\"%s\" %s onblur=\"%s\" %s type=\"text\" value=\"%s\" maxlength=\"%d\">";
// value, extra attributes
inline constexpr char htmlinputlikecaptionFixed[] = "<input readonly class=\"inputsinbordes\" type=\"text\" value=\"%s\" %s >";
// name, id, attributes, label
inline constexpr char htmlboton[] = "<button name=\"%s\" id=\"%s\" %s type=\"button\">%s</button>";
// name, id, checked marker, attributes
inline constexpr char htmlcheckbox[] = "<input name=\"%s\" id=\"%s\" type=\"checkbox\" %s %s>";
// field name (twice), value as painted
inline constexpr char htmlanterior[] = "<input id=\"anterior%s\" name=\"anterior%s\" value=\"%s\" type=\"hidden\">";
inline constexpr char htmlfintabla[] = "</tbody></table>";
// The row of a unit whose document cannot be read: row number, the unit's address
inline constexpr char htmlFilaIlegible[] =
    "<tr><td>%d</td><td colspan=\"20\"><strong>Unit %s: its document cannot be read</strong></td></tr>";
// The value of a request that was refused: field name
inline constexpr char htmlValorRechazado[] = "Refused value for %s.<br>\n";
// id, content
inline constexpr char htmldiv[] = "<div id=\"%s\">%s</div>";
// id, content (a hidden pop-up layer)
inline constexpr char htmldivoculto[] = "<div id=\"%s\" class=\"fondotranslucido\">%s</div>";
// image file (ImagenesLed), alternative text (TextosAltLeds), caption
inline constexpr char htmlled[] = "<img src=\"/imagenes/%s\" alt=\"%s\" align=\"middle\" border=\"0\" height=\"25\" width=\"25\">%s";
// C3 a/b and C4 c/d
inline constexpr char htmlc3c4[] = "<br>C3 %s/%s<br>C4 %s/%s";
// input number, name, id, checked marker
inline constexpr char htmlentradaactiva[] = "I%d<input name=\"%s\" id=\"%s\" type=\"checkbox\" onclick=\"EnableDisablegroupEntrada(this);\" onblur=\"Compruebacambios(this);\" onchange=\"Compruebacambios(this);\" %s>";
// name, id, checked marker (unit with a single input)
inline constexpr char htmlentradaactivaunica[] = "I<input name=\"%s\" id=\"%s\" type=\"checkbox\" onclick=\"EnableDisablegroupEntrada(this);\" onblur=\"Compruebacambios(this);\" onchange=\"Compruebacambios(this);\" %s>";
// id, name, value
inline constexpr char htmlinputhidden[] = "<input id=\"%s\" name=\"%s\" value=\"%s\" type=\"hidden\">";
// appended among the attributes of an element to hide it
inline constexpr char htmlStyleDisplayNone[] = " style='display:none'";
// output number, name, id, checked marker
inline constexpr char htmlsalidaIPactiva[] = "%d<input name=\"%s\" id=\"%s\" type=\"checkbox\" onclick=\"EnableDisablegroupSalidaIP(this);\" onblur=\"Compruebacambios(this);\" onchange=\"Compruebacambios(this);\" %s>";

// The checked marker that the pages put in a check box's marker slot.
inline constexpr char htmlcheckboxmarcado[] = " checked=\"yes\" ";

// ---------------------------------------------------------------------------
// Event-handler fragments
// ---------------------------------------------------------------------------
// Those that begin with a function call go into an input's onblur attribute; those that
// begin with an attribute name (or a space and one) go among a control's extra attributes.
// Every handler that can change a value ends with Compruebacambios(this), the browser
// function that marks the row as changed.

inline constexpr char strJSvalidaEntero[] = "ValidarEntero(this,'%d','%d');Compruebacambios(this);";      // min, max
inline constexpr char strJSValidarHexa[] = "ValidarHexa(this,'0x%x','0x%x');Compruebacambios(this);";     // min, max
inline constexpr char strJSvalidaPID[] = "ValidarPID(this,'%d','%d');Compruebacambios(this);";           // min, max
inline constexpr char strJSValidarHexaconFiltro[] = "ValidarHexaFiltro(this,'0x%x','0x%x','0x%x','0x%x');Compruebacambios(this);";
inline constexpr char strJSPermititEnteros[] = "onkeypress=\"return Permitekeypress(event, numeros,this);\"";
inline constexpr char strJSPermitirreales[] = "onkeypress=\"return Permitekeypress(event, numeros + puntuacion,this);\"";
inline constexpr char strJSPermitirAlfa[] = "onkeypress=\"return Permitekeypress(event, numeros + caracteres,this);\"";
inline constexpr char strJSPermititHexa[] = "onkeypress=\"return Permitekeypress(event, hexadecimal,this);\"";
inline constexpr char strJSPermitirIPs[] = "onkeypress=\"return Permitekeypress(event, caracteresIPs);\"";
// minimum text, maximum text, number of decimals
inline constexpr char strJSvalidaEntDecimales[] = "ValidarEnteroConDecimales(this,'%s','%s','%d');Compruebacambios(this);";
// minimum, maximum, field label
inline constexpr char strJSvalidaFrecuencia[] = "ValidarFrecuencia(this,'%d','%d','%s');Compruebacambios(this);";
inline constexpr char strJSvalidaCadena[] = "ValidarCadena(this,'%d',numeros+caracteres);Compruebacambios(this);";
inline constexpr char strJSvalidaIP[] = "ValidarIPOnBlur(this,'','');Compruebacambios(this);";
inline constexpr char strJScambioEntradaAudioQAM[] = "onchange=\"CambioAudioInput(this);Compruebacambios(this);\"";
inline constexpr char strJScambioAudioCodecQAM[] = "onchange=\"CambioAudioCodec(this);Compruebacambios(this);\"";
inline constexpr char strJSCambioTablacanalsalidaQAM[] = "onchange=\"CambioTablaCanalesSalida(this);Compruebacambios(this);\"";
inline constexpr char strJScambioModoSalidaQAM[] = "onchange=\"CambioModoSalidaSalida(this);Compruebacambios(this);\"";
inline constexpr char strJSCambiotableTypeQAM[] = "onchange=\"CambioTableTypeCHNum(this);Compruebacambios(this);\"";
// IP line number, unit suffix
inline constexpr char strJSClickservicesIP[] = "onclick=\"MuestraListaServicios(this,%d,'%s')\" ";
inline constexpr char strJSClickServiceListSel[] = " onclick='SelectServiceList(this);'";
inline constexpr char strJSPermitirNombrecanal[] = "onkeypress=\"return FiltraSubrayadokeypress(event,this);\"";
inline constexpr char strJSvalidaNombrecanal[] = "ValidarNombrecanal(this,'%d');Compruebacambios(this);";
// model text (bold, "web connected" under it)
inline constexpr char strJSMiunidad[] = "<b>%s<br>web connected</b>";
// model text, linked to the advanced page of the master
inline constexpr char strJSMiunidadConfig[] = "<a href=\"javascript:MostrarConfigTotal('');\"><b>%s<br>web connected</b></a>";
inline constexpr char strJSOnblurCompruebacambios[] = " onblur=\"Compruebacambios(this);\"";
inline constexpr char strJSOnChangeCompruebacambios[] = " onchange=\"Compruebacambios(this);\"";
inline constexpr char strJSOnBlurOnChangeCompruebacambios[] = " onblur=\"Compruebacambios(this);\" onchange=\"Compruebacambios(this);\"";
inline constexpr char strJSOnBlurOnChangeFuerzacambios[] = " onblur=\"Fuerzacambios(this);\" onchange=\"Fuerzacambios(this);\"";
inline constexpr char strJSCambioTablacanalsalidaCOFDM[] = "onchange=\"CambioTablaCanalesSalidaCOFDM(this);Compruebacambios(this);\"";
inline constexpr char strJSCambioModoCOFDM[] = "onchange=\"CambioModoCOFDM(this);Compruebacambios(this);\"";
// dotted unit suffix, link text (model text)
inline constexpr char strJSMostrarConfigTotal[] = "<a href=\"javascript:MostrarConfigTotal('%s');\">%s</a>";
inline constexpr char strJScambioEntradaVideo[] = "onchange=\"CambioVideoInput(this);Compruebacambios(this);\"";
inline constexpr char strJSCambioModoCOFDMQAMB[] = "onchange=\"CambioModoCOFDMQAMB(this);Compruebacambios(this);\"";
inline constexpr char strJSCambioModoISDBT[] = "onchange=\"CambioModoISDBT(this);Compruebacambios(this);\"";
inline constexpr char strJScambioTipoSalIP[] = "onchange=\"CambioTipoSalidaIP(this);Compruebacambios(this);\"";
inline constexpr char strJScambioTxRxSalIP[] = "onchange=\"CambioTxrxSalidaIP(this);Compruebacambios(this);\"";
inline constexpr char strJScambioprotocolSalIP[] = "onchange=\"CambioProtocolSalidaIP(this);Compruebacambios(this);\"";
inline constexpr char strJSOnSalIPFECOnclick[] = "onclick=\"EnableDisableFECSalidaIP(this);\"";
inline constexpr char strJSOnBlurOnChangeCompruebacambiosEncoding[] = " onblur=\"CheckEncoding(this);Compruebacambios(this);\" onchange=\"CheckEncoding(this);Compruebacambios(this);\"";
inline constexpr char strJSCambioModoQAM[] = "onchange=\"CambioModoQAM(this);Compruebacambios(this);\"";
// The IP-output mode selects of both families only track changes; they are separate names
// with the same text as strJSOnChangeCompruebacambios.
inline constexpr char strJSOnChangeCambioModoSalidaIPCOFDM[] = " onchange=\"Compruebacambios(this);\"";
inline constexpr char strJSOnChangeCambioModoSalidaIPQAM[] = " onchange=\"Compruebacambios(this);\"";

// ---------------------------------------------------------------------------
// LED tables of the status pages
// ---------------------------------------------------------------------------
// A LED state is colour + 4 x mode: colour 0 off, 1 green, 2 red, 3 amber; mode 0 steady,
// 1 and 2 the two animated variants. Images and captions are indexed by that state.

inline constexpr int CTESHTML_NUMLEDS = 8;
inline constexpr int CTESHTML_NUMESTADOSLED = 12;

inline constexpr char ImagenesLed[CTESHTML_NUMESTADOSLED][20] = {
    "ledoff.png", "ledverde.png",   "ledrojo.png",   "ledambar.png",
    "ledoff.png", "ledverdePR.gif", "ledrojoPR.gif", "ledambarPR.gif",
    "ledoff.png", "ledverdePL.gif", "ledrojoPL.gif", "ledambarPL.gif",
};

// Alternative text of each LED, in LED order.
inline constexpr char TextosAltLeds[CTESHTML_NUMLEDS][10] = {
    "Temp", "EAS", "ch1", "ch2", "ch3", "ch4", "out", "rfloop",
};

// Captions of each LED, indexed like ImagenesLed.
inline constexpr char TextosLED1[CTESHTML_NUMESTADOSLED][10] = {  // Temp
    "N/A", "NORMAL", "OVER TEMP", "WARNING", "N/A", "N/A", "OVER TEMP", "WARNING", "N/A", "N/A", "OVER TEMP", "WARNING",
};
inline constexpr char TextosLED2[CTESHTML_NUMESTADOSLED][10] = {  // EAS
    "OFF", "LOCK", "UNLOCK", "N/A", "OFF", "N/A", "N/A", "N/A", "OFF", "N/A", "UPDATE", "UPDATE",
};
inline constexpr char TextosLED3[CTESHTML_NUMESTADOSLED][10] = {  // ch1
    "DISABLED", "LOCK", "UNLOCK", "UNLOCK", "DISABLED", "N/A", "BOOT", "N/A", "N/A", "N/A", "UPDATE", "UPDATE",
};
inline constexpr char TextosLED4[CTESHTML_NUMESTADOSLED][10] = {  // ch2
    "DISABLED", "LOCK", "UNLOCK", "UNLOCK", "DISABLED", "N/A", "BOOT", "N/A", "N/A", "N/A", "UPDATE", "UPDATE",
};
inline constexpr char TextosLED5[CTESHTML_NUMESTADOSLED][10] = {  // ch3
    "DISABLED", "LOCK", "UNLOCK", "UNLOCK", "DISABLED", "N/A", "BOOT", "N/A", "N/A", "N/A", "UPDATE", "UPDATE",
};
inline constexpr char TextosLED6[CTESHTML_NUMESTADOSLED][10] = {  // ch4
    "DISABLED", "LOCK", "UNLOCK", "UNLOCK", "DISABLED", "N/A", "BOOT", "N/A", "N/A", "N/A", "UPDATE", "UPDATE",
};
inline constexpr char TextosLED7[CTESHTML_NUMESTADOSLED][10] = {  // out
    "N/A", "LOCK", "OVFLW", "UNLOCK", "N/A", "OFF", "N/A", "N/A", "N/A", "OFF", "UPDATE", "UPDATE",
};
inline constexpr char TextosLED8[CTESHTML_NUMESTADOSLED][10] = {  // rfloop
    "OFF", "ON", "N/A", "N/A", "OFF", "N/A", "N/A", "N/A", "OFF", "N/A", "UPDATE", "UPDATE",
};

// One LED cell of a status row: LED k (1..8) takes bits 4(k-1)..4(k-1)+3 of the unit's LED
// word; a state of 12 or more shows as 0. The cell is htmlled with the state's image, the
// LED's alternative text and "<br>" followed by the LED's caption for the state.
// A LED number outside 1..8 gives an empty text.
std::string CTESHTML_CeldaLed(unsigned long palabraLeds, int led);

// ---------------------------------------------------------------------------
// Unit-model table
// ---------------------------------------------------------------------------

struct CTESHTML_TipoEncoder {
    uint32_t codigo;          // model code, as written in a unit's type field
    char descripcion[35];     // NUL-padded; most begin with " - " on purpose
    uint8_t canales;          // encoder channels (1, 2 or 4)
    int32_t entradasVideo;    // mask of video input kinds
    int32_t capacidades;      // capability mask, passed on to the row functions
    int32_t parametro;        // 382 with component/HDMI inputs, 0 composite-only
    int32_t opciones;         // bit 0 IP input/output, bit 1 emergency alert (EAS)
    int32_t familia;          // 0 QAM, 1 COFDM, 2 ISDB-T, 3 COFDM/QAM-B, 4 placeholder, 5 unknown
};

inline constexpr std::size_t CTESHTML_NUMTIPOSENCODER = 22;
// The last row is the unknown model, taken for every code that no other row has.
extern const CTESHTML_TipoEncoder TiposEncoder[CTESHTML_NUMTIPOSENCODER];

// Size of the model text buffers that the pages pass to CTESHTML_Obtienetipounidad.
inline constexpr std::size_t CTESHTML_TAMMODELO = 50;

// Resolves a unit's type text: the leading decimal code (strtoul, base 10; no digits give 0)
// is looked up in TiposEncoder (first equal row among rows 0..20, else the unknown row).
// The text buffer (CTESHTML_TAMMODELO bytes) is rewritten as "%u %s", code and description.
// Each non-null out-argument receives the row's field. Returns the converted code, which for
// an unknown model is the unit's own number, not the row's.
uint32_t CTESHTML_Obtienetipounidad(char *modelo, uint8_t *canales, int *opciones, int *entradasVideo,
                                    int *capacidades, int *familia, int *parametro);

// Reads a dotted IPv4 address out of a file name ("010.000.000.021.xml" gives 10.0.0.21).
// Returns 0 without touching anything when an output is null; otherwise clears the four
// octets and returns 0 for a null text. Digits accumulate into the current octet (kept in
// 8 bits), '.' moves to the next one, other characters are skipped. The scan stops at the
// end, at the fourth '.', or at the first non-digit once the fourth octet has three digits.
// An octet of more than three digits makes the result 255 (the octets keep the wrapped
// values).
int CTESHTML_MiraIP(const char *texto, uint8_t *a, uint8_t *b, uint8_t *c, uint8_t *d);

// 2 for a null text, 1 for an empty text or one made only of spaces, 0 otherwise.
int CTESHTML_CompruebaEspacios(const char *texto);

// ---------------------------------------------------------------------------
// Escaping and widget helpers
// ---------------------------------------------------------------------------
// Names, ids and attribute texts are composed by the program and go in as they are; values
// and labels are escaped by the helper. The results are composed fragments: put them into
// row templates without escaping them again.

// A document value in bold: "<b>" + escaped value + "</b>".
std::string CTESHTML_Negrita(std::string_view valor);

// One choice of a select box, value and label as shown (both escaped when painted).
struct CTESHTML_Opcion {
    std::string valor;
    std::string texto;
};

// htmlselectbox, one htmlselectoption per choice (htmlselectoptionselected on every choice
// whose value equals valorActual, an empty marker on the others), htmlselectboxfin.
std::string CTESHTML_SelectBox(std::string_view nombre, std::string_view id, std::string_view atributos,
                               const std::vector<CTESHTML_Opcion> &opciones, std::string_view valorActual);

// The text of a fixed-size slot of a text table: up to the first NUL or the slot's end.
std::string CTESHTMLINT_TextoRanura(const char *ranura, std::size_t ancho);

// Choices from a text table and a parallel value table (the mode selects): choice i has the
// value valores[i] printed "%d" and the text textos[i], for the first `cuantas` entries (at
// most the table's N).
template <std::size_t N, std::size_t Ancho, typename Valor>
std::vector<CTESHTML_Opcion> CTESHTML_OpcionesTablas(const char (&textos)[N][Ancho], const Valor *valores,
                                                     std::size_t cuantas)
{
    std::vector<CTESHTML_Opcion> opciones;
    for (std::size_t i = 0; i < cuantas && i < N; ++i)
        opciones.push_back({std::to_string(static_cast<int>(valores[i])), CTESHTMLINT_TextoRanura(textos[i], Ancho)});
    return opciones;
}

// Choices from the labels at positions desde..hasta (inclusive, cut at the table's end) of a
// text table, each with its position printed "%d" as value (channel plans, frequency steps).
template <std::size_t N, std::size_t Ancho>
std::vector<CTESHTML_Opcion> CTESHTML_OpcionesEtiquetas(const char (&etiquetas)[N][Ancho], std::size_t desde,
                                                        std::size_t hasta)
{
    std::vector<CTESHTML_Opcion> opciones;
    for (std::size_t i = desde; i <= hasta && i < N; ++i)
        opciones.push_back({std::to_string(i), CTESHTMLINT_TextoRanura(etiquetas[i], Ancho)});
    return opciones;
}

// Choices desde..hasta (inclusive), value and text both the number printed "%d".
std::vector<CTESHTML_Opcion> CTESHTML_OpcionesRango(int desde, int hasta);

// The hidden twin of an editable control: htmlanterior with the control's full field name
// and the value as painted (escaped).
std::string CTESHTML_Anterior(std::string_view nombreCampo, std::string_view valor);

// A text input. `plantilla` is one of htmlinput, htmlinputIP, htmlinputLCN,
// htmlinputCHName, htmlinput3digitos, htmlinputlikecaption (any other text gives an empty
// result). filtroTeclas is a key-filter fragment (or ""), alSalir a filled blur script
// (or ""), atributos extra attributes; the value is escaped.
std::string CTESHTML_Input(const char *plantilla, std::string_view id, int tam, std::string_view nombre,
                           std::string_view filtroTeclas, std::string_view alSalir, std::string_view atributos,
                           std::string_view valor, int maxLongitud);

// htmlinputlikecaptionFixed: a read-only caption with the value (escaped) and attributes.
std::string CTESHTML_InputFijo(std::string_view valor, std::string_view atributos);

// htmlcheckbox with the marker htmlcheckboxmarcado when marcado, else an empty marker.
std::string CTESHTML_Checkbox(std::string_view nombre, std::string_view id, bool marcado,
                              std::string_view atributos);

// The enable box of encoder input `entrada`: htmlentradaactiva ("I%d") or, for a unit with a
// single input, htmlentradaactivaunica ("I").
std::string CTESHTML_EntradaActiva(int entrada, bool unica, std::string_view nombre, std::string_view id,
                                   bool marcado);

// The enable box of IP line `salida` (htmlsalidaIPactiva); `atributos` follow the marker.
std::string CTESHTML_SalidaIPActiva(int salida, std::string_view nombre, std::string_view id, bool marcado,
                                    std::string_view atributos);

// htmlinputhidden with the value escaped.
std::string CTESHTML_Oculto(std::string_view id, std::string_view nombre, std::string_view valor);

// htmlboton with the label escaped.
std::string CTESHTML_Boton(std::string_view nombre, std::string_view id, std::string_view atributos,
                           std::string_view etiqueta);

// htmldiv / htmldivoculto around composed content (not escaped).
std::string CTESHTML_Div(std::string_view id, std::string_view contenido);
std::string CTESHTML_DivOculto(std::string_view id, std::string_view contenido);

// htmlc3c4 with resolution and frame rate of channels 3 and 4 (all escaped).
std::string CTESHTML_C3C4(std::string_view resolucion3, std::string_view cuadros3, std::string_view resolucion4,
                          std::string_view cuadros4);

// strJSMiunidad with the model text escaped: the connected unit's model cell on pages
// without a link.
std::string CTESHTML_Miunidad(std::string_view modelo);

// The unit suffix with every '_' turned into '.': "_010_000_000_021" gives
// ".010.000.000.021", the argument of the advanced-page link.
std::string CTESHTML_SufijoConPuntos(std::string_view sufijo);

// The model cell of a unit row: for the master strJSMiunidadConfig with the model text, for
// any other unit strJSMostrarConfigTotal with the dotted suffix and the model text. The
// model text is escaped; the suffix is composed by the program.
std::string CTESHTML_CeldaModelo(bool esMaster, std::string_view sufijo, std::string_view modelo);
