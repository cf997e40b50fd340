#!/bin/sh
# Stand-in for the firmware's traffic shaper: notes what it was asked to do.
echo "$0 $*" >>/tmp/qos_control.log
