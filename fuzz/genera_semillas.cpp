// genera_semillas <source folder> <build folder of fuzz/>: writes the fuzz targets' seeds
// and dictionaries from what the project already holds.
//
//   seeds/fuzz_formulario/   the form text of every golden case
//   seeds/fuzz_documento/    every fixture document and every document a golden case plants
//   seeds/fuzz_peticion/     every golden case as a whole request (peticion.h)
//   fuzz_formulario.dict     the form keys: those the save sources name in their key tables
//                            and lists ({"key", ...}) and those the golden cases post, the
//                            commands the cases send, the unit suffixes of the fixture racks
//                            and the escapes of the form encoding
//   fuzz_documento.dict      the element names of the configuration and status element lists
//                            as tags, and the XML constructs a hand-edited document may hold
//   fuzz_peticion.dict       both
#include "peticion.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
namespace pet = fuzz::peticion;

// Every element path of the two element lists.
const char *const kRutas[] = {
#define UTILSXML_CAMPO(ruta, lee, graba, minimo, version, indices) ruta,
#define UTILSXML_CARACTER(ruta, lee, graba, minimo, version, indices) ruta,
#include "utilsXML/utilsXML_campos_config.def"
#define UTILSXML_CAMPO(ruta, lee, graba, minimo, version, indices) ruta,
#define UTILSXML_CAMPO_TOLERANTE(ruta, lee, graba, minimo, version, indices) ruta,
#define UTILSXML_SELECTOR(rutaSi, rutaNo, lee, graba, minimo, version) rutaSi, rutaNo,
#include "utilsXML/utilsXML_campos_status.def"
};

// XML constructs a document edited by hand may hold, beyond the element names.
const char *const kXml[] = {
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>", "<?xml version=\"1.0\"?>", "encoding=\"ISO-8859-1\"",
    "encoding=\"UTF-16\"", "<!DOCTYPE ENCODERCONFIG [", "<!ENTITY e \"", "<!ENTITY e SYSTEM \"file:///etc/hostname\">",
    "]>", "&e;", "&amp;", "&lt;", "&#13;", "&#x10FFFF;", "<![CDATA[", "]]>", "<!--", "-->", "<?pi ?>",
    "xmlns=\"urn:x\"", "xmlns:p=\"urn:p\"", "<p:", " a=\"1\"", "\xEF\xBB\xBF", "\xC3\xA9", "\xE2\x82\xAC",
};

// Escapes of the form encoding and its separators.
const char *const kFormulario[] = {
    "&", "=", "+", "_", "%", "%26", "%3D", "%25", "%2B", "%5F", "%0A", "%0D", "%09", "%00", "%7F",
    "%C3%A9", "%E2%82%AC", "%F0%9F%93%BA", "%FF", "%C0%AF", "%ED%A0%80", "-1", "4294967296", "1_", "_1_",
};

struct Caso {
    std::string nombre;
    std::string rack;
    std::string metodo = "GET";
    std::vector<std::string> formulario;
    bool hayFormulario = false;
    std::string longitud;
    std::vector<std::pair<std::string, std::string>> ficheros;  // path under the root, content
};

std::string Lee(const fs::path &ruta)
{
    std::ifstream entrada(ruta, std::ios::binary);
    std::ostringstream texto;
    texto << entrada.rdbuf();
    return texto.str();
}

void Escribe(const fs::path &ruta, const std::string &contenido)
{
    fs::create_directories(ruta.parent_path());
    std::ofstream salida(ruta, std::ios::binary | std::ios::trunc);
    salida << contenido;
    if (!salida) {
        std::fprintf(stderr, "genera_semillas: cannot write %s\n", ruta.c_str());
        std::exit(1);
    }
}

std::string Recorta(const std::string &texto)
{
    const auto primero = texto.find_first_not_of(" \t");
    const auto ultimo = texto.find_last_not_of(" \t\r");
    return primero == std::string::npos ? "" : texto.substr(primero, ultimo - primero + 1);
}

// "\n", "\t" and "\\" of a planted file's text.
std::string Desescapa(const std::string &texto)
{
    std::string salida;
    for (std::size_t i = 0; i < texto.size(); ++i) {
        if (texto[i] != '\\' || i + 1 == texto.size()) {
            salida += texto[i];
            continue;
        }
        const char siguiente = texto[++i];
        salida += siguiente == 'n' ? '\n' : siguiente == 't' ? '\t' : siguiente;
    }
    return salida;
}

