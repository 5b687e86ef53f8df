#include <AcValue.h>

#include <cwchar>

#include "fields/SharedValueText.h"

ACRX_DEFINE_MEMBERS(AcValue, AcRxObject)
ACRX_DEFINE_MEMBERS(AcFdFieldValue, AcValue)

bool AcValue::reset() {
    *this = AcValue();
    return true;
}

bool AcValue::set(const ACHAR* text) {
    if (!text) return false;
    // Made before the reset: the text may be this value's own.
    auto made = std::make_shared<const std::wstring>(text);
    reset();
    m_type = kString;
    m_text = std::move(made);
    return true;
}

bool AcValue::set(Adesk::Int32 value) {
    reset();
    m_type = kLong;
    m_long = value;
    return true;
}

bool AcValue::set(double value) {
    reset();
    m_type = kDouble;
    m_real[0] = value;
    return true;
}

bool AcValue::set(double x, double y) {
    reset();
    m_type = kPoint;
    m_real[0] = x, m_real[1] = y;
    return true;
}

bool AcValue::set(double x, double y, double z) {
    reset();
    m_type = k3dPoint;
    m_real[0] = x, m_real[1] = y, m_real[2] = z;
    return true;
}

bool AcValue::set(const AcDbObjectId& id) {
    reset();
    m_type = kObjectId;
    m_id = id;
    return true;
}

bool AcValue::get(const ACHAR*& text) const {
    if (m_type != kString) return false;
    text = m_text ? m_text->c_str() : L"";
    return true;
}

bool AcValue::get(ACHAR*& text) const {
    if (m_type != kString) return false;
    const std::wstring& own = m_text ? *m_text : std::wstring();
    text = new ACHAR[own.size() + 1];
    std::wmemcpy(text, own.c_str(), own.size() + 1);
    return true;
}

bool AcValue::get(Adesk::Int32& value) const {
    if (m_type != kLong) return false;
    value = m_long;
    return true;
}

bool AcValue::get(double& value) const {
    if (m_type != kDouble) return false;
    value = m_real[0];
    return true;
}

bool AcValue::get(double& x, double& y) const {
    if (m_type != kPoint) return false;
    x = m_real[0], y = m_real[1];
    return true;
}

bool AcValue::get(double& x, double& y, double& z) const {
    if (m_type != k3dPoint) return false;
    x = m_real[0], y = m_real[1], z = m_real[2];
    return true;
}

bool AcValue::get(AcDbObjectId& id) const {
    if (m_type != kObjectId) return false;
    id = m_id;
    return true;
}

bool AcValue::operator==(const AcValue& other) const {
    return m_type == other.m_type && m_long == other.m_long && m_real[0] == other.m_real[0] &&
           m_real[1] == other.m_real[1] && m_real[2] == other.m_real[2] &&
           (m_text == other.m_text || (m_text && other.m_text && *m_text == *other.m_text)) &&
           m_id == other.m_id;
}

namespace cadhost {

std::shared_ptr<const std::wstring> SharedValueText::Of(const AcValue& value) {
    return value.m_type == AcValue::kString ? value.m_text : nullptr;
}

void SharedValueText::Set(AcValue& value, std::shared_ptr<const std::wstring> text) {
    if (!text) text = std::make_shared<const std::wstring>();
    value.reset();
    value.m_type = AcValue::kString;
    value.m_text = std::move(text);
}

}  // namespace cadhost
