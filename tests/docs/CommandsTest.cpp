#include "DocumentBlocks.h"

#include "support/Process.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <ostream>
#include <regex>
#include <string>
#include <vector>

// The commands of the documents are run as they are written, with a fresh installation in the path and a copy of
// examples/ in the working folder. A block "console" holds commands behind "$ " with all that they print below them,
// a block "sh" commands that must succeed. Commands that build the project itself are only held against its Makefile,
// its presets and its scripts.

namespace
{

struct Command
{
    int line = 0;
    bool mustSucceed = false;
    std::string text;
    std::string expected;
};

constexpr const char* s_Prompt = "$ ";
constexpr const char* s_Continued = "> ";

void addSession(const DocumentBlock& i_Block, std::vector<Command>& io_Commands)
{
    int line = i_Block.m_Line;
    for (const std::string& text : i_Block.m_Lines)
    {
        ++line;
        if (text.starts_with(s_Prompt))
        {
            io_Commands.push_back({line, false, text.substr(2), ""});
        }
        else if (text.starts_with(s_Continued) && io_Commands.back().expected.empty())
        {
            io_Commands.back().text += "\n" + text.substr(2);
        }
        else
        {
            io_Commands.back().expected += text + "\n";
        }
    }
}

/// Lines that end in a backslash go on in the next; lines with a number sign are remarks.
void addScript(const DocumentBlock& i_Block, std::vector<Command>& io_Commands)
{
    int line = i_Block.m_Line;
    bool isContinued = false;
    for (const std::string& text : i_Block.m_Lines)
    {
        ++line;
        if (isContinued)
        {
            io_Commands.back().text += "\n" + text;
        }
        else if (!text.empty() && !text.starts_with("#"))
        {
            io_Commands.push_back({line, true, text, ""});
        }
        isContinued = text.ends_with("\\");
    }
}

std::vector<Command> commandsOf(const std::string& i_Document)
{
    std::vector<Command> commands;
    for (const DocumentBlock& block : readBlocks(readSourceFile(i_Document)))
    {
        if (block.m_Kind == "console")
        {
            addSession(block, commands);
        }
        else if (block.m_Kind == "sh")
        {
            addScript(block, commands);
        }
    }
    return commands;
}

std::string withoutRemark(const std::string& i_Command)
{
    return std::regex_replace(i_Command, std::regex("\\s+#.*$"), "");
}

bool hasTarget(const std::string& i_Target)
{
    return ("\n" + readSourceFile("Makefile")).find("\n" + i_Target + ":") != std::string::npos;
}

bool hasPreset(const std::string& i_Preset)
{
    return readSourceFile("CMakePresets.json").find("\"name\": \"" + i_Preset + "\"") != std::string::npos;
}

bool isProgram(const std::string& i_Path)
{
    const std::filesystem::path path = std::filesystem::path(SOURCE_FOLDER) / i_Path;
    using std::filesystem::perms;
    return std::filesystem::is_regular_file(path) &&
           (std::filesystem::status(path).permissions() & perms::owner_exec) != perms::none;
}

/// A program of the benchmarks.
bool isBenchmark(const std::string& i_Name)
{
    for (const char* pFile : {"bench/suites/CMakeLists.txt", "bench/peers/CMakeLists.txt"})
    {
        if (std::regex_search(readSourceFile(pFile), std::regex("add_executable\\(" + i_Name + "\\s")))
        {
            return true;
        }
    }
    return false;
}

/// A command that takes too long to be run, and what it stands and falls with.
struct LongRow
{
    const char* pattern; ///< its first group is what must exist
    bool (*exists)(const std::string&);
};

const LongRow s_LongCommands[] = {
    {"make ([a-z-]+)", hasTarget},
    {"(?:cmake|cmake --build|ctest|cpack) --preset ([a-z]+)(?: .*)?", hasPreset},
    {"(?:sudo )?cmake --install build/([a-z]+)(?: --prefix [^ ]+)?", hasPreset},
    {"(?:sudo )?apt(?:-get)? install (\\./build/deb/[^ ]+)",
     [](const std::string& i_File) { return i_File == "./build/deb/" PACKAGE_FILE; }},
    {"(?:sudo )?apt(?:-get)? remove ([^ ]+)", [](const std::string& i_Name) { return i_Name == "xmlplugin"; }},
    {"((?:\\.ci|scripts|bench)/[^ ]+)(?: .*)?", isProgram},
    {"build/bench/bin/([a-z_]+)(?: .*)?", isBenchmark},
};

/// True for a command that is only checked; \p o_Exists says whether there is what it needs.
bool isLong(const std::string& i_Command, bool& o_Exists)
{
    const std::string command = withoutRemark(i_Command);
    for (const LongRow& row : s_LongCommands)
    {
        std::smatch found;
        if (std::regex_match(command, found, std::regex(row.pattern)))
        {
            o_Exists = row.exists(found[1].str());
            return true;
        }
    }
    return false;
}

/// Runs commands one after the other in one folder. What one leaves in the shell is gone at the next, but for its
/// status.
class Shell
{
public:
    Shell()
    {
        namespace fs = std::filesystem;
        fs::copy(fs::path(SOURCE_FOLDER) / "examples", m_Folder.path() / "examples", fs::copy_options::recursive);
        fs::copy(fs::path(SOURCE_FOLDER) / "scripts", m_Folder.path() / "scripts", fs::copy_options::recursive);
        fs::create_directories(m_Folder.path() / ".git/hooks");
        const std::string prefix = INSTALLATION;
        const char* pPath = std::getenv("PATH");
        m_Settings.environment = {{"PATH", prefix + "/" BIN_FOLDER ":" + (pPath ? pPath : "/usr/bin:/bin")},
                                  {"CMAKE_PREFIX_PATH", prefix},
                                  {"PKG_CONFIG_PATH", prefix + "/" LIB_FOLDER "/pkgconfig"},
                                  {"CMAKE_GENERATOR", GENERATOR},
                                  {"CXXFLAGS", SANITIZER_FLAGS},
                                  {"LC_ALL", "C.UTF-8"}};
    }

