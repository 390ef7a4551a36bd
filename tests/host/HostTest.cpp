#include "HostRun.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <ostream>
#include <sstream>

#if !defined(_WIN32)
#include <csignal>

#include <sys/stat.h>
#include <unistd.h>
#endif

// The tool as a process, with a plug-in that answers what the expression asks it to answer.

namespace
{

class HostTest : public testing::Test
{
protected:
    const TemporaryFolder m_Folder;
    const std::string m_File = m_Folder.write("a.xml", "<a/>");
    const std::string m_Other = m_Folder.write("b.xml", "<b/>");
    const std::string m_Missing = m_Folder.file("missing.xml");
};

} // namespace

// Values and exit status

namespace
{

struct ValuesRow
{
    const char* name;
    Texts arguments;
    int status;
    std::string out;
    std::string err = "";
};

void PrintTo(const ValuesRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class HostValues : public testing::TestWithParam<ValuesRow>
{
};

} // namespace

TEST_P(HostValues, ArePrinted)
{
    const ValuesRow& row = GetParam();
    Texts arguments = row.arguments;
    ProcessSettings settings;
    settings.input = "input";
    const ProcessResult result = runWithFake(arguments, settings);
    EXPECT_EQ(result.status, row.status);
    EXPECT_EQ(result.out, row.out);
    EXPECT_EQ(result.err, row.err);
}

INSTANTIATE_TEST_SUITE_P(
    OneInput, HostValues,
    testing::Values(
        ValuesRow{"several", {"values:b,a,b"}, 0, "b\na\nb\n"}, ValuesRow{"none", {"none"}, 1, ""},
        ValuesRow{"one_empty", {"values:"}, 0, "\n"}, ValuesRow{"two_empty", {"values:,"}, 0, "\n\n"},
        ValuesRow{"utf8", {"values:\xC3\xA9\xF0\x9F\x98\x80"}, 0, "\xC3\xA9\xF0\x9F\x98\x80\n"},
        ValuesRow{"surrogates", {"odd"}, 0, "\xF0\x9F\x98\x80\n\xEF\xBF\xBD\n"},
        ValuesRow{"input", {"content"}, 0, "input\n"}, ValuesRow{"input_by_dash", {"content", "-"}, 0, "input\n"},
        ValuesRow{"input_twice", {"-h", "content", "-", "-"}, 0, "input\ninput\n"},
        ValuesRow{"null_ended", {"-0", "values:a,b"}, 0, std::string("a\0b\0", 4)},
        ValuesRow{"expressions_in_order", {"-e", "values:b", "-e", "none", "-e", "values:a"}, 0, "b\na\n"},
        ValuesRow{"with_name", {"-H", "values:a,b"}, 0, "(standard input):a\n(standard input):b\n"},
        // --one
        ValuesRow{"one", {"--one", "values:a"}, 0, "a\n"}, ValuesRow{"one_of_none", {"--one", "none"}, 1, ""},
        ValuesRow{"one_that_is_empty", {"--one", "values:"}, 0, "\n"},
        ValuesRow{"one_of_two",
                  {"--one", "values:a,b"},
                  2,
                  "",
                  "xmlvalue: error -15003: more than one value found where one string is wanted: values:a,b in "
                  "(standard input)\n"},
        // --must-exist
        ValuesRow{"must_exist", {"--must-exist", "values:a"}, 0, "a\n"},
        ValuesRow{"must_exist_and_empty", {"--must-exist", "values:"}, 0, "\n"},
        ValuesRow{"must_exist_and_none",
                  {"--must-exist", "none"},
                  2,
                  "",
                  "xmlvalue: error -15002: no value found, although one must exist: none in (standard input)\n"},
        ValuesRow{"must_exist_and_none_of_one",
                  {"--must-exist", "--one", "none"},
                  2,
                  "",
                  "xmlvalue: error -15002: no value found, although one must exist: none in (standard input)\n"},
        // -c
        ValuesRow{"count", {"-c", "values:a,b"}, 0, "2\n"}, ValuesRow{"count_none", {"-c", "none"}, 1, "0\n"},
        ValuesRow{"count_sum", {"-c", "-e", "values:a,b", "-e", "values:c"}, 0, "3\n"},
        ValuesRow{"count_null_ended", {"-c0", "values:a"}, 0, std::string("1\0", 2)},
        ValuesRow{"count_of_an_error",
                  {"-c", "code:-15101"},
                  2,
                  "",
                  "xmlvalue: error -15101: a step of a location path is malformed: code:-15101\n"},
        // -q
        ValuesRow{"quiet", {"-q", "values:a"}, 0, ""}, ValuesRow{"quiet_none", {"-q", "none"}, 1, ""},
        ValuesRow{"quiet_json", {"-q", "--json", "values:a"}, 0, ""},
        ValuesRow{"quiet_stops_at_the_first", {"-q", "-e", "values:a", "-e", "code:-15101"}, 0, ""},
        ValuesRow{"quiet_after_an_error",
                  {"-q", "-e", "code:-15101", "-e", "values:a"},
                  0,
                  "",
                  "xmlvalue: error -15101: a step of a location path is malformed: code:-15101\n"},
        ValuesRow{"quiet_error_and_none",
                  {"-q", "-e", "code:-15101", "-e", "none"},
                  2,
                  "",
                  "xmlvalue: error -15101: a step of a location path is malformed: code:-15101\n"},
        // Errors
        ValuesRow{"error_then_values",
                  {"-e", "code:-102", "-e", "values:a"},
                  2,
                  "a\n",
                  "xmlvalue: error -102: the function is not implemented: code:-102\n"},
        ValuesRow{
            "unknown_code", {"code:-7"}, 2, "", "xmlvalue: error -7: unknown error: code:-7 in (standard input)\n"},
        ValuesRow{"refused",
                  {"refused:3"},
                  2,
                  "",
                  "xmlvalue: error -15105: the expression is not recognised: refused:3\nrefused:3\n   ^\n"},
        ValuesRow{"refused_at_the_end",
                  {"refused:9"},
                  2,
                  "",
                  "xmlvalue: error -15105: the expression is not recognised: refused:9\nrefused:9\n         ^\n"},
        ValuesRow{"refused_without_place",
                  {"refused"},
                  2,
                  "",
                  "xmlvalue: error -15105: the expression is not recognised: refused\n"},
        ValuesRow{"place_of_another_expression_is_forgotten",
                  {"-e", "refused:1", "-e", "refused"},
                  2,
                  "",
                  "xmlvalue: error -15105: the expression is not recognised: refused:1\nrefused:1\n ^\n"
                  "xmlvalue: error -15105: the expression is not recognised: refused\n"},
        ValuesRow{"exception", {"throw"}, 2, "", "xmlvalue: thrown by the plug-in\n"}),
    [](const auto& i_Info) { return std::string(i_Info.param.name); });

// Files

TEST_F(HostTest, FileReachesThePluginAsItIs)
{
    const ProcessResult result = runWithFake({"file", "no/such \xC3\xA9 file"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "no/such \xC3\xA9 file\n");
}

TEST_F(HostTest, SeveralFilesHaveTheirNamesInFront)
{
    const std::string both = m_File + ":x\n" + m_Other + ":x\n";
    EXPECT_EQ(runWithFake({"values:x", m_File, m_Other}).out, both);
    EXPECT_EQ(runWithFake({"-h", "values:x", m_File, m_Other}).out, "x\nx\n");
    EXPECT_EQ(runWithFake({"values:x", m_File}).out, "x\n");
    EXPECT_EQ(runWithFake({"-H", "values:x", m_File}).out, m_File + ":x\n");
    EXPECT_EQ(runWithFake({"-c", "values:x,y", m_File, m_Other}).out, m_File + ":2\n" + m_Other + ":2\n");
    EXPECT_EQ(runWithFake({"-ch", "values:x,y", m_File, m_Other}).out, "2\n2\n");
}

TEST_F(HostTest, ErrorInOneFileDoesNotStopTheOthers)
{
    const ProcessResult result = runWithFake({"content", m_File, m_Missing, m_Other});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, m_File + ":<a/>\n" + m_Other + ":<b/>\n");
    EXPECT_EQ(result.err, documentError(m_Missing, "no such file"));
}

TEST_F(HostTest, UnreadableDocumentIsToldOnceForAllExpressions)
{
    const ProcessResult result = runWithFake({"-e", "values:a", "-e", "values:b", "-c", m_Missing, m_File});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, m_File + ":2\n");
    EXPECT_EQ(result.err, documentError(m_Missing, "no such file"));
}

