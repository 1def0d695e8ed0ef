#include "text/entities.h"

#include <QChar>

namespace {

struct Entity {
    const char* name;
    char16_t character;
};

// Strictly in this order: "&amp;" comes after the other named entities and
// before the numeric ones, so "&amp;lt;" is decoded once and "&amp;#196;"
// twice. The characters are made from their code values, not through a code
// page.
constexpr Entity kEntities[] = {
    {"&lt;", u'<'},       {"&gt;", u'>'},       {"&quot;", u'"'},     {"&apos;", u'\''},
    {"&amp;", u'&'},      {"&#196;", 0x00C4},   {"&#214;", 0x00D6},   {"&#220;", 0x00DC},
    {"&#228;", 0x00E4},   {"&#246;", 0x00F6},   {"&#252;", 0x00FC},   {"&#223;", 0x00DF},
};

} // namespace

QString decodeEntities(QString text)
{
    for (const Entity& entity : kEntities)
        text.replace(QLatin1String(entity.name), QString(QChar(entity.character)), Qt::CaseSensitive);
    return text;
}
