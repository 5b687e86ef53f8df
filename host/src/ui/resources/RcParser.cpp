// The statements of a resource script: DIALOG and DIALOGEX with their
// options and control statements, MENU, STRINGTABLE and LANGUAGE. Other
// resources (icons, version information, the editor's TEXTINCLUDE and
// DESIGNINFO blocks...) are passed over whole.
#include <cwctype>

#include "ui/resources/RcExpression.h"
#include "ui/resources/RcPreprocessor.h"
#include "ui/resources/ResourceScript.h"

namespace cadhost::ui {
namespace {

using rc::Token;

constexpr DWORD kChildVisible = WS_CHILD | WS_VISIBLE;

// The control statements with a caption, and their default styles.
struct TextControl {
    const wchar_t* keyword;
    const wchar_t* className;
    DWORD style;
};

const TextControl kTextControls[] = {
    {L"LTEXT", L"Static", SS_LEFT | WS_GROUP},
    {L"RTEXT", L"Static", SS_RIGHT | WS_GROUP},
    {L"CTEXT", L"Static", SS_CENTER | WS_GROUP},
    {L"PUSHBUTTON", L"Button", BS_PUSHBUTTON | WS_TABSTOP},
    {L"DEFPUSHBUTTON", L"Button", BS_DEFPUSHBUTTON | WS_TABSTOP},
    {L"PUSHBOX", L"Button", BS_PUSHBOX | WS_TABSTOP},
    {L"CHECKBOX", L"Button", BS_CHECKBOX | WS_TABSTOP},
    {L"AUTOCHECKBOX", L"Button", BS_AUTOCHECKBOX | WS_TABSTOP},
    {L"STATE3", L"Button", BS_3STATE | WS_TABSTOP},
    {L"AUTO3STATE", L"Button", BS_AUTO3STATE | WS_TABSTOP},
    {L"RADIOBUTTON", L"Button", BS_RADIOBUTTON},
    {L"AUTORADIOBUTTON", L"Button", BS_AUTORADIOBUTTON},
    {L"GROUPBOX", L"Button", BS_GROUPBOX},
    {L"ICON", L"Static", SS_ICON},
};

// The control statements without a caption.
const TextControl kPlainControls[] = {
    {L"EDITTEXT", L"Edit", ES_LEFT | WS_BORDER | WS_TABSTOP},
    {L"LISTBOX", L"ListBox", LBS_NOTIFY | WS_BORDER},
    {L"COMBOBOX", L"ComboBox", CBS_SIMPLE | WS_TABSTOP},
    {L"SCROLLBAR", L"ScrollBar", SBS_HORZ},
};

const wchar_t* const kMemoryFlags[] = {L"PRELOAD", L"LOADONCALL", L"FIXED",  L"MOVEABLE",
                                       L"DISCARDABLE", L"PURE",   L"IMPURE", L"SHARED", L"NONSHARED"};

// The class names of the standard controls, written as the platform does.
std::wstring CanonicalClass(const std::wstring& name) {
    static const wchar_t* const known[] = {L"Button", L"Edit", L"Static", L"ListBox", L"ComboBox", L"ScrollBar"};
    for (const wchar_t* k : known) {
        std::wstring a = name, b = k;
        for (wchar_t& c : a) c = static_cast<wchar_t>(std::towupper(c));
        for (wchar_t& c : b) c = static_cast<wchar_t>(std::towupper(c));
        if (a == b) return k;
    }
    return name;
}

class Parser {
public:
    Parser(const rc::Preprocessed& input, ResourceScript& script) : m_in(input), m_script(script) {}

    bool Run(std::wstring& error) {
        bool ok = true;
        while (ok && At().kind != Token::Kind::End) ok = Statement();
        if (!ok) error = m_error;
        return ok;
    }

private:
    const Token& At(size_t ahead = 0) const {
        size_t i = m_pos + ahead;
        return i < m_in.tokens.size() ? m_in.tokens[i] : m_in.tokens.back();
    }
    void Skip() {
        if (m_pos + 1 < m_in.tokens.size()) ++m_pos;
    }

