// Typed values of fields: a long, a double, a text, a point or an object
// id, and their display text under a format text.
#pragma once

#include <memory>
#include <string>

#include "AcString.h"
#include "dbid.h"
#include "rxobject.h"

namespace cadhost {
struct SharedValueText;
}

class CADHOST_API AcValue : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcValue)

    enum DataType {
        kUnknown = 0,
        kLong = 1,
        kDouble = 2,
        kString = 4,
        kDate = 8,
        kPoint = 16,
        k3dPoint = 32,
        kObjectId = 64,
        kBuffer = 128,
        kResbuf = 256,
        kGeneral = 512,
        kColor = 1024,
    };

    // How format renders a value beyond its format text.
    enum FormatOption {
        kFormatOptionNone = 0,
        kIgnoreMtextFormat = 8,  // a text without its multiline formatting codes
    };

    AcValue() = default;
    AcValue(const AcValue&) = default;
    AcValue& operator=(const AcValue&) = default;
    AcValue(AcValue&&) noexcept = default;
    AcValue& operator=(AcValue&&) noexcept = default;
    ~AcValue() override = default;
    explicit AcValue(const ACHAR* text) { set(text); }
    explicit AcValue(Adesk::Int32 value) { set(value); }
    explicit AcValue(double value) { set(value); }
    explicit AcValue(const AcDbObjectId& id) { set(id); }

    DataType dataType() const { return m_type; }
    bool isValid() const { return m_type != kUnknown; }
    bool reset();

    bool set(const ACHAR* text);
    bool set(Adesk::Int32 value);
    bool set(double value);
    bool set(double x, double y);
    bool set(double x, double y, double z);
    bool set(const AcDbObjectId& id);

    // Each get answers false, leaving its arguments alone, for another type.
    bool get(const ACHAR*& text) const;  // the value's own text
    bool get(ACHAR*& text) const;        // a copy, freed with acutDelBuffer
    bool get(Adesk::Int32& value) const;
    bool get(double& value) const;
    bool get(double& x, double& y) const;
    bool get(double& x, double& y, double& z) const;
    bool get(AcDbObjectId& id) const;

    // The display text under a format text (the directives of a field's
    // \f option); an empty format gives the value's plain display. The new
    // text is freed with acutDelBuffer.
    bool format(const ACHAR* formatText, ACHAR*& text) const;
    ACHAR* format(const ACHAR* formatText = nullptr) const;
    bool format(const ACHAR* formatText, AcString& text, FormatOption option) const;
    AcString format(FormatOption option) const;

    bool operator==(const AcValue& other) const;

private:
    friend struct cadhost::SharedValueText;

    DataType m_type = kUnknown;
    Adesk::Int32 m_long = 0;
    double m_real[3] = {0, 0, 0};
    // A text never changes once set: copies of a value share it.
    std::shared_ptr<const std::wstring> m_text;
    AcDbObjectId m_id;
};

// The value of a field.
class CADHOST_API AcFdFieldValue : public AcValue {
public:
    ACRX_DECLARE_MEMBERS(AcFdFieldValue)
    using AcValue::AcValue;
    AcFdFieldValue() = default;
    explicit AcFdFieldValue(const AcValue& value) : AcValue(value) {}
    explicit AcFdFieldValue(AcValue&& value) noexcept : AcValue(std::move(value)) {}
};
