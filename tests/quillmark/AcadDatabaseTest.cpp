// The drawing model: the snapshot of blocks, their definitions and
// references with layer states, attributes and dynamic properties, read
// from the working drawing and from a file, and the three lists it gives.
#include <dbobjptr.h>

#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "AcadDatabase.h"
#include "support/BlockDrawings.h"
#include "support/TestHost.h"

namespace {

const std::filesystem::path kFixtures = std::filesystem::path(QM_SOURCE_DIR) / "tests" / "fixtures";

std::vector<std::wstring> Texts(const CStringArray& array) {
    std::vector<std::wstring> out;
    for (INT_PTR i = 0; i < array.GetSize(); ++i) out.push_back(array[i].str());
    return out;
}

class AcadDatabaseTest : public qmtest::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        m_drawing = std::make_unique<qmtest::BlockDrawing>(db());
    }
    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }
    qmtest::BlockDrawing& drawing() { return *m_drawing; }

    static std::vector<std::wstring> Names(const AcadBlockArray& blocks) {
        std::vector<std::wstring> names;
        for (INT_PTR i = 0; i < blocks.GetSize(); ++i) names.push_back(blocks[i].m_name.str());
        return names;
    }
    static const AcadBlock* Find(const AcadBlockArray& blocks, const wchar_t* name) {
        for (INT_PTR i = 0; i < blocks.GetSize(); ++i) {
            if (blocks[i].m_name == name) return &blocks[i];
        }
        return nullptr;
    }

    std::unique_ptr<qmtest::BlockDrawing> m_drawing;
};

TEST_F(AcadDatabaseTest, ADrawingWithOnlyItsSpacesGivesNothing) {
    AcadBlockArray blocks;
    EXPECT_EQ(blocks.Read(nullptr, _SH_DENYWR, false), Acad::eOk);
    EXPECT_EQ(blocks.GetSize(), 0);
    CStringArrayEx names;
    names.Add(L"kept");
    blocks.GetBlockNames(names);
    EXPECT_EQ(Texts(names), std::vector<std::wstring>{L"kept"});
}

TEST_F(AcadDatabaseTest, ReferencesCarryPlacementLayerStateHandleAndAttributes) {
    qmtest::BlockDrawing& d = drawing();
    d.Layer(L"DOORS", true, false, true);
    AcDbObjectId door = d.Block(L"DOOR", {L"SIZE", L"TYPE"});
    AcDbObjectId ref = d.Insert(d.modelSpace(), door, {5, 6, 7}, L"DOORS", {{L"SIZE", L"90"}, {L"TYPE", L"swing"}});
    {
        AcDbObjectPointer<AcDbBlockReference> reference(ref, AcDb::kForWrite);
        reference->setScaleFactors(AcGeScale3d(2, 3, 4));
        reference->setRotation(0.5);
    }
    d.Block(L"EMPTY");
    AcadBlockArray blocks;
    ASSERT_EQ(blocks.Read(L"", _SH_DENYWR, false), Acad::eOk);
    EXPECT_EQ(Names(blocks), (std::vector<std::wstring>{L"DOOR", L"EMPTY"}));  // table order; no reference needed
    const AcadBlock& block = blocks[0];
    EXPECT_EQ(block.m_hasAttributes, 1);
    EXPECT_EQ(block.m_anonymous, 0);
    EXPECT_EQ(block.m_drawingPath, L"");
    ASSERT_EQ(block.m_references.GetSize(), 1);
    const AcadBlockRef& read = block.m_references[0];
    EXPECT_EQ(read.m_position[0], 5);
    EXPECT_EQ(read.m_position[1], 6);
    EXPECT_EQ(read.m_position[2], 7);
    EXPECT_EQ(read.m_scale.sy, 3);
    EXPECT_DOUBLE_EQ(read.m_rotation, 0.5);
    EXPECT_EQ(read.m_layer.m_name, L"DOORS");
    EXPECT_EQ(read.m_layer.m_frozen, 1);
    EXPECT_EQ(read.m_layer.m_off, 0);
    EXPECT_EQ(read.m_layer.m_locked, 1);
    EXPECT_EQ(read.m_handle, qmtest::BlockDrawing::Handle(ref).c_str());
    ASSERT_EQ(read.m_attributes.GetSize(), 2);
    EXPECT_EQ(read.m_attributes[1].m_tag, L"TYPE");
    EXPECT_EQ(read.m_attributes[1].m_value, L"swing");
    EXPECT_EQ(read.m_attributes[1].m_code, 0);
    EXPECT_EQ(blocks[1].m_references.GetSize(), 0);
    EXPECT_EQ(blocks[1].m_hasAttributes, 0);

    // A second read appends a second snapshot; copies are deep.
    ASSERT_EQ(blocks.Read(nullptr, _SH_DENYWR, false), Acad::eOk);
    EXPECT_EQ(blocks.GetSize(), 4);
    AcadBlockArray copy(blocks);
    copy[0].m_references[0].m_attributes[0].m_value = L"changed";
    EXPECT_EQ(blocks[0].m_references[0].m_attributes[0].m_value, L"90");
    CStringArrayEx names;
    blocks.GetBlockNames(names);
    EXPECT_EQ(Texts(names), (std::vector<std::wstring>{L"DOOR", L"EMPTY"}));
}