TEST_F(HostTest, RefusedExpressionIsToldOnceForAllFiles)
{
    const ProcessResult result = runWithFake({"-e", "refused:0", "-e", "values:a", m_File, m_Other});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, m_File + ":a\n" + m_Other + ":a\n");
    EXPECT_EQ(result.err, "xmlvalue: error -15105: the expression is not recognised: refused:0\nrefused:0\n^\n");
}

TEST_F(HostTest, FolderIsRefusedWithAHint)
{
    const ProcessResult result = runWithFake({"content", m_Folder.file(".")});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, documentError(m_Folder.file("."), "a folder; -r reads the documents in it"));
}

TEST_F(HostTest, NamesWithOddCharacters)
{
    const std::string path = m_Folder.write("two words, \xC3\xA9\xF0\x9F\x98\x80.xml", "x");
    EXPECT_EQ(runWithFake({"-H", "content", path}).out, path + ":x\n");
}

TEST_F(HostTest, ManyFiles)
{
#if defined(_WIN32)
    constexpr int count = 300; // a command line has at most 32,767 characters
#else
    constexpr int count = 3000;
#endif
    Texts arguments{"-q", "none"};
    for (int i = 0; i < count; ++i)
    {
        arguments.push_back(m_Folder.write(std::to_string(i), "x"));
    }
    EXPECT_EQ(runWithFake(arguments).status, 1);
    arguments[0] = "-c";
    const ProcessResult result = runWithFake(arguments);
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), count);
}

