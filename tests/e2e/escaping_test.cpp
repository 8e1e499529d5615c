// Whatever text a unit document holds, no page lets it out of its HTML context: every leaf
// of every document of a rack is filled with a hostile text carrying a marker of its own,
// and every page (the family and common pages, the advanced page of each unit, the service
// lists) must show those texts with their markup characters escaped and their UTF-8 whole.
#include "support/cgi_runner.h"
#include "support/xml_read.h"

#include <gtest/gtest.h>

#include <libxml/parser.h>

#include <random>
#include <regex>
#include <set>

using namespace cambioip_test;

namespace {

// Elements that decide which rows exist (model, version, address, list counts): they keep
// their value so that every row and list is still painted around the poisoned texts.
const std::set<std::string> kStructure = {"TIPOUNIDAD", "CONFIGVERS", "IP_ADDRESS", "IP", "NUMINP", "NUM"};

// The characters a stored text could use to leave its context, some multi-byte UTF-8, and
// characters harmless in HTML that the escapers must leave alone.
const std::vector<std::string> kPieces = {"\"", "'", "<", ">", "&", ";", "#", "=", "/", " ", "\t",
                                          "é", "日本", "€", "--", "x", "]]>", "\\", "%", "+"};

// A hostile text of pieces, each between the field's marker "Q<n>Z" and a closing "Y", so
// that a markup character left raw shows up as "Z<Y", "Z&Y", ... on the page.
std::string poison(int field, std::mt19937 &random)
{
    std::string text;
    for (int i = 0; i < 8; ++i)
        text += "Q" + std::to_string(field) + "Z" + kPieces[random() % kPieces.size()] + "Y";
    return text;
}

void poisonTree(xmlNodePtr node, int &field, std::mt19937 &random)
{
    for (xmlNodePtr child = node->children; child != nullptr; child = child->next) {
        if (child->type != XML_ELEMENT_NODE)
            continue;
        bool leaf = true;
        for (xmlNodePtr inner = child->children; inner != nullptr; inner = inner->next)
            leaf = leaf && inner->type != XML_ELEMENT_NODE;
        if (!leaf) {
            poisonTree(child, field, random);
            continue;
        }
        if (kStructure.contains(reinterpret_cast<const char *>(child->name)))
            continue;
        while (child->children != nullptr) {
            xmlNodePtr old = child->children;
            xmlUnlinkNode(old);
            xmlFreeNode(old);
        }
        const std::string text = poison(field++, random);
        xmlAddChild(child, xmlNewText(reinterpret_cast<const xmlChar *>(text.c_str())));
    }
}

bool validUtf8(const std::string &text)
{
    for (std::size_t i = 0; i < text.size();) {
        const unsigned char lead = static_cast<unsigned char>(text[i]);
        const std::size_t length = lead < 0x80 ? 1 : (lead >> 5) == 0x6 ? 2 : (lead >> 4) == 0xE ? 3 : (lead >> 3) == 0x1E ? 4 : 0;
        if (length == 0 || i + length > text.size())
            return false;
        for (std::size_t k = 1; k < length; ++k)
            if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80)
                return false;
        i += length;
    }
    return true;
}

struct Rack {
    const char *name;
    std::vector<std::string> units;    // unit suffixes for the advanced page
    std::vector<std::string> ipUnits;  // and those with IP inputs, for the service lists
};

class Escaping : public ::testing::TestWithParam<std::tuple<Rack, unsigned>> {};

TEST_P(Escaping, NoStoredTextLeavesItsContextOnAnyPage)
{
    const auto &[rack, seed] = GetParam();
    TempRoot root;
    root.copyRack(rack.name);
    std::mt19937 random(seed);
    int field = 0;
    for (const auto &entry : fs::directory_iterator(root.config())) {
        XmlDoc document(xmlReadFile(entry.path().c_str(), nullptr, XML_PARSE_NONET));
        ASSERT_TRUE(document) << entry.path();
        poisonTree(xmlDocGetRootElement(document.get()), field, random);
        ASSERT_GE(xmlSaveFileEnc(entry.path().c_str(), document.get(), "UTF-8"), 0);
    }

    std::vector<std::string> queries;
    for (int command : {1, 2, 3, 10, 12, 13, 14, 15, 16, 17})
        queries.push_back("command=" + std::to_string(command));
    for (const std::string &unit : rack.units)
        queries.push_back("command=24&sufijo=" + unit);
    for (const std::string &unit : rack.ipUnits) {
        for (int input : {1, 2})
            queries.push_back("command=29&sufijo=" + unit + "&entip=" + std::to_string(input));
    }

    const std::regex raw("Z[\"'<>&]Y");
    const std::regex marker("Q[0-9]+Z");
    for (const std::string &query : queries) {
        const CgiResult result = runGet(root, query);
        ASSERT_EQ(result.status, 0) << query;
        const std::string page = result.body();
        EXPECT_TRUE(std::regex_search(page, marker)) << query << " shows no stored text at all:\n" << page;
        std::smatch found;
        if (std::regex_search(page, found, raw))
            ADD_FAILURE() << query << ": a stored text leaves its context at \""
                          << page.substr(std::max<long>(0, found.position() - 60), 140) << "\"";
        EXPECT_TRUE(validUtf8(page)) << query << ": the page is not valid UTF-8";
    }
}

const Rack kRacks[] = {
    {"qam", {"", "010.000.000.021", "010.000.000.031", "010.000.000.103"}, {"010.000.000.031"}},
    {"cofdm", {"", "010.000.000.032", "010.000.000.104"}, {"", "010.000.000.104"}},
    {"isdbt", {"", "010.000.000.042", "010.000.000.043"}, {"010.000.000.043"}},
    {"cofdmqamb", {"", "010.000.000.052", "010.000.000.053"}, {}},
};

INSTANTIATE_TEST_SUITE_P(Racks, Escaping, ::testing::Combine(::testing::ValuesIn(kRacks), ::testing::Values(1u, 2u, 3u)),
                         [](const auto &info) {
                             return std::string(std::get<0>(info.param).name) + "_seed" +
                                    std::to_string(std::get<1>(info.param));
                         });

}  // namespace
