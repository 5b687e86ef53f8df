// Automation's helpers: texts (BSTR), variants, and the table of running
// objects through which a program that runs is found by its class.
#pragma once

#include "oaidl.h"

#define ACTIVEOBJECT_STRONG 0x0
#define ACTIVEOBJECT_WEAK 0x1
#define VARIANT_NOVALUEPROP 0x1

extern "C" {
// A BSTR carries its length before its first character and ends with a
// zero; null is the empty text.
CADHOST_API BSTR WINAPI SysAllocString(const OLECHAR* text);
CADHOST_API BSTR WINAPI SysAllocStringLen(const OLECHAR* text, UINT length);
CADHOST_API void WINAPI SysFreeString(BSTR text);
CADHOST_API UINT WINAPI SysStringLen(BSTR text);

CADHOST_API void WINAPI VariantInit(VARIANTARG* variant);
// Frees what a variant holds (a text, a reference) and leaves it empty.
CADHOST_API HRESULT WINAPI VariantClear(VARIANTARG* variant);
CADHOST_API HRESULT WINAPI VariantCopy(VARIANTARG* destination, const VARIANTARG* source);
// Converts between the numbers, texts and booleans; DISP_E_TYPEMISMATCH or
// DISP_E_OVERFLOW when there is no such value.
CADHOST_API HRESULT WINAPI VariantChangeType(VARIANTARG* destination, const VARIANTARG* source, USHORT flags,
                                             VARTYPE type);

// The running object registered for a class; MK_E_UNAVAILABLE when none is.
CADHOST_API HRESULT WINAPI GetActiveObject(REFCLSID clsid, void* reserved, IUnknown** unknown);
CADHOST_API HRESULT WINAPI RegisterActiveObject(IUnknown* unknown, REFCLSID clsid, DWORD flags, DWORD* registration);
CADHOST_API HRESULT WINAPI RevokeActiveObject(DWORD registration, void* reserved);
}
