// ShellExecuteW: the target goes to the host's shell.
#include <shellapi.h>

#include "app/Host.h"

extern "C" HINSTANCE WINAPI ShellExecuteW(HWND, LPCWSTR verb, LPCWSTR file, LPCWSTR parameters, LPCWSTR directory,
                                          INT showCommand) {
    cadhost::Host* host = cadhost::Host::Current();
    if (!host) return reinterpret_cast<HINSTANCE>(static_cast<INT_PTR>(SE_ERR_OOM));
    if (!file || !*file) return reinterpret_cast<HINSTANCE>(static_cast<INT_PTR>(SE_ERR_FNF));
    cadhost::ShellTarget target{verb ? verb : L"", file, parameters ? parameters : L"", directory ? directory : L"",
                                showCommand};
    std::wstring why = host->shell().Open(target);
    if (!why.empty()) {
        host->Print(L"\nThe desktop could not open " + target.target + L": " + why + L".");
        return reinterpret_cast<HINSTANCE>(static_cast<INT_PTR>(SE_ERR_NOASSOC));
    }
    return reinterpret_cast<HINSTANCE>(static_cast<INT_PTR>(42));
}
