// Channel plans and option tables, by property: the shape of every plan record, every channel
// position chosen back from its stored number, the bands' deliberate orders, and every mode
// value marking its own choice.
#include "SalidaComun/TablasCanales.h"

#include "../SalidaQAM/salida_test.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>

namespace {

std::string Etiqueta(int plan, int posicion)
{
    return CTESHTMLINT_TextoRanura(COFDM_TablasdeCanales[plan].etiquetas[posicion], COFDM_TAMETIQUETACANAL);
}

// Names fit their slot and tell the plans apart; a plan's labels are four visible characters,
// all different, and its slots after the last label are empty. The position a page stores
// selects that very position, whose option shows the label; any other stored text the first.
TEST(TablasdeCanales, EveryPlanHoldsDistinctLabelsEachChosenBackByItsPosition)
{
    std::set<std::string> nombres;
    for (int plan = 0; plan < COFDM_NUMTABLASCANALES; ++plan) {
        const COFDM_TablaCanales &tabla = COFDM_TablasdeCanales[plan];
        EXPECT_LT(strnlen(tabla.nombre, COFDM_TAMNOMBRETABLA), COFDM_TAMNOMBRETABLA);
        EXPECT_TRUE(nombres.insert(COFDM_OpcionTabla(plan).texto).second) << "plan " << plan;
        ASSERT_LE(tabla.numCanales, COFDM_MAXCANALESTABLA);
        const std::vector<CTESHTML_Opcion> opciones = COFDM_OpcionesCanales(plan);
        ASSERT_EQ(opciones.size(), tabla.numCanales) << "plan " << plan;
        std::set<std::string> etiquetas;
        for (int k = 0; k < COFDM_MAXCANALESTABLA; ++k) {
            const std::string etiqueta = Etiqueta(plan, k);
            if (k >= tabla.numCanales) {
                EXPECT_EQ(std::string(tabla.etiquetas[k], 5), std::string(5, '\0')) << plan << " position " << k;
                continue;
            }
            EXPECT_TRUE(etiqueta.size() == 4 && etiqueta != "    ") << "plan " << plan << " position " << k;
            EXPECT_TRUE(etiquetas.insert(etiqueta).second) << "plan " << plan << " repeats " << etiqueta;
            EXPECT_EQ(COFDM_CanalSeleccionado(plan, std::to_string(k)), k);
            EXPECT_EQ(opciones[k].valor + opciones[k].texto, std::to_string(k) + etiqueta);
        }
        for (const std::string &guardado : {std::to_string(tabla.numCanales), std::string("-3"), std::string("abc"),
                                            std::string("99999999999999999999")})
            EXPECT_EQ(COFDM_CanalSeleccionado(plan, guardado), 0) << "plan " << plan << " stored " << guardado;
    }
    EXPECT_TRUE(COFDM_OpcionesCanales(0).empty()) << "FREQUENCY: the channel is typed in";
    EXPECT_EQ(COFDM_CanalSeleccionado(1, " 12x"), 12) << "a decimal number up to the first non-digit";
    for (int plan : {-1, COFDM_NUMTABLASCANALES})
        EXPECT_TRUE(COFDM_OpcionesCanales(plan).empty() && COFDM_OpcionTabla(plan).valor.empty());
}

// The orders that look odd are the bands' own and must not be tidied.
TEST(TablasdeCanales, KeepTheBandsOwnOrders)
{
    const struct {
        int plan;
        int posicion;
        const char *etiquetas;  // consecutive labels from the position on
    } casos[] = {
        {9, 7, "S08 E05 K06 E06 K07 E07 K08 E08 K09 E09 K10 E10 K11 E11 K12 E12 S09 "},  // Poland
        {11, 3, " 05  06  95  96  97  98  99  14 "},                                     // CATV by frequency
        {11, 17, " 21  22  07  08 "},
        {11, 96, " 93  94 100 101 "},
        {10, 19, " 9   9A 10 o 10 11 o 11  12 S11 "},  // Australia
        {4, 12, "S10  D   E   F   G   H   H1  H2 S11 "},  // Italy
    };
    for (const auto &caso : casos) {
        std::string leidas;
        for (std::size_t k = 0; k * 4 < std::strlen(caso.etiquetas); ++k)
            leidas += Etiqueta(caso.plan, caso.posicion + static_cast<int>(k));
        EXPECT_EQ(leidas, caso.etiquetas) << "plan " << caso.plan << " from " << caso.posicion;
    }
}

// A mode select stores a value of the parallel table: each must mark its own choice alone.
TEST(TablasOpciones, EveryModeValueMarksItsOwnChoice)
{
    const auto compruebaModos = [](const auto &textos, const auto &valores) {
        for (const uint8_t valor : valores)
            EXPECT_EQ(salida_test::LeeSelect(COFDM_SelectModos("m", "m", "", textos, valores, valor), "m").marcadas,
                      std::vector<std::string>{std::to_string(valor)});
    };
    compruebaModos(ModosSalidaCOFDM, ValoresModosSalidaCOFDM);
    compruebaModos(VideoCodecTextos, VideoCodecValores);
}

}  // namespace
