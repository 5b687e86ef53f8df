// qm_loopback: runs a command while a loopback HTTP server answers, for
// session scripts that check for updates through cadhost. The server's port
// is in the environment of the command as QM_LOOPBACK_PORT.
//
//   qm_loopback --ok TEXT -- COMMAND...      answers 200 with TEXT (\n: a line feed)
//   qm_loopback --status CODE -- COMMAND...  answers CODE with an empty body
//   qm_loopback --refuse -- COMMAND...       QM_LOOPBACK_PORT is a port where nobody listens
#include <spawn.h>
#include <sys/wait.h>

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "support/LoopbackServer.h"

extern char** environ;

namespace {

std::string Unescape(const std::string& text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size()) {
            char next = text[++i];
            out += next == 'n' ? '\n' : next == 'r' ? '\r' : next;
        } else {
            out += text[i];
        }
    }
    return out;
}

int Usage() {
    std::cerr << "usage: qm_loopback --ok TEXT | --status CODE | --refuse -- COMMAND...\n";
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) return Usage();
    std::string mode = argv[1];
    int next = 2;
    std::unique_ptr<qmtest::LoopbackServer> server;
    int port = 0;
    if (mode == "--refuse") {
        port = qmtest::LoopbackServer::UnusedPort();
    } else if (mode == "--ok" || mode == "--status") {
        qmtest::LoopbackReply reply;
        if (mode == "--ok") reply.raw = qmtest::LoopbackServer::Ok(Unescape(argv[next++]));
        else reply.raw = qmtest::LoopbackServer::Status(std::atoi(argv[next++]), "Status");
        server = std::make_unique<qmtest::LoopbackServer>(reply);
        port = server->port();
    } else {
        return Usage();
    }
    if (port == 0) {
        std::cerr << "qm_loopback: cannot listen on 127.0.0.1\n";
        return 2;
    }
    if (next >= argc || std::strcmp(argv[next], "--") != 0 || next + 1 >= argc) return Usage();
    setenv("QM_LOOPBACK_PORT", std::to_string(port).c_str(), 1);

    std::vector<char*> command(argv + next + 1, argv + argc);
    command.push_back(nullptr);
    pid_t child = 0;
    if (int error = posix_spawnp(&child, command[0], nullptr, nullptr, command.data(), environ)) {
        std::cerr << "qm_loopback: " << command[0] << ": " << std::strerror(error) << "\n";
        return 2;
    }
    int status = 0;
    if (waitpid(child, &status, 0) != child) return 2;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 2;
}
