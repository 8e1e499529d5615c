// XML access layer: path patterns, first-match reads and writes, the cut of text read
// into a caller's buffer, hex values, attribute reads for the front panel, loading,
// atomic saves, exact round trips of what the writers store, node insertion and removal.
#include "funciones_XML/funciones_XML.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <libxml/parser.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct LiberaDoc {
    void operator()(xmlDocPtr d) const { xmlFreeDoc(d); }
};
using Doc = std::unique_ptr<xmlDoc, LiberaDoc>;

Doc parsea(const std::string &texto)
{
    return Doc(xmlReadMemory(texto.data(), static_cast<int>(texto.size()), nullptr, "UTF-8", XML_PARSE_NONET));
}

// The document as the saver writes it (no reformatting).
std::string vuelca(xmlDocPtr doc)
{
    xmlChar *memoria = nullptr;
    int longitud = 0;
    xmlDocDumpFormatMemoryEnc(doc, &memoria, &longitud, "UTF-8", 0);
    std::string texto(reinterpret_cast<char *>(memoria), static_cast<size_t>(longitud));
    xmlFree(memoria);
    return texto;
}

std::string leeFichero(const fs::path &ruta)
{
    std::ifstream entrada(ruta, std::ios::binary);
    std::ostringstream texto;
    texto << entrada.rdbuf();
    return texto.str();
}

void escribeFichero(const fs::path &ruta, const std::string &texto)
{
    std::ofstream salida(ruta, std::ios::binary | std::ios::trunc);
    salida << texto;
}

// Standard output of the call (the layer's diagnostics go there).
std::string salidaDe(const std::function<void()> &llamada)
{
    testing::internal::CaptureStdout();
    llamada();
    return testing::internal::GetCapturedStdout();
}

// Text content read into a zero-filled buffer of `tam` bytes.
std::string contenido(xmlDocPtr doc, const char *ruta, unsigned tam = 256)
{
    std::vector<char> buffer(tam + 1, '\0');
    if (FUNCXML_getXMLNodeContent(doc, buffer.data(), 0, tam, "%s", ruta) != 0)
        return "<error>";
    return buffer.data();
}

std::string atributo(xmlDocPtr doc, const char *ruta, const char *nombre, unsigned tam = 256)
{
    std::vector<char> buffer(tam + 1, '\0');
    if (getXML(doc, buffer.data(), nombre, 0, tam, "%s", ruta) != 0)
        return "<error>";
    return buffer.data();
}

// Every test gets a folder of its own and no load pause.
class FuncionesXML : public ::testing::Test {
  protected:
    void SetUp() override
    {
        setenv("CAMBIOIP_LOAD_PAUSE_MS", "0", 1);
        char plantilla[] = "/tmp/funciones_XML_test_XXXXXX";
        ASSERT_NE(mkdtemp(plantilla), nullptr);
        carpeta_ = plantilla;
    }
    void TearDown() override
    {
        std::error_code ignorado;
        fs::remove_all(carpeta_, ignorado);
    }
    fs::path ruta(const char *nombre) const { return carpeta_ / nombre; }
    std::vector<std::string> listado() const
    {
        std::vector<std::string> nombres;
        for (const auto &entrada : fs::directory_iterator(carpeta_))
            nombres.push_back(entrada.path().filename().string());
        std::sort(nombres.begin(), nombres.end());
        return nombres;
    }
    static bool xmllintAcepta(const fs::path &fichero)
    {
        const std::string orden = "xmllint --noout '" + fichero.string() + "'";
        return std::system(orden.c_str()) == 0;
    }

    fs::path carpeta_;
};

// ---------------------------------------------------------------------------
// Content read into the caller's buffer
// ---------------------------------------------------------------------------

struct CasoLectura {
    const char *valor;    // text of <V>
    unsigned tam;         // buffer size passed
    int resultado;
    const char *copiado;  // bytes the buffer holds afterwards (up to tam), '#' = untouched
    const char *salida;   // standard output
};

void PrintTo(const CasoLectura &caso, std::ostream *os)
{
    *os << testing::PrintToString(caso.valor) << " into " << caso.tam << " bytes";
}

class LecturaContenido : public ::testing::TestWithParam<CasoLectura> {};

TEST_P(LecturaContenido, CopiesWholeOrCutsAtACharacterBoundary)
{
    const CasoLectura &caso = GetParam();
    Doc doc = parsea(std::string("<R><V>") + caso.valor + "</V></R>");
    ASSERT_NE(doc, nullptr);
    std::string buffer(caso.tam + 4, '#');
    int resultado = 0;
    const std::string salida =
        salidaDe([&] { resultado = FUNCXML_getXMLNodeContent(doc.get(), buffer.data(), 0, caso.tam, "/R/V"); });
    EXPECT_EQ(resultado, caso.resultado);
    EXPECT_EQ(salida, caso.salida);
    // No terminator is written: the byte after the copy keeps the caller's fill.
    std::string esperado = caso.copiado;
    esperado.resize(caso.tam + 4, '#');
    EXPECT_EQ(buffer, esperado);
}

