#include "text/entities.h"

#include <gtest/gtest.h>

// Input, then the decoded text, both Latin-1.
TEST(EntityDecoding, AmpersandIsDecodedAfterNamedAndBeforeNumericEntities)
{
    const char* const cases[][2] = {
        {"&lt;Root&gt; &quot;a&apos;", "<Root> \"a'"},
        {"&amp;lt;", "&lt;"},
        {"&amp;amp;", "&amp;"},
        {"&amp;#196;", "\xC4"},
        {"&LT; &#233;", "&LT; &#233;"},
        {"&#196;&#214;&#220;&#228;&#246;&#252;&#223;", "\xC4\xD6\xDC\xE4\xF6\xFC\xDF"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(decodeEntities(QString::fromLatin1(c[0])), QString::fromLatin1(c[1])) << c[0];
}
