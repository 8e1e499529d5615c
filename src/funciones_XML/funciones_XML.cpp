// funciones_XML.cpp: path patterns turned into XPath, reads and writes of the first
// matching node, read-only loads, atomic saves, node insertion and removal, and the
// debug dump of a unit document.
#include "funciones_XML/funciones_XML.h"

#include "Utilhexasciistrings/Utilhexasciistrings.h"
#include "gestfich/gestfich.h"
#include "utils/utils.h"

#include <fcntl.h>
#include <libxml/parser.h>
#include <libxml/xpath.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

// ---------------------------------------------------------------------------
// Module-wide working state (the layer is single-threaded by design)
// ---------------------------------------------------------------------------

// The XPath built for the current call; a path never holds more than 99 characters.
char ruta[100];
// The conversion being assembled: "%", at most two flags or width digits, the letter.
char formato[5];
constexpr size_t maxRuta = sizeof(ruta) - 1;
constexpr size_t maxModificadores = sizeof(formato) - 3;

// ---------------------------------------------------------------------------
// Owners
// ---------------------------------------------------------------------------

struct LiberaXmlChar {
    void operator()(xmlChar *p) const { xmlFree(p); }
};
using XmlTexto = std::unique_ptr<xmlChar, LiberaXmlChar>;

struct LiberaContexto {
    void operator()(xmlXPathContextPtr p) const { xmlXPathFreeContext(p); }
};
using ContextoXPath = std::unique_ptr<xmlXPathContext, LiberaContexto>;

struct LiberaObjeto {
    void operator()(xmlXPathObjectPtr p) const { xmlXPathFreeObject(p); }
};
using ObjetoXPath = std::unique_ptr<xmlXPathObject, LiberaObjeto>;

struct LiberaMalloc {
    void operator()(void *p) const { std::free(p); }
};
template <typename T>
using BloqueMalloc = std::unique_ptr<T, LiberaMalloc>;

using Descriptor = GESTFICH_Descriptor;

// The layer's diagnostics: plain text on standard output, flushed at once.
void imprime(const char *mensaje, ...) __attribute__((format(printf, 1, 2)));
void imprime(const char *mensaje, ...)
{
    std::va_list argumentos;
    va_start(argumentos, mensaje);
    UTILS_ImprimeFormatoV(mensaje, argumentos);
    va_end(argumentos);
    std::fflush(stdout);
}

const char *texto(const xmlChar *s) { return reinterpret_cast<const char *>(s); }
const xmlChar *xml(const char *s) { return reinterpret_cast<const xmlChar *>(s); }

// ---------------------------------------------------------------------------
// Path building
// ---------------------------------------------------------------------------

// The three pattern dialects: the reads (getXML, content read), the writes (setXML,
// content write, which also accept "%%"), and the fuller one of getXML_malloc and
// getXML_LCD (plain formats, everything appended at the end).
enum class Dialecto { lectura, escritura, completo };

bool esConversion(char c) { return c != '\0' && std::strchr("xXidsocu", c) != nullptr; }
// Flags, width and precision characters that may sit between "%" and the letter. '*' is
// not among them: it would take an argument the pattern does not announce.
bool esModificador(char c) { return c != '\0' && std::strchr("0123456789-+ #.", c) != nullptr; }

// The path under construction, never longer than the 99 characters `ruta` holds. A
// path that does not fit is marked, and no node is looked up with it: a cut path could
// name a different element.
class Camino {
  public:
    void anade(std::string_view parte)
    {
        if (parte.size() > maxRuta - texto_.size()) {
            cabe_ = false;
            parte = parte.substr(0, maxRuta - texto_.size());
        }
        texto_.append(parte);
    }
    void anade(char c) { anade(std::string_view(&c, 1)); }
    // A printf result of `longitud` characters, of which `salida` holds the first ones.
    void anadeFormateado(const char *salida, int longitud)
    {
        if (longitud < 0)
            return;
        if (static_cast<size_t>(longitud) > std::strlen(salida))
            cabe_ = false;
        anade(salida);
    }
    void vacia() { texto_.clear(); }
    bool cabe() const { return cabe_; }
    // Leaves the result in the module's `ruta`.
    bool vuelca() const
    {
        std::memset(ruta, 0, sizeof(ruta));
        std::memcpy(ruta, texto_.data(), texto_.size());
        return cabe_;
    }

  private:
    std::string texto_;
    bool cabe_ = true;
};

