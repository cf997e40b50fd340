// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

// A line on standard error that says what takes so long: from the second second on, gone at the end, and only where
// standard error is a terminal.
class progress {
public:
    explicit progress(std::string what);
    progress(const progress &) = delete;
    progress &operator=(const progress &) = delete;
    ~progress();

private:
    void show();

    const std::string what_;
    std::mutex lock_;
    std::condition_variable ending_;
    bool over_ = false;
    std::thread thread_;
};
