#!/bin/sh
# SPDX-License-Identifier: MIT
# The build system calls this in a clean root with a package installed: test.sh PACKAGE VERSION
set -e

case "$1" in
libvexa*)
	ls /usr/lib/libvexa.so.1 >/dev/null
	;;
vexactl)
	vexactl --version | grep -F "$2"
	vexactl boards --json | grep -q '"name"'
	;;
vexa-sim)
	vexa-sim --version | grep -F "$2"
	vexa-sim list | grep -q '^access-point '
	;;
esac
