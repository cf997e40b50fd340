// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

#include <climits>
#include <sys/stat.h>

TEST(qx_reduce_path, works_on_the_text_alone)
{
    ASSERT_EQ(chdir("/usr/bin"), 0);
    constexpr const char *rows[][2] = {{"/a//b/./c/../d/", "/a/b/d"},
                                       {"/..a/.b/...", "/..a/.b/..."},
                                       {"/../../a", "/a"},
                                       {"/..", "/"},
                                       {"./x", "x"},
                                       {".//x", "x"},
                                       {"a/..", "."},
                                       {"a/../b", "b"},
                                       {"", "."},
                                       {"../x", "/usr/x"},
                                       {"a/../../x", "/usr/x"},
                                       {"../../../x", "/x"}};
    for (const auto &[path, expected] : rows) {
        char reduced[PATH_MAX];
        EXPECT_STREQ(qx_reduce_path(path, reduced), expected) << path;
        const std::unique_ptr<char, decltype(&free)> fresh{qx_reduce_path(path, nullptr), free};
        EXPECT_STREQ(fresh.get(), expected) << path;
    }
}

TEST(qx_mkdir_p, makes_what_is_missing)
{
    ASSERT_EQ(chdir("/tmp"), 0);
    the_device.put("/tmp/file", "");
    constexpr const char *rows[][3] = {{"all levels", "/tmp/a/b/c", "/tmp/a/b/c"},
                                       {"the last, or all are there", "/tmp/a/b/d/", "/tmp/a/b/d"},
                                       {"by a way that is not", "no/../a", "/tmp/a"},
                                       {"relative", "r/s", "/tmp/r/s"},
                                       {"a file", "/tmp/file", nullptr},
                                       {"below a file", "file/a/b", nullptr}};
    for (const auto &[why, path, made] : rows) {
        errno = EINTR;
        EXPECT_EQ(qx_mkdir_p(path, 0700), made ? 0 : -1) << why;
        EXPECT_EQ(errno, made ? 0 : ENOTDIR) << why;
        struct stat info = {};
        EXPECT_TRUE(!made || (stat(made, &info) == 0 && info.st_mode == (S_IFDIR | 0700))) << why;
    }
    EXPECT_FALSE(the_device.exists("/tmp/no"));
}
