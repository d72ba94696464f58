# Tests of the format language.
kestrion_test(test_io_format
    SOURCES
        format_block_test.cpp
        format_grammar_test.cpp
        format_pattern_oracle.cpp
        format_plan_test.cpp
        format_read_array_test.cpp
        format_read_text_test.cpp
        format_reader_test.cpp
        format_scan_test.cpp
        format_spec_test.cpp
        format_text_writer_test.cpp
        format_write_array_test.cpp
        format_writer_test.cpp
        number_forms_test.cpp
        number_parse_test.cpp
        number_text_test.cpp
    LIBRARIES kestrion_io kestrion_comma_locale)

# Counts allocations with an operator new of its own, so it is a program of its own.
kestrion_test(test_io_format_allocation
    SOURCES format_allocation_test.cpp "${CMAKE_SOURCE_DIR}/tests/platform/allocation_count.cpp"
    LIBRARIES kestrion_io)
