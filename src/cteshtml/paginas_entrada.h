// paginas_entrada.h: the templates of the encoder input configuration page (command 10) and
// of the "Input Configuration:" section of the advanced page. Like every fragment of
// cteshtml.h they are printf formats ("%%" prints one '%'), filled through UTILS_Formatea.
// The cells receive fragments that the page composed from the widget helpers (document
// values already escaped there) and are not escaped again.
//
// Three layouts: the default one (QAM units), the EU one (COFDM units: no audio codec and no
// closed-caption column) and the LAT one (ISDB-T and COFDM/QAM-B units: no closed-caption
// column). Each input of a unit is one line inside the unit's cells.
#pragma once

// The arrow image after a sortable caption, and the link that sorts the table by column i.
#define CTESHTMLINT_ENT_FLECHA "&nbsp;<img src='/imagenes/Flecha.png' border='0' style='vertical-align:-10%%'>"
#define CTESHTMLINT_ENT_ORDENA(columna, texto) \
    "<a class='linkTabla' href=# onclick='Ordenatabla(" #columna ",0);'>" texto CTESHTMLINT_ENT_FLECHA "</a>"
#define CTESHTMLINT_ENT_TH(texto) "<th class='cabeceraTabla'>" texto "</th>"

// Column captions, in the order of the cells.
#define CTESHTMLINT_ENT_COL_VIDEO                                                                   \
    CTESHTMLINT_ENT_TH("Enabled") CTESHTMLINT_ENT_TH("Video Input") CTESHTMLINT_ENT_TH("Video Codec") \
    CTESHTMLINT_ENT_TH("Encoding") CTESHTMLINT_ENT_TH("Video Bitrate (Mbps)")                         \
    CTESHTMLINT_ENT_TH("Max Output Resolution") CTESHTMLINT_ENT_TH("Aspect Ratio") CTESHTMLINT_ENT_TH("GOP")
#define CTESHTMLINT_ENT_COL_AUDINP CTESHTMLINT_ENT_TH("Audio Input")
#define CTESHTMLINT_ENT_COL_AUDCOD CTESHTMLINT_ENT_TH("Audio Codec")
#define CTESHTMLINT_ENT_COL_AUDIO CTESHTMLINT_ENT_TH("Audio Bitrate (kbps)") CTESHTMLINT_ENT_TH("Audio Level")
#define CTESHTMLINT_ENT_COL_CC CTESHTMLINT_ENT_TH("Closed Caption")
#define CTESHTMLINT_ENT_COL_SELECT CTESHTMLINT_ENT_TH("Select")

#define CTESHTMLINT_ENT_CABECERA                                                             \
    "<table id='tabadatos' border=\"1\"><tbody><tr>"                                         \
    "<th class='cabeceraTabla' style='width:3%%;'>" CTESHTMLINT_ENT_ORDENA(0, "#") "</th>"     \
    "<th class='cabeceraTabla' style='width:10%%;'>" CTESHTMLINT_ENT_ORDENA(1, "Model") "</th>"

// ---------------------------------------------------------------------------
// Table head
// ---------------------------------------------------------------------------

inline constexpr char htmlinfoentradainicio[] =
    CTESHTMLINT_ENT_CABECERA CTESHTMLINT_ENT_COL_VIDEO CTESHTMLINT_ENT_COL_AUDINP CTESHTMLINT_ENT_COL_AUDCOD
        CTESHTMLINT_ENT_COL_AUDIO CTESHTMLINT_ENT_COL_CC CTESHTMLINT_ENT_COL_SELECT "</tr>";
inline constexpr char htmlinfoentradainicioEU[] =
    CTESHTMLINT_ENT_CABECERA CTESHTMLINT_ENT_COL_VIDEO CTESHTMLINT_ENT_COL_AUDINP CTESHTMLINT_ENT_COL_AUDIO
        CTESHTMLINT_ENT_COL_SELECT "</tr>";
inline constexpr char htmlinfoentradainicioLAT[] =
    CTESHTMLINT_ENT_CABECERA CTESHTMLINT_ENT_COL_VIDEO CTESHTMLINT_ENT_COL_AUDINP CTESHTMLINT_ENT_COL_AUDCOD
        CTESHTMLINT_ENT_COL_AUDIO CTESHTMLINT_ENT_COL_SELECT "</tr>";

// ---------------------------------------------------------------------------
// One unit's row
// ---------------------------------------------------------------------------
// order number, model cell, then one cell per column of the layout (the lines of every
// input stacked inside), then in the Select cell the forzarconfig box and the hidden fields.

