// The encoder input page through the real cambioIP.cgi: the page (command 10) in its three
// layouts with the enabling rules of every control, and the save of one unit's inputs
// (command 11), read back leaf by leaf so that exactly the posted elements change.
#include "e2e/rack.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>

#include <functional>
#include <map>
#include <utility>
#include <vector>

using namespace cambioip_test;

namespace {

const std::string k021 = "_010_000_000_021";
const std::string k022 = "_010_000_000_022";
const std::string kFile021 = "config/network.010.000.000.021.xml";
const std::string kFile022 = "config/network.010.000.000.022.xml";
const std::string kSavingData =
    "<br><h2><center><strong> ERROR! Saving data.<br> please retry operation in a few seconds.</strong></center></h2>\n";

using Edits = std::vector<std::pair<std::string, std::string>>;

// A unit suffix as the advanced-page link carries it: every '_' a '.'.
std::string dotted(std::string suffix)
{
    for (char &ch : suffix)
        if (ch == '_')
            ch = '.';
    return suffix;
}

std::string page(const TempRoot &root)
{
    CgiResult r = runGet(root, "command=10");
    expectCleanRun(r);
    return r.body();
}

// The control named `name`: a whole select, or an input tag.
std::string control(const std::string &html, const std::string &name)
{
    const auto at = html.find("name=\"" + name + "\"");
    if (at == std::string::npos)
        return {};
    const auto start = html.rfind('<', at);
    const bool select = html.compare(start, 7, "<select") == 0;
    const auto end = select ? html.find("</select>", at) + 9 : html.find('>', at) + 1;
    return html.substr(start, end - start);
}

bool disabled(const std::string &ctrl)
{
    return ctrl.substr(0, ctrl.find('>')).find(" disabled") != std::string::npos;
}

// Option values of a select, and the selected one ("" when none is).
std::vector<std::string> options(const std::string &select, std::string *selected = nullptr)
{
    std::vector<std::string> values;
    for (auto at = select.find("<option value=\""); at != std::string::npos;
         at = select.find("<option value=\"", at + 1)) {
        const auto from = at + 15;
        values.push_back(select.substr(from, select.find('"', from) - from));
        if (selected != nullptr && select.compare(select.find('"', from), 22, "\" selected=\"selected\" ") == 0)
            *selected = values.back();
    }
    return values;
}

// The value of the field `name` (hidden field or twin).
std::string fieldValue(const std::string &html, const std::string &name)
{
    const std::string key = "name=\"" + name + "\" value=\"";
    const auto at = html.find(key);
    if (at == std::string::npos)
        return "<missing>";
    const auto from = at + key.size();
    return html.substr(from, html.find('"', from) - from);
}

// Every leaf element of a document by path, with its text.
std::map<std::string, std::string> leaves(const fs::path &file)
{
    std::map<std::string, std::string> result;
    xmlDocPtr doc = xmlReadFile(file.c_str(), nullptr, XML_PARSE_NONET | XML_PARSE_NOBLANKS);
    EXPECT_NE(doc, nullptr) << file;
    if (doc == nullptr)
        return result;
    std::function<void(xmlNodePtr, const std::string &)> walk = [&](xmlNodePtr node, const std::string &path) {
        bool leaf = true;
        for (xmlNodePtr child = node->children; child != nullptr; child = child->next) {
            if (child->type == XML_ELEMENT_NODE) {
                leaf = false;
                walk(child, path + "/" + reinterpret_cast<const char *>(child->name));
            }
        }
        if (leaf) {
            xmlChar *text = xmlNodeGetContent(node);
            result[path] = text != nullptr ? reinterpret_cast<const char *>(text) : "";
            xmlFree(text);
        }
    };
    xmlNodePtr root = xmlDocGetRootElement(doc);
    walk(root, std::string("/") + reinterpret_cast<const char *>(root->name));
    xmlFreeDoc(doc);
    return result;
}

// What changed between two leaf maps: path -> new text ("<absent>" when removed).
std::map<std::string, std::string> changes(const std::map<std::string, std::string> &before,
                                           const std::map<std::string, std::string> &after)
{
    std::map<std::string, std::string> diff;
    for (const auto &[path, text] : before) {
        const auto it = after.find(path);
        if (it == after.end())
            diff[path] = "<absent>";
        else if (it->second != text)
            diff[path] = it->second;
    }
    for (const auto &[path, text] : after)
        if (!before.contains(path))
            diff[path] = "<created>" + text;
    return diff;
}

// Parameterised cases print as their name.
template <typename Case>
    requires requires(const Case &c) { c.name; }
void PrintTo(const Case &c, std::ostream *os)
{
    *os << c.name;
}

std::unique_ptr<TempRoot> demo(const std::string &masterType = "", const std::string &file = "", const Edits &edits = {})
{
    auto root = std::make_unique<TempRoot>();
    copyDemo(*root);
    if (!masterType.empty())
        setMasterType(*root, masterType);
    for (const auto &[from, to] : edits)
        editFile(*root, file, from, to);
    return root;
}

// --- page ------------------------------------------------------------------------------------

TEST(InputPage, OneInputIsLabelledIAndSeveralAreNumbered)
{
    auto root = demo("710205");  // COFDM master: units 4 (two inputs) and 5 (one input)
    const std::string body = page(*root);
    const std::string one = rowWith(body, "MostrarConfigTotal('.010.000.000.032')");
    EXPECT_NE(one.find("<div class='divlineadentrodecelda' >I<input name=\"eon1_010_000_000_032\""), std::string::npos);
    EXPECT_EQ(countOf(one, "name=\"eon"), 1u);
    const std::string two = rowWith(body, "MostrarConfigTotal('.010.000.000.031')");
    EXPECT_NE(two.find(">I1<input name=\"eon1_010_000_000_031\""), std::string::npos);
    EXPECT_NE(two.find(">I2<input name=\"eon2_010_000_000_031\""), std::string::npos);
}

TEST(InputPage, DisabledInputDisablesEveryControl)
{
    auto root = demo();  // the unit at 10.0.0.22 has input 4 off
    const std::string row = rowWith(page(*root), "MostrarConfigTotal('.010.000.000.022')");
    for (const char *key : {"vidinp", "vidcod", "ffencod", "vidbit", "maxoutres", "asprat", "gop", "audinp", "audcod",
                            "audbit", "audlev", "ccon"}) {
        EXPECT_TRUE(disabled(control(row, key + ("4" + k022)))) << key;
    }
    // Input 3 is on: only the controls its model or document version fixes are disabled.
    for (const char *key : {"vidcod", "vidbit", "asprat", "gop", "audinp", "audcod", "audbit", "audlev", "ccon"})
        EXPECT_FALSE(disabled(control(row, key + ("3" + k022)))) << key;
    EXPECT_EQ(fieldValue(row, "anterioreon4" + k022), "0");
    EXPECT_EQ(fieldValue(row, "anterioreon3" + k022), "1");
}

// One control of the page, painted from the demo rack with some edits.
struct ControlCase {
    const char *name;
    std::string file;
    Edits edits;
    std::string control;               // full field name
    std::vector<std::string> choices;  // empty: not checked
    std::string selected;              // empty: not checked
    bool disabled;
    std::string twin;      // value of its "anterior" field; empty: not checked
    std::string contains;  // a piece of the control; empty: not checked
};

class Controls : public ::testing::TestWithParam<ControlCase> {};

TEST_P(Controls, OfferTheirChoicesAndFollowTheEnablingRules)
{
    const ControlCase &c = GetParam();
    auto root = demo("", c.file, c.edits);
    const std::string body = page(*root);
    const std::string ctrl = control(body, c.control);
    ASSERT_FALSE(ctrl.empty()) << c.control;
    std::string selected;
    const std::vector<std::string> choices = options(ctrl, &selected);
    if (!c.choices.empty()) {
        EXPECT_EQ(choices, c.choices);
    }
    if (!c.selected.empty()) {
        EXPECT_EQ(selected, c.selected);
    }
    EXPECT_EQ(disabled(ctrl), c.disabled) << ctrl;
    if (!c.twin.empty()) {
        EXPECT_EQ(fieldValue(body, "anterior" + c.control), c.twin);
    }
    EXPECT_NE(ctrl.find(c.contains), std::string::npos) << ctrl;
}

const std::vector<std::string> kAllCodecs = {"0", "1", "5", "6", "7", "8"};
const std::vector<std::string> kAllResolutions = {"0", "256", "2", "4", "8", "16", "32", "64"};
const Edits kVersion5 = {{"<CONFIGVERS>6", "<CONFIGVERS>5"}};

INSTANTIATE_TEST_SUITE_P(
    Page, Controls,
    ::testing::Values(
        // Codecs and Field/Frame by document version; 1080PHR with MPEG2 has no Field/Frame.
        ControlCase{"CodecsVersion6", kFile021, {}, "vidcod1" + k021, kAllCodecs, "6", false, "6", ""},
        ControlCase{"CodecsVersion5", kFile022, {}, "vidcod1" + k022, {"0", "1"}, "0", false, "0", ""},
        ControlCase{"UnofferedCodecIsMPEG2", kFile021, {{"<CONFIGVERS>6", "<CONFIGVERS>5"}, {"<VIDEO>6<", "<VIDEO>5<"}},
                    "vidcod1" + k021, {"0", "1"}, "0", false, "0", ""},
        ControlCase{"FieldFrameVersion5", kFile021, kVersion5, "ffencod1" + k021, {"0", "1"}, "1", true, "1", ""},
        ControlCase{"FieldFrameH264At1080PHR", kFile021, {}, "ffencod1" + k021, {}, "1", false, "", ""},
        ControlCase{"FieldFrameMPEG2At1080PHR", kFile021, {{"<VIDEO>6<", "<VIDEO>0<"}}, "ffencod1" + k021, {}, "1",
                    true, "", ""},
        ControlCase{"FieldFrameMPEG2At480I", kFile021, {}, "ffencod2" + k021, {}, "0", false, "", ""},
        // Connectors and resolutions by the model's masks; a composite-only model is fixed.
        ControlCase{"VideoCmpHdmi", kFile021, {}, "vidinp1" + k021, {"0", "1"}, "1", false, "1",
                    "onchange=\"CambioVideoInput(this);Compruebacambios(this);\" onblur=\"Compruebacambios(this);\""},
        ControlCase{"VideoCompositeOnlyIsFixed", kFile022, {{"<VIDEOIN>2<", "<VIDEOIN>0<"}}, "vidinp1" + k022, {"2"},
                    "2", true, "2", ""},
        ControlCase{"Resolutions", kFile021, {}, "maxoutres1" + k021, kAllResolutions, "256", false, "256", ""},
        ControlCase{"NoResolutionMask", kFile022, {}, "maxoutres1" + k022, {"0"}, "0", true, "0", ""},
        ControlCase{"UnreadableResolutionIsAuto", kFile021, {{"<CONFIGVERS>6", "<CONFIGVERS>3"}},
                    "maxoutres1" + k021, kAllResolutions, "0", true, "0", ""},
        ControlCase{"AudioWithHdmiVideo", kFile021, {}, "audinp1" + k021, {"0", "1", "2", "3", "4"}, "3", false, "3",
                    " style='min-width:124px'"},
        ControlCase{"AudioWithCompVideo", kFile021, {}, "audinp2" + k021, {"0", "1", "2"}, "0", false, "0", ""},
        ControlCase{"AudioCompositeOnly", kFile022, {}, "audinp1" + k022, {"0"}, "0", false, "0", ""},
        // The audio codec only for analog audio.
        ControlCase{"AudioCodecDigital", kFile021, {}, "audcod1" + k021, {"0", "1"}, "1", true, "1", ""},
        ControlCase{"AudioCodecAnalog", kFile021, {}, "audcod2" + k021, {"0", "1"}, "0", false, "0", ""},
        // Up to 50 Mbit/s with a resolution mask, else 10.
        ControlCase{"BitrateHigh", kFile021, {}, "vidbit1" + k021, {}, "", false, "14",
                    "ValidarEnteroConDecimales(this,'2','50','2')"},
        ControlCase{"BitrateLow", kFile022, {}, "vidbit1" + k022, {}, "", false, "3.5",
                    "ValidarEnteroConDecimales(this,'2','10','2')"}),
    [](const auto &info) { return info.param.name; });

struct HiddenCase {
    const char *name;
    std::string masterType;
    std::string suffix;
    std::map<std::string, std::string> fields;
};

class HiddenFields : public ::testing::TestWithParam<HiddenCase> {};

TEST_P(HiddenFields, CarryTheCountTheFamilyTheOutputAndThePaintedValues)
{
    const HiddenCase &c = GetParam();
    auto root = demo(c.masterType, kFile021, {{"<SALIDA>0</SALIDA>", "<SALIDA>1</SALIDA>"}});  // QAM output type
    const std::string row = rowWith(page(*root), "MostrarConfigTotal('" + dotted(c.suffix) + "')");
    ASSERT_FALSE(row.empty());
    for (const auto &[name, value] : c.fields)
        EXPECT_EQ(fieldValue(row, name + c.suffix), value) << name;
}

INSTANTIATE_TEST_SUITE_P(
    Families, HiddenFields,
    ::testing::Values(
        HiddenCase{"Qam", "", k021,
                   {{"anteriornumcanales", "2"}, {"anteriortipounidad", "0"}, {"outmod", "0"}, {"outout", "1"},
                    {"bwsal", "0"}, {"ingrd", "0"}, {"fecsal", "0"}, {"outbau", "0"},
                    {"anterioreon1", "1"}, {"anteriorvidinp1", "1"}, {"anteriorffencod1", "1"},
                    {"anteriorvidbit1", "14"}, {"anteriormaxoutres1", "256"}, {"anteriorasprat1", "1"},
                    {"anteriorgop1", "2"}, {"anterioraudinp1", "3"}, {"anterioraudcod1", "1"},
                    {"anterioraudbit1", "8"}, {"anterioraudlev1", "7"}, {"anteriorccon1", "1"}}},
        HiddenCase{"Cofdm", "710205", "_010_000_000_031",
                   {{"anteriortipounidad", "1"}, {"outmod", "2"}, {"outout", "0"}, {"bwsal", "0"}, {"ingrd", "0"},
                    {"fecsal", "2"}, {"outbau", "6.900"}}},
        HiddenCase{"Isdbt", "710301", "_010_000_000_041",
                   {{"anteriortipounidad", "2"}, {"outmod", "3"}, {"bwsal", "2"}, {"ingrd", "1"}, {"fecsal", "2"},
                    {"outbau", "0"}}},
        HiddenCase{"CofdmQamB", "710401", "_010_000_000_051",
                   {{"anteriortipounidad", "3"}, {"outmod", "2"}, {"bwsal", "2"}, {"ingrd", "1"}, {"fecsal", "1"},
                    {"outbau", "5.360"}}}),
    [](const auto &info) { return info.param.name; });

struct LayoutCase {
    const char *name;
    std::string masterType;
    std::string suffix;  // a unit of the master's family
    bool audioCodec, closedCaption;
    std::string hdmiLabel;  // of the last row
};

class Layouts : public ::testing::TestWithParam<LayoutCase> {};

TEST_P(Layouts, DropTheColumnsTheFamilyHasNot)
{
    const LayoutCase &c = GetParam();
    auto root = demo(c.masterType);
    const std::string body = page(*root);
    const std::vector<std::string> rows = tableRows(body);
    ASSERT_GE(rows.size(), 3u);
    const std::string &head = rows.front();
    const std::string row = rowWith(body, "MostrarConfigTotal('" + dotted(c.suffix) + "')");
    const std::string &last = rows.back();

    EXPECT_EQ(head.find(">Audio Codec<") != std::string::npos, c.audioCodec);
    EXPECT_EQ(head.find(">Closed Caption<") != std::string::npos, c.closedCaption);
    EXPECT_EQ(countOf(row, "<td"), countOf(head, "<th"));
    EXPECT_EQ(countOf(last, "<td") + 1, countOf(head, "<th"));  // the caption spans "#" and "Model"

    // Missing columns travel as hidden fields with the neutral value.
    const std::string cc = control(row, "ccon1" + c.suffix);
    EXPECT_NE(cc.find(c.closedCaption ? "type=\"checkbox\"" : "value=\"0\" type=\"hidden\""), std::string::npos) << cc;
    const std::string codec = control(row, "audcod1" + c.suffix);
    EXPECT_NE(codec.find(c.audioCodec ? "<select" : "value=\"0\" type=\"hidden\""), std::string::npos) << codec;

    EXPECT_EQ(countOf(last, "onclick='CambioVideocodecAll(this,\"1\");'"), c.audioCodec ? 10u : 9u);
    EXPECT_EQ(last.find("name=\"ccon_all\"") != std::string::npos, c.closedCaption);
    EXPECT_NE(last.find(">" + c.hdmiLabel + "</option>"), std::string::npos);
    EXPECT_NE(last.find("<option value=\"2\"  >1080i</option>"), std::string::npos);
    EXPECT_NE(last.find("<option value=\"48\"  >480I</option><option value=\"99\" selected=\"selected\" >Select</option>"),
              std::string::npos);
    EXPECT_TRUE(body.ends_with("</tr></tbody></table>" + kClose));
}

INSTANTIATE_TEST_SUITE_P(
    Families, Layouts,
    ::testing::Values(LayoutCase{"Qam", "", k021, true, true, "HDMI 44.1kHz"},
                      LayoutCase{"Cofdm", "710205", "_010_000_000_031", false, false, "HDMI 48kHz"},
                      LayoutCase{"Isdbt", "710301", "_010_000_000_041", true, false, "HDMI 48 kHz"},
                      LayoutCase{"CofdmQamB", "710401", "_010_000_000_051", true, false, "HDMI 44.1 kHz"}),
    [](const auto &info) { return info.param.name; });

TEST(InputPage, PlaceholderMasterGetsALatHeadADefaultRowAndNoLastRow)
{
    auto root = demo("65535");
    const std::string body = page(*root);
    const std::vector<std::string> rows = tableRows(body);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0].find(">Closed Caption<"), std::string::npos);
    EXPECT_NE(rows[0].find(">Audio Codec<"), std::string::npos);
    EXPECT_NE(control(rows[1], "ccon1").find("type=\"checkbox\""), std::string::npos);
    EXPECT_TRUE(body.ends_with("</tr>" + kNotSupported + kClose));
}

