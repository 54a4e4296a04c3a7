#!/usr/bin/env bash
# Builds the libFuzzer targets with clang in ./build-fuzz and runs each of them in turn.
#   scripts/fuzz.sh [--seconds N | --runs N] [target...]
# Default: every fuzz/fuzz_*.cpp for 60 seconds each. Every target starts from its seed corpus
# in fuzz/corpus/<name without fuzz_>, with the dictionary fuzz/dict/<name>.dict where there is
# one, and keeps what it finds in a scratch corpus under build-fuzz/corpus/, so the repository's
# seeds stay as they are and later runs go on from there. An input that breaks a target is
# written to build-fuzz/artifacts/<name>/ and ends the script with a failure; the whole output
# of each target is in build-fuzz/<target>.log.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)

limit=(-max_total_time=60)
targets=()
while (($#)); do
    case "$1" in
        --seconds) limit=(-max_total_time="$2"); shift 2 ;;
        --runs) limit=(-runs="$2"); shift 2 ;;
        *) targets+=("$1"); shift ;;
    esac
done
((${#targets[@]})) || mapfile -t targets < <(cd fuzz && ls fuzz_*.cpp | sed 's/\.cpp$//')

jobs=$(nproc 2>/dev/null || echo 2)
((jobs <= 2)) || jobs=2
[ -f build-fuzz/CMakeCache.txt ] || cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DTARVELO_FUZZ=ON \
    -DTARVELO_BUILD_TESTS=OFF -DTARVELO_BUILD_BENCH=OFF >/dev/null
cmake --build build-fuzz -j"$jobs" --target "${targets[@]}"

export QT_QPA_PLATFORM=offscreen
# Session times are local times: a zone with summer time makes its gaps and repeats reachable.
export TZ=Europe/Berlin
for target in "${targets[@]}"; do
    name=${target#fuzz_}
    # Absolute paths: a target may change its working folder (the model does).
    scratch=$root/build-fuzz/corpus/$name
    artifacts=$root/build-fuzz/artifacts/$name/
    mkdir -p "$scratch" "$artifacts"
    seeds=()
    [ -d "fuzz/corpus/$name" ] && seeds=("$root/fuzz/corpus/$name")
    lsan=
    options=()
    case $target in
        fuzz_session | fuzz_settings_json) lsan=suppressions=$root/fuzz/qt_json_leak.supp ;;
        # The model keeps its session from one input to the next, so nearly every input ends
        # with more allocations than frees, and libFuzzer would scan the whole heap after each
        # one: 25 times slower. Leaks are still looked for when the run ends.
        fuzz_device) options=(-detect_leaks=0) ;;
    esac
    # Words that the readers compare inside Qt, which the fuzzer can't see.
    [ -f "fuzz/dict/$name.dict" ] && options+=(-dict="$root/fuzz/dict/$name.dict")
    echo "== $target"
    status=0
    LSAN_OPTIONS=$lsan build-fuzz/fuzz/"$target" "${limit[@]}" "${options[@]}" -print_final_stats=1 \
        -artifact_prefix="$artifacts" "$scratch" "${seeds[@]}" > "build-fuzz/$target.log" 2>&1 \
        || status=$?
    grep -E "^#[0-9]+.*(INITED|DONE)|stat::number_of_executed_units|ERROR|SUMMARY|violated" \
        "build-fuzz/$target.log" | tail -n 5
    if ((status != 0)); then
        echo "$target failed; the whole output is in build-fuzz/$target.log" >&2
        exit "$status"
    fi
done
