// SPDX-License-Identifier: MIT
#pragma once

#include "output.h"

#include <map>

// The ports of each bridge of the kernel's.
using bridge_map = std::map<std::string, std::vector<std::string>>;
bridge_map find_bridges();

json_ref bridge_port_documents(const bridge_map &bridges);
inline constexpr column bridge_port_columns[] = {{"bridge", "Bridge"}, {"port", "Port"}, {"state", "State"}};

// The addresses that a bridge of `bridges` knows.
json_ref fdb_documents(const std::string &bridge, const bridge_map &bridges);
inline constexpr column fdb_columns[] = {
    {"bridge", "Bridge"}, {"mac", "Hardware address"}, {"port_number", "Number", kind::number}, {"port", "Port"}};
