// Texts of DXF files: from 2007 on they are UTF-8; before, they are in the
// file's code page ($DWGCODEPAGE), with characters outside it written as
// \U+XXXX. The host keeps texts as UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace cadhost::dxf {

class TextCodec {
public:
    // utf8: the file's texts are UTF-8; else codePage names the code page
    // ("ANSI_1252"); an unknown page reads as 1252.
    TextCodec(bool utf8, std::string_view codePage);
    ~TextCodec();
    TextCodec(const TextCodec&) = delete;
    TextCodec& operator=(const TextCodec&) = delete;

    std::string Decode(std::string_view raw) const;
    std::string Encode(std::string_view utf8) const;
    // The same without a copy where the text goes to the file as it is (a
    // UTF-8 file, or plain ASCII): the view is of utf8 itself, else of
    // scratch, which holds the encoded text.
    std::string_view Encode(std::string_view utf8, std::string& scratch) const;

private:
    bool m_utf8;
    bool m_cp1252;
    void* m_toUtf8 = nullptr;    // iconv descriptors for other pages
    void* m_fromUtf8 = nullptr;
};

}  // namespace cadhost::dxf
