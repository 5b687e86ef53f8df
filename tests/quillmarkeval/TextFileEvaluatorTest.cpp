// The TextField evaluator: how a file's bytes become the field's text, the
// files it refuses and why, paths relative to the drawing, and one read of
// each file per evaluation pass.
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "EvaluatorLoader.h"
#include "TextDecoding.h"
#include "TextFileEvaluator.h"
#include "fields/FieldUpdate.h"
#include "support/FieldDrawings.h"
#include "support/TestHost.h"

namespace {

const std::filesystem::path kBin = QM_OUTPUT_DIR;

std::string Bytes(std::initializer_list<int> values) {
    std::string out;
    for (int v : values) out += static_cast<char>(v);
    return out;
}

TEST(TextDecoding, EachEncodingReadsAsSuch) {
    struct Case {
        const char* what;
        std::string bytes;
        TextFileEncoding encoding;
        std::wstring text;
    };
    const Case cases[] = {
        {"plain ASCII", "Pump 3", TextFileEncoding::Utf8, L"Pump 3"},
        {"UTF-8", "Stra\xC3\x9F" "e \xE2\x82\xAC 5", TextFileEncoding::Utf8, L"Stra\u00DFe \u20AC 5"},
        {"UTF-8 beyond the first plane", "\xF0\x9F\x94\xA7", TextFileEncoding::Utf8, L"\U0001F527"},
        {"UTF-8 with its mark", "\xEF\xBB\xBFnotes", TextFileEncoding::Utf8WithMark, L"notes"},
        {"UTF-16 little-endian", Bytes({0xFF, 0xFE, 'O', 0, 'k', 0, 0xAC, 0x20}), TextFileEncoding::Utf16LittleEndian,
         L"Ok\u20AC"},
        {"UTF-16 big-endian", Bytes({0xFE, 0xFF, 0, 'O', 0, 'k', 0xD8, 0x3D, 0xDD, 0x27}),
         TextFileEncoding::Utf16BigEndian, L"Ok\U0001F527"},
        {"UTF-16 with a lone surrogate and an odd byte", Bytes({0xFF, 0xFE, 0x00, 0xD8, 'a', 0, 'b'}),
         TextFileEncoding::Utf16LittleEndian, L"\uFFFDa\uFFFD"},
        {"Windows-1252", "Caf\xE9 \x80 5 \x93quoted\x94", TextFileEncoding::Windows1252,
         L"Caf\u00E9 \u20AC 5 \u201Cquoted\u201D"},
        {"an overlong UTF-8 form reads as Windows-1252", "\xC0\xAF", TextFileEncoding::Windows1252, L"\u00C0\u00AF"},
        {"a UTF-8 surrogate reads as Windows-1252", "\xED\xA0\x80", TextFileEncoding::Windows1252,
         L"\u00ED\u00A0\u20AC"},
        {"a cut UTF-8 sequence reads as Windows-1252", "ab\xE2\x82", TextFileEncoding::Windows1252, L"ab\u00E2\u201A"},
        {"undefined Windows-1252 bytes keep their value", "\x81\x8D\x8F\x90\x9D", TextFileEncoding::Windows1252,
         L"\u0081\u008D\u008F\u0090\u009D"},
        {"an empty file", "", TextFileEncoding::Utf8, L""},
    };
    for (const Case& c : cases) {
        DecodedText decoded = DecodeTextFile(c.bytes);
        EXPECT_EQ(decoded.encoding, c.encoding) << c.what;
        EXPECT_EQ(decoded.text, c.text) << c.what;
        EXPECT_EQ(decoded.nulAt, std::wstring::npos) << c.what;
    }
}

TEST(TextDecoding, ANulByteIsFoundWhereItStands) {
    EXPECT_EQ(DecodeTextFile(std::string("ab\0cd", 5)).nulAt, 2u);
    EXPECT_EQ(DecodeTextFile(Bytes({0xFF, 0xFE, 'a', 0, 0, 0, 'b', 0})).nulAt, 4u);
    EXPECT_EQ(DecodeTextFile(Bytes({0xFE, 0xFF, 0, 'a', 0, 0})).nulAt, 4u);
    // The zero bytes of UTF-16 letters are no NUL.
    EXPECT_EQ(DecodeTextFile(Bytes({0xFF, 0xFE, 'a', 0, 'b', 0})).nulAt, std::wstring::npos);
}

TEST(TextDecoding, LineBreaksOfEveryKindBecomeOneAndTheLastIsLeftOff) {
    const std::pair<std::wstring, std::wstring> cases[] = {
        {L"one\r\ntwo\r\n", L"one\ntwo"}, {L"one\ntwo\n", L"one\ntwo"}, {L"one\rtwo\r", L"one\ntwo"},
        {L"one\r\n\r\ntwo", L"one\n\ntwo"}, {L"mixed\r\nand\rall\n", L"mixed\nand\nall"},
        {L"two ends\n\n", L"two ends\n"}, {L"\n", L""}, {L"", L""}, {L"\r\r\n", L"\n"},
    };
    for (const auto& [text, joined] : cases) EXPECT_EQ(JoinLines(text), joined);
}

class TextFileEvaluatorTest : public qmtest::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        ASSERT_TRUE(host().linker().loadModule(cadhost::FromUtf8((kBin / "QuillmarkEval.dbx").string()).c_str(), true))
            << TakeOutput();
        m_files = m_folder.path() / "site";
        std::filesystem::create_directories(m_files / "sub");
        std::filesystem::create_directories(m_folder.path() / "data");
    }
    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }

    void Write(const std::filesystem::path& path, const std::string& bytes) {
        std::ofstream out(path, std::ios::binary);
        out << bytes;
    }
    std::wstring Path(const std::filesystem::path& path) { return cadhost::FromUtf8(path.string()); }

    // The drawing saved into the site folder, so that it has one.
    void SaveDrawing() {
        std::wstring error;
        ASSERT_TRUE(host().SaveDrawing(m_files / "site.dxf", error)) << cadhost::ToUtf8(error);
    }

    struct Outcome {
        Acad::ErrorStatus es;
        AcDbField::EvalStatus status;
        std::wstring value;
        std::wstring message;
        std::wstring data;  // "TextField Data", or "(none)"
    };
    Outcome Evaluate(const std::wstring& path) {
        AcDbField field((L"%<\\TextField " + path + L">%").c_str());
        Outcome outcome;
        outcome.es = field.evaluate(AcDbField::kPreview, db());
        int code = 0;
        ACHAR* message = nullptr;
        outcome.status = field.evaluationStatus(&code, &message);
        outcome.message = message ? message : L"";
        acutDelBuffer(message);
        outcome.value = field.getValue();
        AcFdFieldValue data;
        const ACHAR* text = nullptr;
        outcome.data = field.getData(L"TextField Data", &data) == Acad::eOk && data.get(text) ? text : L"(none)";
        return outcome;
    }

    std::filesystem::path m_files;
};

