// GetVersionExW: the record of the system the host answers for.
#include <windows.h>

#include <cstring>

#include "app/Host.h"

extern "C" BOOL WINAPI GetVersionExW(LPOSVERSIONINFOW versionInfo) {
    cadhost::Host* host = cadhost::Host::Current();
    if (!host || !versionInfo) return FALSE;
    const cadhost::SystemVersion& version = host->systemVersion();
    DWORD size = versionInfo->dwOSVersionInfoSize;
    if (size == sizeof(OSVERSIONINFOEXW) && version.extendedAnswers) {
        std::memcpy(versionInfo, &version.record, sizeof(OSVERSIONINFOEXW));
    } else if (size == sizeof(OSVERSIONINFOW) && version.shortAnswers) {
        std::memcpy(versionInfo, &version.record, sizeof(OSVERSIONINFOW));
    } else {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    versionInfo->dwOSVersionInfoSize = size;
    return TRUE;
}
