// Circular trace log: creation results, the wrap at the size limit, and the way
// messages are written to standard output.
#include "utils/utils.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

namespace fs = std::filesystem;

const std::string banner = "--------- HBK V7Q (Fin Fichero. hbkv7q.log Circular) ---------\n";

// Every test starts with no log open, in a folder of its own, and leaves the
// process-wide log state as it found it.
class LogTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        previoFichero_ = file_log;
        previoLimite_ = max_size_file_log;
        std::memcpy(previoNombre_, ucNombreFichero, sizeof(previoNombre_));
        file_log = nullptr;
        char plantilla[] = "/tmp/log_test_XXXXXX";
        ASSERT_NE(mkdtemp(plantilla), nullptr);
        carpeta_ = plantilla;
    }

    void TearDown() override
    {
        if (file_log != nullptr && file_log != previoFichero_)
            std::fclose(file_log);
        file_log = previoFichero_;
        max_size_file_log = previoLimite_;
        std::memcpy(ucNombreFichero, previoNombre_, sizeof(previoNombre_));
        std::error_code ignorado;
        fs::remove_all(carpeta_, ignorado);
    }

    std::string ruta(const char *nombre) const { return (carpeta_ / nombre).string(); }

    // Leaves the log file's position at `bytes` by writing that many bytes into it.
    static void llenaLog(long bytes)
    {
        const std::string relleno(static_cast<size_t>(bytes), 'x');
        ASSERT_EQ(std::fwrite(relleno.data(), 1, relleno.size(), file_log), relleno.size());
        ASSERT_EQ(std::fflush(file_log), 0);
        ASSERT_EQ(std::ftell(file_log), bytes);
    }

    static std::string contenido(const std::string &fichero)
    {
        std::ifstream entrada(fichero, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(entrada), {});
    }

    fs::path carpeta_;

private:
    std::FILE *previoFichero_ = nullptr;
    uint32_t previoLimite_ = 0;
    char previoNombre_[sizeof(ucNombreFichero)] = {};
};

TEST_F(LogTest, NullPathIsRefused)
{
    EXPECT_EQ(UTILS_Crea_FicheroLog(nullptr, 100), 252);
    EXPECT_EQ(file_log, nullptr);
}

TEST_F(LogTest, UnopenableFileGives253)
{
    EXPECT_EQ(UTILS_Crea_FicheroLog(ruta("no/existe/hbkv7q.log").c_str(), 100), 253);
    EXPECT_EQ(file_log, nullptr);
}

TEST_F(LogTest, LimitZeroMeansDefault)
{
    ASSERT_EQ(UTILS_Crea_FicheroLog(ruta("hbkv7q.log").c_str(), 0), 0);
    EXPECT_NE(file_log, nullptr);
    EXPECT_EQ(max_size_file_log, 102400U);
    EXPECT_STREQ(ucNombreFichero, ruta("hbkv7q.log").c_str());
}

TEST_F(LogTest, GivenLimitIsKept)
{
    ASSERT_EQ(UTILS_Crea_FicheroLog(ruta("hbkv7q.log").c_str(), 500), 0);
    EXPECT_EQ(max_size_file_log, 500U);
}

TEST_F(LogTest, CreationTruncatesAnExistingFile)
{
    std::ofstream(ruta("hbkv7q.log")) << "contenido anterior";
    ASSERT_EQ(UTILS_Crea_FicheroLog(ruta("hbkv7q.log").c_str(), 0), 0);
    EXPECT_EQ(fs::file_size(ruta("hbkv7q.log")), 0U);
}

TEST_F(LogTest, SecondCreationKeepsTheFirstLog)
{
    ASSERT_EQ(UTILS_Crea_FicheroLog(ruta("primero.log").c_str(), 300), 0);
    std::FILE *primero = file_log;
    EXPECT_EQ(UTILS_Crea_FicheroLog(ruta("segundo.log").c_str(), 0), 254);
    EXPECT_EQ(file_log, primero);
    EXPECT_EQ(max_size_file_log, 300U);
    EXPECT_STREQ(ucNombreFichero, ruta("primero.log").c_str());
    EXPECT_FALSE(fs::exists(ruta("segundo.log")));
}

TEST_F(LogTest, WithoutLogMessagesStillPrint)
{
    ASSERT_EQ(file_log, nullptr);
    testing::internal::CaptureStdout();
    printf_hbk_v7q("sin log %d\n", 3);
    const int resultado = rewind_hbk_v7q();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "sin log 3\n");
    EXPECT_EQ(resultado, 1);
}

// The wrap check is the same at the start of every entry point.
struct CasoVuelta {
    const char *nombre;
    long posicion;   // log position relative to the limit of 64 bytes
    bool vuelve;     // banner printed and the log rewound
};

void PrintTo(const CasoVuelta &caso, std::ostream *salida)
{
    *salida << caso.nombre;
}

