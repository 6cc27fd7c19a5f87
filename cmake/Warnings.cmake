option(FCP_WERROR "Treat compiler warnings as errors" OFF)

# Takes warnings on for one target; headers of installed libraries are system headers and stay silent.
function(fcp_warnings target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual -Wformat=2
        # g++ 12, optimising, sees overlaps and overflows in the string library's own concatenation that cannot occur.
        "$<$<AND:$<COMPILE_LANG_AND_ID:CXX,GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict;-Wno-array-bounds;-Wno-stringop-overflow>"
        $<$<BOOL:${FCP_WERROR}>:-Werror>)
endfunction()
