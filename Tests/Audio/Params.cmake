tsm_add_test(tests_params
    SOURCES
        CAudioCCTableTest.cpp
        CAudioExtParamTest.cpp
        CAudioParamBatchTest.cpp
        CAudioParamDefTest.cpp
        CAudioParamFilterTest.cpp
        CAudioParamRealtimeTest.cpp
        CAudioParamStorageTest.cpp
        CAudioParamTest.cpp
        CAudioParamThreadsTest.cpp
        CParamNameTest.cpp
        CSharedParamTest.cpp
        ProductParamsTest.cpp
        Converters/CAudioParamConverterTest.cpp
        Converters/ConverterDefinitionTest.cpp
        ../Support/SystemAllocations.cpp
    LIBS tsm_params tsm_resources Threads::Threads)
