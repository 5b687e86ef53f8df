// The fast reader of plain XML against the full parser: on every text, the
// handler hears the same and the part reads or fails the same, whether the
// fast reader read it or gave it up to the full parser.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "core/Utf8.h"
#include "spreadsheet/PlainXml.h"
#include "spreadsheet/Workbook.h"
#include "spreadsheet/XmlPart.h"

namespace {

using namespace cadhost::spreadsheet;

// Writes down what it is told; text that comes in pieces is joined. It
// stops at the end of an element named "stop", as a handler that has all it
// needs does.
class Recorder : public XmlHandler {
public:
    explicit Recorder(bool rewindable) : m_rewindable(rewindable) {}
    void Start(std::string_view name, const char** attributes) override {
        m_log += "<" + std::string(name);
        for (int i = 0; attributes[i]; i += 2) m_log += " " + std::string(attributes[i]) + "=[" + attributes[i + 1] + "]";
        m_log += ">";
    }
    void End(std::string_view name) override {
        m_log += "</" + std::string(name) + ">";
        if (name == "stop") done = true;
    }
    void Characters(std::string_view text) override { m_log += text; }
    bool CanRewind() const override { return m_rewindable; }
    void Rewind() override {
        m_log.clear();
        ++rewinds;
    }
    const std::string& log() const { return m_log; }
    int rewinds = 0;

private:
    bool m_rewindable;
    std::string m_log;
};

struct Outcome {
    bool read = false;
    std::string why, log;
    int rewinds = 0;
};

Outcome Parse(const std::string& text, bool plainFirst) {
    Recorder recorder(plainFirst);
    std::wstring why;
    Outcome out;
    out.read = ParseXmlBytes(text, "part.xml", recorder, why);
    out.why = cadhost::ToUtf8(why);
    out.log = recorder.log();
    out.rewinds = recorder.rewinds;
    return out;
}

// Both ways agree; answers whether the fast reader read it alone.
bool Agree(const std::string& text) {
    Outcome full = Parse(text, false), fast = Parse(text, true);
    EXPECT_EQ(fast.read, full.read) << text;
    EXPECT_EQ(fast.why, full.why) << text;
    EXPECT_EQ(fast.log, full.log) << text;
    return fast.rewinds == 0;
}

const char kSheet[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
    "<worksheet xmlns=\"http://schemas.openxmlformats.org/spreadsheetml/2006/main\" "
    "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\">"
    "<sheetViews><sheetView workbookViewId='0'><selection activeCell=\"B2\" sqref=\"B2\"/></sheetView></sheetViews>"
    "<sheetData><row r=\"1\" spans=\"1:3\"><c r=\"A1\" s=\"1\" t=\"n\"><v>0.005</v></c>"
    "<c r=\"B1\" t=\"inlineStr\"><is><t xml:space=\"preserve\"> Gr\xC3\xB6\xC3\x9F" "e &amp; &lt;&#233;&#x20AC;&gt; </t></is></c>"
    "<c r=\"C1\" t=\"s\"><v>3</v></c></row>\n  <row r=\"2\"><c r=\"A2\" t=\"b\"><v>1</v></c><c r='B2' t=\"e\"><v>#N/A</v></c>"
    "</row></sheetData><r:x r:id=\"rId1\"/></worksheet>\n";

TEST(PlainXmlTest, PlainTextsAreReadFastAndHeardAsTheFullParserTellsThem) {
    const std::string plain[] = {
        kSheet,
        "<a/>",
        "<a></a>",
        "  \n<a>\n</a>\n ",
        "<?xml version='1.0'?><a b=\"'&quot;\" c='&apos;\"'>x&#10;y&#9;z</a>",
        "<p:a xmlns:p=\"u\" p:b=\"1\"><p:c/><d xmlns:p=\"v\" p:e=\"2\"/></p:a>",
        "<a>\t tab and new\nline > ]] > </a>",
        "<a>\xF0\x9F\x98\x80 \xE2\x82\xAC \x7F</a>",
        "<a b='>' c=\"/>\" >&#x10FFFF;</a>",
        "<a xmlns=\"\"><b xmlns='x'/></a>",
    };
    for (const std::string& text : plain) EXPECT_TRUE(Agree(text)) << text;
}

TEST(PlainXmlTest, WhatLeavesThePlainFormGoesToTheFullParserAndReadsTheSame) {
    const std::string other[] = {
        "<!-- a comment --><a/>",
        "<a><?pi x?></a>",
        "<a><![CDATA[x < y]]></a>",
        "<!DOCTYPE a [<!ENTITY e \"x\">]><a>&e;</a>",
        "<a>line\r\nend</a>",
        "<a b=\"x\ty\"/>",
        "<a b=\"x\ny\"/>",
        "\xEF\xBB\xBF<a/>",
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\xE9</a>",
        "<a>\xC3\xA9\xC3</a>",
        "<a>\x01</a>",
        "<a>]]></a>",
        "<a>&#X41;</a>",
        "<a>&#0;</a>",
        "<a>&unknown;</a>",
        "<a>&amp</a>",
        "<a x='1' x='2'/>",
        "<a xmlns:p='u' xmlns:q='u' p:x='1' q:x='2'/>",
        "<a p:x='1'/>",
        "<p:a/>",
        "<a xmlns:p=''/>",
        "<a xmlns:xml='http://www.w3.org/XML/1998/namespace'/>",
        "<a></b>",
        "<a>",
        "<a/><b/>",
        "<a/>text",
        "",
        "   ",
        "<a b='1'c='2'/>",
        "<\xC3\xA9/>",
        "<a>\xEF\xBF\xBE</a>",
        "<a>\xED\xA0\x80</a>",
        "<a>\xC0\xAF</a>",
        " <?xml version=\"1.0\"?><a/>",
    };
    for (const std::string& text : other) EXPECT_FALSE(Agree(text)) << text;
    // A handler that stops before the trouble stops there either way.
    EXPECT_TRUE(Agree("<a><stop/><!-- after --></a>"));
    EXPECT_TRUE(Parse("<a><stop/><!-- after --></a>", true).read);
}

TEST(PlainXmlTest, DeepNestingFailsAsTheFullParserSaysIt) {
    std::string deep;
    for (int i = 0; i < kMaxXmlDepth + 1; ++i) deep += "<a>";
    for (int i = 0; i < kMaxXmlDepth + 1; ++i) deep += "</a>";
    EXPECT_FALSE(Agree(deep));
    EXPECT_NE(Parse(deep, true).why.find("nests elements deeper than"), std::string::npos);
    std::string allowed;
    for (int i = 0; i < kMaxXmlDepth; ++i) allowed += "<a>";
    for (int i = 0; i < kMaxXmlDepth; ++i) allowed += "</a>";
    EXPECT_TRUE(Agree(allowed));
}

// A part large enough to be inflated ahead on another thread reads the
// same, plain to its end or leaving the plain form near it.
TEST(PlainXmlTest, LargePartsReadTheSameBothWays) {
    std::string rows;
    for (int row = 1; rows.size() < (6u << 20); ++row) {
        std::string r = std::to_string(row);
        rows += "<row r=\"" + r + "\"><c r=\"A" + r + "\"><v>" + r + ".5</v></c><c r=\"B" + r +
                "\" t=\"inlineStr\"><is><t>Pump &amp; " + r + "</t></is></c></row>";
    }
    std::string plain = "<worksheet xmlns=\"u\"><sheetData>" + rows + "</sheetData></worksheet>";
    EXPECT_TRUE(Agree(plain));
    std::string late = plain;
    late.insert(late.size() - 40, "<!-- late -->");
    EXPECT_FALSE(Agree(late));
    std::string broken = plain;
    broken.insert(broken.size() - 40, "<");
    EXPECT_FALSE(Agree(broken));
}

// The reader on its own, given the sheet in pieces of every size: what it
// cannot finish it leaves for the next call, and hears the same in the end.
TEST(PlainXmlTest, PiecesOfAnySizeReadAsTheWhole) {
    std::string whole = Parse(kSheet, false).log;
    for (size_t piece = 1; piece <= 64; ++piece) {
        Recorder recorder(true);
        PlainXmlReader reader(recorder, kMaxXmlDepth);
        std::string text = kSheet, buffer;
        size_t at = 0;
        PlainXmlReader::Result result = PlainXmlReader::Result::kMore;
        while (result == PlainXmlReader::Result::kMore) {
            size_t take = std::min(piece, text.size() - at);
            buffer.append(text, at, take);
            at += take;
            size_t used = 0;
            result = reader.Read(buffer.data(), buffer.size(), take == 0, used);
            buffer.erase(0, used);
        }
        EXPECT_EQ(result, PlainXmlReader::Result::kDone) << piece;
        EXPECT_EQ(recorder.log(), whole) << piece;
    }
}

// The sheet changed at random places, a byte at a time, by bytes that
// matter to XML: each change reads the same both ways.
TEST(PlainXmlTest, ChangedTextsReadTheSameBothWays) {
    const std::string bytes = std::string("<>&;#x\"'/=:?!-[] \t\r\n\x01\x7F\xC3\xA9\xE2\x82\xACxmlnsrc0", 33);
    std::mt19937 random(20261124);
    int fast = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string text = kSheet;
        int changes = 1 + static_cast<int>(random() % 3);
        for (int k = 0; k < changes; ++k) {
            size_t at = random() % text.size();
            char b = bytes[random() % bytes.size()];
            switch (random() % 3) {
            case 0: text[at] = b; break;
            case 1: text.insert(text.begin() + static_cast<std::ptrdiff_t>(at), b); break;
            default: text.erase(at, 1); break;
            }
        }
        if (Agree(text)) ++fast;
    }
    // Most changes leave the text plain or break it; both kinds come up.
    EXPECT_GT(fast, 100);
    EXPECT_LT(fast, 3000);
}

}  // namespace
