# The method trace: the writer and its records, a driver that writes them, and the page that the
# stylesheet makes of them.
kestrion_test(test_trace
    SOURCES parameter_test.cpp shared_folder_test.cpp trace_writer_test.cpp method_trace_test.cpp
            fake_trace_host.cpp "${CMAKE_SOURCE_DIR}/tests/platform/allocation_count.cpp"
    LIBRARIES kestrion_core)
kestrion_test(test_driver_trace
    SOURCES driver_trace_test.cpp "${CMAKE_SOURCE_DIR}/tests/platform/allocation_count.cpp"
    LIBRARIES test_support)

add_executable(write_odd_trace write_odd_trace.cpp)
target_link_libraries(write_odd_trace PRIVATE kestrion_core kestrion_options)
kestrion_python_test(trace_stylesheet_test.py)
set_tests_properties(core.trace_stylesheet_test PROPERTIES
    ENVIRONMENT "KESTRION_ODD_TRACE=$<TARGET_FILE:write_odd_trace>")