TEST_F(AcadDatabaseTest, EveryBlockStartsWithTheEightBuiltInProperties) {
    const wchar_t* titles[] = {L"X insertion point", L"Y insertion point", L"Z insertion point", L"X scale",
                               L"Y scale",           L"Z scale",           L"Rotation",          L"Layer"};
    const wchar_t* keys[] = {L"XIns", L"YIns", L"ZIns", L"XScale", L"YScale", L"ZScale", L"Rotation", L"Layer"};
    AcadBlock block;
    ASSERT_EQ(block.m_attributeDefs.GetSize(), 8);
    AcadBlockRef first;  // fills the class-wide table
    const AcadAttributeArray& table = AcadBlockRef::BuiltInProperties();
    ASSERT_EQ(table.GetSize(), 8);
    for (int i = 0; i < 8; ++i) {
        const AcadAttributeDef& definition = block.m_attributeDefs[i];
        EXPECT_EQ(definition.m_tag, titles[i]);
        EXPECT_EQ(definition.m_prompt, L"");
        EXPECT_EQ(definition.m_builtIn, 1);
        EXPECT_EQ(definition.m_constant + definition.m_invisible + definition.m_preset + definition.m_verifiable, 0);
        EXPECT_EQ(table[i].m_tag, titles[i]);
        EXPECT_EQ(table[i].m_value, keys[i]);
        EXPECT_EQ(table[i].m_code, 1 << i);
    }
    AcadBlockRef second;
    EXPECT_EQ(AcadBlockRef::BuiltInProperties().GetSize(), 8);  // filled once
    EXPECT_EQ(second.m_scale.sx, 1);
    EXPECT_EQ(second.m_layer.m_name, L"");
    AcadAttributeDefArray definitions;
    EXPECT_EQ(definitions.ReadDefinitions(nullptr), 0);
    EXPECT_EQ(definitions.GetSize(), 8);
}

TEST_F(AcadDatabaseTest, TagsAreOfferedOnceAndValuesFoundWithoutMindingCase) {
    qmtest::BlockDrawing& d = drawing();
    AcDbObjectId a = d.Block(L"A", {L"Size", L"LAYER", L"Rotation", L"Size", L"NOTE"});
    AcDbObjectId b = d.Block(L"B", {L"SIZE", L"Note"});
    d.Insert(d.modelSpace(), a, {0, 0, 0}, L"0", {{L"Size", L"small"}, {L"LAYER", L"L1"}});
    d.Insert(d.modelSpace(), b, {0, 0, 0}, L"0", {{L"SIZE", L"BIG"}, {L"Note", L"n"}});
    d.Insert(d.modelSpace(), b, {0, 0, 0}, L"0", {{L"SIZE", L"small"}, {L"SIZE", L"Small"}});
    AcadBlockArray blocks;
    blocks.Read(nullptr, _SH_DENYWR, false);
    // A's second Size and its LAYER and Rotation (built-in titles) are no
    // definitions of their own; Size and SIZE are two tags.
    const AcadBlock* blockA = Find(blocks, L"A");
    ASSERT_NE(blockA, nullptr);
    ASSERT_EQ(blockA->m_attributeDefs.GetSize(), 10);
    EXPECT_EQ(blockA->m_attributeDefs[8].m_tag, L"Size");
    EXPECT_EQ(blockA->m_attributeDefs[8].m_prompt, L"Size?");
    EXPECT_EQ(blockA->m_attributeDefs[9].m_tag, L"NOTE");

    CStringArrayEx tags;
    blocks.GetAttributeTags(tags, 0);
    EXPECT_EQ(Texts(tags), (std::vector<std::wstring>{L"Size", L"NOTE", L"SIZE", L"Note"}));
    CStringArrayEx all;
    blocks.GetAttributeTags(all, 1);
    ASSERT_EQ(all.GetSize(), 12);
    EXPECT_EQ(all[0], L"X insertion point");
    EXPECT_EQ(all[7], L"Layer");
    EXPECT_EQ(all[8], L"Size");

    struct Case {
        const wchar_t* tag;
        std::vector<std::wstring> values;
    };
    const Case cases[] = {
        {L"size", {L"small", L"BIG", L"Small"}},
        {L"SIZE", {L"small", L"BIG", L"Small"}},
        {L"layer", {L"L1"}},  // not offered as a tag, found all the same
        {L"NOTE", {L"n"}},
        {L"nothing", {}},
    };
    for (const Case& c : cases) {
        CStringArrayEx values;
        blocks.GetAttributeValues(c.tag, values);
        EXPECT_EQ(Texts(values), c.values) << cadhost::ToUtf8(c.tag);
    }
    CStringArrayEx values;
    values.Add(L"BIG");
    blocks.GetAttributeValues(L"Size", values);
    EXPECT_EQ(Texts(values), (std::vector<std::wstring>{L"BIG", L"small", L"Small"}));
}

