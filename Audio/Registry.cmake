# Presets, banks and the history of edits, on the parameters.
add_library(tsm_registry STATIC
    CAudioParamRegistry.cpp
    CAudioParamRegistryBanks.cpp
    CAudioParamUndo.cpp
    CAudioParamUndoData.cpp
    CAudioParamUndoEntry.cpp
    CAudioParamUndoHistory.cpp
    CAudioParamUndoItem.cpp
    CAudioPreset.cpp
    CAudioPresetBank.cpp
    CPresetItem.cpp
    CRegistryListener.cpp
    CRegistryMembers.cpp
    CRoutingPresets.cpp)
target_link_libraries(tsm_registry PUBLIC tsm_params)
