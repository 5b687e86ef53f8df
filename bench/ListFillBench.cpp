// Fills a sorted list box with the handles of a selection, as the Objects
// Area page does: each handle is looked up first and added when the list
// does not hold it yet. Prints the time for selections of growing size; a
// list that grew quadratically would take hours at the largest.
#include <afxwin.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <random>

#include "app/Host.h"

int main() {
    std::filesystem::path settings = std::filesystem::temp_directory_path() / "qm-bench-settings";
    cadhost::HostOptions options;
    options.settingsFolder = settings;
    std::ostringstream quiet;
    options.output = &quiet;
    cadhost::Host host(options);
    for (int count : {1000, 10000, 100000, 300000}) {
        CListBox list;
        if (!list.Create(WS_CHILD | LBS_SORT | LBS_NOTIFY, CRect(0, 0, 100, 100), nullptr, 1) &&
            !list.CreateEx(0, L"ListBox", L"", WS_POPUP | LBS_SORT | LBS_NOTIFY, CRect(0, 0, 100, 100), nullptr, 1)) {
            std::puts("cannot make a list box");
            return 1;
        }
        std::mt19937 random(static_cast<unsigned>(count));
        auto start = std::chrono::steady_clock::now();
        int added = 0;
        for (int i = 0; i < count; ++i) {
            wchar_t handle[16];
            std::swprintf(handle, 16, L"%X", static_cast<unsigned>(random() % (4u * static_cast<unsigned>(count))) + 0x20u);
            if (list.FindStringExact(-1, handle) == LB_ERR) {
                list.AddString(handle);
                ++added;
            }
        }
        double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        std::printf("%7d handles, %7d entries: %8.1f ms\n", count, added, seconds * 1000);
        list.DestroyWindow();
    }
    std::filesystem::remove_all(settings);
    return 0;
}
