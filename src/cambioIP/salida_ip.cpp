// salida_ip.cpp: the IP input/output page (how every unit's IP port carries transport
// streams, one line per IP stream) and the save of one unit's IP settings.
#include "cambioIP/salida_ip.h"

#include "cambioIP/cambioIP.h"
#include "cambioIP/paginas.h"
#include "cteshtml/cteshtml.h"
#include "cteshtml/paginas_salida_ip.h"
#include "proccgilib/proccgilib.h"
#include "utils/utils.h"
#include "utilsXML/utilsXML.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

// Bit of the model options that says the model has an IP port.
constexpr int CIP_OpcionIP = 0x01;
// IP lines are numbered with one byte in the document ("SALIDA%1d").
constexpr long CIP_MaxLineasIP = 255;
constexpr long CIP_PuertoMinimo = 1025;
constexpr long CIP_PuertoMaximo = 65535;
// Every value of the page is read into a buffer of this size.
constexpr uint16_t CIP_TamValorIP = 50;
// The code printed with "BAD data" when a key of the record is missing.
constexpr int CIP_ErrorClavesIP = 25;

using CIPINT_EscritorLinea = int (*)(xmlDocPtr documento, const char *valor, uint8_t linea);

// The direction of the IP port, the value of "iptxrx"; anything else counts as disabled.
enum CIP_ModoIP { CIP_IPDesactivado = 0, CIP_IPSalida = 1, CIP_IPEntrada = 2 };

// Per direction: the default numbering of line i (port base + i, multicast group
// 226.1.<octeto>.<i + 1>) and the address and port elements that the IP and Port boxes
// show and store. A disabled port shows the destination as stored and stores nothing.
struct CIP_DireccionIP {
    int puertoBase;
    int octeto;
    UTILSXML_Lector1 leeIP;
    UTILSXML_Lector1 leePuerto;
    CIPINT_EscritorLinea grabaIP;
    CIPINT_EscritorLinea grabaPuerto;
};
const CIP_DireccionIP CIP_Direcciones[] = {
    {7000, 2, UTILSXML_LeeSALIPIPDEST, UTILSXML_LeeSALIPPuerto, nullptr, nullptr},
    {5000, 0, UTILSXML_LeeSALIPIPDEST, UTILSXML_LeeSALIPPuerto, UTILSXML_GrabaSALIPIPDEST, UTILSXML_GrabaSALIPPuerto},
    {6000, 1, UTILSXML_LeeSALIPIPORIG, UTILSXML_LeeSALIPPuertoOrigen, UTILSXML_GrabaSALIPIPORIG,
     UTILSXML_GrabaSALIPPuertoOrigen},
};

// Hidden fields of every line with both directions' address and port, so that the page
// script can switch the IP and Port boxes when the mode changes.
struct CIP_OcultoLineaIP {
    const char *base;
    UTILSXML_Lector1 lector;
    bool puerto;
    CIP_ModoIP direccion;  // whose default numbering fills a missing value
};
const CIP_OcultoLineaIP CIP_OcultosLineaIP[] = {
    {"sourceIP", UTILSXML_LeeSALIPIPORIG, false, CIP_IPEntrada},
    {"sourceport", UTILSXML_LeeSALIPPuertoOrigen, true, CIP_IPEntrada},
    {"destIP", UTILSXML_LeeSALIPIPDEST, false, CIP_IPSalida},
    {"destport", UTILSXML_LeeSALIPPuerto, true, CIP_IPSalida},
};

const std::vector<CTESHTML_Opcion> CIP_OpcionesTxRx = {{"0", "Disabled"}, {"1", "Output"}, {"2", "Input"}};
const std::vector<CTESHTML_Opcion> CIP_OpcionesTipoIP = {{"0", "SPTS"}, {"1", "MPTS"}};
const std::vector<CTESHTML_Opcion> CIP_OpcionesEstandar = {{"0", "ATSC"}, {"1", "DVB"}};
const std::vector<CTESHTML_Opcion> CIP_OpcionesProtocolo = {{"0", "UDP"}, {"1", "RTP"}};
const std::vector<CTESHTML_Opcion> CIP_OpcionesAnexoFEC = {{"0", "Annex B"}, {"1", "Annex A"}};


