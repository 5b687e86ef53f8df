#include "ui/Controls.h"

#include <algorithm>
#include <cwctype>

namespace cadhost::ui {
namespace {

bool Valid(HWND window) {
    Desktop* desktop = Desktop::Current();
    return desktop && desktop->IsWindow(window);
}

bool IsList(HWND window) {
    return Valid(window) && (window->kind == WindowKind::ListBox || window->kind == WindowKind::ComboBox);
}

// A character not regarding case; the letters of ASCII without a call, as
// a long sorted list compares them many times over.
wchar_t Folded(wchar_t c) {
    if (c < 0x80) return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + (L'a' - L'A')) : c;
    return static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
}

// The order of a sorted list: not regarding case, then by the text itself.
int CompareEntries(const std::wstring& a, const std::wstring& b) {
    size_t n = std::min(a.size(), b.size());
    for (size_t i = 0; i < n; ++i) {
        wchar_t x = Folded(a[i]);
        wchar_t y = Folded(b[i]);
        if (x != y) return x < y ? -1 : 1;
    }
    if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
    return 0;
}

bool StartsNoCase(const std::wstring& text, const std::wstring& prefix) {
    if (prefix.size() > text.size()) return false;
    for (size_t i = 0; i < prefix.size(); ++i) {
        if (Folded(text[i]) != Folded(prefix[i])) return false;
    }
    return true;
}

bool EqualNoCase(const std::wstring& a, const std::wstring& b) { return a.size() == b.size() && StartsNoCase(a, b); }

std::wstring Cased(HWND window, std::wstring text) {
    if (window->kind == WindowKind::Edit && (window->style & ES_UPPERCASE))
        for (wchar_t& c : text) c = static_cast<wchar_t>(std::towupper(c));
    if (window->kind == WindowKind::Edit && (window->style & ES_LOWERCASE))
        for (wchar_t& c : text) c = static_cast<wchar_t>(std::towlower(c));
    return text;
}

}  // namespace

CWnd* ObjectOf(HWND window) { return Valid(window) ? CWnd::FromHandle(window) : nullptr; }

void Notify(HWND control, UINT code) {
    if (!Valid(control)) return;
    HWND parent = control->parent;
    if (!Valid(parent)) return;
    if (CWnd* object = ObjectOf(parent))
        object->SendMessage(WM_COMMAND, MAKEWPARAM(static_cast<WORD>(control->id), static_cast<WORD>(code)),
                            reinterpret_cast<LPARAM>(control));
}

UINT ButtonType(HWND window) {
    return Valid(window) && window->kind == WindowKind::Button ? window->style & BS_TYPEMASK : 0xFFFFFFFFu;
}

bool IsCheckBox(HWND window) {
    UINT type = ButtonType(window);
    return type == BS_CHECKBOX || type == BS_AUTOCHECKBOX || type == BS_3STATE || type == BS_AUTO3STATE;
}

bool IsRadioButton(HWND window) {
    UINT type = ButtonType(window);
    return type == BS_RADIOBUTTON || type == BS_AUTORADIOBUTTON;
}

bool IsGroupBox(HWND window) { return ButtonType(window) == BS_GROUPBOX; }

bool HasEditPart(HWND window) {
    if (!Valid(window)) return false;
    if (window->kind == WindowKind::Edit) return true;
    return window->kind == WindowKind::ComboBox && (window->style & 0x3) != CBS_DROPDOWNLIST;
}

bool IsDropDownList(HWND window) {
    return Valid(window) && window->kind == WindowKind::ComboBox && (window->style & 0x3) == CBS_DROPDOWNLIST;
}

bool IsMultipleSelection(HWND window) {
    return Valid(window) && window->kind == WindowKind::ListBox &&
           (window->style & (LBS_MULTIPLESEL | LBS_EXTENDEDSEL)) != 0;
}

bool IsSortedList(HWND window) {
    if (!Valid(window)) return false;
    if (window->kind == WindowKind::ListBox) return (window->style & LBS_SORT) != 0;
    return window->kind == WindowKind::ComboBox && (window->style & CBS_SORT) != 0;
}

bool IsCheckList(HWND window) {
    return Valid(window) && window->kind == WindowKind::ListBox &&
           (window->checkList || (window->style & (LBS_OWNERDRAWFIXED | LBS_OWNERDRAWVARIABLE)) != 0);
}

void SetText(HWND window, const std::wstring& text) {
    if (!Valid(window)) return;
    if (IsDropDownList(window)) {
        int found = FindEntry(window, -1, text, true);
        if (found >= 0) SetSelection(window, found);
        return;
    }
    window->textSource = nullptr;
    window->text = Cased(window, text);
    window->selectionStart = window->selectionEnd = static_cast<int>(window->text.size());
    if (window->kind == WindowKind::Edit) {
        Notify(window, EN_UPDATE);
        Notify(window, EN_CHANGE);
    }
}

