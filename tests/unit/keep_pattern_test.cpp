#include "sweep/keep_pattern.h"

#include <gtest/gtest.h>

namespace {

QString text(const char16_t* units)
{
    return QString::fromUtf16(units);
}

TEST(KeepPattern, MatchesTheWholeNameIgnoringCase)
{
    const struct {
        const char16_t* name;
        const char16_t* pattern;
        bool matches;
    } cases[] = {
        // "*" takes any run, none included; "?" exactly one character.
        {u"lic", u"*lic", true},
        {u"abcbc", u"a*bc", true},
        {u"abcbd", u"a*bc", false},
        {u"ab", u"a**b", true},
        {u"cache.tmp", u"cache?.tmp", false},
        {u"x\U0001F600.tmp", u"x?.tmp", true},
        // Case as QString folds it, beyond ASCII too.
        {u"\u00C4PFEL.LIC", u"\u00E4pfel.lic", true},
        {u"\u017Fhader", u"Shader", true},
        {u"\U00010400.txt", u"\U00010428.TXT", true},
    };
    for (const auto& c : cases) {
        const QString name = text(c.name);
        const QString pattern = text(c.pattern);
        EXPECT_EQ(matchesKeepPattern(name, pattern), c.matches) << name.toStdString() << " " << pattern.toStdString();
        // Without wildcards, a match is QString's case-insensitive equality.
        if (!pattern.contains(QLatin1Char('*')) && !pattern.contains(QLatin1Char('?'))) {
            EXPECT_EQ(c.matches, name.compare(pattern, Qt::CaseInsensitive) == 0) << name.toStdString();
        }
    }
}

TEST(KeepPattern, ManyStarsDoNotBacktrackWithoutEnd)
{
    const QString name(200, QLatin1Char('a'));
    EXPECT_FALSE(matchesKeepPattern(name, QStringLiteral("*a").repeated(40) + QStringLiteral("*b")));
    EXPECT_TRUE(matchesKeepPattern(name, QStringLiteral("*a").repeated(40) + QStringLiteral("*")));
}

}
