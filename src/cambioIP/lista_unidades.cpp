// lista_unidades.cpp: the unit list, one row per unit read from its status document with
// its order, model, identifier, address, serial number and versions, and a box to select
// it for operations on several units.
#include "cambioIP/paginas.h"

#include "cteshtml/cteshtml.h"
#include "cteshtml/paginas_comunes.h"
#include "utils/utils.h"
#include "utilsXML/utilsXML.h"

#include <cstdio>
#include <vector>

namespace {

// The fields of a list row, in the order of the row template.
enum CIP_CampoLista {
    CIP_ListaOrden,
    CIP_ListaIP,
    CIP_ListaId,
    CIP_ListaSerie,
    CIP_ListaHardware,
    CIP_ListaSoftware,
    CIP_ListaBoot,
    CIP_ListaSO,
    CIP_ListaInterfaz,
    CIP_NumCamposLista
};

int CIPINT_LeeVersionHardware(xmlDocPtr documento, char *buffer, uint16_t tam)
{
    return UTILSXML_STATUS_LeeVersionFPGA(documento, buffer, tam, 1);
}

int CIPINT_LeeVersionSoftware(xmlDocPtr documento, char *buffer, uint16_t tam)
{
    return UTILSXML_STATUS_LeeVersionFPGA(documento, buffer, tam, 0);
}

struct CIP_LecturaLista {
    CIP_CampoLista campo;
    UTILSXML_Lector0 lector;
    uint16_t tam;
};

// What a row reads from the unit's status document, in reading order.
const CIP_LecturaLista CIP_LecturasLista[] = {
    {CIP_ListaOrden, UTILSXML_STATUS_LeeOrden, 40},
    {CIP_ListaIP, UTILSXML_STATUS_LeeIP, 50},
    {CIP_ListaId, UTILSXML_STATUS_LeeIdUnit, 40},
    {CIP_ListaHardware, CIPINT_LeeVersionHardware, 40},
    {CIP_ListaSoftware, CIPINT_LeeVersionSoftware, 40},
    {CIP_ListaBoot, UTILSXML_STATUS_LeeVersionBoot, 40},
    {CIP_ListaSO, UTILSXML_STATUS_LeeVersionLINUX, 40},
    {CIP_ListaInterfaz, UTILSXML_STATUS_LeeVersionWEB, 40},
    {CIP_ListaSerie, UTILSXML_STATUS_LeeNumSerie, 40},
};

} // namespace

int CIPINT_PintaLineaListaUnidades(xmlDocPtr documento, int esMaster, uint8_t, int, int, int, const char *modelo, int,
                                   const char *sufijo)
{
    const std::string nombreCaja = std::string("forzarconfig") + (sufijo != nullptr ? sufijo : "");

    // The master's row is in bold, its model with "web connected" under it.
    std::string campos[CIP_NumCamposLista];
    for (const CIP_LecturaLista &lectura : CIP_LecturasLista) {
        const std::string valor = UTILSXML_LeeTexto(lectura.lector, documento, lectura.tam);
        campos[lectura.campo] = esMaster != 0 ? CTESHTML_Negrita(valor) : UTILS_Escapa(valor);
    }
    const std::string textoModelo = modelo != nullptr ? modelo : "";
    const std::string celdaModelo = esMaster != 0 ? CTESHTML_Miunidad(textoModelo) : UTILS_Escapa(textoModelo);

    const std::string fila = UTILS_Formatea(
        htmlListaUnidades, campos[CIP_ListaOrden].c_str(), celdaModelo.c_str(), campos[CIP_ListaId].c_str(),
        campos[CIP_ListaIP].c_str(), campos[CIP_ListaSerie].c_str(), campos[CIP_ListaHardware].c_str(),
        campos[CIP_ListaSoftware].c_str(), campos[CIP_ListaBoot].c_str(), campos[CIP_ListaSO].c_str(),
        campos[CIP_ListaInterfaz].c_str(), nombreCaja.c_str(), nombreCaja.c_str());
    UTILS_Imprime(fila);
    return 0;
}

int CIPINT_GeneraListaUnidades(int fase, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                               int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo,
                               int, int)
{
    switch (fase) {
    case 0:
        UTILS_Imprime(UTILS_Formatea(htmlListaUnidadesCabecera));
        return 0;
    case 1:
        if (modelo == nullptr)
            return 4;
        return CIPINT_PintaLineaListaUnidades(documento, esMaster, canales, opciones, entradasVideo, capacidades,
                                              modelo, 0, sufijo);
    case 2:
        UTILS_Imprime(UTILS_Formatea(htmlultimalineaListaUnidades, fila));
        UTILS_Imprime(htmlfintabla);
        return 0;
    case 3:
        // The advanced page has no unit-list section.
        return 4;
    default:
        return 0;
    }
}
