#include "xmlproxy/XmlTreeMemory.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

std::u16string number(int i_Number)
{
    const std::string text = std::to_string(i_Number);
    return {text.begin(), text.end()};
}

TEST(XmlTreeMemory, KeepsEachNameOnce)
{
    XmlTreeMemory memory;
    const XmlName& element = memory.startTag(u"a");
    const XmlName* pAttribute = memory.addAttribute(u"b");
    ASSERT_NE(nullptr, pAttribute);
    EXPECT_EQ(String(L"a"), element.text());
    EXPECT_EQ(String(L"b"), pAttribute->text());
    EXPECT_EQ(&memory, element.memory());
    EXPECT_EQ(pAttribute, &memory.startTag(u"b"));
    EXPECT_EQ(&element, memory.addAttribute(u"a"));
    EXPECT_EQ(&element, &memory.nameOf(L"a"));
    EXPECT_EQ(pAttribute, &memory.nameOf(L"b"));
    EXPECT_EQ(pAttribute, &memory.nameOf(pAttribute->text()));
}

TEST(XmlTreeMemory, NamesThatAreNearlyTheSameAreApart)
{
    XmlTreeMemory memory;
    const std::vector<const char16_t*> texts{u"item", u"items", u"ite", u"Item", u"", u"\u20ac", u"i\u20ac"};
    std::vector<const XmlName*> names;
    for (int round = 0; round < 3; ++round)
    {
        for (std::size_t index = 0; index < texts.size(); ++index)
        {
            const XmlName& name = memory.startTag(texts[index]);
            const std::u16string text(texts[index]);
            EXPECT_EQ(fromUtf16(text.data(), text.size()), name.text());
            if (round == 0)
            {
                names.push_back(&name);
            }
            EXPECT_EQ(names[index], &name);
        }
    }
}

// The guess is the name that came behind the same name the last time.
TEST(XmlTreeMemory, AWrongGuessIsNoticed)
{
    XmlTreeMemory memory;
    for (const char16_t* pSecond : {u"b", u"c", u"b", u"bb", u"", u"b"})
    {
        memory.startTag(u"a");
        const std::u16string text(pSecond);
        EXPECT_EQ(fromUtf16(text.data(), text.size()), memory.addAttribute(pSecond)->text());
    }
}

TEST(XmlTreeMemory, AnAttributeIsRefusedASecondTimeInOneTagOnly)
{
    XmlTreeMemory memory;
    memory.startTag(u"x");
    EXPECT_NE(nullptr, memory.addAttribute(u"x"));
    EXPECT_NE(nullptr, memory.addAttribute(u"y"));
    EXPECT_EQ(nullptr, memory.addAttribute(u"x"));
    EXPECT_EQ(nullptr, memory.addAttribute(u"y"));
    memory.startTag(u"x");
    EXPECT_NE(nullptr, memory.addAttribute(u"y"));
    EXPECT_NE(nullptr, memory.addAttribute(u"x"));
}

TEST(XmlTreeMemory, ManyNames)
{
    XmlTreeMemory memory;
    std::vector<const XmlName*> names;
    memory.startTag(u"a");
    for (int index = 0; index < 100000; ++index)
    {
        names.push_back(memory.addAttribute(number(index).c_str()));
        ASSERT_NE(nullptr, names.back());
    }
    memory.startTag(u"a");
    for (int index = 99999; index >= 0; --index)
    {
        ASSERT_EQ(names[static_cast<std::size_t>(index)], memory.addAttribute(number(index).c_str()));
    }
}

TEST(XmlTreeMemory, NamesAreFoundByTheirBytes)
{
    XmlTreeMemory memory;
    for (const char* pText : {"a", "b:c", "abcdefghijklmnop", "abcdefghijklmnopq", "\xc3\xa4", "\xf0\x9f\x98\x80"})
    {
        EXPECT_EQ(nullptr, memory.find(pText));
        XmlTreeMemory::Entry& entry = memory.make(pText);
        EXPECT_EQ(&entry, memory.find(pText));
        EXPECT_EQ(pText, entry.bytes());
        EXPECT_EQ(String(pText), entry.name().text());
        EXPECT_EQ(&memory, entry.name().memory());
        EXPECT_EQ(&entry.name(), &memory.nameOf(String(pText)));
        const bool isShort = entry.bytes().size() <= XmlShortText::s_Most && *pText > 0;
        EXPECT_EQ(isShort ? entry.bytes().size() : 0, entry.shortText().length());
    }
    // The same name for those who look it up as UTF-16.
    EXPECT_EQ(&memory.find("a")->name(), &memory.startTag(u"a"));
    EXPECT_EQ(&memory.find("\xc3\xa4")->name(), &memory.startTag(u"\u00e4"));
}

TEST(XmlTreeMemory, TheExpectedNameIsTheOneThatCameNextTheLastTime)
{
    XmlTreeMemory memory;
    EXPECT_EQ(nullptr, memory.expected());
    XmlTreeMemory::Entry& a = memory.make("a");
    XmlTreeMemory::Entry& b = memory.make("b");
    XmlTreeMemory::Entry& c = memory.make("c");
    memory.startTag(a);
    EXPECT_EQ(nullptr, memory.expected());
    EXPECT_TRUE(memory.addAttribute(b));
    EXPECT_FALSE(memory.addAttribute(b));
    memory.startTag(a);
    EXPECT_EQ(&b, memory.expected());
    EXPECT_TRUE(memory.addAttribute(b));
    EXPECT_TRUE(memory.addAttribute(c));
    memory.startTag(a);
    EXPECT_EQ(&b, memory.expected());
    EXPECT_EQ(&a.name(), &memory.nameOf(a.name().text()));
}

} // namespace
