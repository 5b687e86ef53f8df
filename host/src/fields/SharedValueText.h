// The text of a text value as the host shares it: a value's text never
// changes once set, so that values, fields and texts that show the same
// text hold it once.
#pragma once

#include <AcValue.h>

#include <memory>
#include <string>

namespace cadhost {

struct SharedValueText {
    // The text of a text value; nothing for a value of another type.
    static std::shared_ptr<const std::wstring> Of(const AcValue& value);
    // Makes the value a text value holding the text given (empty for none).
    static void Set(AcValue& value, std::shared_ptr<const std::wstring> text);
};

}  // namespace cadhost
