#!/usr/bin/env bash
# setup.sh build|check|hosts|quality: installs what is missing of the Debian packages that the
# build, or also the checks, the trials in real hosts, or the measurements of Docs/quality.md need.
# Does nothing, and needs neither rights nor network, when all of it is there.
set -euo pipefail

# Package, what needs it (the others need the build's as well), reason.
packageList='
build-essential     build  compiler and C++ library
cmake               build  configures the build
ninja-build         build  runs it
pkg-config          build  finds the libraries that have no CMake files
zlib1g-dev          build  compressed blocks and resources
liblz4-dev          build  blocks of the LZ4 form
libpugixml-dev      build  the compilers of definitions, banks and impulses read XML with it
libcli11-dev        build  command lines of the tools
libsndfile1-dev     build  sound files in the tools
libkissfft-dev      build  transforms in the tools
nlohmann-json3-dev  build  JSON in the tools
libgtest-dev        build  the tests
libgmock-dev        build  matchers of the tests
libbenchmark-dev    build  the benchmarks
libfftw3-dev        build  reference for transforms, tests and benchmarks only
libzita-convolver-dev build reference for convolution, benchmarks only
libsoxr-dev         build  reference for resampling, tests and benchmarks only
gnuplot-nox         build  draws the spectra
fonts-dejavu-core   build  letters in the drawing
git                 check  lists the files to look at
ccache              check  keeps what was compiled for the next time
clang-14            check  builds the fuzz targets
libclang-rt-14-dev  check  libFuzzer and the sanitizers of that compiler
clang-format        check  layout of the code
clang-tidy          check  faults that compilers let pass
codespell           check  spelling
shellcheck          check  faults in shell scripts
ardour              hosts  a host that loads VST 3 plug-ins
sox                 hosts  makes and compares sounds
python3             hosts  edits the sessions of the host
liblilv-dev         quality loads effects to measure beside
calf-plugins        quality effects to measure beside
invada-studio-plugins-lv2 quality effects to measure beside
jq                  quality picks figures out of what the benchmarks print
util-linux          quality pins a benchmark to a core
'

wanted()
{
    awk -v group="$1" '$2 == "build" || $2 == group { print $1 }' <<<"$packageList"
}

isInstalled()
{
    [[ $(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null) == installed ]]
}

aptGet()
{
    local -a asRoot=()
    if [[ $(id -u) != 0 ]]; then
        if ! command -v sudo >/dev/null; then
            echo "setup: not root and no sudo here; as root run:" >&2
            echo "    apt-get install ${missing[*]}" >&2
            exit 1
        fi
        asRoot=(sudo)
    fi
    "${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive apt-get --quiet --yes \
        -o Acquire::Retries=3 -o DPkg::Lock::Timeout=300 "$@"
}

group=${1:-build}
if [[ ! $group =~ ^(build|check|hosts|quality)$ ]]; then
    echo "usage: setup.sh build|check|hosts|quality" >&2
    exit 2
fi
if ! command -v dpkg-query >/dev/null; then
    echo "setup: this is no Debian; the packages needed are, by their Debian names:" >&2
    wanted "$group" >&2
    exit 1
fi
missing=()
while read -r package; do
    isInstalled "$package" || missing+=("$package")
done < <(wanted "$group")
if ((${#missing[@]} > 0)); then
    echo "setup: installing ${missing[*]}"
    aptGet update
    aptGet install --no-install-recommends "${missing[@]}"
fi
