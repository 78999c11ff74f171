# Completion of korlit's commands and options for bash.
_korlit() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command=${COMP_WORDS[1]}
    local -A options=(
        [convert]="--help --recursive --files-from --from --output-dir --output --shard --force
            --skip-existing --jobs --json --quiet --verbose"
        [info]="--help --from --json --peaks --signal"
        [plot]="--help --output --width --height --from --to --no-peaks --title"
        [check]="--help --json --quiet"
        [compare]="--help --tolerance --only --channel --json --quiet"
    )
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W "${!options[*]} --help --version" -- "$current")
    elif [ "$previous" = --from ] && [ "$command" != plot ]; then
        mapfile -t COMPREPLY < <(compgen -W "andi merivolta dunvale" -- "$current")
    elif [ "$previous" = --only ]; then
        mapfile -t COMPREPLY < <(compgen -W "signal peaks texts" -- "$current")
    elif [ "$previous" = --output-dir ] || [ "$previous" = -d ]; then
        mapfile -t COMPREPLY < <(compgen -d -- "$current")
    elif [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "${options[$command]}" -- "$current")
    fi
}
complete -o default -F _korlit korlit
