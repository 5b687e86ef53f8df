#include "internet/HttpTransfer.h"

#include <afxinet.h>
#include <arpa/inet.h>
#include <curl/curl.h>
#include <netinet/in.h>
#include <strings.h>
#include <sys/socket.h>

#include <memory>
#include <mutex>

#include "core/Utf8.h"

namespace cadhost::internet {
namespace {

struct Transfer {
    std::string body;
    size_t largest = 0;
    bool tooLarge = false;
    bool loopbackOnly = false;
    bool refused = false;  // a connection that would have left the machine
};

size_t OnBody(char* data, size_t size, size_t count, void* user) {
    auto* transfer = static_cast<Transfer*>(user);
    size_t length = size * count;
    if (transfer->body.size() + length > transfer->largest) {
        transfer->tooLarge = true;
        return 0;  // ends the transfer with a write error
    }
    transfer->body.append(data, length);
    return length;
}

bool IsLoopbackAddress(const sockaddr* address) {
    if (address->sa_family == AF_INET) {
        const auto* in = reinterpret_cast<const sockaddr_in*>(address);
        return (ntohl(in->sin_addr.s_addr) >> 24) == 127;
    }
    if (address->sa_family == AF_INET6) {
        const in6_addr& in = reinterpret_cast<const sockaddr_in6*>(address)->sin6_addr;
        if (IN6_IS_ADDR_LOOPBACK(&in)) return true;
        return IN6_IS_ADDR_V4MAPPED(&in) && in.s6_addr[12] == 127;
    }
    return false;
}

curl_socket_t OnOpenSocket(void* user, curlsocktype, curl_sockaddr* address) {
    auto* transfer = static_cast<Transfer*>(user);
    if (transfer->loopbackOnly && !IsLoopbackAddress(&address->addr)) {
        transfer->refused = true;
        return CURL_SOCKET_BAD;
    }
    return socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

// The four parts of HOST:PORT:ADDRESS:PORT2; brackets keep the colons of an
// IPv6 address together.
std::vector<std::string> SplitMapping(const std::string& mapping) {
    std::vector<std::string> parts(1);
    int depth = 0;
    for (char c : mapping) {
        if (c == '[') ++depth;
        if (c == ']') --depth;
        if (c == ':' && depth == 0) parts.emplace_back();
        else parts.back() += c;
    }
    return parts;
}

bool IsPort(const std::string& text) {
    if (text.empty() || text.size() > 5) return false;
    for (char c : text) {
        if (c < '0' || c > '9') return false;
    }
    long value = std::stol(text);
    return value >= 1 && value <= 65535;
}

// Where a connection for server:port goes under the mappings.
std::string AddressFor(const std::string& server, int port, const InternetOptions& options) {
    for (const std::string& mapping : options.connectTo) {
        std::vector<std::string> parts = SplitMapping(mapping);
        if (parts.size() != 4) continue;
        bool hostMatches = parts[0].empty() || strcasecmp(parts[0].c_str(), server.c_str()) == 0;
        bool portMatches = parts[1].empty() || parts[1] == std::to_string(port);
        if (hostMatches && portMatches) return parts[2].empty() ? server : parts[2];
    }
    return server;
}

bool IsLoopbackName(std::string address) {
    if (address.size() >= 2 && address.front() == '[' && address.back() == ']')
        address = address.substr(1, address.size() - 2);
    if (strcasecmp(address.c_str(), "localhost") == 0) return true;
    sockaddr_in v4{};
    if (inet_pton(AF_INET, address.c_str(), &v4.sin_addr) == 1) {
        v4.sin_family = AF_INET;
        return IsLoopbackAddress(reinterpret_cast<const sockaddr*>(&v4));
    }
    sockaddr_in6 v6{};
    if (inet_pton(AF_INET6, address.c_str(), &v6.sin6_addr) == 1) {
        v6.sin6_family = AF_INET6;
        return IsLoopbackAddress(reinterpret_cast<const sockaddr*>(&v6));
    }
    return false;
}

DWORD ErrorOf(CURLcode code) {
    switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST: return ERROR_INTERNET_NAME_NOT_RESOLVED;
    case CURLE_COULDNT_CONNECT: return ERROR_INTERNET_CANNOT_CONNECT;
    case CURLE_OPERATION_TIMEDOUT: return ERROR_INTERNET_TIMEOUT;
    case CURLE_URL_MALFORMAT: return ERROR_INTERNET_INVALID_URL;
    case CURLE_UNSUPPORTED_PROTOCOL:  // an answer without a status line
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_GOT_NOTHING: return ERROR_HTTP_INVALID_SERVER_RESPONSE;
    case CURLE_RECV_ERROR: return ERROR_INTERNET_CONNECTION_RESET;
    case CURLE_SEND_ERROR:
    case CURLE_PARTIAL_FILE: return ERROR_INTERNET_CONNECTION_ABORTED;
    default: return ERROR_INTERNET_INTERNAL_ERROR;
    }
}

struct EasyDeleter {
    void operator()(CURL* easy) const { curl_easy_cleanup(easy); }
};
struct ListDeleter {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};

}  // namespace

std::wstring CheckConnectTo(const std::string& mapping) {
    std::vector<std::string> parts = SplitMapping(mapping);
    if (parts.size() != 4) return L"a mapping is HOST:PORT:ADDRESS:PORT2, and " + FromUtf8(mapping) + L" is not one";
    if (!parts[1].empty() && !IsPort(parts[1])) return L"\"" + FromUtf8(parts[1]) + L"\" is no port";
    if (!parts[3].empty() && !IsPort(parts[3])) return L"\"" + FromUtf8(parts[3]) + L"\" is no port";
    return L"";
}

const wchar_t* InternetErrorText(DWORD error) {
    switch (error) {
    case ERROR_INTERNET_OUT_OF_HANDLES: return L"No more handles could be generated at this time";
    case ERROR_INTERNET_TIMEOUT: return L"The operation timed out";
    case ERROR_INTERNET_INTERNAL_ERROR: return L"An internal error occurred in the Internet functions";
    case ERROR_INTERNET_INVALID_URL: return L"The URL is invalid";
    case ERROR_INTERNET_UNRECOGNIZED_SCHEME: return L"The URL does not use a recognized protocol";
    case ERROR_INTERNET_NAME_NOT_RESOLVED: return L"The server name or address could not be resolved";
    case ERROR_INTERNET_OPERATION_CANCELLED: return L"The operation was canceled";
    case ERROR_INTERNET_INCORRECT_HANDLE_STATE: return L"The requested operation cannot be carried out in this state";
    case ERROR_INTERNET_CANNOT_CONNECT: return L"A connection with the server could not be established";
    case ERROR_INTERNET_CONNECTION_ABORTED: return L"The connection with the server was terminated abnormally";
    case ERROR_INTERNET_CONNECTION_RESET: return L"The connection with the server was reset";
    case ERROR_HTTP_INVALID_SERVER_RESPONSE: return L"The server returned an invalid or unrecognized response";
    default: return nullptr;
    }
}

HttpAnswer HttpGet(const std::string& server, int port, const std::string& path, const InternetOptions& options,
                   const HttpLimits& limits) {
    static std::once_flag initialised;
    std::call_once(initialised, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });

