// SPDX-License-Identifier: MIT
#include "core/owner.h"

#include <gtest/gtest.h>

namespace {

json_ref parsed(const char *text)
{
    return json_ref{json_loads(text, 0, nullptr)};
}

} // namespace

TEST(vexa_json_get_bool, takes_integers_but_no_text)
{
    const json_ref o = parsed(R"({"s":"true","t":true,"f":false,"i":5,"z":0})");
    const struct {
        const char *key;
        int value;
    } rows[] = {{"t", 1}, {"f", 0}, {"i", 1}, {"z", 0}, {"s", -9}, {"missing", -9}};
    for (const auto &row : rows)
        EXPECT_EQ(vexa_json_get_bool(o.get(), row.key, -9), row.value) << row.key;
}

TEST(vexa_json_add_i64, counts_from_nothing_and_wraps)
{
    const json_ref o = parsed(R"({"top":9223372036854775807,"s":"x"})");
    for (const char *key : {"top", "s", "missing"})
        EXPECT_EQ(vexa_json_add_i64(o.get(), key, 4), 0);
    EXPECT_EQ(vexa_json_read_i64(o.get(), "top", 0), INT64_MIN + 3);
    EXPECT_EQ(vexa_json_read_i64(o.get(), "s", 0), 4);
    EXPECT_EQ(vexa_json_read_long(o.get(), "missing", 0), 4);
}

TEST(vexa_json_read_array, gives_the_integers_only)
{
    const json_ref o = parsed(R"({"a":[1,"x",2.5],"none":["x"],"empty":[],"s":"x"})");
    EXPECT_EQ(vexa_json_append_array(o.get(), "a", -3), 0);
    EXPECT_EQ(vexa_json_append_array(o.get(), "s", 1), -1);
    int64_t *out = nullptr;
    size_t count = 0;
    for (const char *key : {"none", "empty", "s", "missing"})
        EXPECT_EQ(vexa_json_read_array(o.get(), key, &out, &count), -1) << key;
    ASSERT_EQ(vexa_json_read_array(o.get(), "a", &out, &count), 0);
    const unique_malloc<int64_t> numbers{out};
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(out[1], -3);
}

TEST(vexa_json_maybe_append_array, keeps_the_interval)
{
    const json_ref o = parsed(R"({"xArray":"no array","oldArray":[],"oldTime":-9223372036854775808})");
    const struct {
        const char *why, *name;
        time_t now;
        int result;
    } rows[] = {
        {"the first", "rssi", 1000, 0},
        {"too soon", "rssi", 1009, -2},
        {"in time", "rssi", 1010, 0},
        {"longest name", "name-of-thirty-one-characters--", 1, 0},
        {"too long", "name-of-thirty-two-characters---", 1, -1},
        {"no array", "x", 1, -1},
        {"longer ago than can be counted", "old", 1, 0},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        vexa_set_ts(row.now);
        EXPECT_EQ(vexa_json_maybe_append_array(o.get(), row.name, 1), row.result);
    }
    EXPECT_EQ(json_array_size(json_object_get(o.get(), "rssiArray")), 2U);
    EXPECT_EQ(vexa_json_read_i64(o.get(), "rssiTime", 0), 1010);
}

TEST(vexa_json_maybe_append_array, thins_in_place_when_full)
{
    const json_ref o = parsed(R"({"nArray":[]})");
    json_t *array = json_object_get(o.get(), "nArray");
    for (int i = 0; i <= 360; i++) {
        vexa_set_ts(1000 + i * 10);
        ASSERT_EQ(vexa_json_maybe_append_array(o.get(), "n", i), 0);
    }
    EXPECT_EQ(json_object_get(o.get(), "nArray"), array);
    ASSERT_EQ(json_array_size(array), 181U);
    for (size_t i = 0; i < 181; i++)
        ASSERT_EQ(json_integer_value(json_array_get(array, i)), int64_t(2 * i));
    EXPECT_EQ(vexa_json_read_i64(o.get(), "nInterval", 0), 20);
}

TEST(vexa_json_integer_value_from_obj, takes_numbers_in_text)
{
    const struct {
        const char *why, *json;
        int result, value;
    } rows[] = {
        {"hexadecimal", R"({"k":"0x1A"})", 1, 26},   {"octal", R"({"k":"010"})", 1, 8},
        {"with a tail", R"({"k":"-7 dBm"})", 1, -7}, {"empty", R"({"k":""})", 0, 99},
        {"no number", R"({"k":"x"})", 0, 99},        {"low 32 bits", R"({"k":4294967298})", 2, 2},
        {"other type", R"({"k":true})", 0, 99},      {"missing", "{}", 0, 99},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.why);
        int value = 99;
        EXPECT_EQ(vexa_json_integer_value_from_obj(parsed(row.json).get(), "o", "k", 1, &value), row.result);
        EXPECT_EQ(value, row.value);
    }
    EXPECT_EQ(vexa_json_integer_value_from_obj(parsed(R"({"k":5})").get(), "o", "k", 1, nullptr), 0);
}

TEST(mac_str_to_oui_json_string, needs_three_octets)
{
    EXPECT_STREQ(json_string_value(json_ref{mac_str_to_oui_json_string("AA:BB:CC:DD:EE:FF")}.get()), "aabbcc");
    EXPECT_EQ(mac_str_to_oui_json_string("AA:BB"), nullptr);
}

TEST(json_object_load_file_base64, leaves_an_empty_text_on_failure)
{
    const json_ref o = parsed("{}");
    const unique_file file{fopen("/", "r")};
    EXPECT_EQ(json_object_load_file_base64(o.get(), "k", file.get()), -1);
    EXPECT_STREQ(vexa_json_get_str(o.get(), "k", nullptr), "");
}
