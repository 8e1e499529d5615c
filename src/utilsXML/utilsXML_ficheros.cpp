// utilsXML_ficheros.cpp: where the master keeps the unit documents, and how they are
// found in the configuration directory, opened and closed (saved atomically or not).
#include "utilsXML/utilsXML_int.h"

#include "funciones_XML/funciones_XML.h"
#include "utils/utils.h"

#include <algorithm>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <string>
#include <string_view>

const char *const UTILSXML_DirectorioConfig[2] = {"/www/jaula/config", "/config"};
const char *const UTILSXML_FicheroNetwork[2] = {"/www/jaula/config/network.xml", "/config/network.xml"};
const char *const UTILSXML_FicheroSondeo[2] = {"/www/jaula/config/sondeo.xml", "/config/sondeo.xml"};

const char *const UTILSXML_Nombres_Ficheros[2] = {"network", "sondeo"};
const uint32_t UTILSXML_Long_Nombres_Ficheros[2] = {7, 6};

uint32_t UTILSXML_ModoLibreria = 1;

namespace {

struct LiberaDocumento {
    void operator()(xmlDoc *documento) const { xmlFreeDoc(documento); }
};
using Documento = std::unique_ptr<xmlDoc, LiberaDocumento>;

// The mapped configuration directory handed out by UTILSXML_MiraPATHConfig.
std::string directorioConfig;

uint32_t modo() { return UTILSXML_ModoLibreria != 0 ? 1 : 0; }

xmlDocPtr cargaDocumento(const std::string &ruta)
{
    xmlDocPtr documento = nullptr;
    return LOAD_XML_RDONLY(ruta.c_str(), &documento);
}

// Saves (when asked) and frees a document; the document is freed on every path.
int cierraDocumento(xmlDocPtr documento, const std::string &ruta, uint8_t grabar)
{
    Documento propio(documento);
    if (grabar != 0 && FUNCXML_GuardaDocumento(propio.get(), ruta.c_str()) != 0)
        return -1;
    return 0;
}

bool nombreDeTipo(std::string_view nombre, uint8_t tipo)
{
    std::string_view prefijo(UTILSXML_Nombres_Ficheros[tipo], UTILSXML_Long_Nombres_Ficheros[tipo]);
    return nombre.starts_with(prefijo) && nombre.ends_with(".xml");
}

std::string rutaEntrada(const char *entrada) { return std::string(UTILSXML_MiraPATHConfig()) + "/" + entrada; }

struct CierraDir {
    void operator()(DIR *directorio) const { closedir(directorio); }
};

// Scans the stream on from its position for the matching entry whose full path is ruta.
bool buscaRuta(UTILSXML_Directorio *directorio, uint8_t tipo, std::string_view ruta)
{
    while (const char *entrada = UTILSXMLINT_BuscaFichero(directorio, tipo))
        if (rutaEntrada(entrada) == ruta)
            return true;
    return false;
}

}  // namespace

void UTILSXML_SetLibMode(uint8_t modoNuevo) { UTILSXML_ModoLibreria = modoNuevo != 0 ? 1 : 0; }

const char *UTILSXML_MiraPATHConfig()
{
    directorioConfig = UTILS_MapeaRuta(UTILSXML_DirectorioConfig[modo()]);
    return directorioConfig.c_str();
}

xmlDocPtr UTILSXML_AbrirFicheroNetwork() { return cargaDocumento(UTILS_MapeaRuta(UTILSXML_FicheroNetwork[modo()])); }

int UTILSXML_CerrarFicheroNetwork(xmlDocPtr documento, uint8_t grabar)
{
    if (documento == nullptr)
        return -1;
    return cierraDocumento(documento, UTILS_MapeaRuta(UTILSXML_FicheroNetwork[modo()]), grabar);
}

xmlDocPtr UTILSXML_AbrirFicheroStatus() { return cargaDocumento(UTILS_MapeaRuta(UTILSXML_FicheroSondeo[modo()])); }

int UTILSXML_CerrarFicheroStatus(xmlDocPtr documento, uint8_t grabar)
{
    if (documento == nullptr)
        return -1;
    return cierraDocumento(documento, UTILS_MapeaRuta(UTILSXML_FicheroSondeo[modo()]), grabar);
}

UTILSXML_Directorio *UTILSXML_MASTER_AbredirectorioConfig()
{
    std::unique_ptr<DIR, CierraDir> flujo(opendir(UTILSXML_MiraPATHConfig()));
    if (!flujo)
        return nullptr;
    auto directorio = std::make_unique<UTILSXML_Directorio>();
    while (const struct dirent *entrada = readdir(flujo.get()))
        directorio->nombres.emplace_back(entrada->d_name);
    std::sort(directorio->nombres.begin(), directorio->nombres.end());
    return directorio.release();
}

int UTILSXML_MASTER_CerrarDirectorioConfig(UTILSXML_Directorio *directorio)
{
    if (directorio == nullptr)
        return -1;
    delete directorio;
    return 0;
}

const char *UTILSXMLINT_BuscaFichero(UTILSXML_Directorio *directorio, uint8_t tipo)
{
    if (directorio == nullptr || tipo >= 2)
        return nullptr;
    while (directorio->posicion < directorio->nombres.size()) {
        const std::string &nombre = directorio->nombres[directorio->posicion++];
        if (nombreDeTipo(nombre, tipo))
            return nombre.c_str();
    }
    return nullptr;
}

xmlDocPtr UTILSXML_MASTER_AbreFicheroNetwork(UTILSXML_Directorio *directorio, char *ruta, uint8_t tipo, size_t tamRuta)
{
    if (directorio == nullptr || ruta == nullptr || tamRuta == 0)
        return nullptr;

    if (ruta[0] == '\0') {
        // The next unit document of the kind, in name order.
        const char *entrada = UTILSXMLINT_BuscaFichero(directorio, tipo);
        if (entrada == nullptr)
            return nullptr;
        std::string completa = rutaEntrada(entrada);
        if (completa.size() >= tamRuta)
            return nullptr;
        std::memcpy(ruta, completa.c_str(), completa.size() + 1);
        return cargaDocumento(completa);
    }

    // Reopen a unit document by its path: scan on from the current position, then once
    // more from the start.
    std::string buscada(ruta, strnlen(ruta, tamRuta));
    if (!buscaRuta(directorio, tipo, buscada)) {
        directorio->posicion = 0;
        if (!buscaRuta(directorio, tipo, buscada))
            return nullptr;
    }
    return cargaDocumento(buscada);
}

int UTILSXML_MASTER_CierraFicheroNetwork(xmlDocPtr documento, const char *ruta, uint8_t grabar)
{
    if (documento == nullptr || ruta == nullptr)
        return -1;
    return cierraDocumento(documento, ruta, grabar);
}
