tsm_add_test(tests_interface
    SOURCES
        CVizDeliveryTest.cpp
        DamagedMessagesTest.cpp
        InterfaceEditsTest.cpp
        InterfaceQueueTest.cpp
        InterfaceRegistriesTest.cpp
        InterfaceStateTest.cpp
        InterfaceThreadsTest.cpp
        InterfaceVizTest.cpp
    LIBS tsm_product tsm_resources tsm_client_document Threads::Threads)
