# The format language: tokenizer, writer, reader.
set(KESTRION_FORMAT_SOURCES
    format_array.cpp
    format_grammar.cpp
    format_read_array.cpp
    format_read_block.cpp
    format_read_text.cpp
    format_reader.cpp
    format_scan.cpp
    format_spec.cpp
    format_text_writer.cpp
    format_write_block.cpp
    format_write_number.cpp
    format_write_text.cpp
    format_writer.cpp
    number_forms.cpp
    number_parse.cpp
    number_text.cpp)