// JSON

TEST_F(HostTest, JsonHasOneObjectForEachFileAndExpression)
{
    const ProcessResult result =
        runWithFake({"--json", "-e", "values:a\"\\\xC3\xA9,", "-e", "none", "-e", "refused:2", m_File, m_Missing});
    EXPECT_EQ(result.status, 2);
    std::vector<nlohmann::json> objects;
    std::istringstream lines(result.out);
    for (std::string line; std::getline(lines, line);)
    {
        objects.push_back(nlohmann::json::parse(line));
    }
    const nlohmann::json refused = {{"code", -15105},
                                    {"name", "XML_PLUGIN_ERROR_XPATH_NOT_RECOGNISED"},
                                    {"message", "the expression is not recognised"},
                                    {"offset", 2}};
    const nlohmann::json missing = {{"code", -15103},
                                    {"name", "XML_PLUGIN_ERROR_DOCUMENT"},
                                    {"message", "the document could not be read as XML"},
                                    {"reason", "no such file"}};
    const std::string first = "values:a\"\\\xC3\xA9,";
    const std::vector<nlohmann::json> expected = {
        {{"file", m_File}, {"xpath", first}, {"values", {"a\"\\\xC3\xA9", ""}}},
        {{"file", m_File}, {"xpath", "none"}, {"values", nlohmann::json::array()}},
        {{"file", m_File}, {"xpath", "refused:2"}, {"error", refused}},
        {{"file", m_Missing}, {"xpath", first}, {"error", missing}},
        {{"file", m_Missing}, {"xpath", "none"}, {"error", missing}},
        {{"file", m_Missing}, {"xpath", "refused:2"}, {"error", refused}}};
    EXPECT_EQ(objects, expected);
}

TEST_F(HostTest, JsonIsPrintedInAFixedOrder)
{
    EXPECT_EQ(runWithFake({"--json", "values:a,b", "-"}).out,
              "{\"file\":\"(standard input)\",\"xpath\":\"values:a,b\",\"values\":[\"a\",\"b\"]}\n");
    EXPECT_EQ(runWithFake({"--json", "-c0", "values:a,b", "-"}).out,
              std::string("{\"file\":\"(standard input)\",\"xpath\":\"values:a,b\",\"count\":2}") + '\0');
}

