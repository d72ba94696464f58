# The tests of the method trace. They need nothing of the core but the trace's own sources, so that
# they can be built without the rest of it.
if(TARGET kestrion_core)
    set(trace_library kestrion_core)
else()
    set(trace_library kestrion_trace)
    add_library(kestrion_trace STATIC
        "${CMAKE_SOURCE_DIR}/core/method_trace.cpp" "${CMAKE_SOURCE_DIR}/core/trace_writer.cpp")
    target_include_directories(kestrion_trace PUBLIC "${CMAKE_SOURCE_DIR}")
    target_link_libraries(kestrion_trace PUBLIC kestrion_platform PRIVATE kestrion_options)
endif()
kestrion_test(test_trace
    SOURCES parameter_test.cpp trace_writer_test.cpp method_trace_test.cpp fake_trace_host.cpp
            "${CMAKE_SOURCE_DIR}/tests/platform/allocation_count.cpp"
    LIBRARIES ${trace_library})
