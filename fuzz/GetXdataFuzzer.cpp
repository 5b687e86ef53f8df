// Any bytes as the extended data of an entity: groups of registered
// applications, texts, control strings, numbers, points and handles, set
// on a line. getXdata finds what a plain walk of the application's groups
// finds (the first text that stands outside a pair of control strings), and
// setXdata, ReplaceXdataString and RemoveXdataString leave a chain that the
// same walk reads as they promise.
#include <adslib.h>
#include <dbents.h>
#include <dbobjptr.h>
#include <dbsymtb.h>

#include <optional>
#include <string>
#include <vector>

#include "ArxUtils/ArxUtils.h"
#include "FuzzSupport.h"

namespace {

const wchar_t* const kApps[] = {L"QMA", L"QMB", L"qma"};

struct Group {
    int code;
    std::wstring text;
    double number = 0;
};

// The first plain text of an application's part of a chain.
std::optional<std::wstring> FirstPlainText(const std::vector<Group>& chain, const std::wstring& app) {
    bool inApp = false, inGroup = false;
    for (const Group& g : chain) {
        if (g.code == 1001) {
            if (inApp) return std::nullopt;
            inApp = _wcsicmp(g.text.c_str(), app.c_str()) == 0;
            continue;
        }
        if (!inApp) continue;
        if (g.code == 1002) inGroup = !inGroup;
        else if (g.code == 1000 && !inGroup) return g.text;
    }
    return std::nullopt;
}

std::vector<Group> ReadChain(AcDbObjectId id) {
    std::vector<Group> groups;
    AcDbObjectPointer<AcDbLine> line(id);
    resbuf* chain = line->xData();
    for (resbuf* rb = chain; rb; rb = rb->rbnext) {
        Group g{rb->restype, L""};
        if (rb->restype == 1000 || rb->restype == 1001 || rb->restype == 1002 || rb->restype == 1003)
            g.text = rb->resval.rstring ? rb->resval.rstring : L"";
        groups.push_back(g);
    }
    acutRelRb(chain);
    return groups;
}

bool HasPart(const std::vector<Group>& chain, const std::wstring& app) {
    for (const Group& g : chain) {
        if (g.code == 1001 && _wcsicmp(g.text.c_str(), app.c_str()) == 0) return true;
    }
    return false;
}

// One line for the whole run, its extended data cleared for each input.
AcDbObjectId TheLine() {
    static AcDbObjectId id = [] {
        AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
        AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> model(db->modelSpaceId(), AcDb::kForWrite);
        auto* line = new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0));
        AcDbObjectId added;
        QM_FUZZ_CHECK(model->appendAcDbEntity(added, line) == Acad::eOk);
        line->close();
        return added;
    }();
    AcDbObjectPointer<AcDbLine> line(id, AcDb::kForWrite);
    resbuf* clear = acutBuildList(1001, kApps[0], 1001, kApps[1], 1001, L"ACAD", 0);
    line->setXData(clear);
    acutRelRb(clear);
    return id;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    qmfuzz::RunningHost();
    static const bool registered = [] {
        for (const wchar_t* app : kApps) acdbRegApp(app);
        return true;
    }();
    QM_FUZZ_CHECK(registered);

    // Each group: a byte for its kind, a byte for its length, then its text.
    resbuf* head = nullptr;
    resbuf** tail = &head;
    size_t at = 0;
    while (at + 2 <= size) {
        int kind = data[at] % 9, length = data[at + 1] % 16;
        at += 2;
        size_t take = std::min(static_cast<size_t>(length), size - at);
        std::wstring text = qmfuzz::WideText(data + at, take);
        at += take;
        resbuf* rb = nullptr;
        switch (kind) {
        case 0: rb = acutBuildList(1001, kApps[take % 3], 0); break;
        case 1: case 2: rb = acutBuildList(1000, text.c_str(), 0); break;
        case 3: rb = acutBuildList(1002, take % 2 ? L"{" : L"}", 0); break;
        case 4: rb = acutBuildList(1002, text.c_str(), 0); break;
        case 5: rb = acutBuildList(1070, static_cast<int>(take), 0); break;
        case 6: rb = acutBuildList(1040, static_cast<double>(take) / 3, 0); break;
        case 7: rb = acutBuildList(1003, text.c_str(), 0); break;
        default: rb = acutBuildList(1001, text.c_str(), 0); break;  // perhaps no registered application
        }
        if (!rb) continue;
        *tail = rb;
        while (*tail) tail = &(*tail)->rbnext;
    }
    AcDbObjectId id = TheLine();
    QM_FUZZ_CHECK(ReadChain(id).empty());
    {
        AcDbObjectPointer<AcDbLine> line(id, AcDb::kForWrite);
        line->setXData(head);  // the host may refuse a chain; the object then has none
    }
    acutRelRb(head);
    std::vector<Group> chain = ReadChain(id);
    std::wstring app = kApps[size % 3];

    CString text = L"before";
    int found = getXdata(id, app.c_str(), text);
    std::optional<std::wstring> expected = FirstPlainText(chain, app);
    QM_FUZZ_CHECK(found == (expected ? 1 : 0));
    if (expected) QM_FUZZ_CHECK(std::wstring(static_cast<const wchar_t*>(text)) == *expected);
    else QM_FUZZ_CHECK(text == (HasPart(chain, app) ? L"before" : L""));

    // Appending keeps what was first; the appended value is found when the
    // groups before it are balanced and nothing plain came first.
    std::wstring added = L"added" + std::to_wstring(size);
    QM_FUZZ_CHECK(setXdata(id, app.c_str(), CString(added.c_str()), 1) == 1);
    std::vector<Group> appended = ReadChain(id);
    std::optional<std::wstring> afterAppend = FirstPlainText(appended, app);
    if (expected) QM_FUZZ_CHECK(afterAppend == expected);
    QM_FUZZ_CHECK(getXdata(id, app.c_str(), text) == (afterAppend ? 1 : 0));

    // Removing the appended value gives back the application's first text.
    int removed = RemoveXdataString(id, app.c_str(), CString(added.c_str()));
    QM_FUZZ_CHECK(removed == 1);
    QM_FUZZ_CHECK(FirstPlainText(ReadChain(id), app) == expected);

    // Replacing every text equal to the first one changes what is found.
    if (expected) {
        std::wstring renamed = L"renamed";
        QM_FUZZ_CHECK(ReplaceXdataString(id, app.c_str(), CString(expected->c_str()), CString(renamed.c_str())) == 1);
        QM_FUZZ_CHECK(getXdata(id, app.c_str(), text) == 1 && text == renamed.c_str());
    }

    // Without append, the value is the application's only one.
    QM_FUZZ_CHECK(setXdata(id, app.c_str(), CString(L"only"), 0) == 1);
    std::vector<Group> only = ReadChain(id);
    QM_FUZZ_CHECK(FirstPlainText(only, app) == std::optional<std::wstring>(L"only"));
    return 0;
}
