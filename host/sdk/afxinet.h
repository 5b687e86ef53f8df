// The framework's Internet classes: a session, an HTTP connection, a
// request whose answer is read line by line, and the exception that any of
// them throws on a network fault. The host fetches over HTTP; a transfer
// may take at most 5 seconds to connect and 10 seconds in all, and an
// answer larger than 1 MiB is refused.
#pragma once

#include "afxwin.h"

typedef WORD INTERNET_PORT;

#define INTERNET_INVALID_PORT_NUMBER 0
#define INTERNET_DEFAULT_HTTP_PORT 80

#define PRE_CONFIG_INTERNET_ACCESS 0
#define INTERNET_OPEN_TYPE_PRECONFIG 0
#define INTERNET_OPEN_TYPE_DIRECT 1

#define INTERNET_FLAG_RELOAD 0x80000000
#define INTERNET_FLAG_DONT_CACHE 0x04000000
#define INTERNET_FLAG_EXISTING_CONNECT 0x20000000
#define INTERNET_FLAG_NO_AUTO_REDIRECT 0x00200000

#define HTTP_STATUS_OK 200
#define HTTP_STATUS_NOT_FOUND 404
#define HTTP_STATUS_SERVER_ERROR 500

// Errors of the Internet functions, as CInternetException::m_dwError.
#define INTERNET_ERROR_BASE 12000
#define ERROR_INTERNET_OUT_OF_HANDLES 12001
#define ERROR_INTERNET_TIMEOUT 12002
#define ERROR_INTERNET_INTERNAL_ERROR 12004
#define ERROR_INTERNET_INVALID_URL 12005
#define ERROR_INTERNET_UNRECOGNIZED_SCHEME 12006
#define ERROR_INTERNET_NAME_NOT_RESOLVED 12007
#define ERROR_INTERNET_OPERATION_CANCELLED 12017
#define ERROR_INTERNET_INCORRECT_HANDLE_STATE 12019
#define ERROR_INTERNET_CANNOT_CONNECT 12029
#define ERROR_INTERNET_CONNECTION_ABORTED 12030
#define ERROR_INTERNET_CONNECTION_RESET 12031
#define ERROR_HTTP_INVALID_SERVER_RESPONSE 12152

class CHttpConnection;
class CHttpFile;

class CADHOST_API CInternetException : public CException {
    DECLARE_DYNAMIC(CInternetException)
public:
    explicit CInternetException(DWORD dwError);
    ~CInternetException() override = default;
    // The error's text; TRUE when there is one.
    BOOL GetErrorMessage(LPTSTR lpszError, UINT nMaxError, PUINT pnHelpContext = nullptr) const override;

    DWORD m_dwError;
    DWORD_PTR m_dwContext;

    // This host's own: a transfer's fault told more closely than its code.
    void SetDetail(const CString& detail) { m_detail = detail; }

private:
    CString m_detail;
};

[[noreturn]] CADHOST_API void AfxThrowInternetException(DWORD_PTR dwContext, DWORD dwError = 0);

class CADHOST_API CInternetSession : public CObject {
    DECLARE_DYNAMIC(CInternetSession)
public:
    explicit CInternetSession(LPCTSTR pstrAgent = nullptr, DWORD_PTR dwContext = 1,
                              DWORD dwAccessType = PRE_CONFIG_INTERNET_ACCESS, LPCTSTR pstrProxyName = nullptr,
                              LPCTSTR pstrProxyBypass = nullptr, DWORD dwFlags = 0);
    ~CInternetSession() override;

    // A connection to a server; port 0 is the default HTTP port. Null when
    // the session is closed or no server is named.
    CHttpConnection* GetHttpConnection(LPCTSTR pstrServer, INTERNET_PORT nPort = INTERNET_INVALID_PORT_NUMBER,
                                       LPCTSTR pstrUserName = nullptr, LPCTSTR pstrPassword = nullptr);
    virtual void Close();
    BOOL IsOpen() const { return m_open; }

private:
    BOOL m_open;
    DWORD_PTR m_context;
};

class CADHOST_API CInternetConnection : public CObject {
    DECLARE_DYNAMIC(CInternetConnection)
public:
    CInternetConnection(CInternetSession* pSession, LPCTSTR pstrServer, INTERNET_PORT nPort, DWORD_PTR dwContext);
    ~CInternetConnection() override;
    virtual void Close();
    CInternetSession* GetSession() const { return m_session; }
    CString GetServerName() const { return m_server; }
    INTERNET_PORT GetPort() const { return m_port; }

protected:
    CInternetSession* m_session;
    CString m_server;
    INTERNET_PORT m_port;
    DWORD_PTR m_context;
    BOOL m_open;
};

class CADHOST_API CHttpConnection : public CInternetConnection {
    DECLARE_DYNAMIC(CHttpConnection)
public:
    CHttpConnection(CInternetSession* pSession, LPCTSTR pstrServer, INTERNET_PORT nPort, DWORD_PTR dwContext);
    ~CHttpConnection() override;
    // A request for an object of the server; sent by SendRequest.
    CHttpFile* OpenRequest(LPCTSTR pstrVerb, LPCTSTR pstrObjectName, LPCTSTR pstrReferer = nullptr,
                           DWORD_PTR dwContext = 1, LPCTSTR* ppstrAcceptTypes = nullptr,
                           LPCTSTR pstrVersion = nullptr, DWORD dwFlags = INTERNET_FLAG_EXISTING_CONNECT);
};

class CADHOST_API CInternetFile : public CObject {
    DECLARE_DYNAMIC(CInternetFile)
public:
    ~CInternetFile() override;
    // The next line of the answer without its line feed (a carriage return
    // before it stays); FALSE at the end.
    virtual BOOL ReadString(CString& rString);
    virtual void Close();

protected:
    CInternetFile() = default;
    void SetContent(std::string content);
    BOOL m_open = TRUE;

private:
    std::string m_content;  // the answer's bytes
    size_t m_position = 0;
};

class CADHOST_API CHttpFile : public CInternetFile {
    DECLARE_DYNAMIC(CHttpFile)
public:
    CHttpFile(CHttpConnection* pConnection, LPCTSTR pstrVerb, LPCTSTR pstrObject, DWORD_PTR dwContext);
    ~CHttpFile() override;
    // Sends the request and takes the answer; throws CInternetException on
    // a network fault.
    BOOL SendRequest(LPCTSTR pstrHeaders = nullptr, DWORD dwHeadersLen = 0, LPVOID lpOptional = nullptr,
                     DWORD dwOptionalLen = 0);
    // The answer's HTTP status; FALSE before the request was sent.
    BOOL QueryInfoStatusCode(DWORD& dwStatusCode) const;

private:
    CHttpConnection* m_connection;
    CString m_verb;
    CString m_object;
    DWORD_PTR m_context;
    DWORD m_status = 0;
    BOOL m_sent = FALSE;
};
