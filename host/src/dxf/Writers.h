// The writing side: groups to a file, and one object's groups merged with
// what the file held and the host kept.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <unordered_map>

#include "db/FileState.h"
#include "db/KeptGroups.h"
#include "dxf/DxfIo.h"
#include "dxf/TextCodec.h"

namespace cadhost::dxf {

class GroupWriter {
public:
    explicit GroupWriter(std::FILE* file) : m_file(file) { m_buffer.reserve(kFlushAt + 4096); }
    ~GroupWriter() { Flush(); }
    void Write(int code, std::string_view raw);
    bool Flush();
    bool failed() const { return m_failed; }

private:
    static constexpr size_t kFlushAt = 1 << 20;
    std::FILE* m_file;
    std::string m_buffer;
    bool m_failed = false;
};

// The file's forms of texts that objects share, made once a save.
class SharedTexts {
public:
    std::string_view Get(const void* key, const std::function<std::string()>& make);

private:
    static constexpr size_t kBudget = 64u << 20;
    std::unordered_map<const void*, std::string> m_made;
    size_t m_bytes = 0;
    std::string m_last;  // one made beyond the budget
};

class ObjectWriterImpl final : public ObjectWriter {
public:
    ObjectWriterImpl(GroupWriter& out, const AcDbObject& object, const FileState& file, const TextCodec& codec,
                     SharedTexts& shared);

    // Groups the core writes: counted like the reader counted them.
    void Known(int code, std::string_view raw);
    // The object's kept groups that are due, or all that are left.
    void FlushKept(bool all);
    void WriteRaw(int code, std::string_view raw) { m_out.Write(code, raw); }
    bool HasKept(int code) const;
    std::string Encode(std::string_view utf8) const { return m_codec.Encode(utf8); }

    void Marker(std::string_view subclass) override;
    void Integer(int code, long long value) override;
    void Real(int code, double value) override;
    void Text(int code, std::string_view utf8) override;
    void LongText(int chunkCode, int code, std::string_view utf8) override;
    void SplitText(int firstCode, int restCode, std::string_view utf8) override;
    void Raw(int code, std::string_view raw, bool counted) override {
        if (counted) Known(code, raw);
        else Continued(code, raw);
    }
    void Point(int code, const AcGePoint3d& point) override;
    void Point2d(int code, double x, double y) override;
    void Vector(int code, const AcGeVector3d& vector) override;
    void Id(int code, AcDbObjectId id) override;
    void Extra(int code, std::string_view raw) override { m_out.Write(code, raw); }
    void Skip(int slots) override {
        FlushKept(false);
        m_count += static_cast<uint32_t>(slots);
    }
    bool FromFile() const override;
    const FileState& File() const override { return m_file; }
    bool R12() const override { return m_file.IsR12(); }
    std::string_view Shared(const void* key, const std::function<std::string()>& make) override {
        return m_shared.Get(key, make);
    }

private:
    void Continued(int code, std::string_view raw) { m_out.Write(code, raw); }

    GroupWriter& m_out;
    const AcDbObject& m_object;
    const FileState& m_file;
    const TextCodec& m_codec;
    SharedTexts& m_shared;
    KeptGroups::Cursor m_cursor;
    uint32_t m_count = 0;
    std::string m_scratch;
    std::string m_encoded;  // a text in the file's code page, where it is not UTF-8
};

}  // namespace cadhost::dxf
