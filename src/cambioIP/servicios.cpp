// servicios.cpp: the service list of one IP input of a unit. When a unit receives a
// multi-programme transport stream on an IP input, the operator picks here which of the
// services found in it go to the output; the choice is stored in the unit's configuration
// document and sent with the next "Apply Selected" of the unit.
#include "cambioIP/operaciones_unidad.h"

#include "cambioIP/cambioIP.h"
#include "cambioIP/cambioIP_int.h"
#include "cambioIP/paginas.h"

#include "cteshtml/cteshtml.h"
#include "cteshtml/paginas_unidad.h"
#include "proccgilib/proccgilib.h"
#include "utils/utils.h"
#include "utilsXML/utilsXML.h"

#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <vector>

namespace {

// Capacity of the request values, and of the three per-service lists.
constexpr std::size_t CIP_TamValor = 500;
constexpr std::size_t CIP_TamLista = 10001;
// Read size of the service values; the store needs at least 17 bytes for them. The buffers
// hold one byte more: a value that fills the read is copied without a terminator.
constexpr uint16_t CIP_TamServicio = 50;
// IP inputs and services are numbered in one byte by the store.
constexpr long CIP_MaxNumero = 255;


// A value of one IP input (entrada) or of one of its services: empty when the read fails.

// A value of an IP input, of one of its services, or of the status document, in the list's
// buffer size; a failed read is an empty text.
std::string CIPINT_LeeEntrada(UTILSXML_Lector1 lector, xmlDocPtr documento, long entrada)
{
    return UTILSXML_LeeTexto(lector, documento, CIP_TamServicio, static_cast<uint8_t>(entrada));
}

std::string CIPINT_LeeServicio(UTILSXML_Lector2 lector, xmlDocPtr documento, long entrada, long servicio)
{
    return UTILSXML_LeeTexto(lector, documento, CIP_TamServicio, static_cast<uint8_t>(entrada),
                             static_cast<uint8_t>(servicio));
}

std::string CIPINT_LeeStatus(UTILSXML_Lector0 lector, xmlDocPtr documento)
{
    return UTILSXML_LeeTexto(lector, documento, CIP_TamServicio);
}

std::string CIPINT_Oculto(const std::string &id, const std::string &valor)
{
    return CTESHTML_DivOculto(id, UTILS_Escapa(valor));
}

std::string CIPINT_ONoSabido(const std::string &valor) { return valor.empty() ? "--" : valor; }

// One row of the list: service j of IP input k. Bitrates are looked up only for the
// services that the unit reported in its status (up to limiteBitrate).
std::string CIPINT_LineaServicio(xmlDocPtr config, xmlDocPtr status, long k, long j, long limiteBitrate)
{
    const std::string n = UTILS_Formatea("-%ld", j);
    const std::string sel = CIPINT_LeeServicio(UTILSXML_LeeENTRAIPSERVSEL, config, k, j);
    const std::string nombre = CIPINT_LeeServicio(UTILSXML_LeeENTRAIPSERVNAME, config, k, j);
    const std::string nombreSalida = CIPINT_LeeServicio(UTILSXML_LeeENTRAIPSERVNAMEOUT, config, k, j);
    const std::string id = CIPINT_LeeServicio(UTILSXML_LeeENTRAIPSERVICEID, config, k, j);
    const std::string idSalida = CIPINT_LeeServicio(UTILSXML_LeeENTRAIPSERVICEIDOUT, config, k, j);

    std::string actual = "--";
    std::string celdaBitrate = "--";
    if (j <= limiteBitrate) {
        actual = CIPINT_ONoSabido(CIPINT_LeeServicio(UTILSXML_STATUS_LeeENTRAIPSERVBITRATE, status, k, j));
        const std::string maximo =
            CIPINT_ONoSabido(CIPINT_LeeServicio(UTILSXML_STATUS_LeeENTRAIPSERVMAXBITRATE, status, k, j));
        celdaBitrate = UTILS_Escapa(actual) + "/" + UTILS_Escapa(maximo);
    }

    const std::string caja = CTESHTML_Checkbox("slselect" + n, "slselect" + n, sel == "1", strJSClickServiceListSel);
    const std::string celdaNombre =
        CTESHTML_Div("cnam" + n, UTILS_Escapa(nombre)) + CIPINT_Oculto("cnamOUT" + n, nombreSalida);
    const std::string celdaId = CTESHTML_Div("svcid" + n, UTILS_Escapa(id)) + CIPINT_Oculto("svcidOUT" + n, idSalida);
    celdaBitrate += CIPINT_Oculto("servbitrate" + n, actual);
    return UTILS_Formatea(htmlListaServiciosLinea, caja.c_str(), celdaNombre.c_str(), celdaId.c_str(),
                          celdaBitrate.c_str());
}

// One per-service list of the store: its key, its accessor, and whether a failed write of
// an empty or all-blank value is forgiven (an output name the unit will fill in).
struct CIP_ListaServicio {
    const char *clave;
    int (*graba)(xmlDocPtr, const char *, uint8_t, uint8_t);
    bool perdonaVacio;
};
const CIP_ListaServicio CIP_ListasServicio[] = {
    {"slselect", UTILSXML_GrabaENTRAIPSERVSEL, false},
    {"cnamOUT", UTILSXML_GrabaENTRAIPSERVNAMEOUT, true},
    {"svcidOUT", UTILSXML_GrabaENTRAIPSERVICEIDOUT, false},
};

} // namespace

