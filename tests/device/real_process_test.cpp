// SPDX-License-Identifier: MIT
// On the kernel's own /proc, with real processes.
#include "tests/device/network.h"
#include "tests/device/process.h"

#include <fcntl.h>
#include <functional>
#include <netinet/tcp.h>
#include <sched.h>
#include <sstream>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/un.h>
#include <sys/wait.h>

const runs_on keep_proc{{.keep_proc = true}};

namespace {

// A process that has done something and then stands still, for as long as this lives.
class sleeper {
public:
    explicit sleeper(const std::function<void()> &first) : pid{fork()}
    {
        if (pid == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            first();
            raise(SIGSTOP);
            _exit(1);
        }
        EXPECT_EQ(waitpid(pid, nullptr, WUNTRACED), pid);
    }
    sleeper(const sleeper &) = delete;
    sleeper &operator=(const sleeper &) = delete;
    ~sleeper()
    {
        kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
    }
    const int32_t pid;
};

// A socket at a port of all addresses, or connected to one.
int at_port(int type, int family, uint16_t port, int (*attach)(int, const sockaddr *, socklen_t))
{
    const int sock = socket(family, type, 0);
    sockaddr_in6 name{}; // the port is in the same place in both families
    name.sin6_family = sa_family_t(family);
    name.sin6_port = htons(port);
    EXPECT_EQ(attach(sock, reinterpret_cast<sockaddr *>(&name), sizeof name), 0);
    return sock;
}

// Sockets of all kinds: listening, connected to each other, half closed, bound, unbound.
void open_sockets()
{
    run_program({"ip", "link", "set", "lo", "up"});
    for (const int family : {AF_INET, AF_INET6}) {
        const auto port = uint16_t(7000 + family);
        const int listener = at_port(SOCK_STREAM, family, port, bind);
        listen(listener, 5);
        at_port(SOCK_STREAM, family, port, connect);
        accept(listener, nullptr, nullptr);
        const int half = at_port(SOCK_STREAM, family, port, connect);
        accept(listener, nullptr, nullptr);
        shutdown(half, SHUT_WR); // CLOSE_WAIT at the other end
        eventually([half] {
            tcp_info info{};
            socklen_t size = sizeof info;
            return getsockopt(half, IPPROTO_TCP, TCP_INFO, &info, &size) == 0 && info.tcpi_state == TCP_FIN_WAIT2;
        });
        at_port(SOCK_DGRAM, family, port, bind);
        at_port(SOCK_DGRAM, family, port, connect);
    }
    const sockaddr_un name{AF_UNIX, "/tmp/listening"};
    const int listener = socket(AF_UNIX, SOCK_SEQPACKET, 0);
    EXPECT_EQ(bind(listener, reinterpret_cast<const sockaddr *>(&name), sizeof name), 0);
    listen(listener, 1);
    int pair[2];
    socketpair(AF_UNIX, SOCK_STREAM, 0, pair);
    socket(AF_UNIX, SOCK_DGRAM, 0);
}

// Thousands, and no other one.
void open_descriptors()
{
    constexpr rlimit limit{4000, 4000};
    setrlimit(RLIMIT_NOFILE, &limit);
    close_range(0, ~0U, 0);
    open("/etc/passwd", O_RDONLY);
    for (int i = 1; i < 3000; i++)
        dup(0);
}

} // namespace

