// entrada.cpp: the encoder input configuration page (one row per unit, one line per encoder
// input inside each cell), its section on the advanced page, and the save of one unit's
// inputs.
#include "cambioIP/entrada.h"

#include "cambioIP/cambioIP.h"
#include "cambioIP/paginas.h"
#include "SalidaComun/TablasCanales.h"
#include "cteshtml/cteshtml.h"
#include "cteshtml/paginas_entrada.h"
#include "proccgilib/proccgilib.h"
#include "utils/utils.h"
#include "utilsXML/utilsXML.h"

#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <vector>

namespace {

// The three layouts of the page: QAM units show every column, COFDM units (EU) neither
// the audio codec nor closed captions, ISDB-T and COFDM/QAM-B units (LAT) no closed
// captions.
enum class CIP_Disposicion { Normal, EU, LAT };

// Head and last row follow the master's family; 0 is the only default one.
CIP_Disposicion CIPINT_DisposicionCabecera(int familia)
{
    return familia == SALCOMUN_FamiliaQAM ? CIP_Disposicion::Normal
           : familia == SALCOMUN_FamiliaCOFDM ? CIP_Disposicion::EU
                                         : CIP_Disposicion::LAT;
}

// Rows and the advanced section follow the unit's family; anything unknown is default
// (so a placeholder unit gets a default row under a LAT head).
CIP_Disposicion CIPINT_DisposicionFila(int familia)
{
    switch (familia) {
    case SALCOMUN_FamiliaCOFDM: return CIP_Disposicion::EU;
    case SALCOMUN_FamiliaISDBT:
    case SALCOMUN_FamiliaCOFDMQAMB: return CIP_Disposicion::LAT;
    default: return CIP_Disposicion::Normal;
    }
}

// Reader and writer of one setting of encoder input n.
using CIPINT_EscritorEntrada = int (*)(xmlDocPtr documento, const char *valor, uint8_t entrada);

// A choice that the model offers when its mask has the bit (bit 0: always offered).
struct CIP_OpcionModelo {
    const char *valor;
    const char *texto;
    int bit;
};

// Video connectors, by the model's video-input mask.
const CIP_OpcionModelo CIP_EntradasVideo[] = {
    {"0", "Comp.", 1},
    {"1", "HDMI", 2},
    {"2", "CVBS", 4},
};
// Resolution limits, by the model's resolution mask.
const CIP_OpcionModelo CIP_Resoluciones[] = {
    {"0", "AUTO", 0},   {"256", "1080PHR", 256}, {"2", "1080I", 2}, {"4", "720P", 4},
    {"8", "576P", 8},   {"16", "576I", 16},      {"32", "480P", 32}, {"64", "480I", 64},
};
// Audio connectors, by the model's audio-input mask; the HDMI ones only while the input
// takes its video from HDMI.
constexpr int CIP_BitAudioHDMI = 8;
const CIP_OpcionModelo CIP_EntradasAudio[] = {
    {"0", "ANALOG", 1},
    {"1", "OPTICAL", 4},
    {"2", "COAXIAL", 2},
    {"3", "HDMI 48 kHz", CIP_BitAudioHDMI},
    {"4", "HDMI 44,1 kHz", CIP_BitAudioHDMI},
};
// The video input a model with a single kind of connector is fixed to.
struct CIP_VideoFijo {
    int mascara;
    const char *valor;
};
const CIP_VideoFijo CIP_VideosFijos[] = {{1, "0"}, {2, "1"}, {4, "2"}};
constexpr char CIP_VideoHDMI[] = "1";
constexpr char CIP_AudioAnalogico[] = "0";
constexpr char CIP_ResolucionPHR[] = "256";
constexpr char CIP_CodecMPEG2[] = "0";

// Plain selects: the option value is the position.
const char *const CIP_Codificaciones[] = {"Field", "Frame"};
const char *const CIP_Aspectos[] = {"4:3", "16:9", "PASS"};
const char *const CIP_GOPs[] = {"10", "12", "15", "16", "18", "20", "24", "30"};
const char *const CIP_CodecsAudio[] = {"MPEG", "DOLBY"};
const char *const CIP_BitratesAudio[] = {"96", "112", "128", "160", "192", "224", "256", "320", "384"};
constexpr int CIP_NivelAudioMaximo = 14;

// Documents of this version on offer every codec and the Field/Frame choice.
constexpr int CIP_VersionCodecs = 6;
constexpr std::size_t CIP_CodecsAntiguos = 2;

// The output settings that the page script needs to judge the encoding load, each read
// from the unit's output section for its family ("0" where the family has none).
constexpr std::size_t CIP_NumSalidas = 6;
const char *const CIP_CamposSalida[CIP_NumSalidas] = {"outmod", "outout", "bwsal", "ingrd", "fecsal", "outbau"};
const UTILSXML_Lector0 CIP_LectoresSalida[SALCOMUN_NumFamilias][CIP_NumSalidas] = {
    {nullptr, UTILSXML_LeeSALQAMTipoSalida, nullptr, nullptr, nullptr, nullptr},
    {UTILSXML_LeeSALCODFMMODO, UTILSXML_LeeSALCODFMSALIDA, UTILSXML_LeeSALCODFMBW, UTILSXML_LeeSALCODFMGUARDA,
     UTILSXML_LeeSALCODFMFEC, UTILSXML_LeeSALCODFMBAUDRATE},
    {UTILSXML_LeeSALISDBTModo, UTILSXML_LeeSALISDBTSALIDA, UTILSXML_LeeSALISDBTBW, UTILSXML_LeeSALISDBTGUARDA,
     UTILSXML_LeeSALISDBTFEC, nullptr},
    // The COFDM/QAM-B modulator keeps its settings in the COFDM section.
    {UTILSXML_LeeSALCODFMMODO, UTILSXML_LeeSALCODFMSALIDA, UTILSXML_LeeSALCODFMBW, UTILSXML_LeeSALCODFMGUARDA,
     UTILSXML_LeeSALCODFMFEC, UTILSXML_LeeSALCODFMBAUDRATE},
};

// The columns of a row, in the order of the default layout.
enum CIP_Columna {
    CIP_ColActiva,
    CIP_ColVideo,
    CIP_ColCodecVideo,
    CIP_ColCodificacion,
    CIP_ColBitrateVideo,
    CIP_ColResolucion,
    CIP_ColAspecto,
    CIP_ColGOP,
    CIP_ColAudio,
    CIP_ColCodecAudio,
    CIP_ColBitrateAudio,
    CIP_ColNivelAudio,
    CIP_ColCC,
    CIP_NumColumnas
};

constexpr char CIP_Linea[] = "<div class='divlineadentrodecelda' >%s</div>";
constexpr char CIP_Desactivado[] = " disabled";

std::vector<CTESHTML_Opcion> CIPINT_OpcionesModelo(const CIP_OpcionModelo *tabla, std::size_t cuantas, int mascara)
{
    std::vector<CTESHTML_Opcion> opciones;
    for (std::size_t i = 0; i < cuantas; ++i)
        if (tabla[i].bit == 0 || (mascara & tabla[i].bit) != 0)
            opciones.push_back({tabla[i].valor, tabla[i].texto});
    return opciones;
}

template <std::size_t N>
std::vector<CTESHTML_Opcion> CIPINT_OpcionesPosicion(const char *const (&textos)[N])
{
    std::vector<CTESHTML_Opcion> opciones;
    for (std::size_t i = 0; i < N; ++i)
        opciones.push_back({std::to_string(i), textos[i]});
    return opciones;
}

// One setting of input n into a 50-character buffer; a failed read is "0".
std::string CIPINT_LeeEntrada(UTILSXML_Lector1 lector, xmlDocPtr documento, int entrada, bool *leido = nullptr)
{
    return UTILSXML_LeeTexto(lector, documento, 50, static_cast<uint8_t>(entrada), "0", leido);
}

// One output setting into a 40-character buffer; a failed read (or none) is "0".
std::string CIPINT_LeeSalida(UTILSXML_Lector0 lector, xmlDocPtr documento)
{
    return UTILSXML_LeeTexto(lector, documento, 40, "0");
}

// What one unit's painting needs to know besides the input number.
struct CIP_Unidad {
    xmlDocPtr documento;
    std::string sufijo;
    CIP_Disposicion disposicion;
    bool gemelos;  // page row: every control gets its "anterior" twin
    bool unica;    // a single input: its box is labelled "I"
    int version;
    int mascaraAudio;
    int mascaraVideo;
    int mascaraResolucion;
};

// Paints input n: appends one line to every column and its hidden fields to `ocultos`.
void CIPINT_PintaEntrada(const CIP_Unidad &u, int n, std::string (&columnas)[CIP_NumColumnas], std::string &ocultos)
{
    auto nombre = [&](const char *clave) { return UTILS_Formatea("%s%01d%s", clave, n, u.sufijo.c_str()); };
    auto pon = [&](CIP_Columna columna, const char *clave, const std::string &control, const std::string &valor) {
        columnas[columna] += UTILS_Formatea(CIP_Linea, control.c_str());
        if (u.gemelos)
            ocultos += CTESHTML_Anterior(nombre(clave), valor);
    };
    auto select = [&](CIP_Columna columna, const char *clave, const std::string &atributos,
                      const std::vector<CTESHTML_Opcion> &opciones, const std::string &valor) {
        const std::string campo = nombre(clave);
        pon(columna, clave, CTESHTML_SelectBox(campo, campo, atributos, opciones, valor), valor);
    };

    // Every other control of a disabled input is disabled too.
    char activa = '\0';
    const bool encendida = UTILSXML_LeeEntradaActiva(u.documento, &activa, static_cast<uint8_t>(n)) == 0 && activa == '1';
    const std::string apagada = encendida ? "" : CIP_Desactivado;
    auto desactiva = [&](bool condicion) { return std::string(encendida && !condicion ? "" : CIP_Desactivado); };

    const std::string nombreActiva = nombre("eon");
    pon(CIP_ColActiva, "eon", CTESHTML_EntradaActiva(n, u.unica, nombreActiva, nombreActiva, encendida),
        encendida ? "1" : "0");

    // Video input: a model with one kind of connector has it fixed.
    std::string video = CIPINT_LeeEntrada(UTILSXML_LeeEntradaVideo, u.documento, n);
    bool videoFijo = false;
    for (const CIP_VideoFijo &fijo : CIP_VideosFijos) {
        if (u.mascaraVideo == fijo.mascara) {
            video = fijo.valor;
            videoFijo = true;
        }
    }
    select(CIP_ColVideo, "vidinp",
           std::string(strJScambioEntradaVideo) + strJSOnblurCompruebacambios + desactiva(videoFijo),
           CIPINT_OpcionesModelo(CIP_EntradasVideo, std::size(CIP_EntradasVideo), u.mascaraVideo), video);

    // Video codec: older documents know only the first two; an unknown value is MPEG2.
    const std::size_t codecs = u.version < CIP_VersionCodecs ? CIP_CodecsAntiguos : COFDM_NUMCODECSVIDEO;
    const long guardado = std::strtol(CIPINT_LeeEntrada(UTILSXML_LeeEntradaCodecVideo, u.documento, n).c_str(), nullptr, 10);
    std::string codec = CIP_CodecMPEG2;
    for (std::size_t k = 0; k < codecs; ++k)
        if (VideoCodecValores[k] == guardado)
            codec = std::to_string(guardado);
    select(CIP_ColCodecVideo, "vidcod", strJSOnBlurOnChangeCompruebacambiosEncoding + apagada,
           CTESHTML_OpcionesTablas(VideoCodecTextos, VideoCodecValores, codecs), codec);

    // Resolution limit: only models with a resolution mask may set it; an unreadable
    // value shows AUTO, disabled. 1080PHR with MPEG2 leaves no Field/Frame choice.
    bool resolucionLeida = false;
    const std::string resolucion =
        CIPINT_LeeEntrada(UTILSXML_LeeEntradaLIMITERESOLUCION, u.documento, n, &resolucionLeida);
    const bool phrMPEG2 = resolucionLeida && resolucion == CIP_ResolucionPHR && codec == CIP_CodecMPEG2;

    const std::string codificacion = CIPINT_LeeEntrada(UTILSXML_LeeEntradaFIELDENCODING, u.documento, n);
    select(CIP_ColCodificacion, "ffencod",
           strJSOnBlurOnChangeCompruebacambios + desactiva(u.version < CIP_VersionCodecs || phrMPEG2),
           CIPINT_OpcionesPosicion(CIP_Codificaciones), codificacion);

    const std::string bitrate = CIPINT_LeeEntrada(UTILSXML_LeeEntradaBitrateVIDEO, u.documento, n);
    const std::string campoBitrate = nombre("vidbit");
    const std::string validaBitrate =
        UTILS_Formatea(strJSvalidaEntDecimales, "2", u.mascaraResolucion != 0 ? "50" : "10", 2);
    pon(CIP_ColBitrateVideo, "vidbit",
        CTESHTML_Input(htmlinput, campoBitrate, 5, campoBitrate, strJSPermitirreales, validaBitrate,
                       encendida ? "" : "disabled", bitrate, 5),
        bitrate);

    select(CIP_ColResolucion, "maxoutres",
           strJSOnBlurOnChangeCompruebacambiosEncoding + desactiva(!resolucionLeida || u.mascaraResolucion == 0),
           CIPINT_OpcionesModelo(CIP_Resoluciones, std::size(CIP_Resoluciones), u.mascaraResolucion), resolucion);

    const std::string plano = std::string(strJSOnblurCompruebacambios) + strJSOnChangeCompruebacambios + apagada;
    select(CIP_ColAspecto, "asprat", plano, CIPINT_OpcionesPosicion(CIP_Aspectos),
           CIPINT_LeeEntrada(UTILSXML_LeeEntradaRelacionAspecto, u.documento, n));
    select(CIP_ColGOP, "gop", plano, CIPINT_OpcionesPosicion(CIP_GOPs),
           CIPINT_LeeEntrada(UTILSXML_LeeEntradaGOP, u.documento, n));

    // Audio input: HDMI audio only with HDMI video; the codec only for analog audio.
    const int mascaraAudio = video == CIP_VideoHDMI ? u.mascaraAudio : u.mascaraAudio & ~CIP_BitAudioHDMI;
    const std::string audio = CIPINT_LeeEntrada(UTILSXML_LeeEntradaEntradaAudio, u.documento, n);
    select(CIP_ColAudio, "audinp", std::string(strJScambioEntradaAudioQAM) + " style='min-width:124px'" + apagada,
           CIPINT_OpcionesModelo(CIP_EntradasAudio, std::size(CIP_EntradasAudio), mascaraAudio), audio);

    if (u.disposicion == CIP_Disposicion::EU)
        ocultos += CTESHTML_Oculto(nombre("audcod"), nombre("audcod"), "0");  // MPEG audio
    else
        select(CIP_ColCodecAudio, "audcod", strJScambioAudioCodecQAM + desactiva(audio != CIP_AudioAnalogico),
               CIPINT_OpcionesPosicion(CIP_CodecsAudio),
               CIPINT_LeeEntrada(UTILSXML_LeeEntradaCodecAudio, u.documento, n));

    select(CIP_ColBitrateAudio, "audbit", plano, CIPINT_OpcionesPosicion(CIP_BitratesAudio),
           CIPINT_LeeEntrada(UTILSXML_LeeEntradaBitrateAUDIO, u.documento, n));
    select(CIP_ColNivelAudio, "audlev", plano, CTESHTML_OpcionesRango(0, CIP_NivelAudioMaximo),
           CIPINT_LeeEntrada(UTILSXML_LeeEntradaNivelAudio, u.documento, n));

    if (u.disposicion != CIP_Disposicion::Normal) {
        ocultos += CTESHTML_Oculto(nombre("ccon"), nombre("ccon"), "0");  // no closed captions
    } else {
        const bool subtitulos = CIPINT_LeeEntrada(UTILSXML_LeeEntradaClosedCaption, u.documento, n) == "1";
        const std::string campo = nombre("ccon");
        pon(CIP_ColCC, "ccon",
            CTESHTML_Checkbox(campo, campo, subtitulos, strJSOnBlurOnChangeCompruebacambios + apagada),
            subtitulos ? "1" : "0");
    }
}

// The row (or the advanced section) in the layout's template.
std::string CIPINT_FormateaFila(CIP_Disposicion disposicion, bool avanzado, const std::string (&c)[CIP_NumColumnas],
                                const std::string &orden, const std::string &modelo, const std::string &forzar,
                                const std::string &ocultos)
{
    auto k = [&](CIP_Columna columna) { return c[columna].c_str(); };
    switch (disposicion) {
    case CIP_Disposicion::EU:
        if (avanzado)
            return UTILS_Formatea(htmlConfigTotalInputConfigEU, k(CIP_ColActiva), k(CIP_ColVideo),
                                  k(CIP_ColCodecVideo), k(CIP_ColCodificacion), k(CIP_ColBitrateVideo),
                                  k(CIP_ColResolucion), k(CIP_ColAspecto), k(CIP_ColGOP), k(CIP_ColAudio),
                                  k(CIP_ColBitrateAudio), k(CIP_ColNivelAudio), ocultos.c_str());
        return UTILS_Formatea(htmlinfoentradaEU, orden.c_str(), modelo.c_str(), k(CIP_ColActiva), k(CIP_ColVideo),
                              k(CIP_ColCodecVideo), k(CIP_ColCodificacion), k(CIP_ColBitrateVideo),
                              k(CIP_ColResolucion), k(CIP_ColAspecto), k(CIP_ColGOP), k(CIP_ColAudio),
                              k(CIP_ColBitrateAudio), k(CIP_ColNivelAudio), forzar.c_str(), ocultos.c_str());
    case CIP_Disposicion::LAT:
        if (avanzado)
            return UTILS_Formatea(htmlConfigTotalInputConfigLAT, k(CIP_ColActiva), k(CIP_ColVideo),
                                  k(CIP_ColCodecVideo), k(CIP_ColCodificacion), k(CIP_ColBitrateVideo),
                                  k(CIP_ColResolucion), k(CIP_ColAspecto), k(CIP_ColGOP), k(CIP_ColAudio),
                                  k(CIP_ColCodecAudio), k(CIP_ColBitrateAudio), k(CIP_ColNivelAudio),
                                  ocultos.c_str());
        return UTILS_Formatea(htmlinfoentradaLAT, orden.c_str(), modelo.c_str(), k(CIP_ColActiva), k(CIP_ColVideo),
                              k(CIP_ColCodecVideo), k(CIP_ColCodificacion), k(CIP_ColBitrateVideo),
                              k(CIP_ColResolucion), k(CIP_ColAspecto), k(CIP_ColGOP), k(CIP_ColAudio),
                              k(CIP_ColCodecAudio), k(CIP_ColBitrateAudio), k(CIP_ColNivelAudio), forzar.c_str(),
                              ocultos.c_str());
    case CIP_Disposicion::Normal:
    default:
        if (avanzado)
            return UTILS_Formatea(htmlConfigTotalInputConfig, k(CIP_ColActiva), k(CIP_ColVideo),
                                  k(CIP_ColCodecVideo), k(CIP_ColCodificacion), k(CIP_ColBitrateVideo),
                                  k(CIP_ColResolucion), k(CIP_ColAspecto), k(CIP_ColGOP), k(CIP_ColAudio),
                                  k(CIP_ColCodecAudio), k(CIP_ColBitrateAudio), k(CIP_ColNivelAudio), k(CIP_ColCC),
                                  ocultos.c_str());
        return UTILS_Formatea(htmlinfoentrada, orden.c_str(), modelo.c_str(), k(CIP_ColActiva), k(CIP_ColVideo),
                              k(CIP_ColCodecVideo), k(CIP_ColCodificacion), k(CIP_ColBitrateVideo),
                              k(CIP_ColResolucion), k(CIP_ColAspecto), k(CIP_ColGOP), k(CIP_ColAudio),
                              k(CIP_ColCodecAudio), k(CIP_ColBitrateAudio), k(CIP_ColNivelAudio), k(CIP_ColCC),
                              forzar.c_str(), ocultos.c_str());
    }
}

// The per-input keys of the save in write order, with the version from which a failed
// write counts (the resolution limit is unknown to documents before version 4).
struct CIP_ClaveEntrada {
    const char *clave;
    CIPINT_EscritorEntrada graba;
    int versionFallo;
};

// The enable flag is one character: the first of the posted value.
int CIPINT_GrabaActiva(xmlDocPtr documento, const char *valor, uint8_t entrada)
{
    return UTILSXML_GrabaEntradaActiva(documento, valor[0], entrada);
}

const CIP_ClaveEntrada CIP_ClavesEntrada[] = {
    {"eon", CIPINT_GrabaActiva, 0},
    {"vidinp", UTILSXML_GrabaEntradaVideo, 0},
    {"vidcod", UTILSXML_GrabaEntradaCodecVideo, 0},
    {"ffencod", UTILSXML_GrabaEntradaFIELDENCODING, 0},
    {"audcod", UTILSXML_GrabaEntradaCodecAudio, 0},
    {"audinp", UTILSXML_GrabaEntradaEntradaAudio, 0},
    {"audlev", UTILSXML_GrabaEntradaNivelAudio, 0},
    {"ccon", UTILSXML_GrabaEntradaClosedCaption, 0},
    {"vidbit", UTILSXML_GrabaEntradaBitrateVIDEO, 0},
    {"audbit", UTILSXML_GrabaEntradaBitrateAUDIO, 0},
    {"asprat", UTILSXML_GrabaEntradaRelacionAspecto, 0},
    {"gop", UTILSXML_GrabaEntradaGOP, 0},
    {"maxoutres", UTILSXML_GrabaEntradaLIMITERESOLUCION, 4},
};
constexpr std::size_t CIP_NumClavesEntrada = std::size(CIP_ClavesEntrada);
constexpr std::size_t CIP_TamValor = 500;
constexpr long CIP_MaxEntradas = 9;

} // namespace

