#include "support/Process.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <ostream>

// --explain as a process, with the real plug-in and the documents of examples/.

namespace
{

using Texts = std::vector<std::string>;

constexpr const char* s_Examples = SOURCE_FOLDER "/examples/";

ProcessResult explain(Texts i_Arguments, const ProcessSettings& i_Settings = {})
{
    i_Arguments.insert(i_Arguments.begin(), HOST_PROGRAM);
    return runProcess(i_Arguments, i_Settings);
}

struct ExplainRow
{
    const char* name;
    Texts arguments; ///< the expression, and the name of an example document where one is asked
    const char* out;
};

void PrintTo(const ExplainRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class Explain : public testing::TestWithParam<ExplainRow>
{
};

} // namespace

TEST_P(Explain, TellsHowAnExpressionIsUnderstood)
{
    Texts arguments{"--explain", GetParam().arguments[0]};
    if (GetParam().arguments.size() > 1)
    {
        arguments.push_back(s_Examples + GetParam().arguments[1]);
    }
    const ProcessResult result = explain(arguments);
    EXPECT_EQ(result.out, GetParam().out);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(All, Explain, testing::Values(
    ExplainRow{"attribute_of_chosen_elements", {"library/shelf/book[@lent='yes']/@title", "library.xml"}, R"X(Expression  library/shelf/book[@lent='yes']/@title
Tokens      library/shelf/book[@lent='yes']/@title
Postfix     library/shelf/book[@lent='yes']/@title
Tree
  library/shelf/book[@lent='yes']/@title   1 node
Path library/shelf/book[@lent='yes']/@title
  1. child::library   the document element
  2. child::shelf
  3. child::book
       [@lent='yes']
  4. attribute::title
Predicate [@lent='yes']
  Tokens   @lent  =  'yes'
  Postfix  @lent  'yes'  =
  Tree, for the first node that is asked about
    =   boolean false
    ├─ @lent   0 nodes
    └─ 'yes'
  Path @lent
    1. attribute::lent
Answer      1 value
)X"},
    ExplainRow{"call_behind_a_product", {"2 * count(//book[@lent='yes'])", "library.xml"}, R"X(Expression  2 * count(//book[@lent='yes'])
Tokens      2  *  count  (  //book[@lent='yes']  )
Postfix     2  *  //book[@lent='yes']  count
Tree
  count   number 1
  └─ //book[@lent='yes']   1 node
  lost:
    *   fails: finds 1 of 2 arguments
    └─ 2
Path //book[@lent='yes']
  1. // child::book   the document element or any level below
       [@lent='yes']
Predicate [@lent='yes']
  Tokens   @lent  =  'yes'
  Postfix  @lent  'yes'  =
  Tree, for the first node that is asked about
    =   boolean false
    ├─ @lent   0 nodes
    └─ 'yes'
  Path @lent
    1. attribute::lent
Differences from XPath 1.0 that it touches (docs/dialect.md)
  D-22   A call stands on the level of "*". Most functions have priority 4, so
         an operator `*`, `div` or `mod` before the call is applied first and
         finds only one operand. Write the call first, or put it in parentheses.
  D-25   An operator that fails may be forgotten. Only the code of the last
         operator counts. If a later operator succeeds, the answer is whatever
         is left.
Answer      number 1
)X"},
    ExplainRow{"the_same_without_document", {"2 * count(//book[@lent='yes'])"}, R"X(Expression  2 * count(//book[@lent='yes'])
Tokens      2  *  count  (  //book[@lent='yes']  )
Postfix     2  *  //book[@lent='yes']  count
Tree
  count   number
  └─ //book[@lent='yes']   path
  lost:
    *   fails: finds 1 of 2 arguments
    └─ 2
Path //book[@lent='yes']
  1. // child::book   the document element or any level below
       [@lent='yes']
Predicate [@lent='yes']
  Tokens   @lent  =  'yes'
  Postfix  @lent  'yes'  =
  Tree
    =   boolean
    ├─ @lent   path
    └─ 'yes'
  Path @lent
    1. attribute::lent
Differences from XPath 1.0 that it touches (docs/dialect.md)
  D-22   A call stands on the level of "*". Most functions have priority 4, so
         an operator `*`, `div` or `mod` before the call is applied first and
         finds only one operand. Write the call first, or put it in parentheses.
  D-25   An operator that fails may be forgotten. Only the code of the last
         operator counts. If a later operator succeeds, the answer is whatever
         is left.
)X"},
    ExplainRow{"union", {"//book/@id | //box/atlas/@id", "library.xml"}, R"X(Expression  //book/@id | //box/atlas/@id
Tokens      //book/@id| //box/atlas/@id
Postfix     //book/@id| //box/atlas/@id
Tree
  //book/@id| //box/atlas/@id   6 nodes
Path //book/@id| //box/atlas/@id
  branch 1: //book/@id
    1. // child::book   the document element or any level below
    2. attribute::id
  branch 2: //box/atlas/@id
    1. // child::box   the document element or any level below
    2. child::atlas
    3. attribute::id
Answer      6 values
)X"},
    ExplainRow{"predicate_that_is_not_recognised", {"library/shelf[book[@lent]]/@id", "library.xml"}, R"X(Expression  library/shelf[book[@lent]]/@id
Tokens      library/shelf[book[@lent]]/@id
Postfix     library/shelf[book[@lent]]/@id
Tree
  library/shelf[book[@lent]]/@id   0 nodes
Path library/shelf[book[@lent]]/@id
  1. child::library   the document element
  2. child::shelf
       [book[@lent]
       [@lent]
  3. attribute::id
Predicate [book[@lent]
  not recognised, so the path selects nothing
Predicate [@lent]
  Tree
    @lent   path
  Path @lent
    1. attribute::lent
Differences from XPath 1.0 that it touches (docs/dialect.md)
  D-42   A broken step selects nothing. An error inside a location path gives an
         empty node set and no error code.
  D-47   Brackets are not nested. Each `[` is paired with the next `]`.
Answer      no value
)X"},
    ExplainRow{"conversions", {"concat('a', 1 div 0, 2 = 2) = 'x'"}, R"X(Expression  concat('a', 1 div 0, 2 = 2) = 'x'
Tokens      concat  (  'a'  ,  1  div  0  ,  2  =  2  )  =  'x'
Postfix     'a'  1  0  div  2  2  =  concat  'x'  =
Tree
  =   boolean false
  ├─ concat   string 'aInfinitytrue'
  │  ├─ 'a'
  │  ├─ div   number Infinity
  │  │  ├─ 1
  │  │  └─ 0
  │  └─ =   boolean true
  │     ├─ 2
  │     └─ 2
  └─ 'x'
Conversions
  concat: argument 3 by string() is 'true'
  concat: argument 2 by string() is 'Infinity'
  concat: argument 1 by string() is 'a'
)X"},
    ExplainRow{"special_numbers", {"number('x') - (1 div 0)"}, R"X(Expression  number('x') - (1 div 0)
Tokens      number  (  'x'  )  -  (  1  div  0  )
Postfix     'x'  number  1  0  div  -
Tree
  -   number 0
  ├─ number   number NaN
  │  └─ 'x'
  └─ div   number Infinity
     ├─ 1
     └─ 0
Conversions
  -: argument 2 by number() is Infinity
  -: argument 1 by number() is NaN
Differences from XPath 1.0 that it touches (docs/dialect.md)
  D-84   A not-a-number counts as 0. Arithmetic has no rule for it: it is added,
         subtracted, multiplied and divided as its stored 0.
)X"},
    ExplainRow{"condition_that_loses_its_left_side", {"name(*) = 'library' and string-length() > 2", "library.xml"}, R"X(Expression  name(*) = 'library' and string-length() > 2
Tokens      name  (  *  )  =  'library'  and  string-length  (  )  >  2
Postfix     *  name  'library'  =  string-length  2  >  and
Tree
  lost:
    and   fails: finds 1 of 2 arguments
    └─ >   boolean true
       ├─ string-length   number 4
       │  └─ =   boolean true
       │     ├─ name   string 'library'
       │     │  └─ *   1 node
       │     └─ 'library'
       └─ 2
Path *
  1. child::*   the document element
Conversions
  string-length: argument 1 by string() is 'true'
Differences from XPath 1.0 that it touches (docs/dialect.md)
  D-26   "and" and "or" evaluate both sides. Neither side is skipped, so an
         error on the right is reported even if the left side decides.
Answer      error -15005: too many or too few arguments
)X"},
    ExplainRow{"element_as_text", {"string(//book) = ''", "library.xml"}, R"X(Expression  string(//book) = ''
Tokens      string  (  //book  )  =  ''
Postfix     //book  string  ''  =
Tree
  =   boolean true
  ├─ string   string ''
  │  └─ //book   5 nodes
  └─ ''
Path //book
  1. // child::book   the document element or any level below
Differences from XPath 1.0 that it touches (docs/dialect.md)
  D-27   Elements keep no text. Character data, CDATA sections, comments and
         processing instructions are not kept. The value of an element is the
         empty text.
Answer      boolean true
)X"},
    ExplainRow{"broken_step", {"library/shelf[@a='x/y']/@id", "library.xml"}, R"X(Expression  library/shelf[@a='x/y']/@id
Tokens      library/shelf[@a='x/y']/@id
Postfix     library/shelf[@a='x/y']/@id
Tree
  library/shelf[@a='x/y']/@id   0 nodes
Path library/shelf[@a='x/y']/@id
  1. child::library   the document element
  2. child::shelf   error -15101: a step of a location path is malformed, so the path selects nothing
  3. child::y']   error -15101: a step of a location path is malformed, so the path selects nothing
  4. attribute::id
Differences from XPath 1.0 that it touches (docs/dialect.md)
  D-42   A broken step selects nothing. An error inside a location path gives an
         empty node set and no error code.
  D-46   A slash inside a predicate cuts the path. A path is split into steps at
         every `/`, even inside quotes and brackets. A predicate can use
         attributes, children, and calls on them, but not paths of several
         steps.
Answer      no value
)X"}),
    [](const auto& i_Info) { return std::string(i_Info.param.name); });

TEST(ExplainDot, DrawsTheTreeAndTheSteps)
{
    const ProcessResult result = explain({"--explain=dot", "count(//book[2] | a) > 1 * sum('\"\\')", s_Examples + std::string("library.xml")});
    EXPECT_EQ(result.out, R"X(digraph expression {
  label="count(//book[2] | a) > 1 * sum('\"\\')";
  n0 [shape=box, label="//book[2]| a"];
  p0 [shape=note, label="branch //book[2]\l// child::book [2]\lbranch a\l/ child::a\l"];
  n0 -> p0 [style=dotted, arrowhead=none];
  n1 [shape=ellipse, label="count = 1"];
  n1 -> n0;
  n2 [shape=plaintext, label="1"];
  n3 [shape=ellipse, label="* = 1"];
  n3 -> n1;
  n3 -> n2;
  n4 [shape=plaintext, label="'\"\\'"];
  n5 [shape=ellipse, label="sum = NaN"];
  n5 -> n4;
  n6 [shape=ellipse, label="> = false"];
  n6 -> n3;
  n6 -> n5;
}
)X");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
}
// clang-format on

TEST(ExplainRefused, ShowsPlaceAndHint)
{
    const ProcessResult result = explain({"--explain", "-e", "1", "-e", "a/text()", "-e", "a["});
    EXPECT_EQ(result.out, "Expression  1\nTokens      1\nPostfix     1\nTree\n  1\n");
    EXPECT_EQ(result.err, "xmlvalue: error -15105: the expression is not recognised: a/text()\n"
                          "a/text()\n      ^\n"
                          "hint: D-14: 'text()' is not a node test here, and elements keep no text (D-27); ask for an "
                          "attribute, as in a/@name\n"
                          "xmlvalue: error -15105: the expression is not recognised: a[\na[\n  ^\n");
    EXPECT_EQ(result.status, 2);
}

TEST(ExplainDocuments, StandardInputAndMissingFiles)
{
    ProcessSettings settings;
    settings.input = "<a x='1'/>";
    EXPECT_TRUE(explain({"--explain", "a/@x", "-"}, settings).out.ends_with("\nAnswer      1 value\n"));
    EXPECT_EQ(explain({"--explain", "a/@x"}, settings).out.find("Answer"), std::string::npos)
        << "without FILE nothing is read";
    const TemporaryFolder folder;
    const std::string missing = folder.file("missing.xml");
    const std::string broken = folder.write("broken.xml", "<a>\n<b></a>");
    EXPECT_EQ(explain({"--explain", "a/@x", broken}).err,
              "xmlvalue: error -15103: the document could not be read as XML: " + broken +
                  " (line 2: expected end of tag 'b')\n");
    const ProcessResult result = explain({"--explain", "a/@x", missing});
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "xmlvalue: error -15103: the document could not be read as XML: " + missing + " (no such file)\n");
    EXPECT_EQ(result.status, 2);
}

TEST(ExplainBounds, LongAndDeepExpressions)
{
    std::string sum = "1";
    for (int i = 0; i < 5000; ++i)
    {
        sum += "+1";
    }
    const ProcessResult result = explain({"--explain", sum});
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.out.find("\n  +   number 5001\n"), std::string::npos);
    EXPECT_NE(result.out.find("└─ ...\n"), std::string::npos) << "the tree is not drawn to its end";
    const std::string deep = std::string(250, '(') + "1" + std::string(250, ')');
    EXPECT_EQ(explain({"--explain", deep}).status, 0);
}

TEST(ExplainBounds, ManyNodesAreNotKept)
{
    std::string document = "<a>";
    for (int i = 0; i < 2000; ++i)
    {
        document += "<b x='1'/>";
    }
    ProcessSettings settings;
    settings.input = document + "</a>";
    const ProcessResult result = explain({"--explain", "count(a/b[@x = 1])", "-"}, settings);
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(result.out.find("\n  count   number 2000\n"), std::string::npos) << result.out;
}

namespace
{

struct DefectRow
{
    const char* name;
    const char* expression;
    const char* defect; ///< the line; empty: none
};

void PrintTo(const DefectRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class ExplainDefect : public testing::TestWithParam<DefectRow>
{
};

} // namespace

/// Traced and not traced, the plug-in must answer the same; a fake one does not.
TEST_P(ExplainDefect, IsReported)
{
    const std::string fake = std::string("--plugin=") + FAKE_MODULE;
    for (const char* pTrace : {"--trace=error", "--trace=info"})
    {
        const std::string out = explain({fake, pTrace, "--explain", GetParam().expression}).out;
        const std::size_t begin = out.find("Defect");
        EXPECT_EQ(begin == std::string::npos ? "" : out.substr(begin), GetParam().defect) << out;
        EXPECT_NE(out.find("Tokens      'text'\n"), std::string::npos) << out;
    }
    const std::string dot = explain({fake, "--explain=dot", GetParam().expression}).out;
    EXPECT_EQ(dot.find("// Defect") != std::string::npos, *GetParam().defect != '\0') << dot;
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(All, ExplainDefect, testing::Values(
    DefectRow{"same_value", "two-faced:a,a", ""},
    DefectRow{"same_code", "two-faced:-102,-102", ""},
    DefectRow{"another_value", "two-faced:a,b", "Defect      not traced, the plug-in answers otherwise: 1 value, number 1 is b\n"},
    DefectRow{"no_value", "two-faced:a,none", "Defect      not traced, the plug-in answers otherwise: 0 values\n"},
    DefectRow{"a_value_too_many", "two-faced:none,b", "Defect      not traced, the plug-in answers otherwise: 1 value, number 1 is b\n"},
    DefectRow{"no_error", "two-faced:-102,b", "Defect      not traced, the plug-in answers otherwise: no error\n"},
    DefectRow{"an_error", "two-faced:a,-15004", "Defect      not traced, the plug-in answers otherwise: error -15004: the expression has no value\n"}),
    [](const testing::TestParamInfo<DefectRow>& i_Info) { return std::string(i_Info.param.name); });
// clang-format on

TEST(ExplainTrace, RecordsOfTheQuestionsBesideAreNotPrinted)
{
    EXPECT_EQ(explain({"--explain", "--trace", "library/@name"}).err, "");
}
