// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <csignal>
#include <fstream>
#include <sys/stat.h>
#include <sys/wait.h>

TEST(syswrapper_impl, runs_the_first_script_with_up_to_48_arguments)
{
#define TEN(x) x "0", x "1", x "2", x "3", x "4", x "5", x "6", x "7", x "8", x "9"
    for (const char *script : {"/etc/syswrapper.sh", "/usr/etc/syswrapper.sh"}) {
        the_device.put(script, "#!/bin/sh\necho $0 $# $1 ${49} >/tmp/said\n", 0755);
        syswrapper_impl(1, "act", TEN("a"), TEN("b"), TEN("c"), TEN("d"), TEN("e"), nullptr);
        EXPECT_EQ(the_device.text("/tmp/said"), std::string(script) + " 49 act e7\n");
        the_device.remove(script);
    }
}

TEST(syswrapper_impl, leaves_an_action_running)
{
    the_device.put("/etc/syswrapper.sh", "#!/bin/sh\ncat </tmp/go >/tmp/gone\n", 0755);
    mkfifo("/tmp/go", 0600);
    mkfifo("/tmp/gone", 0600);
    syswrapper_impl(0, "act", nullptr);
    EXPECT_EQ(waitpid(-1, nullptr, 0), -1) << "no child is left";
    std::ofstream("/tmp/go") << "text";
    std::string said;
    std::ifstream("/tmp/gone") >> said;
    EXPECT_EQ(said, "text");
}

TEST(forkexec, waits_for_its_own_child_and_gives_it_nothing_of_ours)
{
    struct sigaction interrupting = {};
    interrupting.sa_handler = [](int) {};
    sigaction(SIGUSR1, &interrupting, nullptr);
    signal(SIGPIPE, SIG_IGN);
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigprocmask(SIG_BLOCK, &blocked, nullptr);
    ASSERT_EQ(inform_profile_lock(), 0);
    const pid_t other = fork();
    if (other == 0)
        _exit(0);
    siginfo_t info;
    waitid(P_PID, id_t(other), &info, WEXITED | WNOWAIT);
    const captured_log log;
    const char *argv[] = {"/bin/sh", "-c",
                          "for i in 1 2 3 4 5 6 7 8 9; do kill -USR1 $PPID; done; ls -l /proc/self/fd >/tmp/open;"
                          "grep -E 'Sig(Blk|Ign)' /proc/self/status >/tmp/said; kill -9 $$",
                          nullptr};
    forkexec(const_cast<char *const *>(argv));
    EXPECT_EQ(the_device.text("/tmp/said"), "SigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n");
    EXPECT_EQ(the_device.text("/tmp/open").find("inform-profile"), std::string::npos);
    EXPECT_EQ(log.text(), "[debug] libvexa_exec.forkexec(): [ERROR] exit abnormally. code: 0\n");
    inform_profile_unlock();
    signal(SIGPIPE, SIG_DFL);
    sigprocmask(SIG_UNBLOCK, &blocked, nullptr);
}
