tsm_add_bench(bench_wrapper SOURCES CAudioWrapperBench.cpp LIBS tsm_product)
tsm_add_bench(bench_interface SOURCES CParamInterfaceBench.cpp LIBS tsm_product Threads::Threads)