    bool Fail(const Token& where, const std::wstring& why) {
        std::wstring file = where.file >= 0 && static_cast<size_t>(where.file) < m_in.files.size()
                                ? m_in.files[static_cast<size_t>(where.file)]
                                : L"(script)";
        m_error = file + L":" + std::to_wstring(where.line) + L": " + why;
        return false;
    }

    bool Expect(const wchar_t* punct, const wchar_t* what) {
        if (!At().IsPunct(punct)) return Fail(At(), std::wstring(what) + L", not " + rc::Describe(At()));
        Skip();
        return true;
    }

    bool Comma(const wchar_t* before) {
        return Expect(L",", (std::wstring(L"a comma is expected before ") + before).c_str());
    }

    bool Number(int64_t& value, const wchar_t* what) {
        size_t pos = m_pos;
        std::wstring why;
        rc::ExpressionReader reader(m_in.tokens, pos, false);
        if (!reader.Read(value, why)) return Fail(pos > m_pos ? m_in.tokens[pos - 1] : At(), why + L" (in " + what + L")");
        m_pos = pos;
        return true;
    }

    bool Integer(int& value, const wchar_t* what) {
        int64_t number = 0;
        if (!Number(number, what)) return false;
        value = static_cast<int>(number);
        return true;
    }

    // A style: values joined by "|", where "NOT value" takes bits away from
    // the statement's default. A control type in the style (the low bits of a
    // combo box or a button) takes the place of the default's.
    bool Style(DWORD& style, const wchar_t* what, DWORD typeMask = 0) {
        DWORD added = 0;
        DWORD removed = 0;
        while (true) {
            bool remove = At().IsWord(L"NOT");
            if (remove) Skip();
            size_t pos = m_pos;
            std::wstring why;
            int64_t value = 0;
            rc::ExpressionReader reader(m_in.tokens, pos, false);
            if (!reader.Read(value, why, rc::ExpressionReader::BitXor))
                return Fail(pos > m_pos ? m_in.tokens[pos - 1] : At(), why + L" (in " + what + L")");
            m_pos = pos;
            if (remove) removed |= static_cast<DWORD>(value);
            else added |= static_cast<DWORD>(value);
            if (!At().IsPunct(L"|")) break;
            Skip();
        }
        if (added & typeMask) style &= ~typeMask;
        style = (style | added) & ~removed;
        return true;
    }

    bool Text(std::wstring& text, const wchar_t* what) {
        if (At().kind != Token::Kind::String)
            return Fail(At(), std::wstring(what) + L" in double quotes is expected, not " + rc::Describe(At()));
        text = At().text;
        Skip();
        return true;
    }

    bool IsBegin(const Token& t) const { return t.IsWord(L"BEGIN") || t.IsPunct(L"{"); }
    bool IsEnd(const Token& t) const { return t.IsWord(L"END") || t.IsPunct(L"}"); }

    bool Begin(const wchar_t* what) {
        if (!IsBegin(At())) return Fail(At(), std::wstring(L"BEGIN is expected for ") + what + L", not " + rc::Describe(At()));
        Skip();
        return true;
    }

    void MemoryFlags() {
        bool more = true;
        while (more) {
            more = false;
            for (const wchar_t* flag : kMemoryFlags) {
                if (At().IsWord(flag)) {
                    Skip();
                    more = true;
                }
            }
        }
    }

    // A block of a resource that the host does not use, BEGIN to its END.
    bool SkipBlock(const Token& start) {
        while (!IsBegin(At())) {
            if (At().kind == Token::Kind::End) return Fail(start, L"this resource has no BEGIN ... END block");
            Skip();
        }
        int depth = 0;
        do {
            if (At().kind == Token::Kind::End) return Fail(start, L"the block of this resource is not closed with END");
            if (IsBegin(At())) ++depth;
            else if (IsEnd(At())) --depth;
            Skip();
        } while (depth > 0);
        return true;
    }