// "%d" prints its number at the start of the path, replacing what was built so far; a
// negative number leaves its "-" at the end of the old path, which the number then
// replaces too, so only the magnitude remains. The callers never pass "%d" through a
// pattern: they format the whole path themselves and pass a pattern without "%".
void convierteEnteroAlInicio(Camino &camino, int valor)
{
    char salida[sizeof(ruta)];
    int longitud;
    if (valor < 0)
        camino.anade('-');
    const unsigned magnitud = (valor < 0) ? 0U - static_cast<unsigned>(valor) : static_cast<unsigned>(valor);
    if (magnitud <= static_cast<unsigned>(INT_MAX)) {
        longitud = std::snprintf(salida, sizeof(salida), formato, static_cast<int>(magnitud));
    } else {
        // The most negative int: its magnitude only fits unsigned.
        char sinSigno[sizeof(formato)];
        std::memcpy(sinSigno, formato, sizeof(formato));
        *std::strchr(sinSigno, 'd') = 'u';
        longitud = std::snprintf(salida, sizeof(salida), sinSigno, magnitud);
    }
    camino.vacia();
    camino.anadeFormateado(salida, longitud);
}

// One conversion of the read and write dialects: the argument formatted with `formato`
// and appended (or, for "%d", put at the start).
void convierte(Camino &camino, char letra, std::va_list &argumentos)
{
    char salida[sizeof(ruta)];
    int longitud = -1;
    switch (letra) {
    case 'c':
    case 'i':
        longitud = std::snprintf(salida, sizeof(salida), formato, va_arg(argumentos, int));
        break;
    case 'x':
    case 'X':
    case 'o':
    case 'u':
        longitud = std::snprintf(salida, sizeof(salida), formato, va_arg(argumentos, unsigned));
        break;
    case 's': {
        const char *cadena = va_arg(argumentos, const char *);
        longitud = std::snprintf(salida, sizeof(salida), formato, cadena != nullptr ? cadena : "(null)");
        break;
    }
    case 'd':
        convierteEnteroAlInicio(camino, va_arg(argumentos, int));
        return;
    default:
        return;
    }
    camino.anadeFormateado(salida, longitud);
}

// One conversion of the fuller dialect: fixed plain formats, all appended at the end.
void convierteCompleto(Camino &camino, char letra, std::va_list &argumentos)
{
    char salida[sizeof(ruta)];
    int longitud = -1;
    switch (letra) {
    case 'X':
        longitud = std::snprintf(salida, sizeof(salida), "%X", va_arg(argumentos, unsigned));
        break;
    case 'x':
        longitud = std::snprintf(salida, sizeof(salida), "%x", va_arg(argumentos, unsigned));
        break;
    case 'u':
        longitud = std::snprintf(salida, sizeof(salida), "%u", va_arg(argumentos, unsigned));
        break;
    case 'o':
        longitud = std::snprintf(salida, sizeof(salida), formato, va_arg(argumentos, unsigned));
        break;
    case 'c':
        longitud = std::snprintf(salida, sizeof(salida), "%c", va_arg(argumentos, int));
        break;
    case 'i':
        longitud = std::snprintf(salida, sizeof(salida), "%i", va_arg(argumentos, int));
        break;
    case 'd': {
        const int valor = va_arg(argumentos, int);
        if (valor < 0)
            camino.anade('-');
        const unsigned magnitud =
            (valor < 0) ? 0U - static_cast<unsigned>(valor) : static_cast<unsigned>(valor);
        longitud = std::snprintf(salida, sizeof(salida), "%u", magnitud);
        break;
    }
    case 's': {
        const char *cadena = va_arg(argumentos, const char *);
        camino.anade(cadena != nullptr ? cadena : "(null)");
        return;
    }
    default:
        return;
    }
    camino.anadeFormateado(salida, longitud);
}

// Builds `ruta` from the pattern and its arguments (one machine word each). False when
// the path does not fit in 99 characters.
bool construyeRutaINT(Dialecto dialecto, const char *patron, std::va_list &argumentos)
{
    Camino camino;
    std::memset(formato, 0, sizeof(formato));
    const char *p = patron;
    while (*p != '\0') {
        if (*p != '%') {
            camino.anade(*p++);
            std::memset(formato, 0, sizeof(formato));
            continue;
        }
        ++p;
        if (dialecto == Dialecto::completo && *p == '%') {
            camino.anade('%');
            ++p;
            continue;
        }
        // "%" plus flags and width ("%02X", "%1d"); a conversion that would not fit
        // in `formato` ends at the character that does not fit.
        std::memset(formato, 0, sizeof(formato));
        formato[0] = '%';
        size_t longitud = 1;
        while (esModificador(*p) && longitud <= maxModificadores)
            formato[longitud++] = *p++;
        const char letra = *p;
        if (letra == '\0')
            break;
        ++p;
        if (esConversion(letra)) {
            formato[longitud] = letra;
            if (dialecto == Dialecto::completo)
                convierteCompleto(camino, letra, argumentos);
            else
                convierte(camino, letra, argumentos);
        } else if (letra == '%' && dialecto == Dialecto::escritura) {
            // The conversion text assembled so far is written as it stands.
            camino.anade(formato);
        } else {
            imprime("%s", dialecto == Dialecto::escritura ? "getXML default !!!!" : "getXML:AVISO:Modificador!!!");
        }
    }
    return camino.vuelca();
}