int CIPINT_PintaLineaConfigEntrada(xmlDocPtr documento, int esMaster, int avanzado, uint8_t canales, int,
                                   int entradasVideo, int capacidades, const char *modelo, int, const char *sufijo,
                                   int familia, int parametro)
{
    if (avanzado == 0 && sufijo == nullptr)
        return 4;

    CIP_Unidad unidad{documento,
                      avanzado != 0 ? CIP_SufijoTotal : sufijo,
                      CIPINT_DisposicionFila(familia),
                      avanzado == 0,
                      canales == 1,
                      UTILSXML_CheckVersionConfig(documento),
                      entradasVideo,
                      capacidades,
                      parametro};
    const std::string &suf = unidad.sufijo;

    // The page script reads the input count and the family, and judges the encoding load
    // from the output settings.
    std::string ocultos;
    if (unidad.gemelos) {
        ocultos += CTESHTML_Anterior("numcanales" + suf, UTILS_Formatea("%01d", canales));
        ocultos += CTESHTML_Anterior("tipounidad" + suf, UTILS_Formatea("%01d", familia));
    }
    const int familiaSalida = familia >= 0 && familia < SALCOMUN_NumFamilias ? familia : SALCOMUN_FamiliaQAM;
    for (std::size_t s = 0; s < CIP_NumSalidas; ++s) {
        const std::string campo = CIP_CamposSalida[s] + suf;
        ocultos += CTESHTML_Oculto(campo, campo, CIPINT_LeeSalida(CIP_LectoresSalida[familiaSalida][s], documento));
    }

    std::string columnas[CIP_NumColumnas];
    for (int n = 1; n <= canales; ++n)
        CIPINT_PintaEntrada(unidad, n, columnas, ocultos);

    std::string orden, celdaModelo, forzar;
    if (avanzado == 0) {
        orden = UTILS_Escapa(UTILSXML_LeeTexto(UTILSXML_LeeOrden, documento, 40));
        celdaModelo = CTESHTML_CeldaModelo(esMaster != 0, suf, modelo != nullptr ? modelo : "");
        const std::string cambios = UTILSXML_LeeTexto(UTILSXML_LeeCambiosWeb, documento, 50);
        forzar = CTESHTML_Checkbox("forzarconfig" + suf, "forzarconfig" + suf, cambios == "1", "");
    }
    const std::string linea =
        CIPINT_FormateaFila(unidad.disposicion, avanzado != 0, columnas, orden, celdaModelo, forzar, ocultos);
    UTILS_Imprime(linea);
    return 0;
}

