#!/usr/bin/env bash
# Builds the fuzz targets (clang, libFuzzer, AddressSanitizer and UndefinedBehaviorSanitizer) into
# ./build-fuzz and runs each in turn for SECONDS (default 60), then prints what each did: executions,
# executions per second and findings. A finding is a crash, a hang over 5 s, a sanitizer report or a
# total that no longer adds up; its input is kept in build-fuzz/findings/TARGET. The corpus each
# target grows stays in build-fuzz/corpus/TARGET for the next run. Exits 1 when anything was found.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-60}"
FPUBENCH_WITH_FUZZ=1 bash scripts/setup.sh
cmake -S . -B build-fuzz -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=RelWithDebInfo -DFPU_FUZZ=ON >/dev/null
cmake --build build-fuzz -j"$(nproc)" --target fuzzers

export ASAN_OPTIONS="detect_leaks=1:check_initialization_order=1"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
export LSAN_OPTIONS="suppressions=$PWD/scripts/lsan.supp:print_suppressions=0"

summary=()
total=0
found_any=0
while read -r target; do
    [ -n "$target" ] || continue
    corpus="build-fuzz/corpus/$target"
    findings="build-fuzz/findings/$target"
    log="build-fuzz/logs/$target.log"
    mkdir -p "$corpus" "$findings" "$(dirname "$log")"
    [ -d "fuzz/corpus/$target" ] && cp -n fuzz/corpus/"$target"/* "$corpus"/ 2>/dev/null || true
    [ "$target" = fuzz_macro ] && cp -n examples/*.oposcmd "$corpus"/ 2>/dev/null || true
    dict=()
    [ -f "fuzz/$target.dict" ] && dict=(-dict="fuzz/$target.dict")
    before=$(find "$findings" -type f | wc -l)
    echo "== $target for ${seconds}s"
    set +e
    "./build-fuzz/fuzz/$target" -max_total_time="$seconds" -timeout=5 -print_final_stats=1 \
        -artifact_prefix="$findings/" "${dict[@]}" "$corpus" >"$log" 2>&1
    status=$?
    set -e
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
    rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log" | tail -1)
    new=$(( $(find "$findings" -type f | wc -l) - before ))
    if [ "$status" -ne 0 ] || [ "$new" -gt 0 ]; then
        found_any=1
        echo "   finding (exit $status), see $log and $findings"
        grep -m3 -E "ERROR|runtime error|fuzz finding|Timeout|out-of-memory" "$log" | sed 's/^/   /' || true
    fi
    total=$(( total + ${runs:-0} ))
    summary+=("$(printf '%-22s %12s %10s %9s' "$target" "${runs:-?}" "${rate:-?}" "$new")")
done < build-fuzz/fuzz/fuzz-targets.txt

printf '%-22s %12s %10s %9s\n' target executions exec/s findings
printf '%s\n' "${summary[@]}"
printf '%-22s %12s\n' total "$total"
exit "$found_any"
