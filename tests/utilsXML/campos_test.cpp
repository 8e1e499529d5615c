// Accessors of the configuration and status documents: every row of both element lists
// against the fixture documents, then the irregular members one by one.
#include "utilsXML/utilsXML.h"

#include "documentos.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace {

using namespace store_test;

using LeeFn = int (*)(xmlDocPtr, char *, uint16_t, uint8_t, uint8_t);
using GrabaFn = int (*)(xmlDocPtr, const char *, uint8_t, uint8_t);

// One row of an element list, with its reader and writer brought to one shape.
struct Fila {
    const char *ruta;    // pattern of the row
    const char *nombre;  // reader's name, for the messages
    uint16_t minimo;
    int version;
    int indices;
    bool status;
    bool tolerante;  // writer forgives a document older than the element
    LeeFn lee;
    GrabaFn graba;
};

#define LEE_0(f) +[](xmlDocPtr d, char *b, uint16_t t, uint8_t, uint8_t) { return f(d, b, t); }
#define LEE_1(f) +[](xmlDocPtr d, char *b, uint16_t t, uint8_t i, uint8_t) { return f(d, b, t, i); }
#define LEE_2(f) +[](xmlDocPtr d, char *b, uint16_t t, uint8_t i, uint8_t j) { return f(d, b, t, i, j); }
#define GRABA_0(f) +[](xmlDocPtr d, const char *v, uint8_t, uint8_t) { return f(d, v); }
#define GRABA_1(f) +[](xmlDocPtr d, const char *v, uint8_t i, uint8_t) { return f(d, v, i); }
#define GRABA_2(f) +[](xmlDocPtr d, const char *v, uint8_t i, uint8_t j) { return f(d, v, i, j); }

