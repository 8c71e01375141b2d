#!/usr/bin/env bash
# Writes compile_commands.json beside the README, where clangd finds it: the command that compiles
# each source on its own, natively or for Windows. Only configures.
set -euo pipefail
cd "$(dirname "$0")/.."
mkdir -p build
. tools/packages.sh
need_packages "${build_packages[@]}" "${editor_packages[@]}" "${test_packages[@]}" "${bench_packages[@]}" \
  "${windows_packages[@]}" "${windows_test_packages[@]}"
folder=build/clangd
cmake --preset dev -B "$folder/native" -DKVO_BENCH=ON -DKVO_FUZZ=ON >build/clangd.log
# Nothing is built there, so any file can stand in for the program that generates sources. As for
# clang-tidy, the commands must name the cross-compiler's header folders.
cmake --preset windows-tests -B "$folder/windows" -DKVO_UNITY=OFF -DKVO_COM_SOURCES="$PWD/test" \
  -DCMAKE_CXX_CLANG_TIDY=clang-tidy >>build/clangd.log

# Each file is a list with an object on several lines; the last lines are "}" and "]".
{
  sed '$d' "$folder/native/compile_commands.json" | sed '$s/$/,/'
  sed 1d "$folder/windows/compile_commands.json"
} >compile_commands.json

# Skips the examples, which are separate projects, and the sources of builds without a shop; clangd
# uses the commands of neighbouring files for them.
missing=0
while read -r source; do
  grep -qF "\"file\": \"$PWD/$source\"" compile_commands.json || {
    echo "compile_commands.json lacks $source" >&2
    missing=1
  }
done < <(git ls-files '*.cpp' ':!examples' ':!document/shop/without')
exit $missing
