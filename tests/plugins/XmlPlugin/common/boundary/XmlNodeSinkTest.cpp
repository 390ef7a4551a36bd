#include "boundary/XmlNodeSink.h"

#include "RecordedTrace.h"
#include "xmlproxy/DefaultSAXHandler.h"
#include "xmlproxy/Node.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace
{

using Lines = std::vector<std::string>;
using XmlPlugin::XmlNodeSink;

struct MessageRow
{
    const char* name;
    TErrorCode (XmlNodeSink::*operation)(const String&, int);
    const wchar_t* message;
    int line;
    int level; ///< that the host wants
    Lines expected;
};

const MessageRow s_MessageRows[] = {
    {"warning",
     &XmlNodeSink::onWarning,
     L"w",
     3,
     3,
     {"5|XmlNodeSink::onWarning(const String& ,int)|2|./../../../../src/plugins/XmlPlugin/common/XmlNodeSink|55|"
      "Warning parsing XML file at line 3 message is: w"}},
    {"error",
     &XmlNodeSink::onError,
     L"e",
     4,
     3,
     {"5|XmlNodeSink::onError(const String& ,int)|1|./../../../../src/plugins/XmlPlugin/common/XmlNodeSink|62|"
      "Error parsing XML file at line 4 message is: e"}},
    {"critical_error",
     &XmlNodeSink::onCriticalError,
     L"c",
     5,
     3,
     {"5|XmlNodeSink::onCriticalError(const String& ,int)|1|./../../../../src/plugins/XmlPlugin/common/XmlNodeSink|69|"
      "Critical error parsing XML file at line 5 message is: c"}},
    {"line_0_and_empty_message",
     &XmlNodeSink::onError,
     L"",
     0,
     3,
     {"5|XmlNodeSink::onError(const String& ,int)|1|./../../../../src/plugins/XmlPlugin/common/XmlNodeSink|62|"
      "Error parsing XML file at line 0 message is: "}},
    {"negative_line",
     &XmlNodeSink::onError,
     L"\u00e4",
     -1,
     3,
     {"5|XmlNodeSink::onError(const String& ,int)|1|./../../../../src/plugins/XmlPlugin/common/XmlNodeSink|62|"
      "Error parsing XML file at line -1 message is: \xc3\xa4"}},
    {"warning_not_wanted", &XmlNodeSink::onWarning, L"w", 3, 1, {}},
    {"warning_wanted",
     &XmlNodeSink::onWarning,
     L"w",
     3,
     2,
     {"5|XmlNodeSink::onWarning(const String& ,int)|2|./../../../../src/plugins/XmlPlugin/common/XmlNodeSink|55|"
      "Warning parsing XML file at line 3 message is: w"}},
    {"error_not_wanted", &XmlNodeSink::onCriticalError, L"c", 3, 0, {}},
};

class XmlNodeSinkMessages : public testing::TestWithParam<MessageRow>
{
};

TEST_P(XmlNodeSinkMessages, AreTraced)
{
    const MessageRow& row = GetParam();
    const RecordedTrace trace(row.level);
    XmlNodeSink sink;
    EXPECT_EQ(0, (sink.*row.operation)(row.message, row.line));
    EXPECT_EQ(row.expected, trace.lines);
}

INSTANTIATE_TEST_SUITE_P(Rows, XmlNodeSinkMessages, testing::ValuesIn(s_MessageRows),
                         [](const auto& i_Info) { return i_Info.param.name; });

TEST(XmlNodeSink, MessagesNeedNoTrace)
{
    XmlNodeSink sink;
    EXPECT_EQ(0, sink.onWarning(L"w", 1));
    EXPECT_EQ(0, sink.onError(L"e", 1));
    EXPECT_EQ(0, sink.onCriticalError(L"c", 1));
}

TEST(XmlNodeSink, ADepthThatIsLeftOverIsACriticalErrorWithoutLine)
{
    const RecordedTrace trace;
    XmlNodeSink sink;
    DefaultSAXHandler handler(&sink, 0);
    handler.startElement(L"a", nullptr, 1, 1, 0);
    handler.endDocument();
    EXPECT_EQ((Lines{"5|XmlNodeSink::onCriticalError(const String& ,int)|1|"
                     "./../../../../src/plugins/XmlPlugin/common/XmlNodeSink|69|Critical error parsing XML file at "
                     "line 0 message is: Malformed XML: inconsistent depth at end of document"}),
              trace.lines);
    EXPECT_EQ(nullptr, sink.release());
}

/// Tells of its end.
class MortalNode final : public Node
{
public:
    explicit MortalNode(int& io_Deaths) : Node(L"n", nullptr, 0, 0, 0), m_Deaths(io_Deaths) {}
    ~MortalNode() override { ++m_Deaths; }

private:
    int& m_Deaths;
};

TEST(XmlNodeSink, HasNoRootAtFirst)
{
    XmlNodeSink sink;
    EXPECT_EQ(nullptr, sink.release());
}

TEST(XmlNodeSink, DeletesItsRoot)
{
    int deaths = 0;
    {
        XmlNodeSink sink;
        EXPECT_EQ(0, sink.setRoot(new MortalNode(deaths)));
        EXPECT_EQ(0, deaths);
    }
    EXPECT_EQ(1, deaths);
}

TEST(XmlNodeSink, ASecondRootReplacesTheFirst)
{
    int first = 0;
    int second = 0;
    XmlNodeSink sink;
    sink.setRoot(new MortalNode(first));
    auto* pSecond = new MortalNode(second);
    EXPECT_EQ(0, sink.setRoot(pSecond));
    EXPECT_EQ(1, first);
    EXPECT_EQ(0, second);
    const std::unique_ptr<Node> pRoot(sink.release());
    EXPECT_EQ(pSecond, pRoot.get());
}

TEST(XmlNodeSink, AReleasedRootIsTheCallers)
{
    int deaths = 0;
    std::unique_ptr<Node> pRoot;
    {
        XmlNodeSink sink;
        sink.setRoot(new MortalNode(deaths));
        pRoot.reset(sink.release());
        EXPECT_EQ(nullptr, sink.release());
    }
    EXPECT_EQ(0, deaths);
    pRoot.reset();
    EXPECT_EQ(1, deaths);
}

} // namespace
