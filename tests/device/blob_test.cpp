// SPDX-License-Identifier: MIT
// The stand-in for the platform's bus client against recorded messages, and what is read from them.
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
    std::string hex() const
    {
        std::string text;
        for (size_t i = 0; i < blob_pad_len(head); i++)
            text += "0123456789abcdef"[reinterpret_cast<unsigned char *>(head)[i] >> 4],
                text += "0123456789abcdef"[reinterpret_cast<unsigned char *>(head)[i] & 15];
        return text;
    }
    std::string json(int indent = -1) const
    {
        char *text = blobmsg_format_json_with_cb(head, true, nullptr, nullptr, indent);
        const std::string result = text;
        free(text);
        return result;
    }
};

} // namespace

TEST(blobmsg, encodes_and_shows_each_type)
{
    const struct {
        std::function<void(blob_buf *)> add;
        const char *hex, *json;
    } rows[] = {
        {[](blob_buf *b) { blobmsg_add_u8(b, "a", 1); },
         "00000010"
         "87000009"
         "00016100"
         "01000000",
         R"({"a":true})"},
        {[](blob_buf *b) { blobmsg_add_u16(b, "ab", 0xfffe); },
         "00000014"
         "8600000e"
         "00026162"
         "00000000"
         "fffe0000",
         R"({"ab":-2})"},
        {[](blob_buf *b) { blobmsg_add_u32(b, "abc", uint32_t(-2)); },
         "00000014"
         "85000010"
         "00036162"
         "63000000"
         "fffffffe",
         R"({"abc":-2})"},
        {[](blob_buf *b) { blobmsg_add_u64(b, "abcd", uint64_t(-2)); },
         "00000018"
         "84000014"
         "00046162"
         "63640000"
         "ffffffff"
         "fffffffe",
         R"({"abcd":-2})"},
        {[](blob_buf *b) { blobmsg_add_double(b, "abcde", -1.5); },
         "00000018"
         "88000014"
         "00056162"
         "63646500"
         "bff80000"
         "00000000",
         R"({"abcde":-1.500000})"},
        {[](blob_buf *b) { blobmsg_add_string(b, "s", "abcd"); },
         "00000014"
         "8300000d"
         "00017300"
         "61626364"
         "00000000",
         R"({"s":"abcd"})"},
        {[](blob_buf *b) { blobmsg_add_field(b, BLOBMSG_TYPE_UNSPEC, "n", nullptr, 0); },
         "0000000c"
         "80000008"
         "00016e00",
         R"({"n":null})"},
        {[](blob_buf *b) { blobmsg_close_table(b, blobmsg_open_table(b, "t")); },
         "0000000c"
         "82000008"
         "00017400",
         R"({"t":{}})"},
        {[](blob_buf *b) {
             void *array = blobmsg_open_array(b, "arr");
             blobmsg_add_u8(b, nullptr, 1);
             blobmsg_close_array(b, array);
         },
         "0000001c"
         "81000018"
         "00036172"
         "72000000"
         "87000009"
         "00000000"
         "01000000",
         R"({"arr":[true]})"},
    };
    for (const auto &row : rows) {
        filled buf;
        row.add(&buf);
        EXPECT_EQ(buf.hex(), row.hex);
        EXPECT_EQ(buf.json(), row.json);
    }
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
    const struct {
        std::function<void(blob_buf *)> add;
        int result, satisfaction;
        const char *log;
    } rows[] = {
        {[](blob_buf *b) { blobmsg_add_u64(b, "satisfaction", 87); }, 0, 87, ""},
        {[](blob_buf *b) { blobmsg_add_u8(b, "satisfaction", 0xff); }, 0, -1, ""},
        {[](blob_buf *b) { blobmsg_add_string(b, "satisfaction", "100"); }, 0, 100, ""},
        {[](blob_buf *b) { blobmsg_add_string(b, "satisfaction", "1x"); }, -1, 5, "Failed to parse satisfaction\n"},
        {[](blob_buf *b) { blobmsg_add_u32(b, "satisfaction", 101); }, -1, 5, "Failed to parse satisfaction\n"},
        {[](blob_buf *b) { blobmsg_add_double(b, "satisfaction", 1); }, -1, 5, "Failed to parse satisfaction\n"},
        {[](blob_buf *b) { blobmsg_add_u32(b, "other", 1); }, -1, 5, "Satisfaction is NULL\n"},
        {[](blob_buf *) {}, -1, 5, "Satisfaction is NULL\n"},
    };
    for (const auto &row : rows) {
        filled buf;
        row.add(&buf);
        const captured_log log;
        int satisfaction = 5;
        EXPECT_EQ(mcagent_stats_parse_ap_stats(buf.head, &satisfaction), row.result);
        EXPECT_EQ(satisfaction, row.satisfaction);
        EXPECT_EQ(log.text(), row.result == 0 ? ""
                                              : "[error] ubus_mcagent_stats.mcagent_stats_parse_ap_stats(): " +
                                                    std::string(row.log));
    }
}
