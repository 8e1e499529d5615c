// paginas_comunes.h: the page templates of the three common pages, the unit list, the
// network configuration and the test options. Like every fragment of cteshtml.h they are
// printf formats ("%%" prints one '%'), filled through UTILS_Formatea. Document values are
// escaped before they enter them; the cells that hold controls receive fragments that the
// page composed from the widget helpers and are not escaped again.
#pragma once

// Pieces shared by the sortable headers of the pages below: the arrow image after the
// caption, and the link that sorts the table by column i.
#define CTESHTMLINT_FLECHA "&nbsp;<img src='/imagenes/Flecha.png' border='0' style='vertical-align:-10%%'>"
#define CTESHTMLINT_ORDENA(columna, texto) \
    "<a class='linkTabla' href=# onclick='Ordenatabla(" #columna ",0);'>" texto CTESHTMLINT_FLECHA "</a>"
// The "for all units" caption at the start of every last row (unit count).
#define CTESHTMLINT_TODAS(columnas)                                                                        \
    "<tr><td class='ultimalinea' colspan='" #columnas "' style='align:left;text-align:left;' >&nbsp;<b>Set " \
    "Configuration for all Units (%d):</b></td>"
// The box of the last row that selects or clears every "forzarconfig" box of the page.
#define CTESHTMLINT_FORZARCONF                                                 \
    "<input name=\"forzarconf\" id=\"forzarconf\" type=\"checkbox\"  onclick=\"" \
    "SeleccionarChecboxconCheckbox(this,'forzarconfig','0');\">"
// A last-row box that drives every box of one base name (name <base>_all).
#define CTESHTMLINT_TODOSBOX(base)                                                                 \
    "<td class='ultimalinea'><input name=\"" base "_all\" id=\"" base "_all\" type=\"checkbox\"  " \
    "onclick=\"SeleccionarChecboxconCheckbox(this,'" base "','0');\"></td>"

// ---------------------------------------------------------------------------
// Unit list (commands 15 and 16)
// ---------------------------------------------------------------------------

inline constexpr char htmlListaUnidadesCabecera[] =
    "<table id='tabadatos' border=\"1\"><tbody><tr><th class='cabeceraTabla' style='width:3%%;'><a class='linkTabla' href=# onclick='Ordenatabla(0,0);'>#&nbsp;<img src='/imagenes/Flecha.png' border='0' style='vertical-align:-10%%'></a></th><th class='cabeceraTabla' style='width:10%%;' ><a class='linkTabla' href=# onclick='Ordenatabla(1,0);'  >Model&nbsp;<img src='/imagenes/Flecha.png' border='0' style='vertical-align:-10%%'></a></th><th class='cabeceraTabla'><a class='linkTabla' href=# onclick='Ordenatabla(2,0);'>ID&nbsp;<img src='/imagenes/Flecha.png' border='0' style='vertical-align:-10%%'></a></th><th  class='cabeceraTabla'><a class='linkTabla' href=# onclick='Ordenatabla(3,0);'>IP&nbsp;<img src='/imagenes/Flecha.png' border='0' style='vertical-align:-10%%'></a></th><th class='cabeceraTabla'>Serial Number</th><th class='cabeceraTabla'>Version Info</th><th class='cabeceraTabla'>Select</th></tr></tr>";
// order, model, identifier, IP address, serial number, hardware, software, boot, operating
// system and user-interface versions, check-box name, check-box id
inline constexpr char htmlListaUnidades[] =
    "<tr><td><strong>%s</strong></td><td><strong>%s</strong></td><td><strong>%s</strong></td><td><strong>%s</strong></td><td><strong>%s</strong></td><td><strong>Hardware - %s<br>Software - %s<br>Boot - %s<br>O.S. - %s<br>User Interface - %s</strong></td><td><input name=\"%s\" id=\"%s\" type=\"checkbox\"></td></tr>";