TEST(InputPage, DocumentValuesAreEscaped)
{
    auto root = demo("", kFile021,
                     {{"<ORDEN>2</ORDEN>", "<ORDEN>2&lt;&amp;'\"&gt;</ORDEN>"},
                      {"<VIDEO>14</VIDEO>", "<VIDEO>\"&gt;&lt;script&gt;</VIDEO>"},
                      {"<GOP>2</GOP>", "<GOP>'&lt;i&gt;</GOP>"},
                      {"<SALIDA>0</SALIDA>", "<SALIDA>a\"b</SALIDA>"}});
    const std::string body = page(*root);
    EXPECT_NE(body.find("<tr><td><b>2&lt;&amp;&#39;&quot;&gt;</b></td>"), std::string::npos);
    EXPECT_NE(control(body, "vidbit1" + k021).find("value=\"&quot;&gt;&lt;script&gt;\""), std::string::npos);
    EXPECT_EQ(fieldValue(body, "anteriorvidbit1" + k021), "&quot;&gt;&lt;script&gt;");
    EXPECT_EQ(fieldValue(body, "anteriorgop1" + k021), "&#39;&lt;i&gt;");
    EXPECT_EQ(fieldValue(body, "outout" + k021), "a&quot;b");
    EXPECT_EQ(body.find("<script>"), std::string::npos);
    EXPECT_EQ(body.find("<i>"), std::string::npos);
}

