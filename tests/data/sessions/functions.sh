# What the sessions call by name.

# Makes planted.cdf from good.cdl, changed by sed.
plant() {
    sed "$@" "$DATA/good.cdl" >text.cdl && ncgen -k classic -o planted.cdf text.cdl
}

# What check finds in a file, as "severity rule: message", but for what has no place in a pair.
findings() {
    korlit check --json "$1" | sed 's/{"severity"/\n&/g' |
        sed -n 's/^{"severity":"\([a-z]*\)","rule":"\([^"]*\)","message":"\(.*\)"},\{0,1\}.*$/\1 \2: \3/p' |
        grep -v '^loss no-place' | sort
}

# What check finds in planted.cdf beyond what good.cdl has.
planted() {
    plant "$@" && findings planted.cdf | grep -vxF 'loss zone-left-out: the zone offset of injection_date_time_stamp 20240229120000+0100 is left out'
    true
}

# The files below a folder, hidden ones included, on a line.
files() {
    echo $(cd "${1:-.}" && find . -type f | sed 's,^\./,,' | grep -vE '^\.(output|errors|line)$' | LC_ALL=C sort)
}

isForeignFileMissing() {
    [ ! -e "$FOREIGN" ]
}

# The folder "in" with so many files, of which a fifth each are pairs, runs of two channels (two.run)
# and broken, and the others are small.cdf.
archive() {
    mkdir -p in
    head -c 900 small.cdf >broken.cdf
    for i in $(seq "$1"); do
        case $((i % 5)) in
        0) cp "$SAMPLES"/gc_run.sli in/${i}_.sli && cp "$SAMPLES"/gc_run.rpt in/${i}_.rpt ;;
        1) cp two.run in/${i}_.run ;;
        2) cp broken.cdf in/${i}_.cdf ;;
        *) cp small.cdf in/${i}_.cdf ;;
        esac
    done
}

# Converts the folder "in" with the options given and does $1 to the command once it has begun; its
# lines and sums stand in the files of that name.
disturbed() {
    disturb=$1
    shift
    korlit convert in "$@" >lines 2>sums &
    parent=$!
    until [ -s lines ]; do :; done
    $disturb 2>/dev/null
    wait $parent
}

# All workers, again and again until one was killed at its work.
killWorkers() {
    while kill -0 $parent && ! grep -q 'killed by signal 9' lines; do
        read -r workers </proc/$parent/task/$parent/children
        kill -KILL $workers
        sleep 0.005
    done
}

interrupt() {
    kill -INT $parent
}

# The long options of a text on a line.
longOptions() {
    echo $(grep -o -e '--[a-z][a-z-]*' | LC_ALL=C sort -u)
}

# Runs the command on a system that odd_system.c describes.
oddly() {
    ASAN_OPTIONS=verify_asan_link_order=0 LD_PRELOAD=$ODD_SYSTEM korlit "$@"
}

# What completion in bash offers for the last of the words, and how it asks for files.
offered() {
    bash -c '. "$SHARED"/korlit.bash
        compopt() { printf "%s" "[$2]"; }
        COMP_WORDS=(korlit "$@")
        COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
        _korlit
        echo "${COMPREPLY[@]}"' offered "$@"
}
