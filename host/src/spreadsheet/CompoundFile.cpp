#include "spreadsheet/CompoundFile.h"

#include <algorithm>
#include <cstring>

namespace cadhost::spreadsheet {
namespace {

constexpr std::uint32_t kEndOfChain = 0xFFFFFFFE;
constexpr std::uint32_t kFree = 0xFFFFFFFF;
constexpr size_t kHeaderFatEntries = 109;
const std::uint8_t kSignature[] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};

std::uint16_t U16(const std::uint8_t* p) { return static_cast<std::uint16_t>(p[0] | (p[1] << 8)); }
std::uint32_t U32(const std::uint8_t* p) {
    return static_cast<std::uint32_t>(p[0]) | (static_cast<std::uint32_t>(p[1]) << 8) |
           (static_cast<std::uint32_t>(p[2]) << 16) | (static_cast<std::uint32_t>(p[3]) << 24);
}

char16_t Fold(char16_t c) { return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 32) : c; }

bool SameName(const std::u16string& a, const std::u16string& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (Fold(a[i]) != Fold(b[i])) return false;
    return true;
}

}  // namespace

const std::uint8_t* CompoundFile::Sector(std::uint32_t index) const {
    std::uint64_t offset = (static_cast<std::uint64_t>(index) + 1) * m_sectorSize;
    if (index >= kEndOfChain - 4 || offset + m_sectorSize > m_bytes.size()) return nullptr;
    return m_bytes.data() + offset;
}

bool CompoundFile::Chain(const std::vector<std::uint32_t>& table, std::uint32_t start,
                         std::vector<std::uint32_t>& sectors) const {
    sectors.clear();
    std::uint32_t at = start;
    while (at != kEndOfChain) {
        // A chain longer than its table loops back on itself.
        if (at >= table.size() || sectors.size() >= table.size()) return false;
        sectors.push_back(at);
        at = table[at];
    }
    return true;
}