// unit count
inline constexpr char htmlultimalineaListaUnidades[] =
    "<tr><td class='ultimalinea' colspan='2' style='align:left;text-align:left;' >&nbsp;<b>Set Configuration for all Units (%d):</b></td><td  class='ultimalinea' colspan='4'>&nbsp</td><td  class='ultimalinea'><input name=\"forzarconf\" id=\"forzarconf\" type=\"checkbox\"  onclick=\"SeleccionarChecboxconCheckbox(this,'forzarconfig','0');\"></td></tr>";

// ---------------------------------------------------------------------------
// Network configuration (command 3)
// ---------------------------------------------------------------------------

inline constexpr char htmlNetworkCabecera[] =
    "<table id='tabadatos' border=\"1\"><tbody><tr>"
    "<th class='cabeceraTabla'>" CTESHTMLINT_ORDENA(0, "ID") "</th>"
    "<th class='cabeceraTabla' style='width:10%%;'>" CTESHTMLINT_ORDENA(1, "Model") "</th>"
    "<th class='cabeceraTabla' style='width:3%%;'>" CTESHTMLINT_ORDENA(2, "#") "</th>"
    "<th class='cabeceraTabla'>" CTESHTMLINT_ORDENA(3, "MAC Address") "</th>"
    "<th class='cabeceraTabla'>DHCP</th><th class='cabeceraTabla'>IP Address</th>"
    "<th class='cabeceraTabla'>Network MASK</th><th class='cabeceraTabla'>Gateway IP</th>"
    "<th class='cabeceraTabla'>Select</th></tr>";
// unit id, model cell, row number, MAC address, DHCP box, IP address input, mask input,
// gateway input, then in the Select cell: the hidden twins, the forzarconfig box and the
// order input with its twin
inline constexpr char htmlNetwork[] =
    "<tr><td>%s</td><td>%s</td><td>%d</td><td>%s</td><td>%s</td><td>%s</td><td>%s</td><td>%s</td>"
    "<td>%s%s%s</td></tr>";
// unit count
inline constexpr char htmlNetworkultimalinea[] =
    CTESHTMLINT_TODAS(4)
    "<td class='ultimalinea'><input name=\"dhcpcheck_all\" id=\"dhcpcheck_all\" type=\"checkbox\"  checked=\"yes\"  "
    "onclick=\"SeleccionarChecboxconCheckbox(this,'dhcpcheck','0');\"></td>"
    "<td class='ultimalinea'>&nbsp;</td>"
    "<td class='ultimalinea'><button name=\"networkmask_all\" id=\"networkmask_all\" "
    "onclick=\"ActivarPopUpNetworkMask();\" type=\"button\"> Set Network Mask </button></td>"
    "<td class='ultimalinea'><button name=\"gateway_all\" id=\"gateway_all\" "
    "onclick=\"ActivarPopUpGatewayIP();\" type=\"button\"> Set Gateway IP </button></td>"
    "<td class='ultimalinea'>" CTESHTMLINT_FORZARCONF
    "<button name=\"orden_all\" id=\"orden_all\" onclick=\"ActivarPopUpAutoNumber();\" type=\"button\">Auto</button>"
    "</td></tr>";
// Network section of the advanced page: DHCP box, IP address, mask and gateway inputs.
inline constexpr char htmlConfigTotalNetworkConfig[] =
    "<table id='tabaNetworkConfig' border=\"1\"><tbody>"
    "<tr><th class='cabeceraTabla' colspan='4'>Network Configuration:</th></tr>"
    "<tr><th class='cabeceraTabla'>DHCP</th><th class='cabeceraTabla'>IP Address</th>"
    "<th class='cabeceraTabla'>Network MASK</th><th class='cabeceraTabla'>Gateway IP</th></tr>"
    "<tr><td>%s</td><td>%s</td><td>%s</td><td>%s</td></tr></tbody></table>";

// ---------------------------------------------------------------------------
// Test options (command 14): the plain layout of QAM units has an EAS column, the EU
// layout of every other family has none.
// ---------------------------------------------------------------------------

