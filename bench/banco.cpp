// banco: the bench of cambioIP.cgi (make bench). It builds racks of 1, 8, 32 and 128 units
// from the test racks' documents (every family, documents of every version, IP-input models
// with services), and for every page and save command measures the program against its
// floor, the parse of exactly the documents the request reads (suelo): instructions under
// callgrind, wall time (median of interleaved runs) and peak RSS. The pause after each
// document load is 0 in every measure but one: the wall time with the system's default pause,
// measured on the small racks and worked out from the documents read on the large ones.
// With BANCO_INSTALADO naming the program as make install links it (libxml2 and ICU linked in),
// its instructions are measured too: the same work without the dynamic loader's start.
//   banco <cambioIP.cgi> <suelo> <libtraza.so> <test racks> <work folder> [runs] [unit counts, e.g. 32,128]
#include <sys/resource.h>
#include <sys/wait.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct Origen {
    const char *rack;
    const char *nombre;     // unit name of its documents in that rack
    const char *direccion;  // its address, as written in them
};

// The documents the generated units are made of, round robin; the first is the QAM unit with
// IP inputs and services that every save targets.
const Origen kOrigenes[] = {
    {"qam", "010.000.000.105", "10.0.0.105"}, {"qam", "010.000.000.021", "10.0.0.21"},
    {"qam", "010.000.000.022", "10.0.0.22"},  {"qam", "010.000.000.031", "10.0.0.31"},
    {"qam", "010.000.000.032", "10.0.0.32"},  {"qam", "010.000.000.041", "10.0.0.41"},
    {"qam", "010.000.000.051", "10.0.0.51"},  {"qam", "010.000.000.101", "10.0.0.101"},
    {"qam", "010.000.000.102", "10.0.0.102"}, {"qam", "010.000.000.103", "10.0.0.103"},
    {"qam", "010.000.000.104", "10.0.0.104"}, {"isdbt", "010.000.000.042", "10.0.0.42"},
    {"isdbt", "010.000.000.043", "10.0.0.43"}, {"isdbt", "010.000.000.044", "10.0.0.44"},
    {"cofdmqamb", "010.000.000.052", "10.0.0.52"}, {"cofdmqamb", "010.000.000.053", "10.0.0.53"},
};
constexpr const char *kObjetivo = "010.001.000.001";  // the unit every save and the advanced page target

struct Peticion {
    const char *nombre;
    const char *metodo;
    std::string formulario;
};

std::vector<Peticion> Peticiones()
{
    const std::string s = std::string("sufijo=.") + kObjetivo;
    const std::string dos = "numcanales=2";
    return {
        {"6 unlock", "GET", "command=6"},
        {"1 quick status", "GET", "command=1"},
        {"2 detailed status", "GET", "command=2"},
        {"3 network", "GET", "command=3"},
        {"10 inputs", "GET", "command=10"},
        {"12 transport", "GET", "command=12"},
        {"13 output", "GET", "command=13"},
        {"14 test options", "GET", "command=14"},
        {"15 unit list", "GET", "command=15"},
        {"16 unit list for tests", "GET", "command=16"},
        {"17 IP in/out", "GET", "command=17"},
        {"24 advanced page", "GET", std::string("command=24&sufijo=") + kObjetivo},
        {"4 save network", "POST",
         "command=4&" + s + "&networkipdir=10.1.0.2&networkmask=255.255.255.0&gateway=10.1.0.254&dhcp=0&orden=5"},
        {"11 save inputs", "POST",
         "command=11&" + s + "&" + dos +
             "&eon=1_1_2_1&vidinp=1_0_2_0&vidcod=1_0_2_0&ffencod=1_0_2_0&audcod=1_0_2_0&audinp=1_0_2_0"
             "&audlev=1_5_2_5&ccon=1_0_2_0&vidbit=1_4_2_4&audbit=1_2_2_2&asprat=1_1_2_1&gop=1_1_2_1&maxoutres=1_0_2_0"},
        {"20 save transport", "POST",
         "command=20&" + s + "&" + dos +
             "&tsid=77&cnam=1_A_2_B&svpid=1_100_2_200&sapid=1_101_2_201&mchn=1_78_2_78&chnm=1_1_2_2&svcid=1_11_2_12"},
        {"21 save output", "POST",
         "command=21&" + s + "&" + dos +
             "&outtab=1&outchn=79&outbau=5.360&outout=0&outint=6&outmod=0&outlev=28&outrfl=1"},
        {"22 save test", "POST", "command=22&" + s + "&" + dos + "&treset=0&tfab=0&tled=1&teas=0"},
        {"25 save advanced", "POST",
         std::string("command=25&sufijo=") + kObjetivo +
             "&cfgtotenviar=1&networkipdir=10.1.0.2&networkmask=255.255.255.0&gateway=10.1.0.254&dhcp=0&" + dos +
             "&tsid=77&cnam=1_A_2_B&svpid=1_100_2_200&sapid=1_101_2_201&mchn=1_78_2_78&chnm=1_1_2_2&svcid=1_11_2_12"
             "&outtab=1&outchn=79&outbau=5.360&outout=0&outint=6&outmod=0&outlev=28&outrfl=1&treset=0&tfab=0&tled=1"},
        {"28 save IP", "POST",
         "command=28&" + s + "&" + dos +
             "&nentip=2&iptype=0&ipen=1_1_2_0&outputIP=1_239.10.10.9_2_239.10.10.8&outputport=1_5009_2_5008"
             "&ippackets=1_7_2_7&ipproto=1_1_2_0&iptxrx=1&haysalidaip=1"},
    };
}

