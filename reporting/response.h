// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>
#include <memory>
#include <string_view>

struct free_response {
    void operator()(curl_simple_response *r) const noexcept { curl_simple_response_free(r); }
};
using unique_response = std::unique_ptr<curl_simple_response, free_response>;

inline std::string_view body_of(const curl_simple_response &response)
{
    return {static_cast<const char *>(response.body->head(response.body)), response.body->len(response.body)};
}
