// Private helpers of the request entry, shared by the engines of this module.
#pragma once

#include <cstddef>

// Finds the first occurrence of the text clave anywhere in the form text (also inside
// another field's name or value), reads the value of the pair that starts there, up
// to the next '&', into destino and returns whether the text occurs at all.
bool CIPINT_BuscaCampo(const char *formulario, const char *clave, char *destino, size_t capacidad);

// The command number of a request's form text: the value of the first "command"
// found anywhere in it, base 10 (empty or not a number: 0); 255 without one.
long CIPINT_LeeComando(const char *formulario);

#include "utilsXML/utilsXML.h"

#include <libxml/tree.h>
#include <string>
#include <string_view>

// The configuration directory stream, closed on every path.
class CIPINT_Directorio {
  public:
    CIPINT_Directorio();
    ~CIPINT_Directorio();
    CIPINT_Directorio(const CIPINT_Directorio &) = delete;
    CIPINT_Directorio &operator=(const CIPINT_Directorio &) = delete;
    UTILSXML_Directorio *get() const { return directorio_; }
    explicit operator bool() const { return directorio_ != nullptr; }

  private:
    UTILSXML_Directorio *directorio_;
};

// One unit document opened from the configuration directory. It is closed without
// saving when it goes out of scope, unless Cierra() closed it first. A document opened for
// writing holds the unit's lock from before it is loaded until the owner goes away, so
// that saves of one unit take turns and none loses another's change.
class CIPINT_DocumentoUnidad {
  public:
    // Next unit document of the kind (0 configuration, 1 status) in name order. When the
    // directory has no more, ruta() is empty; when the next one cannot be read or parsed,
    // ruta() names it and the document is null.
    static CIPINT_DocumentoUnidad Siguiente(UTILSXML_Directorio *directorio, int tipo);
    // The unit document at this path (looked for among the directory's entries); with
    // paraGrabar, under the unit's lock, after removing what saves cut short left behind.
    static CIPINT_DocumentoUnidad Abre(UTILSXML_Directorio *directorio, const std::string &ruta, int tipo,
                                       bool paraGrabar = false);
    ~CIPINT_DocumentoUnidad();
    CIPINT_DocumentoUnidad(CIPINT_DocumentoUnidad &&otro) noexcept;
    CIPINT_DocumentoUnidad(const CIPINT_DocumentoUnidad &) = delete;
    CIPINT_DocumentoUnidad &operator=(const CIPINT_DocumentoUnidad &) = delete;

    xmlDocPtr get() const { return documento_; }
    const std::string &ruta() const { return ruta_; }
    explicit operator bool() const { return documento_ != nullptr; }
    // Closes the document, saving it first when grabar is set: 0, or -1 when the save
    // failed (the file is then left as it was). The unit's lock stays held.
    int Cierra(bool grabar);

  private:
    CIPINT_DocumentoUnidad(xmlDocPtr documento, std::string ruta, int bloqueo = -1)
        : documento_(documento), ruta_(std::move(ruta)), bloqueo_(bloqueo)
    {
    }
    xmlDocPtr documento_;
    std::string ruta_;
    int bloqueo_;
};

// Path of one of the master's own documents under the configuration directory, as the
// directory walk returns it ("<config>/network.xml", "<config>/sondeo.xml").
std::string CIPINT_RutaMaster(int tipo);

// Checks of request values that reach a file the control daemon reads or a script's
// argument list. A value that fails is refused, never repaired: nothing is written or run.
// A dotted IPv4 address: four decimal octets of one to three digits, each 0 to 255.
bool CIPINT_EsDireccionIPv4(std::string_view valor);
// Decimal digits only, and (when given) a number between minimo and maximo.
bool CIPINT_EsNumero(std::string_view valor, long minimo = 0, long maximo = -1);
// No control byte (below 0x20, or 0x7F): a value for a one-line field.
bool CIPINT_SinControl(std::string_view valor);
// The first field of a form text whose decoded value holds a control byte; empty when
// none does.
std::string CIPINT_CampoConControl(const char *formulario);
// Tells the operator which value was refused.
void CIPINT_AvisaRechazo(std::string_view campo);
// The network settings the daemon gives a unit: the name of the first of address, mask
// and gateway that is not a dotted IPv4 address; empty when all three are.
std::string CIPINT_DireccionesRechazadas(std::string_view direccion, std::string_view mascara,
                                         std::string_view gateway);