void SetTextSource(HWND window, std::function<std::wstring()> source) {
    if (Valid(window)) window->textSource = std::move(source);
}

std::wstring& ResolvedText(HWND window) {
    if (window->textSource) {
        // Taken off first: the source may read other windows, never this one again.
        std::function<std::wstring()> source = std::move(window->textSource);
        window->textSource = nullptr;
        window->text = source();
        window->selectionStart = window->selectionEnd = static_cast<int>(window->text.size());
    }
    return window->text;
}

std::wstring GetText(HWND window) {
    if (!Valid(window)) return L"";
    if (IsDropDownList(window)) {
        const ListEntry* entry = Entry(window, window->current);
        return entry ? entry->text : L"";
    }
    return ResolvedText(window);
}

std::wstring ShownText(HWND window) {
    if (!Valid(window)) return L"";
    if (window->kind == WindowKind::ListBox) {
        const ListEntry* entry = Entry(window, GetSelection(window));
        return entry ? entry->text : L"";
    }
    return GetText(window);
}

int GetCheck(HWND window) { return Valid(window) && window->kind == WindowKind::Button ? window->check : 0; }

void SetCheck(HWND window, int check) {
    if (!Valid(window) || window->kind != WindowKind::Button) return;
    UINT type = ButtonType(window);
    if (type == BS_3STATE || type == BS_AUTO3STATE) window->check = check < 0 || check > 2 ? 0 : check;
    else window->check = check == BST_CHECKED ? BST_CHECKED : BST_UNCHECKED;
}

std::vector<HWND> RadioGroup(HWND window) {
    std::vector<HWND> group;
    if (!Valid(window) || !Valid(window->parent)) return group;
    const std::vector<HWND>& siblings = window->parent->children;
    auto at = std::find(siblings.begin(), siblings.end(), window);
    if (at == siblings.end()) return group;
    size_t index = static_cast<size_t>(at - siblings.begin());
    size_t first = index;
    while (first > 0 && !(siblings[first]->style & WS_GROUP)) --first;
    for (size_t i = first; i < siblings.size(); ++i) {
        if (i > first && (siblings[i]->style & WS_GROUP)) break;
        if (IsRadioButton(siblings[i])) group.push_back(siblings[i]);
    }
    return group;
}

int EntryCount(HWND window) { return IsList(window) ? static_cast<int>(window->entries.size()) : LB_ERR; }

int InsertEntry(HWND window, int index, const std::wstring& text) {
    if (!IsList(window)) return LB_ERR;
    int count = static_cast<int>(window->entries.size());
    if (index > count) return LB_ERR;
    if (index < 0) index = count;
    size_t at = static_cast<size_t>(index);
    if (window->entriesInOrder) {
        bool afterPrevious = at == 0 || CompareEntries(window->entries[at - 1].text, text) <= 0;
        bool beforeNext = at == window->entries.size() || CompareEntries(text, window->entries[at].text) <= 0;
        window->entriesInOrder = afterPrevious && beforeNext;
    }
    ListEntry entry;
    entry.text = text;
    window->entries.insert(at, std::move(entry));
    if (window->current >= index) ++window->current;
    if (window->topIndex > index) ++window->topIndex;
    return index;
}

namespace {

// The first entry that does not come before the text (lower) or that comes
// after it (upper), in a list whose entries stand in order.
size_t Bound(HWND window, const std::wstring& text, bool upper) {
    size_t low = 0;
    size_t high = window->entries.size();
    while (low < high) {
        size_t middle = low + (high - low) / 2;
        int order = CompareEntries(window->entries[middle].text, text);
        if (order < 0 || (upper && order == 0)) low = middle + 1;
        else high = middle;
    }
    return low;
}

}  // namespace

int AddEntry(HWND window, const std::wstring& text) {
    if (!IsList(window)) return LB_ERR;
    if (!IsSortedList(window)) return InsertEntry(window, -1, text);
    if (window->entriesInOrder) return InsertEntry(window, static_cast<int>(Bound(window, text, true)), text);
    // Out of order by the program's own insertions: the first place after
    // which nothing comes before the text.
    size_t place = window->entries.size();
    while (place > 0 && CompareEntries(text, window->entries[place - 1].text) < 0) --place;
    return InsertEntry(window, static_cast<int>(place), text);
}

int DeleteEntry(HWND window, int index) {
    if (!IsList(window) || index < 0 || index >= static_cast<int>(window->entries.size())) return LB_ERR;
    window->entries.erase(static_cast<size_t>(index));
    if (window->current == index) {
        window->current = -1;
        if (window->kind == WindowKind::ComboBox && HasEditPart(window)) window->text.clear();
    } else if (window->current > index) {
        --window->current;
    }
    if (window->topIndex > index) --window->topIndex;
    return static_cast<int>(window->entries.size());
}

