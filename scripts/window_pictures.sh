#!/bin/sh
# Redraws the pictures of the library's windows in docs/images: frmSelect in
# multi-select mode with twelve beams, and frmKakunin. Headless (Qt's
# offscreen platform); uses the build folder $BUILD (default: build).
set -eu
cd "$(dirname "$0")/.."
BUILD=${BUILD:-build}
[ -f "$BUILD/build.ninja" ] || cmake -S . -B "$BUILD" -G Ninja
cmake --build "$BUILD" --target ui_tests
mkdir -p docs/images
SELUVORNE_PICTURES="$PWD/docs/images" QT_QPA_PLATFORM=offscreen \
  "$BUILD/tests/ui/ui_tests" --gtest_filter='SelectDialogTest.WindowPictures'
echo "written: docs/images/frmSelect.png docs/images/frmKakunin.png"
