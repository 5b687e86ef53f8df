// Automation's texts: a length in bytes before the first character, a zero
// behind the last.
#include <oleauto.h>

#include <cstdlib>
#include <cwchar>

extern "C" {

BSTR WINAPI SysAllocStringLen(const OLECHAR* text, UINT length) {
    auto* block = static_cast<std::uint32_t*>(std::malloc(sizeof(std::uint32_t) + (length + 1) * sizeof(OLECHAR)));
    if (!block) return nullptr;
    block[0] = static_cast<std::uint32_t>(length * sizeof(OLECHAR));
    BSTR string = reinterpret_cast<BSTR>(block + 1);
    if (text) std::wmemcpy(string, text, length);
    else std::wmemset(string, L'\0', length);
    string[length] = L'\0';
    return string;
}

BSTR WINAPI SysAllocString(const OLECHAR* text) {
    if (!text) return nullptr;
    return SysAllocStringLen(text, static_cast<UINT>(std::wcslen(text)));
}

void WINAPI SysFreeString(BSTR text) {
    if (text) std::free(reinterpret_cast<std::uint32_t*>(text) - 1);
}

UINT WINAPI SysStringLen(BSTR text) {
    return text ? reinterpret_cast<std::uint32_t*>(text)[-1] / sizeof(OLECHAR) : 0;
}

}  // extern "C"
