#include "cloud/CurlHttp.h"

#include "core/Numbers.h"

#include <curl/curl.h>

#include <algorithm>
#include <array>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace tidewell {

namespace {

struct TCurlFree {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
    void operator()(CURLU* url) const { curl_url_cleanup(url); }
    void operator()(char* text) const { curl_free(text); }
};

// Collects the reply of one exchange; the C callbacks end here, and nothing is thrown through them.
class TReplyCollector {
  public:
    TReplyCollector(THttpReply& reply, std::size_t limit) : Reply(reply), Room(limit) {}

    bool TooLarge() const { return Overflow; }

    bool AddBody(std::string_view bytes) noexcept {
        return Guarded(
            bytes.size(), [&] { Reply.Body.append(bytes); });
    }

    // One header line, its line end included. A status line begins anew: what came before belonged to an
    // interim reply.
    bool AddHeader(std::string_view line) noexcept {
        return Guarded(
            line.size(),
            [&] {
                const std::string_view text = Trim(line);
                if (line.starts_with("HTTP/")) {
                    Reply.Reason = text;
                    Reply.Headers.clear();
                } else if ((line.starts_with(' ') || line.starts_with('\t')) && !Reply.Headers.empty()) {
                    Reply.Headers.back().second.append(" ").append(text);
                } else if (const std::size_t colon = text.find(':'); colon != std::string_view::npos) {
                    Reply.Headers.emplace_back(Trim(text.substr(0, colon)), Trim(text.substr(colon + 1)));
                }
            });
    }

  private:
    template <typename TAction>
    bool Guarded(std::size_t size, const TAction& action) noexcept {
        if (size > Room) {
            Overflow = true;
            return false;
        }
        Room -= size;
        try {
            action();
            return true;
        } catch (const std::exception&) {
            return false;
        }
    }

    THttpReply& Reply;
    std::size_t Room;
    bool Overflow = false;
};

std::size_t OnBody(const char* bytes, std::size_t, std::size_t count, void* collector) noexcept {
    return static_cast<TReplyCollector*>(collector)->AddBody({bytes, count}) ? count : 0;
}

std::size_t OnHeader(const char* bytes, std::size_t, std::size_t count, void* collector) noexcept {
    return static_cast<TReplyCollector*>(collector)->AddHeader({bytes, count}) ? count : 0;
}

// One handle, for one exchange. The first option that the library refuses ends the exchange: none of them,
// least of all the checks of the certificate, may be left out in silence.
class TCurl {
  public:
    TCurl() : Handle(curl_easy_init()) { ErrorText[0] = '\0'; }

    explicit operator bool() const { return Handle != nullptr; }

    template <typename TValue>
    void Set(CURLoption option, TValue value) {
        if (Failed == CURLE_OK)
            Failed = curl_easy_setopt(Handle.get(), option, value);
    }

    void AddHeader(const std::string& name, const std::string& value) {
        // "Name;" is how the library is told to send a header with no value.
        const std::string line = value.empty() ? name + ";" : name + ": " + value;
        curl_slist* longer = curl_slist_append(Headers.get(), line.c_str());
        if (longer == nullptr) {
            Failed = CURLE_OUT_OF_MEMORY;
            return;
        }
        static_cast<void>(Headers.release());
        Headers.reset(longer);
    }

    CURLcode Perform() {
        Set(CURLOPT_HTTPHEADER, Headers.get());
        Set(CURLOPT_ERRORBUFFER, ErrorText.data());
        return Failed == CURLE_OK ? curl_easy_perform(Handle.get()) : Failed;
    }

    std::string Reason(CURLcode code) const {
        return ErrorText[0] != '\0' ? ErrorText.data() : curl_easy_strerror(code);
    }

    int ResponseCode() const {
        long code = 0;
        curl_easy_getinfo(Handle.get(), CURLINFO_RESPONSE_CODE, &code);
        return static_cast<int>(code);
    }

