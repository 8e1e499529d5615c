// gestfich_atomico.cpp: files replaced whole and atomically (unit documents, the
// watermarking settings), the leftovers of replacements that were cut short, and the
// per-file lock that makes two writers of one file take turns.
#include "gestfich/gestfich.h"
#include "gestfich/gestfich_int.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

using Descriptor = GESTFICH_Descriptor;

// A temporary file removed when the owner goes away, unless it was renamed into place.
class FicheroTemporal {
  public:
    explicit FicheroTemporal(std::string nombre) : nombre_(std::move(nombre)) {}
    ~FicheroTemporal()
    {
        if (!nombre_.empty())
            ::unlink(nombre_.c_str());
    }
    FicheroTemporal(const FicheroTemporal &) = delete;
    FicheroTemporal &operator=(const FicheroTemporal &) = delete;
    const std::string &nombre() const { return nombre_; }
    void conserva() { nombre_.clear(); }

  private:
    std::string nombre_;
};

struct CierraDir {
    void operator()(DIR *d) const { ::closedir(d); }
};

// The temporary name is ".<name>.tmp" and six random characters: it starts with '.', so
// the scan of unit files never takes it for a unit document. The name is cut so that the
// whole stays within NAME_MAX.
constexpr std::string_view kSufijoTemporal = ".tmp";
constexpr size_t kAleatorios = 6;
constexpr size_t kMaxNombreTemporal = NAME_MAX - 1 - kSufijoTemporal.size() - kAleatorios;

// Where a file really lives (a unit file that is a link is replaced at its target, so the
// link stays), cut into its folder and its name. False, with errno set, when it has none.
bool destinoINT(const char *ruta, std::string &carpeta, std::string &nombre)
{
    std::string destino = ruta;
    struct stat estado {};
    if (::lstat(ruta, &estado) == 0 && S_ISLNK(estado.st_mode)) {
        std::unique_ptr<char, decltype(&std::free)> real(::realpath(ruta, nullptr), &std::free);
        if (real == nullptr)
            return false;
        destino = real.get();
    }
    const size_t barra = destino.rfind('/');
    carpeta = barra == std::string::npos ? "." : barra == 0 ? "/" : destino.substr(0, barra);
    nombre = barra == std::string::npos ? destino : destino.substr(barra + 1);
    if (nombre.empty() || nombre == "." || nombre == "..") {
        errno = EISDIR;
        return false;
    }
    return true;
}

std::string prefijoTemporalINT(const std::string &nombre)
{
    return "." + nombre.substr(0, kMaxNombreTemporal) + std::string(kSufijoTemporal);
}

bool escribeTodoINT(int fd, const char *datos, size_t longitud)
{
    while (longitud > 0) {
        const ssize_t escritos = ::write(fd, datos, longitud);
        if (escritos < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        datos += escritos;
        longitud -= static_cast<size_t>(escritos);
    }
    return true;
}

} // namespace