int CIPINT_GeneraEntrada(int fase, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                         int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                         int familia, int parametro)
{
    const CIP_Disposicion disposicion = CIPINT_DisposicionCabecera(familia);
    switch (fase) {
    case 0:
        UTILS_Imprime(UTILS_Formatea(disposicion == CIP_Disposicion::Normal ? htmlinfoentradainicio
                                     : disposicion == CIP_Disposicion::EU   ? htmlinfoentradainicioEU
                                                                            : htmlinfoentradainicioLAT));
        return 0;
    case 1:
        if (modelo == nullptr)
            return 4;
        return CIPINT_PintaLineaConfigEntrada(documento, esMaster, 0, canales, opciones, entradasVideo, capacidades,
                                              modelo, 0, sufijo, familia, parametro);
    case 2:
        UTILS_Imprime(UTILS_Formatea(disposicion == CIP_Disposicion::Normal ? htmlinfoentradaultimalinea
                                     : disposicion == CIP_Disposicion::EU   ? htmlinfoentradaultimalineaEU
                                                                            : htmlinfoentradaultimalineaLAT,
                                     fila));
        UTILS_Imprime(htmlfintabla);
        return 0;
    case 3:
        return CIPINT_PintaLineaConfigEntrada(documento, esMaster, 1, canales, opciones, entradasVideo, capacidades,
                                              modelo, 0, sufijo, familia, parametro);
    default:
        return 0;
    }
}

