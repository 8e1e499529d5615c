// motor.cpp: the page engine, which walks the rack's unit documents and calls the row
// function of each unit's output family, and the save engine, which stores one unit's
// posted fields, marks its document as changed by the web and queues it for the daemon.
#include "cambioIP/cambioIP.h"
#include "cambioIP/cambioIP_int.h"

#include "cteshtml/cteshtml.h"
#include "gestfich/gestfich.h"
#include "utils/utils.h"
#include "utilsXML/utilsXML.h"

#include <cstdio>
#include <cstring>

namespace {

// Output family of the placeholder model (shown with the QAM functions) and the first
// family that no page supports (the unknown model).
constexpr int CIP_FamiliaReserva = 4;
constexpr int CIP_FamiliaDesconocida = 5;

// The model of one unit, as the unit-model table resolves its type field.
struct CIP_Modelo {
    char texto[51] = {};  // "<code> <description>", rewritten from the 50-byte type field
    uint32_t codigo = 0;
    uint8_t canales = 0;
    int opciones = 0;
    int entradasVideo = 0;
    int capacidades = 0;
    int familia = CIP_FamiliaDesconocida;
    int parametro = 0;

    void Resuelve()
    {
        codigo = CTESHTML_Obtienetipounidad(texto, &canales, &opciones, &entradasVideo, &capacidades, &familia,
                                            &parametro);
    }
};

// Row function of a page table for a family; the placeholder uses the QAM slot.
// Null for an unsupported family or an empty slot.
SALCOMUN_FuncionPagina CIPINT_FuncionFamilia(const CIP_TablaPagina &tabla, int familia, bool admiteReserva)
{
    if (familia == CIP_FamiliaReserva && admiteReserva)
        familia = SALCOMUN_FamiliaQAM;
    if (familia < 0 || familia >= SALCOMUN_NumFamilias)
        return nullptr;
    return tabla.funciones[familia];
}

bool CIPINT_ModoAdmite(int modo, const CIP_Modelo &unidad, const CIP_Modelo &master)
{
    switch (modo) {
    case 0: return unidad.familia == master.familia;
    case 1: return unidad.codigo == master.codigo;
    case 2: return true;
    default: return false;
    }
}

// The part of a unit file's path after "<config>/sondeo." or "<config>/network.".
const char *CIPINT_NombreDeRuta(const std::string &ruta, int tipo)
{
    std::string prefijo = std::string(UTILSXML_MiraPATHConfig()) + "/" + UTILSXML_Nombres_Ficheros[tipo != 0 ? 1 : 0] + ".";
    return ruta.size() >= prefijo.size() ? ruta.c_str() + prefijo.size() : "";
}

// The unit's field suffix "_%03d_%03d_%03d_%03d" from the address in its file name. An
// octet of more than three digits prints "IP wrong" and the suffix is built from the
// octets as read.
std::string CIPINT_SufijoDeRuta(const std::string &ruta, int tipo)
{
    const char *direccion = CIPINT_NombreDeRuta(ruta, tipo);
    uint8_t a = 0, b = 0, c = 0, d = 0;
    if (CTESHTML_MiraIP(direccion, &a, &b, &c, &d) != 0)
        CIPINT_ErrorGraveWeb(5);
    return UTILS_Formatea("_%03d_%03d_%03d_%03d", a, b, c, d);
}

// The address in a unit file's name ("10.0.0.32"), or the name part as it stands when it
// holds none.
std::string CIPINT_DireccionDeRuta(const std::string &ruta, int tipo)
{
    std::string nombre = CIPINT_NombreDeRuta(ruta, tipo);
    if (nombre.ends_with(".xml"))
        nombre.resize(nombre.size() - 4);
    uint8_t a = 0, b = 0, c = 0, d = 0;
    if (CTESHTML_MiraIP(nombre.c_str(), &a, &b, &c, &d) != 0)
        return nombre;
    return UTILS_Formatea("%d.%d.%d.%d", a, b, c, d);
}

} // namespace

