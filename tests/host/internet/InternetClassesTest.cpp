// The Internet classes against loopback servers that the tests start and
// stop: the answer's status and lines, and the exception of every fault,
// each within the host's limits.
#include <afxinet.h>

#include <memory>

#include "support/LoopbackServer.h"
#include "support/TestHost.h"

namespace {

using qmtest::LoopbackReply;
using qmtest::LoopbackServer;

// What a fetch of the update list gave: the status and the lines, or the
// error code and text of the exception.
struct Fetched {
    DWORD status = 0;
    std::vector<std::wstring> lines;
    DWORD error = 0;
    std::wstring errorText;
};

class InternetClassesTest : public qmtest::HostTest {
protected:
    // The maker's host goes to the port on 127.0.0.1.
    void ConnectTo(int port) {
        m_internet.connectTo = {"www.norvo.example:80:127.0.0.1:" + std::to_string(port)};
        RestartHost();
    }

    Fetched Fetch(LPCTSTR server = L"www.norvo.example") {
        Fetched fetched;
        CInternetSession session;
        std::unique_ptr<CHttpConnection> connection(session.GetHttpConnection(server, 0, nullptr, nullptr));
        if (!connection) {
            ADD_FAILURE() << "no connection";
            return fetched;
        }
        try {
            std::unique_ptr<CHttpFile> request(connection->OpenRequest(L"GET", L"updatelist/checkforupdate.txt"));
            request->SendRequest();
            EXPECT_TRUE(request->QueryInfoStatusCode(fetched.status));
            CString line;
            while (request->ReadString(line)) fetched.lines.push_back(line.str());
            request->Close();
        } catch (CInternetException* e) {
            fetched.error = e->m_dwError;
            wchar_t text[512];
            e->GetErrorMessage(text, 512);
            fetched.errorText = text;
            e->Delete();
        }
        connection->Close();
        session.Close();
        return fetched;
    }
};

TEST_F(InternetClassesTest, TheAnswerIsReadLineByLineWithoutLineFeeds) {
    struct Case {
        const char* body;
        std::vector<std::wstring> lines;
    };
    const Case cases[] = {
        {"one\ntwo\n", {L"one", L"two"}},
        {"no line end", {L"no line end"}},
        {"crlf\r\nlast\r\n", {L"crlf\r", L"last\r"}},
        {"\n\nthird\n", {L"", L"", L"third"}},
        {"", {}},
        {"caf\xC3\xA9\n", {L"caf\u00E9"}},
    };
    for (const Case& c : cases) {
        LoopbackServer server(LoopbackReply{LoopbackServer::Ok(c.body)});
        ASSERT_NE(server.port(), 0);
        ConnectTo(server.port());
        Fetched fetched = Fetch();
        EXPECT_EQ(fetched.error, 0u) << cadhost::ToUtf8(fetched.errorText);
        EXPECT_EQ(fetched.status, 200u);
        EXPECT_EQ(fetched.lines, c.lines) << c.body;
        // The request went to the maker's host, for the list's path.
        EXPECT_NE(server.lastRequest().find("GET /updatelist/checkforupdate.txt HTTP/1.1\r\n"), std::string::npos)
            << server.lastRequest();
        EXPECT_NE(server.lastRequest().find("Host: www.norvo.example"), std::string::npos) << server.lastRequest();
    }
}

TEST_F(InternetClassesTest, AnyStatusIsTold) {
    for (int code : {404, 500, 301, 204}) {
        LoopbackServer server(LoopbackReply{LoopbackServer::Status(code, "Status", "<html>no</html>")});
        ConnectTo(server.port());
        Fetched fetched = Fetch();
        EXPECT_EQ(fetched.error, 0u);
        EXPECT_EQ(fetched.status, static_cast<DWORD>(code));
    }
}

TEST_F(InternetClassesTest, FaultsThrowWithThePlatformsText) {
    struct Case {
        const char* what;
        LoopbackReply reply;
        DWORD error;
        const wchar_t* text;
    };
    const std::string tooLarge = "the answer is larger than 1 MiB and was refused";
    const Case cases[] = {
        {"garbage instead of HTTP", LoopbackReply{std::string("\x01\xFF\xFEgarbage\x00\x7F", 12)},
         ERROR_HTTP_INVALID_SERVER_RESPONSE, L"The server returned an invalid or unrecognized response."},
        {"closed without a word", LoopbackReply{""}, ERROR_HTTP_INVALID_SERVER_RESPONSE,
         L"The server returned an invalid or unrecognized response."},
        {"100 MB announced", LoopbackReply{"", false, 0, 100u * 1000 * 1000}, ERROR_INTERNET_CONNECTION_ABORTED,
         L"The connection with the server was terminated abnormally: the answer is larger than 1 MiB and was refused."},
        {"8 MB untold", LoopbackReply{"", false, 0, 8u << 20, true}, ERROR_INTERNET_CONNECTION_ABORTED,
         L"The connection with the server was terminated abnormally: the answer is larger than 1 MiB and was refused."},
    };
    for (const Case& c : cases) {
        LoopbackServer server(c.reply);
        ConnectTo(server.port());
        Fetched fetched = Fetch();
        EXPECT_EQ(fetched.error, c.error) << c.what;
        EXPECT_EQ(fetched.errorText, c.text) << c.what;
        EXPECT_TRUE(fetched.lines.empty()) << c.what;
    }
}

TEST_F(InternetClassesTest, AnAnswerOfExactlyOneMebibyteIsTaken) {
    LoopbackServer server(LoopbackReply{LoopbackServer::Ok(std::string((1u << 20) - 1, 'a') + "\n")});
    ConnectTo(server.port());
    Fetched fetched = Fetch();
    EXPECT_EQ(fetched.error, 0u) << cadhost::ToUtf8(fetched.errorText);
    ASSERT_EQ(fetched.lines.size(), 1u);
    EXPECT_EQ(fetched.lines[0].size(), (1u << 20) - 1);
}

TEST_F(InternetClassesTest, ARefusedConnectionCannotConnect) {
    int port = LoopbackServer::UnusedPort();
    ASSERT_NE(port, 0);
    ConnectTo(port);
    Fetched fetched = Fetch();
    EXPECT_EQ(fetched.error, static_cast<DWORD>(ERROR_INTERNET_CANNOT_CONNECT));
    EXPECT_EQ(fetched.errorText, L"A connection with the server could not be established.");
}

TEST_F(InternetClassesTest, AServerThatNeverAnswersTimesOut) {
    LoopbackReply silent;
    silent.silent = true;
    LoopbackServer server(silent);
    ConnectTo(server.port());
    Fetched fetched = Fetch();
    EXPECT_EQ(fetched.error, static_cast<DWORD>(ERROR_INTERNET_TIMEOUT));
    EXPECT_EQ(fetched.errorText, L"The operation timed out.");
    EXPECT_EQ(server.requests(), 1);
}

TEST_F(InternetClassesTest, AnAnswerDrippingOneByteASecondTimesOut) {
    LoopbackReply drip{LoopbackServer::Ok("ACAD*Quillmark: 3.0.0.0\n")};
    drip.dripMilliseconds = 1000;
    LoopbackServer server(drip);
    ConnectTo(server.port());
    Fetched fetched = Fetch();
    EXPECT_EQ(fetched.error, static_cast<DWORD>(ERROR_INTERNET_TIMEOUT));
}

TEST_F(InternetClassesTest, TheTestHostReachesNoOtherMachine) {
    // Without a mapping the maker's host would be looked up and reached;
    // a test host refuses before any look-up.
    Fetched fetched = Fetch();
    EXPECT_EQ(fetched.error, static_cast<DWORD>(ERROR_INTERNET_CANNOT_CONNECT));
    EXPECT_NE(fetched.errorText.find(L"reaches only its own machine"), std::wstring::npos)
        << cadhost::ToUtf8(fetched.errorText);
    m_internet.connectTo = {"www.norvo.example:80:192.0.2.1:80"};  // a documentation address
    RestartHost();
    EXPECT_EQ(Fetch().error, static_cast<DWORD>(ERROR_INTERNET_CANNOT_CONNECT));
}

TEST_F(InternetClassesTest, AClosedSessionGivesNoConnection) {
    CInternetSession session;
    session.Close();
    EXPECT_EQ(session.GetHttpConnection(L"www.norvo.example", 0, nullptr, nullptr), nullptr);
    CInternetSession open;
    EXPECT_EQ(open.GetHttpConnection(L"", 0, nullptr, nullptr), nullptr);
    std::unique_ptr<CHttpConnection> connection(open.GetHttpConnection(L"www.norvo.example"));
    ASSERT_TRUE(connection);
    EXPECT_EQ(connection->GetPort(), INTERNET_DEFAULT_HTTP_PORT);
}

TEST(ConnectToTest, MappingsAreCheckedBeforeUse) {
    struct Case {
        const char* mapping;
        bool good;
    };
    const Case cases[] = {{"www.norvo.example:80:127.0.0.1:8080", true},
                          {"::127.0.0.1:8080", true},
                          {"www.norvo.example:80:[::1]:8080", true},
                          {"www.norvo.example:80::", true},
                          {"www.norvo.example:80:127.0.0.1", false},
                          {"www.norvo.example:eighty:127.0.0.1:8080", false},
                          {"www.norvo.example:80:127.0.0.1:70000", false},
                          {"a:1:b:2:c", false},
                          {"", false}};
    for (const Case& c : cases)
        EXPECT_EQ(cadhost::internet::CheckConnectTo(c.mapping).empty(), c.good) << c.mapping;
}

}  // namespace