// ---------------------------------------------------------------------------
// Helpers shared with the advanced page
// ---------------------------------------------------------------------------

bool CIPINT_TomaCampo(const char *formulario, const char *clave, std::string &valor, std::size_t capacidad)
{
    std::vector<char> buffer(capacidad > 0 ? capacidad : 1, '\0');
    // A one-byte destination receives only the terminator: it tells that the key came.
    char marca[1] = {'x'};
    GetValueKeys(formulario, {{clave, buffer.data(), buffer.size()}, {clave, marca, sizeof marca}});
    valor = buffer.data();
    return marca[0] == '\0';
}

std::string CIPINT_RutaUnidad(const std::string &sufijo, int tipo)
{
    if (sufijo.empty())
        return CIPINT_RutaMaster(tipo);
    return UTILS_Formatea("%s/%s.%s.xml", UTILSXML_MiraPATHConfig(), UTILSXML_Nombres_Ficheros[tipo != 0 ? 1 : 0],
                          sufijo.c_str());
}

void CIPINT_ModeloUnidad::Resuelve()
{
    CTESHTML_Obtienetipounidad(texto, &canales, &opciones, &entradasVideo, &capacidades, &familia, &parametro);
}

std::string CIPINT_OcultosUnidad(const std::string &sufijo, const CIPINT_ModeloUnidad &modelo)
{
    return CIPINT_Oculto("idunit_tot", sufijo) + CIPINT_Oculto("numcanales_tot", std::to_string(modelo.canales)) +
           CIPINT_Oculto("tipounidad_tot", std::to_string(modelo.familia)) +
           CIPINT_Oculto("haysalidaip_tot", modelo.TieneIP() ? "1" : "0");
}

// ---------------------------------------------------------------------------
// The list and its store
// ---------------------------------------------------------------------------

int CIP_MuestraListaServicios(char *formulario)
{
    std::string sufijo, textoEntrada, total;
    CIPINT_TomaCampo(formulario, "sufijo", sufijo, CIP_TamValor);
    CIPINT_TomaCampo(formulario, "entip", textoEntrada, CIP_TamValor);
    if (!CIPINT_TomaCampo(formulario, "total", total, CIP_TamValor))
        total = "0";
    UTILS_Imprime(htmlListaServiciosInicio);

    CIPINT_Directorio directorio;
    if (!directorio)
        return UTILS_ImprimeFormato("%s", htmlListaServiciosFin);

    // The model comes from the type the unit reports in its status document.
    CIPINT_DocumentoUnidad status = CIPINT_DocumentoUnidad::Abre(directorio.get(), CIPINT_RutaUnidad(sufijo, 1), 1);
    CIPINT_ModeloUnidad modelo;
    if (status)
        UTILSXML_STATUS_LeeTipoUnidad(status.get(), modelo.texto, sizeof modelo.texto - 1);
    modelo.Resuelve();
    UTILS_Imprime(CIPINT_OcultosUnidad(sufijo, modelo) + CIPINT_Oculto("total", total));
    if (!modelo.TieneIP()) {
        UTILS_Imprime(htmlListaServiciosErronea);
        return UTILS_ImprimeFormato("%s", htmlListaServiciosFin);
    }

    CIPINT_DocumentoUnidad config = CIPINT_DocumentoUnidad::Abre(directorio.get(), CIPINT_RutaUnidad(sufijo, 0), 0);
    const long k = UTILS_Numero(textoEntrada);
    const long entradas = modelo.canales;
    const bool entradaValida = entradas != 0 && k >= 1 && k <= entradas;

    // Bitrates exist only for the services the unit reported on an input it has.
    long limiteBitrate = 0;
    const long entradasStatus = UTILS_Numero(CIPINT_LeeStatus(UTILSXML_STATUS_LeeENTRIPNUM, status.get()));
    if (entradaValida && entradasStatus != 0 && entradasStatus <= entradas)
        limiteBitrate = UTILS_Numero(CIPINT_LeeEntrada(UTILSXML_STATUS_LeeENTRAIPNUMSERV, status.get(), k));

    const long servicios = entradaValida ? UTILS_Numero(CIPINT_LeeEntrada(UTILSXML_LeeENTRAIPNUMSERV, config.get(), k))
                                         : 0;
    UTILS_Imprime(CIPINT_Oculto("lsnumserv", std::to_string(servicios)) + CIPINT_Oculto("entip", std::to_string(k)));

    if (entradaValida && servicios > 0) {
        std::string lista = UTILS_Formatea(htmlListaServiciosCabecera, static_cast<int>(k));
        for (long j = 1; j <= servicios && j <= CIP_MaxNumero; ++j)
            lista += CIPINT_LineaServicio(config.get(), status.get(), k, j, limiteBitrate);
        const std::string libre = CIPINT_ONoSabido(CIPINT_LeeStatus(UTILSXML_STATUS_LeeENTRIPBITRATEFREE, status.get()));
        lista += UTILS_Formatea(htmlListaServiciosPie, UTILS_Escapa(libre).c_str());
        UTILS_Imprime(lista);
    } else {
        UTILS_Imprime(htmlListaServiciosErronea);
    }

    config.Cierra(false);
    status.Cierra(false);
    UTILS_Imprime(htmlListaServiciosBotones);
    return UTILS_ImprimeFormato("%s", htmlListaServiciosFin);
}