int CIPINT_GenerarPagina(const CIP_TablaPagina *tabla, int modo)
{
    if (tabla == nullptr)
        return CIPINT_ErrorGraveWeb(4);

    // The master's own model decides the page's family and the header.
    CIP_Modelo master;
    {
        xmlDocPtr status = UTILSXML_AbrirFicheroStatus();
        if (status == nullptr)
            return CIPINT_ErrorGraveWeb(1);
        UTILSXML_STATUS_LeeTipoUnidad(status, master.texto, sizeof master.texto - 1);
        UTILSXML_CerrarFicheroStatus(status, 0);
    }
    master.Resuelve();
    if (master.familia >= CIP_FamiliaDesconocida)
        return CIPINT_ErrorGraveWeb(2);

    CIPINT_Directorio directorio;
    if (!directorio)
        return CIPINT_ErrorGraveWeb(1);

    const int tipo = tabla->flag != 0 ? 1 : 0;
    int filas = 0;
    std::string sufijo;
    CIP_Modelo unidad;

    SALCOMUN_FuncionPagina cabecera = CIPINT_FuncionFamilia(*tabla, master.familia, true);
    int resultado = cabecera == nullptr ? 2 : cabecera(0, nullptr, 0, 0, 0, 0, 0, nullptr, 0, "", master.familia, 0);
    if (resultado != 0) {
        CIPINT_ErrorGraveWeb(resultado);
    } else {
        const std::string rutaMaster = CIPINT_RutaMaster(tipo);
        for (;;) {
            CIPINT_DocumentoUnidad documento = CIPINT_DocumentoUnidad::Siguiente(directorio.get(), tipo);
            if (documento.ruta().empty())
                break;
            const bool esMaster = documento.ruta() == rutaMaster;
            if (!documento) {
                // One unreadable document is a row of its own; the rest of the rack follows.
                ++filas;
                const std::string direccion = esMaster ? "master" : CIPINT_DireccionDeRuta(documento.ruta(), tipo);
                UTILS_Imprime(UTILS_Formatea(htmlFilaIlegible, filas, UTILS_Escapa(direccion).c_str()));
                continue;
            }
            unidad = CIP_Modelo{};
            if (tipo == 1)
                UTILSXML_STATUS_LeeTipoUnidad(documento.get(), unidad.texto, sizeof unidad.texto - 1);
            else
                UTILSXML_LeeTipoUnidad(documento.get(), unidad.texto, sizeof unidad.texto - 1);
            sufijo = esMaster ? "" : CIPINT_SufijoDeRuta(documento.ruta(), tipo);
            unidad.Resuelve();
            if (!CIPINT_ModoAdmite(modo, unidad, master))
                continue;
            ++filas;
            SALCOMUN_FuncionPagina fila = CIPINT_FuncionFamilia(*tabla, unidad.familia, true);
            int error = fila == nullptr ? 2
                                        : fila(1, documento.get(), esMaster ? 1 : 0, unidad.canales, unidad.opciones,
                                               unidad.entradasVideo, unidad.capacidades, unidad.texto, filas,
                                               sufijo.c_str(), unidad.familia, unidad.parametro);
            CIPINT_ErrorGraveWeb(error);
        }
    }

    // Last row with the values for every unit; the placeholder master has none.
    SALCOMUN_FuncionPagina ultima = CIPINT_FuncionFamilia(*tabla, master.familia, false);
    if (ultima == nullptr)
        return CIPINT_ErrorGraveWeb(2);
    resultado = ultima(2, nullptr, 0, unidad.canales, unidad.opciones, unidad.entradasVideo, unidad.capacidades,
                       nullptr, filas, sufijo.c_str(), master.familia, unidad.parametro);
    return CIPINT_ErrorGraveWeb(resultado);
}