TEST(InputPage, ValuesThatFillTheReadAreShownWhole)
{
    // The store copies a value as long as the read (50 bytes for an input setting, 40 for
    // an output one) without a terminator.
    const std::string bitrate(50, '9'), salida(40, '7');
    auto root = demo("", kFile021,
                     {{"<VIDEO>14</VIDEO>", "<VIDEO>" + bitrate + "</VIDEO>"},
                      {"<SALIDA>0</SALIDA>", "<SALIDA>" + salida + "</SALIDA>"}});
    const std::string body = page(*root);
    EXPECT_EQ(fieldValue(body, "anteriorvidbit1" + k021), bitrate);
    EXPECT_EQ(fieldValue(body, "outout" + k021), salida);
}

// --- save ------------------------------------------------------------------------------------

// Every key with input 1 and input 3; the unit has two inputs, so input 3 is skipped.
const std::map<std::string, std::string> kForm = {
    {"numcanales", "2"},    {"eon", "1_0_3_1"},    {"vidinp", "1_0_3_1"}, {"vidcod", "1_7_3_1"},
    {"ffencod", "1_0_3_1"}, {"audcod", "1_0_3_1"}, {"audinp", "1_2_3_1"}, {"audlev", "1_13_3_1"},
    {"ccon", "1_0_3_1"},    {"vidbit", "1_9.5_3_1"}, {"audbit", "1_3_3_1"}, {"asprat", "1_2_3_1"},
    {"gop", "1_6_3_1"},     {"maxoutres", "1_4_3_1"},
};
const std::string kE1 = "/ENCODERCONFIG/ENTRADA1/";
const std::map<std::string, std::string> kWritten = {
    {kE1 + "ACTIVA", "0"},        {kE1 + "VIDEO", "7"},          {kE1 + "VIDEOIN", "0"},
    {kE1 + "AUDIO", "0"},         {kE1 + "AUDIOIN", "2"},        {kE1 + "AUDIOLEVEL", "13"},
    {kE1 + "CC", "0"},            {kE1 + "BITRATE/VIDEO", "9.5"}, {kE1 + "BITRATE/AUDIO", "3"},
    {kE1 + "ASPECTO", "2"},       {kE1 + "GOP", "6"},            {kE1 + "LIMITERESOLUCION", "4"},
    {kE1 + "FIELDENCODING", "0"}, {"/ENCODERCONFIG/CAMBIOSWEB", "1"},
};
const std::map<std::string, std::string> kOnlyMarked = {{"/ENCODERCONFIG/CAMBIOSWEB", "1"}};

