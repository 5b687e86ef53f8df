// The framework's window side: extension modules and their resources,
// command targets with message maps, windows, dialogs and their data
// exchange, the standard controls, menus, fonts and device contexts.
#pragma once

#include <cstring>

#include "afx.h"
#include "afxres.h"
#include "atltypes.h"

#define AFXAPI
#define AFX_CDECL
#define AFX_MSG_CALL
#define PASCAL
#define afx_msg

struct AFX_EXTENSION_MODULE {
    BOOL bInitialized;
    HMODULE hModule;
    HMODULE hResource;
    CRuntimeClass* pFirstSharedClass;
    void* pFirstSharedFactory;
};

// Joins an extension module to the framework; the module's handle becomes
// its resource handle.
extern "C" CADHOST_API BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& state, HMODULE module);
extern "C" CADHOST_API void AfxTermExtensionModule(AFX_EXTENSION_MODULE& state, BOOL all = FALSE);

// Puts an extension module on the framework's resource chain for as long as
// it lives; AfxTermExtensionModule ends the ones of its module.
class CADHOST_API CDynLinkLibrary : public CObject {
    DECLARE_DYNAMIC(CDynLinkLibrary)
public:
    explicit CDynLinkLibrary(AFX_EXTENSION_MODULE& state, BOOL system = FALSE);
    ~CDynLinkLibrary() override;
    HMODULE m_hModule;
    HMODULE m_hResource;
    BOOL m_bSystem;
};

// The current resource handle: the top of the host's resource stack.
extern "C" CADHOST_API HINSTANCE AfxGetResourceHandle();
extern "C" CADHOST_API void AfxSetResourceHandle(HINSTANCE resource);
extern "C" CADHOST_API HINSTANCE AfxGetInstanceHandle();
// The handle that holds a resource: the current resource handle when it has
// it, else the host's own when that has it, else the current one. A module's
// resources are thus reachable while its handle is on the resource stack,
// within a ModuleResourceScope or a command of the module, and not beyond.
extern "C" CADHOST_API HINSTANCE AfxFindResourceHandle(LPCTSTR name, LPCTSTR type);

class CCmdTarget;
class CWnd;
class CDialog;
class CCmdUI;
class CDataExchange;
class CMenu;
class CFont;
class CDC;
struct CCreateContext;

// ---------------------------------------------------------------------------
// Message maps: a class's table of handlers, chained to its base's.

typedef void (CCmdTarget::*AFX_PMSG)(void);
typedef void (CWnd::*AFX_PMSGW)(void);

// The kinds of handlers, by the signature they are called with.
enum AfxSig : UINT_PTR {
    AfxSig_end = 0,
    AfxSigCmd_v,       // void Handler()
    AfxSigCmd_b,       // BOOL Handler()
    AfxSigCmd_RANGE,   // void Handler(UINT id)
    AfxSigCmd_EX,      // BOOL Handler(UINT id): FALSE lets the search go on
    AfxSigCmdUI,       // void Handler(CCmdUI*)
    AfxSig_lwl,        // LRESULT Handler(WPARAM, LPARAM)
};

struct AFX_MSGMAP_ENTRY {
    UINT nMessage;  // WM_COMMAND, another message, or 0xC002 for a registered one
    UINT nCode;     // notification code of a command
    UINT nID;       // first control or command id
    UINT nLastID;   // last id of a range
    UINT_PTR nSig;  // an AfxSig; for a registered message the address of its number
    AFX_PMSG pfn;
};

struct AFX_MSGMAP {
    const AFX_MSGMAP* (*pfnGetBaseMap)();
    const AFX_MSGMAP_ENTRY* lpEntries;
};

// Handlers are stored under one pointer type and called with the signature
// that their entry names; the bits of the pointer go over unchanged.
template <class Fn>
inline AFX_PMSG AfxMsgHandler(Fn fn) {
    static_assert(sizeof(Fn) == sizeof(AFX_PMSG), "a message handler must be a member function");
    AFX_PMSG stored;
    std::memcpy(&stored, &fn, sizeof stored);
    return stored;
}

template <class Fn>
inline Fn AfxMsgHandlerAs(AFX_PMSG stored) {
    static_assert(sizeof(Fn) == sizeof(AFX_PMSG), "a message handler must be a member function");
    Fn fn;
    std::memcpy(&fn, &stored, sizeof fn);
    return fn;
}

#define DECLARE_MESSAGE_MAP()                           \
protected:                                              \
    static const AFX_MSGMAP* GetThisMessageMap();       \
    virtual const AFX_MSGMAP* GetMessageMap() const;

