// How the program's heap hands memory back: a drawing's work makes and frees
// buffers of megabytes (a code that lists a hundred thousand handles, its
// list, its data item), and memory that goes back to the system after
// each free must be faulted in afresh by the next event.
#pragma once

namespace cadhost {

// Keeps freed memory in the heap for the next buffer instead of returning it
// to the system at once; called as the host starts.
void KeepFreedMemoryForReuse();

}  // namespace cadhost
