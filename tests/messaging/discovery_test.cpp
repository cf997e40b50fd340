// SPDX-License-Identifier: MIT
#include "core/owner.h"
#include "tests/messaging/entries.h"
#include "tests/messaging/sealed.h"
#include "tests/support/captured_log.h"
#include "tests/support/device.h"
#include "tests/support/other_network.h"
#include "tests/support/program.h"

#include <arpa/inet.h>
#include <csignal>
#include <event2/event.h>
#include <future>
#include <sys/resource.h>
#include <sys/stat.h>

namespace {

constexpr char key_file[] = "/var/run/vexa_protocol.info";
constexpr char key_line[] = "corvo.key=0123456789abcdeffedcba9876543210\n";

sockaddr_in at(const char *address)
{
    return {AF_INET, htons(48000), {inet_addr(address)}, {}};
}

// With each "!" as the beginning of a line about an error, and "%" of one for information.
std::string lines(const std::string &text)
{
    std::string out;
    for (const char c : text)
        out += c == '!' ? "[error] vexa_protocol.vexa_" : c == '%' ? "[info ] vexa_protocol.vexa_" : std::string(1, c);
    return out;
}

// Another device of the site, on the other side of the cable.
struct peer {
    static constexpr char address[] = "192.0.2.21";

    peer()
    {
        static const other_network network{address};
        EXPECT_TRUE(network.working());
        network.inside([this] { fd.reset(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)); });
        const sockaddr_in any = at("0.0.0.0");
        const ip_mreq group{at("239.254.7.77").sin_addr, at(address).sin_addr};
        const timeval patience{10, 0};
        set(SOL_SOCKET, SO_RCVTIMEO, patience);
        set(SOL_SOCKET, SO_REUSEADDR, 1);
        set(IPPROTO_IP, IP_RECVTTL, 1);
        set(IPPROTO_IP, IP_MULTICAST_IF, group.imr_interface);
        set(IPPROTO_IP, IP_MULTICAST_LOOP, 0);
        EXPECT_EQ(bind(fd.get(), reinterpret_cast<const sockaddr *>(&any), sizeof any), 0);
        set(IPPROTO_IP, IP_ADD_MEMBERSHIP, group);
    }

    template <typename T>
    void set(int level, int option, const T &value) const
    {
        EXPECT_EQ(setsockopt(fd.get(), level, option, &value, sizeof value), 0);
    }

    void send(const bytes &datagram) const
    {
        const sockaddr_in to = at("239.254.7.77");
        const auto *group = reinterpret_cast<const sockaddr *>(&to);
        EXPECT_GE(sendto(fd.get(), datagram.data(), datagram.size(), 0, group, sizeof to), 0);
    }

    void say(const std::string &text, uint16_t sequence, uint16_t method = 9) const
    {
        sealed message;
        message.method = method;
        message.sequence = sequence;
        message.padded = pad({text.begin(), text.end()});
        send(message.datagram());
    }

    // method, type, number and payload of the next message
    std::string hear() const
    {
        alignas(envelope) uint8_t datagram[2000];
        alignas(cmsghdr) char control[64];
        iovec where{datagram, sizeof datagram};
        msghdr message{nullptr, 0, &where, 1, control, sizeof control, 0};
        struct vexa_protocol_ctrl site {};
        memcpy(site.key, sealed{}.key.data(), sizeof site.key);
        auto *got = reinterpret_cast<envelope *>(datagram);
        if (dec_payload(int(recvmsg(fd.get(), &message, 0)), got, &site) != 0)
            return "nothing came";
        const cmsghdr *time_to_live = CMSG_FIRSTHDR(&message);
        EXPECT_TRUE(time_to_live && *CMSG_DATA(time_to_live) == 64);
        return std::to_string(got->method) + '/' + std::to_string(got->type) + " #" + std::to_string(got->sequence) +
               ' ' + std::string(reinterpret_cast<const char *>(got + 1), got->length);
    }

    unique_fd fd;
};

std::string heard;
void hear_first(const void *payload)
{
    const auto *header = static_cast<const envelope *>(payload) - 1;
    heard.append(static_cast<const char *>(payload), header->length) += ";";
}
void hear_second(const void *payload)
{
    hear_first(payload);
    heard += "again;";
}
void end_listening(const void *)
{
    heard += "ended;";
    vexa_protocol_deinit();
}
constexpr vexa_protocol_handler table[] = {{hear_first, 9},     {hear_second, 9}, {hear_first, 5},
                                           {end_listening, 11}, {hear_first, 11}, {nullptr, 0}};

