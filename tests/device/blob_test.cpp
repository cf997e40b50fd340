// SPDX-License-Identifier: MIT
// The stand-in for the platform's bus client against recorded messages, and what is read from them.
#include "core/owner.h"
#include "tests/support/bytes.h"
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

extern "C" {
#include <libubox/blobmsg_json.h>
}

namespace {

const runs_on machine{the_machine};

struct filled : blob_buf {
    filled() : blob_buf{} { blob_buf_init(this, 0); }
    filled(const filled &) = delete;
    filled &operator=(const filled &) = delete;
    ~filled() { blob_buf_free(this); }
    std::string json(int indent = -1) const
    {
        return unique_text{blobmsg_format_json_with_cb(head, true, nullptr, nullptr, indent)}.get();
    }
};

} // namespace

TEST(blobmsg, encodes_and_shows_each_type)
{
    filled buf;
    blobmsg_add_u8(&buf, "a", 1);
    blobmsg_add_u16(&buf, "ab", 0xfffe);
    blobmsg_add_u32(&buf, "abc", uint32_t(-2));
    blobmsg_add_u64(&buf, "abcd", uint64_t(-2));
    blobmsg_add_double(&buf, "abcde", -1.5);
    blobmsg_add_string(&buf, "s", "abcd");
    blobmsg_add_field(&buf, BLOBMSG_TYPE_UNSPEC, "n", nullptr, 0);
    blobmsg_close_table(&buf, blobmsg_open_table(&buf, "t"));
    void *array = blobmsg_open_array(&buf, "arr");
    blobmsg_add_u8(&buf, nullptr, 1);
    blobmsg_close_array(&buf, array);
    const auto *first = reinterpret_cast<const uint8_t *>(buf.head);
    EXPECT_EQ(bytes(first, first + blob_pad_len(buf.head)),
              from_hex("00000090870000090001610001000000"
                       "8600000e0002616200000000fffe0000850000100003616263000000fffffffe"
                       "840000140004616263640000fffffffffffffffe880000140005616263646500bff8000000000000"
                       "8300000d0001730061626364000000008000000800016e008200000800017400"
                       "810000180003617272000000870000090000000001000000"));
    EXPECT_EQ(buf.json(), R"({"a":true,"ab":-2,"abc":-2,"abcd":-2,"abcde":-1.500000,"s":"abcd","n":null,"t":{},)"
                          R"("arr":[true]})");
    filled escaped;
    blobmsg_add_string(&escaped, "q\"", "\f\n\\/\x7f");
    EXPECT_EQ(escaped.json(0), "{\n\t\"q\\\"\": \"\\u000c\\n\\\\/\x7f\"\n}");
}

TEST(blobmsg, reads_no_deeper_than_it_can_go)
{
    filled buf;
    std::vector<void *> opened(100000);
    for (void *&array : opened)
        ASSERT_TRUE(array = blobmsg_open_array(&buf, nullptr));
    for (; !opened.empty(); opened.pop_back())
        blobmsg_close_array(&buf, opened.back());
    EXPECT_LT(buf.json().size(), 200u);
}

TEST(mcagent_stats_parse_ap_stats, takes_a_number_of_any_shape)
{
    const auto parsed = [](void (*add)(blob_buf *)) {
        filled buf;
        add(&buf);
        const captured_log log;
        int satisfaction = 5;
        const int result = mcagent_stats_parse_ap_stats(buf.head, &satisfaction);
        EXPECT_EQ(result, log.text().empty() ? 0 : -1);
        return std::to_string(satisfaction) + log.text();
    };
    const std::string tag = "5[error] ubus_mcagent_stats.mcagent_stats_parse_ap_stats(): ";
    const std::string wrong = tag + "Failed to parse satisfaction\n", missing = tag + "Satisfaction is NULL\n";
    EXPECT_EQ(parsed([](blob_buf *b) { blobmsg_add_u64(b, "satisfaction", 87); }), "87");
    EXPECT_EQ(parsed([](blob_buf *b) { blobmsg_add_u8(b, "satisfaction", 0xff); }), "-1");
    EXPECT_EQ(parsed([](blob_buf *b) { blobmsg_add_string(b, "satisfaction", "100"); }), "100");
    EXPECT_EQ(parsed([](blob_buf *b) { blobmsg_add_string(b, "satisfaction", "1x"); }), wrong);
    EXPECT_EQ(parsed([](blob_buf *b) { blobmsg_add_u32(b, "satisfaction", 101); }), wrong);
    EXPECT_EQ(parsed([](blob_buf *b) { blobmsg_add_double(b, "satisfaction", 1); }), wrong);
    EXPECT_EQ(parsed([](blob_buf *b) { blobmsg_add_u32(b, "other", 1); }), missing);
    EXPECT_EQ(parsed([](blob_buf *) {}), missing);
}
