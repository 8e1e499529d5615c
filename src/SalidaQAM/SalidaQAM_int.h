// SalidaQAM_int.h: the HTML templates of the QAM pages, printf formats filled through
// UTILS_Formatea ("%%" prints one '%'). Cells arrive composed and escaped.
#pragma once

// A header cell that sorts the table by column `indice` (`tipo` 1 on status pages, 0 on
// configuration pages) through the page script's Ordenatabla.
#define SALQAMINT_ORDENABLE(indice, tipo, texto)                                                             \
    "<a class='linkTabla' href=# onclick='Ordenatabla(" #indice "," #tipo ");'>" texto                       \
    "&nbsp;<img src='/imagenes/Flecha.png' border='0' style='vertical-align:-10%%'></a>"

#define SALQAMINT_ABRETABLA "<table id='tabadatos' border=\"1\"><tbody><tr>"
#define SALQAMINT_TH(texto) "<th class='cabeceraTabla'>" texto "</th>"
#define SALQAMINT_TH_ORDEN(tipo)                                                                              \
    "<th class='cabeceraTabla' style='width:3%%;'>" SALQAMINT_ORDENABLE(0, tipo, "#") "</th>"                 \
    "<th class='cabeceraTabla' style='width:10%%;'>" SALQAMINT_ORDENABLE(1, tipo, "Model") "</th>"
#define SALQAMINT_TH_LEDS                                                                                     \
    SALQAMINT_TH("Temp") SALQAMINT_TH("EAS") SALQAMINT_TH("CH1") SALQAMINT_TH("CH2") SALQAMINT_TH("CH3")      \
    SALQAMINT_TH("CH4") SALQAMINT_TH("OUT") SALQAMINT_TH("RF Loop")
#define SALQAMINT_TH_SERVICIOS(mayor)                                                                         \
    SALQAMINT_TH("IN Name") SALQAMINT_TH("IN SID") SALQAMINT_TH("OUT Name") SALQAMINT_TH("Table Type")        \
    mayor SALQAMINT_TH("Minor CH. #") SALQAMINT_TH("TS ID") SALQAMINT_TH("Video PID")                          \
    SALQAMINT_TH("Audio PID") SALQAMINT_TH("OUT SID")
#define SALQAMINT_TH_SALIDA                                                                                   \
    SALQAMINT_TH("Table") SALQAMINT_TH("Channel") SALQAMINT_TH("Level") SALQAMINT_TH("Mode")                  \
    SALQAMINT_TH("Interleaving") SALQAMINT_TH("Baudrate (Mbaud)") SALQAMINT_TH("Output") SALQAMINT_TH("RF Loop")
#define SALQAMINT_ABRECONFIGTOTAL(titulo)                                                                     \
    "<table class='tablaconfigtotal' border=\"1\"><caption class='captionconfigtotal'>" titulo                \
    "</caption><tbody><tr>"
#define SALQAMINT_TD "<td>%s</td>"
#define SALQAMINT_TD_FUERTE "<td><strong>%s</strong></td>"
// The select cell of a configuration row: "forzarconfig" (name, id, checked marker), then
// the row's hidden fields.
#define SALQAMINT_TD_SELECCION "<td><input name=\"%s\" id=\"%s\" type=\"checkbox\" %s >%s</td>"
#define SALQAMINT_TD_ULTIMA_ROTULO                                                                            \
    "<tr><td class='ultimalinea' colspan='2' style='align:left;text-align:left;' >&nbsp;"                     \
    "<b>Set Configuration for all Units (%d):</b></td>"
#define SALQAMINT_TD_ULTIMA "<td class='ultimalinea'>%s</td>"
#define SALQAMINT_TD_ULTIMA_VACIA(columnas) "<td class='ultimalinea' colspan='" #columnas "'>&nbsp;</td>"
#define SALQAMINT_TD_FORZARCONF                                                                               \
    "<td class='ultimalinea'><input name=\"forzarconf\" id=\"forzarconf\" type=\"checkbox\" "                 \
    "onclick=\"SeleccionarChecboxconCheckbox(this,'forzarconfig','0');\"></td></tr>"

// --- Quick status -----------------------------------------------------------
inline constexpr char htmlsondeorapidoCabeceraQAM[] =
    SALQAMINT_ABRETABLA SALQAMINT_TH_ORDEN(1) SALQAMINT_TH_LEDS SALQAMINT_TH("Output Table")
        SALQAMINT_TH("Output Channel") SALQAMINT_TH("IP") SALQAMINT_TH("Watermarking ID") SALQAMINT_TH("STATUS") "</tr>";
// order, model, Temp, EAS, CH1..CH4, OUT, RF Loop, table, channel, IP, watermarking, status
inline constexpr char htmlsondeorapidoQAM[] =
    "<tr>" SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD
        SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD_FUERTE SALQAMINT_TD_FUERTE SALQAMINT_TD_FUERTE
            SALQAMINT_TD_FUERTE "</tr>";

// --- Detailed status --------------------------------------------------------
inline constexpr char htmlsondeoDetaladoCabeceraQAM[] =
    SALQAMINT_ABRETABLA SALQAMINT_TH_ORDEN(1) "<th class='cabeceraTabla'>" SALQAMINT_ORDENABLE(2, 1, "ID") "</th>"
        SALQAMINT_TH("Serial Number") SALQAMINT_TH("Temp") SALQAMINT_TH("Resolution/Framerate")
            SALQAMINT_TH("Version Info") SALQAMINT_TH("Upgrade Options") "</tr>";
