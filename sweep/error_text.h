#pragma once
// One-line texts for system error codes and structured-exception codes.

#include "text/fixed_string.h"

#include <cstdint>

// Asks systemErrorText for the calling thread's last error.
constexpr std::uint32_t kLastError = 0xFFFFFFFFu;

FixedWideString systemErrorText(std::uint32_t code);
FixedNarrowString500 exceptionCodeText(std::uint32_t code);
