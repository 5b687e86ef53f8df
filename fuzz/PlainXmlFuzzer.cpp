// The fast reader of plain XML against the full parser on any bytes as a
// part of a workbook: the handler hears the same, and the part reads or
// fails with the same reason, whether the fast reader read it or gave it up.
// The first byte cuts the text into pieces of that size for the reader on
// its own, which must hear the same as from the whole.
#include <cstdint>
#include <string>

#include "FuzzSupport.h"
#include "core/Utf8.h"
#include "spreadsheet/PlainXml.h"
#include "spreadsheet/Workbook.h"
#include "spreadsheet/XmlPart.h"

using namespace cadhost::spreadsheet;

namespace {

class Recorder : public XmlHandler {
public:
    explicit Recorder(bool rewindable) : m_rewindable(rewindable) {}
    void Start(std::string_view name, const char** attributes) override {
        log += "<" + std::string(name);
        for (int i = 0; attributes[i]; i += 2) log += " " + std::string(attributes[i]) + "=[" + attributes[i + 1] + "]";
        log += ">";
    }
    void End(std::string_view name) override {
        log += "</" + std::string(name) + ">";
        if (name == "stop") done = true;
    }
    void Characters(std::string_view text) override { log += text; }
    bool CanRewind() const override { return m_rewindable; }
    void Rewind() override { log.clear(); }
    std::string log;

private:
    bool m_rewindable;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) return 0;
    size_t piece = 1 + data[0] % 64;
    std::string text(reinterpret_cast<const char*>(data + 1), size - 1);

    Recorder full(false), fast(true);
    std::wstring fullWhy, fastWhy;
    bool fullRead = ParseXmlBytes(text, "part.xml", full, fullWhy);
    bool fastRead = ParseXmlBytes(text, "part.xml", fast, fastWhy);
    QM_FUZZ_CHECK(fullRead == fastRead);
    QM_FUZZ_CHECK(fullWhy == fastWhy);
    QM_FUZZ_CHECK(full.log == fast.log);

    Recorder pieces(true);
    PlainXmlReader reader(pieces, kMaxXmlDepth);
    std::string buffer;
    size_t at = 0;
    PlainXmlReader::Result result = PlainXmlReader::Result::kMore;
    while (result == PlainXmlReader::Result::kMore) {
        size_t take = std::min(piece, text.size() - at);
        buffer.append(text, at, take);
        at += take;
        size_t used = 0;
        result = reader.Read(buffer.data(), buffer.size(), take == 0, used);
        QM_FUZZ_CHECK(used <= buffer.size());
        buffer.erase(0, used);
    }
    // Read alone, the reader heard what the full parser tells.
    if (result == PlainXmlReader::Result::kDone) {
        QM_FUZZ_CHECK(fullRead);
        QM_FUZZ_CHECK(pieces.log == full.log);
    }
    return 0;
}