TEST_F(TextFileEvaluatorTest, TheValueIsTheFilesTextAndTheDataItemThePathAsWritten) {
    Write(m_files / "notes.txt", "Pump room\r\nCheck valves weekly\r\n");
    Outcome full = Evaluate(Path(m_files / "notes.txt"));
    EXPECT_EQ(full.es, Acad::eOk) << cadhost::ToUtf8(full.message);
    EXPECT_EQ(full.status, AcDbField::kSuccess);
    EXPECT_EQ(full.value, L"Pump room\nCheck valves weekly");
    EXPECT_EQ(full.data, Path(m_files / "notes.txt"));
    EXPECT_NE(acdbGetFieldEngine()->getEvaluator(L"textfield"), nullptr);
}

TEST_F(TextFileEvaluatorTest, ARelativePathIsReadFromTheDrawingsFolderInEitherSeparator) {
    SaveDrawing();
    Write(m_files / "notes.txt", "beside");
    Write(m_files / "sub" / "notes.txt", "below");
    Write(m_folder.path() / "data" / "notes.txt", "beside the folder");
    const std::pair<std::wstring, std::wstring> cases[] = {
        {L"./notes.txt", L"beside"},
        {L"notes.txt", L"beside"},
        {L"./sub/notes.txt", L"below"},
        {L"../data/notes.txt", L"beside the folder"},
        {L".\\notes.txt", L"beside"},
        {L".\\sub\\notes.txt", L"below"},
        {L"..\\data\\notes.txt", L"beside the folder"},
        {L"  ./notes.txt  ", L"beside"},
    };
    for (const auto& [path, value] : cases) {
        Outcome outcome = Evaluate(path);
        EXPECT_EQ(outcome.status, AcDbField::kSuccess) << cadhost::ToUtf8(path) << ": " << cadhost::ToUtf8(outcome.message);
        EXPECT_EQ(outcome.value, value) << cadhost::ToUtf8(path);
        std::wstring trimmed = path;
        trimmed.erase(0, trimmed.find_first_not_of(L' '));
        trimmed.erase(trimmed.find_last_not_of(L' ') + 1);
        EXPECT_EQ(outcome.data, trimmed);
    }
}