// The directives of a golden case that a seed can carry (tests/golden/golden_test.cpp).
Caso LeeCaso(const fs::path &fichero, const fs::path &casos, const fs::path &fixtures)
{
    Caso caso;
    caso.nombre = fs::relative(fichero, casos).replace_extension().string();
    std::replace(caso.nombre.begin(), caso.nombre.end(), '/', '_');
    std::istringstream entrada(Lee(fichero));
    std::string linea;
    while (std::getline(entrada, linea)) {
        if (Recorta(linea).empty() || Recorta(linea)[0] == '#')
            continue;
        const auto dos = linea.find(':');
        if (dos == std::string::npos)
            continue;
        const std::string clave = Recorta(linea.substr(0, dos));
        const std::string valor = linea.substr(dos + 1).starts_with(' ') ? linea.substr(dos + 2) : linea.substr(dos + 1);
        if (clave == "rack") {
            caso.rack = Recorta(valor);
        } else if (clave == "method") {
            caso.metodo = Recorta(valor);
        } else if (clave == "form") {
            caso.formulario.push_back(valor);
            caso.hayFormulario = true;
        } else if (clave == "length") {
            caso.longitud = Recorta(valor);
        } else if (clave == "file") {
            const auto igual = valor.find(" = ");
            caso.ficheros.emplace_back(Recorta(valor.substr(0, igual)),
                                       igual == std::string::npos ? "" : Desescapa(valor.substr(igual + 3)));
        } else if (clave == "copy") {
            const auto menor = valor.find(" < ");
            if (menor != std::string::npos)
                caso.ficheros.emplace_back(Recorta(valor.substr(0, menor)), Lee(fixtures / Recorta(valor.substr(menor + 3))));
        }
    }
    return caso;
}

std::string Formulario(const Caso &caso)
{
    std::string texto;
    for (const std::string &parte : caso.formulario)
        texto += (texto.empty() ? "" : "&") + parte;
    return texto;
}

// The racks by name and, for each, its config/ files by name: the order fuzz_peticion uses.
std::map<std::string, std::vector<std::string>> Racks(const fs::path &racks)
{
    std::map<std::string, std::vector<std::string>> resultado;
    for (const auto &rack : fs::directory_iterator(racks)) {
        if (!rack.is_directory())
            continue;
        std::vector<std::string> documentos;
        if (fs::is_directory(rack.path() / "config"))
            for (const auto &entrada : fs::recursive_directory_iterator(rack.path() / "config"))
                if (!entrada.is_directory())
                    documentos.push_back(fs::relative(entrada.path(), rack.path()).string());
        std::sort(documentos.begin(), documentos.end());
        resultado[rack.path().filename().string()] = documentos;
    }
    return resultado;
}

// One golden case as a fuzz_peticion input.
std::string Peticion(const Caso &caso, const std::map<std::string, std::vector<std::string>> &racks)
{
    const auto rack = racks.find(caso.rack);
    const auto indice = rack == racks.end() ? 0 : std::distance(racks.begin(), rack);
    const std::string formulario = Formulario(caso);

    std::uint8_t banderas = pet::MetodoNinguno;
    if (caso.metodo == "GET") {
        banderas = pet::MetodoGet;
    } else if (caso.metodo == "POST") {
        char *fin = nullptr;
        const long anunciada = std::strtol(caso.longitud.c_str(), &fin, 10);
        const bool numero = !caso.longitud.empty() && *fin == '\0';
        banderas = numero && anunciada > static_cast<long>(formulario.size()) ? pet::MetodoPostCorto : pet::MetodoPost;
    }
    std::string documento;
    for (const auto &[ruta, contenido] : caso.ficheros) {
        for (std::size_t i = 0; i < std::size(pet::Plantados); ++i)
            if (ruta == std::string("config/") + pet::Plantados[i].nombre)
                banderas |= static_cast<std::uint8_t>(1u << (pet::PrimerBitPlantado + i));
        if (rack == racks.end() || (banderas & pet::ReemplazaDocumento))
            continue;
        const auto &documentos = rack->second;
        const auto encontrado = std::find(documentos.begin(), documentos.end(), ruta);
        if (encontrado != documentos.end()) {
            banderas |= pet::ReemplazaDocumento;
            documento = std::string(1, '\0') + static_cast<char>(encontrado - documentos.begin()) + contenido;
        }
    }
    std::string entrada;
    entrada += static_cast<char>(indice);
    entrada += static_cast<char>(banderas);
    entrada += static_cast<char>(0xFF);
    return entrada + formulario + documento;
}

// One dictionary entry: printable ASCII as it stands, the rest as \xNN.
std::string Entrada(const std::string &valor)
{
    std::string linea = "\"";
    for (unsigned char c : valor) {
        if (c == '"' || c == '\\' || c < 0x20 || c > 0x7E) {
            char hexa[5];
            std::snprintf(hexa, sizeof hexa, "\\x%02X", c);
            linea += hexa;
        } else {
            linea += static_cast<char>(c);
        }
    }
    return linea + "\"\n";
}

void EscribeDiccionario(const fs::path &ruta, const std::set<std::string> &entradas)
{
    std::string texto;
    for (const std::string &entrada : entradas)
        texto += Entrada(entrada);
    Escribe(ruta, texto);
}

