#include "dxf/Writers.h"

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "db/DatabaseImpl.h"
#include "db/ObjectExtras.h"
#include "dxf/Values.h"

namespace cadhost::dxf {

namespace {
const KeptGroups kNoGroups;

const KeptGroups& KeptOf(const AcDbObject& object) {
    ObjectExtras* extras = object.extras();
    return extras ? extras->kept : kNoGroups;
}

// The code right-aligned in three places, as "%3d" writes it.
void AppendCode(std::string& out, int code) {
    char buffer[16];
    auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, code);
    size_t length = static_cast<size_t>(end - buffer);
    if (length < 3) out.append(3 - length, ' ');
    out.append(buffer, length);
    out += '\n';
}
}  // namespace

void GroupWriter::Write(int code, std::string_view raw) {
    AppendCode(m_buffer, code);
    size_t start = m_buffer.size();
    m_buffer.append(raw);
    // A value never holds a line break of its own: it would end the group.
    if (std::memchr(raw.data(), '\n', raw.size()) || std::memchr(raw.data(), '\r', raw.size())) {
        for (size_t i = start; i < m_buffer.size(); ++i)
            if (m_buffer[i] == '\n' || m_buffer[i] == '\r') m_buffer[i] = ' ';
    }
    m_buffer += '\n';
    if (m_buffer.size() >= kFlushAt) Flush();
}

bool GroupWriter::Flush() {
    if (!m_buffer.empty() && !m_failed) {
        if (std::fwrite(m_buffer.data(), 1, m_buffer.size(), m_file) != m_buffer.size()) m_failed = true;
    }
    m_buffer.clear();
    return !m_failed;
}

std::string_view SharedTexts::Get(const void* key, const std::function<std::string()>& make) {
    auto found = m_made.find(key);
    if (found != m_made.end()) return found->second;
    std::string made = make();
    if (m_bytes + made.size() > kBudget) {
        m_last = std::move(made);
        return m_last;
    }
    m_bytes += made.size();
    return m_made.emplace(key, std::move(made)).first->second;
}

ObjectWriterImpl::ObjectWriterImpl(GroupWriter& out, const AcDbObject& object, const FileState& file,
                                   const TextCodec& codec, SharedTexts& shared)
    : m_out(out), m_object(object), m_file(file), m_codec(codec), m_shared(shared), m_cursor(KeptOf(object)) {}

void ObjectWriterImpl::FlushKept(bool all) {
    KeptGroup group;
    while (!m_cursor.done() && (all || m_cursor.PeekAnchor() <= m_count)) {
        m_cursor.Next(group);
        m_out.Write(group.code, group.value);
    }
}

bool ObjectWriterImpl::HasKept(int code) const {
    KeptGroups::Cursor cursor(KeptOf(m_object));
    KeptGroup group;
    while (cursor.Next(group))
        if (group.code == code) return true;
    return false;
}

void ObjectWriterImpl::Known(int code, std::string_view raw) {
    FlushKept(false);
    m_out.Write(code, raw);
    ++m_count;
}

void ObjectWriterImpl::Marker(std::string_view subclass) {
    if (!R12()) Known(100, subclass);
}

void ObjectWriterImpl::Integer(int code, long long value) { Known(code, std::to_string(value)); }

void ObjectWriterImpl::Real(int code, double value) {
    m_scratch.clear();
    AppendReal(m_scratch, value);
    Known(code, m_scratch);
}

void ObjectWriterImpl::Text(int code, std::string_view utf8) { Known(code, m_codec.Encode(utf8, m_encoded)); }

namespace {
// The bytes of the first 250 characters (not bytes): chunks never split a
// character.
size_t ChunkBytes(std::string_view text) {
    constexpr size_t kChunk = 250;
    if (text.size() <= kChunk) return text.size();
    // Mostly ASCII, where bytes are characters: eight at a time.
    uint64_t seen = 0;
    for (size_t i = 0; i + 8 <= kChunk; i += 8) {
        uint64_t word;
        std::memcpy(&word, text.data() + i, 8);
        seen |= word;
    }
    for (size_t i = kChunk / 8 * 8; i < kChunk; ++i) seen |= static_cast<unsigned char>(text[i]);
    if ((seen & 0x8080808080808080ULL) == 0) return kChunk;
    size_t characters = 0, bytes = 0;
    while (bytes < text.size() && characters < 250) {
        auto c = static_cast<unsigned char>(text[bytes]);
        bytes += c < 0x80 ? 1 : (c >> 5) == 6 ? 2 : (c >> 4) == 14 ? 3 : (c >> 3) == 30 ? 4 : 1;
        ++characters;
    }
    return bytes < text.size() ? bytes : text.size();
}
}  // namespace

void ObjectWriterImpl::LongText(int chunkCode, int code, std::string_view utf8) {
    std::string_view rest = m_codec.Encode(utf8, m_encoded);
    bool first = true;
    auto emit = [&](int groupCode, std::string_view part) {
        if (first) Known(groupCode, part);
        else Continued(groupCode, part);
        first = false;
    };
    for (;;) {
        size_t bytes = ChunkBytes(rest);
        if (bytes >= rest.size()) {
            emit(code, rest);
            return;
        }
        emit(chunkCode, rest.substr(0, bytes));
        rest.remove_prefix(bytes);
    }
}

void ObjectWriterImpl::SplitText(int firstCode, int restCode, std::string_view utf8) {
    std::string_view rest = m_codec.Encode(utf8, m_encoded);
    size_t bytes = ChunkBytes(rest);
    Known(firstCode, rest.substr(0, bytes));
    rest.remove_prefix(bytes);
    while (!rest.empty()) {
        bytes = ChunkBytes(rest);
        Continued(restCode, rest.substr(0, bytes));
        rest.remove_prefix(bytes);
    }
}

void ObjectWriterImpl::Point(int code, const AcGePoint3d& point) {
    m_scratch.clear();
    AppendReal(m_scratch, point.x);
    Known(code, m_scratch);
    m_scratch.clear();
    AppendReal(m_scratch, point.y);
    Continued(code + 10, m_scratch);
    m_scratch.clear();
    AppendReal(m_scratch, point.z);
    Continued(code + 20, m_scratch);
}

void ObjectWriterImpl::Point2d(int code, double x, double y) {
    m_scratch.clear();
    AppendReal(m_scratch, x);
    Known(code, m_scratch);
    m_scratch.clear();
    AppendReal(m_scratch, y);
    Continued(code + 10, m_scratch);
}

void ObjectWriterImpl::Vector(int code, const AcGeVector3d& v) { Point(code, AcGePoint3d(v.x, v.y, v.z)); }

void ObjectWriterImpl::Id(int code, AcDbObjectId id) {
    Known(code, FormatHandle(id.isNull() ? 0 : id.handle().value()));
}

bool ObjectWriterImpl::FromFile() const {
    AcDbStub* stub = DatabaseImpl::StubOf(&m_object);
    return stub && stub->fromFile;
}

}  // namespace cadhost::dxf