std::string Lee(const fs::path &ruta)
{
    std::ifstream entrada(ruta, std::ios::binary);
    return {std::istreambuf_iterator<char>(entrada), {}};
}

void Escribe(const fs::path &ruta, const std::string &texto)
{
    std::ofstream(ruta, std::ios::binary | std::ios::trunc) << texto;
}

std::string Reemplaza(std::string texto, const std::string &de, const std::string &a)
{
    for (size_t i = 0; (i = texto.find(de, i)) != std::string::npos; i += a.size())
        texto.replace(i, de.size(), a);
    return texto;
}

// A rack of `unidades` units behind the QAM test rack's master.
fs::path CreaRack(const fs::path &racks, const fs::path &trabajo, int unidades)
{
    const fs::path raiz = trabajo / ("rack-" + std::to_string(unidades));
    fs::remove_all(raiz);
    fs::create_directories(raiz / "config");
    fs::create_directories(raiz / "upload");
    fs::copy(racks / "qam" / "root", raiz / "root", fs::copy_options::recursive);
    for (const char *maestro : {"network.xml", "sondeo.xml"})
        fs::copy_file(racks / "qam" / "config" / maestro, raiz / "config" / maestro);
    for (int i = 1; i <= unidades; ++i) {
        const Origen &origen = kOrigenes[(i - 1) % std::size(kOrigenes)];
        char nombre[32], direccion[32];
        std::snprintf(nombre, sizeof nombre, "010.001.%03d.%03d", (i - 1) / 200, (i - 1) % 200 + 1);
        std::snprintf(direccion, sizeof direccion, "10.1.%d.%d", (i - 1) / 200, (i - 1) % 200 + 1);
        for (const char *tipo : {"network", "sondeo"}) {
            const fs::path de = racks / origen.rack / "config" / (std::string(tipo) + "." + origen.nombre + ".xml");
            if (!fs::exists(de))
                continue;
            Escribe(raiz / "config" / (std::string(tipo) + "." + nombre + ".xml"),
                    Reemplaza(Lee(de), std::string(">") + origen.direccion + "<", std::string(">") + direccion + "<"));
        }
    }
    return raiz;
}

struct Resultado {
    long long instrucciones = 0;
    double segundos = 0;
    long rssKB = 0;
};

