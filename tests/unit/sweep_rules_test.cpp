// The sweep's rules where a run cannot reach them cheaply: error texts of codes Wine never gives, the long-path
// threshold, times, the folder rule and -keep beyond ASCII.

#include "sweep/error_text.h"
#include "sweep/file_ops.h"
#include "sweep/file_time.h"
#include "sweep/keep_pattern.h"
#include "sweep/listing_rules.h"
#include "sweep/sweep.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace {

// What the fake message tables answer; empty means no message.
std::u16string systemText;
std::string statusText;

const ErrorMessageTables kFakeTables = {
    [](std::uint32_t, char16_t* buffer, int capacity) { return int(systemText.copy(buffer, capacity)); },
    [](std::uint32_t, char* buffer, int capacity) { return int(statusText.copy(buffer, capacity)); },
};

TEST(ErrorText, EveryCodeGivesOneFramedLine)
{
    const struct { std::uint32_t code; std::u16string system; std::string status; std::u16string expected; } cases[] = {
        {0, u"Asked.", "", u"No Error."},
        {126, u"Asked.", "", u"A DLL is missing."},
        {5, u"Access denied.\r\n", "", u"Error 5: Access denied."},
        {5, u"Access denied\r\n", "", u"Error 5: Access denied."},
        {5, u"Access denied.\n\r", "", u"Error 5: Access denied. ."},
        {5, u"Two\r\nlines.\n", "", u"Error 5: Two  lines."},
        {5, std::u16string(495, u'a'), "", u"Error 5: " + std::u16string(491, u'a')},
        // The exception table comes before the status messages, whose high bytes are sign-extended.
        {0xC00000FDu, u"", "Asked.", u"EXCEPTION: The thread used up its stack."},
        {0xC0000034u, u"", "Object\r\nnot found.\r\n", u"Object  not found."},
        {0xC0000034u, u"", "Objet \xE9tranger.", u"Objet \uFFE9tranger."},
        {0xC0000001u, u"\r\n", "", u"ERROR code -1073741823. (No system message found)"},
    };
    for (const auto& c : cases) {
        systemText = c.system;
        statusText = c.status;
        const FixedWideString text = systemErrorTextFrom(c.code, kFakeTables);
        EXPECT_EQ(std::u16string(text.value, text.length), c.expected) << c.code;
    }
}

QString padded(const char* head, int length)
{
    const QString text = QString::fromLatin1(head);
    return text + QString(length - text.size(), QLatin1Char('x'));
}

TEST(LongPathRule, PathsFromTheThresholdOnGetThePrefix)
{
    const QString file = QStringLiteral("\\\\?\\"), unc = QStringLiteral("\\\\?\\UNC");
    const struct { QString path, forFile; } cases[] = {
        {padded("C:\\", 239), padded("C:\\", 239)},
        {padded("C:\\", 240), file + padded("C:\\", 240)},
        {padded("\\\\srv\\s\\", 241), unc + padded("\\srv\\s\\", 240)},
        // Never cut: a cut path could name another entry.
        {padded("C:\\", 600), file + padded("C:\\", 600)},
    };
    for (const auto& c : cases)
        EXPECT_EQ(pathForFileCall(c.path), c.forFile) << c.path.size();
}

TEST(FileTime, TicksAroundTheEpochTruncateTowardZero)
{
    const std::int64_t epoch = 116444736000000000LL;
    const struct { std::int64_t ticks; TimeStamp seconds; } cases[] = {
        {epoch, 0}, {epoch + 9999999, 0}, {epoch + 10000000, 1}, {epoch - 10000000, -1}, {epoch - 9999999, 0}};
    for (const auto& c : cases) {
        const auto bits = static_cast<std::uint64_t>(c.ticks);
        EXPECT_EQ(fileTimeToSeconds(std::uint32_t(bits), std::uint32_t(bits >> 32)), c.seconds) << c.ticks;
    }
}

TEST(EntryTime, CreationTimeStandsInForALastWriteWithZeroUpperWord)
{
    EXPECT_EQ(entryTime(0x12345678u, 0, 7, 0x01D00000u), fileTimeToSeconds(7, 0x01D00000u));
    EXPECT_EQ(entryTime(0, 1, 0, 0x01D00000u), fileTimeToSeconds(0, 1));
}

// An emptied folder's own age: with -age newest the newer of its times; a change time the volume does not keep reads
// as 1601. The walk's starting folder is undated.
TEST(EmptiedFolder, GoesWhenTheRunEmptiedItOrItIsOldEnoughItself)
{
    const TimeStamp never = std::numeric_limits<TimeStamp>::min(), y1601 = -11644473600;
    const AgeBy write = AgeBy::Write, newest = AgeBy::Newest;
    const struct { bool emptied; TimeStamp written, changed; AgeBy by; std::int64_t limit; bool goes; } cases[] = {
        {false, 900, 900, write, 50, true}, {false, 950, 900, write, 50, false}, {true, 990, 990, write, 50, true},
        {false, 990, 990, write, 0, true}, {false, 900, 990, write, 50, true}, {false, 900, 990, newest, 50, false},
        {false, 990, 900, newest, 50, false}, {false, 900, y1601, newest, 50, true},
        {false, never, 0, write, std::int64_t(1) << 46, true},
    };
    for (const auto& c : cases)
        EXPECT_EQ(removesEmptiedFolder(c.emptied, ageTime(c.written, c.changed, c.by), c.limit, 1000), c.goes)
            << c.written << ' ' << c.changed;
}

QString text(const char16_t* units)
{
    return QString::fromUtf16(units);
}

TEST(NamePattern, MatchesTheWholeNameIgnoringCase)
{
    const struct { const char16_t *name, *pattern; bool matches; } cases[] = {
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
        // A composed and a decomposed spelling are one name; "?" is one letter of either.
        {u"Re\u0301sume\u0301.lic", u"r\u00E9sum\u00E9*", true},
        {u"R\u00E9sum\u00E9.lic", u"re\u0301sum?.LIC", true},
    };
    for (const auto& c : cases)
        EXPECT_EQ(matchesNamePattern(text(c.name), text(c.pattern)), c.matches) << text(c.name).toStdString();
}

TEST(NamePattern, ManyStarsDoNotBacktrackWithoutEnd)
{
    const QString name(200, QLatin1Char('a'));
    EXPECT_FALSE(matchesNamePattern(name, QStringLiteral("*a").repeated(40) + QStringLiteral("*b")));
    EXPECT_TRUE(matchesNamePattern(name, QStringLiteral("*a").repeated(40) + QStringLiteral("*")));
}

}
