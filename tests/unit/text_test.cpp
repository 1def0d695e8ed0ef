// The fixed strings' search and prefix test, entity decoding and path normalisation, with their
// odd results kept on purpose.

#include "text/entities.h"
#include "text/fixed_string.h"
#include "text/output.h"
#include "text/path_normalize.h"

#include <gtest/gtest.h>
#include <string>

namespace {

FixedWideString wide(const char* text)
{
    return FixedWideString::fromNarrow(text);
}

TEST(FixedString, SearchAndPrefixIgnoreCase)
{
    const struct { const char *text, *find; int from, expected; } cases[] = {
        {"ABC", "abc", 0, 0}, {"ABC", "", 0, -1}, {"ABC", "bc", 2, -1}, {"abcabc", "abc", 1, 3},
        // Equal sums over different text: the comparison, not the sum, decides.
        {"adbc", "bc", 0, 2}, {"ad", "bc", 0, -1},
    };
    for (const auto& c : cases)
        EXPECT_EQ(wide(c.text).indexOfNoCase(wide(c.find), c.from), c.expected) << c.text << " / " << c.find;
    FixedWideString prefix = wide("c:\\su"); // the call upper-cases it in place
    EXPECT_TRUE(wide("C:\\Suite").startsWithNoCase(prefix));
}

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

// Input, then normalizePath, then normalizePathFixed where it differs.
TEST(PathNormalization, SeparatorsCollapseOnceAndOnlyTheFirstParentGroupFolds)
{
    const char* const cases[][3] = {
        {"C:/a//b/../c", "C:/a/c", R"(C:\a\c)"},
        {R"(C:\a/b\..\c)", R"(C:\c)", R"(C:\a\c)"}, // beside a backslash "/" is text
        {R"(x\\\y)", R"(x\\y)"},
        {R"(\\\\srv)", R"(\\\srv)"},
        {R"(C:\data\jobs\..\..\bin\)", R"(C:\bin\)"},
        {R"(C:\..\y)", "y"},
        {R"(a\b\..\..\c)", R"(a\c)"},
        {R"(ab\..\cd\..\e)", R"(cd\..\e)"},
        {R"(<Root>\..\x)", R"(<Root>\..\x)"},
        {R"(<Root>\a\..\x)", R"(<Root>\x)"},
        {R"(\\srv\share\..\x)", R"(\\srv\sharex)"},
        {R"(\\srv\share\dir\..\x)", R"(\\srv\share\x)"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(normalizePath(QString::fromLatin1(c[0])), QString::fromLatin1(c[1])) << c[0];
        FixedWideString fixed = toFixedWide(QString::fromLatin1(c[0]));
        normalizePathFixed(fixed); // its callers use the text changed in place
        EXPECT_EQ(toQString(fixed), QString::fromLatin1(c[2] != nullptr ? c[2] : c[1])) << c[0];
    }
}

// Input, then the parent in both forms, with the backslash.
TEST(ParentFolder, DriveAndShareRootsStayAndABareDriveGivesNothing)
{
    const char* const cases[][2] = {
        {"C:", "C:"}, {R"(C:\)", ""}, {"abc", ""}, {R"(C:\a\)", R"(C:\)"}, {R"(a\b)", R"(a\)"},
        {R"(\\srv)", R"(\\)"}, {R"(\\srv\share\)", R"(\\srv\share)"}, {R"(\\srv\share\dir)", R"(\\srv\share\)"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(parentFolder(QString::fromLatin1(c[0]), QLatin1Char('\\')), QString::fromLatin1(c[1])) << c[0];
        FixedWideString fixed = toFixedWide(QString::fromLatin1(c[0]));
        EXPECT_EQ(toQString(parentFolderFixed(fixed)), QString::fromLatin1(c[1])) << c[0];
    }
}

// Input, then the parent; callers use the text changed in place.
TEST(NarrowParentFolder, DriveAndShareRootsAreNotCut)
{
    const char* const cases[][2] = {
        {"ab", "ab"}, {"abc", R"(abc\)"}, {R"(X:\a\b\)", R"(X:\a\)"}, {R"(X:\a)", R"(X:\)"}, {R"(X:\)", R"(X:\)"},
        {R"(\\srv\share\)", R"(\\srv\share\)"}, {R"(\\srv\share\d\)", R"(\\srv\share\)"},
    };
    for (const auto& c : cases) {
        FixedNarrowString250 path;
        path.assignNarrow(c[0]);
        parentFolderNarrow(path);
        EXPECT_EQ(toQString(path), QString::fromLatin1(c[1])) << c[0];
    }
}

}

// The console shows Latin-1 with one "?" per character it lacks; the log keeps
// the text whole, in UTF-8, with CR LF.
TEST(Output, ConsoleAndLogFormsOfOnePrintedText)
{
    const QString text = QString::fromUtf8("\xc5\x82\xc3\xb3" "d\xc5\xba \xf0\x9f\x8e\x9e\xc3\xa9%s\n");
    EXPECT_EQ(consoleBytes(text), QByteArray("?\xf3" "d? ?\xe9%s\n"));
    EXPECT_EQ(logBytes(text), QByteArray("\xc5\x82\xc3\xb3" "d\xc5\xba \xf0\x9f\x8e\x9e\xc3\xa9%s\r\n"));
    // A name may hold a surrogate without its partner, which UTF-8 cannot say.
    const QString lone = QString(QChar(0xD83C)) + QLatin1Char('x') + QChar(0xDF9E);
    EXPECT_EQ(logBytes(lone), QByteArray("\xef\xbf\xbdx\xef\xbf\xbd"));
}
