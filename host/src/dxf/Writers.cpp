#include "dxf/Writers.h"

#include <cstdio>

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

void AppendCode(std::string& out, int code) {
    char buffer[16];
    int n = std::snprintf(buffer, sizeof buffer, "%3d\n", code);
    out.append(buffer, static_cast<size_t>(n));
}
}  // namespace

void GroupWriter::Write(int code, std::string_view raw) {
    AppendCode(m_buffer, code);
    // A value never holds a line break of its own: it would end the group.
    for (char c : raw) m_buffer += (c == '\n' || c == '\r') ? ' ' : c;
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

ObjectWriterImpl::ObjectWriterImpl(GroupWriter& out, const AcDbObject& object, const FileState& file,
                                   const TextCodec& codec)
    : m_out(out), m_object(object), m_file(file), m_codec(codec), m_cursor(KeptOf(object)) {}

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

void ObjectWriterImpl::Text(int code, std::string_view utf8) { Known(code, m_codec.Encode(utf8)); }

void ObjectWriterImpl::LongText(int chunkCode, int code, std::string_view utf8) {
    // Chunks of 250 characters (not bytes), never splitting a character.
    std::string encoded = m_codec.Encode(utf8);
    std::string_view rest = encoded;
    bool first = true;
    auto emit = [&](int groupCode, std::string_view part) {
        if (first) Known(groupCode, part);
        else Continued(groupCode, part);
        first = false;
    };
    for (;;) {
        size_t characters = 0, bytes = 0;
        while (bytes < rest.size() && characters < 250) {
            auto c = static_cast<unsigned char>(rest[bytes]);
            bytes += c < 0x80 ? 1 : (c >> 5) == 6 ? 2 : (c >> 4) == 14 ? 3 : (c >> 3) == 30 ? 4 : 1;
            ++characters;
        }
        if (bytes >= rest.size()) {
            emit(code, rest);
            return;
        }
        emit(chunkCode, rest.substr(0, bytes));
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
