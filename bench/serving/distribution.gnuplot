# Plots the results of serving.py: gnuplot -e "data='FOLDER'; picture='FILE.svg'" distribution.gnuplot
set terminal svg size 720,440 font "sans-serif,13" background "white"
set output picture
set title "Time to a page of the catalogue, one connection each" font ",15"
set xlabel "percentile"
set ylabel "milliseconds"
set logscale xy
set xrange [100:0.1]
set xtics ("0" 100, "50" 50, "75" 25, "90" 10, "95" 5, "99" 1, "99.9" 0.1)
set grid xtics ytics lc rgb "#dddddd"
set key outside bottom center horizontal maxrows 2
plot data."/application.dat" using (100-$1):2 with linespoints lw 2 pt 7 ps 0.4 lc rgb "#b03a2e" title "application server alone", \
     data."/cold.dat" using (100-$1):2 with linespoints lw 2 pt 7 ps 0.4 lc rgb "#d68910" title "front, each page for the first time", \
     data."/file.dat" using (100-$1):2 with linespoints lw 2 pt 7 ps 0.4 lc rgb "#7f8c8d" title "nginx, a file", \
     data."/warm.dat" using (100-$1):2 with linespoints lw 2 pt 7 ps 0.4 lc rgb "#1e8449" title "front, pages that it has"