// ---------------------------------------------------------------------------
// Evaluation
// ---------------------------------------------------------------------------

enum class Busqueda { sinContexto, sinEvaluar, noEncontrado, encontrado };

// Evaluates the expression on the document. The context is freed right after the
// evaluation; the result stays in `objeto` (whose first node is the one used) until the
// caller is done with the node.
Busqueda evaluaINT(xmlDocPtr documento, const char *expresion, ObjetoXPath &objeto, xmlNodePtr &nodo)
{
    nodo = nullptr;
    ContextoXPath contexto(xmlXPathNewContext(documento));
    if (contexto == nullptr)
        return Busqueda::sinContexto;
    objeto.reset(xmlXPathEval(xml(expresion), contexto.get()));
    contexto.reset();
    if (objeto == nullptr)
        return Busqueda::sinEvaluar;
    if (xmlXPathNodeSetIsEmpty(objeto->nodesetval))
        return Busqueda::noEncontrado;
    nodo = objeto->nodesetval->nodeTab[0];
    return Busqueda::encontrado;
}

// Whether the path is a plain absolute path of element names ("/ENCODERCONFIG/SALIDAQAM/
// NIVEL"), as every path of the unit documents is: names of ASCII letters, digits, '_', '-'
// and '.', not starting with a digit, '-' or '.', without a namespace prefix, predicate,
// axis or wildcard.
bool rutaSimpleINT(const char *expresion)
{
    if (expresion[0] != '/')
        return false;
    for (const char *p = expresion; *p == '/';) {
        ++p;
        if (!std::isalpha(static_cast<unsigned char>(*p)) && *p != '_')
            return false;
        while (std::isalnum(static_cast<unsigned char>(*p)) || *p == '_' || *p == '-' || *p == '.')
            ++p;
        if (*p != '/' && *p != '\0')
            return false;
    }
    return true;
}

// The first element, in document order, reached from the nodes from `primero` on by the
// names of `resto` ("A/B/C"): what the XPath "/A/B/C" finds first, without building an XPath
// context.
xmlNodePtr recorreINT(xmlNodePtr primero, std::string_view resto)
{
    const size_t barra = resto.find('/');
    const std::string_view nombre = resto.substr(0, barra);
    for (xmlNodePtr hijo = primero; hijo != nullptr; hijo = hijo->next) {
        if (hijo->type != XML_ELEMENT_NODE || hijo->ns != nullptr || hijo->name == nullptr ||
            nombre != texto(hijo->name))
            continue;
        if (barra == std::string_view::npos)
            return hijo;
        if (xmlNodePtr nodo = recorreINT(hijo->children, resto.substr(barra + 1)))
            return nodo;
    }
    return nullptr;
}

// The first node matching `ruta`, or null (also when the path did not fit). Plain paths are
// walked element by element; anything else goes to XPath.
xmlNodePtr buscaNodoINT(xmlDocPtr documento, bool cabe, ObjetoXPath &objeto)
{
    xmlNodePtr nodo = nullptr;
    if (!cabe)
        return nodo;
    if (rutaSimpleINT(ruta))
        return recorreINT(documento->children, ruta + 1);
    evaluaINT(documento, ruta, objeto, nodo);
    return nodo;
}

// ---------------------------------------------------------------------------
// Text helpers
// ---------------------------------------------------------------------------

// Cuts the text (at least tam >= 2 bytes long) to fit tam - 1 bytes without splitting a
// UTF-8 character, clearing the rest of the buffer. The new length; a text without any lead
// byte up to the cut is left as it is.
size_t cortaUTF8INT(char *texto, size_t tam)
{
    const size_t corte = UTILS_CorteUTF8(std::string_view(texto, ::strnlen(texto, tam)), tam - 1);
    if (corte == 0 && (static_cast<unsigned char>(texto[0]) & 0xC0) == 0x80)
        return std::strlen(texto);
    std::memset(texto + corte, 0, tam - corte);
    return corte;
}

