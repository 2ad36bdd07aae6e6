tsm_add_bench(bench_params SOURCES CAudioExtParamBench.cpp LIBS tsm_product)
