#include "sweep/error_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

// What the fake message tables answer; empty means no message.
std::u16string systemText;
std::string statusText;

template <typename Unit, typename Text>
int copyMessage(const Text& text, Unit* buffer, int capacity)
{
    const int n = std::min(int(text.size()), capacity);
    std::copy_n(text.data(), n, buffer);
    return n;
}

const ErrorMessageTables kFakeTables = {
    [](std::uint32_t, char16_t* buffer, int capacity) { return copyMessage(systemText, buffer, capacity); },
    [](std::uint32_t, char* buffer, int capacity) { return copyMessage(statusText, buffer, capacity); },
};

std::u16string textFor(std::uint32_t code, std::u16string system, std::string status = "")
{
    systemText = std::move(system);
    statusText = std::move(status);
    const FixedWideString text = systemErrorTextFrom(code, kFakeTables);
    return std::u16string(text.value, text.length);
}

TEST(ErrorText, SystemMessageIsFramedAndMadeOneLine)
{
    const struct {
        std::u16string message;
        std::u16string expected;
    } cases[] = {
        {u"Access denied.\r\n", u"Error 5: Access denied.."},
        {u"Access denied.\n", u"Error 5: Access denied.."},
        {u"Access denied.\r", u"Error 5: Access denied.."},
        {u"Access denied.\n\r", u"Error 5: Access denied. ."},
        {u"Access denied.\r\n\r\n", u"Error 5: Access denied.  ."},
        {u"Two\r\nlines.", u"Error 5: Two  lines.."},
    };
    for (const auto& c : cases)
        EXPECT_EQ(textFor(5, c.message), c.expected);
    EXPECT_EQ(textFor(0x80000000u, u"Top bit"), u"Error -2147483648: Top bit.");
}

TEST(ErrorText, FixedTextsComeFirstAndTheBareCodeLast)
{
    EXPECT_EQ(textFor(0xC00000FDu, u"", "ignored"), u"EXCEPTION: The thread used up its stack.");
    EXPECT_EQ(textFor(0xC0000001u, u"\r\n"), u"ERROR code -1073741823. (No system message found)");
    EXPECT_EQ(textFor(0xC0000034u, u"", "Object\r\nnot found.\r\n"), u"Object  not found.");
    EXPECT_STREQ(exceptionCodeTextFrom(0xC0000034u, kFakeTables).value, "Object\r\nnot found.");
    EXPECT_EQ(textFor(0xC0000034u, u"", "\r\n"), u"Error -1073741772.");
}

TEST(ErrorText, LongMessageIsCutAtCapacity)
{
    const std::u16string text = textFor(5, std::u16string(495, u'a'));
    EXPECT_EQ(text, u"Error 5: " + std::u16string(491, u'a'));
}

}