TEST(ps, agrees_with_ss_and_lsof_on_a_real_process)
{
    if (run_program({"lsof", "-v"}).status == 127 || run_program({"ss", "-V"}).status == 127)
        GTEST_SKIP() << "there is no lsof or no ss";
    const sleeper child{open_sockets};
    const std::string pid = std::to_string(child.pid);
    // "kind local remote state" of each socket of IP
    const finished ours = run_program({"sh", "-c", VEXACTL " ps --fds | awk '$1 == " + pid + R"( && $5 == ">" {
        print $3, $4, $6, $7 }' | sort)"});
    const finished theirs = run_program({"sh", "-c", "ss -tunapH | awk '/pid=" + pid + R"(,/ {
        kind = $1 ($5 ~ /^[[*]/ ? "6" : ""); sub(/.*:/, "", $5); sub(/.*:/, "", $6); print kind, $5, $6, $2 }' |
        sed 's/ESTAB/ESTABLISHED/; s/UNCONN/CLOSE/; s/FIN-WAIT-2/FIN_WAIT2/; s/CLOSE-WAIT/CLOSE_WAIT/' | sort)"});
    EXPECT_EQ(ours.out, theirs.out);
    EXPECT_EQ(std::count(ours.out.begin(), ours.out.end(), '\n'), 14);

    const json_ref found = process(child.pid);
    const std::string fds = member(found, "fds");
    EXPECT_THAT(fds, testing::HasSubstr(R"("type":"SEQPACKET","path":"/tmp/listening","state":"LISTENING")"));
    EXPECT_THAT(fds, testing::HasSubstr(R"("type":"STREAM","state":"CONNECTED")"));
    EXPECT_THAT(fds, testing::HasSubstr(R"("type":"DGRAM","state":"UNCONNECTED")"));
    // numbers of descriptors and, without sockets, names
    std::istringstream lines{run_program({"lsof", "-nPw", "-a", "-d", "0-9999", "-F", "fn", "-p", pid}).out};
    int count = 0;
    for (std::string line; std::getline(lines, line);) {
        count += line[0] == 'f';
        if (line.starts_with("n/") && line.find(" type=") == line.npos) {
            EXPECT_THAT(fds, testing::HasSubstr(line.substr(1)));
        }
    }
    EXPECT_EQ(member(found, "fd_count"), std::to_string(count));
    EXPECT_EQ(json_array_size(json_object_get(found.get(), "fds")), size_t(count));
}

TEST(vexa_ps_filter, takes_real_processes_of_all_sorts)
{
    const sleeper odd_name{[] { prctl(PR_SET_NAME, "a) (b \xff\xc3"); }};
    EXPECT_EQ(member(process(odd_name.pid), "comm"), "\"a) (b \ufffd\ufffd\"");
    EXPECT_EQ(member(process(odd_name.pid), "ppid"), std::to_string(getpid()));
    const sleeper none{[] { close_range(0, ~0U, 0); }};
    EXPECT_EQ(member(process(none.pid), "fd_count"), "0");
    const sleeper thousands{open_descriptors};
    const json_ref many = process(thousands.pid);
    EXPECT_EQ(member(many, "fd_count"), "3000");
    EXPECT_EQ(json_array_size(json_object_get(many.get(), "fds")), 3000U);
    const sleeper elsewhere{[] {
        unshare(CLONE_NEWNET);
        close_range(0, ~0U, 0);
        listen(at_port(SOCK_STREAM, AF_INET, 7001, bind), 1);
    }};
    EXPECT_EQ(member(process(elsewhere.pid), "fds"), R"([{"fd_type":"socket"}])") << "of another network";

    const pid_t zombie = fork();
    if (zombie == 0)
        _exit(0);
    siginfo_t ended{};
    waitid(P_PID, id_t(zombie), &ended, WEXITED | WNOWAIT);
    EXPECT_EQ(member(process(zombie), "stat"), "\"Z\"");
    waitpid(zombie, nullptr, 0);
    EXPECT_EQ(process(zombie), nullptr);
    EXPECT_THAT(text_of(json_ref{vexa_ps_array()}.get()), testing::HasSubstr(R"("ppid":2,)")) << "of the kernel";
}

TEST(vexa_ps_filter, goes_on_while_processes_come_and_go)
{
    const sleeper churn{[] {
        if (fork() != 0)
            return;
        while (getppid() != 1) {
            const pid_t brief = fork();
            if (brief == 0)
                _exit(0);
            waitpid(brief, nullptr, 0);
        }
        _exit(0);
    }};
    for (int i = 0; i < 30; i++)
        EXPECT_EQ(member(process(churn.pid), "pid"), std::to_string(churn.pid));
}
