// SalidaComun.cpp: the cells, lines and save steps that all output modules share.
#include "SalidaComun/SalidaComun.h"

#include "proccgilib/proccgilib.h"
#include "utils/utils.h"
#include "utilsXML/utilsXML.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <new>

namespace {

// Buffer sizes of the page reads: names, numbers and texts of a row.
constexpr std::size_t TAM_CORTO = 40;
constexpr std::size_t TAM_TEXTO = 50;
constexpr std::size_t TAM_NOMBRE = 49;
constexpr std::size_t TAM_CUADROS = 256;
constexpr std::size_t TAM_LARGO = 300;

// LED word text of a status document: decimal, like every value.
constexpr std::size_t TAM_LEDS = 40;

// Sizes of the read-only "n/a" inputs of an encoder line, and of an IP service's input
// name and service id.
constexpr int TAM_NA = 3;
constexpr int MAX_NA = 3;
constexpr int TAM_NOMBREENTRADA = 10;
constexpr int MAX_NOMBREENTRADA = 30;
constexpr int TAM_SIDENTRADA = 5;
constexpr int MAX_SIDENTRADA = 7;
constexpr int TAM_NOMBRECANAL = 6;

constexpr int PID_MINIMO = 48;
constexpr int PID_MAXIMO = 8182;
constexpr int SID_MINIMO = 1;
constexpr int SID_MAXIMO = 65535;
constexpr int MAX_SID = 5;

// Channel states that show no picture: off, the steady-mode off, "BOOT", and 12 and above
// (read as 0 by the LED cells).
bool SALCOMUNINT_EstadoSinImagen(unsigned estado)
{
    return estado == 0 || estado == 4 || estado == 6 || estado >= 12;
}

unsigned SALCOMUNINT_Nibble(unsigned long palabra, int led)
{
    return static_cast<unsigned>((palabra >> (4 * led)) & 0xFUL);
}

std::string SALCOMUNINT_Disabled(bool deshabilitado)
{
    return deshabilitado ? " disabled" : "";
}

}  // namespace

// ---------------------------------------------------------------------------
// Option tables
// ---------------------------------------------------------------------------

std::vector<CTESHTML_Opcion> SALCOMUN_Opciones(std::span<const SALCOMUN_Opcion> tabla, bool conSeleccionar)
{
    std::vector<CTESHTML_Opcion> opciones;
    opciones.reserve(tabla.size() + 1);
    for (const SALCOMUN_Opcion &opcion : tabla)
        opciones.push_back({opcion.valor, opcion.texto});
    if (conSeleccionar)
        opciones.push_back({SALCOMUN_ValorSeleccionar, SALCOMUN_TextoSeleccionar});
    return opciones;
}

std::string SALCOMUN_SelectTodas(std::string_view base, std::span<const SALCOMUN_Opcion> tabla,
                                 std::string_view atributos)
{
    const std::string nombre = std::string(base) + "_all";
    return CTESHTML_SelectBox(nombre, nombre, atributos, SALCOMUN_Opciones(tabla, true), SALCOMUN_ValorSeleccionar);
}

std::string SALCOMUN_SelectTodasOpciones(std::string_view base, std::vector<CTESHTML_Opcion> opciones,
                                         std::string_view atributos)
{
    const std::string nombre = std::string(base) + "_all";
    opciones.push_back({SALCOMUN_ValorSeleccionar, SALCOMUN_TextoSeleccionar});
    return CTESHTML_SelectBox(nombre, nombre, atributos, opciones, SALCOMUN_ValorSeleccionar);
}

// ---------------------------------------------------------------------------
// Reading the documents
// ---------------------------------------------------------------------------

std::string SALCOMUN_Corta(std::string_view texto, std::size_t n)
{
    return std::string(texto.substr(0, UTILS_CorteUTF8(texto, n)));
}

bool SALCOMUN_Ofrecido(std::string_view valor, const std::vector<CTESHTML_Opcion> &opciones)
{
    return std::any_of(opciones.begin(), opciones.end(), [&](const CTESHTML_Opcion &o) { return valor == o.valor; });
}

bool SALCOMUN_EnRango(std::string_view texto, long minimo, long maximo)
{
    if (texto.empty() || texto.size() > 9 || texto.find_first_not_of("0123456789") != std::string_view::npos)
        return false;
    const long numero = UTILS_Numero(texto);
    return numero >= minimo && numero <= maximo;
}

bool SALCOMUN_TieneDecimales(std::string_view texto)
{
    return texto.find_first_of(",.") != std::string_view::npos;
}

