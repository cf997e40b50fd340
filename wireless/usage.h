// SPDX-License-Identifier: MIT
#pragma once

// What an interface of the radios serves for, by its name: "user", "guest", "uplink" ...
inline constexpr char usage_path_format[] = "/var/run/vapusage.%s";
