#include "base/String.h"
#include "boundary/XmlCache.h"
#include "boundary/XmlValue.h"
#include "support/Process.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <ostream>
#include <stdexcept>

// An office document is a ZIP archive; its first entry is what a query sees.

namespace
{

constexpr const char* s_ContentTypes = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">
  <Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>
  <Default Extension="xml" ContentType="application/xml"/>
  <Override PartName="/word/document.xml"
    ContentType="application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml"/>
  <Override PartName="/docProps/core.xml"
    ContentType="application/vnd.openxmlformats-package.core-properties+xml"/>
</Types>
)";

constexpr const char* s_Body = R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<document version="7"><body><paragraph style="Gr&#xFC;n"/></body></document>
)";

struct OfficeRow
{
    const char* name;
    const char* compression; ///< option of `zip`
    const char* first;       ///< entry that comes first in the archive
    const char* second;
    const char* expression;
    std::vector<std::string> values;
};

void PrintTo(const OfficeRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class OfficeArchive : public testing::Test
{
public:
    ~OfficeArchive() override { XmlPlugin::XmlCache::destroyInstance(); }

protected:
    /// Result: the archive's path.
    std::string pack(const OfficeRow& i_Row) const
    {
        m_Folder.write("types.xml", s_ContentTypes);
        m_Folder.write("body.xml", s_Body);
        m_Folder.write("photo.jpg", "\xFF\xD8\xFF\xE0 no XML");
        std::string archive = m_Folder.file("letter.docx");
        ProcessResult result;
        try
        {
            result = runProcess({"zip", "-q", "-X", "-j", i_Row.compression, archive, m_Folder.file(i_Row.first),
                                 m_Folder.file(i_Row.second)});
        }
        catch (const std::runtime_error& error)
        {
            throw std::runtime_error(std::string(error.what()) + ": install zip");
        }
        if (result.status != 0)
        {
            throw std::runtime_error("zip failed: " + result.out + result.err);
        }
        return archive;
    }

private:
    TemporaryFolder m_Folder;
};

class OfficeDocument : public OfficeArchive, public testing::WithParamInterface<OfficeRow>
{
};

const OfficeRow s_Rows[] = {
    {"deflated",
     "-9",
     "types.xml",
     "body.xml",
     "Types/Override/@PartName",
     {"/word/document.xml", "/docProps/core.xml"}},
    {"stored", "-0", "types.xml", "body.xml", "//Default/@Extension", {"rels", "xml"}},
    {"predicate", "-6", "types.xml", "body.xml", "//Default[@Extension='xml']/@ContentType", {"application/xml"}},
    {"function", "-6", "types.xml", "body.xml", "count(//Override)", {"2"}},
    {"wide_text", "-6", "body.xml", "types.xml", "document/body/paragraph/@style", {"Gr\xC3\xBCn"}},
    {"second_entry_unread", "-6", "types.xml", "body.xml", "document/@version", {}},
    {"second_entry_of_any_kind", "-6", "body.xml", "photo.jpg", "document/@version", {"7"}},
};

} // namespace

TEST_P(OfficeDocument, AnswersFromItsFirstEntry)
{
    const OfficeRow& row = GetParam();
    XmlPlugin::XmlValues expression;
    expression.setProperty(L"file", String(pack(row).c_str()).c_str());
    expression.setProperty(L"xpath", String(row.expression).c_str());
    PluginSDK::StringVector result;
    ASSERT_EQ(expression.evaluate(result), 0);

    std::vector<std::string> values;
    for (std::size_t i = 0; i < result.count(); ++i)
    {
        values.push_back(String(result.get(i)).toNarrow());
    }
    EXPECT_EQ(values, row.values);
}

TEST_F(OfficeArchive, WithoutXmlInItsFirstEntryIsRefused)
{
    XmlPlugin::XmlValues expression;
    const OfficeRow row = {"", "-6", "photo.jpg", "body.xml", "", {}};
    expression.setProperty(L"file", String(pack(row).c_str()).c_str());
    expression.setProperty(L"xpath", L"document/@version");
    PluginSDK::StringVector result;
    EXPECT_EQ(expression.evaluate(result), -15103);
    EXPECT_EQ(result.count(), 0U);
}

INSTANTIATE_TEST_SUITE_P(All, OfficeDocument, testing::ValuesIn(s_Rows),
                         [](const auto& i_Info) { return std::string(i_Info.param.name); });
