// Resources of modules: strings, dialog templates and menus.
#include <windows.h>

extern "C" int WINAPI LoadStringW(HINSTANCE, UINT, LPWSTR buffer, int bufferMax) {
    // No module of this host carries a string table yet.
    if (buffer && bufferMax > 0) buffer[0] = L'\0';
    SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
    return 0;
}
