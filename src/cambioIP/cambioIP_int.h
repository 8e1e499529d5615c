// Private helpers of the request entry, shared by the engines of this module.
#pragma once

#include <cstddef>

// Finds the first occurrence of the text clave anywhere in the form text (also inside
// another field's name or value), reads the value of the pair that starts there, up
// to the next '&', into destino and returns whether the text occurs at all.
bool CIPINT_BuscaCampo(const char *formulario, const char *clave, char *destino, size_t capacidad);

// The command number of a request's form text: the value of the first "command"
// found anywhere in it, base 10 (empty or not a number: 0); 255 without one.
long CIPINT_LeeComando(const char *formulario);
