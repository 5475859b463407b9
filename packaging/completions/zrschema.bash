# SPDX-License-Identifier: Apache-2.0
# Completion of zrschema for bash: the program itself says what may stand at the cursor.
_zrschema() {
    local program=${1/#\~\//$HOME/} current=${COMP_WORDS[COMP_CWORD]} words=() part line
    # bash takes words apart at these characters, unless it was told otherwise.
    for part in "${COMP_WORDS[@]:1:COMP_CWORD}"; do
        if ((${#words[@]})) && [[ -n $part && ($part == [:=@]* || ${words[-1]} == *[:=@]) ]]; then
            words[-1]+=$part
        else
            words+=("$part")
        fi
    done
    # What readline does not replace of the last word.
    local kept=${words[-1]%"$current"}
    [[ $current != [:=@]* ]] || kept=${words[-1]}
    words=("${words[@]//[\\\"\']/}")

    COMPREPLY=()
    while IFS= read -r line; do
        case $line in
        :files) compopt -o default ;;
        :directories) compopt -o dirnames ;;
        *) line=${line%%$'\t'*} && COMPREPLY+=("${line#"$kept"}") ;;
        esac
    done < <("$program" complete -- "${words[@]}" 2>/dev/null)
    if ((${#COMPREPLY[@]} == 1)) && [[ ${COMPREPLY[0]} == *[/:=] ]]; then
        compopt -o nospace
    fi
}
complete -F _zrschema zrschema
