#include "fieldcode/FieldCodeReading.h"

#include "ArxUtils/ArxUtils.h"

namespace {

// The trimmed value of the first token that carries the tag.
bool FindTagValue(const CString& text, CString tag, CString& value) {
    if (text.IsEmpty() || tag.IsEmpty()) return false;
    tag.TrimLeft(L'\\');
    Tokenizer tokens(text, L"\\");
    CString token;
    while (tokens.Next(token)) {
        if (token.GetLength() <= tag.GetLength()) continue;
        if (_wcsnicmp(token, tag, static_cast<size_t>(tag.GetLength())) != 0) continue;
        value = token.Mid(tag.GetLength());
        value.Trim();
        value.Trim(L'"');
        return true;
    }
    return false;
}

}  // namespace

void ReadTagValue(const CString& text, CString tag, CString& out) {
    CString value;
    if (FindTagValue(text, tag, value)) out = value;
}

void ReadTagList(const CString& text, CString tag, CStringArray& outArray) {
    CString value;
    if (!FindTagValue(text, tag, value)) return;
    Tokenizer elements(value, L";");
    CString element;
    while (elements.Next(element)) outArray.Add(element);
}

void ReadObjectHandles(CString item, CStringArray& handles) {
    item.TrimLeft(L"Object");  // the letters as a set, then the brackets
    item.TrimLeft(L"(<");
    item.TrimRight(L">)");
    Tokenizer tokens(item, L";");
    CString handle;
    while (tokens.Next(handle)) handles.Add(handle);
}

BOOL ReadBlockCountData(CString item, BlockCountData& data) {
    item.TrimLeft(L" \"");
    item.TrimRight();
    if (item.IsEmpty()) return FALSE;

    int quote = item.Find(L'"');
    Tokenizer names(quote < 0 ? item : item.Left(quote), L";");
    CString name;
    while (names.Next(name)) data.m_blockNames.Add(name);

    CString window;
    ReadTagValue(item, L"\\Window", window);
    window.Trim(L" ()");
    if (!window.IsEmpty()) {
        int colon = window.Find(L':');
        CString first = colon < 0 ? window : window.Left(colon);
        CString second = colon < 0 ? CString() : window.Mid(colon + 1);
        ParsePointText(first, data.m_firstCorner[0], data.m_firstCorner[1], data.m_firstCorner[2]);
        ParsePointText(second, data.m_secondCorner[0], data.m_secondCorner[1], data.m_secondCorner[2]);
        data.m_window = TRUE;
    }

    ReadTagList(item, L"\\layer", data.m_layers);
    ReadTagValue(item, L"\\tag", data.m_tag);
    ReadTagValue(item, L"\\op", data.m_op);
    ReadTagValue(item, L"\\value", data.m_value);
    if (item.Find(L"\\nested") >= 0) data.m_nested = TRUE;
    return TRUE;
}