#define BEGIN_MESSAGE_MAP(theClass, baseClass)                                   \
    const AFX_MSGMAP* theClass::GetMessageMap() const { return GetThisMessageMap(); } \
    const AFX_MSGMAP* theClass::GetThisMessageMap() {                            \
        typedef theClass ThisClass;                                              \
        typedef baseClass TheBaseClass;                                          \
        static_assert(sizeof(ThisClass) > 0 && sizeof(TheBaseClass) > 0);       \
        static const AFX_MSGMAP_ENTRY _messageEntries[] = {

#define END_MESSAGE_MAP()                                                        \
    {0, 0, 0, 0, AfxSig_end, nullptr}                                            \
    }                                                                            \
    ;                                                                            \
    static const AFX_MSGMAP messageMap = {&TheBaseClass::GetThisMessageMap, &_messageEntries[0]}; \
    return &messageMap;                                                          \
    }

#define CN_COMMAND 0
#define CN_UPDATE_COMMAND_UI (static_cast<UINT>(-1))

#define ON_COMMAND(id, memberFxn)                                                                    \
    {WM_COMMAND, CN_COMMAND, static_cast<WORD>(id), static_cast<WORD>(id), AfxSigCmd_v,              \
     AfxMsgHandler(static_cast<void (CCmdTarget::*)()>(memberFxn))},
#define ON_COMMAND_EX(id, memberFxn)                                                                 \
    {WM_COMMAND, CN_COMMAND, static_cast<WORD>(id), static_cast<WORD>(id), AfxSigCmd_EX,             \
     AfxMsgHandler(static_cast<BOOL (CCmdTarget::*)(UINT)>(memberFxn))},
#define ON_COMMAND_RANGE(id, idLast, memberFxn)                                                      \
    {WM_COMMAND, CN_COMMAND, static_cast<WORD>(id), static_cast<WORD>(idLast), AfxSigCmd_RANGE,      \
     AfxMsgHandler(static_cast<void (CCmdTarget::*)(UINT)>(memberFxn))},
#define ON_UPDATE_COMMAND_UI(id, memberFxn)                                                          \
    {WM_COMMAND, CN_UPDATE_COMMAND_UI, static_cast<WORD>(id), static_cast<WORD>(id), AfxSigCmdUI,    \
     AfxMsgHandler(static_cast<void (CCmdTarget::*)(CCmdUI*)>(memberFxn))},
#define ON_CONTROL(wNotifyCode, id, memberFxn)                                                       \
    {WM_COMMAND, static_cast<WORD>(wNotifyCode), static_cast<WORD>(id), static_cast<WORD>(id),        \
     AfxSigCmd_v, AfxMsgHandler(static_cast<void (CCmdTarget::*)()>(memberFxn))},
#define ON_CONTROL_RANGE(wNotifyCode, id, idLast, memberFxn)                                         \
    {WM_COMMAND, static_cast<WORD>(wNotifyCode), static_cast<WORD>(id), static_cast<WORD>(idLast),    \
     AfxSigCmd_RANGE, AfxMsgHandler(static_cast<void (CCmdTarget::*)(UINT)>(memberFxn))},
#define ON_MESSAGE(message, memberFxn)                                                               \
    {static_cast<UINT>(message), 0, 0, 0, AfxSig_lwl,                                                \
     AfxMsgHandler(static_cast<LRESULT (CWnd::*)(WPARAM, LPARAM)>(memberFxn))},
#define ON_REGISTERED_MESSAGE(nMessageVariable, memberFxn)                                           \
    {0xC002, 0, 0, 0, reinterpret_cast<UINT_PTR>(&(nMessageVariable)),                               \
     AfxMsgHandler(static_cast<LRESULT (CWnd::*)(WPARAM, LPARAM)>(memberFxn))},

