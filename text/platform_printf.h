#pragma once
// Printing through the C run-time's own printf: msvcrt.dll's on Windows.
// MinGW's replacement, which every C++ file gets because libstdc++ switches it
// on, keeps a "%" before a character that is no conversion; msvcrt drops it,
// and the suite's messages are written for msvcrt's reading.

#ifdef __cplusplus
extern "C" {
#endif

// A format and its arguments, as printf takes them. GCC checks "printf"
// formats by msvcrt's rules when it targets MinGW.
__attribute__((format(printf, 1, 2))) int platformPrintf(const char* format, ...);

#ifdef __cplusplus
}
#endif