int CIP_GrabaListServicios(char *formulario)
{
    std::string sufijo, textoEntrada, textoServicios;
    std::string listas[std::size(CIP_ListasServicio)];
    bool presentes = CIPINT_TomaCampo(formulario, "sufijo", sufijo, CIP_TamValor);
    presentes &= CIPINT_TomaCampo(formulario, "entip", textoEntrada, CIP_TamValor);
    presentes &= CIPINT_TomaCampo(formulario, "lsnumserv", textoServicios, CIP_TamValor);
    for (std::size_t i = 0; i < std::size(CIP_ListasServicio); ++i)
        presentes &= CIPINT_TomaCampo(formulario, CIP_ListasServicio[i].clave, listas[i], CIP_TamLista);

    CIPINT_Directorio directorio;
    if (!directorio)
        return CIPINT_ErrorGraveWeb(1);
    CIPINT_DocumentoUnidad documento =
        CIPINT_DocumentoUnidad::Abre(directorio.get(), CIPINT_RutaUnidad(sufijo, 0), 0, true);
    if (!documento)
        return CIPINT_ErrorGraveWeb(6);

    CIPINT_ModeloUnidad modelo;
    UTILSXML_LeeTipoUnidad(documento.get(), modelo.texto, sizeof modelo.texto - 1);
    modelo.Resuelve();
    if (modelo.familia >= CIPINT_FamiliaDesconocida)
        return CIPINT_ErrorGraveWeb(2);

    // The store numbers inputs in one byte: a larger input would name another one.
    const long k = UTILS_Numero(textoEntrada);
    if (!presentes || k < 1 || k > CIP_MaxNumero)
        return CIPINT_ErrorGraveWeb(7);
    // A service name or number is one line of the unit's document.
    const std::string rechazado = CIPINT_CampoConControl(formulario);
    if (!rechazado.empty()) {
        CIPINT_AvisaRechazo(rechazado);
        return CIPINT_ErrorGraveWeb(7);
    }

    // Only the services that the page listed count; the store numbers them in one byte.
    const long servicios = UTILS_Numero(textoServicios);
    bool fallo = false;
    for (std::size_t i = 0; i < std::size(CIP_ListasServicio); ++i) {
        const CIP_ListaServicio &lista = CIP_ListasServicio[i];
        for (const PROCCGI_ParLinea &par : PROCCGI_ParesLinea(listas[i])) {
            if (par.linea < 1 || par.linea > servicios || par.linea > CIP_MaxNumero)
                continue;
            if (lista.graba(documento.get(), par.valor.c_str(), static_cast<uint8_t>(k),
                            static_cast<uint8_t>(par.linea)) == 0)
                continue;
            if (!lista.perdonaVacio || CTESHTML_CompruebaEspacios(par.valor.c_str()) == 0)
                fallo = true;
        }
    }
    if (fallo)
        CIPINT_ErrorGraveWeb(6);

    if (UTILSXML_GrabaCambiosWeb(documento.get(), "1") != 0)
        CIPINT_ErrorGraveWeb(6);
    if (documento.Cierra(true) != 0)
        return CIPINT_ErrorGraveWeb(6);
    return 0;
}