// ---------------------------------------------------------------------------
// Status rows
// ---------------------------------------------------------------------------

unsigned long SALCOMUN_LeeLeds(xmlDocPtr status)
{
    const std::string texto = UTILSXML_LeeTexto(UTILSXML_STATUS_LeeLEDS, status, TAM_LEDS);
    return std::strtoul(texto.c_str(), nullptr, 10);
}

int SALCOMUN_EstadoLed(unsigned long palabra, int led)
{
    const unsigned estado = SALCOMUNINT_Nibble(palabra, led);
    return estado >= CTESHTML_NUMESTADOSLED ? 0 : static_cast<int>(estado);
}

std::array<std::string, SALCOMUN_NumLeds> SALCOMUN_CeldasLed(unsigned long palabra, uint8_t canales)
{
    std::array<std::string, SALCOMUN_NumLeds> celdas;
    for (int led = 0; led < SALCOMUN_NumLeds; ++led)
        celdas[led] = CTESHTML_CeldaLed(palabra, led + 1);
    if (canales < 2)
        celdas[SALCOMUN_LedCH2] = UTILS_Formatea(htmlcanalnoaplicable, SALCOMUN_NoAplica);
    if (canales < 4) {
        celdas[SALCOMUN_LedCH3] = UTILS_Formatea(htmlcanalnoaplicable, SALCOMUN_NoAplica);
        celdas[SALCOMUN_LedCH4] = UTILS_Formatea(htmlcanalnoaplicablefin, SALCOMUN_NoAplica);
    }
    return celdas;
}

bool SALCOMUN_CanalSinImagen(unsigned long palabra, int canal)
{
    return SALCOMUNINT_EstadoSinImagen(SALCOMUNINT_Nibble(palabra, SALCOMUN_LedCH1 + canal - 1));
}

std::string SALCOMUN_CeldaResolucion(xmlDocPtr status, uint8_t canales)
{
    const unsigned long palabra = SALCOMUN_LeeLeds(status);
    // Resolution and frame rate of channels 1..4, escaped; "--" for a channel not encoding.
    std::array<std::string, 4> resolucion, cuadros;
    for (int canal = 1; canal <= 4 && canal <= canales; ++canal) {
        if (SALCOMUN_CanalSinImagen(palabra, canal)) {
            resolucion[canal - 1] = SALCOMUN_SinImagen;
            cuadros[canal - 1] = SALCOMUN_SinImagen;
        } else {
            const auto indice = static_cast<uint8_t>(canal);
            resolucion[canal - 1] =
                UTILS_Escapa(UTILSXML_LeeTexto(UTILSXML_STATUS_LeeCanalResolucion, status, TAM_CORTO, indice));
            cuadros[canal - 1] =
                UTILS_Escapa(UTILSXML_LeeTexto(UTILSXML_STATUS_LeeCanalFramerate, status, TAM_CUADROS, indice));
        }
    }
    std::string canal2, cuadros2, canales34;
    if (canales >= 2) {
        canal2 = UTILS_Formatea(htmlresolucionC2, resolucion[1].c_str());
        cuadros2 = cuadros[1];
    }
    if (canales >= 4)
        canales34 = UTILS_Formatea(htmlc3c4, resolucion[2].c_str(), cuadros[2].c_str(), resolucion[3].c_str(),
                                   cuadros[3].c_str());
    return UTILS_Formatea(htmlresolucion, resolucion[0].c_str(), cuadros[0].c_str(), canal2.c_str(), cuadros2.c_str(),
                          canales34.c_str());
}

std::string SALCOMUN_CeldaTemperatura(xmlDocPtr status)
{
    const std::string celsius = UTILS_Escapa(UTILSXML_LeeTexto(UTILSXML_STATUS_LeeTemperatura, status, TAM_CORTO, 1));
    const std::string fahrenheit = UTILS_Escapa(UTILSXML_LeeTexto(UTILSXML_STATUS_LeeTemperatura, status, TAM_CORTO, 0));
    return UTILS_Formatea(htmltemperatura, celsius.c_str(), fahrenheit.c_str());
}

