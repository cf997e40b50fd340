// SPDX-License-Identifier: MIT
#include "tests/messaging/sealed.h"
#include "tests/support/captured_log.h"
#include "tests/support/device.h"
#include "tests/support/other_network.h"
#include "tests/support/program.h"

#include <arpa/inet.h>
#include <csignal>
#include <event2/event.h>
#include <filesystem>
#include <future>
#include <sys/resource.h>

namespace {

constexpr char key_file[] = "/var/run/vexa_protocol.info";
constexpr char key_line[] = "corvo.key=0123456789abcdeffedcba9876543210\n";
constexpr char group_line[] = "corvo.mcip=239.254.7.77\n";
constexpr char address_file[] = "/var/run/ipready.br0";

sockaddr_in at(const char *address)
{
    return {AF_INET, htons(48000), {inet_addr(address)}, {}};
}

ptrdiff_t descriptors()
{
    const std::filesystem::directory_iterator all{"/proc/self/fd"};
    return std::distance(begin(all), end(all));
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
        const int on = 1, off = 0;
        setsockopt(fd.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
        setsockopt(fd.get(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
        setsockopt(fd.get(), IPPROTO_IP, IP_RECVTTL, &on, sizeof on);
        setsockopt(fd.get(), IPPROTO_IP, IP_MULTICAST_IF, &group.imr_interface, sizeof group.imr_interface);
        setsockopt(fd.get(), IPPROTO_IP, IP_MULTICAST_LOOP, &off, sizeof off);
        EXPECT_EQ(bind(fd.get(), reinterpret_cast<const sockaddr *>(&any), sizeof any), 0);
        EXPECT_EQ(setsockopt(fd.get(), IPPROTO_IP, IP_ADD_MEMBERSHIP, &group, sizeof group), 0);
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

    // the payload, decrypted by others, of an envelope that is right
    std::string hear(uint16_t method, uint16_t type) const
    {
        bytes datagram(2000);
        alignas(cmsghdr) char control[64];
        iovec where{datagram.data(), datagram.size()};
        msghdr message{nullptr, 0, &where, 1, control, sizeof control, 0};
        datagram.resize(size_t(std::max<ssize_t>(recvmsg(fd.get(), &message, 0), 0)));
        if (datagram.size() < 40)
            return "nothing came";
        EXPECT_EQ(*CMSG_DATA(CMSG_FIRSTHDR(&message)), 64) << "time to live";
        sealed other;
        other.method = method;
        other.type = type;
        other.sequence = last = uint16_t((datagram[34] << 8 | datagram[35]) >> 4);
        other.device_id = from_hex("025658001001");
        other.iv.assign(datagram.begin() + 12, datagram.begin() + 28);
        other.padded = other.crypt({datagram.begin() + 40, datagram.end()}, 0);
        EXPECT_EQ(datagram, other.datagram());
        return {other.padded.begin(), other.padded.end() - other.padded.back()};
    }

    unique_fd fd;
    mutable uint16_t last = 0; // sequence number heard
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
    loop()
        : base{event_base_new()}, guard{event_new(
                                      base, -1, 0, [](int, short, void *) {}, nullptr)}
    {
        heard.clear();
    }
    loop(const loop &) = delete;
    ~loop()
    {
        vexa_protocol_deinit();
        event_free(guard);
        event_base_free(base);
    }
    template <typename F>
    void until(F done)
    {
        const timeval patience{10, 0};
        event_add(guard, &patience);
        while (!done() && event_pending(guard, EV_TIMEOUT, nullptr))
            event_base_loop(base, EVLOOP_ONCE);
        event_del(guard);
    }
    void until_heard(const std::string &text)
    {
        until([&] { return heard == text; });
        EXPECT_EQ(heard, text);
    }
    int events() const { return event_base_get_num_events(base, EVENT_BASE_COUNT_ADDED); }

    event_base *base;
    event *guard;
};

} // namespace

TEST(vexa_protocol_init, tells_what_is_wrong_and_tears_down)
{
    const struct {
        const char *why, *file;
        int listen;
        std::string lines;
    } rows[] = {
        {"no file", nullptr, 1,
         "[error] %(): Unable to access /var/run/vexa_protocol.info: No such file or directory\n"},
        {"nothing in it", "", 1, "[error] %(): Unable to parse /var/run/vexa_protocol.info\n"},
        {"no key", group_line, 0, "[error] %(): no corvo.key\n"},
        {"no group", key_line, 1, "[error] %(): no corvo.mcip\n"},
        {"31 digits", "corvo.key=0123456789abcdeffedcba987654321\n", 0,
         "[info ] %(): no corvo.mcip\n[error] %(): corvo.key invalid len 31\n"},
        {"33 digits", "corvo.mcip=239.254.7.77\ncorvo.key=0123456789abcdeffedcba98765432101\n", 1,
         "[error] %(): corvo.key invalid len 33\n"},
        {"not an address", "corvo.key=0123456789abcdeffedcba9876543210\ncorvo.mcip=239.254.7\n", 1,
         "[error] %(): corvo.mcip=239.254.7 is not valid\n"},
        {"not a group", "corvo.key=0123456789abcdeffedcba9876543210\ncorvo.mcip=192.0.2.9\n", 1,
         "[info ] %(): mcast_ip is 192.0.2.9\n[info ] %(): my_ip is 192.0.2.20\n"
         "[error] vexa_protocol.vexa_multicast_socket_init(): unable to add membership, Invalid argument\n"
         "[error] %(): set multicast socket fail, Invalid argument\n"
         "[error] vexa_protocol.vexa_multicast_socket_deinit(): unable to drop membership, Cannot assign requested "
         "address\n"},
    };
    const ptrdiff_t before = descriptors();
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        the_device.remove(key_file);
        if (row.file)
            the_device.put(key_file, row.file);
        const captured_log log{4};
        EXPECT_EQ(vexa_protocol_init(row.listen), -1);
        std::string lines = "[info ] %(): VEXA_DEVICE[02:56:58:00:10:01]\n" + row.lines +
                            "[error] %(): could not start vexa-protocol\n";
        for (size_t i; (i = lines.find('%')) != lines.npos;)
            lines.replace(i, 1, "vexa_protocol.vexa_protocol_init");
        EXPECT_EQ(log.text(), lines);
        EXPECT_EQ(vexa_protocol_ctrl.sock, -1);
        EXPECT_EQ(bytes(vexa_protocol_ctrl.key, vexa_protocol_ctrl.key + 16), bytes(16));
        EXPECT_EQ(descriptors(), before + 2) << "those of the log";
    }
    the_device.put(key_file, key_line);
    EXPECT_EQ(vexa_protocol_init(0), 0) << "a group is for listeners";
    EXPECT_EQ(vexa_protocol_ctrl.sock, -1);
    vexa_protocol_deinit();
}

TEST(vexa_protocol, hears_what_another_device_says)
{
    const peer other;
    const ptrdiff_t before = descriptors();
    loop own;
    ASSERT_EQ(vexa_protocol_init(1), 0);
    ASSERT_EQ(vexa_protocol_init_recv(own.base, table), 0);
    other.say("one", 1);
    own.until_heard("one;one;again;");
    {
        const captured_log log{8};
        sealed forged;
        forged.padded = {'r', 'e', 'b', 'o', 'o', 't', 0};
        other.send(forged.datagram());
        sealed full, longer; // 504 bytes, 520 bytes
        full.sequence = longer.sequence = 3;
        full.padded = pad(bytes(463, 'x'));
        longer.padded = pad(bytes(464, 'x'));
        other.send(longer.datagram());
        other.say("nobody asked", 2, 10);
        other.say("repeated", 2);
        other.send(full.datagram());
        heard.clear();
        const std::string text(463, 'x');
        own.until_heard(text + ";" + text + ";again;");
        EXPECT_EQ(log.text(), "[error] vexa_protocol.vexa_protocol_recv(): failed to decrypt the message: 1\n"
                              "[debug] libvexa.dec_payload(): packet length check fail\n"
                              "[error] vexa_protocol.vexa_protocol_recv(): failed to decrypt the message: 1\n"
                              "[debug] vexa_protocol.vexa_protocol_recv(): [nobody asked]\n"
                              "[debug] vexa_protocol.vexa_protocol_recv(): [" +
                                  text + "]\n");
        EXPECT_EQ(vexa_protocol_ctrl.rx_seq, 3);
    }
    heard.clear();
    other.say("end", 4, 11); // its first handler takes everything down
    own.until_heard("ended;");
    EXPECT_EQ(own.events(), 0);
    EXPECT_EQ(vexa_protocol_ctrl.rx_seq, 0);
    EXPECT_EQ(descriptors(), before + 3) << "those of the loop";
}

TEST(vexa_protocol, joins_when_the_address_comes_and_follows_it)
{
    const peer other;
    loop own;
    the_device.put(address_file, "0.0.0.0\n");
    const captured_log log{4};
    ASSERT_EQ(vexa_protocol_init(1), 0);
    ASSERT_EQ(vexa_protocol_init_recv(own.base, table), 0);
    const auto signal = [&](const char *address, size_t lines) {
        the_device.put(address_file, address);
        raise(SIGUSR1);
        own.until([&] {
            const std::string all = log.text();
            return size_t(std::count(all.begin(), all.end(), '\n')) >= lines;
        });
    };
    const std::string begin = "[info ] vexa_protocol.vexa_protocol_init(): VEXA_DEVICE[02:56:58:00:10:01]\n"
                              "[info ] vexa_protocol.vexa_protocol_init(): mcast_ip is 239.254.7.77\n"
                              "[info ] vexa_protocol.vexa_protocol_init(): vexa_protocol init done\n",
                      got = "[info ] vexa_protocol.vexa_usr1_handler(): Get DHCP IP\n",
                      is = "[info ] vexa_protocol.vexa_usr1_handler(): my_ip is ";
    signal("192.0.2.20", 6);
    other.say("joined", 1);
    own.until_heard("joined;joined;again;");
    signal("192.0.2.20", 7); // the same
    ASSERT_EQ(system("PATH=$PATH:/sbin:/usr/sbin; ip address add 192.0.2.77/24 dev br0"), 0);
    signal("192.0.2.77", 9);
    heard.clear();
    other.say("moved", 2);
    own.until_heard("moved;moved;again;");
    vexa_protocol_ctrl.tx_seq = 77;
    EXPECT_EQ(vexa_protocol_send("answer", 6, 9, 2, 1), 56);
    EXPECT_EQ(other.hear(9, 2), "answer");
    EXPECT_EQ(other.last, 77);
    signal("192.0.2.99", 13); // not ours
    EXPECT_EQ(log.text(),
              begin + got + is + "192.0.2.20\n" +
                  "[error] vexa_protocol.vexa_multicast_socket_deinit(): unable to drop membership, Cannot assign "
                  "requested address\n" +
                  got + got + is + "192.0.2.77\n" + got + is + "192.0.2.99\n" +
                  "[error] vexa_protocol.vexa_multicast_socket_init(): unable to set mcast local ip, Cannot assign "
                  "requested address\n"
                  "[error] vexa_protocol.vexa_usr1_handler(): set multicast socket fail, Cannot assign requested "
                  "address\n");
    ASSERT_EQ(system("PATH=$PATH:/sbin:/usr/sbin; ip address del 192.0.2.77/24 dev br0"), 0);
}

TEST(vexa_protocol, withstands_a_flood)
{
    const peer other;
    loop own;
    libvexa_log_level = 0;
    ASSERT_EQ(vexa_protocol_init(1), 0);
    ASSERT_EQ(vexa_protocol_init_recv(own.base, table), 0);
    const ptrdiff_t before = descriptors();
    sealed foreign;
    foreign.key = random_bytes(16);
    foreign.padded = pad({'f'});
    foreign.method = 5; // whatever its number
    std::string expected;
    for (int i = 1; i <= 10000; i++) {
        const std::string text = "message " + std::to_string(i);
        const uint16_t sequence = uint16_t(1 + i / 5 % 4095);
        sealed corrupted;
        corrupted.wrong_crc = 1U << i % 32;
        corrupted.padded = pad({text.begin(), text.end()});
        if (i % 5 == 1 && i > 1)
            other.say("replayed", sequence);
        else if (i % 5 == 2)
            other.send(corrupted.datagram());
        else if (i % 5 == 3)
            other.send(foreign.datagram());
        else if (i % 5 == 4)
            other.send(random_bytes(size_t(i % 600)));
        if (i % 5 == 0) {
            other.say(text, sequence);
            expected += text + ";" + text + ";again;";
        }
        if (i % 50 == 0) // as many as a socket holds
            own.until([&] { return heard.size() >= expected.size(); });
    }
    EXPECT_TRUE(heard == expected) << heard.size() << " of " << expected.size();
    EXPECT_EQ(descriptors(), before);
    EXPECT_EQ(own.events(), 2);
}

TEST(vexa_protocol_client, sends_single_messages)
{
    const peer other;
    const ptrdiff_t before = descriptors();
    const captured_log log{1};
    vexa_protocol_deinit(); // before any init: standard input stays open
    EXPECT_EQ(fcntl(0, F_GETFD) < 0, false);
    vexa_protocol_client_event_mesh_halt_send();
    ASSERT_EQ(vexa_protocol_client_init(), 0);
    vexa_protocol_ctrl.tx_seq = 0xfff;
    vexa_protocol_client_send("{}", 2, 4);
    EXPECT_EQ(other.hear(4, 3), "{}");
    EXPECT_EQ(other.last, 0xfff);
    vexa_protocol_client_event_mesh_halt_send();
    const bytes halt = from_hex("0256580010010000025800000004");
    EXPECT_EQ(other.hear(6, 3), std::string(halt.begin(), halt.end()));
    EXPECT_EQ(vexa_protocol_send("x", 1, 4, 5, 1), -1);
    EXPECT_EQ(vexa_protocol_send("x", -1, 4, 5, 1), -1);
    EXPECT_EQ(descriptors(), before + 2) << "those of the log";
    the_device.put("/tmp/system.cfg", key_line);
    EXPECT_EQ(vexa_protocol_client_init(), -1);
    EXPECT_EQ(log.text(),
              "[error] vexa_protocol.vexa_protocol_client_event_mesh_halt_send(): vexa-protocol not initilized\n"
              "[error] vexa_protocol.vexa_protocol_send(): failed to send message (method: 4, type: 5, len: 56), Bad "
              "file descriptor\n"
              "[error] vexa_protocol.vexa_protocol_send(): fill_vexa_payload fail\n"
              "[error] vexa_protocol.vexa_protocol_client_init(): no corvo.mcip\n"
              "[error] vexa_protocol.vexa_protocol_client_init(): could not start vexa-protocol\n");
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
    std::string lines =
        "%_init(): unable to bind vexa socket, Address already in use\n"
        "[error] vexa_protocol.vexa_multicast_socket_deinit(): unable to drop membership, Cannot assign "
        "requested address\n"
        "%_init(): could not start vexa-protocol\n"
        "%_client_sock_init(): unable to bind sock, errno:98/Address already in use\n"
        "%_client_send(): sock init failed\n"
        "%_client_sock_init(): lcm event socket error, errno:24/Too many open files\n"
        "%_client_send(): sock init failed\n";
    for (size_t i; (i = lines.find('%')) != lines.npos;)
        lines.replace(i, 1, "[error] vexa_protocol.vexa_protocol");
    EXPECT_EQ(log.text(), lines);
}

TEST(discovery_daemon, greets_and_answers)
{
    const peer other;
    auto daemon = std::async(std::launch::async, [] { return run_program({DISCOVERY_DAEMON, "1"}); });
    EXPECT_EQ(other.hear(1, 1), "ap-lobby");
    other.say("good morning", 1, 1);
    EXPECT_EQ(other.hear(2, 1), "ap-lobby");
    const finished done = daemon.get();
    EXPECT_EQ(done.status, 0) << done.err;
    EXPECT_EQ(done.out, "hello from 025658000001: good morning\n");
    EXPECT_THAT(done.err, testing::HasSubstr("vexa_protocol.vexa_protocol_init(): vexa_protocol init done\n"));
}