struct SaveResult {
    std::string body;
    std::map<std::string, std::string> changed;
    bool queued;
};

SaveResult save(const TempRoot &root, std::map<std::string, std::string> form,
                const std::map<std::string, std::string> &override = {})
{
    for (const auto &[key, value] : override) {
        if (value == "<drop>")
            form.erase(key);
        else
            form[key] = value;
    }
    std::string body = "command=11&sufijo=.010.000.000.021";
    for (const auto &[key, value] : form)
        body += "&" + key + "=" + value;
    const auto before = leaves(root.path() / kFile021);
    CgiResult r = runPost(root, body);
    expectCleanRun(r);
    return {r.body(), changes(before, leaves(root.path() / kFile021)), root.exists("config/fileschanged.list")};
}

TEST(InputSave, WritesTheListedInputsUpToTheCountAndNothingElse)
{
    auto root = demo();
    const SaveResult r = save(*root, kForm);
    EXPECT_NE(r.body.find("added to the queue"), std::string::npos) << r.body;
    EXPECT_EQ(r.changed, kWritten);
    EXPECT_EQ(root->read("config/fileschanged.list"), "network.010.000.000.021\n");
}

class InputSaveInvalid : public ::testing::TestWithParam<std::map<std::string, std::string>> {};

TEST_P(InputSaveInvalid, SavesNothingAndIsInvalidData)
{
    auto root = demo();
    const SaveResult r = save(*root, kForm, GetParam());
    EXPECT_NE(r.body.find(kInvalidData), std::string::npos) << r.body;
    EXPECT_EQ(r.changed, kOnlyMarked);  // the engine still marks the document
    EXPECT_FALSE(r.queued);
}

