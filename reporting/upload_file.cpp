// SPDX-License-Identifier: MIT
#include "reporting/upload_file.h"

#include "core/log.h"
#include "reporting/response.h"

#include <curl/curl.h>

namespace {

constexpr char log_tag[] = "crash";
constexpr size_t answer_size = 2048;
constexpr long http_ok = 200;

} // namespace

int upload_file(const char *address, const void *data, size_t size)
{
    const unique_response response{curl_simple_response_init(answer_size)};
    if (!response) {
        log_err("Failed to allocate curl response");
        return -1;
    }
    const auto code = CURLcode(curl_simple_put(address, 0, nullptr, data, size, response.get()));
    if (code != CURLE_OK) {
        log_err("PUT '%s' failed: [%d] %s", address, int(code), curl_easy_strerror(code));
        return -1;
    }
    const std::string_view body = body_of(*response);
    if (response->code != http_ok) {
        log_err("PUT '%s' failed: [%ld] %.*s", address, response->code, int(body.size()), body.data());
        return -1;
    }
    return 0;
}
