// SalidaCOFDM_int.h: the HTML templates of the COFDM pages, printf formats filled through
// UTILS_Formatea ("%%" prints one '%'). Cells arrive composed and escaped.
#pragma once

// A header cell that sorts the table by column `indice` (`tipo` 1 on status pages, 0 on
// configuration pages) through the page script's Ordenatabla.
#define SALCOFDMINT_ORDENABLE(indice, tipo, texto)                                                           \
    "<a class='linkTabla' href=# onclick='Ordenatabla(" #indice "," #tipo ");'>" texto                       \
    "&nbsp;<img src='/imagenes/Flecha.png' border='0' style='vertical-align:-10%%'></a>"

#define SALCOFDMINT_ABRETABLA "<table id='tabadatos' border=\"1\"><tbody><tr>"
#define SALCOFDMINT_TH(texto) "<th class='cabeceraTabla'>" texto "</th>"
#define SALCOFDMINT_TH_ORDEN(tipo)                                                                            \
    "<th class='cabeceraTabla' style='width:3%%;'>" SALCOFDMINT_ORDENABLE(0, tipo, "#") "</th>"               \
    "<th class='cabeceraTabla' style='width:10%%;'>" SALCOFDMINT_ORDENABLE(1, tipo, "Model") "</th>"
// The quick-status row has no emergency-alert LED; the advanced page's block shows all eight.
#define SALCOFDMINT_TH_LEDS_SIN_EAS                                                                           \
    SALCOFDMINT_TH("Temp") SALCOFDMINT_TH("CH1") SALCOFDMINT_TH("CH2") SALCOFDMINT_TH("CH3")                  \
    SALCOFDMINT_TH("CH4") SALCOFDMINT_TH("OUT") SALCOFDMINT_TH("RF Loop")
#define SALCOFDMINT_TH_LEDS                                                                                   \
    SALCOFDMINT_TH("Temp") SALCOFDMINT_TH("EAS") SALCOFDMINT_TH("CH1") SALCOFDMINT_TH("CH2")                  \
    SALCOFDMINT_TH("CH3") SALCOFDMINT_TH("CH4") SALCOFDMINT_TH("OUT") SALCOFDMINT_TH("RF Loop")
// The DVB columns of the transport page, from "TS ID" to "Audio PID"; the column after
// "LCN type" has no title.
#define SALCOFDMINT_TH_TRANSPORTE                                                                             \
    SALCOFDMINT_TH("TS ID") SALCOFDMINT_TH("NET. ID") SALCOFDMINT_TH("NETWORK NAME")                          \
    SALCOFDMINT_TH("OR. NET. ID") SALCOFDMINT_TH("NIT VS.") SALCOFDMINT_TH("SDT VS.")                         \
    SALCOFDMINT_TH("LCN type") SALCOFDMINT_TH("") SALCOFDMINT_TH("LCN") SALCOFDMINT_TH("IN Name")             \
    SALCOFDMINT_TH("IN SID") SALCOFDMINT_TH("OUT Name") SALCOFDMINT_TH("OUT SID")                             \
    SALCOFDMINT_TH("Video PID") SALCOFDMINT_TH("Audio PID")
#define SALCOFDMINT_TH_SALIDA                                                                                 \
    SALCOFDMINT_TH("Table") SALCOFDMINT_TH("Channel") SALCOFDMINT_TH("Freq. Adj.") SALCOFDMINT_TH("Level")    \
    SALCOFDMINT_TH("Mode") SALCOFDMINT_TH("BW") SALCOFDMINT_TH("Guard Interval") SALCOFDMINT_TH("FEC")        \
    SALCOFDMINT_TH("CELL ID") SALCOFDMINT_TH("Baudrate") SALCOFDMINT_TH("Output") SALCOFDMINT_TH("RF Loop")
#define SALCOFDMINT_ABRECONFIGTOTAL(titulo)                                                                   \
    "<table class='tablaconfigtotal' border=\"1\"><caption class='captionconfigtotal'>" titulo                \
    "</caption><tbody><tr>"
#define SALCOFDMINT_TD "<td>%s</td>"
#define SALCOFDMINT_TD_FUERTE "<td><strong>%s</strong></td>"
#define SALCOFDMINT_TD3 SALCOFDMINT_TD SALCOFDMINT_TD SALCOFDMINT_TD
#define SALCOFDMINT_TD6 SALCOFDMINT_TD3 SALCOFDMINT_TD3
// The select cell of a configuration row: "forzarconfig" (name, id, checked marker), then
// the row's hidden fields.
#define SALCOFDMINT_TD_SELECCION "<td><input name=\"%s\" id=\"%s\" type=\"checkbox\" %s >%s</td>"
#define SALCOFDMINT_TD_ULTIMA_ROTULO                                                                          \
    "<tr><td class='ultimalinea' colspan='2' style='align:left;text-align:left;' >&nbsp;"                     \
    "<b>Set Configuration for all Units (%d):</b></td>"
