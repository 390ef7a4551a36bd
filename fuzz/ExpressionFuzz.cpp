// Input: an expression, evaluated on a fixed document.
#include "EvaluationChecks.h"

#include "QuerySupport.h"

#include <string_view>

namespace
{

/// What all checks together take on a longer text is too long.
constexpr int s_TracedLength = 80;

// Names and values are those of the dictionary and the seeds.
constexpr std::string_view s_Document = R"(<r id="r" n="1">
  <a id="1" n="2.5"><b id="2" t="abc"/><b id="3" n="-3"><c x-y="007"/></b><a n="10"><b/></a></a>
  <b id="4" t="a b"/>
  <a id="5" t=" pad "><c n="3"><d_e id="6"/><c/></c><b t="nan"/></a>
  <x:y id="7" t="1"/><long-name n="0"/>
</r>)";

} // namespace

void fuzzOne(std::string_view i_Bytes)
{
    static const TestDocument s_Tree(s_Document);
    static const std::vector<Node*> s_Elements = elementsOf(s_Tree.root());
    const String text = expressionText(i_Bytes);
    checkEvaluation(text, s_Elements, CheckChoice(i_Bytes, EvaluationChecks), CheckChoice(i_Bytes, 2),
                    text.length() <= s_TracedLength);
}