std::string SALCOMUN_CeldaVersiones(xmlDocPtr status)
{
    const std::string hardware = UTILS_Escapa(UTILSXML_LeeTexto(UTILSXML_STATUS_LeeVersionFPGA, status, TAM_CORTO, 1));
    const std::string software = UTILS_Escapa(UTILSXML_LeeTexto(UTILSXML_STATUS_LeeVersionFPGA, status, TAM_CORTO, 0));
    const std::string arranque = UTILS_Escapa(UTILSXML_LeeTexto(UTILSXML_STATUS_LeeVersionBoot, status, TAM_CORTO));
    const std::string sistema = UTILS_Escapa(UTILSXML_LeeTexto(UTILSXML_STATUS_LeeVersionLINUX, status, TAM_CORTO));
    const std::string web = UTILS_Escapa(UTILSXML_LeeTexto(UTILSXML_STATUS_LeeVersionWEB, status, TAM_CORTO));
    return UTILS_Formatea(htmlversiones, hardware.c_str(), software.c_str(), arranque.c_str(), sistema.c_str(),
                          web.c_str());
}

std::string SALCOMUN_CeldaOpciones(xmlDocPtr status)
{
    const std::string opciones = UTILSXML_LeeTexto(UTILSXML_STATUS_LeeUpgradeOptions, status, TAM_LARGO);
    std::string celda;
    for (char ch : opciones) {
        // Stop only between characters, never inside a UTF-8 sequence.
        if (celda.size() >= SALCOMUN_MAXOPCIONES && (static_cast<unsigned char>(ch) & 0xC0) != 0x80)
            break;
        if (ch == '.')
            celda += "<br>";
        else
            celda += UTILS_Escapa(std::string_view(&ch, 1));
    }
    return celda;
}

std::string SALCOMUN_CeldaOrden(std::string_view orden, bool conectada)
{
    return conectada ? CTESHTML_Negrita(orden) : UTILS_Escapa(orden);
}

std::string SALCOMUN_CeldaModeloEstado(std::string_view modelo, bool conectada)
{
    return conectada ? CTESHTML_Miunidad(modelo) : UTILS_Escapa(modelo);
}

SALCOMUN_Estado SALCOMUN_LeeEstado(xmlDocPtr status, bool conectada, uint8_t canales, std::string_view modelo)
{
    SALCOMUN_Estado estado;
    estado.orden = SALCOMUN_CeldaOrden(UTILSXML_LeeTexto(UTILSXML_STATUS_LeeOrden, status, TAM_CORTO), conectada);
    estado.modelo = SALCOMUN_CeldaModeloEstado(modelo, conectada);
    estado.leds = SALCOMUN_CeldasLed(SALCOMUN_LeeLeds(status), canales);
    estado.tabla = UTILS_Escapa(UTILSXML_LeeTexto(UTILSXML_STATUS_LeeTablaQAM, status, TAM_TEXTO));
    estado.canal = UTILS_Escapa(UTILSXML_LeeTexto(UTILSXML_STATUS_LeeCanalQAM, status, TAM_TEXTO));
    estado.salidaIP = UTILS_Escapa(UTILSXML_LeeTexto(UTILSXML_STATUS_LeeSalidaIP, status, TAM_TEXTO, SALCOMUN_NoAplica));
    estado.watermarking = UTILS_Escapa(UTILSXML_LeeTexto(UTILSXML_STATUS_LeeWatermarkingSerial, status, TAM_TEXTO));
    estado.estado = UTILS_Escapa(UTILSXML_LeeTexto(UTILSXML_STATUS_LeeUnitStaus, status, TAM_TEXTO));
    estado.id = UTILS_Escapa(UTILSXML_LeeTexto(UTILSXML_STATUS_LeeIdUnit, status, TAM_CORTO));
    estado.numSerie = UTILS_Escapa(UTILSXML_LeeTexto(UTILSXML_STATUS_LeeNumSerie, status, TAM_CORTO));
    estado.temperatura = SALCOMUN_CeldaTemperatura(status);
    estado.resolucion = SALCOMUN_CeldaResolucion(status, canales);
    estado.versiones = SALCOMUN_CeldaVersiones(status);
    estado.opciones = SALCOMUN_CeldaOpciones(status);
    return estado;
}

// ---------------------------------------------------------------------------
// Configuration rows
// ---------------------------------------------------------------------------

std::string SALCOMUN_Fila::Nombre(std::string_view base) const
{
    return std::string(base) + sufijo;
}

std::string SALCOMUN_Fila::Nombre(std::string_view base, int linea) const
{
    return std::string(base) + std::to_string(linea) + sufijo;
}

std::string SALCOMUN_Fila::Anterior(std::string_view nombre, std::string_view valor) const
{
    return configTotal ? std::string() : CTESHTML_Anterior(nombre, valor);
}