#define ON_BN_CLICKED(id, memberFxn) ON_CONTROL(BN_CLICKED, id, memberFxn)
#define ON_BN_DOUBLECLICKED(id, memberFxn) ON_CONTROL(BN_DOUBLECLICKED, id, memberFxn)
#define ON_BN_SETFOCUS(id, memberFxn) ON_CONTROL(BN_SETFOCUS, id, memberFxn)
#define ON_BN_KILLFOCUS(id, memberFxn) ON_CONTROL(BN_KILLFOCUS, id, memberFxn)
#define ON_EN_CHANGE(id, memberFxn) ON_CONTROL(EN_CHANGE, id, memberFxn)
#define ON_EN_UPDATE(id, memberFxn) ON_CONTROL(EN_UPDATE, id, memberFxn)
#define ON_EN_SETFOCUS(id, memberFxn) ON_CONTROL(EN_SETFOCUS, id, memberFxn)
#define ON_EN_KILLFOCUS(id, memberFxn) ON_CONTROL(EN_KILLFOCUS, id, memberFxn)
#define ON_LBN_SELCHANGE(id, memberFxn) ON_CONTROL(LBN_SELCHANGE, id, memberFxn)
#define ON_LBN_DBLCLK(id, memberFxn) ON_CONTROL(LBN_DBLCLK, id, memberFxn)
#define ON_LBN_SETFOCUS(id, memberFxn) ON_CONTROL(LBN_SETFOCUS, id, memberFxn)
#define ON_LBN_KILLFOCUS(id, memberFxn) ON_CONTROL(LBN_KILLFOCUS, id, memberFxn)
#define ON_CBN_SELCHANGE(id, memberFxn) ON_CONTROL(CBN_SELCHANGE, id, memberFxn)
#define ON_CBN_EDITCHANGE(id, memberFxn) ON_CONTROL(CBN_EDITCHANGE, id, memberFxn)
#define ON_CBN_EDITUPDATE(id, memberFxn) ON_CONTROL(CBN_EDITUPDATE, id, memberFxn)
#define ON_CBN_DROPDOWN(id, memberFxn) ON_CONTROL(CBN_DROPDOWN, id, memberFxn)
#define ON_CBN_CLOSEUP(id, memberFxn) ON_CONTROL(CBN_CLOSEUP, id, memberFxn)
#define ON_CBN_SELENDOK(id, memberFxn) ON_CONTROL(CBN_SELENDOK, id, memberFxn)
#define ON_CBN_SELENDCANCEL(id, memberFxn) ON_CONTROL(CBN_SELENDCANCEL, id, memberFxn)
#define ON_CBN_SETFOCUS(id, memberFxn) ON_CONTROL(CBN_SETFOCUS, id, memberFxn)
#define ON_CBN_KILLFOCUS(id, memberFxn) ON_CONTROL(CBN_KILLFOCUS, id, memberFxn)
#define ON_STN_CLICKED(id, memberFxn) ON_CONTROL(STN_CLICKED, id, memberFxn)
#define ON_STN_DBLCLK(id, memberFxn) ON_CONTROL(STN_DBLCLK, id, memberFxn)

// The notification of a check list box when the user changes a tick.
#define CLBN_CHKCHANGE (40)
#define ON_CLBN_CHKCHANGE(id, memberFxn) ON_CONTROL(CLBN_CHKCHANGE, id, memberFxn)

// ---------------------------------------------------------------------------
// Command targets and windows.

class CADHOST_API CCmdTarget : public CObject {
    DECLARE_DYNAMIC(CCmdTarget)
public:
    CCmdTarget() = default;
    ~CCmdTarget() override = default;

    // Looks the command (nCode CN_COMMAND, a control's notification, or
    // CN_UPDATE_COMMAND_UI with pExtra the CCmdUI) up in the message maps
    // and calls its handler; answers whether one took it.
    virtual BOOL OnCmdMsg(UINT nID, int nCode, void* pExtra, void* pHandlerInfo);

protected:
    static const AFX_MSGMAP* GetThisMessageMap();
    virtual const AFX_MSGMAP* GetMessageMap() const;
};

class CADHOST_API CWnd : public CCmdTarget {
    DECLARE_DYNCREATE(CWnd)
public:
    CWnd();
    ~CWnd() override;

    HWND m_hWnd;
    operator HWND() const { return m_hWnd; }
    HWND GetSafeHwnd() const { return m_hWnd; }

    // The object of a window: the one attached to it, else a temporary one
    // of the window's kind that lives as long as the window.
    static CWnd* FromHandle(HWND hWnd);
    static CWnd* FromHandlePermanent(HWND hWnd);
    BOOL Attach(HWND hWndNew);
    HWND Detach();
    BOOL SubclassWindow(HWND hWnd);
    BOOL SubclassDlgItem(UINT nID, CWnd* pParent);
    HWND UnsubclassWindow();

    // A window of a class; classes other than the standard controls give a
    // plain window.
    virtual BOOL Create(LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle, const RECT& rect,
                        CWnd* pParentWnd, UINT nID, CCreateContext* pContext = nullptr);
    virtual BOOL CreateEx(DWORD dwExStyle, LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle,
                          const RECT& rect, CWnd* pParentWnd, UINT nID, LPVOID lpParam = nullptr);
    virtual BOOL DestroyWindow();

