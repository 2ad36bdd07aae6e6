tsm_add_bench(bench_graph
    SOURCES
        CAudioGraphBench.cpp
        CDSPModDelayBench.cpp
    LIBS tsm_graph Threads::Threads)
