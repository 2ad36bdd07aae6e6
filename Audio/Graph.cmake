# Processes, links, blocks, terminal processes and modules.
add_library(tsm_graph STATIC
    CAudioBlockPool.cpp
    CAudioGraph.cpp
    CAudioGraphSteps.cpp
    CAudioLink.cpp
    CAudioModule.cpp
    CAudioParamAllocDef.cpp
    CAudioPort.cpp
    CAudioProcess.cpp
    CAudioProcessBase.cpp
    CAudioProcessBypassStateDef.cpp
    CAudioProcessContainer.cpp
    CAudioProcessDef.cpp
    CAudioProcessDefBase.cpp
    CAudioProcessDefBaseInit.cpp
    CAudioProcessLinkDef.cpp
    CAudioProcessStack.cpp
    CAudioProcessTerminalBase.cpp
    CCosineFade.cpp
    CDSPModDelay.cpp
    CModProcessSeq.cpp
    CParamRange.cpp)
target_link_libraries(tsm_graph PUBLIC tsm_params)
