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

// --- Transport page ---------------------------------------------------------

// The IP-service keys are posted only by units with IP inputs.
constexpr SALCOMUN_Clave SALCOFDMINT_ClavesTransporte[] = {
    {"numcanales", true},   {"tsid", true},      {"cnam", true},      {"svpid", true},    {"sapid", true},
    {"mlcn", true},         {"lcnn", true},      {"ntid", true},      {"nnam", true},     {"onid", true},
    {"svcid", true},        {"nitvs", true},     {"sdtvs", true},     {"haysalidaip", false},
    {"entip", false},       {"lsnumserv", false}, {"ntotserv", false},
};

// The unit's DVB identifiers and tables, written first and in this order.
constexpr SALCOMUN_CampoUnidad SALCOFDMINT_EscriturasTransporte[] = {
    {"tsid", UTILSXML_GrabaSALTSTSID},
    {"ntid", UTILSXML_GrabaSALTSNETwORKID},
    {"nnam", UTILSXML_GrabaSALTSNETwORKNAME},
    {"onid", UTILSXML_GrabaSALTSORIGNETID},
    {"nitvs", UTILSXML_GrabaSALTSVersionNIT},
    {"sdtvs", UTILSXML_GrabaSALTSVersionSDT},
    {"mlcn", UTILSXML_GrabaSALTSLCN},
};

// Per-line lists, in this order; PIDs have no IP-service counterpart (the unit keeps the
// input's PIDs), so their lines above the channel count are dropped.
constexpr SALCOMUN_ListaLineas SALCOFDMINT_ListasTransporte[] = {
    {"lcnn", UTILSXML_GrabaSALTSCanalLCN, UTILSXML_GrabaENTRAIPSERVICELCN},
    {"svcid", UTILSXML_GrabaSALTSCanalSERVICEID, UTILSXML_GrabaENTRAIPSERVICEIDOUT},
    {"cnam", UTILSXML_GrabaSALTSCanalNombre, UTILSXML_GrabaENTRAIPSERVNAMEOUT},
    {"svpid", UTILSXML_GrabaSALTSCanalVIDEOPID, nullptr},
    {"sapid", UTILSXML_GrabaSALTSCanalAUDIOPID, nullptr},
};

}  // namespace

int SALCOFDM_GrabaSalida(xmlDocPtr documento, char *formulario)
{
    return SALCOMUN_Graba(documento, formulario, {SALCOFDMINT_ClavesSalida, SALCOFDMINT_EscriturasSalida});
}

int SALCOFDM_GrabaTransporte(xmlDocPtr documento, char *formulario)
{
    return SALCOMUN_Graba(documento, formulario,
                          {SALCOFDMINT_ClavesTransporte, SALCOFDMINT_EscriturasTransporte, SALCOFDMINT_ListasTransporte});
}
