// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>
#include <memory>
#include <string_view>

struct destroy_url {
    void operator()(url *u) const noexcept { url_destroy(u); }
};
using unique_url = std::unique_ptr<url, destroy_url>;

struct url_scheme {
    std::string_view name;
    uint16_t port;
};

// Null for a scheme that is not known.
const url_scheme *find_url_scheme(std::string_view name);
