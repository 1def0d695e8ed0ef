#include "app/command_line.h"

#include "sweep/win32.h"

#include <shellapi.h>

QString wideArgument(int index, int argc)
{
    int count = 0;
    LPWSTR* arguments = CommandLineToArgvW(GetCommandLineW(), &count);
    if (arguments == nullptr)
        return QString();
    QString argument;
    if (count == argc && index >= 0 && index < count)
        argument = QString::fromWCharArray(arguments[index]);
    LocalFree(arguments);
    return argument;
}
