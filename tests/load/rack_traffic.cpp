#include "load/rack_traffic.h"

#include <algorithm>
#include <cstdlib>
#include <regex>

namespace cambioip_test::load {

namespace {

// "1_v_2_v_..._n_v": a per-line list of the save frame with the same value on every line but
// the first, which holds `first`.
std::string lines(int count, const std::string &value, const std::string &first)
{
    std::string list;
    for (int line = 1; line <= count; ++line)
        list += (line > 1 ? "_" : "") + std::to_string(line) + "_" + (line == 1 ? first : value);
    return list;
}

std::string lines(int count, const std::string &value) { return lines(count, value, value); }

// Each save's command, and where its marker lands in the unit's document (XPath), or nullptr.
struct SaveRow {
    int command;
    const char *marker;
};
constexpr SaveRow kSaveRows[] = {
    {4, "/ENCODERCONFIG/NETWORK/ORDEN"},           // SaveKind::Network
    {11, nullptr},                                  // SaveKind::Inputs
    {20, "/ENCODERCONFIG/SALIDATS/CANAL1/NOMBRE"},  // SaveKind::Transport
    {21, "/ENCODERCONFIG/SALIDAQAM/NIVEL"},         // SaveKind::Output
    {22, nullptr},                                  // SaveKind::Test
    {28, "/ENCODERCONFIG/SALIDAIP/SALIDA1/PUERTO"}, // SaveKind::Ip
};

}  // namespace

std::optional<std::string> controlValue(const std::string &page, const std::string &name)
{
    const size_t at = page.find("name=\"" + name + "\"");
    if (at == std::string::npos)
        return std::nullopt;
    const size_t open = page.rfind('<', at), close = page.find('>', at);
    if (open == std::string::npos || close == std::string::npos)
        return std::nullopt;
    const std::string tag = page.substr(open, close - open);
    const size_t value = tag.find(" value=\"");
    if (value == std::string::npos)
        return std::nullopt;
    const size_t start = value + 8;
    return tag.substr(start, tag.find('"', start) - start);
}

std::string RackUnit::sufijo() const
{
    std::string text = suffix;
    std::replace(text.begin(), text.end(), '_', '.');
    return text;
}

std::string RackUnit::label() const { return suffix.empty() ? "master" : address; }

std::string RackUnit::document() const { return suffix.empty() ? "network.xml" : "network" + sufijo() + ".xml"; }

std::vector<RackUnit> unitsOfPages(const std::string &network, const std::string &transport, const std::string &ip)
{
    static const std::regex row("name=\"numcanales((_[0-9]{3}){4})?\"");
    std::vector<RackUnit> units;
    for (std::sregex_iterator it(transport.begin(), transport.end(), row), end; it != end; ++it) {
        RackUnit unit;
        unit.suffix = (*it)[1].str();
        const auto channels = controlValue(transport, "numcanales" + unit.suffix);
        const auto ipPort = controlValue(transport, "haysalidaip" + unit.suffix);
        const auto ipLines = controlValue(ip, "nentip" + unit.suffix);
        const auto address = controlValue(network, "networkipdir" + unit.suffix);
        if (!channels || !ipPort || !ipLines || !address)
            return {};
        unit.channels = std::atoi(channels->c_str());
        unit.ipPort = *ipPort == "1";
        unit.ipLines = std::atoi(ipLines->c_str());
        unit.address = *address;
        units.push_back(unit);
    }
    return units;
}

int saveCommand(SaveKind kind) { return kSaveRows[static_cast<size_t>(kind)].command; }

const char *markerPath(SaveKind kind) { return kSaveRows[static_cast<size_t>(kind)].marker; }

SaveForm saveForm(const RackUnit &unit, SaveKind kind, unsigned serial)
{
    const int n = unit.channels;
    SaveForm form;
    std::string &b = form.body;
    b = "command=" + std::to_string(saveCommand(kind)) + "&sufijo=" + unit.sufijo();
    switch (kind) {
    case SaveKind::Network:
        // The unit keeps its address; the order in the rack is the marker (1-9999).
        form.marker = std::to_string(1 + serial % 9999);
        b += "&networkipdir=" + unit.address + "&networkmask=255.255.255.0&gateway=10.0.0.1&dhcp=0&orden=" +
             form.marker;
        break;
    case SaveKind::Inputs:
        b += "&numcanales=" + std::to_string(n) + "&eon=" + lines(n, "1") + "&vidinp=" + lines(n, "0") +
             "&vidcod=" + lines(n, "1") + "&audcod=" + lines(n, "0") + "&audinp=" + lines(n, "1") +
             "&audlev=" + lines(n, std::to_string(serial % 16)) + "&ccon=" + lines(n, "0") +
             "&vidbit=" + lines(n, "7.5") + "&audbit=" + lines(n, "4") + "&asprat=" + lines(n, "0") +
             "&gop=" + lines(n, "3") + "&maxoutres=" + lines(n, "4") + "&ffencod=" + lines(n, "0");
        break;
    case SaveKind::Transport:
        // The first service's name is the marker.
        form.marker = "L" + std::to_string(serial);
        b += "&numcanales=" + std::to_string(n) + "&tsid=2000&cnam=" + lines(n, "CH", form.marker) +
             "&svpid=" + lines(n, "481") + "&sapid=" + lines(n, "482") + "&mchn=" + lines(n, "12") +
             "&chnm=" + lines(n, "1") + "&autochan=" + lines(n, "0") + "&svcid=" + lines(n, "601") +
             "&haysalidaip=" + (unit.ipPort ? "1" : "0") + "&ntotserv=" + std::to_string(n);
        break;
    case SaveKind::Output:
        form.marker = std::to_string(serial % 100);
        b += "&numcanales=" + std::to_string(n) +
             "&outtab=4&outchn=573.25&outbau=6.9&outout=4&outint=8&outmod=6&outlev=" + form.marker + "&outrfl=1";
        break;
    case SaveKind::Test:
        b += "&numcanales=" + std::to_string(n) + "&teas=" + std::to_string(serial % 2) +
             "&treset=0&tfab=0&tled=" + std::to_string(serial / 2 % 2);
        break;
    case SaveKind::Ip: {
        // The first stream's port is the marker.
        const int k = unit.ipLines;
        form.marker = std::to_string(1024 + serial % 60000);
        b += "&numcanales=" + std::to_string(n) + "&nentip=" + std::to_string(k) +
             "&iptxrx=1&iptype=1&haysalidaip=" + (unit.ipPort ? "1" : "0") + "&ipen=" + lines(k, "1") +
             "&outputIP=" + lines(k, "239.1.2.3") + "&outputport=" + lines(k, "6200", form.marker) +
             "&ippackets=" + lines(k, "7") + "&scanstd=" + lines(k, "0") + "&ipproto=" + lines(k, "0") +
             "&ipfecen=" + lines(k, "0") + "&ipfecannex=" + lines(k, "0");
        break;
    }
    }
    return form;
}

std::string pageFault(const std::string &body, size_t rows)
{
    static const std::string head = "<html><head></head><body>\n", tail = "</body></html>\n";
    if (body.compare(0, head.size(), head) != 0)
        return "the page does not start with its frame";
    if (body.size() < head.size() + tail.size() || body.compare(body.size() - tail.size(), tail.size(), tail) != 0)
        return "the page is cut short";
    for (const char *fault : {"ERROR!", "cannot be read", "LOAD_XML"})
        if (body.find(fault) != std::string::npos)
            return std::string("the page holds \"") + fault + "\"";
    if (rowCount(body) != rows)
        return std::to_string(rowCount(body)) + " rows instead of " + std::to_string(rows);
    return "";
}

}  // namespace cambioip_test::load
