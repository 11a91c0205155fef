#include "platform/window/text.h"

#include <gtest/gtest.h>

namespace platform::window {
namespace {

using namespace std::string_literals;

TEST(Text, SurvivesTheWayThroughQt)
{
    for (const std::string& text : {""s, "a\0b"s, "\uFEFFmark"s, "caf\u00E9 \U0001F600"s, "\r\n\t\x01\x7F"s})
        EXPECT_EQ(FromQt(ToQt(text)), text);
    EXPECT_EQ(FromQt(ToQt("a\xFF")), "a\uFFFD");
}

TEST(Text, IsVisibleOnOneLine)
{
    const std::pair<std::string, std::u16string> cases[] = {
        {"plain & simple", u"plain & simple"},
        {"a\r\nb\nc\rd\u2028e", u"a\u21B5b\u21B5c\u21B5d\u21B5e"},
        {"1\t2", u"1\u21922"},
        {"\0\x01\x7F\u0085"s, u"\u00B7\u00B7\u00B7\u00B7"},
        {"ab\u202Edc\u200F\uFEFF", u"ab\u00B7dc\u00B7\u00B7"},
        {"\xC3", u"\uFFFD"},
        {"\U0001F600", u"\U0001F600"},
    };
    for (const auto& [text, visible] : cases)
        EXPECT_EQ(VisibleText(text, 100).toStdU16String(), visible) << text;
}

TEST(Text, IsARecordAsItWouldBePrinted)
{
    const auto lines = [](int count) {
        QStringList texts;
        for (int i = 1; i <= count; ++i)
            texts += QString::number(i);
        return texts.join('\n');
    };
    const std::pair<QString, QString> cases[] = {
        {"", ""},
        {"Table 4\r\n\n  2 x Tea\rTotal", "Table 4\n\n  2 x Tea\nTotal"},
        {"<b>&amp;</b> \"x\"", "&lt;b&gt;&amp;amp;&lt;/b&gt; &quot;x&quot;"},
        {"a\tb\x01", QString::fromUtf8("a b\u00B7")},
        {lines(60), lines(60)},
        {lines(60) + '\n', lines(60)},
        {lines(61), lines(59) + QString::fromUtf8("\n\u2026")},
        {QString(100, 'x') + "\ny", QString(100, 'x') + "\ny"},
        {QString(101, 'x') + "\ny", QString(100, 'x') + QString::fromUtf8("\u2026\ny")},
    };
    for (const auto& [record, shown] : cases)
        EXPECT_EQ(ReceiptHtml(record.toStdString()), "<pre>\n" + shown + "</pre>");
}

}  // namespace
}  // namespace platform::window