INSTANTIATE_TEST_SUITE_P(
    Casos, LecturaContenido,
    ::testing::Values(
        CasoLectura{"abcd", 4, 0, "abcd", ""},                        // exactly the size: whole
        CasoLectura{"abcde", 4, 0, "abc", ""},                        // one more: size - 1
        CasoLectura{"abc", 8, 0, "abc", ""},
        CasoLectura{"\xC3\xB1", 2, 0, "\xC3\xB1", ""},                 // ñ fills 2 bytes
        CasoLectura{"a\xC3\xB1" "b", 3, 0, "a", ""},                   // cut inside ñ
        CasoLectura{"ab\xE2\x82\xAC", 4, 0, "ab", ""},                 // cut inside €
        CasoLectura{"ab\xE2\x82\xAC", 3, 0, "ab", ""},                 // cut at the lead byte of €
        CasoLectura{"a\xF0\x9F\x98\x80" "b", 5, 0, "a", ""},           // cut inside a 4-byte character
        CasoLectura{"a\xF0\x9F\x98\x80" "b", 6, 0, "a\xF0\x9F\x98\x80" "b", ""},
        CasoLectura{"a\xF0\x9F\x98\x80" "b", 2, 0, "a", ""},
        CasoLectura{"\xC3\x91" "and\xC3\xBA", 7, 0, "\xC3\x91" "and\xC3\xBA", ""},
        CasoLectura{"\xC3\x91" "and\xC3\xBA", 6, 0, "\xC3\x91" "and", ""},
        CasoLectura{"ab", 1, -1, "", "getXML:Long xmlVal__[2 > size 1]:ab\n"},
        CasoLectura{"\xC3\xB1", 1, -1, "", "getXML:Long xmlVal__[2 > size 1]:\xC3\xB1\n"},
        CasoLectura{"a", 0, -1, "", "getXML:Long xmlVal__[1 > size 0]:a\n"},
        CasoLectura{"", 0, 0, "", ""}));

TEST(FUNCXML_getXMLNodeContent, MissingNodeOrDocumentFailsSilently)
{
    Doc doc = parsea("<R><V>1</V></R>");
    char buffer[8] = {};
    EXPECT_EQ(salidaDe([&] { EXPECT_EQ(FUNCXML_getXMLNodeContent(doc.get(), buffer, 0, 8, "/R/X"), -1); }), "");
    EXPECT_EQ(FUNCXML_getXMLNodeContent(nullptr, buffer, 0, 8, "/R/V"), -1);
    EXPECT_EQ(FUNCXML_getXMLNodeContent(doc.get(), buffer, 0, 8, nullptr), -1);
    EXPECT_STREQ(buffer, "");
}

struct CasoAjuste {
    const char *entrada;
    int tam;
    const char *salida;
};

void PrintTo(const CasoAjuste &caso, std::ostream *os)
{
    *os << testing::PrintToString(caso.entrada) << " size " << caso.tam;
}

class AjustaUTF8 : public ::testing::TestWithParam<CasoAjuste> {};

TEST_P(AjustaUTF8, CutsToFitSizeMinusOne)
{
    char texto[32] = {};
    std::strcpy(texto, GetParam().entrada);
    FUNCXML_ajustaUTF8(texto, GetParam().tam);
    EXPECT_STREQ(texto, GetParam().salida);
}

INSTANTIATE_TEST_SUITE_P(Casos, AjustaUTF8,
                         ::testing::Values(CasoAjuste{"abc", 4, "abc"},            // shorter: untouched
                                           CasoAjuste{"abcd", 4, "abc"},
                                           CasoAjuste{"ab\xC3\xB1", 4, "ab"},      // ñ would lose a byte
                                           CasoAjuste{"a\xC3\xB1", 2, "a"},
                                           CasoAjuste{"\xE2\x82\xAC\xE2\x82\xAC", 5, "\xE2\x82\xAC"},
                                           CasoAjuste{"abcd", 1, "abcd"},          // below 2: untouched
                                           CasoAjuste{"\x80\x80\x80", 2, "\x80\x80\x80"}));  // no lead byte

TEST(FUNCXML_ajustaUTF8, NullIsIgnored) { FUNCXML_ajustaUTF8(nullptr, 4); }

// ---------------------------------------------------------------------------
// Path patterns
// ---------------------------------------------------------------------------

// The path is visible in getXML's "NO FOUND TO" line.
std::string rutaVista(const std::function<int(xmlDocPtr, char *)> &llamada)
{
    Doc doc = parsea("<R/>");
    char buffer[8] = {};
    return salidaDe([&] { EXPECT_EQ(llamada(doc.get(), buffer), -1); });
}

std::string noEncontrado(const std::string &ruta)
{
    return "\ngetXML:ruta[" + ruta + "]:[NO FOUND TO]:[a]:[ERROR]\n";
}

TEST(Patron, ConversionsAreAppended)
{
    EXPECT_EQ(rutaVista([](xmlDocPtr d, char *b) { return getXML(d, b, "a", 0, 8, "/A/%s/%u", "x", 3U); }),
              noEncontrado("/A/x/3"));
    EXPECT_EQ(rutaVista([](xmlDocPtr d, char *b) {
                  return getXML(d, b, "a", 0, 8, "/%x%X%o%c%i", 255U, 255U, 8U, 'Q', -3);
              }),
              noEncontrado("/ffFF10Q-3"));
}

