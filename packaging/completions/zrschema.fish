# SPDX-License-Identifier: Apache-2.0
# Completion of zrschema for fish: the program itself says what may stand at the cursor.
function __zrschema_complete
    set -l words (commandline -opc)
    set -l program (string replace -r '^~/' "$HOME/" -- $words[1])
    set -l token (commandline -ct)
    set -l option (string match -r -- '^--[^=]*=' "$token")
    set -l value (string replace -- "$option" '' "$token")
    for line in ($program complete -- $words[2..-1] "$token" 2>/dev/null)
        switch $line
            case :files
                string replace -r '^' -- "$option" (__fish_complete_path "$value")
            case :directories
                string replace -r '^' -- "$option" (__fish_complete_directories "$value" '')
            case '*'
                echo $line
        end
    end
end
complete -c zrschema -f -a '(__zrschema_complete)'
