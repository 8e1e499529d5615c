// Shared pieces of the output modules that the family pages rely on: text cuts, the channel
// count of a save, LED states and the IP-service line map.
#include "SalidaQAM/SalidaComun.h"

#include <gtest/gtest.h>

namespace {

TEST(SalidaComun, CutNeverSplitsAUtf8Character)
{
    EXPECT_EQ(SALCOMUN_Corta("abcdef", 3), "abc");
    EXPECT_EQ(SALCOMUN_Corta("ab", 3), "ab");
    EXPECT_EQ(SALCOMUN_Corta("a\xC3\xB1o", 2), "a");          // "ño" would be cut inside the "ñ"
    EXPECT_EQ(SALCOMUN_Corta("a\xC3\xB1o", 3), "a\xC3\xB1");
    EXPECT_EQ(SALCOMUN_Corta("\xE2\x82\xAC" "1", 2), "");      // euro sign, 3 bytes
}

TEST(SalidaComun, ChannelCountIsOneToNine)
{
    const struct {
        const char *texto;
        int canales;
    } casos[] = {{"1", 1}, {"9", 9}, {"4", 4}, {"04", 4}, {"0", 0}, {"10", 0}, {"", 0}, {"-1", 0},
                 {"2x", 0}, {" 2", 0}, {"x", 0}, {"0009", 0}};
    for (const auto &caso : casos)
        EXPECT_EQ(SALCOMUN_NumCanales(caso.texto), caso.canales) << '"' << caso.texto << '"';
}

TEST(SalidaComun, LedStatesAboveElevenReadAsZero)
{
    for (unsigned estado = 0; estado < 16; ++estado)
        for (int led = 0; led < SALCOMUN_NumLeds; ++led)
            EXPECT_EQ(SALCOMUN_EstadoLed(static_cast<unsigned long>(estado) << (4 * led), led),
                      estado >= 12 ? 0 : static_cast<int>(estado));
}

TEST(SalidaComun, IPLineMapHoldsOnlyLinesAboveTheChannels)
{
    SALCOMUN_LineasIP lineas;
    EXPECT_EQ(lineas.Prepara(2, "1", "5", "3_7_5_2_8_1", "3_4_5_9"), 0);
    ASSERT_TRUE(lineas.Activas());
    EXPECT_FALSE(lineas.Contiene(2));
    EXPECT_TRUE(lineas.Contiene(3));
    EXPECT_TRUE(lineas.Contiene(5));
    EXPECT_FALSE(lineas.Contiene(6));
    EXPECT_EQ(lineas.Servicio(3).entrada, 7);
    EXPECT_EQ(lineas.Servicio(3).servicio, 4);
    EXPECT_EQ(lineas.Servicio(4).entrada, 0);  // posted by no pair
    EXPECT_EQ(lineas.Servicio(5).entrada, 2);
    EXPECT_EQ(lineas.Servicio(5).servicio, 9);

    EXPECT_EQ(lineas.Prepara(2, "0", "5", "3_7", "3_4"), 0);
    EXPECT_FALSE(lineas.Activas());
    EXPECT_EQ(lineas.Prepara(2, "1", "5", "3_7", "1_4"), 6);
    EXPECT_FALSE(lineas.Activas());
    EXPECT_EQ(lineas.Prepara(2, "1", "5", "3_300", "3_4"), 0);
    EXPECT_EQ(lineas.Servicio(3).entrada, 0);  // not a byte: no input
}

}  // namespace
