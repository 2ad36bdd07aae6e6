# The parameter interface: the model's end, the window's end, and what lies between. Its general
# part lives in Other/, but both ends know parameters and presets.
add_library(tsm_interface STATIC
    ../Other/CInterfaceBlock.cpp
    ../Other/CMessageInput.cpp
    ../Other/CParamChangeStream.cpp
    ../Other/CParamInterfaceBase.cpp
    ../Other/CParamInterfaceBaseConnector.cpp
    ../Other/CParamInterfaceBaseConnectorUni.cpp
    ../Other/CParamInterfaceBaseRegistries.cpp
    ../Other/CParamInterfaceClient.cpp
    ../Other/CParamInterfaceClientConnector.cpp
    ../Other/CParamInterfaceClientConnectorUni.cpp
    ../Other/CParamInterfaceLink.cpp
    ../Other/CParamMirror.cpp
    CAudioInterfaceBase.cpp
    CAudioInterfaceClient.cpp
    CVizDelivery.cpp)
target_link_libraries(tsm_interface PUBLIC tsm_registry tsm_viz)