TEST(Patron, WidthAndFlagsAreHonoured)
{
    EXPECT_EQ(rutaVista([](xmlDocPtr d, char *b) { return getXML(d, b, "a", 0, 8, "/A[@n='%02X']", 10U); }),
              noEncontrado("/A[@n='0A']"));
    EXPECT_EQ(rutaVista([](xmlDocPtr d, char *b) { return getXML(d, b, "a", 0, 8, "/A%03x/B%2u", 31U, 7U); }),
              noEncontrado("/A01f/B 7"));
}

TEST(Patron, PercentDReplacesThePathBuiltSoFar)
{
    EXPECT_EQ(rutaVista([](xmlDocPtr d, char *b) { return getXML(d, b, "a", 0, 8, "/A/%d/B", 7); }),
              noEncontrado("7/B"));
    EXPECT_EQ(rutaVista([](xmlDocPtr d, char *b) { return getXML(d, b, "a", 0, 8, "/A/B%d", -5); }),
              noEncontrado("5"));
    EXPECT_EQ(rutaVista([](xmlDocPtr d, char *b) { return getXML(d, b, "a", 0, 8, "/A/%1d/%02d", 4, 3); }),
              noEncontrado("03"));

    // And the element is looked up with that path: "/R/%d" with 1 looks for "1".
    Doc doc = parsea("<R><V>x</V></R>");
    char buffer[8] = {};
    EXPECT_EQ(FUNCXML_getXMLNodeContent(doc.get(), buffer, 0, 8, "/R/V%d", 1), -1);
    EXPECT_EQ(FUNCXML_getXMLNodeContent(doc.get(), buffer, 0, 8, "/R/V"), 0);
}

TEST(Patron, UnknownConversionWarnsAndIsSkipped)
{
    EXPECT_EQ(rutaVista([](xmlDocPtr d, char *b) { return getXML(d, b, "a", 0, 8, "/A%q/B%%C"); }),
              "getXML:AVISO:Modificador!!!getXML:AVISO:Modificador!!!" + noEncontrado("/A/BC"));

    // The writes warn with their own text, even with no document to write to.
    EXPECT_EQ(salidaDe([] { EXPECT_EQ(FUNCXML_setXMLNodeContent(nullptr, "1", 0, "/A%q"), -1); }),
              "getXML default !!!!");
    EXPECT_EQ(salidaDe([] { EXPECT_EQ(setXML(nullptr, "a", "1", 0, "/A%q"), -1); }), "getXML default !!!!");
}

TEST(Patron, WritesTakeADoublePercentAsAPercentSign)
{
    Doc doc = parsea("<R><P k='a%b'/><V k='50%'>1</V></R>");
    EXPECT_EQ(setXML(doc.get(), "v", "1", 0, "/R/P[@k='a%%b']"), 0);
    EXPECT_EQ(FUNCXML_setXMLNodeContent(doc.get(), "2", 0, "/R/V[@k='%u%%']", 50U), 0);
    EXPECT_EQ(atributo(doc.get(), "/R/P", "v"), "1");
    EXPECT_EQ(contenido(doc.get(), "/R/V"), "2");
}

TEST(Patron, FullerDialectOfTheFrontPanelReads)
{
    Doc doc = parsea("<R/>");
    xmlChar *valor = nullptr;
    const std::string salida =
        salidaDe([&] { valor = getXML_malloc(doc.get(), 0, "a", "/A/%d/%02X/%%/%s/%o", -4, 10U, "z", 8U); });
    EXPECT_EQ(valor, nullptr);
    // Plain formats: "%02X" prints as "%X"; the negative number keeps its sign.
    EXPECT_EQ(salida, "\ngetXML:ruta:[/A/-4/A/%/z/10]:[NO FOUND TO]:[a]\n");
}

TEST(Patron, APathThatDoesNotFitIsNeverLookedUp)
{
    // An element whose name is the 99-character path cut short: a cut path would find it.
    const std::string corto(96, 'x');
    Doc doc = parsea("<R><" + corto + ">hit</" + corto + "></R>");
    ASSERT_NE(doc, nullptr);
    const std::string largo = "/R/" + corto + "y";
    EXPECT_EQ(contenido(doc.get(), ("/R/" + corto).c_str()), "hit");
    EXPECT_EQ(contenido(doc.get(), largo.c_str()), "<error>");
    EXPECT_EQ(FUNCXML_setXMLNodeContent(doc.get(), "no", 0, "%s", largo.c_str()), -1);
    EXPECT_EQ(contenido(doc.get(), ("/R/" + corto).c_str()), "hit");
    // The path shown is the part that fitted.
    char buffer[8] = {};
    EXPECT_EQ(salidaDe([&] { getXML(doc.get(), buffer, "a", 0, 8, "%s%s", largo.c_str(), largo.c_str()); }),
              noEncontrado(("/R/" + corto).c_str()));
}

// ---------------------------------------------------------------------------
// First match, hex values, attributes
// ---------------------------------------------------------------------------