    // Style and state.
    DWORD GetStyle() const;
    DWORD GetExStyle() const;
    BOOL ModifyStyle(DWORD dwRemove, DWORD dwAdd, UINT nFlags = 0);
    BOOL ModifyStyleEx(DWORD dwRemove, DWORD dwAdd, UINT nFlags = 0);
    BOOL EnableWindow(BOOL bEnable = TRUE);
    BOOL IsWindowEnabled() const;
    BOOL ShowWindow(int nCmdShow);
    BOOL IsWindowVisible() const;
    CWnd* SetFocus();
    static CWnd* GetFocus();

    // The tree of windows.
    int GetDlgCtrlID() const;
    int SetDlgCtrlID(int nID);
    CWnd* GetParent() const;
    CWnd* SetParent(CWnd* pWndNewParent);
    CWnd* GetOwner() const;
    void SetOwner(CWnd* pOwnerWnd);
    CWnd* GetTopLevelParent() const;
    CWnd* GetDlgItem(int nID) const;
    void GetDlgItem(int nID, HWND* phWnd) const;
    CWnd* GetWindow(UINT nCmd) const;
    CWnd* GetNextWindow(UINT nFlag = GW_HWNDNEXT) const;
    BOOL IsChild(const CWnd* pWnd) const;

    // Text.
    void SetWindowText(LPCTSTR lpszString);
    int GetWindowText(LPTSTR lpszStringBuf, int nMaxCount) const;
    void GetWindowText(CString& rString) const;
    int GetWindowTextLength() const;
    void SetDlgItemText(int nID, LPCTSTR lpszString);
    int GetDlgItemText(int nID, LPTSTR lpStr, int nMaxCount) const;
    int GetDlgItemText(int nID, CString& rString) const;
    UINT GetDlgItemInt(int nID, BOOL* lpTrans = nullptr, BOOL bSigned = TRUE) const;
    void SetDlgItemInt(int nID, UINT nValue, BOOL bSigned = TRUE);
    void CheckDlgButton(int nIDButton, UINT nCheck);
    UINT IsDlgButtonChecked(int nIDButton) const;
    void CheckRadioButton(int nIDFirstButton, int nIDLastButton, int nIDCheckButton);
    int GetCheckedRadioButton(int nIDFirstButton, int nIDLastButton);

    // Places, in pixels: a window's rectangle on the screen, its client area
    // from its own top left corner.
    void GetWindowRect(LPRECT lpRect) const;
    void GetClientRect(LPRECT lpRect) const;
    void ScreenToClient(LPPOINT lpPoint) const;
    void ScreenToClient(LPRECT lpRect) const;
    void ClientToScreen(LPPOINT lpPoint) const;
    void ClientToScreen(LPRECT lpRect) const;
    void MoveWindow(int x, int y, int nWidth, int nHeight, BOOL bRepaint = TRUE);
    void MoveWindow(LPCRECT lpRect, BOOL bRepaint = TRUE);
    BOOL SetWindowPos(const CWnd* pWndInsertAfter, int x, int y, int cx, int cy, UINT nFlags);
    void CenterWindow(CWnd* pAlternateOwner = nullptr);

    // Drawing: nothing is drawn, but fonts and measuring are real.
    CFont* GetFont() const;
    void SetFont(CFont* pFont, BOOL bRedraw = TRUE);
    CDC* GetDC();
    int ReleaseDC(CDC* pDC);
    void Invalidate(BOOL bErase = TRUE) {}
    void UpdateWindow() {}
    void SetRedraw(BOOL bRedraw = TRUE) {}

    // Messages: sent ones are handled at once; posted ones when the host's
    // message loop next comes round.
    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    BOOL PostMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    LRESULT SendDlgItemMessage(int nID, UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    // A message box owned by this window; without a caption, the host's name.
    int MessageBox(LPCTSTR lpszText, LPCTSTR lpszCaption = nullptr, UINT nType = MB_OK);

    // Data exchange between the controls and the members: TRUE reads the
    // controls; answers FALSE when an exchange refused a value.
    BOOL UpdateData(BOOL bSaveAndValidate = TRUE);

    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);

protected:
    virtual BOOL OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* pResult);
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
    virtual void DoDataExchange(CDataExchange* pDX);
    virtual void PreSubclassWindow();
    // Called once the window is gone and the object detached from it.
    virtual void PostNcDestroy();

    DECLARE_MESSAGE_MAP()

    friend class CDataExchange;
};

// ---------------------------------------------------------------------------
// Dialogs.

