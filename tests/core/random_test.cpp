// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <sys/mount.h>

TEST(gen_rand, seeds_the_generator_from_the_random_device_each_time)
{
    const uint32_t seed = 42;
    ASSERT_EQ(umount2("/dev/urandom", MNT_DETACH), 0);
    the_device.put("/dev/urandom", {reinterpret_cast<const char *>(&seed), sizeof seed});
    srand(seed);
    const int drawn[] = {rand(), rand()};
    unsigned char bytes[2];
    EXPECT_EQ(gen_rand_bytes(bytes, 2), 2);
    EXPECT_THAT(bytes, testing::ElementsAre(drawn[0] & 0xff, drawn[1] & 0xff));
    char text[6] = "kept", expected[5];
    EXPECT_EQ(gen_rand_hex(text, 4), 0) << "whole pairs and a zero make an odd size";
    EXPECT_EQ(gen_rand_string(text, 0), nullptr);
    EXPECT_STREQ(text, "kept");
    EXPECT_EQ(gen_rand_hex(text, 5), 2);
    snprintf(expected, sizeof expected, "%02X%02X", bytes[0], bytes[1]);
    EXPECT_STREQ(text, expected);
    const auto letter = [](int n) { return char(n < 10 ? '0' + n : n < 36 ? 'A' + n - 10 : 'a' + n - 36); };
    EXPECT_EQ(gen_rand_string(text, 2), std::string({letter(drawn[0] % 62), letter(drawn[1] % 62)}));

    the_device.put("/dev/urandom", "");
    const captured_log log;
    EXPECT_EQ(gen_rand_bytes(bytes, 1), 1);
    EXPECT_EQ(log.text(), "[debug] libvexa_util.urandom(): read returned error in urandom\n");
}
