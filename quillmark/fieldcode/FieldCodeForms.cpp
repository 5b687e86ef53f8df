#include "fieldcode/FieldCodeForms.h"

#include <string>

CString JoinTexts(const CStringArray& texts, const ACHAR* separator) {
    CString joined;
    for (INT_PTR i = 0; i < texts.GetSize(); ++i) {
        if (i > 0) joined += separator;
        joined += texts.GetAt(i);
    }
    return joined;
}

CString ComposeObjectsFieldCode(const ACHAR* evaluatorId, const CStringArray& handles, const CString& format) {
    return ComposeObjectsFieldCode(evaluatorId, JoinTexts(handles, L";"), format);
}

CString ComposeObjectsFieldCode(const ACHAR* evaluatorId, const CString& handleList, const CString& format) {
    // "%%<\\%s Object(<%s>)>%%", or with " \\f \"%s\"" before the end, put
    // together piece by piece: the list may run to a hundred thousand
    // handles, which a formatted print would copy over and over.
    std::wstring code;
    code.reserve(handleList.GetLength() + format.GetLength() + 64);
    code += L"%<\\";
    if (evaluatorId) code += evaluatorId;
    code += L" Object(<";
    code += handleList.str();
    code += L">)";
    if (!format.IsEmpty()) {
        code += L" \\f \"";
        code += format.str();
        code += L"\"";
    }
    code += L">%";
    CString composed(std::move(code));
    composed.Trim();
    return composed;
}

CString ComposeBlockCountFieldCode(const BlockCountCodeState& state) {
    CString code;
    if (state.blockNames.IsEmpty()) {
        code.Format(L"%%<\\%s %s>%%", QM_EVALUATOR_BLOCK_COUNT, L"");
        return code;
    }
    CString piece;
    code.Format(L"%%<\\%s \"%s\"", QM_EVALUATOR_BLOCK_COUNT, (const ACHAR*)JoinTexts(state.blockNames, L";"));
    if (!state.layers.IsEmpty()) {
        piece.Format(L" \\layer \"%s\"", (const ACHAR*)JoinTexts(state.layers, L";"));
        code += piece;
    }
    if (!state.tag.IsEmpty()) {
        piece.Format(L" \\op \"%s\" \\tag \"%s\" \\value \"%s\"", (const ACHAR*)state.op, (const ACHAR*)state.tag,
                     (const ACHAR*)state.value);
        code += piece;
    }
    if (state.nested) code += L" \\nested";
    if (state.windowMode) {
        piece.Format(L" \\Space(%s) \\Window(%g,%g,%g:%g,%g,%g)", (const ACHAR*)state.spaceHandle,
                     state.firstCorner[0], state.firstCorner[1], state.firstCorner[2], state.secondCorner[0],
                     state.secondCorner[1], state.secondCorner[2]);
        code += piece;
    }
    if (!state.format.IsEmpty()) {
        piece.Format(L" \\f \"%s\"", (const ACHAR*)state.format);
        code += piece;
    }
    code += L">%";
    return code;
}

CString ComposeTextFileFieldCode(const CString& path, CFieldPathStep* pathStep) {
    CString codePath = pathStep ? pathStep->Apply(path) : path;
    CString code;
    code.Format(L"%%<\\%s %s>%%", QM_EVALUATOR_TEXT_FILE, (const ACHAR*)codePath);
    return code;
}

CString ComposeExcelCellFieldCode(const CString& path, const CString& sheet, const CString& column, const CString& row,
                                  CFieldPathStep* pathStep) {
    CString code;
    if (path.IsEmpty() || sheet.IsEmpty() || column.IsEmpty() || row.IsEmpty()) {
        code.Format(L"%%<\\%s >%%", QM_EVALUATOR_EXCEL_CELL);
        return code;
    }
    CString letters = column;
    int number = _wtoi(column);
    if (number > 0) {
        // A number with no column name goes in as typed; the evaluator
        // refuses it rather than meet a made-up name.
        CString named = ColumnLetters(number);
        if (!named.IsEmpty()) letters = named;
    }
    CString codePath = pathStep ? pathStep->Apply(path) : path;
    code.Format(L"%%<\\%s %s:%s:$%s$%s>%%", QM_EVALUATOR_EXCEL_CELL, (const ACHAR*)codePath, (const ACHAR*)sheet,
                (const ACHAR*)letters, (const ACHAR*)row);
    return code;
}

CString ColumnLetters(int column) {
    CString letters;
    if (column <= 0) {
        letters = L"A";
    } else if (column <= 26) {
        letters.Format(L"%c", static_cast<wchar_t>(L'A' + column - 1));
    } else if (column <= 702) {
        int c = column - 1;
        letters.Format(L"%c%c", static_cast<wchar_t>(64 + c / 26), static_cast<wchar_t>(65 + c % 26));
    }
    return letters;
}

CString MakeCellName(int row, int column) {
    CString name;
    if (row < 1 || column < 1 || column > 702) return name;
    int c = column - 1;
    wchar_t last = static_cast<wchar_t>(L'A' + c % 26);
    if (column <= 26)
        name.Format(L"%c%c%c%d", L'$', last, L'$', row);
    else
        name.Format(L"%c%c%c%c%d", L'$', static_cast<wchar_t>(64 + c / 26), last, L'$', row);
    return name;
}

CString ComposeTableCellReference(const CString& tableHandle, const CString& cellName) {
    CString reference;
    reference.Format(L"Table(<%s>).%s", (const ACHAR*)tableHandle, (const ACHAR*)cellName);
    return reference;
}

CString ComposeTableCellFieldCode(const CString& cellReference) {
    CString code;
    code.Format(L"%%<\\%s %s>%%", QM_EVALUATOR_TABLE_CELL, (const ACHAR*)cellReference);
    return code;
}