class CADHOST_API CDialog : public CWnd {
    DECLARE_DYNAMIC(CDialog)
public:
    CDialog();
    explicit CDialog(LPCTSTR lpszTemplateName, CWnd* pParentWnd = nullptr);
    explicit CDialog(UINT nIDTemplate, CWnd* pParentWnd = nullptr);
    ~CDialog() override;

    // A modeless dialog from a template of the current resources; a child
    // when the template says WS_CHILD, else a window owned by the parent.
    virtual BOOL Create(LPCTSTR lpszTemplateName, CWnd* pParentWnd = nullptr);
    virtual BOOL Create(UINT nIDTemplate, CWnd* pParentWnd = nullptr);
    // Runs the dialog until EndDialog, through the host's user interface;
    // answers the value given to EndDialog, or -1 when the template is not
    // found in the current resources.
    virtual INT_PTR DoModal();
    void EndDialog(int nResult);

    virtual BOOL OnInitDialog();
    void NextDlgCtrl() const;
    void PrevDlgCtrl() const;
    void GotoDlgCtrl(CWnd* pWndCtrl);
    void SetDefID(UINT nID);
    DWORD GetDefID() const;
    // Dialog units of this dialog's font into pixels.
    void MapDialogRect(LPRECT lpRect) const;

    // This host's own: the window whose controls a session script works.
    // A dialog that shows pages of its own answers the current page.
    virtual CWnd* ScriptTarget() { return this; }
    // A control that scripts name by a word rather than an id (the Field
    // dialog's "code" box); null for a name the dialog does not know.
    virtual CWnd* ScriptControl(LPCTSTR name) { return nullptr; }

    LPCTSTR m_lpszTemplateName;
    UINT m_nIDHelp;
    CWnd* m_pParentWnd;

protected:
    virtual void OnOK();
    virtual void OnCancel();

    DECLARE_MESSAGE_MAP()

private:
    void SetTemplate(LPCTSTR lpszTemplateName);
    BOOL CreateFromTemplate(HWND hWndParent);
    BOOL InitModeless();

    CString m_templateName;  // keeps a named template's text alive
    INT_PTR m_modalResult;
};

// ---------------------------------------------------------------------------
// Controls. Their state lives with the window, so that the temporary object
// of a window and a member bound to it by DDX_Control see the same.

class CADHOST_API CStatic : public CWnd {
    DECLARE_DYNAMIC(CStatic)
public:
    CStatic() = default;
    ~CStatic() override;
    virtual BOOL Create(LPCTSTR lpszText, DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID = 0xffff);
};

class CADHOST_API CButton : public CWnd {
    DECLARE_DYNAMIC(CButton)
public:
    CButton() = default;
    ~CButton() override;
    virtual BOOL Create(LPCTSTR lpszCaption, DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);
    int GetCheck() const;
    void SetCheck(int nCheck);
    UINT GetState() const;
    void SetState(BOOL bHighlight);
    UINT GetButtonStyle() const;
    void SetButtonStyle(UINT nStyle, BOOL bRedraw = TRUE);
};

class CADHOST_API CEdit : public CWnd {
    DECLARE_DYNAMIC(CEdit)
public:
    CEdit() = default;
    ~CEdit() override;
    virtual BOOL Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);
    BOOL SetReadOnly(BOOL bReadOnly = TRUE);
    void SetSel(int nStartChar, int nEndChar, BOOL bNoScroll = FALSE);
    void GetSel(int& nStartChar, int& nEndChar) const;
    void ReplaceSel(LPCTSTR lpszNewText, BOOL bCanUndo = FALSE);
    void LimitText(int nChars = 0);
    void SetLimitText(UINT nMax) { LimitText(static_cast<int>(nMax)); }
    UINT GetLimitText() const;
    void Clear();
};

class CADHOST_API CListBox : public CWnd {
    DECLARE_DYNAMIC(CListBox)
public:
    CListBox() = default;
    ~CListBox() override;
    virtual BOOL Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);

    // Entries: where the list says LBS_SORT, AddString puts the text in its
    // place among the others, not regarding case.
    int GetCount() const;
    int AddString(LPCTSTR lpszItem);
    int InsertString(int nIndex, LPCTSTR lpszItem);
    int DeleteString(UINT nIndex);
    void ResetContent();
    int GetText(int nIndex, LPTSTR lpszBuffer) const;
    void GetText(int nIndex, CString& rString) const;
    int GetTextLen(int nIndex) const;
    DWORD_PTR GetItemData(int nIndex) const;
    int SetItemData(int nIndex, DWORD_PTR dwItemData);
    void* GetItemDataPtr(int nIndex) const;
    int SetItemDataPtr(int nIndex, void* pData);

    // Selection of a single-selection list, and of a multiple one.
    int GetCurSel() const;
    int SetCurSel(int nSelect);
    int GetSel(int nIndex) const;
    int SetSel(int nIndex, BOOL bSelect = TRUE);
    int GetSelCount() const;
    int GetSelItems(int nMaxItems, LPINT rgIndex) const;

    // Search, not regarding case, from the entry after nStartAfter round to
    // it (-1: from the first); FindString matches the start of an entry.
    int FindString(int nStartAfter, LPCTSTR lpszItem) const;
    int FindStringExact(int nIndexStart, LPCTSTR lpszFind) const;
    int SelectString(int nStartAfter, LPCTSTR lpszItem);

    int GetTopIndex() const;
    int SetTopIndex(int nIndex);
    int GetHorizontalExtent() const;
    void SetHorizontalExtent(int cxExtent);
};