// Copies a value read from the document into the caller's buffer, without terminator.
int copiaValorINT(char *buffer, unsigned int tam, char *valor, bool cortaUTF8)
{
    size_t longitud = std::strlen(valor);
    if (cortaUTF8 && tam >= 2 && longitud > tam)
        longitud = cortaUTF8INT(valor, tam);
    if (longitud > tam) {
        imprime("getXML:Long xmlVal__[%d > size %d]:%s\n", static_cast<int>(longitud), static_cast<int>(tam),
                UTILS_Escapa(valor).c_str());
        return -1;
    }
    std::memcpy(buffer, valor, longitud);
    return 0;
}

// The hexadecimal text of n value bytes, most significant first; null when it cannot
// be allocated (after the system's message).
BloqueMalloc<char> textoHexaINT(const char *valor, int longitudHexa)
{
    const size_t n = static_cast<size_t>(longitudHexa);
    BloqueMalloc<char> temp(n <= (SIZE_MAX - 1) / 2 ? static_cast<char *>(std::malloc(2 * n + 1)) : nullptr);
    if (temp == nullptr) {
        imprime("setXML:ERROR:temp == NULL");
        return temp;
    }
    std::memset(temp.get(), 0, n + 1);
    bin2hexVAR(temp.get(), reinterpret_cast<const uint8_t *>(valor), n);
    return temp;
}

// A value the writers refuse: XML 1.0 cannot hold it, so a document holding it could
// never be read again.
bool valorAdmitidoINT(const char *valor)
{
    if (FUNCXML_TextoValido(valor))
        return true;
    std::fprintf(stderr, "FUNCXML:ruta[%s]:valor no admitido en XML:[ERROR]\n", ruta);
    return false;
}

// Element and attribute names the writers accept: a name without prefix.
bool nombreValidoINT(const char *nombre) { return nombre != nullptr && xmlValidateNCName(xml(nombre), 0) == 0; }

// Replaces the text of the node, stored exactly as given: never parsed for entity
// references (xmlNodeSetContent on an element would decode "&amp;", lose "1 & 2" and
// keep a broken "A&B;").
bool escribeTextoINT(xmlNodePtr nodo, const char *valor)
{
    switch (nodo->type) {
    case XML_ELEMENT_NODE:
        xmlNodeSetContent(nodo, nullptr);
        xmlNodeAddContent(nodo, xml(valor));
        return true;
    case XML_ATTRIBUTE_NODE: {
        auto *atributo = reinterpret_cast<xmlAttrPtr>(nodo);
        if (atributo->parent == nullptr)
            return false;
        return xmlSetNsProp(atributo->parent, atributo->ns, atributo->name, xml(valor)) != nullptr;
    }
    case XML_TEXT_NODE:
    case XML_CDATA_SECTION_NODE:
        // Text nodes take the value as it stands.
        xmlNodeSetContent(nodo, xml(valor));
        return true;
    default:
        // Comments, processing instructions and the document itself are not values.
        return false;
    }
}

// Whether the document declares an entity of its own text. Its references stay in the tree
// and every read of a value expands them again, so a few hundred kilobytes of references to
// one large entity read as gigabytes; no unit document declares one.
bool declaraEntidadINT(xmlDocPtr documento)
{
    const xmlDtd *subconjunto = documento->intSubset;
    if (subconjunto == nullptr)
        return false;
    for (const xmlNode *nodo = subconjunto->children; nodo != nullptr; nodo = nodo->next)
        if (nodo->type == XML_ENTITY_DECL &&
            reinterpret_cast<const xmlEntity *>(nodo)->etype == XML_INTERNAL_GENERAL_ENTITY)
            return true;
    return false;
}

void avisoGuardado(const char *fichero, const char *paso)
{
    std::fprintf(stderr, "FUNCXML_GuardaDocumento:%s:%s:%s:[ERROR]\n", fichero, paso, std::strerror(errno));
}

void pausaCargaINT()
{
    const long ms = UTILS_PausaCargaMs();
    // A sleep of zero still costs the kernel's timer slack, some 60 us a document.
    if (ms <= 0)
        return;
    timespec espera{static_cast<time_t>(ms / 1000), (ms % 1000) * 1000000L};
    while (nanosleep(&espera, &espera) != 0 && errno == EINTR) {
    }
}

void imprimeContenidoINT(xmlNodePtr nodo)
{
    XmlTexto contenido(xmlNodeGetContent(nodo));
    imprime("Contenido: %s\n", contenido != nullptr ? texto(contenido.get()) : "(null)");
}

const char *nombreINT(xmlNodePtr nodo) { return nodo->name != nullptr ? texto(nodo->name) : "(null)"; }

}  // namespace

// ---------------------------------------------------------------------------
// Content of the first matching node
// ---------------------------------------------------------------------------

