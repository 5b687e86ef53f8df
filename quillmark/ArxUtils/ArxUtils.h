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

// ---- Drawing helpers -------------------------------------------------------

// Prints "ARX ERROR: <status text>. <source>: <line>" on the command line
// when status is not eOk; prints nothing for eOk. Never stops the caller.
void ReportArxError(Acad::ErrorStatus status, const ACHAR* sourceName, int line);

// The handle of an open object as hexadecimal text.
void GetObjectHandleText(const AcDbObject* object, CString& text);
// The same for an object by id; the empty text when it does not open.
void GetHandleText(const AcDbObjectId& id, CString& text);

// A text value in an object's extended data: a chain headed by the
// application's 1001 group, followed by 1000 groups. setXdata registers the
// application when the object has none of its data; with append the value
// goes last, without it the value replaces every value of the application.
// It answers 1 when it wrote and 0 when it refused (null object or empty
// application name). getXdata gives the first 1000 group that does not
// stand between a pair of 1002 groups: 1 when found, 0 when not (text is
// emptied when the object has no data of the application, else left as it
// was). The object forms are the module's exports and keep these names.
ACRX_MODULE_EXPORT int setXdata(AcDbObject* object, const ACHAR* appName, CString value, int append);
ACRX_MODULE_EXPORT int getXdata(AcDbObject* object, const ACHAR* appName, CString& value);
// The same by id (the object is opened for read, and for write only to
// write) and by entity name.
int setXdata(AcDbObjectId id, const ACHAR* appName, CString value, int append);
int getXdata(AcDbObjectId id, const ACHAR* appName, CString& value);
int setXdata(const ads_name entity, const ACHAR* appName, CString value, int append);
int getXdata(const ads_name entity, const ACHAR* appName, CString& value);

// Every 1000 value of the application equal to oldValue (not minding case)
// becomes newValue; 1 when one changed and the data was written.
int ReplaceXdataString(AcDbObject* object, const ACHAR* appName, const CString& oldValue, const CString& newValue);
int ReplaceXdataString(AcDbObjectId id, const ACHAR* appName, const CString& oldValue, const CString& newValue);
int ReplaceXdataString(const ads_name entity, const ACHAR* appName, const CString& oldValue,
                       const CString& newValue);
// The first 1000 value of the application equal to value (not minding
// case) goes; 1 when one went and the data was written.
int RemoveXdataString(AcDbObject* object, const ACHAR* appName, const CString& value);
int RemoveXdataString(AcDbObjectId id, const ACHAR* appName, const CString& value);
int RemoveXdataString(const ads_name entity, const ACHAR* appName, const CString& value);
