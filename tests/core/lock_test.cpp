// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <sys/wait.h>

namespace {

// Another process that holds a lock until it dies.
class holder {
public:
    explicit holder(int (*lock)())
    {
        int ready[2];
        EXPECT_EQ(pipe(ready), 0);
        child_ = fork();
        if (child_ == 0) {
            if (lock() == 0)
                (void)!write(ready[1], "x", 1);
            for (;;)
                pause();
        }
        char byte;
        EXPECT_EQ(read(ready[0], &byte, 1), 1);
        close(ready[0]);
        close(ready[1]);
    }
    ~holder() { die(); }
    void die()
    {
        kill(child_, SIGKILL);
        waitpid(child_, nullptr, 0);
    }

private:
    pid_t child_;
};

} // namespace

TEST(report_lock, is_held_once)
{
    const captured_log log;
    EXPECT_EQ(report_lock(), -1);
    std::filesystem::create_directory("/var/run/report");
    EXPECT_EQ(report_lock(), 0);
    EXPECT_EQ(report_lock(), -1);
    EXPECT_EQ(report_locked(), 1);
    EXPECT_EQ(report_unlock(), 0);
    EXPECT_EQ(report_locked(), 0);
    EXPECT_EQ(report_unlock(), -1);
    EXPECT_EQ(log.text(), "[error] statistics.report_lock(): Can't open /var/run/report\n"
                          "[error] statistics.report_lock(): Locking /var/run/report twice\n"
                          "[error] statistics.report_unlock(): unlocking /var/run/report without locking\n");
}

TEST(inform_profile_lock, makes_its_file_but_follows_no_link)
{
    const std::filesystem::path path = "/var/run/inform-profile.lock";
    std::filesystem::create_symlink("/tmp/elsewhere", path);
    EXPECT_EQ(inform_profile_lock(), -1);
    EXPECT_FALSE(the_device.exists("/tmp/elsewhere"));
    std::filesystem::remove(path);
    EXPECT_EQ(inform_profile_lock(), 0);
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms{0640});
    EXPECT_EQ(inform_profile_unlock(), 0);
}

TEST(report_lock, is_released_when_its_holder_dies)
{
    std::filesystem::create_directory("/var/run/report");
    holder other{report_lock};
    EXPECT_EQ(report_locked(), 0);
    other.die();
    EXPECT_EQ(report_lock(), 0);
    EXPECT_EQ(report_unlock(), 0);
}

TEST(inform_profile_lock, gives_up_after_eleven_seconds)
{
    const holder other{inform_profile_lock};
    const captured_log log;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(inform_profile_lock(), -1);
    const auto taken = std::chrono::steady_clock::now() - start;
    EXPECT_GE(taken, std::chrono::seconds{11});
    EXPECT_LT(taken, std::chrono::seconds{20});
    EXPECT_EQ(log.text(), "[error] statistics.inform_profile_lock(): couldn't lock /var/run/inform-profile.lock\n");
}