int FUNCXML_getXMLNodeContent(xmlDocPtr documento, char *buffer, uint8_t hexa, unsigned int tam,
                              const char *patron, ...)
{
    std::memset(ruta, 0, sizeof(ruta));
    if (documento == nullptr || buffer == nullptr || patron == nullptr)
        return -1;
    std::va_list argumentos;
    va_start(argumentos, patron);
    const bool cabe = construyeRutaINT(Dialecto::lectura, patron, argumentos);
    va_end(argumentos);

    ObjetoXPath objeto;
    xmlNodePtr nodo = buscaNodoINT(documento, cabe, objeto);
    if (nodo == nullptr)
        return -1;
    XmlTexto valor(xmlNodeGetContent(nodo));
    if (valor == nullptr)
        return -1;
    if (hexa != 0) {
        hex2binVAR(reinterpret_cast<uint8_t *>(buffer), texto(valor.get()),
                   static_cast<int>(std::min<unsigned>(tam, INT_MAX)));
        return 0;
    }
    return copiaValorINT(buffer, tam, reinterpret_cast<char *>(valor.get()), true);
}

int FUNCXML_setXMLNodeContent(xmlDocPtr documento, const char *valor, int longitudHexa, const char *patron, ...)
{
    std::memset(ruta, 0, sizeof(ruta));
    if (patron == nullptr)
        return -1;
    std::va_list argumentos;
    va_start(argumentos, patron);
    const bool cabe = construyeRutaINT(Dialecto::escritura, patron, argumentos);
    va_end(argumentos);
    if (documento == nullptr || valor == nullptr)
        return -1;
    if (longitudHexa == 0 && !valorAdmitidoINT(valor))
        return -1;

    ObjetoXPath objeto;
    xmlNodePtr nodo = buscaNodoINT(documento, cabe, objeto);
    if (nodo == nullptr)
        return -1;
    if (longitudHexa == 0)
        return escribeTextoINT(nodo, valor) ? 0 : -1;
    BloqueMalloc<char> temp = (longitudHexa > 0) ? textoHexaINT(valor, longitudHexa) : nullptr;
    if (temp == nullptr) {
        if (longitudHexa < 0)
            imprime("setXML:ERROR:temp == NULL");
        return -1;
    }
    return escribeTextoINT(nodo, temp.get()) ? 0 : -1;
}

// ---------------------------------------------------------------------------
// Attributes of the first matching node
// ---------------------------------------------------------------------------

int getXML(xmlDocPtr documento, char *buffer, const char *atributo, uint8_t hexa, unsigned int tam,
           const char *patron, ...)
{
    std::memset(ruta, 0, sizeof(ruta));
    if (documento == nullptr || buffer == nullptr || atributo == nullptr || patron == nullptr)
        return -1;
    std::va_list argumentos;
    va_start(argumentos, patron);
    const bool cabe = construyeRutaINT(Dialecto::lectura, patron, argumentos);
    va_end(argumentos);

    ObjetoXPath objeto;
    xmlNodePtr nodo = buscaNodoINT(documento, cabe, objeto);
    if (nodo == nullptr) {
        imprime("\ngetXML:ruta[%s]:[NO FOUND TO]:[%s]:[ERROR]\n", ruta, atributo);
        return -1;
    }
    XmlTexto valor(xmlGetProp(nodo, xml(atributo)));
    if (valor == nullptr)
        return -1;
    if (hexa != 0) {
        hex2binVAR(reinterpret_cast<uint8_t *>(buffer), texto(valor.get()),
                   static_cast<int>(std::min<unsigned>(tam, INT_MAX)));
        return 0;
    }
    return copiaValorINT(buffer, tam, reinterpret_cast<char *>(valor.get()), false);
}

int setXML(xmlDocPtr documento, const char *atributo, const char *valor, int longitudHexa, const char *patron, ...)
{
    std::memset(ruta, 0, sizeof(ruta));
    if (patron == nullptr)
        return -1;
    std::va_list argumentos;
    va_start(argumentos, patron);
    const bool cabe = construyeRutaINT(Dialecto::escritura, patron, argumentos);
    va_end(argumentos);
    if (documento == nullptr || valor == nullptr || !nombreValidoINT(atributo))
        return -1;
    if (longitudHexa == 0 && !valorAdmitidoINT(valor))
        return -1;

    ObjetoXPath objeto;
    xmlNodePtr nodo = buscaNodoINT(documento, cabe, objeto);
    if (nodo == nullptr || nodo->type != XML_ELEMENT_NODE)
        return -1;
    if (longitudHexa == 0)
        return xmlSetProp(nodo, xml(atributo), xml(valor)) != nullptr ? 0 : -1;
    BloqueMalloc<char> temp = (longitudHexa > 0) ? textoHexaINT(valor, longitudHexa) : nullptr;
    if (temp == nullptr) {
        if (longitudHexa < 0)
            imprime("setXML:ERROR:temp == NULL");
        return -1;
    }
    return xmlSetProp(nodo, xml(atributo), xml(temp.get())) != nullptr ? 0 : -1;
}

