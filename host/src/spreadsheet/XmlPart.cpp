#include "spreadsheet/XmlPart.h"

#include <expat.h>

#include <algorithm>
#include <condition_variable>
#include <cstring>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "core/Utf8.h"
#include "spreadsheet/PlainXml.h"
#include "spreadsheet/Workbook.h"

namespace cadhost::spreadsheet {
namespace {

constexpr char kNamespaceSeparator = '\x1f';
constexpr size_t kChunk = 64 * 1024;

// The name after its namespace: the end of the name expat gives, which
// stays a C string.
const char* LocalName(const char* name) {
    const char* cut = std::strrchr(name, kNamespaceSeparator);
    return cut ? cut + 1 : name;
}

struct ParseState {
    XML_Parser parser = nullptr;
    XmlHandler* handler = nullptr;
    int depth = 0;
    std::wstring fault;  // why the parse was stopped, if not by the handler
    std::vector<const char*> attributes;
};

void Stop(ParseState& state, std::wstring fault) {
    if (state.fault.empty()) state.fault = std::move(fault);
    XML_StopParser(state.parser, XML_FALSE);
}

void OnStart(void* data, const XML_Char* name, const XML_Char** attributes) {
    auto& state = *static_cast<ParseState*>(data);
    if (++state.depth > kMaxXmlDepth) {
        Stop(state, L"nests elements deeper than " + std::to_wstring(kMaxXmlDepth));
        return;
    }
    // Attribute names lose their namespace as element names do.
    state.attributes.clear();
    for (int i = 0; attributes[i]; i += 2) {
        state.attributes.push_back(LocalName(attributes[i]));
        state.attributes.push_back(attributes[i + 1]);
    }
    state.attributes.push_back(nullptr);
    state.handler->Start(LocalName(name), state.attributes.data());
    if (state.handler->done) XML_StopParser(state.parser, XML_FALSE);
}

void OnEnd(void* data, const XML_Char* name) {
    auto& state = *static_cast<ParseState*>(data);
    --state.depth;
    state.handler->End(LocalName(name));
    if (state.handler->done) XML_StopParser(state.parser, XML_FALSE);
}

void OnCharacters(void* data, const XML_Char* text, int length) {
    auto& state = *static_cast<ParseState*>(data);
    state.handler->Characters(std::string_view(text, static_cast<size_t>(length)));
}

// A workbook part never declares a document type: one that does might
// define entities, and is refused before any is read.
void OnDoctype(void* data, const XML_Char*, const XML_Char*, const XML_Char*, int) {
    Stop(*static_cast<ParseState*>(data), L"declares a document type, which workbook parts never do");
}

void OnEntity(void* data, const XML_Char*, int, const XML_Char*, int, const XML_Char*, const XML_Char*,
              const XML_Char*, const XML_Char*) {
    Stop(*static_cast<ParseState*>(data), L"declares an entity, which workbook parts never do");
}

zip_int64_t Locate(zip_t* archive, const std::string& name) {
    return zip_name_locate(archive, name.c_str(), ZIP_FL_NOCASE | ZIP_FL_ENC_GUESS);
}

// Where the bytes of a part come from: Read gives the next ones (0 at the
// end, -1 for a fault, which Fault tells), Restart begins again.
class PartSource {
public:
    virtual ~PartSource() = default;
    // How many bytes the part says it inflates to (0: it does not say).
    virtual zip_uint64_t Size() const = 0;
    virtual zip_int64_t Read(char* buffer, size_t size) = 0;
    virtual std::wstring Fault() const = 0;
    virtual bool Restart() = 0;
};

class ZipPartSource final : public PartSource {
public:
    ZipPartSource(zip_t* archive, zip_uint64_t index) : m_archive(archive), m_index(index) {
        zip_stat_t stat;
        zip_stat_init(&stat);
        if (zip_stat_index(archive, index, 0, &stat) == 0 && (stat.valid & ZIP_STAT_SIZE)) m_size = stat.size;
        Restart();
    }
    bool Opened() const { return m_file != nullptr; }
    zip_uint64_t Size() const override { return m_size; }
    zip_int64_t Read(char* buffer, size_t size) override { return zip_fread(m_file.get(), buffer, size); }
    std::wstring Fault() const override { return FromUtf8(zip_file_strerror(m_file.get())); }
    bool Restart() override {
        m_file.reset(zip_fopen_index(m_archive, m_index, 0));
        return m_file != nullptr;
    }

private:
    zip_t* m_archive;
    zip_uint64_t m_index;
    zip_uint64_t m_size = 0;
    std::unique_ptr<zip_file_t, decltype(&zip_fclose)> m_file{nullptr, &zip_fclose};
};

class BytesPartSource final : public PartSource {
public:
    explicit BytesPartSource(std::string_view bytes) : m_bytes(bytes) {}
    zip_uint64_t Size() const override { return m_bytes.size(); }
    zip_int64_t Read(char* buffer, size_t size) override {
        size_t count = std::min(size, m_bytes.size() - m_at);
        if (count > 0) std::memcpy(buffer, m_bytes.data() + m_at, count);
        m_at += count;
        return static_cast<zip_int64_t>(count);
    }
    std::wstring Fault() const override { return std::wstring(); }
    bool Restart() override {
        m_at = 0;
        return true;
    }

private:
    std::string_view m_bytes;
    size_t m_at = 0;
};

// Inflates a part on another thread, a few pieces ahead of its reader: on
// two cores the reader reads one piece while the next is inflated. A piece
// is empty at the end; a fault (a damaged part, or one that inflates past
// the limit) ends the pieces too, and says so.
class InflateAhead {
public:
    explicit InflateAhead(PartSource& source) : m_source(source), m_thread([this] { Run(); }) {}
    ~InflateAhead() {
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_stopping = true;
        }
        m_changed.notify_all();
        m_thread.join();
    }
    InflateAhead(const InflateAhead&) = delete;
    InflateAhead& operator=(const InflateAhead&) = delete;