// A list box with a tick box before each entry. A tick by the user also
// selects its entry: the parent hears LBN_SELCHANGE, then CLBN_CHKCHANGE.
class CADHOST_API CCheckListBox : public CListBox {
    DECLARE_DYNAMIC(CCheckListBox)
public:
    CCheckListBox() = default;
    ~CCheckListBox() override;
    BOOL Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID) override;
    void SetCheckStyle(UINT nStyle);
    UINT GetCheckStyle();
    void SetCheck(int nIndex, int nCheck);
    int GetCheck(int nIndex);
    void Enable(int nIndex, BOOL bEnabled = TRUE);
    BOOL IsEnabled(int nIndex);

protected:
    void PreSubclassWindow() override;
};

class CADHOST_API CComboBox : public CWnd {
    DECLARE_DYNAMIC(CComboBox)
public:
    CComboBox() = default;
    ~CComboBox() override;
    virtual BOOL Create(DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID);

    int GetCount() const;
    int AddString(LPCTSTR lpszString);
    int InsertString(int nIndex, LPCTSTR lpszString);
    int DeleteString(UINT nIndex);
    void ResetContent();
    int GetLBText(int nIndex, LPTSTR lpszText) const;
    void GetLBText(int nIndex, CString& rString) const;
    int GetLBTextLen(int nIndex) const;
    DWORD_PTR GetItemData(int nIndex) const;
    int SetItemData(int nIndex, DWORD_PTR dwItemData);
    void* GetItemDataPtr(int nIndex) const;
    int SetItemDataPtr(int nIndex, void* pData);

    // Selection; with an edit part the selected entry's text shows in it.
    int GetCurSel() const;
    int SetCurSel(int nSelect);
    int FindString(int nStartAfter, LPCTSTR lpszString) const;
    int FindStringExact(int nIndexStart, LPCTSTR lpszFind) const;
    int SelectString(int nStartAfter, LPCTSTR lpszString);

    // The list part.
    void ShowDropDown(BOOL bShowIt = TRUE);
    BOOL GetDroppedState() const;
    int GetDroppedWidth() const;
    int SetDroppedWidth(UINT nWidth);
    int GetHorizontalExtent() const { return 0; }
    void SetHorizontalExtent(UINT) {}

    // The edit part.
    DWORD GetEditSel() const;
    BOOL SetEditSel(int nStartChar, int nEndChar);
    BOOL LimitText(int nMaxChars);
    void Clear();
};

// ---------------------------------------------------------------------------
// Data exchange.

class CADHOST_API CDataExchange {
public:
    CDataExchange(CWnd* pDlgWnd, BOOL bSaveAndValidate);

    BOOL m_bSaveAndValidate;  // TRUE: from the controls into the members
    CWnd* m_pDlgWnd;
    UINT m_idLastControl;
    BOOL m_bEditLastControl;

    // The control of an id, noted for Fail(); a missing control fails the
    // exchange.
    HWND PrepareCtrl(int nIDC);
    HWND PrepareEditCtrl(int nIDC);
    // Ends the exchange: the focus goes to the last control prepared.
    [[noreturn]] void Fail();
};

