// SPDX-License-Identifier: MIT
#include "tests/device/json.h"

TEST(accelerometer, is_asked_for_each_axis)
{
    const std::string folder = "/sys/bus/i2c/devices/1-0018/iio:device0/";
    const auto status = [] { return text_of(json_ref{prepare_accelerometer_status()}.get()); };
    EXPECT_EQ(has_accelerometer(), 1);
    EXPECT_EQ(status(), R"({"x":-12,"y":7,"z":1021})");
    EXPECT_EQ(the_device.text(folder + "sampling_frequency"), "50");
    the_device.put(folder + "in_accel_x_raw", "-12345678\n");
    the_device.put(folder + "in_accel_y_raw", "up\n");
    the_device.remove(folder + "in_accel_z_raw");
    EXPECT_EQ(status(), R"({"x":-123456,"y":0,"z":0})") << "eight bytes of a line";
    the_device.remove("/sys/bus/i2c/devices/1-0018");
    EXPECT_EQ(has_accelerometer(), 0);
    EXPECT_EQ(status(), R"({"x":0,"y":0,"z":0})");
}