// Trace

TEST_F(HostTest, TraceLevelsChooseTheRecords)
{
    const std::string error = "ERROR ./folder/Source(11) [Scope::name()]  an error 1\n";
    const std::string warning = "WARNING ./folder/Source(22) [Scope::name()] a warning \xF0\x9F\x98\x80\n";
    const std::string info = "INFO ./folder/Source(33) [Scope::name()] information\n";
    EXPECT_EQ(runWithFake({"traced", m_File}).err, "");
    EXPECT_EQ(runWithFake({"--trace=error", "traced", m_File}).err, error);
    EXPECT_EQ(runWithFake({"--trace=2", "traced", m_File}).err, error + warning);
    for (const char* pOption : {"--trace", "--trace=info", "--trace=3"})
    {
        const std::string all = runWithFake({pOption, "traced", m_File}).err;
        EXPECT_NE(all.find(error + warning + info), std::string::npos) << all;
    }
}

TEST_F(HostTest, PluginIsUsedInItsOrder)
{
    const ProcessResult result = runWithFake({"--trace", "-e", "none", "-e", "code:-101", m_File, m_Other});
    std::string calls;
    std::istringstream lines(result.err);
    for (std::string line; std::getline(lines, line);)
    {
        const std::string start = "INFO FakePlugin(1) [Fake] ";
        if (line.starts_with(start))
        {
            calls += line.substr(start.size()) + '\n';
        }
    }
    const std::string evaluation = "createExpression XmlValues\nevaluate\ndestroyExpression\n";
    EXPECT_EQ(calls, "createPlugin\nregisterExpressions\n" + evaluation + evaluation + "unload\n" + evaluation +
                         evaluation + "unload\ndestroyPlugin\n");
}

TEST_F(HostTest, PluginIsReleasedAfterAnException)
{
    const ProcessResult result = runWithFake({"--trace", "--one", "throw", m_File});
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.err.find("createExpression XmlValue\n"), std::string::npos);
    const std::string end = "INFO FakePlugin(1) [Fake] ";
    EXPECT_TRUE(result.err.ends_with(end + "destroyExpression\n" + end + "unload\n" + end + "destroyPlugin\n" +
                                     "xmlvalue: thrown by the plug-in\n"))
        << result.err;
}

// Plug-ins that cannot be used

TEST_F(HostTest, MissingPlugin)
{
    const std::string path = m_Folder.file("NoPlugin.so");
    const ProcessResult result = runHost({"--plugin", path, "none", m_File});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.err.starts_with("xmlvalue: cannot load " + path + ": ")) << result.err;
    EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1);
}

TEST_F(HostTest, FileThatIsNoLibrary)
{
    const ProcessResult result = runHost({"--plugin", m_File, "none", m_File});
    EXPECT_EQ(result.status, 2);
    EXPECT_TRUE(result.err.starts_with("xmlvalue: cannot load ")) << result.err;
}

