#!/usr/bin/env bash
# Fails when a C++ source is not laid out as .clang-format says (clang-format -i fixes it).
set -euo pipefail
cd "$(dirname "$0")/.."
git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run --Werror
