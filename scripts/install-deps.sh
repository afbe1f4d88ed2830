#!/usr/bin/env bash
# Installs the Debian packages that the build, the tests and the tools need, and any packages named
# as arguments (the fuzz build adds clang and libFuzzer). Idempotent: does nothing (not even an index
# update) when all of them are present.
set -euo pipefail

packages=(
  g++ cmake make pkg-config
  libnetcdf-dev netcdf-bin
  libudunits2-dev
  rapidjson-dev
  libproj-dev proj-data
  libxml2-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  libcli11-dev
  locales-all
  "$@"
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

sudo=""
if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
echo "installing: ${missing[*]}" >&2
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
