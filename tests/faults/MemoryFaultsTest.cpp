#include "base/String.h"
#include "common/xmlproxy/TestFiles.h"
#include "pluginsdk/Expression.h"
#include "pluginsdk/Plugin.h"
#include "support/FailingAllocator.h"
#include "system/SharedLibrary.h"
#include "trace/Trace.h"

#include <gtest/gtest.h>

#include <xercesc/util/PlatformUtils.hpp>

#include <filesystem>
#include <new>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

// A plug-in's whole life through its two exported functions, with allocation number 1, 2, 3 and so
// on failing, until it passes untouched. Each step of it gives its answer or what is stated for a
// want of memory, and the rest of the life goes on from there as if nothing had happened.
//
// The parser library is held open all the time: it ends the process when memory runs out while it
// is initialised, which a host that holds it as well is spared.

namespace
{

constexpr const char* s_Document = "<?xml version='1.0' encoding='UTF-8'?>"
                                   "<!DOCTYPE list [<!ENTITY e 'value of an entity'>"
                                   "<!ATTLIST item kind CDATA 'a default value'>]>"
                                   "<list name='&e;'><item id='1' size='10'><part/></item>"
                                   "<item id='2' size='20'>text<part no='5'/></item><item id='3'/></list>";

/// Every kind of declaration, some of them twice: what the library makes of the second one goes at once.
constexpr const char* s_Declarations =
    "<!DOCTYPE a [<!ELEMENT a (b,(c|d)*,(e?,f+)*)><!ELEMENT a (b,(c|d)*)><!ELEMENT b EMPTY><!ELEMENT c ANY>"
    "<!ELEMENT d (#PCDATA|b|c)*><!ELEMENT a ((((b))),c)>"
    "<!ATTLIST a x CDATA #IMPLIED y (one|two) 'one' z ID #IMPLIED n NOTATION (first|second) #IMPLIED>"
    "<!ATTLIST a x CDATA 'never' w NMTOKENS #FIXED 'of several tokens'>"
    "<!NOTATION first SYSTEM 'first'><!NOTATION second PUBLIC 'public'><!NOTATION first SYSTEM 'again'>"
    "<!ENTITY v 'the &w;'><!ENTITY w 'value'><!ENTITY v 'never'><!ENTITY u SYSTEM 'u' NDATA first>"
    "<!ENTITY % p '<!ELEMENT e (a|b|(c,d))><!--in an entity-->'>%p;<!ENTITY % p 'never'><?target data?>]>"
    "<a x='&v;'><b/><c/></a>";

struct Answer
{
    TErrorCode code;
    std::vector<std::string> values;

