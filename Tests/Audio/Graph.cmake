tsm_add_test(tests_graph
    SOURCES
        CAudioBlockPoolTest.cpp
        CAudioProcessDefTest.cpp
        CAudioProcessLatencyTest.cpp
        CAudioProcessParamsTest.cpp
        CAudioProcessStackTest.cpp
        CAudioProcessTerminalTest.cpp
        CAudioProcessTest.cpp
        CDSPModDelayTest.cpp
    LIBS tsm_graph Threads::Threads)
