#include "FaultSupport.h"
#include "base/File.h"
#include "base/InputStream.h"
#include "base/ZipFile.h"
#include "boundary/XmlPlugin.h"
#include "common/xmlproxy/TestFiles.h"
#include "common/xmlproxy/TestTrees.h"
#include "xmlproxy/NodeReader.h"

#include <gtest/gtest.h>

#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>
#include <xercesc/util/XMLException.hpp>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdarg>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <new>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>

// Files and archives that change, or fail, while the plug-in is at them; and libraries that fail it.

namespace
{

int s_ExistsCalls = 0;                                    ///< asked so far, with or without the first bytes
std::function<void(int i_Call)> s_AfterExists;            ///< called behind each one, counted from 1
std::function<InputStream*(InputStream*)> s_Wrap;         ///< what stands for the stream of a member
std::function<void(const char* i_pPath)> s_BeforeOpening; ///< of a file by its name
/// Called before each reading from a document's file; the result is how much to read, or below 0 for a failure.
std::function<ssize_t(std::size_t i_Wanted)> s_BeforeReading;
std::function<void()> s_BeforeInitialize; ///< called where the parser library is to be initialised
bool s_FrameworkThrows = false;           ///< where an expression's base class is constructed

template <class Function>
Function libraryFunction(const char* i_Name)
{
    void* pFunction = dlsym(RTLD_NEXT, i_Name);
    if (!pFunction)
    {
        throw std::logic_error(std::string("no library has the function ") + i_Name);
    }
    return reinterpret_cast<Function>(pFunction);
}

void countExistsCall()
{
    if (s_AfterExists)
    {
        s_AfterExists(++s_ExistsCalls);
    }
}

} // namespace

// These stand before the libraries' own, for all that the program links.

bool File::exists() const
{
    static const auto pReal = libraryFunction<bool (*)(const File*)>("_ZNK4File6existsEv");
    const bool isThere = pReal(this);
    countExistsCall();
    return isThere;
}

std::size_t File::readStart(char* o_Bytes, std::size_t i_Count) const
{
    static const auto pReal =
        libraryFunction<std::size_t (*)(const File*, char*, std::size_t)>("_ZNK4File9readStartEPcm");
    const std::size_t count = pReal(this, o_Bytes, i_Count);
    countExistsCall();
    return count;
}

InputStream* ZipFile::getEntryStream(ZipEntry* i_Entry)
{
    static const auto pReal =
        libraryFunction<InputStream* (*)(ZipFile*, ZipEntry*)>("_ZN7ZipFile14getEntryStreamEP8ZipEntry");
    InputStream* pStream = pReal(this, i_Entry);
    return s_Wrap ? s_Wrap(pStream) : pStream;
}

/// The constructor of PluginSDK::Expression.
void constructExpression(PluginSDK::Expression* o_pExpression) asm("_ZN9PluginSDK10ExpressionC2Ev");
void constructExpression(PluginSDK::Expression* o_pExpression)
{
    using Real = void (*)(PluginSDK::Expression*);
    static const auto pReal = libraryFunction<Real>("_ZN9PluginSDK10ExpressionC2Ev");
    if (s_FrameworkThrows)
    {
        throw std::domain_error("the framework does not want to");
    }
    pReal(o_pExpression);
}

extern "C" int open(const char* i_pPath, int i_Flags, ...)
{
    if (s_BeforeOpening)
    {
        s_BeforeOpening(i_pPath);
    }
    va_list arguments;
    va_start(arguments, i_Flags);
    const int mode = (i_Flags & O_CREAT) != 0 ? va_arg(arguments, int) : 0;
    va_end(arguments);
    return static_cast<int>(syscall(SYS_openat, AT_FDCWD, i_pPath, i_Flags, mode));
}

extern "C" ssize_t pread(int i_File, void* o_pBuffer, size_t i_Wanted, off_t i_Offset)
{
    const ssize_t wanted = s_BeforeReading ? s_BeforeReading(i_Wanted) : static_cast<ssize_t>(i_Wanted);
    if (wanted < 0)
    {
        errno = EIO;
        return -1;
    }
    return syscall(SYS_pread64, i_File, o_pBuffer, static_cast<std::size_t>(wanted), i_Offset);
}