CIP_ModoIP CIPINT_ModoIP(const std::string &valor)
{
    const long modo = UTILS_Numero(valor);
    return modo == CIP_IPSalida ? CIP_IPSalida : modo == CIP_IPEntrada ? CIP_IPEntrada : CIP_IPDesactivado;
}

// One value of IP line `linea`; a failed read is an empty text.
std::string CIPINT_LeeLineaIP(UTILSXML_Lector1 lector, xmlDocPtr documento, int linea)
{
    return UTILSXML_LeeTexto(lector, documento, CIP_TamValorIP, static_cast<uint8_t>(linea));
}

// An address or port of line `linea`. Without `defecto` the stored text is shown as it is;
// with it, a missing address or "0.0.0.0" becomes 226.1.<octeto>.<linea + 1>, and a missing
// port or one outside 1025..65535 becomes the base + linea.
std::string CIPINT_ValorLineaIP(UTILSXML_Lector1 lector, bool puerto, xmlDocPtr documento, int linea,
                                const CIP_DireccionIP *defecto)
{
    std::string valor = CIPINT_LeeLineaIP(lector, documento, linea);
    if (defecto == nullptr)
        return valor;
    if (puerto) {
        const long numero = UTILS_Numero(valor);
        if (valor.empty() || numero < CIP_PuertoMinimo || numero > CIP_PuertoMaximo)
            valor = std::to_string(defecto->puertoBase + linea);
    } else if (valor.empty() || valor == "0.0.0.0") {
        valor = UTILS_Formatea("226.1.%d.%d", defecto->octeto, linea + 1);
    }
    return valor;
}

// "%s%01d%s": base name, line (or input) number, unit suffix.
std::string CIPINT_NombreLinea(const char *base, int linea, const std::string &sufijo)
{
    return UTILS_Formatea("%s%01d%s", base, linea, sufijo.c_str());
}

// The controls of the IP columns, each per-line column one stacked div per line.
struct CIP_CeldasIP {
    std::string modo, tipo, activa, estandar, servicios, ip, puerto, paquetes, protocolo, fec, anexo;
};

