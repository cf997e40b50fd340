// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

TEST(exec_cmp, tells_where_two_commands_differ)
{
    const std::string longer(5000, 'x');
    exec_desc *first = exec_create("/bin/x", "a", longer.c_str(), nullptr);
    EXPECT_EQ(first->argv[0], first->path);
    EXPECT_EQ(first->argv[2], longer.substr(0, 4096));
    const std::pair<exec_desc *, int> rows[] = {
        {exec_copy(first), 0},
        {exec_create("/bin/x", "a", "c", nullptr), 2},
        {exec_create("/bin/x", "a", nullptr), -ENOENT},
        {exec_create(longer.c_str(), "a", "b", nullptr), -ESRCH},
        {exec_create("", nullptr), -1},
    };
    for (const auto &[other, result] : rows) {
        EXPECT_EQ(exec_cmp(first, other), result);
        exec_destroy(other);
    }
    exec_destroy(first);
}
