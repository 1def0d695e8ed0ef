#include "sweep/error_text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// What the fake message tables answer; empty means no message.
std::u16string systemText;
std::string statusText;

const ErrorMessageTables kFakeTables = {
    [](std::uint32_t, char16_t* buffer, int capacity) { return int(systemText.copy(buffer, capacity)); },
    [](std::uint32_t, char* buffer, int capacity) { return int(statusText.copy(buffer, capacity)); },
};

TEST(ErrorText, EveryCodeGivesOneFramedLine)
{
    const struct { std::uint32_t code; std::u16string system; std::string status; std::u16string expected; } cases[] = {
        {0, u"Asked.", "", u"No Error."},
        {126, u"Asked.", "", u"A DLL is missing."},
        {5, u"Access denied.\r\n", "", u"Error 5: Access denied.."},
        {5, u"Access denied.\r", "", u"Error 5: Access denied.."},
        {5, u"Access denied.\n\r", "", u"Error 5: Access denied. ."},
        {5, u"Two\r\nlines.\n", "", u"Error 5: Two  lines.."},
        {5, std::u16string(495, u'a'), "", u"Error 5: " + std::u16string(491, u'a')},
        // The exception table comes before the status messages.
        {0xC00000FDu, u"", "Asked.", u"EXCEPTION: The thread used up its stack."},
        {0xC0000034u, u"", "Object\r\nnot found.\r\n", u"Object  not found."},
        {0xC0000001u, u"\r\n", "", u"ERROR code -1073741823. (No system message found)"},
    };
    for (const auto& c : cases) {
        systemText = c.system;
        statusText = c.status;
        const FixedWideString text = systemErrorTextFrom(c.code, kFakeTables);
        EXPECT_EQ(std::u16string(text.value, text.length), c.expected) << c.code;
    }
}

}
