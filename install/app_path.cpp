#include "install/app_path.h"

#include "text/path_normalize.h"

namespace {

constexpr char kBackslash = '\\';
constexpr int kCapacity = FixedNarrowString250::kCapacity;

bool isRelativeWithFolder(const FixedNarrowString250& path)
{
    return !path.firstUnitIs(kBackslash) && !(path.length > 1 && path.value[1] == ':')
           && path.firstBackslash() >= 0;
}

} // namespace

bool argv0NeedsCurrentDirectory(const char* argv0)
{
    const FixedNarrowString250 path = FixedNarrowString250::fromNarrow(argv0);
    return path.length >= 4 && isRelativeWithFolder(path);
}

FixedNarrowString250 executablePathFromArgv0(const char* argv0, FixedNarrowString250 currentDirectory)
{
    FixedNarrowString250 path = FixedNarrowString250::fromNarrow(argv0);
    if (path.length < 4) {
        path.clear();
        return path;
    }
    if (!isRelativeWithFolder(path) || currentDirectory.length <= 3)
        return path;

    if (!currentDirectory.endsWithBackslash() && currentDirectory.length != kCapacity)
        currentDirectory.appendUnits(&kBackslash, 1);

    // Each "..\" goes one folder up; whatever stands before the last one is
    // dropped with it, so "a\..\b\x.exe" gives the parent followed by "b\x.exe".
    const FixedNarrowString250 parentReference = FixedNarrowString250::fromNarrow("..\\");
    int tail = 0;
    for (int found = path.indexOfNoCase(parentReference, 0); found >= 0;
         found = path.indexOfNoCase(parentReference, found + 1)) {
        parentFolderNarrow(currentDirectory);
        tail = found + parentReference.length;
    }
    currentDirectory.appendUnits(path.value + tail, path.length - tail);
    return currentDirectory;
}

bool toExecutableFolder(FixedNarrowString250& path)
{
    if (path.isEmpty())
        return false;
    parentFolderNarrow(path);
    return true;
}