CADHOST_API void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, CString& value);
CADHOST_API void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, LPTSTR value, int nMaxLen);
CADHOST_API void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, int& value);
CADHOST_API void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, UINT& value);
CADHOST_API void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, long& value);
CADHOST_API void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, short& value);
CADHOST_API void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, BYTE& value);
CADHOST_API void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, float& value);
CADHOST_API void AFXAPI DDX_Text(CDataExchange* pDX, int nIDC, double& value);
CADHOST_API void AFXAPI DDX_Check(CDataExchange* pDX, int nIDC, int& value);
// nIDC is the first radio button of a group: the value is the place of the
// checked one among the group's radio buttons, -1 for none.
CADHOST_API void AFXAPI DDX_Radio(CDataExchange* pDX, int nIDC, int& value);
CADHOST_API void AFXAPI DDX_Control(CDataExchange* pDX, int nIDC, CWnd& rControl);
CADHOST_API void AFXAPI DDX_LBString(CDataExchange* pDX, int nIDC, CString& value);
CADHOST_API void AFXAPI DDX_LBStringExact(CDataExchange* pDX, int nIDC, CString& value);
CADHOST_API void AFXAPI DDX_LBIndex(CDataExchange* pDX, int nIDC, int& index);
CADHOST_API void AFXAPI DDX_CBString(CDataExchange* pDX, int nIDC, CString& value);
CADHOST_API void AFXAPI DDX_CBStringExact(CDataExchange* pDX, int nIDC, CString& value);
CADHOST_API void AFXAPI DDX_CBIndex(CDataExchange* pDX, int nIDC, int& index);

CADHOST_API void AFXAPI DDV_MinMaxInt(CDataExchange* pDX, int value, int minVal, int maxVal);
CADHOST_API void AFXAPI DDV_MinMaxUInt(CDataExchange* pDX, UINT value, UINT minVal, UINT maxVal);
CADHOST_API void AFXAPI DDV_MinMaxLong(CDataExchange* pDX, long value, long minVal, long maxVal);
CADHOST_API void AFXAPI DDV_MinMaxDouble(CDataExchange* pDX, const double& value, double minVal, double maxVal);
CADHOST_API void AFXAPI DDV_MaxChars(CDataExchange* pDX, const CString& value, int nChars);

// ---------------------------------------------------------------------------
// Message boxes.

// A message box with the host's name as its caption.
CADHOST_API int AFXAPI AfxMessageBox(LPCTSTR lpszText, UINT nType = MB_OK, UINT nIDHelp = 0);
// The same with a string of the current resources.
CADHOST_API int AFXAPI AfxMessageBox(UINT nIDPrompt, UINT nType = MB_OK, UINT nIDHelp = static_cast<UINT>(-1));

// ---------------------------------------------------------------------------
// Menus.

class CADHOST_API CMenu : public CObject {
    DECLARE_DYNCREATE(CMenu)
public:
    CMenu();
    ~CMenu() override;  // destroys the menu it holds

    HMENU m_hMenu;
    operator HMENU() const { return m_hMenu; }
    HMENU GetSafeHmenu() const { return m_hMenu; }
    static CMenu* FromHandle(HMENU hMenu);
    BOOL Attach(HMENU hMenu);
    HMENU Detach();

    BOOL CreateMenu();
    BOOL CreatePopupMenu();
    // A menu of the current resources.
    BOOL LoadMenu(LPCTSTR lpszResourceName);
    BOOL LoadMenu(UINT nIDResource);
    BOOL DestroyMenu();

    CMenu* GetSubMenu(int nPos) const;
    UINT GetMenuItemCount() const;
    UINT GetMenuItemID(int nPos) const;
    UINT GetMenuState(UINT nID, UINT nFlags) const;
    int GetMenuString(UINT nIDItem, LPTSTR lpString, int nMaxCount, UINT nFlags) const;
    int GetMenuString(UINT nIDItem, CString& rString, UINT nFlags) const;
    BOOL InsertMenu(UINT nPosition, UINT nFlags, UINT_PTR nIDNewItem = 0, LPCTSTR lpszNewItem = nullptr);
    BOOL AppendMenu(UINT nFlags, UINT_PTR nIDNewItem = 0, LPCTSTR lpszNewItem = nullptr);
    BOOL ModifyMenu(UINT nPosition, UINT nFlags, UINT_PTR nIDNewItem = 0, LPCTSTR lpszNewItem = nullptr);
    BOOL DeleteMenu(UINT nPosition, UINT nFlags);
    BOOL RemoveMenu(UINT nPosition, UINT nFlags);
    UINT EnableMenuItem(UINT nIDEnableItem, UINT nEnable);
    UINT CheckMenuItem(UINT nIDCheckItem, UINT nCheck);

    // Shows the popup at screen coordinates; the chosen item's command goes
    // to pWnd, or with TPM_RETURNCMD is the answer. 0 when nothing was chosen.
    BOOL TrackPopupMenu(UINT nFlags, int x, int y, CWnd* pWnd, LPCRECT lpRect = nullptr);
};

// The state of one user interface item, here a menu item at m_nIndex.
class CADHOST_API CCmdUI {
public:
    CCmdUI();
    virtual ~CCmdUI() = default;

