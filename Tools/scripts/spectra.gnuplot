# gnuplot -c spectra.gnuplot OUT.png BANDS.dat TITLE HARMONICS.dat ALIASING.dat
# Draws level over frequency, a line for each column of BANDS.dat; below it how far each lies above
# the first column, the sound before; below that, unless HARMONICS.dat is empty, what became of the
# sine; and last what oversampling does to folded harmonics.
outFile = ARG1
bandFile = ARG2
heading = ARG3
harmonicFile = ARG4
hasHarmonics = strlen(harmonicFile) > 0
aliasFile = ARG5
lowest = -130.0

set encoding utf8
set terminal pngcairo noenhanced font "DejaVu Sans,11" size 1280, (hasHarmonics ? 2000 : 1500)
set output outFile
set border linecolor rgb "#606060"
set grid xtics ytics mxtics linetype 1 linecolor rgb "#d0d0d0" linewidth 0.7, \
    linetype 1 linecolor rgb "#e8e8e8" linewidth 0.5
set tics out nomirror
set key autotitle columnhead
set key outside right top Left reverse samplen 2 spacing 1.3
set lmargin 11
set rmargin 26

# Apart for readers with impaired color vision too (Okabe and Ito, "Color universal design", 2008),
# and two darker ones.
array colors[10] = ["#000000", "#0072b2", "#d55e00", "#009e73", "#cc79a7", \
                    "#e69f00", "#56b4e9", "#7f7f7f", "#7a2e8e", "#8c510a"]
colorOf(column) = colors[(column - 2) % 10 + 1]

set multiplot layout (hasHarmonics ? 4 : 3),1

stats bandFile using 2 skip 1 nooutput
columnCount = int(STATS_columns)
top = ceil((STATS_max + 8) / 10.0) * 10
set title heading font "DejaVu Sans,14"
set xlabel "frequency / Hz"
set ylabel "level in a sixth of an octave / dBFS"
set logscale x
set xrange [20:20000]
set xtics ("20" 20, "50" 50, "100" 100, "200" 200, "500" 500, "1k" 1000, "2k" 2000, "5k" 5000, \
           "10k" 10000, "20k" 20000)
set yrange [top - 60:top]
set ytics 10
plot for [column = 2:columnCount] bandFile using 1:column with lines \
    linecolor rgb colorOf(column) linewidth (column == 2 ? 3 : 1.8)

set title "Change against before" font "DejaVu Sans,14"
set ylabel "change / dB"
set yrange [*:*]
set autoscale y
set offsets 0, 0, 1, 1
set ytics auto
plot for [column = 3:columnCount] bandFile using 1:(column(column) - column(2)) with lines \
    linecolor rgb colorOf(column) linewidth 1.8 title columnhead(column)
set offsets 0, 0, 0, 0

if (hasHarmonics) {
    set title "Harmonics of the sine of 1 kHz, -12 dBFS" font "DejaVu Sans,14"
    set xlabel "harmonic"
    set ylabel "level / dBFS"
    unset logscale x
    set xrange [0.4:10.6]
    set xtics 1
    set grid noxtics nomxtics
    set yrange [lowest:0]
    set ytics 20
    set style fill solid noborder
    # The bars of a harmonic stand side by side.
    barWidth = 0.8 / (columnCount - 1)
    leftOf(column) = -0.4 + (column - 2) * barWidth
    plot for [column = 2:columnCount] harmonicFile \
        using ($1 + leftOf(column)):(column(column)):($1 + leftOf(column)): \
              ($1 + leftOf(column) + 0.9 * barWidth):(lowest):(column(column)) \
        with boxxyerror linecolor rgb colorOf(column) title columnhead(column)
}

set title "Folded harmonics of a sine, recording gain 12 dB, at 44.1 kHz" font "DejaVu Sans,14"
unset xlabel
set ylabel "aliasing below the tone / dB"
unset logscale x
set xrange [-0.6:6.6]
set grid noxtics nomxtics
set xtics autofreq
set ytics 20
set style fill solid noborder
floor = -120.0
set yrange [floor:0]
plot aliasFile using ($0 - 0.18):2:($0 - 0.34):($0 - 0.02):(floor):2:xtic(1) \
         with boxxyerror linecolor rgb colors[2] title columnhead(2), \
     "" using ($0 + 0.18):3:($0 + 0.02):($0 + 0.34):(floor):3 \
         with boxxyerror linecolor rgb colors[3] title columnhead(3)
unset multiplot
