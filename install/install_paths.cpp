#include "install/install_paths.h"

#include "text/path_normalize.h"

#include <cstddef>

namespace {

// Status stands in for Root where a status folder was given.
enum class Base { Root, Exe, StatusOrRoot };

struct DerivedFolder {
    int entry;
    Base base;
    const char* folders; // each name followed by a backslash
};

constexpr DerivedFolder kConfigFolders[] = {
    {2, Base::Root, "sub\\"},
    {3, Base::Root, "sub\\cfg_global\\"},
};

constexpr DerivedFolder kDataAndLogFolders[] = {
    {4, Base::Root, "sub\\cfg_user\\"},
    {14, Base::Exe, "sub\\log\\"},
    {37, Base::Exe, "sub_user\\log\\"},
    {15, Base::Root, "sub\\history_db\\"},
    {31, Base::Root, "sub\\stats\\"},
    {6, Base::Root, "autoload\\"},
    {5, Base::StatusOrRoot, "kxJobdata\\"},
    {8, Base::Root, "sub\\cfg_website_templates\\"},
};

constexpr DerivedFolder kBinaryFolders[] = {
    {1, Base::Exe, "bin\\win\\"},
    {18, Base::Exe, "bin\\win64\\"},
};

constexpr DerivedFolder kPluginFolders[] = {
    {16, Base::Exe, "plugins64\\server_jobs\\"},
    {17, Base::Exe, "plugins64\\server_notify\\"},
    {19, Base::Exe, "plugins64\\image\\"},
    {20, Base::Exe, "plugins64\\submitter_sceneparser\\"},
    {32, Base::Exe, "plugins\\"},
};

struct Bases {
    QString root;
    QString exe;
    QString status;
};

// The folders below "render_apps" (or below the override folder itself).
struct RenderAppsFolder {
    int entry;
    const char* folders;
    bool followsExeRoot; // moved to Exe by renderAppsFromExeRoot
};

constexpr RenderAppsFolder kRenderAppsFolders[] = {
    {9, "_config\\", true},
    {10, "_prepost_scripts\\", true},
    {36, "scripts\\", true},
    {35, "_setenv\\all\\", false},
    {12, "_install_paths\\", false},
    {13, "_submitplugins\\", false},
    {11, "_setenv\\win\\", false},
};

struct LocalDataFolder {
    int entry;
    const char* folder;
};

constexpr LocalDataFolder kLocalDataFolders[] = {
    {7, "renderscripts\\"}, {22, "textures\\"},       {24, "temp\\"},      {25, "renderout\\"},
    {26, "cachedscenes\\"}, {27, "renderer_prefs\\"}, {23, "renderer_exe\\"}, {38, "_kxServer\\"},
};

constexpr QLatin1String kRenderApps("render_apps\\");
constexpr QLatin1String kDefaultLocalData("C:\\KX_localdata\\");

// Every entry is assigned from a QString and cut at 250 code units.
void setEntry(InstallPaths& paths, int entry, const QString& folder)
{
    paths.entries[entry] = toFixedWide250(folder);
}

QString entryText(const InstallPaths& paths, int entry)
{
    return toQString(paths.entries[entry]);
}

QString releaseForDebug(QString path)
{
    return path.replace(QLatin1String("_debug"), QLatin1String("_release"), Qt::CaseInsensitive);
}

const QString& baseOf(Base base, const Bases& bases)
{
    switch (base) {
    case Base::Exe:
        return bases.exe;
    case Base::StatusOrRoot:
        return bases.status.isEmpty() ? bases.root : bases.status;
    case Base::Root:
        break;
    }
    return bases.root;
}

template <std::size_t Count>
void setDerivedFolders(InstallPaths& paths, const Bases& bases, const DerivedFolder (&rules)[Count])
{
    for (const DerivedFolder& rule : rules)
        setEntry(paths, rule.entry, baseOf(rule.base, bases) + QLatin1String(rule.folders));
}

} // namespace

void buildInstallLayoutFrom(InstallPaths& paths, const LayoutSources& sources)
{
    setEntry(paths, kRootEntry, releaseForDebug(entryText(paths, kRootEntry)));
    const Bases bases = {entryText(paths, kRootEntry), entryText(paths, kExeRootEntry),
                         entryText(paths, kStatusEntry)};

    setDerivedFolders(paths, bases, kConfigFolders);
    paths.entries[34] = paths.entries[3];
    if (sources.cfgGlobalFromExeRoot)
        setEntry(paths, 34, bases.exe + QLatin1String("sub\\cfg_global\\"));

    setDerivedFolders(paths, bases, kDataAndLogFolders);

    // The override wins over renderAppsFromExeRoot.
    for (const RenderAppsFolder& rule : kRenderAppsFolders) {
        QString base = bases.root + kRenderApps;
        if (!sources.renderAppsOverride.isEmpty())
            base = sources.renderAppsOverride;
        else if (sources.renderAppsFromExeRoot && rule.followsExeRoot)
            base = bases.exe + kRenderApps;
        setEntry(paths, rule.entry, base + QLatin1String(rule.folders));
    }

    setDerivedFolders(paths, bases, kBinaryFolders);
    if (!sources.win64Binaries)
        paths.entries[18] = paths.entries[1];

    setDerivedFolders(paths, bases, kPluginFolders);
    setEntry(paths, 32, releaseForDebug(entryText(paths, 32)));

    if (sources.hasAppFolder)
        setEntry(paths, 33, normalizePath(sources.appFolder));

    setEntry(paths, kLocalDataEntry, sources.localDataFolder);
    buildLocalDataLayout(paths);
    paths.entries[kClearedEntry].clear();
}

void buildLocalDataLayout(InstallPaths& paths)
{
    const QString local = entryText(paths, kLocalDataEntry);
    for (const LocalDataFolder& rule : kLocalDataFolders)
        setEntry(paths, rule.entry, local + QLatin1String(rule.folder));
}

QString localDataFolder(std::uint32_t logicalDrives, const QString& systemDrive)
{
    if ((logicalDrives & kDriveCMask) != 0 || systemDrive.isEmpty())
        return QString(kDefaultLocalData);
    return systemDrive + QLatin1String("\\KX_localdata\\");
}

FixedNarrowString100 renderAppsOverrideFolder(const FixedNarrowString100& override)
{
    FixedNarrowString100 folder = latin1FromQString<FixedNarrowString100::kCapacity>(toBackslashPath(toQString(override)));
    if (!folder.endsWithBackslash()) {
        const char backslash = '\\';
        folder.appendUnits(&backslash, 1); // dropped at 100 characters
    }
    return folder;
}