#define CTESHTMLINT_ENT_CELDA "<td>%s</td>"
#define CTESHTMLINT_ENT_CELDAS_VIDEO                                                                      \
    CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_CELDA \
    CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_CELDA
#define CTESHTMLINT_ENT_FILA_INICIO "<tr><td><b>%s</b></td><td>%s</td>" CTESHTMLINT_ENT_CELDAS_VIDEO
#define CTESHTMLINT_ENT_FILA_FIN "<td>%s%s</td></tr>"

// order, model, Enabled, Video Input, Video Codec, Encoding, Video Bitrate, Max Output
// Resolution, Aspect Ratio, GOP, Audio Input, Audio Codec, Audio Bitrate, Audio Level,
// Closed Caption, forzarconfig box, hidden fields
inline constexpr char htmlinfoentrada[] = CTESHTMLINT_ENT_FILA_INICIO
    CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_CELDA
        CTESHTMLINT_ENT_FILA_FIN;
// as the default row without Audio Codec and Closed Caption
inline constexpr char htmlinfoentradaEU[] = CTESHTMLINT_ENT_FILA_INICIO
    CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_FILA_FIN;
// as the default row without Closed Caption
inline constexpr char htmlinfoentradaLAT[] = CTESHTMLINT_ENT_FILA_INICIO
    CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_FILA_FIN;

// ---------------------------------------------------------------------------
// Last row: one value for every unit
// ---------------------------------------------------------------------------
// Each select ends with the preselected choice 99 "Select", which leaves every unit as it
// is. Its labels are not the rows' ones ("1080i", "HDMI 48kHz", "HDMI 44.1kHz"; the LAT
// layout "HDMI 48 kHz", "HDMI 44.1 kHz") and its 480I carries the value 48: the page script
// knows them so.

#define CTESHTMLINT_ENT_OPCION(valor, texto) "<option value=\"" valor "\"  >" texto "</option>"
#define CTESHTMLINT_ENT_TODOS(base, opciones)                                                                  \
    "<td class='ultimalinea'><select name=\"" base "_all\" id=\"" base "_all\" size=\"1\" "                     \
    "onclick='CambioVideocodecAll(this,\"1\");'>" opciones "<option value=\"99\" selected=\"selected\" >Select" \
    "</option></select></td>"
#define CTESHTMLINT_ENT_VACIA "<td class='ultimalinea'>&nbsp;</td>"

#define CTESHTMLINT_ENT_TODAS_VIDEO                                                                              \
    "<tr><td class='ultimalinea' colspan='2' style='align:left;text-align:left;' >&nbsp;<b>Set Configuration "   \
    "for all Units (%d):</b></td>" CTESHTMLINT_ENT_VACIA                                                         \
    CTESHTMLINT_ENT_TODOS("vidinp", CTESHTMLINT_ENT_OPCION("0", "Comp.") CTESHTMLINT_ENT_OPCION("1", "HDMI")     \
                                        CTESHTMLINT_ENT_OPCION("2", "CVBS"))                                     \
    CTESHTMLINT_ENT_TODOS("vidcod", CTESHTMLINT_ENT_OPCION("0", "MPEG2") CTESHTMLINT_ENT_OPCION(                 \
                                        "1", "H264 AUTO(4.0)") CTESHTMLINT_ENT_OPCION("5", "H264-HIGH(4.1)")     \
                                        CTESHTMLINT_ENT_OPCION("6", "H264(4.2)") CTESHTMLINT_ENT_OPCION(         \
                                            "7", "H264(5.0)") CTESHTMLINT_ENT_OPCION("8", "H264(5.1)"))          \
    CTESHTMLINT_ENT_TODOS("ffencod", CTESHTMLINT_ENT_OPCION("0", "Field") CTESHTMLINT_ENT_OPCION("1", "Frame"))  \
    CTESHTMLINT_ENT_VACIA                                                                                        \
    CTESHTMLINT_ENT_TODOS("maxoutres",                                                                           \
                          CTESHTMLINT_ENT_OPCION("0", "AUTO") CTESHTMLINT_ENT_OPCION("256", "1080PHR")           \
                              CTESHTMLINT_ENT_OPCION("2", "1080i") CTESHTMLINT_ENT_OPCION("4", "720P")           \
                                  CTESHTMLINT_ENT_OPCION("8", "576P") CTESHTMLINT_ENT_OPCION("16", "576I")       \
                                      CTESHTMLINT_ENT_OPCION("32", "480P") CTESHTMLINT_ENT_OPCION("48", "480I")) \
    CTESHTMLINT_ENT_TODOS("asprat", CTESHTMLINT_ENT_OPCION("0", "4:3") CTESHTMLINT_ENT_OPCION("1", "16:9")       \
                                        CTESHTMLINT_ENT_OPCION("2", "PASS"))                                     \
    CTESHTMLINT_ENT_TODOS("gop", CTESHTMLINT_ENT_OPCION("0", "10") CTESHTMLINT_ENT_OPCION("1", "12")             \
                                     CTESHTMLINT_ENT_OPCION("2", "15") CTESHTMLINT_ENT_OPCION("3", "16")         \
                                         CTESHTMLINT_ENT_OPCION("4", "18") CTESHTMLINT_ENT_OPCION("5", "20")     \
                                             CTESHTMLINT_ENT_OPCION("6", "24") CTESHTMLINT_ENT_OPCION("7", "30"))