    // The next piece, in place of the one given back; false for a fault.
    bool Next(std::vector<char>& piece) {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait(lock, [this] { return !m_ready.empty() || m_fault; });
        if (m_ready.empty()) return false;
        piece.swap(m_ready.front());
        m_free.push_back(std::move(m_ready.front()));  // its memory serves again
        m_ready.pop_front();
        m_changed.notify_all();
        return true;
    }

private:
    static constexpr size_t kPiece = 1 << 20;
    static constexpr int kAhead = 4;

    void Run() {
        zip_uint64_t total = 0;
        std::vector<char> piece;
        for (;;) {
            {
                std::unique_lock<std::mutex> lock(m_mutex);
                m_changed.wait(lock, [this] { return m_stopping || static_cast<int>(m_ready.size()) < kAhead; });
                if (m_stopping) return;
                if (!m_free.empty()) {
                    piece = std::move(m_free.back());
                    m_free.pop_back();
                }
            }
            piece.resize(kPiece);
            zip_int64_t got = m_source.Read(piece.data(), piece.size());
            total += got > 0 ? static_cast<zip_uint64_t>(got) : 0;
            std::lock_guard<std::mutex> lock(m_mutex);
            if (got < 0 || total > kMaxPartBytes) {
                m_fault = true;
                m_changed.notify_all();
                return;
            }
            piece.resize(static_cast<size_t>(got));
            m_ready.push_back(std::move(piece));
            piece = std::vector<char>();
            m_changed.notify_all();
            if (got == 0) return;
        }
    }