// order, model, ID, serial number, temperature, resolution/frame rate, versions, options
inline constexpr char htmlsondeoDetaladoQAM[] =
    "<tr>" SALQAMINT_TD_FUERTE SALQAMINT_TD_FUERTE SALQAMINT_TD_FUERTE SALQAMINT_TD_FUERTE SALQAMINT_TD_FUERTE
        SALQAMINT_TD_FUERTE SALQAMINT_TD_FUERTE SALQAMINT_TD_FUERTE "</tr>";

// Advanced page: the eight LEDs, resolution/frame rate and versions.
inline constexpr char htmlConfigTotalUnitStatusQAM[] =
    SALQAMINT_ABRECONFIGTOTAL("Unit Status:") SALQAMINT_TH_LEDS SALQAMINT_TH("Resolution/Framerate")
        SALQAMINT_TH("Version Info") "</tr><tr>" SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD
            SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD_FUERTE SALQAMINT_TD_FUERTE "</tr></tbody></table><br><br>";

// --- Transport --------------------------------------------------------------
// "Major CH. #" sorts the page's table; the advanced page's block does not sort.
inline constexpr char htmlinfotransporteinicioQAM[] =
    SALQAMINT_ABRETABLA SALQAMINT_TH_ORDEN(0)
        SALQAMINT_TH_SERVICIOS("<th class='cabeceraTabla'>" SALQAMINT_ORDENABLE(4, 0, "Major CH. #") "</th>")
            SALQAMINT_TH("Select") "</tr>";
// order, model, the ten service columns, forzarconfig name and id, its checked marker,
// hidden fields
inline constexpr char htmlinfotransporteQAM[] =
    "<tr>" SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD
        SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD_SELECCION "</tr>";
// unit count, the "autochan_all" select
inline constexpr char htmlultimalineaTransporteQAM[] =
    SALQAMINT_TD_ULTIMA_ROTULO SALQAMINT_TD_ULTIMA_VACIA(3) SALQAMINT_TD_ULTIMA
    "<td class='ultimalinea' colspan='2'><button name=\"autochnumber_all\" id=\"autochnumber_all\" "
    "onclick=\"NumeraMajorChNumber(2,1);NumeraMinorChNumber(1,1);\" type=\"button\">Automatic channel numbering</button></td>"
    "<td class='ultimalinea'><button name=\"autotsid_all\" id=\"autotsid_all\" "
    "onclick=\"NumeraCampo('tsid',1,1,0);\" type=\"button\">Auto</button></td>" SALQAMINT_TD_ULTIMA_VACIA(2)
    "<td class='ultimalinea'><button name=\"autosvcid_all\" id=\"autosvcid_all\" "
    "onclick=\"NumeraCampo('svcid',1,1,1);\" type=\"button\">Auto</button></td>" SALQAMINT_TD_FORZARCONF;
// the ten service columns
inline constexpr char htmlConfigTotalTransportConfigQAM[] =
    SALQAMINT_ABRECONFIGTOTAL("Transport Configuration:") SALQAMINT_TH_SERVICIOS(SALQAMINT_TH("Major CH. #"))
        "</tr><tr>" SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD
            SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD "</tr></tbody></table>";

// --- Output -----------------------------------------------------------------
inline constexpr char htmlinfosalidainicioQAM[] =
    SALQAMINT_ABRETABLA SALQAMINT_TH_ORDEN(0) SALQAMINT_TH_SALIDA SALQAMINT_TH("Select") "</tr>";
// order, model (its cell closed twice, as the pages have always had it), Table, Channel,
// Level, Mode, Interleaving, Baudrate, Output, RF Loop, forzarconfig name and id, marker,
// hidden fields
inline constexpr char htmlinfosalidaQAM[] =
    "<tr>" SALQAMINT_TD SALQAMINT_TD "</td>" SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD
        SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD_SELECCION "</tr>";
// unit count, "outtab_all", "outmod_all", "outint_all", "outout_all"
inline constexpr char htmlultimalineaSalidaQAM[] =
    SALQAMINT_TD_ULTIMA_ROTULO SALQAMINT_TD_ULTIMA SALQAMINT_TD_ULTIMA_VACIA(2) SALQAMINT_TD_ULTIMA SALQAMINT_TD_ULTIMA
        SALQAMINT_TD_ULTIMA_VACIA(1) SALQAMINT_TD_ULTIMA
    "<td class='ultimalinea'><input name=\"outrfl_all\" id=\"outrfl_all\" type=\"checkbox\"  checked=\"yes\" "
    "onclick=\"SeleccionarChecboxconCheckbox(this,'outrfl','0');\"></td>" SALQAMINT_TD_FORZARCONF;
// Table, Channel, Level, Mode, Interleaving, Baudrate, Output, RF Loop
inline constexpr char htmlConfigTotalOutputConfigQAM[] =
    SALQAMINT_ABRECONFIGTOTAL("Output Configuration:") SALQAMINT_TH_SALIDA "</tr><tr>" SALQAMINT_TD SALQAMINT_TD
        SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD SALQAMINT_TD "</tr></tbody></table>";

// Events of the all-units selects.
inline constexpr char strJSCambioTodasQAM[] = "onclick='CambioVideocodecAll(this,\"1\");'";
inline constexpr char strJSCambioSalidaTodasQAM[] = "onclick='CambioOUTModeQAMAll(this,\"0\");'";
