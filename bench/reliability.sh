#!/usr/bin/env bash
# Prints the figures of docs/reliability.md: faults, kills and power cuts of a save, the whole program under a user of chance,
# and the fuzzers where they are built.
#
# usage: bench/reliability.sh [--long]     --long: 100,000 power cuts' seeds, 5 minutes of events, 5 minutes of each fuzzer
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
seeds=1000 chance=(--events 1000000 --seconds 60) fuzzing=5
if [[ ${1:-} == --long ]]; then seeds=100000 chance=(--seconds 300) fuzzing=300; fi

# Complaints about the faults go to the error stream: there is one for most of them.
build/reliability_test 2>/dev/null | grep -E "^(fault cases|kill points):|FAILED"
build/power_loss "$seeds" 2>/dev/null
build/simulation_run "${chance[@]}"
if [[ -x build-fuzz/fuzz_profile_load ]]; then fuzz/run "$fuzzing"; fi
