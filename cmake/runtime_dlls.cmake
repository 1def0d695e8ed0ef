# The DLLs a MinGW-built Qt program needs beside it: QtCore and the runtime it
# was built against. A cross compiler knows them by -print-file-name; a MinGW
# installed on Windows keeps them next to the compiler.
set(KX_RUNTIME_DLLS "")
if(MINGW)
    get_filename_component(compiler_dir "${CMAKE_CXX_COMPILER}" DIRECTORY)
    foreach(dll libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
        execute_process(
            COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${dll}
            OUTPUT_VARIABLE dll_path
            OUTPUT_STRIP_TRAILING_WHITESPACE)
        if(NOT IS_ABSOLUTE "${dll_path}" OR NOT EXISTS "${dll_path}")
            set(dll_path "${compiler_dir}/${dll}")
        endif()
        if(NOT EXISTS "${dll_path}")
            message(FATAL_ERROR "${dll} was found neither by the compiler nor beside it")
        endif()
        list(APPEND KX_RUNTIME_DLLS "${dll_path}")
    endforeach()
endif()

# Copies the target and every runtime DLL into dir after each build, so that
# dir runs on its own, with no search path set.
function(kx_stage_with_runtime target dir)
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${CMAKE_COMMAND} -E make_directory ${dir}
        COMMAND ${CMAKE_COMMAND} -E copy_if_different
            $<TARGET_FILE:${target}> $<TARGET_FILE:Qt6::Core> ${KX_RUNTIME_DLLS} ${dir}
        VERBATIM)
endfunction()
