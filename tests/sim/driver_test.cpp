// SPDX-License-Identifier: MIT
#include "sim/driver/description.h"
#include "sim/driver/driver.h"
#include "tests/support/bytes.h"
#include "tests/support/device.h"

#include <fcntl.h>
#include <net/if.h>
#include <sstream>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

// Bare requests, as a program makes them.

namespace {

constexpr char file[] = "/var/run/vexa-sim/wireless";
constexpr char small_network[] = "radio ra0\nvap ra0 radio=ra0 ssid=Lobby bssid=02:00:00:00:00:0a power=-3\n"
                                 "vap ra1 radio=ra0 usage=downlink mode=managed ssid=\"\\x00\\xff a\\\"b\"\n"
                                 "setting time 100\nstation 02:00:00:00:00:0B vap=ra0\n"
                                 "station 02:00:00:00:00:01 vap=ra1\nstation 02:00:00:00:00:02 vap=ra1 known=no\n";
const bytes sta = from_hex("02000000000b"), far = from_hex("020000000001"), strange = from_hex("020000000002");

struct block {
    char name[16];
    uint8_t *data;
    uint16_t length, flags;
    uint8_t rest[4];
};
static_assert(sizeof(block) == 32);

struct answer {
    int result; // negated errno when below 0
    bytes data; // as long as the buffer was
    block used;
};

constexpr int kernels = 1; // it has its own words for what it does not know
constexpr uint8_t untouched = 0xee;
constexpr size_t guard = 16;

answer ask(const char *vap, unsigned long number, size_t room, const bytes &in = {}, size_t in_at = 0)
{
    const int fd = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    bytes memory(room + guard, untouched);
    std::copy(in.begin(), in.end(), memory.begin() + long(in_at));
    block b{};
    strncpy(b.name, vap, sizeof b.name - 1);
    b.data = memory.data();
    b.length = uint16_t(room);
    const int done = ioctl(fd, number, &b);
    const int result = done < 0 ? -errno : done;
    close(fd);
    EXPECT_EQ(bytes(memory.end() - guard, memory.end()), bytes(guard, untouched));
    memory.resize(room);
    return {result, memory, b};
}

int ask_tracker(unsigned long number, void *record)
{
    const int fd = open("/dev/vexa_sta_ht", O_RDWR | O_CLOEXEC);
    const int done = fd < 0 ? -1 : ioctl(fd, number, record);
    const int result = done < 0 ? -errno : done;
    if (fd >= 0)
        close(fd);
    return result;
}

struct station_request {
    const uint8_t *mac;
    uint32_t value, size;
    uint8_t *out;
    uint8_t more[24];
};

answer ask_statistics(const bytes &mac)
{
    bytes memory(48 + guard, untouched);
    station_request r{mac.data(), 7, 0, memory.data(), {}};
    const int result = ask_tracker(0xC0185501, &r);
    EXPECT_EQ(bytes(memory.end() - guard, memory.end()), bytes(guard, untouched));
    memory.resize(48);
    return {result, memory, {}};
}

uint64_t number(const bytes &data, size_t at, size_t width)
{
    uint64_t value = 0;
    for (size_t i = 0; i < width; i++)
        value |= uint64_t{data[at + i]} << 8 * i;
    return value;
}

class driver : public testing::Test {
    void SetUp() override { the_device.put(file, small_network); }
};

} // namespace