int CIPINT_GrabaConfigEntrada(xmlDocPtr documento, char *formulario)
{
    if (formulario == nullptr)
        return 4;

    char numcanales[CIP_TamValor] = {};
    GetValueKeys(formulario, {{"numcanales", numcanales}});
    std::vector<std::string> valores;
    for (const CIP_ClaveEntrada &clave : CIP_ClavesEntrada) {
        char valor[CIP_TamValor] = {};
        GetValueKeys(formulario, {{clave.clave, valor}});
        if (valor[0] == '\0')
            return 7;
        valores.emplace_back(valor);
    }
    if (numcanales[0] == '\0')
        return 7;
    const long entradas = std::strtol(numcanales, nullptr, 10);
    if (entradas < 1 || entradas > CIP_MaxEntradas)
        return 7;

    // Every listed input up to the count is written, key after key; inputs beyond the
    // count are skipped. A number below 1 names no input: its write fails.
    const int version = UTILSXML_CheckVersionConfig(documento);
    bool fallo = false;
    for (std::size_t k = 0; k < CIP_NumClavesEntrada; ++k) {
        const CIP_ClaveEntrada &clave = CIP_ClavesEntrada[k];
        for (const PROCCGI_ParLinea &par : PROCCGI_ParesLinea(valores[k])) {
            if (par.linea > entradas)
                continue;
            const int resultado =
                par.linea < 1 ? -1 : clave.graba(documento, par.valor.c_str(), static_cast<uint8_t>(par.linea));
            if (resultado != 0 && version >= clave.versionFallo)
                fallo = true;
        }
    }
    return fallo ? 6 : 0;
}
