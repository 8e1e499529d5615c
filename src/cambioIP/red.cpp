// red.cpp: the network configuration page (DHCP, address, mask, gateway and order number
// of every unit of the master's family) and the save of one unit's network settings.
#include "cambioIP/paginas.h"
#include "cambioIP/cambioIP_int.h"

#include "cteshtml/cteshtml.h"
#include "cteshtml/paginas_comunes.h"
#include "proccgilib/proccgilib.h"
#include "utils/utils.h"
#include "utilsXML/utilsXML.h"

#include <cstdio>

namespace {

// The DHCP box switches the unit's three address inputs on and off.
constexpr char CIP_AtributosDHCP[] = " onclick=\"EnableDisablegroup(this);\"";

// An address input (IP, mask, gateway): 15 characters, disabled while DHCP is on.
std::string CIPINT_InputDireccion(const std::string &id, const std::string &nombre, const std::string &valor,
                                  bool dhcp)
{
    return CTESHTML_Input(htmlinputIP, id, 15, nombre, strJSPermitirIPs, strJSvalidaIP, dhcp ? "disabled" : "",
                          valor, 15);
}

} // namespace

int CIPINT_PintaLineaConfigRed(xmlDocPtr documento, int esMaster, int avanzado, uint8_t, int, int, int,
                               const char *modelo, int fila, const char *sufijo)
{
    if (avanzado == 0 && esMaster == 0 && sufijo == nullptr)
        return 4;
    const std::string suf = avanzado != 0 ? CIP_SufijoTotal : (sufijo != nullptr ? sufijo : "");

    char dhcp = '\0';
    const bool dhcpActivo = UTILSXML_LeeDHCPActivo(documento, &dhcp) == 0 && dhcp == '1';
    const std::string ip = UTILSXML_LeeTexto(UTILSXML_LeeIP, documento, 300);
    const std::string mascara = UTILSXML_LeeTexto(UTILSXML_LeeMascara, documento, 300);
    const std::string gateway = UTILSXML_LeeTexto(UTILSXML_LeeGateway, documento, 300);

    const std::string nombreDHCP = "dhcpcheck" + suf;
    const std::string cajaDHCP = CTESHTML_Checkbox(
        nombreDHCP, nombreDHCP, dhcpActivo, std::string(CIP_AtributosDHCP) + strJSOnBlurOnChangeCompruebacambios);

    if (avanzado != 0) {
        // The advanced page names the mask and gateway by their ids and has no twins.
        const std::string seccion = UTILS_Formatea(
            htmlConfigTotalNetworkConfig, cajaDHCP.c_str(),
            CIPINT_InputDireccion("networkipdir" + suf, "networkipdir" + suf, ip, dhcpActivo).c_str(),
            CIPINT_InputDireccion("lmask" + suf, "lmask" + suf, mascara, dhcpActivo).c_str(),
            CIPINT_InputDireccion("lgate" + suf, "lgate" + suf, gateway, dhcpActivo).c_str());
        UTILS_Imprime(seccion);
        return 0;
    }

    const std::string id = UTILSXML_LeeTexto(UTILSXML_LeeIDUnit, documento, 40);
    const std::string mac = UTILSXML_LeeTexto(UTILSXML_LeeMAC, documento, 40);
    const std::string orden = UTILSXML_LeeTexto(UTILSXML_LeeOrden, documento, 40);
    const std::string cambiosWeb = UTILSXML_LeeTexto(UTILSXML_LeeCambiosWeb, documento, 50);

    // What the row painted, so that the page script can tell what the user changed.
    const std::string gemelos = CTESHTML_Anterior("networkipdir" + suf, ip) +
                                CTESHTML_Anterior("networkmask" + suf, mascara) +
                                CTESHTML_Anterior("gateway" + suf, gateway) +
                                CTESHTML_Anterior(nombreDHCP, dhcpActivo ? "1" : "0");
    const std::string cajaForzar =
        CTESHTML_Checkbox("forzarconfig" + suf, "forzarconfig" + suf, !cambiosWeb.empty() && cambiosWeb[0] == '1', "");
    const std::string nombreOrden = "orden" + suf;
    const std::string inputOrden =
        CTESHTML_Input(htmlinputLCN, nombreOrden, 4, nombreOrden, strJSPermititEnteros,
                       UTILS_Formatea(strJSvalidaEntero, 1, 9999), "", orden, 4) +
        CTESHTML_Anterior(nombreOrden, orden);

    const std::string linea = UTILS_Formatea(
        htmlNetwork, UTILS_Escapa(id).c_str(),
        CTESHTML_CeldaModelo(esMaster != 0, suf, modelo != nullptr ? modelo : "").c_str(), fila,
        UTILS_Escapa(mac).c_str(), cajaDHCP.c_str(),
        CIPINT_InputDireccion("networkipdir" + suf, "networkipdir" + suf, ip, dhcpActivo).c_str(),
        CIPINT_InputDireccion("lmask" + suf, "networkmask" + suf, mascara, dhcpActivo).c_str(),
        CIPINT_InputDireccion("lgate" + suf, "gateway" + suf, gateway, dhcpActivo).c_str(), gemelos.c_str(),
        cajaForzar.c_str(), inputOrden.c_str());
    UTILS_Imprime(linea);
    return 0;
}

