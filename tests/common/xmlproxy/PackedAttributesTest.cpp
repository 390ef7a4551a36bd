#include "xmlproxy/PackedAttributes.h"

#include "xmlproxy/AttributeTable.h"
#include "xmlproxy/XmlTreeMemory.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <new>
#include <string>
#include <vector>

namespace
{

/// `io_Memory` has the names n0, n1 ... with the values v0, v1 ...; each seventh value is empty.
class Attributes
{
public:
    explicit Attributes(int i_Count)
    {
        memory.startTag(u"a");
        for (int index = 0; index < i_Count; ++index)
        {
            m_Names.push_back(u"n" + numbered(index));
            m_Values.push_back(valueOf(index));
        }
        for (std::size_t index = 0; index < m_Names.size(); ++index)
        {
            const XmlName* pName = memory.addAttribute(m_Names[index].c_str());
            sources.push_back({pName, m_Values[index].c_str(), m_Values[index].size()});
        }
    }

    static std::u16string numbered(int i_Index)
    {
        const std::string text = std::to_string(i_Index);
        return {text.begin(), text.end()};
    }
    static std::u16string valueOf(int i_Index) { return i_Index % 7 == 0 ? u"" : u"v\u20ac" + numbered(i_Index); }

    XmlTreeMemory memory;
    std::vector<PackedAttributes::Source> sources;

private:
    std::vector<std::u16string> m_Names;
    std::vector<std::u16string> m_Values;
};

String toString(const std::u16string& i_Text)
{
    return fromUtf16(i_Text.data(), i_Text.size());
}

using PackedAttributesSize = testing::TestWithParam<int>;

TEST_P(PackedAttributesSize, HasEveryTextAndFindsEveryName)
{
    const int count = GetParam();
    Attributes attributes(count);
    auto pBytes = std::make_unique<std::byte[]>(PackedAttributes::bytesFor(attributes.sources));
    const auto* pPacked = PackedAttributes::make(pBytes.get(), attributes.sources, 5);
    ASSERT_EQ(count, pPacked->count());
    for (int index = 0; index < count; ++index)
    {
        const XmlName& name = pPacked->nameAt(index);
        ASSERT_EQ(toString(u"n" + Attributes::numbered(index)), name.text());
        ASSERT_EQ(viewOf(toString(Attributes::valueOf(index))), pPacked->valueAt(index));
        ASSERT_EQ(viewOf(toString(Attributes::valueOf(index))), pPacked->valueAt(index).data()) << "up to the null";
        ASSERT_EQ(5U + static_cast<unsigned>(index), pPacked->ordinalAt(index));
        ASSERT_EQ(index, pPacked->indexOf(name));
        ASSERT_EQ(index, pPacked->indexOf(XmlName(name.text()))); // a name of another place
        ASSERT_EQ(index, pPacked->indexOf(name.text()));
    }
    for (const wchar_t* pName : {L"", L"n", L"N0", L"n00", L"a"})
    {
        EXPECT_EQ(-1, pPacked->indexOf(String(pName)));
        EXPECT_EQ(-1, pPacked->indexOf(XmlName(pName)));
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, PackedAttributesSize, testing::Values(1, 2, 31, 32, 33, 63, 64, 65, 128, 129, 100000));

TEST(PackedAttributes, ValuesInAsciiOfAnyLength)
{
    XmlTreeMemory memory;
    const XmlName& name = memory.startTag(u"a");
    const XmlName& other = memory.startTag(u"b");
    for (std::size_t length = 0; length < 70; ++length)
    {
        std::string value;
        for (std::size_t index = 0; index < length; ++index)
        {
            value += static_cast<char>('0' + index);
        }
        // Not terminated, so that reading on would be noticed.
        const std::vector<char> bytes(value.begin(), value.end());
        const char last = 'z';
        const std::vector<PackedAttributes::Source> sources{{&name, nullptr, length, length > 0 ? bytes.data() : &last},
                                                            {&other, nullptr, 1, &last}};
        auto pBytes = std::make_unique<std::byte[]>(PackedAttributes::bytesFor(sources));
        const auto* pPacked = PackedAttributes::make(pBytes.get(), sources, 0);
        ASSERT_EQ(viewOf(String(value.data(), length)), pPacked->valueAt(0));
        ASSERT_EQ(L"z", pPacked->valueAt(1));
        ASSERT_EQ(L'\0', pPacked->valueAt(1).data()[1]);
    }
}

TEST(PackedAttributes, MoreCharactersThanCanBeCountedAreRefused)
{
    XmlTreeMemory memory;
    constexpr std::size_t most = std::numeric_limits<std::int32_t>::max();
    std::vector<PackedAttributes::Source> sources{{&memory.startTag(u"a"), u"", most}};
    EXPECT_NO_THROW(PackedAttributes::bytesFor(sources));
    sources.push_back({&memory.startTag(u"b"), u"", 1});
    EXPECT_THROW(PackedAttributes::bytesFor(sources), std::bad_alloc);
}

} // namespace