TEST_F(TextFileEvaluatorTest, FilesThatCannotBeShownFailWithThePathAndTheReason) {
    SaveDrawing();
    std::wstring site = Path(m_files);
    Write(m_files / "binary.txt", std::string("ab\0cd", 5));
    Write(m_files / "limit.txt", std::string(QM_TEXT_FILE_LIMIT, 'x'));
    Write(m_files / "large.txt", std::string(QM_TEXT_FILE_LIMIT + 1, 'x'));
    ASSERT_EQ(::mkfifo((m_files / "pipe").c_str(), 0600), 0);
    struct Case {
        std::wstring path;
        std::wstring message;  // empty: succeeds
        std::wstring data;
    };
    const Case cases[] = {
        {L"./missing.txt", L"The file ./missing.txt (" + site + L"/missing.txt) does not exist.", L"./missing.txt"},
        {site + L"/missing.txt", L"The file " + site + L"/missing.txt does not exist.", site + L"/missing.txt"},
        {L"./sub", L"The file ./sub (" + site + L"/sub) is a folder, not a text file.", L"./sub"},
        {L"./binary.txt", L"The file ./binary.txt (" + site + L"/binary.txt) is not text: it holds a NUL byte at offset 2.",
         L"./binary.txt"},
        {L"./large.txt",
         L"The file ./large.txt (" + site + L"/large.txt) is larger than the 1048576 bytes (1 MiB) a Text File field "
                                            L"shows: 1048577 bytes.",
         L"./large.txt"},
        {L"./limit.txt", L"", L"./limit.txt"},
        {L"./pipe", L"The file ./pipe (" + site + L"/pipe) is not a plain file.", L"./pipe"},
        {L"./" + std::wstring(300, L'n') + L".txt",
         L"The path ./" + std::wstring(300, L'n') + L".txt, read from the drawing's folder " + site +
             L", is longer than 259 characters.",
         L"./" + std::wstring(300, L'n') + L".txt"},
        {L"/" + std::wstring(300, L'n'), L"The path is longer than 259 characters: /" + std::wstring(300, L'n'),
         L"/" + std::wstring(300, L'n')},
        {L"", L"The field names no text file.", L"(none)"},
        {L"   ", L"The field names no text file.", L"(none)"},
    };
    for (const Case& c : cases) {
        Outcome outcome = Evaluate(c.path);
        std::string what = cadhost::ToUtf8(c.path.substr(0, 40));
        if (c.message.empty()) {
            EXPECT_EQ(outcome.status, AcDbField::kSuccess) << what << ": " << cadhost::ToUtf8(outcome.message);
            EXPECT_EQ(outcome.value.size(), static_cast<size_t>(QM_TEXT_FILE_LIMIT)) << what;
        } else {
            EXPECT_NE(outcome.es, Acad::eOk) << what;
            EXPECT_EQ(outcome.status, AcDbField::kInvalidCode) << what;
            EXPECT_EQ(outcome.message, c.message) << what;
            EXPECT_EQ(outcome.value, L"####") << what;
        }
        EXPECT_EQ(outcome.data, c.data) << what;
    }
}

TEST_F(TextFileEvaluatorTest, AFileThatCannotBeOpenedSaysSo) {
    if (::geteuid() == 0) GTEST_SKIP() << "the superuser reads every file";
    Write(m_files / "locked.txt", "secret");
    std::filesystem::permissions(m_files / "locked.txt", std::filesystem::perms::none);
    std::wstring path = Path(m_files / "locked.txt");
    Outcome outcome = Evaluate(path);
    EXPECT_EQ(outcome.status, AcDbField::kInvalidCode);
    EXPECT_EQ(outcome.message, L"The file " + path + L" cannot be read: access is denied.");
}

TEST_F(TextFileEvaluatorTest, ARelativePathInADrawingNeverSavedHasNoFolderToBeReadFrom) {
    Outcome outcome = Evaluate(L"./notes.txt");
    EXPECT_EQ(outcome.status, AcDbField::kInvalidCode);
    EXPECT_EQ(outcome.message,
              L"The path ./notes.txt is relative to the drawing's folder, and the drawing has not been saved yet.");
    EXPECT_EQ(outcome.data, L"./notes.txt");  // the field can be edited all the same
}

