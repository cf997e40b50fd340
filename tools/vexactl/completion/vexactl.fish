# SPDX-License-Identifier: MIT
function __vexactl
    vexactl complete -- (commandline -opc)[2..-1] (commandline -ct) 2>/dev/null
end
complete -c vexactl -n 'count (__vexactl) >/dev/null' -f -a '(__vexactl)'
