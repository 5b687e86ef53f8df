// What the fuzz targets share: wide text from fuzzer bytes, a running host
// for routines that ask it, and a check that stops the run on a broken rule.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>

#include "app/Host.h"
#include "dxf/DxfFiles.h"

namespace qmfuzz {

// Each byte is a character (Latin-1), except that a byte from 0xF0 up joins
// the next one into a character up to U+0FFF, so that characters whose low
// 8 bits equal a delimiter's turn up.
inline std::wstring WideText(const uint8_t* data, size_t size) {
    std::wstring text;
    text.reserve(size);
    for (size_t i = 0; i < size; ++i) {
        uint8_t byte = data[i];
        if (byte >= 0xF0 && i + 1 < size) {
            text += static_cast<wchar_t>(((byte & 0x0F) << 8) | data[++i]);
        } else {
            text += static_cast<wchar_t>(byte);
        }
    }
    return text;
}

// Splits the input at its first zero byte: the part before, the part after
// (empty, and found false, when there is none).
inline bool SplitAtZero(const uint8_t* data, size_t size, std::wstring& first, std::wstring& second) {
    for (size_t i = 0; i < size; ++i) {
        if (data[i] == 0) {
            first = WideText(data, i);
            second = WideText(data + i + 1, size - i - 1);
            return true;
        }
    }
    first = WideText(data, size);
    second.clear();
    return false;
}

// One host for the whole run, with settings in a folder of its own and the
// command line going nowhere.
inline cadhost::Host& RunningHost() {
    static cadhost::Host* host = [] {
        static std::ostringstream output;
        std::filesystem::path folder =
            std::filesystem::temp_directory_path() / ("qmfuzz-" + std::to_string(::getpid()));
        std::filesystem::create_directories(folder);
        cadhost::HostOptions options;
        options.settingsFolder = folder;
        options.output = &output;
        return new cadhost::Host(options);
    }();
    return *host;
}

#define QM_FUZZ_CHECK(condition)                                                       \
    do {                                                                               \
        if (!(condition)) {                                                            \
            std::fprintf(stderr, "broken rule at %s:%d: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                              \
        }                                                                              \
    } while (0)

// A drawing written to DXF text in memory.
inline std::string SaveDxf(const AcDbDatabase& database) {
    char* buffer = nullptr;
    size_t size = 0;
    std::FILE* out = open_memstream(&buffer, &size);
    QM_FUZZ_CHECK(out != nullptr);
    QM_FUZZ_CHECK(cadhost::dxf::WriteStream(database, out) == Acad::eOk);
    std::fclose(out);
    std::string text(buffer, size);
    std::free(buffer);
    return text;
}

// DXF text read into a database, as a file named fuzz.dxf; a refusal comes
// with its message.
inline Acad::ErrorStatus ReadDxf(const std::string& text, AcDbDatabase& database, std::wstring& error) {
    std::FILE* in = fmemopen(const_cast<char*>(text.data()), text.size(), "rb");
    QM_FUZZ_CHECK(in != nullptr);
    Acad::ErrorStatus es = cadhost::dxf::ReadStream(in, L"fuzz.dxf", database, error);
    std::fclose(in);
    if (es != Acad::eOk) QM_FUZZ_CHECK(!error.empty());
    return es;
}
inline bool ReadDxf(const std::string& text, AcDbDatabase& database) {
    std::wstring error;
    return ReadDxf(text, database, error) == Acad::eOk;
}

}  // namespace qmfuzz
