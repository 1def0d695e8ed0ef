// Root validation, the relink file and root discovery on folders made for each test.

#include "install/root_discovery.h"
#include "install/root_validation.h"

#include "temp_folder_win.h"
#include "test_support.h"

class RootDiscovery : public TempFolderTest {
protected:
    std::string at(const char* relative) const { return latin1(path(QString::fromLatin1(relative))); }

    void make(const std::string& relative, const std::string& content = "x") const
    {
        makeFile(QString::fromLatin1(relative.c_str()), 0, QByteArray::fromStdString(content));
    }

    // With KX_ROOT set to kxRoot and KX_ROOT_INSTALLER unset (an empty value unsets).
    bool discover(std::initializer_list<std::string> arguments, const std::string& kxRoot)
    {
        _wputenv_s(L"KX_ROOT", QString::fromLatin1(kxRoot.c_str()).toStdWString().c_str());
        _wputenv_s(L"KX_ROOT_INSTALLER", L"");
        paths = InstallPaths();
        log.clear();
        bool outside = false;
        return findInstallRoot(paths, commandLine(arguments), log, outside, false, false, {}, true);
    }
    std::string entry(int i) const { return latin1(toQString(paths.entries[i])); }

    InstallPaths paths;
    QString log;
};

TEST_F(RootDiscovery, EachValidityTestRecognisesAnInstallationAndAnEmptyFolderNone)
{
    // Files in sub\cfg_global\ bring that folder, so its row stands for the two file tests there.
    const struct { const char *made, *tested; bool valid; } cases[] = {
        {"a/sub/cfg_global/", "a/", true},
        {"b/bin/win64/kxClientconsole.exe", "b/", true},
        {"c/bin/win64/kxServerconsole.exe", "c/", true},
        {"d/bin/win64/kxControl.exe", "d/", true},
        {"e_release/sub/cfg_global/relink_win.cfg", "e_debug/", true},
        {"f_release/sub/cfg_global/relink_win.cfg", "f_Debug/", false},
        {"g/", "g/", false},
    };
    for (const auto& c : cases) {
        make(c.made);
        EXPECT_EQ(isValidRoot(path(QString::fromLatin1(c.tested))), c.valid) << c.tested;
    }
}

// Rows: arguments, KX_ROOT, relink folder and text; entries 0, 29 (empty: no root) and 30; rootLog's end.
TEST_F(RootDiscovery, SourcesRelinkFileAndVersionFolderSettleTheRoot)
{
    for (const char* root : {"suite/", "suite/_kx9/", "x/_KX9/", "i_internal_/_INTERNAL_/", "a/_internal_x/"})
        make(std::string(root) + "sub/cfg_global/");
    const std::string suite = at("suite/"), kx9 = at("suite/_kx9/"), kX9 = at("x/_KX9/"), relink = at("r/"),
                      inner = at("i_internal_/_INTERNAL_/"), slashed = latin1(temp.path()) + "/suite";
    // A -kxRoot root is accepted, then logged and tested again by the application step.
    const auto flag = [](const std::string& r) { return "\n[-kxRoot flag: " + r + ": VALID!]\n[appPath: " + r + "]"; };
    const struct {
        std::initializer_list<std::string> arguments;
        std::string kxRoot, relinkAt, relinkText, root, exeRoot, status, logEnd;
    } cases[] = {
        // A debug folder's relink file is its release twin's.
        {{"x", "-kxRoot", at("r_debug")}, "", "r_release/", "Root=" + suite, suite, at("r_debug/"), "",
         "\n[Relink " + suite + "]"},
        {{"x", "-kxRoot", relink}, "", "r/", "  root = Q:/x/  ", "Q:/x/\\", relink, "", "\n[Relink Q:/x/\\: invalid]"},
        {{"x", "-kxRoot", relink}, "", "r/", " exeroot = Y:\\bin \nRoot=" + suite, "", "Y:\\bin", "", flag(relink)},
        // "\_internal_" is rewritten even in an accepted root, here leaving none; elsewhere or in capitals it stays.
        {{"x", "-kxRoot", at("a/_internal_x/")}, "", "", "", "", "", "",
         ": VALID!]\n[appPath: " + at("a/_x/") + ": invalid]\n[KX_ROOT: : invalid]"},
        // The last -kxRoot value is the one tested; the log shows every value.
        {{"x", "-kxRoot", at("missing/"), "-kxRoot", inner}, "", "", "", inner, inner, "",
         "missing\\" + inner + ": VALID!]\n[appPath: " + inner + "]"},
        // KX_ROOT, the last source, keeps its slashes and loses its carriage return.
        {{"x"}, slashed + "\r", "", "", slashed + "\\", slashed + "\\", "", "\n[KX_ROOT: " + slashed + "\\]"},
        {{"x", "-kxRoot", kx9, "-loadstatus", "..\\status\""}, "", "", "", suite, kx9, at("status/"), flag(kx9)},
        {{"x", "-kxRoot", kX9, "-loadstatus", "D:\\st"}, "", "", "", kX9, kX9, "D:\\st\\", flag(kX9)},
    };
    for (const auto& c : cases) {
        if (!c.relinkAt.empty())
            make(c.relinkAt + "sub/cfg_global/relink_win.cfg", c.relinkText);
        EXPECT_EQ(discover(c.arguments, c.kxRoot), !c.exeRoot.empty()) << latin1(log);
        EXPECT_EQ(entry(kRootEntry) + "|" + entry(kExeRootEntry) + "|" + entry(kStatusEntry),
                  c.root + "|" + c.exeRoot + "|" + c.status);
        EXPECT_EQ(latin1(log.right(int(c.logEnd.size()))), c.logEnd);
    }
}
