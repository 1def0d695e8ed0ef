#include "app/folder_name.h"

namespace {

constexpr char16_t kFirstPrintable = u' ';
const char kNeverInFolderNames[] = "\"<>|?";

bool isDriveLetter(QChar c)
{
    return (c >= QLatin1Char('A') && c <= QLatin1Char('Z')) || (c >= QLatin1Char('a') && c <= QLatin1Char('z'));
}

bool isSeparator(QChar c)
{
    return c == QLatin1Char('\\') || c == QLatin1Char('/');
}

}

bool canBeFolderName(const QString& folder)
{
    for (const QChar c : folder) {
        if (c.unicode() < kFirstPrintable || QLatin1String(kNeverInFolderNames).contains(c))
            return false;
    }
    return true;
}

bool isFullPath(const QString& folder)
{
    if (folder.size() >= 3 && isDriveLetter(folder.at(0)) && folder.at(1) == QLatin1Char(':')
        && isSeparator(folder.at(2)))
        return true;
    return folder.size() >= 3 && isSeparator(folder.at(0)) && isSeparator(folder.at(1)) && !isSeparator(folder.at(2));
}