TEST(PrimeraCoincidencia, OnlyTheFirstMatchIsReadOrWritten)
{
    Doc doc = parsea("<R><V a='1'>1</V><V a='2'>2</V></R>");
    EXPECT_EQ(contenido(doc.get(), "/R/V"), "1");
    EXPECT_EQ(atributo(doc.get(), "/R/V", "a"), "1");
    EXPECT_EQ(FUNCXML_setXMLNodeContent(doc.get(), "9", 0, "/R/V"), 0);
    EXPECT_EQ(setXML(doc.get(), "a", "8", 0, "/R/V"), 0);
    EXPECT_EQ(vuelca(doc.get()), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<R><V a=\"8\">9</V><V a=\"2\">2</V></R>\n");
}

TEST(Hexa, NBytesAreStoredAsTwoNDigitsMostSignificantFirst)
{
    Doc doc = parsea("<R><V>0</V><E/></R>");
    const uint8_t bytes[] = {0x34, 0x12, 0xAB, 0x00};
    EXPECT_EQ(FUNCXML_setXMLNodeContent(doc.get(), reinterpret_cast<const char *>(bytes), 4, "/R/V"), 0);
    EXPECT_EQ(contenido(doc.get(), "/R/V"), "00AB1234");
    EXPECT_EQ(setXML(doc.get(), "h", reinterpret_cast<const char *>(bytes), 3, "/R/E"), 0);
    EXPECT_EQ(atributo(doc.get(), "/R/E", "h"), "AB1234");

    uint8_t leidos[4] = {};
    EXPECT_EQ(FUNCXML_getXMLNodeContent(doc.get(), reinterpret_cast<char *>(leidos), 1, 4, "/R/V"), 0);
    EXPECT_EQ(std::memcmp(leidos, bytes, 4), 0);
    uint8_t atr[3] = {};
    EXPECT_EQ(getXML(doc.get(), reinterpret_cast<char *>(atr), "h", 1, 3, "/R/E"), 0);
    EXPECT_EQ(std::memcmp(atr, bytes, 3), 0);
}

TEST(GetXML, MessagesAndLimits)
{
    Doc doc = parsea("<R><E a='a\xC3\xB1'/></R>");
    char buffer[8] = {};
    EXPECT_EQ(salidaDe([&] { EXPECT_EQ(getXML(doc.get(), buffer, "a", 0, 8, "/R/X"), -1); }),
              "\ngetXML:ruta[/R/X]:[NO FOUND TO]:[a]:[ERROR]\n");
    // A missing attribute is silent.
    EXPECT_EQ(salidaDe([&] { EXPECT_EQ(getXML(doc.get(), buffer, "b", 0, 8, "/R/E"), -1); }), "");
    // No UTF-8 cut for attributes: too long is an error.
    EXPECT_EQ(salidaDe([&] { EXPECT_EQ(getXML(doc.get(), buffer, "a", 0, 2, "/R/E"), -1); }),
              "getXML:Long xmlVal__[3 > size 2]:a\xC3\xB1\n");
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(getXML(doc.get(), buffer, "a", 0, 3, "/R/E"), 0);
    EXPECT_STREQ(buffer, "a\xC3\xB1");

    xmlChar *valor = getXML_malloc(doc.get(), 0, "a", "/R/%s", "E");
    ASSERT_NE(valor, nullptr);
    EXPECT_STREQ(reinterpret_cast<char *>(valor), "a\xC3\xB1");
    xmlFree(valor);
}

struct CasoLCD {
    std::string valor;
    std::vector<uint8_t> bytes;
};

void PrintTo(const CasoLCD &caso, std::ostream *os) { *os << testing::PrintToString(caso.valor); }

class GetXML_LCD : public ::testing::TestWithParam<CasoLCD> {};

TEST_P(GetXML_LCD, DecodesEscapesAndEndsWithSix)
{
    Doc doc = parsea("<HBK_V7Q><L t='" + GetParam().valor + "'/></HBK_V7Q>");
    ASSERT_NE(doc, nullptr);
    uint8_t *bytes = getXML_LCD(doc.get(), 0, "t", "/HBK_V7Q/%s", "L");
    ASSERT_NE(bytes, nullptr);
    const std::vector<uint8_t> leidos(bytes, bytes + GetParam().bytes.size());
    std::free(bytes);
    EXPECT_EQ(leidos, GetParam().bytes);
}

std::vector<uint8_t> largoLCD()
{
    // 300 characters count 300 % 256 = 44 bytes.
    std::vector<uint8_t> bytes(44, 'z');
    bytes.push_back(0x06);
    return bytes;
}

INSTANTIATE_TEST_SUITE_P(Casos, GetXML_LCD,
                         ::testing::Values(CasoLCD{"A\\41B", {0x41, 0x41, 0x42, 0x06}},
                                           CasoLCD{"", {0x06}},
                                           CasoLCD{"\\7f\\00x", {0x7F, 0x00, 'x', 0x06}},
                                           CasoLCD{"A\\", {'A', 0x00, 0x06}},
                                           CasoLCD{std::string(300, 'z'), largoLCD()}));

