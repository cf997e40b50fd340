// SPDX-License-Identifier: MIT
#pragma once

#include "output.h"

#include <libvexa.h>
#include <span>

// How the device stands. The last two stand beside the uplink in the report.
json_t *system_document();
inline constexpr column system_columns[] = {
    {"uptime", "Up for"},   {"time", "Local time"},   {"is_default", "Factory settings"},
    {"ssh", "SSH listens"}, {"internet", "Internet"}, {"dhcp", "DHCP"},
};
inline constexpr std::span<const column> system_columns_besides_uplink = std::span{system_columns}.first(4);

json_t *internet_status();
json_t *dhcp_status();

// Where the device reports to, and what.
json_t *environment_document(cfg_entry *cfg);
inline constexpr column environment_columns[] = {
    {"configured", "Configured"}, {"environment", "Environment"}, {"release", "Release build"},
    {"reports", "Reports"},       {"core_dumps", "Core dumps"},
};

// The services that the running configuration starts.
json_ref service_documents();
inline constexpr column service_columns[] = {{"name", "Service"}, {"enabled", "State"}};
