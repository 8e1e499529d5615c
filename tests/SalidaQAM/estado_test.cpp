// Status pages of the QAM module: LED cells, channels a unit does not have, the "--" rule of
// the detailed row, the advanced page's status block and the page frame.
#include "SalidaQAM/SalidaQAM.h"

#include "qam_test.h"

#include <cstdio>

namespace {

using namespace qam_test;

constexpr char kModelo[] = "710105  - Enc 2 CMP+HDMI";
constexpr char kSufijo[] = "_010_000_000_021";

// Cell positions of the quick-status row.
enum { C_ORDEN, C_MODELO, C_TEMP, C_EAS, C_CH1, C_CH2, C_CH3, C_CH4, C_OUT, C_RFLOOP, C_TABLA, C_CANAL, C_IP, C_WM,
       C_ESTADO, C_TOTAL };

std::string Rapido(xmlDocPtr status, uint8_t canales, int esMaster = 0, const char *modelo = kModelo)
{
    return Captura([&] { EXPECT_EQ(SALQAM_SondeoRapido(1, status, esMaster, canales, 0, 0, 0, modelo, 1, kSufijo, 0, 0), 0); });
}

std::string Detallado(xmlDocPtr status, uint8_t canales, int esMaster = 0, const char *modelo = kModelo)
{
    return Captura([&] { EXPECT_EQ(SALQAM_SondeoDetallado(1, status, esMaster, canales, 0, 0, 0, modelo, 1, kSufijo, 0, 0), 0); });
}

std::string Leds(unsigned long palabra)
{
    char texto[32];
    std::snprintf(texto, sizeof texto, "%lu", palabra);
    return texto;
}

const std::string kNA = "<strong>n/a</strong>&nbsp";
const std::string kNAFin = "<strong>n/a</strong>";

// --- Channels a unit does not have -------------------------------------------

struct CasoCanales {
    uint8_t canales;
    bool ledCH2, ledCH3, ledCH4;
};

class CanalesEstado : public testing::TestWithParam<CasoCanales> {};

TEST_P(CanalesEstado, CH2CH3CH4ShowTheLedOrNotApplicable)
{
    const CasoCanales caso = GetParam();
    Doc status = Demo("sondeo.010.000.000.022.xml");
    const auto celdas = Celdas(Rapido(status.get(), caso.canales));
    ASSERT_EQ(celdas.size(), static_cast<size_t>(C_TOTAL));
    EXPECT_EQ(celdas[C_CH1].find("alt=\"ch1\"") != std::string::npos, true);
    if (caso.ledCH2)
        EXPECT_NE(celdas[C_CH2].find("alt=\"ch2\""), std::string::npos);
    else
        EXPECT_EQ(celdas[C_CH2], kNA);
    if (caso.ledCH3)
        EXPECT_NE(celdas[C_CH3].find("alt=\"ch3\""), std::string::npos);
    else
        EXPECT_EQ(celdas[C_CH3], kNA);
    if (caso.ledCH4)
        EXPECT_NE(celdas[C_CH4].find("alt=\"ch4\""), std::string::npos);
    else
        EXPECT_EQ(celdas[C_CH4], kNAFin);
}

INSTANTIATE_TEST_SUITE_P(PorCanales, CanalesEstado,
                         testing::Values(CasoCanales{1, false, false, false}, CasoCanales{2, true, false, false},
                                         CasoCanales{3, true, false, false}, CasoCanales{4, true, true, true}));

// --- LED states -----------------------------------------------------------------

class LedFueraDeRango : public testing::TestWithParam<unsigned> {};

// Every nibble 12..15 paints exactly as a word of 0.
TEST_P(LedFueraDeRango, PaintsAsStateZero)
{
    const unsigned estado = GetParam();
    unsigned long palabra = 0;
    for (int led = 0; led < 8; ++led)
        palabra |= static_cast<unsigned long>(estado) << (4 * led);
    Doc apagado = Demo("sondeo.010.000.000.022.xml");
    Doc fuera = Demo("sondeo.010.000.000.022.xml");
    Fija(apagado.get(), "/ENCODERSTATUS/COMUN/LEDS", "0");
    Fija(fuera.get(), "/ENCODERSTATUS/COMUN/LEDS", Leds(palabra));
    const std::string esperado = Rapido(apagado.get(), 4);
    EXPECT_EQ(Rapido(fuera.get(), 4), esperado);
    EXPECT_NE(esperado.find("ledoff.png\" alt=\"Temp\" align=\"middle\" border=\"0\" height=\"25\" width=\"25\"><br>N/A"),
              std::string::npos);
    EXPECT_NE(esperado.find("alt=\"ch1\" align=\"middle\" border=\"0\" height=\"25\" width=\"25\"><br>DISABLED"),
              std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Nibbles12a15, LedFueraDeRango, testing::Values(12u, 13u, 14u, 15u));

TEST(LedEstado, EachLedReadsItsOwnNibble)
{
    // Temp 1 NORMAL, EAS 2 UNLOCK, CH1 6 BOOT, CH2 3 UNLOCK, CH3 0, CH4 10 UPDATE, OUT 2 OVFLW, RF 1 ON.
    const unsigned long palabra = 0x12A03621UL;
    Doc status = Demo("sondeo.010.000.000.022.xml");
    Fija(status.get(), "/ENCODERSTATUS/COMUN/LEDS", Leds(palabra));
    const auto celdas = Celdas(Rapido(status.get(), 4));
    ASSERT_EQ(celdas.size(), static_cast<size_t>(C_TOTAL));
    const struct {
        int celda;
        const char *imagen;
        const char *rotulo;
    } casos[] = {
        {C_TEMP, "ledverde.png", "NORMAL"}, {C_EAS, "ledrojo.png", "UNLOCK"},  {C_CH1, "ledrojoPR.gif", "BOOT"},
        {C_CH2, "ledambar.png", "UNLOCK"},  {C_CH3, "ledoff.png", "DISABLED"}, {C_CH4, "ledrojoPL.gif", "UPDATE"},
        {C_OUT, "ledrojo.png", "OVFLW"},    {C_RFLOOP, "ledverde.png", "ON"},
    };
    for (const auto &caso : casos) {
        EXPECT_NE(celdas[caso.celda].find(std::string("/imagenes/") + caso.imagen), std::string::npos) << caso.celda;
        EXPECT_NE(celdas[caso.celda].find(std::string("<br>") + caso.rotulo), std::string::npos) << caso.celda;
    }
}

// --- The quick row's text cells ---------------------------------------------------

TEST(SondeoRapido, TextCellsComeFromTheStatusDocument)
{
    Doc status = Demo("sondeo.010.000.000.021.xml");
    const auto celdas = Celdas(Rapido(status.get(), 2));
    ASSERT_EQ(celdas.size(), static_cast<size_t>(C_TOTAL));
    EXPECT_EQ(celdas[C_ORDEN], "2");
    EXPECT_EQ(celdas[C_MODELO], kModelo);
    EXPECT_EQ(celdas[C_TABLA], "CATV");
    EXPECT_EQ(celdas[C_CANAL], "<strong>79</strong>");
    EXPECT_EQ(celdas[C_IP], "<strong>DISABLED</strong>");
    EXPECT_EQ(celdas[C_WM], "<strong>NONE</strong>");
    EXPECT_EQ(celdas[C_ESTADO], "<strong>TEMP WARNING</strong>");
}

TEST(SondeoRapido, UnreadableIPStateShowsNotApplicable)
{
    Doc status = Demo("sondeo.010.000.000.021.xml");
    Quita(status.get(), "/ENCODERSTATUS/SALIDAIP");
    EXPECT_EQ(Celdas(Rapido(status.get(), 2))[C_IP], "<strong>n/a</strong>");
}

TEST(SondeoRapido, ConnectedUnitIsBoldAndWebConnected)
{
    Doc status = Demo("sondeo.xml");
    const auto celdas = Celdas(Rapido(status.get(), 2, 1, "710109 - x"));
    EXPECT_EQ(celdas[C_ORDEN], "<b>1</b>");
    EXPECT_EQ(celdas[C_MODELO], "<b>710109 - x<br>web connected</b>");
}

// --- Detailed row -----------------------------------------------------------------

enum { D_ORDEN, D_MODELO, D_ID, D_SERIE, D_TEMP, D_RESOLUCION, D_VERSIONES, D_OPCIONES, D_TOTAL };

std::string Fuerte(const std::string &texto)
{
    return "<strong>" + texto + "</strong>";
}

TEST(SondeoDetallado, EightBoldCells)
{
    Doc status = Demo("sondeo.010.000.000.021.xml");
    const auto celdas = Celdas(Detallado(status.get(), 2));
    ASSERT_EQ(celdas.size(), static_cast<size_t>(D_TOTAL));
    EXPECT_EQ(celdas[D_ORDEN], Fuerte("2"));
    EXPECT_EQ(celdas[D_ID], Fuerte("ENC-HEAD-02"));
    EXPECT_EQ(celdas[D_SERIE], Fuerte("2210105-0112"));
    EXPECT_EQ(celdas[D_TEMP], Fuerte("52&ordm;C 126&ordm;F"));
    // Channel 2 is off (LED nibble 0): "--" instead of its stored values.
    EXPECT_EQ(celdas[D_RESOLUCION], Fuerte("C1 1920x1080p/59.94<br>C2 --/--"));
    EXPECT_EQ(celdas[D_VERSIONES],
              Fuerte("Hardware - 3.2<br>Software - 5.17<br>Boot - 2.04<br>O.S. - 2.6.37.4<br>User Interface - 7.3.2"));
    EXPECT_EQ(celdas[D_OPCIONES], Fuerte("H264 HIGH PROFILE<br>1080P<br>DOLBY AUDIO"));
}

struct CasoResolucion {
    uint8_t canales;
    const char *celda;
};

class ResolucionPorCanales : public testing::TestWithParam<CasoResolucion> {};

TEST_P(ResolucionPorCanales, ShowsTheUnitsChannels)
{
    Doc status = Demo("sondeo.010.000.000.022.xml");
    Fija(status.get(), "/ENCODERSTATUS/COMUN/LEDS", Leds(0x00111100UL));  // every channel locked
    Fija(status.get(), "/ENCODERSTATUS/CANAL4/RESOLUCION", "1280x720p");
    Fija(status.get(), "/ENCODERSTATUS/CANAL4/FRAMERATE", "50");
    const auto celdas = Celdas(Detallado(status.get(), GetParam().canales));
    ASSERT_EQ(celdas.size(), static_cast<size_t>(D_TOTAL));
    EXPECT_EQ(celdas[D_RESOLUCION], Fuerte(GetParam().celda));
}

INSTANTIATE_TEST_SUITE_P(
    Canales, ResolucionPorCanales,
    testing::Values(CasoResolucion{1, "C1 720x480i/29.97<br>"}, CasoResolucion{2, "C1 720x480i/29.97<br>C2 720x480i/29.97"},
                    CasoResolucion{3, "C1 720x480i/29.97<br>C2 720x480i/29.97"},
                    CasoResolucion{4, "C1 720x480i/29.97<br>C2 720x480i/29.97<br>C3 720x480i/29.97<br>C4 1280x720p/50"}));

class ResolucionPorEstado : public testing::TestWithParam<unsigned> {};

// A channel in state 0, 4, 6 or 12..15 shows "--"; any other state its stored values.
TEST_P(ResolucionPorEstado, DashesForChannelsNotEncoding)
{
    const unsigned estado = GetParam();
    const bool guiones = estado == 0 || estado == 4 || estado == 6 || estado >= 12;
    for (int canal = 1; canal <= 4; ++canal) {
        Doc status = Demo("sondeo.010.000.000.022.xml");
        Fija(status.get(), "/ENCODERSTATUS/CANAL4/RESOLUCION", "720x480i");
        Fija(status.get(), "/ENCODERSTATUS/CANAL4/FRAMERATE", "29.97");
        unsigned long palabra = 0x00111100UL;
        palabra &= ~(0xFUL << (4 * (canal + 1)));
        palabra |= static_cast<unsigned long>(estado) << (4 * (canal + 1));
        Fija(status.get(), "/ENCODERSTATUS/COMUN/LEDS", Leds(palabra));
        const std::string celda = Celdas(Detallado(status.get(), 4))[D_RESOLUCION];
        const std::string marca = "C" + std::to_string(canal) + (guiones ? " --/--" : " 720x480i/29.97");
        EXPECT_NE(celda.find(marca), std::string::npos) << "channel " << canal << " state " << estado << ": " << celda;
    }
}

INSTANTIATE_TEST_SUITE_P(Estados0a15, ResolucionPorEstado, testing::Range(0u, 16u));

TEST(SondeoDetallado, UpgradeOptionsStopAt296Characters)
{
    Doc status = Demo("sondeo.010.000.000.021.xml");
    Fija(status.get(), "/ENCODERSTATUS/UPGRADEOPTIONS", std::string(100, 'a') + "." + std::string(198, 'b'));
    const std::string celda = Celdas(Detallado(status.get(), 2))[D_OPCIONES];
    // 100 + "<br>" + the b's up to 296 characters written.
    EXPECT_EQ(celda, Fuerte(std::string(100, 'a') + "<br>" + std::string(192, 'b')));
}

TEST(SondeoDetallado, UpgradeOptionsStopBetweenCharacters)
{
    Doc status = Demo("sondeo.010.000.000.021.xml");
    Fija(status.get(), "/ENCODERSTATUS/UPGRADEOPTIONS", std::string(295, 'a') + "\xC3\xB1" + "zz");
    EXPECT_EQ(Celdas(Detallado(status.get(), 2))[D_OPCIONES], Fuerte(std::string(295, 'a') + "\xC3\xB1"));
}

// --- Advanced page and page frame ---------------------------------------------------

TEST(SondeoConfigTotal, StatusBlockWithLedsResolutionAndVersions)
{
    Doc status = Demo("sondeo.010.000.000.021.xml");
    for (auto entrada : {SALQAM_SondeoRapido, SALQAM_SondeoDetallado}) {
        const std::string html =
            Captura([&] { EXPECT_EQ(entrada(3, status.get(), 0, 2, 0, 0, 0, kModelo, 0, "_tot", 0, 0), 0); });
        EXPECT_NE(html.find("Unit Status:"), std::string::npos);
        EXPECT_TRUE(html.ends_with("</tbody></table><br><br>"));
        const auto celdas = Celdas(html);
        ASSERT_EQ(celdas.size(), 10u);
        EXPECT_NE(celdas[0].find("alt=\"Temp\""), std::string::npos);
        EXPECT_NE(celdas[7].find("alt=\"rfloop\""), std::string::npos);
        EXPECT_EQ(celdas[8], Fuerte("C1 1920x1080p/59.94<br>C2 --/--"));
        EXPECT_NE(celdas[9].find("Hardware - 3.2"), std::string::npos);
    }
}

TEST(SondeoPagina, HeaderAndEndOfTable)
{
    const std::string rapido = Captura([] { SALQAM_SondeoRapido(0, nullptr, 0, 0, 0, 0, 0, nullptr, 0, "", 0, 0); });
    EXPECT_TRUE(rapido.starts_with("<table id='tabadatos' border=\"1\">"));
    EXPECT_NE(rapido.find("Ordenatabla(0,1);'>#&nbsp;<img src='/imagenes/Flecha.png' border='0' style='vertical-align:-10%'>"),
              std::string::npos);
    EXPECT_NE(rapido.find("Ordenatabla(1,1);'>Model&nbsp;"), std::string::npos);
    for (const char *columna : {"Temp", "EAS", "CH4", "RF Loop", "Output Table", "Watermarking ID", "STATUS"})
        EXPECT_NE(rapido.find(std::string(">") + columna + "</th>"), std::string::npos) << columna;

    const std::string detallado = Captura([] { SALQAM_SondeoDetallado(0, nullptr, 0, 0, 0, 0, 0, nullptr, 0, "", 0, 0); });
    EXPECT_NE(detallado.find("Ordenatabla(2,1);'>ID&nbsp;"), std::string::npos);
    EXPECT_NE(detallado.find(">Upgrade Options</th>"), std::string::npos);

    for (auto entrada : {SALQAM_SondeoRapido, SALQAM_SondeoDetallado}) {
        EXPECT_EQ(Captura([&] { EXPECT_EQ(entrada(2, nullptr, 0, 2, 0, 0, 0, nullptr, 7, "", 0, 0), 0); }),
                  "</tbody></table>");
        Doc status = Demo("sondeo.010.000.000.021.xml");
        EXPECT_EQ(Captura([&] { EXPECT_EQ(entrada(1, status.get(), 0, 2, 0, 0, 0, nullptr, 1, kSufijo, 0, 0), 4); }), "");
        EXPECT_EQ(Captura([&] { EXPECT_EQ(entrada(9, status.get(), 0, 2, 0, 0, 0, kModelo, 1, kSufijo, 0, 0), 0); }), "");
    }
}

// --- Escaping -------------------------------------------------------------------------

TEST(SondeoEscapado, DocumentValuesNeverReachThePageRaw)
{
    Doc status = Demo("sondeo.010.000.000.022.xml");
    for (const char *campo : {"ORDEN", "IDUNIT", "UNITSTATUS", "WATERMARKINGSERIAL", "SALIDAIP", "UPGRADEOPTIONS",
                              "COMUN/TABLACANALES", "COMUN/CANAL", "COMUN/TEMP/CENT", "COMUN/VERSIONSW/BOOT",
                              "COMUN/VERSIONSW/SERIAL", "CANAL1/RESOLUCION", "CANAL3/FRAMERATE"})
        Fija(status.get(), std::string("/ENCODERSTATUS/") + campo, kAtaque);
    const std::string modelo = "710103 " + kAtaque;
    for (int esMaster : {0, 1}) {
        std::string html = Rapido(status.get(), 4, esMaster, modelo.c_str()) +
                           Detallado(status.get(), 4, esMaster, modelo.c_str()) +
                           Captura([&] { SALQAM_SondeoRapido(3, status.get(), esMaster, 4, 0, 0, 0, modelo.c_str(), 0, "_tot", 0, 0); });
        EXPECT_EQ(html.find("<script>"), std::string::npos) << html;
        EXPECT_NE(html.find("&quot;&gt;&lt;script&gt;x&lt;/script&gt;"), std::string::npos);
    }
}

}  // namespace
