# Completion of xmlvalue's command line for bash.
# shellcheck shell=bash

_xmlvalue()
{
    local word=${COMP_WORDS[COMP_CWORD]} option='' value
    COMPREPLY=()

    # Everything after "--" is an operand.
    if [[ " ${COMP_WORDS[*]:1:COMP_CWORD-1} " == *' -- '* ]]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        return
    fi

    # The value of a long option: bash treats "=" as a word of its own.
    if [[ $word == = ]]; then
        option=${COMP_WORDS[COMP_CWORD - 1]} value=''
    elif ((COMP_CWORD > 1)) && [[ ${COMP_WORDS[COMP_CWORD - 1]} == = ]]; then
        option=${COMP_WORDS[COMP_CWORD - 2]} value=$word
    elif ((COMP_CWORD > 0)); then
        case ${COMP_WORDS[COMP_CWORD - 1]} in
        --files-from | --trace-file | --plugin) option=${COMP_WORDS[COMP_CWORD - 1]} value=$word ;;
        -e | --expression | --null-value) return ;;
        esac
    fi

    case $option in
    --color) mapfile -t COMPREPLY < <(compgen -W 'auto always never' -- "$value") ;;
    --explain) mapfile -t COMPREPLY < <(compgen -W 'text dot' -- "$value") ;;
    --trace) mapfile -t COMPREPLY < <(compgen -W 'error warning info' -- "$value") ;;
    --files-from | --trace-file | --plugin) mapfile -t COMPREPLY < <(compgen -f -- "$value") ;;
    ?*) ;;
    *)
        if [[ $word == -* ]]; then
            mapfile -t COMPREPLY < <(compgen -W '--expression= --one --must-exist --files-from= --recursive --count
                --quiet --null --json --null-value= --with-filename --no-filename --color --explain --time --trace
                --trace-file= --plugin= --list-errors --list-functions --version --help
                -e -r -c -q -0 -H -h' -- "$word")
            [[ ${COMPREPLY[0]-} != *= ]] || compopt -o nospace 2>/dev/null
        else
            mapfile -t COMPREPLY < <(compgen -f -- "$word")
        fi
        ;;
    esac
}

complete -o filenames -F _xmlvalue xmlvalue
