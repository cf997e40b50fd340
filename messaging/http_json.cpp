// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/owner.h"
#include "messaging/http.h"

#include <cstring>

namespace {

constexpr char log_tag[] = "curl_simple";

CURLcode curl_simple_json(http_method method, const char *address, uint32_t flags, const json_t *json,
                          curl_simple_response *resp)
{
    const unique_headers headers{curl_slist_append(nullptr, "Content-Type: application/json")};
    if (!headers) {
        log_err("Failed to add HTTP header");
        return CURLE_OUT_OF_MEMORY;
    }
    if (!json)
        return perform_request({method, address, flags, headers.get(), nullptr, 0}, resp);
    const unique_text text{json_dumps(json, JSON_COMPACT)};
    if (!text) {
        log_err("Failed to dump json payload object");
        return CURLE_OUT_OF_MEMORY;
    }
    return perform_request({method, address, flags, headers.get(), text.get(), strlen(text.get())}, resp);
}

} // namespace

extern "C" int curl_simple_post_json(const char *address, uint32_t flags, const json_t *json,
                                     curl_simple_response *resp)
{
    return curl_simple_json(http_method::post, address, flags, json, resp);
}

extern "C" int curl_simple_put_json(const char *address, uint32_t flags, const json_t *json, curl_simple_response *resp)
{
    return curl_simple_json(http_method::put, address, flags, json, resp);
}
