// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

// Base URLs of the services in the environment that this device reports to.
const char *crash_service();
const char *trace_service();

// Where reports of a kind go; false when that does not fit.
inline constexpr size_t crash_url_size = 128;
bool crash_url(const char *kind, char (&address)[crash_url_size]);
