// One HTTP GET on libcurl, within the host's limits: connecting takes at
// most 5 seconds, the whole transfer at most 10, and an answer larger than
// 1 MiB is refused. Redirections are not followed and no proxy is used, so
// that a transfer goes nowhere but where it was sent.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace cadhost::internet {

struct InternetOptions {
    // HOST:PORT:ADDRESS:PORT2, as curl's option of that name: what is meant
    // for HOST:PORT goes to ADDRESS:PORT2. An empty HOST or PORT matches any.
    std::vector<std::string> connectTo;
    // Refuse every connection that would leave this machine (tests).
    bool loopbackOnly = false;
};

struct HttpLimits {
    long connectMilliseconds = 5000;
    long totalMilliseconds = 10000;
    size_t largestAnswer = 1u << 20;
};

struct HttpAnswer {
    DWORD error = 0;          // an ERROR_INTERNET_... code, 0 when the transfer ended well
    std::wstring detail;      // what went wrong, in words
    long status = 0;          // the HTTP status
    std::string body;
};

HttpAnswer HttpGet(const std::string& server, int port, const std::string& path, const InternetOptions& options,
                   const HttpLimits& limits = {});

// Why a --connect-to mapping is malformed, or empty when it is well-formed.
std::wstring CheckConnectTo(const std::string& mapping);

// The text of an ERROR_INTERNET_... code, as the platform words it.
const wchar_t* InternetErrorText(DWORD error);

}  // namespace cadhost::internet
