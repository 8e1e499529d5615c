// SalidaISDBT_graba.cpp: the saves of the ISDB-T transport and output pages for one unit.
#include "SalidaISDBT/SalidaISDBT_int.h"

#include "utils/utils.h"
#include "utilsXML/utilsXML.h"


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
    const bool ofdm = SALCOMUN_Ofrecido(v["outofdm"], SALISDBTINT_OpcionesOFDM(modoISDBT));
    const bool interleaving = !modoISDBT || SALCOMUN_EnRango(v["outint"], 0, SALISDBT_UltimoInterleaving);
    return canal && paso && ofdm && interleaving && SALCOMUN_EnRango(v["outlev"], 0, 99) &&
           SALCOMUN_Ofrecido(v["bwsal"], SALCOMUN_Opciones(SALCOMUN_AnchosBanda)) &&
           SALCOMUN_Ofrecido(v["ingrd"], SALCOMUN_Opciones(SALCOMUN_IntervalosGuarda)) &&
           SALCOMUN_Ofrecido(v["fecsal"], SALCOMUN_Opciones(SALCOMUN_FECs)) && SALCOMUN_Ofrecido(v["outout"], SALCOMUN_Opciones(SALCOMUN_TiposSalida)) &&
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
