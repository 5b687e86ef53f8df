// The file a field code names, as its evaluator reads it: a full path as it
// stands, a relative one from the folder of the drawing's file, with "."
// and ".." resolved. A path written with backslashes, as a drawing made on
// Windows holds it, reads the same.
#pragma once

#include "StdAfx.h"

// The full path of the file; FALSE, with a message for the field that
// names the path, when the drawing was never saved (a relative path has no
// folder to be read from) or the path would be longer than the platform's.
BOOL GetSourceFilePath(const CString& path, AcDbDatabase* database, CString& fullPath, CString& message);
