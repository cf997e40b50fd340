// SPDX-License-Identifier: MIT
#include "tests/support/device.h"

using owned = std::unique_ptr<buffer, void (*)(buffer *)>;

static std::string unread(const owned &b)
{
    return {static_cast<char *>(b->head(b.get())), b->len(b.get())};
}

TEST(buffer, joins_text_and_bytes_and_grows_by_what_is_asked)
{
    const owned b{buffer_create(), buffer_destroy};
    EXPECT_EQ(b->printf(b.get(), "%s", "ab"), 2);
    EXPECT_STREQ(static_cast<char *>(b->head(b.get())), "ab");
    b->write(b.get(), "c", 1);
    EXPECT_EQ(unread(b), "abc");
    EXPECT_EQ(b->read(b.get(), nullptr, 10), 3);
    const std::string text(5000, 'x');
    EXPECT_EQ(b->write(b.get(), text.data(), 5000), 5000);
    EXPECT_EQ(b->head(b.get()), b->state->data) << "the drained storage starts anew";
    EXPECT_EQ(b->cap(b.get()), 12288U);
    b->write(b.get(), b->head(b.get()), 5000);
    b->printf(b.get(), "%.*s", 10000, static_cast<char *>(b->head(b.get())));
    EXPECT_TRUE(unread(b) == text + text + text + text) << "its own bytes, while they move";
    EXPECT_EQ(*static_cast<char *>(b->alloc_zeroed(b.get(), 1)), '\0');
    b->reset(b.get());
    EXPECT_EQ(std::string(static_cast<char *>(b->head(b.get())), b->cap(b.get())), std::string(4096, '\0'));
}

TEST(buffer, refuses_what_memory_cannot_hold)
{
    EXPECT_EQ(buffer_create2(4194305), nullptr);
    const owned b{buffer_create2(4194304), buffer_destroy};
    b->printf(b.get(), "abcdef");
    buffer_pop(b.get(), INT_MIN);
    for (const size_t count : {SIZE_MAX, SIZE_MAX - 4095, size_t{INT_MAX}}) {
        EXPECT_EQ(b->write(b.get(), "x", count), 0);
        EXPECT_EQ(b->alloc_zeroed(b.get(), count), nullptr);
    }
    EXPECT_EQ(b->init(b.get(), SIZE_MAX), -1);
    EXPECT_EQ(b->send(b.get(), -1, 0), -1);
    EXPECT_EQ(unread(b), "abcdef");
    buffer_pop(b.get(), 100);
    EXPECT_EQ(unread(b), "");
}