class LogVueltaTest : public LogTest, public ::testing::WithParamInterface<CasoVuelta> {};

constexpr uint32_t limitePrueba = 64;

TEST_P(LogVueltaTest, PrintfRewindsAtTheLimit)
{
    const CasoVuelta &caso = GetParam();
    ASSERT_EQ(UTILS_Crea_FicheroLog(ruta("hbkv7q.log").c_str(), limitePrueba), 0);
    llenaLog(caso.posicion);
    testing::internal::CaptureStdout();
    printf_hbk_v7q("msg");
    const std::string salida = testing::internal::GetCapturedStdout();
    EXPECT_EQ(salida, caso.vuelve ? banner + "msg" : std::string("msg"));
    EXPECT_EQ(std::ftell(file_log), caso.vuelve ? 0L : caso.posicion);
}

TEST_P(LogVueltaTest, TimestampedPrintfRewindsAtTheLimit)
{
    const CasoVuelta &caso = GetParam();
    ASSERT_EQ(UTILS_Crea_FicheroLog(ruta("hbkv7q.log").c_str(), limitePrueba), 0);
    llenaLog(caso.posicion);
    testing::internal::CaptureStdout();
    printf_hbk_v7q_t("msg");
    const std::string salida = testing::internal::GetCapturedStdout();
    EXPECT_EQ(salida.rfind(banner, 0) == 0, caso.vuelve) << salida;
    EXPECT_EQ(std::ftell(file_log), caso.vuelve ? 0L : caso.posicion);
}

TEST_P(LogVueltaTest, RewindReportsWhatItDid)
{
    const CasoVuelta &caso = GetParam();
    ASSERT_EQ(UTILS_Crea_FicheroLog(ruta("hbkv7q.log").c_str(), limitePrueba), 0);
    llenaLog(caso.posicion);
    testing::internal::CaptureStdout();
    const int resultado = rewind_hbk_v7q();
    const std::string salida = testing::internal::GetCapturedStdout();
    EXPECT_EQ(resultado, caso.vuelve ? 0 : 1);
    EXPECT_EQ(salida, caso.vuelve ? banner : std::string());
    EXPECT_EQ(std::ftell(file_log), caso.vuelve ? 0L : caso.posicion);
}

INSTANTIATE_TEST_SUITE_P(Posiciones, LogVueltaTest,
    ::testing::Values(CasoVuelta{"Vacio", 0, false},
                      CasoVuelta{"UnoAntesDelLimite", limitePrueba - 1, false},
                      CasoVuelta{"EnElLimite", limitePrueba, true},
                      CasoVuelta{"PasadoElLimite", limitePrueba + 10, true}),
    [](const auto &info) { return std::string(info.param.nombre); });

TEST_F(LogTest, RewindOnlyMovesThePosition)
{
    ASSERT_EQ(UTILS_Crea_FicheroLog(ruta("hbkv7q.log").c_str(), 10), 0);
    std::fputs("0123456789", file_log);
    testing::internal::CaptureStdout();
    printf_hbk_v7q("");
    testing::internal::GetCapturedStdout();
    std::fputs("ab", file_log);
    std::fflush(file_log);
    EXPECT_EQ(contenido(ruta("hbkv7q.log")), "ab23456789");
}

// Message formats: each case calls printf_hbk_v7q with its own arguments.
struct CasoFormato {
    const char *nombre;
    void (*llamada)();
    const char *esperado;
};

void PrintTo(const CasoFormato &caso, std::ostream *salida)
{
    *salida << caso.nombre;
}

class FormatoTest : public ::testing::TestWithParam<CasoFormato> {};

TEST_P(FormatoTest, WritesTheExpectedText)
{
    std::FILE *previo = file_log;
    file_log = nullptr;  // no wrap check interferes with the text
    testing::internal::CaptureStdout();
    GetParam().llamada();
    const std::string salida = testing::internal::GetCapturedStdout();
    file_log = previo;
    EXPECT_EQ(salida, GetParam().esperado);
}

