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
// saving when it goes out of scope, unless Cierra() closed it first.
class CIPINT_DocumentoUnidad {
  public:
    // Next unit document of the kind (0 configuration, 1 status) in name order.
    static CIPINT_DocumentoUnidad Siguiente(UTILSXML_Directorio *directorio, int tipo);
    // The unit document at this path (looked for among the directory's entries).
    static CIPINT_DocumentoUnidad Abre(UTILSXML_Directorio *directorio, const std::string &ruta, int tipo);
    ~CIPINT_DocumentoUnidad();
    CIPINT_DocumentoUnidad(CIPINT_DocumentoUnidad &&otro) noexcept;
    CIPINT_DocumentoUnidad(const CIPINT_DocumentoUnidad &) = delete;
    CIPINT_DocumentoUnidad &operator=(const CIPINT_DocumentoUnidad &) = delete;

    xmlDocPtr get() const { return documento_; }
    const std::string &ruta() const { return ruta_; }
    explicit operator bool() const { return documento_ != nullptr; }
    // Closes the document, saving it first when grabar is set: 0, or -1 when the save
    // failed (the file is then left as it was).
    int Cierra(bool grabar);

  private:
    CIPINT_DocumentoUnidad(xmlDocPtr documento, std::string ruta) : documento_(documento), ruta_(std::move(ruta)) {}
    xmlDocPtr documento_;
    std::string ruta_;
};

// Path of one of the master's own documents under the configuration directory, as the
// directory walk returns it ("<config>/network.xml", "<config>/sondeo.xml").
std::string CIPINT_RutaMaster(int tipo);
