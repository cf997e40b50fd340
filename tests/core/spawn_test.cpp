// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <sys/wait.h>

namespace {

void run_shell(const char *commands)
{
    const char *argv[] = {"/bin/sh", "-c", commands, nullptr};
    forkexec(const_cast<char *const *>(argv));
}

ptrdiff_t open_descriptors()
{
    const std::filesystem::directory_iterator all{"/proc/self/fd"};
    return std::distance(begin(all), end(all));
}

bool has_children()
{
    return waitpid(-1, nullptr, WNOHANG) != -1;
}

} // namespace

TEST(syswrapper_impl, runs_the_first_script_with_up_to_48_arguments)
{
#define TEN_OF(x) x "0", x "1", x "2", x "3", x "4", x "5", x "6", x "7", x "8", x "9"
    for (const char *script : {"/etc/syswrapper.sh", "/usr/etc/syswrapper.sh"}) {
        the_device.put(script, "#!/bin/sh\necho $0 $# $1 ${49} >/tmp/said\n", 0755);
        syswrapper_impl(1, "act", TEN_OF("a"), TEN_OF("b"), TEN_OF("c"), TEN_OF("d"), TEN_OF("e"), nullptr);
        EXPECT_EQ(the_device.text("/tmp/said"), std::string(script) + " 49 act e7\n");
        the_device.remove("/tmp/said");
        the_device.remove(script);
    }
    const captured_log log;
    syswrapper_impl(1, "act", nullptr);
    EXPECT_EQ(log.text(),
              "[debug] libvexa_exec.syswrapper_impl(): [ERROR] unable to locate syswrapper.sh, 'act' skipped!\n");
}

TEST(syswrapper_impl, leaves_an_action_running)
{
    the_device.put("/etc/syswrapper.sh", "#!/bin/sh\ncat </tmp/go >/tmp/gone\n", 0755);
    mkfifo("/tmp/go", 0600);
    mkfifo("/tmp/gone", 0600);
    syswrapper_impl(0, "act", nullptr);
    EXPECT_FALSE(has_children());
    std::ofstream("/tmp/go") << "text";
    std::string said;
    std::ifstream("/tmp/gone") >> said;
    EXPECT_EQ(said, "text");
}

TEST(forkexec, waits_for_its_own_child_whatever_else_happens)
{
    struct sigaction interrupting = {};
    interrupting.sa_handler = [](int) {};
    sigaction(SIGUSR1, &interrupting, nullptr);
    const pid_t other = fork();
    if (other == 0)
        _exit(0);
    siginfo_t info;
    waitid(P_PID, id_t(other), &info, WEXITED | WNOWAIT);

    run_shell("for i in 1 2 3 4 5 6 7 8 9; do kill -USR1 $PPID; done; echo done >/tmp/said");
    EXPECT_EQ(the_device.text("/tmp/said"), "done\n");
    EXPECT_FALSE(has_children());

    signal(SIGCHLD, SIG_IGN);
    run_shell("echo again >/tmp/said");
    signal(SIGCHLD, SIG_DFL);
    EXPECT_EQ(the_device.text("/tmp/said"), "again\n");
}

TEST(forkexec, logs_only_an_end_by_a_signal)
{
    const captured_log log;
    run_shell("exit 3");
    const char *missing[] = {"/no/such/program", nullptr};
    forkexec(const_cast<char *const *>(missing));
    run_shell("kill -9 $$");
    EXPECT_EQ(log.text(), "[debug] libvexa_exec.forkexec(): [ERROR] exit abnormally. code: 0\n");
}

TEST(forkexec, gives_the_child_clean_signals_and_no_descriptor)
{
    the_device.put("/var/run/inform-profile.lock", "");
    const ptrdiff_t before = open_descriptors();
    ASSERT_EQ(inform_profile_lock(), 0);
    signal(SIGPIPE, SIG_IGN);
    sigset_t all, before_all;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, &before_all);
    run_shell("grep -E 'Sig(Blk|Ign)' /proc/self/status >/tmp/said; ls -l /proc/self/fd >/tmp/open");
    sigprocmask(SIG_SETMASK, &before_all, nullptr);
    signal(SIGPIPE, SIG_DFL);
    EXPECT_EQ(the_device.text("/tmp/said"), "SigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n");
    EXPECT_EQ(the_device.text("/tmp/open").find("inform-profile"), std::string::npos);
    inform_profile_unlock();
    EXPECT_EQ(open_descriptors(), before);
}