bool CompoundFile::Open(std::span<const std::uint8_t> bytes, std::wstring& why) {
    m_bytes = bytes;
    why = L"it is not a workbook: its compound file is damaged";
    if (bytes.size() < 512 || std::memcmp(bytes.data(), kSignature, sizeof kSignature) != 0) {
        why = L"it is not a workbook: it is no compound file";
        return false;
    }
    const std::uint8_t* header = bytes.data();
    std::uint16_t shift = U16(header + 0x1E), miniShift = U16(header + 0x20);
    if ((shift != 9 && shift != 12) || miniShift != 6) return false;
    m_sectorSize = 1u << shift;
    m_miniSectorSize = 1u << miniShift;
    m_miniCutoff = U32(header + 0x38);
    if (m_miniCutoff != 4096) return false;
    size_t sectorCount = bytes.size() / m_sectorSize;  // the header takes the first
    if (sectorCount == 0) return false;
    sectorCount -= 1;

    // The sectors of the allocation table: 109 in the header, the rest in a
    // chain of further sectors that each end with the next one's number.
    std::uint32_t fatSectors = U32(header + 0x2C);
    if (fatSectors > sectorCount) return false;
    std::vector<std::uint32_t> fatIndex;
    for (size_t i = 0; i < kHeaderFatEntries && fatIndex.size() < fatSectors; ++i)
        fatIndex.push_back(U32(header + 0x4C + 4 * i));
    std::uint32_t difat = U32(header + 0x44);
    size_t perDifat = m_sectorSize / 4 - 1;
    size_t difatSteps = 0;
    while (fatIndex.size() < fatSectors && difat != kEndOfChain && difat != kFree) {
        const std::uint8_t* sector = Sector(difat);
        if (!sector || ++difatSteps > sectorCount) return false;
        for (size_t i = 0; i < perDifat && fatIndex.size() < fatSectors; ++i) fatIndex.push_back(U32(sector + 4 * i));
        difat = U32(sector + 4 * perDifat);
    }
    if (fatIndex.size() < fatSectors) return false;
    m_fat.clear();
    m_fat.reserve(fatIndex.size() * (m_sectorSize / 4));
    for (std::uint32_t index : fatIndex) {
        const std::uint8_t* sector = Sector(index);
        if (!sector) return false;
        for (size_t i = 0; i < m_sectorSize / 4; ++i) m_fat.push_back(U32(sector + 4 * i));
    }
    // Entries beyond the file's sectors are of no use and keep chains honest.
    if (m_fat.size() > sectorCount) m_fat.resize(sectorCount);

    std::vector<std::uint32_t> chain;
    if (!Chain(m_fat, U32(header + 0x30), chain)) return false;
    m_entries.clear();
    for (std::uint32_t index : chain) {
        const std::uint8_t* sector = Sector(index);
        if (!sector) return false;
        for (size_t offset = 0; offset + 128 <= m_sectorSize; offset += 128) {
            const std::uint8_t* raw = sector + offset;
            Entry entry;
            entry.type = raw[0x42];
            std::uint16_t nameBytes = std::min<std::uint16_t>(U16(raw + 0x40), 64);
            for (size_t c = 0; c + 1 < nameBytes; c += 2) {
                char16_t ch = static_cast<char16_t>(U16(raw + c));
                if (ch == 0) break;
                entry.name += ch;
            }
            entry.start = U32(raw + 0x74);
            entry.size = U32(raw + 0x78);
            if (m_sectorSize == 4096) entry.size |= static_cast<std::uint64_t>(U32(raw + 0x7C)) << 32;
            m_entries.push_back(entry);
        }
    }
    if (m_entries.empty() || m_entries[0].type != 5) return false;

    // The mini stream (held by the root) and its table carry small streams.
    m_miniFat.clear();
    m_miniStream.clear();
    std::uint32_t miniFatStart = U32(header + 0x3C);
    if (miniFatStart != kEndOfChain && miniFatStart != kFree) {
        if (!Chain(m_fat, miniFatStart, chain)) return false;
        for (std::uint32_t index : chain) {
            const std::uint8_t* sector = Sector(index);
            if (!sector) return false;
            for (size_t i = 0; i < m_sectorSize / 4; ++i) m_miniFat.push_back(U32(sector + 4 * i));
        }
        const Entry& root = m_entries[0];
        if (root.start != kEndOfChain && !Chain(m_fat, root.start, chain)) return false;
        if (root.start == kEndOfChain) chain.clear();
        for (std::uint32_t index : chain) {
            const std::uint8_t* sector = Sector(index);
            if (!sector) return false;
            m_miniStream.insert(m_miniStream.end(), sector, sector + m_sectorSize);
        }
        if (root.size < m_miniStream.size()) m_miniStream.resize(static_cast<size_t>(root.size));
    }
    why.clear();
    return true;
}

const CompoundFile::Entry* CompoundFile::Find(const std::u16string& name) const {
    for (const Entry& entry : m_entries)
        if (entry.type == 2 && SameName(entry.name, name)) return &entry;
    return nullptr;
}

bool CompoundFile::Has(const std::u16string& name) const { return Find(name) != nullptr; }

bool CompoundFile::Read(const std::u16string& name, std::vector<std::uint8_t>& out, std::wstring& why) const {
    out.clear();
    const Entry* entry = Find(name);
    if (!entry) {
        why = L"it is not a workbook: its compound file holds no workbook stream";
        return false;
    }
    why = L"it is not a workbook: the sectors of its workbook stream do not chain up";
    std::vector<std::uint32_t> chain;
    if (entry->size < m_miniCutoff) {
        if (!Chain(m_miniFat, entry->start, chain)) return false;
        for (std::uint32_t index : chain) {
            size_t offset = static_cast<size_t>(index) * m_miniSectorSize;
            if (offset + m_miniSectorSize > m_miniStream.size()) return false;
            out.insert(out.end(), m_miniStream.begin() + static_cast<std::ptrdiff_t>(offset),
                       m_miniStream.begin() + static_cast<std::ptrdiff_t>(offset + m_miniSectorSize));
            if (out.size() >= entry->size) break;
        }
    } else {
        if (!Chain(m_fat, entry->start, chain)) return false;
        for (std::uint32_t index : chain) {
            const std::uint8_t* sector = Sector(index);
            if (!sector) return false;
            out.insert(out.end(), sector, sector + m_sectorSize);
            if (out.size() >= entry->size) break;
        }
    }
    if (out.size() < entry->size) return false;
    out.resize(static_cast<size_t>(entry->size));
    why.clear();
    return true;
}

}  // namespace cadhost::spreadsheet