INSTANTIATE_TEST_SUITE_P(Forms, InputSaveInvalid,
                         ::testing::Values(std::map<std::string, std::string>{{"numcanales", "0"}},
                                           std::map<std::string, std::string>{{"numcanales", "10"}},
                                           std::map<std::string, std::string>{{"numcanales", "x"}},
                                           std::map<std::string, std::string>{{"numcanales", "<drop>"}},
                                           std::map<std::string, std::string>{{"eon", "<drop>"}},
                                           std::map<std::string, std::string>{{"maxoutres", "<drop>"}},
                                           std::map<std::string, std::string>{{"gop", ""}}));

struct WriteFailure {
    const char *name;
    Edits edits;
    bool fails;
    std::map<std::string, std::string> changed;
};

class InputSaveWriteFailure : public ::testing::TestWithParam<WriteFailure> {};

// Field/Frame goes to input 9 only (skipped), so that a version-3 document can take the
// other keys.
TEST_P(InputSaveWriteFailure, MaxOutResCountsFromVersion4AndNoElementIsCreated)
{
    const WriteFailure &c = GetParam();
    auto root = demo("", kFile021, c.edits);
    const SaveResult r = save(*root, kForm, {{"ffencod", "9_0"}});
    EXPECT_EQ(r.body.find(kSavingData) != std::string::npos, c.fails) << r.body;
    EXPECT_EQ(r.queued, !c.fails);
    EXPECT_EQ(r.changed, c.changed);
}

