// Form decoding: the form text of GET and POST requests (with the guards on the announced
// length), in-place URL decoding, the name=value pairs, the cut to a destination's
// capacity, the shell assignment and the per-line value lists.
#include "proccgilib/proccgilib.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>
#include <utility>

namespace {

void ponVariable(const char *nombre, const char *valor)
{
    valor != nullptr ? setenv(nombre, valor, 1) : unsetenv(nombre);
}

// The form text of the request, with the body on standard input as a web server may pass
// it, and what standard error received.
std::pair<PROCCGI_Texto, std::string> formulario(const std::string &cuerpo)
{
    std::FILE *fichero = std::tmpfile();
    std::fwrite(cuerpo.data(), 1, cuerpo.size(), fichero);
    std::rewind(fichero);
    const int entrada = dup(STDIN_FILENO);
    dup2(fileno(fichero), STDIN_FILENO);
    testing::internal::CaptureStderr();
    PROCCGI_Texto texto(LoadInput());
    std::string aviso = testing::internal::GetCapturedStderr();
    dup2(entrada, STDIN_FILENO);
    close(entrada);
    std::fclose(fichero);
    return {std::move(texto), std::move(aviso)};
}

TEST(LoadInput, ReadsTheFormTextOfItsKindAndRefusesABadLength)
{
    const std::string unMiB(1024 * 1024, 'x');
    // (method, QUERY_STRING, CONTENT_LENGTH, body, form text, standard error); nullptr: unset
    // or none; a standard error of "" stands for one line about the refused length.
    const struct { const char *metodo, *consulta, *longitud; std::string cuerpo; const char *texto, *aviso; }
        casos[] = {
        {"GET", "command=3&x=%41", nullptr, "", "command=3&x=%41", nullptr},  // undecoded
        {"GET", nullptr, nullptr, "", nullptr, nullptr},
        {"GETX", "command=3", nullptr, "", nullptr, nullptr},
        {"get", "command=3", nullptr, "", nullptr, nullptr},
        {nullptr, "command=3", nullptr, "", nullptr, nullptr},
        {"POST", "command=1", "9", "command=5", "command=5", nullptr},  // the query is not read
        {"POST", nullptr, "3", "command=5", "com", nullptr},           // only the announced length
        {"POST", nullptr, "0", "command=5", nullptr, nullptr},
        {"POST", nullptr, "10", "com", "com", "proccgi -- error reading post data, 3 bytes read, 10 expedted\n"},
        {"POST", nullptr, nullptr, "command=5", nullptr, ""},
        {"POST", nullptr, "", "command=5", nullptr, ""},
        {"POST", nullptr, "-9", "command=5", nullptr, ""},
        {"POST", nullptr, "9x", "command=5", nullptr, ""},
        {"POST", nullptr, "1048577", unMiB + "x", nullptr, ""},
        {"POST", nullptr, "99999999999999999999999", "command=5", nullptr, ""},
        {"POST", nullptr, "1048576", unMiB, unMiB.c_str(), nullptr}};
    for (const auto &caso : casos) {
        SCOPED_TRACE(testing::Message() << testing::PrintToString(caso.metodo) << " length "
                                        << testing::PrintToString(caso.longitud));
        ponVariable("REQUEST_METHOD", caso.metodo);
        ponVariable("QUERY_STRING", caso.consulta);
        ponVariable("CONTENT_LENGTH", caso.longitud);
        const auto [texto, aviso] = formulario(caso.cuerpo);
        if (caso.texto == nullptr)
            EXPECT_EQ(texto.get(), nullptr);
        else
            EXPECT_STREQ(texto.get(), caso.texto);
        if (caso.aviso == nullptr || caso.aviso[0] != '\0') {
            EXPECT_EQ(aviso, caso.aviso != nullptr ? caso.aviso : "");
        } else {
            EXPECT_NE(aviso.find("CONTENT_LENGTH"), std::string::npos) << aviso;
            EXPECT_EQ(std::count(aviso.begin(), aviso.end(), '\n'), 1) << aviso;
        }
    }
}

TEST(GetValueKey, CopiesTheDecodedValueOfAnExactlyMatchingKeyOnly)
{
    // (pair, destination's name, what the destination holds afterwards; it starts as "untouched")
    const struct { const char *par, *clave, *valor; } casos[] = {
        {"a%3Db=1", "a", "b=1"}, {"a=b&c=d", "a", "b&c=d"}, {"name=A+B%2Fc%zz", "name", "A B/c%zz"},
        {"a=%41%62", "a", "Ab"}, {"a=%4", "a", "%4"}, {"a=x%", "a", "x%"}, {"a=%%41", "a", "%A"},
        {"a=%c3%B1", "a", "\xc3\xb1"}, {"a=a%00b", "a", "a"}, {"k%5F2=x", "k_2", "x"}, {"_k1=v", "_k1", "v"},
        {"a=", "a", ""}, {" \ta=1", "a", "1"},  // white space before the decoding is skipped, not after
        {"+a=1", "a", "untouched"}, {"9x=1", "9x", "untouched"}, {"=1", "", "untouched"},
        {"command", "command", "untouched"}, {"a-b=1", "a-b", "untouched"}, {"a+=1", "a", "untouched"},
        {"ip=1", "IP", "untouched"}, {"ip=1", "i", "untouched"}, {"ipx=1", "ip", "untouched"},
        {nullptr, "a", "untouched"}};
    for (const auto &caso : casos) {
        char destino[64] = "untouched";
        GetValueKey(caso.par, {{caso.clave, destino, 16}});
        EXPECT_STREQ(destino, caso.valor) << testing::PrintToString(caso.par) << " for " << caso.clave;
    }
    // Every matching destination receives the value; no other is touched.
    char primero[8] = "", segundo[8] = "", otro[8] = "keep", vacio[8] = "keep";
    GetValueKey("ip=10", {{"ip", primero}, {"IP", otro}, {"ip", segundo}, {nullptr, vacio}, {"ip", vacio, 0}});
    EXPECT_STREQ(primero, "10");
    EXPECT_STREQ(segundo, "10");
    EXPECT_STREQ(otro, "keep");
    EXPECT_STREQ(vacio, "keep");
}

TEST(GetValueKey, CutsToTheDestinationsCapacityAtACharacterBoundary)
{
    const struct { const char *valor; size_t capacidad; const char *queda; } casos[] = {
        {"abcdef", 4, "abc"}, {"abc", 4, "abc"}, {"abc", 1, ""}, {"ab%C3%B1", 4, "ab"}, {"ab%C3%B1", 5, "ab\xc3\xb1"},
        {"%F0%9F%93%BAx", 4, ""}, {"%F0%9F%93%BAx", 5, "\xf0\x9f\x93\xba"}};
    for (const auto &caso : casos) {
        char destino[32];
        std::memset(destino, 'Z', sizeof destino);
        GetValueKey((std::string("a=") + caso.valor).c_str(), {{"a", destino, caso.capacidad}});
        EXPECT_STREQ(destino, caso.queda) << caso.valor << " into " << caso.capacidad;
        EXPECT_EQ(std::string(destino + caso.capacidad, 4), "ZZZZ") << "wrote past the capacity";
    }
}

TEST(GetValueKeys, SplitsACopyAndLeavesTheTextWhole)
{
    const std::string formulario = "x=1&&ip=10.0.0.1&mask=255.0.0.0&ip=10.0.0.2";
    char ip[20] = "", mascara[20] = "", gw[20] = "none";
    GetValueKeys(formulario.c_str(), {{"ip", ip}, {"mask", mascara}, {"gw", gw}});
    EXPECT_STREQ(ip, "10.0.0.2") << "a later pair of the same key wins";
    EXPECT_STREQ(mascara, "255.0.0.0");
    EXPECT_STREQ(gw, "none");
    EXPECT_EQ(formulario, "x=1&&ip=10.0.0.1&mask=255.0.0.0&ip=10.0.0.2");
}

TEST(HandleString, PrintsAShellAssignmentWithEscapesAndNothingForABadKey)
{
    testing::internal::CaptureStdout();
    HandleString("na%24me=1");
    HandleString("9=1");
    HandleString("name=a%22b%5Cc%60d%24e+f");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "FORM_name=\"a\\\"b\\\\c\\`d\\$e f\"\n");
}

TEST(ParesLinea, SplitsAtEveryUnderscoreKeepingEmptyValues)
{
    using Pares = std::vector<std::pair<long, std::string>>;
    const std::pair<const char *, Pares> casos[] = {
        {"1_1_3_0", {{1, "1"}, {3, "0"}}}, {"", {}}, {"2", {}}, {"1_My_Channel_2_x", {{1, "My"}, {0, "2"}}},
        {"1__2_x", {{1, ""}, {2, "x"}}}, {"1_a_2", {{1, "a"}}}, {"x_5", {{0, "5"}}}, {"1_", {{1, ""}}}};
    for (const auto &[lista, esperados] : casos) {
        Pares leidos;
        for (const PROCCGI_ParLinea &p : PROCCGI_ParesLinea(lista))
            leidos.emplace_back(p.linea, p.valor);
        EXPECT_EQ(leidos, esperados) << lista;
    }
}

}  // namespace
