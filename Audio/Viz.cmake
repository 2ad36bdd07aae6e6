# What processes measure for the windows.
add_library(tsm_viz STATIC
    CAudioVizCollector.cpp
    CAudioVizData.cpp
    CAudioVizDataMeter.cpp
    CAudioVizReader.cpp
    CAudioVizRecords.cpp)
target_link_libraries(tsm_viz PUBLIC tsm_params)