std::map<std::string, std::string> writtenWithout(std::initializer_list<std::string> paths)
{
    std::map<std::string, std::string> m = kWritten;
    m.erase(kE1 + "FIELDENCODING");
    for (const std::string &p : paths)
        m.erase(kE1 + p);
    return m;
}

INSTANTIATE_TEST_SUITE_P(
    Versions, InputSaveWriteFailure,
    ::testing::Values(
        WriteFailure{"Version3IgnoresTheRefusedLimit", {{"<CONFIGVERS>6", "<CONFIGVERS>3"}}, false,
                     writtenWithout({"LIMITERESOLUCION"})},
        WriteFailure{"Version4MissingLimitFails",
                     {{"<CONFIGVERS>6", "<CONFIGVERS>4"}, {"<LIMITERESOLUCION>256</LIMITERESOLUCION>", ""}}, true,
                     writtenWithout({"LIMITERESOLUCION"})},
        WriteFailure{"Version6MissingLimitFails", {{"<LIMITERESOLUCION>256</LIMITERESOLUCION>", ""}}, true,
                     writtenWithout({"LIMITERESOLUCION"})},
        WriteFailure{"MissingGopFailsTheOthersStay", {{"<GOP>2</GOP>", ""}}, true, writtenWithout({"GOP"})}),
    [](const auto &info) { return info.param.name; });

}  // namespace
