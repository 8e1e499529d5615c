// proccgilib.cpp: CGI form text and the decoding of one name=value pair.
#include "proccgilib/proccgilib.h"

#include "utils/utils.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

void PROCCGI_Libera::operator()(char *texto) const noexcept { std::free(texto); }

namespace {

bool esLetra(unsigned char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool esDigito(unsigned char c) { return c >= '0' && c <= '9'; }
bool esEspacio(unsigned char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

int valorHexa(unsigned char c)
{
    if (esDigito(c))
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// The CONTENT_LENGTH of a POST, or -1 when it is absent, not a whole number, negative
// or larger than we accept (one diagnostic line on standard error).
long PROCCGIINT_LongitudPost()
{
    const char *texto = std::getenv("CONTENT_LENGTH");
    if (texto == nullptr || texto[0] == '\0') {
        std::fprintf(stderr, "proccgi -- no CONTENT_LENGTH for post data, ignored\n");
        return -1;
    }
    errno = 0;
    char *fin = nullptr;
    long longitud = std::strtol(texto, &fin, 10);
    if (errno != 0 || fin == texto || *fin != '\0' || longitud < 0 || longitud > PROCCGI_MaxPost) {
        std::fprintf(stderr, "proccgi -- CONTENT_LENGTH '%.40s' refused (0 to %ld bytes), post data ignored\n",
                     texto, PROCCGI_MaxPost);
        return -1;
    }
    return longitud;
}

char *PROCCGIINT_LeePost()
{
    long longitud = PROCCGIINT_LongitudPost();
    if (longitud <= 0)
        return nullptr;
    char *buffer = static_cast<char *>(std::calloc(static_cast<size_t>(longitud) + 1, 1));
    if (buffer == nullptr) {
        std::fprintf(stderr, "proccgi -- out of memory allocating %d bytes\n", static_cast<int>(longitud));
        return nullptr;
    }
    size_t leidos = 0;
    while (leidos < static_cast<size_t>(longitud)) {
        ssize_t n = ::read(STDIN_FILENO, buffer + leidos, static_cast<size_t>(longitud) - leidos);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        leidos += static_cast<size_t>(n);
    }
    if (leidos < static_cast<size_t>(longitud))
        std::fprintf(stderr, "proccgi -- error reading post data, %d bytes read, %d expedted\n",
                     static_cast<int>(leidos), static_cast<int>(longitud));
    // The unread tail stays zero-filled; the text ends at the announced length.
    buffer[longitud] = '\0';
    return buffer;
}

// Duplicates and decodes one pair; returns the copy and where its value starts, or
// null when the key is not a valid name followed by '='.
PROCCGI_Texto PROCCGIINT_DecodificaPar(const char *par, const char **clave, const char **valor)
{
    PROCCGI_Texto copia(FP_strdup(par));
    if (!copia)
        return nullptr;
    char *texto = ParseString(copia.get());
    unsigned char primero = static_cast<unsigned char>(texto[0]);
    if (!esLetra(primero) && primero != '_')
        return nullptr;
    char *p = texto + 1;
    while (esLetra(static_cast<unsigned char>(*p)) || esDigito(static_cast<unsigned char>(*p)) || *p == '_')
        ++p;
    if (*p != '=')
        return nullptr;
    *p = '\0';
    *clave = texto;
    *valor = p + 1;
    return copia;
}

} // namespace

char *FP_strdup(const char *texto)
{
    if (texto == nullptr)
        return nullptr;
    size_t longitud = std::strlen(texto);
    char *copia = static_cast<char *>(std::malloc(longitud + 1));
    if (copia == nullptr) {
        std::fprintf(stderr, "proccgi -- out of memory dupping %d bytes\n", static_cast<int>(longitud));
        return nullptr;
    }
    std::memcpy(copia, texto, longitud + 1);
    return copia;
}

char *LoadInput()
{
    const char *metodo = std::getenv("REQUEST_METHOD");
    if (metodo == nullptr)
        return nullptr;
    if (std::strcmp(metodo, "GET") == 0) {
        const char *consulta = std::getenv("QUERY_STRING");
        return consulta == nullptr ? nullptr : FP_strdup(consulta);
    }
    if (std::strcmp(metodo, "POST") == 0)
        return PROCCGIINT_LeePost();
    return nullptr;
}

char *ParseString(char *texto)
{
    if (texto == nullptr)
        return nullptr;
    const char *origen = texto;
    while (*origen != '\0' && esEspacio(static_cast<unsigned char>(*origen)))
        ++origen;
    char *destino = texto;
    while (*origen != '\0') {
        if (*origen == '+') {
            *destino++ = ' ';
            ++origen;
        } else if (*origen == '%' && valorHexa(static_cast<unsigned char>(origen[1])) >= 0 &&
                   valorHexa(static_cast<unsigned char>(origen[2])) >= 0) {
            *destino++ = static_cast<char>(valorHexa(static_cast<unsigned char>(origen[1])) * 16 +
                                           valorHexa(static_cast<unsigned char>(origen[2])));
            origen += 3;
        } else {
            *destino++ = *origen++;
        }
    }
    *destino = '\0';
    return texto;
}

void GetValueKey(const char *par, std::initializer_list<CampoForm> campos)
{
    if (par == nullptr)
        return;
    const char *clave = nullptr;
    const char *valor = nullptr;
    PROCCGI_Texto copia = PROCCGIINT_DecodificaPar(par, &clave, &valor);
    if (!copia)
        return;
    size_t longitud = std::strlen(valor);
    for (const CampoForm &campo : campos) {
        if (campo.nombre == nullptr || campo.destino == nullptr || campo.capacidad == 0)
            continue;
        if (std::strcmp(campo.nombre, clave) != 0)
            continue;
        size_t copiados = UTILS_CorteUTF8(std::string_view(valor, longitud), campo.capacidad - 1);
        std::memcpy(campo.destino, valor, copiados);
        campo.destino[copiados] = '\0';
    }
}

void HandleString(const char *par)
{
    if (par == nullptr)
        return;
    const char *clave = nullptr;
    const char *valor = nullptr;
    PROCCGI_Texto copia = PROCCGIINT_DecodificaPar(par, &clave, &valor);
    if (!copia)
        return;
    std::string linea = std::string("FORM_") + clave + "=\"";
    for (const char *c = valor; *c != '\0'; ++c) {
        if (*c == '$' || *c == '"' || *c == '\\' || *c == '`')
            linea += '\\';
        linea += *c;
    }
    UTILS_Imprime(linea + "\"\n");
}

void GetValueKeys(const char *formulario, std::initializer_list<CampoForm> campos)
{
    PROCCGI_Texto copia(FP_strdup(formulario));
    if (!copia)
        return;
    char *resto = nullptr;
    for (char *par = strtok_r(copia.get(), "&", &resto); par != nullptr; par = strtok_r(nullptr, "&", &resto))
        GetValueKey(par, campos);
}

std::vector<PROCCGI_ParLinea> PROCCGI_ParesLinea(std::string_view lista)
{
    std::vector<std::string_view> piezas;
    for (size_t inicio = 0;;) {
        size_t fin = lista.find('_', inicio);
        piezas.push_back(lista.substr(inicio, fin == std::string_view::npos ? std::string_view::npos : fin - inicio));
        if (fin == std::string_view::npos)
            break;
        inicio = fin + 1;
    }
    std::vector<PROCCGI_ParLinea> pares;
    if (lista.empty())
        return pares;
    for (size_t i = 0; i + 1 < piezas.size(); i += 2)
        pares.push_back({std::strtol(std::string(piezas[i]).c_str(), nullptr, 10), std::string(piezas[i + 1])});
    return pares;
}
