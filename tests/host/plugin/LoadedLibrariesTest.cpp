#include "HostRun.h"
#include "common/xmlproxy/TestFiles.h"
#include "support/TemporaryFolder.h"
#include "xmlproxy/NodeReader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <string_view>

// Which libraries the tool has loaded, and what it says when one of its modules is missing.

namespace
{

constexpr const char* s_ParserModule = "XmlPluginXerces.so";

class LoadedLibrariesTest : public testing::Test
{
protected:
    /// What the system's loader tells of a run: every file that it has loaded.
    static std::string loadedBy(Texts i_Arguments)
    {
        ProcessSettings settings;
        settings.environment["LD_DEBUG"] = "files";
        const ProcessResult result = runHost(std::move(i_Arguments), settings);
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_NE(result.err.find("/XmlPlugin.so"), std::string::npos) << "the loader tells nothing";
        return result.err;
    }

    static bool has(const std::string& i_Loaded, std::string_view i_Name)
    {
        return i_Loaded.find(i_Name) != std::string::npos;
    }

    /// No module, and no more than the plug-in, three libraries of the platform, and the C and C++ libraries with
    /// their two helpers.
    static void expectNoModule(const std::string& i_Loaded)
    {
        for (const char* pName : {s_ParserModule, "libxerces", "libicu", "libxmlplugin-zip", "libzip"})
        {
            EXPECT_FALSE(has(i_Loaded, pName)) << pName;
        }
        std::istringstream lines(i_Loaded);
        std::size_t count = 0;
        for (std::string line; std::getline(lines, line);)
        {
            const bool isSanitizer = line.find("san.so") != std::string::npos;
            count += !isSanitizer && line.find("generating link map") != std::string::npos ? 1 : 0;
        }
        EXPECT_LE(count, 8U);
        EXPECT_GE(count, 5U) << "the loader tells something else";
    }

    std::string archive() const
    {
        return m_Folder.write("a.zip", ZipBuilder().add("a.xml", "<!DOCTYPE a><a id='1'/>", true).bytes());
    }

    const TemporaryFolder m_Folder;
    const std::string m_File = m_Folder.write("a.xml", "<!DOCTYPE a><a id='1'/>");
};

/// A copy of the tool with all that belongs to it.
class CopiedTool : public LoadedLibrariesTest
{
protected:
    CopiedTool()
    {
        const std::filesystem::path folder = std::filesystem::path(HOST_PROGRAM).parent_path();
        for (const char* pName : {"xmlvalue", "XmlPlugin.so", s_ParserModule})
        {
            std::filesystem::copy_file(folder / pName, m_Folder.path() / pName);
        }
        for (const char* pName : {"base", "sdk", "trace", "zip"})
        {
            const std::string name = libraryName(pName);
            std::filesystem::copy_file(folder / name, m_Folder.path() / name);
        }
    }

    static std::string libraryName(const std::string& i_Name) { return "libxmlplugin-" + i_Name + ".so." HOST_MAJOR; }

    ProcessResult run(Texts i_Arguments) const
    {
        i_Arguments.insert(i_Arguments.begin(), m_Folder.file("xmlvalue"));
        return runProcess(i_Arguments);
    }

    void hide(const std::string& i_Name) const
    {
        std::filesystem::rename(m_Folder.path() / i_Name, m_Folder.path() / "hidden");
    }

    /// The line that names the module, up to the system's own words.
    std::string complaint(const std::string& i_Document, const std::string& i_Kind, const std::string& i_Module) const
    {
        return "xmlvalue: error -15103: the document could not be read as XML: " + i_Document + " (cannot load the " +
               i_Kind + " module " + i_Module + ": " + m_Folder.file(i_Module);
    }
};

} // namespace

TEST_F(LoadedLibrariesTest, NothingIsLoadedBeforeADocument)
{
    expectNoModule(loadedBy({"--version"}));
}

TEST_F(LoadedLibrariesTest, APlainDocumentLoadsNothing)
{
    if (!NodeReader::readsPlainDocuments())
    {
        GTEST_SKIP() << "the parser library reads every document";
    }
    expectNoModule(loadedBy({"a/@id", m_Folder.write("plain.xml", "<a id='1'/>")}));
}

TEST_F(LoadedLibrariesTest, ADocumentLoadsTheParserLibraryAndNotTheArchiveLibrary)
{
    const std::string loaded = loadedBy({"a/@id", m_File});
    EXPECT_TRUE(has(loaded, s_ParserModule));
    EXPECT_TRUE(has(loaded, "libxerces"));
    EXPECT_FALSE(has(loaded, "libxmlplugin-zip"));
    EXPECT_FALSE(has(loaded, "libzip"));
}

TEST_F(LoadedLibrariesTest, AnArchiveLoadsTheArchiveLibrary)
{
    const std::string loaded = loadedBy({"a/@id", archive()});
    EXPECT_TRUE(has(loaded, "libxmlplugin-zip"));
    EXPECT_TRUE(has(loaded, "libzip"));
}

TEST_F(CopiedTool, UsesItsOwnModules)
{
    EXPECT_EQ(run({"-h", "a/@id", m_File, archive()}).out, "1\n1\n");
}

TEST_F(CopiedTool, NamesTheParserModuleThatIsMissing)
{
    hide(s_ParserModule);
    const ProcessResult result = run({"a/@id", m_File});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.err.starts_with(complaint(m_File, "parser", s_ParserModule))) << result.err;

    const ProcessResult traced = run({"--trace=error", "a/@id", m_File});
    EXPECT_TRUE(traced.err.starts_with("ERROR ")) << traced.err;
    EXPECT_NE(traced.err.find("XmlNodeSink(69) "), std::string::npos) << traced.err;
    EXPECT_NE(traced.err.find("at line 0 message is: cannot load the parser module XmlPluginXerces.so: "),
              std::string::npos)
        << traced.err;
}

TEST_F(CopiedTool, NamesTheParserModuleThatIsNone)
{
    hide(s_ParserModule);
    m_Folder.write(s_ParserModule, "no library");
    const ProcessResult result = run({"a/@id", m_File});
    EXPECT_EQ(result.status, 2);
    EXPECT_TRUE(result.err.starts_with(complaint(m_File, "parser", s_ParserModule))) << result.err;
}

TEST_F(CopiedTool, NamesTheParserModuleOfAnotherKind)
{
    hide(s_ParserModule);
    std::filesystem::copy_file(m_Folder.path() / "XmlPlugin.so", m_Folder.path() / s_ParserModule);
    const ProcessResult result = run({"a/@id", m_File});
    EXPECT_EQ(result.status, 2);
    EXPECT_TRUE(result.err.starts_with(complaint(m_File, "parser", s_ParserModule))) << result.err;
    EXPECT_NE(result.err.find("undefined symbol: createXercesLibrary"), std::string::npos) << result.err;
}

TEST_F(CopiedTool, NamesTheArchiveModuleThatIsMissing)
{
    const std::string module = libraryName("zip");
    hide(module);
    EXPECT_EQ(run({"a/@id", m_File}).out, "1\n") << "no archive";
    const std::string file = archive();
    const ProcessResult result = run({"a/@id", file});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.err.starts_with(complaint(file, "archive", module))) << result.err;
}

TEST_F(CopiedTool, IsReadAgainOnceTheModuleIsThere)
{
    hide(s_ParserModule);
    const Texts files = {"-h", "a/@id", m_File, m_File};
    EXPECT_EQ(run(files).status, 2);
    std::filesystem::rename(m_Folder.path() / "hidden", m_Folder.path() / s_ParserModule);
    EXPECT_EQ(run(files).out, "1\n1\n");
}