    bool Statement() {
        const Token& first = At();
        if (first.IsWord(L"LANGUAGE")) {
            Skip();
            int64_t ignored = 0;
            return Number(ignored, L"LANGUAGE") && Comma(L"the sublanguage") && Number(ignored, L"LANGUAGE");
        }
        if (first.IsWord(L"STRINGTABLE")) return StringTable();

        Token start = first;
        ResourceName name;
        if (first.kind == Token::Kind::String) {
            if (first.text.empty()) return Fail(first, L"a resource name cannot be empty");
            name = ResourceName::Text(first.text);
            Skip();
        } else if (first.kind == Token::Kind::Identifier) {
            for (const wchar_t* keyword : {L"DIALOG", L"DIALOGEX", L"MENU", L"MENUEX", L"BEGIN", L"END", L"CONTROL",
                                           L"STYLE", L"CAPTION", L"FONT", L"MENUITEM", L"POPUP"}) {
                if (first.IsWord(keyword))
                    return Fail(first, L"a resource name or statement is expected, not " + rc::Describe(first));
            }
            name = ResourceName::Text(first.text);
            Skip();
        } else if (first.kind == Token::Kind::Number || first.IsPunct(L"(") || first.IsPunct(L"-")) {
            int64_t value = 0;
            if (!Number(value, L"a resource number")) return false;
            if (value < 1 || value > 0xFFFF)
                return Fail(start, L"a resource number must be between 1 and 65535, not " + std::to_wstring(value));
            name = ResourceName::Number(static_cast<WORD>(value));
        } else {
            return Fail(first, L"a resource name or statement is expected, not " + rc::Describe(first));
        }

        const Token& type = At();
        if (type.IsWord(L"DIALOG") || type.IsWord(L"DIALOGEX")) return Dialog(name, start);
        if (type.IsWord(L"MENU")) return Menu(name, start);
        if (type.IsWord(L"MENUEX"))
            return Fail(type, L"MENUEX is not supported; write the menu as MENU");
        if (type.kind == Token::Kind::End) return Fail(start, L"the resource " + name.Describe() + L" has no type");
        if (type.kind == Token::Kind::Punct && !IsBegin(type))
            return Fail(type, L"a resource type is expected after " + name.Describe() + L", not " + rc::Describe(type));
        Skip();
        MemoryFlags();
        if (At().kind == Token::Kind::String) {  // a resource in a file of its own
            Skip();
            return true;
        }
        return SkipBlock(start);
    }

    bool StringTable() {
        Token start = At();
        Skip();
        MemoryFlags();
        while (!IsBegin(At())) {
            if (At().IsWord(L"LANGUAGE")) {
                Skip();
                int64_t ignored = 0;
                if (!Number(ignored, L"LANGUAGE") || !Comma(L"the sublanguage") || !Number(ignored, L"LANGUAGE"))
                    return false;
            } else if (At().IsWord(L"CHARACTERISTICS") || At().IsWord(L"VERSION")) {
                Skip();
                int64_t ignored = 0;
                if (!Number(ignored, L"STRINGTABLE")) return false;
            } else {
                return Begin(L"STRINGTABLE");
            }
        }
        Skip();
        while (!IsEnd(At())) {
            if (At().kind == Token::Kind::End) return Fail(start, L"the STRINGTABLE is not closed with END");
            Token entry = At();
            int64_t id = 0;
            if (!Number(id, L"a string id")) return false;
            if (id < 0 || id > 0xFFFF) return Fail(entry, L"a string id must be between 0 and 65535");
            if (At().IsPunct(L",")) Skip();
            std::wstring text;
            if (!Text(text, L"the string")) return false;
            if (!m_script.AddString(static_cast<UINT>(id), std::move(text)))
                return Fail(entry, L"the string " + std::to_wstring(id) + L" is defined twice");
        }
        Skip();
        return true;
    }