// The element names of the lists as tags; an indexed name ("ENTRADA%1d") also with index 1.
std::set<std::string> Elementos()
{
    std::set<std::string> entradas;
    for (const char *ruta : kRutas) {
        std::istringstream partes(ruta);
        std::string parte;
        while (std::getline(partes, parte, '/')) {
            if (parte.empty())
                continue;
            std::vector<std::string> nombres;
            const auto por = parte.find('%');
            nombres.push_back(parte.substr(0, por));
            if (por != std::string::npos)
                nombres.push_back(parte.substr(0, por) + "1");
            for (const std::string &nombre : nombres) {
                entradas.insert("<" + nombre + ">");
                entradas.insert("</" + nombre + ">");
            }
        }
    }
    for (const char *xml : kXml)
        entradas.insert(xml);
    return entradas;
}

// The form keys the saves name and the cases post, with the cases' commands and the racks'
// unit suffixes.
std::set<std::string> Claves(const fs::path &fuentes, const std::vector<Caso> &casos,
                             const std::map<std::string, std::vector<std::string>> &racks)
{
    std::set<std::string> claves;
    const std::regex tabla(R"re(\{\s*"([A-Za-z_][A-Za-z0-9_]*)"\s*,)re");
    for (const auto &entrada : fs::recursive_directory_iterator(fuentes)) {
        if (entrada.path().extension() != ".cpp")
            continue;
        const std::string texto = Lee(entrada.path());
        for (auto m = std::sregex_iterator(texto.begin(), texto.end(), tabla); m != std::sregex_iterator(); ++m)
            claves.insert((*m)[1].str());
    }
    std::set<std::string> entradas;
    for (const Caso &caso : casos) {
        for (const std::string &parte : caso.formulario) {
            std::istringstream pares(parte);
            std::string par;
            while (std::getline(pares, par, '&')) {
                const auto igual = par.find('=');
                if (igual != std::string::npos && igual > 0)
                    claves.insert(par.substr(0, igual));
                if (par.starts_with("command="))
                    entradas.insert(par);
            }
        }
    }
    for (const std::string &clave : claves) {
        entradas.insert(clave + "=");
        entradas.insert("&" + clave + "=");
    }
    for (const auto &[rack, documentos] : racks) {
        for (const std::string &documento : documentos) {
            const std::string nombre = fs::path(documento).filename().string();
            if (!nombre.starts_with("network.") || nombre == "network.xml" || !nombre.ends_with(".xml"))
                continue;
            std::string sufijo = nombre.substr(7, nombre.size() - 7 - 4);
            entradas.insert("sufijo=" + sufijo);
            std::replace(sufijo.begin(), sufijo.end(), '.', '_');
            entradas.insert(sufijo);
        }
    }
    for (const char *texto : kFormulario)
        entradas.insert(texto);
    return entradas;
}

}  // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: genera_semillas <source folder> <build folder of fuzz/>\n");
        return 2;
    }
    const fs::path fuente = argv[1];
    const fs::path destino = argv[2];
    const fs::path fixtures = fuente / "tests/fixtures";
    const fs::path casosDir = fuente / "tests/golden/cases";
    const auto racks = Racks(fixtures / "racks");

    std::vector<fs::path> ficheros;
    for (const auto &entrada : fs::recursive_directory_iterator(casosDir))
        if (entrada.path().extension() == ".case")
            ficheros.push_back(entrada.path());
    std::sort(ficheros.begin(), ficheros.end());
    std::vector<Caso> casos;
    for (const fs::path &fichero : ficheros)
        casos.push_back(LeeCaso(fichero, casosDir, fixtures));

    const fs::path semillas = destino / "seeds";
    std::set<std::string> documentos;
    auto semillaDocumento = [&](const std::string &nombre, const std::string &contenido) {
        if (documentos.insert(contenido).second)
            Escribe(semillas / "fuzz_documento" / nombre, contenido);
    };
    for (const auto &entrada : fs::recursive_directory_iterator(fixtures)) {
        if (entrada.path().extension() != ".xml")
            continue;
        std::string nombre = fs::relative(entrada.path(), fixtures).string();
        std::replace(nombre.begin(), nombre.end(), '/', '_');
        semillaDocumento(nombre, Lee(entrada.path()));
    }
    for (const Caso &caso : casos) {
        if (caso.hayFormulario)
            Escribe(semillas / "fuzz_formulario" / caso.nombre, Formulario(caso));
        Escribe(semillas / "fuzz_peticion" / caso.nombre, Peticion(caso, racks));
        for (const auto &[ruta, contenido] : caso.ficheros)
            if (ruta.ends_with(".xml"))
                semillaDocumento(caso.nombre + "_" + fs::path(ruta).filename().string(), contenido);
    }

    const std::set<std::string> elementos = Elementos();
    const std::set<std::string> claves = Claves(fuente / "src", casos, racks);
    std::set<std::string> todas = elementos;
    todas.insert(claves.begin(), claves.end());
    EscribeDiccionario(destino / "fuzz_formulario.dict", claves);
    EscribeDiccionario(destino / "fuzz_documento.dict", elementos);
    EscribeDiccionario(destino / "fuzz_peticion.dict", todas);
    std::printf("genera_semillas: %zu cases, %zu documents, %zu form entries, %zu document entries\n", casos.size(),
                documentos.size(), claves.size(), elementos.size());
    return 0;
}
