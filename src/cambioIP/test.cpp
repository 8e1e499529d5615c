// test.cpp: the test-options page (EAS test, reset, factory configuration and LED blink of
// every unit of the master's family) and the save of one unit's choices. QAM units have an
// EAS column; the other families have none and always send EAS "0".
#include "cambioIP/paginas.h"

#include "cteshtml/cteshtml.h"
#include "cteshtml/paginas_comunes.h"
#include "proccgilib/proccgilib.h"
#include "utils/utils.h"
#include "utilsXML/utilsXML.h"

#include <cstdio>
#include <cstdlib>
#include <iterator>

namespace {

// Bit of the model options that says the model carries the emergency-alert option.
constexpr int CIP_OpcionEAS = 0x02;

// The test boxes of a row, in column order: base name and the flag of the document.
struct CIP_CajaTest {
    const char *base;
    UTILSXML_Lector0 lector;
};
const CIP_CajaTest CIP_CajasTest[] = {
    {"teas", UTILSXML_LeeEAS},
    {"treset", UTILSXML_LeeRESET},
    {"tfab", UTILSXML_LeeFACTORY},
    {"tled", UTILSXML_LeeLED},
};
constexpr std::size_t CIP_CajaEAS = 0;

bool CIPINT_Activo(const std::string &valor) { return !valor.empty() && valor[0] == '1'; }

int CIPINT_GeneraTestComun(int tipo, int fase, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                           int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo)
{
    switch (fase) {
    case 0:
        UTILS_Imprime(UTILS_Formatea(tipo == CIP_TestEU ? htmlinfotestinicioEU : htmlinfotestinicio));
        return 0;
    case 1:
        if (modelo == nullptr)
            return 4;
        return CIPINT_PintaLineaTest(documento, esMaster, 0, canales, opciones, entradasVideo, capacidades, modelo,
                                     0, sufijo, tipo);
    case 2:
        UTILS_Imprime(UTILS_Formatea(tipo == CIP_TestEU ? htmlultimalineaEU : htmlultimalinea, fila));
        UTILS_Imprime(htmlfintabla);
        return 0;
    case 3:
        return CIPINT_PintaLineaTest(documento, esMaster, 1, canales, opciones, entradasVideo, capacidades, modelo,
                                     0, sufijo, tipo);
    default:
        return 0;
    }
}

} // namespace

