#include "HostRun.h"
#include "common/xmlproxy/TestFiles.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <regex>
#include <sstream>

#if !defined(_WIN32)
#include <csignal>

#include <unistd.h>
#endif

// The tool as a process, with the real plug-in: which files it reads, and what it prints beside values.

namespace
{

class FilesTest : public testing::Test
{
protected:
    std::string document(const std::string& i_Name, const std::string& i_Value)
    {
        return m_Folder.write(i_Name, "<a x='" + i_Value + "'/>");
    }

    void makeFolder(const std::string& i_Name)
    {
        const std::string path = m_Folder.file(i_Name);
        std::filesystem::create_directories(std::filesystem::path(std::u8string(path.begin(), path.end())));
    }

    const TemporaryFolder m_Folder;
};

} // namespace

// --files-from

TEST_F(FilesTest, ListOfFiles)
{
    const std::string first = document("first.xml", "1");
    const std::string second = document("two words \xC3\xA9.xml", "2");
    const std::string list = m_Folder.write("list", first + "\n\n" + second + "\n");
    const ProcessResult result = runHost({"--files-from=" + list, "a/@x"});
    EXPECT_EQ(result.out, first + ":1\n" + second + ":2\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(runHost({"-h", "--files-from", list, "-e", "a/@x", first}).out, "1\n1\n2\n") << "operands come first";
}

TEST_F(FilesTest, ListOfFilesOnTheStandardInput)
{
    ProcessSettings settings;
    settings.input = document("a.xml", "1") + "\n" + document("b.xml", "2");
    EXPECT_EQ(runHost({"-h", "--files-from=-", "a/@x"}, settings).out, "1\n2\n");
}

TEST_F(FilesTest, ListWithNullCharacters)
{
    const std::string first = document("a.xml", "1");
    const std::string second = document("b.xml", "2");
    ProcessSettings settings;
    settings.input = first + '\0' + second + '\0';
    EXPECT_EQ(runHost({"-0", "--files-from=-", "a/@x"}, settings).out, first + ":1" + '\0' + second + ":2" + '\0');
}

TEST_F(FilesTest, EmptyListIsNothing)
{
    const ProcessResult result = runHost({"--files-from=" + m_Folder.write("list", ""), "a/@x"});
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 1);
}

TEST_F(FilesTest, ListThatIsNotThere)
{
    const std::string list = m_Folder.file("list");
    const ProcessResult result = runHost({"--files-from=" + list, "a/@x"});
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "xmlvalue: cannot read " + list + " (no such file)\n");
    EXPECT_EQ(result.status, 2);
}

TEST_F(FilesTest, ListThatIsAFolder)
{
    const ProcessResult result = runHost({"--files-from=" + m_Folder.file(""), "a/@x"});
    EXPECT_EQ(result.err, "xmlvalue: cannot read " + m_Folder.file("") + " (a folder)\n");
    EXPECT_EQ(result.status, 2);
}

TEST_F(FilesTest, ListWithOtherEndsThanItsNamesShould)
{
    const std::string file = document("a.xml", "1");
    ProcessSettings settings;
    settings.input = file + '\0' + file + '\0';
    EXPECT_EQ(runHost({"--files-from=-", "a/@x"}, settings).err,
              documentError(file + ' ' + file + ' ', "its name contains a null character; -0 reads such lists"));
#if !defined(_WIN32)
    settings.input = file + "\r\n";
    EXPECT_EQ(runHost({"--files-from=-", "a/@x"}, settings).err,
              documentError(file + ' ', "no such file; the name ends in a carriage return"));
#endif
}

TEST_F(FilesTest, StandardInputIsNotListAndDocument)
{
    const ProcessResult result = runHost({"--files-from=-", "a/@x", "-"});
    EXPECT_EQ(result.err, "xmlvalue: the standard input cannot be both the list of files and a file\n");
    EXPECT_EQ(result.status, 2);
}

TEST_F(FilesTest, StandardInputInAList)
{
    ProcessSettings settings;
    settings.input = "<a x='in'/>";
    EXPECT_EQ(runHost({"--files-from=" + m_Folder.write("list", "-\n"), "a/@x"}, settings).out,
              "(standard input):in\n");
}

TEST_F(FilesTest, ThousandsOfFiles)
{
#if defined(_WIN32)
    constexpr int count = 300; // a file takes long under Wine
#else
    constexpr int count = 2000;
#endif
    std::string list;
    std::string expected;
    for (int i = 0; i < count; ++i)
    {
        const std::string number = std::to_string(i);
        list += document(number + ".xml", number) + "\n";
        expected += number + "\n";
    }
    const ProcessResult result = runHost({"-h", "--files-from=" + m_Folder.write("list", list), "a/@x"});
    EXPECT_EQ(result.out, expected);
    EXPECT_EQ(result.err, "");
}

