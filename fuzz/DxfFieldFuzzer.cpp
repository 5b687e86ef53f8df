// The groups of one FIELD object, in a drawing of nothing else: a drawing
// that reads is written, read again and written again, and both writes are
// the same file (nothing is lost or changes between saves).
#include <dbmain.h>

#include <cstdio>
#include <string>

#include "FuzzSupport.h"
#include "dxf/DxfFiles.h"

namespace {

std::string Write(const AcDbDatabase& database) {
    char* buffer = nullptr;
    size_t length = 0;
    std::FILE* file = open_memstream(&buffer, &length);
    QM_FUZZ_CHECK(file != nullptr);
    QM_FUZZ_CHECK(cadhost::dxf::WriteStream(database, file) == Acad::eOk);
    std::fclose(file);
    std::string text(buffer, length);
    std::free(buffer);
    return text;
}

bool Read(const std::string& text, AcDbDatabase& database) {
    std::FILE* file = fmemopen(const_cast<char*>(text.data()), text.size(), "rb");
    QM_FUZZ_CHECK(file != nullptr);
    std::wstring error;
    Acad::ErrorStatus es = cadhost::dxf::ReadStream(file, L"fuzz", database, error);
    std::fclose(file);
    if (es != Acad::eOk) QM_FUZZ_CHECK(!error.empty());
    return es == Acad::eOk;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    qmfuzz::RunningHost();
    std::string text = "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1024\n  0\nENDSEC\n"
                       "  0\nSECTION\n  2\nOBJECTS\n  0\nFIELD\n  5\n1F0\n";
    text.append(reinterpret_cast<const char*>(data), size);
    if (!text.empty() && text.back() != '\n') text += '\n';
    text += "  0\nENDSEC\n  0\nEOF\n";
    AcDbDatabase first(false);
    if (!Read(text, first)) return 0;
    std::string once = Write(first);
    AcDbDatabase second(false);
    QM_FUZZ_CHECK(Read(once, second));
    QM_FUZZ_CHECK(Write(second) == once);
    return 0;
}
