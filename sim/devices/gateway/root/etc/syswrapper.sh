#!/bin/sh
# Stand-in for the firmware's action script: notes what it was asked to do.
echo "$0 $*" >>/tmp/syswrapper.log
