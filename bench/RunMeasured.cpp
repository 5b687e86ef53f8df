// Runs a command with its output in a log and prints its wall time, its
// processor time (user and system, of it and of everything it waited for)
// and its peak memory, as the system counted them when it ended: nothing
// watches the command while it runs, so the figures are not disturbed by
// the watching.
//
//     bench_RunMeasured LABEL LOG COMMAND [ARGUMENT...]
//
// Exits with the command's status (1 with the log shown when it failed).
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>

namespace {

double Seconds(const timeval& t) { return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6; }

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::cerr << "usage: bench_RunMeasured LABEL LOG COMMAND [ARGUMENT...]\n";
        return 2;
    }
    const char* label = argv[1];
    const char* log = argv[2];
    int out = ::open(log, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (out < 0) {
        std::cerr << "bench_RunMeasured: cannot write " << log << ": " << std::strerror(errno) << "\n";
        return 2;
    }
    auto start = std::chrono::steady_clock::now();
    pid_t child = ::fork();
    if (child < 0) {
        std::cerr << "bench_RunMeasured: cannot start a process: " << std::strerror(errno) << "\n";
        return 2;
    }
    if (child == 0) {
        ::dup2(out, 1);
        ::dup2(out, 2);
        ::execvp(argv[3], argv + 3);
        std::fprintf(stderr, "cannot run %s: %s\n", argv[3], std::strerror(errno));
        ::_exit(127);
    }
    ::close(out);
    int status = 0;
    rusage usage{};
    while (::wait4(child, &status, 0, &usage) < 0) {
        if (errno != EINTR) {
            std::cerr << "bench_RunMeasured: lost the process: " << std::strerror(errno) << "\n";
            return 2;
        }
    }
    double wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::cout << label << " failed:\n";
        std::ifstream in(log);
        std::cout << in.rdbuf();
        return 1;
    }
    double processor = Seconds(usage.ru_utime) + Seconds(usage.ru_stime);
    std::printf("%-28s %7.2f s  (processor %5.2f s)  peak %7.1f MB\n", label, wall, processor,
                static_cast<double>(usage.ru_maxrss) / 1024.0);
    return 0;
}
