#include "CountingMemory.h"
#include "TestFiles.h"
#include "TestTrees.h"
#include "xmlproxy/NodeReader.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>

#ifndef _WIN32
#include <sys/stat.h>
#endif

// Which external entities are read, and what is said about the others.

namespace
{

struct Row
{
    const char* name;
    const char* systemId;
    ExternalEntities allowed;
    const char* expected; ///< the tree, or what the message begins with
};

void PrintTo(const Row& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

constexpr auto s_Files = ExternalEntities::Files;
constexpr auto s_InFolder = ExternalEntities::FilesInFolder;
constexpr auto s_None = ExternalEntities::None;

// clang-format off
const Row s_Rows[] = {
    {"beside", "b.ent", s_Files, "a#0(b#1)"},
    {"below", "below/b.ent", s_Files, "a#0(b#1)"},
    {"above", "../b.ent", s_Files, "a#0(b#1)"},
    {"missing", "missing.ent", s_Files, "critical 3 unable to open external entity"},
    {"folder", "below", s_Files, "critical 3 unable to open external entity"},
    {"twice", "twice.ent", s_Files, "a#0(c#1 b#2 b#3)"},
    {"itself", "itself.ent", s_Files, "critical 1 The external entity './itself.ent' is refused: it is being read already"},
    {"the_document", "document.xml", s_Files, "critical 3 The external entity 'document.xml' is refused: it is being read already"},
    {"http", "http://127.0.0.1:9/b.ent", s_Files, "critical 3 The external entity 'http://127.0.0.1:9/b.ent' is refused: only files are read, nothing from a network"},
    {"ftp", "ftp://127.0.0.1:9/b.ent", s_Files, "critical 3 The external entity 'ftp://127.0.0.1:9/b.ent' is refused: only files are read, nothing from a network"},
    {"other_computer", "file://other/b.ent", s_Files, "critical 3 The external entity 'file://other/b.ent' is refused: only files are read, nothing from a network"},
    {"beside_in_folder", "b.ent", s_InFolder, "a#0(b#1)"},
    {"below_in_folder", "below/b.ent", s_InFolder, "a#0(b#1)"},
    {"above_in_folder", "../b.ent", s_InFolder, "critical 3 The external entity '../b.ent' is refused: it is not in the folder of the document"},
    {"beside_none", "b.ent", s_None, "critical 3 The external entity 'b.ent' is refused: no external entities are read"},
    {"missing_none", "missing.ent", s_None, "critical 3 The external entity 'missing.ent' is refused: no external entities are read"},
    {"http_none", "http://127.0.0.1:9/b.ent", s_None, "critical 3 The external entity 'http://127.0.0.1:9/b.ent' is refused: no external entities are read"},
#ifndef _WIN32
    {"pipe", "pipe", s_Files, "critical 3 unable to open external entity"},
    {"link", "link.ent", s_Files, "a#0(b#1)"},
    {"link_in_folder", "link.ent", s_InFolder, "critical 3 The external entity 'link.ent' is refused: it is not in the folder of the document"},
    {"terminal", "/dev/ptmx", s_Files, "critical 3 The external entity '/dev/ptmx' is refused: it is a device"},
    {"standard_input", "/dev/stdin", s_Files, "critical 3 The external entity '/dev/stdin' is refused: it is a device"},
    {"kernel_messages", "/proc/kmsg", s_Files, "critical 3 The external entity '/proc/kmsg' is refused: it is a device"},
    {"url_of_the_system", "file:///proc/kmsg", s_Files, "critical 3 The external entity 'file:///proc/kmsg' is refused: it is a device"},
#endif
};
// clang-format on

class ExternalEntity : public testing::Test
{
protected:
    ExternalEntity()
    {
        std::filesystem::create_directories(m_Folder.file("in/below"));
        for (const char* pName : {"in/b.ent", "in/below/b.ent", "b.ent"})
        {
            m_Folder.write(pName, "<b/>");
        }
        m_Folder.write("in/twice.ent", "<c/>&b;&b;");
        m_Folder.write("in/itself.ent", "<c/>&again;");
#ifndef _WIN32
        mkfifo(m_Folder.file("in/pipe").c_str(), 0600);
        std::filesystem::create_symlink(m_Folder.file("b.ent"), m_Folder.file("in/link.ent"));
#endif
    }

    String write(const std::string& i_SystemId, const std::string& i_Content = "<a>&e;</a>") const
    {
        return m_Folder.write("in/document.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM '" + i_SystemId +
                                                     "'><!ENTITY b SYSTEM 'b.ent'>\n"
                                                     "<!ENTITY again SYSTEM './itself.ent'>]>\n" +
                                                     i_Content);
    }

    CountingMemory m_Memory;
    const TestFolder m_Folder;
    RecordingSink m_Sink;
    NodeReader m_Reader{&m_Sink};
};

class ReadEntity : public ExternalEntity, public testing::WithParamInterface<Row>
{
};

TEST_P(ReadEntity, FollowsTheRule)
{
    const Row& row = GetParam();
    m_Reader.setExternalEntities(row.allowed);
    EXPECT_EQ(XML_SUCCESS, m_Reader.read(write(row.systemId), 0));
    const bool isRead = m_Sink.messages.empty();
    EXPECT_EQ(isRead ? 0 : 1, m_Reader.errorCount());
    EXPECT_EQ(isRead, !m_Sink.roots.empty());
    const std::string expected = row.expected;
    const std::string actual = isRead ? m_Sink.trees() : m_Sink.messages[0];
    EXPECT_EQ(expected, isRead ? actual : actual.substr(0, expected.size()));
}

INSTANTIATE_TEST_SUITE_P(Rows, ReadEntity, testing::ValuesIn(s_Rows),
                         [](const auto& i_Info) { return i_Info.param.name; });

// The document has no error as long as it does not refer to the entity.
TEST_F(ExternalEntity, ThatIsNotReferredToIsNotRefused)
{
    m_Reader.setExternalEntities(ExternalEntities::None);
    EXPECT_EQ(XML_SUCCESS, m_Reader.read(write("http://127.0.0.1:9/b.ent", "<a/>"), 0));
    EXPECT_EQ("a#0", m_Sink.trees());
    EXPECT_EQ(0, m_Reader.errorCount());
}

TEST_F(ExternalEntity, ParameterEntitiesFollowTheRule)
{
    m_Folder.write("in/p.dtd", "<!ENTITY f 'value'>");
    const String file = m_Folder.write("in/a.xml", "<!DOCTYPE a [<!ENTITY % p SYSTEM 'p.dtd'>\n%p;]>\n<a x='&f;'/>");
    m_Reader.read(file, 0);
    EXPECT_EQ("a#1{x=value#0}", m_Sink.trees());
    m_Reader.setExternalEntities(ExternalEntities::None);
    m_Reader.read(file, 0);
    EXPECT_EQ(1, m_Reader.errorCount());
    ASSERT_EQ(1U, m_Sink.messages.size());
    EXPECT_EQ("critical 2 The external entity 'p.dtd' is refused: no external entities are read", m_Sink.messages[0]);
}

// What SECURITY.md says of the text of other files.
TEST_F(ExternalEntity, CanCarryTextOutByAnotherFile)
{
    m_Folder.write("secret", "of the host\n");
    m_Folder.write("in/leak.dtd", "<!ENTITY % file SYSTEM '../secret'>\n<!ENTITY text '%file;'>\n");
    const String file =
        m_Folder.write("in/a.xml", "<!DOCTYPE a [<!ENTITY % leak SYSTEM 'leak.dtd'> %leak;]>\n<a x='&text;'/>");
    m_Reader.read(file, 0);
    EXPECT_EQ("a#1{x=of the host #0}", m_Sink.trees());

    m_Reader.setExternalEntities(ExternalEntities::FilesInFolder);
    m_Reader.read(file, 0);
    ASSERT_EQ(1U, m_Sink.messages.size());
    EXPECT_NE(std::string::npos, m_Sink.messages[0].find("'../secret' is refused: it is not in the folder"));
    EXPECT_EQ(1U, m_Sink.roots.size());
}

#ifndef _WIN32
// The path of the folder is longer than what the system's calls take.
TEST_F(ExternalEntity, IsFoundBesideARelativePathInADeepFolder)
{
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(m_Folder.path());
    const std::string name(200, 'x');
    for (int level = 0; level < 25; ++level)
    {
        std::filesystem::create_directory(name);
        std::filesystem::current_path(name);
    }
    std::ofstream("b.ent") << "<b/>";
    std::ofstream("a.xml") << "<!DOCTYPE a [<!ENTITY e SYSTEM 'b.ent'>]><a x='1'>&e;</a>";
    m_Reader.read(L"a.xml", 0);
    EXPECT_EQ("a#1{x=1#0}(b#2)", m_Sink.trees());
    std::filesystem::remove("a.xml");
    std::filesystem::remove("b.ent");
    for (int level = 0; level < 25; ++level)
    {
        std::filesystem::current_path("..");
        std::filesystem::remove(name);
    }
    std::filesystem::current_path(before);
}
#endif

TEST_F(ExternalEntity, NothingIsLeftOfARefusedOne)
{
    const String file = write("http://127.0.0.1:9/b.ent");
    m_Reader.read(file, 0);
    const std::size_t live = m_Memory.live();
    m_Reader.read(file, 0);
    EXPECT_EQ(live, m_Memory.live());
}

} // namespace
