// SPDX-License-Identifier: MIT
#include "fuzz/check.h"

#include <cstring>
#include <libvexa.h>
#include <string>
#include <vector>

namespace {

using bytes = std::vector<unsigned char>;

bytes decoded(const std::string &text)
{
    bytes out(base64_decode_len(text.c_str()));
    base64_decode(out.data(), text.c_str());
    return out;
}

void check_bytes(const bytes &data)
{
    const auto size = unsigned(data.size());
    std::vector<char> text(base64_encode_len(size));
    for (const auto encode : {base64rfc_encode, base64url_encode}) {
        encode(text.data(), data.data(), size);
        const bytes out = decoded(text.data());
        check(out.size() > size && memcmp(out.data(), data.data(), size) == 0 && out[size] == 0);
    }
    std::vector<char> digits(2 * data.size() + 1);
    for (const auto to_hex : {uchar2hex, uchar2lowerhex}) {
        bytes out(data.size());
        check(to_hex(data.data(), data.size(), digits.data(), digits.size()) == int(size));
        hex2uchar(digits.data(), out.data(), out.size());
        check(out == data);
    }
    for (unsigned room = 0; room < 8; room++) {
        std::vector<char> cut(room);
        check(bin2hex(data.data(), size, cut.data(), room) <= int(room));
    }
}

void check_text(const std::string &text)
{
    const std::vector<char> exact(text.c_str(), text.c_str() + strlen(text.c_str()) + 1); // nothing is behind it
    (void)decoded(exact.data());
    bytes out(text.size() / 2 + 1);
    const int expected = exact[0] ? int(out.size()) : 0;
    check(hex2uchar(exact.data(), out.data(), out.size()) == expected);
    free(url_encode(exact.data()));
    for (size_t size = 0; size < 8; size++) {
        std::vector<char> cut(size);
        strncpy_trim(cut.data(), size, exact.data());
        check(size == 0 || strlen(cut.data()) < size);
    }
    unsigned char mac[6];
    (void)strtomac(exact.data(), mac);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size > 0)
        check_bytes({data, data + size});
    check_text({reinterpret_cast<const char *>(data), size});
    return 0;
}
