// SPDX-License-Identifier: MIT
#include <cerrno>
#include <gtest/gtest.h>
#include <libvexa.h>
#include <memory>
#include <string>

namespace {

struct destroy_exec {
    void operator()(exec_desc *d) const { exec_destroy(d); }
};
using unique_exec = std::unique_ptr<exec_desc, destroy_exec>;

} // namespace

TEST(exec_create, makes_a_vector_for_execv)
{
    const std::string longer(5000, 'x');
    const unique_exec d{exec_create(longer.c_str(), "a", longer.c_str(), nullptr)};
    EXPECT_EQ(d->argc, 3);
    EXPECT_EQ(d->argv[0], d->path);
    EXPECT_EQ(d->path, longer.substr(0, 4095));
    EXPECT_EQ(d->argv[2], longer.substr(0, 4096));
    EXPECT_EQ(d->argv[3], nullptr);
    EXPECT_EQ(exec_create("", "a", nullptr), nullptr);
}

TEST(exec_cmp, tells_where_two_commands_differ)
{
    const unique_exec ab{exec_create("/bin/x", "a", "b", nullptr)};
    const unique_exec copy{exec_copy(ab.get())};
    const unique_exec ac{exec_create("/bin/x", "a", "c", nullptr)};
    const unique_exec a{exec_create("/bin/x", "a", nullptr)};
    const unique_exec elsewhere{exec_create("/bin/y", "a", "b", nullptr)};
    EXPECT_EQ(exec_cmp(ab.get(), nullptr), -1);
    EXPECT_EQ(exec_cmp(ab.get(), copy.get()), 0);
    EXPECT_EQ(exec_cmp(ab.get(), ac.get()), 2);
    EXPECT_EQ(exec_cmp(ab.get(), a.get()), -ENOENT);
    EXPECT_EQ(exec_cmp(ab.get(), elsewhere.get()), -ESRCH);
}