// Folders

TEST_F(FilesTest, FolderIsRefusedWithAHint)
{
    const std::string folder = m_Folder.file("");
    const ProcessResult result = runHost({"a/@x", folder});
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, documentError(folder, "a folder; -r reads the documents in it"));
    EXPECT_EQ(result.status, 2);
}

TEST_F(FilesTest, FoldersAreWalked)
{
    makeFolder("in/b");
    document("in/c.xml", "c");
    document("in/b/a.xml", "ba");
    document("in/no.txt", "no");
    m_Folder.write("in/z.zip", ZipBuilder().add("a.xml", "<a x='zip'/>").bytes());
    const std::string alone = document("alone.xml", "alone");
    const std::string folder = m_Folder.file("in");
    const ProcessResult result = runHost({"-r", "a/@x", alone, folder});
    const auto path = [&](const char* i_pName)
    { return folder + static_cast<char>(std::filesystem::path::preferred_separator) + i_pName; };
    const std::string inner =
        path("b") + static_cast<char>(std::filesystem::path::preferred_separator) + std::string("a.xml");
    EXPECT_EQ(result.out, alone + ":alone\n" + inner + ":ba\n" + path("c.xml") + ":c\n" + path("z.zip") + ":zip\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
}

TEST_F(FilesTest, OneFileOfAFolderHasItsName)
{
    makeFolder("in");
    document("in/a.xml", "1");
    const std::string out = runHost({"-r", "a/@x", m_Folder.file("in")}).out;
    EXPECT_TRUE(out.ends_with("a.xml:1\n")) << out;
    EXPECT_EQ(runHost({"-rh", "a/@x", m_Folder.file("in")}).out, "1\n");
}

TEST_F(FilesTest, FolderWithoutDocuments)
{
    makeFolder("in");
    const ProcessResult result = runHost({"-r", "a/@x", m_Folder.file("in")});
    EXPECT_EQ(result.out + result.err, "");
    EXPECT_EQ(result.status, 1);
}

// Null values

TEST_F(FilesTest, NullValueStandsForEachExpressionWithoutValue)
{
    const std::string file = document("a.xml", "1");
    const ProcessResult result = runHost({"--null-value=-", "-e", "a/@y", "-e", "a/@x", "-e", "a/@z", file});
    EXPECT_EQ(result.out, "-\n1\n-\n");
    EXPECT_EQ(result.status, 0);
    const ProcessResult nothing = runHost({"--null-value=NULL", "-H", "a/@y", file});
    EXPECT_EQ(nothing.out, file + ":NULL\n");
    EXPECT_EQ(nothing.status, 1) << "nothing was found all the same";
    EXPECT_EQ(runHost({"--null-value=", "a/@y", file}).out, "\n");
    EXPECT_EQ(runHost({"-0", "--null-value=-", "a/@y", file}).out, std::string("-\0", 2));
    EXPECT_EQ(runHost({"--null-value=-", "--one", "a/@y", file}).out, "-\n");
}

TEST_F(FilesTest, NullValueStandsNotForErrorsCountsOrInJson)
{
    const std::string file = document("a.xml", "1");
    EXPECT_EQ(runHost({"--null-value=-", "a/text()", file}).out, "");
    EXPECT_EQ(runHost({"--null-value=-", "-c", "a/@y", file}).out, "0\n");
    EXPECT_EQ(runHost({"--null-value=-", "--json", "a/@y", file}).out,
              "{\"file\":" + nlohmann::json(file).dump() + ",\"xpath\":\"a/@y\",\"values\":[]}\n");
}

// JSON

TEST_F(FilesTest, JsonTellsErrorsAndHints)
{
    ProcessSettings settings;
    settings.input = "<a x='1'/>";
    const ProcessResult result = runHost({"--json", "-e", "a/text()", "-e", "a/@x"}, settings);
    EXPECT_EQ(
        result.out,
        "{\"file\":\"(standard input)\",\"xpath\":\"a/text()\",\"error\":{\"code\":-15105,\"name\":"
        "\"XML_PLUGIN_ERROR_XPATH_NOT_RECOGNISED\",\"message\":\"the expression is not recognised\",\"offset\":6,"
        "\"hints\":[{\"difference\":\"D-14\",\"text\":\"'text()' is not a node test here, and elements keep no text "
        "(D-27); ask for an attribute, as in a/@name\"}]}}\n"
        "{\"file\":\"(standard input)\",\"xpath\":\"a/@x\",\"values\":[\"1\"]}\n");
    EXPECT_EQ(result.status, 2);
}

TEST_F(FilesTest, JsonTellsWhatIsWrongWithADocument)
{
    const std::string file = m_Folder.write("a.zip", ZipBuilder().add("a.xml", "<a>\n\n<b c=d/></a>").bytes());
    const ProcessResult result = runHost({"--json", "-e", "a/@x", "-e", "//b", file});
    std::istringstream lines(result.out);
    for (std::string line; std::getline(lines, line);)
    {
        EXPECT_EQ(nlohmann::json::parse(line)["error"]["reason"], "line 3: attribute value expected") << line;
    }
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 2);
    EXPECT_EQ(result.err, documentError(file, "line 3: attribute value expected")) << "once";
}

