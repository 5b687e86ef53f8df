// The Text File page inside the Field dialog, and the pieces it shares with
// the Excel Cell page: the recent file list in the settings store, the path
// type, and paths made relative to the drawing and resolved from it.
#include <string>
#include <vector>

#include "pages/AsdkTextFileFieldOptionDialog.h"
#include "pages/PathType.h"
#include "services/Registry.h"
#include "support/QuillmarkPageTest.h"

namespace {

class TextFilePageTest : public qmtest::QuillmarkPageTest {
protected:
    void SetUp() override {
        QuillmarkPageTest::SetUp();
        CRegistry::SetRegistryKey(HKEY_CURRENT_USER, L"Norvo\\NorvoTest");
    }
    void TearDown() override {
        CRegistry::SetRegistryKey(nullptr, L"");
        QuillmarkPageTest::TearDown();
    }

    // Runs the Field dialog on the Text File page; the test acts on the page.
    void OnPage(const std::function<void(CAcFdUiFieldDialog&, AsdkTextFileFieldOptionDialog&)>& act) {
        RunPage(L"QM Text File", QM_FIELD_TEXT_FILE, act);
    }
    static int PathType(CWnd& page) { return static_cast<CComboBox*>(page.GetDlgItem(IDC_PATH_TYPE))->GetCurSel(); }
    static void Type(CWnd& page, const std::wstring& text) {
        ASSERT_EQ(cadhost::ui::UserType(page.GetDlgItem(IDC_PATH)->m_hWnd, text), L"");
    }
    static void ChoosePathType(CWnd& page, int index) {
        ASSERT_EQ(cadhost::ui::UserChoose(page.GetDlgItem(IDC_PATH_TYPE)->m_hWnd, index), L"");
    }
    // The drawing saved in a folder of the test, so that it has a path.
    std::wstring SaveDrawing(const std::string& name = "site.dxf") {
        std::filesystem::create_directories(m_folder.path() / "site");
        std::wstring error;
        EXPECT_TRUE(host().SaveDrawing(m_folder.path() / "site" / name, error)) << cadhost::ToUtf8(error);
        return cadhost::FromUtf8((m_folder.path() / "site").string());
    }
    std::vector<std::wstring> Boxes() {
        std::vector<std::wstring> texts;
        for (const auto& box : m_driver.boxes) texts.push_back(box.text);
        m_driver.boxes.clear();
        return texts;
    }
};

TEST_F(TextFilePageTest, ANewPageOffersBothPathTypesAndComposesTheEmptyPath) {
    OnPage([&](CAcFdUiFieldDialog& dialog, AsdkTextFileFieldOptionDialog& page) {
        auto* combo = static_cast<CComboBox*>(page.GetDlgItem(IDC_PATH_TYPE));
        ASSERT_EQ(combo->GetCount(), 2);
        CString first, second;
        combo->GetLBText(0, first);
        combo->GetLBText(1, second);
        EXPECT_EQ(first.str(), L"Full Path");
        EXPECT_EQ(second.str(), L"Relative Path");
        EXPECT_EQ(combo->GetCurSel(), 0);
        EXPECT_EQ(page.GetFieldCode().str(), L"%<\\TextField >%");
        Type(page, L"/proj/notes.txt");
        EXPECT_EQ(dialog.GetFieldCode().str(), L"%<\\TextField /proj/notes.txt>%");
    });
}

TEST_F(TextFilePageTest, PathsOfAnyShapeGoIntoTheCodeAsTyped) {
    const std::wstring shapes[] = {
        L"", L"   ", L"/proj/site", L"C:\\my files\\a>%b.txt", L"a|b<c>d?*:\"e\t.txt", std::wstring(10000, L'x'),
        L"/proj/n\u00F6tes \u20AC.txt",
    };
    OnPage([&](CAcFdUiFieldDialog& dialog, AsdkTextFileFieldOptionDialog& page) {
        for (const std::wstring& shape : shapes) {
            int before = m_hook.updates;
            Type(page, shape);
            EXPECT_GE(m_hook.updates, before + 1);  // keystroke by keystroke, at least once
            EXPECT_EQ(page.GetFieldCode().str(), L"%<\\TextField " + shape + L">%");
            EXPECT_EQ(dialog.GetFieldCode().str(), L"%<\\TextField " + shape + L">%");
        }
        EXPECT_TRUE(m_driver.boxes.empty());
    });
}

TEST_F(TextFilePageTest, RelativePathsCountFromTheDrawingsFolder) {
    std::wstring site = SaveDrawing();
    std::wstring parent = cadhost::FromUtf8(m_folder.path().string());
    OnPage([&](CAcFdUiFieldDialog& dialog, AsdkTextFileFieldOptionDialog& page) {
        Type(page, site + L"/first.txt");
        ChoosePathType(page, 1);
        EXPECT_EQ(dialog.GetFieldCode().str(), L"%<\\TextField ./first.txt>%");
        const std::pair<std::wstring, std::wstring> cases[] = {
            {site + L"/notes.txt", L"./notes.txt"},
            {site + L"/sub/notes.txt", L"./sub/notes.txt"},
            {parent + L"/data/notes.txt", L"../data/notes.txt"},
        };
        for (const auto& [path, relative] : cases) {
            Type(page, path);
            EXPECT_EQ(dialog.GetFieldCode().str(), L"%<\\TextField " + relative + L">%");
            EXPECT_EQ(Text(page, IDC_PATH), path);  // the box keeps the full path
            EXPECT_EQ(PathType(page), 1);
        }
        EXPECT_TRUE(Boxes().empty());
    });
}

TEST_F(TextFilePageTest, APathThatCannotBeMadeRelativeSaysSoOnceAndGoesBackToFullPath) {
    std::wstring site = SaveDrawing();
    std::wstring drawing = site + L"/site.dxf";
    OnPage([&](CAcFdUiFieldDialog& dialog, AsdkTextFileFieldOptionDialog& page) {
        // An empty box has nothing to relate: the message has an empty second path.
        ChoosePathType(page, 1);
        EXPECT_EQ(Boxes(), std::vector<std::wstring>{L"Failed to create a relative path from " + drawing + L" to ."});
        EXPECT_EQ(PathType(page), 0);
        EXPECT_EQ(dialog.GetFieldCode().str(), L"%<\\TextField >%");

        // Typed text that cannot be related: the first keystroke brings the
        // message and ends the relative mode; the next ones compose in full.
        Type(page, site + L"/ok.txt");
        ChoosePathType(page, 1);
        EXPECT_TRUE(Boxes().empty());
        page.SetDlgItemText(IDC_PATH, L"n");
        page.SetDlgItemText(IDC_PATH, L"no");
        page.SetDlgItemText(IDC_PATH, L"notes.txt");
        EXPECT_EQ(Boxes(), std::vector<std::wstring>{L"Failed to create a relative path from " + drawing + L" to n."});
        EXPECT_EQ(PathType(page), 0);
        EXPECT_EQ(dialog.GetFieldCode().str(), L"%<\\TextField notes.txt>%");

        // A path longer than the platform's paths, and one under another root.
        const std::wstring paths[] = {site + L"/" + std::wstring(10000, L'x') + L".txt", L"/elsewhere/notes.txt"};
        for (const std::wstring& path : paths) {
            Type(page, path);
            ChoosePathType(page, 1);
            std::vector<std::wstring> boxes = Boxes();
            ASSERT_EQ(boxes.size(), 1u);
            EXPECT_EQ(boxes[0], L"Failed to create a relative path from " + drawing + L" to " + path + L".");
            EXPECT_EQ(m_driver.boxes.size(), 0u);
            EXPECT_EQ(PathType(page), 0);
            EXPECT_EQ(dialog.GetFieldCode().str(), L"%<\\TextField " + path + L">%");
        }
    });
}

TEST_F(TextFilePageTest, RelativePathIsRefusedForADrawingNeverSaved) {
    OnPage([&](CAcFdUiFieldDialog& dialog, AsdkTextFileFieldOptionDialog& page) {
        Type(page, L"/proj/notes.txt");
        int before = m_hook.updates;
        ChoosePathType(page, 1);
        ASSERT_EQ(m_driver.boxes.size(), 1u);
        EXPECT_EQ(m_driver.boxes[0].text,
                  L"Current drawing must be saved before attaching a file with a relative path. The file will be "
                  L"assigned a Full path.");
        EXPECT_EQ(m_driver.boxes[0].caption, L"Norvo Quillmark");
        EXPECT_EQ(m_driver.boxes[0].type & MB_ICONMASK, 0u);
        EXPECT_EQ(PathType(page), 0);
        EXPECT_EQ(m_hook.updates, before);  // the code is not composed on this way
        EXPECT_EQ(dialog.GetFieldCode().str(), L"%<\\TextField /proj/notes.txt>%");
    });
}

TEST_F(TextFilePageTest, AStoredRelativePathShowsInFullAndComposesRelativeAgain) {
    std::wstring site = SaveDrawing();
    OnPage([&](CAcFdUiFieldDialog& dialog, AsdkTextFileFieldOptionDialog& page) {
        const std::pair<std::wstring, std::wstring> cases[] = {
            {L"./sub/notes.txt", L"./sub/notes.txt"},
            {L"..\\data\\notes.txt", L"../data/notes.txt"},  // made on Windows
            {L"notes.txt", L"./notes.txt"},
        };
        for (const auto& [stored, composed] : cases) {
            ChoosePathType(page, 0);
            AcDbField field((L"%<\\TextField " + stored + L">%").c_str());
            AcFdFieldValue data(stored.c_str());
            field.setData(L"TextField Data", &data);
            EXPECT_TRUE(page.LoadField(&field));
            std::wstring full = site + L"/" + composed.substr(2);
            if (composed.rfind(L"../", 0) == 0) full = cadhost::FromUtf8(m_folder.path().string()) + composed.substr(2);
            EXPECT_EQ(Text(page, IDC_PATH), full);
            EXPECT_EQ(PathType(page), 1);
            EXPECT_EQ(dialog.GetFieldCode().str(), L"%<\\TextField " + composed + L">%");
        }
        // A full path loads as it is, with "Full Path".
        AcDbField field(L"%<\\TextField /proj/notes.txt>%");
        AcFdFieldValue data(L"/proj/notes.txt");
        field.setData(L"TextField Data", &data);
        ChoosePathType(page, 0);
        EXPECT_TRUE(page.LoadField(&field));
        EXPECT_EQ(PathType(page), 0);
        EXPECT_EQ(dialog.GetFieldCode().str(), L"%<\\TextField /proj/notes.txt>%");
        EXPECT_TRUE(Boxes().empty());
    });
}

TEST_F(TextFilePageTest, AStoredRelativePathInADrawingWithoutAPathKeepsItsTextAfterTheMessage) {
    OnPage([&](CAcFdUiFieldDialog& dialog, AsdkTextFileFieldOptionDialog& page) {
        AcDbField field(L"%<\\TextField ./notes.txt>%");
        AcFdFieldValue data(L"./notes.txt");
        field.setData(L"TextField Data", &data);
        EXPECT_TRUE(page.LoadField(&field));
        EXPECT_EQ(Boxes(), std::vector<std::wstring>{L"Failed to create a relative path from  to ./notes.txt."});
        EXPECT_EQ(PathType(page), 0);
        EXPECT_EQ(Text(page, IDC_PATH), L"./notes.txt");
        EXPECT_EQ(dialog.GetFieldCode().str(), L"%<\\TextField ./notes.txt>%");
    });
}

TEST_F(TextFilePageTest, AFieldWithoutAPathAsTextLeavesThePageAlone) {
    OnPage([&](CAcFdUiFieldDialog&, AsdkTextFileFieldOptionDialog& page) {
        Type(page, L"/proj/kept.txt");
        EXPECT_FALSE(page.LoadField(nullptr));
        AcDbField bare(L"%<\\TextField /proj/other.txt>%");
        EXPECT_FALSE(page.LoadField(&bare));
        AcDbField number(L"%<\\TextField /proj/other.txt>%");
        AcFdFieldValue whole(static_cast<Adesk::Int32>(7));
        number.setData(L"TextField Data", &whole);
        EXPECT_FALSE(page.LoadField(&number));
        EXPECT_EQ(Text(page, IDC_PATH), L"/proj/kept.txt");
        EXPECT_EQ(PathType(page), 0);
    });
}

TEST_F(TextFilePageTest, BrowsingFillsTheBoxAndPutsTheFileInFrontOfTheStoredList) {
    OnPage([&](CAcFdUiFieldDialog& dialog, AsdkTextFileFieldOptionDialog& page) {
        m_driver.file = L"/proj/site/notes.txt";
        page.SendMessage(WM_COMMAND, MAKEWPARAM(IDC_BROWSE, BN_CLICKED), 0);
        ASSERT_EQ(m_driver.fileDialogs.size(), 1u);
        EXPECT_TRUE(m_driver.fileDialogs[0].open);
        EXPECT_EQ(m_driver.fileDialogs[0].filter, L"Text Files(*.prn;*.txt;*.csv)|*.prn;*.txt;*.csv||");
        EXPECT_EQ(m_driver.fileDialogs[0].defaultExt, L"");
        EXPECT_EQ(m_driver.fileDialogs[0].initialName, L"");
        EXPECT_EQ(Text(page, IDC_PATH), L"/proj/site/notes.txt");
        EXPECT_EQ(dialog.GetFieldCode().str(), L"%<\\TextField /proj/site/notes.txt>%");
        EXPECT_EQ(CRegistry::GetProfileString(QM_TEXTFILE_RECENT_SECTION, L"File1", L"-").str(), L"/proj/site/notes.txt");
        // WriteList wrote all nine values, the free ones as empty strings.
        for (int i = 2; i <= 9; ++i) {
            CString name;
            name.Format(L"File%d", i);
            EXPECT_EQ(CRegistry::GetProfileString(QM_TEXTFILE_RECENT_SECTION, name, L"absent").str(), L"") << i;
        }
        // A cancelled dialog changes nothing.
        m_driver.file.reset();
        page.SendMessage(WM_COMMAND, MAKEWPARAM(IDC_BROWSE, BN_CLICKED), 0);
        EXPECT_EQ(Text(page, IDC_PATH), L"/proj/site/notes.txt");
        EXPECT_EQ(page.RecentFiles()[1].str(), L"");
    });
}

TEST_F(TextFilePageTest, MenuCommandsOutsideTheListOrOnAnEmptySlotDoNothing) {
    CRegistry::WriteProfileString(QM_TEXTFILE_RECENT_SECTION, L"File1", L"/proj/one.txt");
    CRegistry::WriteProfileString(QM_TEXTFILE_RECENT_SECTION, L"File2", L"/proj/two.txt");
    OnPage([&](CAcFdUiFieldDialog& dialog, AsdkTextFileFieldOptionDialog& page) {
        Type(page, L"/proj/typed.txt");
        for (UINT id : {32768u, 32771u, 32777u, 32778u}) {
            page.SendMessage(WM_COMMAND, MAKEWPARAM(id, 0), 0);
            EXPECT_EQ(Text(page, IDC_PATH), L"/proj/typed.txt") << id;
        }
        int before = m_hook.updates;
        page.SendMessage(WM_COMMAND, MAKEWPARAM(32770, 0), 0);
        EXPECT_EQ(Text(page, IDC_PATH), L"/proj/two.txt");
        EXPECT_GE(m_hook.updates, before + 2);  // the box's change and the page's own request
        EXPECT_EQ(dialog.GetFieldCode().str(), L"%<\\TextField /proj/two.txt>%");
        EXPECT_EQ(page.RecentFiles()[0].str(), L"/proj/one.txt");  // the order stays
    });
}

TEST_F(TextFilePageTest, TheStoredListSurvivesValuesOfAnyShape) {
    std::wstring longPath = L"/" + std::wstring(100000, L'&');
    CRegistry::WriteProfileInt(QM_TEXTFILE_RECENT_SECTION, L"File1", 12345);
    CRegistry::WriteProfileString(QM_TEXTFILE_RECENT_SECTION, L"File2", longPath.c_str());
    CRegistry::WriteProfileString(QM_TEXTFILE_RECENT_SECTION, L"File3", L"line\nbreak & \"quotes\"");
    CRecentFileListEx list(0, QM_TEXTFILE_RECENT_SECTION, QM_RECENT_ENTRY_FORMAT, 9, 30);
    list.ReadList();
    EXPECT_EQ(list[1].str(), longPath);
    EXPECT_EQ(list[2].str(), L"line\nbreak & \"quotes\"");
    OnPage([&](CAcFdUiFieldDialog&, AsdkTextFileFieldOptionDialog& page) {
        page.SendMessage(WM_COMMAND, MAKEWPARAM(IDC_RECENT_FILES, BN_CLICKED), 0);
        ASSERT_EQ(m_driver.menus.size(), 1u);
        // The number in File1 reads as the character its bytes hold; the
        // long path shows by its name alone, every "&" doubled; the walk
        // ends at the empty fourth slot.
        const auto& items = m_driver.menus[0].items;
        ASSERT_EQ(items.size(), 3u);
        EXPECT_EQ(items[0].text, L"&1 \x3039");
        EXPECT_EQ(items[1].text, L"&2 " + std::wstring(200000, L'&'));
        EXPECT_EQ(items[2].text, L"&3 line\nbreak && \"quotes\"");
        EXPECT_EQ(items[2].id, 32771u);
    });
}

TEST_F(TextFilePageTest, AClosedStoreGivesAnEmptyListAndKeepsNothing) {
    CRegistry::SetRegistryKey(nullptr, L"");
    CRecentFileListEx list(0, QM_TEXTFILE_RECENT_SECTION, QM_RECENT_ENTRY_FORMAT, 9, 30);
    list.Add(L"/proj/a.txt");
    list.WriteList();
    list.ReadList();
    for (int i = 0; i < 9; ++i) EXPECT_TRUE(list[i].IsEmpty()) << i;
}

TEST_F(TextFilePageTest, ResolvingReadsFromTheWorkingDrawingsFolderAndPutsTheDirectoryBack) {
    CString full = L"untouched";
    EXPECT_FALSE(ResolveRelativePath(L"./notes.txt", full));  // never saved: no folder
    EXPECT_EQ(full.str(), L"untouched");
    std::wstring site = SaveDrawing();
    std::filesystem::path before = std::filesystem::current_path();
    const std::pair<std::wstring, std::wstring> cases[] = {
        {L"./notes.txt", site + L"/notes.txt"},
        {L"sub/notes.txt", site + L"/sub/notes.txt"},
        {L"..\\data\\notes.txt", cadhost::FromUtf8(m_folder.path().string()) + L"/data/notes.txt"},
    };
    for (const auto& [relative, expected] : cases) {
        ASSERT_TRUE(ResolveRelativePath(relative.c_str(), full)) << cadhost::ToUtf8(relative);
        EXPECT_EQ(full.str(), expected);
        EXPECT_EQ(std::filesystem::current_path(), before);
    }
    EXPECT_FALSE(ResolveRelativePath(std::wstring(300, L'x').c_str(), full));
    EXPECT_EQ(std::filesystem::current_path(), before);
}

}  // namespace
