// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "core/owner.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace {

constexpr char log_tag[] = "libvexa_util";
constexpr unsigned chunk_size = 300; // a multiple of 3: no padding in the middle

// The size of the stream, which then stands at its beginning; -1 with errno, also for one that no text can hold (a
// directory calls itself 2^63 - 1 bytes long).
off_t size_of(FILE *stream)
{
    if (fseeko(stream, 0, SEEK_END) != 0)
        return -1;
    const off_t size = ftello(stream);
    if (size < 0 || fseeko(stream, 0, SEEK_SET) != 0)
        return -1;
    if (uintmax_t(size) > UINT_MAX || base64_encode_len(unsigned(size)) == 0) {
        errno = EFBIG;
        return -1;
    }
    return size;
}

} // namespace

extern "C" char *load_file_base64(FILE *stream)
{
    const off_t size = size_of(stream);
    if (size < 0) {
        log_debug("Couldn't find file size: %s", strerror(errno));
        return nullptr;
    }
    if (size == 0)
        return strdup("");
    const size_t room = base64_encode_len(unsigned(size));
    unique_text text{static_cast<char *>(malloc(room))};
    if (!text) {
        log_err("%d: malloc(%zu) failed", 626, room);
        return nullptr;
    }
    char *out = text.get();
    for (auto left = unsigned(size); left > 0;) {
        unsigned char chunk[chunk_size];
        const unsigned n = std::min(left, chunk_size);
        if (fread(chunk, 1, n, stream) != n) {
            log_err("Couldn't read all bytes from file");
            return nullptr;
        }
        base64rfc_encode(out, chunk, n);
        out += size_t{chunk_size} / 3 * 4;
        left -= n;
    }
    return text.release();
}