  private:
    std::array<char, CURL_ERROR_SIZE> ErrorText{};
    std::unique_ptr<curl_slist, TCurlFree> Headers;
    std::unique_ptr<CURL, TCurlFree> Handle;
    CURLcode Failed = CURLE_OK;
};

bool LibraryReady() {
    static const bool ready = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    return ready;
}

// The host that the library will connect to; empty if the address is none.
std::string HostOf(const std::string& url) {
    const std::unique_ptr<CURLU, TCurlFree> parts(curl_url());
    char* text = nullptr;
    if (!parts || curl_url_set(parts.get(), CURLUPART_URL, url.c_str(), 0) != CURLUE_OK ||
        curl_url_get(parts.get(), CURLUPART_HOST, &text, 0) != CURLUE_OK)
        return {};
    const std::unique_ptr<char, TCurlFree> host(text);
    return host.get();
}

bool IsLoopback(const std::string& url) {
    const std::string host = HostOf(url);
    const bool address = host.find_first_not_of("0123456789.") == std::string::npos;
    return SameText(host, "localhost") || (address && host.starts_with("127.")) || host == "[::1]";
}

// A line break in a header's value would let the value add headers of its own.
bool HasControlCharacter(std::string_view text) {
    return std::any_of(
        text.begin(), text.end(),
        [](char character) {
            const auto code = static_cast<unsigned char>(character);
            return code < 32 || code == 127;
        });
}

void SetSecurity(TCurl& curl, const TCurlSettings& settings, const std::string& url) {
    curl.Set(CURLOPT_PROTOCOLS_STR, "https");
    curl.Set(CURLOPT_FOLLOWLOCATION, 0L);
    curl.Set(CURLOPT_SSL_VERIFYPEER, 1L);
    curl.Set(CURLOPT_SSL_VERIFYHOST, 2L);
    curl.Set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    if (!settings.CaFile.empty()) {
        curl.Set(CURLOPT_CAINFO, settings.CaFile.c_str());
        curl.Set(CURLOPT_CAPATH, static_cast<const char*>(nullptr));
    }
    if (IsLoopback(url))
        curl.Set(CURLOPT_PROXY, "");
}

std::string Explain(CURLcode code, const TCurl& curl, const TReplyCollector& collector,
                    const TCurlSettings& settings, const std::string& url) {
    if (collector.TooLarge())
        return "The reply is larger than " + std::to_string(settings.MaxReplySize) + " bytes";
    const std::string store = settings.CaFile.empty() ? "the system's trust store"
                                                      : "the CA file \"" + settings.CaFile.string() + "\"";
    switch (code) {
    case CURLE_SSL_CACERT_BADFILE:
        return store + " cannot be read or holds no certificate: " + curl.Reason(code);
    case CURLE_PEER_FAILED_VERIFICATION:
        return url + ", checked against " + store + ": " + curl.Reason(code);
    case CURLE_URL_MALFORMAT:
        return url + ": " + curl.Reason(code);
    default:
        return curl.Reason(code);
    }
}

THttpReply Run(const THttpRequest& request, const TCurlSettings& settings) {
    if (!LibraryReady())
        return NoReply("The HTTPS library could not be started");
    TCurl curl;
    if (!curl)
        return NoReply("The HTTPS library gives no handle");
    THttpReply reply;
    TReplyCollector collector(reply, settings.MaxReplySize);
    SetSecurity(curl, settings, request.Url);
    // The library's guard against SIGPIPE is only there as long as CURLOPT_NOSIGNAL is not set.
    curl.Set(CURLOPT_URL, request.Url.c_str());
    curl.Set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    curl.Set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(request.ConnectTimeout.count()));
    curl.Set(CURLOPT_TIMEOUT_MS, static_cast<long>(request.WholeTimeout.count()));
    // A look-up of the host that has come to its time-out is not waited for.
    curl.Set(CURLOPT_QUICK_EXIT, 1L);
    curl.Set(CURLOPT_WRITEFUNCTION, &OnBody);
    curl.Set(CURLOPT_WRITEDATA, &collector);
    curl.Set(CURLOPT_HEADERFUNCTION, &OnHeader);
    curl.Set(CURLOPT_HEADERDATA, &collector);
    if (request.Method == "POST") {
        curl.Set(CURLOPT_POST, 1L);
        curl.Set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.Body.size()));
        curl.Set(CURLOPT_POSTFIELDS, request.Body.c_str());
    }
    for (const auto& [name, value] : request.Headers) {
        if (HasControlCharacter(name) || HasControlCharacter(value))
            return NoReply("The header " + name + " has a control character in it");
        curl.AddHeader(name, value);
    }
    const CURLcode code = curl.Perform();
    if (code != CURLE_OK)
        return NoReply(Explain(code, curl, collector, settings, request.Url));
    reply.Code = curl.ResponseCode();
    return reply;
}

} // namespace

TCurlHttp::TCurlHttp(TCurlSettings settings) : Settings(std::move(settings)) {}

THttpReply TCurlHttp::Exchange(const THttpRequest& request) {
    try {
        if (request.Method != "GET" && request.Method != "POST")
            return NoReply("The method " + request.Method + " is not supported");
        return Run(request, Settings);
    } catch (const std::exception& error) {
        return NoReply(error.what());
    }
}

} // namespace tidewell
