// SalidaCOFDM_graba.cpp: the saves of the COFDM transport and output pages for one unit.
#include "SalidaCOFDM/SalidaCOFDM_int.h"

#include "utilsXML/utilsXML.h"

int SALCOFDM_GrabaSalida(xmlDocPtr documento, char *formulario)
{
    return SALCOMUN_Graba(documento, formulario, SALCOMUN_GrabarSalidaCOFDM);
}

int SALCOFDM_GrabaTransporte(xmlDocPtr documento, char *formulario)
{
    return SALCOMUN_Graba(documento, formulario, SALCOMUN_GrabarTransporteDVB);
}
