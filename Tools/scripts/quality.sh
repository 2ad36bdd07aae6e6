#!/usr/bin/env bash
# shellcheck disable=SC2016  # the filters' variables are jq's
# quality.sh [--fuzz SECONDS] [--soak MINUTES] [SECTION...]: measures what the engine is held to and writes
# Docs/quality.md. Sections: conformance realtime cost fuzz soak; without names, all of them, which takes
# well over an hour, on a machine that does nothing else. What a section found stays in build/quality/,
# with the revision it was found at; the document is put together from all that lies there.
set -euo pipefail
cd -- "$(dirname -- "$(realpath -- "${BASH_SOURCE[0]}")")/../.."

out=build/quality
bin=build/release/bin
fuzzSeconds=300
soakMinutes=10
usage()
{
    echo "usage: quality.sh [--fuzz SECONDS] [--soak MINUTES] [conformance|realtime|cost|fuzz|soak...]" >&2
    exit 2
}
sections=()
while (($# > 0)); do
    case "$1" in
    --fuzz | --soak)
        [[ ${2:-} =~ ^[1-9][0-9]*$ ]] || usage
        if [[ $1 == --fuzz ]]; then fuzzSeconds=$2; else soakMinutes=$2; fi
        shift
        ;;
    conformance | realtime | cost | fuzz | soak) sections+=("$1") ;;
    *) usage ;;
    esac
    shift