xmlChar *getXML_malloc(xmlDocPtr documento, int /*ignorado*/, const char *atributo, const char *patron, ...)
{
    std::memset(ruta, 0, sizeof(ruta));
    if (documento == nullptr || atributo == nullptr || patron == nullptr)
        return nullptr;
    std::va_list argumentos;
    va_start(argumentos, patron);
    const bool cabe = construyeRutaINT(Dialecto::completo, patron, argumentos);
    va_end(argumentos);

    ObjetoXPath objeto;
    xmlNodePtr nodo = buscaNodoINT(documento, cabe, objeto);
    if (nodo == nullptr) {
        imprime("\ngetXML:ruta:[%s]:[NO FOUND TO]:[%s]\n", ruta, atributo);
        return nullptr;
    }
    return xmlGetProp(nodo, xml(atributo));
}

uint8_t *getXML_LCD(xmlDocPtr documento, int /*ignorado*/, const char *atributo, const char *patron, ...)
{
    std::memset(ruta, 0, sizeof(ruta));
    if (documento == nullptr || atributo == nullptr || patron == nullptr)
        return nullptr;
    std::va_list argumentos;
    va_start(argumentos, patron);
    const bool cabe = construyeRutaINT(Dialecto::completo, patron, argumentos);
    va_end(argumentos);

    ObjetoXPath objeto;
    xmlNodePtr nodo = nullptr;
    switch (cabe ? evaluaINT(documento, ruta, objeto, nodo) : Busqueda::noEncontrado) {
    case Busqueda::sinContexto:
        imprime("getXML_LCD:No se puede generar el contexto:[ERROR]");
        return nullptr;
    case Busqueda::sinEvaluar:
        imprime("getXML_LCD: No se puede evaluar la ruta <%s>:[ERROR]\n", ruta);
        return nullptr;
    case Busqueda::noEncontrado:
        imprime("getXML_LCD:ruta[%s]:[NO FOUND TO]:[%s]:[ERROR]\n", ruta, atributo);
        return nullptr;
    case Busqueda::encontrado:
        break;
    }
    XmlTexto valor(xmlGetProp(nodo, xml(atributo)));
    if (valor == nullptr)
        return nullptr;

    // A backslash and the two hexadecimal digits after it stand for one byte. The
    // front panel counts bytes in 8 bits, so the buffer is sized by that count and
    // whatever lies beyond it is left out.
    const char *p = texto(valor.get());
    auto siguiente = [](const char *c) {
        if (*c != '\\')
            return c + 1;
        ++c;
        for (int i = 0; i < 2 && *c != '\0'; ++i)
            ++c;
        return c;
    };
    uint8_t cuenta = 0;
    for (const char *c = p; *c != '\0'; c = siguiente(c))
        ++cuenta;
    BloqueMalloc<uint8_t> salida(static_cast<uint8_t *>(std::malloc(size_t{cuenta} + 1)));
    if (salida == nullptr) {
        imprime("getXML_LCD:[value=malloc]:[ERROR]");
        return nullptr;
    }
    size_t escritos = 0;
    for (const char *c = p; *c != '\0' && escritos < cuenta; c = siguiente(c)) {
        if (*c == '\\')
            hex2bin(salida.get() + escritos, c + 1, 1);
        else
            salida.get()[escritos] = static_cast<uint8_t>(*c);
        ++escritos;
    }
    salida.get()[escritos] = 0x06;
    return salida.release();
}

int AddNodoPropiedadXML(xmlDocPtr documento, const char *atributo, const char *valor, int longitudHexa,
                        const char *patron, uint8_t direccion, const char *elemento)
{
    if (setXML(documento, atributo, valor, longitudHexa, patron, static_cast<unsigned>(direccion), elemento) == 0)
        return 0;
    if (documento == nullptr)
        return -1;

    // Not there yet: a new element carrying the attribute "Value" under the front-panel
    // module's configuration.
    std::memset(ruta, 0, sizeof(ruta));
    std::snprintf(ruta, sizeof(ruta), "/HBK_V7Q/MODULO[@Direccion='%02X']/CONFIGURACION",
                  static_cast<unsigned>(direccion));
    ObjetoXPath objeto;
    xmlNodePtr configuracion = buscaNodoINT(documento, true, objeto);
    if (configuracion == nullptr) {
        printf_hbk_v7q("AddXMLHijoAddPropiedad:[ERROR]\n");
        return -1;
    }
    // Without hex length the element has no name and nothing is appended.
    if (longitudHexa == 0)
        return 0;
    if (valor == nullptr || configuracion->type != XML_ELEMENT_NODE || !nombreValidoINT(elemento))
        return -1;
    BloqueMalloc<char> temp = (longitudHexa > 0) ? textoHexaINT(valor, longitudHexa) : nullptr;
    if (temp == nullptr) {
        if (longitudHexa < 0)
            imprime("setXML:ERROR:temp == NULL");
        return -1;
    }
    xmlNodePtr hijo = xmlNewChild(configuracion, nullptr, xml(elemento), nullptr);
    if (hijo == nullptr)
        return -1;
    xmlSetProp(hijo, xml("Value"), xml(temp.get()));
    return 0;
}

