// paginas_unidad.h: the templates of two operations on one unit: the service list of one
// of its IP inputs (commands 29 and 30) and its advanced configuration page (command 24).
// Like every fragment of cteshtml.h they are printf formats ("%%" prints one '%'), filled
// through UTILS_Formatea. Document and request values are escaped before they enter them;
// the cells that hold controls receive fragments composed from the widget helpers and are
// not escaped again.
#pragma once

// ---------------------------------------------------------------------------
// Service list of one IP input (command 29)
// ---------------------------------------------------------------------------

// Opens and closes the list's pop-up content; the closing block ends every answer.
inline constexpr char htmlListaServiciosInicio[] = "<div id=\"listaservicios\" class=\"divlistaservicios\"><br>";
inline constexpr char htmlListaServiciosFin[] = "</div>\n";

// The input does not exist on this unit, it has no services, or the model has no IP port.
inline constexpr char htmlListaServiciosErronea[] =
    "<br><h2><center><strong>WRONG INPUT SELECTED OR THIS UNIT HAS NO IP INPUT</strong></center></h2>";

// IP input number; the caption and the four columns of the list.
inline constexpr char htmlListaServiciosCabecera[] =
    "<table id='tabaservicios' border=\"1\"><tbody>"
    "<tr><th class='cabeceraTabla' colspan='4'>INPUT %d SERVICE LIST</th></tr>"
    "<tr><th class='cabeceraTabla' style='width:77px'>Select</th>"
    "<th class='cabeceraTabla' style='width:231px'>CH. Name</th>"
    "<th class='cabeceraTabla' style='width:104px'>SERVICE ID</th>"
    "<th class='cabeceraTabla' style='width:103px'>BITRATE CURR/MAX (Mbps)</th></tr>";

// One service: selection box, name cell, service id cell, bitrate cell (each with its
// hidden values).
inline constexpr char htmlListaServiciosLinea[] =
    "<tr><td  style='width:77px'>%s</td><td  style='width:231px'>%s</td><td  style='width:104px' >%s</td><td style='width:103px'>%s</td></tr>";

// Free output bitrate of the unit (or "--").
inline constexpr char htmlListaServiciosPie[] =
    "</tbody></table><br><b>Free Output Bitrate:</b>&nbsp;<span id=\"bitratelibre\">%s</span><br>"
    "<b>Only Selected Services will be present in the output!</b><br>";

// Store or discard the selection, and the layer the page script shows while it stores.
inline constexpr char htmlListaServiciosBotones[] =
    "<br><button name=\"grabarlista\" id=\"grabarlista\" onclick='GrabarListaServicios(\"1\");' "
    "type=\"button\">Store Changes</button>&nbsp;"
    "<button name=\"descartarlista\" id=\"descartarlista\" onclick='GrabarListaServicios(\"0\");' "
    "type=\"button\">Discard Changes and Close</button><br>"
    "(close this page and save the configuration in the \"web connected\" unit to be sent clicking<br>"
    "\"Apply Selected\" button in any of the configuration pages)"
    "<div id=\"grabandolista\" style='display:none'><b>Storing Configuration....</b>"
    "<img src='/imagenes/loading.gif' border='0' style='vertical-align:middle'></div>";

// ---------------------------------------------------------------------------
// Advanced configuration of one unit (command 24)
// ---------------------------------------------------------------------------

// Opens and closes the page's content; the sections of the unit stand between them.
inline constexpr char htmlConfigTotalInicio[] =
    "<div id=\"configtotal\" class=\"divconfigtotal\"><br>";
inline constexpr char htmlConfigTotalFin[] = "</div>\n";

// Unit identifier; order, model text, serial number, MAC address and IP address.
inline constexpr char htmlConfigTotalCabecera[] =
    "<table id='tabaConfigTotal' border=\"1\"><tbody>"
    "<tr><th class='cabeceraTabla' colspan='5'>ADVANCED CONFIGURATION FOR THE UNIT ID %s</th></tr>"
    "<tr><th class='cabeceraTabla' style='width:3%%;'>#</th><th class='cabeceraTabla'>Model</th>"
    "<th class='cabeceraTabla'>Serial Number</th><th class='cabeceraTabla'>MAC ADDRESS</th>"
    "<th class='cabeceraTabla'>IP ADDRESS</th></tr>"
    "<tr><td><b>%s</b></td><td><b>%s</b></td><td><b>%s</b></td><td><b>%s</b></td><td><b>%s</b></td></tr>"
    "</tbody></table><br>";
