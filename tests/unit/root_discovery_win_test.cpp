// Root validation, the relink file and root discovery on real installations
// made in a temporary folder.

#include "install/root_discovery.h"
#include "install/root_validation.h"

#include "test_support.h"
#include "temp_folder_win.h"

#include <cstdlib>
#include <memory>

namespace {

const wchar_t* wide(const QString& text)
{
    return asWide(reinterpret_cast<const char16_t*>(text.utf16()));
}

// getEnv reads the wide environment; an empty value unsets.
void setEnv(const wchar_t* name, const QString& value)
{
    _wputenv_s(name, wide(value));
}

// Two folders above this test program's folder, where the application step
// looks: no installation.
QString applicationCandidate()
{
    char name[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, name, MAX_PATH);
    QString path = QString::fromLatin1(name);
    for (int i = 0; i < 3; ++i)
        path.truncate(path.lastIndexOf('\\'));
    return path + '\\';
}

struct Discovery {
    bool found = false;
    QString log;
    std::unique_ptr<InstallPaths> paths = std::make_unique<InstallPaths>();
    QString entry(int i) const { return toQString(paths->entries[i]); }
};

Discovery discover(Argv args)
{
    Discovery d;
    bool outside = false;
    d.found = findInstallRoot(*d.paths, args.argc(), args.argv(), d.log, outside, false, false, {}, true);
    return d;
}

class RootDiscovery : public TempFolderTest {
protected:
    void SetUp() override
    {
        setEnv(L"KX_ROOT", "");
        setEnv(L"KX_ROOT_INSTALLER", "");
    }

    // A native path below the temporary folder; "x/" gives a folder path "...\x\".
    QString at(const QString& relative) const { return QDir::toNativeSeparators(path(relative)); }
    std::string arg(const QString& relative) const { return at(relative).toStdString(); }

    // A path ending in "/" is made as a folder, any other as a file.
    QString make(const QString& relative, const QByteArray& content = {}) const
    {
        makeFolder(at(relative.endsWith('/') ? relative : relative.section('/', 0, -2)));
        if (!relative.endsWith('/'))
            writeFile(at(relative), content);
        return at(relative);
    }
    QString makeRoot(const QString& relative) const
    {
        make(relative + "sub/cfg_global/");
        return at(relative);
    }