// Texts with Text File fields in model space, as a drawing holds them.
class TextFilePassTest : public TextFileEvaluatorTest {
protected:
    AsdkTextFileEvaluator* Evaluator() {
        return dynamic_cast<AsdkTextFileEvaluator*>(acdbGetFieldEngine()->getEvaluator(L"TextField"));
    }
    AcDbObjectId AddText(const std::wstring& path) {
        return qmtest::AddFieldText(db()->modelSpaceId(), AcGePoint3d(0, 0, 0), L"%<\\TextField " + path + L">%");
    }
    static std::wstring FieldValue(AcDbObjectId text) {
        AcDbField* field = nullptr;
        if (acdbOpenObject(field, qmtest::ChildFieldOf(text), AcDb::kForRead) != Acad::eOk) return L"(no field)";
        std::wstring value = field->getValue();
        field->close();
        return value;
    }
};

TEST_F(TextFilePassTest, OnePassReadsEachFileOnceAndTheNextReadsAChangedFileAnew) {
    SaveDrawing();
    Write(m_files / "a.txt", "first A");
    Write(m_files / "b.txt", "first B");
    std::vector<AcDbObjectId> texts;
    const wchar_t* paths[] = {L"./a.txt", L"./b.txt", L"a.txt", L"./sub/../a.txt", L"./a.txt"};
    for (const wchar_t* path : paths) texts.push_back(AddText(path));
    AsdkTextFileEvaluator* evaluator = Evaluator();
    ASSERT_NE(evaluator, nullptr);
    int before = evaluator->Files().Loads();

    cadhost::FieldUpdateReport report = cadhost::UpdateFields(*db());
    EXPECT_EQ(report.evaluated, 5);
    EXPECT_TRUE(report.failed.empty());
    EXPECT_EQ(evaluator->Files().Loads() - before, 2);  // a.txt once for its four fields, b.txt once
    EXPECT_EQ(evaluator->Files().Kept(), 0u);           // let go when the pass ended
    EXPECT_EQ(FieldValue(texts[3]), L"first A");

    Write(m_files / "a.txt", "second A");
    report = cadhost::UpdateFields(*db());
    EXPECT_EQ(report.changed, 4);
    EXPECT_EQ(FieldValue(texts[0]), L"second A");
    EXPECT_EQ(FieldValue(texts[1]), L"first B");
    EXPECT_EQ(FieldValue(texts[4]), L"second A");

    // A file that goes fails once a pass for all its fields, each named.
    std::filesystem::remove(m_files / "a.txt");
    before = evaluator->Files().Loads();
    report = cadhost::UpdateFields(*db());
    EXPECT_EQ(evaluator->Files().Loads() - before, 2);
    ASSERT_EQ(report.failed.size(), 4u);
    EXPECT_EQ(report.failed[1].message, L"The file a.txt (" + Path(m_files) + L"/a.txt) does not exist.");
}

TEST_F(TextFilePassTest, OutsideAPassEveryEvaluationReadsTheFile) {
    Write(m_files / "a.txt", "A");
    AsdkTextFileEvaluator* evaluator = Evaluator();
    ASSERT_NE(evaluator, nullptr);
    int before = evaluator->Files().Loads();
    std::wstring path = Path(m_files / "a.txt");
    EXPECT_EQ(Evaluate(path).value, L"A");
    Write(m_files / "a.txt", "B");
    EXPECT_EQ(Evaluate(path).value, L"B");
    EXPECT_EQ(evaluator->Files().Loads() - before, 2);
}

TEST(PassFileCache, KeepsWithinItsBudgetAndForgetsAtTheEndOfTheOutermostPass) {
    struct Entry {
        std::wstring text;
        size_t Weight() const { return text.size(); }
    };
    CPassFileCache<Entry> cache(10);
    int reads = 0;
    auto load = [&reads](const std::wstring& path) {
        ++reads;
        return Entry{path + L"!"};
    };
    cache.BeginPass();
    cache.BeginPass();  // passes may nest; the outermost one counts
    EXPECT_EQ(cache.Get(L"abcd", load).text, L"abcd!");
    EXPECT_EQ(cache.Get(L"abcd", load).text, L"abcd!");
    EXPECT_EQ(reads, 1);
    EXPECT_EQ(cache.Get(L"efghijk", load).text, L"efghijk!");  // 5 + 8 is over the budget: not kept
    EXPECT_EQ(cache.Get(L"efghijk", load).text, L"efghijk!");
    EXPECT_EQ(reads, 3);
    EXPECT_EQ(cache.Kept(), 1u);
    cache.EndPass();
    EXPECT_EQ(cache.Kept(), 1u);
    cache.EndPass();
    EXPECT_EQ(cache.Kept(), 0u);
    EXPECT_FALSE(cache.InPass());
    cache.EndPass();  // one end too many changes nothing
    EXPECT_EQ(cache.Get(L"abcd", load).text, L"abcd!");
    EXPECT_EQ(reads, 4);
}

}  // namespace