#define SALCOFDMINT_TD_ULTIMA "<td class='ultimalinea'>%s</td>"
#define SALCOFDMINT_TD_ULTIMA_VACIA(columnas) "<td class='ultimalinea' colspan='" #columnas "'>&nbsp;</td>"
#define SALCOFDMINT_TD_AUTO(campo, funcion)                                                                   \
    "<td class='ultimalinea'><button name=\"auto" campo "_all\" id=\"auto" campo "_all\" "                    \
    "onclick=\"" funcion "\" type=\"button\">Auto</button></td>"
#define SALCOFDMINT_TD_FORZARCONF                                                                             \
    "<td class='ultimalinea'><input name=\"forzarconf\" id=\"forzarconf\" type=\"checkbox\" "                 \
    "onclick=\"SeleccionarChecboxconCheckbox(this,'forzarconfig','0');\"></td></tr>"

// --- Quick status -----------------------------------------------------------
inline constexpr char htmlsondeorapidoCabeceraCOFDM[] =
    SALCOFDMINT_ABRETABLA SALCOFDMINT_TH_ORDEN(1) SALCOFDMINT_TH_LEDS_SIN_EAS SALCOFDMINT_TH("Output Table")
        SALCOFDMINT_TH("Output Channel") SALCOFDMINT_TH("IP") SALCOFDMINT_TH("Watermarking ID")
            SALCOFDMINT_TH("STATUS") "</tr>";
// order, model, Temp, CH1..CH4, OUT, RF Loop, table, channel, IP, watermarking, status
inline constexpr char htmlsondeorapidoCOFDM[] =
    "<tr>" SALCOFDMINT_TD6 SALCOFDMINT_TD3 SALCOFDMINT_TD SALCOFDMINT_TD_FUERTE SALCOFDMINT_TD_FUERTE
        SALCOFDMINT_TD_FUERTE SALCOFDMINT_TD_FUERTE "</tr>";

// --- Detailed status --------------------------------------------------------
inline constexpr char htmlsondeoDetaladoCabeceraCOFDM[] =
    SALCOFDMINT_ABRETABLA SALCOFDMINT_TH_ORDEN(1) "<th class='cabeceraTabla'>" SALCOFDMINT_ORDENABLE(2, 1, "ID") "</th>"
        SALCOFDMINT_TH("Serial Number") SALCOFDMINT_TH("Temp") SALCOFDMINT_TH("Resolution/Framerate")
            SALCOFDMINT_TH("Version Info") SALCOFDMINT_TH("Upgrade Options") "</tr>";
// order, model, ID, serial number, temperature, resolution/frame rate, versions, options
inline constexpr char htmlsondeoDetaladoCOFDM[] =
    "<tr>" SALCOFDMINT_TD_FUERTE SALCOFDMINT_TD_FUERTE SALCOFDMINT_TD_FUERTE SALCOFDMINT_TD_FUERTE
        SALCOFDMINT_TD_FUERTE SALCOFDMINT_TD_FUERTE SALCOFDMINT_TD_FUERTE SALCOFDMINT_TD_FUERTE "</tr>";

// Advanced page: the eight LEDs, resolution/frame rate and versions.
inline constexpr char htmlConfigTotalUnitStatusCOFDM[] =
    SALCOFDMINT_ABRECONFIGTOTAL("Unit Status:") SALCOFDMINT_TH_LEDS SALCOFDMINT_TH("Resolution/Framerate")
        SALCOFDMINT_TH("Version Info") "</tr><tr>" SALCOFDMINT_TD6 SALCOFDMINT_TD SALCOFDMINT_TD
            SALCOFDMINT_TD_FUERTE SALCOFDMINT_TD_FUERTE "</tr></tbody></table><br><br>";

// --- Transport --------------------------------------------------------------
inline constexpr char htmlinfotransporteinicioCOFDM[] =
    SALCOFDMINT_ABRETABLA SALCOFDMINT_TH_ORDEN(0) SALCOFDMINT_TH_TRANSPORTE SALCOFDMINT_TH("Select") "</tr>";
// order, model, the fifteen DVB columns, forzarconfig name and id, its checked marker, hidden
// fields
inline constexpr char htmlinfotransporteCOFDM[] =
    "<tr>" SALCOFDMINT_TD SALCOFDMINT_TD SALCOFDMINT_TD6 SALCOFDMINT_TD6 SALCOFDMINT_TD3 SALCOFDMINT_TD_SELECCION
    "</tr>";