TEST_F(AcadDatabaseTest, AnonymousBlocksStayOnlyAsCopiesOfADynamicBlock) {
    qmtest::BlockDrawing& d = drawing();
    AcDbObjectId dynamic = d.Block(L"D");
    d.AddProperty(dynamic, L"Width", AcDbEvalVariant(1234567.0), true, false);
    d.AddProperty(dynamic, L"Visibility", AcDbEvalVariant(L"Open"));
    d.AddProperty(dynamic, L"Leaves", AcDbEvalVariant(short(2)));
    d.AddProperty(dynamic, L"Panels", AcDbEvalVariant(Adesk::Int32(70000)));
    d.AddProperty(dynamic, L"Origin", AcDbEvalVariant(AcGePoint3d(1, 2, 3)));
    AcDbObjectId copy1 = d.Block(L"*U1"), copy2 = d.Block(L"*U2"), unused = d.Block(L"*U3"),
                 plain = d.Block(L"*U4");
    d.Tie(copy1, dynamic);
    d.Tie(copy2, dynamic);
    d.Tie(unused, dynamic);
    d.Insert(d.modelSpace(), dynamic, {0, 0, 0});
    AcDbObjectId first = d.Insert(d.modelSpace(), copy1, {1, 0, 0});
    d.SetProperty(first, L"Visibility", AcDbEvalVariant(L"Closed"));
    d.Insert(d.modelSpace(), copy1, {2, 0, 0});
    d.Insert(d.modelSpace(), copy2, {3, 0, 0}, L"0", {{L"REAL", L"attribute"}});
    d.Insert(d.modelSpace(), plain, {4, 0, 0});

    AcadBlockArray blocks;
    blocks.Read(nullptr, _SH_DENYWR, false);
    // The named record and the two copies in use, all named D; the copy
    // without a reference and the anonymous block of no dynamic block stay out.
    EXPECT_EQ(Names(blocks), (std::vector<std::wstring>{L"D", L"D", L"D"}));
    CStringArrayEx names;
    blocks.GetBlockNames(names);
    EXPECT_EQ(Texts(names), std::vector<std::wstring>{L"D"});

    // The named record's reference brings values but no definitions.
    ASSERT_EQ(blocks[0].m_attributeDefs.GetSize(), 8);
    ASSERT_EQ(blocks[0].m_references.GetSize(), 1);
    const AcadAttributeArray& values = blocks[0].m_references[0].m_attributes;
    ASSERT_EQ(values.GetSize(), 4);  // the point is passed over
    EXPECT_EQ(values[0].m_tag, L"Width");
    EXPECT_EQ(values[0].m_value, L"1.23457e+006");
    EXPECT_EQ(values[1].m_value, L"Open");
    EXPECT_EQ(values[2].m_value, L"2");
    EXPECT_EQ(values[3].m_value, L"70000");
    // A copy's first reference names it and defines its properties; the
    // second brings values only. A dynamic reference brings no attributes.
    const AcadBlock& copy = blocks[1];
    EXPECT_EQ(copy.m_anonymous, 0);
    ASSERT_EQ(copy.m_attributeDefs.GetSize(), 12);
    EXPECT_EQ(copy.m_attributeDefs[8].m_tag, L"Width");
    EXPECT_EQ(copy.m_attributeDefs[8].m_prompt, L"Width");
    EXPECT_EQ(copy.m_attributeDefs[8].m_constant, 1);   // read-only
    EXPECT_EQ(copy.m_attributeDefs[8].m_invisible, 0);  // shown: false
    EXPECT_EQ(copy.m_attributeDefs[9].m_invisible, 1);
    ASSERT_EQ(copy.m_references.GetSize(), 2);
    EXPECT_EQ(copy.m_references[0].m_attributes[1].m_value, L"Closed");
    EXPECT_EQ(copy.m_references[1].m_attributes[1].m_value, L"Open");
    ASSERT_EQ(blocks[2].m_references.GetSize(), 1);
    EXPECT_EQ(blocks[2].m_references[0].m_attributes.GetSize(), 4);
    EXPECT_EQ(blocks[2].m_references[0].m_attributes[0].m_tag, L"Width");

    CStringArrayEx tags;
    blocks.GetAttributeTags(tags, 0);
    EXPECT_EQ(Texts(tags), (std::vector<std::wstring>{L"Width", L"Visibility", L"Leaves", L"Panels"}));
    CStringArrayEx visibility;
    blocks.GetAttributeValues(L"visibility", visibility);
    EXPECT_EQ(Texts(visibility), (std::vector<std::wstring>{L"Open", L"Closed"}));
}

