#!/usr/bin/env bash
# Runs the random trial of the hook library with the session bus that xfwm4 needs. The short run takes about 40 seconds;
# `bench/hook_reliability.sh 100000 1000` is the long one. usage: bench/hook_reliability.sh [PRESSES [DEATHS [SEED [MANAGER...]]]]
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."
exec dbus-run-session -- build/hook_reliability "$@"
