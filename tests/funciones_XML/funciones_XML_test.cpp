// XML access layer: the read size and terminator rules, path patterns and diagnostics,
// first-match reads and writes, hex values, the front panel's attribute reads, node
// insertion and removal, loading, exact round trips, refused text, atomic saves.
#include "funciones_XML/funciones_XML.h"
#include "support/cgi_runner.h"
#include "support/xml_read.h"

#include <gtest/gtest.h>

#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <functional>

namespace {
std::vector<long> pausasPedidas;  // every pause asked for, in milliseconds
}  // namespace

// The load pause seen without a clock: this program's nanosleep notes the request and returns.
extern "C" int nanosleep(const struct timespec *pedido, struct timespec *)
{
    pausasPedidas.push_back(pedido->tv_sec * 1000 + pedido->tv_nsec / 1000000);
    return 0;
}

using namespace cambioip_test;

namespace {

const std::string cabecera = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

XmlDoc parsea(const std::string &texto)
{
    return XmlDoc(xmlReadMemory(texto.data(), static_cast<int>(texto.size()), nullptr, "UTF-8", XML_PARSE_NONET));
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

// Standard output of the call (the layer's diagnostics go there).
std::string salidaDe(const std::function<void()> &llamada)
{
    testing::internal::CaptureStdout();
    llamada();
    return testing::internal::GetCapturedStdout();
}

// The text content, or the named attribute, of the first node the path matches.
std::string lee(xmlDocPtr doc, const char *ruta, const char *atributo = nullptr)
{
    char b[257] = {};
    const int r = atributo != nullptr ? getXML(doc, b, atributo, 0, 256, "%s", ruta)
                                      : FUNCXML_getXMLNodeContent(doc, b, 0, 256, "%s", ruta);
    return r == 0 ? b : "<error>";
}

TEST(LecturaContenido, CopiesWholeOrCutsAtACharacterBoundaryWithoutTerminator)
{
    // (text of <V> as written in the document, buffer size, result, what the buffer holds
    // afterwards while the rest keeps its '#' fill, standard output)
    const struct { const char *valor; unsigned tam; int resultado; const char *copiado, *salida; } casos[] = {
        {"abcd", 4, 0, "abcd", ""}, {"abcde", 4, 0, "abc", ""},  // exactly the size: whole; one more: size - 1
        {"\xC3\xB1", 2, 0, "\xC3\xB1", ""}, {"a\xC3\xB1" "b", 3, 0, "a", ""},  // ñ fills 2 bytes; cut inside ñ
        {"ab\xE2\x82\xAC", 4, 0, "ab", ""}, {"ab\xE2\x82\xAC", 3, 0, "ab", ""},  // cut inside €; at its lead byte
        {"a\xF0\x9F\x98\x80" "b", 5, 0, "a", ""},  // inside a 4-byte character
        // Size 1 cannot be cut; the value shown in the message is escaped.
        {"a&lt;&amp;", 1, -1, "", "getXML:Long xmlVal__[3 > size 1]:a&lt;&amp;\n"},
        {"", 0, 0, "", ""}};
    for (const auto &caso : casos) {
        XmlDoc doc = parsea(std::string("<R><V>") + caso.valor + "</V></R>");
        std::string buffer(caso.tam + 4, '#'), esperado = caso.copiado;
        int resultado = 0;
        auto lectura = [&] { resultado = FUNCXML_getXMLNodeContent(doc.get(), buffer.data(), 0, caso.tam, "/R/V"); };
        EXPECT_EQ(salidaDe(lectura), caso.salida);
        EXPECT_EQ(resultado, caso.resultado);
        esperado.resize(caso.tam + 4, '#');
        EXPECT_EQ(buffer, esperado) << testing::PrintToString(caso.valor) << " into " << caso.tam;
    }
}

TEST(AjustaUTF8, CutsToFitSizeMinusOneAtACharacterBoundary)
{
    const struct { const char *entrada; int tam; const char *salida; } casos[] = {
        {"abc", 4, "abc"}, {"abcd", 4, "abc"}, {"ab\xC3\xB1", 4, "ab"}, {"\xE2\x82\xAC\xE2\x82\xAC", 5, "\xE2\x82\xAC"},
        {"abcd", 1, "abcd"}, {"\x80\x80\x80", 2, "\x80\x80\x80"}};  // below size 2, or no lead byte: untouched
    for (const auto &caso : casos) {
        char texto[32] = {};
        std::strcpy(texto, caso.entrada);
        FUNCXML_ajustaUTF8(texto, caso.tam);
        EXPECT_STREQ(texto, caso.salida) << testing::PrintToString(caso.entrada) << " size " << caso.tam;
    }
}

struct CasoSalida {
    const char *nombre;
    std::function<void(xmlDocPtr, char *)> llamada;  // on the document below, with an 8-byte buffer
    std::string salida;
};

// A path of 123 characters, and an element named so that its cut to 99 would find it.
const std::string largo = "/R/" + std::string(120, 'x');
const std::string documentoSalida = "<R><E a='a\xC3\xB1'>x<B>y</B></E><" + largo.substr(3, 96) + " a='hit'/></R>";
std::string noEncontrado(const std::string &ruta) { return "\ngetXML:ruta[" + ruta + "]:[NO FOUND TO]:[a]:[ERROR]\n"; }

TEST(Salida, EachCallPrintsExactlyItsDiagnostics)
{
    const CasoSalida casos[] = {
        CasoSalida{"Appended",
                   [](xmlDocPtr d, char *b) { getXML(d, b, "a", 0, 8, "/%s/%u/%x%X%o%c%i[@n='%02X']/%03x/B%2u", "x",
                                                     3U, 255U, 255U, 8U, 'Q', -3, 10U, 31U, 7U); },
                   noEncontrado("/x/3/ffFF10Q-3[@n='0A']/01f/B 7")},
        // "%d" prints the number in place of the path built so far; a negative one loses its sign.
        CasoSalida{"PercentDReplaces", [](xmlDocPtr d, char *b) { getXML(d, b, "a", 0, 8, "/A/%d/B", 7); },
                   noEncontrado("7/B")},
        CasoSalida{"NegativePercentDWithWidth", [](xmlDocPtr d, char *b) { getXML(d, b, "a", 0, 8, "/A%03d/C", -5); },
                   noEncontrado("005/C")},
        CasoSalida{"UnknownConversionInARead", [](xmlDocPtr d, char *b) { getXML(d, b, "a", 0, 8, "/A%q/B%%C"); },
                   "getXML:AVISO:Modificador!!!getXML:AVISO:Modificador!!!" + noEncontrado("/A/BC")},
        // The writes warn with their own text, even with no document to write to.
        CasoSalida{"UnknownConversionInWrites", [](xmlDocPtr, char *) { setXML(nullptr, "a", "1", 0, "/A%q"); },
                   "getXML default !!!!"},
        // The fuller dialect: plain formats ("%02X" prints as "%X"), "%d" appended with its sign.
        CasoSalida{"FrontPanelDialect",
                   [](xmlDocPtr d, char *) { getXML_malloc(d, 0, "a", "/A/%d/%02X/%%/%s/%o", -4, 10U, "z", 8U); },
                   "\ngetXML:ruta:[/A/-4/A/%/z/10]:[NO FOUND TO]:[a]\n"},
        // A path longer than 99 characters is never looked up; the message shows the part that fitted.
        CasoSalida{"TooLong",
                   [](xmlDocPtr d, char *b) {
                       getXML(d, b, "a", 0, 8, "%s", largo.c_str());
                       EXPECT_EQ(FUNCXML_setXMLNodeContent(d, "no", 0, "%s", largo.c_str()), -1);
                   },
                   noEncontrado(largo.substr(0, 99))},
        CasoSalida{"ContentReadsFailSilently",
                   [](xmlDocPtr d, char *b) {
                       EXPECT_EQ(FUNCXML_getXMLNodeContent(d, b, 0, 8, "/R/X"), -1);
                       EXPECT_EQ(getXML(d, b, "z", 0, 8, "/R/E"), -1);  // a missing attribute too
                   },
                   ""},
        // Attributes are never cut: too long is an error and the buffer stays as it was.
        CasoSalida{"AttributeTooLong", [](xmlDocPtr d, char *b) { EXPECT_EQ(getXML(d, b, "a", 0, 2, "/R/E"), -1); },
                   "getXML:Long xmlVal__[3 > size 2]:a\xC3\xB1\n"},
        CasoSalida{"FrontPanelReadFailures",
                   [](xmlDocPtr d, char *) {
                       EXPECT_EQ(getXML_LCD(d, 0, "t", "/R/X"), nullptr);
                       EXPECT_EQ(getXML_LCD(d, 0, "t", "/R/E"), nullptr);  // missing attribute: silent
                       EXPECT_EQ(getXML_LCD(d, 0, "t", "/R/E["), nullptr);
                       EXPECT_EQ(AddNodoPropiedadXML(d, "Value", "1", 1, "/R/M%02X/%s", 0x0B, "P"), -1);
                   },
                   "getXML_LCD:ruta[/R/X]:[NO FOUND TO]:[t]:[ERROR]\n"
                   "getXML_LCD: No se puede evaluar la ruta </R/E[>:[ERROR]\nAddXMLHijoAddPropiedad:[ERROR]\n"},
        CasoSalida{"LoadOfAMissingFileLeavesTheHandle",
                   [](xmlDocPtr d, char *) {
                       xmlDocPtr handle = d;
                       EXPECT_EQ(LOAD_XML_RDONLY("/nonexistent/network.xml", &handle), nullptr);
                       EXPECT_EQ(handle, d);
                   },
                   "LOAD_XML_RDONLY:Error Open:/nonexistent/network.xml:No such file or directory:[ERROR]\n"},
        CasoSalida{"DebugDump",
                   [](xmlDocPtr d, char *) {
                       EXPECT_EQ(FUNXML_PrintDOM(d), 0);
                       EXPECT_EQ(FUNXML_PrintDOM(XmlDoc(xmlNewDoc(BAD_CAST "1.0")).get()), -1);  // no root
                   },
                   "RAIZ: R\nContenido: xy\nNivel 1: E tipo 1\nContenido: xy\nNivel 2: text tipo 3\nContenido: x\n"
                   "Nivel 2: B tipo 1\nContenido: y\nNivel 3: text tipo 3\nContenido: y\nNivel 1: " +
                       largo.substr(3, 96) + " tipo 1\nContenido: \n"}};
    for (const CasoSalida &caso : casos) {
        XmlDoc doc = parsea(documentoSalida);
        char buffer[8] = {};
        EXPECT_EQ(salidaDe([&] { caso.llamada(doc.get(), buffer); }), caso.salida) << caso.nombre;
        EXPECT_STREQ(buffer, "") << caso.nombre << ": a failed read copies nothing";
    }
}

TEST(PrimeraCoincidencia, OnlyTheFirstMatchIsReadOrWrittenAndWritesTakeADoublePercentAsOne)
{
    XmlDoc doc = parsea("<R><V a='1'>1</V><V a='2'>2</V><P k='a%b'/><P k='50%'>1</P></R>");
    EXPECT_EQ(lee(doc.get(), "/R/V"), "1");
    EXPECT_EQ(lee(doc.get(), "/R/V", "a"), "1");
    EXPECT_EQ(FUNCXML_setXMLNodeContent(doc.get(), "9", 0, "/R/V"), 0);
    EXPECT_EQ(setXML(doc.get(), "a", "8", 0, "/R/V"), 0);
    EXPECT_EQ(setXML(doc.get(), "v", "1", 0, "/R/P[@k='a%%b']"), 0);
    EXPECT_EQ(FUNCXML_setXMLNodeContent(doc.get(), "2", 0, "/R/P[@k='%u%%']", 50U), 0);
    EXPECT_EQ(vuelca(doc.get()),
              cabecera + "<R><V a=\"8\">9</V><V a=\"2\">2</V><P k=\"a%b\" v=\"1\"/><P k=\"50%\">2</P></R>\n");
}

// A read finds the node XPath finds first, whether the path is walked element by element or
// evaluated: XPath itself is the oracle, on documents that tempt a walk to differ (the first
// parent without the child, namespaces, comments, text around the elements) and on paths that
// are not plain element names.
TEST(PrimeraCoincidencia, EveryPathFindsTheNodeXPathFindsFirst)
{
    const std::string documento = "<?xml version='1.0'?><!--c--><R><A><B>b1</B></A><A><C>c2</C><B>b2</B></A>"
                                  "<x:A xmlns:x='urn:x'><C>ns</C></x:A><D xmlns='urn:d'><E>e</E></D>"
                                  "<F.G-H_1>f</F.G-H_1><A><C>c3</C></A>text<M a='1'>m1</M><M a='2'>m2</M></R>";
    const char *rutas[] = {"/R/A/B", "/R/A/C", "/R/A", "/R/D/E", "/R/F.G-H_1", "/R/x:A/C", "/R/*/C", "/R//C",
                           "/R/M[@a='2']", "/R/M[2]", "/R/Z", "/Z", "/R/", "R/A/B", "/R/A/B/text()", "/R/1A",
                           "/R/A/../M", "/R/@a"};
    XmlDoc doc = parsea(documento);
    for (const char *ruta : rutas) {
        std::string esperado = "(none)";
        xmlXPathContextPtr contexto = xmlXPathNewContext(doc.get());
        xmlXPathObjectPtr objeto = xmlXPathEval(reinterpret_cast<const xmlChar *>(ruta), contexto);
        if (objeto != nullptr && !xmlXPathNodeSetIsEmpty(objeto->nodesetval)) {
            xmlChar *contenido = xmlNodeGetContent(objeto->nodesetval->nodeTab[0]);
            esperado = reinterpret_cast<const char *>(contenido);
            xmlFree(contenido);
        }
        xmlXPathFreeObject(objeto);
        xmlXPathFreeContext(contexto);
        char buffer[64] = {};
        const int leido = FUNCXML_getXMLNodeContent(doc.get(), buffer, 0, sizeof buffer - 1, "%s", ruta);
        EXPECT_EQ(leido == 0 ? std::string(buffer) : "(none)", esperado) << ruta;
    }
}

TEST(Hexa, NBytesAreStoredAsTwoNDigitsMostSignificantFirst)
{
    XmlDoc doc = parsea("<R><V>0</V><E/></R>");
    const uint8_t bytes[] = {0x34, 0x12, 0xAB, 0x00};
    const char *valor = reinterpret_cast<const char *>(bytes);
    EXPECT_EQ(FUNCXML_setXMLNodeContent(doc.get(), valor, 4, "/R/V"), 0);
    EXPECT_EQ(lee(doc.get(), "/R/V"), "00AB1234");
    EXPECT_EQ(setXML(doc.get(), "h", valor, 3, "/R/E"), 0);
    EXPECT_EQ(lee(doc.get(), "/R/E", "h"), "AB1234");
    uint8_t leidos[4] = {}, atr[3] = {};
    EXPECT_EQ(FUNCXML_getXMLNodeContent(doc.get(), reinterpret_cast<char *>(leidos), 1, 4, "/R/V"), 0);
    EXPECT_EQ(std::memcmp(leidos, bytes, 4), 0);
    EXPECT_EQ(getXML(doc.get(), reinterpret_cast<char *>(atr), "h", 1, 3, "/R/E"), 0);
    EXPECT_EQ(std::memcmp(atr, bytes, 3), 0);
    // Hex text needs no text check: bytes that would be refused as text are fine.
    const char crudos[] = {0x01, static_cast<char>(0xFF)};
    EXPECT_EQ(FUNCXML_setXMLNodeContent(doc.get(), crudos, 2, "/R/V"), 0);
    EXPECT_EQ(lee(doc.get(), "/R/V"), "FF01");
}

// The front panel's reads and writes, on its module document.
TEST(FrontPanel, AttributeReadsEscapedBytesEndedBySixAndElementsAddedUnderTheModule)
{
    XmlDoc doc = parsea("<HBK_V7Q><E a='a\xC3\xB1'/><L t='A\\41B' u='\\7f\\00x' v='A\\' w='' z='" +
                        std::string(300, 'z') + "'/><MODULO Direccion='0A'><CONFIGURACION><P Value='1'/>"
                        "</CONFIGURACION></MODULO></HBK_V7Q>");
    xmlChar *valor = getXML_malloc(doc.get(), 0, "a", "/HBK_V7Q/%s", "E");
    ASSERT_NE(valor, nullptr);
    EXPECT_STREQ(reinterpret_cast<char *>(valor), "a\xC3\xB1");
    xmlFree(valor);
    // A backslash and two digits are one byte; the count wraps at 256 (300 characters give 44).
    const std::pair<const char *, std::string> casos[] = {{"t", "AAB\x06"}, {"u", std::string("\x7F\0x\x06", 4)},
                                                          {"v", std::string("A\0\x06", 3)}, {"w", "\x06"},
                                                          {"z", std::string(44, 'z') + "\x06"}};
    for (const auto &[nombre, esperado] : casos) {
        uint8_t *bytes = getXML_LCD(doc.get(), 0, nombre, "/HBK_V7Q/%s", "L");
        ASSERT_NE(bytes, nullptr) << nombre;
        EXPECT_EQ(std::string(reinterpret_cast<char *>(bytes), esperado.size()), esperado) << nombre;
        std::free(bytes);
    }
    const char *patron = "/HBK_V7Q/MODULO[@Direccion='%02X']/CONFIGURACION/%s";
    EXPECT_EQ(AddNodoPropiedadXML(doc.get(), "Value", "\x34\x12", 1, patron, 0x0A, "P"), 0);
    EXPECT_EQ(AddNodoPropiedadXML(doc.get(), "Value", "\x34\x12", 2, patron, 0x0A, "Q"), 0);
    // Without hex length a missing element is not added, and that still counts as done.
    EXPECT_EQ(AddNodoPropiedadXML(doc.get(), "Value", "7", 0, patron, 0x0A, "S"), 0);
    const std::string esperado = "<CONFIGURACION><P Value=\"34\"/><Q Value=\"1234\"/></CONFIGURACION>";
    EXPECT_NE(vuelca(doc.get()).find(esperado), std::string::npos) << vuelca(doc.get());
}

TEST(Nodos, RemoveTheFirstMatchWithItsSubtreeButNeverTheRoot)
{
    XmlDoc doc = parsea("<R x='1'><A><B/></A><A>2</A><!--c--></R>");
    for (const char *ruta : {"/R/A", "/R/@x", "/R/comment()"})
        EXPECT_EQ(FUNCXML_BorraNodoXML(doc.get(), ruta), 0) << ruta;
    const std::string despues = cabecera + "<R><A>2</A></R>\n";
    EXPECT_EQ(vuelca(doc.get()), despues);
    for (const char *ruta : {"/R/Z", "/R", "/", "/R/namespace::*"})
        EXPECT_EQ(FUNCXML_BorraNodoXML(doc.get(), ruta), -1) << ruta;
    EXPECT_EQ(vuelca(doc.get()), despues);
}

TEST(Nodos, AddAppendsALastChildUnderTheFirstMatch)
{
    XmlDoc doc = parsea("<R><L><E>1</E></L><L/></R>");
    EXPECT_EQ(FUNCXML_AddNodoXML(doc.get(), "/R/L", "E", "2"), 0);
    EXPECT_EQ(FUNCXML_AddNodoXML(doc.get(), "/R/L", "F", nullptr), 0);
    const std::string despues = cabecera + "<R><L><E>1</E><E>2</E><F/></L><L/></R>\n";
    EXPECT_EQ(vuelca(doc.get()), despues);
    // Missing parts, names XML cannot hold, and a second root element.
    const std::pair<const char *, const char *> refusados[] = {{"/R/X", "E"}, {"/R", "1E"}, {"/R", "a b"}, {"/", "S"}};
    for (const auto &[padre, nombre] : refusados)
        EXPECT_EQ(FUNCXML_AddNodoXML(doc.get(), padre, nombre, "2"), -1) << padre << " " << nombre;
    EXPECT_EQ(setXML(doc.get(), "a b", "1", 0, "/R"), -1);
    EXPECT_EQ(vuelca(doc.get()), despues);
}

TEST(ValorInvalido, IsRefusedByEveryWriterAndTheDocumentStaysAsItWas)
{
    for (const char *valor : {"a\x01z", "\x1F", "a\xC3", "\x80z", "\xC0\x80", "\xE0\x80\x80", "\xF0\x80\x80\x80",
                              "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF", "\xEF\xBF\xBE",
                              "Espa\xF1" "a"}) {
        SCOPED_TRACE(testing::PrintToString(valor));
        EXPECT_FALSE(FUNCXML_TextoValido(valor));
        XmlDoc doc = parsea("<R><V>old</V><E a='old'/></R>");
        EXPECT_EQ(FUNCXML_setXMLNodeContent(doc.get(), valor, 0, "/R/V"), -1);
        EXPECT_EQ(FUNCXML_setXMLNodeContent(doc.get(), valor, 0, "/R/E/@a"), -1);
        EXPECT_EQ(setXML(doc.get(), "a", valor, 0, "/R/E"), -1);
        EXPECT_EQ(setXML(doc.get(), "n", valor, 0, "/R/E"), -1);
        EXPECT_EQ(FUNCXML_AddNodoXML(doc.get(), "/R", "N", valor), -1);
        EXPECT_EQ(vuelca(doc.get()), cabecera + "<R><V>old</V><E a=\"old\"/></R>\n");
    }
}

TEST(FUNCXML_TextoValido, AcceptsWhatXmlHoldsUpToEachBoundary)
{
    for (const char *valor : {"", "\t\n\r", "\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF",
                              "\xEE\x80\x80", "\xEF\xBF\xBD", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"})
        EXPECT_TRUE(FUNCXML_TextoValido(valor)) << testing::PrintToString(valor);
}

class Fichero : public ::testing::Test {
  protected:
    void SetUp() override { setenv("CAMBIOIP_LOAD_PAUSE_MS", "0", 1); }
    void TearDown() override { xmlFreeDoc(handle_); }
    std::string ruta(const char *nombre) const { return (raiz_.config() / nombre).string(); }
    xmlDocPtr carga(const char *nombre) { return LOAD_XML_RDONLY(ruta(nombre).c_str(), &handle_); }
    mode_t modo(const char *nombre) const
    {
        struct stat estado {};
        return stat(ruta(nombre).c_str(), &estado) == 0 ? estado.st_mode & 07777 : 0;
    }
    TempRoot raiz_;
    xmlDocPtr handle_ = nullptr;
};

TEST_F(Fichero, EveryWriterStoresTheTextExactlyAndItReadsBackFromTheFile)
{
    for (const char *valor : {"1 & 2", "A&B;", "&amp;", "&B", "<b>", "a\"b'c", "Sport & News", "", "\x7F",
                              "\xC3\x91" "and\xC3\xBA 1080i", "\xF0\x9F\x93\xBA TV", "tab\there\r\nline",
                              "]]> --> <!--"}) {
        SCOPED_TRACE(testing::PrintToString(valor));
        XmlDoc doc = parsea("<R><V>old</V><E a='old' b='x'/></R>");
        ASSERT_EQ(FUNCXML_setXMLNodeContent(doc.get(), valor, 0, "/R/V"), 0);
        ASSERT_EQ(setXML(doc.get(), "a", valor, 0, "/R/E"), 0);
        ASSERT_EQ(FUNCXML_AddNodoXML(doc.get(), "/R", "N", valor), 0);
        ASSERT_EQ(FUNCXML_setXMLNodeContent(doc.get(), valor, 0, "/R/E/@b"), 0);
        ASSERT_EQ(FUNCXML_GuardaDocumento(doc.get(), ruta("network.xml").c_str()), 0);
        ASSERT_NE(carga("network.xml"), nullptr);
        EXPECT_EQ(lee(handle_, "/R/V"), valor);
        EXPECT_EQ(lee(handle_, "/R/E", "a"), valor);
        EXPECT_EQ(lee(handle_, "/R/E", "b"), valor);
        EXPECT_EQ(lee(handle_, "/R/N"), valor);
    }
}

TEST_F(Fichero, ALoadReplacesTheHandleAndEveryLoadPausesForTheConfiguredTime)
{
    raiz_.write("config/a.xml", "<R><V>new</V></R>");
    raiz_.write("config/roto.xml", "<R><V>");
    unsetenv("CAMBIOIP_LOAD_PAUSE_MS");
    pausasPedidas.clear();
    handle_ = parsea("<R><V>old</V></R>").release();
    EXPECT_EQ(salidaDe([&] { EXPECT_EQ(carga("a.xml"), handle_); }), "LOAD_XML_RDONLY:Se libera memoria");
    EXPECT_EQ(lee(handle_, "/R/V"), "new");
    const std::string salida = salidaDe([&] { EXPECT_EQ(carga("roto.xml"), nullptr); });
    EXPECT_EQ(handle_, nullptr);
    EXPECT_NE(salida.find("LOAD_XML_RDONLY:[ERROR]\n"), std::string::npos) << salida;
    EXPECT_EQ(pausasPedidas, (std::vector<long>{250, 250})) << "a failed load pauses too";
    setenv("CAMBIOIP_LOAD_PAUSE_MS", "40", 1);
    pausasPedidas.clear();
    EXPECT_NE(carga("a.xml"), nullptr);
    EXPECT_EQ(pausasPedidas, std::vector<long>{40});
}

TEST_F(Fichero, AFileLargerThanAnyUnitDocumentIsNotParsed)
{
    const std::string cuerpo = "<R><V>x</V>";
    const std::string cierre = "</R>";
    std::string justo = cuerpo + std::string(FUNCXML_TamMaxDocumento - cuerpo.size() - cierre.size(), ' ') + cierre;
    raiz_.write("config/justo.xml", justo);
    raiz_.write("config/grande.xml", justo + " ");
    EXPECT_NE(carga("justo.xml"), nullptr);
    const std::string salida = salidaDe([&] { EXPECT_EQ(carga("grande.xml"), nullptr); });
    EXPECT_NE(salida.find("LOAD_XML_RDONLY:Too large:"), std::string::npos) << salida;
    EXPECT_NE(handle_, nullptr) << "the document already loaded stays";
}

TEST_F(Fichero, ExternalEntitiesAreNeverRead)
{
    raiz_.write("config/secreto", "leaked");
    raiz_.write("config/a.xml", "<!DOCTYPE R [<!ENTITY e SYSTEM \"file://" + ruta("secreto") + "\">]><R>[&e;]</R>");
    ASSERT_NE(carga("a.xml"), nullptr);
    EXPECT_EQ(lee(handle_, "/R"), "[]");
}

TEST_F(Fichero, ASaveIsAllOrNothingAndKeepsThePermissions)
{
    std::string original = cabecera + "<R>\n";
    for (int i = 0; i < 60; ++i)
        original += "  <C" + std::to_string(i) + ">channel " + std::to_string(i) + "</C" + std::to_string(i) + ">\n";
    raiz_.write("config/sondeo.xml", original += "</R>\n");
    ASSERT_EQ(chmod(ruta("sondeo.xml").c_str(), 0640), 0);
    struct stat previo {}, despues {};
    ASSERT_EQ(stat(ruta("sondeo.xml").c_str(), &previo), 0);
    ASSERT_NE(carga("sondeo.xml"), nullptr);
    ASSERT_EQ(FUNCXML_setXMLNodeContent(handle_, "changed", 0, "/R/C0"), 0);
    const pid_t hijo = fork();
    ASSERT_GE(hijo, 0);
    if (hijo == 0) {
        // A file size limit below the document: the write fails part-way (EFBIG).
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limite{512, 512};
        setrlimit(RLIMIT_FSIZE, &limite);
        _exit(FUNCXML_GuardaDocumento(handle_, ruta("sondeo.xml").c_str()) == -1 ? 0 : 1);
    }
    int estado = 0;
    ASSERT_EQ(waitpid(hijo, &estado, 0), hijo);
    EXPECT_TRUE(WIFEXITED(estado) && WEXITSTATUS(estado) == 0) << "the failed save did not report -1";
    EXPECT_EQ(raiz_.read("config/sondeo.xml"), original);
    EXPECT_EQ(modo("sondeo.xml"), 0640u);
    EXPECT_EQ(raiz_.listing(), std::vector<std::string>{"config/sondeo.xml"}) << "the temporary file is gone";
    // Without the limit the same save goes through: a new file renamed over the old one.
    ASSERT_EQ(FUNCXML_GuardaDocumento(handle_, ruta("sondeo.xml").c_str()), 0);
    EXPECT_EQ(raiz_.read("config/sondeo.xml"), original.replace(original.find("channel 0"), 9, "changed"));
    ASSERT_EQ(stat(ruta("sondeo.xml").c_str(), &despues), 0);
    EXPECT_EQ(despues.st_mode & 07777, 0640u);
    EXPECT_NE(despues.st_ino, previo.st_ino);
    EXPECT_EQ(raiz_.listing(), std::vector<std::string>{"config/sondeo.xml"});
}

TEST_F(Fichero, ANewFileIsOpenToReadersALinkIsFollowedAndAFailedSaveLeavesNothing)
{
    XmlDoc doc = parsea("<R>new</R>");
    const mode_t mascara = umask(077);
    EXPECT_EQ(FUNCXML_GuardaDocumento(doc.get(), ruta("sondeo.xml").c_str()), 0);
    umask(mascara);
    EXPECT_EQ(modo("sondeo.xml"), 0644u);
    raiz_.write("config/flash/network.xml", "<R>old</R>");
    fs::create_symlink(ruta("flash/network.xml"), ruta("network.xml"));
    ASSERT_EQ(FUNCXML_GuardaDocumento(doc.get(), ruta("network.xml").c_str()), 0);
    EXPECT_TRUE(fs::is_symlink(ruta("network.xml")));
    EXPECT_EQ(raiz_.read("config/flash/network.xml"), cabecera + "<R>new</R>\n");
    fs::create_directory(ruta("dir.xml"));
    for (const char *nombre : {"missing/a.xml", "dir.xml"})
        EXPECT_EQ(FUNCXML_GuardaDocumento(doc.get(), ruta(nombre).c_str()), -1) << nombre;
    EXPECT_EQ(raiz_.listing().size(), 3u) << "no temporary file is left behind";
}

}  // namespace
