#include "app/folder_run.h"

TimeStamp& progressStamp()
{
    static TimeStamp stamp = 0;
    return stamp;
}
