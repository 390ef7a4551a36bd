#include "xmlproxy/XercesProxy.h"

#include "TestTrees.h"
#include "xmlproxy/DefaultSAXHandler.h"
#include "xmlproxy/SAXHandler.h"
#include "xmlproxy/XercesText.h"

#include <gtest/gtest.h>

#include <xercesc/sax/AttributeList.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace
{

using Events = std::vector<std::string>;

class RecordingHandler final : public SAXHandler
{
public:
    void startDocument() override { events.emplace_back("startDocument"); }
    void endDocument() override { events.emplace_back("endDocument"); }
    void startElement(const String& i_Name, AttributeTable* i_pAttributes, unsigned i_Line, unsigned i_Column,
                      unsigned i_Sequence) override
    {
        const Node node(i_Name, i_pAttributes, i_Line, i_Column, i_Sequence);
        events.push_back("start " + printTree(node) + " at " + std::to_string(i_Line) + ":" + std::to_string(i_Column));
        blockSizes.push_back(node.attributes()->blockSize());
    }
    void endElement(const String& i_Name) override { events.push_back("end " + i_Name.toNarrow()); }
    void characters(const String& i_Text, unsigned, unsigned, unsigned) override
    {
        events.push_back("characters " + i_Text.toNarrow());
    }
    void warning(const String& i_Message, int i_Line) override { record("warning", i_Message, i_Line); }
    void error(const String& i_Message, int i_Line) override { record("error", i_Message, i_Line); }
    void fatalError(const String& i_Message, int i_Line) override { record("fatalError", i_Message, i_Line); }

    Events events;
    std::vector<int> blockSizes;

private:
    void record(const char* i_Kind, const String& i_Message, int i_Line)
    {
        events.push_back(std::string(i_Kind) + " " + std::to_string(i_Line) + " " + i_Message.toNarrow());
    }
};

using Attributes = std::vector<std::pair<const char16_t*, const char16_t*>>;

class FakeAttributes final : public xercesc::AttributeList
{
public:
    explicit FakeAttributes(Attributes i_Attributes = {}) : m_Attributes(std::move(i_Attributes)) {}

    XMLSize_t getLength() const override { return m_Attributes.size(); }
    const XMLCh* getName(const XMLSize_t i_Index) const override { return m_Attributes[i_Index].first; }
    const XMLCh* getType(const XMLSize_t) const override { return u"CDATA"; }
    const XMLCh* getValue(const XMLSize_t i_Index) const override { return m_Attributes[i_Index].second; }
    const XMLCh* getType(const XMLCh* const) const override { return nullptr; }
    const XMLCh* getValue(const XMLCh* const) const override { return nullptr; }
    const XMLCh* getValue(const char* const) const override { return nullptr; }

private:
    Attributes m_Attributes;
};

class FakeLocator final : public xercesc::Locator
{
public:
    const XMLCh* getPublicId() const override { return nullptr; }
    const XMLCh* getSystemId() const override { return nullptr; }
    XMLFileLoc getLineNumber() const override { return 12; }
    XMLFileLoc getColumnNumber() const override { return 34; }
};

class XercesProxyEvents : public testing::Test
{
protected:
    XercesProxyEvents() : m_Proxy(&m_Handler) { xercesc::XMLPlatformUtils::Initialize(); }
    ~XercesProxyEvents() override { xercesc::XMLPlatformUtils::Terminate(); }

    void start(const char16_t* i_Name, Attributes i_Attributes = {})
    {
        FakeAttributes attributes(std::move(i_Attributes));
        m_Proxy.startElement(i_Name, attributes);
    }

    RecordingHandler m_Handler;
    XercesProxy m_Proxy;
    FakeLocator m_Locator;
};

TEST_F(XercesProxyEvents, DocumentAndElementsArePassedOn)
{
    m_Proxy.setDocumentLocator(&m_Locator);
    m_Proxy.startDocument();
    start(u"p:a");
    m_Proxy.endElement(u"p:a");
    m_Proxy.endDocument();
    EXPECT_EQ((Events{"startDocument", "start p:a#0 at 12:34", "end p:a", "endDocument"}), m_Handler.events);
}

TEST_F(XercesProxyEvents, OneCounterNumbersAttributesBeforeTheirElement)
{
    m_Proxy.setDocumentLocator(&m_Locator);
    start(u"a", {{u"x", u"1"}, {u"y", u"2"}});
    start(u"b");
    start(u"c", {{u"z", u"3"}});
    EXPECT_EQ((Events{"start a#2{x=1#0 y=2#1} at 12:34", "start b#3 at 12:34", "start c#5{z=3#4} at 12:34"}),
              m_Handler.events);
    EXPECT_EQ((std::vector<int>{1, 1, 1}), m_Handler.blockSizes);
}

TEST_F(XercesProxyEvents, WithoutLocatorTheCounterStandsInThePlaceOfTheLine)
{
    start(u"a", {{u"x", u"1"}});
    start(u"b");
    EXPECT_EQ((Events{"start a#0{x=1#0} at 1:0", "start b#0 at 2:0"}), m_Handler.events);
}

TEST_F(XercesProxyEvents, NullTextIsEmptyText)
{
    m_Proxy.setDocumentLocator(&m_Locator);
    start(nullptr, {{u"x", nullptr}});
    m_Proxy.endElement(nullptr);
    EXPECT_EQ((Events{"start #1{x=#0} at 12:34", "end "}), m_Handler.events);
}

TEST_F(XercesProxyEvents, ADuplicateAttributeUsesANumberAndIsLeftOut)
{
    m_Proxy.setDocumentLocator(&m_Locator);
    start(u"a", {{u"x", u"1"}, {u"x", u"2"}, {u"y", u"3"}});
    EXPECT_EQ((Events{"start a#3{x=1#0 y=3#2} at 12:34"}), m_Handler.events);
}

/// Numbers that are not consecutive, in the memory of a tree.
TEST_F(XercesProxyEvents, ADuplicateAttributeUsesANumberInATreeToo)
{
    RecordingSink sink;
    DefaultSAXHandler builder(&sink, 0);
    XercesProxy proxy(&builder);
    proxy.setDocumentLocator(&m_Locator);
    for (const Attributes& attributes :
         {Attributes{{u"x", u"1"}, {u"x", u"2"}, {u"y", u"3"}}, Attributes{{u"z", u"4"}}})
    {
        FakeAttributes list(attributes);
        proxy.startElement(u"a", list);
    }
    proxy.endElement(u"a");
    proxy.endElement(u"a");
    EXPECT_EQ("a#3{x=1#0 y=3#2}(a#5{z=4#4})", sink.trees());
}

TEST_F(XercesProxyEvents, CharacterDataAndDeclarationsAreDropped)
{
    m_Proxy.characters(u"text", 4);
    m_Proxy.ignorableWhitespace(u" ", 1);
    m_Proxy.processingInstruction(u"target", u"data");
    m_Proxy.notationDecl(u"n", u"p", u"s");
    m_Proxy.unparsedEntityDecl(u"n", u"p", u"s", u"m");
    EXPECT_EQ(Events{}, m_Handler.events);
}

TEST_F(XercesProxyEvents, MessagesArePassedOnWithTheirLine)
{
    const auto exception = [](const char16_t* i_Text, XMLFileLoc i_Line)
    { return xercesc::SAXParseException(i_Text, u"", u"", i_Line, 1); };
    EXPECT_NO_THROW(m_Proxy.warning(exception(u"w\u00e4", 1)));
    EXPECT_NO_THROW(m_Proxy.error(exception(u"e", 2)));
    EXPECT_NO_THROW(m_Proxy.fatalError(exception(u"f", 3)));
    EXPECT_EQ((Events{"warning 1 w\xc3\xa4", "error 2 e", "fatalError 3 f"}), m_Handler.events);
}

TEST(XercesProxyDeathTest, TheTableMustExist)
{
    RecordingHandler handler;
    XercesProxy proxy(&handler);
    const FakeAttributes attributes;
    EXPECT_DEATH(proxy.addAttributes(attributes, nullptr), "o_Out != 0.*xmlproxy/XercesProxy.*141");
}

struct TextRow
{
    const char* name;
    std::u16string library;
    std::wstring layer;
};

const TextRow s_TextRows[] = {
    {"empty", u"", L""},
    {"ascii", u"abc", L"abc"},
    {"wide", u"\u20ac\uffff", L"\u20ac\xffff"},
    {"pair", {0xd83d, 0xde00}, {static_cast<wchar_t>(0xd83d), static_cast<wchar_t>(0xde00)}},
    {"lone_surrogate", {u'a', 0xde00}, {L'a', static_cast<wchar_t>(0xde00)}},
};

class XercesText : public testing::TestWithParam<TextRow>
{
};

TEST_P(XercesText, KeepsEveryCodeUnitBothWays)
{
    const TextRow& row = GetParam();
    EXPECT_EQ(row.layer, viewOf(fromXercesText(row.library.c_str())));
    EXPECT_EQ(row.library, toXercesText(String(row.layer.data(), row.layer.size())));
}

INSTANTIATE_TEST_SUITE_P(Rows, XercesText, testing::ValuesIn(s_TextRows),
                         [](const auto& i_Info) { return i_Info.param.name; });

} // namespace
