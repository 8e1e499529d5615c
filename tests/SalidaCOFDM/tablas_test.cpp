// Channel plans and option tables: every plan's shape and the labels at the boundaries of its
// runs, the deliberate orders, the option tables' texts, and the selects built from them.
#include "SalidaCOFDM/TablasCanales.h"

#include <gtest/gtest.h>

#include <cstring>
#include <iterator>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

std::string Etiqueta(int plan, int posicion)
{
    return CTESHTMLINT_TextoRanura(COFDM_TablasdeCanales[plan].etiquetas[posicion], COFDM_TAMETIQUETACANAL);
}

bool RanuraACeros(const char *ranura, std::size_t ancho)
{
    for (std::size_t i = 0; i < ancho; ++i)
        if (ranura[i] != '\0')
            return false;
    return true;
}

int CuentaOpciones(const std::string &html)
{
    int cuantas = 0;
    for (std::size_t pos = html.find("<option"); pos != std::string::npos; pos = html.find("<option", pos + 1))
        ++cuantas;
    return cuantas;
}

// ---------------------------------------------------------------------------
// Channel plans
// ---------------------------------------------------------------------------

struct CasoPlan {
    int plan;
    const char *nombre;
    int numCanales;
    // Labels at the boundaries of the plan's runs: first and last of every run.
    std::vector<std::pair<int, const char *>> puntos;
};

void PrintTo(const CasoPlan &caso, std::ostream *os)
{
    *os << "plan " << caso.plan << " " << caso.nombre;
}

const CasoPlan kPlanes[] = {
    {0, "FREQUENCY", 0, {}},
    {1, "CCIR N.Z.Ind", 104,
     {{0, "C02 "}, {2, "C04 "}, {3, "L01 "}, {5, "L03 "}, {6, "S01 "}, {15, "S10 "}, {16, "C05 "}, {23, "C12 "},
      {24, "S11 "}, {54, "S41 "}, {55, "C21 "}, {103, "C69 "}}},
    {2, "China Taiwan", 61, {{0, " 01 "}, {11, " 12 "}, {12, "C21 "}, {60, "C69 "}}},
    {3, "Chile M/N", 61, {{0, " 02 "}, {11, " 13 "}, {12, " 21 "}, {60, " 69 "}}},
    {4, "Italy", 100,
     {{0, " A  "}, {1, " B  "}, {2, " C  "}, {3, "S01 "}, {12, "S10 "}, {13, " D  "}, {14, " E  "}, {15, " F  "},
      {16, " G  "}, {17, " H  "}, {18, " H1 "}, {19, " H2 "}, {20, "S11 "}, {50, "S41 "}, {51, "C21 "}, {99, "C69 "}}},
    {5, "France", 96,
     {{0, "S01 "}, {9, "S10 "}, {10, "L05 "}, {15, "L10 "}, {16, "S11 "}, {46, "S41 "}, {47, "C21 "}, {95, "C69 "}}},
    {6, "Russia(OIR)", 99,
     {{0, "R01 "}, {4, "R05 "}, {5, "S01 "}, {12, "S08 "}, {13, "R06 "}, {19, "R12 "}, {20, "S11 "}, {49, "S40 "},
      {50, "C21 "}, {98, "C69 "}}},
    {7, "Ireland", 59, {{0, " 01 "}, {2, " 03 "}, {3, " 05 "}, {9, " 11 "}, {10, "C21 "}, {58, "C69 "}}},
    {8, "South Africa", 59, {{0, " 04 "}, {9, " 13 "}, {10, "C21 "}, {58, "C69 "}}},
    {9, "Poland", 102,
     {{0, "S01 "}, {7, "S08 "}, {8, "E05 "}, {22, "E12 "}, {23, "S09 "}, {52, "S38 "}, {53, "C21 "}, {101, "C69 "}}},
    {10, "Australia", 116,
     {{0, " 0  "}, {5, " 5  "}, {6, "S02 "}, {9, "S05 "}, {10, " 5A "}, {11, "S06 "}, {15, "S10 "}, {16, " 6  "},
      {19, " 9  "}, {20, " 9A "}, {21, "10 o"}, {22, " 10 "}, {23, "11 o"}, {24, " 11 "}, {25, " 12 "}, {26, "S11 "},
      {60, "S45 "}, {61, "H21 "}, {115, "H75 "}}},
    {11, "CATV", 157,
     {{0, " 02 "}, {4, " 06 "}, {5, " 95 "}, {9, " 99 "}, {10, " 14 "}, {18, " 22 "}, {19, " 07 "}, {25, " 13 "},
      {26, " 23 "}, {97, " 94 "}, {98, "100 "}, {156, "158 "}}},
    {12, "Broadcast", 68, {{0, " 02 "}, {67, " 69 "}}},
    {13, "T-Channels", 8, {{0, "T07 "}, {7, "T14 "}}},
    {14, "Terrestrial", 68, {{0, " 02 "}, {67, " 69 "}}},
};