SALCOMUN_Fila SALCOMUN_PreparaFila(xmlDocPtr documento, int esMaster, const char *sufijo, bool configTotal)
{
    SALCOMUN_Fila fila;
    fila.documento = documento;
    fila.conectada = esMaster != 0;
    fila.configTotal = configTotal;
    fila.sufijo = configTotal ? SALCOMUN_SufijoTotal : (sufijo != nullptr ? sufijo : "");
    return fila;
}

void SALCOMUN_Columna::Linea(std::string_view contenido)
{
    html += UTILS_Formatea(htmllineadentrodecelda, std::string(contenido).c_str());
}

std::string SALCOMUN_CampoEntero(const SALCOMUN_Fila &fila, const char *plantilla, const std::string &nombre, int tam,
                                 int maxLongitud, int minimo, int maximo, std::string_view valor, bool deshabilitado)
{
    const std::string alSalir = UTILS_Formatea(strJSvalidaEntero, minimo, maximo);
    const std::string atributos = strJSOnBlurOnChangeCompruebacambios + SALCOMUNINT_Disabled(deshabilitado);
    return CTESHTML_Input(plantilla, nombre, tam, nombre, strJSPermititEnteros, alSalir, atributos, valor, maxLongitud) +
           fila.Anterior(nombre, valor);
}

std::string SALCOMUN_CampoPID(const SALCOMUN_Fila &fila, const std::string &nombre, int tam, int maxLongitud,
                              int minimo, int maximo, std::string_view valor)
{
    const std::string alSalir = UTILS_Formatea(strJSvalidaPID, minimo, maximo);
    return CTESHTML_Input(htmlinput, nombre, tam, nombre, strJSPermititEnteros, alSalir,
                          strJSOnBlurOnChangeCompruebacambios, valor, maxLongitud) +
           fila.Anterior(nombre, valor);
}

std::string SALCOMUN_CampoSelect(const SALCOMUN_Fila &fila, const std::string &nombre, std::string_view eventos,
                                 const std::vector<CTESHTML_Opcion> &opciones, std::string_view valor,
                                 bool deshabilitado)
{
    const std::string atributos = std::string(eventos) + SALCOMUNINT_Disabled(deshabilitado);
    return CTESHTML_SelectBox(nombre, nombre, atributos, opciones, valor) + fila.Anterior(nombre, valor);
}

std::string SALCOMUN_CampoNombreCanal(const SALCOMUN_Fila &fila, std::string_view rotulo, const std::string &nombre,
                                      int maxLongitud, std::string_view valor)
{
    return CTESHTML_InputFijo(rotulo, htmlestilorotulo) +
           CTESHTML_Input(htmlinputCHName, nombre, TAM_NOMBRECANAL, nombre, "", "Compruebacambios(this);", "", valor,
                          maxLongitud) +
           fila.Anterior(nombre, valor);
}

std::string SALCOMUN_CampoSoloLectura(const std::string &nombre, int tam, int maxLongitud, std::string_view valor,
                                      bool deshabilitado)
{
    return CTESHTML_Input(htmlinputlikecaption, nombre, tam, nombre, "", "", deshabilitado ? "disabled" : "", valor,
                          maxLongitud);
}

SALCOMUN_LineaTransporte SALCOMUN_LineaCanal(const SALCOMUN_Fila &fila, int canal, const SALCOMUN_MedidasLinea &medidas)
{
    xmlDocPtr config = fila.documento;
    const auto indice = static_cast<uint8_t>(canal);
    SALCOMUN_LineaTransporte linea;
    // An encoder channel has no input name or service id of its own: both show "n/a" under
    // the line's bare number.
    const std::string nombreLinea = fila.Nombre("", canal);
    linea.nombreEntrada = SALCOMUN_CampoSoloLectura(nombreLinea, TAM_NA, MAX_NA, SALCOMUN_NoAplica, true);
    linea.sidEntrada = linea.nombreEntrada;
    linea.nombreSalida =
        SALCOMUN_CampoNombreCanal(fila, UTILS_Formatea(htmlrotulocanal, canal), fila.Nombre("cnam", canal),
                                  medidas.maxNombre, UTILSXML_LeeTexto(UTILSXML_LeeSALTSCanalNombre, config, TAM_NOMBRE, indice));
    linea.pidVideo = SALCOMUN_CampoPID(fila, fila.Nombre("svpid", canal), medidas.tamPID, 5, PID_MINIMO, PID_MAXIMO,
                                       UTILSXML_LeeTexto(UTILSXML_LeeSALTSCanalVIDEOPID, config, TAM_TEXTO, indice));
    linea.pidAudio = SALCOMUN_CampoPID(fila, fila.Nombre("sapid", canal), medidas.tamPID, 5, PID_MINIMO, PID_MAXIMO,
                                       UTILSXML_LeeTexto(UTILSXML_LeeSALTSCanalAUDIOPID, config, TAM_TEXTO, indice));
    linea.sidSalida = SALCOMUN_CampoEntero(fila, htmlinput, fila.Nombre("svcid", canal), medidas.tamSID, MAX_SID,
                                           SID_MINIMO, SID_MAXIMO,
                                           UTILSXML_LeeTexto(UTILSXML_LeeSALTSCanalSERVICEID, config, TAM_TEXTO, indice));
    return linea;
}