void xercesc::XMLPlatformUtils::Initialize(const char* const i_Locale, const char* const i_Home,
                                           PanicHandler* const i_pPanic, MemoryManager* const i_pMemory)
{
    using Real = void (*)(const char*, const char*, PanicHandler*, MemoryManager*);
    static const auto pReal = libraryFunction<Real>(
        "_ZN11xercesc_3_216XMLPlatformUtils10InitializeEPKcS2_PNS_12PanicHandlerEPNS_13MemoryManagerE");
    if (s_BeforeInitialize)
    {
        s_BeforeInitialize();
    }
    pReal(i_Locale, i_Home, i_pPanic, i_pMemory);
}

namespace
{

/// Longer than what the libraries read at once.
std::string documentOf(const char* i_Id)
{
    std::string text = "<list>\n";
    for (int index = 0; index < 20000; ++index)
    {
        text += "<filler number='" + std::to_string(index) + "'/>\n";
    }
    return text + "<item id='" + i_Id + "'/></list>\n";
}

const std::string s_Document = documentOf("right");
const std::string s_OtherDocument = documentOf("other");
constexpr const char* s_Query = "list/item/@id";
constexpr const char* s_Refused = "error -15103";

/// A document's file, with something done before each opening and each reading.
class WatchedFiles
{
public:
    std::function<void()> beforeOpening;
    std::function<ssize_t(int i_Read, std::size_t i_Wanted)> beforeReading; ///< result: see `s_BeforeReading`
    int opened = 0;
    int reads = 0;

    explicit WatchedFiles(std::string i_Path) : m_Path(std::move(i_Path))
    {
        s_BeforeOpening = [this](const char* i_pPath)
        {
            if (m_Path == i_pPath && ++opened > 0 && beforeOpening)
            {
                beforeOpening();
            }
        };
        s_BeforeReading = [this](std::size_t i_Wanted)
        { return beforeReading ? beforeReading(++reads, i_Wanted) : static_cast<ssize_t>(i_Wanted); };
    }
    ~WatchedFiles()
    {
        s_BeforeOpening = nullptr;
        s_BeforeReading = nullptr;
    }
    WatchedFiles(const WatchedFiles&) = delete;
    WatchedFiles& operator=(const WatchedFiles&) = delete;

private:
    std::string m_Path;
};

/// What may happen to a file, and what may be answered then beside that it cannot be read.
struct Change
{
    const char* name;
    bool mayAnswer;        ///< the document as it was
    bool mayAnswerOther;   ///< the one that takes its place
    bool keepsTheDocument; ///< the library takes the end of a document's root for the end of it
    void (*apply)(const std::filesystem::path& i_File, const std::string& i_Other);
};

void PrintTo(const Change& i_Change, std::ostream* io_pStream)
{
    *io_pStream << i_Change.name;
}

void write(const std::filesystem::path& i_File, const std::string& i_Bytes)
{
    std::ofstream(i_File, std::ios::binary | std::ios::trunc) << i_Bytes;
}

const Change s_Changes[] = {
    // What is open already can be read to its end.
    {"disappears", true, false, false, [](const auto& i_File, const auto&) { std::filesystem::remove(i_File); }},
    {"becomes_a_folder", true, false, false,
     [](const auto& i_File, const auto&)
     {
         std::filesystem::remove(i_File);
         std::filesystem::create_directory(i_File);
     }},
    {"is_replaced", true, true, false,
     [](const auto& i_File, const auto& i_Other)
     {
         std::filesystem::remove(i_File);
         write(i_File, i_Other);
     }},
    {"is_emptied", false, false, false,
     [](const auto& i_File, const auto&) { std::filesystem::resize_file(i_File, 0); }},
    {"shrinks_to_half", false, false, false,
     [](const auto& i_File, const auto&)
     { std::filesystem::resize_file(i_File, std::filesystem::file_size(i_File) / 2); }},
    {"shrinks_by_ten", false, false, false,
     [](const auto& i_File, const auto&)
     { std::filesystem::resize_file(i_File, std::filesystem::file_size(i_File) - 10); }},
    {"grows_by_nulls", true, false, true,
     [](const auto& i_File, const auto&)
     { std::filesystem::resize_file(i_File, std::filesystem::file_size(i_File) + 1000); }},
};

class ChangingFile : public testing::TestWithParam<std::tuple<Change, bool>>
{
protected:
    ChangingFile()
    {
        s_ExistsCalls = 0;
        restore();
    }
    ~ChangingFile() override { s_AfterExists = nullptr; }

