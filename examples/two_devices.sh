#!/bin/sh
# SPDX-License-Identifier: MIT
# Two devices of one site, each in a network of its own, joined by the bridge of the first: a message is sealed, sent by
# multicast, opened and dispatched.
#
#     vexa-sim run -- examples/two_devices.sh path/to/vexactl
set -eu
PATH=$PATH:/usr/sbin:/sbin
vexactl=$1
text='{"hello":"from the second device"}'

second_device() {
    echo unshared >/tmp/second
    read -r _ </tmp/first # the cable is plugged in
    ip address add 192.0.2.21/24 dev cable0
    ip link set cable0 up
    ip route add default dev cable0
    echo 192.0.2.21 >/tmp/address
    sed 's/^serialno=.*/serialno=025658002001/' /proc/vexahal/system.info >/tmp/info
    mount --bind /tmp/address /var/run/ipready.br0
    mount --bind /tmp/info /proc/vexahal/system.info
    echo "second device, 192.0.2.21: vexactl discover send --method 9 --type 1 '$text'"
    "$vexactl" discover send --method 9 --type 1 "$text"
}

if [ $# -gt 1 ]; then
    second_device
    exit
fi

key=$(sed -n 's/^corvo.key=//p' /var/run/vexa_protocol.info)
echo "the message as it goes on the wire, looked at offline:"
"$vexactl" envelope open "$key" \
    "$("$vexactl" envelope seal "$key" "$text" --method 9 --type 1 --device 02:56:58:00:20:01)"

mkfifo /tmp/first /tmp/second
"$vexactl" discover listen --count 1 --timeout 20 >/tmp/heard &
listener=$!
unshare --net --mount "$0" "$vexactl" second &
second=$!
read -r _ </tmp/second
ip link set cable0 netns $second
group=4D07FEEF # 239.254.7.77, as the kernel lists it
tries=0
until grep -q $group /proc/net/igmp || [ $((tries += 1)) -gt 100 ]; do
    sleep 0.1
done
echo plugged >/tmp/first
wait $second
wait $listener
echo "first device, 192.0.2.20: vexactl discover listen"
cat /tmp/heard