// Paints the IP cells of a unit that has an IP port and adds the per-line hidden fields to
// `ocultos`. A page row (`gemelos`) puts the painted value in an "anterior" twin next to
// every editable control.
void CIPINT_PintaCeldasIP(xmlDocPtr documento, bool gemelos, uint8_t canales, long nentip, const std::string &suf,
                          CIP_CeldasIP &celdas, std::string &ocultos)
{
    auto gemelo = [gemelos](const std::string &nombre, const std::string &valor) {
        return gemelos ? CTESHTML_Anterior(nombre, valor) : std::string();
    };
    auto enLinea = [](const std::string &contenido) { return UTILS_Formatea(htmlSalidaIPlinea, contenido.c_str()); };

    const CIP_ModoIP modo = CIPINT_ModoIP(UTILSXML_LeeTexto(UTILSXML_LeeSALIPTXRX, documento, CIP_TamValorIP));
    const CIP_DireccionIP &direccion = CIP_Direcciones[modo];
    // The defaults of the IP and Port boxes follow the direction; a disabled port keeps
    // what is stored.
    const CIP_DireccionIP *defecto = modo == CIP_IPDesactivado ? nullptr : &direccion;
    const std::string valorModo = std::to_string(static_cast<int>(modo));
    const bool mpts = UTILS_Numero(UTILSXML_LeeTexto(UTILSXML_LeeSALIPTIPO, documento, CIP_TamValorIP)) == 1;
    const std::string valorTipo = mpts ? "1" : "0";
    // SPTS carries one stream per encoder input, MPTS a single one.
    const int flujos = mpts ? 1 : canales;

    const std::string nombreModo = "iptxrx" + suf;
    celdas.modo = CTESHTML_SelectBox(nombreModo, nombreModo,
                                     std::string(strJScambioTxRxSalIP) + strJSOnblurCompruebacambios,
                                     CIP_OpcionesTxRx, valorModo) +
                  gemelo(nombreModo, valorModo);
    const std::string nombreTipo = "iptype" + suf;
    celdas.tipo = CTESHTML_SelectBox(nombreTipo, nombreTipo,
                                     std::string(strJScambioTipoSalIP) + strJSOnblurCompruebacambios +
                                         (modo == CIP_IPEntrada ? " disabled" : ""),
                                     CIP_OpcionesTipoIP, valorTipo) +
                  gemelo(nombreTipo, valorTipo);

    const long lineas = std::min(std::max<long>(nentip, canales), CIP_MaxLineasIP);
    for (int i = 1; i <= lineas; ++i) {
        // An output has a line per stream of its encoder inputs, an input one per IP entry; a
        // disabled port has no line in use. Lines not in use, or not enabled, are disabled.
        const bool conCaja = modo == CIP_IPSalida ? i <= canales : modo == CIP_IPEntrada && i <= nentip;
        const bool activa = conCaja && CIPINT_LeeLineaIP(UTILSXML_LeeSALIPEnabled, documento, i) == "1" &&
                            (flujos >= 2 || modo == CIP_IPEntrada);
        const std::string desactivada = activa ? "" : " disabled";

        std::string caja;
        if (conCaja) {
            const std::string nombre = CIPINT_NombreLinea("ipen", i, suf);
            caja = CTESHTML_SalidaIPActiva(i, nombre, nombre, activa, "") + gemelo(nombre, activa ? "1" : "0");
        }
        celdas.activa += enLinea(caja);

        {
            // The standard of the stream is chosen only for an output; 2 or more shows as ATSC.
            const std::string nombre = CIPINT_NombreLinea("scanstd", i, suf);
            const std::string leido = CIPINT_LeeLineaIP(UTILSXML_LeeSalidaIPESTANDAR, documento, i);
            const std::string valor = !leido.empty() && UTILS_Numero(leido) == 1 ? "1" : "0";
            const std::string atributos = std::string(strJSOnBlurOnChangeCompruebacambios) +
                                          (modo != CIP_IPSalida ? " disabled" : desactivada);
            celdas.estandar +=
                enLinea(CTESHTML_SelectBox(nombre, nombre, atributos, CIP_OpcionesEstandar, valor) + gemelo(nombre, valor));
        }
        {
            const std::string nombre = CIPINT_NombreLinea("serv", i, suf);
            celdas.servicios += enLinea(CTESHTML_Boton(
                nombre, nombre, UTILS_Formatea(strJSClickservicesIP, i, suf.c_str()) + desactivada, "Select"));
        }
        {
            const std::string nombre = CIPINT_NombreLinea("outputIP", i, suf);
            const std::string valor = CIPINT_ValorLineaIP(direccion.leeIP, false, documento, i, defecto);
            celdas.ip += enLinea(CTESHTML_Input(htmlinputIP, nombre, 15, nombre, strJSPermitirIPs, strJSvalidaIP,
                                                desactivada, valor, 15) +
                                 gemelo(nombre, valor));
        }
        {
            const std::string nombre = CIPINT_NombreLinea("outputport", i, suf);
            const std::string valor = CIPINT_ValorLineaIP(direccion.leePuerto, true, documento, i, defecto);
            celdas.puerto += enLinea(
                CTESHTML_Input(htmlinput, nombre, 5, nombre, strJSPermititEnteros,
                               UTILS_Formatea(strJSvalidaEntero, static_cast<int>(CIP_PuertoMinimo),
                                              static_cast<int>(CIP_PuertoMaximo)),
                               desactivada, valor, 5) +
                gemelo(nombre, valor));
        }
        {
            const std::string nombre = CIPINT_NombreLinea("ippackets", i, suf);
            std::string valor = CIPINT_LeeLineaIP(UTILSXML_LeeSALIPPaquetes, documento, i);
            if (valor.empty())
                valor = "0";
            celdas.paquetes +=
                enLinea(CTESHTML_SelectBox(nombre, nombre, strJSOnBlurOnChangeCompruebacambios + desactivada,
                                           CTESHTML_OpcionesRango(1, 7), valor) +
                        gemelo(nombre, valor));
        }
        {
            const std::string nombre = CIPINT_NombreLinea("ipproto", i, suf);
            std::string valor = CIPINT_LeeLineaIP(UTILSXML_LeeSALIPProtocol, documento, i);
            if (valor.empty())
                valor = "0";
            celdas.protocolo += enLinea(
                CTESHTML_SelectBox(nombre, nombre,
                                   std::string(strJScambioprotocolSalIP) + strJSOnblurCompruebacambios + desactivada,
                                   CIP_OpcionesProtocolo, valor) +
                gemelo(nombre, valor));
        }
        {
            const std::string nombre = CIPINT_NombreLinea("ipfecen", i, suf);
            const bool fec = CIPINT_LeeLineaIP(UTILSXML_LeeSALIPFEC, documento, i) == "1";
            celdas.fec += enLinea(
                CTESHTML_Checkbox(nombre, nombre, fec,
                                  std::string(strJSOnSalIPFECOnclick) + strJSOnBlurOnChangeCompruebacambios + desactivada) +
                gemelo(nombre, fec ? "1" : "0"));
        }
        {
            const std::string nombre = CIPINT_NombreLinea("ipfecannex", i, suf);
            std::string valor = CIPINT_LeeLineaIP(UTILSXML_LeeSALIPFECTYPE, documento, i);
            if (valor.empty())
                valor = "0";
            celdas.anexo += enLinea(CTESHTML_SelectBox(nombre, nombre,
                                                       strJSOnBlurOnChangeCompruebacambios + desactivada,
                                                       CIP_OpcionesAnexoFEC, valor) +
                                    gemelo(nombre, valor));
        }
        for (const CIP_OcultoLineaIP &oculto : CIP_OcultosLineaIP) {
            const std::string nombre = CIPINT_NombreLinea(oculto.base, i, suf);
            ocultos += CTESHTML_Oculto(nombre, nombre,
                                       CIPINT_ValorLineaIP(oculto.lector, oculto.puerto, documento, i,
                                                           &CIP_Direcciones[oculto.direccion]));
        }
    }
}

} // namespace

