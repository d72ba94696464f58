# What `cmake --install` gives: the public headers, the library, the programs and the shared files.

install(DIRECTORY "${CMAKE_SOURCE_DIR}/include/kestrion"
                  "${CMAKE_SOURCE_DIR}/platform/include/kestrion"
                  "${CMAKE_BINARY_DIR}/generated/include/kestrion"
        DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
        FILES_MATCHING PATTERN "*.h")
foreach(target IN ITEMS kestrion_driver kestrion_cli kestrion-scope)
    if(TARGET ${target})
        install(TARGETS ${target})
    endif()
endforeach()
# Where core/shared_folder.cpp looks from the installed library.
install(FILES "${CMAKE_SOURCE_DIR}/data/trace.xslt"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/kestrion")
