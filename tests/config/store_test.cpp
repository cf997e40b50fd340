// SPDX-License-Identifier: MIT
#include "tests/config/config.h"

TEST(save_cfg, writes_what_parses_back_to_the_same_entries)
{
    std::mt19937 random{212};
    for (int i = 0; i < 300; i++) {
        const config cfg = config_of(random_text(random, {"k", "A.1", "=", "= ", " ", "\n", "\n", "\r\n", "v"}, 60));
        ASSERT_EQ(save_cfg(cfg.get(), "/tmp/saved.cfg"), 0);
        ASSERT_EQ(the_device.text("/tmp/saved.cfg"), "# CFG Start\n" + lines(cfg));
        ASSERT_EQ(lines(config{parse("/tmp/saved.cfg"), free_cfg}), lines(cfg));
    }
    EXPECT_EQ(save_cfg(nullptr, "/tmp/missing/system.cfg"), -1);
    EXPECT_EQ(save_cfg(nullptr, "/dev/full"), -1) << "noticed when the file is closed";
    const config large = config_of("k=" + std::string(100000, 'v') + "\n");
    EXPECT_EQ(save_cfg(large.get(), "/dev/full"), -1);
    testing::internal::CaptureStdout();
    print_cfg(large.get());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), lines(large));
}
