// Hostile documents in the configuration folder: entity expansion, external entities and
// DTDs pointing at a secret outside the root, deep nesting, a document far too large, a
// truncated one, invalid UTF-8, something that is not XML, an empty file. One unit's
// configuration and status documents are replaced; every page of the rack must still answer
// whole, in bounded time and memory, show that unit as unreadable (or, when the document is
// readable, exactly as before) and every other unit as before, and never show the secret.
#include "fault/fault_support.h"
#include "support/xml_read.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>
#include <regex>
#include <sstream>

using namespace cambioip_fault;

namespace {

// A file outside the root holding a marker that no answer may ever show.
class Secret {
  public:
    Secret() { folder_.write("secret.txt", marker_ + "\n"); }
    fs::path path() const { return folder_.path() / "secret.txt"; }
    std::string url() const { return "file://" + path().string(); }
    const std::string &marker() const { return marker_; }

  private:
    TempRoot folder_;
    std::string marker_ = "SECRET-" + std::to_string(std::mt19937_64(std::random_device{}())());
};

// The document's text with an internal DTD subset after its XML declaration.
std::string withDoctype(const std::string &original, const std::string &doctype)
{
    const size_t prolog = original.find("?>\n");
    return prolog == std::string::npos ? doctype + original
                                       : original.substr(0, prolog + 3) + doctype + original.substr(prolog + 3);
}

// The document with `text` put at the start of every value that the pages show: the unit's
// id, address and version, the service names and the serial number.
std::string withText(std::string document, const std::string &text)
{
    for (const char *tag : {"<IDUNIT>", "<IDVERS>", "<IP>", "<IP_ADDRESS>", "<NOMBRE>", "<SERIAL>"}) {
        const std::string open = tag;
        for (size_t at = document.find(open); at != std::string::npos;
             at = document.find(open, at + open.size() + text.size()))
            document.insert(at + open.size(), text);
    }
    return document;
}

std::string rootName(const std::string &document)
{
    return document.find("<ENCODERSTATUS") != std::string::npos ? "ENCODERSTATUS" : "ENCODERCONFIG";
}

using Builder = std::function<std::string(const std::string &original, const Secret &secret)>;

struct Hostile {
    const char *name;
    bool readable;  // the program reads it as a unit document (the secret stays out of it)
    Builder build;
};

const Hostile kHostiles[] = {
    {"billion_laughs", false,
     [](const std::string &original, const Secret &) {
         std::string subset = "<!DOCTYPE " + rootName(original) + " [\n<!ENTITY lol0 \"lol\">\n";
         for (int i = 1; i <= 9; ++i) {
             std::string previous = "&lol" + std::to_string(i - 1) + ";", ten;
             for (int j = 0; j < 10; ++j)
                 ten += previous;
             subset += "<!ENTITY lol" + std::to_string(i) + " \"" + ten + "\">\n";
         }
         return withText(withDoctype(original, subset + "]>\n"), "&lol9;");
     }},
    // Many references to one large entity: a few hundred kilobytes that read as gigabytes.
    {"quadratic_blowup", false,
     [](const std::string &original, const Secret &) {
         const std::string subset =
             "<!DOCTYPE " + rootName(original) + " [\n<!ENTITY a \"" + std::string(50000, 'A') + "\">\n]>\n";
         std::string references;
         for (int i = 0; i < 4000; ++i)
             references += "&a;";
         return withText(withDoctype(original, subset), references);
     }},
    {"external_entities", true,
     [](const std::string &original, const Secret &secret) {
         const std::string subset = "<!DOCTYPE " + rootName(original) + " [\n<!ENTITY leak SYSTEM \"" + secret.url() +
                                    "\">\n<!ENTITY % parameter SYSTEM \"" + secret.url() + "\">\n%parameter;\n]>\n";
         std::string document = withText(withDoctype(original, subset), "&leak;");
         const std::string close = "</" + rootName(original) + ">";
         document.insert(document.rfind(close), "<xi:include xmlns:xi=\"http://www.w3.org/2001/XInclude\" href=\"" +
                                                    secret.url() + "\" parse=\"text\"/>\n");
         return document;
     }},
    {"external_dtd", true,
     [](const std::string &original, const Secret &secret) {
         return withDoctype(original, "<!DOCTYPE " + rootName(original) + " SYSTEM \"" + secret.url() + "\">\n");
     }},
    {"deep_nesting", false,
     [](const std::string &, const Secret &) {
         constexpr int kLevels = 100000;
         std::string document = "<?xml version=\"1.0\"?>\n";
         for (int i = 0; i < kLevels; ++i)
             document += "<a>";
         for (int i = 0; i < kLevels; ++i)
             document += "</a>";
         return document + "\n";
     }},
    {"tens_of_megabytes", false,
     [](const std::string &original, const Secret &) {
         std::string document = original;
         document.insert(document.find("<IDUNIT>"), "<!-- " + std::string(24 << 20, 'x') + " -->\n");
         return document;
     }},
    {"truncated", false,
     [](const std::string &original, const Secret &) { return original.substr(0, original.size() / 2); }},
    {"invalid_utf8", false,
     [](const std::string &original, const Secret &) { return withText(original, "\xC3\x28\xFF\xFE\xED\xA0\x80"); }},
    {"not_xml", false,
     [](const std::string &, const Secret &) {
         static constexpr char kJunk[] = "\x7f" "ELF\x02\x01\x01\0\0\0 this is no unit document {\"IDUNIT\": 1}\n";
         return std::string(kJunk, sizeof kJunk - 1);
     }},
    {"empty", false, [](const std::string &, const Secret &) { return std::string(); }},
};

// A rack and the unit whose documents are replaced: a unit of the master's own model, so
// that every page shows it.
struct RackUnit {
    const char *rack;
    const char *unit;
};
const RackUnit kRacks[] = {{"cofdm", "010.000.000.104"}, {"qam", "010.000.000.105"},
                           {"isdbt", "010.000.000.044"}, {"cofdmqamb", "010.000.000.053"}};

const int kPages[] = {1, 2, 3, 10, 12, 13, 14, 15, 16, 17};

constexpr auto kRunLimit = std::chrono::seconds(120);

// "10.0.0.104" from "010.000.000.104".
std::string dotted(const std::string &unit)
{
    std::string address;
    for (size_t start = 0; start <= unit.size();) {
        size_t dot = unit.find('.', start);
        if (dot == std::string::npos)
            dot = unit.size();
        address += (address.empty() ? "" : ".") + std::to_string(std::stoi(unit.substr(start, dot - start)));
        start = dot + 1;
    }
    return address;
}

// A page as it reads once the loader's diagnostics (process id, time, paths) are dropped,
// the row of one unit taken out, and row numbers and the unit count blanked, which shift
// when a unit is left out.
std::string comparable(const std::string &page, const std::string &leftOutRow)
{
    std::string kept;
    std::istringstream in(page);
    for (std::string line; std::getline(in, line);) {
        if (line.starts_with(" (errno="))
            continue;
        // "[<pid>:<time>]LOAD_XML_RDONLY:..." ends a line of the page that goes on after it.
        if (size_t at = line.find("LOAD_XML_RDONLY"); at != std::string::npos) {
            if (at > 0 && line[at - 1] == ']' && line.rfind('[', at) != std::string::npos)
                at = line.rfind('[', at);
            kept += line.substr(0, at);
            continue;
        }
        kept += line + "\n";
    }
    if (!leftOutRow.empty())
        kept = std::regex_replace(kept, std::regex("<tr><td>\\d+</td><td colspan=\"20\"><strong>" +
                                                   std::regex_replace(leftOutRow, std::regex("\\."), "\\.") +
                                                   "</strong></td></tr>"),
                                  "");
    kept = std::regex_replace(kept, std::regex("<td>\\d+</td>"), "<td>#</td>");
    kept = std::regex_replace(kept, std::regex("<td><b>\\d+</b></td>"), "<td><b>#</b></td>");
    return std::regex_replace(kept, std::regex("Units \\(\\d+\\)"), "Units (#)");
}

struct Figures {
    long long runs = 0, pages = 0, unreadableShown = 0, leaks = 0, hangs = 0, crashes = 0, documents = 0, changed = 0;
};

// One run bounded in time, memory and CPU whose answer must be whole: the header, the page
// wrapper, status 0, no sign of the secret.
CgiResult checkedRun(const TempRoot &root, CgiRequest request, const Secret &secret, Figures &figures)
{
    request.memoryLimit = 512L << 20;
    request.cpuSeconds = 30;
    CgiResult result = runCgi(root, request, kRunLimit);
    ++figures.runs;
    figures.hangs += result.timedOut ? 1 : 0;
    figures.crashes += result.status != 0 ? 1 : 0;
    EXPECT_FALSE(result.timedOut) << "no answer in time";
    EXPECT_EQ(result.status, 0) << result.err.substr(0, 4000);
    EXPECT_TRUE(result.out.starts_with(cambioip_test::kHeader + "<html><head></head><body>\n"))
        << result.out.substr(0, 400);
    EXPECT_TRUE(result.out.ends_with("</body></html>\n"))
        << result.out.substr(result.out.size() - std::min<size_t>(400, result.out.size()));
    const bool leaked = result.out.find(secret.marker()) != std::string::npos ||
                        result.err.find(secret.marker()) != std::string::npos;
    figures.leaks += leaked ? 1 : 0;
    EXPECT_FALSE(leaked) << "the secret outside the root was read";
    return result;
}

void PrintTo(const Hostile &hostile, std::ostream *out) { *out << hostile.name; }

class HostileDocuments : public ::testing::TestWithParam<Hostile> {};

TEST_P(HostileDocuments, EveryPageAnswersWholeAndTheOtherUnitsAsBefore)
{
    const Hostile &hostile = GetParam();
    const Secret secret;
    ASSERT_EQ(cambioip_test::readFile(secret.path()), secret.marker() + "\n");
    Figures figures;
    const int racks = scaled(1, static_cast<int>(std::size(kRacks)));

    for (int r = 0; r < racks; ++r) {
        const RackUnit &target = kRacks[r];
        SCOPED_TRACE(std::string(target.rack) + " rack, unit " + target.unit);
        const std::string network = std::string("config/network.") + target.unit + ".xml";
        const std::string status = std::string("config/sondeo.") + target.unit + ".xml";
        const std::string unreadableRow = "Unit " + dotted(target.unit) + ": its document cannot be read";
        const std::string advanced = std::string("command=24&sufijo=") + target.unit;
        const std::string services = std::string("command=29&sufijo=") + target.unit + "&entip=1&total=0";

        // What each page shows with the unit as it was, and with the unit gone from the rack.
        TempRoot reference;
        reference.copyRack(target.rack);
        ASSERT_TRUE(reference.exists(network) && reference.exists(status)) << "fixture documents missing";
        const std::string originalNetwork = reference.read(network), originalStatus = reference.read(status);
        std::map<std::string, std::string> expected;
        for (int page : kPages) {
            const std::string query = "command=" + std::to_string(page);
            if (hostile.readable) {
                expected[query] = checkedRun(reference, getRequest(query), secret, figures).out;
            } else {
                TempRoot without;
                without.copyRack(target.rack);
                fs::remove(without.path() / network);
                fs::remove(without.path() / status);
                expected[query] = checkedRun(without, getRequest(query), secret, figures).out;
            }
        }
        if (hostile.readable) {
            expected[advanced] = checkedRun(reference, getRequest(advanced), secret, figures).out;
            expected[services] = checkedRun(reference, getRequest(services), secret, figures).out;
        }

        TempRoot root;
        root.copyRack(target.rack);
        const std::string badNetwork = hostile.build(originalNetwork, secret);
        const std::string badStatus = hostile.build(originalStatus, secret);
        ASSERT_NE(badNetwork, originalNetwork);
        ASSERT_NE(badStatus, originalStatus);
        root.write(network, badNetwork);
        root.write(status, badStatus);
        ASSERT_EQ(root.read(network), badNetwork);
        ASSERT_EQ(root.read(status), badStatus);

        for (int page : kPages) {
            const std::string query = "command=" + std::to_string(page);
            SCOPED_TRACE(query);
            const CgiResult result = checkedRun(root, getRequest(query), secret, figures);
            ++figures.pages;
            if (hostile.readable) {
                EXPECT_EQ(comparable(result.out, ""), comparable(expected[query], ""));
            } else {
                const size_t shown = cambioip_test::occurrences(result.out, unreadableRow);
                EXPECT_EQ(shown, 1u) << result.out;
                figures.unreadableShown += shown == 1 ? 1 : 0;
                EXPECT_EQ(comparable(result.out, unreadableRow), comparable(expected[query], ""));
            }
        }
        // The unit's own pages answer whole; a readable document shows as before.
        for (const std::string &query : {advanced, services}) {
            SCOPED_TRACE(query);
            const CgiResult result = checkedRun(root, getRequest(query), secret, figures);
            ++figures.pages;
            if (hostile.readable) {
                EXPECT_EQ(comparable(result.out, ""), comparable(expected[query], ""));
            }
        }

        // A save of the unit: a readable document takes it (without the secret), an unreadable
        // one is left byte for byte and the unit is not queued.
        const std::string save = "command=4&sufijo=." + std::string(target.unit) + "&networkipdir=" + dotted(target.unit) +
                                 "&networkmask=255.255.255.0&gateway=10.0.0.1&dhcp=0&orden=7";
        const CgiResult saved = checkedRun(root, postRequest(save), secret, figures);
        const std::string queue = root.read("config/fileschanged.list");
        const std::string networkAfter = root.read(network);
        figures.documents += 2;
        if (hostile.readable) {
            EXPECT_NE(saved.out.find("Changes saved for ip"), std::string::npos) << saved.out;
            EXPECT_EQ(queue, "network." + std::string(target.unit) + "\n");
            EXPECT_NE(networkAfter, badNetwork);
            EXPECT_TRUE(cambioip_test::xmlWellFormed(root.path() / network));
            EXPECT_EQ(networkAfter.find(secret.marker()), std::string::npos);
        } else {
            EXPECT_NE(saved.out.find("ERROR! Unable to open config data."), std::string::npos) << saved.out;
            EXPECT_EQ(networkAfter, badNetwork);
            figures.changed += networkAfter == badNetwork ? 0 : 1;
            EXPECT_EQ(queue, "");
        }
        figures.changed += root.read(status) == badStatus ? 0 : 1;
        EXPECT_EQ(root.read(status), badStatus);
        EXPECT_EQ(temporaries(root), std::vector<std::string>{});
    }
    printFigures(std::string("hostile documents ") + hostile.name,
                 {{"racks", racks}, {"runs", figures.runs}, {"pages checked", figures.pages},
                  {"unit shown unreadable", figures.unreadableShown}, {"documents checked", figures.documents},
                  {"lost or torn", figures.changed}, {"secret shown", figures.leaks}, {"hangs", figures.hangs},
                  {"crashes", figures.crashes}});
}

INSTANTIATE_TEST_SUITE_P(Fault, HostileDocuments, ::testing::ValuesIn(kHostiles),
                         [](const ::testing::TestParamInfo<Hostile> &info) { return std::string(info.param.name); });

}  // namespace
