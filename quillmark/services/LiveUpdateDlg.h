// Check for Update: on a click, the dialog fetches the maker's list of
// current versions, finds the one of this product for this platform, and
// says whether it is newer than this one, with a link to the download page
// when it is.
#pragma once

#include "StdAfx.h"

#include "resources/resource.h"
#include "services/Hyperlink.h"

class CLiveUpdateDlg : public CDialog {
public:
    explicit CLiveUpdateDlg(CWnd* parent = nullptr);

    // Non-zero when this module's version is not older than the server's:
    // the dotted parts compare as whole numbers, from the first, as far as
    // both have parts.
    int ComparedUpToDate(const CString& serverVersion) const;

    // The key a line of the list must hold: "<platform>*Quillmark:" in
    // lower case.
    static CString UpdateKey();
    // The version that a line of the list gives when it holds the key
    // anywhere (case aside): the line less as many characters from the left
    // as the key has, trimmed. FALSE, leaving version alone, without the key.
    static BOOL VersionFromLine(const CString& line, const CString& key, CString& version);

protected:
    BOOL OnInitDialog() override;
    afx_msg void OnCheckUp();
    // The check itself, with the buttons disabled around it.
    void CheckForUpdate();
    void SetStatus(const CString& text);
    void ShowLink(BOOL show);

    CHyperlink m_link;
    CString m_version;  // this module's

    DECLARE_MESSAGE_MAP()
};
