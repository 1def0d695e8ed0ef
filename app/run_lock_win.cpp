#include "app/run_lock.h"

#include "sweep/handles_win.h"
#include "sweep/win32.h"

#include <sddl.h>

#include <QCryptographicHash>

namespace {

// Only SYSTEM and the administrators may open the lock, so a user can never
// hold it to stop the cleaning of a folder.
const wchar_t kLockAccess[] = L"D:(A;;GA;;;SY)(A;;GA;;;BA)";

// A mutex's name may hold no backslash after its namespace and is limited in
// length, so the folder is hashed. The global namespace is the one that the
// services' session and every console share.
QString lockName(const QString& folder)
{
    QString key = folder.toCaseFolded();
    key.replace(QLatin1Char('/'), QLatin1Char('\\'));
    while (key.endsWith(QLatin1Char('\\')))
        key.chop(1);
    return QLatin1String("Global\\kxDeleteOldFiles-")
           + QString::fromLatin1(QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Sha256).toHex());
}

}

bool lockFolderRuns(const QString& folder)
{
    // Released by the system when the process ends, however it ends.
    static OwnedHandle lock;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ConvertStringSecurityDescriptorToSecurityDescriptorW(kLockAccess, SDDL_REVISION_1, &descriptor, nullptr);
    SECURITY_ATTRIBUTES attributes = {sizeof attributes, descriptor, FALSE};
    const HANDLE mutex = CreateMutexW(&attributes, FALSE, asWide(lockName(folder).utf16()));
    LocalFree(descriptor);
    // Without the right to create global objects, as in a console that is not
    // elevated, nothing can be locked: such a run goes on unlocked, as only
    // SYSTEM and elevated administrators can see each other anyway.
    if (mutex == nullptr)
        return true;
    lock.handle = mutex;
    const DWORD wait = WaitForSingleObject(mutex, 0);
    // An abandoned lock belonged to a run that ended without releasing it.
    return wait == WAIT_OBJECT_0 || wait == WAIT_ABANDONED;
}