std::vector<SALCOMUN_ServicioIP> SALCOMUN_ServiciosSeleccionados(xmlDocPtr config)
{
    std::vector<SALCOMUN_ServicioIP> servicios;
    const long entradas = UTILS_Numero(UTILSXML_LeeTexto(UTILSXML_LeeENTRIPNUM, config, TAM_TEXTO));
    for (long i = 1; i <= entradas && i <= UINT8_MAX; ++i) {
        const auto entrada = static_cast<uint8_t>(i);
        const long numServicios = UTILS_Numero(UTILSXML_LeeTexto(UTILSXML_LeeENTRAIPNUMSERV, config, TAM_TEXTO, entrada));
        for (long j = 1; j <= numServicios && j <= UINT8_MAX; ++j) {
            const auto servicio = static_cast<uint8_t>(j);
            if (UTILS_Numero(UTILSXML_LeeTexto(UTILSXML_LeeENTRAIPSERVSEL, config, TAM_TEXTO, entrada, servicio)) == 1)
                servicios.push_back({entrada, servicio});
        }
    }
    return servicios;
}

SALCOMUN_LineaTransporte SALCOMUN_LineaServicio(const SALCOMUN_Fila &fila, int linea, SALCOMUN_ServicioIP servicio,
                                                const SALCOMUN_MedidasLinea &medidas)
{
    xmlDocPtr config = fila.documento;
    const uint8_t i = servicio.entrada;
    const uint8_t j = servicio.servicio;
    const std::string nombreLinea = fila.Nombre("", linea);
    SALCOMUN_LineaTransporte celdas;
    celdas.nombreEntrada = SALCOMUN_CampoSoloLectura(nombreLinea, TAM_NOMBREENTRADA, MAX_NOMBREENTRADA,
                                                     UTILSXML_LeeTexto(UTILSXML_LeeENTRAIPSERVNAME, config, TAM_NOMBRE, i, j),
                                                     false);
    celdas.sidEntrada = SALCOMUN_CampoSoloLectura(nombreLinea, TAM_SIDENTRADA, MAX_SIDENTRADA,
                                                  UTILSXML_LeeTexto(UTILSXML_LeeENTRAIPSERVICEID, config, TAM_TEXTO, i, j), true);
    celdas.nombreSalida =
        SALCOMUN_CampoNombreCanal(fila, UTILS_Formatea(htmlrotuloservicio, i, j), fila.Nombre("cnam", linea),
                                  medidas.maxNombre, UTILSXML_LeeTexto(UTILSXML_LeeENTRAIPSERVNAMEOUT, config, TAM_NOMBRE, i, j));
    celdas.pidVideo = SALCOMUN_CampoSoloLectura(fila.Nombre("svpid", linea), medidas.tamPID, 5, SALCOMUN_PIDAuto, true);
    celdas.pidAudio = SALCOMUN_CampoSoloLectura(fila.Nombre("sapid", linea), medidas.tamPID, 5, SALCOMUN_PIDAuto, true);
    celdas.sidSalida = SALCOMUN_CampoEntero(fila, htmlinput, fila.Nombre("svcid", linea), medidas.tamSID, MAX_SID,
                                            SID_MINIMO, SID_MAXIMO,
                                            UTILSXML_LeeTexto(UTILSXML_LeeENTRAIPSERVICEIDOUT, config, TAM_TEXTO, i, j));
    const std::string entip = fila.Nombre("entip", linea);
    const std::string lsnumserv = fila.Nombre("lsnumserv", linea);
    celdas.ocultos = CTESHTML_Oculto(entip, entip, std::to_string(i)) +
                     CTESHTML_Oculto(lsnumserv, lsnumserv, std::to_string(j));
    return celdas;
}

