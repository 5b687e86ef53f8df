// The groups of one FIELD object, in a drawing of nothing else: a drawing
// that reads is written, read again and written again, and both writes are
// the same file (nothing is lost or changes between saves).
#include <dbmain.h>

#include <cstdio>
#include <string>

#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    qmfuzz::RunningHost();
    std::string text = "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1024\n  0\nENDSEC\n"
                       "  0\nSECTION\n  2\nOBJECTS\n  0\nFIELD\n  5\n1F0\n";
    text.append(reinterpret_cast<const char*>(data), size);
    if (!text.empty() && text.back() != '\n') text += '\n';
    text += "  0\nENDSEC\n  0\nEOF\n";
    AcDbDatabase first(false);
    if (!qmfuzz::ReadDxf(text, first)) return 0;
    std::string once = qmfuzz::SaveDxf(first);
    AcDbDatabase second(false);
    QM_FUZZ_CHECK(qmfuzz::ReadDxf(once, second));
    QM_FUZZ_CHECK(qmfuzz::SaveDxf(second) == once);
    return 0;
}