    friend bool operator==(const Answer&, const Answer&) = default;
};

void PrintTo(const Answer& i_Answer, std::ostream* io_pStream)
{
    *io_pStream << i_Answer.code << ' ' << testing::PrintToString(i_Answer.values);
}

struct Query
{
    const char* file;
    const char* xpath;
    const char* mustExist; ///< null: not set
    Answer answer;
};

struct Row
{
    const char* name;
    enum Kind
    {
        Plain,
        Traced,
        LosesMember, ///< libzip loses one block, the source of a member
        LosesDecoder ///< Xerces-C loses one of ICU's decoders, which takes `operator new` to fail
    } kind;
    std::vector<Query> queries;
};

void PrintTo(const Row& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

const std::vector<Row> s_Rows = {
    {"value", Row::Plain, {{"good.xml", "list/@name", nullptr, {0, {"value of an entity"}}}}},
    {"list", Row::Plain, {{"good.xml", "//item/@id", "true", {0, {"1", "2", "3"}}}}},
    {"union", Row::Plain, {{"good.xml", "list/item/@size | //part/@no", nullptr, {0, {"10", "20", "5"}}}}},
    {"predicates",
     Row::Plain,
     {{"good.xml", "//item[@size and position() < 3]/@id", nullptr, {0, {"1", "2"}}},
      {"good.xml", "list/item[2]/part[@no=5]/@no", nullptr, {0, {"5"}}},
      {"good.xml", "list/item[@id=list/item/@id]/@kind", nullptr, {0, {}}}}},
    {"functions",
     Row::Plain,
     {{"good.xml",
       "concat('a long first text ', substring-after('key=the value behind it', '='))",
       nullptr,
       {0, {"a long first text the value behind it"}}},
      {"good.xml", "sum(//item/@size) + count(//item) * 2 - string-length('four')", nullptr, {0, {"32"}}},
      {"good.xml", "normalize-space('  some   blanks in a text  ')", nullptr, {0, {"some blanks in a text"}}},
      {"good.xml", "contains(name(list), 'list') or not(true())", nullptr, {0, {"true"}}}}},
    {"axes",
     Row::Plain,
     {{"good.xml", "//part/ancestor::item/@id", nullptr, {0, {"1", "2"}}},
      {"good.xml", "//item/following::item/@id", nullptr, {0, {"2", "3"}}},
      {"good.xml", "list/descendant::part/@no", nullptr, {0, {"5"}}}}},
    {"archive", Row::LosesMember, {{"good.zip", "//item[@size=20]/@id", nullptr, {0, {"2"}}}}},
    {"external_entity", Row::Plain, {{"external.xml", "//b/@id", nullptr, {0, {"7"}}}}},
    {"other_encoding", Row::LosesDecoder, {{"latin.xml", "a/@id", nullptr, {0, {"\xC3\xA9"}}}}},
    {"declarations", Row::Plain, {{"declarations.xml", "//a/@x", nullptr, {0, {"the value"}}}}},
    {"errors",
     Row::Plain,
     {{"missing.xml", "a/@id", nullptr, {-15103, {}}},
      {"bad.xml", "a/@id", nullptr, {-15103, {}}},
      {"good.xml", "list/@none", "true", {-15002, {}}},
      {"good.xml", "list[", nullptr, {-15105, {}}},
      {"good.xml", "concat('one')", nullptr, {-15005, {}}},
      {"good.xml", "local-name()", nullptr, {-102, {}}}}},
    {"traced",
     Row::Traced,
     {{"bad.xml", "a/@id", nullptr, {-15103, {}}}, {"good.xml", "list/@name", nullptr, {0, {"value of an entity"}}}}},
};

class NoSink final : public TraceSink
{
public:
    void write(const TraceRecord&) override {}
};

/// Files that the process has open; always the same where the system does not tell.
std::ptrdiff_t openFiles()
{
    const FailingAllocator::Pause pause;
    std::error_code error;
    const std::filesystem::directory_iterator files("/proc/self/fd", error);
    return error ? 0 : std::distance(begin(files), end(files));
}

class MemoryFaults : public testing::TestWithParam<std::tuple<Row, FailingAllocator::Shortage>>
{
protected:
    MemoryFaults()
    {
        setenv("TZ", "UTC0", 1); // else the C library keeps another copy of the time zone's name for each archive
        xercesc::XMLPlatformUtils::Initialize();
        m_Folder.write("good.xml", s_Document);
        m_Folder.write("bad.xml", "<a id='1'><b></a>");
        m_Folder.write("good.zip", ZipBuilder().add("a.xml", s_Document, true).bytes());
        m_Folder.write("external.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM 'entity.xml'>]><a>&e;</a>");
        m_Folder.write("entity.xml", "<b id='7'/>");
        m_Folder.write("declarations.xml", s_Declarations);
        m_Folder.write("latin.xml", "<?xml version='1.0' encoding='ISO-8859-15'?><a id='\xE9'/>");
        if (std::get<0>(GetParam()).kind == Row::Traced)
        {
            Tracer::install(&m_Sink, TraceInformation);
        }
    }
    ~MemoryFaults() override
    {
        Tracer::install(nullptr, TraceOff);
        xercesc::XMLPlatformUtils::Terminate();
    }

    /// Does the step; when memory runs out in it, does it again with enough of it.
    template <class Step>
    static void passes(const Step& i_Step)
    {
        try
        {
            i_Step();
        }
        catch (const std::bad_alloc&)
        {
            ASSERT_TRUE(FailingAllocator::disarm()) << "a memory exception without a want of memory";
            i_Step();
        }
    }

    PluginSDK::Plugin* create() const
    {
        PluginSDK::Plugin* pPlugin = m_pCreate();
        if (!pPlugin && FailingAllocator::disarm())
        {
            pPlugin = m_pCreate();
        }
        return pPlugin;
    }

    static void createExpression(PluginSDK::Plugin& io_Plugin, const wchar_t* i_TypeName,
                                 PluginSDK::Expression*& o_pExpression)
    {
        ASSERT_EQ(0, io_Plugin.createExpression(i_TypeName, &o_pExpression));
        if (!o_pExpression && FailingAllocator::disarm())
        {
            ASSERT_EQ(0, io_Plugin.createExpression(i_TypeName, &o_pExpression));
        }
        ASSERT_NE(nullptr, o_pExpression);
    }

    void setProperties(PluginSDK::Expression& io_Expression, const Query& i_Query) const
    {
        const FailingAllocator::Pause pause; // this is the host's own business
        io_Expression.setProperty(L"file", m_Folder.pathOf(i_Query.file).c_str());
        io_Expression.setProperty(L"xpath", String(i_Query.xpath).c_str());
        io_Expression.setProperty(L"mustExist", i_Query.mustExist ? String(i_Query.mustExist).c_str() : nullptr);
    }

    static void expectAnswer(const Answer& i_Expected, TErrorCode i_Code, const PluginSDK::StringVector& i_Values)
    {
        const FailingAllocator::Pause pause;
        Answer answer{i_Code, {}};
        for (std::size_t index = 0; index < i_Values.count(); ++index)
        {
            answer.values.push_back(String(i_Values.get(index)).toNarrow());
        }
        ASSERT_EQ(i_Expected, answer);
    }

    void runList(PluginSDK::Plugin& io_Plugin, const Query& i_Query) const
    {
        PluginSDK::Expression* pExpression = nullptr;
        ASSERT_NO_FATAL_FAILURE(createExpression(io_Plugin, L"XmlValues", pExpression));
        setProperties(*pExpression, i_Query);
        PluginSDK::StringVector values;
        passes(
            [&]
            {
                EXPECT_EQ(0U, values.count()) << "something is left of an evaluation that failed";
                const TErrorCode code = static_cast<PluginSDK::VectorExpression*>(pExpression)->evaluate(values);
                expectAnswer(i_Query.answer, code, values);
            });
        ASSERT_EQ(0, io_Plugin.destroyExpression(pExpression));
    }

    void runScalar(PluginSDK::Plugin& io_Plugin, const Query& i_Query) const
    {
        PluginSDK::Expression* pExpression = nullptr;
        ASSERT_NO_FATAL_FAILURE(createExpression(io_Plugin, L"XmlValue", pExpression));
        setProperties(*pExpression, i_Query);
        PluginSDK::String value;
        const bool isOne = i_Query.answer.code == 0 && i_Query.answer.values.size() == 1;
        passes(
            [&]
            {
                EXPECT_EQ(0U, value.length()) << "something is left of an evaluation that failed";
                const TErrorCode code = static_cast<PluginSDK::ScalarExpression*>(pExpression)->evaluate(value);
                const FailingAllocator::Pause pause;
                ASSERT_EQ(i_Query.answer.values.size() > 1 ? -15003 : i_Query.answer.code, code);
                ASSERT_EQ(isOne ? i_Query.answer.values[0] : "", String(value.c_str()).toNarrow());
            });
        ASSERT_EQ(0, io_Plugin.destroyExpression(pExpression));
    }

    /// Everything that a host does with the plug-in.
    void live(const std::vector<Query>& i_Queries) const
    {
        PluginSDK::Plugin* pPlugin = create();
        ASSERT_NE(nullptr, pPlugin);
        passes([&] { pPlugin->registerExpressions(); });
        for (const Query& query : i_Queries)
        {
            ASSERT_NO_FATAL_FAILURE(runScalar(*pPlugin, query));
            ASSERT_NO_FATAL_FAILURE(runList(*pPlugin, query));
        }
        pPlugin->unload();
        m_pDestroy(pPlugin);
    }

    const TestFolder m_Folder;
    NoSink m_Sink;
    const SharedLibrary m_Library{PLUGIN_MODULE};
    PluginSDK::Plugin* (*m_pCreate)() = reinterpret_cast<PluginSDK::Plugin* (*)()>(m_Library.find("createPlugin"));
    void (*m_pDestroy)(PluginSDK::Plugin*) =
        reinterpret_cast<void (*)(PluginSDK::Plugin*)>(m_Library.find("destroyPlugin"));
};

TEST_P(MemoryFaults, EveryStepAnswersOrTellsSoAndNothingIsLost)
{
    const auto& [row, shortage] = GetParam();
    if (row.kind == Row::LosesDecoder && !FailingAllocator::hasMalloc())
    {
        GTEST_SKIP() << "a leak detector would report what the library loses";
    }
    ASSERT_NO_FATAL_FAILURE(live(row.queries)); // what libraries keep for good is there after this
    const std::ptrdiff_t files = openFiles();
    bool failed = true;
    long number = 0;
    while (failed)
    {
        ASSERT_GT(100000, ++number);
        FailingAllocator::arm(number, shortage);
        live(row.queries);
        const long lost = FailingAllocator::live();
        failed = FailingAllocator::disarm();
        ASSERT_FALSE(HasFailure()) << "allocation " << number;
        ASSERT_LE(0, lost) << "allocation " << number;
        ASSERT_GE(row.kind == Row::LosesMember || row.kind == Row::LosesDecoder ? 1 : 0, lost)
            << "allocation " << number;
        ASSERT_EQ(files, openFiles()) << "allocation " << number;
    }
    EXPECT_LT(20, number) << "the allocator of this program is not the plug-in's";
    RecordProperty("allocations", std::to_string(number - 1));
}

INSTANTIATE_TEST_SUITE_P(Rows, MemoryFaults,
                         testing::Combine(testing::ValuesIn(s_Rows),
                                          testing::Values(FailingAllocator::Shortage::Once,
                                                          FailingAllocator::Shortage::FromThenOn)),
                         [](const auto& i_Info)
                         {
                             const bool isLasting = std::get<1>(i_Info.param) == FailingAllocator::Shortage::FromThenOn;
                             return std::string(std::get<0>(i_Info.param).name) +
                                    (isLasting ? "_from_then_on" : "_once");
                         });

} // namespace
