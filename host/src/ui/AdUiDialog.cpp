// The CAD platform's dialog classes: a dialog that names its resource
// handle finds its template there.
#include <acdocman.h>
#include <acui.h>

IMPLEMENT_DYNAMIC(CAdUiBaseDialog, CDialog)
IMPLEMENT_DYNAMIC(CAdUiDialog, CAdUiBaseDialog)

BEGIN_MESSAGE_MAP(CAdUiBaseDialog, CDialog)
END_MESSAGE_MAP()

BEGIN_MESSAGE_MAP(CAdUiDialog, CAdUiBaseDialog)
END_MESSAGE_MAP()

namespace {

// Puts the dialog's own resource handle on top of the stack for a call.
class DialogResources {
public:
    explicit DialogResources(HINSTANCE resources) : m_pushed(resources && acDocManagerPtr()) {
        if (m_pushed) acDocManagerPtr()->pushResourceHandle(resources);
    }
    ~DialogResources() {
        if (m_pushed && acDocManagerPtr()) acDocManagerPtr()->popResourceHandle();
    }
    DialogResources(const DialogResources&) = delete;
    DialogResources& operator=(const DialogResources&) = delete;

private:
    bool m_pushed;
};

}  // namespace

CAdUiBaseDialog::CAdUiBaseDialog(UINT idd, CWnd* pParent, HINSTANCE hDialogResource)
    : CDialog(idd, pParent), m_hDialogResource(hDialogResource) {}

CAdUiBaseDialog::~CAdUiBaseDialog() = default;

BOOL CAdUiBaseDialog::Create(LPCTSTR lpszTemplateName, CWnd* pParentWnd) {
    DialogResources scope(m_hDialogResource);
    return CDialog::Create(lpszTemplateName, pParentWnd);
}

BOOL CAdUiBaseDialog::Create(UINT nIDTemplate, CWnd* pParentWnd) {
    DialogResources scope(m_hDialogResource);
    return CDialog::Create(nIDTemplate, pParentWnd);
}

INT_PTR CAdUiBaseDialog::DoModal() {
    DialogResources scope(m_hDialogResource);
    return CDialog::DoModal();
}

BOOL CAdUiBaseDialog::OnInitDialog() { return CDialog::OnInitDialog(); }

CAdUiDialog::CAdUiDialog(UINT idd, CWnd* pParent, HINSTANCE hDialogResource)
    : CAdUiBaseDialog(idd, pParent, hDialogResource) {}

CAdUiDialog::~CAdUiDialog() = default;