    PartSource& m_source;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::vector<char>> m_ready;
    std::vector<std::vector<char>> m_free;  // pieces read, to be filled again
    bool m_stopping = false;
    bool m_fault = false;
    std::thread m_thread;  // last: it starts once the rest is made
};

// The pieces of a small part, read when they are wanted.
class ReadAsWanted {
public:
    explicit ReadAsWanted(PartSource& source) : m_source(source) {}
    bool Next(std::vector<char>& piece) {
        piece.resize(kChunk);
        zip_int64_t got = m_source.Read(piece.data(), piece.size());
        m_total += got > 0 ? static_cast<zip_uint64_t>(got) : 0;
        if (got < 0 || m_total > kMaxPartBytes) return false;
        piece.resize(static_cast<size_t>(got));
        return true;
    }

private:
    PartSource& m_source;
    zip_uint64_t m_total = 0;
};

// Parts that inflate to more than this are inflated ahead, on another thread.
constexpr zip_uint64_t kInflateAheadFrom = 4u << 20;

template <class Pieces>
bool ReadPlainPieces(Pieces& pieces, XmlHandler& handler) {
    PlainXmlReader reader(handler, kMaxXmlDepth);
    std::vector<char> buffer, piece;
    size_t filled = 0;
    for (;;) {
        if (!pieces.Next(piece)) return false;
        if (buffer.size() < filled + piece.size()) buffer.resize(std::max(2 * buffer.size(), filled + piece.size()));
        if (!piece.empty()) std::memcpy(buffer.data() + filled, piece.data(), piece.size());
        filled += piece.size();
        bool last = piece.empty();
        size_t used = 0;
        PlainXmlReader::Result result = reader.Read(buffer.data(), filled, last, used);
        if (result == PlainXmlReader::Result::kDone) return true;
        if (result == PlainXmlReader::Result::kNotPlain || last) return false;
        if (filled > used) std::memmove(buffer.data(), buffer.data() + used, filled - used);
        filled -= used;
    }
}

// Reads a part with the plain reader; false when the full parser must read
// it: it leaves the plain form, or it cannot be inflated (whose message the
// full parser gives, at the point where it meets the fault).
bool ReadPlain(PartSource& source, XmlHandler& handler) {
    if (source.Size() >= kInflateAheadFrom) {
        InflateAhead ahead(source);
        return ReadPlainPieces(ahead, handler);
    }
    ReadAsWanted pieces(source);
    return ReadPlainPieces(pieces, handler);
}

bool Parse(PartSource& source, const std::wstring& part, XmlHandler& handler, std::wstring& why) {
    // A part that says it inflates past the limit goes to the full parser
    // at once, which stops it there.
    if (handler.CanRewind() && source.Size() <= kMaxPartBytes) {
        if (ReadPlain(source, handler)) return true;
        handler.Rewind();
        handler.done = false;
        if (!source.Restart()) {
            why = part + L" cannot be opened again";
            return false;
        }
    }
    std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(XML_ParserCreateNS(nullptr, kNamespaceSeparator),
                                                                         &XML_ParserFree);
    if (!parser) {
        why = L"there is not enough memory to read it";
        return false;
    }
    ParseState state;
    state.parser = parser.get();
    state.handler = &handler;
    XML_SetUserData(parser.get(), &state);
    XML_SetElementHandler(parser.get(), OnStart, OnEnd);
    XML_SetCharacterDataHandler(parser.get(), OnCharacters);
    XML_SetStartDoctypeDeclHandler(parser.get(), OnDoctype);
    XML_SetEntityDeclHandler(parser.get(), OnEntity);
    XML_SetParamEntityParsing(parser.get(), XML_PARAM_ENTITY_PARSING_NEVER);

    std::vector<char> buffer(kChunk);
    zip_uint64_t total = 0;
    for (;;) {
        zip_int64_t got = source.Read(buffer.data(), buffer.size());
        if (got < 0) {
            why = part + L" is damaged (" + source.Fault() + L")";
            return false;
        }
        total += static_cast<zip_uint64_t>(got);
        if (total > kMaxPartBytes) {
            why = part + L" inflates to more than " + std::to_wstring(kMaxPartBytes >> 20) + L" MB";
            return false;
        }
        bool last = got == 0;
        if (XML_Parse(parser.get(), buffer.data(), static_cast<int>(got), last ? 1 : 0) == XML_STATUS_ERROR) {
            if (!state.fault.empty()) {
                why = part + L" " + state.fault;
                return false;
            }
            if (handler.done) return true;
            why = part + L" is not well-formed XML (line " + std::to_wstring(XML_GetCurrentLineNumber(parser.get())) +
                  L": " + FromUtf8(XML_ErrorString(XML_GetErrorCode(parser.get()))) + L")";
            return false;
        }
        XML_ParsingStatus status;
        XML_GetParsingStatus(parser.get(), &status);
        if (status.parsing == XML_FINISHED) {
            if (!state.fault.empty()) {
                why = part + L" " + state.fault;
                return false;
            }
            return true;
        }
        if (last) return true;
    }
}

}  // namespace

const char* XmlAttribute(const char** attributes, std::string_view name) {
    for (int i = 0; attributes[i]; i += 2)
        if (name == attributes[i]) return attributes[i + 1];
    return nullptr;
}

bool HasPart(zip_t* archive, const std::string& name) { return Locate(archive, name) >= 0; }

bool ParsePart(zip_t* archive, const std::string& name, XmlHandler& handler, std::wstring& why) {
    std::wstring part = L"its part " + FromUtf8(name);
    zip_int64_t index = Locate(archive, name);
    if (index < 0) {
        why = part + L" is missing";
        return false;
    }
    ZipPartSource source(archive, static_cast<zip_uint64_t>(index));
    if (!source.Opened()) {
        why = part + L" cannot be opened (" + FromUtf8(zip_strerror(archive)) + L")";
        return false;
    }
    return Parse(source, part, handler, why);
}

bool ParseXmlBytes(std::string_view bytes, const std::string& name, XmlHandler& handler, std::wstring& why) {
    BytesPartSource source(bytes);
    return Parse(source, L"its part " + FromUtf8(name), handler, why);
}

}  // namespace cadhost::spreadsheet
