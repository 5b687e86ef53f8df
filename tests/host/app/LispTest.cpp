#include "app/Lisp.h"

#include <gtest/gtest.h>

namespace {

struct Outcome {
    std::wstring printed;
    std::optional<cadhost::LispValue> value;
};

Outcome Evaluate(cadhost::Lisp& lisp, const std::wstring& text) {
    Outcome run;
    run.value = lisp.Evaluate(text, [&run](const std::wstring& t) { run.printed += t; });
    return run;
}

TEST(Lisp, CallsDefinedFunctionsWithEvaluatedArguments) {
    cadhost::Lisp lisp;
    std::vector<std::wstring> seen;
    lisp.Define(L"command", [&seen](const std::vector<cadhost::LispValue>& args) {
        for (const auto& a : args) seen.push_back(a.kind == cadhost::LispValue::Kind::String ? a.text : a.Echo());
        return cadhost::LispValue::Nil();
    });
    lisp.Define(L"id", [](const std::vector<cadhost::LispValue>& args) {
        return args.empty() ? cadhost::LispValue::Nil() : args[0];
    });
    Outcome run = Evaluate(lisp, L"(command \"_.menuload\" \"C:/a \\\"b\\\"\\\\c\")(COMMAND (id \"x\") 12 T nil)\n");
    ASSERT_TRUE(run.value);
    EXPECT_EQ(run.value->Echo(), L"nil");
    ASSERT_EQ(seen.size(), 6u);
    EXPECT_EQ(seen[1], L"C:/a \"b\"\\c");
    EXPECT_EQ(seen[2], L"x");
    EXPECT_EQ(seen[3], L"12");
    EXPECT_EQ(seen[4], L"T");
    EXPECT_EQ(seen[5], L"nil");
    EXPECT_TRUE(run.printed.empty());
}

TEST(Lisp, ReportsWhatItCannotRead) {
    cadhost::Lisp lisp;
    int calls = 0;
    lisp.Define(L"tick", [&calls](const std::vector<cadhost::LispValue>&) {
        ++calls;
        return cadhost::LispValue::True();
    });
    struct Case {
        const wchar_t* text;
        const wchar_t* message;
        int callsBefore;  // expressions before the bad one still ran
    };
    const Case cases[] = {
        {L"(tick)(nosuch 1)", L"; error: no function definition: NOSUCH", 1},
        {L"(tick", L"; error: malformed list on input", 0},
        {L"(tick))", L"; error: extra right paren on input", 1},
        {L"(tick \"open", L"; error: malformed string on input", 0},
        {L"(\"str\")", L"; error: bad function: \"str\"", 0},
    };
    for (const Case& c : cases) {
        calls = 0;
        Outcome run = Evaluate(lisp, c.text);
        EXPECT_FALSE(run.value) << testing::PrintToString(std::wstring(c.text));
        EXPECT_NE(run.printed.find(c.message), std::wstring::npos) << testing::PrintToString(run.printed);
        EXPECT_EQ(calls, c.callsBefore) << testing::PrintToString(std::wstring(c.text));
    }
    std::wstring deep(5000, L'(');
    Outcome run = Evaluate(lisp, deep);  // no stack overflow on hostile nesting
    EXPECT_FALSE(run.value);
}

TEST(Lisp, EmptyTextAndCommentsGiveNil) {
    cadhost::Lisp lisp;
    Outcome run = Evaluate(lisp, L"  ; only a comment\n");
    ASSERT_TRUE(run.value);
    EXPECT_EQ(run.value->kind, cadhost::LispValue::Kind::Nil);
}

}  // namespace