    const QString appPath = "\n[appPath: " + applicationCandidate() + ": invalid]";
};

TEST_F(RootDiscovery, EachValidityTestRecognisesAnInstallation)
{
    const std::pair<const char*, bool> cases[] = {
        {"sub/cfg_global/globalconfig.ini", true}, {"sub/cfg_global/", true},
        {"bin/win64/kxClientconsole.exe", true},   {"bin/win64/kxServerconsole.exe", true},
        {"bin/win64/kxControl.exe", true},         {"sub/cfg_global/relink_win.cfg", true},
        {"", false},                               {"bin/win64/kxDeleteOldFiles.exe", false},
    };
    int n = 0;
    for (const auto& [marker, valid] : cases) {
        const QString root = QString("r%1/").arg(n++);
        make(root + marker);
        EXPECT_EQ(isValidRoot(at(root)), valid) << marker;
    }
    EXPECT_FALSE(isValidRoot(""));
}

TEST_F(RootDiscovery, DebugFolderIsValidThroughItsReleaseTwin)
{
    make("build_debug/");
    make("other_Debug/");
    make("other_release/sub/cfg_global/relink_win.cfg");
    const QString data = makeRoot("data/");
    make("build_release/sub/cfg_global/relink_win.cfg", "Root=" + data.toLatin1());
    EXPECT_TRUE(isValidRoot(at("build_debug/")));
    EXPECT_FALSE(isValidRoot(at("other_Debug/")));  // exact case

    const Discovery d = discover({"x", "-kxRoot", arg("build_debug")});
    EXPECT_TRUE(d.found);
    EXPECT_EQ(d.entry(kRootEntry), data);  // read from the release folder
    EXPECT_TRUE(d.log.endsWith("]\n[Relink " + data + "]")) << qPrintable(d.log);
}

TEST_F(RootDiscovery, RelinkFileMovesRootOrSetsExeRootAndALockedOneFails)
{
    const QString suite = makeRoot("suite/");
    const QString data = makeRoot("data/");
    const struct {
        QByteArray content;
        QString root, exeRoot, logTail;
    } cases[] = {
        {"  root = " + data.chopped(1).toLatin1() + "  \r\nExeRoot=Y:\\x\r\n", data, suite, "\n[Relink " + data + "]"},
        {"ROOT=Q:\\none", "Q:\\none\\", suite, "\n[Relink Q:\\none\\: invalid]"},
        {"ExeRoot=Y:\\bin\nRoot=" + data.toLatin1(), "", "Y:\\bin", "\n[appPath: " + suite + "]"},
    };
    for (const auto& c : cases) {
        make("suite/sub/cfg_global/relink_win.cfg", c.content);
        const Discovery d = discover({"x", "-kxRoot", arg("suite")});
        EXPECT_TRUE(d.found);
        EXPECT_EQ(d.entry(kRootEntry), c.root);
        EXPECT_EQ(d.entry(kExeRootEntry), c.exeRoot);
        EXPECT_TRUE(d.log.endsWith(c.logTail)) << qPrintable(d.log);
    }

    // Locked against reading: the discovery fails and says nothing about it.
    const HANDLE handle = CreateFileW(wide(at("suite/sub/cfg_global/relink_win.cfg")), GENERIC_READ, 0, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(handle, INVALID_HANDLE_VALUE);
    const Discovery d = discover({"x", "-kxRoot", arg("suite")});
    CloseHandle(handle);
    EXPECT_FALSE(d.found);
    EXPECT_EQ(d.log, "\n[-kxRoot flag: " + suite + ": VALID!]\n[appPath: " + suite + "]");
}

TEST_F(RootDiscovery, SourcesAreTriedInOrderAndLoggedExactly)
{
    const QString suite = makeRoot("suite/");
    make("suite/bin/win64/");
    const QString internal = makeRoot("a/_internal_x/");
    const QString versioned = makeRoot("suite/_kx9/");
    const QString alone = makeRoot("other/_KX9/");
    const QString slashed = temp.path() + "/suite";
    const QString none = "\n[-kxRoot flag: : invalid]\n[KX_ROOT_INSTALLER: : invalid]";
    const struct {
        std::initializer_list<std::string> arguments;
        QString kxRoot, installer;
        QString root, log;
        int entry = kRootEntry;
        QString value = root;
    } cases[] = {
        {{"x", "-kxRoot", arg("suite")}, "", "", suite,
         "\n[-kxRoot flag: " + suite + ": VALID!]\n[appPath: " + suite + "]"},
        // Not shortened to the folder above "bin".
        {{"x", "-kxRoot", arg("suite/bin/win64")}, "", "", "",
         "\n[-kxRoot flag: " + suite + "bin\\win64\\: invalid]\n[KX_ROOT_INSTALLER: : invalid]" + appPath
             + "\n[KX_ROOT: : invalid]"},
        // "\_internal_" is rewritten even in a root already accepted.
        {{"x", "-kxRoot", arg("a/_internal_x/")}, "", "", "",
         "\n[-kxRoot flag: " + internal + ": VALID!]\n[appPath: " + at("a/_x/") + ": invalid]\n[KX_ROOT: : invalid]"},
        // Slashes stay in the environment step; a carriage return goes.
        {{"x"}, slashed, "", slashed + "\\", none + appPath + "\n[KX_ROOT: " + slashed + "\\]"},
        {{"x"}, "", suite.chopped(1) + "\r", suite,
         "\n[-kxRoot flag: : invalid]\n[KX_ROOT_INSTALLER: " + suite + "]\n[appPath: " + suite + "]"},
        // argv[0] writes nothing to the log.
        {{(suite + "bin\\win64\\x.exe").toStdString()}, "", "", suite, none + appPath},
        {{"x", "-kxRoot", arg("suite/_kx9")}, "", "", suite,
         "\n[-kxRoot flag: " + versioned + ": VALID!]\n[appPath: " + versioned + "]", kExeRootEntry, versioned},
        {{"x", "-kxRoot", arg("other/_KX9")}, "", "", alone,
         "\n[-kxRoot flag: " + alone + ": VALID!]\n[appPath: " + alone + "]"},
        {{"x", "-kxRoot", arg("suite"), "-loadstatus", "..\\status"}, "", "", suite,
         "\n[-kxRoot flag: " + suite + ": VALID!]\n[appPath: " + suite + "]", kStatusEntry, at("status/")},
    };
    for (const auto& c : cases) {
        setEnv(L"KX_ROOT", c.kxRoot);
        setEnv(L"KX_ROOT_INSTALLER", c.installer);
        const Discovery d = discover(c.arguments);
        EXPECT_EQ(d.found, !c.root.isEmpty()) << qPrintable(d.log);
        EXPECT_EQ(d.entry(kRootEntry), c.root) << qPrintable(d.log);
        EXPECT_EQ(d.entry(c.entry), c.value) << qPrintable(d.log);
        EXPECT_EQ(d.log, c.log);
    }
}

}
