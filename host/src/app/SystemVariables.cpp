#include "app/SystemVariables.h"

#include <cstdlib>
#include <cwctype>

#include "core/WideFormat.h"

namespace cadhost {
namespace {
std::wstring Upper(std::wstring text) {
    for (wchar_t& c : text) c = static_cast<wchar_t>(std::towupper(c));
    return text;
}
}  // namespace

void SystemVariables::Define(const std::wstring& name, Variable variable) {
    m_variables[Upper(name)] = std::move(variable);
}

const SystemVariables::Variable* SystemVariables::Find(const std::wstring& name) const {
    auto it = m_variables.find(Upper(name));
    return it == m_variables.end() ? nullptr : &it->second;
}

int SystemVariables::Get(const std::wstring& name, resbuf* result) const {
    const Variable* variable = Find(name);
    if (!variable || !result) return RTERROR;
    resbuf value{};
    value.restype = static_cast<short>(variable->type);
    if (!variable->get(value)) return RTERROR;
    value.rbnext = result->rbnext;
    *result = value;
    return RTNORM;
}

int SystemVariables::Set(const std::wstring& name, const resbuf* value, std::wstring* reason) {
    auto fail = [reason](int code, std::wstring why) {
        if (reason) *reason = std::move(why);
        return code;
    };
    const Variable* variable = Find(name);
    std::wstring shown = Upper(name);
    if (!variable) return fail(RTERROR, L"unknown system variable " + shown);
    if (!value) return fail(RTERROR, L"no value for " + shown);
    if (variable->readOnly || !variable->set) return fail(RTERROR, shown + L" is read-only");
    resbuf converted = *value;
    if (variable->type == RTSHORT) {
        long whole;
        if (value->restype == RTSHORT) whole = value->resval.rint;
        else if (value->restype == RTLONG) whole = value->resval.rlong;
        else return fail(RTERROR, shown + L" takes a whole number");
        if (whole < variable->minimum || whole > variable->maximum)
            return fail(RTREJ, shown + L" must be between " + std::to_wstring(variable->minimum) + L" and " +
                                   std::to_wstring(variable->maximum));
        converted.restype = RTSHORT;
        converted.resval.rint = static_cast<short>(whole);
    } else if (variable->type == RTREAL) {
        if (value->restype == RTSHORT) converted.resval.rreal = value->resval.rint;
        else if (value->restype != RTREAL) return fail(RTERROR, shown + L" takes a real number");
        converted.restype = RTREAL;
    } else if (variable->type == RTSTR) {
        if (value->restype != RTSTR || !value->resval.rstring) return fail(RTERROR, shown + L" takes a text");
    } else if (value->restype != RTPOINT && value->restype != RT3DPOINT) {
        return fail(RTERROR, shown + L" takes a point");
    }
    std::wstring why = variable->set(converted);
    if (!why.empty()) return fail(RTREJ, why);
    return RTNORM;
}

int SystemVariables::SetFromText(const std::wstring& name, const std::wstring& text, std::wstring& reason) {
    const Variable* variable = Find(name);
    if (!variable) {
        reason = L"unknown system variable " + Upper(name);
        return RTERROR;
    }
    resbuf value{};
    std::wstring copy = text;
    wchar_t* end = nullptr;
    switch (variable->type) {
    case RTSHORT: {
        long whole = std::wcstol(copy.c_str(), &end, 10);
        if (copy.empty() || *end) {
            reason = Upper(name) + L" takes a whole number, not \"" + text + L"\"";
            return RTERROR;
        }
        value.restype = RTLONG;
        value.resval.rlong = static_cast<Adesk::Int32>(whole < -100000 ? -100000 : (whole > 100000 ? 100000 : whole));
        break;
    }
    case RTREAL:
        value.restype = RTREAL;
        value.resval.rreal = std::wcstod(copy.c_str(), &end);
        if (copy.empty() || *end) {
            reason = Upper(name) + L" takes a real number, not \"" + text + L"\"";
            return RTERROR;
        }
        break;
    case RTSTR:
        value.restype = RTSTR;
        value.resval.rstring = copy.data();
        break;
    default:
        reason = Upper(name) + L" cannot be set from text";
        return RTERROR;
    }
    return Set(name, &value, &reason);
}

std::wstring SystemVariables::Describe(const std::wstring& name) const {
    resbuf value{};
    if (Get(name, &value) != RTNORM) return L"";
    std::wstring text;
    switch (value.restype) {
    case RTSHORT: text = std::to_wstring(value.resval.rint); break;
    case RTREAL: text = FormatWideArgs(L"%.16g", value.resval.rreal); break;
    case RTSTR:
        text = L"\"" + std::wstring(value.resval.rstring ? value.resval.rstring : L"") + L"\"";
        std::free(value.resval.rstring);
        break;
    default:
        text = FormatWideArgs(L"%.16g,%.16g,%.16g", value.resval.rpoint[0], value.resval.rpoint[1],
                              value.resval.rpoint[2]);
        break;
    }
    return Upper(name) + L" = " + text;
}

}  // namespace cadhost
