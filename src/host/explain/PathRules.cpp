// Rules about location paths and predicates.
#include "advice/ExpressionText.h"
#include "explain/DialectRules.h"
#include "explain/FactQueries.h"

#include <algorithm>
#include <string_view>

namespace Text = ExpressionText;
using FactQueries::anyBranch;
using FactQueries::anyNode;
using FactQueries::anyStep;
using FactQueries::isPath;

namespace
{

using Facts = const ExpressionFacts&;

bool isAttribute(const StepFact& i_Step)
{
    return i_Step.axis == "attribute";
}

bool endsInAttribute(const BranchFact& i_Branch)
{
    return isAttribute(i_Branch.steps.back());
}

// --- Brackets -----------------------------------------------------------------------------------

/// Whether \p i_Sign is between the brackets of some path: inside literals, outside them, or either.
enum class Place
{
    Anywhere,
    InLiterals,
    OutsideOfLiterals
};

bool isInBrackets(Facts i_Facts, std::string_view i_Signs, Place i_Place)
{
    const std::string masked = Text::withoutLiterals(i_Facts.text);
    int depth = 0;
    for (std::size_t i = 0; i < masked.size(); ++i)
    {
        const bool isLiteral = masked[i] != i_Facts.text[i];
        const bool isWanted = i_Place == Place::Anywhere || isLiteral == (i_Place == Place::InLiterals);
        if (depth > 0 && isWanted && i_Signs.find(i_Facts.text[i]) != std::string_view::npos)
        {
            return true;
        }
        depth += masked[i] == '[' ? 1 : 0;
        depth -= masked[i] == ']' ? 1 : 0;
    }
    return false;
}

bool hasBarInBrackets(Facts i_Facts)
{
    return isInBrackets(i_Facts, "|", Place::Anywhere);
}

bool hasSlashInBrackets(Facts i_Facts)
{
    return isInBrackets(i_Facts, "/", Place::Anywhere);
}

bool hasNestedBrackets(Facts i_Facts)
{
    return isInBrackets(i_Facts, "[", Place::OutsideOfLiterals);
}

bool hasBracketInLiteral(Facts i_Facts)
{
    return isInBrackets(i_Facts, "[]", Place::InLiterals);
}

bool hasAbsolutePathInBrackets(Facts i_Facts)
{
    const std::string text = Text::withoutLiterals(i_Facts.text);
    for (std::size_t open = text.find('['); open != std::string::npos; open = text.find('[', open + 1))
    {
        const std::size_t next = Text::skipSpaces(text, open + 1);
        if (next < text.size() && text[next] == '/')
        {
            return true;
        }
    }
    return false;
}

// --- Steps --------------------------------------------------------------------------------------

bool hasNodeType(Facts i_Facts)
{
    return anyStep(i_Facts, [](const BranchFact&, const StepFact& i_Step, std::size_t)
                   { return i_Step.test.ends_with("()()"); });
}

bool beginsWithAnotherAxis(Facts i_Facts)
{
    return !i_Facts.isPredicate &&
           anyStep(i_Facts, [](const BranchFact&, const StepFact& i_Step, std::size_t i_Index)
                   { return i_Index == 0 && !i_Step.isDeep && i_Step.axis != "child" && !isAttribute(i_Step); });
}

bool beginsWithAttribute(Facts i_Facts)
{
    return !i_Facts.isPredicate && anyStep(i_Facts, [](const BranchFact&, const StepFact& i_Step, std::size_t i_Index)
                                           { return i_Index == 0 && isAttribute(i_Step); });
}

bool hasDeepAttribute(Facts i_Facts)
{
    return anyStep(i_Facts, [](const BranchFact&, const StepFact& i_Step, std::size_t i_Index)
                   { return i_Index > 0 && i_Step.isDeep && isAttribute(i_Step); });
}

bool beginsUpward(Facts i_Facts)
{
    return anyStep(i_Facts,
                   [](const BranchFact&, const StepFact& i_Step, std::size_t i_Index)
                   {
                       return i_Index == 0 && i_Step.isDeep && i_Step.axis != "child" && i_Step.axis != "descendant" &&
                              i_Step.axis != "self" && !isAttribute(i_Step);
                   });
}

bool hasUnknownAxis(Facts i_Facts)
{
    return anyStep(i_Facts, [](const BranchFact&, const StepFact& i_Step, std::size_t)
                   { return i_Step.text.starts_with("namespace") && i_Step.text.find("::") != std::string::npos; });
}

bool isBeforeValue(const BranchFact& i_Branch, std::size_t i_Index)
{
    return i_Index + 1 == i_Branch.steps.size() || isAttribute(i_Branch.steps[i_Index + 1]);
}

bool endsWithPrecedingSibling(Facts i_Facts)
{
    return anyStep(
        i_Facts, [](const BranchFact& i_Branch, const StepFact& i_Step, std::size_t i_Index)
        { return i_Step.axis == "preceding-sibling" && i_Step.test != "*" && isBeforeValue(i_Branch, i_Index); });
}

bool goesOnBehindPrecedingSibling(Facts i_Facts)
{
    return anyStep(i_Facts, [](const BranchFact& i_Branch, const StepFact& i_Step, std::size_t i_Index)
                   { return i_Step.axis == "preceding-sibling" && !isBeforeValue(i_Branch, i_Index); });
}

bool goesOnBehindAttribute(Facts i_Facts)
{
    return anyStep(i_Facts, [](const BranchFact& i_Branch, const StepFact& i_Step, std::size_t i_Index)
                   { return isAttribute(i_Step) && i_Index + 1 < i_Branch.steps.size(); });
}

bool hasPredicateOfAttribute(Facts i_Facts)
{
    return anyStep(i_Facts, [](const BranchFact&, const StepFact& i_Step, std::size_t)
                   { return isAttribute(i_Step) && !i_Step.predicates.empty(); });
}

bool takesAllAttributes(const BranchFact& i_Branch)
{
    return endsInAttribute(i_Branch) && i_Branch.steps.back().test == "*";
}

bool hasAllAttributes(Facts i_Facts)
{
    return anyBranch(i_Facts, takesAllAttributes);
}

bool hasUnionWithAllAttributes(Facts i_Facts)
{
    return std::any_of(i_Facts.paths.begin(), i_Facts.paths.end(),
                       [](const PathFact& i_Path)
                       {
                           return i_Path.branches.size() > 1 &&
                                  std::any_of(i_Path.branches.begin(), i_Path.branches.end(), takesAllAttributes);
                       });
}

bool hasUnionOfElementsAndAttributes(Facts i_Facts)
{
    return std::any_of(i_Facts.paths.begin(), i_Facts.paths.end(),
                       [](const PathFact& i_Path)
                       {
                           const auto count =
                               std::count_if(i_Path.branches.begin(), i_Path.branches.end(), endsInAttribute);
                           return count > 0 && count < static_cast<std::ptrdiff_t>(i_Path.branches.size());
                       });
}

bool hasBrokenStep(Facts i_Facts)
{
    return anyStep(i_Facts, [](const BranchFact&, const StepFact& i_Step, std::size_t) { return i_Step.code != 0; }) ||
           (i_Facts.isPredicate && i_Facts.isRefused());
}

// --- Positions ----------------------------------------------------------------------------------

bool isPositional(const StepFact& i_Step)
{
    const auto isPosition = [](const std::string& i_Predicate)
    {
        return Text::isNumber(i_Predicate) || i_Predicate.find("position()") != std::string::npos ||
               i_Predicate.find("last()") != std::string::npos;
    };
    return std::any_of(i_Step.predicates.begin(), i_Step.predicates.end(), isPosition);
}

bool hasPredicateOfDeepStep(Facts i_Facts)
{
    return anyStep(i_Facts, [](const BranchFact&, const StepFact& i_Step, std::size_t)
                   { return i_Step.isDeep && i_Step.test == "*" && !i_Step.predicates.empty(); });
}

bool hasPositionOfDescendant(Facts i_Facts)
{
    return anyStep(i_Facts, [](const BranchFact&, const StepFact& i_Step, std::size_t)
                   { return i_Step.axis == "descendant" && isPositional(i_Step); });
}

bool hasPositionOfPrecedingSibling(Facts i_Facts)
{
    return anyStep(i_Facts, [](const BranchFact&, const StepFact& i_Step, std::size_t)
                   { return i_Step.axis == "preceding-sibling" && isPositional(i_Step); });
}

/// The only token of a predicate; null if there are several or none.
const TokenFact* loneToken(Facts i_Facts)
{
    return i_Facts.isPredicate && i_Facts.tokens.size() == 1 ? &i_Facts.tokens.front() : nullptr;
}

bool isOddPosition(Facts i_Facts)
{
    const TokenFact* const pToken = loneToken(i_Facts);
    return pToken != nullptr && pToken->type == ValueType::Number && !Text::isLiteral(pToken->text) &&
           pToken->text != "." && (pToken->text.find('.') != std::string::npos || pToken->text.starts_with('0'));
}

bool isQuotedPosition(Facts i_Facts)
{
    const TokenFact* const pToken = loneToken(i_Facts);
    return pToken != nullptr && pToken->type == ValueType::Number && Text::isLiteral(pToken->text);
}

bool isText(Facts i_Facts)
{
    const TreeNode* const pResult = i_Facts.result();
    return i_Facts.isPredicate && pResult != nullptr && pResult->type == ValueType::String;
}

bool fails(Facts i_Facts)
{
    if (!i_Facts.isPredicate || i_Facts.isRefused())
    {
        return false;
    }
    const bool isCodeTold =
        std::any_of(i_Facts.codes.begin(), i_Facts.codes.end(), [](const auto& i_Code) { return i_Code.first != 0; });
    const TreeNode* const pResult = i_Facts.result();
    const bool needsContext = !i_Facts.hasDocument && FactQueries::hasToken(i_Facts, "name");
    return isCodeTold || (!needsContext && (pResult == nullptr || pResult->type == ValueType::None));
}

bool hasFullStopInPredicate(Facts i_Facts)
{
    return i_Facts.isPredicate && FactQueries::hasToken(i_Facts, ".");
}

// --- Elements as values -------------------------------------------------------------------------

bool isElementPath(Facts i_Facts, const TreeNode& i_Node)
{
    const PathFact* const pPath = isPath(i_Node) ? FactQueries::pathOf(i_Facts, i_Node) : nullptr;
    return pPath != nullptr && std::any_of(pPath->branches.begin(), pPath->branches.end(),
                                           [](const BranchFact& i_Branch) { return !endsInAttribute(i_Branch); });
}

bool takesElement(Facts i_Facts, const TreeNode& i_Node)
{
    return std::any_of(i_Node.children.begin(), i_Node.children.end(),
                       [&](std::size_t i_Child) { return isElementPath(i_Facts, i_Facts.nodes[i_Child]); });
}

bool comparesElement(Facts i_Facts)
{
    return anyNode(i_Facts, [&](const TreeNode& i_Node)
                   { return FactQueries::isComparison(i_Node.text) && takesElement(i_Facts, i_Node); });
}

bool takesTextOfElement(Facts i_Facts)
{
    const TreeNode* const pResult = i_Facts.result();
    if (!i_Facts.isPredicate && pResult != nullptr && isElementPath(i_Facts, *pResult))
    {
        return true;
    }
    return comparesElement(i_Facts) ||
           anyNode(i_Facts,
                   [&](const TreeNode& i_Node)
                   {
                       const XPathLanguage::Function* const pFunction = FactQueries::functionOf(i_Node);
                       return pFunction != nullptr && pFunction->reads == XPathLanguage::ReadsValues &&
                              takesElement(i_Facts, i_Node);
                   });
}

bool asksDocumentWithNamespace(Facts i_Facts)
{
    return i_Facts.hasDefaultNamespace && !i_Facts.paths.empty();
}

constexpr DialectRule s_Rules[] = {
    {15, hasNodeType},
    {27, takesTextOfElement},
    {28, comparesElement},
    {29, asksDocumentWithNamespace},
    {30, beginsWithAnotherAxis},
    {31, beginsWithAttribute},
    {32, hasDeepAttribute},
    {33, beginsUpward},
    {34, hasUnknownAxis},
    {35, endsWithPrecedingSibling},
    {36, goesOnBehindPrecedingSibling},
    {37, goesOnBehindAttribute},
    {38, hasPredicateOfAttribute},
    {39, hasAllAttributes},
    {40, hasUnionWithAllAttributes},
    {41, hasUnionOfElementsAndAttributes},
    {42, hasBrokenStep},
    {45, hasBarInBrackets},
    {46, hasSlashInBrackets},
    {47, hasNestedBrackets},
    {48, hasBracketInLiteral},
    {49, hasAbsolutePathInBrackets},
    {50, isOddPosition},
    {51, isQuotedPosition},
    {52, isText},
    {53, fails},
    {54, hasPredicateOfDeepStep},
    {55, hasPositionOfDescendant},
    {56, hasPositionOfPrecedingSibling},
    {57, hasFullStopInPredicate},
};

} // namespace

std::span<const DialectRule> pathRules()
{
    return s_Rules;
}
