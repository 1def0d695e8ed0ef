#include "text/entities.h"

#include <gtest/gtest.h>

namespace {

TEST(EntityDecoding, AmpersandIsDecodedAfterNamedAndBeforeNumericEntities)
{
    const struct {
        const char* text;
        QString expected;
    } cases[] = {
        {"C:\\plain text", QStringLiteral("C:\\plain text")},
        {"&lt;Root&gt;", QStringLiteral("<Root>")},
        {"&quot;a&apos;", QStringLiteral("\"a'")},
        {"&amp;lt;", QStringLiteral("&lt;")},
        {"&amp;amp;", QStringLiteral("&amp;")},
        {"&amp;#196;", QString(QChar(0x00C4))},
        {"&LT;", QStringLiteral("&LT;")},
        {"&#233;", QStringLiteral("&#233;")},
        {"&#196;&#214;&#220;&#228;&#246;&#252;&#223;",
         QString::fromUtf16(u"\u00C4\u00D6\u00DC\u00E4\u00F6\u00FC\u00DF")},
    };
    for (const auto& c : cases)
        EXPECT_EQ(decodeEntities(QString::fromLatin1(c.text)), c.expected) << c.text;
}

} // namespace
