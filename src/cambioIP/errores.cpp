// errores.cpp: the fatal-error fragments that pages and saves print in place of a row
// or a result.
#include "cambioIP/cambioIP.h"

#include "utils/utils.h"

#include <cstdio>

namespace {

struct CIP_TextoError {
    uint8_t codigo;
    const char *texto;
};

// Every code not listed, and 1 itself, reads as "Unable to open config data".
const CIP_TextoError CIP_TextosError[] = {
    {1, "<br><h2><center><strong> ERROR! Unable to open config data.<br> please contact technical support.</strong></center></h2>\n"},
    {2, "<br><h2><center><strong> ERROR! Device not supported.<br> please contact technical support.</strong></center></h2>\n"},
    {3, "<br><h2><center><strong> ERROR! Unknown Error.<br> please contact technical support.</strong></center></h2>\n"},
    {4, "<br><h2><center><strong> ERROR! Parametro incorrecto!!!</strong></center></h2>\n"},
    {5, "<br><h2><center><strong> ERROR! IP wrong.<br> please contact technical support.</strong></center></h2>\n"},
    {6, "<br><h2><center><strong> ERROR! Saving data.<br> please retry operation in a few seconds.</strong></center></h2>\n"},
    {7, "<br><h2><center><strong> ERROR! Invalid Data!.<br> please retry operation in a few seconds.</strong></center></h2>\n"},
    {100, "<br><h2><center><strong> ERROR! Invalid Remote STB Command!.<br> please select a valid commands and retry!</strong></center></h2>\n"},
};

} // namespace

int CIPINT_ErrorGraveWeb(int codigo)
{
    // Only the low 8 bits count: -1 reads as 255, an unknown code.
    const uint8_t codigoByte = static_cast<uint8_t>(codigo);
    if (codigoByte == 0)
        return 1;
    const char *texto = CIP_TextosError[0].texto;
    for (const CIP_TextoError &fila : CIP_TextosError)
        if (fila.codigo == codigoByte)
            texto = fila.texto;
    UTILS_Imprime(texto);
    return 0;
}
