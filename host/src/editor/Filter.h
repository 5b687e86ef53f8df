// Selection filter lists: tests of an entity's groups joined by the -4
// operators.
#pragma once

#include <adsdef.h>
#include <dbmain.h>

#include <string>
#include <vector>

namespace cadhost {

class SelectionFilter {
public:
    // Reads a filter list; false for a malformed one, with why. A null list
    // keeps everything.
    bool Parse(const resbuf* list, std::wstring& why);
    bool Accepts(const AcDbEntity& entity) const;

private:
    struct Node {
        enum class Kind { kAnd, kOr, kXor, kNot, kTest } kind = Kind::kAnd;
        std::vector<Node> children;
        int code = 0;
        std::wstring relation = L"=";  // for numbers also < <= > >= and != /= <>
        bool isText = true;
        std::wstring text;
        long number = 0;
    };
    bool Evaluate(const Node& node, const AcDbEntity& entity) const;
    bool Test(const Node& node, const AcDbEntity& entity) const;
    Node m_root;
};

}  // namespace cadhost
