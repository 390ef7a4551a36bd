#!/usr/bin/env bash
# Runs the fuzz targets: scripts/fuzz.sh [TARGET...]
#
# Installs what is missing, builds the preset "fuzz" and runs all targets (or those named). Each starts from the seeds
# and from the inputs that earlier runs have left in build/fuzz/corpus. Each run adds a line to build/fuzz/runs.log:
# end time, target, seconds, executions, covered edges and features. Fails if a target finds something, and says
# where the input is. The output of each target is in build/fuzz/TARGET.log.
#
# FUZZ_SECONDS  seconds per target; 120 by default
# FUZZ_JOBS     number of targets that run at once; by default one per processor
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly seconds=${FUZZ_SECONDS:-120}
readonly jobs=${FUZZ_JOBS:-$(nproc)}
readonly build=build/fuzz
readonly finds=$build/finds

# target: folder of seeds, dictionary, longest input
declare -rA targets=(
    [tokenizer]="expressions xpath 300"
    [expression]="expressions xpath 200"
    [document]="documents xml 1500"
    [dtd]="dtds structure 600"
    [plain]="plain plain 400"
    [query]="queries query 600"
    [zip]="archives zip 1200"
    [structure]="structures structure 800"
)

# The inputs that a target writes and reads again lie in memory where there is a place for that.
if [[ -d /dev/shm && -w /dev/shm ]]; then
    export TMPDIR=/dev/shm
fi

# What AddressSanitizer holds back after it was freed must leave room below the limit of memory.
export ASAN_OPTIONS=quarantine_size_mb=16

stat_of() { sed -n "s/^stat::$2: *//p" "$build/$1.log" | tail -1; }

run_target()
{
    local target=$1 seeds dictionary length status=0 begin=$SECONDS
    read -r seeds dictionary length <<<"${targets[$target]}"
    mkdir -p "$build/corpus/$target" "$finds"
    "$build/bin/fuzz_$target" \
        -max_total_time="$seconds" -max_len="$length" -timeout=1 -rss_limit_mb=256 \
        -dict="$build/dictionaries/$dictionary.dict" -artifact_prefix="$finds/$target-" -print_final_stats=1 \
        "$build/corpus/$target" "fuzz/seeds/$seeds" >"$build/$target.log" 2>&1 || status=$?

    local coverage executions
    coverage=$(grep -a -o 'cov: [0-9]* ft: [0-9]*' "$build/$target.log" | tail -1)
    executions=$(stat_of "$target" number_of_executed_units)
    local line="$target $((SECONDS - begin)) s, $executions executions, $coverage"
    echo "$(date -u +%FT%TZ) $line" >>"$build/runs.log"
    if ((status == 0)); then
        echo "$line"
    else
        echo "$line: FOUND SOMETHING, see $build/$target.log" >&2
        grep -a -E 'broken:|ERROR:|SUMMARY:|Test unit written' "$build/$target.log" >&2 || true
    fi
    return "$status"
}

if (($# == 0)); then
    set -- tokenizer expression document dtd plain query zip structure
fi
for target in "$@"; do
    [[ -v targets[$target] ]] || { echo "fuzz.sh: unknown target: $target" >&2 && exit 2; }
done

scripts/install-deps.sh build fuzz
cmake --preset fuzz --log-level=WARNING
cmake --build --preset fuzz

failed=0
running=0
for target in "$@"; do
    if ((running >= jobs)); then
        wait -n || failed=1
        running=$((running - 1))
    fi
    run_target "$target" &
    running=$((running + 1))
done
while ((running > 0)); do
    wait -n || failed=1
    running=$((running - 1))
done
exit "$failed"
