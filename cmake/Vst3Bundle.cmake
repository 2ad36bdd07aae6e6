# tsm_add_vst3_bundle(target NAME name [FOLDER folder] [INSTALL] SOURCES... LIBS...): a module that
# exports the entry points of VST 3 alone, in a bundle `name`.vst3 below FOLDER (the build's own
# when left out), with a moduleinfo.json that says what its factory says. SOURCES define what
# Audio/VST/ModuleMain.h asks for. With INSTALL, `cmake --install` puts it into lib/vst3.
function(tsm_add_vst3_bundle target)
    cmake_parse_arguments(PARSE_ARGV 1 arg "INSTALL" "NAME;FOLDER" "SOURCES;LIBS")
    if(NOT arg_FOLDER)
        set(arg_FOLDER ${CMAKE_BINARY_DIR})
    endif()
    set(bundle "${arg_FOLDER}/${arg_NAME}.vst3")
    set(description "${bundle}/Contents/Resources/moduleinfo.json")
    set(exports ${PROJECT_SOURCE_DIR}/Audio/VST/module.map)

    add_library(${target} MODULE ${arg_SOURCES} ${PROJECT_SOURCE_DIR}/Audio/VST/ModuleMain.cpp)
    target_link_libraries(${target} PRIVATE ${arg_LIBS} tsm_vst)
    set_target_properties(${target} PROPERTIES
        PREFIX "" OUTPUT_NAME "${arg_NAME}"
        LIBRARY_OUTPUT_DIRECTORY "${bundle}/Contents/x86_64-linux"
        LINK_DEPENDS ${exports})
    # One copy of each library's code for this module alone: the host has its own, of any version.
    target_link_options(${target} PRIVATE
        -Wl,--version-script=${exports} -Wl,--exclude-libs,ALL -Wl,-z,relro -Wl,-z,now)
    if(NOT TSM_SANITIZE)
        target_link_options(${target} PRIVATE -static-libstdc++ -static-libgcc -Wl,-z,defs)
        target_compile_definitions(${target} PRIVATE TSM_OWN_RUNTIME)
    endif()

    add_dependencies(${target} reelpath-host)
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${CMAKE_COMMAND} -E make_directory "${bundle}/Contents/Resources"
        COMMAND reelpath-host moduleinfo --plugin "${bundle}" "${description}"
        VERBATIM)

    if(arg_INSTALL)
        set(place "lib/vst3/${arg_NAME}.vst3/Contents")
        install(TARGETS ${target} LIBRARY DESTINATION "${place}/x86_64-linux")
        install(FILES "${description}" DESTINATION "${place}/Resources")
    endif()
endfunction()