done
((${#sections[@]} > 0)) || sections=(conformance realtime cost fuzz soak)

# Of repeated runs the least counts: what else the machine does only adds.
figures='
def least(name; field): [.[] | .benchmarks[] | select(.run_name == name and .run_type == "iteration") | .[field]]
    | if length == 0 then error("no figure of " + name) else min end;
def first(name; field): [.[] | .benchmarks[] | select(.run_name == name and .run_type == "iteration") | .[field]][0];
def time(name): least(name; "cpu_time");
def round(digits): . * pow(10; digits) | round / pow(10; digits);
def row(what; value; digits; bound; holds):
    "| \(what) | \(value | round(digits)) | \(bound) | \(if holds then "holds" else "**missed**" end) |";
def atMost(what; value; bound): row(what; value; 2; "at most \(bound)"; value <= bound);
def atLeast(what; value; bound): row(what; value; 1; "at least \(bound)"; value >= bound);
'

bench()
{
    local name=$1
    shift
    # On one core: a library that starts threads of its own shall pay for them, too.
    taskset -c $(($(nproc) - 1)) "$bin/bench_$name" --benchmark_format=json \
        --benchmark_repetitions=5 --benchmark_enable_random_interleaving=true \
        --benchmark_min_time=0.1 "$@" >"$out/$name.json" 2>"$out/$name.log"
}

build()
{
    if ! { cmake --preset release && cmake --build --preset release --parallel "$(nproc)"; } >"$out/build.log" 2>&1; then
        tail -n 60 "$out/build.log" >&2
        exit 1
    fi
}

# table FILTER: prints what the filter makes of all figures.
table()
{
    jq --slurp --raw-output "$figures $1" "$out"/{processes,filters,wrapper,dsp,first_load,component,memory,peers,interface}.json
}

conformance()
{
    local verdict="no case fails"
    "$bin/reelpath-conform" --loading CabEnab --loading CabIndx --json "$out/conform.json" \
        >"$out/conform.log" || verdict="**cases fail**"
    echo "## Conformance"
    echo
    echo "\`reelpath-conform --loading CabEnab --loading CabIndx\`: the finished bundle against what hosts rely"
    echo "on, each case in a process of its own; $verdict. That each case can fail is shown on a plug-in with"
    echo "faults (\`Tests/Tools/conform/Faults.h\`)."
    echo
    echo "| cases of | passed | failed | not judged |"
    echo "|---|--:|--:|--:|"
    jq --raw-output '.cases | group_by(.name | split(".")[0])[] |
        def count(verdict): map(select(.verdict == verdict)) | length;
        "| \(.[0].name | split(".")[0]) | \(count("pass")) | \(count("FAIL")) | " +
        "\(count("skip")) |"' "$out/conform.json"
}

realtime()
{
    echo "## The audio thread"
    echo
    echo "\`reelpath-rtaudit\`, blocks of 512: what the worst block of a kind took, after some to warm up."
    echo "Refills are pages that the block allocator took anew; *may* marks the kinds of block that are"
    echo "allowed to: a graph is rebuilt, an impulse comes, a format changes."
    echo
    "$bin/reelpath-rtaudit"
}

cost()
{
    bench processes --benchmark_filter='^changeTo|noise/.*/stereo/(plain|fma)'
    bench filters
    bench wrapper --benchmark_filter='wholeInstance|withBothMeters|plainChain|oversampledInstance|startSharedTree|furtherInstance'
    bench dsp --benchmark_filter='convolve(Block/(4498|26240)/|AsDescribed)|zita|worstBlock|^(fftw|fma|avx512)/|(resample|soxr)Impulse'
    bench first_load
    bench component --benchmark_filter=-instanceMemory
    # In a process of its own: what others have given back would be used again and not counted.
    "$bin/bench_component" --benchmark_format=json --benchmark_filter=instanceMemory \
        >"$out/memory.json" 2>"$out/memory.log"
    bench peers
    bench interface
    local build=fma
    grep -q avx512vl /proc/cpuinfo && build=avx512
    echo "## Cost"
    echo
    echo "The programs are \`$bin/bench_*\`, pinned to one core; of five runs the least counts. Figures are of"
    echo "stereo, 44.1 kHz, loud noise and blocks of 512 samples unless they say something else."
    echo
    echo "| Held to | measured | bound | |"
    echo "|---|--:|---|---|"
    table '
        def speedUp(kind; rate): time("\(kind)/noise/\(rate)/stereo/plain") / time("\(kind)/noise/\(rate)/stereo/fma");
        def halfBand(up): time("halfBandPlain/asWritten/channels:2/up:\(up)") / time("halfBandStage/channels:2/up:\(up)");
        def chain(factor): least("oversampledInstance/factor:\(factor)/impulse:1"; "core_percent")
            / least("plainChain/\(factor)"; "core_percent");
        def convolver(taps; block): time("convolveBlock/\(taps)/\(block)") / time("convolveAsDescribed/\(taps)/\(block)");
        def transforms(build): . as $all | [32, 64, 128, 256, 512, 1024, 2048, 4096, 8192, 16384]
            | map(. as $size | $all | time("\(build)/\($size)") / time("fftw/\($size)") | log)
            | add / length | exp;
        atLeast("tape stage, times the plain recurrence"; speedUp("tape"; 44100); 6),
        atLeast("with feedback"; speedUp("tape_feedback"; 44100); 2.5),
        atLeast("with feedback, 352.8 kHz"; speedUp("tape_feedback"; 352800); 5),
        atLeast("post stage, times the plain recurrence"; speedUp("post"; 44100); 4),
        atLeast("half-band stage up, times the plain recurrence"; halfBand(1); 10),
        atLeast("half-band stage down"; halfBand(0); 5),
        (([4498, 64], [4498, 512], [26240, 64], [26240, 512]) as [$taps, $block] |
            atMost("convolver over its plan as described, \($taps) taps, blocks of \($block)"; convolver($taps; $block); 0.65)),
        ((4498, 26240) as $taps |
            atMost("convolver over zita-convolver as it comes, \($taps) taps, blocks of 64"; least("convolveBlock/\($taps)/64"; "time_per_sample") / least("zitaBlock/\($taps)/64/8192/0/process_time"; "time_per_sample"); 0.35)),
        atMost("transforms over FFTW with measured plans, geometric mean, the build that this processor gets ('"$build"')"; transforms("'"$build"'"); 1),
        ((48000, 352800) as $rate |
            atMost("an impulse of 26240 samples to \($rate) Hz over soxr at its best"; time("resampleImpulse/\($rate)") / time("soxrImpulse/\($rate)"); 1),
            atMost("the same for the first time in a process"; least("resampleFirst/\($rate)/iterations:50/manual_time"; "real_time") / least("soxrFirst/\($rate)/iterations:50/manual_time"; "real_time"); 2)),
        atMost("whole instance over its chain in plain form, 1X"; chain(1); 0.4),
        atMost("the same at 8X"; chain(8); 0.4),
        atMost("a sample in host blocks of 32 over one in blocks of 512"; 16 * time("wholeInstance/32") / time("wholeInstance/512"); 1.35)'
    echo
    echo "Beside the saturators and tape effects that Debian has, each as it comes, per cent of a core:"
    echo
    echo "| | blocks of 512 | blocks of 32 |"
    echo "|---|--:|--:|"
    table '("reelpath", "invada_tube", "calf_saturator", "calf_tape_simulator") as $name |
        "| \($name) | \(least("\($name)/512"; "core") | round(3)) | \(least("\($name)/32"; "core") | round(3)) |"'
    echo
    echo "By oversampling and tape impulse, per cent of a core:"
    echo
    echo "| impulse | 1X | 2X | 4X | 8X |"
    echo "|---|--:|--:|--:|--:|"
    table 'range(9) as $impulse |
        def at(factor): least("oversampledInstance/factor:\(factor)/impulse:\($impulse)"; "core_percent") | round(3);
        "| \(if $impulse == 0 then "none" else $impulse end) | \(at(1)) | \(at(2)) | \(at(4)) | \(at(8)) |"'
    echo
    echo "Convolution beside zita-convolver, on one core, ns a sample. It works in single precision; *tuned* it"
    echo "measures its transforms and multiplies vectors, with a longest partition of one block it has no threads."
    echo
    echo "| taps | block | its longest partition | tuned | ours | zita-convolver | ratio |"
    echo "|--:|--:|--:|---|--:|--:|--:|"
    table '. as $all | [.[] | .benchmarks[] | .run_name | select(startswith("zita"))] | unique[] | . as $name |
        ($name | [scan("[0-9]+")]) as [$taps, $block, $longest, $tuned] | $all |
        (least("convolveBlock/\($taps)/\($block)"; "time_per_sample") * 1e9) as $ours |
        (least($name; "time_per_sample") * 1e9) as $peer |
        "| \($taps) | \($block) | \($longest) | \(if $tuned == "1" then "yes" else "no" end) | \($ours | round(1)) | \($peer | round(1)) | \($ours / $peer | round(2)) |"'
    echo
    echo "Messages between a window and the instance, a second:"
    echo
    echo "| | messages a second |"
    echo "|---|--:|"
    table 'def greatest(name): [.[] | .benchmarks[] | select(.run_name == name and .run_type == "iteration") | .items_per_second] | max | round(0);
        "| a change, from the window to the instance | \(greatest("changeMessage/step:0")) |",
        "| the same with a step to be undone | \(greatest("changeMessage/step:1")) |",
        (("1", "32", "1024") as $count | "| changes to the window, \($count) at a tick | \(greatest("echoMessages/\($count)")) |")'
    echo
    table 'def cost(name): least(name; "core_percent");
        "From a change to the sub-block of 64 samples at 48 kHz that hears it: \(least("changeToSubBlock/iterations:1000/manual_time"; "real_time") | round(0)) us. Both meters, watched, take \((cost("withBothMeters/512") - cost("wholeInstance/512")) | round(3)) per cent of a core."'
    echo
    echo "The dearest block of 32 of the host over the mean block, two channels' convolvers:"
    echo
    echo "| taps | factor | dearest, us | over the mean |"
    echo "|--:|--:|--:|--:|"
    table '([4498, 32, 1], [26240, 32, 1], [35984, 256, 8], [209920, 256, 8]) as [$taps, $block, $factor] |
        "worstBlock/\($taps)/\($block)/iterations:1" as $name |
        "| \($taps) | \($factor)X | \(least($name; "worst_ns") / 1000 | round(1)) | \(least($name; "worst_over_mean") | round(1)) |"'
    echo
    echo "A change of impulse on the audio thread, stereo, us, to one that the process knows at this rate, and"
    echo "to one that nobody had:"
    echo
    echo "| impulse | rate | known | new |"
    echo "|--:|--:|--:|--:|"
    table '([1, 44100], [1, 352800], [8, 44100], [8, 352800]) as [$id, $rate] |
        "| \($id) | \($rate) | \(least("changeToKnown/\($id)/\($rate)"; "time_per_change") * 1e6 | round(2)) | " +
        "\(time("changeToNew/\($id)/\($rate)") | round(0)) |"'
    echo
    echo "Instances of the component in one process:"
    echo
    echo "| instances | us a block each |"
    echo "|--:|--:|"
    table '(1, 10, 100) as $count | "| \($count) | \(least("manyInstances/\($count)"; "block_each") * 1e6 | round(1)) |"'
    echo
    table '"Each of a hundred holds \(first("instanceMemory/100/iterations:1"; "KiB_each") | round(0)) KiB beside the shared data. The shared tree takes \(time("startSharedTree") | round(2)) ms, a further instance \(time("furtherInstance") | round(2)) ms, from the factory to the first block \(time("fromTheFactoryToTheFirstBlock") | round(2)) ms."'
}

fuzz()
{
    echo "## Damaged data"
    echo
    echo "\`./check --fuzz $fuzzSeconds\`: libFuzzer on each reader of foreign bytes, that many seconds each, with"
    echo "the address and the undefined-behaviour sanitizer."
    echo
    printf '```\n'
    ./check --fuzz "$fuzzSeconds"
    printf '```\n'
}

soak()
{
    echo "## Endurance"
    echo
    echo "\`./check --soak $soakMinutes\`: instances that come and go, with windows, under automation, presets, A/B,"
    echo "impulses, formats and odd block sizes, that many minutes plainly and with each sanitizer; the samples"
    echo "must stay finite and bounded, the memory flat."
    echo
    printf '```\n'
    ./check --soak "$soakMinutes"
    printf '```\n'
}

Tools/scripts/setup.sh check >&2
Tools/scripts/setup.sh quality >&2
mkdir -p "$out"
revision=$(git rev-parse --short HEAD)
git diff --quiet HEAD -- . ':!Docs' || revision+=" and changes"
for section in "${sections[@]}"; do
    echo "quality: $section" >&2
    [[ $section =~ ^(fuzz|soak)$ ]] || build # these two build for themselves
    "$section" >"$out/$section.part"
    printf '\nMeasured on %s at revision %s.\n' "$(date -u +%F)" "$revision" >>"$out/$section.part"
    mv -- "$out/$section.part" "$out/$section.md"
done
{
    echo "# Quality, measured"
    echo
    echo "Made by \`Tools/scripts/quality.sh\`. Processor: $(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -n 1),"
    echo "$(nproc) cores, shared with others. Compiler: $(c++ --version | head -n 1)."
    for section in conformance realtime cost fuzz soak; do
        [[ ! -f $out/$section.md ]] || { echo && cat "$out/$section.md"; }
    done
} >Docs/quality.md
