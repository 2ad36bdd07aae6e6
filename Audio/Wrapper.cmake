# Between a plug-in format and the engine.
add_library(tsm_wrapper STATIC
    CAudioWrapper.cpp
    CEditorSize.cpp
    CHostBuffers.cpp
    CHostChannels.cpp
    CHostFormat.cpp
    CHostValues.cpp
    CParamEventQueue.cpp
    CParamLists.cpp
    CProductData.cpp
    CRoutingState.cpp
    CRoutingUpdate.cpp
    CWrapperGraph.cpp
    CWrapperParams.cpp
    CWrapperSettings.cpp)
target_link_libraries(tsm_wrapper PUBLIC tsm_processes tsm_interface)

# The product: what its definition documents create, and the documents.
add_library(tsm_product STATIC ProductCreators.cpp)
target_link_libraries(tsm_product PUBLIC tsm_filters tsm_wrapper PRIVATE tsm_resources)
