# Fails unless the exe prints through msvcrt.dll's printf: MinGW's own printf
# must not be linked in, and vprintf must be imported from msvcrt.dll.
# cmake -DEXE=<exe> -DNM=<nm> -DOBJDUMP=<objdump> -P msvcrt_printf_check.cmake
execute_process(COMMAND ${NM} ${EXE} OUTPUT_VARIABLE symbols RESULT_VARIABLE failed)
if(failed)
    message(FATAL_ERROR "${NM} could not read ${EXE}")
endif()
# The string formatters (__mingw_snprintf and kin) do not print.
string(REGEX MATCHALL "__mingw_v?f?w?printf\n" mingw_printers "${symbols}")
if(mingw_printers)
    string(REPLACE "\n" " " mingw_printers "${mingw_printers}")
    message(FATAL_ERROR "${EXE} links MinGW's printf: ${mingw_printers}")
endif()

execute_process(COMMAND ${OBJDUMP} -p ${EXE} OUTPUT_VARIABLE headers RESULT_VARIABLE failed)
if(failed)
    message(FATAL_ERROR "${OBJDUMP} could not read ${EXE}")
endif()
# The imports are listed one DLL after the other, each under its name.
string(REGEX MATCH "DLL Name: msvcrt\\.dll\n([^D]|D[^L])*" msvcrt_imports "${headers}")
if(NOT msvcrt_imports MATCHES "[ \t]vprintf\n")
    message(FATAL_ERROR "${EXE} does not import vprintf from msvcrt.dll")
endif()
