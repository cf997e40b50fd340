#!/bin/sh
# SPDX-License-Identifier: MIT
# A device that tells its services what happens to it: a telemetry event, and the last crash of its kernel.
#
#     vexa-sim run --cloud -- examples/cloud_report.sh path/to/vexactl
set -eu
vexactl=$1

event='{"radio":"rai0","from":36,"to":52,"reason":"radar"}'
echo "vexactl trace send radio channel-change '$event'"
"$vexactl" trace send radio channel-change "$event"

# where a simulated device keeps what its kernel said
echo 'Unable to handle kernel NULL pointer dereference at virtual address 0000000000000010' >/tmp/oops
echo "vexactl crash send"
"$vexactl" crash send
echo "vexactl crash status"
"$vexactl" crash status
