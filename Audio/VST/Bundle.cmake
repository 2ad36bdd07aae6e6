# The product's bundle, `FerritReelpath.vst3` in the build folder. Included behind the tools, which
# describe it, and the resources.
tsm_add_vst3_bundle(ferrit_reelpath NAME FerritReelpath INSTALL
    SOURCES ${CMAKE_CURRENT_LIST_DIR}/PluginMain.cpp
    LIBS tsm_component)
