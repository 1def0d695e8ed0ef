#pragma once
// One-line texts for system error codes and structured-exception codes.

#include "text/fixed_string.h"

#include <cstdint>

FixedWideString systemErrorText(std::uint32_t code);

// The message tables the texts are looked up in. Each lookup writes at most
// capacity units and returns how many it wrote, 0 when it knows no message.
// The platform side passes the system's tables; tests pass their own.
struct ErrorMessageTables {
    int (*systemMessage)(std::uint32_t code, char16_t* buffer, int capacity);
    int (*statusMessage)(std::uint32_t code, char* buffer, int capacity);
};

FixedWideString systemErrorTextFrom(std::uint32_t code, const ErrorMessageTables& tables);
FixedNarrowString500 exceptionCodeTextFrom(std::uint32_t code, const ErrorMessageTables& tables);
