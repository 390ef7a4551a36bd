#include "xmlproxy/XmlZipInputStream.h"

#include "base/InputStream.h"

#include <gtest/gtest.h>

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

namespace
{

/// What happens to a stream, told to the outside because the stream itself is deleted.
struct Log
{
    std::vector<std::int32_t> asked;
    int closed = 0;
    int deleted = 0;
};

/// Answers each read with the next count of a list, then with 0.
class ScriptedStream final : public InputStream
{
public:
    ScriptedStream(Log& io_Log, std::vector<std::int32_t> i_Answers, std::int32_t i_Size = 0)
        : m_Log(io_Log), m_Answers(std::move(i_Answers)), m_Size(i_Size)
    {
    }
    ~ScriptedStream() override { ++m_Log.deleted; }

    std::int32_t read(void* o_Buffer, std::int32_t i_Count) override
    {
        m_Log.asked.push_back(i_Count);
        const std::int32_t answer = m_Next < m_Answers.size() ? m_Answers[m_Next++] : 0;
        std::fill_n(static_cast<char*>(o_Buffer), std::max(answer, 0), 'x');
        return answer;
    }
    std::int32_t size() const override { return m_Size; }
    void close() override { ++m_Log.closed; }

private:
    Log& m_Log;
    std::vector<std::int32_t> m_Answers;
    std::size_t m_Next = 0;
    std::int32_t m_Size;
};

class XmlZipInputStreamTest : public testing::Test
{
protected:
    XmlZipInputStreamTest() { xercesc::XMLPlatformUtils::Initialize(); }
    ~XmlZipInputStreamTest() override { xercesc::XMLPlatformUtils::Terminate(); }

    Log m_Log;
    XMLByte m_Buffer[64] = {};
};

TEST_F(XmlZipInputStreamTest, CountsWhatItDelivers)
{
    XmlZipInputStream stream(new ScriptedStream(m_Log, {3, 64, 1}, 68));
    EXPECT_EQ(0U, stream.curPos());
    EXPECT_EQ(3U, stream.readBytes(m_Buffer, 64));
    EXPECT_EQ(3U, stream.curPos());
    EXPECT_EQ('x', m_Buffer[2]);
    EXPECT_EQ(0, m_Buffer[3]);
    EXPECT_EQ(64U, stream.readBytes(m_Buffer, 64));
    EXPECT_EQ(1U, stream.readBytes(m_Buffer, 10));
    EXPECT_EQ(68U, stream.curPos());
    EXPECT_EQ(0U, stream.readBytes(m_Buffer, 64));
    EXPECT_EQ(68U, stream.curPos());
    EXPECT_EQ(68, stream.size());
    EXPECT_EQ(nullptr, stream.getContentType());
    EXPECT_EQ((std::vector<std::int32_t>{64, 64, 10, 64}), m_Log.asked);
}

TEST_F(XmlZipInputStreamTest, AsksForNoMoreThanTheStreamCanCount)
{
    XmlZipInputStream stream(new ScriptedStream(m_Log, {1}));
    EXPECT_EQ(1U, stream.readBytes(m_Buffer, std::numeric_limits<XMLSize_t>::max()));
    EXPECT_EQ((std::vector<std::int32_t>{std::numeric_limits<std::int32_t>::max()}), m_Log.asked);
}

TEST_F(XmlZipInputStreamTest, DamageIsRaisedAndNotCounted)
{
    XmlZipInputStream stream(new ScriptedStream(m_Log, {5, -1, -1}));
    EXPECT_EQ(5U, stream.readBytes(m_Buffer, 64));
    EXPECT_THROW(stream.readBytes(m_Buffer, 64), xercesc::XMLException);
    EXPECT_THROW(stream.readBytes(m_Buffer, 64), xercesc::XMLException);
    EXPECT_EQ(5U, stream.curPos());
}

TEST_F(XmlZipInputStreamTest, ClosesAndDeletesItsStream)
{
    {
        const XmlZipInputStream stream(new ScriptedStream(m_Log, {}));
        EXPECT_EQ(0, m_Log.closed);
    }
    EXPECT_EQ(1, m_Log.closed);
    EXPECT_EQ(1, m_Log.deleted);
}

TEST(XmlZipInputStreamDeathTest, TheStreamMustExist)
{
    EXPECT_DEATH(XmlZipInputStream(nullptr), "i_InputStream != 0.*xmlproxy/XmlZipInputStream.*24");
}

} // namespace
