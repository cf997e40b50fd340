// SPDX-License-Identifier: MIT
#include "progress.h"

#include <chrono>
#include <cstdio>
#include <unistd.h>

progress::progress(std::string what) : what_{std::move(what)}
{
    if (isatty(STDERR_FILENO))
        thread_ = std::thread{&progress::show, this};
}

progress::~progress()
{
    if (!thread_.joinable())
        return;
    {
        const std::lock_guard hold{lock_};
        over_ = true;
    }
    ending_.notify_one();
    thread_.join();
}

void progress::show()
{
    std::unique_lock hold{lock_};
    int seconds = 0;
    while (!ending_.wait_for(hold, std::chrono::seconds{1}, [this] { return over_; }))
        fprintf(stderr, "\r%s ... %d s ", what_.c_str(), ++seconds);
    if (seconds > 0)
        fputs("\r\033[K", stderr);
}