SALCOMUN_CeldasUnidad SALCOMUN_CeldasConfig(const SALCOMUN_Fila &fila, const char *modelo)
{
    return {SALCOMUN_CeldaOrden(UTILSXML_LeeTexto(UTILSXML_LeeOrden, fila.documento, TAM_CORTO), fila.conectada),
            CTESHTML_CeldaModelo(fila.conectada, fila.sufijo, modelo != nullptr ? modelo : "")};
}

const char *SALCOMUN_MarcaForzar(xmlDocPtr config)
{
    const std::string cambios = UTILSXML_LeeTexto(UTILSXML_LeeCambiosWeb, config, TAM_TEXTO);
    return cambios.starts_with('1') ? htmlcheckboxmarcado : "";
}

std::string SALCOMUN_Oculto(const SALCOMUN_Fila &fila, std::string_view base, std::string_view valor)
{
    const std::string nombre = fila.Nombre(base);
    return CTESHTML_Oculto(nombre, nombre, valor);
}

std::string SALCOMUN_OcultosUnidad(const SALCOMUN_Fila &fila, uint8_t canales, int tipoUnidad)
{
    return SALCOMUN_Oculto(fila, "numcanales", UTILS_Formatea("%01d", canales)) +
           SALCOMUN_Oculto(fila, "tipounidad", std::to_string(tipoUnidad));
}

unsigned long SALCOMUN_BitrateTotal(xmlDocPtr config, uint8_t canales)
{
    unsigned long total = 0;
    for (uint8_t entrada = 1; entrada <= canales; ++entrada) {
        char activa = 0;
        if (UTILSXML_LeeEntradaActiva(config, &activa, entrada) != 0 || activa != '1')
            continue;
        std::string video = UTILSXML_LeeTexto(UTILSXML_LeeEntradaBitrateVIDEO, config, TAM_TEXTO, entrada);
        for (char &ch : video)
            if (ch == ',')
                ch = '.';
        const double mbits = std::strtod(video.c_str(), nullptr);
        if (std::isfinite(mbits) && mbits > 0 && mbits < 1e6)
            total += static_cast<unsigned long>(std::lround(mbits * 1000.0));
        const long audio = UTILS_Numero(UTILSXML_LeeTexto(UTILSXML_LeeEntradaBitrateAUDIO, config, TAM_TEXTO, entrada), -1);
        if (audio >= 0 && static_cast<std::size_t>(audio) < std::size(SALCOMUN_BitratesAudio))
            total += SALCOMUN_BitratesAudio[audio];
    }
    return total;
}

// ---------------------------------------------------------------------------
// Saves
// ---------------------------------------------------------------------------

SALCOMUN_Valores::SALCOMUN_Valores(const char *formulario, std::span<const SALCOMUN_Clave> claves)
{
    valores_.reserve(claves.size());
    for (const SALCOMUN_Clave &clave : claves) {
        Valor &valor = valores_.emplace_back();
        valor.clave = clave;
        valor.texto.fill('\0');
        if (formulario != nullptr)
            GetValueKeys(formulario, {CampoForm(clave.nombre, valor.texto.data(), valor.texto.size())});
    }
}

const char *SALCOMUN_Valores::operator[](std::string_view nombre) const
{
    for (const Valor &valor : valores_)
        if (nombre == valor.clave.nombre)
            return valor.texto.data();
    return "";
}

bool SALCOMUN_Valores::FaltaRequerida() const
{
    for (const Valor &valor : valores_)
        if (valor.clave.requerida && valor.texto[0] == '\0')
            return true;
    return false;
}

int SALCOMUN_NumCanales(std::string_view texto)
{
    if (texto.empty() || texto.size() > 3)
        return 0;
    int numero = 0;
    for (char ch : texto) {
        if (ch < '0' || ch > '9')
            return 0;
        numero = numero * 10 + (ch - '0');
    }
    return numero >= 1 && numero <= 9 ? numero : 0;
}

int SALCOMUN_GrabaCampos(xmlDocPtr config, const SALCOMUN_Valores &valores, std::span<const SALCOMUN_CampoUnidad> campos)
{
    int resultado = 0;
    for (const SALCOMUN_CampoUnidad &campo : campos)
        if (campo.graba(config, valores[campo.clave]) != 0)
            resultado = SALCOMUN_FalloEscritura;
    return resultado;
}

