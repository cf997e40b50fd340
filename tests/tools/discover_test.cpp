// SPDX-License-Identifier: MIT
#include "tests/tools/vexactl.h"

#define KEY "0123456789abcdeffedcba9876543210"

TEST(discover, carries_a_message_from_device_to_device)
{
    const finished done = shell(EXAMPLES "/two_devices.sh \"$VEXACTL\"");
    EXPECT_EQ(done.status, 0) << done.err;
    EXPECT_THAT(done.out, testing::ContainsRegex("first device, 192.0.2.20: vexactl discover listen\n"
                                                 "02:56:58:00:20:01  method 9  type 1  #[0-9]+  "
                                                 "\\{\"hello\":\"from the second device\"\\}\n$"));
    EXPECT_THAT(done.out, testing::ContainsRegex("\nAccepted +[^ ]+ on\n"));
}

TEST(discover, tells_why_it_does_nothing)
{
    EXPECT_EQ(vexactl({"discover", "listen", "--count", "1", "--timeout", "1"}).err, "vexactl: 0 of 1 messages came\n");
    EXPECT_EQ(vexactl({"discover", "send"}).status, 2);
    EXPECT_EQ(vexactl({"discover", "send", "x", "--method", "65536"}).status, 2);
    EXPECT_EQ(vexactl({"discover", "send", "--hex", "00ff"}).out, "56 bytes sent\n");
    EXPECT_EQ(vexactl({"discover", "mesh-halt"}).status, 0);
    the_device.remove("/var/run/vexa_protocol.info");
    EXPECT_THAT(vexactl({"discover", "send", "x", "-v"}).err, testing::HasSubstr("Unable to access /var/run/vexa_pro"));
    EXPECT_EQ(vexactl({"discover", "listen"}).status, 3);
}

TEST(envelope, tells_every_field_and_why_a_datagram_is_refused)
{
    const std::string good = lines_of(vexactl({"envelope", "seal", KEY, "hi", "--device", "02:00:00:00:00:09"}).out)[0],
                      plain = lines_of(vexactl({"envelope", "seal", KEY, "hi", "--plain"}).out)[0];
    const auto with = [&](size_t at, const char *digits) {
        return std::string{good}.replace(at, strlen(digits), digits);
    };
    const json_document opened = json_of(vexactl({"envelope", "open", KEY, good, "--json"}).out);
    EXPECT_EQ(member_text(opened.get(), "text"), "hi");
    EXPECT_EQ(member_text(opened.get(), "device"), "02:00:00:00:00:09");
    EXPECT_EQ(json_object_size(opened.get()), 14u);
    const struct {
        std::string datagram, reason;
    } rows[] = {
        {good.substr(0, 78), "39 bytes are no header"},
        {good + "00", "the length says 16 bytes of payload, and 17 are there"},
        {with(0, "23"), "the magic is not 22334455"},
        {with(8, "01"), "the version is below 2"},
        {plain, "it is not encrypted"},
        {std::string{plain}.replace(10, 2, "02"), "the payload is no whole number of blocks"},
        {with(24, good[24] == '0' ? "1" : "0"), "the CRC of what the key decrypts is "},
        {lines_of(vexactl({"envelope", "seal", KEY, "--hex", ""}).out)[0], "there is no payload"},
    };
    for (const auto &row : rows) {
        const finished done = vexactl({"envelope", "open", KEY, row.datagram});
        EXPECT_EQ(done.status, 1);
        EXPECT_THAT(done.err, testing::StartsWith("vexactl: refused: " + row.reason));
    }
    EXPECT_EQ(vexactl({"envelope", "open", "0123", good}).status, 2);
    EXPECT_EQ(vexactl({"anonid", "02:56:58:00:ab:cd", "x"}).out.size(), 31u);
    EXPECT_EQ(vexactl({"anonid", "02:56:58:00:ab:cd", ""}).status, 2);
}
