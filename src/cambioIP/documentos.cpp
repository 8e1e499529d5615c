// documentos.cpp: owners of the configuration directory and of unit documents, so that
// every page, save and operation closes what it opened on every path.
#include "cambioIP/cambioIP_int.h"

#include "gestfich/gestfich.h"
#include "utilsXML/utilsXML.h"

#include <utility>

CIPINT_Directorio::CIPINT_Directorio() : directorio_(UTILSXML_MASTER_AbredirectorioConfig()) {}

CIPINT_Directorio::~CIPINT_Directorio()
{
    if (directorio_ != nullptr)
        UTILSXML_MASTER_CerrarDirectorioConfig(directorio_);
}

CIPINT_DocumentoUnidad CIPINT_DocumentoUnidad::Siguiente(UTILSXML_Directorio *directorio, int tipo)
{
    char ruta[UTILSXML_LONG_RUTA] = {};
    xmlDocPtr documento = UTILSXML_MASTER_AbreFicheroNetwork(directorio, ruta, static_cast<uint8_t>(tipo), sizeof ruta);
    // The store leaves the entry's path in ruta also when the document does not load.
    return CIPINT_DocumentoUnidad(documento, ruta);
}

CIPINT_DocumentoUnidad CIPINT_DocumentoUnidad::Abre(UTILSXML_Directorio *directorio, const std::string &ruta, int tipo,
                                                    bool paraGrabar)
{
    char buffer[UTILSXML_LONG_RUTA] = {};
    if (ruta.empty() || ruta.size() >= sizeof buffer)
        return CIPINT_DocumentoUnidad(nullptr, "");
    int bloqueo = -1;
    if (paraGrabar) {
        // Only a file of the configuration directory itself is ever locked.
        const std::string carpeta = std::string(UTILSXML_MiraPATHConfig()) + "/";
        if (!ruta.starts_with(carpeta) || ruta.find('/', carpeta.size()) != std::string::npos)
            return CIPINT_DocumentoUnidad(nullptr, ruta);
        bloqueo = GESTFICH_BloqueaFichero(ruta.c_str());
        if (bloqueo < 0)
            return CIPINT_DocumentoUnidad(nullptr, ruta);
        // No other save of the unit runs now: any temporary file beside it is a leftover.
        GESTFICH_BorraTemporales(ruta.c_str());
    }
    ruta.copy(buffer, ruta.size());
    xmlDocPtr documento = UTILSXML_MASTER_AbreFicheroNetwork(directorio, buffer, static_cast<uint8_t>(tipo), sizeof buffer);
    return CIPINT_DocumentoUnidad(documento, ruta, bloqueo);
}

CIPINT_DocumentoUnidad::CIPINT_DocumentoUnidad(CIPINT_DocumentoUnidad &&otro) noexcept
    : documento_(std::exchange(otro.documento_, nullptr)), ruta_(std::move(otro.ruta_)),
      bloqueo_(std::exchange(otro.bloqueo_, -1))
{
}

CIPINT_DocumentoUnidad::~CIPINT_DocumentoUnidad()
{
    Cierra(false);
    GESTFICH_DesbloqueaFichero(bloqueo_);
}

int CIPINT_DocumentoUnidad::Cierra(bool grabar)
{
    if (documento_ == nullptr)
        return -1;
    int resultado = UTILSXML_MASTER_CierraFicheroNetwork(documento_, ruta_.c_str(), grabar ? 1 : 0);
    documento_ = nullptr;
    return resultado;
}

std::string CIPINT_RutaMaster(int tipo)
{
    return std::string(UTILSXML_MiraPATHConfig()) + "/" + UTILSXML_Nombres_Ficheros[tipo != 0 ? 1 : 0] + ".xml";
}
