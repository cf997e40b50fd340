// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// What the kernel is made to answer over rtnetlink.
struct datagram {
    std::string bytes;
    uint32_t sender = 0; // the kernel
    int flags = 0;
};

// While this lives, each real datagram is handed to `forge` on its way, and what that makes of it arrives.
class forged_answers {
public:
    using forge = std::function<std::vector<datagram>(const std::string &)>;
    explicit forged_answers(forge f);
    ~forged_answers();
};