TEST_F(AcadDatabaseTest, ADynamicBlockWhoseReferencesAreUnchangedOffersNoTagsButItsValues) {
    qmtest::BlockDrawing& d = drawing();
    AcDbObjectId dynamic = d.Block(L"D");
    d.AddProperty(dynamic, L"Width", AcDbEvalVariant(0.9));
    d.Insert(d.modelSpace(), dynamic, {0, 0, 0});
    AcadBlockArray blocks;
    blocks.Read(nullptr, _SH_DENYWR, false);
    CStringArrayEx tags;
    blocks.GetAttributeTags(tags, 0);
    EXPECT_EQ(tags.GetSize(), 0);
    CStringArrayEx values;
    blocks.GetAttributeValues(L"WIDTH", values);
    EXPECT_EQ(Texts(values), std::vector<std::wstring>{L"0.9"});
}

TEST_F(AcadDatabaseTest, ALayerTheTableCannotFindIsReportedForEachReference) {
    qmtest::BlockDrawing& d = drawing();
    AcDbObjectId block = d.Block(L"B");
    d.Insert(d.modelSpace(), block, {0, 0, 0}, L"GONE");
    d.Insert(d.modelSpace(), block, {1, 0, 0}, L"GONE");
    d.Erase(d.Layer(L"GONE"));
    TakeOutput();
    AcadBlockArray blocks;
    blocks.Read(nullptr, _SH_DENYWR, false);
    // Each report begins a line of its own (the command line shows no empty
    // line before the first).
    EXPECT_EQ(TakeOutput(), "ARX ERROR: eKeyNotFound. AcadDatabase: 92\nARX ERROR: eKeyNotFound. AcadDatabase: 92");
    ASSERT_EQ(blocks.GetSize(), 1);
    ASSERT_EQ(blocks[0].m_references.GetSize(), 2);
    EXPECT_EQ(blocks[0].m_references[1].m_layer.m_name, L"GONE");
    EXPECT_EQ(blocks[0].m_references[1].m_layer.m_frozen, 0);

    // ReadLayerState itself: an empty name or no database does nothing.
    AcadLayer layer;
    layer.m_frozen = 1;
    ReadLayerState(L"", layer, db());
    ReadLayerState(L"0", layer, nullptr);
    EXPECT_EQ(layer.m_name, L"");
    EXPECT_EQ(layer.m_frozen, 1);
    ReadLayerState(L"0", layer, db());
    EXPECT_EQ(layer.m_name, L"0");
    EXPECT_EQ(layer.m_frozen, 0);
    EXPECT_EQ(TakeOutput(), "");
}

TEST_F(AcadDatabaseTest, ErasedReferencesAndLayoutsAreLeftOut) {
    qmtest::BlockDrawing& d = drawing();
    AcDbObjectId block = d.Block(L"B"), holder = d.Block(L"HOLDER");
    d.Insert(d.modelSpace(), block, {0, 0, 0});
    d.Erase(d.Insert(d.modelSpace(), block, {1, 0, 0}));
    d.Insert(holder, block, {0, 0, 0});  // a reference inside a definition is read once
    AcadBlockArray blocks;
    blocks.Read(nullptr, _SH_DENYWR, false);
    EXPECT_EQ(Names(blocks), (std::vector<std::wstring>{L"B", L"HOLDER"}));
    EXPECT_EQ(blocks[0].m_references.GetSize(), 2);
    for (INT_PTR i = 0; i < blocks.GetSize(); ++i) EXPECT_EQ(blocks[i].m_layout, 0);
}

