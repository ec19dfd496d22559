#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the demo need.
# Idempotent and quiet when everything is already there.
set -euo pipefail

packages=(
  cmake ninja-build g++ make pkg-config
  libsqlitecpp-dev libsqlite3-dev
  googletest libgtest-dev libgmock-dev libbenchmark-dev
  libcli11-dev nlohmann-json3-dev libfmt-dev
  pybind11-dev python3-dev python3-pytest
  qt6-base-dev qt6-svg-dev fonts-noto-cjk
  mdbtools mdbtools-dev
  clang libclang-rt-14-dev lld
  clang-format
)

missing=()
for package in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null || true)
  [[ "$status" == "install ok installed" ]] || missing+=("$package")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

sudo=""
[[ $(id -u) -eq 0 ]] || sudo="sudo"
echo "setup: installing ${missing[*]}"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
