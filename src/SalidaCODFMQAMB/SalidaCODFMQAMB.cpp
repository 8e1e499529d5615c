// SalidaCODFMQAMB.cpp: the rows of the COFDM/QAM-B pages, the page entries and the saves.
#include "SalidaCODFMQAMB/SalidaCODFMQAMB_int.h"

#include "utils/utils.h"
#include "utilsXML/utilsXML.h"

#include <type_traits>

static_assert(std::is_same_v<decltype(&SALCOFDMQAMB_SondeoRapido), SALCOMUN_FuncionPagina>);
static_assert(std::is_same_v<decltype(&SALCOFDMQAMB_SondeoDetallado), SALCOMUN_FuncionPagina>);
static_assert(std::is_same_v<decltype(&SALCOFDMQAMB_GeneraTransporte), SALCOMUN_FuncionPagina>);
static_assert(std::is_same_v<decltype(&SALCOFDMQAMB_GeneraSalida), SALCOMUN_FuncionPagina>);
static_assert(std::is_same_v<decltype(&SALCOFDMQAMB_GrabaTransporte), SALCOMUN_FuncionGrabar>);
static_assert(std::is_same_v<decltype(&SALCOFDMQAMB_GrabaSalida), SALCOMUN_FuncionGrabar>);

std::vector<CTESHTML_Opcion> SALCOFDMQAMBINT_OpcionesPlan(bool modoQAM)
{
    std::vector<CTESHTML_Opcion> planes;
    if (modoQAM) {
        for (int plan : SALCOFDMQAMB_PlanesAnexoB)
            planes.push_back(COFDM_OpcionTabla(plan));
    } else {
        for (int plan = 0; plan < SALCOFDMQAMB_PlanesDVBT; ++plan)
            planes.push_back(COFDM_OpcionTabla(plan));
    }
    return planes;
}

namespace {

extern const SALCOMUN_Familia SALCOFDMQAMBINT_Familia;

bool SALCOFDMQAMBINT_EsModoQAM(long modo)
{
    return modo >= SALCOFDMQAMB_PrimerModoQAM && modo <= SALCOFDMQAMB_UltimoModo;
}

// The stored position as painted: 0..4 as it is, anything else, an unreadable mode included, as 0.
int SALCOFDMQAMBINT_Modo(std::string_view guardado)
{
    const long modo = UTILS_Numero(guardado, -1);
    return modo >= 0 && modo <= SALCOFDMQAMB_UltimoModo ? static_cast<int>(modo) : 0;
}

std::vector<CTESHTML_Opcion> SALCOFDMQAMBINT_OpcionesModo()
{
    return CTESHTML_OpcionesEtiquetas(ModosSalidaCOFDMQAMB, 0, SALCOFDMQAMB_UltimoModo);
}


// The COFDM output row with this family's modes and plans; Annex B fixes the symbol rate, so
// the baud rate is never editable.
const SALCOMUN_VarianteCOFDM SALCOFDMQAMBINT_Variante = {
    SALCOFDMQAMB_TipoUnidad, strJSCambioModoCOFDMQAMB, SALCOFDMQAMBINT_OpcionesModo, SALCOFDMQAMBINT_Modo,
    SALCOFDMQAMBINT_EsModoQAM, SALCOFDMQAMBINT_OpcionesPlan, false,
};

std::string SALCOFDMQAMBINT_CierreSalida(int unidades)
{
    return SALCOMUN_CierreSalidaCOFDM(SALCOFDMQAMBINT_Variante, unidades);
}

const SALCOMUN_Familia SALCOFDMQAMBINT_Familia = {
    SALCOFDMQAMBINT_PintaLineaSondeo, SALCOFDMQAMBINT_PintaLineaTransporte, SALCOFDMQAMBINT_PintaLineaSalida,
    htmlsondeorapidoCabeceraCOFDMQAMB, htmlsondeoDetaladoCabeceraCOFDMQAMB, htmlinfotransporteinicioCOFDM,
    htmlinfosalidainicioCOFDM, SALCOMUN_CierreTransporteDVB, SALCOFDMQAMBINT_CierreSalida,
    htmlsondeorapidoCOFDMQAMB, htmlsondeoDetaladoCOFDMQAMB, htmlConfigTotalUnitStatusCOFDMQAMB, false,
};

// --- Save -------------------------------------------------------------------

// What the output page offers for the posted mode and plan. Settings the mode or plan does
// not use come back hidden as they were stored, and the baud rate disabled, and are not checked.
bool SALCOFDMQAMBINT_AdmiteSalida(const SALCOMUN_Valores &v)
{
    if (!SALCOMUN_EnRango(v["outmod"], 0, SALCOFDMQAMB_UltimoModo))
        return false;
    const bool modoQAM = SALCOFDMQAMBINT_EsModoQAM(UTILS_Numero(v["outmod"]));
    if (!SALCOMUN_Ofrecido(v["outtab"], SALCOFDMQAMBINT_OpcionesPlan(modoQAM)))
        return false;
    const int plan = static_cast<int>(UTILS_Numero(v["outtab"]));
    const bool canal = plan == 0 ? SALCOMUN_EnRango(v["outchn"], SALCOMUN_FrecuenciaMinima, SALCOMUN_FrecuenciaMaxima)
                                 : SALCOMUN_EnRango(v["outchn"], 0, COFDM_TablasdeCanales[plan].numCanales - 1);
    const bool paso = plan != 0 || SALCOMUN_Ofrecido(v["frecstep"], SALCOMUN_OpcionesPaso(modoQAM));
    const auto ofrecida = [&](const char *clave, std::span<const SALCOMUN_Opcion> opciones) {
        return modoQAM || SALCOMUN_Ofrecido(v[clave], SALCOMUN_Opciones(opciones));
    };
    const std::string_view celda = v["cellid"];
    const bool hexa = celda.size() >= 1 && celda.size() <= 4 &&
                      celda.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
    return canal && paso && SALCOMUN_EnRango(v["outlev"], 0, 99) && ofrecida("bwsal", SALCOMUN_AnchosBanda) &&
           ofrecida("ingrd", SALCOMUN_IntervalosGuarda) && ofrecida("fecsal", SALCOMUN_FECs) && (modoQAM || hexa) &&
           SALCOMUN_Ofrecido(v["outout"], SALCOMUN_Opciones(SALCOMUN_TiposSalida)) &&
           SALCOMUN_EnRango(v["outrfl"], 0, 1);
}

}  // namespace

