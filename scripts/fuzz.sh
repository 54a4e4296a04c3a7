#!/usr/bin/env bash
# Builds the libFuzzer targets with clang in ./build-fuzz and runs each of them.
#   scripts/fuzz.sh [--seconds N | --runs N] [target...]
# Every target starts from its seed corpus in fuzz/corpus/<name>; new inputs go to a scratch
# corpus under build-fuzz/, so the repository's seeds stay as they are.
set -euo pipefail
cd "$(dirname "$0")/.."

limit=(-max_total_time=60)
targets=()
while (($#)); do
    case "$1" in
        --seconds) limit=(-max_total_time="$2"); shift 2 ;;
        --runs) limit=(-runs="$2"); shift 2 ;;
        *) targets+=("$1"); shift ;;
    esac
done

jobs=$(nproc 2>/dev/null || echo 2)
[ -f build-fuzz/CMakeCache.txt ] || cmake -S . -B build-fuzz -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DTARVELO_FUZZ=ON \
    -DTARVELO_BUILD_TESTS=OFF -DTARVELO_BUILD_BENCH=OFF >/dev/null
cmake --build build-fuzz -j"$jobs" --target $( ((${#targets[@]})) && echo "${targets[@]}" || \
    (cd fuzz && ls fuzz_*.cpp | sed 's/\.cpp$//' | tr '\n' ' '))

((${#targets[@]})) || mapfile -t targets < <(cd fuzz && ls fuzz_*.cpp | sed 's/\.cpp$//')
export QT_QPA_PLATFORM=offscreen
for target in "${targets[@]}"; do
    name=${target#fuzz_}
    scratch=build-fuzz/corpus/$name
    mkdir -p "$scratch"
    seeds=fuzz/corpus/$name
    [ -d "$seeds" ] || seeds=
    echo "== $target"
    build-fuzz/fuzz/"$target" "${limit[@]}" -print_final_stats=1 "$scratch" $seeds 2>&1 \
        | grep -E "^#[0-9]+.*(DONE|INITED)|stat::number_of_executed_units|cov:|ERROR|SUMMARY" \
        | tail -n 4
    test "${PIPESTATUS[0]}" -eq 0
done
