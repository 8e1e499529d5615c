// SalidaCOFDM.cpp: the COFDM module's page entries and row painters: quick and detailed
// status, transport (DVB network identifiers, NIT and SDT versions, logical channel numbers,
// service names, PIDs and ids, IP-input services) and output (channel plan and channel,
// frequency step, level, mode and the OFDM settings, baud rate).
#include "SalidaCOFDM/SalidaCOFDM.h"
#include "SalidaCOFDM/SalidaCOFDM_int.h"

#include "utils/utils.h"
#include "utilsXML/utilsXML.h"

#include <array>
#include <cstdio>
#include <span>
#include <type_traits>

// The entries and saves fill the COFDM slots of the dispatch tables.
static_assert(std::is_same_v<decltype(&SALCOFDM_SondeoRapido), SALCOMUN_FuncionPagina>);
static_assert(std::is_same_v<decltype(&SALCOFDM_SondeoDetallado), SALCOMUN_FuncionPagina>);
static_assert(std::is_same_v<decltype(&SALCOFDM_GeneraTransporte), SALCOMUN_FuncionPagina>);
static_assert(std::is_same_v<decltype(&SALCOFDM_GeneraSalida), SALCOMUN_FuncionPagina>);
static_assert(std::is_same_v<decltype(&SALCOFDM_GrabaTransporte), SALCOMUN_FuncionGrabar>);
static_assert(std::is_same_v<decltype(&SALCOFDM_GrabaSalida), SALCOMUN_FuncionGrabar>);

namespace {

// ---------------------------------------------------------------------------
// Mode and option lists
// ---------------------------------------------------------------------------

bool SALCOFDMINT_EsModoQAM(long modo)
{
    return modo >= SALCOFDM_PrimerModoQAM && modo <= SALCOFDM_UltimoModoQAM;
}

// The stored mode as painted: 0..2 (OFDM) and 12..16 (QAM) as they are, anything else,
// an unreadable mode included, as 0.
int SALCOFDMINT_Modo(std::string_view guardado)
{
    const long modo = UTILS_Numero(guardado, -1);
    const bool ofdm = modo >= 0 && modo <= SALCOFDM_UltimoModoOFDM;
    return ofdm || SALCOFDMINT_EsModoQAM(modo) ? static_cast<int>(modo) : SALCOFDM_ModoDefecto;
}

std::vector<CTESHTML_Opcion> SALCOFDMINT_OpcionesModo()
{
    return CTESHTML_OpcionesTablas(ModosSalidaCOFDM, ValoresModosSalidaCOFDM, COFDM_NUMMODOSSALIDA);
}

// Plans 0..10, each with its name, in every mode.
std::vector<CTESHTML_Opcion> SALCOFDMINT_OpcionesPlan(bool)
{
    std::vector<CTESHTML_Opcion> planes;
    for (int plan = 0; plan < SALCOFDM_PlanesOfrecidos; ++plan)
        planes.push_back(COFDM_OpcionTabla(plan));
    return planes;
}

// The COFDM output row: its modes, plans 0..10 in every mode, the baud rate editable in the
// cable QAM modes.
const SALCOMUN_VarianteCOFDM SALCOFDMINT_Variante = {
    SALCOFDM_TipoUnidad, strJSCambioModoCOFDM, SALCOFDMINT_OpcionesModo, SALCOFDMINT_Modo,
    SALCOFDMINT_EsModoQAM, SALCOFDMINT_OpcionesPlan, true,
};




// ---------------------------------------------------------------------------
// Field builders of the COFDM rows
// ---------------------------------------------------------------------------



// ---------------------------------------------------------------------------
// Output row
// ---------------------------------------------------------------------------





}  // namespace

// ---------------------------------------------------------------------------
// Row painters
// ---------------------------------------------------------------------------

namespace {
extern const SALCOMUN_Familia SALCOFDMINT_Familia;
}  // namespace

int SALCOFDMINT_PintaLineaTransporte(xmlDocPtr config, int esMaster, int configTotal, uint8_t canales, int opciones,
                                     const char *modelo, const char *sufijo)
{
    return SALCOMUN_PintaLineaTransporteDVB(SALCOFDM_TipoUnidad, config, esMaster, configTotal, canales, opciones, modelo,
                                            sufijo);
}

int SALCOFDMINT_PintaLineaSalida(xmlDocPtr config, int esMaster, int configTotal, uint8_t canales,
                                 const char *modelo, const char *sufijo)
{
    return SALCOMUN_PintaLineaSalidaCOFDM(SALCOFDMINT_Variante, config, esMaster, configTotal, canales, modelo, sufijo);
}

int SALCOFDMINT_PintaLineaSondeo(xmlDocPtr status, int esMaster, int configTotal, int detallado, uint8_t canales,
                       const char *modelo, const char *)
{
    return SALCOMUN_PintaLineaSondeo(SALCOFDMINT_Familia, status, esMaster, configTotal, detallado, canales, modelo);
}



// ---------------------------------------------------------------------------
// Page entries
// ---------------------------------------------------------------------------

namespace {



std::string SALCOFDMINT_CierreSalida(int unidades)
{
    return SALCOMUN_CierreSalidaCOFDM(SALCOFDMINT_Variante, unidades);
}

const SALCOMUN_Familia SALCOFDMINT_Familia = {
    SALCOFDMINT_PintaLineaSondeo, SALCOFDMINT_PintaLineaTransporte, SALCOFDMINT_PintaLineaSalida,
    htmlsondeorapidoCabeceraCOFDM, htmlsondeoDetaladoCabeceraCOFDM, htmlinfotransporteinicioCOFDM, htmlinfosalidainicioCOFDM,
    SALCOMUN_CierreTransporteDVB, SALCOFDMINT_CierreSalida,
    htmlsondeorapidoCOFDM, htmlsondeoDetaladoCOFDM, htmlConfigTotalUnitStatusCOFDM, false,
};

}  // namespace

int SALCOFDM_SondeoRapido(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int, int, int,
                          const char *modelo, int, const char *sufijo, int, int)
{
    return SALCOMUN_Entrada(SALCOFDMINT_Familia, SALCOMUN_PaginaRapido, modo, documento, esMaster, canales, 0, modelo, 0,
                            sufijo);
}

int SALCOFDM_SondeoDetallado(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int, int, int,
                             const char *modelo, int, const char *sufijo, int, int)
{
    return SALCOMUN_Entrada(SALCOFDMINT_Familia, SALCOMUN_PaginaDetallado, modo, documento, esMaster, canales, 0, modelo, 0,
                            sufijo);
}

int SALCOFDM_GeneraTransporte(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones, int, int,
                              const char *modelo, int fila, const char *sufijo, int, int)
{
    return SALCOMUN_Entrada(SALCOFDMINT_Familia, SALCOMUN_PaginaTransporte, modo, documento, esMaster, canales, opciones, modelo, fila,
                            sufijo);
}

int SALCOFDM_GeneraSalida(int modo, xmlDocPtr documento, int esMaster, uint8_t canales, int, int, int,
                          const char *modelo, int fila, const char *sufijo, int, int)
{
    return SALCOMUN_Entrada(SALCOFDMINT_Familia, SALCOMUN_PaginaSalida, modo, documento, esMaster, canales, 0, modelo, fila,
                            sufijo);
}
