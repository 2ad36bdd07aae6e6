tsm_add_test(tests_graph
    SOURCES
        CAudioBlockPoolTest.cpp
        CAudioProcessDefTest.cpp
        CAudioProcessLatencyTest.cpp
        CAudioProcessParamsTest.cpp
        CAudioGraphStepsTest.cpp
        CAudioProcessStackTest.cpp
        CAudioProcessTerminalTest.cpp
        CAudioProcessTest.cpp
        CDSPModDelayTest.cpp
        ProductGraphTest.cpp
        ../Support/SystemAllocations.cpp
    LIBS tsm_graph tsm_defc_lib Threads::Threads)
target_compile_definitions(tests_graph PRIVATE TSM_DATA_FOLDER="${PROJECT_SOURCE_DIR}/Data")
