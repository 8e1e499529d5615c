// utilsXML_status.cpp: the accessors of the unit status document (ENCODERSTATUS), one
// reader and one writer for every row of the element list.
#include "utilsXML/utilsXML_int.h"

#define UTILSXMLINT_DOCUMENTO UTILSXMLINT_Documento::Status
#define UTILSXML_CAMPO(ruta, lee, graba, minimo, version, indices) \
    UTILSXMLINT_DEFINE_##indices(ruta, lee, graba, minimo, version)
#define UTILSXML_CAMPO_TOLERANTE(ruta, lee, graba, minimo, version, indices) \
    UTILSXMLINT_DEFINE_TOLERANTE_##indices(ruta, lee, graba, minimo, version)
#define UTILSXML_SELECTOR(rutaSi, rutaNo, lee, graba, minimo, version) \
    UTILSXMLINT_DEFINE_SELECTOR(rutaSi, rutaNo, lee, graba, minimo, version)
#include "utilsXML/utilsXML_campos_status.def"