TEST(GetXML_LCD, NotFoundAndMissingAttribute)
{
    Doc doc = parsea("<HBK_V7Q><L/></HBK_V7Q>");
    EXPECT_EQ(salidaDe([&] { EXPECT_EQ(getXML_LCD(doc.get(), 0, "t", "/HBK_V7Q/X"), nullptr); }),
              "getXML_LCD:ruta[/HBK_V7Q/X]:[NO FOUND TO]:[t]:[ERROR]\n");
    EXPECT_EQ(salidaDe([&] { EXPECT_EQ(getXML_LCD(doc.get(), 0, "t", "/HBK_V7Q/L"), nullptr); }), "");
    EXPECT_EQ(salidaDe([&] { EXPECT_EQ(getXML_LCD(doc.get(), 0, "t", "/HBK_V7Q/L["), nullptr); }),
              "getXML_LCD: No se puede evaluar la ruta </HBK_V7Q/L[>:[ERROR]\n");
}

TEST(AddNodoPropiedadXML, SetsTheAttributeOrAddsAnElementUnderTheModule)
{
    Doc doc = parsea("<HBK_V7Q><MODULO Direccion='0A'><CONFIGURACION><P Value='1'/></CONFIGURACION></MODULO>"
                     "</HBK_V7Q>");
    const char *patron = "/HBK_V7Q/MODULO[@Direccion='%02X']/CONFIGURACION/%s";
    const uint8_t valor[] = {0x34, 0x12};
    const char *v = reinterpret_cast<const char *>(valor);
    EXPECT_EQ(AddNodoPropiedadXML(doc.get(), "Value", v, 1, patron, 0x0A, "P"), 0);
    EXPECT_EQ(AddNodoPropiedadXML(doc.get(), "Value", v, 2, patron, 0x0A, "Q"), 0);
    // Without hex length a missing element is not added, and that still counts as done.
    EXPECT_EQ(AddNodoPropiedadXML(doc.get(), "Value", "7", 0, patron, 0x0A, "S"), 0);
    EXPECT_EQ(vuelca(doc.get()),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<HBK_V7Q><MODULO Direccion=\"0A\"><CONFIGURACION>"
              "<P Value=\"34\"/><Q Value=\"1234\"/></CONFIGURACION></MODULO></HBK_V7Q>\n");

    EXPECT_EQ(salidaDe([&] { EXPECT_EQ(AddNodoPropiedadXML(doc.get(), "Value", v, 1, patron, 0x0B, "P"), -1); }),
              "AddXMLHijoAddPropiedad:[ERROR]\n");
}

// ---------------------------------------------------------------------------
// Adding, removing, dumping
// ---------------------------------------------------------------------------

