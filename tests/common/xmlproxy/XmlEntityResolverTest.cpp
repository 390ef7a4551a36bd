#include "xmlproxy/XmlEntityResolver.h"

#include "TestFiles.h"
#include "xmlproxy/XercesText.h"
#include "xmlproxy/XmlDocumentFile.h"
#include "xmlproxy/XmlParseEnd.h"
#include "xmlproxy/XmlStreamList.h"

#include <gtest/gtest.h>

#include <xercesc/sax/InputSource.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLResourceIdentifier.hpp>

#include <memory>
#include <string>

namespace
{

using Identifier = xercesc::XMLResourceIdentifier;
using XercesString = std::basic_string<XMLCh>;

/// Is in one document.
class DocumentLocator final : public xercesc::Locator
{
public:
    explicit DocumentLocator(const XMLCh* i_pDocument) : m_pDocument(i_pDocument) {}

    const XMLCh* getPublicId() const override { return nullptr; }
    const XMLCh* getSystemId() const override { return m_pDocument; }
    XMLFileLoc getLineNumber() const override { return 1; }
    XMLFileLoc getColumnNumber() const override { return 1; }

private:
    const XMLCh* m_pDocument;
};

struct Library
{
    Library() { xercesc::XMLPlatformUtils::Initialize(); }
    ~Library() { xercesc::XMLPlatformUtils::Terminate(); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
};

class XmlEntityResolverTest : public testing::Test
{
protected:
    /// The base may be null.
    std::unique_ptr<xercesc::InputSource>
    resolve(const char* i_SystemId, const char* i_Base, const char* i_Document,
            Identifier::ResourceIdentifierType i_Type = Identifier::ExternalEntity)
    {
        const XercesString system = toXercesText(String(i_SystemId));
        const XercesString base = toXercesText(String(i_Base));
        const XercesString document = toXercesText(String(i_Document));
        const DocumentLocator locator(document.c_str());
        Identifier identifier(i_Type, system.c_str(), nullptr, nullptr, i_Base ? base.c_str() : nullptr,
                              i_Document ? &locator : nullptr);
        return std::unique_ptr<xercesc::InputSource>(m_Resolver.resolveEntity(&identifier));
    }

    const Library m_Library;
    XmlStreamList m_Streams;
    const TestFolder m_Folder;
    const XmlDocumentFile m_Document{m_Folder.write("document.xml", "<a/>")};
    XmlEntityResolver m_Resolver{m_Document, m_Streams, *xercesc::XMLPlatformUtils::fgMemoryManager};
};

TEST_F(XmlEntityResolverTest, FindsAnEntityByItsBase)
{
    struct Row
    {
        const char* name;
        const char* systemId;
        const char* base;     ///< may be null
        const char* document; ///< that the locator is in; null: there is no locator
        const char* expected;
        Identifier::ResourceIdentifierType type = Identifier::ExternalEntity;
    };
    const Row rows[] = {
        {"beside_its_base", "b.dtd", "/folder/a.xml", nullptr, "/folder/b.dtd"},
        {"base_before_document", "b.dtd", "/folder/a.xml", "/other/a.xml", "/folder/b.dtd"},
        {"beside_its_document", "b.dtd", nullptr, "/other/a.xml", "/other/b.dtd"},
        {"empty_base", "b.dtd", "", "/other/a.xml", "/other/b.dtd"},
        {"url", "http://host.invalid/b.dtd", "/folder/a.xml", nullptr, "http://host.invalid/b.dtd"},
        {"beside_a_url", "b.dtd", "http://host.invalid/x/a.xml", nullptr, "http://host.invalid/x/b.dtd"},
        {"escaped_space", "b%20c.dtd", "/folder/a.xml", nullptr, "/folder/b c.dtd"},
        {"above", "../b.dtd", "/folder/c/a.xml", nullptr, "/folder/b.dtd"},
        {"beside_a_relative_path", "b.dtd", "./folder/a.xml", nullptr, "./folder/b.dtd"},
        {"above_a_relative_path", "../b.dtd", "./a.xml", nullptr, "./../b.dtd"},
        {"absolute", "/other/b.dtd", "./a.xml", nullptr, "/other/b.dtd"},
        {"without_base", "b.dtd", nullptr, nullptr, "./b.dtd"},
        {"file_url", "file:///folder/b.dtd", "./a.xml", nullptr, "file:///folder/b.dtd"},
        {"schema", "b.xsd", "/folder/a.xml", nullptr, "/folder/b.xsd", Identifier::SchemaGrammar},
    };
    for (const Row& row : rows)
    {
        const auto pSource = resolve(row.systemId, row.base, row.document, row.type);
        ASSERT_NE(nullptr, pSource) << row.name;
        EXPECT_EQ(String(row.expected), fromXercesText(pSource->getSystemId())) << row.name;
    }
}

TEST_F(XmlEntityResolverTest, LeavesWhatHasNoNameToTheLibrary)
{
    const XercesString base = toXercesText(String("/folder/a.xml"));
    Identifier identifier(Identifier::SchemaImport, nullptr, nullptr, nullptr, base.c_str());
    EXPECT_EQ(nullptr, m_Resolver.resolveEntity(&identifier));
}

TEST_F(XmlEntityResolverTest, ReadsAnEntity)
{
    const String file = m_Folder.write("b.dtd", "<!ENTITY e 'x'>");
    XMLByte buffer[32] = {};
    const auto pSource = resolve(file.toNarrow().c_str(), nullptr, nullptr);
    const std::unique_ptr<xercesc::BinInputStream> pStream(pSource->makeStream());
    EXPECT_EQ(15U, pStream->readBytes(buffer, sizeof buffer));
}

TEST_F(XmlEntityResolverTest, HasNoStreamOfAFileThatIsNotThere)
{
    const auto pSource = resolve(m_Folder.pathOf("none.dtd").toNarrow().c_str(), nullptr, nullptr);
    EXPECT_EQ(nullptr, pSource->makeStream());
}

TEST_F(XmlEntityResolverTest, ReadsTheFileOfAUrl)
{
    m_Folder.write("b c.dtd", "<!ENTITY e 'x'>");
    XMLByte buffer[32] = {};
    const std::string url = "file://localhost/" + m_Folder.pathOf("b%20%63.dtd").toNarrow();
    const std::unique_ptr<xercesc::BinInputStream> pStream(resolve(url.c_str(), nullptr, nullptr)->makeStream());
    ASSERT_NE(nullptr, pStream);
    EXPECT_EQ(15U, pStream->readBytes(buffer, sizeof buffer));
    EXPECT_EQ(15U, pStream->curPos());
}

// What the message says is in ExternalEntityTest.cpp.
TEST_F(XmlEntityResolverTest, RefusesWhatIsNotAFile)
{
    const char* const names[] = {"http://host.invalid/b.dtd", "https://host.invalid/b.dtd", "ftp://host.invalid/b.dtd",
                                 "file://host.invalid/b.dtd"};
    for (const char* pName : names)
    {
        const auto pSource = resolve(pName, nullptr, nullptr);
        EXPECT_THROW(pSource->makeStream(), XmlParseEnd) << pName;
        EXPECT_FALSE(m_Resolver.refusal().isEmpty());
    }
}

} // namespace
