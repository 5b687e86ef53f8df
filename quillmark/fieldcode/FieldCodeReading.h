// Reading a stored field back into page state: the tagged arguments of a
// data item that an evaluator stored beside the field code.
#pragma once

#include "StdAfx.h"

// Finds the value of a tag (with or without its leading backslashes) in an
// argument text cut at backslashes: the first token that is longer than the
// tag and begins with it, ignoring case. The rest of that token, trimmed of
// white space and then of double quotes at either end, goes to out; without
// such a token out stays as it was.
void ReadTagValue(const CString& text, CString tag, CString& out);

// The same for a ";"-separated list: each non-empty element is appended to
// outArray, which is not emptied first.
void ReadTagList(const CString& text, CString tag, CStringArray& outArray);

// The handles of an "AcArea Data" or "AcLength Data" item such as
// "Object(<2F1;2F5>)", appended to handles in order.
void ReadObjectHandles(CString item, CStringArray& handles);

// What an "AcBlockCount Data" item says, for the Block Count page to apply.
struct BlockCountData {
    CStringArray m_blockNames;  // to be ticked, in order
    BOOL m_window = FALSE;      // a \Window was read into the two corners
    double m_firstCorner[3] = {0, 0, 0};
    double m_secondCorner[3] = {0, 0, 0};
    CStringArray m_layers;      // appended to
    CString m_tag, m_op, m_value;  // left alone when the item has none
    BOOL m_nested = FALSE;
};

// Reads an item such as "DOOR;WIN" \layer "0;WALL" \nested into data: the
// block names up to the first double quote, \Window corners, \layer, \tag,
// \op, \value, and \nested (exact in case). FALSE, with data unchanged,
// when the item holds nothing but blanks and quotes.
BOOL ReadBlockCountData(CString item, BlockCountData& data);
