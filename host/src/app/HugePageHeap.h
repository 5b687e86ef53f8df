// How the program's heap is backed: a drawing's objects, and the module's
// snapshots of them, are millions of small blocks filling hundreds of
// megabytes, and on 4 KB pages the first touch of each page is a fault of
// its own (on some virtual machines a costly one: 75 MB took 225 ms, in
// 2 MB pages 5 ms).
#pragma once

namespace cadhost {

// Runs the program again, once, with the C library asked to back its heap
// with transparent huge pages, unless it is so already, the user chose
// otherwise in GLIBC_TUNABLES, or the system has no such pages. Called first
// thing in main with main's argv; returns in the process that goes on (the
// same one when nothing is done or the new start fails), whose environment
// is then the caller's again, so that programs it starts see no change.
void StartWithHugePageHeap(char** argv);

}  // namespace cadhost
