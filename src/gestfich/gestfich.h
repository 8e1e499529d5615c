// gestfich: the files through which the CGI talks to the master's control daemon: the
// change queue of unit documents, the one-byte command file, the lock files, and the
// line reader for queue and result files. It knows nothing about units.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <unistd.h>

// A file descriptor closed on every path.
struct GESTFICH_Descriptor {
    int fd;
    explicit GESTFICH_Descriptor(int d) : fd(d) {}
    GESTFICH_Descriptor(const GESTFICH_Descriptor &) = delete;
    GESTFICH_Descriptor &operator=(const GESTFICH_Descriptor &) = delete;
    ~GESTFICH_Descriptor()
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

// Fixed paths of the daemon's files (map them with UTILS_MapeaRuta before use).
inline constexpr const char *GESTFICH_FicheroCambios = "/config/fileschanged.list";
inline constexpr const char *GESTFICH_FicheroComando = "/config/command.msg";
inline constexpr const char *GESTFICH_BloqueoWeb = "/config/web.lock";
inline constexpr const char *GESTFICH_BloqueoControl = "/config/control.lock";
inline constexpr const char *GESTFICH_BloqueoHBK = "/config/HBK.lock";

// Command byte that tells the daemon the master's own document changed ('2').
inline constexpr uint8_t GESTFICH_ComandoCambioMaster = 50;

// Appends the bytes to the file in one write on an append-mode descriptor, so that
// concurrent requests never interleave a line, then gives the file mode 0666.
// -1 for a missing buffer or path, a length below 1, a failed open or a short write.
int GESTFICH_AddFiletoChanges(const void *datos, long longitud, const char *ruta);
// Creates or truncates the file, writes the one command byte, gives it mode 0666.
int GESTFICH_WriteCommandtoFile(uint8_t comando, const char *ruta);
// The first byte of the file, or 255 when it is missing or empty.
uint8_t GESTFICH_ReadCommandfromFile(const char *ruta);
// Reads one line (without its newline) into linea; *capacidad is the buffer size on
// entry and the line length plus 1 on success. -1 at end of file, on a read error or
// when the buffer fills up without a newline.
int GESTFICH_ReadFromChanges(char *linea, size_t *capacidad, std::FILE *fichero);

// Replaces the file with the bytes atomically: they are written to a temporary file in the
// same folder (".<name>.tmp" and six characters, a name the unit-file scan never matches),
// flushed to disk and renamed over the file, which keeps its permission bits (a new file
// gets 0644); a file that is a link is replaced at its target. A failed replacement leaves
// the file as it was and no temporary file: -1 with errno set, and *paso (when given)
// naming the step that failed. On success *paso is null, or names the folder sync that
// could not be made durable.
int GESTFICH_GuardaAtomico(const char *ruta, const void *datos, size_t longitud, const char **paso = nullptr);
// The same for a file shared with the daemon, which gets mode 0666 like the queue.
int GESTFICH_ReemplazaFichero(const char *ruta, const void *datos, size_t longitud);
// Removes the temporary files that replacements of this file left behind when they were
// cut short (a killed request). Only safe while holding the file's lock: the number
// removed, or -1 when the folder cannot be read.
int GESTFICH_BorraTemporales(const char *ruta);
// Takes the exclusive lock of the file the path names, waiting for the holder, and
// returns the descriptor that holds it (-1 when the file cannot be opened). Writers that
// load, change and replace a file take it first, so they take turns; the lock dies with
// the descriptor or the process, so a crashed holder never blocks the file.
int GESTFICH_BloqueaFichero(const char *ruta);
void GESTFICH_DesbloqueaFichero(int descriptor);

// -1 when the file can be opened for reading (it exists), 0 when not.
int GESTFICHINT_CheckFile(const char *ruta);
int GESTFICHINT_CreateFile(const char *ruta);
int GESTFICHINT_DeleteFile(const char *ruta);
std::FILE *GESTFICHINT_OpenFile(const char *ruta);
int GESTFICHINT_CloseFile(std::FILE *fichero);

// The module's one open command-file stream.
int GESTFICHINT_CreateCommandFile(const char *ruta, int lectura);
int GESTFICHINT_WriteCommandFile(uint8_t comando);
uint8_t GESTFICHINT_ReadCommandFile();
int GESTFICHINT_CloseCommandFile();

// The first 10 bytes of the file, terminated; -1 when missing or shorter.
int GESTFICHINT_ReadWebVersion(const char *ruta, char *version);