    bool Dialog(const ResourceName& name, const Token& start) {
        DialogTemplate dialog;
        dialog.name = name;
        dialog.line = start.line;
        dialog.extended = At().IsWord(L"DIALOGEX");
        Skip();
        MemoryFlags();
        if (!Integer(dialog.x, L"the dialog's x") || !Comma(L"the dialog's y") || !Integer(dialog.y, L"the dialog's y") ||
            !Comma(L"the dialog's width") || !Integer(dialog.cx, L"the dialog's width") ||
            !Comma(L"the dialog's height") || !Integer(dialog.cy, L"the dialog's height"))
            return false;
        if (dialog.extended && At().IsPunct(L",")) {
            Skip();
            int help = 0;
            if (!Integer(help, L"the dialog's help id")) return false;
            dialog.helpId = static_cast<DWORD>(help);
        }
        bool styled = false;
        DWORD style = 0;
        while (!IsBegin(At())) {
            const Token& option = At();
            if (option.IsWord(L"STYLE")) {
                Skip();
                styled = true;
                style = 0;
                if (!Style(style, L"the dialog's STYLE")) return false;
            } else if (option.IsWord(L"EXSTYLE")) {
                Skip();
                if (!Style(dialog.exStyle, L"the dialog's EXSTYLE")) return false;
            } else if (option.IsWord(L"CAPTION")) {
                Skip();
                if (!Text(dialog.caption, L"the caption")) return false;
            } else if (option.IsWord(L"FONT")) {
                Skip();
                FontTemplate font;
                if (!Integer(font.pointSize, L"the font's size") || !Comma(L"the font's name") ||
                    !Text(font.face, L"the font's name"))
                    return false;
                if (font.pointSize <= 0 || font.pointSize > 144)
                    return Fail(option, L"a font size must be between 1 and 144 points");
                if (At().IsPunct(L",")) {
                    Skip();
                    if (!Integer(font.weight, L"the font's weight")) return false;
                    if (At().IsPunct(L",")) {
                        Skip();
                        int italic = 0;
                        if (!Integer(italic, L"the font's italic flag")) return false;
                        font.italic = italic != 0;
                        if (At().IsPunct(L",")) {
                            Skip();
                            if (!Integer(font.charset, L"the font's character set")) return false;
                        }
                    }
                }
                dialog.font = font;
            } else if (option.IsWord(L"MENU")) {
                Skip();
                if (At().kind == Token::Kind::String || At().kind == Token::Kind::Identifier ||
                    At().kind == Token::Kind::Number) {
                    dialog.menu = At().text;
                    Skip();
                } else {
                    return Fail(At(), L"a menu name is expected after MENU");
                }
            } else if (option.IsWord(L"CLASS")) {
                Skip();
                if (At().kind == Token::Kind::String || At().kind == Token::Kind::Identifier) {
                    dialog.windowClass = At().text;
                    Skip();
                } else {
                    return Fail(At(), L"a class name is expected after CLASS");
                }
            } else if (option.IsWord(L"LANGUAGE")) {
                Skip();
                int64_t ignored = 0;
                if (!Number(ignored, L"LANGUAGE") || !Comma(L"the sublanguage") || !Number(ignored, L"LANGUAGE"))
                    return false;
            } else if (option.IsWord(L"CHARACTERISTICS") || option.IsWord(L"VERSION")) {
                Skip();
                int64_t ignored = 0;
                if (!Number(ignored, L"the dialog's options")) return false;
            } else {
                return Fail(option, L"a dialog option or BEGIN is expected, not " + rc::Describe(option));
            }
        }
        Skip();
        dialog.style = styled ? style : (WS_POPUP | WS_BORDER | WS_SYSMENU);
        if (!dialog.caption.empty()) dialog.style |= WS_CAPTION;
        if (dialog.font) dialog.style |= DS_SETFONT;
        while (!IsEnd(At())) {
            if (At().kind == Token::Kind::End)
                return Fail(start, L"the dialog " + name.Describe() + L" is not closed with END");
            ControlTemplate control;
            if (!Control(control, dialog.extended)) return false;
            dialog.controls.push_back(std::move(control));
        }
        Skip();
        if (!m_script.Add(std::move(dialog))) return Fail(start, L"the dialog " + name.Describe() + L" is defined twice");
        return true;
    }