// The device's own event loop.
struct loop {
    loop() { heard.clear(); }
    loop(const loop &) = delete;
    ~loop()
    {
        vexa_protocol_deinit();
        event_base_free(base);
    }
    void until_heard(const std::string &text) const
    {
        while (heard.size() < text.size())
            event_base_loop(base, EVLOOP_ONCE);
        EXPECT_TRUE(heard == text) << heard.size() << ": " << heard.substr(0, 500);
    }
    int events() const { return event_base_get_num_events(base, EVENT_BASE_COUNT_ADDED); }

    event_base *const base = event_base_new();
};

} // namespace

TEST(vexa_protocol_init, tells_what_is_wrong_and_tears_down)
{
    const std::string key = key_line, group = "corvo.mcip=239.254.7.77\n";
    const struct {
        std::string file;
        int listen;
        std::string wrong;
    } rows[] = {
        {"FIFO", 1, "!protocol_init(): Unable to parse /var/run/vexa_protocol.info\n"},
        {group, 0, "!protocol_init(): no corvo.key\n"},
        {key, 1, "!protocol_init(): no corvo.mcip\n"},
        {"corvo.key=0123456789abcdeffedcba987654321\n", 0,
         "%protocol_init(): no corvo.mcip\n!protocol_init(): corvo.key invalid len 31\n"},
        {group + "corvo.key=0123456789abcdeffedcba98765432101\n", 1, "!protocol_init(): corvo.key invalid len 33\n"},
        {key + "corvo.mcip=239.254.7\n", 1, "!protocol_init(): corvo.mcip=239.254.7 is not valid\n"},
        {key + "corvo.mcip=192.0.2.9\n", 1,
         "%protocol_init(): mcast_ip is 192.0.2.9\n%protocol_init(): my_ip is 192.0.2.20\n"
         "!multicast_socket_init(): unable to add membership, Invalid argument\n"
         "!protocol_init(): set multicast socket fail, Invalid argument\n"
         "!multicast_socket_deinit(): unable to drop membership, Cannot assign requested address\n"},
        {"none", 1, "!protocol_init(): Unable to access /var/run/vexa_protocol.info: No such file or directory\n"},
    };
    const ptrdiff_t before = entries();
    for (const auto &row : rows) {
        the_device.remove(key_file);
        if (row.file == "FIFO")
            mkfifo(key_file, 0600);
        else if (row.file != "none")
            the_device.put(key_file, row.file);
        const captured_log log{4};
        EXPECT_EQ(vexa_protocol_init(row.listen), -1);
        EXPECT_EQ(log.text(), lines("%protocol_init(): VEXA_DEVICE[02:56:58:00:10:01]\n" + row.wrong +
                                    "!protocol_init(): could not start vexa-protocol\n"));
        EXPECT_EQ(vexa_protocol_ctrl.sock, -1);
        EXPECT_EQ(bytes(vexa_protocol_ctrl.key, vexa_protocol_ctrl.key + 16), bytes(16));
        EXPECT_EQ(entries(), before + 2) << "those of the log";
    }
    the_device.put(key_file, key_line);
    EXPECT_EQ(vexa_protocol_init(0), 0) << "a group is for listeners";
    EXPECT_EQ(vexa_protocol_ctrl.sock, -1);
    vexa_protocol_deinit();
}