int CIPINT_PintaLineaSalidaIP(xmlDocPtr documento, int esMaster, int avanzado, uint8_t canales, int opciones, int,
                              int, const char *modelo, int, const char *sufijo, int familia, int)
{
    if (avanzado == 0 && sufijo == nullptr)
        return 4;
    const std::string suf = avanzado != 0 ? CIP_SufijoTotal : sufijo;
    const bool usa = familia == SALCOMUN_FamiliaQAM;
    const bool hayIP = (opciones & CIP_OpcionIP) != 0;
    const long nentip = std::max(0L, UTILS_Numero(UTILSXML_LeeTexto(UTILSXML_LeeENTRIPNUM, documento, CIP_TamValorIP)));

    // What the save needs to know about the unit, and in a page row what the page script
    // needs: the layout and which encoder inputs are on.
    std::string ocultos = CTESHTML_Anterior("numcanales" + suf, UTILS_Formatea("%01d", canales)) +
                          CTESHTML_Anterior("haysalidaip" + suf, hayIP ? "1" : "0") +
                          CTESHTML_Oculto("nentip" + suf, "nentip" + suf, std::to_string(nentip));
    if (avanzado == 0) {
        ocultos += CTESHTML_Oculto("tipounidad" + suf, "tipounidad" + suf, UTILS_Formatea("%01d", familia));
        for (int i = 1; i <= canales; ++i) {
            char activa = '\0';
            if (UTILSXML_LeeEntradaActiva(documento, &activa, static_cast<uint8_t>(i)) != 0 || activa == '\0')
                activa = '0';
            const std::string nombre = CIPINT_NombreLinea("eon", i, suf);
            ocultos += CTESHTML_Oculto(nombre, nombre, std::string(1, activa));
        }
    }

    // A model without an IP port keeps its IP cells empty.
    CIP_CeldasIP celdas;
    if (hayIP)
        CIPINT_PintaCeldasIP(documento, avanzado == 0, canales, nentip, suf, celdas, ocultos);

    std::string linea;
    if (avanzado != 0) {
        linea = usa ? UTILS_Formatea(htmlConfigTotalSalidaIPConfigUSA, celdas.modo.c_str(), celdas.tipo.c_str(),
                                     celdas.activa.c_str(), celdas.estandar.c_str(), celdas.servicios.c_str(),
                                     celdas.ip.c_str(), celdas.puerto.c_str(), celdas.paquetes.c_str(),
                                     celdas.protocolo.c_str(), ocultos.c_str(), celdas.fec.c_str(),
                                     celdas.anexo.c_str())
                    : UTILS_Formatea(htmlConfigTotalSalidaIPConfig, celdas.modo.c_str(), celdas.tipo.c_str(),
                                     celdas.activa.c_str(), celdas.servicios.c_str(), celdas.ip.c_str(),
                                     celdas.puerto.c_str(), celdas.paquetes.c_str(), celdas.protocolo.c_str(),
                                     ocultos.c_str(), celdas.fec.c_str(), celdas.anexo.c_str());
    } else {
        const std::string orden = UTILS_Escapa(UTILSXML_LeeTexto(UTILSXML_LeeOrden, documento, 40));
        const std::string celdaModelo = CTESHTML_CeldaModelo(esMaster != 0, suf, modelo != nullptr ? modelo : "");
        const std::string cambiosWeb = UTILSXML_LeeTexto(UTILSXML_LeeCambiosWeb, documento, 50);
        const std::string forzar = CTESHTML_Checkbox("forzarconfig" + suf, "forzarconfig" + suf,
                                                     !cambiosWeb.empty() && cambiosWeb[0] == '1', "");
        linea = usa ? UTILS_Formatea(htmlSalidaIPUSA, orden.c_str(), celdaModelo.c_str(), celdas.modo.c_str(),
                                     celdas.tipo.c_str(), celdas.activa.c_str(), celdas.estandar.c_str(),
                                     celdas.servicios.c_str(), celdas.ip.c_str(), celdas.puerto.c_str(),
                                     celdas.paquetes.c_str(), celdas.protocolo.c_str(), celdas.fec.c_str(),
                                     celdas.anexo.c_str(), forzar.c_str(), ocultos.c_str())
                    : UTILS_Formatea(htmlSalidaIP, orden.c_str(), celdaModelo.c_str(), celdas.modo.c_str(),
                                     celdas.tipo.c_str(), celdas.activa.c_str(), celdas.servicios.c_str(),
                                     celdas.ip.c_str(), celdas.puerto.c_str(), celdas.paquetes.c_str(),
                                     celdas.protocolo.c_str(), celdas.fec.c_str(), celdas.anexo.c_str(),
                                     forzar.c_str(), ocultos.c_str());
    }
    UTILS_Imprime(linea);
    return 0;
}

