#!/usr/bin/env bash
# Prints how much of the program is covered, branches above all: of everything above desktop/, and of the save path, by the
# tests that need no desktop and by what chance does: the random user, the power cuts, and as many inputs of each fuzzer,
# the same each time. Nothing is left out of the count. Needs Clang and Debian's package llvm; builds in build-coverage/.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
inputs=20000
programs=(core_test platform_test reliability_test hooklib_sampler_test simulation_run power_loss)
fuzzers=(fuzz_{profile_load,profile_save,send_keys,dispatch,recognition,sampler,drawing})
cmake -S . -B build-coverage -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=Debug -DSTROKEMIND_BENCH=OFF \
  -DSTROKEMIND_SANITIZE=undefined,fuzzer-no-link \
  -DCMAKE_CXX_FLAGS="-O1 -fprofile-instr-generate -fcoverage-mapping" >/dev/null
cmake --build build-coverage --target "${programs[@]}" fuzzers >build-coverage/build.log
rm -rf build-coverage/*.profraw build-coverage/corpus
objects=()
for program in "${programs[@]}"; do
  path=$(find build-coverage -name "$program" -type f -perm -u+x | head -n 1)
  LLVM_PROFILE_FILE="build-coverage/$program.profraw" "$path" >"build-coverage/$program.log" 2>&1
  objects+=(-object "$path")
done
LLVM_PROFILE_FILE=build-coverage/fuzz-%p.profraw FUZZ_BUILD=build-coverage FUZZ_SEED=1 fuzz/run --inputs "$inputs" \
  >build-coverage/fuzz.log
for fuzzer in "${fuzzers[@]}"; do objects+=(-object "build-coverage/$fuzzer"); done
llvm-profdata merge -sparse build-coverage/*.profraw -o build-coverage/all.profdata

llvm-cov report "${objects[@]:1}" -instr-profile=build-coverage/all.profdata -show-branch-summary \
  >build-coverage/report.txt 2>build-coverage/report.log

# report TITLE PATTERN: the share of the branches of the files that match, and the files where some are not taken.
report() {
  echo "== $1"
  awk -v pattern="$2" '
    $1 !~ pattern || $(NF - 2) !~ /^[0-9]+$/ || $(NF - 2) == 0 { next }
    { all += $(NF - 2); missed += $(NF - 1) }
    $(NF - 1) > 0 { printf "%-32s %3d of %4d branches not taken\n", $1, $(NF - 1), $(NF - 2) }
    END { printf "%.1f %% of %d branches taken\n", 100 * (all - missed) / all, all }' build-coverage/report.txt
}
report "everything above desktop/" \
  '^(platform|model|forms|actions|effects|tray|recognition|capture|store|ui)/|^app/programme'
report "the save path" \
  '^(desktop/(profile|system_files)|platform/profile_(service|text)|store/profil)[.]'
