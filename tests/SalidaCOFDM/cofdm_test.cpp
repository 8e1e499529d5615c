// The COFDM module's saves and selects, by property: a failed write leaves the others made,
// a bad channel count writes nothing, and every offered choice survives being stored.
#include "SalidaCOFDM/SalidaCOFDM_int.h"

#include "../SalidaQAM/salida_test.h"

#include "utilsXML/utilsXML.h"

namespace {

using namespace salida_test;

const std::string salida = "numcanales=2&outtab=4&outchn=3&outlev=40&outmod=13&frecstep=6&bwsal=1&ingrd=2&fecsal=3"
                           "&cellid=1F2&outbau=6.875&outout=2&outrfl=1";
// Lines 1-2 are the encoder channels, 3-5 the services 1.1, 1.2 and 2.1 of the IP inputs.
const std::string transporte = "numcanales=2&tsid=7001&ntid=7002&nnam=NET+%26+%3C1%3E&onid=7003&nitvs=5&sdtvs=6&mlcn=2"
                               "&lcnn=1_31_2_32_3_33_4_34_5_35&svcid=1_501_2_502_3_503_4_504_5_505"
                               "&cnam=1_N1_2_N2_3_N3_4_N4_5_N5&svpid=1_301_2_302_3_303_4_304_5_305"
                               "&sapid=1_401_2_402_3_403_4_404_5_405"
                               "&haysalidaip=1&ntotserv=5&entip=3_1_4_1_5_2&lsnumserv=3_1_4_2_5_1";

TEST(GrabaCOFDM, AFailedWriteLeavesTheOthersMadeAndABadChannelCountWritesNothing)
{
    CompruebaGuardado(SALCOFDM_GrabaSalida, salida);
    CompruebaGuardado(SALCOFDM_GrabaTransporte, transporte);
}

void PintaSalida(xmlDocPtr documento) { SALCOFDMINT_PintaLineaSalida(documento, 0, 0, 2, "710205", "_s"); }
void PintaTransporte(xmlDocPtr documento) { SALCOFDMINT_PintaLineaTransporte(documento, 0, 0, 2, 1, "710205", "_s"); }

// A select of the output row with the plan and mode it needs to be shown.
CasoSelect DeSalida(const char *nombre, std::string plan, const char *modo, int (*graba)(xmlDocPtr, const char *))
{
    return {nombre,
            [=](xmlDocPtr d, const char *v) {
                UTILSXML_GrabaSALCODFMTABLA(d, plan.c_str());
                UTILSXML_GrabaSALCODFMMODO(d, modo);
                graba(d, v);
            },
            PintaSalida};
}

TEST(SelectsCOFDM, EveryOfferedChoiceIsPaintedBackOnceStored)
{
    std::vector<CasoSelect> casos = {
        DeSalida("outtab", "0", "0", UTILSXML_GrabaSALCODFMTABLA),
        DeSalida("outmod", "0", "0", UTILSXML_GrabaSALCODFMMODO),
        DeSalida("bwsal", "0", "0", UTILSXML_GrabaSALCODFMBW),
        DeSalida("ingrd", "0", "1", UTILSXML_GrabaSALCODFMGUARDA),
        DeSalida("fecsal", "0", "2", UTILSXML_GrabaSALCODFMFEC),
        DeSalida("frecstep", "0", "0", UTILSXML_GrabaSALCODFMFRECSTEP),   // OFDM steps
        DeSalida("frecstep", "0", "12", UTILSXML_GrabaSALCODFMFRECSTEP),  // QAM steps
        {"nitvs", [](xmlDocPtr d, const char *v) { UTILSXML_GrabaSALTSVersionNIT(d, v); }, PintaTransporte},
        {"sdtvs", [](xmlDocPtr d, const char *v) { UTILSXML_GrabaSALTSVersionSDT(d, v); }, PintaTransporte},
        {"mlcn", [](xmlDocPtr d, const char *v) { UTILSXML_GrabaSALTSLCN(d, v); }, PintaTransporte},
    };
    Doc unidad = Unidad();
    for (const std::string &plan : casos.front().Pinta(unidad.get()).ofrecidas)  // every channel of every plan
        if (plan != "0")
            casos.push_back(DeSalida("outchn", plan, "0", UTILSXML_GrabaSALCODFMFREC));
    for (const CasoSelect &caso : casos)
        CompruebaSelect(caso);
}

}  // namespace
