// What an AcBlockCount code asks for, read from the arguments of the code:
//
//   "NAME;NAME" [\layer "L;L"] [\op "OP" \tag "T" \value "V"] [\nested]
//   [\Space(HANDLE) \Window(x,y,z:x,y,z)]
//
// The options may stand in any order, each once; their names do not mind
// case. Texts run from a double quote to the next one: nothing is escaped.
#pragma once

#include "StdAfx.h"

#include <vector>

// The comparisons of an attribute condition.
enum class BlockCountOperator { kEqual, kGreater, kLess, kGreaterEqual, kLessEqual, kNotEqual };

struct BlockCountQuery {
    std::vector<CString> names;   // the blocks counted, blanks around each taken off
    std::vector<CString> layers;  // empty: every layer
    // The attribute condition; an empty tag means none.
    CString tag;
    CString value;
    BlockCountOperator op = BlockCountOperator::kEqual;
    bool nested = false;
    bool hasSpace = false;
    CString spaceHandle;  // may be empty, when the composing page found no space
    bool hasWindow = false;
    double firstCorner[3] = {0, 0, 0};
    double secondCorner[3] = {0, 0, 0};
};

// Reads the arguments of a code (without its evaluator id and \f option).
// Empty arguments ask for nothing and read as a query without names. On
// failure the answer is false and why says what could not be read.
bool ReadBlockCountQuery(const CString& arguments, BlockCountQuery& query, CString& why);

// The operator of a text: one of = > < >= <= !=; false for any other.
bool ReadBlockCountOperator(const CString& text, BlockCountOperator& op);

// A text that reads wholly as a decimal number (blanks around it allowed,
// no hexadecimal, no infinity or nan, nothing beyond the range of a
// double): true and its value.
bool ReadDecimalNumber(const CString& text, double& number);
bool ReadDecimalNumber(const wchar_t* text, double& number);

// The attribute condition, its value read once: a value satisfies it as a
// number when both read wholly as numbers, else as a text not minding case.
class BlockCountCondition {
public:
    BlockCountCondition(BlockCountOperator op, const CString& expected);
    bool Accepts(const wchar_t* actual) const;
    // A value that is a number already (a dynamic property); its text serves
    // when the expected value is no number.
    bool AcceptsNumber(double actual, const CString& actualText) const;

private:
    bool Holds(int comparison) const;
    int Compare(double actual) const;

    BlockCountOperator m_op;
    CString m_expected;
    bool m_expectedIsNumber = false;
    double m_expectedNumber = 0;
};
