#include "xmlproxy/XmlFileInputSource.h"

#include "TestFiles.h"
#include "xmlproxy/XercesText.h"
#include "xmlproxy/XmlDocumentFile.h"
#include "xmlproxy/XmlStreamList.h"

#include <gtest/gtest.h>

#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>
#include <xercesc/util/XMLException.hpp>

#include <memory>
#include <string>

namespace
{

class XmlFileInputSourceTest : public testing::Test
{
protected:
    XmlFileInputSourceTest() { xercesc::XMLPlatformUtils::Initialize(); }
    ~XmlFileInputSourceTest() override { xercesc::XMLPlatformUtils::Terminate(); }

    std::unique_ptr<xercesc::BinInputStream> open(const String& i_Path)
    {
        m_pFile = std::make_unique<XmlDocumentFile>(i_Path);
        const XmlFileInputSource source(*m_pFile);
        return std::unique_ptr<xercesc::BinInputStream>(source.makeStream());
    }

    TestFolder m_Folder;
    std::unique_ptr<XmlDocumentFile> m_pFile;
    XMLByte m_Buffer[16] = {};
};

TEST_F(XmlFileInputSourceTest, ReadsAFile)
{
    const auto pStream = open(m_Folder.write("a.xml", "<a/>"));
    EXPECT_EQ(0U, pStream->curPos());
    EXPECT_EQ(3U, pStream->readBytes(m_Buffer, 3));
    EXPECT_EQ(1U, pStream->readBytes(m_Buffer + 3, 13));
    EXPECT_EQ("<a/>", std::string(reinterpret_cast<const char*>(m_Buffer), 4));
    EXPECT_EQ(4U, pStream->curPos());
    EXPECT_EQ(0U, pStream->readBytes(m_Buffer, 16));
    EXPECT_EQ(0U, pStream->readBytes(m_Buffer, 16));
    EXPECT_EQ(nullptr, pStream->getContentType());
}

TEST_F(XmlFileInputSourceTest, ReadsAFileWhoseNameIsNotAscii)
{
    const auto pStream = open(m_Folder.write("\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80.xml", "<a/>"));
    EXPECT_EQ(4U, pStream->readBytes(m_Buffer, 16));
}

TEST_F(XmlFileInputSourceTest, KnowsItsPath)
{
    const String path = m_Folder.pathOf("a.xml");
    EXPECT_EQ(path, fromXercesText(XmlFileInputSource(XmlDocumentFile(path)).getSystemId()));
    // A relative path is not taken for a URL.
    EXPECT_EQ(String(L"./http:a.xml"),
              fromXercesText(XmlFileInputSource(XmlDocumentFile(L"http:a.xml")).getSystemId()));
}

TEST_F(XmlFileInputSourceTest, EachStreamStartsAtTheBeginning)
{
    const auto pFirst = open(m_Folder.write("a.xml", "<a/>"));
    EXPECT_EQ(3U, pFirst->readBytes(m_Buffer, 3));
    const std::unique_ptr<xercesc::BinInputStream> pSecond(XmlFileInputSource(*m_pFile).makeStream());
    EXPECT_EQ(4U, pSecond->readBytes(m_Buffer, 16));
    EXPECT_EQ(1U, pFirst->readBytes(m_Buffer, 16));
}

TEST_F(XmlFileInputSourceTest, WhatCannotBeReadIsAFailureOfReading)
{
    for (const String& path : {m_Folder.pathOf("missing.xml"), m_Folder.pathOf("")})
    {
        const auto pStream = open(path);
        ASSERT_NE(nullptr, pStream);
        EXPECT_THROW(pStream->readBytes(m_Buffer, 16), xercesc::XMLException) << path.toNarrow();
        EXPECT_THROW(pStream->readBytes(m_Buffer, 16), xercesc::XMLException) << path.toNarrow();
    }
}

TEST_F(XmlFileInputSourceTest, AFileThatIsNotThereCannotBeOpened)
{
    const auto pStream = open(m_Folder.pathOf("missing.xml"));
    try
    {
        pStream->readBytes(m_Buffer, 16);
        FAIL() << "it can be read";
    }
    catch (const xercesc::XMLException& exception)
    {
        EXPECT_EQ(xercesc::XMLExcepts::File_CouldNotOpenFile, exception.getCode());
    }
}

TEST_F(XmlFileInputSourceTest, ItsStreamsCanBeGuarded)
{
    XmlStreamList streams;
    const XmlDocumentFile file(m_Folder.pathOf("missing.xml"));
    const XmlFileInputSource source(file, &streams);
    xercesc::BinInputStream* pStream = source.makeStream();
    EXPECT_EQ(0U, pStream->readBytes(m_Buffer, 16));
    EXPECT_THROW(pStream->readBytes(m_Buffer, 16), xercesc::XMLException);
}

} // namespace
