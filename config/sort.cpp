// SPDX-License-Identifier: MIT
#include "config/sort.h"

#include "core/ascii.h"

#include <bit>
#include <climits>
#include <cstdint>
#include <utility>

// A merge sort of the list itself: it asks for no memory and takes what is in order already as one run. The field of a
// node that queries leave empty holds in the meantime what its key weighs where keys begin to differ; that mostly
// decides, and no key needs to be fetched.

namespace {

constexpr uintptr_t heaviest = UINTPTR_MAX; // and beyond

uintptr_t weight(const char *text)
{
    if (!is_digit(*text))
        return lower_case(*text);
    uintptr_t number = 0;
    for (; is_digit(*text); text++) {
        const auto digit = uintptr_t(*text - '0');
        if (number > (heaviest - 256 - digit) / 10)
            return heaviest;
        number = number * 10 + digit;
    }
    return 256 + number;
}

void weigh(cfg_it *list, size_t common)
{
    for (; list; list = list->next)
        list->esc_value = std::bit_cast<char *>(weight(list->key + common));
}

void empty(cfg_it *list)
{
    for (; list; list = list->next)
        list->esc_value = nullptr;
}

bool follows(const cfg_it *a, const cfg_it *b, size_t common)
{
    const auto a_weight = std::bit_cast<uintptr_t>(a->esc_value);
    const auto b_weight = std::bit_cast<uintptr_t>(b->esc_value);
    if (a_weight != b_weight)
        return a_weight > b_weight;
    return cfg_natural_compare(a->key + common, b->key + common) > 0;
}

// Of two equal keys that of @a stands first.
cfg_it *merge(cfg_it *a, cfg_it *b, size_t common)
{
    cfg_it *head = nullptr;
    cfg_it **end = &head;
    while (a && b) {
        cfg_it *&least = follows(a, b, common) ? b : a;
        *end = least;
        end = &least->next;
        least = least->next;
    }
    *end = a ? a : b;
    return head;
}

// Cuts the longest ascending piece off the front.
cfg_it *take_run(cfg_it *&list, size_t common)
{
    cfg_it *run = list;
    cfg_it *last = list;
    while (last->next && !follows(last, last->next, common))
        last = last->next;
    list = std::exchange(last->next, nullptr);
    return run;
}

} // namespace

cfg_it *sort_by_key(cfg_it *list, size_t common)
{
    weigh(list, common);
    cfg_it *merged[sizeof(size_t) * CHAR_BIT] = {}; // slot i holds 2^i runs; those of higher slots stood first
    while (list) {
        cfg_it *run = take_run(list, common);
        size_t i = 0;
        for (; merged[i]; i++)
            run = merge(std::exchange(merged[i], nullptr), run, common);
        merged[i] = run;
    }
    for (cfg_it *earlier : merged)
        list = merge(earlier, list, common);
    empty(list);
    return list;
}
