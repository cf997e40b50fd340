// SPDX-License-Identifier: MIT
#include "reporting/post_crash.h"

#include "core/load_json.h"
#include "core/log.h"
#include "reporting/response.h"

#include <curl/curl.h>

namespace {

constexpr char log_tag[] = "crash";
constexpr size_t answer_size = 2048;
constexpr long http_ok = 200;

} // namespace

int post_crash(const char *address, json_t *payload, json_ref *answer)
{
    const unique_response response{curl_simple_response_init(answer_size)};
    if (!response) {
        log_err("Failed to allocate curl response");
        return -1;
    }
    const auto code = CURLcode(curl_simple_post_json(address, 0, payload, response.get()));
    if (code != CURLE_OK) {
        log_err("POST '%s' failed: [%d] %s", address, int(code), curl_easy_strerror(code));
        return -1;
    }
    save_crash_payload(payload);
    const std::string_view body = body_of(*response);
    if (response->code != http_ok) {
        log_err("POST '%s' failed: [%ld] %.*s", address, response->code, int(body.size()), body.data());
        return -1;
    }
    if (!answer)
        return 0;
    json_error_t error;
    answer->reset(load_json(body, error));
    if (*answer)
        return 0;
    log_err("Failed to parse response: %s at line %d, column %d", error.text, error.line, error.column);
    return -1;
}
