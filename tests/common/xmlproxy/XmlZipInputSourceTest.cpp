#include "xmlproxy/XmlZipInputSource.h"

#include "TestFiles.h"
#include "xmlproxy/XmlStreamList.h"

#include <gtest/gtest.h>

#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <memory>
#include <string>

namespace
{

/// Makes an archive, or something that is none.
struct Row
{
    const char* name;
    std::string (*make)();
    bool hasStream;
    const char* data = "";
};

const Row s_Rows[] = {
    {"stored", [] { return ZipBuilder().add("a.xml", "<a/>").bytes(); }, true, "<a/>"},
    {"deflated", [] { return ZipBuilder().add("a.xml", "<a/>", true).bytes(); }, true, "<a/>"},
    {"first_of_two", [] { return ZipBuilder().add("mimetype", "zip").add("a.xml", "<a/>").bytes(); }, true, "zip"},
    {"empty_member", [] { return ZipBuilder().add("a.xml", "").bytes(); }, true, ""},
    {"name_in_a_folder", [] { return ZipBuilder().add("d/e/f", "<f/>").bytes(); }, true, "<f/>"},
    {"no_members", [] { return ZipBuilder().bytes(); }, false},
    {"plain_file", [] { return std::string("<a/>"); }, false},
    {"empty_file", [] { return std::string(); }, false},
    {"cut_short", [] { return ZipBuilder().add("a.xml", "<a/>").bytes().substr(0, 40); }, false},
};

class XmlZipInputSourceTest : public testing::TestWithParam<Row>
{
protected:
    XmlZipInputSourceTest() { xercesc::XMLPlatformUtils::Initialize(); }
    ~XmlZipInputSourceTest() override { xercesc::XMLPlatformUtils::Terminate(); }

    TestFolder m_Folder;
};

TEST_P(XmlZipInputSourceTest, StreamsTheFirstMember)
{
    const XmlZipInputSource source(m_Folder.write("a.zip", GetParam().make()));
    const std::unique_ptr<xercesc::BinInputStream> pStream(source.makeStream());
    ASSERT_EQ(GetParam().hasStream, pStream != nullptr);
    if (pStream)
    {
        const std::string expected = GetParam().data;
        XMLByte buffer[16] = {};
        EXPECT_EQ(expected.size(), pStream->readBytes(buffer, sizeof(buffer)));
        EXPECT_EQ(expected, std::string(reinterpret_cast<const char*>(buffer), expected.size()));
        EXPECT_EQ(0U, pStream->readBytes(buffer, sizeof(buffer)));
        EXPECT_EQ(expected.size(), pStream->curPos());
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, XmlZipInputSourceTest, testing::ValuesIn(s_Rows),
                         [](const auto& i_Info) { return i_Info.param.name; });

TEST_F(XmlZipInputSourceTest, AMissingArchiveHasNoStream)
{
    const XmlZipInputSource source(m_Folder.pathOf("missing.zip"));
    EXPECT_EQ(nullptr, source.makeStream());
}

TEST_F(XmlZipInputSourceTest, ItsStreamsCanBeGuarded)
{
    XmlStreamList streams;
    const XmlZipInputSource source(m_Folder.write("a.zip", ZipBuilder().add("a.xml", "<a/>").bytes()), &streams);
    XMLByte buffer[16] = {};
    EXPECT_EQ(4U, source.makeStream()->readBytes(buffer, 16));
}

} // namespace