const std::vector<Fila> filas = {
#define UTILSXML_CAMPO(ruta, lee, graba, minimo, version, indices) \
    Fila{ruta, #lee, minimo, version, indices, false, false, LEE_##indices(lee), GRABA_##indices(graba)},
#define UTILSXML_CARACTER(ruta, lee, graba, minimo, version, indices)
#include "utilsXML/utilsXML_campos_config.def"
#define UTILSXML_CAMPO(ruta, lee, graba, minimo, version, indices) \
    Fila{ruta, #lee, minimo, version, indices, true, false, LEE_##indices(lee), GRABA_##indices(graba)},
#define UTILSXML_CAMPO_TOLERANTE(ruta, lee, graba, minimo, version, indices) \
    Fila{ruta, #lee, minimo, version, indices, true, true, LEE_##indices(lee), GRABA_##indices(graba)},
#define UTILSXML_SELECTOR(rutaSi, rutaNo, lee, graba, minimo, version)                                        \
    Fila{rutaSi, #lee "(1)", minimo, version, 0, true, false,                                               \
         +[](xmlDocPtr d, char *b, uint16_t t, uint8_t, uint8_t) { return lee(d, b, t, 1); },                \
         +[](xmlDocPtr d, const char *v, uint8_t, uint8_t) { return graba(d, v, 1); }},                      \
        Fila{rutaNo, #lee "(0)", minimo, version, 0, true, false,                                            \
             +[](xmlDocPtr d, char *b, uint16_t t, uint8_t, uint8_t) { return lee(d, b, t, 0); },            \
             +[](xmlDocPtr d, const char *v, uint8_t, uint8_t) { return graba(d, v, 0); }},
#include "utilsXML/utilsXML_campos_status.def"
};

void PrintTo(const Fila &fila, std::ostream *salida) { *salida << fila.nombre; }

// The row's element for index 1 (and service 1): every one exists in the version 5 fixtures.
std::string rutaDe(const Fila &fila)
{
    char ruta[128];
    std::snprintf(ruta, sizeof ruta, fila.ruta, 1, 1);
    return ruta;
}

Doc documentoDe(const Fila &fila) { return cargaVersion(fila.status ? "status_v5.xml" : "config_v5.xml"); }

const char *versionDe(const Fila &fila) { return fila.status ? "/ENCODERSTATUS/CONFIGVERS" : "/ENCODERCONFIG/CONFIGVERS"; }

class FilaLista : public ::testing::TestWithParam<Fila> {};

TEST_P(FilaLista, ReadsItsElementIntoAZeroFilledBuffer)
{
    const Fila &fila = GetParam();
    Doc doc = documentoDe(fila);
    ASSERT_TRUE(doc);
    auto esperado = texto(doc.get(), rutaDe(fila));
    ASSERT_TRUE(esperado) << rutaDe(fila) << " missing from the fixture";

    char buffer[64];
    std::memset(buffer, 'x', sizeof buffer);
    ASSERT_EQ(fila.lee(doc.get(), buffer, 48, 1, 1), 0);
    EXPECT_EQ(std::string(buffer), *esperado);
    for (size_t i = esperado->size(); i < 48; ++i)
        ASSERT_EQ(buffer[i], '\0') << "byte " << i;
    EXPECT_EQ(buffer[48], 'x') << "wrote past the size";
}

TEST_P(FilaLista, RefusesABufferBelowItsMinimumWithoutTouchingIt)
{
    const Fila &fila = GetParam();
    Doc doc = documentoDe(fila);
    char buffer[64];
    std::memset(buffer, 'x', sizeof buffer);
    EXPECT_EQ(fila.lee(doc.get(), buffer, static_cast<uint16_t>(fila.minimo - 1), 1, 1), -1);
    EXPECT_EQ(std::string(buffer, sizeof buffer), std::string(sizeof buffer, 'x'));
    EXPECT_EQ(fila.lee(doc.get(), buffer, fila.minimo, 1, 1), 0);
}

TEST_P(FilaLista, WritesOnlyItsOwnElement)
{
    const Fila &fila = GetParam();
    Doc escrito = documentoDe(fila);
    Doc esperado = documentoDe(fila);
    const std::string valor = "Sport & News <1>";
    ASSERT_EQ(fila.graba(escrito.get(), valor.c_str(), 1, 1), 0);
    EXPECT_EQ(texto(escrito.get(), rutaDe(fila)), valor);
    fija(esperado.get(), rutaDe(fila), "Sport &amp; News &lt;1&gt;");
    EXPECT_EQ(serializa(escrito.get()), serializa(esperado.get()));
}

TEST_P(FilaLista, FollowsTheVersionOfTheDocument)
{
    const Fila &fila = GetParam();
    Doc doc = documentoDe(fila);
    char buffer[64];
    if (fila.version == 0) {
        // Elements of every version are read and written whatever the document says.
        if (rutaDe(fila) == versionDe(fila))
            return;
        quita(doc.get(), versionDe(fila));
        EXPECT_EQ(fila.lee(doc.get(), buffer, 48, 1, 1), 0);
        EXPECT_EQ(fila.graba(doc.get(), "7", 1, 1), 0);
        return;
    }
    fija(doc.get(), versionDe(fila), std::to_string(fila.version - 1));
    const std::string antes = serializa(doc.get());
    std::memset(buffer, 'x', sizeof buffer);
    EXPECT_EQ(fila.lee(doc.get(), buffer, 48, 1, 1), -1);
    EXPECT_EQ(std::string(buffer, sizeof buffer), std::string(sizeof buffer, 'x'));
    if (fila.tolerante) {
        EXPECT_EQ(fila.graba(doc.get(), "7", 1, 1), 0);  // the element is there: written
    } else {
        EXPECT_EQ(fila.graba(doc.get(), "7", 1, 1), -1);
        EXPECT_EQ(serializa(doc.get()), antes);
    }

    quita(doc.get(), versionDe(fila));
    EXPECT_EQ(fila.lee(doc.get(), buffer, 48, 1, 1), -1);

    Doc actual = documentoDe(fila);
    fija(actual.get(), versionDe(fila), std::to_string(fila.version));
    EXPECT_EQ(fila.lee(actual.get(), buffer, 48, 1, 1), 0);
    EXPECT_EQ(fila.graba(actual.get(), "7", 1, 1), 0);
}

TEST_P(FilaLista, FailsOnAMissingElementAndCreatesNothing)
{
    const Fila &fila = GetParam();
    Doc doc = documentoDe(fila);
    quita(doc.get(), rutaDe(fila));
    const std::string antes = serializa(doc.get());
    char buffer[64];
    std::memset(buffer, 'x', sizeof buffer);
    EXPECT_EQ(fila.lee(doc.get(), buffer, 48, 1, 1), -1);
    EXPECT_EQ(buffer[0], '\0');  // the buffer was zero-filled before the read
    // The forgiving writer too: a version 5 unit should have the element.
    EXPECT_EQ(fila.graba(doc.get(), "7", 1, 1), -1);
    EXPECT_EQ(serializa(doc.get()), antes);
}

TEST_P(FilaLista, RejectsNullArguments)
{
    const Fila &fila = GetParam();
    Doc doc = documentoDe(fila);
    char buffer[64];
    EXPECT_EQ(fila.lee(nullptr, buffer, 48, 1, 1), -1);
    EXPECT_EQ(fila.lee(doc.get(), nullptr, 48, 1, 1), -1);
    EXPECT_EQ(fila.graba(nullptr, "1", 1, 1), -1);
    EXPECT_EQ(fila.graba(doc.get(), nullptr, 1, 1), -1);
}

INSTANTIATE_TEST_SUITE_P(Filas, FilaLista, ::testing::ValuesIn(filas), [](const auto &info) {
    std::string nombre = info.param.nombre;
    for (char &c : nombre)
        if (!isalnum(static_cast<unsigned char>(c)))
            c = '_';
    return nombre + "_" + std::to_string(info.index);
});

TEST(ListasDeCampos, HaveOneRowPerElementOfTheDocuments)
{
    // 106 text rows of the configuration document (plus its two flags); 28 of the status
    // document plus the two selector rows, each taken once per path.
    size_t config = 0, status = 0;
    for (const Fila &fila : filas)
        ++(fila.status ? status : config);
    EXPECT_EQ(config, 106u);
    EXPECT_EQ(status, 32u);
}

// ---------------------------------------------------------------------------
// Names against elements, written out by hand: the pairings that look wrong but are
// the system's own.
// ---------------------------------------------------------------------------

struct Nombrado {
    const char *nombre;
    int (*lee)(xmlDocPtr, char *, uint16_t);
    const char *ruta;
    bool status;
};

const Nombrado nombrados[] = {
    {"LeeEntradaVideo", [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_LeeEntradaVideo(d, b, t, 2); },
     "/ENCODERCONFIG/ENTRADA2/VIDEOIN", false},
    {"LeeEntradaCodecVideo",
     [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_LeeEntradaCodecVideo(d, b, t, 2); },
     "/ENCODERCONFIG/ENTRADA2/VIDEO", false},
    {"LeeEntradaEntradaAudio",
     [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_LeeEntradaEntradaAudio(d, b, t, 1); },
     "/ENCODERCONFIG/ENTRADA1/AUDIOIN", false},
    {"LeeEntradaCodecAudio",
     [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_LeeEntradaCodecAudio(d, b, t, 1); },
     "/ENCODERCONFIG/ENTRADA1/AUDIO", false},
    {"LeeEntradaBitrateVIDEO",
     [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_LeeEntradaBitrateVIDEO(d, b, t, 1); },
     "/ENCODERCONFIG/ENTRADA1/BITRATE/VIDEO", false},
    {"LeeSALTSCanalPMT", [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_LeeSALTSCanalPMT(d, b, t, 2); },
     "/ENCODERCONFIG/SALIDATS/CANAL2/PMTPID", false},
    {"LeeSALCODFMFRECDEC", [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_LeeSALCODFMFRECDEC(d, b, t); },
     "/ENCODERCONFIG/SALIDACOFDM/FRECDEC", false},
    {"LeeSALQAMFrecoCanal", [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_LeeSALQAMFrecoCanal(d, b, t); },
     "/ENCODERCONFIG/SALIDAQAM/FREC", false},
    {"LeeTestMPEG", [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_LeeTestMPEG(d, b, t, 2); },
     "/ENCODERCONFIG/TEST/MPEG2", false},
    {"LeeENTRAIPSERVICEMAJOR",
     [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_LeeENTRAIPSERVICEMAJOR(d, b, t, 1, 2); },
     "/ENCODERCONFIG/SERVICIOSIP/INPUT1/ISER2/CHNUMBER/MAJOR", false},
    {"STATUS_LeeTemperatura(1)",
     [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_STATUS_LeeTemperatura(d, b, t, 1); },
     "/ENCODERSTATUS/COMUN/TEMP/CENT", true},
    {"STATUS_LeeTemperatura(0)",
     [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_STATUS_LeeTemperatura(d, b, t, 0); },
     "/ENCODERSTATUS/COMUN/TEMP/FAR", true},
    {"STATUS_LeeTemperatura(7)",
     [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_STATUS_LeeTemperatura(d, b, t, 7); },
     "/ENCODERSTATUS/COMUN/TEMP/CENT", true},
    {"STATUS_LeeVersionFPGA(1)",
     [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_STATUS_LeeVersionFPGA(d, b, t, 1); },
     "/ENCODERSTATUS/COMUN/VERSIONSW/FPGA/HW", true},
    {"STATUS_LeeVersionFPGA(0)",
     [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_STATUS_LeeVersionFPGA(d, b, t, 0); },
     "/ENCODERSTATUS/COMUN/VERSIONSW/FPGA/SW", true},
    {"STATUS_LeeNivelQAM", [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_STATUS_LeeNivelQAM(d, b, t); },
     "/ENCODERSTATUS/COMUN/SALIDA", true},
    {"STATUS_LeeENTRAIPSERVMAXBITRATE",
     [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_STATUS_LeeENTRAIPSERVMAXBITRATE(d, b, t, 2, 1); },
     "/ENCODERSTATUS/SERVICIOSIP/INPUT2/ISER1/MAXBITRATE", true},
};

void PrintTo(const Nombrado &nombrado, std::ostream *salida) { *salida << nombrado.ruta; }

// Gives every leaf element of the document its own short text, so that a read tells
// which element it came from.
std::map<std::string, std::string> marcaHojas(xmlDocPtr documento)
{
    std::map<std::string, std::string> marcas;
    int n = 0;
    // CONFIGVERS keeps its number: the version gates read it.
    for (xmlNodePtr hoja : nodos(documento, "//*[not(*) and name() != 'CONFIGVERS']")) {
        std::string marca = "#" + std::to_string(++n);
        xmlChar *ruta = xmlGetNodePath(hoja);
        marcas[reinterpret_cast<const char *>(ruta)] = marca;
        xmlFree(ruta);
        xmlNodeSetContent(hoja, reinterpret_cast<const xmlChar *>(marca.c_str()));
    }
    return marcas;
}

class NombreElemento : public ::testing::TestWithParam<Nombrado> {};

TEST_P(NombreElemento, ReadsTheElementTheSystemPairsWithTheName)
{
    Doc doc = cargaVersion(GetParam().status ? "status_v5.xml" : "config_v5.xml");
    auto marcas = marcaHojas(doc.get());
    ASSERT_TRUE(marcas.count(GetParam().ruta)) << GetParam().ruta;
    char buffer[40];
    ASSERT_EQ(GetParam().lee(doc.get(), buffer, sizeof buffer), 0);
    EXPECT_EQ(std::string(buffer), marcas[GetParam().ruta]);
}

INSTANTIATE_TEST_SUITE_P(Nombres, NombreElemento, ::testing::ValuesIn(nombrados),
                         [](const auto &info) {
                             std::string nombre = info.param.nombre;
                             for (char &c : nombre)
                                 if (!isalnum(static_cast<unsigned char>(c)))
                                     c = '_';
                             return nombre;
                         });

TEST(Selectores, WriteTheElementTheSelectorPicks)
{
    Doc doc = cargaVersion("status_v5.xml");
    EXPECT_EQ(UTILSXML_STATUS_GrabaTemperatura(doc.get(), "50", 1), 0);
    EXPECT_EQ(UTILSXML_STATUS_GrabaTemperatura(doc.get(), "122", 0), 0);
    EXPECT_EQ(UTILSXML_STATUS_GrabaVersionFPGA(doc.get(), "3.3", 9), 0);
    EXPECT_EQ(UTILSXML_STATUS_GrabaVersionFPGA(doc.get(), "5.20", 0), 0);
    EXPECT_EQ(texto(doc.get(), "/ENCODERSTATUS/COMUN/TEMP/CENT"), "50");
    EXPECT_EQ(texto(doc.get(), "/ENCODERSTATUS/COMUN/TEMP/FAR"), "122");
    EXPECT_EQ(texto(doc.get(), "/ENCODERSTATUS/COMUN/VERSIONSW/FPGA/HW"), "3.3");
    EXPECT_EQ(texto(doc.get(), "/ENCODERSTATUS/COMUN/VERSIONSW/FPGA/SW"), "5.20");
}

// ---------------------------------------------------------------------------
// Cuts of over-long values
// ---------------------------------------------------------------------------

struct Corte {
    const char *valor;
    uint16_t tam;
    const char *leido;
};

void PrintTo(const Corte &corte, std::ostream *salida) { *salida << corte.valor << " size " << corte.tam; }

class CorteLectura : public ::testing::TestWithParam<Corte> {};

TEST_P(CorteLectura, CutsAtAUtf8Boundary)
{
    Doc doc = cargaVersion("config_v5.xml");
    fija(doc.get(), "/ENCODERCONFIG/SALIDATS/NETWORKID/NAME", GetParam().valor);
    char buffer[64];
    std::memset(buffer, 'x', sizeof buffer);
    ASSERT_EQ(UTILSXML_LeeSALTSNETwORKNAME(doc.get(), buffer, GetParam().tam), 0);
    EXPECT_EQ(std::string(buffer, strnlen(buffer, GetParam().tam)), GetParam().leido);
    EXPECT_EQ(buffer[GetParam().tam], 'x');
}

INSTANTIATE_TEST_SUITE_P(
    Cortes, CorteLectura,
    ::testing::Values(
        // 40 characters with size 17: the first 16 bytes.
        Corte{"ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789abcd", 17, "ABCDEFGHIJKLMNOP"},
        // The 17th byte inside "ñ" (bytes 16 and 17): the whole character goes.
        Corte{"ABCDEFGHIJKLMNOñPQRSTUVWXYZ0123456789", 17, "ABCDEFGHIJKLMNO"},
        // The 16th byte is the lead byte: the character would not fit whole.
        Corte{"ABCDEFGHIJKLMNOPñQRSTUVWXYZ0123456789", 17, "ABCDEFGHIJKLMNOP"},
        Corte{"Sala Técnica", 17, "Sala Técnica"},
        // Exactly the size fills the buffer, with no room for a terminator.
        Corte{"0123456789ABCDEF0", 17, "0123456789ABCDEF0"}));

// ---------------------------------------------------------------------------
// One-character flags
// ---------------------------------------------------------------------------

struct Bandera {
    const char *texto;
    int resultado;
    char caracter;
};

void PrintTo(const Bandera &bandera, std::ostream *salida) { *salida << '"' << bandera.texto << '"'; }

class BanderaDHCP : public ::testing::TestWithParam<Bandera> {};

TEST_P(BanderaDHCP, ReadsOneCharacterOrFails)
{
    Doc doc = cargaVersion("config_v2.xml");
    fija(doc.get(), "/ENCODERCONFIG/NETWORK/IP_AUTO", GetParam().texto);
    fija(doc.get(), "/ENCODERCONFIG/ENTRADA1/ACTIVA", GetParam().texto);
    char c = 'x';
    EXPECT_EQ(UTILSXML_LeeDHCPActivo(doc.get(), &c), GetParam().resultado);
    EXPECT_EQ(c, GetParam().caracter);
    c = 'x';
    EXPECT_EQ(UTILSXML_LeeEntradaActiva(doc.get(), &c, 1), GetParam().resultado);
    EXPECT_EQ(c, GetParam().caracter);
}

INSTANTIATE_TEST_SUITE_P(Banderas, BanderaDHCP,
                         ::testing::Values(Bandera{"1", 0, '1'}, Bandera{"0", 0, '0'}, Bandera{"10", -1, '\0'},
                                           Bandera{"", 0, '\0'}));

TEST(Bandera, WritesTheCharacterAsAOneCharacterText)
{
    Doc doc = cargaVersion("config_v5.xml");
    EXPECT_EQ(UTILSXML_GrabaDHCPActivo(doc.get(), '1'), 0);
    EXPECT_EQ(UTILSXML_GrabaEntradaActiva(doc.get(), '0', 2), 0);
    EXPECT_EQ(texto(doc.get(), "/ENCODERCONFIG/NETWORK/IP_AUTO"), "1");
    EXPECT_EQ(texto(doc.get(), "/ENCODERCONFIG/ENTRADA2/ACTIVA"), "0");
    EXPECT_EQ(texto(doc.get(), "/ENCODERCONFIG/ENTRADA1/ACTIVA"), "1");

    const std::string antes = serializa(doc.get());
    EXPECT_EQ(UTILSXML_GrabaEntradaActiva(doc.get(), '1', 9), -1);
    EXPECT_EQ(UTILSXML_GrabaDHCPActivo(nullptr, '1'), -1);
    char c = 'x';
    EXPECT_EQ(UTILSXML_LeeEntradaActiva(doc.get(), &c, 9), -1);
    EXPECT_EQ(c, '\0');
    EXPECT_EQ(UTILSXML_LeeDHCPActivo(doc.get(), nullptr), -1);
    EXPECT_EQ(serializa(doc.get()), antes);
}

// ---------------------------------------------------------------------------
// Writers never create elements, nor store what XML cannot hold
// ---------------------------------------------------------------------------

TEST(Escritura, AMissingIpOutputIsNotCreated)
{
    Doc doc = cargaVersion("config_v5.xml");
    const std::string antes = serializa(doc.get());
    EXPECT_EQ(UTILSXML_GrabaSALIPIPDEST(doc.get(), "239.1.1.1", 3), -1);
    EXPECT_EQ(cuenta(doc.get(), "/ENCODERCONFIG/SALIDAIP/SALIDA3"), 0u);
    EXPECT_EQ(serializa(doc.get()), antes);
}

TEST(Escritura, RefusesTextXmlCannotHold)
{
    Doc doc = cargaVersion("config_v5.xml");
    const std::string antes = serializa(doc.get());
    EXPECT_EQ(UTILSXML_GrabaIDUnit(doc.get(), "bell\x07"), -1);
    EXPECT_EQ(UTILSXML_GrabaIDUnit(doc.get(), "bad \xC3("), -1);
    EXPECT_EQ(serializa(doc.get()), antes);
}

// ---------------------------------------------------------------------------
// Versions
// ---------------------------------------------------------------------------

struct Version {
    const char *fixture;
    int version;
};

void PrintTo(const Version &version, std::ostream *salida) { *salida << version.fixture; }

class VersionDocumento : public ::testing::TestWithParam<Version> {};

TEST_P(VersionDocumento, IsTheNumberInConfigvers)
{
    Doc doc = cargaVersion(GetParam().fixture);
    ASSERT_TRUE(doc);
    if (std::string(GetParam().fixture).starts_with("status"))
        EXPECT_EQ(UTILSXML_STATUS_CheckVersionConfig(doc.get()), GetParam().version);
    else
        EXPECT_EQ(UTILSXML_CheckVersionConfig(doc.get()), GetParam().version);
}

INSTANTIATE_TEST_SUITE_P(Fixtures, VersionDocumento,
                         ::testing::Values(Version{"config_noversion.xml", 0}, Version{"config_v1.xml", 1},
                                           Version{"config_v2.xml", 2}, Version{"config_v3.xml", 3},
                                           Version{"config_v4.xml", 4}, Version{"config_v5.xml", 5},
                                           Version{"status_v1.xml", 1}, Version{"status_v3.xml", 3},
                                           Version{"status_v5.xml", 5}));

TEST(Version, OfNoDocumentIsZeroAndEachDocumentKeepsItsOwn)
{
    EXPECT_EQ(UTILSXML_CheckVersionConfig(nullptr), 0);
    EXPECT_EQ(UTILSXML_STATUS_CheckVersionConfig(nullptr), 0);
    Doc config = cargaVersion("config_v5.xml");
    EXPECT_EQ(UTILSXML_STATUS_CheckVersionConfig(config.get()), 0);
}

TEST(Version, IsdbtOfAVersionOneOrUnversionedDocumentIsRefused)
{
    for (const char *fixture : {"config_v1.xml", "config_noversion.xml"}) {
        Doc doc = cargaVersion(fixture);
        const std::string antes = serializa(doc.get());
        char buffer[32];
        std::memset(buffer, 'x', sizeof buffer);
        EXPECT_EQ(UTILSXML_LeeSALISDBTModo(doc.get(), buffer, sizeof buffer), -1) << fixture;
        EXPECT_EQ(std::string(buffer, sizeof buffer), std::string(sizeof buffer, 'x')) << fixture;
        EXPECT_EQ(UTILSXML_GrabaSALISDBTModo(doc.get(), "1"), -1) << fixture;
        EXPECT_EQ(serializa(doc.get()), antes) << fixture;
    }
    // The unversioned document has the element: only the version keeps it out.
    Doc sinVersion = cargaVersion("config_noversion.xml");
    EXPECT_TRUE(texto(sinVersion.get(), "/ENCODERCONFIG/SALIDAISDBT/MODO"));
}

TEST(Version, GatesFollowTheDocumentsHistory)
{
    struct Caso {
        const char *fixture;
        int (*lee)(xmlDocPtr, char *, uint16_t);
        int resultado;
    };
    const Caso casos[] = {
        {"config_v4.xml", [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_LeeEntradaLIMITERESOLUCION(d, b, t, 1); }, 0},
        {"config_noversion.xml", [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_LeeEntradaLIMITERESOLUCION(d, b, t, 1); }, -1},
        {"config_noversion.xml", [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_LeeSalidaIPESTANDAR(d, b, t, 1); }, -1},
        {"config_v5.xml", [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_LeeSalidaIPESTANDAR(d, b, t, 2); }, 0},
        {"config_v4.xml", [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_LeeEntradaPROFILE(d, b, t, 1); }, -1},
        {"config_v2.xml", [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_LeeSALISDBTFREC(d, b, t); }, 0},
        {"config_v3.xml", [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_LeeENTRIPNUM(d, b, t); }, 0},
        {"config_noversion.xml", [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_LeeIP(d, b, t); }, 0},
        {"status_v3.xml", [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_STATUS_LeeSalidaIP(d, b, t); }, 0},
        {"status_v2.xml", [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_STATUS_LeeSalidaIP(d, b, t); }, -1},
        {"status_v3.xml", [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_STATUS_LeeENTRIPBITRATEFREE(d, b, t); }, -1},
        {"status_v4.xml", [](xmlDocPtr d, char *b, uint16_t t) { return UTILSXML_STATUS_LeeENTRIPBITRATEFREE(d, b, t); }, 0},
    };
    for (const Caso &caso : casos) {
        Doc doc = cargaVersion(caso.fixture);
        char buffer[40];
        EXPECT_EQ(caso.lee(doc.get(), buffer, sizeof buffer), caso.resultado) << caso.fixture;
    }
}

// ---------------------------------------------------------------------------
// The forgiving write of the status document's SALIDAIP
// ---------------------------------------------------------------------------

TEST(SalidaIPStatus, AnOlderUnitWithoutTheElementIsNoError)
{
    Doc doc = cargaVersion("status_v2.xml");
    const std::string antes = serializa(doc.get());
    EXPECT_EQ(UTILSXML_STATUS_GrabaSalidaIP(doc.get(), "OUTPUT MPTS"), 0);
    EXPECT_EQ(serializa(doc.get()), antes);

    Doc sinVersion = cargaVersion("status_v4.xml");
    quita(sinVersion.get(), "/ENCODERSTATUS/SALIDAIP");
    quita(sinVersion.get(), "/ENCODERSTATUS/CONFIGVERS");
    EXPECT_EQ(UTILSXML_STATUS_GrabaSalidaIP(sinVersion.get(), "OUTPUT MPTS"), 0);
}

TEST(SalidaIPStatus, AMissingElementOfARecentUnitIsAnError)
{
    Doc doc = cargaVersion("status_v4.xml");
    quita(doc.get(), "/ENCODERSTATUS/SALIDAIP");
    EXPECT_EQ(UTILSXML_STATUS_GrabaSalidaIP(doc.get(), "OUTPUT MPTS"), -1);
    EXPECT_EQ(UTILSXML_STATUS_GrabaSalidaIP(nullptr, "OUTPUT MPTS"), -1);
}

TEST(SalidaIPStatus, WritesWhereTheElementExists)
{
    Doc doc = cargaVersion("status_v3.xml");
    EXPECT_EQ(UTILSXML_STATUS_GrabaSalidaIP(doc.get(), "INPUT x2"), 0);
    EXPECT_EQ(texto(doc.get(), "/ENCODERSTATUS/SALIDAIP"), "INPUT x2");
}

}  // namespace
