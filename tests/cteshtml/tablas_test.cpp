// LED tables and cells, the unit-model table and the three text functions of the page engine.
#include "cteshtml/cteshtml.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {

// ---------------------------------------------------------------------------
// LED tables
// ---------------------------------------------------------------------------

static_assert(sizeof ImagenesLed == 12 * 20, "12 slots of 20 bytes");
static_assert(sizeof TextosAltLeds == 8 * 10, "8 slots of 10 bytes");
static_assert(sizeof TextosLED1 == 12 * 10 && sizeof TextosLED8 == 12 * 10, "12 slots of 10 bytes");

using Doce = std::array<const char *, 12>;

TEST(TablasLed, ImagesByColourAndMode)
{
    const Doce esperadas = {"ledoff.png", "ledverde.png",   "ledrojo.png",   "ledambar.png",
                            "ledoff.png", "ledverdePR.gif", "ledrojoPR.gif", "ledambarPR.gif",
                            "ledoff.png", "ledverdePL.gif", "ledrojoPL.gif", "ledambarPL.gif"};
    for (int i = 0; i < 12; ++i)
        EXPECT_STREQ(ImagenesLed[i], esperadas[i]) << i;
}

TEST(TablasLed, AlternativeTextsInLedOrder)
{
    const std::array<const char *, 8> esperados = {"Temp", "EAS", "ch1", "ch2", "ch3", "ch4", "out", "rfloop"};
    for (int i = 0; i < 8; ++i)
        EXPECT_STREQ(TextosAltLeds[i], esperados[i]) << i;
}

TEST(TablasLed, CaptionsOfEveryLed)
{
    const Doce temp = {"N/A", "NORMAL", "OVER TEMP", "WARNING", "N/A", "N/A",
                       "OVER TEMP", "WARNING", "N/A", "N/A", "OVER TEMP", "WARNING"};
    const Doce eas = {"OFF", "LOCK", "UNLOCK", "N/A", "OFF", "N/A", "N/A", "N/A", "OFF", "N/A", "UPDATE", "UPDATE"};
    const Doce canal = {"DISABLED", "LOCK", "UNLOCK", "UNLOCK", "DISABLED", "N/A",
                        "BOOT",     "N/A",  "N/A",    "N/A",    "UPDATE",   "UPDATE"};
    const Doce salida = {"N/A", "LOCK", "OVFLW", "UNLOCK", "N/A", "OFF", "N/A", "N/A", "N/A", "OFF", "UPDATE", "UPDATE"};
    const Doce lazo = {"OFF", "ON", "N/A", "N/A", "OFF", "N/A", "N/A", "N/A", "OFF", "N/A", "UPDATE", "UPDATE"};
    const char(*const tablas[8])[10] = {TextosLED1, TextosLED2, TextosLED3, TextosLED4,
                                         TextosLED5, TextosLED6, TextosLED7, TextosLED8};
    const Doce *esperadas[8] = {&temp, &eas, &canal, &canal, &canal, &canal, &salida, &lazo};
    for (int led = 0; led < 8; ++led)
        for (int estado = 0; estado < 12; ++estado)
            EXPECT_STREQ(tablas[led][estado], (*esperadas[led])[estado]) << "LED " << led + 1 << " state " << estado;
}

std::string Celda(const char *imagen, const char *alt, const char *leyenda)
{
    return std::string("<img src=\"/imagenes/") + imagen + "\" alt=\"" + alt +
           "\" align=\"middle\" border=\"0\" height=\"25\" width=\"25\"><br>" + leyenda;
}

TEST(CeldaLed, WordZeroShowsEveryLedOffWithTheFirstCaption)
{
    const std::array<const char *, 8> leyendas = {"N/A", "OFF", "DISABLED", "DISABLED",
                                                  "DISABLED", "DISABLED", "N/A", "OFF"};
    for (int led = 1; led <= 8; ++led)
        EXPECT_EQ(CTESHTML_CeldaLed(0, led), Celda("ledoff.png", TextosAltLeds[led - 1], leyendas[led - 1])) << led;
}

TEST(CeldaLed, StatesTwelveAndAboveShowAsZero)
{
    for (unsigned long estado = 12; estado <= 15; ++estado) {
        unsigned long palabra = 0;
        for (int led = 0; led < 8; ++led)
            palabra |= estado << (4 * led);
        for (int led = 1; led <= 8; ++led)
            EXPECT_EQ(CTESHTML_CeldaLed(palabra, led), CTESHTML_CeldaLed(0, led)) << estado << " LED " << led;
    }
}

