// C, not C++, so that no libstdc++ header reaches this file. MinGW's headers
// still pick their own printf for C99 and later unless told otherwise before
// the first include.
#undef __USE_MINGW_ANSI_STDIO
#define __USE_MINGW_ANSI_STDIO 0

#include "text/platform_printf.h"

#include <stdarg.h>
#include <stdio.h>

int platformPrintf(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const int written = vprintf(format, arguments);
    va_end(arguments);
    return written;
}
