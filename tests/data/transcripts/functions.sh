# What the transcripts call by name.

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
    plant "$@" && findings planted.cdf |
        grep -vxF -e 'loss zone-left-out: the zone offset of injection_date_time_stamp 20240229120000+0100 is left out' \
            -e 'loss area-by-sixty-on-return: peak_area keeps its numbers, and each way back to ANDI divides them by 60'
    true
}

# The files below a folder, hidden ones included, on a line.
files() {
    echo $(cd "${1:-.}" && find . -type f | sed 's,^\./,,' | grep -vE '^\.(output|errors|line)$' | LC_ALL=C sort)
}

isForeignFileMissing() {
    [ ! -e "$FOREIGN" ]
}

# The folder "in" with so many files that become ANDI files, of which a fifth each are pairs and broken
# runs, and the others are runs of two channels (two.run).
archive() {
    mkdir -p in
    head -c 200 two.run >broken.run
    for i in $(seq "$1"); do
        case $((i % 5)) in
        0) cp "$SAMPLES"/gc_run.sli in/${i}_.sli && cp "$SAMPLES"/gc_run.rpt in/${i}_.rpt ;;
        1) cp broken.run in/${i}_.run ;;
        *) cp two.run in/${i}_.run ;;
        esac
    done
}

# Converts the folder "in" with the options given and does $1 to the command once it has begun; its
# lines and sums stand in the files of that name.
disturbed() {
    disturb=$1
    shift
    korlit convert in --to andi "$@" >lines 2>sums &
    parent=$!
    until [ -s lines ] || ! kill -0 $parent 2>/dev/null; do sleep 0.01; done
    $disturb 2>/dev/null
    wait $parent
}

# Converts into the folder out with the options given, and has the whole group of processes killed at
# the $1-th move.
killedAt() {
    at=$1
    shift
    setsid --wait sh -c 'KILL_AT=$0 ASAN_OPTIONS=verify_asan_link_order=0 LD_PRELOAD=$ODD_SYSTEM korlit "$@"' \
        $at convert -d out -j 1 -q "$@" >/dev/null 2>&1
    status=$?
    # Its lock goes with the last of the group.
    for lock in out/.korlit-*/lock; do [ ! -e "$lock" ] || flock "$lock" true; done
    return $status
}

# Converts with the options given, over and over, and has the whole group of processes killed at the
# first move, the second and so on, until it is through. After each the folder out must be as one of
# the folders before and after, once another conversion into it has begun.
killedAtEachMove() {
    for at in $(seq 100); do
        rm -rf out && cp -r before out
        killedAt $at "$@"
        [ $? = 137 ] || break
        korlit convert -d out -q other.run >/dev/null
        rm out/other1.cdf
        diff -r before out >/dev/null || diff -r after out || echo "killed at $at"
        ls -A out | grep korlit
    done
    test $at -gt 5 -a $at -lt 100
}

# Converts hplc_run.cdf into the folder out with the options given, over and over, with the worker
# killed at its first move, the second and so on. The command must tell of a conversion if and only
# if the files are there.
workerKilledAtEachMove() {
    for at in $(seq 20); do
        rm -rf out
        ASAN_OPTIONS=verify_asan_link_order=0 LD_PRELOAD=$ODD_SYSTEM KILL_WORKER=1 KILL_AT=$at \
            setsid --wait korlit convert hplc_run.cdf -d out -j 1 "$@" >line 2>&1
        echo $? $(sed 's/, its process.*//; 1q' line) $(cd out && ls)
    done | uniq | sed 's/hplc_run/x/g'
}

killWorkers() {
    while kill -0 $parent && ! grep -q 'killed by signal 9' lines; do
        read -r workers </proc/$parent/task/$parent/children
        kill -KILL $workers
        sleep 0.005
    done
}

# In one go: what comes into a folder while it is removed would stay.
clearUp() {
    mv out/.korlit-work-* cleared && rm -rf cleared
}

interrupt() {
    kill -INT $parent
}

hangUp() {
    kill -HUP $parent
}