INSTANTIATE_TEST_SUITE_P(Conversiones, FormatoTest, ::testing::Values(
    CasoFormato{"Literal", [] { printf_hbk_v7q("texto sin conversiones\n"); },
                "texto sin conversiones\n"},
    CasoFormato{"DoblePorcientoSaleDoble", [] { printf_hbk_v7q("100%% listo"); }, "100%% listo"},
    CasoFormato{"DoblePorcientoNoTomaArgumento", [] { printf_hbk_v7q("%%%d", 5); }, "%%5"},
    CasoFormato{"DecimalPositivo", [] { printf_hbk_v7q("[%d]", 1234); }, "[1234]"},
    CasoFormato{"DecimalNegativo", [] { printf_hbk_v7q("[%d]", -56); }, "[-56]"},
    CasoFormato{"DecimalMinimo", [] { printf_hbk_v7q("%d", INT_MIN); }, "-2147483648"},
    CasoFormato{"Entero", [] { printf_hbk_v7q("%i", -7); }, "-7"},
    CasoFormato{"SinSigno", [] { printf_hbk_v7q("%u", 4294967295U); }, "4294967295"},
    CasoFormato{"HexaMinusculas", [] { printf_hbk_v7q("%x", 0xBEEFU); }, "beef"},
    CasoFormato{"HexaMayusculas", [] { printf_hbk_v7q("%X", 0xbeefU); }, "BEEF"},
    CasoFormato{"HexaCero", [] { printf_hbk_v7q("%X", 0U); }, "0"},
    CasoFormato{"Caracter", [] { printf_hbk_v7q("<%c>", 'Z'); }, "<Z>"},
    CasoFormato{"Cadena", [] { printf_hbk_v7q("%s=%s", "clave", "valor"); }, "clave=valor"},
    CasoFormato{"CadenaNula", [] { printf_hbk_v7q("%s", static_cast<const char *>(nullptr)); },
                "(null)"},
    CasoFormato{"Octal", [] { printf_hbk_v7q("%o", 8U); }, "10"},
    CasoFormato{"AnchoConCeros", [] { printf_hbk_v7q("/%02X/", 5U); }, "/05/"},
    CasoFormato{"AnchoDecimal", [] { printf_hbk_v7q("%5d|", -3); }, "   -3|"},
    CasoFormato{"AlineadoIzquierda", [] { printf_hbk_v7q("%-4s|", "ab"); }, "ab  |"},
    CasoFormato{"AnchoComoArgumento", [] { printf_hbk_v7q("%*d|%d", 4, 7, 8); }, "   7|8"},
    CasoFormato{"Largo", [] { printf_hbk_v7q("%ld %d", -1234567890123L, 9); }, "-1234567890123 9"},
    CasoFormato{"LargoSinSigno", [] { printf_hbk_v7q("%lu %llx", 4294967296UL, 0x1FFFFFFFFULL); },
                "4294967296 1ffffffff"},
    CasoFormato{"ExponenteTomaUnDouble", [] { printf_hbk_v7q("[%E][%d]", 1.5, 7); }, "[][7]"},
    CasoFormato{"Flotante", [] { printf_hbk_v7q("%.2f %d", 3.14159, 2); }, "3.14 2"},
    CasoFormato{"PorcientoFinal", [] { printf_hbk_v7q("fin %"); }, "fin %"},
    CasoFormato{"LetraDesconocida", [] { printf_hbk_v7q("%y%d", 1); }, "%y1"}),
    [](const auto &info) { return std::string(info.param.nombre); });

// "[h:mm:ss]": hours since the epoch, then minutes and seconds.
TEST_F(LogTest, TimestampPrecedesTheMessage)
{
    const long antes = static_cast<long>(std::time(nullptr));
    testing::internal::CaptureStdout();
    printf_hbk_v7q_t("hola %d\n", 5);
    const std::string salida = testing::internal::GetCapturedStdout();
    const long despues = static_cast<long>(std::time(nullptr));

    long horas = -1;
    int minutos = -1;
    int segundos = -1;
    int consumidos = 0;
    ASSERT_EQ(std::sscanf(salida.c_str(), "[%ld:%2d:%2d]%n", &horas, &minutos, &segundos,
                          &consumidos), 3)
        << salida;
    ASSERT_GE(consumidos, 8) << salida;  // the closing bracket was reached
    EXPECT_EQ(salida.substr(static_cast<size_t>(consumidos)), "hola 5\n");
    EXPECT_EQ(salida[static_cast<size_t>(consumidos) - 4], ':');  // two-digit seconds
    EXPECT_EQ(salida[static_cast<size_t>(consumidos) - 7], ':');  // two-digit minutes
    EXPECT_LT(minutos, 60);
    EXPECT_LT(segundos, 60);
    const long t = horas * 3600 + minutos * 60 + segundos;
    EXPECT_GE(t, antes);
    EXPECT_LE(t, despues);
}

TEST_F(LogTest, PerrorAddsNumberAndSystemText)
{
    testing::internal::CaptureStdout();
    perror_hbk_v7q(ENOENT, "LOAD_XML_RDONLY:[ERROR]\n");
    const std::string salida = testing::internal::GetCapturedStdout();
    const std::string esperado = std::string("]LOAD_XML_RDONLY:[ERROR]\n (errno=") +
                                 std::to_string(ENOENT) + "): " + std::strerror(ENOENT) + "\n";
    ASSERT_GE(salida.size(), esperado.size());
    EXPECT_EQ(salida.substr(salida.size() - esperado.size()), esperado);
    EXPECT_EQ(salida.front(), '[');
}

}  // namespace
