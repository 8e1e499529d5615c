// paginas_salida_ip.h: the templates of the IP input/output page (command 17) and of the
// "IP input/output:" section of the advanced page. QAM units use the US layout, which has a
// "Standard" column after "Enabled"; every other family uses the plain layout. The FEC and
// FEC Annex columns are painted but hidden. Like every fragment of cteshtml.h they are printf
// formats ("%%" prints one '%'), filled through UTILS_Formatea; document values are escaped
// before they enter them, the control cells are composed by the page and go in as they are.
#pragma once

// Sortable header cell pieces: the arrow image and the link that sorts by column i.
#define CTESHTMLINT_SIP_FLECHA "&nbsp;<img src='/imagenes/Flecha.png' border='0' style='vertical-align:-10%%'>"
#define CTESHTMLINT_SIP_ORDENA(columna, texto) \
    "<a class='linkTabla' href=# onclick='Ordenatabla(" #columna ",0);'>" texto CTESHTMLINT_SIP_FLECHA "</a>"
#define CTESHTMLINT_SIP_TH(texto) "<th class='cabeceraTabla'>" texto "</th>"
#define CTESHTMLINT_SIP_TH_OCULTA(texto) "<th class='cabeceraTabla' style='display:none'>" texto "</th>"

// Columns before and after the US-only "Standard" column.
#define CTESHTMLINT_SIP_COLUMNAS_MODO \
    CTESHTMLINT_SIP_TH("IP MODE") CTESHTMLINT_SIP_TH("IP Output type") CTESHTMLINT_SIP_TH("Enabled")
#define CTESHTMLINT_SIP_COLUMNAS_LINEA                                                                \
    CTESHTMLINT_SIP_TH("Services") CTESHTMLINT_SIP_TH("IP") CTESHTMLINT_SIP_TH("Port")                 \
    CTESHTMLINT_SIP_TH("MPEG data packets") CTESHTMLINT_SIP_TH("MODE") CTESHTMLINT_SIP_TH_OCULTA("FEC") \
    CTESHTMLINT_SIP_TH_OCULTA("FEC Annex")

#define CTESHTMLINT_SIP_CABECERA                                                                    \
    "<table id='tabadatos' border=\"1\"><tbody><tr>"                                                \
    "<th class='cabeceraTabla' style='width:3%%;'>" CTESHTMLINT_SIP_ORDENA(0, "#") "</th>"           \
    "<th class='cabeceraTabla' style='width:10%%;'>" CTESHTMLINT_SIP_ORDENA(1, "Model") "</th>" \
    CTESHTMLINT_SIP_COLUMNAS_MODO

inline constexpr char htmlSalidaIPCabeceraUSA[] = CTESHTMLINT_SIP_CABECERA CTESHTMLINT_SIP_TH(
    "Standard") CTESHTMLINT_SIP_COLUMNAS_LINEA CTESHTMLINT_SIP_TH("Select") "</tr>";
inline constexpr char htmlSalidaIPCabecera[] =
    CTESHTMLINT_SIP_CABECERA CTESHTMLINT_SIP_COLUMNAS_LINEA CTESHTMLINT_SIP_TH("Select") "</tr>";

// One unit's row. Placeholders: order, model cell, IP MODE select, IP Output type select,
// enable boxes, (US: Standard selects,) service buttons, address inputs, port inputs, packet
// selects, protocol selects, FEC boxes, FEC Annex selects, the forzarconfig box and the
// hidden fields of the row. Every per-line cell holds one divlineadentrodecelda per IP line.
#define CTESHTMLINT_SIP_FILA_INICIO "<tr><td><b>%s</b></td><td>%s</td><td>%s</td><td>%s</td><td>%s</td>"
#define CTESHTMLINT_SIP_FILA_FIN                                                                  \
    "<td>%s</td><td>%s</td><td>%s</td><td>%s</td><td>%s</td><td style='display:none'>%s</td>" \
    "<td style='display:none'>%s</td><td>%s%s</td></tr>"
inline constexpr char htmlSalidaIPUSA[] = CTESHTMLINT_SIP_FILA_INICIO "<td>%s</td>" CTESHTMLINT_SIP_FILA_FIN;
inline constexpr char htmlSalidaIP[] = CTESHTMLINT_SIP_FILA_INICIO CTESHTMLINT_SIP_FILA_FIN;

// One IP line inside a cell of the row, so that the lines of a unit stack in one cell.
inline constexpr char htmlSalidaIPlinea[] = "<div class='divlineadentrodecelda' >%s</div>";

// Last row (unit count): one control per column applies its value to every unit; the
// selects start at "Select" (99), which leaves each unit as it is. The output type select
// offers the two types the other way round from the rows ('0' MPTS, '1' SPTS) on purpose.
#define CTESHTMLINT_SIP_OPCION(valor, texto) "<option value=\"" valor "\"  >" texto "</option>"
#define CTESHTMLINT_SIP_SELECT_TODAS(base, opciones)                                                 \
    "<td class='ultimalinea'><select name=\"" base "_all\" id=\"" base "_all\" size=\"1\" "          \
    "onclick='CambioVideocodecAll(this,\"1\");'>" opciones                                           \
    "<option value=\"99\" selected=\"selected\" >Select</option></select></td>"
