// SPDX-License-Identifier: MIT
#include "tests/tools/vexactl.h"

#include <pty.h>
#include <sys/wait.h>
#include <tuple>

namespace {

void put_clients(const std::string &quality)
{
    the_device.put("/var/run/vexa-sim/wireless", R"(radio ra0 channel=6 station_mode=23
vap ra0 radio=ra0
vap ra1 radio=ra0 usage=downlink
station 02:57:00:00:00:01 vap=ra0 quality=good host=good
station 02:57:00:00:00:02 vap=ra0 quality=good dns_timeouts=3 disconnects=2
station 02:57:00:00:00:03 vap=ra0 host="lost\x1b"
station 02:57:00:00:00:04 vap=ra0 known=no
station 02:57:00:00:00:05 vap=ra1 host=another-ap
neighbour 02:33:00:00:00:01 radio=ra0 ssid=Kiosk
quality good ip_obtained=1 arp_answered=1 dns_latency=0xffffffff )" +
                                                     quality + "\n");
}

// The tool on a terminal of its own.
struct watching {
    watching()
    {
        winsize size{24, 80, 0, 0};
        pid = forkpty(&terminal, nullptr, nullptr, &size);
        if (pid == 0) {
            raise(SIGSTOP); // until the terminal was looked at
            setenv("TERM", "xterm", 1);
            execl(VEXACTL, VEXACTL, "satisfaction", "--watch", "--color", "never", nullptr);
            _exit(127);
        }
        waitpid(pid, nullptr, WUNTRACED);
        tcgetattr(terminal, &before);
        kill(pid, SIGCONT);
    }

    // Reads on until the text comes; false when the tool ends before.
    bool shows(const std::string &text)
    {
        for (shown.clear(); shown.find(text) == shown.npos;) {
            char piece[4096];
            const ssize_t count = read(terminal, piece, sizeof piece);
            if (count <= 0)
                return false;
            shown.append(piece, size_t(count));
        }
        return true;
    }

    bool is_as_before()
    {
        termios now{};
        tcgetattr(terminal, &now);
        return std::tie(now.c_iflag, now.c_oflag, now.c_cflag, now.c_lflag) ==
                   std::tie(before.c_iflag, before.c_oflag, before.c_cflag, before.c_lflag) &&
               memcmp(now.c_cc, before.c_cc, sizeof now.c_cc) == 0;
    }

    ~watching() { close(terminal); }
    int terminal;
    pid_t pid;
    termios before{};
    std::string shown;
};

} // namespace

TEST(satisfaction, lists_the_worst_client_first)
{
    put_clients("");
    const finished done = shell("LC_ALL=C $VEXACTL satisfaction");
    EXPECT_THAT(done.out, testing::ContainsRegex("\nlost.x1b +ra0 +[.]{8}   0  sta_ip_timeout +sta_ip_timeout\n"
                                                 " +sta_arp_timeout\n02:57:00:00:00:02 +ra0 +#{5}[.]{3}  70 .*\n"
                                                 "good +ra0 +#{8} 100  -\n02:57:00:00:00:04 +ra0 +-  "));
    for (const std::string &line : lines_of(done.out))
        EXPECT_LE(line.size(), 80u) << line;
    const json_document all = json_of(vexactl({"satisfaction", "--json"}).out);
    const json_t *second = json_array_get(all.get(), 1);
    EXPECT_EQ(member_text(second, "worst"), "sta_dns_timeout");
    EXPECT_EQ(json_integer_value(json_object_get(json_object_get(second, "factors_now"), "sta_disconnects")), 90);
    const json_document page = json_of(vexactl({"report", "--json"}).out);
    EXPECT_EQ(json_array_size(json_object_get(page.get(), "clients")), 4u);
    const json_t *radio = json_array_get(json_object_get(page.get(), "air"), 0);
    EXPECT_EQ(json_integer_value(json_object_get(radio, "neighbours")), 1);
    EXPECT_EQ(json_integer_value(json_object_get(radio, "score")), (0 + 70 + 100) / 3);
}

TEST(satisfaction, follows_clients_and_gives_the_terminal_back)
{
    int state = 0;
    for (const char *end : {"q", "\3", "\32", ""}) { // quitted, interrupted, stopped before it is terminated
        put_clients("");
        watching tool;
        ASSERT_TRUE(tool.shows("good ")) << tool.shown;
        EXPECT_THAT(tool.shown, testing::HasSubstr("\033[?1049h"));
        EXPECT_THAT(tool.shown, testing::HasSubstr("sta_ip_timeout +1"));
        EXPECT_FALSE(tool.is_as_before());
        if (*end == 'q') {
            put_clients("icmp_rtt=1600");
            EXPECT_TRUE(tool.shows(" 50  sta_icmp_rtt") && tool.shows(" 33  sta_icmp_rtt")) << tool.shown;
        }
        ASSERT_EQ(write(tool.terminal, end, strlen(end)), ssize_t(strlen(end)));
        if (*end == '\32') {
            EXPECT_TRUE(tool.shows("\033[?1049l"));
            waitpid(tool.pid, &state, WUNTRACED);
            EXPECT_TRUE(WIFSTOPPED(state) && tool.is_as_before());
            kill(tool.pid, SIGCONT);
            EXPECT_TRUE(tool.shows("good "));
        }
        if (*end == '\32' || !*end)
            kill(tool.pid, SIGTERM);
        EXPECT_TRUE(tool.shows("\033[?1049l"));
        waitpid(tool.pid, &state, 0);
        EXPECT_TRUE(state == 0 && tool.is_as_before());
    }
    EXPECT_EQ(vexactl({"satisfaction", "--watch"}).err, "vexactl: satisfaction: --watch needs a terminal\n");
    EXPECT_EQ(vexactl({"satisfaction", "--watch", "--json"}).status, 2);
}
