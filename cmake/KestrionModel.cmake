# Makes the generated sources from model/ by tools/generator.
#
# Gives the target kestrion_model, which any target that includes a generated header links to, and
# the lists KESTRION_GENERATED_<GROUP>_SOURCES of what the rooms compile: TABLES, CORE, FACES,
# OBJECTS and TESTS. Generated headers are included as <kestrion/enums.h>, "generated/members/X.h"
# and so on.

find_package(Python3 3.11 REQUIRED COMPONENTS Interpreter)

set(kestrion_generated "${CMAKE_BINARY_DIR}/generated")
set(kestrion_generator "${CMAKE_SOURCE_DIR}/tools/generator")
file(GLOB_RECURSE kestrion_model_files CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/model/*.toml")
file(GLOB kestrion_generator_files CONFIGURE_DEPENDS "${kestrion_generator}/*.py")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
             ${kestrion_model_files} ${kestrion_generator_files})

# The list of outputs depends on the model, so it is asked for at each configuration.
execute_process(
    COMMAND "${Python3_EXECUTABLE}" "${kestrion_generator}" --list
    OUTPUT_VARIABLE kestrion_generated_list
    ERROR_VARIABLE kestrion_model_errors
    RESULT_VARIABLE kestrion_generator_result)
if(NOT kestrion_generator_result EQUAL 0)
    message(FATAL_ERROR "The model has errors:\n${kestrion_model_errors}")
endif()

string(REGEX REPLACE "\n+$" "" kestrion_generated_list "${kestrion_generated_list}")
string(REPLACE "\n" ";" kestrion_generated_list "${kestrion_generated_list}")
set(kestrion_generated_files "")
foreach(group IN ITEMS tables core faces objects tests)
    set(kestrion_sources_${group} "")
endforeach()
foreach(line IN LISTS kestrion_generated_list)
    string(REPLACE " " ";" line "${line}")
    list(GET line 0 group)
    list(GET line 1 path)
    list(APPEND kestrion_generated_files "${kestrion_generated}/${path}")
    list(APPEND kestrion_sources_${group} "${kestrion_generated}/${path}")
endforeach()
foreach(group IN ITEMS tables core faces objects tests)
    string(TOUPPER "${group}" name)
    set(KESTRION_GENERATED_${name}_SOURCES ${kestrion_sources_${group}}
        CACHE INTERNAL "Generated sources of the group ${group}")
endforeach()

# The generator leaves an unchanged file alone, so the stamp is what tells that it has run.
set(kestrion_model_stamp "${CMAKE_BINARY_DIR}/generated/model.stamp")
add_custom_command(
    OUTPUT "${kestrion_model_stamp}"
    BYPRODUCTS ${kestrion_generated_files}
    COMMAND "${Python3_EXECUTABLE}" "${kestrion_generator}"
            --output "${kestrion_generated}" --version "${PROJECT_VERSION}"
    COMMAND "${CMAKE_COMMAND}" -E touch "${kestrion_model_stamp}"
    DEPENDS ${kestrion_model_files} ${kestrion_generator_files}
    COMMENT "Generating the driver's sources from the model"
    VERBATIM)
add_custom_target(kestrion_generate DEPENDS "${kestrion_model_stamp}")

add_library(kestrion_model INTERFACE)
target_include_directories(kestrion_model INTERFACE
    "${kestrion_generated}/include" "${CMAKE_BINARY_DIR}")
add_dependencies(kestrion_model kestrion_generate)
