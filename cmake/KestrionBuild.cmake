# How a room and its tests are declared.

find_program(CCACHE ccache)
if(CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE}")
    set(CMAKE_C_COMPILER_LAUNCHER "${CCACHE}")
endif()

# Warnings and sanitizers that every target of the project is built with.
add_library(kestrion_options INTERFACE)
target_compile_options(kestrion_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
    -Wold-style-cast -Woverloaded-virtual -Wimplicit-fallthrough -Werror)
if(KESTRION_SANITIZE)
    target_compile_options(kestrion_options INTERFACE
        -fsanitize=${KESTRION_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(kestrion_options INTERFACE -fsanitize=${KESTRION_SANITIZE})
endif()

# kestrion_room(<room> SOURCES <file>... [DEPENDS <target>...])
# A static library kestrion_<room> whose headers are included from the top of the tree.
function(kestrion_room room)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;DEPENDS")
    add_library(kestrion_${room} STATIC ${arg_SOURCES})
    target_include_directories(kestrion_${room} PUBLIC "${CMAKE_SOURCE_DIR}")
    target_link_libraries(kestrion_${room} PUBLIC ${arg_DEPENDS} PRIVATE kestrion_options)
endfunction()

# kestrion_test(<name> ROOM <room> SOURCES <file>... [LIBRARIES <target>...] [TIMEOUT <seconds>])
# A test program of the folder that it is declared in. Every *_test.cpp of the folder has to be in
# one of them: kestrion_check_registered() ends the configuration otherwise.
function(kestrion_test name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "SOURCES;LIBRARIES")
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 60)
    endif()
    add_executable(${name} ${arg_SOURCES})
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}")
    target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} kestrion_options GTest::gmock
                          GTest::gtest_main)
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT ${arg_TIMEOUT})
    set_property(DIRECTORY APPEND PROPERTY KESTRION_TEST_FILES ${arg_SOURCES})
endfunction()

# kestrion_python_test(<file>_test.py... [TIMEOUT <seconds>])
# Each file is one test, named <folder>.<file>: a program that ends with 0 when all is well.
function(kestrion_python_test)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "TIMEOUT" "")
    if(NOT arg_TIMEOUT)
        set(arg_TIMEOUT 60)
    endif()
    find_package(Python3 3.11 REQUIRED COMPONENTS Interpreter)
    cmake_path(GET CMAKE_CURRENT_SOURCE_DIR FILENAME folder)
    foreach(file IN LISTS arg_UNPARSED_ARGUMENTS)
        cmake_path(GET file STEM name)
        add_test(NAME ${folder}.${name}
                 COMMAND "${Python3_EXECUTABLE}" -B "${CMAKE_CURRENT_SOURCE_DIR}/${file}")
        set_tests_properties(${folder}.${name} PROPERTIES TIMEOUT ${arg_TIMEOUT})
    endforeach()
    set_property(DIRECTORY APPEND PROPERTY KESTRION_TEST_FILES ${arg_UNPARSED_ARGUMENTS})
endfunction()

# Ends the configuration if a test file of the calling folder is in no test program.
function(kestrion_check_registered)
    file(GLOB found RELATIVE "${CMAKE_CURRENT_SOURCE_DIR}" CONFIGURE_DEPENDS
         "${CMAKE_CURRENT_SOURCE_DIR}/*_test.cpp")
    get_property(registered DIRECTORY PROPERTY KESTRION_TEST_FILES)
    foreach(file IN LISTS found)
        if(NOT file IN_LIST registered)
            message(FATAL_ERROR "${CMAKE_CURRENT_SOURCE_DIR}/${file} is in no kestrion_test().")
        endif()
    endforeach()
endfunction()

# Gives in `result` the test files that are registered in a folder and below it, named from `base`.
function(kestrion_registered_files folder base result)
    get_property(files DIRECTORY "${folder}" PROPERTY KESTRION_TEST_FILES)
    set(all "")
    foreach(file IN LISTS files)
        cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY "${folder}" NORMALIZE)
        cmake_path(RELATIVE_PATH file BASE_DIRECTORY "${base}")
        list(APPEND all "${file}")
    endforeach()
    get_property(below DIRECTORY "${folder}" PROPERTY SUBDIRECTORIES)
    foreach(directory IN LISTS below)
        kestrion_registered_files("${directory}" "${base}" more)
        list(APPEND all ${more})
    endforeach()
    set(${result} "${all}" PARENT_SCOPE)
endfunction()
