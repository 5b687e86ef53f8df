#include "support/FieldDrawings.h"

#include <adslib.h>
#include <dbdict.h>
#include <dbmtext.h>
#include <dbobjptr.h>
#include <dbsymtb.h>

#include <gtest/gtest.h>

#include <sstream>

#include "core/Utf8.h"

namespace qmtest {

AcDbObjectId AddFieldText(AcDbObjectId spaceId, const AcGePoint3d& where, const std::wstring& textWithCodes,
                          int option) {
    auto* mtext = new AcDbMText;
    mtext->setLocation(where);
    mtext->setTextHeight(0.5);
    mtext->setContents(textWithCodes.c_str());
    AcDbObjectId id;
    {
        AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> space(spaceId, AcDb::kForWrite);
        EXPECT_EQ(space.openStatus(), Acad::eOk);
        EXPECT_EQ(space->appendAcDbEntity(id, mtext), Acad::eOk);
    }
    auto* field = new AcDbField(textWithCodes.c_str(), true);
    field->setEvaluationOption(option);
    EXPECT_EQ(field->setInObject(mtext, L"TEXT"), Acad::eOk);
    for (int i = 0; i < field->childCount(); ++i) {
        AcDbField* child = nullptr;
        if (field->getChild(i, child, AcDb::kForWrite) != Acad::eOk) continue;
        child->setEvaluationOption(option);
        child->close();
    }
    field->evaluate(AcDbField::kPreview, mtext->database());
    mtext->setContents(field->getValue());
    field->close();
    mtext->close();
    return id;
}

AcDbObjectId TextFieldOf(AcDbObjectId textId) {
    AcDbObjectPointer<AcDbObject> text(textId);
    if (text.openStatus() != Acad::eOk || text->extensionDictionary().isNull()) return AcDbObjectId();
    AcDbObjectPointer<AcDbDictionary> extension(text->extensionDictionary());
    AcDbObjectId fieldsId, fieldId;
    if (extension.openStatus() != Acad::eOk || extension->getAt(L"ACAD_FIELD", fieldsId) != Acad::eOk)
        return AcDbObjectId();
    AcDbObjectPointer<AcDbDictionary> fields(fieldsId);
    if (fields.openStatus() != Acad::eOk || fields->getAt(L"TEXT", fieldId) != Acad::eOk) return AcDbObjectId();
    return fieldId;
}

AcDbObjectId ChildFieldOf(AcDbObjectId textId, int index) {
    AcDbObjectPointer<AcDbField> field(TextFieldOf(textId), AcDb::kForRead);
    if (field.openStatus() != Acad::eOk) return AcDbObjectId();
    AcDbField* child = nullptr;
    if (field->getChild(index, child, AcDb::kForRead) != Acad::eOk || !child) return AcDbObjectId();
    AcDbObjectId id = child->objectId();
    child->close();
    return id;
}

std::wstring MTextContents(AcDbObjectId textId) {
    AcDbObjectPointer<AcDbMText> text(textId);
    if (text.openStatus() != Acad::eOk) return L"(no text)";
    ACHAR* contents = text->contents();
    std::wstring out = contents ? contents : L"";
    acutDelBuffer(contents);
    return out;
}

std::wstring HandleText(AcDbObjectId id) {
    ACHAR text[32] = L"";
    id.handle().getIntoAsciiBuffer(text, 32);
    return text;
}

AcDbObjectId IdOfHandle(AcDbDatabase* database, const std::wstring& handle) {
    AcDbObjectId id;
    database->getAcDbObjectId(id, false, AcDbHandle(handle.c_str()));
    return id;
}

namespace {

std::wstring Describe(const AcValue& value) {
    std::wostringstream out;
    out << value.dataType() << ":";
    const ACHAR* text = nullptr;
    Adesk::Int32 whole = 0;
    double x = 0, y = 0, z = 0;
    AcDbObjectId id;
    if (value.get(text)) out << L"\"" << text << L"\"";
    else if (value.get(whole)) out << whole;
    else if (value.get(x, y, z)) out << x << L"," << y << L"," << z;
    else if (value.get(x, y)) out << x << L"," << y;
    else if (value.get(x)) out.precision(17), out << x;
    else if (value.get(id)) out << HandleText(id);
    return out.str();
}

}  // namespace

std::wstring DescribeField(AcDbObjectId fieldId) {
    AcDbObjectPointer<AcDbField> field(fieldId, AcDb::kForRead);
    if (field.openStatus() != Acad::eOk) return L"(no field)";
    std::wostringstream out;
    int errorCode = 0;
    ACHAR* message = nullptr;
    int status = field->evaluationStatus(&errorCode, &message);
    out << L"evaluator " << field->evaluatorId() << L"\ncode " << field->getFieldCode(AcDbField::kFieldCode)
        << L"\nformat " << field->getFormat() << L"\noption " << field->evaluationOption() << L"\nstatus " << status
        << L" " << errorCode << L" " << (message ? message : L"") << L"\nvalue " << field->getValue();
    acutDelBuffer(message);
    AcFdFieldValue value;
    if (field->getValue(value) == Acad::eOk) out << L"\ntyped " << Describe(value);
    for (int i = 0; i < field->dataCount(); ++i) {
        AcFdFieldValue data;
        field->getData(field->dataKey(i), &data);
        out << L"\ndata " << field->dataKey(i) << L" = " << Describe(data);
    }
    out << L"\nchildren " << field->childCount();
    for (int i = 0; i < field->childCount(); ++i) {
        AcDbField* child = nullptr;
        if (field->getChild(i, child, AcDb::kForRead) != Acad::eOk || !child) continue;
        out << L" " << HandleText(child->objectId());
        child->close();
    }
    return out.str();
}

std::map<std::string, FieldFixtureText> ReadFieldFixture() {
    std::map<std::string, FieldFixtureText> out;
    std::istringstream in(ReadText(FixturePath("tablecell_fields.fields.tsv")));
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        std::vector<std::string> fields(1);
        for (char c : line) {
            if (c == '\t') fields.emplace_back();
            else fields.back() += c;
        }
        if (fields.size() < 5) continue;
        out[fields[0]] = FieldFixtureText{fields[0], fields[1], fields[2], fields[3], fields[4]};
    }
    return out;
}

std::map<std::string, std::vector<DxfGroup>> DxfObjectsByHandle(const std::filesystem::path& path) {
    std::map<std::string, std::vector<DxfGroup>> out;
    std::vector<DxfGroup> groups = ReadDxfGroups(path);
    for (size_t i = 0; i < groups.size(); ++i) {
        if (groups[i].code != 0) continue;
        size_t end = i + 1;
        while (end < groups.size() && groups[end].code != 0) ++end;
        std::string handle;
        for (size_t k = i + 1; k < end && handle.empty(); ++k) {
            if (groups[k].code == 5 || groups[k].code == 105) handle = groups[k].value;
            if (groups[k].code == 100) break;
        }
        if (!handle.empty()) out[handle] = std::vector<DxfGroup>(groups.begin() + i, groups.begin() + end);
        i = end - 1;
    }
    return out;
}

}  // namespace qmtest
