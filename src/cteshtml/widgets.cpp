// widgets.cpp: escaping and the small builders that fill the control fragments. Values and
// labels are escaped here, where they enter the fragment; names, ids and attribute texts are
// the program's own and go in as they are.
#include "cteshtml/cteshtml.h"

#include "utils/utils.h"

#include <cstring>

namespace {

// The fragments take C strings; a view of a name or value is copied once to get one.
std::string Texto(std::string_view vista)
{
    return std::string(vista);
}

}  // namespace

std::string CTESHTML_Negrita(std::string_view valor)
{
    return "<b>" + UTILS_Escapa(valor) + "</b>";
}

std::string CTESHTMLINT_TextoRanura(const char *ranura, std::size_t ancho)
{
    if (ranura == nullptr)
        return {};
    return std::string(ranura, strnlen(ranura, ancho));
}

std::string CTESHTML_SelectBox(std::string_view nombre, std::string_view id, std::string_view atributos,
                               const std::vector<CTESHTML_Opcion> &opciones, std::string_view valorActual)
{
    std::string html = UTILS_Formatea(htmlselectbox, Texto(nombre).c_str(), Texto(id).c_str(), Texto(atributos).c_str());
    for (const CTESHTML_Opcion &opcion : opciones) {
        const char *marca = opcion.valor == valorActual ? htmlselectoptionselected : "";
        html += UTILS_Formatea(htmlselectoption, UTILS_Escapa(opcion.valor).c_str(), marca,
                               UTILS_Escapa(opcion.texto).c_str());
    }
    html += htmlselectboxfin;
    return html;
}

std::vector<CTESHTML_Opcion> CTESHTML_OpcionesRango(int desde, int hasta)
{
    std::vector<CTESHTML_Opcion> opciones;
    for (int i = desde; i <= hasta; ++i) {
        std::string numero = std::to_string(i);
        opciones.push_back({numero, numero});
    }
    return opciones;
}

std::string CTESHTML_Anterior(std::string_view nombreCampo, std::string_view valor)
{
    const std::string nombre(nombreCampo);
    return UTILS_Formatea(htmlanterior, nombre.c_str(), nombre.c_str(), UTILS_Escapa(valor).c_str());
}

std::string CTESHTML_Input(const char *plantilla, std::string_view id, int tam, std::string_view nombre,
                           std::string_view filtroTeclas, std::string_view alSalir, std::string_view atributos,
                           std::string_view valor, int maxLongitud)
{
    // The six text inputs share their placeholders; anything else could not be filled safely.
    static const char *const PlantillasInput[] = {
        htmlinput, htmlinputIP, htmlinputLCN, htmlinputCHName, htmlinput3digitos, htmlinputlikecaption,
    };
    const char *elegida = nullptr;
    for (const char *candidata : PlantillasInput)
        if (plantilla != nullptr && (plantilla == candidata || std::strcmp(plantilla, candidata) == 0))
            elegida = candidata;
    if (elegida == nullptr)
        return {};
    return UTILS_Formatea(elegida, Texto(id).c_str(), tam, Texto(nombre).c_str(), Texto(filtroTeclas).c_str(),
                          Texto(alSalir).c_str(), Texto(atributos).c_str(), UTILS_Escapa(valor).c_str(), maxLongitud);
}

std::string CTESHTML_InputFijo(std::string_view valor, std::string_view atributos)
{
    return UTILS_Formatea(htmlinputlikecaptionFixed, UTILS_Escapa(valor).c_str(), Texto(atributos).c_str());
}

std::string CTESHTML_Checkbox(std::string_view nombre, std::string_view id, bool marcado,
                              std::string_view atributos)
{
    return UTILS_Formatea(htmlcheckbox, Texto(nombre).c_str(), Texto(id).c_str(), marcado ? htmlcheckboxmarcado : "",
                          Texto(atributos).c_str());
}

std::string CTESHTML_EntradaActiva(int entrada, bool unica, std::string_view nombre, std::string_view id,
                                   bool marcado)
{
    const char *marca = marcado ? htmlcheckboxmarcado : "";
    if (unica)
        return UTILS_Formatea(htmlentradaactivaunica, Texto(nombre).c_str(), Texto(id).c_str(), marca);
    return UTILS_Formatea(htmlentradaactiva, entrada, Texto(nombre).c_str(), Texto(id).c_str(), marca);
}

std::string CTESHTML_SalidaIPActiva(int salida, std::string_view nombre, std::string_view id, bool marcado,
                                    std::string_view atributos)
{
    std::string marcaYAtributos = marcado ? htmlcheckboxmarcado : "";
    marcaYAtributos += atributos;
    return UTILS_Formatea(htmlsalidaIPactiva, salida, Texto(nombre).c_str(), Texto(id).c_str(),
                          marcaYAtributos.c_str());
}

std::string CTESHTML_Oculto(std::string_view id, std::string_view nombre, std::string_view valor)
{
    return UTILS_Formatea(htmlinputhidden, Texto(id).c_str(), Texto(nombre).c_str(), UTILS_Escapa(valor).c_str());
}

std::string CTESHTML_Boton(std::string_view nombre, std::string_view id, std::string_view atributos,
                           std::string_view etiqueta)
{
    return UTILS_Formatea(htmlboton, Texto(nombre).c_str(), Texto(id).c_str(), Texto(atributos).c_str(),
                          UTILS_Escapa(etiqueta).c_str());
}

std::string CTESHTML_Div(std::string_view id, std::string_view contenido)
{
    return UTILS_Formatea(htmldiv, Texto(id).c_str(), Texto(contenido).c_str());
}

std::string CTESHTML_DivOculto(std::string_view id, std::string_view contenido)
{
    return UTILS_Formatea(htmldivoculto, Texto(id).c_str(), Texto(contenido).c_str());
}

std::string CTESHTML_C3C4(std::string_view resolucion3, std::string_view cuadros3, std::string_view resolucion4,
                          std::string_view cuadros4)
{
    return UTILS_Formatea(htmlc3c4, UTILS_Escapa(resolucion3).c_str(), UTILS_Escapa(cuadros3).c_str(),
                          UTILS_Escapa(resolucion4).c_str(), UTILS_Escapa(cuadros4).c_str());
}

std::string CTESHTML_Miunidad(std::string_view modelo)
{
    return UTILS_Formatea(strJSMiunidad, UTILS_Escapa(modelo).c_str());
}

std::string CTESHTML_SufijoConPuntos(std::string_view sufijo)
{
    std::string puntos(sufijo);
    for (char &ch : puntos)
        if (ch == '_')
            ch = '.';
    return puntos;
}

std::string CTESHTML_CeldaModelo(bool esMaster, std::string_view sufijo, std::string_view modelo)
{
    const std::string texto = UTILS_Escapa(modelo);
    if (esMaster)
        return UTILS_Formatea(strJSMiunidadConfig, texto.c_str());
    return UTILS_Formatea(strJSMostrarConfigTotal, CTESHTML_SufijoConPuntos(sufijo).c_str(), texto.c_str());
}
