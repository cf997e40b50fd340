// SPDX-License-Identifier: MIT
#include "tests/wireless/lists.h"

namespace {

constexpr char neighbour[] = "neighbour 02:33:00:00:00:01 radio=ra0 ";
constexpr char oui_extended[] = "025658000101";

std::string hex_of(const bytes &data)
{
    std::string text;
    for (const uint8_t byte : data)
        for (const int digit : {byte >> 4, byte & 15})
            text += "0123456789abcdef"[digit];
    return text;
}

// "dd", the length, and so many bytes that begin with `head`.
std::string element(size_t length, const std::string &head)
{
    return hex_of({0xdd, uint8_t(length)}) + head + std::string(length * 2 - head.size(), '0');
}

list_ref scan_of(const std::string &lines)
{
    set_air(lines);
    return list_ref{get_scanlist("ra0")};
}

} // namespace

TEST(get_scanlist, takes_each_field_from_its_place)
{
    const list_ref list =
        scan_of(neighbour +
                std::string{"ssid=\"0123456789abcdef0123456789ABCDEF\" flags=0xf001 frequency=0xf002 "
                            "beacon_interval=0xf003 age=0xf1000004 noise=161 rssi=200 capability=0xff width=0xf1000005 "
                            "max_rate=0xf1000006 channel=233\nneighbour 02:33:00:00:00:02 radio=ra0 capability=0xed"});
    const auto found = entries_of<scanlist>(list);
    ASSERT_EQ(found.size(), 2u);
    const scanlist &n = *found[0];
    EXPECT_EQ(bytes(n.bssid, n.bssid + 6), (bytes{2, 0x33, 0, 0, 0, 1}));
    EXPECT_STREQ(n.ssid, "0123456789abcdef0123456789ABCDE");
    EXPECT_EQ((std::array{n.rssi, n.noise, n.flags, n.frequency, n.beacon_interval, n.age}),
              (std::array{200u, 161u, 0xf001u, 0xf002u, 0xf003u, 0xf1000004u}));
    EXPECT_EQ((std::array{n.privacy, n.width, n.max_rate, n.channel, n.ibss, n.vexa_ie}),
              (std::array{16u, 0xf1000005u, 0xf1000006u, 233u, 2u, 0u}));
    EXPECT_EQ(found[1]->privacy + found[1]->ibss, 0u);
    EXPECT_STREQ(found[1]->ssid, "");
}

TEST(get_scanlist, reads_what_devices_of_the_family_say)
{
    const struct {
        const char *why;
        std::string elements;
        uint32_t is, value;
        std::string flags, name;
    } rows[] = {
        {"ten bytes are too few", element(10, "025658000000"), 0, 0, "000000000", ""},
        {"eleven do", element(11, "0256580000000000aabb"), 1, 0xbbaa, "000000000", ""},
        {"the second plain type", element(11, "0256580001000000aabb"), 1, 0xbbaa, "000000000", ""},
        {"another type", element(30, "0256580001020000aabb"), 0, 0, "000000000", ""},
        {"another maker", element(30, "0256590001010000aabb"), 0, 0, "000000000", ""},
        {"another kind of element", "30" + element(30, "0256580000000000aabb").substr(2), 0, 0, "000000000", ""},
        {"extended", element(11, oui_extended + std::string{"000000ddcc"}), 1, 0xccdd, "100000000", ""},
        {"flag bits 0, 2, 4, 6", element(11, oui_extended + std::string{"5500000000"}), 1, 0, "110110010", ""},
        {"flag bits 1, 3, 5, 7", element(11, oui_extended + std::string{"aa00000000"}), 1, 0, "101001101", ""},
        {"a name", element(16, oui_extended + std::string{"0000000000"} + "8403616263"), 1, 0, "100000000", "abc"},
        {"which begins too late", element(15, oui_extended + std::string{"0000000000"} + "84026162"), 1, 0, "100000000",
         ""},
        {"or ends behind the element", element(16, oui_extended + std::string{"0000000000"} + "8404616263"), 1, 0,
         "100000000", ""},
        {"behind parts that are passed over",
         element(30,
                 oui_extended + std::string{"0000000000"} + "8201ff" + "8302ffff" + "8103ffffff" + "7700" + "84016e"),
         1, 0, "100000000", "n"},
        {"an element behind the end is none", element(60, oui_extended).substr(0, 60), 0, 0, "000000000", ""},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        const list_ref list = scan_of(neighbour + std::string{"ies="} + row.elements);
        const scanlist &n = *entries_of<scanlist>(list)[0];
        std::string flags;
        for (const uint32_t flag : n.vexa_ie_flags)
            flags += std::to_string(flag);
        flags += std::to_string(n.vexa_ie_flags2[0]) + std::to_string(n.vexa_ie_flags2[1]);
        EXPECT_EQ(n.vexa_ie, row.is);
        EXPECT_EQ(n.vexa_ie_value, row.value);
        EXPECT_EQ(flags, row.flags);
        EXPECT_EQ(n.vexa_ie_name, row.name);
    }
}

