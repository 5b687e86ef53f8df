// The compound file that .xls workbooks live in: a small file system of
// sectors, with a directory of named streams.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace cadhost::spreadsheet {

class CompoundFile {
public:
    // Reads the header, the allocation tables and the directory; false
    // with why when the file is not a compound file or is damaged.
    bool Open(std::span<const std::uint8_t> bytes, std::wstring& why);
    // Whether a stream of that name (without regard to case) is there.
    bool Has(const std::u16string& name) const;
    // The bytes of a stream; false with why when it is missing or its
    // sectors do not chain up.
    bool Read(const std::u16string& name, std::vector<std::uint8_t>& out, std::wstring& why) const;

private:
    struct Entry {
        std::u16string name;
        int type = 0;  // 1 storage, 2 stream, 5 root
        std::uint32_t start = 0;
        std::uint64_t size = 0;
    };
    bool Chain(const std::vector<std::uint32_t>& table, std::uint32_t start, std::vector<std::uint32_t>& sectors) const;
    const std::uint8_t* Sector(std::uint32_t index) const;
    const Entry* Find(const std::u16string& name) const;

    std::span<const std::uint8_t> m_bytes;
    std::uint32_t m_sectorSize = 512, m_miniSectorSize = 64, m_miniCutoff = 4096;
    std::vector<std::uint32_t> m_fat, m_miniFat;
    std::vector<Entry> m_entries;
    std::vector<std::uint8_t> m_miniStream;
};

}  // namespace cadhost::spreadsheet
