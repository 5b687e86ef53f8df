#include "editor/Filter.h"

#include <adslib.h>
#include <dbents.h>
#include <dbsymtb.h>
#include <tchar.h>

#include "db/DatabaseImpl.h"
#include "db/KeptObjects.h"
#include "editor/Wildcard.h"

namespace cadhost {
namespace {

bool IsTextCode(int code) {
    return (code >= 0 && code <= 9) || code == 100 || code == 102 || code == 105 || (code >= 300 && code <= 369) ||
           (code >= 390 && code <= 399) || (code >= 410 && code <= 419) || (code >= 430 && code <= 439) ||
           (code >= 470 && code <= 481) || (code >= 999 && code <= 1009);
}

std::wstring Upper(std::wstring text) {
    for (wchar_t& c : text)
        if (c >= L'a' && c <= L'z') c = static_cast<wchar_t>(c - 32);
    return text;
}

// What an entity holds under a code that filters test; false when it holds
// nothing there.
bool TextOf(const AcDbEntity& entity, int code, std::wstring& value) {
    switch (code) {
    case 0: value = DxfNameOf(&entity); return true;
    case 8: {
        auto* layer = AcDbLayerTableRecord::cast(DatabaseImpl::Peek(entity.layerId()));
        value = layer ? layer->name() : L"0";
        return true;
    }
    case 2: {
        auto* reference = AcDbBlockReference::cast(&entity);
        auto* block = reference ? AcDbBlockTableRecord::cast(DatabaseImpl::Peek(reference->blockTableRecord())) : nullptr;
        if (!block) return false;
        value = block->name();
        return true;
    }
    default: return false;
    }
}

bool NumberOf(const AcDbEntity& entity, int code, long& value) {
    if (code == 67) {
        AcDbDatabase* db = entity.database();
        value = db && entity.ownerId() != db->modelSpaceId() ? 1 : 0;
        return true;
    }
    return false;
}

}  // namespace

bool SelectionFilter::Parse(const resbuf* list, std::wstring& why) {
    m_root = Node();
    std::vector<Node*> open{&m_root};
    std::vector<std::wstring> names{L""};
    std::wstring relation;
    for (const resbuf* rb = list; rb; rb = rb->rbnext) {
        int code = rb->restype == RTDXF0 ? 0 : rb->restype;
        if (code == -4) {
            std::wstring op = Upper(rb->resval.rstring ? rb->resval.rstring : L"");
            if (op == L"<AND" || op == L"<OR" || op == L"<XOR" || op == L"<NOT") {
                if (!relation.empty()) {
                    why = L"a relation stands before " + op;
                    return false;
                }
                Node node;
                node.kind = op == L"<AND" ? Node::Kind::kAnd : op == L"<OR" ? Node::Kind::kOr
                                                           : op == L"<XOR" ? Node::Kind::kXor : Node::Kind::kNot;
                open.back()->children.push_back(node);
                open.push_back(&open.back()->children.back());
                names.push_back(op.substr(1));
                continue;
            }
            if (op == L"AND>" || op == L"OR>" || op == L"XOR>" || op == L"NOT>") {
                std::wstring name = op.substr(0, op.size() - 1);
                if (open.size() < 2 || names.back() != name) {
                    why = L"\"" + op + L"\" closes no \"<" + name + L"\"";
                    return false;
                }
                Node& node = *open.back();
                size_t operands = node.children.size();
                if ((node.kind == Node::Kind::kNot && operands != 1) || (node.kind == Node::Kind::kXor && operands != 2) ||
                    operands == 0) {
                    why = L"\"<" + name + L"\" has " + std::to_wstring(operands) + L" operands";
                    return false;
                }
                open.pop_back();
                names.pop_back();
                continue;
            }
            if (op == L"=" || op == L"!=" || op == L"/=" || op == L"<>" || op == L"<" || op == L"<=" || op == L">" ||
                op == L">=" || op == L"*") {
                relation = op;
                continue;
            }
            why = L"\"" + op + L"\" is no filter operator";
            return false;
        }
        Node test;
        test.kind = Node::Kind::kTest;
        test.code = code;
        test.isText = IsTextCode(code);
        if (test.isText) {
            test.text = rb->resval.rstring ? rb->resval.rstring : L"";
        } else if (rb->restype == RTLONG || (code >= 90 && code <= 99) || (code >= 1071 && code <= 1071)) {
            test.number = rb->resval.rlong;
        } else if ((code >= 60 && code <= 79) || (code >= 270 && code <= 289) || (code >= 370 && code <= 389) ||
                   rb->restype == RTSHORT) {
            test.number = rb->resval.rint;
        } else {
            why = L"group " + std::to_wstring(code) + L" cannot be filtered on";
            return false;
        }
        if (!relation.empty()) test.relation = relation;
        relation.clear();
        open.back()->children.push_back(test);
    }
    if (open.size() != 1) {
        why = L"\"<" + names.back() + L"\" is not closed";
        return false;
    }
    if (!relation.empty()) {
        why = L"a relation ends the list";
        return false;
    }
    return true;
}

bool SelectionFilter::Accepts(const AcDbEntity& entity) const { return Evaluate(m_root, entity); }

bool SelectionFilter::Evaluate(const Node& node, const AcDbEntity& entity) const {
    switch (node.kind) {
    case Node::Kind::kAnd:
        for (const Node& child : node.children)
            if (!Evaluate(child, entity)) return false;
        return true;
    case Node::Kind::kOr:
        for (const Node& child : node.children)
            if (Evaluate(child, entity)) return true;
        return false;
    case Node::Kind::kXor: return Evaluate(node.children[0], entity) != Evaluate(node.children[1], entity);
    case Node::Kind::kNot: return !Evaluate(node.children[0], entity);
    case Node::Kind::kTest: return Test(node, entity);
    }
    return false;
}

bool SelectionFilter::Test(const Node& node, const AcDbEntity& entity) const {
    if (node.relation == L"*") return true;
    bool negate = node.relation == L"!=" || node.relation == L"/=" || node.relation == L"<>";
    if (node.isText) {
        std::wstring value;
        if (!TextOf(entity, node.code, value)) return false;
        // Names and types match the pattern without regard to case.
        return WildcardMatch(value, node.text, true) != negate;
    }
    long value;
    if (!NumberOf(entity, node.code, value)) return false;
    if (negate) return value != node.number;
    if (node.relation == L"<") return value < node.number;
    if (node.relation == L"<=") return value <= node.number;
    if (node.relation == L">") return value > node.number;
    if (node.relation == L">=") return value >= node.number;
    return value == node.number;
}

}  // namespace cadhost