#define CTESHTMLINT_TEST_CABECERA                                                \
    "<table id='tabadatos' border=\"1\"><tbody><tr>"                             \
    "<th class='cabeceraTabla' style='width:3%%;'>" CTESHTMLINT_ORDENA(0, "#") "</th>" \
    "<th class='cabeceraTabla' style='width:10%%;'>" CTESHTMLINT_ORDENA(1, "Model") "</th>"
#define CTESHTMLINT_TEST_COLUMNAS                                                             \
    "<th class='cabeceraTabla'>Reset</th><th class='cabeceraTabla'>Restore Factory default " \
    "configuration</th><th class='cabeceraTabla'>LED Blink</th>"

inline constexpr char htmlinfotestinicio[] =
    CTESHTMLINT_TEST_CABECERA "<th class='cabeceraTabla'>EAS</th>" CTESHTMLINT_TEST_COLUMNAS
    "<th class='cabeceraTabla'>Select</th></tr>";
inline constexpr char htmlinfotestinicioEU[] =
    CTESHTMLINT_TEST_CABECERA CTESHTMLINT_TEST_COLUMNAS "<th class='cabeceraTabla'>Select</th></tr>";

// order, model cell, EAS box, Reset box, Factory box, LED box, forzarconfig box, hidden
// fields of the row
inline constexpr char htmlinfotest[] =
    "<tr><td><b>%s</b></td><td>%s</td><td>%s</td><td>%s</td><td>%s</td><td>%s</td><td>%s%s</td></tr>";
// order, model cell, Reset box, Factory box, LED box, forzarconfig box, hidden fields of
// the row (among them the EAS value "0")
inline constexpr char htmlinfotestEU[] =
    "<tr><td><b>%s</b></td><td>%s</td><td>%s</td><td>%s</td><td>%s</td><td>%s%s</td></tr>";

// unit count. The LED column has no box for all units; a hidden empty cell stands between
// the Reset and Factory cells.
#define CTESHTMLINT_TEST_ULTIMA_RESTO                                                   \
    CTESHTMLINT_TODOSBOX("treset") "<td class='ultimalinea' style='display:none'></td>" \
    CTESHTMLINT_TODOSBOX("tfab") "<td class='ultimalinea'>&nbsp;</td>"                  \
    "<td class='ultimalinea'>" CTESHTMLINT_FORZARCONF "</td></tr>"
inline constexpr char htmlultimalinea[] =
    CTESHTMLINT_TODAS(2) CTESHTMLINT_TODOSBOX("teas") CTESHTMLINT_TEST_ULTIMA_RESTO;
inline constexpr char htmlultimalineaEU[] = CTESHTMLINT_TODAS(2) CTESHTMLINT_TEST_ULTIMA_RESTO;

// Test section of the advanced page: EAS (plain only), Reset, Factory and LED boxes, then
// the hidden fields.
#define CTESHTMLINT_TEST_TOTAL(columnas)                                                   \
    "<table id='tabatestConfig' border=\"1\"><tbody><tr><th class='cabeceraTabla' colspan='" #columnas \
    "'>Test Options:</th></tr><tr>"
inline constexpr char htmlConfigTotaltestConfig[] =
    CTESHTMLINT_TEST_TOTAL(4) "<th class='cabeceraTabla'>EAS</th>" CTESHTMLINT_TEST_COLUMNAS
    "</tr><tr><td>%s</td><td>%s</td><td>%s</td><td>%s%s</td></tr></tbody></table>";
inline constexpr char htmlConfigTotaltestConfigEU[] =
    CTESHTMLINT_TEST_TOTAL(3) CTESHTMLINT_TEST_COLUMNAS
    "</tr><tr><td>%s</td><td>%s</td><td>%s%s</td></tr></tbody></table>";

#undef CTESHTMLINT_FLECHA
#undef CTESHTMLINT_ORDENA
#undef CTESHTMLINT_TODAS
#undef CTESHTMLINT_FORZARCONF
#undef CTESHTMLINT_TODOSBOX
#undef CTESHTMLINT_TEST_CABECERA
#undef CTESHTMLINT_TEST_COLUMNAS
#undef CTESHTMLINT_TEST_ULTIMA_RESTO
#undef CTESHTMLINT_TEST_TOTAL
