// The framework's document: the path of its file and the title it shows.
#include <afxwin.h>

IMPLEMENT_DYNAMIC(CDocument, CCmdTarget)

void CDocument::SetPathName(LPCTSTR lpszPathName, BOOL) {
    m_strPathName = lpszPathName;
    int slash = std::max(m_strPathName.ReverseFind(L'/'), m_strPathName.ReverseFind(L'\\'));
    m_strTitle = m_strPathName.Mid(slash + 1);
}
