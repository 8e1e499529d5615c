// Files shared with the control daemon: the change queue (whole lines, open to everyone,
// never interleaved), the one-byte command file, the lock files and the line reader.
#include "gestfich/gestfich.h"
#include "support/cgi_runner.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace cambioip_test;

namespace {

class Gestfich : public ::testing::Test {
  protected:
    void SetUp() override { mascara_ = umask(022); }
    void TearDown() override { umask(mascara_); }
    std::string ruta(const char *nombre) const { return (raiz_.config() / nombre).string(); }
    mode_t modo(const char *nombre) const
    {
        struct stat estado {};
        return stat(ruta(nombre).c_str(), &estado) == 0 ? estado.st_mode & 0777 : 0;
    }
    int encola(const std::string &linea, const char *nombre = "fileschanged.list") const
    {
        return GESTFICH_AddFiletoChanges(linea.data(), static_cast<long>(linea.size()), ruta(nombre).c_str());
    }
    TempRoot raiz_;
    mode_t mascara_ = 0;
};

TEST_F(Gestfich, TheQueueAppendsWholeLinesAndIsOpenToEveryoneAfterEachWrite)
{
    // What cannot be appended is refused and creates nothing.
    EXPECT_EQ(GESTFICH_AddFiletoChanges("x", 0, ruta("fileschanged.list").c_str()), -1);
    EXPECT_EQ(GESTFICH_AddFiletoChanges("x", -3, ruta("fileschanged.list").c_str()), -1);
    EXPECT_EQ(encola("x", "missing/list"), -1);
    EXPECT_EQ(raiz_.listing(), std::vector<std::string>{});
    const std::string linea = "network.10.0.0.21\n";
    ASSERT_EQ(encola(linea), 0);
    EXPECT_EQ(modo("fileschanged.list"), 0666u);
    chmod(ruta("fileschanged.list").c_str(), 0600);
    ASSERT_EQ(encola(linea), 0);
    EXPECT_EQ(raiz_.read("config/fileschanged.list"), linea + linea) << "nothing is deduplicated";
    EXPECT_EQ(modo("fileschanged.list"), 0666u);
}

TEST_F(Gestfich, ConcurrentAppendsNeverInterleaveALine)
{
    // Lines far longer than a stdio buffer: only one write on an append descriptor keeps them whole.
    const std::string letras = "abcd";
    for (char letra : letras)
        if (fork() == 0) {
            for (int i = 0; i < 200; ++i)
                if (encola(std::string(20000, letra) + "\n") != 0)
                    _exit(1);
            _exit(0);
        }
    for (int estado = 0; wait(&estado) > 0;)
        EXPECT_TRUE(WIFEXITED(estado) && WEXITSTATUS(estado) == 0);
    std::istringstream cola(raiz_.read("config/fileschanged.list"));
    int cuenta = 0;
    for (std::string linea; std::getline(cola, linea); ++cuenta)
        ASSERT_EQ(linea, std::string(20000, linea.empty() ? '?' : linea[0])) << "line " << cuenta;
    EXPECT_EQ(cuenta, 4 * 200);
}

// True once /proc/locks shows a process waiting for the flock of the file with this inode.
bool alguienEspera(ino_t inodo)
{
    const std::string marca = ":" + std::to_string(inodo) + " ";
    std::ifstream cerrojos("/proc/locks");
    for (std::string linea; std::getline(cerrojos, linea);)
        if (linea.find("->") != std::string::npos && linea.find(marca) != std::string::npos)
            return true;
    return false;
}

TEST_F(Gestfich, ALineAppendedWhileTheDaemonTakesTheQueueGoesToTheNewQueue)
{
    // The daemon holds the queue's flock, a save waits for it with the queue open, and the
    // daemon renames the queue away, reads it and lets go: the save's line must land in a
    // new queue at the path, not in the file the daemon has already read.
    const std::string viejo = "network.010.000.000.022\n", nuevo = "network.010.000.000.021\n";
    ASSERT_EQ(encola(viejo), 0);
    const int daemon = open(ruta("fileschanged.list").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_GE(daemon, 0);
    ASSERT_EQ(flock(daemon, LOCK_EX), 0);
    struct stat cola {};
    ASSERT_EQ(fstat(daemon, &cola), 0);
    int resultado = -1;
    std::thread guardado([&] { resultado = encola(nuevo); });
    bool espera = false;
    for (int i = 0; i < 500 && !(espera = alguienEspera(cola.st_ino)); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_TRUE(espera) << "the save never waited for the queue's lock";
    ASSERT_EQ(rename(ruta("fileschanged.list").c_str(), ruta("fileschanged.list.daemon").c_str()), 0);
    close(daemon);
    guardado.join();
    EXPECT_EQ(resultado, 0);
    EXPECT_EQ(raiz_.read("config/fileschanged.list.daemon"), viejo);
    EXPECT_EQ(raiz_.read("config/fileschanged.list"), nuevo);
}

TEST_F(Gestfich, TheCommandFileHoldsExactlyOneByteAndItsStreamIsOnlyOne)
{
    EXPECT_EQ(GESTFICH_ReadCommandfromFile(ruta("command.msg").c_str()), 255) << "missing";
    raiz_.write("config/command.msg", "");
    EXPECT_EQ(GESTFICH_ReadCommandfromFile(ruta("command.msg").c_str()), 255) << "empty";
    raiz_.write("config/command.msg", "old contents");
    chmod(ruta("command.msg").c_str(), 0600);
    ASSERT_EQ(GESTFICH_WriteCommandtoFile(GESTFICH_ComandoCambioMaster, ruta("command.msg").c_str()), 0);
    EXPECT_EQ(raiz_.read("config/command.msg"), "2");
    EXPECT_EQ(modo("command.msg"), 0666u);
    EXPECT_EQ(GESTFICH_ReadCommandfromFile(ruta("command.msg").c_str()), 50);
    EXPECT_EQ(GESTFICH_WriteCommandtoFile(50, ruta("missing/command.msg").c_str()), -1);
    // The module's one command stream.
    EXPECT_EQ(GESTFICHINT_WriteCommandFile(1), -1) << "nothing open yet";
    EXPECT_EQ(GESTFICHINT_ReadCommandFile(), 255);
    EXPECT_EQ(GESTFICHINT_CloseCommandFile(), -1);
    ASSERT_EQ(GESTFICHINT_CreateCommandFile(ruta("cmd").c_str(), 0), 0);
    EXPECT_EQ(GESTFICHINT_WriteCommandFile('7'), 0);
    EXPECT_EQ(GESTFICHINT_CloseCommandFile(), 0);
    ASSERT_EQ(GESTFICHINT_CreateCommandFile(ruta("cmd").c_str(), 1), 0);
    EXPECT_EQ(GESTFICHINT_ReadCommandFile(), '7');
    EXPECT_EQ(GESTFICHINT_ReadCommandFile(), 255);
    // The one-shot read closes the open stream.
    EXPECT_EQ(GESTFICH_ReadCommandfromFile(ruta("cmd").c_str()), '7');
    EXPECT_EQ(GESTFICHINT_CloseCommandFile(), -1);
}

TEST_F(Gestfich, ALockFileCountsByItsExistenceAndTheWebVersionNeedsTenBytes)
{
    // CheckFile answers -1 ("true") when the file exists.
    EXPECT_EQ(GESTFICHINT_CheckFile(ruta("web.lock").c_str()), 0);
    ASSERT_EQ(GESTFICHINT_CreateFile(ruta("web.lock").c_str()), 0);
    EXPECT_EQ(GESTFICHINT_CheckFile(ruta("web.lock").c_str()), -1);
    EXPECT_EQ(GESTFICHINT_DeleteFile(ruta("web.lock").c_str()), 0);
    EXPECT_EQ(GESTFICHINT_CheckFile(ruta("web.lock").c_str()), 0);
    EXPECT_NE(GESTFICHINT_DeleteFile(ruta("web.lock").c_str()), 0);
    EXPECT_EQ(GESTFICHINT_CreateFile(ruta("missing/web.lock").c_str()), -1);
    // The web version file: its first ten bytes, or nothing.
    char version[11];
    raiz_.write("config/short", "123456789");
    EXPECT_EQ(GESTFICHINT_ReadWebVersion(ruta("short").c_str(), version), -1);
    raiz_.write("config/long", "0123456789ABC");
    ASSERT_EQ(GESTFICHINT_ReadWebVersion(ruta("long").c_str(), version), 0);
    EXPECT_STREQ(version, "0123456789");
    EXPECT_EQ(GESTFICHINT_ReadWebVersion(ruta("missing").c_str(), version), -1);
}

TEST_F(Gestfich, ReadFromChangesReadsOneLineWithinTheCapacity)
{
    // (text, capacity, result, line, capacity afterwards)
    const struct { const char *texto; size_t capacidad; int resultado; const char *linea; size_t despues; } casos[] = {
        {"abc\nnext\n", 8, 0, "abc", 4}, {"abc", 8, -1, "abc", 8}, {"", 8, -1, "", 8}, {"\n", 8, 0, "", 1},
        {"abcdef\n", 4, -1, "abcd", 4}, {"abc\n", 4, 0, "abc", 4}, {"abc\n", 0, -1, "", 0}};
    for (const auto &caso : casos) {
        raiz_.write("config/list", caso.texto);
        std::FILE *fichero = GESTFICHINT_OpenFile(ruta("list").c_str());
        ASSERT_NE(fichero, nullptr);
        char buffer[16];
        std::memset(buffer, 'Z', sizeof buffer);
        size_t capacidad = caso.capacidad;
        EXPECT_EQ(GESTFICH_ReadFromChanges(buffer, &capacidad, fichero), caso.resultado) << caso.texto;
        EXPECT_EQ(std::string(buffer, strnlen(buffer, caso.capacidad)), caso.linea) << caso.texto;
        EXPECT_EQ(capacidad, caso.despues) << caso.texto;
        EXPECT_EQ(buffer[caso.capacidad], 'Z') << "wrote past the capacity";
        EXPECT_EQ(GESTFICHINT_CloseFile(fichero), 0);
    }
    EXPECT_EQ(GESTFICHINT_OpenFile(ruta("missing").c_str()), nullptr);
}

}  // namespace
