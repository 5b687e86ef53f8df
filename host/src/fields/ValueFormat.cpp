// The display text of a field value: numbers under the field's format text
// in the working drawing's units, texts as they are, points by their
// coordinates, object ids by their handles.
#include <AcValue.h>
#include <adslib.h>
#include <dbmain.h>

#include <cwchar>

#include "app/Host.h"
#include "db/MTextFormat.h"
#include "format/ValueFormatter.h"

namespace {

cadhost::format::DrawingUnits WorkingDrawingUnits() {
    cadhost::format::DrawingUnits units;
    cadhost::Host* host = cadhost::Host::Current();
    AcDbDatabase* db = host ? host->services().workingDatabase() : nullptr;
    if (db) units = {db->lunits(), db->luprec()};
    return units;
}

ACHAR* NewText(const std::wstring& text) {
    auto* copy = new ACHAR[text.size() + 1];
    std::wmemcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

}  // namespace

bool AcValue::format(const ACHAR* formatText, ACHAR*& text) const {
    text = nullptr;
    std::wstring_view format = formatText ? std::wstring_view(formatText) : std::wstring_view();
    std::wstring shown;
    switch (m_type) {
    case kLong: shown = cadhost::format::FormatWhole(m_long, format, WorkingDrawingUnits()); break;
    case kDouble: shown = cadhost::format::FormatReal(m_real[0], format, WorkingDrawingUnits()); break;
    case kString:
        if (m_text) shown = *m_text;
        break;
    case kPoint: shown = cadhost::format::FormatPoint(m_real, 2, format, WorkingDrawingUnits()); break;
    case k3dPoint: shown = cadhost::format::FormatPoint(m_real, 3, format, WorkingDrawingUnits()); break;
    case kObjectId:
        if (!m_id.isNull()) {
            ACHAR handle[17] = L"";
            m_id.handle().getIntoAsciiBuffer(handle, 17);
            shown = handle;
        }
        break;
    default: return false;  // no value, or a kind that has no display text
    }
    text = NewText(shown);
    return true;
}

ACHAR* AcValue::format(const ACHAR* formatText) const {
    ACHAR* text = nullptr;
    format(formatText, text);
    return text;
}

bool AcValue::format(const ACHAR* formatText, AcString& text, FormatOption option) const {
    text = AcString();
    ACHAR* shown = nullptr;
    if (!format(formatText, shown)) return false;
    text = (option & kIgnoreMtextFormat) ? AcString(cadhost::StripMTextCodes(shown)) : AcString(shown);
    acutDelBuffer(shown);
    return true;
}

AcString AcValue::format(FormatOption option) const {
    AcString text;
    format(nullptr, text, option);
    return text;
}
