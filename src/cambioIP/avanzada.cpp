// avanzada.cpp: the advanced configuration of one unit. Clicking a unit's model on any
// multi-unit page opens every section of that unit on one page (status, input, transport,
// output, IP, network, test), painted by the same row functions as the multi-unit pages in
// their advanced mode (phase 3, fields named "..._tot"). The store writes all sections at
// once and, when the operator asks for it, queues the unit for the control daemon.
#include "cambioIP/operaciones_unidad.h"

#include "cambioIP/cambioIP.h"
#include "cambioIP/cambioIP_int.h"
#include "cambioIP/paginas.h"

#include "cteshtml/cteshtml.h"
#include "cteshtml/paginas_unidad.h"
#include "gestfich/gestfich.h"
#include "utils/utils.h"
#include "utilsXML/utilsXML.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr std::size_t CIP_TamValor = 500;
// Phase of the row functions that paints a unit's section of the advanced page.
constexpr int CIP_FaseAvanzada = 3;

// The configuration sections of the page, in the order they are painted.
const CIP_TablaPagina *const CIP_SeccionesPagina[] = {
    &CIP_FuncionesConfigEntrada, &CIP_FuncionesTransporte, &CIP_FuncionesSalida,
    &CIP_FuncionesSalidaIP,      &CIP_FuncionesConfigRed,  &CIP_FuncionesTest,
};

// The sections of the store, in the order they are stored (test before IP), with the line
// that tells the operator which one failed. The IP section is stored only for models with
// an IP port.
struct CIP_SeccionGrabar {
    const CIP_TablaGrabar *tabla;
    const char *error;
    bool soloConIP;
};
const CIP_SeccionGrabar CIP_SeccionesGrabar[] = {
    {&CIP_FuncionesGrabarEntrada, "Error Storing Input config<br>\n", false},
    {&CIP_FuncionesGrTransporte, "Error Storing TS config<br>\n", false},
    {&CIP_FuncionesGrabarSalida, "Error Storing Output config<br>\n", false},
    {&CIP_FuncionesGrabarTest, "Error Storing Test or IP config<br>\n", false},
    {&CIP_FuncionesGrabarSalidaIP, "Error Storing Test or IP config<br>\n", true},
};

// The function of the unit's family in a table; none for the placeholder, the unknown
// model or an empty slot.
SALCOMUN_FuncionPagina CIPINT_FuncionSeccion(const CIP_TablaPagina &tabla, int familia)
{
    return familia >= 0 && familia < SALCOMUN_NumFamilias ? tabla.funciones[familia] : nullptr;
}
SALCOMUN_FuncionGrabar CIPINT_FuncionSeccion(const CIP_TablaGrabar &tabla, int familia)
{
    return familia >= 0 && familia < SALCOMUN_NumFamilias ? tabla.funciones[familia] : nullptr;
}

// Paints one section of the unit; a section that fails shows its error in its place.
void CIPINT_PintaSeccion(SALCOMUN_FuncionPagina funcion, xmlDocPtr documento, int esMaster,
                         const CIPINT_ModeloUnidad &modelo)
{
    CIPINT_ErrorGraveWeb(funcion(CIP_FaseAvanzada, documento, esMaster, modelo.canales, modelo.opciones,
                                 modelo.entradasVideo, modelo.capacidades, modelo.texto, 0, CIP_SufijoTotal,
                                 modelo.familia, modelo.parametro));
}

} // namespace

