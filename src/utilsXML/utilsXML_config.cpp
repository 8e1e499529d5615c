// utilsXML_config.cpp: the accessors of the unit configuration document (ENCODERCONFIG),
// one reader and one writer for every row of the element list.
#include "utilsXML/utilsXML_int.h"

#define UTILSXMLINT_DOCUMENTO UTILSXMLINT_Documento::Config
#define UTILSXML_CAMPO(ruta, lee, graba, minimo, version, indices) \
    UTILSXMLINT_DEFINE_##indices(ruta, lee, graba, minimo, version)
#define UTILSXML_CARACTER(ruta, lee, graba, minimo, version, indices) \
    UTILSXMLINT_DEFINE_CARACTER_##indices(ruta, lee, graba, minimo, version)
#include "utilsXML/utilsXML_campos_config.def"
