#include "spreadsheet/XmlPart.h"

#include <expat.h>

#include <memory>
#include <vector>

#include "core/Utf8.h"
#include "spreadsheet/Workbook.h"

namespace cadhost::spreadsheet {
namespace {

constexpr char kNamespaceSeparator = '\x1f';
constexpr size_t kChunk = 64 * 1024;

std::string_view LocalName(const char* name) {
    std::string_view text(name);
    size_t cut = text.rfind(kNamespaceSeparator);
    return cut == std::string_view::npos ? text : text.substr(cut + 1);
}

struct ParseState {
    XML_Parser parser = nullptr;
    XmlHandler* handler = nullptr;
    int depth = 0;
    std::wstring fault;  // why the parse was stopped, if not by the handler
    std::vector<const char*> attributes;
    std::vector<std::string> names;
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
    state.names.clear();
    state.attributes.clear();
    for (int i = 0; attributes[i]; i += 2) state.names.emplace_back(LocalName(attributes[i]));
    for (size_t i = 0; i < state.names.size(); ++i) {
        state.attributes.push_back(state.names[i].c_str());
        state.attributes.push_back(attributes[2 * i + 1]);
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
    std::unique_ptr<zip_file_t, decltype(&zip_fclose)> file(zip_fopen_index(archive, static_cast<zip_uint64_t>(index), 0),
                                                            &zip_fclose);
    if (!file) {
        why = part + L" cannot be opened (" + FromUtf8(zip_strerror(archive)) + L")";
        return false;
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
        zip_int64_t got = zip_fread(file.get(), buffer.data(), buffer.size());
        if (got < 0) {
            why = part + L" is damaged (" + FromUtf8(zip_file_strerror(file.get())) + L")";
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

}  // namespace cadhost::spreadsheet
