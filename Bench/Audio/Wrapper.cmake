tsm_add_bench(bench_wrapper SOURCES CAudioWrapperBench.cpp LIBS tsm_product)
