# Completion of tintwerk for fish. The program itself knows what may follow.
function __tintwerk_complete
    set -l words (commandline -opc)
    set -l last (commandline -ct)
    set -l candidates ($words[1] complete -- $words[2..] "$last" 2>/dev/null)
    if test (count $candidates) -gt 0
        printf '%s\n' $candidates
    else
        __fish_complete_path "$last"
    end
end
complete -c tintwerk -f -k -a '(__tintwerk_complete)'
