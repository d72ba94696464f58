# kestrion_count_lookups(<test>)
# Has the linker lead the calls of the hash function through the counter of lookup_count.cpp.
function(kestrion_count_lookups test)
    set(hash _ZN8kestrion14TextHashTraits4HashESt17basic_string_viewIcSt11char_traitsIcEE)
    target_link_options(${test} PRIVATE "LINKER:--wrap=${hash}")
endfunction()