int GESTFICH_GuardaAtomico(const char *ruta, const void *datos, size_t longitud, const char **paso)
{
    const char *ignorado = nullptr;
    const char *&fallo = paso != nullptr ? *paso : ignorado;
    fallo = "argumentos";
    if (ruta == nullptr || ruta[0] == '\0' || (datos == nullptr && longitud > 0)) {
        errno = EINVAL;
        return -1;
    }
    std::string carpeta, nombre;
    fallo = "nombre";
    if (!destinoINT(ruta, carpeta, nombre))
        return -1;
    const std::string destino = carpeta + "/" + nombre;

    // The new file takes the permission bits (and, where allowed, the owner) of the one it
    // replaces; a new file gets 0644.
    struct stat estado {};
    mode_t modo = 0644;
    bool existe = false;
    fallo = "stat";
    if (::stat(destino.c_str(), &estado) == 0) {
        if (!S_ISREG(estado.st_mode)) {
            errno = EISDIR;
            return -1;
        }
        modo = estado.st_mode & 07777;
        existe = true;
    } else if (errno != ENOENT) {
        return -1;
    }

    std::string plantilla = carpeta + "/" + prefijoTemporalINT(nombre) + std::string(kAleatorios, 'X');
    std::vector<char> nombreTemporal(plantilla.begin(), plantilla.end());
    nombreTemporal.push_back('\0');
    fallo = "mkstemp";
    Descriptor fd(::mkostemp(nombreTemporal.data(), O_CLOEXEC));
    if (fd.fd < 0)
        return -1;
    FicheroTemporal temporal(nombreTemporal.data());

    fallo = "write";
    if (!escribeTodoINT(fd.fd, static_cast<const char *>(datos), longitud))
        return -1;
    if (existe && (estado.st_uid != ::geteuid() || estado.st_gid != ::getegid())) {
        // Only root may give the file away; otherwise it stays ours.
        [[maybe_unused]] const int sinDueno = ::fchown(fd.fd, estado.st_uid, estado.st_gid);
    }
    fallo = "fchmod";
    if (::fchmod(fd.fd, modo) != 0)
        return -1;
    fallo = "fsync";
    if (::fsync(fd.fd) != 0)
        return -1;
    fallo = "close";
    if (!fd.cierra())
        return -1;
    fallo = "rename";
    if (::rename(temporal.nombre().c_str(), destino.c_str()) != 0)
        return -1;
    temporal.conserva();

    // The new name is made durable too. The file is already in place, so a folder that
    // cannot be synced does not undo the replacement.
    fallo = nullptr;
    Descriptor dir(::open(carpeta.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (dir.fd < 0 || (::fsync(dir.fd) != 0 && errno != EINVAL))
        fallo = "fsync carpeta";
    return 0;
}

int GESTFICH_BorraTemporales(const char *ruta)
{
    std::string carpeta, nombre;
    if (ruta == nullptr || !destinoINT(ruta, carpeta, nombre))
        return -1;
    std::unique_ptr<DIR, CierraDir> dir(::opendir(carpeta.c_str()));
    if (!dir)
        return -1;
    const std::string prefijo = prefijoTemporalINT(nombre);
    int borrados = 0;
    std::vector<std::string> sobrantes;
    while (const struct dirent *entrada = ::readdir(dir.get())) {
        const std::string_view candidato = entrada->d_name;
        if (candidato.size() == prefijo.size() + kAleatorios && candidato.starts_with(prefijo))
            sobrantes.emplace_back(candidato);
    }
    for (const std::string &sobrante : sobrantes)
        borrados += ::unlink((carpeta + "/" + sobrante).c_str()) == 0 ? 1 : 0;
    return borrados;
}

int GESTFICHINT_AbreBloqueado(const char *ruta, int modoApertura, mode_t permisos)
{
    // The file may be replaced (renamed over, or renamed away) by another holder while we
    // wait: the lock counts only when it is on the file that the path names once we have it.
    for (;;) {
        // Non-blocking, so that a path naming a pipe never holds the request up.
        Descriptor fd(::open(ruta, modoApertura | O_NONBLOCK | O_CLOEXEC, permisos));
        if (fd.fd < 0)
            return -1;
        struct stat tipo {};
        if (::fstat(fd.fd, &tipo) != 0 || !S_ISREG(tipo.st_mode))
            return -1;
        int resultado;
        do {
            resultado = ::flock(fd.fd, LOCK_EX);
        } while (resultado != 0 && errno == EINTR);
        if (resultado != 0)
            return -1;
        struct stat bloqueado {}, actual {};
        if (::fstat(fd.fd, &bloqueado) != 0)
            return -1;
        if (::stat(ruta, &actual) == 0 && bloqueado.st_dev == actual.st_dev && bloqueado.st_ino == actual.st_ino) {
            const int propio = fd.fd;
            fd.fd = -1;
            return propio;
        }
        // Replaced or gone: the next round opens what the path names now (with O_CREAT, a
        // new file when it is gone; without, -1).
    }
}

int GESTFICH_BloqueaFichero(const char *ruta)
{
    return ruta == nullptr ? -1 : GESTFICHINT_AbreBloqueado(ruta, O_RDONLY, 0);
}

void GESTFICH_DesbloqueaFichero(int descriptor)
{
    if (descriptor >= 0)
        ::close(descriptor);
}