// Runs `argv` with `entorno`, the form on standard input, standard output thrown away.
Resultado Ejecuta(const std::vector<std::string> &argv, const std::vector<std::string> &entorno,
                  const std::string &entrada)
{
    char plantilla[] = "/tmp/banco-entradaXXXXXX";
    const int fd = ::mkstemp(plantilla);
    if (fd >= 0) {
        (void)!::write(fd, entrada.data(), entrada.size());
        ::lseek(fd, 0, SEEK_SET);
        ::unlink(plantilla);
    }
    std::vector<char *> args, env;
    for (const std::string &a : argv)
        args.push_back(const_cast<char *>(a.c_str()));
    args.push_back(nullptr);
    for (const std::string &e : entorno)
        env.push_back(const_cast<char *>(e.c_str()));
    env.push_back(nullptr);
    const auto inicio = std::chrono::steady_clock::now();
    const pid_t hijo = ::fork();
    if (hijo == 0) {
        ::dup2(fd, 0);
        const int nulo = ::open("/dev/null", O_WRONLY);
        ::dup2(nulo, 1);
        ::dup2(nulo, 2);
        ::execve(args[0], args.data(), env.data());
        ::_exit(127);
    }
    int estado = 0;
    rusage uso{};
    ::wait4(hijo, &estado, 0, &uso);
    if (fd >= 0)
        ::close(fd);
    Resultado r;
    r.segundos = std::chrono::duration<double>(std::chrono::steady_clock::now() - inicio).count();
    r.rssKB = uso.ru_maxrss;
    return r;
}

long long Instrucciones(std::vector<std::string> argv, const std::vector<std::string> &entorno,
                        const std::string &entrada, const fs::path &trabajo)
{
    const fs::path registro = trabajo / "callgrind.log";
    argv.insert(argv.begin(), {"/usr/bin/valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null",
                               "--log-file=" + registro.string()});
    Ejecuta(argv, entorno, entrada);
    const std::string texto = Lee(registro);
    const size_t i = texto.find("Collected : ");
    return i == std::string::npos ? -1 : std::atoll(texto.c_str() + i + 12);
}

std::vector<std::string> Entorno(const Peticion &p, const fs::path &raiz, const char *pausa)
{
    std::vector<std::string> e = {"REQUEST_METHOD=" + std::string(p.metodo), "CAMBIOIP_ROOT=" + raiz.string()};
    if (pausa != nullptr)
        e.push_back(std::string("CAMBIOIP_LOAD_PAUSE_MS=") + pausa);
    if (std::string(p.metodo) == "GET")
        e.push_back("QUERY_STRING=" + p.formulario);
    else
        e.push_back("CONTENT_LENGTH=" + std::to_string(p.formulario.size()));
    return e;
}

double Mediana(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[v.size() / 2];
}

}  // namespace

