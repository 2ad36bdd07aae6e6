tsm_add_bench(bench_wrapper SOURCES CAudioWrapperBench.cpp ChainBench.cpp
    LIBS tsm_product bench_staged_plan)
tsm_add_bench(bench_interface SOURCES CParamInterfaceBench.cpp LIBS tsm_product Threads::Threads)
