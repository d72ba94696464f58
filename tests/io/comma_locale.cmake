# A locale of the C library whose decimal point is a comma, made in the build folder: what is
# installed differs from machine to machine. Without its compiler the tests take an installed one.
set(KESTRION_COMMA_LOCALES "")
find_program(LOCALEDEF localedef)
if(LOCALEDEF)
    set(KESTRION_COMMA_LOCALES "${CMAKE_CURRENT_BINARY_DIR}/locales")
    file(MAKE_DIRECTORY "${KESTRION_COMMA_LOCALES}")
    # It warns of the categories that are left out, and fails with a warning.
    execute_process(
        COMMAND "${LOCALEDEF}" --force --quiet -i "${CMAKE_CURRENT_SOURCE_DIR}/comma.locale"
                "${KESTRION_COMMA_LOCALES}/comma"
        OUTPUT_QUIET ERROR_QUIET)
    if(NOT EXISTS "${KESTRION_COMMA_LOCALES}/comma/LC_NUMERIC")
        set(KESTRION_COMMA_LOCALES "")
    endif()
endif()
add_library(kestrion_comma_locale STATIC comma_locale.cpp)
target_include_directories(kestrion_comma_locale PUBLIC "${CMAKE_SOURCE_DIR}")
target_compile_definitions(kestrion_comma_locale
                           PRIVATE KESTRION_COMMA_LOCALES="${KESTRION_COMMA_LOCALES}")
target_link_libraries(kestrion_comma_locale PRIVATE kestrion_options)
