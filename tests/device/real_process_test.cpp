// SPDX-License-Identifier: MIT
// On the kernel's own /proc, with real processes.
#include "tests/device/network.h"
#include "tests/device/process.h"

#include <fcntl.h>
#include <functional>
#include <netinet/tcp.h>
#include <sched.h>
#include <set>
#include <sstream>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/un.h>
#include <sys/wait.h>

const runs_on keep_proc{{.keep_proc = true}};

namespace {

constexpr unsigned first_kept = 600; // the descriptors of a sleeper below are its own

// A process that has done something and then sleeps, for as long as this lives.
class sleeper {
public:
    explicit sleeper(const std::function<void()> &first = [] {})
    {
        int low[2];
        EXPECT_EQ(pipe2(low, O_CLOEXEC), 0);
        const int ready[] = {fcntl(low[0], F_DUPFD_CLOEXEC, first_kept), fcntl(low[1], F_DUPFD_CLOEXEC, first_kept)};
        close(low[0]);
        close(low[1]);
        pid_ = fork();
        if (pid_ == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            first();
            close(ready[0]);
            close(ready[1]);
            for (;;)
                pause();
        }
        close(ready[1]);
        char none;
        EXPECT_EQ(read(ready[0], &none, 1), 0);
        close(ready[0]);
    }
    sleeper(const sleeper &) = delete;
    sleeper &operator=(const sleeper &) = delete;
    ~sleeper()
    {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    int32_t pid() const { return pid_; }

private:
    pid_t pid_;
};

int bound(int family, int type, const sockaddr *name, socklen_t size)
{
    const int sock = socket(family, type, 0);
    EXPECT_EQ(bind(sock, name, size), 0);
    return sock;
}

int on_port(int family, int type, uint16_t port)
{
    sockaddr_in6 name{}; // port in the same place in both families
    name.sin6_family = sa_family_t(family);
    name.sin6_port = htons(port);
    return bound(family, type, reinterpret_cast<sockaddr *>(&name),
                 family == AF_INET ? sizeof(sockaddr_in) : sizeof name);
}

void connect_to(int sock, int family, uint16_t port)
{
    sockaddr_in6 name{};
    name.sin6_family = sa_family_t(family);
    name.sin6_port = htons(port);
    connect(sock, reinterpret_cast<sockaddr *>(&name), family == AF_INET ? sizeof(sockaddr_in) : sizeof name);
}

// Sockets of all kinds: listening, connected to each other, half closed, bound, unbound.
void open_sockets()
{
    run_program({"ip", "link", "set", "lo", "up"});
    for (const int family : {AF_INET, AF_INET6}) {
        const auto port = uint16_t(family == AF_INET ? 7001 : 7002);
        const int listener = on_port(family, SOCK_STREAM, port);
        listen(listener, 5);
        connect_to(socket(family, SOCK_STREAM, 0), family, port);
        accept(listener, nullptr, nullptr);
        const int half = socket(family, SOCK_STREAM, 0);
        connect_to(half, family, port);
        accept(listener, nullptr, nullptr);
        shutdown(half, SHUT_WR); // CLOSE_WAIT at the other end
        eventually([half] {
            tcp_info info{};
            socklen_t size = sizeof info;
            return getsockopt(half, IPPROTO_TCP, TCP_INFO, &info, &size) == 0 && info.tcpi_state == TCP_FIN_WAIT2;
        });
        on_port(family, SOCK_DGRAM, port);
        connect_to(socket(family, SOCK_DGRAM, 0), family, port);
    }
    sockaddr_un name{AF_UNIX, "/tmp/listening"};
    listen(bound(AF_UNIX, SOCK_SEQPACKET, reinterpret_cast<sockaddr *>(&name), sizeof name), 1);
    int pair[2];
    socketpair(AF_UNIX, SOCK_STREAM, 0, pair);
    socket(AF_UNIX, SOCK_DGRAM, 0);
}

// One process, as the tool shows it.
json_document shown_by_vexactl(int32_t pid)
{
    const json_document all{json_loads(run_program({VEXACTL, "ps", "--fds", "--json"}).out.c_str(), 0, nullptr)};
    for (size_t i = 0; i < json_array_size(all.get()); i++)
        if (json_t *p = json_array_get(all.get(), i); json_integer_value(json_object_get(p, "pid")) == pid)
            return json_document{json_incref(p)};
    return nullptr;
}

// "kind local remote state" of each socket of IP
std::multiset<std::string> ip_sockets(const json_document &found)
{
    std::multiset<std::string> sockets;
    const json_t *fds = json_object_get(found.get(), "fds");
    for (size_t i = 0; i < json_array_size(fds); i++) {
        const char *kind = json_string_value(json_object_get(json_array_get(fds, i), "socket_type"));
        const json_t *s = json_object_get(json_array_get(fds, i), "socket");
        if (kind && strcmp(kind, "unix") != 0)
            sockets.insert(std::string(kind) + " " + text_of(json_object_get(s, "local_port")) + " " +
                           text_of(json_object_get(s, "remote_port")) + " " +
                           json_string_value(json_object_get(s, "state")));
    }
    return sockets;
}

// The same, by ss.
std::multiset<std::string> ip_sockets_by_ss(int32_t pid)
{
    const std::pair<const char *, const char *> states[] = {
        {"ESTAB", "ESTABLISHED"}, {"FIN-WAIT-2", "FIN_WAIT2"}, {"CLOSE-WAIT", "CLOSE_WAIT"}, {"UNCONN", "CLOSE"}};
    std::multiset<std::string> sockets;
    std::istringstream lines{run_program({"ss", "-tunapH"}).out};
    for (std::string line; std::getline(lines, line);) {
        if (line.find("pid=" + std::to_string(pid) + ",") == line.npos)
            continue;
        std::istringstream in{line};
        std::string kind, state, queue, local, remote;
        in >> kind >> state >> queue >> queue >> local >> remote;
        for (const auto &[theirs, ours] : states)
            state = state == theirs ? ours : state;
        const auto port = [](const std::string &address) {
            const std::string digits = address.substr(address.rfind(':') + 1);
            return digits == "*" ? "\"*\"" : digits;
        };
        sockets.insert(kind + (local[0] == '[' || local[0] == '*' ? "6 " : " ") + port(local) + " " + port(remote) +
                       " " + state);
    }
    return sockets;
}

} // namespace

TEST(ps, agrees_with_ss_and_lsof_on_a_real_process)
{
    if (run_program({"lsof", "-v"}).status == 127 || run_program({"ss", "-V"}).status == 127)
        GTEST_SKIP() << "there is no lsof or no ss";
    const sleeper child{open_sockets};
    const json_document found = shown_by_vexactl(child.pid());
    const auto ours = ip_sockets(found);
    EXPECT_EQ(ours, ip_sockets_by_ss(child.pid()));
    EXPECT_EQ(ours.size(), 14u);
    const std::string fds = member(found, "fds");
    EXPECT_THAT(fds, testing::HasSubstr(R"("type":"SEQPACKET","path":"/tmp/listening","state":"LISTENING")"));
    EXPECT_THAT(fds, testing::HasSubstr(R"("type":"STREAM","state":"CONNECTED")"));
    EXPECT_THAT(fds, testing::HasSubstr(R"("type":"DGRAM","state":"UNCONNECTED")"));

    // lsof numbers descriptors and, without sockets, gives their names
    std::istringstream lines{
        run_program({"lsof", "-n", "-P", "-w", "-a", "-d", "0-9999", "-F", "fn", "-p", std::to_string(child.pid())})
            .out};
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
    EXPECT_EQ(member(process(odd_name.pid()), "comm"), "\"a) (b \ufffd\ufffd\"");
    EXPECT_EQ(member(process(odd_name.pid()), "ppid"), std::to_string(getpid()));

    const sleeper many{[] {
        close_range(0, first_kept - 1, 0);
        rlimit limit{};
        getrlimit(RLIMIT_NOFILE, &limit);
        limit.rlim_cur = limit.rlim_max;
        setrlimit(RLIMIT_NOFILE, &limit);
        for (int i = 0; i < 3000; i++)
            dup(i == 0 ? open("/etc/passwd", O_RDONLY) : 0);
    }};
    const json_document with_many = process(many.pid());
    EXPECT_EQ(member(with_many, "fd_count"), "3001");
    EXPECT_EQ(json_array_size(json_object_get(with_many.get(), "fds")), 3001u);
    const sleeper none{[] { close_range(0, first_kept - 1, 0); }};
    EXPECT_EQ(member(process(none.pid()), "fd_count"), "0");

    const sleeper elsewhere{[] {
        unshare(CLONE_NEWNET);
        close_range(3, first_kept - 1, 0);
        listen(on_port(AF_INET, SOCK_STREAM, 7001), 1);
    }};
    EXPECT_THAT(member(process(elsewhere.pid()), "fds"), testing::StartsWith(R"([{"fd_type":"socket"},)"));

    const pid_t zombie = fork();
    if (zombie == 0)
        _exit(0);
    siginfo_t ended{};
    waitid(P_PID, id_t(zombie), &ended, WEXITED | WNOWAIT);
    EXPECT_EQ(member(process(zombie), "stat"), "\"Z\"");
    EXPECT_THAT(member(process(zombie), "fd_count"), testing::AnyOf("0", "-1"));
    waitpid(zombie, nullptr, 0);
    EXPECT_EQ(process(zombie), nullptr);

    const json_document all{vexa_ps_array()};
    size_t threads_of_the_kernel = 0;
    for (size_t i = 0; i < json_array_size(all.get()); i++) {
        const json_t *p = json_array_get(all.get(), i);
        threads_of_the_kernel += json_integer_value(json_object_get(p, "ppid")) == 2;
        EXPECT_EQ(text_of(json_object_get(p, "fds")), "[]");
    }
    EXPECT_GT(threads_of_the_kernel, 0u);
}

TEST(vexa_ps_filter, goes_on_while_processes_come_and_go)
{
    const sleeper churn{[] {
        if (fork() == 0) // keeps no end of the pipe that its parent closes
            for (close_range(3, ~0U, 0);;) {
                const pid_t brief = fork();
                if (brief == 0)
                    _exit(0);
                waitpid(brief, nullptr, 0);
                if (getppid() == 1)
                    _exit(0);
            }
    }};
    for (int i = 0; i < 30; i++)
        EXPECT_EQ(member(process(churn.pid()), "pid"), std::to_string(churn.pid()));
}
