#include "text/path_normalize.h"

#include <gtest/gtest.h>

namespace {

// Input, normalizePath, normalizePathFixed where it differs.
const struct {
    const char* path;
    const char* expected;
    const char* expectedFixed;
} kNormalizeCases[] = {
    {"/", "/", nullptr},
    {R"(C:\a\b)", R"(C:\a\b)", nullptr},
    {"C:/a//b/../c", "C:/a/c", R"(C:\a\c)"},
    {R"(C:\a/b\..\c)", R"(C:\c)", R"(C:\a\c)"},
    {R"(x\\\y)", R"(x\\y)", nullptr},
    {R"(x\\\\y)", R"(x\\y)", nullptr},
    {R"(x\\\\\y)", R"(x\\\y)", nullptr},
    {R"(\\\\srv)", R"(\\\srv)", nullptr},
    {R"(C:\data\jobs\..\..\bin\)", R"(C:\bin\)", nullptr},
    {R"(C:\x\..\y)", R"(C:\y)", nullptr},
    {R"(C:\..\y)", "y", nullptr},
    {R"(a\b\..\..\c)", R"(a\c)", nullptr},
    {R"(ab\..\cd\..\e)", R"(cd\..\e)", nullptr},
    {R"(<Root>\..\x)", R"(<Root>\..\x)", nullptr},
    {R"(<Root>\\..\x)", R"(<Root>\..\x)", nullptr},
    {R"(<Root>\a\..\x)", R"(<Root>\x)", nullptr},
    {R"(\\srv\share\..\x)", R"(\\srv\sharex)", nullptr},
    {R"(\\srv\share\dir\..\x)", R"(\\srv\share\x)", nullptr},
};

TEST(PathNormalization, SeparatorsCollapseOnceAndOnlyTheFirstParentGroupFolds)
{
    for (const auto& c : kNormalizeCases) {
        const QString path = QString::fromLatin1(c.path);
        EXPECT_EQ(normalizePath(path), QString::fromLatin1(c.expected)) << c.path;
        FixedWideString fixed = toFixedWide(path);
        const QString result = toQString(normalizePathFixed(fixed));
        EXPECT_EQ(result, QString::fromLatin1(c.expectedFixed ? c.expectedFixed : c.expected)) << c.path;
        EXPECT_EQ(toQString(fixed), result) << c.path;
    }
}

// Both forms agree; the backslash is the separator.
TEST(ParentFolder, DriveAndShareRootsStayAndABareDriveGivesNothing)
{
    const struct {
        const char* path;
        const char* expected;
    } cases[] = {
        {"C:", "C:"},           {R"(a\)", R"(a\)"},         {R"(C:\)", ""},
        {"abc", ""},            {R"(C:\a\)", R"(C:\)"},     {R"(C:\a\b)", R"(C:\a\)"},
        {R"(a\b)", R"(a\)"},    {R"(\\\)", R"(\\)"},        {R"(\\srv)", R"(\\)"},
        {R"(\\a\\)", R"(\\a\)"}, {R"(\\srv\share\)", R"(\\srv\share)"},
        {R"(\\srv\share\dir)", R"(\\srv\share\)"},
    };
    for (const auto& c : cases) {
        const QString path = QString::fromLatin1(c.path);
        EXPECT_EQ(parentFolder(path, QLatin1Char('\\')), QString::fromLatin1(c.expected)) << c.path;
        FixedWideString fixed = toFixedWide(path);
        EXPECT_EQ(toQString(parentFolderFixed(fixed)), QString::fromLatin1(c.expected)) << c.path;
    }
    EXPECT_EQ(parentFolder(QStringLiteral("C:/a/b/"), QLatin1Char('/')), QStringLiteral("C:/a/"));
}

// A backslash before the protected prefix leaves the path as it is; the fixed
// form then appends the separator only while the text stays within 500 units.
TEST(ParentFolder, FixedFormAppendsNoSeparatorBeyond500)
{
    const QString path = QStringLiteral("\\:") + QString(498, QLatin1Char('a'));
    EXPECT_EQ(parentFolder(path, QLatin1Char('\\')), path + QLatin1Char('\\'));
    FixedWideString fixed = toFixedWide(path);
    EXPECT_EQ(toQString(parentFolderFixed(fixed)), path);
}

} // namespace
