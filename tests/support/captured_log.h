// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

// What the library logs while this lives. Standard error is set aside for that time.
class captured_log {
public:
    explicit captured_log(uint32_t level = 16); // 16 is all there is
    captured_log(const captured_log &) = delete;
    captured_log &operator=(const captured_log &) = delete;
    ~captured_log();

    // Lines like "[error] cfg.parse(): text", the program's name and number left out.
    std::string text() const;

private:
    uint32_t level_before_;
    int32_t syslog_before_;
    int error_before_;
    int memory_;
};