    static bool isArchive() { return std::get<1>(GetParam()); }
    static std::string bytesOf(const std::string& i_Document)
    {
        return isArchive() ? ZipBuilder().add("a.xml", i_Document, true).bytes() : i_Document;
    }

    void restore() const
    {
        std::filesystem::remove_all(m_File);
        m_Folder.TemporaryFolder::write("document", m_Bytes);
    }
    void change() const { std::get<0>(GetParam()).apply(m_File, m_OtherBytes); }

    /// Asks while the file changes, and again when it is as before.
    void expectNoWrongAnswer(int i_When) const
    {
        const Change& change = std::get<0>(GetParam());
        const std::string answer = answerOf(m_File, s_Query);
        EXPECT_TRUE(answer == s_Refused || (answer == "right " && (change.mayAnswer || isArchive())) ||
                    (answer == "other " && change.mayAnswerOther))
            << "at " << i_When << ": " << answer;
        s_AfterExists = nullptr;
        restore();
        EXPECT_EQ("right ", answerOf(m_File, s_Query)) << "afterwards, at " << i_When;
    }

    const HeldLibrary m_Library;
    const TestFolder m_Folder;
    const std::string m_File = m_Folder.file("document");
    const std::string m_Bytes = bytesOf(s_Document);
    const std::string m_OtherBytes = bytesOf(s_OtherDocument);
};

/// Read without the base library.
class ChangingPlainFile : public ChangingFile
{
protected:
    const ParserLibraryOnly m_Only;
};

TEST_P(ChangingFile, BehindAQuestionWhetherItExists)
{
    int asked = 0;
    s_AfterExists = [&asked](int i_Call) { asked = i_Call; };
    ASSERT_EQ("right ", answerOf(m_File, s_Query));
    ASSERT_LT(isArchive() ? 1 : 0, asked);
    const int calls = asked;
    for (int when = 1; when <= calls; ++when)
    {
        s_ExistsCalls = 0;
        s_AfterExists = [this, when](int i_Call)
        {
            if (i_Call == when)
            {
                change();
            }
        };
        expectNoWrongAnswer(when);
    }
}

TEST_P(ChangingPlainFile, BetweenTwoReadings)
{
    WatchedFiles files(m_File);
    files.beforeReading = [](int, std::size_t i_Wanted) { return static_cast<ssize_t>(i_Wanted); };
    ASSERT_EQ("right ", answerOf(m_File, s_Query));
    const int reads = std::exchange(files.reads, 0);
    ASSERT_LT(5, reads);
    for (int when = 1; when + 2 < reads; ++when)
    {
        files.reads = 0;
        files.beforeReading = [this, when](int i_Read, std::size_t i_Wanted)
        {
            if (i_Read == when)
            {
                change();
            }
            return static_cast<ssize_t>(i_Wanted);
        };
        expectNoWrongAnswer(when);
    }
}

TEST_P(ChangingPlainFile, BeforeItIsOpenedForReading)
{
    WatchedFiles files(m_File);
    bool isChanged = false;
    files.beforeOpening = [&]
    {
        if (!std::exchange(isChanged, true))
        {
            change();
        }
    };
    const std::string answer = answerOf(m_File, s_Query);
    const Change& change = std::get<0>(GetParam());
    EXPECT_EQ(change.mayAnswerOther ? "other " : change.keepsTheDocument ? "right " : s_Refused, answer);
    ASSERT_TRUE(isChanged);
    restore();
    EXPECT_EQ("right ", answerOf(m_File, s_Query));
}

// --- A file is opened once ----------------------------------------------------------------------

class OpenedFile : public testing::TestWithParam<bool>
{
protected:
    const HeldLibrary m_Library;
    const TestFolder m_Folder;
    const std::string m_File = m_Folder.TemporaryFolder::write(
        "document", GetParam() ? ZipBuilder().add("a.xml", s_Document, true).bytes() : s_Document);
};

TEST_P(OpenedFile, IsOpenedOnceByItsName)
{
    WatchedFiles files(m_File);
    EXPECT_EQ("right ", answerOf(m_File, s_Query));
    EXPECT_EQ(1, files.opened);
}

// A program that waited for the pipe's other end would not come back.
TEST_P(OpenedFile, IsNotWaitedForWhenAPipeTakesItsPlace)
{
    WatchedFiles files(m_File);
    files.beforeOpening = [this]
    {
        std::filesystem::remove(m_File);
        ASSERT_EQ(0, mkfifo(m_File.c_str(), 0600));
    };
    EXPECT_EQ(s_Refused, answerOf(m_File, s_Query));
}

INSTANTIATE_TEST_SUITE_P(Rows, OpenedFile, testing::Bool(),
                         [](const auto& i_Info) { return i_Info.param ? "archive" : "file"; });

// --- A file is written to while it is read ------------------------------------------------------

class RewrittenFile : public testing::Test
{
protected:
    RewrittenFile()
    {
        m_Files.beforeReading = [this](int i_Read, std::size_t i_Wanted)
        {
            if (m_Changes > 0 && i_Read % 3 == 0)
            {
                --m_Changes;
                rewrite();
            }
            return static_cast<ssize_t>(i_Wanted);
        };
    }

