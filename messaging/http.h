// SPDX-License-Identifier: MIT
#pragma once

#include <curl/curl.h>
#include <libvexa.h>
#include <memory>

static_assert(sizeof(CURLcode) == sizeof(int)); // what the header calls it

enum class http_method { get, post, put };

struct free_headers {
    void operator()(curl_slist *list) const noexcept { curl_slist_free_all(list); }
};
using unique_headers = std::unique_ptr<curl_slist, free_headers>;

struct http_request {
    http_method method;
    const char *url;
    uint32_t flags;
    const curl_slist *headers; // null for none
    const void *body;
    size_t body_len;
};

// One request with the fixed settings. `resp` may be null.
CURLcode perform_request(const http_request &, curl_simple_response *resp);

// libcurl's write callback; `resp` is a curl_simple_response.
size_t keep_body(char *data, size_t size, size_t count, void *resp);