int CIP_MuestraTodalaCongif(char *formulario)
{
    std::string sufijo;
    CIPINT_TomaCampo(formulario, "sufijo", sufijo, CIP_TamValor);
    const int esMaster = sufijo.empty() ? 1 : 0;
    UTILS_Imprime(htmlConfigTotalInicio);

    CIPINT_Directorio directorio;
    if (!directorio)
        return UTILS_ImprimeFormato("%s", htmlConfigTotalFin);

    CIPINT_DocumentoUnidad status = CIPINT_DocumentoUnidad::Abre(directorio.get(), CIPINT_RutaUnidad(sufijo, 1), 1);
    CIPINT_ModeloUnidad modelo;
    if (status)
        UTILSXML_STATUS_LeeTipoUnidad(status.get(), modelo.texto, sizeof modelo.texto - 1);
    modelo.Resuelve();

    const std::string id = UTILSXML_LeeTexto(UTILSXML_STATUS_LeeIdUnit, status.get(), 40);
    const std::string orden = UTILSXML_LeeTexto(UTILSXML_STATUS_LeeOrden, status.get(), 40);
    const std::string serie = UTILSXML_LeeTexto(UTILSXML_STATUS_LeeNumSerie, status.get(), 40);
    const std::string mac = UTILSXML_LeeTexto(UTILSXML_STATUS_LeeMAC, status.get(), 300);
    const std::string ip = UTILSXML_LeeTexto(UTILSXML_STATUS_LeeIP, status.get(), 300);
    const std::string cabecera =
        CIPINT_OcultosUnidad(sufijo, modelo) +
        UTILS_Formatea(htmlConfigTotalCabecera, UTILS_Escapa(id).c_str(), UTILS_Escapa(orden).c_str(),
                       UTILS_Escapa(modelo.texto).c_str(), UTILS_Escapa(serie).c_str(),
                       UTILS_Escapa(mac).c_str(), UTILS_Escapa(ip).c_str());
    UTILS_Imprime(cabecera);

    SALCOMUN_FuncionPagina sondeo = CIPINT_FuncionSeccion(CIP_FuncionesSondeoRapido, modelo.familia);
    if (sondeo == nullptr) {
        CIPINT_ErrorGraveWeb(2);
        return UTILS_ImprimeFormato("%s", htmlConfigTotalFin);
    }
    CIPINT_PintaSeccion(sondeo, status.get(), esMaster, modelo);

    CIPINT_DocumentoUnidad config = CIPINT_DocumentoUnidad::Abre(directorio.get(), CIPINT_RutaUnidad(sufijo, 0), 0);
    if (!config) {
        CIPINT_ErrorGraveWeb(1);
        return UTILS_ImprimeFormato("%s", htmlConfigTotalFin);
    }
    for (const CIP_TablaPagina *tabla : CIP_SeccionesPagina) {
        SALCOMUN_FuncionPagina seccion = CIPINT_FuncionSeccion(*tabla, modelo.familia);
        if (seccion == nullptr)
            break;
        CIPINT_PintaSeccion(seccion, config.get(), esMaster, modelo);
    }

    config.Cierra(false);
    status.Cierra(false);
    return UTILS_ImprimeFormato("%s", htmlConfigTotalFin);
}

