#include "services/WebLinks.h"

#include <shellapi.h>

#include "Product.h"
#include "plugin/ModuleState.h"
#include "services/OsDescription.h"

namespace {

// The platform's own text in the mail: %%0a%%0d becomes %0a%0d, a line feed
// and a carriage return for the mail program.
const wchar_t* const kSupportMailBody =
    L" Please provide the following info to help us troubleshooting. Thanks. %%0a%%0d Operation System: %s "
    L"%%0a%%0d CAD Platform Version: %s %%0a%%0d Product: %s %%0a%%0d Product Version: %s %%0a%%0d Problem "
    L"Description: (Step by Step) %%0a%%0d Screenshot(s): (Optional) %%0a%%0d Please attach sample files (.dwg "
    L"and/or .xls) to help us troubleshooting if applicable. %%0a%%0d We will working on your problem and give you "
    L"answers ASAP.";

void OpenTarget(LPCTSTR target) { ::ShellExecuteW(nullptr, L"open", target, nullptr, nullptr, SW_SHOWNORMAL); }

CString ProductPage(LPCTSTR page, LPCTSTR product) {
    CString address;
    address.Format(L"%s/redirect.php?page=%s&product=%s", (LPCTSTR)MakerSite(), page, product);
    return address;
}

}  // namespace

CString MakerSite() { return QM_MAKER_SITE; }

CString DownloadPage() { return MakerSite() + L"/download"; }

CString SupportMailbox() { return QM_SUPPORT_MAILBOX; }

void OpenWebsite() { OpenTarget(MakerSite()); }

void OpenFaq(LPCTSTR product) { OpenTarget(ProductPage(L"faq", product)); }

void OpenWhatsNew(LPCTSTR product) { OpenTarget(ProductPage(L"whatsnew", product)); }

void OpenDemo() { OpenTarget(ProductPage(L"demo", QM_PRODUCT_WORD)); }

CString SupportMailAddress() {
    AcDbHostApplicationServices* services = acdbHostApplicationServices();
    CString platformVersion = services ? services->versionString() : L"";
    CString system = GetOsDescription();
    // None of the four is escaped: the mail program takes the text as it is.
    CString body;
    body.Format(kSupportMailBody, (LPCTSTR)system, (LPCTSTR)platformVersion, QM_PRODUCT_NAME, QM_PRODUCT_VERSION);
    return L"mailto:" + SupportMailbox() + L"?body=" + body;
}

void OpenSupportMail() { OpenTarget(SupportMailAddress()); }

CString HelpFilePath(LPCTSTR fileName) {
    ACHAR path[MAX_PATH] = L"";
    ::GetModuleFileNameW(_hdllInstance, path, MAX_PATH);
    ::PathRemoveFileSpecW(path);
    ::PathAddBackslashW(path);
    CString file = path;
    file += fileName;
    return file;
}

void OpenHelpFile(LPCTSTR fileName) { OpenTarget(HelpFilePath(fileName)); }
