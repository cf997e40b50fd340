#compdef vexactl
# SPDX-License-Identifier: MIT
_vexactl() {
    local -a found
    found=("${(@f)$(vexactl complete -- "${(@)words[2,CURRENT]}" 2>/dev/null)}")
    if [[ -n $found ]]; then
        compadd -a found
    else
        _files
    fi
}
if [[ $funcstack[1] == _vexactl ]]; then # called from a file on the function path
    _vexactl
else
    compdef _vexactl vexactl
fi