    UINT m_nID;
    UINT m_nIndex;
    CMenu* m_pMenu;
    CMenu* m_pSubMenu;
    CMenu* m_pParentMenu;
    CWnd* m_pOther;
    BOOL m_bEnableChanged;
    BOOL m_bContinueRouting;
    UINT m_nIndexMax;

    virtual void Enable(BOOL bOn = TRUE);
    virtual void SetCheck(int nCheck = 1);
    virtual void SetRadio(BOOL bOn = TRUE);
    virtual void SetText(LPCTSTR lpszText);
    void ContinueRouting() { m_bContinueRouting = TRUE; }
    // Asks the target's handler of CN_UPDATE_COMMAND_UI; without one the
    // item is disabled when bDisableIfNoHndler says so.
    BOOL DoUpdate(CCmdTarget* pTarget, BOOL bDisableIfNoHndler);
};

// ---------------------------------------------------------------------------
// Fonts and device contexts.

class CADHOST_API CGdiObject : public CObject {
    DECLARE_DYNCREATE(CGdiObject)
public:
    CGdiObject() : m_hObject(nullptr) {}
    ~CGdiObject() override;  // deletes the object it holds
    HGDIOBJ m_hObject;
    HGDIOBJ GetSafeHandle() const { return m_hObject; }
    BOOL Attach(HGDIOBJ hObject);
    HGDIOBJ Detach();
    BOOL DeleteObject();
};

class CADHOST_API CFont : public CGdiObject {
    DECLARE_DYNCREATE(CFont)
public:
    CFont() = default;
    ~CFont() override = default;
    operator HFONT() const { return static_cast<HFONT>(m_hObject); }
    // The object of a font handle, kept for as long as the font lives.
    static CFont* FromHandle(HFONT hFont);
    BOOL CreateFontIndirect(const LOGFONT* lpLogFont);
    // A font of a size in tenths of a point.
    BOOL CreatePointFont(int nPointSize, LPCTSTR lpszFaceName, CDC* pDC = nullptr);
    BOOL CreateFont(int nHeight, int nWidth, int nEscapement, int nOrientation, int nWeight, BYTE bItalic,
                    BYTE bUnderline, BYTE cStrikeOut, BYTE nCharSet, BYTE nOutPrecision, BYTE nClipPrecision,
                    BYTE nQuality, BYTE nPitchAndFamily, LPCTSTR lpszFacename);
    int GetLogFont(LOGFONT* pLogFont);
};

class CADHOST_API CDC : public CObject {
    DECLARE_DYNCREATE(CDC)
public:
    CDC() : m_hDC(nullptr) {}
    ~CDC() override;
    HDC m_hDC;
    operator HDC() const { return m_hDC; }
    HDC GetSafeHdc() const { return m_hDC; }
    static CDC* FromHandle(HDC hDC);
    BOOL Attach(HDC hDC);
    HDC Detach();
    BOOL CreateCompatibleDC(CDC* pDC);
    BOOL DeleteDC();

    CFont* SelectObject(CFont* pFont);
    HGDIOBJ SelectObject(HGDIOBJ hObject);
    CSize GetTextExtent(LPCTSTR lpszString, int nCount) const;
    CSize GetTextExtent(const CString& str) const;
    BOOL GetTextMetrics(LPTEXTMETRIC lpMetrics) const;
    int GetDeviceCaps(int nIndex) const;
    COLORREF SetTextColor(COLORREF crColor);
    COLORREF SetBkColor(COLORREF crColor);
    int SetBkMode(int nBkMode);
};

// The device context of a window's client area, for the life of the object.
class CADHOST_API CClientDC : public CDC {
    DECLARE_DYNAMIC(CClientDC)
public:
    explicit CClientDC(CWnd* pWnd);
    ~CClientDC() override;

protected:
    HWND m_hWnd;
};

// ---------------------------------------------------------------------------
// Documents.

// The framework's side of an open file: its full path, empty while it was
// never saved, and its title.
class CADHOST_API CDocument : public CCmdTarget {
    DECLARE_DYNAMIC(CDocument)
public:
    CDocument() = default;
    ~CDocument() override = default;

    virtual const CString& GetPathName() const { return m_strPathName; }
    virtual void SetPathName(LPCTSTR lpszPathName, BOOL bAddToMRU = TRUE);
    const CString& GetTitle() const { return m_strTitle; }
    virtual void SetTitle(LPCTSTR lpszTitle) { m_strTitle = lpszTitle; }

protected:
    CString m_strPathName;
    CString m_strTitle;
};
