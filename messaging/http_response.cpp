// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/owner.h"
#include "messaging/http.h"

static_assert(offsetof(curl_simple_response, body) == sizeof(long));
static_assert(sizeof(curl_simple_response) == 4 * sizeof(void *));

namespace {

constexpr char log_tag[] = "curl_simple";

} // namespace

size_t keep_body(char *data, size_t size, size_t count, void *resp)
{
    auto *r = static_cast<curl_simple_response *>(resp);
    if (!r)
        return 0;
    const size_t n = size * count;
    const size_t held = r->body->len(r->body);
    const size_t room = r->max_size > held ? r->max_size - held : 0;
    r->received += n;
    if (n > room) {
        (void)r->body->write(r->body, data, room);
        return n; // the excess goes unheard, the transfer goes on
    }
    return size_t(r->body->write(r->body, data, n));
}

extern "C" curl_simple_response *curl_simple_response_init(size_t max_size)
{
    unique_malloc<curl_simple_response> resp{
        static_cast<curl_simple_response *>(calloc(1, sizeof(curl_simple_response)))};
    if (!resp) {
        log_err("Failed to allocate curl_simple_response");
        return nullptr;
    }
    resp->max_size = max_size;
    resp->body = buffer_create();
    if (!resp->body) {
        log_err("Failed to allocate response buffer");
        return nullptr;
    }
    return resp.release();
}

extern "C" void curl_simple_response_free(curl_simple_response *resp)
{
    if (!resp)
        return;
    buffer_destroy(resp->body);
    free(resp);
}
