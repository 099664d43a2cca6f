# Sourced by the script test: the long run of what may lose a drawing.
# shellcheck shell=bash disable=SC2154

# The readers, each with a program fuzz_NAME, a folder corpus/NAME and a file dictionaries/NAME.dict.
fuzzers=(png recording open_raster pclx drawing_ascii drawing_binary settings mel ma lbx)

# campaign MINUTES: runs everything even after a failure, and fails at the end if anything did.
campaign() {
    local failed=() processors share
    processors=$(nproc)
    share=$(($1 * 60 * processors / ${#fuzzers[@]}))
    [ "$share" -gt 0 ] || die "The fuzzers need a minute at least."
    say "Full disks, kills, shortages of memory and threads"
    (cd "$root/build/release" && VELLIX_LONG=1 xvfb-run -a -s "-screen 0 1920x1200x24 -noreset" \
        bin/fault_tests --gtest_filter='-InterleavingWalk*') || failed+=("the fault tests")
    say "100,000 steps of interleaved work, 20 ways"
    beside_each_other walk {1..20}
    beside_each_other fuzz "${fuzzers[@]}"
    if [ ${#failed[@]} -gt 0 ]; then
        printf 'Failed: %s\n' "${failed[@]}" >&2
        return 1
    fi
}

# beside_each_other FUNCTION ARGUMENT...: runs the function with each argument, on $processors processors.
# Adds to `failed` the runs that fail.
beside_each_other() {
    local function=$1 argument process
    local -A arguments=()
    shift
    for argument in "$@" ''; do
        # At the last, empty argument waits for all.
        while [ ${#arguments[@]} -ge "$processors" ] || { [ -z "$argument" ] && [ ${#arguments[@]} -gt 0 ]; }; do
            wait -n -p process && unset "arguments[$process]" && continue
            failed+=("$function ${arguments[$process]}")
            unset "arguments[$process]"
        done
        [ -n "$argument" ] || break
        "$function" "$argument" &
        arguments[$!]=$argument
    done
}

# walk SEED: 5,000 steps on a display of its own.
walk() {
    local log="$root/build/release/walk-$1.log" status=0
    (cd "$root/build/release" && VELLIX_WALK_SEED=$1 VELLIX_WALK_STEPS=5000 \
        xvfb-run -a -n "$((100 + $1))" -s "-screen 0 1920x1200x24 -noreset" \
        bin/fault_tests --gtest_filter='InterleavingWalk*') >"$log" 2>&1 || status=$?
    if [ "$status" -eq 0 ]; then
        say "Way $1: 5,000 steps"
    else
        say "Way $1 failed:"
        tail -n 60 "$log" >&2
    fi
    return "$status"
}

# What makes the runs many and takes nothing from what they find: files in memory where they can be, short stacks of
# allocations, no symbols for new functions, and no second run to look for leaks.
fuzz_files=/dev/shm
[ -w "$fuzz_files" ] || fuzz_files=${TMPDIR:-/tmp}

# fuzz NAME: goes on from the inputs of earlier runs, for $share seconds. An input that ends the reader is kept in
# build/fuzz/found; it belongs into the corpus, with a name that begins with "found".
fuzz() {
    local inputs="$root/build/fuzz/inputs/$1" found="$root/build/fuzz/found" log="$root/build/fuzz/$1.log" status=0
    mkdir -p "$inputs" "$found"
    say "Fuzzing $1 for $share seconds"
    (cd "$root/build/fuzz" && TMPDIR=$fuzz_files UBSAN_OPTIONS=print_stacktrace=1 \
        ASAN_OPTIONS=detect_leaks=0:allocator_may_return_null=1:malloc_context_size=8:quarantine_size_mb=32 \
        "bin/fuzz_$1" "$inputs" "$root/tests/faults/corpus/$1" -dict="$root/tests/faults/dictionaries/$1.dict" \
        -artifact_prefix="$found/$1-" -max_total_time="$share" -max_len=4096 -timeout=60 -rss_limit_mb=3000 \
        -detect_leaks=0 -entropic=0 -print_funcs=0 -print_final_stats=1) >"$log" 2>&1 || status=$?
    say "Fuzzed $1: $(awk '/number_of_executed_units/ { print $2 }' "$log") runs"
    if [ "$status" -ne 0 ]; then
        tail -n 40 "$log" >&2
    fi
    return "$status"
}
