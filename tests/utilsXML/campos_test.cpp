// Accessors of the configuration and status documents. The rows are the element lists the
// store itself is generated from, so every accessor is checked without writing any of them out.
#include "utilsXML/utilsXML.h"

#include "documentos.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <tuple>
#include <vector>

namespace {

using namespace store_test;

// One row of an element list with its reader and writer taken at index 1 (service 1).
struct Fila {
    const char *ruta;
    const char *nombre;
    uint16_t minimo;
    int version;
    bool status;
    bool tolerante;  // the writer forgives a document older than the element
    int (*lee)(xmlDocPtr, char *, uint16_t);
    int (*graba)(xmlDocPtr, const char *);

    std::string elemento() const
    {
        char texto[128];
        std::snprintf(texto, sizeof texto, ruta, 1, 1);
        return texto;
    }
    std::string fixture(int v = 5) const { return (status ? "status_v" : "config_v") + std::to_string(v) + ".xml"; }
    std::string rutaVersion() const { return status ? "/ENCODERSTATUS/CONFIGVERS" : "/ENCODERCONFIG/CONFIGVERS"; }
};

// The index arguments after the document and the value: none, input 1, or input 1 and service 1.
#define INDICES_0
#define INDICES_1 , 1
#define INDICES_2 , 1, 1
#define SELECTOR(s) , s
#define LEE(f, indices) +[](xmlDocPtr d, char *b, uint16_t t) { return f(d, b, t indices); }
#define GRABA(f, indices) +[](xmlDocPtr d, const char *v) { return f(d, v indices); }
#define FILA(ruta, lee, graba, minimo, version, indices, status, tolerante) \
    Fila{ruta, #lee, minimo, version, status, tolerante, LEE(lee, INDICES_##indices), GRABA(graba, INDICES_##indices)},

const std::vector<Fila> filas = {
#define UTILSXML_CAMPO(ruta, lee, graba, minimo, version, indices) \
    FILA(ruta, lee, graba, minimo, version, indices, false, false)
#define UTILSXML_CARACTER(ruta, lee, graba, minimo, version, indices)
#include "utilsXML/utilsXML_campos_config.def"
#define UTILSXML_CAMPO(ruta, lee, graba, minimo, version, indices) \
    FILA(ruta, lee, graba, minimo, version, indices, true, false)
#define UTILSXML_CAMPO_TOLERANTE(ruta, lee, graba, minimo, version, indices) \
    FILA(ruta, lee, graba, minimo, version, indices, true, true)
#define UTILSXML_SELECTOR(rutaSi, rutaNo, lee, graba, minimo, version)                                  \
    Fila{rutaSi, #lee "Si", minimo, version, true, false, LEE(lee, SELECTOR(7)), GRABA(graba, SELECTOR(7))}, \
        Fila{rutaNo, #lee "No", minimo, version, true, false, LEE(lee, SELECTOR(0)), GRABA(graba, SELECTOR(0))},
#include "utilsXML/utilsXML_campos_status.def"
};

void PrintTo(const Fila &fila, std::ostream *salida) { *salida << fila.nombre; }

// A buffer full of 'x', to tell what a reader touched.
struct Buffer {
    char bytes[64];
    Buffer() { std::memset(bytes, 'x', sizeof bytes); }
    bool intacto() const { return std::string(bytes, sizeof bytes) == std::string(sizeof bytes, 'x'); }
};

class FilaLista : public ::testing::TestWithParam<Fila> {};

TEST_P(FilaLista, NamesAnElementOfItsVersionAndRoundTripsAnyText)
{
    const Fila &fila = GetParam();
    for (int version : {5, fila.version})
        if (version > 0) {
            Doc doc = cargaVersion(fila.fixture(version));
            ASSERT_TRUE(xmlText(doc.get(), fila.elemento())) << "missing from " << fila.fixture(version);
        }
    for (const std::string valor : {"Sport & <News>", "\"q\" 'x' 1 & 2", "A&B;", "x&amp;y Ñandú €"}) {
        Doc doc = cargaVersion(fila.fixture());
        Doc esperado = cargaVersion(fila.fixture());
        fija(esperado.get(), fila.elemento(), valor);
        ASSERT_EQ(fila.graba(doc.get(), valor.c_str()), 0) << valor;
        EXPECT_EQ(serializa(doc.get()), serializa(esperado.get())) << "only the element changes";
        const std::string guardado = serializa(doc.get());  // as the saved file gives it back
        Doc releido(xmlReadMemory(guardado.data(), static_cast<int>(guardado.size()), nullptr, "UTF-8", 0));
        Buffer leido;
        ASSERT_EQ(fila.lee(releido.get(), leido.bytes, 48), 0);
        EXPECT_EQ(std::string(leido.bytes), valor);
        EXPECT_EQ(std::string(leido.bytes + 48, 16), std::string(16, 'x')) << "read past its size";
    }
    // Text that XML 1.0 cannot hold is refused before it could make the file unreadable.
    Doc doc = cargaVersion(fila.fixture());
    const std::string antes = serializa(doc.get());
    EXPECT_EQ(fila.graba(doc.get(), "bell\x07"), -1);
    EXPECT_EQ(fila.graba(doc.get(), "bad \xC3("), -1);
    EXPECT_EQ(serializa(doc.get()), antes);
}

// One version too old or none at all: an element newer than that is refused, the buffer and
// the document untouched (the forgiving writer stores it where it is there, and passes where it
// is not); elements of every version are always there.
TEST_P(FilaLista, RefusesAnElementNewerThanTheDocument)
{
    const Fila &fila = GetParam();
    if (fila.elemento() == fila.rutaVersion())
        GTEST_SKIP() << "the version element itself";
    for (const auto &[version, admite] : {std::pair{std::to_string(fila.version - 1), fila.version == 0},
                                          {std::string(), fila.version == 0}, {std::to_string(fila.version), true}}) {
        Doc doc = cargaVersion(fila.fixture());
        version.empty() ? quita(doc.get(), fila.rutaVersion()) : fija(doc.get(), fila.rutaVersion(), version);
        const std::string antes = serializa(doc.get());
        Buffer leido;
        EXPECT_EQ(fila.lee(doc.get(), leido.bytes, 48), admite ? 0 : -1) << "version " << version;
        EXPECT_EQ(leido.intacto(), !admite) << "version " << version;
        EXPECT_EQ(fila.graba(doc.get(), "7 written"), admite || fila.tolerante ? 0 : -1) << "version " << version;
        EXPECT_EQ(serializa(doc.get()) == antes, !admite && !fila.tolerante) << "version " << version;
        if (fila.tolerante && !admite) {
            quita(doc.get(), fila.elemento());
            const std::string sinElemento = serializa(doc.get());
            EXPECT_EQ(fila.graba(doc.get(), "7"), 0);
            EXPECT_EQ(serializa(doc.get()), sinElemento);
        }
    }
}

TEST_P(FilaLista, RefusesSmallBuffersMissingElementsAndNullArguments)
{
    const Fila &fila = GetParam();
    Doc doc = cargaVersion(fila.fixture());
    Buffer pequeno;
    EXPECT_EQ(fila.lee(doc.get(), pequeno.bytes, static_cast<uint16_t>(fila.minimo - 1)), -1);
    EXPECT_TRUE(pequeno.intacto());
    Buffer justo;
    EXPECT_EQ(fila.lee(doc.get(), justo.bytes, fila.minimo), 0);
    EXPECT_EQ(fila.lee(nullptr, justo.bytes, 48), -1);
    EXPECT_EQ(fila.lee(doc.get(), nullptr, 48), -1);
    EXPECT_EQ(fila.graba(nullptr, "1"), -1);
    EXPECT_EQ(fila.graba(doc.get(), nullptr), -1);

    quita(doc.get(), fila.elemento());
    const std::string antes = serializa(doc.get());
    Buffer leido;
    EXPECT_EQ(fila.lee(doc.get(), leido.bytes, 48), -1);
    EXPECT_EQ(fila.graba(doc.get(), "7"), -1) << "writers never create elements";
    EXPECT_EQ(serializa(doc.get()), antes);
}

INSTANTIATE_TEST_SUITE_P(Filas, FilaLista, ::testing::ValuesIn(filas),
                         [](const auto &i) { return std::string(i.param.nombre) + "_" + std::to_string(i.index); });

// The one-character flags read a single character, nothing for an empty element, and fail on more.
TEST(Banderas, ReadOneCharacterAndWriteItAsText)
{
    for (const auto &[texto, resultado, caracter] :
         {std::tuple{"1", 0, '1'}, {"0", 0, '0'}, {"", 0, '\0'}, {"10", -1, '\0'}}) {
        Doc doc = cargaVersion("config_v5.xml");
        fija(doc.get(), "/ENCODERCONFIG/NETWORK/IP_AUTO", texto);
        fija(doc.get(), "/ENCODERCONFIG/ENTRADA2/ACTIVA", texto);
        char dhcp = 'x', activa = 'x';
        EXPECT_EQ(UTILSXML_LeeDHCPActivo(doc.get(), &dhcp), resultado) << texto;
        EXPECT_EQ(UTILSXML_LeeEntradaActiva(doc.get(), &activa, 2), resultado) << texto;
        EXPECT_EQ(std::string({dhcp, activa}), std::string(2, caracter)) << texto;
        EXPECT_EQ(UTILSXML_GrabaDHCPActivo(doc.get(), 'A') + UTILSXML_GrabaEntradaActiva(doc.get(), 'B', 2), 0);
        EXPECT_EQ(xmlText(doc.get(), "//IP_AUTO").value() + xmlText(doc.get(), "//ENTRADA2/ACTIVA").value(), "AB");
    }
}

}  // namespace