// Traces

TEST_F(FilesTest, TraceFileHasTheRecords)
{
    const std::string file = document("a.xml", "1");
    const std::string trace = m_Folder.file("trace \xC3\xA9.txt");
    const ProcessResult result = runWithFake({"--trace-file=" + trace, "traced", file});
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
    std::ifstream stream(std::filesystem::path(std::u8string(trace.begin(), trace.end())), std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    EXPECT_TRUE(text.starts_with("INFO FakePlugin(1) [Fake] createPlugin\n")) << text;
    EXPECT_NE(text.find("ERROR ./folder/Source(11) [Scope::name()]  an error 1\n"
                        "WARNING ./folder/Source(22) [Scope::name()] a warning \xF0\x9F\x98\x80\n"),
              std::string::npos)
        << text;
    EXPECT_TRUE(text.ends_with("INFO FakePlugin(1) [Fake] destroyPlugin\n")) << text;
}

TEST_F(FilesTest, TraceFileTakesTheWantedLevel)
{
    const std::string file = document("a.xml", "1");
    const std::string trace = m_Folder.write("trace.txt", "what was there before");
    runWithFake({"--trace=error", "--trace-file=" + trace, "traced", file});
    std::ifstream stream(trace, std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    EXPECT_EQ(text, "ERROR ./folder/Source(11) [Scope::name()]  an error 1\n");
}

TEST_F(FilesTest, TraceFileThatCannotBeWritten)
{
    const ProcessResult result = runHost({"--trace-file=" + m_Folder.file("no/trace"), "a/@x"});
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.err.starts_with("xmlvalue: cannot write the trace file " + m_Folder.file("no/trace") + ": "))
        << result.err;
    EXPECT_EQ(result.status, 2);
}

TEST_F(FilesTest, TraceRecordsAreOneLineEach)
{
    ProcessSettings settings;
    settings.input = "<a x='1'/>";
    const ProcessResult result = runHost({"--trace", "concat('a\nb', '\x1B[31m')"}, settings);
    EXPECT_EQ(result.err.find('\x1B'), std::string::npos);
    EXPECT_NE(result.err.find(" xpath to XPathTokenizer concat('a b', ' [31m')\n"), std::string::npos) << result.err;
}

// Times

TEST_F(FilesTest, TimesAreToldInOneLine)
{
    const std::string file = document("a.xml", "1");
    const ProcessResult result = runHost({"--time", "-h", "a/@x", file, file});
    EXPECT_EQ(result.out, "1\n1\n");
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(
        std::regex_match(result.err, std::regex("xmlvalue: parse [0-9]+\\.[0-9]{3} ms, compile [0-9]+\\.[0-9]{3} ms, "
                                                "walk [0-9]+\\.[0-9]{3} ms \\(2 files\\)\n")))
        << result.err;
    EXPECT_TRUE(std::regex_search(runHost({"--time", "a/@x", file}).err, std::regex(" \\(1 file\\)\n$")));
}

TEST_F(FilesTest, TimesLeaveOutputAndErrorsAlone)
{
    const std::string file = document("a.xml", "1");
    const std::string missing = m_Folder.file("missing.xml");
    const ProcessResult result = runHost({"--time", "--trace=error", "-e", "a[", "-e", "a/@x", file, missing});
    EXPECT_EQ(result.out, file + ":1\n");
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '^'), 1) << result.err;
    EXPECT_NE(result.err.find(documentError(missing, "no such file")), std::string::npos) << result.err;
}

// Questions

