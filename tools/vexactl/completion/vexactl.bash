# SPDX-License-Identifier: MIT
_vexactl() {
    local IFS=$'\n' words=() word open=
    for word in "${COMP_WORDS[@]:1:COMP_CWORD}"; do # a hardware address comes in pieces, taken apart at its colons
        if [[ ${#words[@]} -gt 0 && ( $open || $word == :* ) ]]; then
            words[-1]+=$word
        else
            words+=("$word")
        fi
        [[ $word == *: ]] && open=yes || open=
    done
    COMPREPLY=($(vexactl complete -- "${words[@]}" 2>/dev/null))
    [ ${#COMPREPLY[@]} -gt 0 ] || COMPREPLY=($(compgen -f -- "${COMP_WORDS[COMP_CWORD]}"))
    word=${words[-1]}
    COMPREPLY=("${COMPREPLY[@]#"${word%"${word##*:}"}"}")
}
complete -F _vexactl vexactl