TEST(get_scanlist, holds_the_longest_of_what_devices_say)
{
    const std::string blob1(72, '1'), blob2(72, '2'), data(480, '3'), name(64, 'n');
    set_air(neighbour +
            ("vexa_mac=02:56:58:00:90:00 vexa_name=" + name + " vexa_blob1=" + blob1 + " vexa_blob2=" + blob2) +
            "\nneighbour 02:33:00:00:00:02 radio=ra0 vexa_data=" + data +
            " ies=" + element(17, oui_extended + std::string{"0000000000770100"}));
    const captured_log log{8};
    const list_ref list{get_scanlist("ra0")};
    const auto found = entries_of<scanlist>(list);
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(bytes(found[0]->vexa_ie_mac, found[0]->vexa_ie_mac + 6), (bytes{2, 0x56, 0x58, 0, 0x90, 0}));
    EXPECT_EQ(std::string(found[0]->vexa_ie_name, 64), name);
    EXPECT_EQ(found[0]->vexa_ie_flags2[0], 0u);
    EXPECT_EQ(bytes(found[0]->vexa_ie_blob1, found[0]->vexa_ie_blob1 + 36), bytes(36, 0x11));
    EXPECT_EQ(bytes(found[0]->vexa_ie_blob2, found[0]->vexa_ie_blob2 + 36), bytes(36, 0x22));
    EXPECT_EQ(bytes(found[1]->vexa_ie_data, found[1]->vexa_ie_data + 240), bytes(240, 0x33));
    EXPECT_THAT(log.text(), testing::EndsWith("): VEXA_IE unknown field 0x77 len 1\n"));
}

namespace {

// An entry with other lengths than it has; its SSID and elements are 'x' and zeros.
std::string entry(size_t size, unsigned length, uint8_t ssid_length, unsigned elements)
{
    bytes e(size);
    std::fill(e.begin() + std::min<ptrdiff_t>(88, ptrdiff_t(size)), e.end(), 'x');
    const std::pair<size_t, unsigned> values[] = {
        {0, length & 255}, {1, length >> 8}, {85, ssid_length}, {86, elements & 255}, {87, elements >> 8}};
    for (const auto &[at, value] : values)
        if (at < size)
            e[at] = uint8_t(value);
    return hex_of(e);
}

int count_entry(const uint8_t *data, size_t length, void *context)
{
    EXPECT_EQ(data[0] | data[1] << 8, int(length));
    return ++*static_cast<int *>(context); // which does not stop the walk
}

} // namespace

TEST(parse_scan_results, ends_at_the_first_entry_that_cannot_be)
{
    const std::string good = entry(90, 90, 2, 0);
    const struct {
        const char *why;
        std::string answer;
        int result, entries;
        const char *last_ssid;
    } rows[] = {
        {"less than a header", entry(87, 87, 0, 0), -1, 0, nullptr},
        {"exactly a header", entry(88, 88, 0, 0), 0, 1, ""},
        {"two entries, and what is shorter than a third", good + good + good.substr(0, 174), 0, 2, "xx"},
        {"length 0", good + entry(90, 0, 2, 0) + good, 0, 1, "xx"},
        {"shorter than its header", good + entry(90, 87, 2, 0) + good, 0, 1, "xx"},
        {"behind the end of the answer", good + entry(90, 91, 2, 0), 0, 1, "xx"},
        {"an SSID that ends behind its entry", entry(90, 90, 255, 65535) + good, 0, 2, "xx"},
        {"an SSID that is longer than a record holds", entry(130, 130, 42, 0), 0, 1, "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx"},
        {"elements that end behind their entry", entry(100, 100, 1, 65535), 0, 1, "x"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        const list_ref list = scan_of("answer SCAN_RESULTS hex=" + row.answer);
        const auto found = entries_of<scanlist>(list);
        EXPECT_EQ(found.size(), size_t(row.entries));
        EXPECT_STREQ(found.empty() ? nullptr : found.back()->ssid, row.last_ssid);
        int count = 0;
        EXPECT_EQ(parse_scan_results("ra0", count_entry, &count), row.result);
        EXPECT_EQ(count, row.entries);
    }
}

TEST(parse_scan_results, gives_the_driver_room_twice)
{
    int count = 0;
    set_air(neighbour);
    change("fail SCAN_RESULTS E2BIG below=65535");
    EXPECT_EQ(parse_scan_results("ra0", count_entry, &count), 0);
    EXPECT_EQ(count, 1);
    change("answer SCAN_RESULTS length=65535");
    EXPECT_EQ(parse_scan_results("ra0", count_entry, &count), 0);
    EXPECT_EQ(count, 2) << "behind the entry are zeros";
    change("fail SCAN_RESULTS E2BIG below=0x7fffffff");
    EXPECT_EQ(parse_scan_results("ra0", count_entry, &count), -1);
    EXPECT_EQ(parse_scan_results(nullptr, count_entry, &count), -1);
    EXPECT_EQ(parse_scan_results("ra0", nullptr, &count), -1);
    EXPECT_EQ(parse_scan_results("ra0", count_entry, nullptr), -1);
    free_scanlist(nullptr);
}
