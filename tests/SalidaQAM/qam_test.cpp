// The QAM module's saves and selects, by property: a failed write leaves the others made,
// a bad channel count writes nothing, and every offered choice survives being stored; and the
// text cuts and LED states every output module relies on.
#include "SalidaQAM/SalidaQAM_int.h"

#include "salida_test.h"

#include "utilsXML/utilsXML.h"

namespace {

using namespace salida_test;

const std::string salida =
    "numcanales=2&outtab=3&outchn=61&outbau=6.875&outout=4&outint=12&outmod=7&outlev=41&outrfl=0";
// Lines 1-2 are the encoder channels, 3-5 the services 1.1, 1.2 and 2.1 of the IP inputs.
const std::string canales = "numcanales=2&tsid=7001&cnam=1_N1_2_N2_3_N3_4_N4_5_N5&svpid=1_301_2_302_3_303_4_304_5_305"
                            "&sapid=1_401_2_402_3_403_4_404_5_405&svcid=1_501_2_502_3_503_4_504_5_505"
                            "&mchn=1_11_2_12_3_13_4_14_5_15&chnm=1_21_2_22_3_23_4_24_5_25&autochan=1_1_2_1_3_1_4_1_5_1";
const std::string transporte = canales + "&haysalidaip=1&ntotserv=5&entip=3_1_4_1_5_2&lsnumserv=3_1_4_2_5_1";

TEST(GrabaQAM, AFailedWriteLeavesTheOthersMadeAndABadChannelCountWritesNothing)
{
    CompruebaGuardado(SALQAM_GrabaSalida, salida);
    CompruebaGuardado(SALQAM_GrabaTransporte, transporte);
}

// Lines above the channels are IP services only as the lists map them: lists that put a service
// on a channel's line, or cannot be held, are refused (6) with no service written; without IP
// services, or with no line above the channels, the lines are simply dropped.
TEST(GrabaQAM, ServiceLinesAreWrittenOnlyWhenTheListsMapThem)
{
    Doc soloCanales = Unidad();
    ASSERT_EQ(Graba(SALQAM_GrabaTransporte, soloCanales.get(), canales), 0);
    for (const auto &[listas, resultado] : {std::pair{"&haysalidaip=1&ntotserv=5&entip=2_1_3_1&lsnumserv=3_1", 6},
                                            {"&haysalidaip=1&ntotserv=5&entip=3_1&lsnumserv=1_1_3_1", 6},
                                            {"&haysalidaip=1&ntotserv=999999999&entip=3_1&lsnumserv=3_1", 6},
                                            {"&haysalidaip=0&ntotserv=5&entip=3_1&lsnumserv=3_1", 0},
                                            {"&haysalidaip=1&ntotserv=2&entip=3_1&lsnumserv=3_1", 0}}) {
        Doc documento = Unidad();
        EXPECT_EQ(Graba(SALQAM_GrabaTransporte, documento.get(), canales + listas), resultado) << listas;
        EXPECT_EQ(serializa(documento.get()), serializa(soloCanales.get())) << listas;
    }
}

void PintaSalida(xmlDocPtr documento) { SALQAMINT_PintaLineaSalida(documento, 0, 0, 2, "710109", "_s"); }
void PintaTransporte(xmlDocPtr documento) { SALQAMINT_PintaLineaTransporte(documento, 0, 0, 2, 1, "710109", "_s"); }

TEST(SelectsQAM, EveryOfferedChoiceIsPaintedBackOnceStored)
{
    const CasoSelect casos[] = {
        {"outtab", [](xmlDocPtr d, const char *v) { UTILSXML_GrabaSALQAMTabla(d, v); }, PintaSalida},
        {"outmod", [](xmlDocPtr d, const char *v) { UTILSXML_GrabaSALQAMModoSalida(d, v); }, PintaSalida},
        {"outint", [](xmlDocPtr d, const char *v) { UTILSXML_GrabaSALQAMInterleaving(d, v); }, PintaSalida},
        {"outout", [](xmlDocPtr d, const char *v) { UTILSXML_GrabaSALQAMTipoSalida(d, v); }, PintaSalida},
        {"outchn",  // with the T_CHANNELS table the channel is a select
         [](xmlDocPtr d, const char *v) { UTILSXML_GrabaSALQAMTabla(d, "2"), UTILSXML_GrabaSALQAMFrecoCanal(d, v); },
         PintaSalida},
        {"autochan2", [](xmlDocPtr d, const char *v) { UTILSXML_GrabaSALTSCanalTABLETYPECHNUMBER(d, v, 2); },
         PintaTransporte},
    };
    for (const CasoSelect &caso : casos)
        CompruebaSelect(caso);
}

TEST(SalidaComun, CutNeverSplitsAUtf8Character)
{
    for (const auto &[texto, n, cortado] : {std::tuple{"abcdef", 3u, "abc"}, {"ab", 3u, "ab"}, {"año", 2u, "a"},
                                            {"año", 3u, "añ"}, {"€1", 2u, ""}})
        EXPECT_EQ(SALCOMUN_Corta(texto, n), cortado) << texto << " " << n;
}

TEST(SalidaComun, EachLedReadsItsOwnNibbleAndStatesAboveElevenAsZero)
{
    for (unsigned estado = 0; estado < 16; ++estado)
        for (int led = 0; led < SALCOMUN_NumLeds; ++led) {
            const unsigned long palabra = (static_cast<unsigned long>(estado) << (4 * led)) | (led > 0 ? 0x5 : 0x50);
            EXPECT_EQ(SALCOMUN_EstadoLed(palabra, led), estado >= 12 ? 0 : static_cast<int>(estado));
        }
}

}  // namespace
