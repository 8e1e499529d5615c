// The configuration directory of a temporary root: the walk of unit documents in name order,
// reopening by path, and closing with and without an atomic save.
#include "utilsXML/utilsXML.h"

#include "documentos.h"
#include "support/cgi_runner.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstring>
#include <sys/resource.h>
#include <sys/stat.h>
#include <utility>

namespace {

using namespace store_test;
using cambioip_test::readFile;

class Directorio : public ::testing::Test {
  protected:
    void SetUp() override
    {
        setenv("CAMBIOIP_ROOT", raiz.path().c_str(), 1);
        setenv("CAMBIOIP_LOAD_PAUSE_MS", "0", 1);
        UTILSXML_SetLibMode(1);
        // Written in an order that is not the names' one. Each document names its own file and
        // is long enough for a small file size limit to cut its save.
        for (const char *nombre : {"sondeo.010.000.000.032.xml", "network.010.000.000.032.xml", "network.xml",
                                   "network.010.000.000.021.xml", "sondeo.xml", "sondeo.010.000.000.021.xml",
                                   "network_backup.xml", "networkfoo.txt", "network.XML", "sondeo.xml.bak",
                                   ".network.010.000.000.021.xml.tmpA1b2C3", "fileschanged.list"}) {
            const std::string raizXml = std::string(nombre).starts_with("sondeo") ? "ENCODERSTATUS" : "ENCODERCONFIG";
            raiz.write(std::string("config/") + nombre, "<" + raizXml + "><IDUNIT>" + nombre + "</IDUNIT><NOTA>" +
                                                            std::string(300, 'n') + "</NOTA></" + raizXml + ">\n");
        }
    }
    void TearDown() override { unsetenv("CAMBIOIP_ROOT"); }

    std::string ruta(const std::string &nombre) const { return (raiz.config() / nombre).string(); }
    // The file a document was loaded from, by the name it holds.
    std::string origen(xmlDocPtr documento) const { return ruta(xmlText(documento, "/*/IDUNIT").value_or("?")); }