int main(int argc, char **argv)
{
    if (argc < 6) {
        std::fprintf(stderr, "usage: banco <cambioIP.cgi> <suelo> <libtraza.so> <test racks> <work folder> [runs]\n");
        return 2;
    }
    const std::string cgi = fs::absolute(argv[1]), suelo = fs::absolute(argv[2]), traza = fs::absolute(argv[3]);
    const fs::path racks = argv[4], trabajo = fs::absolute(argv[5]);
    const int vueltas = argc > 6 ? std::max(1, std::atoi(argv[6])) : 21;
    std::vector<int> tamanos = {1, 8, 32, 128};
    if (argc > 7) {
        tamanos.clear();
        std::istringstream lista(argv[7]);
        for (std::string n; std::getline(lista, n, ',');)
            if (std::atoi(n.c_str()) > 0)
                tamanos.push_back(std::atoi(n.c_str()));
    }
    fs::create_directories(trabajo);
    const char *variable = std::getenv("BANCO_INSTALADO");
    const std::string instalado = variable != nullptr && *variable != '\0' ? fs::absolute(variable).string() : "";

    std::printf("cambioIP.cgi against the parse of the documents each request reads (the floor).\n"
                "Pause after each document load: 0 ms, except in the \"with pause\" column (the system's 250 ms:\n"
                "measured up to 8 units, worked out from the documents read above). Wall time: median of %d\n"
                "interleaved runs. Instructions: callgrind, whole process%s.\n\n",
                vueltas, instalado.empty() ? "" : "; \"instr inst.\": the program as make install links it");
    std::printf("%-24s %5s %12s %12s %6s %9s %9s %9s %8s %8s %12s %12s\n", "command", "units", "instr CGI",
                "instr floor", "ratio", "wall ms", "floor ms", "w/ pause", "RSS KB", "floor KB", "instr/unit",
                instalado.empty() ? "" : "instr inst.");
    std::ostringstream json;
    json << "[\n";
    bool primero = true;
    for (int unidades : tamanos) {
        const fs::path raiz = CreaRack(racks, trabajo, unidades);
        for (const Peticion &p : Peticiones()) {
            // The documents the request parses, noted by the preload library.
            const fs::path nota = trabajo / "traza.txt";
            fs::remove(nota);
            std::vector<std::string> entorno = Entorno(p, raiz, "0");
            std::vector<std::string> trazado = entorno;
            trazado.push_back("LD_PRELOAD=" + traza);
            trazado.push_back("BANCO_TRAZA=" + nota.string());
            Ejecuta({cgi}, trazado, p.formulario);
            std::vector<std::string> documentos = {suelo};
            std::istringstream lineas(Lee(nota));
            for (std::string linea; std::getline(lineas, linea);)
                documentos.push_back(linea);

            Resultado r;
            r.instrucciones = Instrucciones({cgi}, entorno, p.formulario, trabajo);
            const long long sueloInstr = Instrucciones(documentos, entorno, "", trabajo);
            const long long instaladoInstr = instalado.empty() ? -1 : Instrucciones({instalado}, entorno, p.formulario, trabajo);
            std::vector<double> tiempos, tiemposSuelo;
            long rss = 0, rssSuelo = 0;
            for (int v = 0; v < vueltas; ++v) {
                const Resultado a = Ejecuta({cgi}, entorno, p.formulario);
                const Resultado b = Ejecuta(documentos, entorno, "");
                tiempos.push_back(a.segundos);
                tiemposSuelo.push_back(b.segundos);
                rss = std::max(rss, a.rssKB);
                rssSuelo = std::max(rssSuelo, b.rssKB);
            }
            const double ms = Mediana(tiempos) * 1000, msSuelo = Mediana(tiemposSuelo) * 1000;
            const size_t leidos = documentos.size() - 1;
            const double conPausa = unidades <= 8 ? Ejecuta({cgi}, Entorno(p, raiz, nullptr), p.formulario).segundos * 1000
                                                  : ms + 250.0 * static_cast<double>(leidos);
            const double ratio = sueloInstr > 0 ? static_cast<double>(r.instrucciones) / static_cast<double>(sueloInstr) : 0;
            std::printf("%-24s %5d %12lld %12lld %6.2f %9.2f %9.2f %9.0f %8ld %8ld %12lld %12s\n", p.nombre, unidades,
                        r.instrucciones, sueloInstr, ratio, ms, msSuelo, conPausa, rss, rssSuelo,
                        r.instrucciones / std::max(1, unidades),
                        instaladoInstr < 0 ? "" : std::to_string(instaladoInstr).c_str());
            std::fflush(stdout);
            json << (primero ? "" : ",\n") << "  {\"command\": \"" << p.nombre << "\", \"units\": " << unidades
                 << ", \"documents\": " << leidos << ", \"instructions\": " << r.instrucciones
                 << ", \"floorInstructions\": " << sueloInstr << ", \"ratio\": " << ratio << ", \"wallMs\": " << ms
                 << ", \"floorWallMs\": " << msSuelo << ", \"wallMsWithPause\": " << conPausa
                 << ", \"rssKB\": " << rss << ", \"floorRssKB\": " << rssSuelo;
            if (instaladoInstr >= 0)
                json << ", \"installedInstructions\": " << instaladoInstr;
            json << "}";
            primero = false;
        }
    }
    json << "\n]\n";
    Escribe(trabajo / "bench.json", json.str());
    std::printf("\nWritten: %s\n", (trabajo / "bench.json").c_str());
    return 0;
}
