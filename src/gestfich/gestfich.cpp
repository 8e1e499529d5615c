// gestfich.cpp: change queue, command file, lock files and line reading.
#include "gestfich/gestfich.h"
#include "gestfich/gestfich_int.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct CierraFichero {
    void operator()(std::FILE *f) const noexcept { std::fclose(f); }
};
using Fichero = std::unique_ptr<std::FILE, CierraFichero>;

using Descriptor = GESTFICH_Descriptor;

// The open command-file stream of the module (at most one).
Fichero ficherocomando;

// The daemon runs as another user and must be able to consume and delete the file.
void GESTFICHINT_PermisosTodos(const char *ruta) { ::chmod(ruta, 0666); }

bool GESTFICHINT_EscribeTodo(int fd, const void *datos, size_t longitud)
{
    ssize_t escritos;
    do {
        escritos = ::write(fd, datos, longitud);
    } while (escritos < 0 && errno == EINTR);
    return escritos == static_cast<ssize_t>(longitud);
}

} // namespace

int GESTFICH_AddFiletoChanges(const void *datos, long longitud, const char *ruta)
{
    if (datos == nullptr || ruta == nullptr || longitud < 1)
        return -1;
    // Under the queue's flock, on the file the path names: a daemon that renames the queue
    // away and takes the flock of the renamed file before reading it misses no line.
    Descriptor fichero(GESTFICHINT_AbreBloqueado(ruta, O_WRONLY | O_APPEND | O_CREAT, 0666));
    if (fichero.fd < 0)
        return -1;
    // One write on an O_APPEND descriptor: the line lands whole at the end of the file.
    bool correcto = GESTFICHINT_EscribeTodo(fichero.fd, datos, static_cast<size_t>(longitud));
    GESTFICHINT_PermisosTodos(ruta);
    return correcto ? 0 : -1;
}

int GESTFICH_WriteCommandtoFile(uint8_t comando, const char *ruta)
{
    ficherocomando.reset();
    if (ruta == nullptr)
        return -1;
    Descriptor fichero(::open(ruta, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    if (fichero.fd < 0)
        return -1;
    bool correcto = GESTFICHINT_EscribeTodo(fichero.fd, &comando, 1);
    GESTFICHINT_PermisosTodos(ruta);
    return correcto ? 0 : -1;
}

uint8_t GESTFICH_ReadCommandfromFile(const char *ruta)
{
    ficherocomando.reset();
    if (ruta == nullptr)
        return 255;
    Fichero fichero(std::fopen(ruta, "rb"));
    if (!fichero)
        return 255;
    int c = std::fgetc(fichero.get());
    return c == EOF ? 255 : static_cast<uint8_t>(c);
}

int GESTFICH_ReadFromChanges(char *linea, size_t *capacidad, std::FILE *fichero)
{
    if (linea == nullptr || capacidad == nullptr || fichero == nullptr)
        return -1;
    if (*capacidad < 1)
        return -1;
    std::memset(linea, 0, *capacidad);
    for (size_t i = 0; i < *capacidad; ++i) {
        int c = std::fgetc(fichero);
        if (c == EOF)
            return -1;
        if (c == '\n') {
            linea[i] = '\0';
            *capacidad = i + 1;
            return 0;
        }
        linea[i] = static_cast<char>(c);
    }
    return -1;
}

int GESTFICHINT_CheckFile(const char *ruta)
{
    if (ruta == nullptr)
        return 0;
    Fichero fichero(std::fopen(ruta, "rb"));
    return fichero ? -1 : 0;
}

int GESTFICHINT_CreateFile(const char *ruta)
{
    if (ruta == nullptr)
        return -1;
    Fichero fichero(std::fopen(ruta, "wb"));
    return fichero ? 0 : -1;
}

int GESTFICHINT_DeleteFile(const char *ruta) { return ruta == nullptr ? -1 : std::remove(ruta); }

std::FILE *GESTFICHINT_OpenFile(const char *ruta) { return ruta == nullptr ? nullptr : std::fopen(ruta, "rb+"); }

int GESTFICHINT_CloseFile(std::FILE *fichero)
{
    if (fichero == nullptr)
        return -1;
    return std::fclose(fichero) == 0 ? 0 : -1;
}

int GESTFICHINT_CreateCommandFile(const char *ruta, int lectura)
{
    ficherocomando.reset();
    if (ruta == nullptr)
        return -1;
    ficherocomando.reset(std::fopen(ruta, lectura != 0 ? "rb" : "wb"));
    return ficherocomando ? 0 : -1;
}

int GESTFICHINT_WriteCommandFile(uint8_t comando)
{
    if (!ficherocomando)
        return -1;
    return std::fwrite(&comando, 1, 1, ficherocomando.get()) == 1 ? 0 : -1;
}

uint8_t GESTFICHINT_ReadCommandFile()
{
    if (!ficherocomando)
        return 255;
    int c = std::fgetc(ficherocomando.get());
    return c == EOF ? 255 : static_cast<uint8_t>(c);
}

int GESTFICHINT_CloseCommandFile()
{
    if (!ficherocomando)
        return -1;
    int resultado = std::fclose(ficherocomando.release());
    return resultado == 0 ? 0 : -1;
}

int GESTFICHINT_ReadWebVersion(const char *ruta, char *version)
{
    if (ruta == nullptr || version == nullptr)
        return -1;
    Fichero fichero(std::fopen(ruta, "rb+"));
    if (!fichero)
        return -1;
    constexpr size_t longitud = 10;
    if (std::fread(version, 1, longitud, fichero.get()) != longitud)
        return -1;
    version[longitud] = '\0';
    return 0;
}

int GESTFICH_ReemplazaFichero(const char *ruta, const void *datos, size_t longitud)
{
    if (GESTFICH_GuardaAtomico(ruta, datos, longitud) != 0)
        return -1;
    GESTFICHINT_PermisosTodos(ruta);
    return 0;
}
