#include "RealDocuments.h"

#include <gtest/gtest.h>

#include <ostream>

// A comparison is worth what its reader of the other program's output is worth.

namespace
{

struct OutputRow
{
    const char* name;
    const char* output;
    std::vector<std::string> values;
};

void PrintTo(const OutputRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class XmlLintOutput : public testing::TestWithParam<OutputRow>
{
};

const OutputRow s_Outputs[] = {
    {"attribute", " name=\"x\"\n", {"x"}},
    {"attributes", " name=\"x\"\n version=\"1\"\n", {"x", "1"}},
    {"on_one_line", " name=\"x\" version=\"1\"\n", {"x", "1"}},
    {"empty_value", " name=\"\"\n", {""}},
    {"entities", " name=\"&lt;&amp;lt;&gt;&quot;\"\n", {"<&lt;>\""}},
    {"characters", " name=\"&#10;&#xE9;&#x20AC;&#x1F600;\"\n", {"\n\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"}},
    {"equals_in_value", " name=\" a=b\"\n", {" a=b"}},
    {"prefixed_name", " w:name=\"x\"\n", {"x"}},
    {"scalar", "12\n", {"12"}},
    {"empty_text", "\n", {""}},
    {"entity_in_a_text", "a &amp; b\n", {"a &amp; b"}},
    {"two_lines", "a\nb\n", {"a\nb"}},
    {"attribute_in_a_text", " a=\"b\" c\n", {" a=\"b\" c"}},
};

} // namespace

TEST_P(XmlLintOutput, GivesValues)
{
    EXPECT_EQ(readXmlLintOutput(GetParam().output), GetParam().values);
}

INSTANTIATE_TEST_SUITE_P(All, XmlLintOutput, testing::ValuesIn(s_Outputs),
                         [](const auto& i_Info) { return std::string(i_Info.param.name); });