# The long options of a text on a line.
longOptions() {
    echo $(grep -o -e '--[a-z][a-z-]*' | LC_ALL=C sort -u)
}

# Runs a line of the shell in a folder below so many others that the path of the whole is longer than the
# system takes.
deepDown() {
    python3 -c 'import os, sys
for _ in range(17):
    os.makedirs(250 * "0", exist_ok=True)
    os.chdir(250 * "0")
os.execvp("sh", ["sh", "-c", sys.argv[1]])' "$1"
}

# Runs the command on a system that odd_system.c describes.
oddly() {
    ASAN_OPTIONS=verify_asan_link_order=0 LD_PRELOAD=$ODD_SYSTEM korlit "$@"
}

# Compares a file with a copy of gc_run.cdf that has another byte at a place, but for what is expected.
damaged() {
    cp gc_run.cdf x.cdf
    printf A | dd of=x.cdf bs=1 seek="$1" conv=notrunc status=none
    korlit compare "$2" x.cdf | grep -v ^expected
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

# Runs the command with a library that changes the last bit of a byte of what it writes: of the file
# whose name ends so behind the stem of its source, at that place.
withOddLibrary() {
    file=$1
    place=$2
    shift 2
    ODD_FILE=$file ODD_PLACE=$place ASAN_OPTIONS=verify_asan_link_order=0 LD_PRELOAD=$ODD_LIBRARY korlit "$@"
}

# What korlit verify says, without digests, times and the folder of the transcript.
verified() {
    korlit verify "$@" >.verified 2>.said
    status=$?
    sed -E 's/batch of 20[^ ]* /batch of TIME /; s/record of [0-9]+ of its ([0-9]{2})/record of SOME of its \1/' .said >&2
    rm .said
    sed -E "s,[^ \"]*/korlit-[A-Za-z0-9]+/,,; s/[0-9a-f]{64}/DIGEST/g" .verified && rm .verified
    return $status
}

# What a manifest says of its batches and files, but for what differs from run to run.
records() {
    sed -E "s,$PWD,HERE,g"'
        s/"batch":"[-0-9]+",//; s/"korlit":"[^"]*"/"korlit":"VERSION"/; s/"time":"[0-9-]+T[0-9:]+\+/"time":"TIME+/; s/"machine":"[^"]*"/"machine":"NAME"/
        s/"sha256":"[0-9a-f]{64}"/"sha256":"DIGEST"/g; s/"outline":\[[0-9,-]*\]/"outline":[...]/g
        s/("peaks":\[\{[^}]*\}),[^]]*/\1,.../g' "$1"
}

# All that a manifest has digests of, as sha256sum checks them.
digests() {
    grep -o '"path":"[^"]*","size":[0-9]*,"sha256":"[0-9a-f]*"' "$1" |
        sed -E 's/"path":"([^"]*)","size":[0-9]*,"sha256":"([0-9a-f]*)"/\2  \1/'
}

# The rows of a page: verdict, sample, points, peaks and file.
rowsOf() {
    grep '^<tbody' "$1" | sed -E 's,<svg.*</svg></td></tr>,,; s,</summary>.*,,; s,<[^>]*>+, ,g; s/ +/ /g'
}

# The folder "d" with one file at least of each kind, whole and broken, and what is none.
assorted() {
    mkdir -p d/sub d/far
    cp "$SAMPLES"/gc_run.* "$SAMPLES"/hplc_run.cdf "$SAMPLES"/dad_run.run d
    cp d/gc_run.sli d/sub/half.sli
    cp d/gc_run.rpt d/far/lone.rpt
    head -c 9000 d/hplc_run.cdf >d/cut.cdf
    cp d/hplc_run.cdf d/far/kept.old
    cp d/hplc_run.cdf d/.hidden.cdf
    echo x >d/notes.txt
    ln -s sub d/link
}

# The first two keys of each object on a line.
twoKeys() {
    sed -E 's/^(."[^"]*":"[^"]*","[^"]*":"[^"]*").*/\1/'
}

# Runs the command when whoever reads its output has gone, and prints its status.
unread() {
    { sleep 0.1; korlit "$@"; echo $? >status; } | true
    cat status
}