class PlanCanales : public ::testing::TestWithParam<CasoPlan> {};

TEST_P(PlanCanales, NameCountAndRunBoundaries)
{
    const CasoPlan &caso = GetParam();
    const COFDM_TablaCanales &tabla = COFDM_TablasdeCanales[caso.plan];
    EXPECT_EQ(CTESHTMLINT_TextoRanura(tabla.nombre, COFDM_TAMNOMBRETABLA), caso.nombre);
    EXPECT_EQ(tabla.numCanales, caso.numCanales);
    for (const auto &[posicion, etiqueta] : caso.puntos)
        EXPECT_EQ(Etiqueta(caso.plan, posicion), etiqueta) << "position " << posicion;
}

TEST_P(PlanCanales, SlotsAreNulPaddedAndLabelsAreFourCharactersAndDistinct)
{
    const CasoPlan &caso = GetParam();
    const COFDM_TablaCanales &tabla = COFDM_TablasdeCanales[caso.plan];
    const std::size_t largoNombre = std::strlen(caso.nombre);
    EXPECT_TRUE(RanuraACeros(tabla.nombre + largoNombre, COFDM_TAMNOMBRETABLA - largoNombre));

    std::set<std::string> vistas;
    for (int k = 0; k < COFDM_MAXCANALESTABLA; ++k) {
        const char *ranura = tabla.etiquetas[k];
        if (k < tabla.numCanales) {
            EXPECT_EQ(ranura[4], '\0') << "position " << k;
            EXPECT_EQ(Etiqueta(caso.plan, k).size(), 4u) << "position " << k;
            EXPECT_TRUE(vistas.insert(Etiqueta(caso.plan, k)).second) << "repeated label at position " << k;
        } else {
            EXPECT_TRUE(RanuraACeros(ranura, COFDM_TAMETIQUETACANAL)) << "position " << k;
        }
    }
}

TEST_P(PlanCanales, ChannelSelectOffersEveryPositionInOrder)
{
    const CasoPlan &caso = GetParam();
    const std::vector<CTESHTML_Opcion> opciones = COFDM_OpcionesCanales(caso.plan);
    ASSERT_EQ(opciones.size(), static_cast<std::size_t>(caso.numCanales));
    for (int k = 0; k < caso.numCanales; ++k) {
        EXPECT_EQ(opciones[k].valor, std::to_string(k));
        EXPECT_EQ(opciones[k].texto, Etiqueta(caso.plan, k));
    }
    const std::string html = COFDM_SelectCanales("outchn_x", "outchn_x", "", caso.plan, "0");
    EXPECT_EQ(CuentaOpciones(html), caso.numCanales);
}

INSTANTIATE_TEST_SUITE_P(TodosLosPlanes, PlanCanales, ::testing::ValuesIn(kPlanes),
                         [](const ::testing::TestParamInfo<CasoPlan> &info) {
                             return "plan" + std::to_string(info.param.plan);
                         });

TEST(TablasdeCanales, FifteenRecordsOf821Bytes)
{
    EXPECT_EQ(sizeof(COFDM_TablaCanales), 821u);
    EXPECT_EQ(sizeof(COFDM_TablasdeCanales), 15u * 821u);
    EXPECT_EQ(std::size(kPlanes), 15u);
}

