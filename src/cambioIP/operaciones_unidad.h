// operaciones_unidad.h: two operations on one unit of the rack, named by the request's
// "sufijo" (empty: the master): the service list of one of its IP inputs, where the
// operator picks the services that go to the output (commands 29 and 30), and its advanced
// configuration page, every section of the unit on one page and stored at once (commands
// 24 and 25). The unit's documents are "<config>/sondeo.<sufijo>.xml" and
// "<config>/network.<sufijo>.xml", the master's its own sondeo.xml and network.xml.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Prints the services of IP input "entip" of the unit: a selection box, name, service id
// and current/maximum bitrate each, the free output bitrate and the store and discard
// buttons, after the hidden values of the unit ("idunit_tot", "numcanales_tot",
// "tipounidad_tot", "haysalidaip_tot", "total", "lsnumserv", "entip"). A model without an
// IP port, or an input that is 0, above the unit's inputs or without services, shows
// "WRONG INPUT SELECTED OR THIS UNIT HAS NO IP INPUT". Returns what its last print returns.
int CIP_MuestraListaServicios(char *formulario);

// Stores the selection ("slselect"), output names ("cnamOUT") and output service ids
// ("svcidOUT") of IP input "entip", each a list "service_value_service_value..." of which
// only the services 1 to "lsnumserv" count, and marks the document as changed by the web.
// The error page: 1 no configuration directory, 2 unknown model, 6 the document cannot be
// opened or a write failed (the others stay), 7 a key missing or the input 0.
int CIP_GrabaListServicios(char *formulario);

// The advanced page of the unit: its identification and, in advanced mode (suffix "_tot"),
// the quick status, input, transport, output, IP, network and test sections of its output
// family. Returns what its last print returns.
int CIP_MuestraTodalaCongif(char *formulario);

// Stores the advanced page: the network settings directly, then the input, transport,
// output, test and (models with an IP port) IP sections with the family's save functions;
// marks and saves the document and, when "cfgtotenviar" is "1", queues the unit for the
// daemon (the master: the command byte). A failing section shows its error and the others
// are still stored.
int CIP_GrabaInfoTotal(char *formulario);

// ---------------------------------------------------------------------------
// Helpers shared by the two operations
// ---------------------------------------------------------------------------

// Reads the value of the key from the form text into valor (cut to capacidad - 1 bytes)
// and tells whether the request holds the key at all (an empty value is present).
bool CIPINT_TomaCampo(const char *formulario, const char *clave, std::string &valor, std::size_t capacidad);

// Path of the unit's configuration (tipo 0) or status (tipo 1) document: the master's own
// for an empty sufijo.
std::string CIPINT_RutaUnidad(const std::string &sufijo, int tipo);

// Output family of the unknown model: no section or save of any page supports it.
inline constexpr int CIPINT_FamiliaDesconocida = 5;

// The model of one unit as the unit-model table resolves its type text.
struct CIPINT_ModeloUnidad {
    char texto[51] = {};  // "<code> <description>" once resolved; read 50 bytes, always terminated
    uint8_t canales = 0;
    int opciones = 0;
    int entradasVideo = 0;
    int capacidades = 0;
    int familia = CIPINT_FamiliaDesconocida;  // until resolved
    int parametro = 0;

    void Resuelve();
    // Bit 0 of the options: the model has an IP port.
    bool TieneIP() const { return (opciones & 0x01) != 0; }
};

// The hidden values that the page scripts read for the unit: "idunit_tot" (the suffix as
// requested), "numcanales_tot", "tipounidad_tot" and "haysalidaip_tot".
std::string CIPINT_OcultosUnidad(const std::string &sufijo, const CIPINT_ModeloUnidad &modelo);