TEST_F(driver, puts_every_value_at_its_place_and_nothing_else)
{
    const std::string on_ra0 = "station 02:00:00:00:00:0b vap=ra0 ";
    const struct {
        std::string object;
        const char *places; // key@offset/width
        size_t size;
        std::function<answer()> request;
        std::vector<std::pair<size_t, bytes>> others;
    } rows[] = {
        {on_ra0 + "serial=010203040506 ip=192.0.2.9 host=till identity=\"anna \\xc3\" ",
         "state@2/2 mode_flags@4/4 capabilities@8/4 rssi@13/1 tx_rate@1784/4 ccq@1788/2 noise@1790/2 associd@1794/2 "
         "tx_power@1796/2 vlan@1798/2 auth_time@1876/4 dhcp_start@1880/4 dhcp_end@1884/4 reserved@1928/4 "
         "uptime@1952/4 idle@1956/4 rx_rate@1984/4 tx_mcs@1988/1 extra@2058/2 tcp_tx_bytes@2064/8 "
         "tcp_tx_stalls@2072/2 tcp_tx_retries@2074/2 tcp_tx_lat_max@2076/4 tcp_tx_lat_min@2080/4 "
         "tcp_tx_lat_sum@2084/4 tcp_tx_lat_samples@2088/4 tcp_rx_bytes@2096/8 tcp_rx_stalls@2104/2 "
         "tcp_rx_retries@2106/2 tcp_rx_lat_max@2108/4 tcp_rx_lat_min@2112/4 tcp_rx_lat_sum@2116/4 "
         "tcp_rx_lat_samples@2120/4 width@2128/4",
         2132,
         [] { return ask("ra0", 0x8A20, 2132, sta, 32); },
         {{32, sta},
          {38, from_hex("010203040506")},
          {1892, from_hex("090200c0")},
          {1896, from_hex("74696c6c")},
          {1992, from_hex("616e6e6120c3")},
          {2056, {6}}}},
        {on_ra0,
         "rx_packets@8/8 rx_mcast@24/4 rx_bytes@32/8 rx_retries@52/4 tx_packets@116/4 tx_retry_bursts@120/4 "
         "tx_bytes@144/8 rx_counter@260/4 tx_counter@264/4 tx_lat_total@276/4 tx_lat_samples@280/4 tx_lat_min@284/4 "
         "tx_lat_max@288/4 tx_rts_retries@292/4 tx_retries@296/8 tx_mpdu_bytes@312/8 tx_total@320/8 "
         "tx_success@328/8 tx_dropped@336/8 tx_retries_mov@376/8 tx_attempts_mov@384/8 tx_total_mov@392/8 "
         "tx_dropped_mov@400/8 rx_bytes_mov@424/8 tx_bytes_mov@432/8 tx_rate_mov@440/4 rx_rate_mov@444/4",
         448,
         [] { return ask("ra0", 0x8A22, 448, sta); },
         {{0, sta}}},
        {on_ra0,
         "radio_mode@0/4 ip_obtained@4/4 arp_answered@8/4 dns_timeouts@12/4 dns_latency@16/4 icmp_rtt@20/4 "
         "dhcp_requests@24/4 dhcp_difference@28/4 dhcp_retries@32/4 dhcp_offers@36/4 dhcp_acks@40/4 disconnects@44/4",
         48,
         [] { return ask_statistics(sta); },
         {}},
        {"radio ra0 ",
         "channel@0/2 width@2/1 frequency@4/4 chains@8/1 max_rate@12/4 busy@16/4 busy_rx@20/4 busy_tx@24/4 "
         "interference@28/4 rx_packets@32/4 tx_packets@36/4 rx_bytes@40/4 tx_bytes@44/4 rx_errors@48/4 "
         "tx_errors@52/4 tx_retries@56/4 tx_dropped@60/4 beacons@64/4 noise@68/4",
         72,
         [] { return ask("ra1", 0x8A24, 72); },
         {}},
        {"neighbour 02:00:00:00:00:99 radio=ra0 ssid=\"\\x00b\" ies=dd01ff vexa_name=ap vexa_value=0xa620 "
         "vexa_flags=0x41 vexa_mac=020000000099 ",
         "frequency@2/2 flags@4/2 beacon_interval@6/2 age@16/4 noise@20/1 rssi@21/1 capability@24/2 width@28/4 "
         "max_rate@36/4 channel@40/1",
         153,
         [] { return ask("ra1", 0x8A27, 153); },
         {{0, from_hex("9900")},
          {42, from_hex("020000000099")},
          {85, from_hex("023f00")},
          {88, from_hex("006201088c129824b048606c030128"
                        "30140100000fac040100000fac040100000fac020000"
                        "dd17025658000101410000"
                        "20a68106020000000099"
                        "84026170dd01ff")}}},
    };
    for (const auto &row : rows) {
        the_device.put(file, small_network);
        std::string line = row.object;
        bytes expected(row.size);
        std::istringstream places{row.places};
        for (std::string place; places >> place;) {
            size_t at = 0, width = 0;
            const size_t key = place.find('@');
            ASSERT_EQ(sscanf(place.c_str() + key, "@%zu/%zu", &at, &width), 2);
            uint64_t value = 0; // each byte says where it belongs
            for (size_t i = 0; i < width; i++)
                value |= uint64_t{expected[at + i] = uint8_t(at + i)} << 8 * i;
            line += place.substr(0, key) + '=' + std::to_string(value) + ' ';
        }
        for (const auto &[at, content] : row.others)
            std::copy(content.begin(), content.end(), expected.begin() + long(at));
        sim::driver::change(line);
        const answer given = row.request();
        EXPECT_EQ(given.result, 0) << line;
        EXPECT_EQ(given.data, expected) << line;
    }
}

