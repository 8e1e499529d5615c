// valores.cpp: checks of request values that reach the control daemon's files or a
// script's argument list, so that a bad value is refused where it enters.
#include "cambioIP/cambioIP_int.h"

#include "cteshtml/cteshtml.h"
#include "proccgilib/proccgilib.h"
#include "utils/utils.h"

#include <cstdio>
#include <cstring>
#include <string>

bool CIPINT_EsNumero(std::string_view valor, long minimo, long maximo)
{
    if (valor.empty() || valor.size() > 9)
        return false;
    long numero = 0;
    for (char c : valor) {
        if (c < '0' || c > '9')
            return false;
        numero = numero * 10 + (c - '0');
    }
    return maximo < minimo || (numero >= minimo && numero <= maximo);
}

bool CIPINT_EsDireccionIPv4(std::string_view valor)
{
    for (int octeto = 0; octeto < 4; ++octeto) {
        const size_t punto = octeto < 3 ? valor.find('.') : valor.size();
        if (punto == std::string_view::npos || punto > 3 || !CIPINT_EsNumero(valor.substr(0, punto), 0, 255))
            return false;
        valor.remove_prefix(octeto < 3 ? punto + 1 : punto);
    }
    return valor.empty();
}

bool CIPINT_SinControl(std::string_view valor)
{
    for (unsigned char c : valor)
        if (c < 0x20 || c == 0x7F)
            return false;
    return true;
}

std::string CIPINT_CampoConControl(const char *formulario)
{
    if (formulario == nullptr)
        return {};
    std::string_view resto = formulario;
    while (!resto.empty()) {
        const size_t fin = resto.find('&');
        std::string par(resto.substr(0, fin));
        resto.remove_prefix(fin == std::string_view::npos ? resto.size() : fin + 1);
        ParseString(par.data());
        par.resize(std::char_traits<char>::length(par.c_str()));
        const size_t igual = par.find('=');
        if (igual != std::string::npos && !CIPINT_SinControl(std::string_view(par).substr(igual + 1)))
            return par.substr(0, igual);
    }
    return {};
}

void CIPINT_AvisaRechazo(std::string_view campo)
{
    UTILS_Imprime(UTILS_Formatea(htmlValorRechazado, UTILS_Escapa(campo).c_str()));
}

std::string CIPINT_DireccionesRechazadas(std::string_view direccion, std::string_view mascara,
                                         std::string_view gateway)
{
    if (!CIPINT_EsDireccionIPv4(direccion))
        return "networkipdir";
    if (!CIPINT_EsDireccionIPv4(mascara))
        return "networkmask";
    if (!CIPINT_EsDireccionIPv4(gateway))
        return "gateway";
    return {};
}

// The form search of the request entry: the first occurrence of `clave` anywhere in the form
// text (also inside another field), read up to the next '&'.
bool CIPINT_BuscaCampo(const char *formulario, const char *clave, char *destino, size_t capacidad)
{
    if (formulario == nullptr || clave == nullptr)
        return false;
    const char *inicio = std::strstr(formulario, clave);
    if (inicio == nullptr)
        return false;
    const char *fin = std::strchr(inicio, '&');
    std::string par = fin != nullptr ? std::string(inicio, fin) : std::string(inicio);
    GetValueKey(par.c_str(), {{clave, destino, capacidad}});
    return true;
}
