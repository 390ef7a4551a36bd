#include "xmlproxy/XmlStreamList.h"

#include <gtest/gtest.h>

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>
#include <xercesc/util/XMLException.hpp>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace
{

/// Answers each read with the next count of a list; none is a failure.
class ScriptedStream final : public xercesc::BinInputStream
{
public:
    ScriptedStream(int& io_Live, std::vector<std::optional<XMLSize_t>> i_Answers)
        : m_Live(io_Live), m_Answers(std::move(i_Answers))
    {
        ++m_Live;
    }
    ~ScriptedStream() override { --m_Live; }

    XMLFilePos curPos() const override { return 17; }
    XMLSize_t readBytes(XMLByte* const, const XMLSize_t) override
    {
        const std::optional<XMLSize_t> answer = m_Answers.at(m_Next++);
        if (!answer)
        {
            ThrowXML(xercesc::XMLPlatformUtilsException, xercesc::XMLExcepts::File_CouldNotReadFromFile);
        }
        return *answer;
    }
    const XMLCh* getContentType() const override { return u"type"; }
    const XMLCh* getEncoding() const override { return u"encoding"; }

private:
    int& m_Live;
    std::vector<std::optional<XMLSize_t>> m_Answers;
    std::size_t m_Next = 0;
};

class XmlStreamListTest : public testing::Test
{
protected:
    XmlStreamListTest() { xercesc::XMLPlatformUtils::Initialize(); }
    ~XmlStreamListTest() override { xercesc::XMLPlatformUtils::Terminate(); }

    std::unique_ptr<ScriptedStream> stream(std::vector<std::optional<XMLSize_t>> i_Answers = {})
    {
        return std::make_unique<ScriptedStream>(m_Live, std::move(i_Answers));
    }

    int m_Live = 0;
    XMLByte m_Byte = 0;
};

TEST_F(XmlStreamListTest, AGuardPassesEverythingOn)
{
    XmlStreamList list;
    const std::unique_ptr<xercesc::BinInputStream> pGuard(list.guard(stream({3, 0, 5})));
    EXPECT_EQ(3U, pGuard->readBytes(&m_Byte, 1));
    EXPECT_EQ(0U, pGuard->readBytes(&m_Byte, 1));
    EXPECT_EQ(5U, pGuard->readBytes(&m_Byte, 1));
    EXPECT_EQ(17U, pGuard->curPos());
    EXPECT_EQ(u't', *pGuard->getContentType());
    EXPECT_EQ(u'e', *pGuard->getEncoding());
}

TEST_F(XmlStreamListTest, AFailureOfTheFirstReadIsPutOff)
{
    XmlStreamList list;
    const std::unique_ptr<xercesc::BinInputStream> pGuard(list.guard(stream({{}, {}, {}})));
    EXPECT_EQ(0U, pGuard->readBytes(&m_Byte, 1));
    EXPECT_THROW(pGuard->readBytes(&m_Byte, 1), xercesc::XMLException);
    EXPECT_THROW(pGuard->readBytes(&m_Byte, 1), xercesc::XMLException);
}

TEST_F(XmlStreamListTest, NothingIsReadBehindAFailureOfTheFirstRead)
{
    XmlStreamList list;
    const std::unique_ptr<xercesc::BinInputStream> pGuard(list.guard(stream({{}, 5})));
    EXPECT_EQ(0U, pGuard->readBytes(&m_Byte, 1));
    EXPECT_THROW(pGuard->readBytes(&m_Byte, 1), xercesc::XMLException);
}

TEST_F(XmlStreamListTest, AnyOtherFailureIsNot)
{
    XmlStreamList list;
    const std::unique_ptr<xercesc::BinInputStream> pGuard(list.guard(stream({0, {}})));
    EXPECT_EQ(0U, pGuard->readBytes(&m_Byte, 1));
    EXPECT_THROW(pGuard->readBytes(&m_Byte, 1), xercesc::XMLException);
}

TEST_F(XmlStreamListTest, WhatIsLeftIsDeletedAtTheEnd)
{
    {
        XmlStreamList list;
        const xercesc::BinInputStream* pFirst = list.guard(stream());
        const xercesc::BinInputStream* pSecond = list.guard(stream());
        const xercesc::BinInputStream* pThird = list.guard(stream());
        list.guard(stream());
        EXPECT_EQ(4, m_Live);
        delete pSecond;
        delete pThird;
        EXPECT_EQ(2, m_Live);
        delete pFirst;
        EXPECT_EQ(1, m_Live);
    }
    EXPECT_EQ(0, m_Live);
}

} // namespace
