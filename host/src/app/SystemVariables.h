// System variables: named values of the host and of the working drawing,
// read and set through result buffers.
#pragma once

#include <adsdef.h>

#include <functional>
#include <map>
#include <string>

namespace cadhost {

class SystemVariables {
public:
    struct Variable {
        int type = RTSHORT;  // RTSHORT, RTREAL, RTSTR or RT3DPOINT
        bool readOnly = false;
        int minimum = 0, maximum = 0;  // the range of a short
        std::function<bool(resbuf& value)> get;
        // Sets the value; answers an error text, empty when done.
        std::function<std::wstring(const resbuf& value)> set;
    };

    void Define(const std::wstring& name, Variable variable);
    const Variable* Find(const std::wstring& name) const;

    // As acedGetVar and acedSetVar: RTNORM, or RTERROR for an unknown name;
    // acedSetVar also refuses a read-only variable and a value of the wrong
    // type (RTERROR) or outside the range (RTREJ), with why in reason.
    int Get(const std::wstring& name, resbuf* result) const;
    int Set(const std::wstring& name, const resbuf* value, std::wstring* reason = nullptr);

    // A value typed by the user, read for the variable's type.
    int SetFromText(const std::wstring& name, const std::wstring& text, std::wstring& reason);
    std::wstring Describe(const std::wstring& name) const;

private:
    std::map<std::wstring, Variable> m_variables;  // upper-case names
};

}  // namespace cadhost
