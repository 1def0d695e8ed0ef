#include "install/root_rules.h"

#include "test_support.h"

#include <gtest/gtest.h>

namespace {

TEST(RootFlagScan, PrefixIgnoresCaseValueIsDecodedAndNotSkipped)
{
    const struct {
        std::initializer_list<std::string> arguments;
        QStringList values;
    } cases[] = {
        {{"x", "C:\\temp", "-do", "7"}, {}},
        {{"x", "-KXROOT", "X:/suite/"}, {"X:/suite/"}},
        {{"x", "-kxRootDir", "X:\\a&amp;b&#252;"}, {"X:\\a&b\u00FC\\"}},
        {{"x", "-kxRoot", "A:\\one", "-kxroot", "B:\\two"}, {"A:\\one\\", "B:\\two\\"}},
        {{"x", "-kxRoot", "-kxRoot", "B:"}, {"-kxRoot\\", "B:\\"}},  // the value is not skipped
        {{"x", "-kxRoot", ""}, {"\\"}},
        {{"x", "C:\\temp", "-kxRoot"}, {}},
    };
    for (const auto& c : cases) {
        Argv args(c.arguments);
        EXPECT_EQ(kxRootFlagValues(args.argc(), args.argv()), c.values) << args.texts[1];
    }
    Argv status({"x", "-LoadStatus", "D:\\st&quot;", "-loadstatusX", "E:\\x", "-loadstatus"});
    EXPECT_EQ(flagValues(status.argc(), status.argv(), "-loadstatus", false), (QStringList{"D:\\st\"", "E:\\x"}));
}

TEST(RootCandidates, AreShapedBeforeTheyAreTested)
{
    const struct {
        QString (*rule)(QString);
        QString input, expected;
    } cases[] = {
        {environmentCandidate, "\r", ""},
        {environmentCandidate, "X:/suite\r", "X:/suite\\"},
        {replaceInternalMarker, "X:\\a\\_internal_x\\_internal_\\", "X:\\a\\_x\\_\\"},
        {replaceInternalMarker, "X:\\suite_internal_\\_INTERNAL_\\", "X:\\suite_internal_\\_INTERNAL_\\"},
        {releaseTwin, "X:\\b_debug\\c_Debug\\", "X:\\b_release\\c_Debug\\"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.rule(c.input), c.expected) << qPrintable(c.input);
    EXPECT_TRUE(endsWithVersionFolder("X:\\s\\_kx9\\"));
    EXPECT_FALSE(endsWithVersionFolder("X:\\s\\_KX90\\"));

    FixedWideString250 root;
    root.assignNarrow("X:\\suite\\");
    EXPECT_EQ(toQString(statusFolderEntry("..\\status\"", root)), "X:\\status\\");
    EXPECT_EQ(toQString(statusFolderEntry("D:\\st\"", root)), "D:\\st\\");
    EXPECT_EQ(toQString(statusFolderEntry(QString(300, 's'), root)), QString(250, 's'));
}

TEST(RelinkLine, RootOrExeRootKeyTakesTheTextAfterTheFirstEquals)
{
    const struct {
        QByteArray line;
        QString root, exeRoot;
    } cases[] = {
        {"  root = Y:\\data  \n", "Y:\\data\\", "E:\\"},
        {"\tROOT=Y:/data/\r\n", "Y:/data/\\", "E:\\"},
        {"RootDir=Y:\\a=b\\", "Y:\\a=b\\", "E:\\"},
        {"Root=Y:\\\xE9", "Y:\\\u00E9\\", "E:\\"},
        {" exeroot = Y:\\bin ", "", "Y:\\bin"},
        {"Root=", "", "E:\\"},
        {"Root Y:\\data", "", "E:\\"},
        {"Base=Y:\\data", "", "E:\\"},
    };
    for (const auto& c : cases) {
        InstallPaths paths;
        paths.entries[kExeRootEntry].assignNarrow("E:\\");
        applyRelinkLine(paths, c.line);
        EXPECT_EQ(toQString(paths.entries[kRootEntry]), c.root) << c.line.constData();
        EXPECT_EQ(toQString(paths.entries[kExeRootEntry]), c.exeRoot) << c.line.constData();
    }
}

}