TEST(TablasdeCanales, PolandAlternatesEAndKChannels)
{
    const std::vector<std::string> esperadas = {"E05 ", "K06 ", "E06 ", "K07 ", "E07 ", "K08 ", "E08 ", "K09 ",
                                                "E09 ", "K10 ", "E10 ", "K11 ", "E11 ", "K12 ", "E12 "};
    for (std::size_t i = 0; i < esperadas.size(); ++i)
        EXPECT_EQ(Etiqueta(9, 8 + static_cast<int>(i)), esperadas[i]) << "position " << 8 + i;
}

TEST(TablasdeCanales, CatvKeepsItsCableBandOrder)
{
    EXPECT_EQ(Etiqueta(11, 5), " 95 ");
    const std::vector<std::string> inicio = {" 02 ", " 03 ", " 04 ", " 05 ", " 06 ", " 95 ", " 96 ", " 97 ",
                                             " 98 ", " 99 ", " 14 ", " 15 ", " 16 ", " 17 ", " 18 ", " 19 ",
                                             " 20 ", " 21 ", " 22 ", " 07 ", " 08 ", " 09 ", " 10 ", " 11 ",
                                             " 12 ", " 13 ", " 23 ", " 24 "};
    for (std::size_t i = 0; i < inicio.size(); ++i)
        EXPECT_EQ(Etiqueta(11, static_cast<int>(i)), inicio[i]) << "position " << i;
}

TEST(TablasdeCanales, AustraliaKeepsTheOffsetChannelsBesideTheirNeighbours)
{
    const std::vector<std::string> esperadas = {" 0  ", " 1  ", " 2  ", " 3  ", " 4  ", " 5  ", "S02 ",
                                                "S03 ", "S04 ", "S05 ", " 5A ", "S06 ", "S07 ", "S08 ",
                                                "S09 ", "S10 ", " 6  ", " 7  ", " 8  ", " 9  ", " 9A ",
                                                "10 o", " 10 ", "11 o", " 11 ", " 12 ", "S11 "};
    for (std::size_t i = 0; i < esperadas.size(); ++i)
        EXPECT_EQ(Etiqueta(10, static_cast<int>(i)), esperadas[i]) << "position " << i;
}

// ---------------------------------------------------------------------------
// Channel select
// ---------------------------------------------------------------------------

TEST(SelectCanales, ItalyStoredPositionAndOutOfRangeFallBackToTheFirstLabel)
{
    const std::string tres = COFDM_SelectCanales("outchn_1", "outchn_1", "", 4, "3");
    EXPECT_NE(tres.find(R"(<option value="3" selected="selected" >S01 </option>)"), std::string::npos);
    EXPECT_NE(tres.find(R"(<option value="0"  > A  </option>)"), std::string::npos);

    const std::string cien = COFDM_SelectCanales("outchn_1", "outchn_1", "", 4, "100");
    EXPECT_NE(cien.find(R"(<option value="0" selected="selected" > A  </option>)"), std::string::npos);
    EXPECT_EQ(cien.find(R"(value="3" selected)"), std::string::npos);
}

TEST(SelectCanales, ExactMarkupOfASmallPlan)
{
    EXPECT_EQ(COFDM_SelectCanales("outchn_a", "outchn_b", "disabled", 13, "7"),
              R"(<select name="outchn_a" id="outchn_b" size="1" disabled>)"
              R"(<option value="0"  >T07 </option>)"
              R"(<option value="1"  >T08 </option>)"
              R"(<option value="2"  >T09 </option>)"
              R"(<option value="3"  >T10 </option>)"
              R"(<option value="4"  >T11 </option>)"
              R"(<option value="5"  >T12 </option>)"
              R"(<option value="6"  >T13 </option>)"
              R"(<option value="7" selected="selected" >T14 </option>)"
              R"(</select>)");
}

TEST(SelectCanales, FrequencyPlanAndUnknownPlansYieldNoOptions)
{
    EXPECT_TRUE(COFDM_OpcionesCanales(0).empty());
    EXPECT_EQ(COFDM_SelectCanales("c", "c", "", 0, "0"), R"(<select name="c" id="c" size="1" ></select>)");
    for (int plan : {-1, 15, 99}) {
        EXPECT_TRUE(COFDM_OpcionesCanales(plan).empty()) << plan;
        EXPECT_EQ(CuentaOpciones(COFDM_SelectCanales("c", "c", "", plan, "1")), 0) << plan;
        EXPECT_EQ(COFDM_CanalSeleccionado(plan, "1"), 0) << plan;
    }
}

