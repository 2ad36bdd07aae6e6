set(render_tests ../Tools/render)
tsm_add_test(tests_wrapper
    SOURCES
        CAudioWrapperSoundTest.cpp
        CAudioVizCollectorTest.cpp
        CAudioWrapperTest.cpp
        COversamplingTest.cpp
        ../Support/HeapAllocations.cpp
        CHostBuffersTest.cpp
        CParamEventQueueTest.cpp
        CProductDataTest.cpp
        DamagedDocumentTest.cpp
        CRoutingStateTest.cpp
        ProductMetersTest.cpp
        ../Support/HeapAllocations.cpp
        ../Tools/Support/CToolCommand.cpp
        ${render_tests}/RenderCommandTest.cpp
    LIBS tsm_product tsm_resources PkgConfig::SNDFILE)
# The program is run as its users run it.
target_compile_definitions(tests_wrapper PRIVATE
    TSM_RENDER_BINARY="$<TARGET_FILE:reelpath-render>")
add_dependencies(tests_wrapper reelpath-render)