// ---------------------------------------------------------------------------
// Adding and removing nodes
// ---------------------------------------------------------------------------

int FUNCXML_BorraNodoXML(xmlDocPtr documento, const char *rutaXPath)
{
    if (documento == nullptr || rutaXPath == nullptr)
        return -1;
    ObjetoXPath objeto;
    xmlNodePtr nodo = nullptr;
    if (evaluaINT(documento, rutaXPath, objeto, nodo) != Busqueda::encontrado)
        return -1;
    switch (nodo->type) {
    case XML_ELEMENT_NODE:
        // The root element stays: a document without it could not be read again.
        if (nodo->parent == nullptr || nodo->parent->type == XML_DOCUMENT_NODE)
            return -1;
        break;
    case XML_ATTRIBUTE_NODE:
    case XML_TEXT_NODE:
    case XML_CDATA_SECTION_NODE:
    case XML_COMMENT_NODE:
    case XML_PI_NODE:
    case XML_ENTITY_REF_NODE:
        break;
    default:
        // The document itself and the namespace nodes the evaluation made up are not
        // part of the tree.
        return -1;
    }
    xmlUnlinkNode(nodo);
    xmlFreeNode(nodo);
    return 0;
}

int FUNCXML_AddNodoXML(xmlDocPtr documento, const char *padre, const char *nombre, const char *contenido)
{
    if (documento == nullptr || padre == nullptr || nombre == nullptr)
        return -1;
    if (!nombreValidoINT(nombre))
        return -1;
    if (contenido != nullptr && !valorAdmitidoINT(contenido))
        return -1;
    ObjetoXPath objeto;
    xmlNodePtr nodo = nullptr;
    if (evaluaINT(documento, padre, objeto, nodo) != Busqueda::encontrado)
        return -1;
    // Only an element takes children: a second root would leave the document unreadable.
    if (nodo->type != XML_ELEMENT_NODE)
        return -1;
    // The text is stored as it stands (xmlNewChild would parse entity references in it).
    return xmlNewTextChild(nodo, nullptr, xml(nombre), xml(contenido)) != nullptr ? 0 : -1;
}

// ---------------------------------------------------------------------------
// Loading and saving
// ---------------------------------------------------------------------------

xmlDocPtr LOAD_XML_RDONLY(const char *fichero, xmlDocPtr *documento)
{
    if (fichero == nullptr || documento == nullptr)
        return nullptr;
    Descriptor fd(::open(fichero, O_RDONLY | O_CLOEXEC));
    if (fd.fd < 0) {
        imprime("LOAD_XML_RDONLY:Error Open:%s:%s:[ERROR]\n", fichero, std::strerror(errno));
        return nullptr;
    }
    // No unit document comes near this size: a larger file is not one, and parsing it
    // would cost the master many times its size in memory.
    struct stat estado {};
    if (::fstat(fd.fd, &estado) == 0 && estado.st_size > FUNCXML_TamMaxDocumento) {
        imprime("LOAD_XML_RDONLY:Too large:%s:%lld bytes:[ERROR]\n", fichero, static_cast<long long>(estado.st_size));
        return nullptr;
    }
    if (*documento != nullptr) {
        imprime("LOAD_XML_RDONLY:Se libera memoria");
        xmlFreeDoc(*documento);
        *documento = nullptr;
    }
    // No entity substitution, no external DTD, no network: a document someone edited by
    // hand never reaches outside itself.
    errno = 0;
    *documento = xmlReadFd(fd.fd, nullptr, "UTF-8", XML_PARSE_NONET);
    const int error = errno;
    // The pause after each load keeps the apply daemon's reads of the same files apart.
    pausaCargaINT();
    fd.cierra();
    if (*documento == nullptr) {
        perror_hbk_v7q(error, "LOAD_XML_RDONLY:[ERROR]\n");
    } else if (declaraEntidadINT(*documento)) {
        imprime("LOAD_XML_RDONLY:Entity declared:%s:[ERROR]\n", fichero);
        xmlFreeDoc(*documento);
        *documento = nullptr;
    }
    return *documento;
}