int CIPINT_GeneraSalidaIP(int fase, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                          int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                          int familia, int parametro)
{
    const bool usa = familia == SALCOMUN_FamiliaQAM;
    switch (fase) {
    case 0:
        UTILS_Imprime(UTILS_Formatea(usa ? htmlSalidaIPCabeceraUSA : htmlSalidaIPCabecera));
        return 0;
    case 1:
        if (modelo == nullptr)
            return 4;
        return CIPINT_PintaLineaSalidaIP(documento, esMaster, 0, canales, opciones, entradasVideo, capacidades,
                                         modelo, fila, sufijo, familia, parametro);
    case 2:
        UTILS_Imprime(UTILS_Formatea(usa ? htmlSalidaIPultimalineaUSA : htmlSalidaIPultimalinea, fila));
        UTILS_Imprime(htmlfintabla);
        return 0;
    case 3:
        return CIPINT_PintaLineaSalidaIP(documento, esMaster, 1, canales, opciones, entradasVideo, capacidades,
                                         modelo, fila, sufijo, familia, parametro);
    default:
        return 0;
    }
}

namespace {

// The keys of one unit's record. A unit-wide value must be sent with a value; a per-line
// list must be sent but may be empty (no line to change); the Standard column exists only
// in the US layout and the FEC settings are not stored, so those three may be absent.
enum class CIP_Requisito { Valor, Lista, Opcional };
enum CIP_ClaveIP {
    CIP_ClaveNumCanales,
    CIP_ClaveNEntIP,
    CIP_ClaveTipo,
    CIP_ClaveActiva,
    CIP_ClaveDireccion,
    CIP_ClavePuerto,
    CIP_ClavePaquetes,
    CIP_ClaveProtocolo,
    CIP_ClaveFEC,
    CIP_ClaveAnexoFEC,
    CIP_ClaveModo,
    CIP_ClaveHaySalidaIP,
    CIP_ClaveEstandar,
    CIP_NumClavesIP
};
struct CIP_DefClaveIP {
    const char *nombre;
    CIP_Requisito requisito;
};
const CIP_DefClaveIP CIP_ClavesIP[CIP_NumClavesIP] = {
    {"numcanales", CIP_Requisito::Valor}, {"nentip", CIP_Requisito::Valor},
    {"iptype", CIP_Requisito::Valor},     {"ipen", CIP_Requisito::Lista},
    {"outputIP", CIP_Requisito::Lista},   {"outputport", CIP_Requisito::Lista},
    {"ippackets", CIP_Requisito::Lista},  {"ipproto", CIP_Requisito::Lista},
    {"ipfecen", CIP_Requisito::Opcional}, {"ipfecannex", CIP_Requisito::Opcional},
    {"iptxrx", CIP_Requisito::Valor},     {"haysalidaip", CIP_Requisito::Valor},
    {"scanstd", CIP_Requisito::Opcional},
};

// One key's value and whether the record holds the key at all.
struct CIP_ValorClaveIP {
    char texto[500] = {};
    bool presente = false;
};

} // namespace