TEST_F(FilesTest, ListOfFunctions)
{
    const ProcessResult result = runHost({"--list-functions"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(
        result.out.starts_with("FUNCTION                            ARGUMENTS         PRIORITY  ANSWER\n"
                               "position()                          none; any number  5         number: position "))
        << result.out;
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 25);
}

#if !defined(_WIN32)

// What only POSIX systems have

namespace
{

/// Runs the tool as a user to whom the rights of files apply. Empty status text when that cannot be had.
Texts asOrdinaryUser()
{
    return geteuid() == 0 ? Texts{"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"} : Texts();
}

bool canRunAsOrdinaryUser()
{
    Texts command = asOrdinaryUser();
    command.insert(command.end(), {HOST_PROGRAM, "--list-errors"});
    return runProcess(command).status == 0;
}

} // namespace

TEST_F(FilesTest, FilesAndFoldersThatMayNotBeRead)
{
    if (!canRunAsOrdinaryUser())
    {
        GTEST_SKIP() << "another user cannot start the tool here";
    }
    makeFolder("locked");
    const std::string good = document("b.xml", "1");
    const std::string locked = document("a.xml", "1");
    std::filesystem::permissions(locked, std::filesystem::perms::none);
    std::filesystem::permissions(m_Folder.file("locked"), std::filesystem::perms::none);
    std::filesystem::permissions(m_Folder.path(), std::filesystem::perms::all);
    Texts command = asOrdinaryUser();
    command.insert(command.end(), {HOST_PROGRAM, "-r", "a/@x", m_Folder.path().string()});
    const ProcessResult result = runProcess(command);
    EXPECT_EQ(result.out, good + ":1\n");
    EXPECT_EQ(result.err, "xmlvalue: cannot read the folder " + m_Folder.file("locked") + ": Permission denied\n" +
                              documentError(locked, "no permission to read it"));
    EXPECT_EQ(result.status, 2);
}

TEST_F(FilesTest, NamesWithLineFeeds)
{
    const std::string path = document("a\nb.xml", "1");
    ProcessSettings settings;
    settings.input = path + '\0';
    EXPECT_EQ(runHost({"-0", "--files-from=-", "a/@x"}, settings).out, path + ":1" + '\0');
    EXPECT_EQ(runHost({"-r", "a/@x", m_Folder.path().string()}).out, path + ":1\n");
    EXPECT_EQ(runHost({"--json", "a/@x", path}).out,
              "{\"file\":\"" + m_Folder.file("a\\nb.xml") + "\",\"xpath\":\"a/@x\",\"values\":[\"1\"]}\n");
    EXPECT_EQ(runHost({"a/@x", m_Folder.file("no\nsuch")}).err,
              documentError(m_Folder.file("no such"), "no such file"));
}

TEST_F(FilesTest, ThisFolderIsWalkedWithoutItsName)
{
    makeFolder("in");
    document("in/b.xml", "2");
    document("a.xml", "1");
    const ProcessResult result =
        runProcess({"/bin/sh", "-c", "cd \"$1\" && \"$2\" -r a/@x && \"$2\" -r a/@x . && \"$2\" -r a/@x in/", "sh",
                    m_Folder.path().string(), HOST_PROGRAM});
    EXPECT_EQ(result.out, "a.xml:1\nin/b.xml:2\n./a.xml:1\n./in/b.xml:2\nin/b.xml:2\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(FilesTest, PipesAndOtherThingsInFoldersArePassedOver)
{
    const std::string good = document("b.xml", "1");
    ASSERT_EQ(runProcess({"mkfifo", m_Folder.file("a.xml")}).status, 0);
    const ProcessResult result = runHost({"-r", "a/@x", m_Folder.path().string()});
    EXPECT_EQ(result.out, good + ":1\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(FilesTest, ClosedPipeEndsTheWork)
{
    for (int i = 0; i < 2000; ++i)
    {
        m_Folder.write(std::to_string(i) + ".xml", "<a x='" + std::string(100, 'x') + "'/>");
    }
    const TemporaryFolder temporary;
    ProcessSettings settings;
    settings.outputLimit = 1;
    settings.environment["TMPDIR"] = temporary.path().string();
    const ProcessResult result = runHost({"-r", "--time", "a/@x", m_Folder.path().string()}, settings);
    EXPECT_EQ(result.signal, SIGPIPE);
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(std::filesystem::is_empty(temporary.path()));
}

TEST_F(FilesTest, DecimalCommaOfTheUserChangesNothing)
{
    const std::string locale = m_Folder.file("de_DE.UTF-8");
    if (runProcess({"localedef", "-i", "de_DE", "-f", "UTF-8", locale}).status != 0)
    {
        GTEST_SKIP() << "the sources of locales are not installed";
    }
    ProcessSettings settings;
    settings.environment = {{"LOCPATH", m_Folder.path().string()}, {"LC_ALL", "de_DE.UTF-8"}};
    ASSERT_EQ(runProcess({"/usr/bin/printf", "%.1f", "1,5"}, settings).out, "1,5") << "the locale is not in force";
    settings.input = "<a x='2.5'/>";
    EXPECT_EQ(runHost({"-e", "a/@x * 3", "-e", "1 div 4", "-e", "number('1,5')"}, settings).out, "7.5\n0.25\nNaN\n");
    const std::string explained = runHost({"--explain", "round(2.6) + 0.25"}, settings).out;
    EXPECT_NE(explained.find("number 3.25"), std::string::npos) << explained;
    const std::string times = runHost({"--time", "a/@x"}, settings).err;
    EXPECT_TRUE(std::regex_search(times, std::regex("parse [0-9]+\\.[0-9]{3} ms, "))) << times;
}

#endif
