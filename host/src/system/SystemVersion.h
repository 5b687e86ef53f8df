// What the host's GetVersionExW answers: the system it runs on, or the
// record a test stands in for another system with.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace cadhost {

struct SystemVersion {
    OSVERSIONINFOEXW record{};
    bool extendedAnswers = true;  // the extended record can be had
    bool shortAnswers = true;     // the short record can be had
};

// The system this host runs on: an NT-family workstation whose version
// numbers are the kernel's (major, minor and patch of its release) and
// whose service pack text is the system's pretty name from os-release.
SystemVersion RunningSystemVersion();

// The PRETTY_NAME of an os-release text, its quotes and escapes undone;
// empty when the text has none.
std::wstring PrettyNameOf(std::string_view osRelease);
// The first three numbers of a kernel release such as "6.1.0-26-amd64";
// missing ones are 0.
void KernelNumbersOf(std::string_view release, DWORD& major, DWORD& minor, DWORD& patch);

}  // namespace cadhost
