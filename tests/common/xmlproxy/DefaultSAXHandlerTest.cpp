#include "xmlproxy/DefaultSAXHandler.h"

#include "TestTrees.h"
#include "support/VirtualSlot.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace
{

using Messages = std::vector<std::string>;

/// Sends events: a letter opens an element of that name with an attribute `n`, `.` closes one, a
/// quoted text is character data, `$` ends the document.
void send(SAXHandler& io_Handler, std::string_view i_Events)
{
    unsigned sequence = 0;
    io_Handler.startDocument();
    for (std::size_t place = 0; place < i_Events.size(); ++place)
    {
        const char event = i_Events[place];
        if (event == '.')
        {
            io_Handler.endElement(L"ignored");
        }
        else if (event == '$')
        {
            io_Handler.endDocument();
        }
        else if (event == '\'')
        {
            const std::size_t end = i_Events.find('\'', place + 1);
            io_Handler.characters(String(i_Events.data() + place + 1, end - place - 1), 7, 8, 9);
            place = end;
        }
        else
        {
            auto* pTable = new AttributeTable(1);
            pTable->add(L"n", L"1", String::valueOf(sequence));
            io_Handler.startElement(String(&event, 1), pTable, 2, 3, sequence + 1);
            sequence += 2;
        }
    }
}

const char* const s_Mismatch = "critical 0 Malformed XML: inconsistent depth at end of document";

struct Row
{
    const char* name;
    int skipDepth;
    const char* events;
    const char* trees; ///< one a line
    Messages messages;
};

const Row s_Rows[] = {
    {"single_empty_root", 0, "a.$", "a#1{n=1#0}", {}},
    {"no_events", 0, "$", "", {}},
    {"nested", 0, "ab.cd...$", "a#1{n=1#0}(b#3{n=1#2} c#5{n=1#4}(d#7{n=1#6}))", {}},
    {"text_in_order", 0, "a'x'b.'y'.$", "a#1{n=1#0}(\"x\" b#3{n=1#2} \"y\")", {}},
    {"empty_text", 0, "a''.$", "a#1{n=1#0}(\"\")", {}},
    {"text_outside_of_root_is_dropped", 0, "'x'a.'y'$", "a#1{n=1#0}", {}},
    {"two_roots", 0, "a.b.$", "a#1{n=1#0}\nb#3{n=1#2}", {}},
    {"open_at_end", 0, "ab.$", "", {s_Mismatch}},
    {"closed_too_often", 0, "a..$", "a#1{n=1#0}", {s_Mismatch}},
    {"closed_before_open", 0, ".$", "", {s_Mismatch}},
    {"negative_depth_builds_nothing", 0, ".a.$", "", {s_Mismatch}},
    {"no_end_of_document", 0, "ab", "", {}},
    {"skip_1", 1, "ab.c.d..$", "b#3{n=1#2}\nc#5{n=1#4}\nd#7{n=1#6}", {}},
    {"skip_1_subtrees", 1, "abe..c..$", "b#3{n=1#2}(e#5{n=1#4})\nc#7{n=1#6}", {}},
    {"skip_1_text_of_skipped_is_dropped", 1, "a'x'b'y'.'z'.$", "b#3{n=1#2}(\"y\")", {}},
    {"skip_2", 2, "abc..de....$", "c#5{n=1#4}\ne#9{n=1#8}", {s_Mismatch}},
    {"skip_past_the_document", 5, "ab..$", "", {}},
    {"skip_1_open_at_end", 1, "ab.c$", "b#3{n=1#2}", {s_Mismatch}},
};

class DefaultSAXHandlerRows : public testing::TestWithParam<Row>
{
};

TEST_P(DefaultSAXHandlerRows, BuildTheirTrees)
{
    RecordingSink sink;
    {
        DefaultSAXHandler handler(&sink, GetParam().skipDepth);
        send(handler, GetParam().events);
    }
    EXPECT_EQ(GetParam().trees, sink.trees());
    EXPECT_EQ(GetParam().messages, sink.messages);
}

INSTANTIATE_TEST_SUITE_P(Rows, DefaultSAXHandlerRows, testing::ValuesIn(s_Rows),
                         [](const auto& i_Info) { return i_Info.param.name; });

TEST(DefaultSAXHandler, HandsOverTheRootAtItsEndTag)
{
    RecordingSink sink;
    DefaultSAXHandler handler(&sink, 0);
    handler.startElement(L"a", nullptr, 1, 2, 3);
    EXPECT_EQ(1, handler.depth());
    EXPECT_TRUE(sink.roots.empty());
    handler.endElement(L"a");
    EXPECT_EQ(0, handler.depth());
    ASSERT_EQ(1U, sink.roots.size());
    EXPECT_EQ(nullptr, sink.roots[0]->attributes());
}

TEST(DefaultSAXHandler, SetsPlacesAndParents)
{
    RecordingSink sink;
    DefaultSAXHandler handler(&sink, 0);
    send(handler, "ab'x'..$");
    ASSERT_EQ(1U, sink.roots.size());
    const Node* pRoot = sink.roots[0].get();
    const Node* pChild = pRoot->children().front();
    const Node* pText = pChild->children().front();
    EXPECT_EQ(nullptr, pRoot->getParent());
    EXPECT_EQ(pRoot, pChild->getParent());
    EXPECT_EQ(nullptr, pText->getParent());
    EXPECT_EQ(2U, pChild->line());
    EXPECT_EQ(3U, pChild->column());
    EXPECT_EQ(3U, pChild->sequence());
    EXPECT_EQ(7U, pText->line());
    EXPECT_EQ(8U, pText->column());
    EXPECT_EQ(9U, pText->sequence());
    EXPECT_EQ(1, pText->attributes()->blockSize());
}

TEST(DefaultSAXHandler, RootsOfSkippedLevelsHaveNoParent)
{
    RecordingSink sink;
    DefaultSAXHandler handler(&sink, 1);
    send(handler, "ab..$");
    ASSERT_EQ(1U, sink.roots.size());
    EXPECT_EQ(nullptr, sink.roots[0]->getParent());
}

TEST(DefaultSAXHandler, PassesMessagesOn)
{
    RecordingSink sink;
    DefaultSAXHandler handler(&sink, 0);
    handler.warning(L"w", 1);
    handler.error(L"e", 2);
    handler.fatalError(L"f", 3);
    EXPECT_EQ((Messages{"warning 1 w", "error 2 e", "critical 3 f"}), sink.messages);
}

TEST(DefaultSAXHandler, AMessageThatNobodyWantsIsNoFailure)
{
    struct SilentSink final : NodeSink
    {
        TErrorCode setRoot(Node* i_pRoot) override
        {
            delete i_pRoot;
            return -1;
        }
    };
    SilentSink sink;
    EXPECT_EQ(0, sink.onWarning(L"w", 1));
    EXPECT_EQ(0, sink.onError(L"e", 2));
    EXPECT_EQ(0, sink.onCriticalError(L"f", 3));
    DefaultSAXHandler handler(&sink, 0);
    send(handler, "a.b$");
    EXPECT_EQ(1, handler.depth());
}

TEST(DefaultSAXHandlerDeathTest, SkipDepthMustNotBeNegative)
{
    RecordingSink sink;
    EXPECT_DEATH(DefaultSAXHandler(&sink, -1), "m_SkipDepth >= 0.*xmlproxy/DefaultSAXHandler.*23");
}

#if defined(TEST_VIRTUAL_SLOTS)
TEST(DefaultSAXHandler, KeepsTheOrderOfTheEvents)
{
    EXPECT_EQ(0U, placeOf(&SAXHandler::startDocument));
    EXPECT_EQ(1U, placeOf(&SAXHandler::endDocument));
    EXPECT_EQ(2U, placeOf(&SAXHandler::startElement));
    EXPECT_EQ(3U, placeOf(&SAXHandler::endElement));
    EXPECT_EQ(4U, placeOf(&SAXHandler::characters));
    EXPECT_EQ(5U, placeOf(&SAXHandler::warning));
    EXPECT_EQ(6U, placeOf(&SAXHandler::error));
    EXPECT_EQ(7U, placeOf(&SAXHandler::fatalError));
    EXPECT_EQ(8U, placeOf(&SAXHandler::memory));
}
#endif

#if defined(TEST_VIRTUAL_SLOTS)
TEST(NodeSink, KeepsTheOrderOfItsOperations)
{
    EXPECT_EQ(0U, placeOf(&NodeSink::setRoot));
    EXPECT_EQ(1U, placeOf(&NodeSink::onWarning));
    EXPECT_EQ(2U, placeOf(&NodeSink::onError));
    EXPECT_EQ(3U, placeOf(&NodeSink::onCriticalError));
}
#endif

} // namespace
