// Fields in drawings for tests: texts that hold fields, the fields filed
// under them, the figures of tests/fixtures/tablecell_fields.dxf, and DXF
// files taken apart object by object.
#pragma once

#include <dbfield.h>
#include <dbmain.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "support/DxfGroups.h"

namespace qmtest {

// A multiline text in a space whose content holds field codes: its TEXT
// field (evaluator _text) files the codes as child fields. The fields take
// the evaluation option; the text shows the value of a preview evaluation.
AcDbObjectId AddFieldText(AcDbObjectId spaceId, const AcGePoint3d& where, const std::wstring& textWithCodes,
                          int option = AcDbField::kAutomatic);
// The TEXT field of a text, and its child field at an index; null when missing.
AcDbObjectId TextFieldOf(AcDbObjectId textId);
AcDbObjectId ChildFieldOf(AcDbObjectId textId, int index = 0);
// The contents of a multiline text with its formatting codes.
std::wstring MTextContents(AcDbObjectId textId);
// The handle of an object as hexadecimal text.
std::wstring HandleText(AcDbObjectId id);
AcDbObjectId IdOfHandle(AcDbDatabase* database, const std::wstring& handle);

// A field's properties as text, for comparing fields: evaluator, code,
// format, option, status, value text, value type and data items.
std::wstring DescribeField(AcDbObjectId fieldId);

// One text of tablecell_fields.dxf: name, handles of the text, its TEXT
// field and the child field, and the child's cell reference or code.
struct FieldFixtureText {
    std::string name, text, textField, child, arguments;
};
std::map<std::string, FieldFixtureText> ReadFieldFixture();

// The objects of a DXF file by handle (entities, objects, table records),
// each with its groups from its type on; objects without a handle are
// left out.
std::map<std::string, std::vector<DxfGroup>> DxfObjectsByHandle(const std::filesystem::path& path);

}  // namespace qmtest