int CIPINT_GeneraConfigRed(int fase, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                           int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo, int,
                           int)
{
    switch (fase) {
    case 0:
        UTILS_Imprime(UTILS_Formatea(htmlNetworkCabecera));
        return 0;
    case 1:
        if (modelo == nullptr)
            return 4;
        return CIPINT_PintaLineaConfigRed(documento, esMaster, 0, canales, opciones, entradasVideo, capacidades,
                                          modelo, fila, sufijo);
    case 2:
        UTILS_Imprime(UTILS_Formatea(htmlNetworkultimalinea, fila));
        UTILS_Imprime(htmlfintabla);
        return 0;
    case 3:
        return CIPINT_PintaLineaConfigRed(documento, esMaster, 1, canales, opciones, entradasVideo, capacidades,
                                          modelo, fila, sufijo);
    default:
        return 0;
    }
}

int CIPINT_GrabaConfigRed(xmlDocPtr documento, char *formulario)
{
    if (formulario == nullptr)
        return 4;

    char ip[500] = {}, mascara[500] = {}, gateway[500] = {}, dhcp[500] = {}, orden[500] = {};
    GetValueKeys(formulario, {{"networkipdir", ip}, {"networkmask", mascara}, {"gateway", gateway}, {"dhcp", dhcp},
                              {"orden", orden}});
    if (ip[0] == '\0' || mascara[0] == '\0' || gateway[0] == '\0' || orden[0] == '\0')
        return 7;
    // The daemon gives the unit these settings: a value that is no address, or an order
    // number outside the page's 1..9999, is refused like a missing one.
    std::string rechazado = CIPINT_DireccionesRechazadas(ip, mascara, gateway);
    if (rechazado.empty() && !CIPINT_EsNumero(orden, 1, 9999))
        rechazado = "orden";
    if (!rechazado.empty()) {
        CIPINT_AvisaRechazo(rechazado);
        return 7;
    }

    // Every write is attempted; one failure makes the whole save a failure.
    struct Escritura {
        int (*graba)(xmlDocPtr, const char *);
        const char *valor;
    };
    const Escritura escrituras[] = {
        {UTILSXML_GrabaOrden, orden},
        {UTILSXML_GrabaIP, ip},
        {UTILSXML_GrabaMascara, mascara},
        {UTILSXML_GrabaGateway, gateway},
    };
    bool fallo = false;
    for (const Escritura &escritura : escrituras)
        fallo |= escritura.graba(documento, escritura.valor) != 0;

    // Only '0' turns DHCP off; any other value, or none, leaves the unit on DHCP.
    const char activo = dhcp[0] == '0' || dhcp[0] == '1' ? dhcp[0] : '1';
    fallo |= UTILSXML_GrabaDHCPActivo(documento, activo) != 0;
    return fallo ? 6 : 0;
}
