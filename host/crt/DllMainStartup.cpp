// The loader's side of a module's start: when the image is mapped and before
// it is unmapped, the module's DllMain hears of it with its own handle.
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID reserved);

namespace {

HINSTANCE ThisModule() {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(&ThisModule), &module);
    return module;
}

__attribute__((constructor)) void ProcessAttach() { DllMain(ThisModule(), DLL_PROCESS_ATTACH, nullptr); }

__attribute__((destructor)) void ProcessDetach() { DllMain(ThisModule(), DLL_PROCESS_DETACH, nullptr); }

}  // namespace