struct CasoLed {
    unsigned long palabra;
    int led;
    std::string esperada;
};

void PrintTo(const CasoLed &c, std::ostream *os) { *os << "word 0x" << std::hex << c.palabra << std::dec << " LED " << c.led; }

class CeldaLedEstado : public ::testing::TestWithParam<CasoLed> {};

TEST_P(CeldaLedEstado, PaintsTheLedsOwnNibble)
{
    EXPECT_EQ(CTESHTML_CeldaLed(GetParam().palabra, GetParam().led), GetParam().esperada);
}

INSTANTIATE_TEST_SUITE_P(
    Casos, CeldaLedEstado,
    ::testing::Values(
        // Green EAS: bits 4-7 hold 1, the other LEDs of the same word stay off.
        CasoLed{0x10, 2, R"(<img src="/imagenes/ledverde.png" alt="EAS" align="middle" border="0" height="25" width="25"><br>LOCK)"},
        CasoLed{0x10, 1, Celda("ledoff.png", "Temp", "N/A")},
        CasoLed{0x10, 3, Celda("ledoff.png", "ch1", "DISABLED")},
        CasoLed{0x2, 1, Celda("ledrojo.png", "Temp", "OVER TEMP")},
        CasoLed{0x600, 3, Celda("ledrojoPR.gif", "ch1", "BOOT")},
        CasoLed{0x3000, 4, Celda("ledambar.png", "ch2", "UNLOCK")},
        CasoLed{0xA000000, 7, Celda("ledrojoPL.gif", "out", "UPDATE")},
        CasoLed{0x90000000, 8, Celda("ledverdePL.gif", "rfloop", "N/A")},
        CasoLed{0x10000000, 8, Celda("ledverde.png", "rfloop", "ON")},
        CasoLed{0xFFFFFFFF, 0, ""}, CasoLed{0xFFFFFFFF, 9, ""}, CasoLed{0x1, -1, ""}));

// ---------------------------------------------------------------------------
// Unit-model table
// ---------------------------------------------------------------------------

struct Fila {
    uint32_t codigo;
    const char *descripcion;
    int canales, entradasVideo, capacidades, parametro, opciones, familia;
};

const Fila Filas[CTESHTML_NUMTIPOSENCODER] = {
    {710101, " - Enc 2 CMP", 2, 7, 1, 382, 0, 0},
    {710102, " - Enc 2 CMP EAS", 2, 7, 1, 382, 2, 0},
    {710103, " - Enc 4 CVBS", 4, 1, 4, 0, 0, 0},
    {710104, " - Enc 4 CVBS EAS", 4, 1, 4, 0, 2, 0},
    {710105, " - Enc 2 CMP+HDMI", 2, 15, 3, 382, 0, 0},
    {710106, " - Enc 2 CMP+HDMI EAS", 2, 15, 3, 382, 2, 0},
    {710107, "IP TEST UNIT A", 2, 15, 3, 382, 1, 0},
    {710201, " - Enc 4 CVBS", 4, 1, 4, 0, 0, 1},
    {710202, " - Enc 2 CVBS", 2, 1, 4, 0, 0, 1},
    {710203, " - Enc 2 CMP+HDMI", 2, 15, 7, 382, 0, 1},
    {710204, " - Enc 4 CVBS", 4, 1, 4, 0, 1, 1},
    {710205, " - Enc 2 CMP+HDMI+IP", 2, 15, 7, 382, 1, 1},
    {710301, " - Enc 2 CMP+HDMI", 2, 15, 7, 382, 0, 2},
    {710302, " - Enc 4 CVBS", 4, 1, 4, 0, 0, 2},
    {710303, "IP TEST UNIT B", 2, 15, 7, 382, 1, 2},
    {710401, "ENC 2 HDMI DUAL", 2, 15, 7, 382, 0, 3},
    {710402, "ENC 4 SD DUAL", 4, 1, 4, 0, 0, 3},
    {710206, " - Enc 1 HDMI", 1, 9, 7, 382, 0, 1},
    {710108, " - Enc 2 CMP+HDMI+IP", 2, 15, 3, 382, 1, 0},
    {710109, " - Enc 2 CMP+HDMI+IP EAS", 2, 15, 3, 382, 3, 0},
    {65535, "DUMMY", 2, 1, 4, 0, 0, 4},
    {0, "UNKNOWN", 2, 1, 4, 0, 0, 5},
};