    /// Other values in the same number of bytes, at a time of their own.
    void rewrite()
    {
        const auto time = std::filesystem::last_write_time(m_File);
        std::fstream(m_File, std::ios::binary | std::ios::in | std::ios::out) << s_OtherDocument;
        std::filesystem::last_write_time(m_File, time + std::chrono::seconds(1));
    }

    const HeldLibrary m_Library;
    const TestFolder m_Folder;
    const std::string m_File = m_Folder.TemporaryFolder::write("a.xml", s_Document);
    WatchedFiles m_Files{m_File};
    int m_Changes = 0;
};

TEST_F(RewrittenFile, IsReadOnceMore)
{
    m_Changes = 1;
    EXPECT_EQ("other ", answerOf(m_File, s_Query));
    EXPECT_EQ(2, m_Files.opened);
}

TEST_F(RewrittenFile, IsRefusedWhenItChangesAgain)
{
    m_Changes = 1000;
    EXPECT_EQ(s_Refused, answerOf(m_File, s_Query));
    EXPECT_EQ(2, m_Files.opened);
    m_Changes = 0;
    EXPECT_EQ("other ", answerOf(m_File, s_Query));
}

TEST_F(RewrittenFile, IsToldToTheSink)
{
    m_Changes = 1000;
    RecordingSink sink;
    NodeReader reader(&sink);
    EXPECT_EQ(0, reader.read(m_File.c_str(), 0));
    EXPECT_EQ(1, reader.errorCount());
    EXPECT_TRUE(sink.roots.empty());
    EXPECT_EQ(std::vector<std::string>{"critical 0 The file changes while it is read"}, sink.messages);
}

// The trees of inner elements have gone to the sink already.
TEST_F(RewrittenFile, IsNotReadAgainForItsInnerElements)
{
    m_Changes = 1;
    RecordingSink sink;
    NodeReader reader(&sink);
    EXPECT_EQ(0, reader.read(m_File.c_str(), 1));
    EXPECT_EQ(1, reader.errorCount());
    EXPECT_EQ(1, m_Files.opened);
    EXPECT_EQ(20001U, sink.roots.size());
}

std::string nameOf(const testing::TestParamInfo<std::tuple<Change, bool>>& i_Info)
{
    return std::string(std::get<1>(i_Info.param) ? "archive_" : "file_") + std::get<0>(i_Info.param).name;
}

INSTANTIATE_TEST_SUITE_P(Rows, ChangingFile, testing::Combine(testing::ValuesIn(s_Changes), testing::Bool()), nameOf);
INSTANTIATE_TEST_SUITE_P(Rows, ChangingPlainFile,
                         testing::Combine(testing::ValuesIn(s_Changes), testing::Values(false)), nameOf);

// --- The parser library cannot be initialised ---------------------------------------------------

class FailingInitialisation : public testing::Test
{
protected:
    ~FailingInitialisation() override { s_BeforeInitialize = nullptr; }

