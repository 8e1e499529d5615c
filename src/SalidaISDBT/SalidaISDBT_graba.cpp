// SalidaISDBT_graba.cpp: the saves of the ISDB-T transport and output pages for one unit.
#include "SalidaISDBT/SalidaISDBT_int.h"

#include "utils/utils.h"
#include "utilsXML/utilsXML.h"

#include <algorithm>

namespace {

// All required: the settings a mode or plan does not use come back from their hidden inputs.
constexpr SALCOMUN_Clave SALISDBTINT_ClavesSalida[] = {
    {"numcanales", true}, {"outtab", true}, {"outchn", true}, {"frecstep", true}, {"outlev", true},
    {"outmod", true},     {"outofdm", true}, {"outint", true}, {"bwsal", true},   {"ingrd", true},
    {"fecsal", true},     {"outout", true},  {"outrfl", true},
};

// Written in this order, each value as received: positions for the ISDB-T tables.
constexpr SALCOMUN_CampoUnidad SALISDBTINT_EscriturasSalida[] = {
    {"outtab", UTILSXML_GrabaSALISDBTTABLA},    {"outchn", UTILSXML_GrabaSALISDBTFREC},
    {"frecstep", UTILSXML_GrabaSALISDBTFRECSTEP}, {"outlev", UTILSXML_GrabaSALISDBTNIVEL},
    {"outmod", UTILSXML_GrabaSALISDBTModo},     {"outofdm", UTILSXML_GrabaSALISDBTOFDM},
    {"outint", UTILSXML_GrabaSALISDBTINTER},    {"bwsal", UTILSXML_GrabaSALISDBTBW},
    {"ingrd", UTILSXML_GrabaSALISDBTGUARDA},    {"fecsal", UTILSXML_GrabaSALISDBTFEC},
    {"outout", UTILSXML_GrabaSALISDBTSALIDA},   {"outrfl", UTILSXML_GrabaSALISDBTRFLOOP},
};

bool SALISDBTINT_Ofrecido(std::string_view valor, std::span<const SALCOMUN_Opcion> opciones)
{
    return std::any_of(opciones.begin(), opciones.end(), [&](const SALCOMUN_Opcion &o) { return valor == o.valor; });
}

// What the output page offers for the posted mode and plan. Settings the mode or plan does
// not use come back hidden as they were stored and are not checked.
bool SALISDBTINT_AdmiteSalida(const SALCOMUN_Valores &v)
{
    const bool broadcast = v["outtab"] == std::to_string(SALISDBT_PlanBroadcast);
    if (!broadcast && v["outtab"] != std::to_string(SALISDBT_PlanFrecuencia))
        return false;
    if (!SALCOMUN_EnRango(v["outmod"], 0, SALISDBT_UltimoModo))
        return false;
    const bool modoISDBT = UTILS_Numero(v["outmod"]) <= SALISDBT_UltimoModoISDBT;
    const bool canal = broadcast ? SALCOMUN_EnRango(v["outchn"], 0, COFDM_TablasdeCanales[SALISDBT_PlanBroadcast].numCanales - 1)
                                 : SALCOMUN_EnRango(v["outchn"], SALCOMUN_FrecuenciaMinima, SALCOMUN_FrecuenciaMaxima);
    const bool paso = broadcast || SALCOMUN_EnRango(v["frecstep"], 0, COFDM_NUMPASOSFRECUENCIA - 1);
    const bool ofdm = modoISDBT ? SALCOMUN_EnRango(v["outofdm"], 0, COFDM_NUMOFDMISDBT - 1)
                                : std::any_of(std::begin(SALISDBT_OFDMsCOFDM), std::end(SALISDBT_OFDMsCOFDM),
                                              [&](int p) { return v["outofdm"] == std::to_string(p); });
    const bool interleaving = !modoISDBT || SALCOMUN_EnRango(v["outint"], 0, SALISDBT_UltimoInterleaving);
    return canal && paso && ofdm && interleaving && SALCOMUN_EnRango(v["outlev"], 0, 99) &&
           SALISDBTINT_Ofrecido(v["bwsal"], SALCOMUN_AnchosBanda) &&
           SALISDBTINT_Ofrecido(v["ingrd"], SALCOMUN_IntervalosGuarda) &&
           SALISDBTINT_Ofrecido(v["fecsal"], SALCOMUN_FECs) && SALISDBTINT_Ofrecido(v["outout"], SALCOMUN_TiposSalida) &&
           SALCOMUN_EnRango(v["outrfl"], 0, 1);
}

}  // namespace

int SALISDBT_GrabaSalida(xmlDocPtr documento, char *formulario)
{
    return SALCOMUN_Graba(documento, formulario,
                          {SALISDBTINT_ClavesSalida, SALISDBTINT_EscriturasSalida, {}, SALISDBTINT_AdmiteSalida});
}

int SALISDBT_GrabaTransporte(xmlDocPtr documento, char *formulario)
{
    return SALCOMUN_Graba(documento, formulario, SALCOMUN_GrabarTransporteDVB);
}