#define CTESHTMLINT_ENT_TODOS_AUDINP(hdmi48, hdmi44)                                                          \
    CTESHTMLINT_ENT_TODOS("audinp", CTESHTMLINT_ENT_OPCION("0", "ANALOG") CTESHTMLINT_ENT_OPCION("1", "OPTICAL") \
                                        CTESHTMLINT_ENT_OPCION("2", "COAXIAL") CTESHTMLINT_ENT_OPCION("3", hdmi48) \
                                            CTESHTMLINT_ENT_OPCION("4", hdmi44))
#define CTESHTMLINT_ENT_TODOS_AUDCOD \
    CTESHTMLINT_ENT_TODOS("audcod", CTESHTMLINT_ENT_OPCION("0", "MPEG") CTESHTMLINT_ENT_OPCION("1", "DOLBY"))
#define CTESHTMLINT_ENT_TODOS_AUDIO                                                                                 \
    CTESHTMLINT_ENT_TODOS("audbit", CTESHTMLINT_ENT_OPCION("0", "96") CTESHTMLINT_ENT_OPCION("1", "112")            \
                                        CTESHTMLINT_ENT_OPCION("2", "128") CTESHTMLINT_ENT_OPCION("3", "160")       \
                                            CTESHTMLINT_ENT_OPCION("4", "192") CTESHTMLINT_ENT_OPCION("5", "224")   \
                                                CTESHTMLINT_ENT_OPCION("6", "256") CTESHTMLINT_ENT_OPCION("7", "320") \
                                                    CTESHTMLINT_ENT_OPCION("8", "384"))                             \
    CTESHTMLINT_ENT_TODOS("audlev",                                                                                 \
                          CTESHTMLINT_ENT_OPCION("0", "0") CTESHTMLINT_ENT_OPCION("1", "1") CTESHTMLINT_ENT_OPCION( \
                              "2", "2") CTESHTMLINT_ENT_OPCION("3", "3") CTESHTMLINT_ENT_OPCION("4", "4")           \
                              CTESHTMLINT_ENT_OPCION("5", "5") CTESHTMLINT_ENT_OPCION("6", "6")                     \
                                  CTESHTMLINT_ENT_OPCION("7", "7") CTESHTMLINT_ENT_OPCION("8", "8")                 \
                                      CTESHTMLINT_ENT_OPCION("9", "9") CTESHTMLINT_ENT_OPCION("10", "10")           \
                                          CTESHTMLINT_ENT_OPCION("11", "11") CTESHTMLINT_ENT_OPCION("12", "12")     \
                                              CTESHTMLINT_ENT_OPCION("13", "13") CTESHTMLINT_ENT_OPCION("14", "14"))
#define CTESHTMLINT_ENT_TODOS_CC                                                                        \
    "<td class='ultimalinea'><input name=\"ccon_all\" id=\"ccon_all\" type=\"checkbox\"  "             \
    "onclick=\"SeleccionarChecboxconCheckbox(this,'ccon','0');\"></td>"
#define CTESHTMLINT_ENT_TODOS_FORZAR                                                                 \
    "<td class='ultimalinea'><input name=\"forzarconf\" id=\"forzarconf\" type=\"checkbox\"  onclick=\"" \
    "SeleccionarChecboxconCheckbox(this,'forzarconfig','0');\"></td></tr>"

// unit count
inline constexpr char htmlinfoentradaultimalinea[] =
    CTESHTMLINT_ENT_TODAS_VIDEO CTESHTMLINT_ENT_TODOS_AUDINP("HDMI 48kHz", "HDMI 44.1kHz") CTESHTMLINT_ENT_TODOS_AUDCOD
        CTESHTMLINT_ENT_TODOS_AUDIO CTESHTMLINT_ENT_TODOS_CC CTESHTMLINT_ENT_TODOS_FORZAR;
