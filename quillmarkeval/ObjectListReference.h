// The object list of AcArea and AcLength codes: "Object(<2F1;2F5>)", the
// handles of the measured objects in hexadecimal, separated by ";".
#pragma once

#include "StdAfx.h"

#include <vector>

// One handle of a list: where its text stands in the list's text, and the
// handle it names.
struct ObjectListHandle {
    int start = 0;
    int length = 0;
    AcDbHandle handle;
};

// Reads an object list, blanks around it allowed; the word Object in any
// case. An empty list, "Object(<>)", is a list. Answers 1 and fills handles
// in the order of the text, or answers 0 with handles emptied and why
// naming the first fault.
int ReadObjectList(const ACHAR* text, int length, std::vector<ObjectListHandle>& handles, CString& why);
int ReadObjectList(const CString& text, std::vector<ObjectListHandle>& handles, CString& why);

// The list's text as the evaluators keep it in their data item: the word
// written "Object", the handles as the text gave them.
CString ObjectListDataText(const ACHAR* text, const std::vector<ObjectListHandle>& handles);
CString ObjectListDataText(const CString& text, const std::vector<ObjectListHandle>& handles);
// Whether data is that text already, compared where both lie.
bool IsObjectListDataText(const ACHAR* data, const ACHAR* text, const std::vector<ObjectListHandle>& handles);