void ResetEntries(HWND window) {
    if (!IsList(window)) return;
    window->entries.clear();
    window->entriesInOrder = true;
    window->current = -1;
    window->topIndex = 0;
    if (window->kind == WindowKind::ComboBox) window->text.clear();
}

const ListEntry* Entry(HWND window, int index) { return MutableEntry(window, index); }

ListEntry* MutableEntry(HWND window, int index) {
    if (!IsList(window) || index < 0 || index >= static_cast<int>(window->entries.size())) return nullptr;
    return &window->entries[static_cast<size_t>(index)];
}

int FindEntry(HWND window, int startAfter, const std::wstring& text, bool exact) {
    if (!IsList(window)) return LB_ERR;
    int count = static_cast<int>(window->entries.size());
    if (count == 0) return LB_ERR;
    int start = startAfter < 0 || startAfter >= count ? 0 : startAfter + 1;
    if (window->entriesInOrder) {
        // The entries that match stand together: from the first that does
        // not come before the text, as far as they match.
        size_t low = Bound(window, text, false);
        size_t high = low;
        if (exact) {
            high = Bound(window, text, true);
        } else {
            size_t top = window->entries.size();
            size_t step = low;
            while (step < top) {  // the last entry that starts with the text, halving
                size_t middle = step + (top - step) / 2;
                if (StartsNoCase(window->entries[middle].text, text)) step = middle + 1;
                else top = middle;
            }
            high = step;
        }
        if (low >= high) return LB_ERR;
        size_t from = static_cast<size_t>(start);
        if (from <= low || from >= high) return static_cast<int>(low);
        return static_cast<int>(from);
    }
    for (int n = 0; n < count; ++n) {
        int i = (start + n) % count;
        const std::wstring& entry = window->entries[static_cast<size_t>(i)].text;
        if (exact ? EqualNoCase(entry, text) : StartsNoCase(entry, text)) return i;
    }
    return LB_ERR;
}

int GetSelection(HWND window) {
    if (!IsList(window)) return LB_ERR;
    if (IsMultipleSelection(window)) {
        int first = LB_ERR;
        window->entries.ForEach([&first](size_t i, ListEntry& entry) {
            if (entry.selected && first == LB_ERR) first = static_cast<int>(i);
        });
        return first;
    }
    return window->current;
}

int SetSelection(HWND window, int index) {
    if (!IsList(window)) return LB_ERR;
    if (IsMultipleSelection(window)) return LB_ERR;
    if (index < 0 || index >= static_cast<int>(window->entries.size())) {
        window->current = -1;
        if (window->kind == WindowKind::ComboBox && HasEditPart(window)) window->text.clear();
        return index == -1 ? LB_OKAY : LB_ERR;
    }
    window->current = index;
    if (window->kind == WindowKind::ComboBox && HasEditPart(window))
        window->text = window->entries[static_cast<size_t>(index)].text;
    return index;
}

bool IsSelected(HWND window, int index) {
    if (!IsList(window) || index < 0 || index >= static_cast<int>(window->entries.size())) return false;
    if (IsMultipleSelection(window)) return window->entries[static_cast<size_t>(index)].selected;
    return window->current == index;
}

int SetSelected(HWND window, int index, bool selected) {
    if (!IsMultipleSelection(window)) return LB_ERR;
    if (index == -1) {
        window->entries.ForEach([selected](size_t, ListEntry& entry) { entry.selected = selected; });
        return LB_OKAY;
    }
    ListEntry* entry = MutableEntry(window, index);
    if (!entry) return LB_ERR;
    entry->selected = selected;
    return LB_OKAY;
}

POINT ClientOrigin(HWND window) {
    POINT origin{0, 0};
    if (!Valid(window)) return origin;
    RECT rect = WindowRect(window);
    origin.x = rect.left + window->frame.left;
    origin.y = rect.top + window->frame.top;
    return origin;
}

RECT WindowRect(HWND window) {
    RECT rect{};
    if (!Valid(window)) return rect;
    rect = window->rect;
    if (window->parent) {
        POINT origin = ClientOrigin(window->parent);
        OffsetRect(&rect, origin.x, origin.y);
    }
    return rect;
}

RECT DialogUnitsToPixels(HWND dialog, RECT rect) {
    int x = Valid(dialog) ? dialog->baseX : 6;
    int y = Valid(dialog) ? dialog->baseY : 13;
    RECT pixels;
    pixels.left = MulDiv(rect.left, x, 4);
    pixels.right = MulDiv(rect.right, x, 4);
    pixels.top = MulDiv(rect.top, y, 8);
    pixels.bottom = MulDiv(rect.bottom, y, 8);
    return pixels;
}

HWND TopWindow(HWND window) {
    HWND top = Valid(window) ? window : nullptr;
    int guard = 0;
    while (top && top->parent && Valid(top->parent) && ++guard < 1000) {
        if (top->kind == WindowKind::Dialog && !(top->style & WS_CHILD)) break;
        top = top->parent;
    }
    return top;
}

}  // namespace cadhost::ui
