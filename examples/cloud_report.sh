#!/bin/sh
# SPDX-License-Identifier: MIT
# A device that tells its services what happens to it: a telemetry event, and the last crash of its kernel.
#
#     vexa-sim run --cloud -- examples/cloud_report.sh path/to/vexactl
set -eu
vexactl=$1

# what the firmware brings along
mkdir /tmp/bin
cat >/tmp/bin/oopsdump <<'end'
#!/bin/sh
[ "$1" = -e ] || echo 'Unable to handle kernel NULL pointer dereference at virtual address 0000000000000010'
end
cat >/tmp/bin/syswrapper.sh <<'end'
#!/bin/sh
case $1 in
read-crash-log) oopsdump ;;
*-filter) sed 's/\(psk\|key\|password\|secret\)=.*/\1=***/' ;;
esac
end
chmod +x /tmp/bin/*
PATH=/tmp/bin:$PATH

event='{"radio":"rai0","from":36,"to":52,"reason":"radar"}'
echo "vexactl trace send radio channel-change '$event'"
"$vexactl" trace send radio channel-change "$event"
echo "vexactl crash send"
"$vexactl" crash send
echo "vexactl crash status"
"$vexactl" crash status