int CIPINT_GrabaSalidaIP(xmlDocPtr documento, char *formulario)
{
    if (formulario == nullptr)
        return 4;

    CIP_ValorClaveIP valores[CIP_NumClavesIP];
    for (int k = 0; k < CIP_NumClavesIP; ++k) {
        // A one-byte destination receives only the terminator: it tells that the key came.
        char marca[1] = {'x'};
        GetValueKeys(formulario, {{CIP_ClavesIP[k].nombre, valores[k].texto}, {CIP_ClavesIP[k].nombre, marca}});
        valores[k].presente = marca[0] == '\0';
    }
    for (int k = 0; k < CIP_NumClavesIP; ++k) {
        const bool falta = CIP_ClavesIP[k].requisito == CIP_Requisito::Valor
                               ? !valores[k].presente || valores[k].texto[0] == '\0'
                               : CIP_ClavesIP[k].requisito == CIP_Requisito::Lista && !valores[k].presente;
        if (falta) {
            UTILS_ImprimeFormato("BAD data %d.<br>\n", CIP_ErrorClavesIP);
            return 7;
        }
    }

    if (std::strtol(valores[CIP_ClaveHaySalidaIP].texto, nullptr, 10) == 0)
        return 2;
    const long canales = std::strtol(valores[CIP_ClaveNumCanales].texto, nullptr, 10);
    const long nentip = std::strtol(valores[CIP_ClaveNEntIP].texto, nullptr, 10);
    if (canales < 1 || canales > 9 || nentip == 0)
        return 7;

    bool fallo = UTILSXML_GrabaSALIPTXRX(documento, valores[CIP_ClaveModo].texto) != 0;
    fallo |= UTILSXML_GrabaSALIPTIPO(documento, valores[CIP_ClaveTipo].texto) != 0;

    // The per-line lists, in this order; the address and port go to the direction's
    // elements, and nowhere while the port is disabled.
    const CIP_DireccionIP &direccion = CIP_Direcciones[CIPINT_ModoIP(valores[CIP_ClaveModo].texto)];
    struct CIP_ListaIP {
        CIP_ClaveIP clave;
        CIPINT_EscritorLinea graba;
    };
    const CIP_ListaIP listas[] = {
        {CIP_ClaveActiva, UTILSXML_GrabaSALIPEnabled},
        {CIP_ClaveDireccion, direccion.grabaIP},
        {CIP_ClavePuerto, direccion.grabaPuerto},
        {CIP_ClavePaquetes, UTILSXML_GrabaSALIPPaquetes},
        {CIP_ClaveEstandar, UTILSXML_GrabaSalidaIPESTANDAR},
        {CIP_ClaveProtocolo, UTILSXML_GrabaSALIPProtocol},
    };
    for (const CIP_ListaIP &lista : listas) {
        if (lista.graba == nullptr || !valores[lista.clave].presente)
            continue;
        // The enabled boxes are the unit's IP entries only; the other lists are stored for
        // every line the page painted (as many as the larger of the entries and inputs).
        const long ultima = lista.clave == CIP_ClaveActiva ? nentip : CIP_MaxLineasIP;
        for (const PROCCGI_ParLinea &par : PROCCGI_ParesLinea(valores[lista.clave].texto)) {
            if (par.linea < 1 || par.linea > ultima || par.linea > CIP_MaxLineasIP)
                continue;
            fallo |= lista.graba(documento, par.valor.c_str(), static_cast<uint8_t>(par.linea)) != 0;
        }
    }
    return fallo ? 6 : 0;
}
