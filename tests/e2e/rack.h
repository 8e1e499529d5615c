// Racks for the page tests: the sample rack of demo/root/config copied into a temporary
// root, small unit documents written beside it, and helpers to cut a page into rows.
#pragma once

#include "support/cgi_runner.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace cambioip_test {

inline const std::string kOpen = "<html><head></head><body>\n";
inline const std::string kClose = "</body></html>\n";
inline const std::string kNotSupported =
    "<br><h2><center><strong> ERROR! Device not supported.<br> please contact technical support.</strong></center></h2>\n";
inline const std::string kIpWrong =
    "<br><h2><center><strong> ERROR! IP wrong.<br> please contact technical support.</strong></center></h2>\n";
inline const std::string kInvalidData =
    "<br><h2><center><strong> ERROR! Invalid Data!.<br> please retry operation in a few seconds.</strong></center></h2>\n";

// One unit as its two documents describe it.
struct UnitDoc {
    std::string id = "ENC-TEST-01";
    std::string tipo = "710105";
    std::string ip = "10.0.0.61";
    std::string mascara = "255.255.255.0";
    std::string gateway = "10.0.0.1";
    std::string mac = "02:1A:71:00:00:3D";
    std::string orden = "9";
    std::string serial = "2210105-0999";
    std::string dhcp = "0";
    std::string eas = "0";
    std::string reset = "0";
    std::string factory = "0";
    std::string led = "0";
    std::string cambiosWeb = "0";
    bool versions = true;  // the status document carries VERSIONSW
};

inline std::string xmlEscape(const std::string &text)
{
    std::string out;
    for (char ch : text) {
        switch (ch) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        case '"': out += "&quot;"; break;
        default: out += ch; break;
        }
    }
    return out;
}

inline std::string configXml(const UnitDoc &u)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ENCODERCONFIG>\n"
           "  <IDUNIT>" + xmlEscape(u.id) + "</IDUNIT>\n"
           "  <TIPOUNIDAD>" + xmlEscape(u.tipo) + "</TIPOUNIDAD>\n"
           "  <CAMBIOSWEB>" + u.cambiosWeb + "</CAMBIOSWEB>\n"
           "  <CONFIGVERS>6</CONFIGVERS>\n"
           "  <NETWORK>\n"
           "    <IP_ADDRESS>" + xmlEscape(u.ip) + "</IP_ADDRESS>\n"
           "    <IP_MASK>" + xmlEscape(u.mascara) + "</IP_MASK>\n"
           "    <IP_GW>" + xmlEscape(u.gateway) + "</IP_GW>\n"
           "    <IP_AUTO>" + u.dhcp + "</IP_AUTO>\n"
           "    <MAC>" + xmlEscape(u.mac) + "</MAC>\n"
           "    <ORDEN>" + xmlEscape(u.orden) + "</ORDEN>\n"
           "  </NETWORK>\n"
           "  <TEST>\n"
           "    <EAS>" + u.eas + "</EAS>\n"
           "    <RESET>" + u.reset + "</RESET>\n"
           "    <FACTORY>" + u.factory + "</FACTORY>\n"
           "    <LED>" + u.led + "</LED>\n"
           "  </TEST>\n"
           "</ENCODERCONFIG>\n";
}

inline std::string statusXml(const UnitDoc &u)
{
    std::string versions = u.versions ? "    <VERSIONSW>\n"
                                        "      <FPGA><HW>1.1</HW><SW>2.2</SW></FPGA>\n"
                                        "      <BOOT>3.3</BOOT>\n"
                                        "      <LINUX>4.4</LINUX>\n"
                                        "      <WEB>5.5</WEB>\n"
                                        "      <SERIAL>" + xmlEscape(u.serial) + "</SERIAL>\n"
                                        "    </VERSIONSW>\n"
                                      : "";
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ENCODERSTATUS>\n"
           "  <IDUNIT>" + xmlEscape(u.id) + "</IDUNIT>\n"
           "  <TIPOUNIDAD>" + xmlEscape(u.tipo) + "</TIPOUNIDAD>\n"
           "  <IP>" + xmlEscape(u.ip) + "</IP>\n"
           "  <MAC>" + xmlEscape(u.mac) + "</MAC>\n"
           "  <ORDEN>" + xmlEscape(u.orden) + "</ORDEN>\n"
           "  <CONFIGVERS>6</CONFIGVERS>\n"
           "  <COMUN>\n" + versions + "  </COMUN>\n"
           "</ENCODERSTATUS>\n";
}

// Writes config/network.<name>.xml and config/sondeo.<name>.xml; an empty name writes
// the master's own network.xml and sondeo.xml.
inline void writeUnit(const TempRoot &root, const std::string &name, const UnitDoc &u)
{
    const std::string part = name.empty() ? "" : "." + name;
    root.write("config/network" + part + ".xml", configXml(u));
    root.write("config/sondeo" + part + ".xml", statusXml(u));
}

inline void copyDemo(const TempRoot &root) { root.copyConfig(std::string(CAMBIOIP_SOURCE_DIR) + "/demo/root/config"); }

// Replaces the one occurrence of `from` in a file of the root.
inline void editFile(const TempRoot &root, const std::string &relative, const std::string &from,
                     const std::string &to)
{
    std::string text = root.read(relative);
    const auto at = text.find(from);
    ASSERT_NE(at, std::string::npos) << from << " not in " << relative;
    text.replace(at, from.size(), to);
    root.write(relative, text);
}

// Gives the master of the demo rack another type (both its documents).
inline void setMasterType(const TempRoot &root, const std::string &tipo)
{
    for (const char *file : {"config/network.xml", "config/sondeo.xml"})
        editFile(root, file, "<TIPOUNIDAD>710109</TIPOUNIDAD>", "<TIPOUNIDAD>" + tipo + "</TIPOUNIDAD>");
}

inline std::size_t countOf(const std::string &text, const std::string &needle)
{
    std::size_t n = 0;
    for (auto at = text.find(needle); at != std::string::npos; at = text.find(needle, at + needle.size()))
        ++n;
    return n;
}

// The rows of a page table: every "<tr>...</tr>" piece, header row first.
inline std::vector<std::string> tableRows(const std::string &body)
{
    std::vector<std::string> rows;
    for (auto at = body.find("<tr>"); at != std::string::npos; at = body.find("<tr>", at + 4)) {
        const auto end = body.find("</tr>", at);
        rows.push_back(body.substr(at, end == std::string::npos ? std::string::npos : end + 5 - at));
    }
    return rows;
}

// The one row that contains the text; empty when none or several do.
inline std::string rowWith(const std::string &body, const std::string &needle)
{
    std::string found;
    for (const std::string &row : tableRows(body)) {
        if (row.find(needle) == std::string::npos)
            continue;
        if (!found.empty())
            return {};
        found = row;
    }
    return found;
}

inline std::string allUnitsCaption(int count)
{
    return "<b>Set Configuration for all Units (" + std::to_string(count) + "):</b>";
}

inline void expectCleanRun(const CgiResult &r)
{
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out.compare(0, kHeader.size(), kHeader), 0) << "header must come first";
    EXPECT_EQ(r.err.find("AddressSanitizer"), std::string::npos) << r.err;
    EXPECT_EQ(r.err.find("runtime error"), std::string::npos) << r.err;
    EXPECT_EQ(r.err.find("LeakSanitizer"), std::string::npos) << r.err;
}

}  // namespace cambioip_test
