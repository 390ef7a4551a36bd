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
#include <xercesc/util/XMLFileMgr.hpp>

#include <dlfcn.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
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

int s_ExistsCalls = 0;                            ///< asked so far, with or without the first bytes
std::function<void(int i_Call)> s_AfterExists;    ///< called behind each one, counted from 1
std::function<InputStream*(InputStream*)> s_Wrap; ///< what stands for the stream of a member
std::function<void()> s_BeforeInitialize;         ///< called where the parser library is to be initialised
bool s_FrameworkThrows = false;                   ///< where an expression's base class is constructed

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

/// The parser library's files, with something done before each opening and each reading.
class WatchedFiles final : public xercesc::XMLFileMgr
{
public:
    std::function<void()> beforeOpening;
    std::function<XMLSize_t(int i_Read, XMLSize_t i_Wanted)> beforeReading; ///< result: how much to read
    int reads = 0;

    WatchedFiles() : m_pFiles(std::exchange(xercesc::XMLPlatformUtils::fgFileMgr, this)) {}
    ~WatchedFiles() override { xercesc::XMLPlatformUtils::fgFileMgr = m_pFiles; }
    WatchedFiles(const WatchedFiles&) = delete;
    WatchedFiles& operator=(const WatchedFiles&) = delete;

    xercesc::FileHandle fileOpen(const XMLCh* i_pPath, bool i_ToWrite, xercesc::MemoryManager* const i_pMemory) override
    {
        opening();
        return m_pFiles->fileOpen(i_pPath, i_ToWrite, i_pMemory);
    }
    xercesc::FileHandle fileOpen(const char* i_pPath, bool i_ToWrite, xercesc::MemoryManager* const i_pMemory) override
    {
        opening();
        return m_pFiles->fileOpen(i_pPath, i_ToWrite, i_pMemory);
    }
    xercesc::FileHandle openStdIn(xercesc::MemoryManager* const i_pMemory) override
    {
        return m_pFiles->openStdIn(i_pMemory);
    }
    void fileClose(xercesc::FileHandle i_File, xercesc::MemoryManager* const i_pMemory) override
    {
        m_pFiles->fileClose(i_File, i_pMemory);
    }
    void fileReset(xercesc::FileHandle i_File, xercesc::MemoryManager* const i_pMemory) override
    {
        m_pFiles->fileReset(i_File, i_pMemory);
    }
    XMLFilePos curPos(xercesc::FileHandle i_File, xercesc::MemoryManager* const i_pMemory) override
    {
        return m_pFiles->curPos(i_File, i_pMemory);
    }
    XMLFilePos fileSize(xercesc::FileHandle i_File, xercesc::MemoryManager* const i_pMemory) override
    {
        return m_pFiles->fileSize(i_File, i_pMemory);
    }
    XMLSize_t fileRead(xercesc::FileHandle i_File, XMLSize_t i_Wanted, XMLByte* o_pBuffer,
                       xercesc::MemoryManager* const i_pMemory) override
    {
        const XMLSize_t wanted = beforeReading ? beforeReading(++reads, i_Wanted) : i_Wanted;
        return wanted == 0 ? 0 : m_pFiles->fileRead(i_File, wanted, o_pBuffer, i_pMemory);
    }
    void fileWrite(xercesc::FileHandle i_File, XMLSize_t i_Count, const XMLByte* i_pBytes,
                   xercesc::MemoryManager* const i_pMemory) override
    {
        m_pFiles->fileWrite(i_File, i_Count, i_pBytes, i_pMemory);
    }
    XMLCh* getFullPath(const XMLCh* const i_pPath, xercesc::MemoryManager* const i_pMemory) override
    {
        return m_pFiles->getFullPath(i_pPath, i_pMemory);
    }
    XMLCh* getCurrentDirectory(xercesc::MemoryManager* const i_pMemory) override
    {
        return m_pFiles->getCurrentDirectory(i_pMemory);
    }
    bool isRelative(const XMLCh* const i_pPath, xercesc::MemoryManager* const i_pMemory) override
    {
        return m_pFiles->isRelative(i_pPath, i_pMemory);
    }

private:
    void opening() const
    {
        if (beforeOpening)
        {
            beforeOpening();
        }
    }

    XMLFileMgr* m_pFiles;
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

/// The parser library itself opens and reads these.
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
    ASSERT_LT(1, asked);
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
    WatchedFiles files;
    files.beforeReading = [](int, XMLSize_t i_Wanted) { return i_Wanted; };
    ASSERT_EQ("right ", answerOf(m_File, s_Query));
    const int reads = std::exchange(files.reads, 0);
    ASSERT_LT(5, reads);
    for (int when = 1; when + 2 < reads; ++when)
    {
        files.reads = 0;
        files.beforeReading = [this, when](int i_Read, XMLSize_t i_Wanted)
        {
            if (i_Read == when)
            {
                change();
            }
            return i_Wanted;
        };
        expectNoWrongAnswer(when);
    }
}

TEST_P(ChangingPlainFile, BeforeItIsOpenedForReading)
{
    WatchedFiles files;
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
    WatchedFiles files;
    bool hasFailed = true;
    int reads = 0;
    for (int when = 1; hasFailed; ++when)
    {
        hasFailed = false;
        files.reads = 0;
        files.beforeReading = [&](int i_Read, XMLSize_t i_Wanted)
        {
            if (i_Read == when)
            {
                hasFailed = true;
                ThrowXML(xercesc::XMLPlatformUtilsException, xercesc::XMLExcepts::File_CouldNotReadFromFile);
            }
            return i_Wanted;
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
    WatchedFiles files;
    files.beforeReading = [](int i_Read, XMLSize_t i_Wanted)
    { return std::min<XMLSize_t>(i_Wanted, i_Read < 200 ? 1 : 7); };
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