    cambioip_test::TempRoot raiz;
};

TEST_F(Directorio, WalksTheUnitDocumentsOfEachKindInNameOrder)
{
    const std::vector<std::string> deTipo[2] = {
        {"network.010.000.000.021.xml", "network.010.000.000.032.xml", "network.xml", "network_backup.xml"},
        {"sondeo.010.000.000.021.xml", "sondeo.010.000.000.032.xml", "sondeo.xml"}};
    for (uint8_t tipo : {0, 1}) {
        UTILSXML_Directorio *directorio = UTILSXML_MASTER_AbredirectorioConfig();
        ASSERT_NE(directorio, nullptr);
        std::vector<std::string> cargados;
        char camino[UTILSXML_LONG_RUTA] = "";
        for (; xmlDocPtr documento = UTILSXML_MASTER_AbreFicheroNetwork(directorio, camino, tipo); camino[0] = '\0') {
            EXPECT_EQ(camino, origen(documento)) << "the path names the file loaded";
            cargados.push_back(xmlText(documento, "/*/IDUNIT").value_or("?"));
            EXPECT_EQ(UTILSXML_MASTER_CierraFicheroNetwork(documento, camino, 0), 0);
        }
        EXPECT_EQ(cargados, deTipo[tipo]);
        EXPECT_EQ(UTILSXML_MASTER_CerrarDirectorioConfig(directorio), 0);
    }
    EXPECT_EQ(UTILSXML_MASTER_CerrarDirectorioConfig(nullptr), -1);
}

TEST_F(Directorio, ReopensByPathWithOneRewindAndRefusesWhatIsNotThere)
{
    std::filesystem::remove(ruta("network.010.000.000.032.xml"));
    UTILSXML_Directorio *directorio = UTILSXML_MASTER_AbredirectorioConfig();
    ASSERT_NE(directorio, nullptr);
    directorio->posicion = directorio->nombres.size();  // the walk is over: a match needs the rewind
    const struct {
        std::string ruta;
        uint8_t tipo;
        bool abre;
    } casos[] = {{ruta("network.010.000.000.021.xml"), 0, true},
                 {ruta("sondeo.xml"), 1, true},
                 {ruta("network.010.000.000.032.xml"), 0, false},  // no longer in the directory
                 {ruta("sondeo.010.000.000.021.xml"), 0, false},   // not of the kind asked for
                 {"/config/network.010.000.000.021.xml", 0, false},  // not under the root
                 {ruta("network.xml"), 2, false}};
    for (const auto &caso : casos) {
        char camino[UTILSXML_LONG_RUTA];
        std::strcpy(camino, caso.ruta.c_str());
        xmlDocPtr documento = UTILSXML_MASTER_AbreFicheroNetwork(directorio, camino, caso.tipo);
        EXPECT_EQ(documento != nullptr ? origen(documento) : "", caso.abre ? caso.ruta : "") << caso.ruta;
        EXPECT_EQ(camino, caso.ruta);
        UTILSXML_MASTER_CierraFicheroNetwork(documento, camino, 0);
    }
    // A path that does not fit the caller's buffer is not taken, and the buffer stays as it was.
    char corto[16] = "\0xxxxxxxxxxxxx";
    EXPECT_EQ(UTILSXML_MASTER_AbreFicheroNetwork(directorio, corto, 0, sizeof corto), nullptr);
    EXPECT_EQ(std::string(corto + 1), "xxxxxxxxxxxxx");
    EXPECT_EQ(UTILSXML_MASTER_AbreFicheroNetwork(directorio, nullptr, 0), nullptr);
    EXPECT_EQ(UTILSXML_MASTER_AbreFicheroNetwork(nullptr, corto, 0), nullptr);
    UTILSXML_MASTER_CerrarDirectorioConfig(directorio);
}

// Closing without save leaves the file as it was; a save replaces it whole (no temporary file
// left, permission bits kept), and a save that fails midway reports it and keeps the original.
TEST_F(Directorio, SaveReplacesTheFileWholeOrLeavesItByteForByte)
{
    const std::string fichero = ruta("network.010.000.000.021.xml");
    ASSERT_EQ(chmod(fichero.c_str(), 0640), 0);
    const std::vector<std::string> listado = raiz.listing();
    const std::string original = readFile(fichero);
    const auto cierra = [&](const char *valor, uint8_t grabar, const std::string &destino) {
        Doc documento(xmlReadFile(fichero.c_str(), nullptr, 0));
        EXPECT_EQ(UTILSXML_GrabaIDUnit(documento.get(), valor), 0);
        return UTILSXML_MASTER_CierraFicheroNetwork(documento.release(), destino.c_str(), grabar);
    };
    EXPECT_EQ(cierra("NEVER SAVED", 0, fichero), 0);
    EXPECT_EQ(cierra("NEVER SAVED", 1, fichero + "/inside"), -1);
    // A file size limit below the document's size fails the write, as a full disk would.
    struct rlimit limite {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limite), 0);
    const rlim_t anterior = std::exchange(limite.rlim_cur, 256);
    auto senal = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limite), 0);
    const int fallido = cierra("NEVER SAVED", 1, fichero);
    limite.rlim_cur = anterior;
    setrlimit(RLIMIT_FSIZE, &limite);
    std::signal(SIGXFSZ, senal);
    EXPECT_EQ(fallido, -1);
    EXPECT_EQ(readFile(fichero), original);
    EXPECT_EQ(raiz.listing(), listado);

    EXPECT_EQ(cierra("Sport & <News> Ñ", 1, fichero), 0);
    struct stat estado {};
    ASSERT_EQ(stat(fichero.c_str(), &estado), 0);
    EXPECT_EQ(estado.st_mode & 07777, 0640u);
    EXPECT_EQ(raiz.listing(), listado);
    EXPECT_EQ(xmlText(std::filesystem::path(fichero), "/ENCODERCONFIG/IDUNIT"), "Sport & <News> Ñ");
    EXPECT_EQ(UTILSXML_CerrarFicheroNetwork(nullptr, 1), -1);
}

}  // namespace