TEST(TiposEncoder, EveryRowHoldsItsModel)
{
    for (std::size_t i = 0; i < CTESHTML_NUMTIPOSENCODER; ++i) {
        const CTESHTML_TipoEncoder &t = TiposEncoder[i];
        const Fila &f = Filas[i];
        SCOPED_TRACE(i);
        EXPECT_EQ(t.codigo, f.codigo);
        EXPECT_STREQ(t.descripcion, f.descripcion);
        EXPECT_EQ(t.canales, f.canales);
        EXPECT_EQ(t.entradasVideo, f.entradasVideo);
        EXPECT_EQ(t.capacidades, f.capacidades);
        EXPECT_EQ(t.parametro, f.parametro);
        EXPECT_EQ(t.opciones, f.opciones);
        EXPECT_EQ(t.familia, f.familia);
    }
}

TEST(Obtienetipounidad, EveryRowResolvesFromItsOwnCode)
{
    for (std::size_t i = 0; i + 1 < CTESHTML_NUMTIPOSENCODER; ++i) {
        const Fila &f = Filas[i];
        std::vector<char> modelo(CTESHTML_TAMMODELO, '\0');
        std::snprintf(modelo.data(), modelo.size(), "%u", f.codigo);
        uint8_t canales = 0;
        int opciones = -1, video = -1, capacidades = -1, familia = -1, parametro = -1;
        SCOPED_TRACE(i);
        EXPECT_EQ(CTESHTML_Obtienetipounidad(modelo.data(), &canales, &opciones, &video, &capacidades, &familia,
                                             &parametro),
                  f.codigo);
        EXPECT_EQ(std::string(modelo.data()), std::to_string(f.codigo) + " " + f.descripcion);
        EXPECT_EQ(canales, f.canales);
        EXPECT_EQ(opciones, f.opciones);
        EXPECT_EQ(video, f.entradasVideo);
        EXPECT_EQ(capacidades, f.capacidades);
        EXPECT_EQ(familia, f.familia);
        EXPECT_EQ(parametro, f.parametro);
    }
}

struct CasoTipo {
    const char *tipo;
    uint32_t codigo;
    const char *texto;
    int familia;
    int canales;
};

void PrintTo(const CasoTipo &c, std::ostream *os) { *os << '"' << c.tipo << '"'; }

class ObtienetipounidadTexto : public ::testing::TestWithParam<CasoTipo> {};

TEST_P(ObtienetipounidadTexto, RewritesTheModelTextAndReturnsTheUnitsCode)
{
    // Exactly the 50 bytes the pages pass, on the heap so that a write past them is caught.
    std::vector<char> modelo(CTESHTML_TAMMODELO, '\0');
    std::strncpy(modelo.data(), GetParam().tipo, modelo.size() - 1);
    uint8_t canales = 0;
    int familia = -1;
    EXPECT_EQ(CTESHTML_Obtienetipounidad(modelo.data(), &canales, nullptr, nullptr, nullptr, &familia, nullptr),
              GetParam().codigo);
    EXPECT_STREQ(modelo.data(), GetParam().texto);
    EXPECT_EQ(familia, GetParam().familia);
    EXPECT_EQ(canales, GetParam().canales);
}

INSTANTIATE_TEST_SUITE_P(
    Casos, ObtienetipounidadTexto,
    ::testing::Values(
        // " - " descriptions read as the code, two spaces and a dash.
        CasoTipo{"710101", 710101u, "710101  - Enc 2 CMP", 0, 2}, CasoTipo{"710206", 710206u, "710206  - Enc 1 HDMI", 1, 1},
        CasoTipo{"710402", 710402u, "710402 ENC 4 SD DUAL", 3, 4},
        // The same description under three codes belongs to three families.
        CasoTipo{"710103", 710103u, "710103  - Enc 4 CVBS", 0, 4}, CasoTipo{"710201", 710201u, "710201  - Enc 4 CVBS", 1, 4},
        CasoTipo{"710302", 710302u, "710302  - Enc 4 CVBS", 2, 4},
        CasoTipo{"65535", 65535u, "65535 DUMMY", 4, 2},
        // Unknown models keep their own number.
        CasoTipo{"563", 563u, "563 UNKNOWN", 5, 2}, CasoTipo{"", 0u, "0 UNKNOWN", 5, 2}, CasoTipo{"0", 0u, "0 UNKNOWN", 5, 2},
        CasoTipo{"abc", 0u, "0 UNKNOWN", 5, 2},
        // strtoul: leading blanks skipped, trailing text ignored, the code taken in 32 bits.
        CasoTipo{"  710303", 710303u, "710303 IP TEST UNIT B", 2, 2}, CasoTipo{"710107 - old text", 710107u, "710107 IP TEST UNIT A", 0, 2},
        CasoTipo{"4294967295", 4294967295u, "4294967295 UNKNOWN", 5, 2}));