TEST(SelectCanales, StoredChannelText)
{
    struct Caso {
        int plan;
        const char *guardado;
        int posicion;
    };
    const Caso casos[] = {
        {13, "7", 7},       // last position of the plan
        {13, "8", 0},       // equal to the count
        {11, "156", 156},   // CATV's last position
        {11, "157", 0},
        {4, "99999999999999999999", 0},  // beyond any number
        {4, "-3", 0},
        {4, "", 0},
        {4, "abc", 0},
        {4, " 12", 12},     // leading blanks, as a decimal read skips them
        {4, "12abc", 12},   // reading stops at the first non-digit
        {4, "012", 12},     // decimal, not octal
    };
    for (const Caso &caso : casos) {
        EXPECT_EQ(COFDM_CanalSeleccionado(caso.plan, caso.guardado), caso.posicion)
            << "plan " << caso.plan << " stored \"" << caso.guardado << "\"";
        const std::string html = COFDM_SelectCanales("c", "c", "", caso.plan, caso.guardado);
        const std::string marcada = "<option value=\"" + std::to_string(caso.posicion) + "\" selected=\"selected\" >";
        EXPECT_NE(html.find(marcada), std::string::npos) << caso.guardado;
        EXPECT_EQ(html.find("selected"), html.rfind("selected=")) << "one option selected: " << caso.guardado;
    }
}

TEST(OpcionTabla, PlanNumberAndName)
{
    const CTESHTML_Opcion italia = COFDM_OpcionTabla(4);
    EXPECT_EQ(italia.valor, "4");
    EXPECT_EQ(italia.texto, "Italy");
    EXPECT_EQ(COFDM_OpcionTabla(0).texto, "FREQUENCY");
    EXPECT_EQ(COFDM_OpcionTabla(14).valor, "14");
    const CTESHTML_Opcion fuera = COFDM_OpcionTabla(15);
    EXPECT_TRUE(fuera.valor.empty() && fuera.texto.empty());
}

// ---------------------------------------------------------------------------
// Option tables
// ---------------------------------------------------------------------------

template <std::size_t N, std::size_t Ancho>
std::vector<std::string> Textos(const char (&tabla)[N][Ancho])
{
    std::vector<std::string> textos;
    for (std::size_t i = 0; i < N; ++i)
        textos.push_back(CTESHTMLINT_TextoRanura(tabla[i], Ancho));
    return textos;
}