TEST(vexa_protocol, hears_what_another_device_says)
{
    const peer other;
    const ptrdiff_t before = entries();
    loop own;
    ASSERT_EQ(vexa_protocol_init(1), 0);
    ASSERT_EQ(vexa_protocol_init_recv(own.base, table), 0);
    other.say("one", 1);
    own.until_heard("one;one;again;");
    {
        const captured_log log{8};
        const std::string text(463, 'x');
        sealed forged, full, longer; // of 47, 504 and 520 bytes
        full.sequence = longer.sequence = 3;
        forged.padded = {'r', 'e', 'b', 'o', 'o', 't', 0};
        full.padded = pad({text.begin(), text.end()});
        longer.padded = pad(bytes(464, 'x'));
        other.send(forged.datagram());
        other.send(longer.datagram());
        other.say("nobody asked", 2, 10);
        other.say("repeated", 2);
        other.send(full.datagram());
        heard.clear();
        own.until_heard(text + ";" + text + ";again;");
        EXPECT_EQ(log.text(), lines("!protocol_recv(): failed to decrypt the message: 1\n"
                                    "[debug] libvexa.dec_payload(): packet length check fail\n"
                                    "!protocol_recv(): failed to decrypt the message: 1\n"
                                    "[debug] vexa_protocol.vexa_protocol_recv(): [nobody asked]\n"
                                    "[debug] vexa_protocol.vexa_protocol_recv(): [" +
                                    text + "]\n"));
    }
    heard.clear();
    other.say("end", 4, 11); // its first handler takes everything down
    own.until_heard("ended;");
    EXPECT_EQ(own.events(), 0);
    EXPECT_EQ(vexa_protocol_ctrl.rx_seq, 0);
    EXPECT_EQ(entries(), before + 3) << "those of the loop";
}

TEST(vexa_protocol, joins_when_the_address_comes_and_follows_it)
{
    const peer other;
    loop own;
    the_device.put("/var/run/ipready.br0", "0.0.0.0\n");
    const captured_log log{4};
    ASSERT_EQ(vexa_protocol_init(1), 0);
    ASSERT_EQ(vexa_protocol_init_recv(own.base, table), 0);
    const auto signal = [&](const char *address) {
        the_device.put("/var/run/ipready.br0", address);
        raise(SIGUSR1);
        event_base_loop(own.base, EVLOOP_ONCE);
    };
    signal("192.0.2.20");
    other.say("joined", 1);
    own.until_heard("joined;joined;again;");
    signal("192.0.2.20"); // the same
    ASSERT_EQ(system("PATH=$PATH:/sbin:/usr/sbin; ip address add 192.0.2.77/24 dev br0"), 0);
    signal("192.0.2.77");
    heard.clear();
    other.say("moved", 2);
    own.until_heard("moved;moved;again;");
    vexa_protocol_ctrl.tx_seq = 77;
    EXPECT_EQ(vexa_protocol_send("answer", 6, 9, 2, 1), 56);
    EXPECT_EQ(other.hear(), "9/2 #77 answer");
    signal("192.0.2.99"); // not ours
    EXPECT_EQ(log.text(),
              lines("%protocol_init(): VEXA_DEVICE[02:56:58:00:10:01]\n%protocol_init(): mcast_ip is 239.254.7.77\n"
                    "%protocol_init(): vexa_protocol init done\n"
                    "%usr1_handler(): Get DHCP IP\n%usr1_handler(): my_ip is 192.0.2.20\n"
                    "!multicast_socket_deinit(): unable to drop membership, Cannot assign requested address\n"
                    "%usr1_handler(): Get DHCP IP\n%usr1_handler(): Get DHCP IP\n"
                    "%usr1_handler(): my_ip is 192.0.2.77\n"
                    "%usr1_handler(): Get DHCP IP\n%usr1_handler(): my_ip is 192.0.2.99\n"
                    "!multicast_socket_init(): unable to set mcast local ip, Cannot assign requested address\n"
                    "!usr1_handler(): set multicast socket fail, Cannot assign requested address\n"));
    ASSERT_EQ(system("PATH=$PATH:/sbin:/usr/sbin; ip address del 192.0.2.77/24 dev br0"), 0);
}

TEST(vexa_protocol, withstands_a_flood)
{
    const peer other;
    loop own;
    libvexa_log_level = 0;
    ASSERT_EQ(vexa_protocol_init(1), 0);
    ASSERT_EQ(vexa_protocol_init_recv(own.base, table), 0);
    const ptrdiff_t before = entries();
    sealed foreign, corrupted;
    foreign.key = random_bytes(16);
    foreign.padded = corrupted.padded = pad({'f'});
    foreign.method = corrupted.method = 5; // whatever its number
    std::string expected;
    for (int i = 1; i <= 10000; i++) {
        const uint16_t sequence = uint16_t(1 + i / 5 % 4095);
        corrupted.wrong_crc = 1U << i % 32;
        if (i % 5 == 1 && i > 1)
            other.say("replayed", sequence);
        else if (i % 5 == 2)
            other.send(corrupted.datagram());
        else if (i % 5 == 3)
            other.send(foreign.datagram());
        else if (i % 5 == 4)
            other.send(random_bytes(size_t(i % 600)));
        else if (i > 1) {
            const std::string text = "message " + std::to_string(i);
            other.say(text, sequence);
            expected.append(text + ";").append(text + ";again;");
        }
        if (i % 50 == 0) // as many as a socket holds
            own.until_heard(expected);
    }
    EXPECT_EQ(entries(), before);
    EXPECT_EQ(own.events(), 2);
}

