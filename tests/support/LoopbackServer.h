// A small HTTP server on 127.0.0.1 for tests of the host's Internet
// classes: it listens on a port of its own, answers every connection as it
// was told (a fixed answer, nothing at all, one byte at a time, a flood),
// and stops when it goes, within a tenth of a second.
#pragma once

#include <atomic>
#include <string>
#include <thread>

namespace qmtest {

struct LoopbackReply {
    std::string raw;              // the bytes to send, as they stand
    bool silent = false;          // accept, read the request, and never answer
    int dripMilliseconds = 0;     // above 0: one byte of raw at a time, this far apart
    size_t floodBytes = 0;        // above 0: a 200 answer of this many body bytes
    bool floodUntold = false;     // the flood's length is not told ahead
    bool closeAfter = true;       // close the connection once raw is sent
};

class LoopbackServer {
public:
    explicit LoopbackServer(LoopbackReply reply);
    ~LoopbackServer();
    LoopbackServer(const LoopbackServer&) = delete;
    LoopbackServer& operator=(const LoopbackServer&) = delete;

    // 0 when the server could not listen.
    int port() const { return m_port; }
    // How many requests it has read.
    int requests() const { return m_requests.load(); }
    // The last request's head (request line and headers).
    std::string lastRequest() const;

    // A 200 answer with the body and its length; any other status.
    static std::string Ok(const std::string& body);
    static std::string Status(int code, const std::string& reason, const std::string& body = "");
    // A port of 127.0.0.1 where nobody listens (it was free a moment ago).
    static int UnusedPort();

private:
    void Run();
    void Serve(int connection);
    bool Send(int connection, const char* data, size_t length);
    bool Wait(int milliseconds);  // false when stopping

    LoopbackReply m_reply;
    int m_listener = -1;
    int m_port = 0;
    std::atomic<bool> m_stop{false};
    std::atomic<int> m_requests{0};
    mutable std::atomic_flag m_lock = ATOMIC_FLAG_INIT;
    std::string m_lastRequest;
    std::thread m_thread;
};

}  // namespace qmtest
