// SPDX-License-Identifier: MIT
#pragma once

#include "core/ascii.h"
#include "core/hex.h"

#include <climits>
#include <string_view>

// Takes a text apart by the rules of scanf(): blanks in front of a number do not matter, it may have a sign, a
// hexadecimal one "0x", and one that is too large becomes the largest. Each step is false when its text is not there.
class scanner {
public:
    explicit scanner(std::string_view text) : at_{text.data()}, end_{text.data() + text.size()} {}

    void skip_space()
    {
        while (at_ != end_ && is_space(*at_))
            at_++;
    }

    bool literal(char wanted)
    {
        char c = 0;
        if (at_ == end_ || *at_ != wanted)
            return false;
        return character(c);
    }

    bool character(char &out)
    {
        if (at_ == end_)
            return false;
        out = *at_++;
        return true;
    }

    bool word(std::string_view &out)
    {
        skip_space();
        const char *start = at_;
        while (at_ != end_ && !is_space(*at_))
            at_++;
        out = {start, size_t(at_ - start)};
        return !out.empty();
    }

    bool signed_number(long &out)
    {
        number n;
        if (!take<10>(n))
            return false;
        const auto largest = n.negative ? static_cast<unsigned long>(LONG_MAX) + 1 : LONG_MAX;
        const unsigned long size = n.size < largest ? n.size : largest;
        out = static_cast<long>(n.negative ? 0 - size : size);
        return true;
    }

    template <unsigned base>
    bool unsigned_number(unsigned long &out)
    {
        number n;
        if (!take<base>(n))
            return false;
        out = n.negative && !n.too_large ? 0 - n.size : n.size;
        return true;
    }

    bool decimal(unsigned long &out) { return unsigned_number<10>(out); }
    bool hex(unsigned long &out) { return unsigned_number<16>(out); }

    // for the fields that nobody asks for
    template <unsigned base>
    bool skip_numbers(int count)
    {
        for (; count > 0; count--) {
            (void)takes_minus<base>();
            const char *start = at_;
            while (at_ != end_ && digit<base>(*at_) >= 0)
                at_++;
            if (at_ == start)
                return false;
        }
        return true;
    }

private:
    struct number {
        bool negative = false;
        bool too_large = false;
        unsigned long size = 0;
    };

    template <unsigned base>
    static int digit(char c)
    {
        if constexpr (base == 10)
            return is_digit(c) ? c - '0' : -1;
        else
            return hex_value(c);
    }

    // What stands in front of the digits.
    template <unsigned base>
    bool takes_minus()
    {
        skip_space();
        const bool negative = at_ != end_ && *at_ == '-';
        if (at_ != end_ && (*at_ == '-' || *at_ == '+'))
            at_++;
        if (base == 16 && end_ - at_ > 2 && at_[0] == '0' && (at_[1] | 0x20) == 'x' && digit<16>(at_[2]) >= 0)
            at_ += 2;
        return negative;
    }

    template <unsigned base>
    bool take(number &out)
    {
        out = {};
        out.negative = takes_minus<base>();
        const char *start = at_;
        for (int d = 0; at_ != end_ && (d = digit<base>(*at_)) >= 0; at_++) {
            out.too_large = out.too_large || out.size > (ULONG_MAX - static_cast<unsigned>(d)) / base;
            out.size = out.size * base + static_cast<unsigned>(d);
        }
        if (out.too_large)
            out.size = ULONG_MAX;
        return at_ != start;
    }

    const char *at_;
    const char *end_;
};
