# The plot of docs/performance.md: gnuplot -e "data='FILE'; picture='FILE'" bench/pages.gp
# A line of the data: bytes, then MB/s of saving, of the bare search and of the fastest tokenizer.
set terminal svg size 760,440 font "sans-serif,13" background "#ffffff"
set output picture
set logscale xy
set xlabel "size of the page, bytes"
set ylabel "MB/s"
set format x "10^{%T}"
set grid lc rgb "#dddddd"
set key bottom right
plot data using 1:3 with linespoints pt 7 lc rgb "#999999" title "search for <object (the limit)", \
     data using 1:2 with linespoints pt 7 lc rgb "#1f6f8b" title "save", \
     data using 1:4 with linespoints pt 7 lc rgb "#c26a00" title "fastest tokenizer, reading only"
