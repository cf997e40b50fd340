// SPDX-License-Identifier: MIT
#include "core/log.h"
#include "crypto/bytes.h"
#include "messaging/discovery.h"
#include "messaging/envelope.h"

#include <cstring>

namespace {

constexpr char log_tag[] = "vexa_protocol";
constexpr uint16_t type_client = 3;
constexpr uint16_t method_mesh_halt = 6;
constexpr uint32_t mesh_halt_numbers[] = {600, 4}; // what they mean is between the devices

void close_socket()
{
    stop_reading();
    if (vexa_protocol_ctrl.sock >= 0)
        (void)close(vexa_protocol_ctrl.sock);
    vexa_protocol_ctrl.sock = -1;
}

} // namespace

extern "C" int vexa_protocol_send(const void *data, int len, uint16_t method, uint16_t type, int encrypt)
{
    const unique_malloc<envelope> packet{gen_payload(data, len, method, type, encrypt, &vexa_protocol_ctrl)};
    if (!packet) {
        log_err("fill_vexa_payload fail");
        return -1;
    }
    const auto *bytes = reinterpret_cast<const uint8_t *>(packet.get());
    const size_t size = wire::payload + wire::load16(bytes + wire::length);
    const sockaddr_in group = discovery_address(vexa_protocol_ctrl.mcast_ip);
    const ssize_t sent = sendto(vexa_protocol_ctrl.sock, bytes, size, MSG_NOSIGNAL,
                                reinterpret_cast<const sockaddr *>(&group), sizeof group);
    if (sent < 0)
        log_err("failed to send message (method: %d, type: %d, len: %d), %s", method, type, int(size), strerror(errno));
    return int(sent);
}

extern "C" void vexa_protocol_client_send(const void *data, int len, uint16_t method)
{
    close_socket();
    unique_fd fresh = vexa_protocol_client_sock_init();
    if (!fresh) {
        log_err("sock init failed");
        return;
    }
    vexa_protocol_ctrl.sock = fresh.release();
    (void)vexa_protocol_send(data, len, method, type_client, vexa_protocol_ctrl.encrypt);
    close_socket();
}

extern "C" void vexa_protocol_client_event_mesh_halt_send(void)
{
    if (!vexa_protocol_ctrl.initialized) {
        log_err("vexa-protocol not initilized");
        return;
    }
    uint8_t payload[sizeof vexa_protocol_ctrl.device_id + sizeof mesh_halt_numbers];
    memcpy(payload, vexa_protocol_ctrl.device_id, sizeof vexa_protocol_ctrl.device_id);
    store_be32(payload + 6, mesh_halt_numbers[0]);
    store_be32(payload + 10, mesh_halt_numbers[1]);
    vexa_protocol_client_send(payload, sizeof payload, method_mesh_halt);
}
