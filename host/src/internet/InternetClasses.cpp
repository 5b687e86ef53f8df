// The framework's Internet classes over the host's HTTP transfer.
#include <afxinet.h>

#include <cwchar>

#include "app/Host.h"
#include "core/Utf8.h"
#include "internet/HttpTransfer.h"

IMPLEMENT_DYNAMIC(CInternetException, CException)
IMPLEMENT_DYNAMIC(CInternetSession, CObject)
IMPLEMENT_DYNAMIC(CInternetConnection, CObject)
IMPLEMENT_DYNAMIC(CHttpConnection, CInternetConnection)
IMPLEMENT_DYNAMIC(CInternetFile, CObject)
IMPLEMENT_DYNAMIC(CHttpFile, CInternetFile)

CInternetException::CInternetException(DWORD dwError) : m_dwError(dwError), m_dwContext(0) {}

BOOL CInternetException::GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext) const {
    if (pnHelpContext) *pnHelpContext = 0;
    if (!lpszError || nMaxError == 0) return FALSE;
    lpszError[0] = L'\0';
    const wchar_t* known = cadhost::internet::InternetErrorText(m_dwError);
    std::wstring text = known ? known : L"Internet error " + std::to_wstring(m_dwError);
    if (!m_detail.IsEmpty()) text += L": " + m_detail.str();
    text += L".";
    std::wcsncpy(lpszError, text.c_str(), nMaxError - 1);
    lpszError[nMaxError - 1] = L'\0';
    return TRUE;
}

void AfxThrowInternetException(DWORD_PTR dwContext, DWORD dwError) {
    auto* exception = new CInternetException(dwError ? dwError : ERROR_INTERNET_INTERNAL_ERROR);
    exception->m_dwContext = dwContext;
    throw exception;
}

CInternetSession::CInternetSession(LPCTSTR, DWORD_PTR dwContext, DWORD, LPCTSTR, LPCTSTR, DWORD)
    : m_open(TRUE), m_context(dwContext) {}

CInternetSession::~CInternetSession() { Close(); }

void CInternetSession::Close() { m_open = FALSE; }

CHttpConnection* CInternetSession::GetHttpConnection(LPCTSTR pstrServer, INTERNET_PORT nPort, LPCTSTR, LPCTSTR) {
    if (!m_open || !pstrServer || !*pstrServer) return nullptr;
    return new CHttpConnection(this, pstrServer, nPort, m_context);
}

CInternetConnection::CInternetConnection(CInternetSession* pSession, LPCTSTR pstrServer, INTERNET_PORT nPort,
                                         DWORD_PTR dwContext)
    : m_session(pSession), m_server(pstrServer), m_port(nPort ? nPort : INTERNET_DEFAULT_HTTP_PORT),
      m_context(dwContext), m_open(TRUE) {}

CInternetConnection::~CInternetConnection() { Close(); }

void CInternetConnection::Close() { m_open = FALSE; }

CHttpConnection::CHttpConnection(CInternetSession* pSession, LPCTSTR pstrServer, INTERNET_PORT nPort,
                                 DWORD_PTR dwContext)
    : CInternetConnection(pSession, pstrServer, nPort, dwContext) {}

CHttpConnection::~CHttpConnection() = default;

CHttpFile* CHttpConnection::OpenRequest(LPCTSTR pstrVerb, LPCTSTR pstrObjectName, LPCTSTR, DWORD_PTR dwContext,
                                        LPCTSTR*, LPCTSTR, DWORD) {
    if (!m_open || !m_session || !m_session->IsOpen()) AfxThrowInternetException(dwContext, ERROR_INTERNET_INCORRECT_HANDLE_STATE);
    return new CHttpFile(this, pstrVerb ? pstrVerb : L"GET", pstrObjectName ? pstrObjectName : L"", dwContext);
}

CInternetFile::~CInternetFile() = default;

void CInternetFile::SetContent(std::string content) {
    m_content = std::move(content);
    m_position = 0;
}

BOOL CInternetFile::ReadString(CString& rString) {
    rString.Empty();
    if (!m_open || m_position >= m_content.size()) return FALSE;
    size_t end = m_content.find('\n', m_position);
    size_t next = end == std::string::npos ? m_content.size() : end + 1;
    size_t length = (end == std::string::npos ? m_content.size() : end) - m_position;
    rString = CString(cadhost::FromUtf8(std::string_view(m_content).substr(m_position, length)).c_str());
    m_position = next;
    return TRUE;
}

void CInternetFile::Close() {
    m_open = FALSE;
    m_content.clear();
    m_position = 0;
}

CHttpFile::CHttpFile(CHttpConnection* pConnection, LPCTSTR pstrVerb, LPCTSTR pstrObject, DWORD_PTR dwContext)
    : m_connection(pConnection), m_verb(pstrVerb), m_object(pstrObject), m_context(dwContext) {}

CHttpFile::~CHttpFile() = default;

BOOL CHttpFile::SendRequest(LPCTSTR, DWORD, LPVOID, DWORD) {
    cadhost::Host* host = cadhost::Host::Current();
    if (!host || !m_open || !m_connection) AfxThrowInternetException(m_context, ERROR_INTERNET_INCORRECT_HANDLE_STATE);
    if (m_verb.CompareNoCase(L"GET") != 0) AfxThrowInternetException(m_context, ERROR_INTERNET_INTERNAL_ERROR);
    cadhost::internet::HttpAnswer answer =
        cadhost::internet::HttpGet(cadhost::ToUtf8(m_connection->GetServerName().str()), m_connection->GetPort(),
                                   cadhost::ToUtf8(m_object.str()), host->internet());
    if (answer.error) {
        auto* exception = new CInternetException(answer.error);
        exception->m_dwContext = m_context;
        if (!answer.detail.empty()) exception->SetDetail(CString(answer.detail.c_str()));
        throw exception;
    }
    m_status = static_cast<DWORD>(answer.status);
    m_sent = TRUE;
    SetContent(std::move(answer.body));
    return TRUE;
}

BOOL CHttpFile::QueryInfoStatusCode(DWORD& dwStatusCode) const {
    if (!m_sent) return FALSE;
    dwStatusCode = m_status;
    return TRUE;
}