namespace
{

struct BrokenPluginRow
{
    const char* name;
    const char* module;
    const char* message;
};

void PrintTo(const BrokenPluginRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class HostBrokenPlugin : public testing::TestWithParam<BrokenPluginRow>
{
};

} // namespace

TEST_P(HostBrokenPlugin, IsRefused)
{
    const std::string module = GetParam().module;
    for (const char* pOption : {"--json", "--must-exist"})
    {
        const ProcessResult result = runHost({"--plugin", module, pOption, "none"});
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.err, "xmlvalue: " + std::string(GetParam().message) + '\n');
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, HostBrokenPlugin,
    testing::Values(BrokenPluginRow{"no_exports", PLATFORM_MODULE,
                                    PLATFORM_MODULE ": not a plug-in: it does not export destroyPlugin"},
                    BrokenPluginRow{"creates_nothing", FAKE_NULL_MODULE,
                                    FAKE_NULL_MODULE ": the plug-in could not be created"},
                    BrokenPluginRow{"offers_nothing", FAKE_EMPTY_MODULE,
                                    FAKE_EMPTY_MODULE ": the plug-in does not offer XmlValues"},
                    BrokenPluginRow{"another_shape", FAKE_SHAPE_MODULE,
                                    "the plug-in made an expression of another shape than was asked for"}),
    [](const auto& i_Info) { return std::string(i_Info.param.name); });

// Questions

TEST_F(HostTest, Version)
{
    const ProcessResult result = runWithFake({"--version"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "xmlvalue " HOST_VERSION "\nFake \xC3\xA9 9.8.7.6 (" FAKE_MODULE ")\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(HostTest, VersionWithoutPlugin)
{
    const ProcessResult result = runHost({"--version", "--plugin", m_Missing});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "xmlvalue " HOST_VERSION "\n");
    EXPECT_TRUE(result.err.starts_with("xmlvalue: cannot load ")) << result.err;
}

TEST_F(HostTest, HelpAndErrorsNeedNoPlugin)
{
    for (const char* pOption : {"--help", "--list-errors"})
    {
        const ProcessResult result = runHost({pOption, "--plugin", m_Missing});
        EXPECT_EQ(result.status, 0);
        EXPECT_GT(result.out.size(), 500U);
        EXPECT_EQ(result.err, "");
    }
}

TEST_F(HostTest, WrongUsage)
{
    const ProcessResult result = runHost({"--bogus"});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "xmlvalue: no such option: --bogus\nTry 'xmlvalue --help' for more information.\n");
}

// Streams

TEST_F(HostTest, MuchInputAndOutput)
{
    ProcessSettings settings;
    settings.input.assign(5'000'000, 'x');
    const ProcessResult result = runWithFake({"content"}, settings);
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.out == settings.input + '\n');
}

TEST_F(HostTest, InputIsKeptByteForByte)
{
    ProcessSettings settings;
    settings.input = std::string("a\r\nb\x1A\0c\n", 9);
    EXPECT_EQ(runWithFake({"content"}, settings).out.substr(0, 5), "a\r\nb\x1A");
}

TEST_F(HostTest, InputIsNotReadWithoutNeed)
{
    ProcessSettings settings;
    settings.input.assign(5'000'000, 'x');
    EXPECT_EQ(runWithFake({"content", m_File}, settings).out, "<a/>\n");
}

namespace
{

/// The variable that names the folder of temporary files.
#if defined(_WIN32)
constexpr const char* s_TemporaryVariable = "TMP";
#else
constexpr const char* s_TemporaryVariable = "TMPDIR";
#endif

std::size_t countFiles(const std::filesystem::path& i_Folder)
{
    const std::filesystem::directory_iterator begin(i_Folder);
    return static_cast<std::size_t>(std::distance(begin, std::filesystem::directory_iterator()));
}

} // namespace

TEST_F(HostTest, TemporaryFileIsRemovedOnEveryPath)
{
    const TemporaryFolder temporary;
    ProcessSettings settings;
    settings.input = "input";
    settings.environment[s_TemporaryVariable] = temporary.file("");
    for (const char* pExpression : {"content", "none", "code:-15103", "refused:1", "throw"})
    {
        runWithFake({pExpression}, settings);
        EXPECT_EQ(countFiles(temporary.path()), 0U) << pExpression;
    }
    const std::string path = runWithFake({"file"}, settings).out;
    EXPECT_TRUE(path.starts_with(temporary.file(""))) << path;
}

TEST_F(HostTest, NoPlaceForTheTemporaryFile)
{
    ProcessSettings settings;
    settings.environment[s_TemporaryVariable] = m_Missing;
    const ProcessResult result = runWithFake({"content"}, settings);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(result.err.starts_with("xmlvalue: ")) << result.err;
}

#if !defined(_WIN32)

TEST_F(HostTest, TemporaryFileIsRemovedAtAClosedPipe)
{
    const TemporaryFolder temporary;
    ProcessSettings settings;
    settings.input = "input";
    settings.environment["TMPDIR"] = temporary.path().string();
    settings.outputLimit = 6;
    const ProcessResult result = runWithFake({"many:100000"}, settings);
    EXPECT_EQ(result.signal, SIGPIPE);
    EXPECT_EQ(result.out, "value\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(countFiles(temporary.path()), 0U);
}

TEST_F(HostTest, TemporaryFileIsRemovedAtASignal)
{
    // Waits until the file is there, then sends the signal while the input is still open.
    const char* const pScript = R"sh(
mkfifo "$1/pipe" && mkdir "$1/tmp"
TMPDIR="$1/tmp" "$2" --plugin="$3" content - <"$1/pipe" &
exec 5>"$1/pipe"
while [ -z "$(ls "$1/tmp")" ]; do sleep 0.01; done
kill -"$4" $!
wait $!
status=$?
ls "$1/tmp"
exit $status)sh";
    for (const auto& [pName, number] : {std::pair{"TERM", SIGTERM}, std::pair{"HUP", SIGHUP}})
    {
        const TemporaryFolder folder;
        const ProcessResult result =
            runProcess({"/bin/sh", "-c", pScript, "sh", folder.path().string(), HOST_PROGRAM, FAKE_MODULE, pName});
        EXPECT_EQ(result.status, 128 + number) << result.err;
        EXPECT_EQ(result.out, "");
    }
}

TEST_F(HostTest, InputThatCannotBeRead)
{
    const TemporaryFolder temporary;
    ProcessSettings settings;
    settings.environment["TMPDIR"] = temporary.path().string();
    const std::string folder = m_Folder.path().string();
    const ProcessResult result = runProcess(
        {"/bin/sh", "-c", R"("$1" --plugin="$2" content <"$3")", "sh", HOST_PROGRAM, FAKE_MODULE, folder}, settings);
    EXPECT_EQ(result.status, 2);
    EXPECT_TRUE(result.err.starts_with("xmlvalue: cannot read the standard input: ")) << result.err;
    EXPECT_EQ(countFiles(temporary.path()), 0U);
}

TEST_F(HostTest, OutputThatCannotBeWritten)
{
    const ProcessResult result = runProcess(
        {"/bin/sh", "-c", R"("$1" --plugin="$2" content "$3" >/dev/full)", "sh", HOST_PROGRAM, FAKE_MODULE, m_File});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, "xmlvalue: cannot write the output\n");
}

