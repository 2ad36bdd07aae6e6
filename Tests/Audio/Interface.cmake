set(client_document ${CMAKE_CURRENT_BINARY_DIR}/InterfaceClient.bin)
add_custom_command(OUTPUT ${client_document}
    COMMAND reelpath-defc -I ${PROJECT_SOURCE_DIR}/Data
        ${PROJECT_SOURCE_DIR}/Tests/Data/InterfaceClient.xml ${client_document}
    DEPENDS reelpath-defc ${PROJECT_SOURCE_DIR}/Tests/Data/InterfaceClient.xml
        ${PROJECT_SOURCE_DIR}/Data/InterfaceClasses.xml
    COMMENT "Compiling InterfaceClient.xml" VERBATIM)
add_custom_target(interface_client_document DEPENDS ${client_document})

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
    LIBS tsm_product tsm_resources Threads::Threads)
target_compile_definitions(tests_interface PRIVATE TSM_CLIENT_DOCUMENT="${client_document}")
add_dependencies(tests_interface interface_client_document)
