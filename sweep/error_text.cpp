#include "sweep/error_text.h"

#include <cstdio>

namespace {

constexpr std::uint32_t kNoErrorCode = 0;
constexpr std::uint32_t kModuleNotFoundCode = 126;

struct ExceptionText {
    std::uint32_t code;
    const char* text;
};

// The structured-exception codes, whose texts no system message table has.
constexpr ExceptionText kExceptionTexts[] = {
    {0xC0000005u, "EXCEPTION: The thread tried to read from or write to a virtual address for which it does not "
                  "have the appropriate access. (Possible NULL Pointer)"},
    {0x80000002u, "EXCEPTION: The thread tried to read or write data that is misaligned on hardware that does not "
                  "provide alignment. For example, 16-bit values must be aligned on 2-byte boundaries; 32-bit "
                  "values on 4-byte boundaries, and so on."},
    {0x80000003u, "EXCEPTION: A breakpoint was encountered."},
    {0x80000004u, "EXCEPTION: A trace trap or other single-instruction mechanism signaled that one instruction has "
                  "been executed."},
    {0xC0000006u, "EXCEPTION: The thread tried to access a page that was not present, and the system was unable "
                  "to load the page. For example, this exception might occur if a network connection is lost "
                  "while running a program over the network."},
    {0xC000001Du, "EXCEPTION: The thread tried to execute an invalid instruction."},
    {0xC0000025u, "EXCEPTION: The thread tried to continue execution after a noncontinuable exception occurred."},
    {0xC0000026u, "EXCEPTION: An exception handler returned an invalid disposition to the exception dispatcher. "
                  "Programmers using a high-level language such as C should never encounter this exception."},
    {0xC000008Cu, "EXCEPTION: The thread tried to access an array element that is out of bounds and the "
                  "underlying hardware supports bounds checking."},
    {0xC000008Du, "EXCEPTION: One of the operands in a floating-point operation is denormal. A denormal value is "
                  "one that is too small to represent as a standard floating-point value."},
    {0xC000008Eu, "EXCEPTION: The thread tried to divide a floating-point value by a floating-point divisor of "
                  "zero."},
    {0xC000008Fu, "EXCEPTION: The result of a floating-point operation cannot be represented exactly as a decimal "
                  "fraction."},
    {0xC0000090u, "EXCEPTION: This exception represents any floating-point exception not included in this list."},
    {0xC0000091u, "EXCEPTION: The exponent of a floating-point operation is greater than the magnitude allowed by "
                  "the corresponding type."},
    {0xC0000092u, "EXCEPTION: The stack overflowed or underflowed as the result of a floating-point operation."},
    {0xC0000093u, "EXCEPTION: The exponent of a floating-point operation is less than the magnitude allowed by the "
                  "corresponding type."},
    {0xC0000094u, "EXCEPTION: The thread tried to divide an integer value by an integer divisor of zero."},
    {0xC0000095u, "EXCEPTION: The result of an integer operation caused a carry out of the most significant bit of "
                  "the result."},
    {0xC0000096u, "EXCEPTION: The thread tried to execute an instruction whose operation is not allowed in the "
                  "current machine mode."},
    {0xC00000FDu, "EXCEPTION: The thread used up its stack."},
};

const char* knownExceptionText(std::uint32_t code)
{
    for (const ExceptionText& entry : kExceptionTexts) {
        if (entry.code == code)
            return entry.text;
    }
    return nullptr;
}

// Codes are shown as signed 32-bit numbers: 0xC0000005 is -1073741819.
int signedCode(std::uint32_t code)
{
    return static_cast<std::int32_t>(code);
}

// Message tables end their texts with CR LF. One line feed goes, then one
// carriage return, so a lone one of either goes too; a full stop stays.
template <typename Fixed>
void dropTrailingLineBreak(Fixed& text)
{
    if (text.length > 0 && text.value[text.length - 1] == '\n')
        text.setLength(std::int16_t(text.length - 1));
    if (text.length > 0 && text.value[text.length - 1] == '\r')
        text.setLength(std::int16_t(text.length - 1));
}

void lineBreaksToBlanks(FixedWideString& text)
{
    for (int i = 0; i < text.length; ++i) {
        if (text.value[i] == u'\n' || text.value[i] == u'\r')
            text.value[i] = u' ';
    }
}

// Formats into a buffer as large as the result's capacity; a longer text is
// cut there. The formats used here are far shorter.
template <typename Fixed>
void assignFormatted(Fixed& result, const char* format, std::uint32_t code)
{
    char text[FixedNarrowString500::kCapacity + 1];
    std::snprintf(text, sizeof(text), format, signedCode(code));
    result.assignNarrow(text);
}

}

FixedNarrowString500 exceptionCodeTextFrom(std::uint32_t code, const ErrorMessageTables& tables)
{
    FixedNarrowString500 result;
    if (const char* text = knownExceptionText(code)) {
        result.assignNarrow(text);
        return result;
    }

    if (tables.statusMessage != nullptr) {
        const int length = tables.statusMessage(code, result.value, FixedNarrowString500::kCapacity);
        if (length > 0) {
            result.setLength(std::int16_t(length));
            dropTrailingLineBreak(result);
            return result;
        }
    }

    assignFormatted(result, "ERROR code %d.", code);
    FixedNarrowString500 tail;
    tail.assignNarrow(" (No system message found)");
    result.append(tail);
    return result;
}

FixedWideString systemErrorTextFrom(std::uint32_t code, const ErrorMessageTables& tables)
{
    FixedWideString result;
    if (code == kNoErrorCode) {
        result.assignNarrow("No Error.");
        return result;
    }
    if (code == kModuleNotFoundCode) {
        result.assignNarrow("A DLL is missing.");
        return result;
    }

    FixedWideString message;
    if (tables.systemMessage != nullptr) {
        const int length = tables.systemMessage(code, message.value, FixedWideString::kCapacity);
        message.setLength(std::int16_t(length));
    }
    dropTrailingLineBreak(message);

    if (!message.isEmpty()) {
        // Most system messages end with a full stop of their own; the text
        // gets one only where the message has none.
        assignFormatted(result, "Error %d: ", code);
        result.append(message);
        if (message.value[message.length - 1] != u'.')
            result.appendUnits(u".", 1);
    } else {
        result.assignNarrow(exceptionCodeTextFrom(code, tables).value);
        if (result.isEmpty())
            assignFormatted(result, "Error %d.", code);
    }
    lineBreaksToBlanks(result);
    return result;
}
