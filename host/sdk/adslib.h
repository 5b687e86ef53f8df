// Utility and editor calls of the platform's C interface.
#pragma once

#include "adsdef.h"
#include "acutads.h"

extern "C" {
// Result buffers. acutNewRb allocates one buffer of a type; a string buffer
// gets no text yet. acutRelRb frees a chain and the texts it owns.
CADHOST_API resbuf* acutNewRb(int type);
CADHOST_API int acutRelRb(resbuf* chain);
// A chain from pairs of type and value, ended by 0 (or RTNONE). The type is
// an RT code or a DXF group code; group 0 is written RTDXF0.
CADHOST_API resbuf* acutBuildList(int type, ...);
// Frees a text that the platform allocated for the caller, and nulls it.
CADHOST_API void acutDelBuffer(ACHAR*& text);
// Replaces an allocated text by a copy of another.
CADHOST_API int acutUpdString(const ACHAR* newText, ACHAR*& text);

// The command line.
CADHOST_API int acutPrintf(const ACHAR* format, ...);

// System variables.
CADHOST_API int acedGetVar(const ACHAR* name, resbuf* result);
CADHOST_API int acedSetVar(const ACHAR* name, const resbuf* value);

// Menus and the command processor.
CADHOST_API int acedMenuCmd(const ACHAR* text);
CADHOST_API int acedIsMenuGroupLoaded(const ACHAR* groupName);
CADHOST_API int ads_queueexpr(const ACHAR* expression);
CADHOST_API int acedArxLoad(const ACHAR* path);
CADHOST_API int acedArxUnload(const ACHAR* appName);
}

// External functions of a module, callable from expressions: defined per
// drawing by name and function code; the module hears of a call through
// its entry point (kInvkSubrMsg) and asks which one with acedGetFunCode.
extern "C" {
CADHOST_API int acedDefun(const ACHAR* name, int functionCode);
CADHOST_API int acedUndef(const ACHAR* name, int functionCode);
CADHOST_API int acedRegFunc(int (*function)(), int functionCode);
CADHOST_API int acedGetFunCode();
CADHOST_API int acedRetVoid();
}
