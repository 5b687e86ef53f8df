// Free helpers shared by the field code readers, the option pages and the
// dialogs: text matching and cutting, value rendering, layer names and
// system variables.
#pragma once

#include "StdAfx.h"

// ---- Text helpers --------------------------------------------------------

// Searches pattern in text from the left; the first place where the whole
// pattern matches wins. Notation: {} a capture group, [0-9] a character of
// a range, . any character, + one or more of the item before (as many as
// there are, none given back), * none or more (as many as the rest of the
// pattern leaves), \[ and \] a bracket; every other character is itself.
// captures is emptied, and on a match holds the text of each group in the
// order of their opening braces. Non-zero on a match.
BOOL MatchPattern(CString text, CString pattern, CStringArray& captures);

// Cuts a text into tokens at a set of delimiter characters. A character is
// a delimiter by its low 8 bits. Runs of delimiters count as one; no token
// is ever empty.
class Tokenizer {
public:
    Tokenizer(const CString& text, const CString& delimiters);

    // The next token in out and true, or out emptied and false at the end.
    bool Next(CString& out);

private:
    bool IsDelimiter(wchar_t ch) const;

    CString m_text;
    unsigned char m_delimiters[32];  // 256 bits
    int m_position;
};

// A string array with a search from both ends at once.
class CStringArrayEx : public CStringArray {
public:
    CStringArrayEx() = default;
    CStringArrayEx(const CStringArray& other);

    // The index of an element equal to text (ignoring case when noCase is
    // non-zero), comparing element i, then element j, with i from the front
    // and j from the back; -1 when there is none. With duplicates the index
    // found need not be the lowest.
    INT_PTR Find(CString text, int noCase) const;
};

// Reads up to three numbers separated by commas, such as "(1,2,3)", into x,
// y and z; a coordinate without a number keeps its value. Leading "(" and
// blanks and trailing ")" and blanks are trimmed first, in that order. True
// when at least one number was read.
bool ParsePointText(CString text, double& x, double& y, double& z);

// Cuts text at each place where separator occurs, going on one character
// behind it; empty parts between two separators are kept, an empty part at
// the end is not. Without the separator the array holds the whole text and
// the answer is false.
bool SplitText(CString text, CString separator, CStringArray& array);

// ---- Value routines --------------------------------------------------------

// True when the two differ by at most 1e-6.
bool IsNearlyEqual(double a, double b);

// The host's display text of a value under a field format text.
CString FormatDoubleValue(double value, const CString& format);
CString FormatLongValue(long value, const CString& format);

// The names of the layers, in layer table order, of a database or, with
// null, of the working database. 1 when the table was walked, 0 otherwise
// (names is empty then).
int GetLayerNames(CStringArray& names, AcDbDatabase* database = nullptr);

// A system variable as an integer: 0 and the 16-bit integer of the result
// buffer, whatever the variable's type, or 3 with value left alone when the
// host does not answer.
int GetSysVarInt(LPCTSTR name, int& value);

// ---- List routines ---------------------------------------------------------

// The index of the first entry whose item data equals data, or -1.
int FindListItemByData(CListBox& list, DWORD data);
int FindComboItemByData(CComboBox& combo, DWORD data);

// Widens a list box's horizontal scroll range to its widest entry, in the
// list's own font, plus four border widths.
void FitListExtent(CListBox& list);

// Widens a combo box's drop-down list to its widest entry plus a vertical
// scroll bar, plus the width of one blank.
void FitComboDropWidth(CComboBox& combo);
