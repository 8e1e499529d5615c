// SalidaCOFDM_graba.cpp: the saves of the COFDM transport and output pages for one unit.
#include "SalidaCOFDM/SalidaCOFDM_int.h"

#include "utilsXML/utilsXML.h"

namespace {

// --- Output page ------------------------------------------------------------

// All required: the settings a mode does not use come back from their hidden inputs.
constexpr SALCOMUN_Clave SALCOFDMINT_ClavesSalida[] = {
    {"numcanales", true}, {"outtab", true}, {"outchn", true}, {"outlev", true}, {"outmod", true},
    {"frecstep", true},   {"bwsal", true},  {"ingrd", true},  {"fecsal", true}, {"cellid", true},
    {"outbau", true},     {"outout", true}, {"outrfl", true},
};

// Written in this order, each value as received.
constexpr SALCOMUN_CampoUnidad SALCOFDMINT_EscriturasSalida[] = {
    {"outtab", UTILSXML_GrabaSALCODFMTABLA},
    {"outmod", UTILSXML_GrabaSALCODFMMODO},
    {"ingrd", UTILSXML_GrabaSALCODFMGUARDA},
    {"outbau", UTILSXML_GrabaSALCODFMBAUDRATE},
    {"outchn", UTILSXML_GrabaSALCODFMFREC},
    {"frecstep", UTILSXML_GrabaSALCODFMFRECSTEP},
    {"fecsal", UTILSXML_GrabaSALCODFMFEC},
    {"outout", UTILSXML_GrabaSALCODFMSALIDA},
    {"outlev", UTILSXML_GrabaSALCODFMNIVEL},
    {"bwsal", UTILSXML_GrabaSALCODFMBW},
    {"cellid", UTILSXML_GrabaSALCODFMCELLID},
    {"outrfl", UTILSXML_GrabaSALCODFMLoopRF},
};


}  // namespace

int SALCOFDM_GrabaSalida(xmlDocPtr documento, char *formulario)
{
    return SALCOMUN_Graba(documento, formulario, {SALCOFDMINT_ClavesSalida, SALCOFDMINT_EscriturasSalida});
}

int SALCOFDM_GrabaTransporte(xmlDocPtr documento, char *formulario)
{
    return SALCOMUN_Graba(documento, formulario, SALCOMUN_GrabarTransporteDVB);
}
