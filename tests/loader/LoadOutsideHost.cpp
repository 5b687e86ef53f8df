// Maps modules into a process that runs no host, as another program (a
// library browser, a test runner) may, and exits: the modules' start and
// end must pass without a host to talk to.
//
// usage: load_outside_host [--close] MODULE...
// With --close each module is unmapped again before the exit; without it
// they stay mapped until the process ends. Exits 0 when every module
// mapped; a crash at the end shows as a signal.
#include <dlfcn.h>

#include <cstdio>
#include <cstring>

int main(int argc, char** argv) {
    bool close = argc > 1 && std::strcmp(argv[1], "--close") == 0;
    int first = close ? 2 : 1;
    if (first >= argc) {
        std::fputs("usage: load_outside_host [--close] MODULE...\n", stderr);
        return 2;
    }
    for (int i = first; i < argc; ++i) {
        void* module = dlopen(argv[i], RTLD_NOW | RTLD_LOCAL);
        if (!module) {
            std::fprintf(stderr, "%s\n", dlerror());
            return 1;
        }
        if (close && dlclose(module) != 0) {
            std::fprintf(stderr, "%s\n", dlerror());
            return 1;
        }
    }
    return 0;
}