inline constexpr char htmlinfoentradaultimalineaEU[] =
    CTESHTMLINT_ENT_TODAS_VIDEO CTESHTMLINT_ENT_TODOS_AUDINP("HDMI 48kHz", "HDMI 44.1kHz") CTESHTMLINT_ENT_TODOS_AUDIO
        CTESHTMLINT_ENT_TODOS_FORZAR;
inline constexpr char htmlinfoentradaultimalineaLAT[] =
    CTESHTMLINT_ENT_TODAS_VIDEO CTESHTMLINT_ENT_TODOS_AUDINP("HDMI 48 kHz", "HDMI 44.1 kHz")
        CTESHTMLINT_ENT_TODOS_AUDCOD CTESHTMLINT_ENT_TODOS_AUDIO CTESHTMLINT_ENT_TODOS_FORZAR;

// ---------------------------------------------------------------------------
// Input section of the advanced page
// ---------------------------------------------------------------------------
// The cells of the row from Enabled on, without the Select cell; the hidden fields follow
// the content of the last cell.

#define CTESHTMLINT_ENT_TOTAL(columnas)                                                                 \
    "<table id='tabaInputConfig' border=\"1\"><tbody><tr><th class='cabeceraTabla' colspan='" #columnas \
    "'>Input Configuration:</th></tr><tr>" CTESHTMLINT_ENT_COL_VIDEO CTESHTMLINT_ENT_COL_AUDINP
#define CTESHTMLINT_ENT_TOTAL_FIN "<td>%s%s</td></tr></tbody></table>"

// Enabled, Video Input, Video Codec, Encoding, Video Bitrate, Max Output Resolution, Aspect
// Ratio, GOP, Audio Input, Audio Codec, Audio Bitrate, Audio Level, Closed Caption, hidden
// fields
inline constexpr char htmlConfigTotalInputConfig[] =
    CTESHTMLINT_ENT_TOTAL(13) CTESHTMLINT_ENT_COL_AUDCOD CTESHTMLINT_ENT_COL_AUDIO CTESHTMLINT_ENT_COL_CC
    "</tr><tr>" CTESHTMLINT_ENT_CELDAS_VIDEO CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_CELDA
        CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_TOTAL_FIN;
// as the default section without Audio Codec and Closed Caption
inline constexpr char htmlConfigTotalInputConfigEU[] =
    CTESHTMLINT_ENT_TOTAL(11) CTESHTMLINT_ENT_COL_AUDIO
    "</tr><tr>" CTESHTMLINT_ENT_CELDAS_VIDEO CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_TOTAL_FIN;
// as the default section without Closed Caption
inline constexpr char htmlConfigTotalInputConfigLAT[] =
    CTESHTMLINT_ENT_TOTAL(12) CTESHTMLINT_ENT_COL_AUDCOD CTESHTMLINT_ENT_COL_AUDIO
    "</tr><tr>" CTESHTMLINT_ENT_CELDAS_VIDEO CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_CELDA CTESHTMLINT_ENT_CELDA
        CTESHTMLINT_ENT_TOTAL_FIN;

#undef CTESHTMLINT_ENT_FLECHA
#undef CTESHTMLINT_ENT_ORDENA
#undef CTESHTMLINT_ENT_TH
#undef CTESHTMLINT_ENT_COL_VIDEO
#undef CTESHTMLINT_ENT_COL_AUDINP
#undef CTESHTMLINT_ENT_COL_AUDCOD
#undef CTESHTMLINT_ENT_COL_AUDIO
#undef CTESHTMLINT_ENT_COL_CC
#undef CTESHTMLINT_ENT_COL_SELECT
#undef CTESHTMLINT_ENT_CABECERA
#undef CTESHTMLINT_ENT_CELDA
#undef CTESHTMLINT_ENT_CELDAS_VIDEO
#undef CTESHTMLINT_ENT_FILA_INICIO
#undef CTESHTMLINT_ENT_FILA_FIN
#undef CTESHTMLINT_ENT_OPCION
#undef CTESHTMLINT_ENT_TODOS
#undef CTESHTMLINT_ENT_VACIA
#undef CTESHTMLINT_ENT_TODAS_VIDEO
#undef CTESHTMLINT_ENT_TODOS_AUDINP
#undef CTESHTMLINT_ENT_TODOS_AUDCOD
#undef CTESHTMLINT_ENT_TODOS_AUDIO
#undef CTESHTMLINT_ENT_TODOS_CC
#undef CTESHTMLINT_ENT_TODOS_FORZAR
#undef CTESHTMLINT_ENT_TOTAL
#undef CTESHTMLINT_ENT_TOTAL_FIN