// unit count, "nitvs_all", "sdtvs_all"
inline constexpr char htmlultimalineaTransporteCOFDM[] =
    SALCOFDMINT_TD_ULTIMA_ROTULO SALCOFDMINT_TD_AUTO("tsid", "NumeraCampo('tsid',1,1,0);")
        SALCOFDMINT_TD_AUTO("ntid", "NumeraCampo('ntid',1,1,0);") SALCOFDMINT_TD_ULTIMA_VACIA(1)
            SALCOFDMINT_TD_AUTO("onid", "NumeraCampo('onid',1,1,0);") SALCOFDMINT_TD_ULTIMA SALCOFDMINT_TD_ULTIMA
                SALCOFDMINT_TD_ULTIMA_VACIA(6) SALCOFDMINT_TD_AUTO("svcid", "NumeraCampo('svcid',1,1,1);")
                    SALCOFDMINT_TD_ULTIMA_VACIA(2) SALCOFDMINT_TD_FORZARCONF;
// the fifteen DVB columns
inline constexpr char htmlConfigTotalTransportConfigCOFDM[] =
    SALCOFDMINT_ABRECONFIGTOTAL("Transport Configuration:") SALCOFDMINT_TH_TRANSPORTE "</tr><tr>" SALCOFDMINT_TD6
        SALCOFDMINT_TD6 SALCOFDMINT_TD3 "</tr></tbody></table>";

// --- Output -----------------------------------------------------------------
inline constexpr char htmlinfosalidainicioCOFDM[] =
    SALCOFDMINT_ABRETABLA SALCOFDMINT_TH_ORDEN(0) SALCOFDMINT_TH_SALIDA SALCOFDMINT_TH("Select") "</tr>";
// order, model, Table, Channel, Freq. Adj., Level, Mode, BW, Guard Interval, FEC, CELL ID,
// Baudrate, Output, RF Loop, forzarconfig name and id, marker, hidden fields
inline constexpr char htmlinfosalidaCOFDM[] =
    "<tr>" SALCOFDMINT_TD SALCOFDMINT_TD SALCOFDMINT_TD6 SALCOFDMINT_TD6 SALCOFDMINT_TD_SELECCION "</tr>";
// unit count, "outtab_all", "frecstep_all", "outmod_all", "bwsal_all", "ingrd_all",
// "fecsal_all", "outout_all"
inline constexpr char htmlultimalineaSalidaCOFDM[] =
    SALCOFDMINT_TD_ULTIMA_ROTULO SALCOFDMINT_TD_ULTIMA
    "<td class='ultimalinea'><div id=\"tablaselect_all\"></div></td>" SALCOFDMINT_TD_ULTIMA
        SALCOFDMINT_TD_ULTIMA_VACIA(1) SALCOFDMINT_TD_ULTIMA SALCOFDMINT_TD_ULTIMA SALCOFDMINT_TD_ULTIMA
            SALCOFDMINT_TD_ULTIMA SALCOFDMINT_TD_ULTIMA_VACIA(2) SALCOFDMINT_TD_ULTIMA
    "<td class='ultimalinea'><input name=\"outrfl_all\" id=\"outrfl_all\" type=\"checkbox\"  checked=\"yes\" "
    "onclick=\"SeleccionarChecboxconCheckbox(this,'outrfl','0');\"></td>" SALCOFDMINT_TD_FORZARCONF;
// Table, Channel, Freq. Adj., Level, Mode, BW, Guard Interval, FEC, CELL ID, Baudrate,
// Output, RF Loop
inline constexpr char htmlConfigTotalOutputConfigCOFDM[] =
    SALCOFDMINT_ABRECONFIGTOTAL("Output Configuration:") SALCOFDMINT_TH_SALIDA "</tr><tr>" SALCOFDMINT_TD6
        SALCOFDMINT_TD6 "</tr></tbody></table>";

// --- Fragments of the rows --------------------------------------------------
// The read-only "0x" before a field edited as four hexadecimal digits.
inline constexpr char htmlcaptioncerox[] =
    "<input readonly class='inputsinbordesniespaciado' disabled value='0x' type='text'>";
// A field the unit's mode does not use: its value carried hidden, and "n/a" shown.
inline constexpr char htmlnoaplicablemodo[] = "%sn/a";

// Events of the all-units selects.
inline constexpr char strJSCambioTodasCOFDM[] = "onclick='CambioVideocodecAll(this,\"1\");'";
inline constexpr char strJSCambioSalidaTodasCOFDM[] = "onclick='CambioOUTModeQAMAll(this,\"0\");'";
