// What the load run's clients send and what they expect back: the operator browser's pages
// and saves, the rack's units as the pages show them, and what a whole answer looks like.
#pragma once

#include "support/cgi_runner.h"

#include <optional>
#include <string>
#include <vector>

namespace cambioip_test::load {

// The value painted into the form control named `name`, or nullopt when the page has none.
std::optional<std::string> controlValue(const std::string &page, const std::string &name);

// A unit as the pages show it, with what a save of it carries besides the changed values.
struct RackUnit {
    std::string suffix;   // field-name suffix: "_010_000_000_021", empty for the master
    std::string address;  // its address as the network page paints it
    int channels = 0;     // numcanales
    bool ipPort = false;  // haysalidaip
    int ipLines = 0;      // nentip
    std::string sufijo() const;  // ".010.000.000.021", empty for the master
    std::string label() const;   // "10.0.0.21" or "master"
    std::string document() const;  // its document in config/: "network.010.000.000.021.xml"
};

// Every unit row of the transport page, completed from the network and IP pages. Empty when a
// row lacks a value the saves need.
std::vector<RackUnit> unitsOfPages(const std::string &network, const std::string &transport,
                                   const std::string &ip);

// The saves of the operator's pages, in the order of their table in rack_traffic.cpp.
enum class SaveKind { Network, Inputs, Transport, Output, Test, Ip };
inline constexpr SaveKind kSaveKinds[] = {SaveKind::Network, SaveKind::Inputs, SaveKind::Transport,
                                          SaveKind::Output,  SaveKind::Test,   SaveKind::Ip};
int saveCommand(SaveKind kind);

// One save's form text as the browser posts it (command and sufijo first, the suffix stripped
// from the field names) and the value of the save's marker field, which is different for every
// serial, so that the document tells which save wrote it last.
struct SaveForm {
    std::string body;
    std::string marker;  // empty: this kind writes no marker
};
SaveForm saveForm(const RackUnit &unit, SaveKind kind, unsigned serial);
// Where the marker of a save lands in the unit's document (XPath), or nullptr.
const char *markerPath(SaveKind kind);

// Rows of a page (its "<tr" tags): the same for a page of the same rack, whatever the values.
inline size_t rowCount(const std::string &page) { return occurrences(page, "<tr"); }
// What is wrong with a page's body, empty when it is whole: wrapped in the page frame, no error
// fragment, no unreadable document, and as many rows as the page had on the quiet rack.
std::string pageFault(const std::string &body, size_t rows);

}  // namespace cambioip_test::load
