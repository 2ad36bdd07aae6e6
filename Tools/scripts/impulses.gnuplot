# gnuplot -c impulses.gnuplot OUT.png RESPONSES.dat
# Draws the responses that reelpath-impulse has computed, a line for each impulse.
outFile = ARG1
responseFile = ARG2

set encoding utf8
set terminal pngcairo noenhanced font "DejaVu Sans,11" size 1280,800
set output outFile
set border linecolor rgb "#606060"
set grid xtics ytics mxtics linetype 1 linecolor rgb "#d0d0d0" linewidth 0.7, \
    linetype 1 linecolor rgb "#e8e8e8" linewidth 0.5
set tics out nomirror
set key autotitle columnhead
set key outside right top Left reverse samplen 2 spacing 1.3

# Apart for readers with impaired color vision too (Okabe and Ito, "Color universal design", 2008).
array colors[8] = ["#000000", "#0072b2", "#56b4e9", "#d55e00", \
                   "#e69f00", "#cc79a7", "#009e73", "#7f7f7f"]

stats responseFile using 2 skip 1 nooutput
columnCount = int(STATS_columns)
set title "Tape impulses, level against 1 kHz" font "DejaVu Sans,14"
set xlabel "frequency / Hz"
set ylabel "level / dB"
set logscale x
set xrange [10:20000]
set xtics ("10" 10, "20" 20, "50" 50, "100" 100, "200" 200, "500" 500, "1k" 1000, "2k" 2000, \
           "5k" 5000, "10k" 10000, "20k" 20000)
set yrange [-30:6]
set ytics 3
plot for [column = 2:columnCount] responseFile using 1:column with lines \
    linecolor rgb colors[(column - 2) % 8 + 1] linewidth 2