    bool Place(ControlTemplate& control) {
        return Integer(control.x, L"the control's x") && Comma(L"the control's y") &&
               Integer(control.y, L"the control's y") && Comma(L"the control's width") &&
               Integer(control.cx, L"the control's width") && Comma(L"the control's height") &&
               Integer(control.cy, L"the control's height");
    }

    // ", style [, extended style [, help id]]" after the place.
    bool Tail(ControlTemplate& control, bool extended, bool styleFirst) {
        if (styleFirst && At().IsPunct(L",")) {
            Skip();
            DWORD typeMask = control.className == L"Button" ? BS_TYPEMASK : control.className == L"ComboBox" ? 0x3 : 0;
            if (!Style(control.style, L"the control's style", typeMask)) return false;
        }
        if (At().IsPunct(L",")) {
            Skip();
            if (!Style(control.exStyle, L"the control's extended style")) return false;
        }
        if (extended && At().IsPunct(L",")) {
            Skip();
            int help = 0;
            if (!Integer(help, L"the control's help id")) return false;
            control.helpId = static_cast<DWORD>(help);
        }
        return true;
    }

    bool Control(ControlTemplate& control, bool extended) {
        const Token& keyword = At();
        control.line = keyword.line;
        for (const TextControl& kind : kTextControls) {
            if (!keyword.IsWord(kind.keyword)) continue;
            Skip();
            control.className = kind.className;
            control.style = kChildVisible | kind.style;
            if (At().kind == Token::Kind::String) {
                control.text = At().text;
                Skip();
            } else if (kind.style == SS_ICON && At().kind == Token::Kind::Identifier) {
                control.text = At().text;
                Skip();
            } else {
                return Fail(At(), std::wstring(kind.keyword) + L" needs its caption in double quotes, not " +
                                      rc::Describe(At()));
            }
            if (!Comma(L"the control's id") || !Integer(control.id, L"the control's id") || !Comma(L"the control's x"))
                return false;
            if (kind.style == SS_ICON) {  // ICON text, id, x, y [, cx, cy [, style]]
                if (!Integer(control.x, L"the control's x") || !Comma(L"the control's y") ||
                    !Integer(control.y, L"the control's y"))
                    return false;
                if (At().IsPunct(L",")) {
                    Skip();
                    if (!Integer(control.cx, L"the control's width") || !Comma(L"the control's height") ||
                        !Integer(control.cy, L"the control's height"))
                        return false;
                }
                return Tail(control, extended, true);
            }
            return Place(control) && Tail(control, extended, true);
        }
        for (const TextControl& kind : kPlainControls) {
            if (!keyword.IsWord(kind.keyword)) continue;
            Skip();
            control.className = kind.className;
            control.style = kChildVisible | kind.style;
            return Integer(control.id, L"the control's id") && Comma(L"the control's x") && Place(control) &&
                   Tail(control, extended, true);
        }
        if (keyword.IsWord(L"CONTROL")) {
            Skip();
            if (At().kind == Token::Kind::String) {
                control.text = At().text;
                Skip();
            } else if (At().kind == Token::Kind::Identifier || At().kind == Token::Kind::Number) {
                control.text = At().text;  // an icon or bitmap's name
                Skip();
            } else {
                return Fail(At(), L"CONTROL needs its caption in double quotes, not " + rc::Describe(At()));
            }
            if (!Comma(L"the control's id") || !Integer(control.id, L"the control's id") ||
                !Comma(L"the control's class"))
                return false;
            if (At().kind == Token::Kind::String || At().kind == Token::Kind::Identifier) {
                control.className = CanonicalClass(At().text);
                Skip();
            } else {
                return Fail(At(), L"CONTROL needs a class name, not " + rc::Describe(At()));
            }
            control.style = kChildVisible;
            return Comma(L"the control's style") && Style(control.style, L"the control's style") &&
                   Comma(L"the control's x") && Place(control) && Tail(control, extended, false);
        }
        return Fail(keyword, L"a control statement or END is expected, not " + rc::Describe(keyword));
    }