TEST(Obtienetipounidad, EveryOutArgumentMayBeAbsent)
{
    char modelo[CTESHTML_TAMMODELO] = "710109";
    EXPECT_EQ(CTESHTML_Obtienetipounidad(modelo, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr), 710109u);
    EXPECT_STREQ(modelo, "710109  - Enc 2 CMP+HDMI+IP EAS");

    int opciones = -1, parametro = -1;
    EXPECT_EQ(CTESHTML_Obtienetipounidad(nullptr, nullptr, &opciones, nullptr, nullptr, nullptr, &parametro), 0u);
    EXPECT_EQ(opciones, 0);
    EXPECT_EQ(parametro, 0);
}

// ---------------------------------------------------------------------------
// Address out of a file name
// ---------------------------------------------------------------------------

struct CasoIP {
    const char *texto;
    int resultado;
    std::array<int, 4> octetos;
};

void PrintTo(const CasoIP &c, std::ostream *os) { *os << '"' << (c.texto ? c.texto : "(null)") << '"'; }

class MiraIP : public ::testing::TestWithParam<CasoIP> {};

TEST_P(MiraIP, ReadsTheDottedAddress)
{
    uint8_t a = 7, b = 7, c = 7, d = 7;
    EXPECT_EQ(CTESHTML_MiraIP(GetParam().texto, &a, &b, &c, &d), GetParam().resultado);
    EXPECT_EQ((std::array<int, 4>{a, b, c, d}), GetParam().octetos);
}

INSTANTIATE_TEST_SUITE_P(
    Casos, MiraIP,
    ::testing::Values(CasoIP{"010.000.000.021.xml", 0, {10, 0, 0, 21}},
                      CasoIP{"192.168.001.010.xml", 0, {192, 168, 1, 10}},
                      CasoIP{"192.168.1.10", 0, {192, 168, 1, 10}},
                      // An octet of four digits is wrong; its value wraps in 8 bits.
                      CasoIP{"10.0.0.1234", 255, {10, 0, 0, 210}},
                      CasoIP{"1000.0.0.1", 255, {232, 0, 0, 1}},
                      // Three digits above 255 wrap without being wrong.
                      CasoIP{"300.0.0.1", 0, {44, 0, 0, 1}},
                      // The scan ends with the fourth octet's third digit or the fourth '.'.
                      CasoIP{"010.000.000.021_2.xml", 0, {10, 0, 0, 21}},
                      CasoIP{"1.2.3.4.5", 0, {1, 2, 3, 4}},
                      // Other characters are skipped.
                      CasoIP{"a1b.2.3.4", 0, {1, 2, 3, 4}},
                      CasoIP{"", 0, {0, 0, 0, 0}}, CasoIP{"xml", 0, {0, 0, 0, 0}},
                      CasoIP{nullptr, 0, {0, 0, 0, 0}}));

TEST(MiraIP, AnAbsentOutputLeavesEverythingUntouched)
{
    uint8_t a = 7, b = 7, c = 7, d = 7;
    EXPECT_EQ(CTESHTML_MiraIP("10.0.0.1234", &a, &b, &c, nullptr), 0);
    EXPECT_EQ(CTESHTML_MiraIP("10.0.0.1234", nullptr, &b, &c, &d), 0);
    EXPECT_EQ((std::array<int, 4>{a, b, c, d}), (std::array<int, 4>{7, 7, 7, 7}));
}

// ---------------------------------------------------------------------------
// Blank texts
// ---------------------------------------------------------------------------

TEST(CompruebaEspacios, TellsAbsentBlankAndFilledTexts)
{
    struct {
        const char *texto;
        int resultado;
    } const casos[] = {{nullptr, 2}, {"", 1}, {"   ", 1}, {"a", 0}, {"  a ", 0}, {"\t", 0}};
    for (const auto &caso : casos)
        EXPECT_EQ(CTESHTML_CompruebaEspacios(caso.texto), caso.resultado) << (caso.texto ? caso.texto : "(null)");
}

}  // namespace