    ProcessResult run(const std::string& i_Command)
    {
        const std::string folder = m_Folder.path().string();
        const ProcessResult result =
            runProcess({"/bin/bash", "-c", "cd '" + folder + "' && exec 2>&1 && (exit $0)\n" + i_Command,
                        std::to_string(m_Status)},
                       m_Settings);
        m_Status = result.status;
        return result;
    }

private:
    TemporaryFolder m_Folder;
    ProcessSettings m_Settings;
    int m_Status = 0;
};

class Commands : public testing::TestWithParam<std::string>
{
};

/// "docs/host-guide.md" as "docs_host_guide".
std::string caseName(const testing::TestParamInfo<std::string>& i_Info)
{
    const std::string name = i_Info.param.substr(0, i_Info.param.size() - 3);
    return std::regex_replace(name, std::regex("[^A-Za-z0-9]"), "_");
}

} // namespace

TEST_P(Commands, DoWhatTheirDocumentSays)
{
    Shell shell;
    for (const Command& command : commandsOf(GetParam()))
    {
        const std::string place = GetParam() + ":" + std::to_string(command.line) + ": " + command.text;
        bool exists = false;
        if (isLong(command.text, exists))
        {
            EXPECT_TRUE(exists) << place;
            EXPECT_EQ("", command.expected) << place;
            continue;
        }
        const ProcessResult result = shell.run(command.text);
        if (command.mustSucceed)
        {
            EXPECT_EQ(0, result.status) << place << "\n" << result.out;
        }
        else
        {
            EXPECT_EQ(command.expected, result.out) << place;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Documents, Commands, testing::ValuesIn(documentNames()), caseName);

TEST(CommandsOfReadme, AreThere)
{
    EXPECT_GE(commandsOf("README.md").size(), 8U);
}

// --- The check of long commands itself ----------------------------------------------------------

namespace
{

struct LongCase
{
    const char* name;
    const char* command;
    bool isLong;
    bool exists;
};

class LongCommand : public testing::TestWithParam<LongCase>
{
};

} // namespace

// clang-format off
constexpr LongCase s_LongCases[] = {
    {"target",            "make check",                             true,  true},
    {"target_and_remark", "make check    # builds everything",      true,  true},
    {"no_target",         "make chek",                              true,  false},
    {"preset",            "cmake --preset release",                 true,  true},
    {"preset_and_more",   "ctest --preset dev -R host",             true,  true},
    {"no_preset",         "cmake --build --preset relase",          true,  false},
    {"install",           "cmake --install build/release --prefix $HOME/x", true, true},
    {"no_install",        "sudo cmake --install build/relase",      true,  false},
    {"script",            "scripts/demo.sh build/release/bin",      true,  true},
    {"no_script",         "scripts/demonstration.sh",               true,  false},
    {"no_program",        "scripts/README.md",                      true,  false},
    {"no_package",        "sudo apt install ./build/deb/xml.deb",   true,  false},
    {"benchmark",         "build/bench/bin/peers_bench --cold",     true,  true},
    {"no_benchmark",      "build/bench/bin/peer_bench",             true,  false},
    {"query",             "xmlvalue '//a' b.xml",                   false, false},
    {"build_of_another",  "cmake -S examples/host -B build/host",   false, false},
};
// clang-format on

TEST_P(LongCommand, IsHeldAgainstTheProject)
{
    bool exists = false;
    EXPECT_EQ(GetParam().isLong, isLong(GetParam().command, exists));
    EXPECT_EQ(GetParam().exists, exists);
}

INSTANTIATE_TEST_SUITE_P(Rows, LongCommand, testing::ValuesIn(s_LongCases),
                         [](const auto& i_Info) { return std::string(i_Info.param.name); });