int SALCOMUN_LineasIP::Prepara(int numcanales, std::string_view haySalidaIP, std::string_view ntotserv,
                               std::string_view entip, std::string_view lsnumserv)
{
    activas_ = false;
    numcanales_ = numcanales;
    entradas_.clear();
    servicios_.clear();
    const long total = UTILS_Numero(ntotserv);
    if (UTILS_Numero(haySalidaIP) != 1 || total <= numcanales)
        return 0;
    const long lineas = total - numcanales;
    if (lineas > SALCOMUN_MAXLINEASIP)
        return SALCOMUN_FalloEscritura;  // more lines than inputs and services can exist: not held
    try {
        entradas_.assign(static_cast<std::size_t>(lineas), 0);
        servicios_.assign(static_cast<std::size_t>(lineas), 0);
    } catch (const std::bad_alloc &) {
        entradas_.clear();
        servicios_.clear();
        return SALCOMUN_FalloEscritura;
    }
    // Both lists fill their array at line - numcanales - 1; a pair at a channel line means
    // the browser mixed the lines up, and nothing of the IP services is trusted then.
    struct Mapa {
        std::string_view lista;
        std::vector<uint8_t> &destino;
    };
    for (const Mapa &mapa : {Mapa{entip, entradas_}, Mapa{lsnumserv, servicios_}}) {
        for (const PROCCGI_ParLinea &par : PROCCGI_ParesLinea(mapa.lista)) {
            if (par.linea <= numcanales) {
                entradas_.clear();
                servicios_.clear();
                return SALCOMUN_FalloEscritura;
            }
            if (par.linea > total)
                continue;
            const long numero = UTILS_Numero(par.valor);
            mapa.destino[static_cast<std::size_t>(par.linea - numcanales - 1)] =
                numero >= 0 && numero <= UINT8_MAX ? static_cast<uint8_t>(numero) : 0;
        }
    }
    activas_ = true;
    return 0;
}

bool SALCOMUN_LineasIP::Contiene(long linea) const
{
    return activas_ && linea > numcanales_ && linea - numcanales_ <= static_cast<long>(entradas_.size());
}

SALCOMUN_ServicioIP SALCOMUN_LineasIP::Servicio(long linea) const
{
    if (!Contiene(linea))
        return {0, 0};
    const auto indice = static_cast<std::size_t>(linea - numcanales_ - 1);
    return {entradas_[indice], servicios_[indice]};
}

int SALCOMUN_GrabaListas(xmlDocPtr config, const SALCOMUN_Valores &valores, std::span<const SALCOMUN_ListaLineas> listas,
                         int numcanales, const SALCOMUN_LineasIP &lineasIP)
{
    int resultado = 0;
    for (const SALCOMUN_ListaLineas &lista : listas) {
        for (const PROCCGI_ParLinea &par : PROCCGI_ParesLinea(valores[lista.clave])) {
            int escrito = 0;
            if (par.linea >= 1 && par.linea <= numcanales) {
                escrito = lista.canal(config, par.valor.c_str(), static_cast<uint8_t>(par.linea));
            } else if (lista.servicio != nullptr && lineasIP.Contiene(par.linea)) {
                const SALCOMUN_ServicioIP servicio = lineasIP.Servicio(par.linea);
                escrito = lista.servicio(config, par.valor.c_str(), servicio.entrada, servicio.servicio);
            }
            if (escrito != 0)
                resultado = 6;
        }
    }
    return resultado;
}

int SALCOMUN_Entrada(const SALCOMUN_Familia &familia, SALCOMUN_Pagina pagina, int fase, xmlDocPtr documento,
                     int esMaster, uint8_t canales, int opciones, const char *modelo, int fila, const char *sufijo)
{
    static constexpr const char *SALCOMUN_Familia::*cabeceras[] = {
        &SALCOMUN_Familia::cabeceraRapido, &SALCOMUN_Familia::cabeceraDetallado,
        &SALCOMUN_Familia::cabeceraTransporte, &SALCOMUN_Familia::cabeceraSalida};
    const auto pinta = [&](bool configTotal) {
        switch (pagina) {
        case SALCOMUN_PaginaRapido:
        case SALCOMUN_PaginaDetallado:
            return familia.pintaSondeo(documento, esMaster, configTotal, !configTotal && pagina == SALCOMUN_PaginaDetallado,
                                       canales, modelo, sufijo);
        case SALCOMUN_PaginaTransporte:
            return familia.pintaTransporte(documento, esMaster, configTotal, canales, opciones, modelo, sufijo);
        case SALCOMUN_PaginaSalida:
            return familia.pintaSalida(documento, esMaster, configTotal, canales, modelo, sufijo);
        }
        return 0;
    };
    switch (fase) {
    case 0:
        UTILS_Imprime(UTILS_Formatea(familia.*cabeceras[pagina]));
        return 0;
    case 1:
        if (modelo == nullptr)
            return 4;
        return pinta(false);
    case 2:
        if (pagina == SALCOMUN_PaginaTransporte)
            UTILS_Imprime(familia.cierreTransporte(fila));
        else if (pagina == SALCOMUN_PaginaSalida)
            UTILS_Imprime(familia.cierreSalida(fila));
        UTILS_Imprime(htmlfintabla);
        return 0;
    case 3:
        return pinta(true);
    default:
        return 0;
    }
}

