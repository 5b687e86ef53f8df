// The preprocessor of resource scripts: #include of the script's own
// headers (the platform's headers are known without reading), #define and
// #undef of names without arguments, #if, #ifdef, #ifndef, #elif, #else and
// #endif, #pragma. Defined names are replaced where they are used.
#pragma once

#include <string>
#include <vector>

#include "ui/resources/RcLexer.h"
#include "ui/resources/ResourceScript.h"

namespace cadhost::ui::rc {

struct Preprocessed {
    std::vector<Token> tokens;        // ends with an End token
    std::vector<std::wstring> files;  // names by Token::file
};

// Answers false with "FILE:LINE: why" at the first fault.
bool Preprocess(const std::vector<SourceFile>& sources, Preprocessed& result, std::wstring& error);

}  // namespace cadhost::ui::rc