    HttpAnswer answer;
    if (options.loopbackOnly && !IsLoopbackName(AddressFor(server, port, options))) {
        answer.error = ERROR_INTERNET_CANNOT_CONNECT;
        answer.detail = L"this host reaches only its own machine, and " + FromUtf8(server) + L" is elsewhere";
        return answer;
    }
    std::unique_ptr<CURL, EasyDeleter> easy(curl_easy_init());
    if (!easy) {
        answer.error = ERROR_INTERNET_OUT_OF_HANDLES;
        return answer;
    }
    std::unique_ptr<curl_slist, ListDeleter> mappings;
    for (const std::string& mapping : options.connectTo) {
        curl_slist* list = curl_slist_append(mappings.get(), mapping.c_str());
        if (!list) {
            answer.error = ERROR_INTERNET_OUT_OF_HANDLES;
            return answer;
        }
        mappings.release();
        mappings.reset(list);
    }

    Transfer transfer;
    transfer.largest = limits.largestAnswer;
    transfer.loopbackOnly = options.loopbackOnly;
    std::string url = "http://" + server + ":" + std::to_string(port) + (path.empty() || path[0] != '/' ? "/" : "") + path;
    CURL* handle = easy.get();
    curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle, CURLOPT_HTTPGET, 1L);
    curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http");
    curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, 0L);
    curl_easy_setopt(handle, CURLOPT_PROXY, "");
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_USERAGENT, "cadhost");
    curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT_MS, limits.connectMilliseconds);
    curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, limits.totalMilliseconds);
    curl_easy_setopt(handle, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(limits.largestAnswer));
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, &OnBody);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &transfer);
    curl_easy_setopt(handle, CURLOPT_OPENSOCKETFUNCTION, &OnOpenSocket);
    curl_easy_setopt(handle, CURLOPT_OPENSOCKETDATA, &transfer);
    if (mappings) curl_easy_setopt(handle, CURLOPT_CONNECT_TO, mappings.get());

    CURLcode code = curl_easy_perform(handle);
    long status = 0;
    curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &status);
    answer.status = status;
    if (transfer.tooLarge || code == CURLE_FILESIZE_EXCEEDED) {
        answer.error = ERROR_INTERNET_CONNECTION_ABORTED;
        size_t mebibyte = 1u << 20;
        answer.detail = L"the answer is larger than " +
                        (limits.largestAnswer % mebibyte == 0 ? std::to_wstring(limits.largestAnswer / mebibyte) + L" MiB"
                                                              : std::to_wstring(limits.largestAnswer) + L" bytes") +
                        L" and was refused";
    } else if (transfer.refused) {
        answer.error = ERROR_INTERNET_CANNOT_CONNECT;
        answer.detail = L"this host reaches only its own machine";
    } else if (code != CURLE_OK) {
        answer.error = ErrorOf(code);
        if (answer.error == ERROR_INTERNET_INTERNAL_ERROR) answer.detail = FromUtf8(curl_easy_strerror(code));
    }
    if (answer.error == 0) answer.body = std::move(transfer.body);
    return answer;
}

}  // namespace cadhost::internet
