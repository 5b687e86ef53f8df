// acdbRToS: a real as text in the working drawing's terms.
#include <acutads.h>
#include <dbmain.h>

#include <cwchar>

#include "app/Host.h"
#include "format/NumberStyle.h"

namespace {

// The working drawing's LUNITS, LUPREC and DIMZIN; a host without a drawing
// has those of a new one.
struct DrawingSettings {
    int lunits = 2, luprec = 4, dimzin = 0;
};

DrawingSettings CurrentSettings() {
    DrawingSettings settings;
    cadhost::Host* host = cadhost::Host::Current();
    AcDbDatabase* db = host ? host->services().workingDatabase() : nullptr;
    if (db) settings = {db->lunits(), db->luprec(), db->dimzin()};
    return settings;
}

}  // namespace

int acdbRToS(ads_real value, int units, int precision, ACHAR* text) {
    return acdbRToS(value, units, precision, text, ACDB_RTOS_TEXT_MAX);
}

int acdbRToS(ads_real value, int units, int precision, ACHAR* text, size_t size) {
    if (!text || size == 0) return RTERROR;
    text[0] = L'\0';
    DrawingSettings settings = CurrentSettings();
    if (units == -1) units = settings.lunits;
    if (precision == -1) precision = settings.luprec;
    if (units < 1 || units > 5 || precision < 0) return RTERROR;
    std::optional<std::wstring> result = cadhost::format::NumberText(
        value, cadhost::format::StyleForDimzin(units, precision, settings.dimzin));
    if (!result || result->size() >= size) return RTERROR;
    std::wmemcpy(text, result->c_str(), result->size() + 1);
    return RTNORM;
}
