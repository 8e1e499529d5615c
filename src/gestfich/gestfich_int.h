// Private helpers of gestfich shared by its files.
#pragma once

#include "gestfich/gestfich.h"

#include <sys/types.h>

// Opens the file at `ruta` (open(2) flags and permissions) and takes its exclusive flock,
// trying again until the lock is on the file the path still names; returns the descriptor,
// which holds the lock until closed, or -1. Anything but a regular file is refused.
int GESTFICHINT_AbreBloqueado(const char *ruta, int modoApertura, mode_t permisos);
