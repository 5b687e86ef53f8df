#include "support/LoopbackServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace qmtest {
namespace {

constexpr int kSlice = 50;  // milliseconds between looks at the stop flag

int Listen(int& port) {
    int fd = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return -1;
    int yes = 1;
    setsockopt(fd, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = 0;
    socklen_t length = sizeof address;
    if (bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 || listen(fd, 8) != 0 ||
        getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        close(fd);
        return -1;
    }
    port = ntohs(address.sin_port);
    return fd;
}

}  // namespace

LoopbackServer::LoopbackServer(LoopbackReply reply) : m_reply(std::move(reply)) {
    m_listener = Listen(m_port);
    if (m_listener >= 0) m_thread = std::thread([this] { Run(); });
}

LoopbackServer::~LoopbackServer() {
    m_stop = true;
    if (m_thread.joinable()) m_thread.join();
    if (m_listener >= 0) close(m_listener);
}

std::string LoopbackServer::lastRequest() const {
    while (m_lock.test_and_set()) {
    }
    std::string copy = m_lastRequest;
    m_lock.clear();
    return copy;
}

std::string LoopbackServer::Ok(const std::string& body) { return Status(200, "OK", body); }

std::string LoopbackServer::Status(int code, const std::string& reason, const std::string& body) {
    return "HTTP/1.1 " + std::to_string(code) + " " + reason + "\r\nContent-Type: text/plain\r\nContent-Length: " +
           std::to_string(body.size()) + "\r\nConnection: close\r\n\r\n" + body;
}

int LoopbackServer::UnusedPort() {
    int port = 0;
    int fd = Listen(port);
    if (fd < 0) return 0;
    close(fd);
    return port;
}

bool LoopbackServer::Wait(int milliseconds) {
    auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    while (!m_stop) {
        auto left = std::chrono::duration_cast<std::chrono::milliseconds>(until - std::chrono::steady_clock::now());
        if (left.count() <= 0) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(std::min<long>(left.count(), kSlice)));
    }
    return false;
}

bool LoopbackServer::Send(int connection, const char* data, size_t length) {
    while (length > 0 && !m_stop) {
        pollfd ready{connection, POLLOUT, 0};
        if (poll(&ready, 1, kSlice) <= 0) continue;
        ssize_t sent = send(connection, data, length, MSG_NOSIGNAL);
        if (sent <= 0) return false;  // the client went away
        data += sent;
        length -= static_cast<size_t>(sent);
    }
    return length == 0;
}

void LoopbackServer::Run() {
    while (!m_stop) {
        pollfd ready{m_listener, POLLIN, 0};
        if (poll(&ready, 1, kSlice) <= 0) continue;
        int connection = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0) continue;
        Serve(connection);
        close(connection);
    }
}

void LoopbackServer::Serve(int connection) {
    // The request's head, for at most two seconds.
    std::string head;
    auto until = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (!m_stop && head.find("\r\n\r\n") == std::string::npos && head.size() < 65536 &&
           std::chrono::steady_clock::now() < until) {
        pollfd ready{connection, POLLIN, 0};
        if (poll(&ready, 1, kSlice) <= 0) continue;
        char buffer[4096];
        ssize_t got = recv(connection, buffer, sizeof buffer, 0);
        if (got <= 0) break;
        head.append(buffer, static_cast<size_t>(got));
    }
    while (m_lock.test_and_set()) {
    }
    m_lastRequest = head;
    m_lock.clear();
    ++m_requests;

    if (m_reply.silent) {
        // Holds the connection open and says nothing until the client gives up.
        while (!m_stop) {
            pollfd ready{connection, POLLIN, 0};
            if (poll(&ready, 1, kSlice) > 0) {
                char buffer[256];
                if (recv(connection, buffer, sizeof buffer, 0) <= 0) return;
            }
        }
        return;
    }
    if (m_reply.floodBytes > 0) {
        std::string header = "HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\n";
        if (!m_reply.floodUntold) header += "Content-Length: " + std::to_string(m_reply.floodBytes) + "\r\n";
        header += "Connection: close\r\n\r\n";
        if (!Send(connection, header.data(), header.size())) return;
        std::vector<char> block(64 * 1024, 'x');
        for (size_t left = m_reply.floodBytes; left > 0 && !m_stop;) {
            size_t n = std::min(left, block.size());
            if (!Send(connection, block.data(), n)) return;
            left -= n;
        }
        return;
    }
    if (m_reply.dripMilliseconds > 0) {
        for (char c : m_reply.raw) {
            if (!Send(connection, &c, 1) || !Wait(m_reply.dripMilliseconds)) return;
        }
        return;
    }
    Send(connection, m_reply.raw.data(), m_reply.raw.size());
    if (!m_reply.closeAfter) Wait(60000);
}

}  // namespace qmtest