    bool MenuItems(std::vector<MenuItemTemplate>& items, const Token& start, int depth) {
        if (depth > 16) return Fail(start, L"the menu's popups are nested too deeply");
        if (!Begin(L"the menu")) return false;
        while (!IsEnd(At())) {
            const Token& keyword = At();
            if (keyword.kind == Token::Kind::End) return Fail(start, L"the menu is not closed with END");
            MenuItemTemplate item;
            if (keyword.IsWord(L"MENUITEM")) {
                Skip();
                if (At().IsWord(L"SEPARATOR")) {
                    Skip();
                    item.flags = MF_SEPARATOR;
                    items.push_back(std::move(item));
                    continue;
                }
                if (!Text(item.text, L"the item's text") || !Comma(L"the item's id")) return false;
                int id = 0;
                if (!Integer(id, L"the item's id")) return false;
                item.id = static_cast<UINT>(id) & 0xFFFF;
                if (!MenuOptions(item)) return false;
            } else if (keyword.IsWord(L"POPUP")) {
                Skip();
                if (!Text(item.text, L"the popup's text") || !MenuOptions(item)) return false;
                item.flags |= MF_POPUP;
                if (!MenuItems(item.items, keyword, depth + 1)) return false;
            } else {
                return Fail(keyword, L"MENUITEM, POPUP or END is expected, not " + rc::Describe(keyword));
            }
            items.push_back(std::move(item));
        }
        Skip();
        return true;
    }

    bool MenuOptions(MenuItemTemplate& item) {
        while (true) {
            if (At().IsPunct(L",")) {
                Skip();
                continue;
            }
            if (At().IsWord(L"CHECKED")) item.flags |= MF_CHECKED;
            else if (At().IsWord(L"GRAYED")) item.flags |= MF_GRAYED;
            else if (At().IsWord(L"INACTIVE")) item.flags |= MF_DISABLED;
            else if (At().IsWord(L"HELP")) item.flags |= MF_HELP;
            else if (At().IsWord(L"MENUBARBREAK")) item.flags |= MF_MENUBARBREAK;
            else if (At().IsWord(L"MENUBREAK")) item.flags |= MF_MENUBREAK;
            else return true;
            Skip();
        }
    }

    bool Menu(const ResourceName& name, const Token& start) {
        MenuTemplate menu;
        menu.name = name;
        menu.line = start.line;
        Skip();
        MemoryFlags();
        while (At().IsWord(L"LANGUAGE") || At().IsWord(L"CHARACTERISTICS") || At().IsWord(L"VERSION")) {
            bool language = At().IsWord(L"LANGUAGE");
            Skip();
            int64_t ignored = 0;
            if (!Number(ignored, L"the menu's options")) return false;
            if (language && (!Comma(L"the sublanguage") || !Number(ignored, L"LANGUAGE"))) return false;
        }
        if (!MenuItems(menu.items, start, 0)) return false;
        if (!m_script.Add(std::move(menu))) return Fail(start, L"the menu " + name.Describe() + L" is defined twice");
        return true;
    }

    const rc::Preprocessed& m_in;
    ResourceScript& m_script;
    size_t m_pos = 0;
    std::wstring m_error;
};

}  // namespace

ParseResult ParseResourceScript(const std::vector<SourceFile>& files) {
    ParseResult result;
    rc::Preprocessed input;
    if (!rc::Preprocess(files, input, result.error)) return result;
    auto script = std::make_shared<ResourceScript>();
    if (!Parser(input, *script).Run(result.error)) return result;
    result.script = std::move(script);
    return result;
}

}  // namespace cadhost::ui
