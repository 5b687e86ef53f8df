// One XML part of a zip package, streamed through expat with the limits
// that a file from anywhere needs: the part may inflate to kMaxPartBytes at
// most, may nest elements kMaxXmlDepth deep at most, and may declare no
// document type (so no entity is ever expanded).
#pragma once

#include <zip.h>

#include <string>
#include <string_view>

namespace cadhost::spreadsheet {

// What a reader of a part is told. Names come without their namespace.
class XmlHandler {
public:
    virtual ~XmlHandler() = default;
    // attributes: name, value, name, value, ..., null; names without namespace.
    virtual void Start(std::string_view name, const char** attributes) = 0;
    virtual void End(std::string_view name) {}
    virtual void Characters(std::string_view text) {}
    // Set by a handler that has read all it needs: the parse stops there.
    bool done = false;
    // A handler that can forget all it was told, and says so, is told of a
    // large part by a fast reader of plain XML first; where the part leaves
    // the plain form, it is rewound and the full parser tells it again.
    virtual bool CanRewind() const { return false; }
    virtual void Rewind() {}
};

// The value of an attribute by its name without namespace, or null.
const char* XmlAttribute(const char** attributes, std::string_view name);

// Whether the archive holds a part of that name (without regard to case).
bool HasPart(zip_t* archive, const std::string& name);

// Streams the part into the handler. False with why ("its part NAME ...")
// when it is missing, damaged, too large, too deep or not well-formed; a
// handler that ends early is no failure.
bool ParsePart(zip_t* archive, const std::string& name, XmlHandler& handler, std::wstring& why);
// The same for a part's bytes at hand.
bool ParseXmlBytes(std::string_view bytes, const std::string& name, XmlHandler& handler, std::wstring& why);

}  // namespace cadhost::spreadsheet
