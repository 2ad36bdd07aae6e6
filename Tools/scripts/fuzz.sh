#!/usr/bin/env bash
# fuzz.sh build|SECONDS [TARGET...]: builds the fuzz targets and runs them, two at a time, that long each.
# One verdict line a target: how many inputs it ran, how many edges of the code they reached, and
# the memory. Runs of 10 seconds and more keep the inputs that reach something new, as the next such
# run's beginning. What breaks a target lies in build/fuzz/fuzz/found.
set -euo pipefail
cd -- "$(dirname -- "$(realpath -- "${BASH_SOURCE[0]}")")/../.."

work=build/fuzz/fuzz
export ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1:quarantine_size_mb=16
export UBSAN_OPTIONS=print_stacktrace=1

# What an input may have and take. The compressed forms hold up to 1032 times their size.
limits()
{
    case $1 in
    zlib_block | lz4_block) echo "-max_len=4096 -malloc_limit_mb=16" ;;
    interface | state | stored_item) echo "-max_len=16384 -malloc_limit_mb=64" ;;
    *) echo "-max_len=65536 -malloc_limit_mb=16" ;;
    esac
}

# The figures of libFuzzer's last line.
verdict()
{
    awk -v name="$1" -v word="$2" '
        /cov: / {
            runs = substr($1, 2)
            for (i = 2; i < NF; ++i) {
                if ($i == "cov:") cov = $(i + 1)
                if ($i == "rss:") rss = $(i + 1)
            }
        }
        END {
            sub("Mb", " MB", rss)
            printf "  %-18s %-7s %9d runs  %6d edges  %s\n", name, word, runs, cov, rss
        }' "$work/$1.log"
}

runTarget()
{
    local name=$1 seconds=$2 corpus=$work/corpus/$1
    local -a options
    read -ra options <<<"$(limits "$name")"
    [[ -f Tests/Fuzz/Dictionaries/$name.dict ]] &&
        options+=("-dict=Tests/Fuzz/Dictionaries/$name.dict")
    ((seconds >= 10)) || corpus=$(mktemp -d)
    mkdir -p "$corpus" "$work/found"
    local word=ok
    nice "build/fuzz/bin/fuzz_$name" "${options[@]}" -max_total_time="$seconds" -timeout=10 \
        -rss_limit_mb=1024 -print_final_stats=1 -artifact_prefix="$work/found/$name-" \
        "$corpus" "$work/seeds/$name" >"$work/$name.log" 2>&1 || word=FAILED
    verdict "$name" "$word"
    ((seconds >= 10)) || rm -r "$corpus"
    [[ $word == ok ]] && return
    grep -v '^#' "$work/$name.log" | tail -n 40
    return 1
}

if [[ ${1:-} == --run ]]; then
    runTarget "$3" "$2"
    exit
fi
seconds=${1:?usage: fuzz.sh build|SECONDS [TARGET...]}
shift
mkdir -p "$work"
if ! { cmake --preset fuzz && cmake --build --preset fuzz --parallel "$(nproc)"; } \
    >"$work/build.log" 2>&1; then
    tail -n 60 "$work/build.log"
    exit 1
fi
[[ $seconds != build ]] || exit 0
build/fuzz/bin/fuzz_seeds "$work/seeds" Tests/Fuzz/Inputs
targets=("$@")
if ((${#targets[@]} == 0)); then
    mapfile -t targets < <(cd "$work/seeds" && printf '%s\n' *)
fi
# A target without inputs to begin from isn't one that was looked at.
for program in build/fuzz/bin/fuzz_*; do
    name=${program#build/fuzz/bin/fuzz_}
    [[ $name == seeds || -d $work/seeds/$name ]] || {
        echo "fuzz: no inputs for $name"
        exit 1
    }
done
printf '%s\n' "${targets[@]}" | xargs -P 2 -I{} "$0" --run "$seconds" {}