int CIPINT_PintaLineaTest(xmlDocPtr documento, int esMaster, int avanzado, uint8_t canales, int opciones, int, int,
                          const char *modelo, int, const char *sufijo, int tipo)
{
    if (avanzado == 0 && sufijo == nullptr)
        return 4;
    const std::string suf = avanzado != 0 ? CIP_SufijoTotal : sufijo;
    const bool eu = tipo == CIP_TestEU;

    // A touched box always counts as a change on this page. A model without the EAS
    // option still sends its EAS box, hidden.
    std::string cajas[std::size(CIP_CajasTest)];
    for (std::size_t i = 0; i < std::size(CIP_CajasTest); ++i) {
        const std::string nombre = CIP_CajasTest[i].base + suf;
        std::string atributos = strJSOnBlurOnChangeFuerzacambios;
        if (i == CIP_CajaEAS && (opciones & CIP_OpcionEAS) == 0)
            atributos += htmlStyleDisplayNone;
        cajas[i] = CTESHTML_Checkbox(nombre, nombre,
                                     CIPINT_Activo(UTILSXML_LeeTexto(CIP_CajasTest[i].lector, documento, 50)), atributos);
    }

    // The EU layout always sends an EAS value; the page rows also carry the channel count
    // and the layout for the page script.
    std::string ocultos;
    if (avanzado == 0) {
        ocultos += CTESHTML_Anterior("numcanales" + suf, UTILS_Formatea("%01d", canales));
        ocultos += CTESHTML_Anterior("tipounidad" + suf, UTILS_Formatea("%01d", tipo));
    }
    if (eu)
        ocultos += CTESHTML_Oculto("teas" + suf, "teas" + suf, "0");

    std::string linea;
    if (avanzado != 0) {
        linea = eu ? UTILS_Formatea(htmlConfigTotaltestConfigEU, cajas[1].c_str(), cajas[2].c_str(), cajas[3].c_str(),
                                    ocultos.c_str())
                   : UTILS_Formatea(htmlConfigTotaltestConfig, cajas[0].c_str(), cajas[1].c_str(), cajas[2].c_str(),
                                    cajas[3].c_str(), ocultos.c_str());
    } else {
        const std::string orden = UTILS_Escapa(UTILSXML_LeeTexto(UTILSXML_LeeOrden, documento, 40));
        const std::string celdaModelo = CTESHTML_CeldaModelo(esMaster != 0, suf, modelo != nullptr ? modelo : "");
        const std::string forzar =
            CTESHTML_Checkbox("forzarconfig" + suf, "forzarconfig" + suf,
                              CIPINT_Activo(UTILSXML_LeeTexto(UTILSXML_LeeCambiosWeb, documento, 50)), "");
        linea = eu ? UTILS_Formatea(htmlinfotestEU, orden.c_str(), celdaModelo.c_str(), cajas[1].c_str(),
                                    cajas[2].c_str(), cajas[3].c_str(), forzar.c_str(), ocultos.c_str())
                   : UTILS_Formatea(htmlinfotest, orden.c_str(), celdaModelo.c_str(), cajas[0].c_str(),
                                    cajas[1].c_str(), cajas[2].c_str(), cajas[3].c_str(), forzar.c_str(),
                                    ocultos.c_str());
    }
    UTILS_Imprime(linea);
    return 0;
}

int CIPINT_GeneraTest(int fase, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones, int entradasVideo,
                      int capacidades, const char *modelo, int fila, const char *sufijo, int, int)
{
    return CIPINT_GeneraTestComun(CIP_TestNormal, fase, documento, esMaster, canales, opciones, entradasVideo,
                                  capacidades, modelo, fila, sufijo);
}

int CIPINT_GeneraTestEU(int fase, xmlDocPtr documento, int esMaster, uint8_t canales, int opciones,
                        int entradasVideo, int capacidades, const char *modelo, int fila, const char *sufijo, int,
                        int)
{
    return CIPINT_GeneraTestComun(CIP_TestEU, fase, documento, esMaster, canales, opciones, entradasVideo,
                                  capacidades, modelo, fila, sufijo);
}

int CIPINT_GrabaConfigTest(xmlDocPtr documento, char *formulario)
{
    if (formulario == nullptr)
        return 4;

    char numcanales[10] = {}, teas[500] = {}, treset[500] = {}, tfab[500] = {}, tled[500] = {};
    GetValueKeys(formulario, {{"numcanales", numcanales}, {"teas", teas}, {"treset", treset}, {"tfab", tfab},
                              {"tled", tled}});
    if (numcanales[0] == '\0' || treset[0] == '\0' || tfab[0] == '\0' || tled[0] == '\0')
        return 7;
    // The channel count is taken in 8 bits, as the units store it: 257 reads as 1.
    const uint8_t canales = static_cast<uint8_t>(std::strtol(numcanales, nullptr, 10));
    if (canales < 1 || canales > 9)
        return 7;

    // EAS is optional: without it the unit's EAS test stays as it was.
    bool fallo = false;
    if (teas[0] != '\0')
        fallo |= UTILSXML_GrabaEAS(documento, teas) != 0;
    fallo |= UTILSXML_GrabaRESET(documento, treset) != 0;
    fallo |= UTILSXML_GrabaFACTORY(documento, tfab) != 0;
    fallo |= UTILSXML_GrabaLED(documento, tled) != 0;
    return fallo ? 6 : 0;
}
