# The headers of alike operations, made from their descriptions at build time.
find_package(Python3 3.11 REQUIRED COMPONENTS Interpreter)
set(KESTRION_OPERATIONS_INCLUDE "${CMAKE_CURRENT_BINARY_DIR}/generated")
set(KESTRION_OPERATIONS_HEADERS "")
foreach(family session visa_memory)
    set(description "${CMAKE_CURRENT_SOURCE_DIR}/operations/${family}.toml")
    set(header "${KESTRION_OPERATIONS_INCLUDE}/io/operations/${family}_families.h")
    add_custom_command(
        OUTPUT "${header}"
        COMMAND "${Python3_EXECUTABLE}" -B "${CMAKE_CURRENT_SOURCE_DIR}/operations/generate.py"
                "${description}" "${header}"
        DEPENDS "${description}" "${CMAKE_CURRENT_SOURCE_DIR}/operations/generate.py"
        COMMENT "Making the ${family} operations"
        VERBATIM)
    list(APPEND KESTRION_OPERATIONS_HEADERS "${header}")
endforeach()
