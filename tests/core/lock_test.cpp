// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <sys/wait.h>

TEST(report_lock, is_held_once)
{
    const captured_log log;
    EXPECT_EQ(report_lock(), -1) << "no directory";
    std::filesystem::create_directory("/var/run/report");
    EXPECT_EQ(report_lock(), 0);
    EXPECT_EQ(report_lock(), -1);
    EXPECT_EQ(report_locked(), 1);
    EXPECT_EQ(report_unlock(), 0);
    EXPECT_EQ(report_unlock(), -1);
    EXPECT_THAT(log.text(), testing::EndsWith("report_unlock(): unlocking /var/run/report without locking\n"));
    std::filesystem::create_symlink("/tmp/elsewhere", "/var/run/inform-profile.lock");
    EXPECT_EQ(inform_profile_lock(), -1) << "a link";
}

TEST(inform_profile_lock, waits_eleven_seconds_for_a_holder_until_he_dies)
{
    int locked[2];
    ASSERT_EQ(pipe(locked), 0);
    const pid_t holder = fork();
    if (holder == 0) {
        (void)!write(locked[1], inform_profile_lock() == 0 ? "y" : "n", 1);
        pause();
    }
    char answer = '?';
    EXPECT_EQ(read(locked[0], &answer, 1), 1);
    EXPECT_EQ(answer, 'y');
    const captured_log log;
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(inform_profile_lock(), -1);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds{11});
    EXPECT_EQ(log.text(), "[error] statistics.inform_profile_lock(): couldn't lock /var/run/inform-profile.lock\n");
    kill(holder, SIGKILL);
    waitpid(holder, nullptr, 0);
    EXPECT_EQ(inform_profile_lock(), 0);
    EXPECT_EQ(inform_profile_unlock(), 0);
}
