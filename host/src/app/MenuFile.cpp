#include "app/MenuFile.h"

#include <expat.h>
#include <zip.h>

#include <memory>

#include "core/Utf8.h"

namespace cadhost {
namespace {

constexpr const char* kPartName = "MenuGroup.cui";
constexpr zip_uint64_t kLargestPart = 16u << 20;  // a menu is small; anything bigger is not one

struct ParseState {
    std::optional<MenuGroup> group;
    PopMenu* menu = nullptr;
    std::wstring error;
    int depth = 0;
};

std::wstring Attribute(const XML_Char** attributes, const char* name) {
    for (int i = 0; attributes[i]; i += 2) {
        if (std::string(attributes[i]) == name) return FromUtf8(attributes[i + 1]);
    }
    return {};
}

void OnStart(void* data, const XML_Char* element, const XML_Char** attributes) {
    auto* state = static_cast<ParseState*>(data);
    std::string name = element;
    if (name == "MenuGroup") {
        if (state->group) {
            state->error = L"more than one menu group";
            return;
        }
        state->group.emplace();
        state->group->name = Attribute(attributes, "Name");
    } else if (name == "PopMenu" && state->group) {
        state->group->menus.push_back(PopMenu{Attribute(attributes, "Alias"), Attribute(attributes, "Name"), {}});
        state->menu = &state->group->menus.back();
    } else if (name == "Item" && state->menu) {
        state->menu->items.push_back(MenuItem{Attribute(attributes, "Name"), Attribute(attributes, "Macro")});
    } else if (name == "Separator" && state->menu) {
        state->menu->items.push_back(MenuItem{});
    }
}

void OnEnd(void* data, const XML_Char* element) {
    auto* state = static_cast<ParseState*>(data);
    if (std::string(element) == "PopMenu") state->menu = nullptr;
}

}  // namespace

std::optional<MenuGroup> ReadMenuFile(const std::filesystem::path& file, std::wstring& error) {
    int zipError = 0;
    std::unique_ptr<zip_t, decltype(&zip_discard)> archive(zip_open(file.c_str(), ZIP_RDONLY, &zipError),
                                                           &zip_discard);
    if (!archive) {
        zip_error_t why;
        zip_error_init_with_code(&why, zipError);
        error = L"not a customization package (" + FromUtf8(zip_error_strerror(&why)) + L")";
        zip_error_fini(&why);
        return std::nullopt;
    }
    zip_stat_t stat;
    if (zip_stat(archive.get(), kPartName, 0, &stat) != 0 || !(stat.valid & ZIP_STAT_SIZE)) {
        error = L"the package holds no MenuGroup.cui";
        return std::nullopt;
    }
    if (stat.size > kLargestPart) {
        error = L"MenuGroup.cui is too large to be a menu";
        return std::nullopt;
    }
    std::unique_ptr<zip_file_t, decltype(&zip_fclose)> part(zip_fopen(archive.get(), kPartName, 0), &zip_fclose);
    std::string xml(stat.size, '\0');
    if (!part || zip_fread(part.get(), xml.data(), stat.size) != static_cast<zip_int64_t>(stat.size)) {
        error = L"MenuGroup.cui cannot be read";
        return std::nullopt;
    }

    ParseState state;
    std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(XML_ParserCreate("UTF-8"), &XML_ParserFree);
    XML_SetUserData(parser.get(), &state);
    XML_SetElementHandler(parser.get(), OnStart, OnEnd);
    if (XML_Parse(parser.get(), xml.data(), static_cast<int>(xml.size()), 1) == XML_STATUS_ERROR) {
        error = L"MenuGroup.cui, line " + std::to_wstring(XML_GetCurrentLineNumber(parser.get())) + L": " +
                FromUtf8(XML_ErrorString(XML_GetErrorCode(parser.get())));
        return std::nullopt;
    }
    if (!state.error.empty()) {
        error = L"MenuGroup.cui: " + state.error;
        return std::nullopt;
    }
    if (!state.group || state.group->name.empty()) {
        error = L"MenuGroup.cui names no menu group";
        return std::nullopt;
    }
    state.group->file = file;
    return state.group;
}

}  // namespace cadhost