TEST_F(driver, answers_within_the_room_it_is_given)
{
    const struct {
        const char *why, *vap;
        unsigned long number;
        size_t room;
        const bytes &in;
        int result;
        const char *lines = "";
        uint16_t used = 0;
        const char *hex = "";
    } rows[] = {
        {"name", "ra0", 0x8B1B, 40, {}, 0, "", 5, "4c6f626279"},
        {"any name", "ra1", 0x8B1B, 6, {}, 0, "", 6, "00ff20612262"},
        {"name too long", "ra1", 0x8B1B, 5, {}, -E2BIG},
        {"what is not there", "ra2", 0x8B1B, 40, {}, kernels},
        {"what the kernel has without a radio", "br0", 0x8A24, 72, {}, kernels},
        {"stations of a link", "ra1", 0x8A21, 12, {}, 0, "", 12, "020000000001020000000002"},
        {"stations of a link, too many", "ra1", 0x8A21, 11, {}, -E2BIG},
        {"nobody", "ra1", 0x8A21, 12, {}, 0, "remove station 02:00:00:00:00:01\nremove station 02:00:00:00:00:02", 0},
        {"stations of others", "ra0", 0x8A21, 12, {}, -EOPNOTSUPP},
        {"station record", "ra1", 0x8A22, 448, far, 0, "", 448},
        {"station record too large", "ra1", 0x8A22, 447, far, -E2BIG},
        {"no room for an address", "ra1", 0x8A22, 5, {}, -ENOENT},
        {"stranger", "ra1", 0x8A22, 448, strange, -ENOENT},
        {"of another interface", "ra1", 0x8A22, 448, sta, -ENOENT},
        {"radar", "ra0", 0x8A29, 4, {}, 0, "radio ra0 dfs=60", 4, "3c000000"},
        {"antenna", "ra0", 0x8A2A, 4, {}, 0, "radio ra0 gain=5", 4, "05000000"},
        {"number of none", "ra0", 0x8A23, 72, {}, kernels},
        {"no neighbour", "ra0", 0x8A27, 24576, {}, 0, "", 0},
        {"failure", "ra0", 0x8A24, 72, {}, -EIO, "fail RADIOSTAT EIO"},
        {"failure elsewhere", "ra0", 0x8A24, 72, {}, 0, "fail RADIOSTAT@ra1 EIO", 72},
        {"failure lifted", "ra0", 0x8A24, 72, {}, 0, "fail RADIOSTAT EIO\nfail RADIOSTAT none", 72},
        {"until it is large", "ra1", 0x8A21, 16383, {}, -E2BIG, "fail GETMACS E2BIG below=16384"},
        {"large enough", "ra1", 0x8A21, 16384, {}, 0, "fail GETMACS E2BIG below=16384", 12},
        {"always", "ra1", 0x8A21, 65535, {}, -E2BIG, "fail GETMACS E2BIG"},
        {"cut", "ra1", 0x8A22, 448, far, 0, "answer NODESTAT cut=9", 9},
        {"hostile", "ra0", 0x8A27, 20, {}, 0, "answer SCAN_RESULTS hex=0000.ff11", 4, "0000ff11"},
        {"hostile, too", "ra0", 0x8A27, 3, {}, -E2BIG, "answer SCAN_RESULTS hex=0000ff11"},
        {"a lie", "ra1", 0x8A21, 12, {}, 0, "answer GETMACS@ra1 length=65535", 65535, "020000000001"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        the_device.put(file, small_network);
        sim::driver::change(row.lines);
        const answer given = ask(row.vap, row.number, row.room, row.in);
        if (row.result == kernels)
            EXPECT_LT(given.result, 0);
        else
            EXPECT_EQ(given.result, row.result);
        const bytes start = from_hex(row.hex);
        EXPECT_EQ(bytes(given.data.begin(), given.data.begin() + long(start.size())), start);
        EXPECT_EQ(given.used.length, given.result == 0 ? row.used : row.room);
        const bool kept = std::all_of(given.data.begin() + long(row.in.size()), given.data.end(),
                                      [](uint8_t byte) { return byte == untouched; });
        EXPECT_TRUE(given.result == 0 || kept);
    }
}

TEST_F(driver, answers_in_the_block_itself)
{
    const auto answer_of = [](const char *vap, unsigned long number) {
        const block used = ask(vap, number, 0).used;
        const auto *first = reinterpret_cast<const uint8_t *>(&used.data);
        return bytes(first, first + 8);
    };
    EXPECT_EQ(number(answer_of("ra0", 0x8B07), 0, 4), 3u);
    EXPECT_EQ(number(answer_of("ra1", 0x8B07), 0, 4), 2u);
    EXPECT_EQ(answer_of("ra0", 0x8B15), from_hex("010002000000000a"));
    EXPECT_EQ(answer_of("ra0", 0x8B27), from_hex("fdffffff01000000"));
}

TEST_F(driver, tracks_the_stations_of_whom_it_serves)
{
    bytes out(6 + guard, untouched);
    const auto list = [&](const char *vap, uint64_t room) {
        struct {
            uint64_t index;
            uint8_t *out;
            uint64_t room;
        } r{if_nametoindex(vap), out.data(), room};
        return ask_tracker(0x80185502, &r);
    };
    EXPECT_EQ(list("ra0", 5), -E2BIG);
    EXPECT_EQ(list("ra1", 6), -ENODEV);
    EXPECT_EQ(list("br0", 6), -ENODEV);
    EXPECT_EQ(out, bytes(6 + guard, untouched));
    EXPECT_EQ(list("ra0", 6), 6);
    EXPECT_EQ(bytes(out.begin(), out.begin() + 6), sta);
    EXPECT_EQ(out[6], untouched);

    EXPECT_EQ(ask_statistics(strange).result, 0) << "known here, not to the driver";
    EXPECT_EQ(ask_statistics(from_hex("020000000055")).result, -ENOENT);
    sim::driver::change("station 02:00:00:00:00:0b probe=40000102");
    for (const uint32_t room : {3U, 4U, 9U}) {
        bytes frame(guard, untouched);
        station_request r{sta.data(), 1, room, frame.data(), {}};
        EXPECT_EQ(ask_tracker(0x80185504, &r), 0);
        EXPECT_EQ(r.size, std::min(room, 4U));
        EXPECT_EQ(frame[r.size], untouched);
    }
    sim::driver::change("fail GET_STATIONS E2BIG\nfail GET_STATISTICS ETIMEDOUT");
    EXPECT_EQ(list("ra0", 6), -E2BIG);
    EXPECT_EQ(ask_statistics(sta).result, -ETIMEDOUT);
}

TEST_F(driver, keeps_what_is_set)
{
    const bytes scan = from_hex("536974655375727665793d0a00"), limited = from_hex("1100000001000000");
    EXPECT_EQ(ask("ra0", 0x8BE2, 128, scan).result, 0);
    EXPECT_EQ(ask("ra0", 0x8BE2, 4, from_hex("6267613d")).result, 0);
    EXPECT_EQ(ask("ra0", 0x8BE2, 4, from_hex("6267623d")).result, -EINVAL);
    EXPECT_EQ(ask("ra1", 0x8A25, 8, limited).result, 0);
    EXPECT_EQ(ask("ra1", 0x8A25, 7).result, -EINVAL);
    station_request r{sta.data(), 5, 0x7964616c, nullptr, {}}; // the key begins where others have a size
    EXPECT_EQ(ask_tracker(0x40305503, &r), 0);
    EXPECT_EQ(sim::driver::log(), "SET ra0 SiteSurvey=.\nSET ra0 bga=\nRATELIMIT ra1 17 1\n"
                                  "SET_KEYID 02:00:00:00:00:0b 5 lady\n");
    sim::driver::change("setting log all");
    ask("ra1", 0x8A21, 11);
    EXPECT_THAT(sim::driver::log(), testing::EndsWith("\nGETMACS ra1 11 = -7\n"));
}

TEST_F(driver, lets_counters_move_with_the_time_alone)
{
    sim::driver::change("quality busy tx_attempts_mov=400~300 tx_retries_mov=90~80 tx_packets=10+50.5/s load=2\n"
                        "station 02:00:00:00:00:0b quality=busy tx_dropped=0-3/s tx_lat_total=0xfffffff0+1/s");
    const auto read = [](const char *setting) {
        sim::driver::change(setting);
        return ask("ra0", 0x8A22, 448, sta).data;
    };
    const bytes first = read(""), later = read("setting time 160");
    EXPECT_EQ(read("setting time 100"), first);
    EXPECT_EQ(number(first, 116, 4), 20u + 10100);
    EXPECT_EQ(number(later, 116, 4), 20u + 16160);
    EXPECT_EQ(number(later, 336, 8), 0u) << "no counter falls below 0";
    EXPECT_EQ(number(later, 276, 4), 144u) << "and one that is full begins anew";
    for (int second = 0; second < 100; second++) {
        const bytes now = read(("setting time " + std::to_string(second)).c_str());
        EXPECT_LE(number(now, 376, 8), number(now, 384, 8)) << second;
    }
    const bytes running = read("setting time passes");
    usleep(1000);
    EXPECT_LT(number(running, 116, 4), 10000u);
    EXPECT_GE(number(read(""), 116, 4), number(running, 116, 4));
}

TEST_F(driver, takes_away_what_a_request_needs)
{
    sim::driver::change("fail open EACCES\nfail socket EMFILE");
    EXPECT_EQ(open("/dev/vexa_sta_ht", O_RDWR), -1);
    EXPECT_EQ(errno, EACCES);
    EXPECT_EQ(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0), -1);
    EXPECT_EQ(errno, EMFILE);
    const int other = socket(AF_UNIX, SOCK_DGRAM, 0), file_fd = open("/dev/null", O_RDONLY);
    EXPECT_GE(other, 0);
    block b{};
    strcpy(b.name, "ra0");
    EXPECT_EQ(ioctl(file_fd, 0x8B07, &b), -1) << "no socket";
    EXPECT_EQ(errno, ENOTTY);
    the_device.put(file, "radio");
    EXPECT_EQ(ioctl(other, 0x8B07, &b), 0) << "the last description that could be read holds";
    the_device.remove(file);
    EXPECT_EQ(ioctl(other, 0x8B07, &b), -1);
    close(other);
    close(file_fd);
}

TEST(description, says_what_it_does_not_understand)
{
    const struct {
        const char *why, *text, *wrong;
    } rows[] = {
        {"kind", "\nbird x", "line 2: nothing is called bird"},
        {"key", "radio ra0 colour=1", "line 1: a radio has no 'colour'"},
        {"number", "radio ra0 channel=1x", "line 1: no number: 1x"},
        {"no name", "vap", "line 1: a name is missing behind vap"},
        {"no such radio", "vap ra0 radio=ra1", "line 1: there is no radio 'ra1'"},
        {"address", "radio r\nvap v radio=r\nstation 02:00 vap=v", "line 3: no hardware address: 02:00"},
        {"request", "fail NOTHING EIO", "line 1: no request is called NOTHING"},
        {"error", "fail GETMACS EWRONG", "line 1: no error is called 'EWRONG'"},
        {"quote", "radio \"ra0", "line 1: a quote is not closed"},
        {"bytes", "answer GETMACS hex=0g", "line 1: no bytes in hexadecimal: 0g"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        try {
            sim::driver::read_description(row.text);
            ADD_FAILURE();
        } catch (const sim::error &wrong) {
            EXPECT_STREQ(wrong.what(), row.wrong);
        }
    }
}
