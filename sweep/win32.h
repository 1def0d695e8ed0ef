#pragma once
// The one way <windows.h> enters the project.

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

static_assert(sizeof(wchar_t) == sizeof(char16_t), "Win32 wide text is UTF-16");

// The fixed strings hold UTF-16 as char16_t; Win32 spells the same units wchar_t.
inline const wchar_t* asWide(const char16_t* units)
{
    return reinterpret_cast<const wchar_t*>(units);
}

inline wchar_t* asWide(char16_t* units)
{
    return reinterpret_cast<wchar_t*>(units);
}

// Qt's utf16() gives the same units as unsigned short.
inline const wchar_t* asWide(const unsigned short* units)
{
    return reinterpret_cast<const wchar_t*>(units);
}
