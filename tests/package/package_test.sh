#!/usr/bin/env bash
# Installs the built library into a fresh prefix and builds the example
# clients against it, as an integrator would: with find_package, with
# pkg-config, and the Python client with the installed module.
#   package_test.sh <build dir> <source dir> <work dir> <python install dir> <python>
set -euo pipefail
build=$1 source=$2 work=$3 python_dir=$4 python=$5

rm -rf "$work"
mkdir -p "$work"
prefix=$work/prefix
cmake --install "$build" --prefix "$prefix" >/dev/null

fail() { echo "package test: $*" >&2; exit 1; }

# Every installed header compiles on its own include path alone.
for header in "$prefix"/include/seluvorne/*.h; do
  echo "#include \"seluvorne/$(basename "$header")\""
done >"$work/all_headers.cpp"
c++ -std=c++20 -fsyntax-only -I"$prefix/include" "$work/all_headers.cpp" ||
  fail "an installed header does not compile against the installed headers alone"

# Every installed header's code is in the library: a client referencing one
# function of each links against the installed library alone.
for header in "$prefix"/include/seluvorne/*.h; do
  grep -q "#include \"seluvorne/$(basename "$header")\"" "$source/tests/package/every_header.cpp" ||
    fail "tests/package/every_header.cpp does not use the installed header $(basename "$header")"
done
c++ -std=c++20 -I"$prefix/include" "$source/tests/package/every_header.cpp" -o "$work/every_header" \
  -L"$prefix/lib" -lseluvorne -Wl,-rpath,"$prefix/lib" ||
  fail "a client of every installed header does not link against the installed library"
"$work/every_header"

# What clients inherit carries none of our own warning options.
if grep -q -- '-W' "$prefix"/lib/cmake/SeluVorneDS/SeluVorneDSTargets*.cmake "$prefix"/lib/pkgconfig/seluvorne.pc; then
  fail "the exported target or seluvorne.pc carries warning options"
fi

echo "== find_package(SeluVorneDS)"
cmake -S "$source/examples/cpp" -B "$work/client" -G Ninja -DCMAKE_BUILD_TYPE=Release \
  -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/client" >/dev/null
"$work/client/client" "$work/data-cmake"

echo "== pkg-config seluvorne"
export PKG_CONFIG_PATH=$prefix/lib/pkgconfig
[[ $(pkg-config --modversion seluvorne) == "$(cat "$build/seluvorne_version")" ]] ||
  fail "seluvorne.pc has version $(pkg-config --modversion seluvorne)"
# shellcheck disable=SC2046 # pkg-config's flags are separate words
c++ -std=c++20 -O1 "$source/examples/cpp/main.cpp" -o "$work/client-pc" \
  $(pkg-config --cflags --libs seluvorne) -Wl,-rpath,"$(pkg-config --variable=libdir seluvorne)"
"$work/client-pc" "$work/data-pc"

echo "== python: import seluvorne from the prefix"
PYTHONPATH=$prefix/$python_dir "$python" -c \
  "import seluvorne, sys; sys.exit(0 if seluvorne.__file__.startswith('$prefix') else 'not the installed module: ' + seluvorne.__file__)"
PYTHONPATH=$prefix/$python_dir "$python" "$source/examples/python/client.py"

rm -rf "$work"