TEST(TablasOpciones, TextsSlotWidthsAndValues)
{
    EXPECT_EQ(Textos(ModosSalidaCOFDM),
              (std::vector<std::string>{"COFDM(QPSK)", "COFDM(16QAM)", "COFDM(64QAM)", "16QAM", "32QAM", "64QAM",
                                        "128QAM", "256QAM"}));
    EXPECT_EQ(std::vector<int>(std::begin(ValoresModosSalidaCOFDM), std::end(ValoresModosSalidaCOFDM)),
              (std::vector<int>{0, 1, 2, 12, 13, 14, 15, 16}));
    EXPECT_EQ(Textos(ModosSalidaCOFDMQAMB),
              (std::vector<std::string>{"COFDM(QPSK)", "COFDM(16QAM)", "COFDM(64QAM)", "64QAM B", "256QAM B"}));
    EXPECT_EQ(Textos(ModosSalidaISDBT),
              (std::vector<std::string>{"ISDBT(DQPSK)", "ISDBT(QPSK)", "ISDBT(16QAM)", "ISDBT(64QAM)", "COFDM (QPSK)",
                                        "COFDM (16 QAM)", "COFDM (64 QAM)"}));
    EXPECT_EQ(Textos(OFDMSalidaISDBT), (std::vector<std::string>{"Mode 1(2K)", "Mode 2(4K)", "Mode 3(8K)"}));
    EXPECT_EQ(Textos(InterleavingSalidaISDBT),
              (std::vector<std::string>{"None", "Mode1", "Mode2", "Mode3", "I128_J1", "I128_J2", "I64_J2", "I128_J3",
                                        "I32_J4", "I128_J4", "I16_J8", "I128_J5", "I8_J16", "I128_J6", "I128_J7",
                                        "I128_J8"}));
    EXPECT_EQ(Textos(FrecuencyStepCOFDM),
              (std::vector<std::string>{"000 kHz", "125 kHz", "166 kHz", "250 kHz", "333 kHz", "375 kHz", "500 kHz",
                                        "625 kHz", "666 kHz", "750 kHz", "833 kHz", "875 kHz", "143 kHz"}));
    EXPECT_EQ(Textos(VideoCodecTextos), (std::vector<std::string>{"MPEG2", "H264 AUTO(4.0)", "H264-HIGH(4.1)",
                                                                  "H264(4.2)", "H264(5.0)", "H264(5.1)"}));
    EXPECT_EQ(std::vector<int>(std::begin(VideoCodecValores), std::end(VideoCodecValores)),
              (std::vector<int>{0, 1, 5, 6, 7, 8}));

    // Slot widths: 15 bytes for mode, codec and interleaving texts, 10 for frequency steps.
    EXPECT_EQ(sizeof(ModosSalidaCOFDM[0]), 15u);
    EXPECT_EQ(sizeof(ModosSalidaCOFDMQAMB[0]), 15u);
    EXPECT_EQ(sizeof(ModosSalidaISDBT[0]), 15u);
    EXPECT_EQ(sizeof(OFDMSalidaISDBT[0]), 15u);
    EXPECT_EQ(sizeof(InterleavingSalidaISDBT[0]), 15u);
    EXPECT_EQ(sizeof(VideoCodecTextos[0]), 15u);
    EXPECT_EQ(sizeof(FrecuencyStepCOFDM[0]), 10u);
}

// ---------------------------------------------------------------------------
// Mode select
// ---------------------------------------------------------------------------

TEST(SelectModos, CofdmModesCarryTheirValuesAndMarkTheStoredOne)
{
    EXPECT_EQ(COFDM_SelectModos("outmod_u", "outmod_u", strJSCambioModoCOFDM, ModosSalidaCOFDM, ValoresModosSalidaCOFDM,
                                14),
              R"(<select name="outmod_u" id="outmod_u" size="1" )"
              R"(onchange="CambioModoCOFDM(this);Compruebacambios(this);">)"
              R"(<option value="0"  >COFDM(QPSK)</option>)"
              R"(<option value="1"  >COFDM(16QAM)</option>)"
              R"(<option value="2"  >COFDM(64QAM)</option>)"
              R"(<option value="12"  >16QAM</option>)"
              R"(<option value="13"  >32QAM</option>)"
              R"(<option value="14" selected="selected" >64QAM</option>)"
              R"(<option value="15"  >128QAM</option>)"
              R"(<option value="16"  >256QAM</option>)"
              R"(</select>)");
}

TEST(SelectModos, MarksByValueNotByPosition)
{
    struct Caso {
        int guardado;
        const char *marcada;  // nullptr: nothing selected
    };
    const Caso codecs[] = {{0, "MPEG2"}, {1, "H264 AUTO(4.0)"}, {5, "H264-HIGH(4.1)"}, {8, "H264(5.1)"},
                           {2, nullptr}, {3, nullptr}, {-1, nullptr}};
    for (const Caso &caso : codecs) {
        const std::string html = COFDM_SelectModos("vidcod1_u", "vidcod1_u", "", VideoCodecTextos, VideoCodecValores,
                                                   caso.guardado);
        EXPECT_EQ(CuentaOpciones(html), 6);
        if (caso.marcada == nullptr) {
            EXPECT_EQ(html.find("selected"), std::string::npos) << caso.guardado;
        } else {
            const std::string opcion = "<option value=\"" + std::to_string(caso.guardado) +
                                       "\" selected=\"selected\" >" + caso.marcada + "</option>";
            EXPECT_NE(html.find(opcion), std::string::npos) << caso.guardado;
        }
    }
}

}  // namespace
