// SPDX-License-Identifier: MIT
#include "core/owner.h"
#include "tests/support/device.h"

static json_ref parsed(const char *text)
{
    return json_ref{json_loads(text, 0, nullptr)};
}

TEST(vexa_json_maybe_append_array, thins_in_place_when_full)
{
    const json_ref o = parsed(R"({"nArray":[],"nTime":-9223372036854775808,"xArray":"no array"})");
    json_t *array = json_object_get(o.get(), "nArray");
    for (int i = 0; i <= 360; i++) {
        vexa_set_ts(1000 + i * 10);
        ASSERT_EQ(vexa_json_maybe_append_array(o.get(), "n", i), 0);
        vexa_set_ts(1009 + i * 10);
        ASSERT_EQ(vexa_json_maybe_append_array(o.get(), "n", i), -2);
    }
    EXPECT_EQ(json_object_get(o.get(), "nArray"), array);
    ASSERT_EQ(json_array_size(array), 181U);
    for (size_t i = 0; i < 181; i++)
        ASSERT_EQ(json_integer_value(json_array_get(array, i)), int64_t(2 * i));
    EXPECT_EQ(vexa_json_read_i64(o.get(), "nInterval", 0), 20);
    EXPECT_EQ(vexa_json_maybe_append_array(o.get(), "x", 1), -1);
    EXPECT_EQ(vexa_json_maybe_append_array(o.get(), "name-of-thirty-one-characters--", 1), 0);
    EXPECT_EQ(vexa_json_maybe_append_array(o.get(), "name-of-thirty-two-characters---", 1), -1);
}

TEST(vexa_json_integer_value_from_obj, takes_numbers_in_text)
{
    const struct {
        const char *json;
        int result, value;
    } rows[] = {
        {R"({"k":"0x1A"})", 1, 26}, {R"({"k":"-010 dBm"})", 1, -8}, {R"({"k":""})", 0, 99},
        {R"({"k":"x"})", 0, 99},    {R"({"k":4294967298})", 2, 2},  {R"({"k":true})", 0, 99},
    };
    for (const auto &row : rows) {
        int value = 99;
        EXPECT_EQ(vexa_json_integer_value_from_obj(parsed(row.json).get(), "o", "k", 1, &value), row.result)
            << row.json;
        EXPECT_EQ(value, row.value) << row.json;
    }
}