TEST_F(HostTest, PipeIsNoDocumentAndDoesNotBlock)
{
    const std::string pipe = m_Folder.file("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const ProcessResult result = runWithFake({"content", pipe});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, documentError(pipe, "not a regular file; give it on the standard input"));
}

TEST_F(HostTest, NameThatIsNotUtf8)
{
    const ProcessResult result = runWithFake({"--json", "file", m_Folder.file("a") + "\xFF", m_File});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "{\"file\":\"" + m_Folder.file("a") +
                              "\xEF\xBF\xBD\",\"xpath\":\"file\",\"error\":{\"code\":-15103,\"name\":"
                              "\"XML_PLUGIN_ERROR_DOCUMENT\",\"message\":\"the document could not be read as XML\","
                              "\"reason\":\"its name is not valid UTF-8\"}}\n{\"file\":\"" +
                              m_File + "\",\"xpath\":\"file\",\"values\":[\"" + m_File + "\"]}\n");
    EXPECT_EQ(result.err, documentError(m_Folder.file("a") + "\xFF", "its name is not valid UTF-8"));
}

TEST_F(HostTest, RelativePluginPathIsNotSearchedFor)
{
    const std::filesystem::path module(FAKE_MODULE);
    const std::string script = R"(cd "$1" && "$2" --plugin="$3" values:a -)";
    const ProcessResult result = runProcess(
        {"/bin/sh", "-c", script, "sh", module.parent_path().string(), HOST_PROGRAM, module.filename().string()});
    EXPECT_EQ(result.out, "a\n") << result.err;
}

TEST_F(HostTest, LocaleChangesNothing)
{
    ProcessSettings settings;
    settings.environment["LC_ALL"] = "de_DE.UTF-8";
    EXPECT_EQ(runWithFake({"-c", "many:1234567", m_File}, settings).out, "1234567\n");
}

#endif