    const ParserLibraryOnly m_Only;
    const HeldLibrary m_Library; // an exception of the library's cannot be made without it
    const TestFolder m_Folder;
    const std::string m_File = m_Folder.TemporaryFolder::write("a.xml", "<list><item id='right'/></list>");
};

TEST_F(FailingInitialisation, IsNoCountedErrorAndLeavesADocumentWithoutRoot)
{
    s_BeforeInitialize = [] { ThrowXML(xercesc::XMLPlatformUtilsException, xercesc::XMLExcepts::Gen_UnexpectedEOF); };
    EXPECT_EQ("", answerOf(m_File, s_Query));
    EXPECT_EQ("2 ", answerOf(m_File, "1 + 1"));
    s_BeforeInitialize = nullptr;
    EXPECT_EQ("right ", answerOf(m_File, s_Query));
}

TEST_F(FailingInitialisation, IsACodeAndAMessage)
{
    // The message's line is that in the source of the one who threw.
    constexpr int line = __LINE__ + 1;
    s_BeforeInitialize = [] { ThrowXML(xercesc::XMLPlatformUtilsException, xercesc::XMLExcepts::Gen_UnexpectedEOF); };
    RecordingSink sink;
    NodeReader reader(&sink);
    EXPECT_EQ(-1003, reader.read(m_File.c_str(), 0));
    EXPECT_EQ(0, reader.errorCount());
    EXPECT_TRUE(sink.roots.empty());
    EXPECT_EQ(std::vector{"critical " + std::to_string(line) + " unexpected end of input"}, sink.messages);
}

TEST_F(FailingInitialisation, ForWantOfMemoryIsPassedOn)
{
    s_BeforeInitialize = [] { throw xercesc::OutOfMemoryException(); };
    EXPECT_THROW(answerOf(m_File, s_Query), std::bad_alloc);
    s_BeforeInitialize = nullptr;
    EXPECT_EQ("right ", answerOf(m_File, s_Query));
}

// --- The host's framework fails -----------------------------------------------------------------

TEST(FailingFramework, IsPassedOn)
{
    PluginSDK::XmlPlugin plugin;
    for (const wchar_t* pType : {L"XmlValue", L"XmlValues"})
    {
        PluginSDK::Expression* pExpression = nullptr;
        s_FrameworkThrows = true;
        EXPECT_THROW(plugin.createExpression(pType, &pExpression), std::domain_error);
        s_FrameworkThrows = false;
        EXPECT_EQ(0, plugin.createExpression(pType, &pExpression));
        EXPECT_NE(nullptr, pExpression);
        plugin.destroyExpression(pExpression);
    }
}

// --- Reading fails ------------------------------------------------------------------------------

class FailingReads : public testing::Test
{
protected:
    ~FailingReads() override { s_Wrap = nullptr; }

