// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace sim::driver {

using keys = std::map<std::string, std::string, std::less<>>;

// What the lines of a description say of one thing: "KIND NAME KEY=VALUE ...". A word without "=" stands under "".
struct object {
    std::string kind, name;
    keys values;
    int line; // the last one
};

// A value as it stands behind "KEY=".
std::string quoted(std::string_view value);

// In the order in which they come first. Of a key that is given again, the last value holds; "remove KIND NAME"
// forgets all that was said before. What cannot be read is thrown as sim::error.
std::vector<object> read_objects(std::string_view text);

} // namespace sim::driver
