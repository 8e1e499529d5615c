// Support helpers: fixed paths under CAMBIOIP_ROOT, the load pause setting, the safe
// formatter, and the circular trace log (creation, the wrap at the size limit through
// every entry point, how messages are written to standard output).
#include "utils/utils.h"
#include "support/cgi_runner.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <iterator>
#include <regex>

using namespace cambioip_test;

namespace {

void ponVariable(const char *nombre, const char *valor)
{
    valor != nullptr ? setenv(nombre, valor, 1) : unsetenv(nombre);
}

TEST(Entorno, FixedPathsAreResolvedUnderTheRootAndThePauseIsTheConfiguredOne)
{
    const struct { const char *raiz, *ruta, *mapeada; } casos[] = {  // raiz nullptr: unset
        {nullptr, "/config", "/config"}, {"", "/config/web.lock", "/config/web.lock"},
        {"/tmp/r", "/config", "/tmp/r/config"}, {"/tmp/r/", "/upload/listupdate.prg", "/tmp/r/upload/listupdate.prg"},
        {"/tmp/r//", "/root/tune_stb.sh", "/tmp/r/root/tune_stb.sh"},
        {"/tmp/r", "/www/jaula/config", "/tmp/r/www/jaula/config"}, {"/", "/config", "/config"}};
    for (const auto &caso : casos) {
        ponVariable("CAMBIOIP_ROOT", caso.raiz);
        EXPECT_EQ(UTILS_MapeaRuta(caso.ruta), caso.mapeada) << testing::PrintToString(caso.raiz);
    }
    unsetenv("CAMBIOIP_ROOT");
    // The load pause: the system's quarter second unless a whole number is given.
    const struct { const char *valor; long ms; } pausas[] = {  // valor nullptr: unset
        {nullptr, 250}, {"", 250}, {"0", 0}, {"10", 10}, {"-1", 250}, {"abc", 250}, {"5ms", 250}};
    for (const auto &caso : pausas) {
        ponVariable("CAMBIOIP_LOAD_PAUSE_MS", caso.valor);
        EXPECT_EQ(UTILS_PausaCargaMs(), caso.ms) << testing::PrintToString(caso.valor);
    }
    setenv("CAMBIOIP_LOAD_PAUSE_MS", "0", 1);
}

TEST(Formatea, GrowsToTheWholeTextWithoutTruncation)
{
    EXPECT_EQ(UTILS_Formatea("%s-%03d", "unit", 7), "unit-007");
    const std::string grande(100000, 'x');
    EXPECT_EQ(UTILS_Formatea("<td>%s</td>%d", grande.c_str(), 5), "<td>" + grande + "</td>5");
    EXPECT_EQ(UTILS_Formatea("%s", ""), "");
}

const std::string banner = "--------- HBK V7Q (Fin Fichero. hbkv7q.log Circular) ---------\n";

// Standard output of the call.
template <typename F>
std::string salidaDe(F llamada)
{
    testing::internal::CaptureStdout();
    llamada();
    return testing::internal::GetCapturedStdout();
}

// Every test starts and ends with no log open.
class Log : public ::testing::Test {
  protected:
    void TearDown() override
    {
        if (file_log != nullptr)
            std::fclose(file_log);
        file_log = nullptr;
    }
    std::string ruta(const char *nombre) const { return (raiz_.config() / nombre).string(); }
    TempRoot raiz_;
};

TEST_F(Log, CreationResults)
{
    EXPECT_EQ(UTILS_Crea_FicheroLog(nullptr, 100), 252);
    EXPECT_EQ(UTILS_Crea_FicheroLog(ruta("no/hbkv7q.log").c_str(), 100), 253);
    raiz_.write("config/hbkv7q.log", "previous contents");
    ASSERT_EQ(UTILS_Crea_FicheroLog(ruta("hbkv7q.log").c_str(), 0), 0);
    EXPECT_EQ(raiz_.read("config/hbkv7q.log"), "") << "the log starts empty";
    EXPECT_EQ(max_size_file_log, 102400U) << "limit 0 means the default";
    EXPECT_STREQ(ucNombreFichero, ruta("hbkv7q.log").c_str());
    // A second log is refused and the first one stays.
    std::FILE *primero = file_log;
    EXPECT_EQ(UTILS_Crea_FicheroLog(ruta("segundo.log").c_str(), 300), 254);
    EXPECT_EQ(file_log, primero);
    EXPECT_EQ(max_size_file_log, 102400U);
    EXPECT_FALSE(raiz_.exists("config/segundo.log"));
}

// The wrap check at the start of every entry point, at positions around a limit of 64.
TEST_F(Log, TheLogIsRewoundOnceItsPositionReachesTheLimitAndOnlyThePositionMoves)
{
    using Punto = int (*)();
    const Punto puntos[] = {[] { printf_hbk_v7q("msg"); return 1; }, [] { printf_hbk_v7q_t("msg"); return 1; },
                            [] { perror_hbk_v7q(EIO, "msg"); return 1; }, rewind_hbk_v7q};
    for (size_t i = 0; i < std::size(puntos); ++i)
        for (const long posicion : {0L, 63L, 64L, 74L}) {
            SCOPED_TRACE(testing::Message() << "entry point " << i << " at " << posicion);
            const Punto punto = puntos[i];
            const bool vuelve = posicion >= 64;
            ASSERT_EQ(UTILS_Crea_FicheroLog(ruta("hbkv7q.log").c_str(), 64), 0);
            std::fputs((std::string(static_cast<size_t>(posicion), 'x')).c_str(), file_log);
            int resultado = -1;
            const std::string salida = salidaDe([&] { resultado = punto(); });
            EXPECT_EQ(salida.rfind(banner, 0) == 0, vuelve) << salida;
            EXPECT_EQ(resultado, vuelve && punto == rewind_hbk_v7q ? 0 : 1);
            EXPECT_EQ(std::ftell(file_log), vuelve ? 0L : posicion);
            std::fputs("ab", file_log);
            std::fclose(file_log);
            file_log = nullptr;
            EXPECT_EQ(raiz_.read("config/hbkv7q.log"), vuelve ? "ab" + std::string(posicion - 2, 'x')
                                                              : std::string(posicion, 'x') + "ab");
        }
    EXPECT_EQ(salidaDe([] { EXPECT_EQ(rewind_hbk_v7q(), 1); }), "") << "without a log nothing is rewound";
}

TEST(Formato, WritesEachConversionAsTheTraceAlwaysHas)
{
    const std::pair<void (*)(), const char *> casos[] = {
        {[] { printf_hbk_v7q("100%% listo %%%d", 5); }, "100%% listo %%5"},  // "%%" is written doubled
        {[] { printf_hbk_v7q("[%d][%i]", -56, 7); }, "[-56][7]"},
        {[] { printf_hbk_v7q("%d", INT_MIN); }, "-2147483648"},
        {[] { printf_hbk_v7q("%u %x %X %X", 4294967295U, 0xBEEFU, 0xbeefU, 0U); }, "4294967295 beef BEEF 0"},
        {[] { printf_hbk_v7q("<%c>%s=%s", 'Z', "k", static_cast<const char *>(nullptr)); }, "<Z>k=(null)"},
        {[] { printf_hbk_v7q("%o/%02X/%5d|%-4s|", 8U, 5U, -3, "ab"); }, "10/05/   -3|ab  |"},
        {[] { printf_hbk_v7q("%*d|%d", 4, 7, 8); }, "   7|8"},
        {[] { printf_hbk_v7q("%ld %lu %llx %d", -1234567890123L, 4294967296UL, 0x1FFFFFFFFULL, 9); },
         "-1234567890123 4294967296 1ffffffff 9"},
        // "%E" takes a double and prints nothing.
        {[] { printf_hbk_v7q("[%E][%d] %.2f", 1.5, 7, 3.14159); }, "[][7] 3.14"},
        {[] { int n = 7; printf_hbk_v7q("%n%d", &n, 5); EXPECT_EQ(n, 7) << "written through %n"; }, "5"},
        {[] { printf_hbk_v7q("%y%d fin %", 1); }, "%y1 fin %"}};
    for (const auto &[llamada, esperado] : casos)
        EXPECT_EQ(salidaDe(llamada), esperado);
}

// "[h:mm:ss]": hours since the epoch, then minutes and seconds; then the text, the error
// number and the system's text.
TEST(Formato, PerrorStampsTheMessageWithTheTime)
{
    const long antes = static_cast<long>(std::time(nullptr));
    const std::string salida = salidaDe([] { perror_hbk_v7q(ENOENT, "LOAD_XML_RDONLY:[ERROR]\n"); });
    const long despues = static_cast<long>(std::time(nullptr));
    std::smatch sello;
    ASSERT_TRUE(std::regex_search(salida, sello, std::regex(R"(^\[(\d+):([0-5]\d):([0-5]\d)\])"))) << salida;
    EXPECT_EQ(sello.suffix().str(), "LOAD_XML_RDONLY:[ERROR]\n (errno=" + std::to_string(ENOENT) +
                                        "): " + std::strerror(ENOENT) + "\n");
    const long t = std::stol(sello[1]) * 3600 + std::stol(sello[2]) * 60 + std::stol(sello[3]);
    EXPECT_GE(t, antes);
    EXPECT_LE(t, despues);
}

TEST(Escapa, EveryMarkupCharacterAndNothingElse)
{
    for (const auto &[texto, escapado] :
         {std::pair{"&", "&amp;"}, {"<", "&lt;"}, {">", "&gt;"}, {"\"", "&quot;"}, {"'", "&#39;"}, {"", ""},
          {"&amp;", "&amp;amp;"}, {"Señal € 1_2 %s\t;", "Señal € 1_2 %s\t;"},
          {"a<b>c&\"d'", "a&lt;b&gt;c&amp;&quot;d&#39;"}})
        EXPECT_EQ(UTILS_Escapa(texto), escapado) << texto;
}

}  // namespace
