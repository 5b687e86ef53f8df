// The system's message texts for status codes, as FormatMessageW gives
// them in the neutral language: the codes the host's components report.
#include <winbase.h>
#include <winerror.h>

#include <cstdlib>
#include <cwchar>
#include <map>

namespace {

constexpr DWORD kInsufficientBuffer = 122;

const std::map<DWORD, const wchar_t*>& Messages() {
    static const std::map<DWORD, const wchar_t*> messages = {
        // The operating system's own codes.
        {0, L"The operation completed successfully.\r\n"},
        {2, L"The system cannot find the file specified.\r\n"},
        {3, L"The system cannot find the path specified.\r\n"},
        {5, L"Access is denied.\r\n"},
        {6, L"The handle is invalid.\r\n"},
        {8, L"Not enough memory resources are available to process this command.\r\n"},
        {14, L"Not enough memory resources are available to complete this operation.\r\n"},
        {32, L"The process cannot access the file because it is being used by another process.\r\n"},
        {87, L"The parameter is incorrect.\r\n"},
        // Status codes of components and automation.
        {0x8000FFFF, L"Catastrophic failure\r\n"},
        {0x80004001, L"Not implemented\r\n"},
        {0x80004002, L"No such interface supported\r\n"},
        {0x80004003, L"Invalid pointer\r\n"},
        {0x80004005, L"Unspecified error\r\n"},
        {0x80020001, L"Unknown interface.\r\n"},
        {0x80020003, L"Member not found.\r\n"},
        {0x80020004, L"Parameter not found.\r\n"},
        {0x80020005, L"Type mismatch.\r\n"},
        {0x80020006, L"Unknown name.\r\n"},
        {0x80020007, L"No named arguments.\r\n"},
        {0x80020008, L"Bad variable type.\r\n"},
        {0x80020009, L"Exception occurred.\r\n"},
        {0x8002000A, L"Out of present range.\r\n"},
        {0x8002000B, L"Invalid index.\r\n"},
        {0x8002000E, L"Invalid number of parameters.\r\n"},
        {0x8002000F, L"Parameter not optional.\r\n"},
        {0x80040110, L"Class does not support aggregation (or class object is remote)\r\n"},
        {0x80040154, L"Class not registered\r\n"},
        {0x800401E3, L"Operation unavailable\r\n"},
        {0x800401F3, L"Invalid class string\r\n"},
        {0x80010001, L"Call was rejected by callee.\r\n"},
        {0x80010108, L"The object invoked has disconnected from its clients.\r\n"},
        {0x8001010A, L"The message filter indicated that the application is busy.\r\n"},
        {0x80080005, L"Server execution failed\r\n"},
    };
    return messages;
}

const wchar_t* Find(DWORD code) {
    auto found = Messages().find(code);
    if (found != Messages().end()) return found->second;
    // A code of the operating system wrapped as a status code.
    if ((code & 0xFFFF0000u) == 0x80070000u) {
        found = Messages().find(code & 0xFFFFu);
        if (found != Messages().end()) return found->second;
    }
    return nullptr;
}

}  // namespace

extern "C" {

DWORD WINAPI FormatMessageW(DWORD flags, LPCVOID, DWORD messageId, DWORD, LPWSTR buffer, DWORD size, va_list*) {
    if (!(flags & FORMAT_MESSAGE_FROM_SYSTEM) || (flags & (FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_FROM_HMODULE)) ||
        !buffer) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    const wchar_t* text = Find(messageId);
    if (!text) {
        SetLastError(ERROR_MR_MID_NOT_FOUND);
        return 0;
    }
    size_t length = std::wcslen(text);
    if (flags & FORMAT_MESSAGE_ALLOCATE_BUFFER) {
        auto* copy = static_cast<wchar_t*>(std::malloc((length + 1) * sizeof(wchar_t)));
        if (!copy) {
            SetLastError(ERROR_NOT_ENOUGH_MEMORY);
            return 0;
        }
        std::wmemcpy(copy, text, length + 1);
        *reinterpret_cast<LPWSTR*>(buffer) = copy;
    } else {
        if (size < length + 1) {
            SetLastError(kInsufficientBuffer);
            return 0;
        }
        std::wmemcpy(buffer, text, length + 1);
    }
    return static_cast<DWORD>(length);
}

HLOCAL WINAPI LocalFree(HLOCAL memory) {
    std::free(memory);
    return nullptr;
}

}  // extern "C"