#define CTESHTMLINT_SIP_VACIA "<td class='ultimalinea'>&nbsp;</td>"
#define CTESHTMLINT_SIP_VACIA_OCULTA "<td class='ultimalinea' style='display:none'></td>"
#define CTESHTMLINT_SIP_ULTIMA_MODO                                                                   \
    "<tr><td class='ultimalinea' colspan='2' style='align:left;text-align:left;' >&nbsp;<b>Set "        \
    "Configuration for all Units (%d):</b></td>"                                                       \
    CTESHTMLINT_SIP_SELECT_TODAS("iptxrx", CTESHTMLINT_SIP_OPCION("0", "Disabled")                     \
                                 CTESHTMLINT_SIP_OPCION("1", "Output") CTESHTMLINT_SIP_OPCION("2", "Input")) \
    CTESHTMLINT_SIP_SELECT_TODAS("iptype", CTESHTMLINT_SIP_OPCION("0", "MPTS") CTESHTMLINT_SIP_OPCION("1", "SPTS")) \
    "<td class='ultimalinea'><input name=\"ipen_all\" id=\"ipen_all\" type=\"checkbox\"  "           \
    "onclick=\"SeleccionarChecboxconCheckbox(this,'ipen','0');\"></td>"
#define CTESHTMLINT_SIP_ULTIMA_LINEA                                                                   \
    CTESHTMLINT_SIP_VACIA CTESHTMLINT_SIP_VACIA CTESHTMLINT_SIP_VACIA                                  \
    CTESHTMLINT_SIP_SELECT_TODAS("ippackets", CTESHTMLINT_SIP_OPCION("1", "1") CTESHTMLINT_SIP_OPCION("2", "2") \
                                 CTESHTMLINT_SIP_OPCION("3", "3") CTESHTMLINT_SIP_OPCION("4", "4")     \
                                 CTESHTMLINT_SIP_OPCION("5", "5") CTESHTMLINT_SIP_OPCION("6", "6")     \
                                 CTESHTMLINT_SIP_OPCION("7", "7"))                                     \
    CTESHTMLINT_SIP_SELECT_TODAS("ipproto", CTESHTMLINT_SIP_OPCION("0", "UDP") CTESHTMLINT_SIP_OPCION("1", "RTP")) \
    CTESHTMLINT_SIP_VACIA_OCULTA CTESHTMLINT_SIP_VACIA_OCULTA                                          \
    "<td class='ultimalinea'><input name=\"forzarconf\" id=\"forzarconf\" type=\"checkbox\"  "       \
    "onclick=\"SeleccionarChecboxconCheckbox(this,'forzarconfig','0');\"></td></tr>"
inline constexpr char htmlSalidaIPultimalineaUSA[] =
    CTESHTMLINT_SIP_ULTIMA_MODO CTESHTMLINT_SIP_SELECT_TODAS(
        "scanstd", CTESHTMLINT_SIP_OPCION("0", "ATSC") CTESHTMLINT_SIP_OPCION("1", "DVB")) CTESHTMLINT_SIP_ULTIMA_LINEA;
inline constexpr char htmlSalidaIPultimalinea[] = CTESHTMLINT_SIP_ULTIMA_MODO CTESHTMLINT_SIP_ULTIMA_LINEA;

// "IP input/output:" section of the advanced page. Placeholders: IP MODE select, IP Output
// type select, enable boxes, (US: Standard selects,) service buttons, address inputs, port
// inputs, packet selects, protocol selects followed by the hidden fields, FEC boxes, FEC
// Annex selects.
#define CTESHTMLINT_SIP_TOTAL(columnas)                                                                  \
    "<table id='tabaSalidaIPConfig' border=\"1\"><tbody><tr><th class='cabeceraTabla' colspan='" #columnas \
    "'>IP input/output:</th></tr><tr>" CTESHTMLINT_SIP_COLUMNAS_MODO
#define CTESHTMLINT_SIP_TOTAL_FIN                                                                       \
    "<td>%s</td><td>%s</td><td>%s</td><td>%s</td><td>%s%s</td><td style='display:none'>%s</td>"     \
    "<td style='display:none'>%s</td></tr></tbody></table>"
inline constexpr char htmlConfigTotalSalidaIPConfigUSA[] =
    CTESHTMLINT_SIP_TOTAL(9) CTESHTMLINT_SIP_TH("Standard") CTESHTMLINT_SIP_COLUMNAS_LINEA
    "</tr><tr><td>%s</td><td>%s</td><td>%s</td><td>%s</td>" CTESHTMLINT_SIP_TOTAL_FIN;
inline constexpr char htmlConfigTotalSalidaIPConfig[] =
    CTESHTMLINT_SIP_TOTAL(8) CTESHTMLINT_SIP_COLUMNAS_LINEA
    "</tr><tr><td>%s</td><td>%s</td><td>%s</td>" CTESHTMLINT_SIP_TOTAL_FIN;

#undef CTESHTMLINT_SIP_FLECHA
#undef CTESHTMLINT_SIP_ORDENA
#undef CTESHTMLINT_SIP_TH
#undef CTESHTMLINT_SIP_TH_OCULTA
#undef CTESHTMLINT_SIP_COLUMNAS_MODO
#undef CTESHTMLINT_SIP_COLUMNAS_LINEA
#undef CTESHTMLINT_SIP_CABECERA
#undef CTESHTMLINT_SIP_FILA_INICIO
#undef CTESHTMLINT_SIP_FILA_FIN
#undef CTESHTMLINT_SIP_OPCION
#undef CTESHTMLINT_SIP_SELECT_TODAS
#undef CTESHTMLINT_SIP_VACIA
#undef CTESHTMLINT_SIP_VACIA_OCULTA
#undef CTESHTMLINT_SIP_ULTIMA_MODO
#undef CTESHTMLINT_SIP_ULTIMA_LINEA
#undef CTESHTMLINT_SIP_TOTAL
#undef CTESHTMLINT_SIP_TOTAL_FIN
