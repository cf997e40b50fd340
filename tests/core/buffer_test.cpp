// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <libvexa.h>
#include <memory>
#include <string>
#include <unistd.h>

namespace {

struct destroy_buffer {
    void operator()(buffer *b) const { buffer_destroy(b); }
};
using unique_buffer = std::unique_ptr<buffer, destroy_buffer>;

std::string unread(const unique_buffer &b)
{
    return {static_cast<char *>(b->head(b.get())), b->len(b.get())};
}

int append(const unique_buffer &b, const std::string &text)
{
    return b->write(b.get(), text.data(), text.size());
}

} // namespace

TEST(buffer_create2, takes_up_to_four_mebibytes)
{
    EXPECT_EQ(buffer_create2(4194305), nullptr);
    EXPECT_TRUE(unique_buffer{buffer_create2(4194304)});
    const unique_buffer none{buffer_create2(0)};
    EXPECT_EQ(append(none, "x"), 1);
    none->reset(none.get());
    EXPECT_EQ(none->cap(none.get()), 0U);
}

TEST(buffer, joins_text_and_bytes_and_grows_by_what_is_asked)
{
    const unique_buffer b{buffer_create()};
    EXPECT_EQ(b->printf(b.get(), "%s", "ab"), 2);
    EXPECT_STREQ(static_cast<char *>(b->head(b.get())), "ab");
    EXPECT_EQ(append(b, "c"), 1);
    EXPECT_EQ(unread(b), "abc");
    EXPECT_EQ(b->read(b.get(), nullptr, 10), 3);
    EXPECT_EQ(append(b, std::string(5000, 'x')), 5000) << "from the front of the drained storage";
    EXPECT_EQ(b->cap(b.get()), 12288U);
    EXPECT_EQ(std::string(static_cast<char *>(b->alloc_zeroed(b.get(), 9000)), 9000), std::string(9000, '\0'));
    EXPECT_EQ(unread(b).find('\0'), 5000U);
    b->reset(b.get());
    EXPECT_EQ(std::string(static_cast<char *>(b->head(b.get())), b->cap(b.get())), std::string(4096, '\0'));
}

TEST(buffer, refuses_what_memory_cannot_hold)
{
    const unique_buffer b{buffer_create()};
    append(b, "abcd");
    for (const size_t count : {SIZE_MAX, SIZE_MAX - 4095, size_t{INT_MAX}}) {
        SCOPED_TRACE(count);
        EXPECT_EQ(b->write(b.get(), "x", count), 0);
        EXPECT_EQ(b->alloc_zeroed(b.get(), count), nullptr);
        EXPECT_EQ(unread(b), "abcd");
    }
    EXPECT_EQ(b->init(b.get(), SIZE_MAX), -1);
    EXPECT_EQ(b->init(b.get(), 10), 0);
    EXPECT_EQ(unread(b), "");
}

TEST(buffer, appends_its_own_bytes_while_they_move)
{
    const unique_buffer b{buffer_create()};
    const std::string text(3000, 'y');
    append(b, text);
    b->write(b.get(), b->head(b.get()), text.size());
    EXPECT_EQ(unread(b), text + text);
    EXPECT_EQ(b->printf(b.get(), "%.*s", 6000, static_cast<char *>(b->head(b.get()))), 6000);
    EXPECT_EQ(unread(b), text + text + text + text);
}

TEST(buffer_pop, removes_no_more_than_there_is)
{
    const unique_buffer b{buffer_create()};
    append(b, "abcdef");
    buffer_pop(b.get(), INT_MIN);
    buffer_pop(b.get(), 3);
    EXPECT_EQ(unread(b), "abc");
    buffer_pop(b.get(), 100);
    EXPECT_EQ(unread(b), "");
}

TEST(buffer, clones_from_the_start_of_the_storage)
{
    const unique_buffer b{buffer_create2(8)};
    append(b, "abcdef");
    append(b, "ghij");
    b->read(b.get(), nullptr, 4);
    const unique_buffer copy{b->clone(b.get())};
    EXPECT_EQ(unread(copy), "abcdef");
    EXPECT_EQ(copy->cap(copy.get()), b->cap(b.get()));
    b->rewind(b.get());
    EXPECT_EQ(unread(b), "abcdefghij");

    // a clone is written from its start again, but its length goes on: the storage has to hold both
    append(copy, std::string(4100, 'x'));
    EXPECT_EQ(unread(copy), std::string(4100, 'x') + std::string(6, '\0'));
    copy->reset(copy.get());
    EXPECT_EQ(copy->cap(copy.get()), 8U);
    EXPECT_EQ(
        unique_buffer { copy->clone(copy.get()) } -> state->capacity, 4096U);
}

TEST(buffer, sends_to_a_closed_peer_without_a_signal)
{
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    const unique_buffer b{buffer_create()};
    append(b, "hello");
    EXPECT_EQ(b->send(b.get(), -1, 0), -1);
    EXPECT_EQ(b->send(b.get(), ends[0], 0), 5);
    close(ends[1]);
    append(b, "x");
    EXPECT_EQ(b->send(b.get(), ends[0], 0), -1);
    EXPECT_EQ(unread(b), "x");
    close(ends[0]);
}

TEST(buffer_fill, appends_numbered_lines)
{
    const unique_buffer b{buffer_create()};
    buffer_fill(b.get(), 2);
    const std::string digits = "123456789012345678901234567890123456789";
    EXPECT_EQ(unread(b).substr(110), "0101-0200 " + digits + "01234567890" + digits + "\n" + std::string(10, '\0'));
}
