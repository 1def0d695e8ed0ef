#include "sweep/error_text.h"

#include "sweep/win32.h"

namespace {

// The user's default language.
const DWORD kMessageLanguage = MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT);

// Inserts are deliberately not ignored, and no arguments are given: the system
// then refuses a message with inserts such as %1 (ERROR_INVALID_PARAMETER),
// and the text falls back to the other tables.
int systemMessage(std::uint32_t code, char16_t* buffer, int capacity)
{
    return static_cast<int>(FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code, kMessageLanguage,
                                           asWide(buffer), static_cast<DWORD>(capacity), nullptr));
}

// Status codes (NTSTATUS) have their texts in the message table of ntdll.
int statusMessage(std::uint32_t code, char* buffer, int capacity)
{
    const HMODULE ntdll = GetModuleHandleA("ntdll.dll");
    if (ntdll == nullptr)
        return 0;
    return static_cast<int>(FormatMessageA(FORMAT_MESSAGE_FROM_HMODULE | FORMAT_MESSAGE_IGNORE_INSERTS, ntdll, code,
                                           kMessageLanguage, buffer, static_cast<DWORD>(capacity), nullptr));
}

constexpr ErrorMessageTables kSystemTables = {systemMessage, statusMessage};

}

FixedWideString systemErrorText(std::uint32_t code)
{
    return systemErrorTextFrom(code, kSystemTables);
}