    const HeldLibrary m_Library;
    const TestFolder m_Folder;
};

TEST_F(FailingReads, ANumberedOneOfAFile)
{
    const ParserLibraryOnly only;
    const std::string file = m_Folder.TemporaryFolder::write("a.xml", s_Document);
    WatchedFiles files(file);
    bool hasFailed = true;
    int reads = 0;
    for (int when = 1; hasFailed; ++when)
    {
        hasFailed = false;
        files.reads = 0;
        files.beforeReading = [&](int i_Read, std::size_t i_Wanted)
        {
            hasFailed = hasFailed || i_Read == when;
            return i_Read == when ? -1 : static_cast<ssize_t>(i_Wanted);
        };
        const std::string answer = answerOf(file, s_Query);
        EXPECT_EQ(hasFailed ? s_Refused : "right ", answer) << "reading " << when;
        reads = when;
    }
    EXPECT_LT(5, reads);
}

TEST_F(FailingReads, AFileInSmallPieces)
{
    const ParserLibraryOnly only;
    const std::string file = m_Folder.TemporaryFolder::write("a.xml", s_Document);
    WatchedFiles files(file);
    files.beforeReading = [](int i_Read, std::size_t i_Wanted)
    { return static_cast<ssize_t>(std::min<std::size_t>(i_Wanted, i_Read < 200 ? 1 : 7)); };
    EXPECT_EQ("right ", answerOf(file, s_Query));
}

TEST_F(FailingReads, AFileThatTheSystemCannotRead)
{
    // It is a regular file that can be opened, and whose first byte cannot be read.
    if (!File(String("/proc/self/mem")).exists())
    {
        GTEST_SKIP() << "this system has no such file";
    }
    EXPECT_EQ(s_Refused, answerOf("/proc/self/mem", s_Query));
}

/// A member's data, with an end or a failure of its own at one place, in pieces.
class CutStream final : public InputStream
{
public:
    CutStream(InputStream* i_pStream, std::int64_t i_Place, std::int32_t i_Piece, std::int32_t i_AtPlace)
        : m_pStream(i_pStream), m_Left(i_Place), m_Piece(i_Piece), m_AtPlace(i_AtPlace)
    {
    }

    std::int32_t read(void* o_Buffer, std::int32_t i_Count) override
    {
        if (m_Left == 0)
        {
            return m_AtPlace;
        }
        const std::int64_t most = std::min<std::int64_t>({i_Count, m_Piece, m_Left});
        const std::int32_t count = m_pStream->read(o_Buffer, static_cast<std::int32_t>(most));
        m_Left -= std::max(count, 0);
        return count;
    }
    std::int32_t size() const override { return m_pStream->size(); }
    void close() override { m_pStream->close(); }

private:
    std::unique_ptr<InputStream> m_pStream;
    std::int64_t m_Left;
    std::int32_t m_Piece;
    std::int32_t m_AtPlace;
};

constexpr const char* s_SmallDocument = "<?xml version='1.0'?><list><item id='right'/></list>";

struct CutRow
{
    const char* name;
    std::int32_t piece;
    std::int32_t atPlace; ///< what reading there gives
};

const CutRow s_CutRows[] = {
    {"fails", 1000000, -1},     {"fails_in_pieces", 3, -1},     {"fails_otherwise", 1000000, -2147483647 - 1},
    {"ends_early", 1000000, 0}, {"ends_early_in_pieces", 1, 0},
};

class CutMember : public FailingReads, public testing::WithParamInterface<CutRow>
{
};

TEST_P(CutMember, AtEachByte)
{
    const std::string document = s_SmallDocument;
    const std::string file = m_Folder.TemporaryFolder::write("a.zip", ZipBuilder().add("a.xml", document).bytes());
    const CutRow& row = GetParam();
    for (std::size_t place = 0; place <= document.size(); ++place)
    {
        s_Wrap = [&](InputStream* i_pStream)
        { return new CutStream(i_pStream, static_cast<std::int64_t>(place), row.piece, row.atPlace); };
        const bool isWhole = place == document.size() && row.atPlace == 0;
        EXPECT_EQ(isWhole ? "right " : s_Refused, answerOf(file, s_Query)) << "at byte " << place;
    }
}

TEST_P(CutMember, AtEachBlock)
{
    const std::string file =
        m_Folder.TemporaryFolder::write("a.zip", ZipBuilder().add("a.xml", s_Document, true).bytes());
    const CutRow& row = GetParam();
    for (std::size_t place = 0; place < s_Document.size(); place += 16384)
    {
        s_Wrap = [&](InputStream* i_pStream)
        { return new CutStream(i_pStream, static_cast<std::int64_t>(place), row.piece, row.atPlace); };
        EXPECT_EQ(s_Refused, answerOf(file, s_Query)) << "at byte " << place;
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, CutMember, testing::ValuesIn(s_CutRows),
                         [](const auto& i_Info) { return i_Info.param.name; });

} // namespace