int SALCOMUN_Graba(xmlDocPtr documento, char *formulario, const SALCOMUN_PaginaGrabar &pagina)
{
    if (formulario == nullptr)
        return SALCOMUN_SinTexto;
    const SALCOMUN_Valores valores(formulario, pagina.claves);
    const int numcanales = SALCOMUN_NumCanales(valores["numcanales"]);
    if (valores.FaltaRequerida() || numcanales == 0 || (pagina.admite != nullptr && !pagina.admite(valores)))
        return SALCOMUN_DatosInvalidos;

    int resultado = SALCOMUN_GrabaCampos(documento, valores, pagina.campos);
    if (pagina.listas.empty())
        return resultado;
    // Values are stored as received.
    SALCOMUN_LineasIP lineasIP;
    if (lineasIP.Prepara(numcanales, valores["haysalidaip"], valores["ntotserv"], valores["entip"],
                         valores["lsnumserv"]) != 0)
        resultado = SALCOMUN_FalloEscritura;
    if (SALCOMUN_GrabaListas(documento, valores, pagina.listas, numcanales, lineasIP) != 0)
        resultado = SALCOMUN_FalloEscritura;
    return resultado;
}

int SALCOMUN_PintaLineaSondeo(const SALCOMUN_Familia &familia, xmlDocPtr status, int esMaster, int configTotal,
                              int detallado, uint8_t canales, const char *modelo)
{
    const SALCOMUN_Estado estado = SALCOMUN_LeeEstado(status, esMaster != 0, canales, modelo != nullptr ? modelo : "");
    const auto led = [&](SALCOMUN_Led indice) { return estado.leds[indice].c_str(); };
    if (configTotal != 0) {
        UTILS_Imprime(UTILS_Formatea(familia.bloqueEstado, led(SALCOMUN_LedTemp), led(SALCOMUN_LedEAS),
                                     led(SALCOMUN_LedCH1), led(SALCOMUN_LedCH2), led(SALCOMUN_LedCH3),
                                     led(SALCOMUN_LedCH4), led(SALCOMUN_LedOUT), led(SALCOMUN_LedRFLoop),
                                     estado.resolucion.c_str(), estado.versiones.c_str()));
    } else if (detallado != 0) {
        UTILS_Imprime(UTILS_Formatea(familia.filaDetallado, estado.orden.c_str(), estado.modelo.c_str(),
                                     estado.id.c_str(), estado.numSerie.c_str(), estado.temperatura.c_str(),
                                     estado.resolucion.c_str(), estado.versiones.c_str(), estado.opciones.c_str()));
    } else if (familia.ledEAS) {
        UTILS_Imprime(UTILS_Formatea(familia.filaRapido, estado.orden.c_str(), estado.modelo.c_str(),
                                     led(SALCOMUN_LedTemp), led(SALCOMUN_LedEAS), led(SALCOMUN_LedCH1),
                                     led(SALCOMUN_LedCH2), led(SALCOMUN_LedCH3), led(SALCOMUN_LedCH4),
                                     led(SALCOMUN_LedOUT), led(SALCOMUN_LedRFLoop), estado.tabla.c_str(),
                                     estado.canal.c_str(), estado.salidaIP.c_str(), estado.watermarking.c_str(),
                                     estado.estado.c_str()));
    } else {
        UTILS_Imprime(UTILS_Formatea(familia.filaRapido, estado.orden.c_str(), estado.modelo.c_str(),
                                     led(SALCOMUN_LedTemp), led(SALCOMUN_LedCH1), led(SALCOMUN_LedCH2),
                                     led(SALCOMUN_LedCH3), led(SALCOMUN_LedCH4), led(SALCOMUN_LedOUT),
                                     led(SALCOMUN_LedRFLoop), estado.tabla.c_str(), estado.canal.c_str(),
                                     estado.salidaIP.c_str(), estado.watermarking.c_str(), estado.estado.c_str()));
    }
    return 0;
}