int FUNCXML_GuardaDocumento(xmlDocPtr documento, const char *fichero)
{
    if (documento == nullptr || fichero == nullptr || fichero[0] == '\0')
        return -1;

    // The document as it stands, without reformatting: untouched elements, comments and
    // blank text keep their bytes.
    xmlChar *memoria = nullptr;
    int longitud = 0;
    xmlDocDumpFormatMemoryEnc(documento, &memoria, &longitud, "UTF-8", 0);
    XmlTexto serializado(memoria);
    if (serializado == nullptr || longitud <= 0) {
        errno = ENOMEM;
        avisoGuardado(fichero, "serializa");
        return -1;
    }
    const char *paso = nullptr;
    const int resultado = GESTFICH_GuardaAtomico(fichero, serializado.get(), static_cast<size_t>(longitud), &paso);
    if (paso != nullptr)
        avisoGuardado(fichero, paso);
    return resultado;
}

// ---------------------------------------------------------------------------
// Text checks
// ---------------------------------------------------------------------------

bool FUNCXML_TextoValido(const char *valor)
{
    if (valor == nullptr)
        return false;
    const auto *p = reinterpret_cast<const unsigned char *>(valor);
    while (*p != 0) {
        const unsigned char b = *p;
        uint32_t punto;
        int seguidos;
        if (b < 0x80) {
            // Control characters other than tab, line feed and carriage return.
            if (b < 0x20 && b != '\t' && b != '\n' && b != '\r')
                return false;
            ++p;
            continue;
        }
        if (b >= 0xC2 && b <= 0xDF) {
            punto = b & 0x1Fu;
            seguidos = 1;
        } else if (b >= 0xE0 && b <= 0xEF) {
            punto = b & 0x0Fu;
            seguidos = 2;
        } else if (b >= 0xF0 && b <= 0xF4) {
            punto = b & 0x07u;
            seguidos = 3;
        } else {
            // Stray continuation bytes, the overlong leads C0/C1 and F5-FF.
            return false;
        }
        for (int i = 1; i <= seguidos; ++i) {
            if ((p[i] & 0xC0) != 0x80)
                return false;
            punto = (punto << 6) | (p[i] & 0x3Fu);
        }
        // Overlong forms, surrogates, beyond U+10FFFF, and the two non-characters XML
        // excludes.
        if ((seguidos == 2 && punto < 0x800) || (seguidos == 3 && punto < 0x10000) || punto > 0x10FFFF ||
            (punto >= 0xD800 && punto <= 0xDFFF) || punto == 0xFFFE || punto == 0xFFFF)
            return false;
        p += seguidos + 1;
    }
    return true;
}

void FUNCXML_ajustaUTF8(char *cadena, int tam)
{
    if (cadena == nullptr || tam < 2)
        return;
    const size_t limite = static_cast<size_t>(tam);
    if (::strnlen(cadena, limite) < limite)
        return;
    cortaUTF8INT(cadena, limite);
}

// ---------------------------------------------------------------------------
// Debug dump
// ---------------------------------------------------------------------------

int FUNXML_PrintDOM(xmlDocPtr documento)
{
    if (documento == nullptr || xmlDocGetRootElement(documento) == nullptr)
        return -1;
    for (xmlNodePtr raiz = documento->children; raiz != nullptr; raiz = raiz->next) {
        imprime("RAIZ: %s\n", nombreINT(raiz));
        imprimeContenidoINT(raiz);
        for (xmlNodePtr hijo = raiz->children; hijo != nullptr; hijo = hijo->next) {
            imprime("Nivel %d: %s tipo %d\n", 1, nombreINT(hijo), static_cast<int>(hijo->type));
            imprimeContenidoINT(hijo);
            if (hijo->type != XML_ENTITY_REF_NODE)
                FUNXMLINT_PrintDOM(hijo, 2);
        }
    }
    return 0;
}

int FUNXMLINT_PrintDOM(xmlNodePtr nodo, int nivel)
{
    if (nodo == nullptr)
        return -1;
    for (xmlNodePtr hijo = nodo->children; hijo != nullptr; hijo = hijo->next) {
        imprime("Nivel %d: %s tipo %d\n", nivel, nombreINT(hijo), static_cast<int>(hijo->type));
        imprimeContenidoINT(hijo);
        // An entity reference's child is the declaration, shared with every other use.
        if (hijo->type != XML_ENTITY_REF_NODE)
            FUNXMLINT_PrintDOM(hijo, nivel + 1);
    }
    return 0;
}
