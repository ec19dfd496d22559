#!/usr/bin/env bash
# The demo tour: the `seluvorne` command on a realistic floor, in a data root
# inside the build folder. Usage: demo/tour.sh BUILD_FOLDER
set -euo pipefail

build=${1:-build}
command="$build/cli/seluvorne"
root="$build/demo-data"
out="$build/demo-output"
rm -rf "$root" "$out"
mkdir -p "$root" "$out"
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
if [[ -z "${XDG_RUNTIME_DIR:-}" ]]; then
  export XDG_RUNTIME_DIR="$build/demo-runtime"
  mkdir -p -m 700 "$XDG_RUNTIME_DIR"
fi

step() { printf '\n\033[1m== %s\033[0m\n$ %s\n' "$1" "${*:2}"; "${@:2}"; }
sv() { "$command" --data "$root" "$@"; }

step "A floor of a five-storey RC office, written through the page writers" sv sample 1/1/3
step "A second, empty floor" sv new 1/1/4
step "The floors of the data root" sv floors
step "The beams of floor 1/1/3 (pages are numbered from 1)" sv pages 1/1/3
step "Only the secondary beams" sv pages 1/1/3 --kind secondary
step "Beam Y2: its span table from the span model (a 150 mm step in span 3)" sv show 1/1/3 2
step "Beam X2 as JSON (the first span)" bash -c "'$command' --data '$root' show 1/1/3 6 --json | head -n 40"
step "Its elevation, to SVG and PNG" sv draw 1/1/3 6 -o "$out/beam-x2.svg"
sv draw 1/1/3 6 -o "$out/beam-x2.png"
step "Three beams copied to the other floor, after its last page" \
  sv copy 1/1/3 1/1/4 --pages 1-3 --append
step "A page exported as JSON and imported as page 10 of floor 1/1/4" \
  sv export 1/1/3 2 -o "$out/page-2.json"
sv import 1/1/4 "$out/page-2.json" --to 10
step "Floor 1/1/4 now" sv pages 1/1/4
step "Both floors checked" sv check 1/1/3
sv check 1/1/4

printf '\nThe drawings and the export are in %s:\n' "$out"
ls -1 "$out"
