# The DLLs a cross-built Qt program needs beside it: QtCore and the mingw-w64
# runtime it was built against.
set(KX_RUNTIME_DLLS "")
foreach(dll libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
    execute_process(
        COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${dll}
        OUTPUT_VARIABLE dll_path
        OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT IS_ABSOLUTE "${dll_path}" OR NOT EXISTS "${dll_path}")
        message(FATAL_ERROR "The compiler does not know where ${dll} is")
    endif()
    list(APPEND KX_RUNTIME_DLLS "${dll_path}")
endforeach()

# Copies the target and every runtime DLL into dir after each build, so that
# dir runs on its own, with no search path set.
function(kx_stage_with_runtime target dir)
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${CMAKE_COMMAND} -E make_directory ${dir}
        COMMAND ${CMAKE_COMMAND} -E copy_if_different
            $<TARGET_FILE:${target}> $<TARGET_FILE:Qt6::Core> ${KX_RUNTIME_DLLS} ${dir}
        VERBATIM)
endfunction()
