#include "sweep/log_spill_win.h"

#include "text/output.h"

#include <vector>

namespace {

// Printed a part at a time, so the copy back holds no more than this at once.
constexpr DWORD kPrintUnits = 1024 * 1024;

// Shared for deletion: a cleanup of the temporary folder may delete its name,
// and the handle still reads it.
OwnedHandle createSpillFile()
{
    OwnedHandle file;
    std::vector<wchar_t> folder(MAX_PATH + 1);
    std::vector<wchar_t> name(MAX_PATH + 1);
    if (GetTempPathW(static_cast<DWORD>(folder.size()), folder.data()) == 0
        || GetTempFileNameW(folder.data(), L"kxl", 0, name.data()) == 0)
        return file;
    file.handle = CreateFileW(name.data(), GENERIC_READ | GENERIC_WRITE,
                              FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, TRUNCATE_EXISTING,
                              FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (!file.isOpen())
        DeleteFileW(name.data());
    return file;
}

bool writeAll(HANDLE file, const QString& text)
{
    const auto bytes = static_cast<DWORD>(text.size() * sizeof(char16_t));
    DWORD written = 0;
    return WriteFile(file, text.utf16(), bytes, &written, nullptr) && written == bytes;
}

}

void spillLog(LogSpill& spill, QString& log)
{
    if (spill.failed)
        return;
    if (!spill.file.isOpen())
        spill.file = createSpillFile();
    spill.failed = !spill.file.isOpen() || !writeAll(spill.file.handle, log);
    if (spill.failed)
        return;
    log.clear();
}

// A part never ends between the two halves of a surrogate pair: each part is
// printed as text of its own.
void printSpilled(LogSpill& spill)
{
    if (!spill.file.isOpen())
        return;
    LARGE_INTEGER start = {};
    SetFilePointerEx(spill.file.handle, start, nullptr, FILE_BEGIN);
    std::vector<char16_t> units(kPrintUnits + 1);
    qsizetype held = 0;
    for (;;) {
        DWORD read = 0;
        const auto room = static_cast<DWORD>((kPrintUnits - held) * sizeof(char16_t));
        if (!ReadFile(spill.file.handle, units.data() + held, room, &read, nullptr) || read == 0)
            break;
        qsizetype length = held + static_cast<qsizetype>(read / sizeof(char16_t));
        held = QChar::isHighSurrogate(units[static_cast<std::size_t>(length - 1)]) ? 1 : 0;
        printText(QString::fromUtf16(units.data(), length - held));
        if (held != 0)
            units[0] = units[static_cast<std::size_t>(length - 1)];
    }
    if (held != 0)
        printText(QString::fromUtf16(units.data(), 1));
    spill.file.close();
}