TEST_F(AcadDatabaseTest, AFileIsReadAsTheFiguresOfEzdxfSay) {
    std::filesystem::path path = kFixtures / "blocks_r2010.dxf";
    AcadBlockArray blocks;
    ASSERT_EQ(blocks.Read(cadhost::FromUtf8(path.string()).c_str(), _SH_DENYWR, false), Acad::eOk);

    // The figures: "block NAME REFERENCES HAS_ATTDEFS ANONYMOUS", "attdef
    // BLOCK TAG PROMPT CONSTANT INVISIBLE PRESET VERIFY", "attrib HANDLE TAG VALUE".
    std::ifstream in(kFixtures / "blocks_r2010.figures.tsv");
    std::string line;
    std::vector<std::wstring> expectedNames;
    std::map<std::wstring, int> references;
    std::map<std::wstring, std::vector<std::wstring>> definitions, attributes;
    while (std::getline(in, line)) {
        std::vector<std::string> f;
        std::stringstream fields(line);
        std::string field;
        while (std::getline(fields, field, '\t')) f.push_back(field);
        if (f.size() == 5 && f[0] == "block" && f[4] == "0") {
            expectedNames.push_back(cadhost::FromUtf8(f[1]));
            references[cadhost::FromUtf8(f[1])] = std::stoi(f[2]);
        } else if (f.size() == 8 && f[0] == "attdef" && f[2] != "LAYER") {
            // An attribute whose tag is a built-in title (LAYER) is no
            // definition of its own in the model.
            definitions[cadhost::FromUtf8(f[1])].push_back(cadhost::FromUtf8(f[2] + "|" + f[3] + "|" + f[4] + f[5] +
                                                                             f[6] + f[7]));
        } else if (f.size() == 4 && f[0] == "attrib") {
            attributes[cadhost::FromUtf8(f[1])].push_back(cadhost::FromUtf8(f[2] + "=" + f[3]));
        }
    }
    ASSERT_FALSE(expectedNames.empty());
    EXPECT_EQ(Names(blocks), expectedNames);  // the anonymous block is left out

    int attributed = 0;
    for (INT_PTR i = 0; i < blocks.GetSize(); ++i) {
        const AcadBlock& block = blocks[i];
        std::wstring name = block.m_name.str();
        EXPECT_EQ(block.m_drawingPath, path.string().c_str());
        EXPECT_EQ(block.m_references.GetSize(), references[name]) << cadhost::ToUtf8(name);
        std::vector<std::wstring> read;
        for (INT_PTR j = 8; j < block.m_attributeDefs.GetSize(); ++j) {
            const AcadAttributeDef& d = block.m_attributeDefs[j];
            read.push_back((d.m_tag + L"|" + d.m_prompt + L"|").str() + std::to_wstring(d.m_constant) +
                           std::to_wstring(d.m_invisible) + std::to_wstring(d.m_preset) +
                           std::to_wstring(d.m_verifiable));
        }
        EXPECT_EQ(read, definitions[name]) << cadhost::ToUtf8(name);
        for (INT_PTR j = 0; j < block.m_references.GetSize(); ++j) {
            const AcadBlockRef& reference = block.m_references[j];
            auto found = attributes.find(reference.m_handle.str());
            if (found == attributes.end()) {
                // References inside definitions are not in the figures' lists.
                continue;
            }
            std::vector<std::wstring> values;
            for (INT_PTR k = 0; k < reference.m_attributes.GetSize(); ++k)
                values.push_back((reference.m_attributes[k].m_tag + L"=" + reference.m_attributes[k].m_value).str());
            EXPECT_EQ(values, found->second) << cadhost::ToUtf8(reference.m_handle.str());
            ++attributed;
        }
    }
    EXPECT_EQ(attributed, static_cast<int>(attributes.size()));

    AcadBlockArray missing;
    EXPECT_NE(missing.Read(L"/no/such/drawing.dxf", _SH_DENYWR, false), Acad::eOk);
    EXPECT_EQ(missing.GetSize(), 0);
}

}  // namespace
