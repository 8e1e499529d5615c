// SalidaQAM_graba.cpp: the saves of the QAM transport and output pages for one unit.
#include "SalidaQAM/SalidaQAM_int.h"

#include "utilsXML/utilsXML.h"

namespace {

// --- Output page ------------------------------------------------------------

constexpr SALCOMUN_Clave SALQAMINT_ClavesSalida[] = {
    {"numcanales", true}, {"outtab", true}, {"outchn", true}, {"outbau", true}, {"outout", true},
    {"outint", true},     {"outmod", true}, {"outlev", true}, {"outrfl", true},
};

// Written in this order, each value as received.
constexpr SALCOMUN_CampoUnidad SALQAMINT_EscriturasSalida[] = {
    {"outtab", UTILSXML_GrabaSALQAMTabla},
    {"outchn", UTILSXML_GrabaSALQAMFrecoCanal},
    {"outbau", UTILSXML_GrabaSALQAMBaudrate},
    {"outout", UTILSXML_GrabaSALQAMTipoSalida},
    {"outint", UTILSXML_GrabaSALQAMInterleaving},
    {"outmod", UTILSXML_GrabaSALQAMModoSalida},
    {"outlev", UTILSXML_GrabaSALQAMNivel},
    {"outrfl", UTILSXML_GrabaSALQAMLoopRF},
};

// --- Transport page ---------------------------------------------------------

// "autochan" is not required: the table-type selects are disabled in Annex A and then not
// posted.
constexpr SALCOMUN_Clave SALQAMINT_ClavesTransporte[] = {
    {"numcanales", true},   {"tsid", true},   {"cnam", true},      {"svpid", true},     {"sapid", true},
    {"mchn", true},         {"chnm", true},   {"autochan", false}, {"svcid", true},     {"haysalidaip", false},
    {"entip", false},       {"lsnumserv", false}, {"ntotserv", false},
};

constexpr SALCOMUN_CampoUnidad SALQAMINT_EscriturasTransporte[] = {
    {"tsid", UTILSXML_GrabaSALTSTSID},
};

// Per-line lists, in this order; PIDs have no IP-service counterpart (the unit keeps the
// input's PIDs), so their lines above the channel count are dropped. The one-part number
// shown for "CVCT 1" goes back to the major number unchanged.
constexpr SALCOMUN_ListaLineas SALQAMINT_ListasTransporte[] = {
    {"cnam", UTILSXML_GrabaSALTSCanalNombre, UTILSXML_GrabaENTRAIPSERVNAMEOUT},
    {"svpid", UTILSXML_GrabaSALTSCanalVIDEOPID, nullptr},
    {"sapid", UTILSXML_GrabaSALTSCanalAUDIOPID, nullptr},
    {"svcid", UTILSXML_GrabaSALTSCanalSERVICEID, UTILSXML_GrabaENTRAIPSERVICEIDOUT},
    {"mchn", UTILSXML_GrabaSALTSCanalMAJORCHNUMBER, UTILSXML_GrabaENTRAIPSERVICEMAJOR},
    {"chnm", UTILSXML_GrabaSALTSCanalMINORCHNUMBER, UTILSXML_GrabaENTRAIPSERVICEMINOR},
    {"autochan", UTILSXML_GrabaSALTSCanalTABLETYPECHNUMBER, UTILSXML_GrabaENTRAIPSERVICETABLETYPE},
};

}  // namespace

int SALQAM_GrabaSalida(xmlDocPtr documento, char *formulario)
{
    return SALCOMUN_Graba(documento, formulario, {SALQAMINT_ClavesSalida, SALQAMINT_EscriturasSalida});
}

int SALQAM_GrabaTransporte(xmlDocPtr documento, char *formulario)
{
    return SALCOMUN_Graba(documento, formulario,
                          {SALQAMINT_ClavesTransporte, SALQAMINT_EscriturasTransporte, SALQAMINT_ListasTransporte});
}