// ---------------------------------------------------------------------------
// Row painters
// ---------------------------------------------------------------------------

int SALCOFDMQAMBINT_PintaLineaSondeo(xmlDocPtr status, int esMaster, int configTotal, int detallado, uint8_t canales,
                                     const char *modelo, const char *)
{
    return SALCOMUN_PintaLineaSondeo(SALCOFDMQAMBINT_Familia, status, esMaster, configTotal, detallado, canales,
                                     modelo);
}

int SALCOFDMQAMBINT_PintaLineaTransporte(xmlDocPtr config, int esMaster, int configTotal, uint8_t canales,
                                         int opciones, const char *modelo, const char *sufijo)
{
    return SALCOMUN_PintaLineaTransporteDVB(SALCOFDMQAMB_TipoUnidad, config, esMaster, configTotal, canales, opciones,
                                            modelo, sufijo);
}

int SALCOFDMQAMBINT_PintaLineaSalida(xmlDocPtr config, int esMaster, int configTotal, uint8_t canales,
                                     const char *modelo, const char *sufijo)
{
    return SALCOMUN_PintaLineaSalidaCOFDM(SALCOFDMQAMBINT_Variante, config, esMaster, configTotal, canales, modelo,
                                          sufijo);
}

// ---------------------------------------------------------------------------
// Page entries and saves
// ---------------------------------------------------------------------------

int SALCOFDMQAMB_SondeoRapido(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int, int, int,
                              const char *modelo, int, const char *sufijo, int, int)
{
    return SALCOMUN_Entrada(SALCOFDMQAMBINT_Familia, SALCOMUN_PaginaRapido, modo, documento, esMaster, canales, 0,
                            modelo, 0, sufijo);
}

int SALCOFDMQAMB_SondeoDetallado(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int, int, int,
                                 const char *modelo, int, const char *sufijo, int, int)
{
    return SALCOMUN_Entrada(SALCOFDMQAMBINT_Familia, SALCOMUN_PaginaDetallado, modo, documento, esMaster, canales, 0,
                            modelo, 0, sufijo);
}

int SALCOFDMQAMB_GeneraTransporte(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones, int,
                                  int, const char *modelo, int fila, const char *sufijo, int, int)
{
    return SALCOMUN_Entrada(SALCOFDMQAMBINT_Familia, SALCOMUN_PaginaTransporte, modo, documento, esMaster, canales,
                            opciones, modelo, fila, sufijo);
}

int SALCOFDMQAMB_GeneraSalida(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int, int, int,
                              const char *modelo, int fila, const char *sufijo, int, int)
{
    return SALCOMUN_Entrada(SALCOFDMQAMBINT_Familia, SALCOMUN_PaginaSalida, modo, documento, esMaster, canales, 0,
                            modelo, fila, sufijo);
}

int SALCOFDMQAMB_GrabaSalida(xmlDocPtr documento, char *formulario)
{
    SALCOMUN_PaginaGrabar pagina = SALCOMUN_GrabarSalidaCOFDM;
    pagina.admite = SALCOFDMQAMBINT_AdmiteSalida;
    return SALCOMUN_Graba(documento, formulario, pagina);
}

int SALCOFDMQAMB_GrabaTransporte(xmlDocPtr documento, char *formulario)
{
    return SALCOMUN_Graba(documento, formulario, SALCOMUN_GrabarTransporteDVB);
}
