// SPDX-License-Identifier: MIT
#pragma once

#include "core/ifreq.h"

// The block of a wireless request, standard or private.
struct wireless_request {
    char ifname[IFNAMSIZ];
    union {
        struct {
            void *data;
            uint16_t length; // in: the room; out: what the driver wrote
            uint16_t flags;
        } buffer;
        int32_t value;
        struct {
            uint16_t family;
            uint8_t octets[14];
        } address;
    };
};
static_assert(sizeof(void *) != 8 || sizeof(wireless_request) == 32);

enum driver_request : int {
    ioctl_sta_info2 = 0x8a20,
    ioctl_getmacs = 0x8a21,
    ioctl_nodestat = 0x8a22,
    ioctl_radiostat = 0x8a24,
    ioctl_rate_limit = 0x8a25,
    ioctl_scan_results = 0x8a27,
    ioctl_dfswait = 0x8a29,
    ioctl_antgain = 0x8a2a,
    ioctl_set = 0x8be2,
    ioctl_get_mode = 0x8b07,
    ioctl_get_access_point = 0x8b15,
    ioctl_get_essid = 0x8b1b,
    ioctl_get_tx_power = 0x8b27,
};

// Memory for an answer of unknown size, zeroed.
class answer_buffer {
public:
    static constexpr size_t most = UINT16_MAX;

    answer_buffer() = default; // no memory yet
    explicit answer_buffer(size_t size) { allocate(size); }

    // Zeros of this size, in the memory that is there if it has that size.
    void start(size_t size)
    {
        if (bytes_ && size_ == size)
            memset(bytes_.get(), 0, size);
        else
            allocate(size);
    }

    explicit operator bool() const { return bool(bytes_); }
    uint8_t *data() const { return bytes_.get(); }
    uint16_t size() const { return uint16_t(size_); }

    // After an answer that did not fit: twice the room, of which what was there is lost. False when there is no more.
    bool grow()
    {
        if (size_ == most)
            return false;
        allocate(size_ * 2 < most ? size_ * 2 : most);
        return true;
    }

    // Asks by get80211priv(); the number of bytes that came, at most the room; -1 on failure.
    int ask(int sock, const char *ifname, driver_request request);

private:
    void allocate(size_t size)
    {
        bytes_.reset(); // before there are two of them
        bytes_.reset(static_cast<uint8_t *>(calloc(1, size)));
        size_ = size;
    }

    unique_malloc<uint8_t> bytes_;
    size_t size_ = 0;
};

// Into a record of fixed size.
template <size_t size>
bool ask_driver(int sock, const char *ifname, driver_request request, uint8_t (&record)[size])
{
    return get80211priv(sock, ifname, request, 0, 0, record, uint16_t{size}) >= 0;
}

// The network name, terminated; empty on failure. The request's result.
int read_essid(int sock, const char *ifname, char *buf, uint16_t size);