TEST(Nodos, RemoveTheFirstMatchWithItsSubtree)
{
    Doc doc = parsea("<R x='1'><A><B/></A><A>2</A><!--c--></R>");
    EXPECT_EQ(FUNCXML_BorraNodoXML(doc.get(), "/R/A"), 0);
    EXPECT_EQ(FUNCXML_BorraNodoXML(doc.get(), "/R/@x"), 0);
    EXPECT_EQ(FUNCXML_BorraNodoXML(doc.get(), "/R/comment()"), 0);
    EXPECT_EQ(vuelca(doc.get()), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<R><A>2</A></R>\n");

    EXPECT_EQ(FUNCXML_BorraNodoXML(doc.get(), "/R/Z"), -1);
    EXPECT_EQ(FUNCXML_BorraNodoXML(doc.get(), nullptr), -1);
    EXPECT_EQ(FUNCXML_BorraNodoXML(nullptr, "/R/A"), -1);
    // The root and the document itself stay: the file would no longer be a document.
    EXPECT_EQ(FUNCXML_BorraNodoXML(doc.get(), "/R"), -1);
    EXPECT_EQ(FUNCXML_BorraNodoXML(doc.get(), "/"), -1);
    EXPECT_EQ(FUNCXML_BorraNodoXML(doc.get(), "/R/namespace::*"), -1);
    EXPECT_EQ(vuelca(doc.get()), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<R><A>2</A></R>\n");
}

TEST(Nodos, AddAppendsALastChildUnderTheFirstMatch)
{
    Doc doc = parsea("<R><L><E>1</E></L><L/></R>");
    EXPECT_EQ(FUNCXML_AddNodoXML(doc.get(), "/R/L", "E", "2"), 0);
    EXPECT_EQ(FUNCXML_AddNodoXML(doc.get(), "/R/L", "F", nullptr), 0);
    EXPECT_EQ(vuelca(doc.get()),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<R><L><E>1</E><E>2</E><F/></L><L/></R>\n");

    const std::string antes = vuelca(doc.get());
    EXPECT_EQ(FUNCXML_AddNodoXML(doc.get(), "/R/X", "E", "2"), -1);
    EXPECT_EQ(FUNCXML_AddNodoXML(doc.get(), nullptr, "E", "2"), -1);
    EXPECT_EQ(FUNCXML_AddNodoXML(doc.get(), "/R", nullptr, "2"), -1);
    EXPECT_EQ(FUNCXML_AddNodoXML(nullptr, "/R", "E", "2"), -1);
    // Names XML cannot hold, and a second root element.
    EXPECT_EQ(FUNCXML_AddNodoXML(doc.get(), "/R", "1E", "2"), -1);
    EXPECT_EQ(FUNCXML_AddNodoXML(doc.get(), "/R", "a b", "2"), -1);
    EXPECT_EQ(FUNCXML_AddNodoXML(doc.get(), "/", "S", "2"), -1);
    EXPECT_EQ(setXML(doc.get(), "a b", "1", 0, "/R"), -1);
    EXPECT_EQ(vuelca(doc.get()), antes);
}

TEST(FUNXML_PrintDOM, PrintsEveryLevel)
{
    Doc doc = parsea("<R><A>x<B>y</B></A></R>");
    int resultado = 1;
    EXPECT_EQ(salidaDe([&] { resultado = FUNXML_PrintDOM(doc.get()); }),
              "RAIZ: R\nContenido: xy\n"
              "Nivel 1: A tipo 1\nContenido: xy\n"
              "Nivel 2: text tipo 3\nContenido: x\n"
              "Nivel 2: B tipo 1\nContenido: y\n"
              "Nivel 3: text tipo 3\nContenido: y\n");
    EXPECT_EQ(resultado, 0);
    EXPECT_EQ(FUNXML_PrintDOM(nullptr), -1);
    Doc vacio(xmlNewDoc(reinterpret_cast<const xmlChar *>("1.0")));
    EXPECT_EQ(FUNXML_PrintDOM(vacio.get()), -1);
}

// ---------------------------------------------------------------------------
// Loading
// ---------------------------------------------------------------------------

TEST_F(FuncionesXML, MissingFileLeavesTheHandleUntouched)
{
    Doc previo = parsea("<R/>");
    xmlDocPtr handle = previo.get();
    const std::string fichero = ruta("no.xml").string();
    xmlDocPtr resultado = handle;
    EXPECT_EQ(salidaDe([&] { resultado = LOAD_XML_RDONLY(fichero.c_str(), &handle); }),
              "LOAD_XML_RDONLY:Error Open:" + fichero + ":No such file or directory:[ERROR]\n");
    EXPECT_EQ(resultado, nullptr);
    EXPECT_EQ(handle, previo.get());
}

TEST_F(FuncionesXML, ALoadedHandleIsFreedAndReplaced)
{
    escribeFichero(ruta("a.xml"), "<R><V>new</V></R>");
    xmlDocPtr handle = parsea("<R><V>old</V></R>").release();
    xmlDocPtr resultado = nullptr;
    EXPECT_EQ(salidaDe([&] { resultado = LOAD_XML_RDONLY(ruta("a.xml").c_str(), &handle); }),
              "LOAD_XML_RDONLY:Se libera memoria");
    Doc dueno(handle);
    EXPECT_EQ(resultado, handle);
    EXPECT_EQ(contenido(handle, "/R/V"), "new");
}

TEST_F(FuncionesXML, ABrokenFileLoadsAsNull)
{
    escribeFichero(ruta("a.xml"), "<R><V>");
    xmlDocPtr handle = nullptr;
    const std::string salida = salidaDe([&] { EXPECT_EQ(LOAD_XML_RDONLY(ruta("a.xml").c_str(), &handle), nullptr); });
    EXPECT_EQ(handle, nullptr);
    EXPECT_NE(salida.find("LOAD_XML_RDONLY:[ERROR]\n"), std::string::npos) << salida;
}

TEST_F(FuncionesXML, ExternalEntitiesAreNeverRead)
{
    escribeFichero(ruta("secreto"), "leaked");
    escribeFichero(ruta("a.xml"), "<!DOCTYPE R [<!ENTITY e SYSTEM \"file://" + ruta("secreto").string() +
                                      "\">]><R>[&e;]</R>");
    xmlDocPtr handle = nullptr;
    ASSERT_NE(LOAD_XML_RDONLY(ruta("a.xml").c_str(), &handle), nullptr);
    Doc dueno(handle);
    EXPECT_EQ(contenido(handle, "/R"), "[]");
}

TEST_F(FuncionesXML, TheDefaultPauseFollowsALoad)
{
    escribeFichero(ruta("a.xml"), "<R/>");
    unsetenv("CAMBIOIP_LOAD_PAUSE_MS");
    xmlDocPtr handle = nullptr;
    const auto inicio = std::chrono::steady_clock::now();
    LOAD_XML_RDONLY(ruta("a.xml").c_str(), &handle);
    const auto transcurrido = std::chrono::steady_clock::now() - inicio;
    setenv("CAMBIOIP_LOAD_PAUSE_MS", "0", 1);
    Doc dueno(handle);
    EXPECT_NE(handle, nullptr);
    EXPECT_GE(transcurrido, std::chrono::milliseconds(250));
}

// ---------------------------------------------------------------------------
// What the writers store comes back byte for byte
// ---------------------------------------------------------------------------

class IdaYVuelta : public FuncionesXML, public ::testing::WithParamInterface<const char *> {};

TEST_P(IdaYVuelta, EveryWriterStoresTheTextExactly)
{
    const std::string valor = GetParam();
    Doc doc = parsea("<R><V>old</V><E a='old'/></R>");
    ASSERT_EQ(FUNCXML_setXMLNodeContent(doc.get(), valor.c_str(), 0, "/R/V"), 0);
    ASSERT_EQ(setXML(doc.get(), "a", valor.c_str(), 0, "/R/E"), 0);
    ASSERT_EQ(FUNCXML_AddNodoXML(doc.get(), "/R", "N", valor.c_str()), 0);
    // An attribute reached through the path is written the same way.
    ASSERT_EQ(setXML(doc.get(), "b", "x", 0, "/R/E"), 0);
    ASSERT_EQ(FUNCXML_setXMLNodeContent(doc.get(), valor.c_str(), 0, "/R/E/@b"), 0);

    const fs::path fichero = ruta("network.xml");
    ASSERT_EQ(FUNCXML_GuardaDocumento(doc.get(), fichero.c_str()), 0);
    EXPECT_TRUE(xmllintAcepta(fichero));

    xmlDocPtr handle = nullptr;
    ASSERT_NE(LOAD_XML_RDONLY(fichero.c_str(), &handle), nullptr);
    Doc leido(handle);
    EXPECT_EQ(contenido(handle, "/R/V"), valor);
    EXPECT_EQ(atributo(handle, "/R/E", "a"), valor);
    EXPECT_EQ(atributo(handle, "/R/E", "b"), valor);
    EXPECT_EQ(contenido(handle, "/R/N"), valor);
}

INSTANTIATE_TEST_SUITE_P(Valores, IdaYVuelta,
                         ::testing::Values("Sport & News", "<b>", "a\"b'c", "&amp;", "A&B;", "1 & 2", "&B",
                                           "\xC3\x91" "and\xC3\xBA 1080i", "\xF0\x9F\x93\xBA TV", "",
                                           "tab\there\r\nline", "]]> --> <!--", "\x7F"));

struct CasoInvalido {
    const char *nombre;
    const char *valor;
};

void PrintTo(const CasoInvalido &caso, std::ostream *os) { *os << testing::PrintToString(caso.valor); }

class ValorInvalido : public FuncionesXML, public ::testing::WithParamInterface<CasoInvalido> {};

TEST_P(ValorInvalido, IsRefusedByEveryWriterAndTheDocumentStaysReadable)
{
    const char *valor = GetParam().valor;
    EXPECT_FALSE(FUNCXML_TextoValido(valor));
    Doc doc = parsea("<R><V>old</V><E a='old'/></R>");
    const std::string antes = vuelca(doc.get());
    EXPECT_EQ(FUNCXML_setXMLNodeContent(doc.get(), valor, 0, "/R/V"), -1);
    EXPECT_EQ(FUNCXML_setXMLNodeContent(doc.get(), valor, 0, "/R/E/@a"), -1);
    EXPECT_EQ(setXML(doc.get(), "a", valor, 0, "/R/E"), -1);
    EXPECT_EQ(setXML(doc.get(), "n", valor, 0, "/R/E"), -1);
    EXPECT_EQ(FUNCXML_AddNodoXML(doc.get(), "/R", "N", valor), -1);
    EXPECT_EQ(vuelca(doc.get()), antes);

    const fs::path fichero = ruta("network.xml");
    ASSERT_EQ(FUNCXML_GuardaDocumento(doc.get(), fichero.c_str()), 0);
    EXPECT_TRUE(xmllintAcepta(fichero));
}

INSTANTIATE_TEST_SUITE_P(Valores, ValorInvalido,
                         ::testing::Values(CasoInvalido{"control", "a\x01z"}, CasoInvalido{"unitSeparator", "\x1F"},
                                           CasoInvalido{"truncated", "a\xC3"},
                                           CasoInvalido{"strayContinuation", "\x80z"},
                                           CasoInvalido{"overlong2", "\xC0\x80"},
                                           CasoInvalido{"overlong3", "\xE0\x80\x80"},
                                           CasoInvalido{"overlong4", "\xF0\x80\x80\x80"},
                                           CasoInvalido{"surrogate", "\xED\xA0\x80"},
                                           CasoInvalido{"beyondUnicode", "\xF4\x90\x80\x80"},
                                           CasoInvalido{"leadF5", "\xF5\x80\x80\x80"},
                                           CasoInvalido{"byteFF", "\xFF"},
                                           CasoInvalido{"nonCharFFFE", "\xEF\xBF\xBE"},
                                           CasoInvalido{"latin1", "Espa\xF1" "a"}),
                         [](const auto &info) { return std::string(info.param.nombre); });

TEST(FUNCXML_TextoValido, AcceptsWhatXmlHolds)
{
    for (const char *valor : {"", "\t\n\r", "\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF",
                              "\xEE\x80\x80", "\xEF\xBF\xBD", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"})
        EXPECT_TRUE(FUNCXML_TextoValido(valor)) << valor;
    EXPECT_FALSE(FUNCXML_TextoValido(nullptr));
}

TEST(Hexa, HexWritesNeedNoTextCheck)
{
    Doc doc = parsea("<R><V/></R>");
    const char bytes[] = {0x01, static_cast<char>(0xFF)};
    EXPECT_EQ(FUNCXML_setXMLNodeContent(doc.get(), bytes, 2, "/R/V"), 0);
    EXPECT_EQ(contenido(doc.get(), "/R/V"), "FF01");
}

// ---------------------------------------------------------------------------
// Atomic saves
// ---------------------------------------------------------------------------

std::string documentoGrande()
{
    std::string texto = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<R>\n";
    for (int i = 0; i < 60; ++i)
        texto += "  <CANAL" + std::to_string(i) + ">value of channel " + std::to_string(i) + "</CANAL" +
                 std::to_string(i) + ">\n";
    return texto + "</R>\n";
}

TEST_F(FuncionesXML, AFailedSaveLeavesTheOriginalByteIdentical)
{
    const fs::path fichero = ruta("sondeo.xml");
    const std::string original = documentoGrande();
    escribeFichero(fichero, original);
    xmlDocPtr handle = nullptr;
    ASSERT_NE(LOAD_XML_RDONLY(fichero.c_str(), &handle), nullptr);
    Doc doc(handle);
    ASSERT_EQ(FUNCXML_setXMLNodeContent(doc.get(), "changed", 0, "/R/CANAL0"), 0);

    const pid_t hijo = fork();
    ASSERT_GE(hijo, 0);
    if (hijo == 0) {
        // A file size limit below the document: the write fails part-way (EFBIG).
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limite{512, 512};
        setrlimit(RLIMIT_FSIZE, &limite);
        _exit(FUNCXML_GuardaDocumento(doc.get(), fichero.c_str()) == -1 ? 0 : 1);
    }
    int estado = 0;
    ASSERT_EQ(waitpid(hijo, &estado, 0), hijo);
    ASSERT_TRUE(WIFEXITED(estado));
    EXPECT_EQ(WEXITSTATUS(estado), 0);
    EXPECT_EQ(leeFichero(fichero), original);
    EXPECT_EQ(listado(), std::vector<std::string>{"sondeo.xml"});
}

TEST_F(FuncionesXML, ASaveChangesOnlyTheWrittenElementAndKeepsThePermissions)
{
    const fs::path fichero = ruta("network.010.000.000.105.xml");
    fs::copy_file(fs::path(CAMBIOIP_FIXTURES) / "versions" / "config_v5.xml", fichero);
    ASSERT_EQ(chmod(fichero.c_str(), 0640), 0);
    const std::string antes = leeFichero(fichero);
    struct stat previo {};
    ASSERT_EQ(stat(fichero.c_str(), &previo), 0);

    xmlDocPtr handle = nullptr;
    ASSERT_NE(LOAD_XML_RDONLY(fichero.c_str(), &handle), nullptr);
    Doc doc(handle);
    ASSERT_EQ(FUNCXML_setXMLNodeContent(doc.get(), "10.0.0.7", 0, "/ENCODERCONFIG/NETWORK/IP_ADDRESS"), 0);
    ASSERT_EQ(FUNCXML_GuardaDocumento(doc.get(), fichero.c_str()), 0);

    std::string esperado = antes;
    const std::string viejo = "<IP_ADDRESS>10.0.0.105</IP_ADDRESS>";
    const size_t pos = esperado.find(viejo);
    ASSERT_NE(pos, std::string::npos);
    esperado.replace(pos, viejo.size(), "<IP_ADDRESS>10.0.0.7</IP_ADDRESS>");
    EXPECT_EQ(leeFichero(fichero), esperado);

    struct stat despues {};
    ASSERT_EQ(stat(fichero.c_str(), &despues), 0);
    EXPECT_EQ(despues.st_mode & 07777, 0640u);
    EXPECT_NE(despues.st_ino, previo.st_ino);  // a new file renamed over the old one
    EXPECT_EQ(listado(), std::vector<std::string>{"network.010.000.000.105.xml"});
}

TEST_F(FuncionesXML, ANewFileIsCreatedWithTheUsualPermissions)
{
    Doc doc = parsea("<R/>");
    const mode_t mascara = umask(077);
    const int resultado = FUNCXML_GuardaDocumento(doc.get(), ruta("sondeo.xml").c_str());
    umask(mascara);
    ASSERT_EQ(resultado, 0);
    struct stat estado {};
    ASSERT_EQ(stat(ruta("sondeo.xml").c_str(), &estado), 0);
    EXPECT_EQ(estado.st_mode & 07777, 0644u);
    EXPECT_EQ(leeFichero(ruta("sondeo.xml")), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<R/>\n");
}

TEST_F(FuncionesXML, ALinkedUnitFileIsReplacedWhereItLives)
{
    fs::create_directory(ruta("flash"));
    escribeFichero(ruta("flash") / "network.xml", "<R>old</R>");
    fs::create_symlink(ruta("flash") / "network.xml", ruta("network.xml"));
    Doc doc = parsea("<R>new</R>");
    ASSERT_EQ(FUNCXML_GuardaDocumento(doc.get(), ruta("network.xml").c_str()), 0);
    EXPECT_TRUE(fs::is_symlink(ruta("network.xml")));
    EXPECT_EQ(leeFichero(ruta("flash") / "network.xml"), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<R>new</R>\n");
}

TEST_F(FuncionesXML, SaveFailuresReportMinusOne)
{
    Doc doc = parsea("<R/>");
    EXPECT_EQ(FUNCXML_GuardaDocumento(nullptr, ruta("a.xml").c_str()), -1);
    EXPECT_EQ(FUNCXML_GuardaDocumento(doc.get(), nullptr), -1);
    EXPECT_EQ(FUNCXML_GuardaDocumento(doc.get(), ruta("missing/a.xml").c_str()), -1);
    fs::create_directory(ruta("dir.xml"));
    EXPECT_EQ(FUNCXML_GuardaDocumento(doc.get(), ruta("dir.xml").c_str()), -1);
    EXPECT_EQ(listado(), std::vector<std::string>{"dir.xml"});
}

}  // namespace