int CIP_GrabaInfoTotal(char *formulario)
{
    std::string direccion, mascara, gateway, dhcp, sufijo, canales, enviar;
    bool red = CIPINT_TomaCampo(formulario, "networkipdir", direccion, CIP_TamValor);
    red &= CIPINT_TomaCampo(formulario, "networkmask", mascara, CIP_TamValor);
    red &= CIPINT_TomaCampo(formulario, "gateway", gateway, CIP_TamValor);
    red &= CIPINT_TomaCampo(formulario, "dhcp", dhcp, CIP_TamValor);
    CIPINT_TomaCampo(formulario, "sufijo", sufijo, CIP_TamValor);
    CIPINT_TomaCampo(formulario, "numcanales", canales, CIP_TamValor);
    CIPINT_TomaCampo(formulario, "cfgtotenviar", enviar, CIP_TamValor);
    const bool esMaster = sufijo.empty();

    CIPINT_Directorio directorio;
    if (!directorio)
        return CIPINT_ErrorGraveWeb(1);
    CIPINT_DocumentoUnidad documento =
        CIPINT_DocumentoUnidad::Abre(directorio.get(), CIPINT_RutaUnidad(sufijo, 0), 0, true);
    if (!documento) {
        CIPINT_ErrorGraveWeb(6);
        return UTILS_ImprimeFormato("Config stored (IP: %s, model %s)<br>\n", UTILS_Escapa(direccion).c_str(), "unknown");
    }

    CIPINT_ModeloUnidad modelo;
    if (UTILSXML_LeeTipoUnidad(documento.get(), modelo.texto, sizeof modelo.texto - 1) != 0)
        std::strcpy(modelo.texto, "unknown");
    modelo.Resuelve();
    if (modelo.familia >= CIPINT_FamiliaDesconocida)
        return CIPINT_ErrorGraveWeb(2);

    // The network settings are written here, not by a section: an empty address would
    // leave the unit unreachable, and so would one that is not an address.
    if (!red || direccion.empty() || mascara.empty() || gateway.empty() || dhcp.empty())
        return CIPINT_ErrorGraveWeb(7);
    std::string rechazado = CIPINT_CampoConControl(formulario);
    if (rechazado.empty())
        rechazado = CIPINT_DireccionesRechazadas(direccion, mascara, gateway);
    if (!rechazado.empty()) {
        CIPINT_AvisaRechazo(rechazado);
        return CIPINT_ErrorGraveWeb(7);
    }
    if (UTILSXML_GrabaIP(documento.get(), direccion.c_str()) != 0)
        CIPINT_ErrorGraveWeb(6);
    if (UTILSXML_GrabaMascara(documento.get(), mascara.c_str()) != 0)
        CIPINT_ErrorGraveWeb(6);
    if (UTILSXML_GrabaGateway(documento.get(), gateway.c_str()) != 0)
        CIPINT_ErrorGraveWeb(6);
    // DHCP is one character: "0" off, anything else on.
    if (UTILSXML_GrabaDHCPActivo(documento.get(), dhcp[0] == '0' ? '0' : '1') != 0)
        CIPINT_ErrorGraveWeb(6);

    // One byte more than the read: an address of exactly 300 bytes stays terminated.
    char leida[300 + 1] = {};
    if (UTILSXML_LeeIP(documento.get(), leida, sizeof leida - 1) != 0)
        std::strcpy(leida, "unknown");
    const std::string direccionHtml = UTILS_Escapa(leida);
    const std::string modeloHtml = UTILS_Escapa(modelo.texto);
    UTILS_ImprimeFormato("Processing data for unit with ip %s, model %s<br>\n", direccionHtml.c_str(), modeloHtml.c_str());

    const long numCanales = std::strtol(canales.c_str(), nullptr, 10);
    if (numCanales < 1 || numCanales > 9) {
        CIPINT_ErrorGraveWeb(7);
    } else {
        for (const CIP_SeccionGrabar &seccion : CIP_SeccionesGrabar) {
            if (seccion.soloConIP && !modelo.TieneIP())
                continue;
            SALCOMUN_FuncionGrabar grabar = CIPINT_FuncionSeccion(*seccion.tabla, modelo.familia);
            // Every section cuts up its own copy of the record.
            std::string registro = formulario != nullptr ? formulario : "";
            const int resultado = grabar == nullptr ? 2 : grabar(documento.get(), registro.data());
            if (resultado != 0) {
                CIPINT_ErrorGraveWeb(resultado);
                UTILS_Imprime(seccion.error);
            }
        }
    }

    if (UTILSXML_GrabaCambiosWeb(documento.get(), "1") != 0)
        CIPINT_ErrorGraveWeb(6);
    // A document that could not be written is not reported as stored nor queued.
    if (documento.Cierra(true) != 0)
        return CIPINT_ErrorGraveWeb(6);

    if (enviar != "1")
        return UTILS_ImprimeFormato("Config stored (IP: %s, model %s)<br>\n", direccionHtml.c_str(), modeloHtml.c_str());
    UTILS_ImprimeFormato("Config Sent (IP: %s, model %s)<br>\n", direccionHtml.c_str(), modeloHtml.c_str());
    if (esMaster) {
        if (GESTFICH_WriteCommandtoFile(GESTFICH_ComandoCambioMaster, UTILS_MapeaRuta(GESTFICH_FicheroComando).c_str()) == 0)
            return 0;
        UTILS_ImprimeFormato("Unit with ip %s could not be added to the queue!<br>\n", direccionHtml.c_str());
        return CIPINT_ErrorGraveWeb(6);
    }
    const std::string entrada = UTILS_Formatea("network.%s\n", sufijo.c_str());
    if (GESTFICH_AddFiletoChanges(entrada.data(), static_cast<long>(entrada.size()),
                                  UTILS_MapeaRuta(GESTFICH_FicheroCambios).c_str()) == 0)
        return UTILS_ImprimeFormato("Unit with ip %s added to the queue...<br>\n", direccionHtml.c_str());
    UTILS_ImprimeFormato("Unit with ip %s could not be added to the queue!<br>\n", direccionHtml.c_str());
    return CIPINT_ErrorGraveWeb(6);
}
