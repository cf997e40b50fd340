// SPDX-License-Identifier: MIT
#include "messaging/http.h"

#include "core/deployment.h"
#include "core/log.h"
#include "messaging/sigpipe.h"

extern "C" {
const char *const curl_simple_method_str[3] = {"GET", "POST", "PUT"};
const char *const curl_simple_doh_providers[3] = {deployment::doh_providers[0], deployment::doh_providers[1], nullptr};
}

namespace {

constexpr char log_tag[] = "curl_simple";
constexpr long timeout_s = 5;
constexpr long name_must_match = 2;
constexpr char protocols[] = "http,https";

struct clean_up {
    void operator()(CURL *handle) const noexcept { curl_easy_cleanup(handle); }
};

// A handle and what became of its options: no request goes out when one of its safeguards was refused.
class easy_request {
public:
    explicit operator bool() const { return handle_ != nullptr; }

    template <typename T>
    void set(CURLoption option, T value)
    {
        if (result_ == CURLE_OK)
            result_ = curl_easy_setopt(handle_.get(), option, value);
    }

    CURLcode perform()
    {
        if (result_ != CURLE_OK)
            return result_;
        const sigpipe_guard guard; // libcurl is told to leave signals alone, and a TLS peer may die
        return curl_easy_perform(handle_.get());
    }

    CURLcode perform_with_doh(const char *provider)
    {
        set(CURLOPT_DOH_URL, provider);
        return perform();
    }

    long status() const
    {
        long code = 0;
        (void)curl_easy_getinfo(handle_.get(), CURLINFO_RESPONSE_CODE, &code);
        return code;
    }

private:
    std::unique_ptr<CURL, clean_up> handle_{curl_easy_init()};
    CURLcode result_ = CURLE_OK;
};

const char *name_of(http_method method)
{
    return curl_simple_method_str[size_t(method)];
}

void set_options(easy_request &easy, const http_request &request, curl_simple_response *resp, char *error)
{
    easy.set(CURLOPT_ERRORBUFFER, error);
    easy.set(CURLOPT_URL, request.url);
    easy.set(CURLOPT_PROTOCOLS_STR, protocols);
    easy.set(CURLOPT_REDIR_PROTOCOLS_STR, protocols);
    easy.set(CURLOPT_CUSTOMREQUEST, name_of(request.method));
    easy.set(CURLOPT_FOLLOWLOCATION, 1L);
    easy.set(CURLOPT_SSL_VERIFYPEER, 1L);
    easy.set(CURLOPT_SSL_VERIFYHOST, name_must_match);
    easy.set(CURLOPT_TIMEOUT, timeout_s);
    easy.set(CURLOPT_NOSIGNAL, 1L);
    if (request.headers)
        easy.set(CURLOPT_HTTPHEADER, request.headers);
    if (request.body && request.body_len > 0) {
        easy.set(CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t(request.body_len));
        easy.set(CURLOPT_POSTFIELDS, request.body);
    }
    if (resp) {
        easy.set(CURLOPT_WRITEFUNCTION, &keep_body);
        easy.set(CURLOPT_WRITEDATA, resp);
    }
}

CURLcode perform_by_flags(easy_request &easy, uint32_t flags)
{
    if (!(flags & VEXA_HTTP_DOH))
        return easy.perform();
    CURLcode result = CURLE_COULDNT_RESOLVE_HOST;
    for (const char *const *provider = curl_simple_doh_providers; *provider && result == CURLE_COULDNT_RESOLVE_HOST;
         provider++)
        result = easy.perform_with_doh(*provider);
    if (result == CURLE_COULDNT_RESOLVE_HOST && (flags & VEXA_HTTP_DOH_FALLBACK))
        result = easy.perform_with_doh(nullptr);
    return result;
}

CURLcode curl_simple(const http_request &request, curl_simple_response *resp)
{
    easy_request easy;
    if (!easy) {
        log_debug("Failed to init request");
        return CURLE_FAILED_INIT;
    }
    char error[CURL_ERROR_SIZE] = "";
    set_options(easy, request, resp, error);
    const CURLcode result = perform_by_flags(easy, request.flags);
    if (result != CURLE_OK)
        log_debug("%s '%s' failed: [%d] %s", name_of(request.method), request.url, int(result), error);
    if (resp)
        resp->code = easy.status(); // of a transfer that failed, too
    return result;
}

} // namespace

CURLcode perform_request(const http_request &request, curl_simple_response *resp)
{
    return curl_simple(request, resp);
}

extern "C" int curl_simple_get(const char *address, uint32_t flags, const struct curl_slist *headers,
                               curl_simple_response *resp)
{
    return curl_simple({http_method::get, address, flags, headers, nullptr, 0}, resp);
}

extern "C" int curl_simple_post(const char *address, uint32_t flags, const struct curl_slist *headers, const void *body,
                                size_t body_len, curl_simple_response *resp)
{
    return curl_simple({http_method::post, address, flags, headers, body, body_len}, resp);
}

extern "C" int curl_simple_put(const char *address, uint32_t flags, const struct curl_slist *headers, const void *body,
                               size_t body_len, curl_simple_response *resp)
{
    return curl_simple({http_method::put, address, flags, headers, body, body_len}, resp);
}
