// SPDX-License-Identifier: MIT
#pragma once

#include <libvexa.h>
#include <type_traits>

// The circular lists of the public header. An entry's links are its member `links`.

inline void list_init(vexa_list *head)
{
    head->next = head->prev = head;
}

inline void list_insert(vexa_list *link, vexa_list *prev, vexa_list *next)
{
    link->prev = prev;
    link->next = next;
    prev->next = link;
    next->prev = link;
}

inline void list_add_front(vexa_list *head, vexa_list *link)
{
    list_insert(link, head, head->next);
}

inline void list_add_tail(vexa_list *head, vexa_list *link)
{
    list_insert(link, head->prev, head);
}

inline void list_remove(vexa_list *link)
{
    link->prev->next = link->next;
    link->next->prev = link->prev;
    list_init(link);
}

template <typename Entry>
Entry *entry_of(vexa_list *link)
{
    static_assert(std::is_standard_layout_v<Entry>);
    return reinterpret_cast<Entry *>(reinterpret_cast<char *>(link) - offsetof(Entry, links));
}

// Hands each entry over to be released; the list is empty then.
template <typename Entry, typename Release>
void list_clear(vexa_list *head, Release release)
{
    for (vexa_list *link = head->next, *next; link != head; link = next) {
        next = link->next;
        release(entry_of<Entry>(link));
    }
    list_init(head);
}

// The first entry, unlinked; null when the list is empty.
template <typename Entry>
Entry *list_take_first(vexa_list *head)
{
    vexa_list *first = head->next;
    if (first == head)
        return nullptr;
    list_remove(first);
    return entry_of<Entry>(first);
}
