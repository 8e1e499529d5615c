// Storage of the unit documents: directories of the two modes, the scan of unit files,
// opening by scan and by path, and closing with and without save, on a copy of the
// sample rack in a temporary root.
#include "utilsXML/utilsXML.h"
#include "utilsXML/utilsXML_int.h"

#include "documentos.h"
#include "support/cgi_runner.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <vector>

namespace {

using namespace store_test;
using cambioip_test::TempRoot;
namespace fs = std::filesystem;

const fs::path rackDemo = fs::path(CAMBIOIP_SOURCE_DIR) / "demo/root/config";

class Almacen : public ::testing::Test {
  protected:
    void SetUp() override
    {
        setenv("CAMBIOIP_ROOT", raiz.path().c_str(), 1);
        setenv("CAMBIOIP_LOAD_PAUSE_MS", "0", 1);
        UTILSXML_SetLibMode(1);
    }
    void TearDown() override
    {
        unsetenv("CAMBIOIP_ROOT");
        UTILSXML_SetLibMode(1);
    }

    std::string enConfig(const std::string &nombre) const { return (raiz.config() / nombre).string(); }

    TempRoot raiz;
};

// Names of the entries of a directory in the order readdir gives them.
std::vector<std::string> entradas(const std::string &carpeta)
{
    std::vector<std::string> nombres;
    DIR *directorio = opendir(carpeta.c_str());
    while (const struct dirent *entrada = readdir(directorio))
        nombres.emplace_back(entrada->d_name);
    closedir(directorio);
    return nombres;
}

// ---------------------------------------------------------------------------
// Directories of the two modes
// ---------------------------------------------------------------------------

TEST_F(Almacen, ModeOneUsesConfigAndModeZeroTheWebServersCopy)
{
    raiz.write("config/network.xml", "<ENCODERCONFIG><IDUNIT>MODE-1</IDUNIT></ENCODERCONFIG>\n");
    raiz.write("www/jaula/config/network.xml", "<ENCODERCONFIG><IDUNIT>MODE-0</IDUNIT></ENCODERCONFIG>\n");
    raiz.write("config/sondeo.xml", "<ENCODERSTATUS><IDUNIT>STATUS-1</IDUNIT></ENCODERSTATUS>\n");
    raiz.write("www/jaula/config/sondeo.xml", "<ENCODERSTATUS><IDUNIT>STATUS-0</IDUNIT></ENCODERSTATUS>\n");

    struct Caso {
        uint8_t modo;
        std::string carpeta;
        const char *red;
        const char *sondeo;
    };
    const Caso casos[] = {
        {1, raiz.config().string(), "MODE-1", "STATUS-1"},
        {0, (raiz.path() / "www/jaula/config").string(), "MODE-0", "STATUS-0"},
        {7, raiz.config().string(), "MODE-1", "STATUS-1"},
    };
    for (const Caso &caso : casos) {
        UTILSXML_SetLibMode(caso.modo);
        EXPECT_EQ(UTILSXML_ModoLibreria, caso.modo != 0 ? 1u : 0u);
        EXPECT_EQ(std::string(UTILSXML_MiraPATHConfig()), caso.carpeta);

        xmlDocPtr red = UTILSXML_AbrirFicheroNetwork();
        ASSERT_NE(red, nullptr);
        EXPECT_EQ(texto(red, "/ENCODERCONFIG/IDUNIT"), caso.red);
        EXPECT_EQ(UTILSXML_CerrarFicheroNetwork(red, 0), 0);

        xmlDocPtr sondeo = UTILSXML_AbrirFicheroStatus();
        ASSERT_NE(sondeo, nullptr);
        EXPECT_EQ(texto(sondeo, "/ENCODERSTATUS/IDUNIT"), caso.sondeo);
        EXPECT_EQ(UTILSXML_CerrarFicheroStatus(sondeo, 0), 0);

        DIR *directorio = UTILSXML_MASTER_AbredirectorioConfig();
        ASSERT_NE(directorio, nullptr);
        char ruta[UTILSXML_LONG_RUTA] = "";
        xmlDocPtr unidad = UTILSXML_MASTER_AbreFicheroNetwork(directorio, ruta, 0);
        ASSERT_NE(unidad, nullptr);
        EXPECT_EQ(std::string(ruta), caso.carpeta + "/network.xml");
        EXPECT_EQ(UTILSXML_MASTER_CierraFicheroNetwork(unidad, ruta, 0), 0);
        EXPECT_EQ(UTILSXML_MASTER_CerrarDirectorioConfig(directorio), 0);
    }
}

TEST_F(Almacen, WithoutARootTheFixedPathsAreUsedAsWritten)
{
    unsetenv("CAMBIOIP_ROOT");
    EXPECT_STREQ(UTILSXML_MiraPATHConfig(), "/config");
    UTILSXML_SetLibMode(0);
    EXPECT_STREQ(UTILSXML_MiraPATHConfig(), "/www/jaula/config");
}

// ---------------------------------------------------------------------------
// Scan of unit files
// ---------------------------------------------------------------------------

struct NombreFichero {
    const char *nombre;
    int tipo;  // -1: matches neither kind
};

TEST_F(Almacen, UnitFilesAreNamedByPrefixAndXmlSuffix)
{
    const NombreFichero nombres[] = {
        {"network.xml", 0},
        {"network.010.000.000.021.xml", 0},
        {"network_backup.xml", 0},
        {"networkfoo.txt", -1},
        {"network.XML", -1},
        {"NETWORK.010.xml", -1},
        {"netwrk.xml", -1},
        {".network.010.000.000.021.xml.tmpA1b2C3", -1},
        {".network.xml", -1},
        {"sondeo.xml", 1},
        {"sondeo.010.000.000.021.xml", 1},
        {"sondeo.xml.bak", -1},
        {"sondeos.xml", 1},
        {"fileschanged.list", -1},
        {"web.lock", -1},
    };
    std::set<std::string> esperados[2];
    for (const NombreFichero &n : nombres) {
        raiz.write(std::string("config/") + n.nombre, "<x/>\n");
        if (n.tipo >= 0)
            esperados[n.tipo].insert(n.nombre);
    }
    for (uint8_t tipo : {0, 1}) {
        DIR *directorio = opendir(raiz.config().c_str());
        std::set<std::string> hallados;
        while (const struct dirent *entrada = UTILSXMLINT_BuscaFichero(directorio, tipo))
            hallados.insert(entrada->d_name);
        closedir(directorio);
        EXPECT_EQ(hallados, esperados[tipo]) << "kind " << int(tipo);
    }
    DIR *directorio = opendir(raiz.config().c_str());
    EXPECT_EQ(UTILSXMLINT_BuscaFichero(directorio, 2), nullptr);
    EXPECT_EQ(UTILSXMLINT_BuscaFichero(nullptr, 0), nullptr);
    closedir(directorio);
}

TEST_F(Almacen, WalksEveryUnitDocumentOfAKindInDirectoryOrder)
{
    raiz.copyConfig(rackDemo);
    const char *raices[] = {"ENCODERCONFIG", "ENCODERSTATUS"};
    for (uint8_t tipo : {0, 1}) {
        std::vector<std::string> esperadas;
        for (const std::string &nombre : entradas(raiz.config().string()))
            if (nombre.starts_with(tipo == 0 ? "network" : "sondeo") && nombre.ends_with(".xml"))
                esperadas.push_back(enConfig(nombre));
        ASSERT_EQ(esperadas.size(), 7u);

        DIR *directorio = UTILSXML_MASTER_AbredirectorioConfig();
        ASSERT_NE(directorio, nullptr);
        std::vector<std::string> recorridas;
        char ruta[UTILSXML_LONG_RUTA];
        for (;;) {
            ruta[0] = '\0';
            xmlDocPtr documento = UTILSXML_MASTER_AbreFicheroNetwork(directorio, ruta, tipo);
            if (documento == nullptr)
                break;
            recorridas.emplace_back(ruta);
            EXPECT_STREQ(reinterpret_cast<const char *>(xmlDocGetRootElement(documento)->name), raices[tipo]);
            EXPECT_EQ(UTILSXML_MASTER_CierraFicheroNetwork(documento, ruta, 0), 0);
        }
        EXPECT_EQ(recorridas, esperadas);
        EXPECT_EQ(UTILSXML_MASTER_CerrarDirectorioConfig(directorio), 0);
    }
}

TEST_F(Almacen, ReopensByPathRewindingOnceAndGivesUpAfterTwoPasses)
{
    raiz.copyConfig(rackDemo);
    DIR *directorio = UTILSXML_MASTER_AbredirectorioConfig();
    ASSERT_NE(directorio, nullptr);

    // Run the stream to its end: the first unit is found only after the rewind.
    char ruta[UTILSXML_LONG_RUTA] = "";
    std::string primera;
    for (;;) {
        ruta[0] = '\0';
        xmlDocPtr documento = UTILSXML_MASTER_AbreFicheroNetwork(directorio, ruta, 0);
        if (documento == nullptr)
            break;
        if (primera.empty())
            primera = ruta;
        UTILSXML_MASTER_CierraFicheroNetwork(documento, ruta, 0);
    }
    std::strcpy(ruta, primera.c_str());
    xmlDocPtr documento = UTILSXML_MASTER_AbreFicheroNetwork(directorio, ruta, 0);
    ASSERT_NE(documento, nullptr);
    EXPECT_EQ(std::string(ruta), primera);
    EXPECT_EQ(UTILSXML_MASTER_CierraFicheroNetwork(documento, ruta, 0), 0);

    const std::string unidad = enConfig("network.010.000.000.031.xml");
    struct Caso {
        std::string ruta;
        uint8_t tipo;
        bool abre;
    };
    fs::remove(enConfig("network.010.000.000.051.xml"));
    const Caso casos[] = {
        {unidad, 0, true},
        {enConfig("network.010.000.000.051.xml"), 0, false},  // no longer in the directory
        {enConfig("sondeo.010.000.000.031.xml"), 0, false},   // not of the kind asked for
        {enConfig("sondeo.010.000.000.031.xml"), 1, true},
        {enConfig("fileschanged.list"), 0, false},
        {"/config/network.010.000.000.031.xml", 0, false},  // unmapped: not the unit's file
        {unidad, 2, false},
    };
    for (const Caso &caso : casos) {
        std::strcpy(ruta, caso.ruta.c_str());
        xmlDocPtr abierto = UTILSXML_MASTER_AbreFicheroNetwork(directorio, ruta, caso.tipo);
        EXPECT_EQ(abierto != nullptr, caso.abre) << caso.ruta << " kind " << int(caso.tipo);
        EXPECT_EQ(std::string(ruta), caso.ruta);
        if (abierto)
            UTILSXML_MASTER_CierraFicheroNetwork(abierto, ruta, 0);
    }
    EXPECT_EQ(UTILSXML_MASTER_CerrarDirectorioConfig(directorio), 0);
}

TEST_F(Almacen, RefusesMissingArgumentsAndPathsThatDoNotFit)
{
    raiz.copyConfig(rackDemo);
    char ruta[16];
    std::memset(ruta, 'x', sizeof ruta);
    ruta[0] = '\0';
    EXPECT_EQ(UTILSXML_MASTER_AbreFicheroNetwork(nullptr, ruta, 0), nullptr);
    DIR *directorio = UTILSXML_MASTER_AbredirectorioConfig();
    EXPECT_EQ(UTILSXML_MASTER_AbreFicheroNetwork(directorio, nullptr, 0), nullptr);
    EXPECT_EQ(UTILSXML_MASTER_AbreFicheroNetwork(directorio, ruta, 0, sizeof ruta), nullptr);
    EXPECT_EQ(std::string(ruta + 1, sizeof ruta - 1), std::string(sizeof ruta - 1, 'x'));
    EXPECT_EQ(UTILSXML_MASTER_CerrarDirectorioConfig(directorio), 0);
    EXPECT_EQ(UTILSXML_MASTER_CerrarDirectorioConfig(nullptr), -1);

    EXPECT_EQ(UTILSXML_CerrarFicheroNetwork(nullptr, 1), -1);
    EXPECT_EQ(UTILSXML_CerrarFicheroStatus(nullptr, 0), -1);
    EXPECT_EQ(UTILSXML_MASTER_CierraFicheroNetwork(nullptr, enConfig("network.xml").c_str(), 1), -1);
    // Without a path the document is not freed: it stays the caller's.
    Doc documento = cargaFichero(enConfig("network.xml"));
    EXPECT_EQ(UTILSXML_MASTER_CierraFicheroNetwork(documento.get(), nullptr, 1), -1);
    EXPECT_NE(xmlDocGetRootElement(documento.get()), nullptr);
}

TEST_F(Almacen, ConfigDirectoryThatDoesNotExistGivesNoStream)
{
    UTILSXML_SetLibMode(0);  // www/jaula/config was never made in this root
    EXPECT_EQ(UTILSXML_MASTER_AbredirectorioConfig(), nullptr);
    EXPECT_EQ(UTILSXML_AbrirFicheroNetwork(), nullptr);
}

// ---------------------------------------------------------------------------
// Closing with and without save
// ---------------------------------------------------------------------------

TEST_F(Almacen, CloseWithoutSaveLeavesTheFileUntouched)
{
    raiz.copyConfig(rackDemo);
    const std::string fichero = enConfig("network.010.000.000.022.xml");
    const std::string antes = cambioip_test::readFile(fichero);
    DIR *directorio = UTILSXML_MASTER_AbredirectorioConfig();
    char ruta[UTILSXML_LONG_RUTA];
    std::strcpy(ruta, fichero.c_str());
    xmlDocPtr documento = UTILSXML_MASTER_AbreFicheroNetwork(directorio, ruta, 0);
    ASSERT_NE(documento, nullptr);
    ASSERT_EQ(UTILSXML_GrabaIDUnit(documento, "CHANGED"), 0);
    EXPECT_EQ(UTILSXML_MASTER_CierraFicheroNetwork(documento, ruta, 0), 0);
    UTILSXML_MASTER_CerrarDirectorioConfig(directorio);
    EXPECT_EQ(cambioip_test::readFile(fichero), antes);

    const std::string red = cambioip_test::readFile(enConfig("network.xml"));
    xmlDocPtr propio = UTILSXML_AbrirFicheroNetwork();
    ASSERT_EQ(UTILSXML_GrabaIDUnit(propio, "CHANGED"), 0);
    EXPECT_EQ(UTILSXML_CerrarFicheroNetwork(propio, 0), 0);
    EXPECT_EQ(cambioip_test::readFile(enConfig("network.xml")), red);
}

TEST_F(Almacen, SaveChangesOnlyTheWrittenElements)
{
    raiz.copyConfig(rackDemo);
    const std::string fichero = enConfig("network.010.000.000.021.xml");
    std::string esperado = cambioip_test::readFile(fichero);
    const auto sustituye = [&esperado](const std::string &de, const std::string &a) {
        size_t donde = esperado.find(de);
        ASSERT_NE(donde, std::string::npos) << de;
        esperado.replace(donde, de.size(), a);
    };
    sustituye("<IDUNIT>ENC-HEAD-02</IDUNIT>", "<IDUNIT>Sport &amp; News</IDUNIT>");
    sustituye("<CAMBIOSWEB>0</CAMBIOSWEB>", "<CAMBIOSWEB>1</CAMBIOSWEB>");

    DIR *directorio = UTILSXML_MASTER_AbredirectorioConfig();
    char ruta[UTILSXML_LONG_RUTA];
    std::strcpy(ruta, fichero.c_str());
    xmlDocPtr documento = UTILSXML_MASTER_AbreFicheroNetwork(directorio, ruta, 0);
    UTILSXML_MASTER_CerrarDirectorioConfig(directorio);
    ASSERT_NE(documento, nullptr);
    ASSERT_EQ(UTILSXML_GrabaIDUnit(documento, "Sport & News"), 0);
    ASSERT_EQ(UTILSXML_GrabaCambiosWeb(documento, "1"), 0);
    EXPECT_EQ(UTILSXML_MASTER_CierraFicheroNetwork(documento, ruta, 1), 0);
    EXPECT_EQ(cambioip_test::readFile(fichero), esperado);
}

TEST_F(Almacen, SavedValuesReadBackByteForByte)
{
    raiz.copyConfig(rackDemo);
    const std::string fichero = enConfig("network.010.000.000.031.xml");
    const char *valores[] = {"Sport & News", "Ñandú 1080i", "1 & 2", "A&B;", "<b>\"x\"'y'</b>", "x&amp;y"};
    for (const char *valor : valores) {
        DIR *directorio = UTILSXML_MASTER_AbredirectorioConfig();
        char ruta[UTILSXML_LONG_RUTA];
        std::strcpy(ruta, fichero.c_str());
        xmlDocPtr documento = UTILSXML_MASTER_AbreFicheroNetwork(directorio, ruta, 0);
        ASSERT_NE(documento, nullptr);
        ASSERT_EQ(UTILSXML_GrabaSALTSCanalNombre(documento, valor, 1), 0) << valor;
        ASSERT_EQ(UTILSXML_GrabaIDUnit(documento, valor), 0) << valor;
        ASSERT_EQ(UTILSXML_MASTER_CierraFicheroNetwork(documento, ruta, 1), 0) << valor;

        // Reopen by path through the same stream.
        xmlDocPtr releido = UTILSXML_MASTER_AbreFicheroNetwork(directorio, ruta, 0);
        ASSERT_NE(releido, nullptr) << valor;
        char nombre[17];
        ASSERT_EQ(UTILSXML_LeeSALTSCanalNombre(releido, nombre, sizeof nombre, 1), 0);
        EXPECT_STREQ(nombre, valor);
        char unidad[64];
        ASSERT_EQ(UTILSXML_LeeIDUnit(releido, unidad, sizeof unidad), 0);
        EXPECT_STREQ(unidad, valor);
        EXPECT_EQ(UTILSXML_MASTER_CierraFicheroNetwork(releido, ruta, 0), 0);
        UTILSXML_MASTER_CerrarDirectorioConfig(directorio);
    }
}

TEST_F(Almacen, SaveKeepsThePermissionBitsAndLeavesNoTemporaryFile)
{
    raiz.copyConfig(rackDemo);
    const std::string fichero = enConfig("network.xml");
    ASSERT_EQ(chmod(fichero.c_str(), 0640), 0);
    const std::vector<std::string> antes = raiz.listing();

    xmlDocPtr documento = UTILSXML_AbrirFicheroNetwork();
    ASSERT_NE(documento, nullptr);
    ASSERT_EQ(UTILSXML_GrabaIdioma(documento, "ES"), 0);
    EXPECT_EQ(UTILSXML_CerrarFicheroNetwork(documento, 1), 0);

    struct stat estado {};
    ASSERT_EQ(stat(fichero.c_str(), &estado), 0);
    EXPECT_EQ(estado.st_mode & 07777, 0640u);
    EXPECT_EQ(raiz.listing(), antes);
    Doc guardado = cargaFichero(fichero);
    EXPECT_EQ(texto(guardado.get(), "/ENCODERCONFIG/IDIOMA"), "ES");

    documento = UTILSXML_AbrirFicheroStatus();
    ASSERT_NE(documento, nullptr);
    ASSERT_EQ(UTILSXML_STATUS_GrabaUnitStaus(documento, "ALARM"), 0);
    EXPECT_EQ(UTILSXML_CerrarFicheroStatus(documento, 1), 0);
    Doc sondeo = cargaFichero(enConfig("sondeo.xml"));
    EXPECT_EQ(texto(sondeo.get(), "/ENCODERSTATUS/UNITSTATUS"), "ALARM");
}

TEST_F(Almacen, AFailedSaveIsReportedAndLeavesTheOriginalAsItWas)
{
    raiz.copyConfig(rackDemo);
    const std::string fichero = enConfig("network.010.000.000.022.xml");
    const std::string antes = cambioip_test::readFile(fichero);
    const std::vector<std::string> listado = raiz.listing();

    DIR *directorio = UTILSXML_MASTER_AbredirectorioConfig();
    char ruta[UTILSXML_LONG_RUTA];
    std::strcpy(ruta, fichero.c_str());
    xmlDocPtr documento = UTILSXML_MASTER_AbreFicheroNetwork(directorio, ruta, 0);
    UTILSXML_MASTER_CerrarDirectorioConfig(directorio);
    ASSERT_NE(documento, nullptr);
    ASSERT_EQ(UTILSXML_GrabaIDUnit(documento, "NEVER SAVED"), 0);

    // A file size limit far below the document makes the write of the new file fail,
    // as a full disk would.
    struct rlimit limite {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limite), 0);
    const rlim_t anterior = limite.rlim_cur;
    auto senal = std::signal(SIGXFSZ, SIG_IGN);
    limite.rlim_cur = 256;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limite), 0);
    const int resultado = UTILSXML_MASTER_CierraFicheroNetwork(documento, ruta, 1);
    limite.rlim_cur = anterior;
    setrlimit(RLIMIT_FSIZE, &limite);
    std::signal(SIGXFSZ, senal);

    EXPECT_EQ(resultado, -1);
    EXPECT_EQ(cambioip_test::readFile(fichero), antes);
    EXPECT_EQ(raiz.listing(), listado);

    // Also a path the document cannot be saved to.
    Doc otro = cargaFichero(fichero);
    EXPECT_EQ(UTILSXML_MASTER_CierraFicheroNetwork(otro.release(), (fichero + "/inside").c_str(), 1), -1);
}

}  // namespace