int CIPINT_GrabarPagina(const CIP_TablaGrabar *tabla, char *formulario)
{
    if (tabla == nullptr || formulario == nullptr)
        return CIPINT_ErrorGraveWeb(4);

    char sufijo[500] = {};
    CIPINT_BuscaCampo(formulario, "sufijo", sufijo, sizeof sufijo);

    CIPINT_Directorio directorio;
    if (!directorio)
        return CIPINT_ErrorGraveWeb(1);

    // The unit is named by sufijo without its first character: the part of its file
    // name between "network." and ".xml". None names the master.
    const std::string nombre = sufijo[0] != '\0' ? sufijo + 1 : "";
    std::string ruta, entradaCola;
    if (!nombre.empty()) {
        ruta = std::string(UTILSXML_MiraPATHConfig()) + "/network." + nombre + ".xml";
        entradaCola = "network." + nombre + "\n";
    } else {
        ruta = CIPINT_RutaMaster(0);
    }

    // The unit is held from its load to its write: a concurrent save of it waits.
    CIPINT_DocumentoUnidad documento = CIPINT_DocumentoUnidad::Abre(directorio.get(), ruta, 0, true);
    if (!documento)
        return CIPINT_ErrorGraveWeb(1);

    CIP_Modelo unidad;
    UTILSXML_LeeTipoUnidad(documento.get(), unidad.texto, sizeof unidad.texto - 1);
    unidad.Resuelve();
    if (unidad.familia >= CIP_FamiliaDesconocida)
        return CIPINT_ErrorGraveWeb(2);

    // The store fills all 300 bytes of an address that long without a terminator: one
    // byte more keeps the text terminated.
    char direccion[300 + 1] = {};
    if (UTILSXML_LeeIP(documento.get(), direccion, sizeof direccion - 1) != 0)
        std::strcpy(direccion, "unknown");
    const std::string direccionHtml = UTILS_Escapa(direccion);
    UTILS_ImprimeFormato("Processing data for unit with ip %s, model %s<br>\n", direccionHtml.c_str(),
                UTILS_Escapa(unidad.texto).c_str());

    // No field of a unit document holds a line break or another control byte: a request
    // that sends one changes nothing.
    const std::string rechazado = CIPINT_CampoConControl(formulario);
    if (!rechazado.empty()) {
        CIPINT_AvisaRechazo(rechazado);
        return CIPINT_ErrorGraveWeb(7);
    }

    SALCOMUN_FuncionGrabar grabar = unidad.familia < SALCOMUN_NumFamilias ? tabla->funciones[unidad.familia] : nullptr;
    int resultado = grabar == nullptr ? 2 : grabar(documento.get(), formulario);
    if (resultado != 0)
        CIPINT_ErrorGraveWeb(resultado);

    // The document is marked and written first, even after an error of the family's
    // save; only a document that is on disk is queued for the daemon, and only when the
    // family's save succeeded.
    const int marcado = UTILSXML_GrabaCambiosWeb(documento.get(), "1");
    if (documento.Cierra(true) != 0) {
        UTILS_ImprimeFormato("Changes for ip %s were not saved!<br>\n", direccionHtml.c_str());
        return CIPINT_ErrorGraveWeb(6);
    }
    bool encolado = true;
    if (resultado == 0 && !entradaCola.empty()) {
        encolado = GESTFICH_AddFiletoChanges(entradaCola.data(), static_cast<long>(entradaCola.size()),
                                             UTILS_MapeaRuta(GESTFICH_FicheroCambios).c_str()) == 0;
        UTILS_ImprimeFormato(encolado ? "Unit with ip %s added to the queue...<br>\n"
                             : "Unit with ip %s could not be added to the queue!<br>\n",
                    direccionHtml.c_str());
    } else if (resultado == 0) {
        encolado = GESTFICH_WriteCommandtoFile(GESTFICH_ComandoCambioMaster,
                                               UTILS_MapeaRuta(GESTFICH_FicheroComando).c_str()) == 0;
        if (!encolado)
            UTILS_ImprimeFormato("Unit with ip %s could not be added to the queue!<br>\n", direccionHtml.c_str());
    }
    UTILS_ImprimeFormato("Changes saved for ip %s, please wait a few seconds while the unit applies them!<br>\n",
                direccionHtml.c_str());
    if (marcado != 0 || !encolado)
        return CIPINT_ErrorGraveWeb(6);
    return 0;
}
