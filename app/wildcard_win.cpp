#include "app/wildcard.h"

void expandWildcardFolders(QString, std::int32_t&, bool&)
{
}
