// SPDX-License-Identifier: MIT
#pragma once

#include "sim/driver/bytes.h"

#include <map>
#include <string>
#include <string_view>

namespace sim {

// Replaces what tells whose device it was, the same thing by the same thing everywhere: the low half of hardware
// addresses, serial numbers made of them, identifiers, keys, and the names of networks and of people's devices.
// Addresses of one block of sixteen stay in one block, and those of a maker stay the maker's.
class disguise {
public:
    driver::mac address(driver::mac);
    std::string network(std::string_view name) { return numbered(networks_, "network-", name); }
    std::string person(std::string_view name) { return numbered(people_, "name-", name); }
    std::string secret(std::string_view text);

    // A file: lines of "key=value", or any text with addresses and identifiers in it.
    std::string text(std::string_view content);
    std::string words(std::string_view text); // addresses and identifiers only

private:
    using table = std::map<std::string, std::string, std::less<>>;

    static std::string numbered(table &, const std::string &kind, std::string_view name);
    std::string line(std::string_view);
    std::string word(std::string_view);

    table networks_, people_, secrets_;
    std::map<uint32_t, uint32_t> blocks_; // of addresses: the low half without its last digit
};

} // namespace sim
