// Private helpers of gestfich shared by its files.
#pragma once

#include <sys/types.h>
#include <unistd.h>

// A file descriptor closed on every path.
struct GESTFICHINT_Descriptor {
    int fd;
    explicit GESTFICHINT_Descriptor(int d) : fd(d) {}
    GESTFICHINT_Descriptor(const GESTFICHINT_Descriptor &) = delete;
    GESTFICHINT_Descriptor &operator=(const GESTFICHINT_Descriptor &) = delete;
    ~GESTFICHINT_Descriptor()
    {
        if (fd >= 0)
            ::close(fd);
    }
    // Closes now, reporting the result (a delayed write error shows here).
    bool cierra()
    {
        const int d = fd;
        fd = -1;
        return ::close(d) == 0;
    }
};

// Opens the file at `ruta` (open(2) flags and permissions) and takes its exclusive flock,
// trying again until the lock is on the file the path still names; returns the descriptor,
// which holds the lock until closed, or -1. Anything but a regular file is refused.
int GESTFICHINT_AbreBloqueado(const char *ruta, int modoApertura, mode_t permisos);
