tsm_add_test(tests_registry
    SOURCES
        CAudioParamRegistryTest.cpp
        CAudioParamRegistryThreadsTest.cpp
        CAudioParamUndoTest.cpp
        DamagedPresetTest.cpp
        FactoryPresetsTest.cpp
    LIBS tsm_product Threads::Threads)