TEST(vexa_protocol_client, sends_single_messages)
{
    const peer other;
    const ptrdiff_t before = entries();
    const captured_log log{1};
    vexa_protocol_deinit(); // before any init: standard input stays open
    EXPECT_EQ(fcntl(0, F_GETFD) < 0, false);
    vexa_protocol_client_event_mesh_halt_send();
    ASSERT_EQ(vexa_protocol_client_init(), 0);
    vexa_protocol_ctrl.tx_seq = 0xfff;
    vexa_protocol_client_send("{}", 2, 4);
    EXPECT_EQ(other.hear(), "4/3 #4095 {}");
    vexa_protocol_client_event_mesh_halt_send();
    const bytes halt = from_hex("0256580010010000025800000004");
    EXPECT_EQ(other.hear(), "6/3 #4095 " + std::string(halt.begin(), halt.end()));
    EXPECT_EQ(vexa_protocol_send("x", 1, 4, 5, 1), -1);
    EXPECT_EQ(vexa_protocol_send("x", -1, 4, 5, 1), -1);
    EXPECT_EQ(entries(), before + 2) << "those of the log";
    the_device.put("/tmp/system.cfg", key_line);
    EXPECT_EQ(vexa_protocol_client_init(), -1);
    EXPECT_EQ(log.text(), lines("!protocol_client_event_mesh_halt_send(): vexa-protocol not initilized\n"
                                "!protocol_send(): failed to send message (method: 4, type: 5, len: 56), Bad file "
                                "descriptor\n!protocol_send(): fill_vexa_payload fail\n"
                                "!protocol_client_init(): no corvo.mcip\n"
                                "!protocol_client_init(): could not start vexa-protocol\n"));
}

TEST(vexa_protocol, reports_sockets_that_it_does_not_get)
{
    const unique_fd taken{socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)};
    const sockaddr_in any = at("0.0.0.0");
    ASSERT_EQ(bind(taken.get(), reinterpret_cast<const sockaddr *>(&any), sizeof any), 0);
    const captured_log log{1};
    EXPECT_EQ(vexa_protocol_init(1), -1);
    ASSERT_EQ(vexa_protocol_client_init(), 0);
    vexa_protocol_client_send("x", 1, 4);
    rlimit before;
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit none{0, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    vexa_protocol_client_send("x", 1, 4);
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(log.text(),
              lines("!protocol_init(): unable to bind vexa socket, Address already in use\n"
                    "!multicast_socket_deinit(): unable to drop membership, Cannot assign requested address\n"
                    "!protocol_init(): could not start vexa-protocol\n"
                    "!protocol_client_sock_init(): unable to bind sock, errno:98/Address already in use\n"
                    "!protocol_client_send(): sock init failed\n"
                    "!protocol_client_sock_init(): lcm event socket error, errno:24/Too many open files\n"
                    "!protocol_client_send(): sock init failed\n"));
}

TEST(discovery_daemon, greets_and_answers)
{
    const peer other;
    auto daemon = std::async(std::launch::async, [] { return run_program({DISCOVERY_DAEMON, "1"}); });
    EXPECT_THAT(other.hear(), testing::MatchesRegex("1/1 #[0-9]+ ap-lobby"));
    other.say("good morning", 1, 1);
    EXPECT_THAT(other.hear(), testing::MatchesRegex("2/1 #[0-9]+ ap-lobby"));
    const finished done = daemon.get();
    EXPECT_EQ(done.status, 0) << done.err;
    EXPECT_EQ(done.out, "hello from 025658000001: good morning\n");
    EXPECT_THAT(done.err, testing::HasSubstr("vexa_protocol.vexa_protocol_init(): vexa_protocol init done\n"));
}
