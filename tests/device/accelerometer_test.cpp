// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

#include <jansson.h>

namespace {

const std::string folder = "/sys/bus/i2c/devices/1-0018/iio:device0/";

std::string status()
{
    json_t *json = prepare_accelerometer_status();
    char *text = json_dumps(json, 0);
    std::string result = text;
    free(text);
    json_decref(json);
    return result;
}

} // namespace

TEST(accelerometer, is_asked_for_each_axis)
{
    EXPECT_EQ(has_accelerometer(), 1);
    EXPECT_EQ(status(), R"({"x": -12, "y": 7, "z": 1021})");
    EXPECT_EQ(the_device.text(folder + "sampling_frequency"), "50");
    the_device.put(folder + "in_accel_x_raw", "-12345678\n");
    the_device.put(folder + "in_accel_y_raw", "up\n");
    the_device.remove(folder + "in_accel_z_raw");
    EXPECT_EQ(status(), R"({"x": -123456, "y": 0, "z": 0})") << "eight bytes of a line";
    the_device.remove("/sys/bus/i2c/devices/1-0018");
    EXPECT_EQ(has_accelerometer(), 0);
    EXPECT_EQ(status(), R"({"x": 0, "y": 0, "z": 0})");
}
