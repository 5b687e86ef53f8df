#include "app/HugePageHeap.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>

namespace cadhost {

// Under the address sanitizer the heap is the sanitizer's own.
#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__)
namespace {

constexpr const char kTunables[] = "GLIBC_TUNABLES";
constexpr const char kHugePages[] = "glibc.malloc.hugetlb=1";
// Set for the new start: "-" when the caller had no tunables, else "=" and
// the caller's.
constexpr const char kCallersTunables[] = "CADHOST_CALLERS_TUNABLES";

// Whether the system gives transparent huge pages to a program that asks.
bool SystemHasHugePages() {
    std::ifstream setting("/sys/kernel/mm/transparent_hugepage/enabled");
    std::string text;
    std::getline(setting, text);
    return text.find("[always]") != std::string::npos || text.find("[madvise]") != std::string::npos;
}

void PutBack(const char* callers) {
    if (callers[0] == '=') setenv(kTunables, callers + 1, 1);
    else unsetenv(kTunables);
}

}  // namespace

void StartWithHugePageHeap(char** argv) {
    if (const char* callers = std::getenv(kCallersTunables)) {
        // The new start: its heap is set up; the caller's environment again.
        std::string saved = callers;
        unsetenv(kCallersTunables);
        PutBack(saved.c_str());
        return;
    }
    const char* tunables = std::getenv(kTunables);
    std::string own = tunables ? tunables : "";
    if (own.find("glibc.malloc.hugetlb") != std::string::npos || !SystemHasHugePages()) return;
    std::string callers = tunables ? "=" + own : "-";
    setenv(kCallersTunables, callers.c_str(), 1);
    setenv(kTunables, own.empty() ? kHugePages : (own + ":" + kHugePages).c_str(), 1);
    execv("/proc/self/exe", argv);
    // Not started again (no /proc): go on as it is.
    unsetenv(kCallersTunables);
    PutBack(callers.c_str());
}
#else
void StartWithHugePageHeap(char**) {}
#endif

}  // namespace cadhost
