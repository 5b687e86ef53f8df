// A fast reader for XML in the plain form that spreadsheet programs write:
// elements, attributes and text with the five named and the numeric
// character references, names in ASCII, UTF-8, an XML declaration at most.
// Anything else (comments, processing instructions, CDATA, document types,
// carriage returns, blanks that attribute values would have normalised,
// duplicate or unbound names, text that is not well-formed, elements nested
// deeper than the limit) makes it give up, and the full parser reads the
// part instead: what it accepts, the full parser accepts the same and tells
// a handler the same.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "spreadsheet/XmlPart.h"

namespace cadhost::spreadsheet {

class PlainXmlReader {
public:
    PlainXmlReader(XmlHandler& handler, int maxDepth) : m_handler(handler), m_maxDepth(maxDepth) {}

    enum class Result {
        kMore,      // give the rest again, with what follows it
        kDone,      // the document ended, or the handler has all it needs
        kNotPlain,  // the text leaves the plain form: the full parser must read it
    };
    // Reads the complete pieces at the front of data (size bytes; last: the
    // document ends there) and tells the handler of them; used says how many
    // bytes they took. The bytes read are changed in place. A piece that
    // runs past the end is left for the next call.
    Result Read(char* data, size_t size, bool last, size_t& used);

private:
    struct Attribute {
        size_t name, nameEnd, colon;  // colon: where the prefix ends, or npos
        size_t value, valueEnd;       // between the quotes
    };
    struct Binding {
        std::string prefix;
        int depth;
    };

    // What reading one tag came to: on to the next piece, the tag runs past
    // the end, or as Result.
    enum class Step { kNext, kIncomplete, kDone, kNotPlain };
    Step StartTag(char* data, size_t size, size_t& at);
    Step EndTag(char* data, size_t size, size_t& at);
    bool Declaration(const char* data, size_t size, size_t& at, bool& complete);
    bool Bound(const char* prefix, size_t length) const;

    XmlHandler& m_handler;
    int m_maxDepth;
    bool m_started = false;  // past the place of the XML declaration
    bool m_rootSeen = false;
    // The open elements' names (as written, with prefix), one after another.
    std::string m_names;
    std::vector<size_t> m_nameStarts;
    std::vector<Binding> m_bindings;
    std::vector<Attribute> m_attributes;
    std::vector<const char*> m_pointers;
};

}  // namespace cadhost::spreadsheet
