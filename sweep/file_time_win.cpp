#include "sweep/file_time.h"

#include "sweep/win32.h"

// The system clock itself: the run-time library's _time64 also loads the time
// zone on every call, which under Wine reads the zone file twice, and the sweep
// asks for the time once per file it deletes.
TimeStamp currentTime()
{
    FILETIME now = {};
    GetSystemTimeAsFileTime(&now);
    return fileTimeToSeconds(now.dwLowDateTime, now.dwHighDateTime);
}
