// SPDX-License-Identifier: MIT
#include "tests/support/captured_log.h"
#include "tests/support/device.h"

#include <fcntl.h>
#include <sys/stat.h>

constexpr char path[] = "/tmp/state";

TEST(freadline, gives_the_first_line_or_the_default)
{
    constexpr const char *rows[][3] = {{"up to the line feed", "one\ntwo\n", "one"},
                                       {"up to a carriage return", "one\rtwo\n", "one"},
                                       {"an empty line is a line", "\ntwo\n", ""},
                                       {"cut to the buffer", "01234567\n", "0123456"},
                                       {"an empty file has none", "", "default"}};
    char line[8];
    for (const auto &[why, file, expected] : rows) {
        the_device.put(path, file);
        strcpy(line, "default"); // the default may stand in the buffer itself
        errno = 0;
        EXPECT_STREQ(freadline(path, line, sizeof line, line), expected) << why;
        EXPECT_STREQ(freadlineat(AT_FDCWD, path, line, sizeof line, "default"), expected) << why;
    }
    ASSERT_EQ(mkfifo("/tmp/fifo", 0600), 0);
    EXPECT_STREQ(freadline("/tmp/fifo", line, sizeof line, "default"), "default") << "nothing waits for a writer";
    const captured_log log;
    EXPECT_STREQ(freadline("/tmp/missing", line, sizeof line, nullptr), "");
    EXPECT_EQ(log.text(), "[debug] libvexa_util.freadline(): fsreadline returned error code -2\n"
                          "[error] libvexa_util.freadline(): NULL pointer for default value\n");
    EXPECT_EQ(fsreadline(nullptr, line, sizeof line), -EINVAL);
    EXPECT_EQ(fsreadline("/tmp", line, sizeof line), -EISDIR);
    errno = ERANGE;
    EXPECT_EQ(fsreadline(path, line, sizeof line), -ERANGE) << "the end of a file leaves errno alone";
}

TEST(load_file_base64, reads_all_or_fails_with_a_line)
{
    the_device.put(path, std::string(301, 'b'));
    the_device.put("/tmp/empty", "");
    the_device.put("/tmp/huge", "");
    ASSERT_EQ(truncate("/tmp/huge", off_t{1} << 32), 0);
    const captured_log log;
    constexpr const char *rows[][3] = {
        {path, "r", "Yg=="}, {"/tmp/empty", "r", ""}, {"/tmp/huge", "r", nullptr}, {path, "a", nullptr}};
    for (const auto &[name, mode, expected] : rows) {
        const std::unique_ptr<FILE, decltype(&fclose)> file{fopen(name, mode), fclose};
        const std::unique_ptr<char, decltype(&free)> text{load_file_base64(file.get()), free};
        EXPECT_STREQ(text && *text ? text.get() + 400 : text.get(), expected) << "no padding before the last bytes";
    }
    EXPECT_EQ(log.text(), "[debug] libvexa_util.load_file_base64(): Couldn't find file size: File too large\n"
                          "[error] libvexa_util.load_file_base64(): Couldn't read all bytes from file\n");
}
