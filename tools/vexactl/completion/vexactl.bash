# SPDX-License-Identifier: MIT
_vexactl() {
    local IFS=$'\n'
    COMPREPLY=($(vexactl complete -- "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null))
    [ ${#COMPREPLY[@]} -gt 0 ] || COMPREPLY=($(compgen -f -- "${COMP_WORDS[COMP_CWORD]}"))
}
complete -F _vexactl vexactl
