// SPDX-License-Identifier: MIT
#include "arguments.h"
#include "message.h"
#include "output.h"
#include "text.h"

#include <cstring>
#include <libvexa.h>
#include <zlib.h>

namespace {

constexpr size_t header_size = sizeof(envelope);
constexpr column labels[] = {{"magic", "Magic"},
                             {"version", "Version", kind::number},
                             {"flags", "Flags"},
                             {"length", "Length", kind::number},
                             {"method", "Method", kind::number},
                             {"type", "Type", kind::number},
                             {"iv", "IV"},
                             {"device", "Device"},
                             {"sequence", "Sequence", kind::number},
                             {"crc", "CRC"},
                             {"accepted", "Accepted", kind::on_off},
                             {"reason", "Reason"},
                             {"text", "Payload"},
                             {"hex", "Payload, hex"}};

bool take_key(const char *digits, struct vexa_protocol_ctrl &ctx)
{
    const std::optional<std::string> key = bytes_of_hex(digits);
    if (!key || key->size() != sizeof ctx.key)
        return false;
    memcpy(ctx.key, key->data(), sizeof ctx.key);
    return true;
}

constexpr char wrong_key[] = "KEY is 32 hexadecimal digits";

int envelope_seal(const arguments &args, output &out)
{
    message m;
    struct vexa_protocol_ctrl ctx = {};
    const auto sequence = number16(args, "sequence", 1);
    const char *device = args.value("device");
    std::string wrong = read_message(args, 1, m);
    if (!take_key(args.operand(0), ctx))
        wrong = wrong_key;
    else if (!sequence || *sequence > 0xfff)
        wrong = "--sequence takes a number from 0 to 4095";
    else if (device && !read_mac(device, ctx.device_id))
        wrong = std::string{"no MAC address: '"} + device + "'";
    if (!wrong.empty())
        return out.fail(status_usage, wrong);
    ctx.tx_seq = *sequence;
    const std::unique_ptr<envelope, decltype(&free)> sealed{
        gen_payload(m.payload.data(), int(m.payload.size()), m.method, m.type, !args.has("plain"), &ctx), free};
    if (!sealed)
        return out.fail(status_negative, "the payload is too long");
    const auto *bytes = reinterpret_cast<const uint8_t *>(sealed.get());
    const size_t size = header_size + size_t(bytes[6] << 8 | bytes[7]);
    const std::string digits = hex_of({reinterpret_cast<const char *>(bytes), size});
    if (out.for_people())
        return out.write(digits + '\n');
    return out.show({json_ref{object({{"bytes", number(int64_t(size))}, {"hex", text(digits)}})}, {}});
}

// The fields of a header on the wire, which is long enough.
envelope fields_of(const std::string &datagram)
{
    const auto *p = reinterpret_cast<const uint8_t *>(datagram.data());
    const auto be = [p](size_t at, size_t count) {
        uint32_t value = 0;
        for (size_t i = at; i < at + count; i++)
            value = value << 8 | p[i];
        return value;
    };
    envelope e = {be(0, 4),
                  p[4],
                  p[5],
                  uint16_t(be(6, 2)),
                  uint16_t(be(8, 2)),
                  uint16_t(be(10, 2)),
                  {},
                  {},
                  uint16_t(be(34, 2) >> 4),
                  be(36, 4)};
    memcpy(e.iv, p + 12, sizeof e.iv);
    memcpy(e.device_id, p + 28, sizeof e.device_id);
    return e;
}

// Why a datagram of this header is refused; the library says only that it is.
std::string why_refused(const envelope &e, std::string payload, const struct vexa_protocol_ctrl &ctx)
{
    if (e.length != payload.size())
        return format("the length says %u bytes of payload, and %zu are there", e.length, payload.size());
    if (e.magic != 0x22334455)
        return "the magic is not 22334455";
    if (!(e.flags & 2))
        return "it is not encrypted";
    if (e.length == 0)
        return "there is no payload";
    if (e.version < 2)
        return "the version is below 2";
    auto *bytes = reinterpret_cast<uint8_t *>(payload.data());
    if (aes_cbc_decrypt_128(ctx.key, e.iv, bytes, payload.size()) != 0)
        return "the payload is no whole number of blocks";
    const auto crc = uint32_t(crc32(0, bytes, uInt(payload.size())));
    if (crc != e.crc)
        return format("the CRC of what the key decrypts is %08x", crc);
    return "the padding is damaged";
}

int envelope_open(const arguments &args, output &out)
{
    struct vexa_protocol_ctrl ctx = {};
    ctx.rx_seq = UINT16_MAX; // what no message has
    const std::optional<std::string> datagram = bytes_of_hex(args.operand(1));
    if (!take_key(args.operand(0), ctx))
        return out.fail(status_usage, wrong_key);
    if (!datagram)
        return out.fail(status_usage, "HEX takes pairs of hexadecimal digits");
    if (datagram->size() < header_size)
        return out.fail(status_negative, format("refused: %zu bytes are no header", datagram->size()));
    std::string opened = *datagram;
    const envelope e = fields_of(*datagram);
    const bool blocks = (opened.size() - header_size) % 16 == 0; // a receiver drops others at once
    const bool accepted =
        blocks && dec_payload(int(opened.size()), reinterpret_cast<envelope *>(opened.data()), &ctx) == 0;
    const std::string reason = accepted ? "" : why_refused(e, datagram->substr(header_size), ctx);
    uint16_t length = 0;
    if (accepted)
        memcpy(&length, opened.data() + offsetof(envelope, length), sizeof length);
    const std::string payload = opened.substr(header_size, length);
    const std::string_view iv{reinterpret_cast<const char *>(e.iv), sizeof e.iv};
    const int shown = out.show({json_ref{object({{"magic", text(format("%08x", e.magic))},
                                                 {"version", number(e.version)},
                                                 {"flags", text(format("%02x", e.flags))},
                                                 {"length", number(e.length)},
                                                 {"method", number(e.method)},
                                                 {"type", number(e.type)},
                                                 {"iv", text(hex_of(iv))},
                                                 {"device", text(mac_text(e.device_id))},
                                                 {"sequence", number(e.sequence)},
                                                 {"crc", text(format("%08x", e.crc))},
                                                 {"accepted", flag(accepted)},
                                                 {"reason", accepted ? json_null() : text(reason)},
                                                 {"text", accepted ? text(payload) : json_null()},
                                                 {"hex", accepted ? text(hex_of(payload)) : json_null()}})},
                                labels});
    return accepted ? shown : out.fail(status_negative, "refused: " + reason);
}

int anon_id(const arguments &args, output &out)
{
    uint8_t mac[6];
    char id[33];
    if (!read_mac(args.operand(0), mac))
        return out.fail(status_usage, std::string{"no MAC address: '"} + args.operand(0) + "'");
    if (generate_anonClientId(id, mac, args.operand(1)) != 0)
        return out.fail(status_usage, "TEXT is empty");
    return out.for_people() ? out.write(std::string{id} + '\n') : out.show({json_ref{object({{"id", text(id)}})}, {}});
}

constexpr verb verbs[] = {
    {.name = "envelope seal",
     .operands = "SITEKEY [TEXT]",
     .summary = "the datagram, in hex, of a message under a site key of 32 digits",
     .options = {{{"method", "N", "what receivers dispatch on; default 0"},
                  {"type", "N", "default 0"},
                  {"sequence", "N", "0 to 4095; default 1"},
                  {"device", "MAC", "the sender; default all zeros"},
                  {"hex", "BYTES", "seal these instead of a text"},
                  {"plain", nullptr, "leave it unencrypted, as no receiver takes it"}}},
     .example = "vexactl envelope seal 0123456789abcdeffedcba9876543210 hello",
     .run = envelope_seal},
    {.name = "envelope open",
     .operands = "SITEKEY HEX",
     .summary = "the header and payload of a datagram, and why it is refused",
     .options = {},
     .example = "vexactl envelope open \"$KEY\" \"$(vexactl envelope seal \"$KEY\" hello)\"",
     .run = envelope_open},
    {.name = "anonid",
     .operands = "MAC TEXT",
     .summary = "the name of a client in reports without names",
     .options = {},
     .example = "vexactl anonid 02:56:58:aa:bb:cc 66666666-7777-4888-8999-000000000000",
     .run = anon_id},
};

} // namespace

const verb_family envelope_family = verbs;
