#include "explain/ExplanationText.h"

#include "advice/ExpressionText.h"
#include "explain/DialectDocument.h"
#include "explain/FactQueries.h"
#include "output/ErrorReport.h"
#include "system/Console.h"

#include <algorithm>
#include <map>
#include <string_view>

namespace Text = ExpressionText;

namespace
{

constexpr std::size_t s_Width = 80;
/// The number of levels of a tree that are drawn; deeper levels are left out.
constexpr std::size_t s_Deepest = 24;

const char* typeName(ValueType i_Type)
{
    switch (i_Type)
    {
    case ValueType::Boolean:
        return "boolean";
    case ValueType::String:
        return "string";
    case ValueType::Number:
        return "number";
    case ValueType::NodeSet:
        return "nodes";
    default:
        return "no value";
    }
}

std::string oneLine(std::string_view i_Text)
{
    return Console::onOneLine(Text::trim(i_Text));
}

/// Which arguments an operator lacks; "" if it has all of them.
std::string describeGap(const TreeNode& i_Node)
{
    if (i_Node.children.size() >= i_Node.wanted)
    {
        return "";
    }
    const bool isCall = FactQueries::functionOf(i_Node) != nullptr && i_Node.wanted == 1;
    return isCall ? "without argument"
                  : "finds " + std::to_string(i_Node.children.size()) + " of " + std::to_string(i_Node.wanted) +
                        " arguments";
}

std::string describeOperator(const ExpressionFacts& i_Facts, std::size_t i_Node)
{
    const TreeNode& node = i_Facts.nodes[i_Node];
    const std::string gap = describeGap(node);
    if (node.failed)
    {
        return gap.empty() ? "fails" : "fails: " + gap;
    }
    const bool isUnknown = node.type == ValueType::None && !i_Facts.hasDocument && !node.isConstant;
    std::string text = gap + (gap.empty() || isUnknown ? "" : ", ") + (isUnknown ? "" : typeName(node.type));
    if (const std::optional<std::string> value = FactQueries::valueOf(i_Facts, i_Node))
    {
        text += node.type == ValueType::String ? " '" + oneLine(*value) + '\'' : ' ' + oneLine(*value);
    }
    return text;
}

/// The value of an operand, or the result of an operator.
std::string describe(const ExpressionFacts& i_Facts, std::size_t i_Node)
{
    const TreeNode& node = i_Facts.nodes[i_Node];
    std::string note;
    if (node.isOperator)
    {
        note = describeOperator(i_Facts, i_Node);
    }
    else if (FactQueries::isPath(node))
    {
        const bool isCounted = i_Facts.hasDocument && node.value;
        note = isCounted ? *node.value + (*node.value == "1" ? " node" : " nodes") : "path";
    }
    else if (Text::isLiteral(node.text) && node.type == ValueType::Number)
    {
        note = "number"; // it looks like a string
    }
    return oneLine(node.text) + (note.empty() ? "" : "   " + note);
}

/// Draws one tree of the forest. A tree may be as deep as the expression is long.
class TreePrinter
{
public:
    TreePrinter(const ExpressionFacts& i_Facts, std::string& io_Text) : m_Facts(i_Facts), m_Text(io_Text) {}

    void print(std::size_t i_Root, const std::string& i_Indent)
    {
        m_Text += i_Indent + describe(m_Facts, i_Root) + '\n';
        pushChildren(i_Root, i_Indent, 1);
        while (!m_Pending.empty())
        {
            const Branch branch = std::move(m_Pending.back());
            m_Pending.pop_back();
            m_Text += branch.indent + (branch.isLast ? "└─ " : "├─ ") + describe(m_Facts, branch.node) + '\n';
            pushChildren(branch.node, branch.indent + (branch.isLast ? "   " : "│  "), branch.depth + 1);
        }
    }

private:
    struct Branch
    {
        std::size_t node;
        std::string indent;
        std::size_t depth;
        bool isLast;
    };

    void pushChildren(std::size_t i_Node, const std::string& i_Indent, std::size_t i_Depth)
    {
        const auto& children = m_Facts.nodes[i_Node].children;
        if (!children.empty() && i_Depth > s_Deepest)
        {
            m_Text += i_Indent + "└─ ...\n";
            return;
        }
        for (std::size_t i = children.size(); i-- > 0;)
        {
            m_Pending.push_back({children[i], i_Indent, i_Depth, i + 1 == children.size()});
        }
    }

    const ExpressionFacts& m_Facts;
    std::string& m_Text;
    std::vector<Branch> m_Pending;
};

/// Wraps words to lines of at most s_Width columns; all lines except the first are indented.
std::string wrap(const std::string& i_Text, std::size_t i_Indent)
{
    std::string result;
    std::string line;
    std::size_t begin = 0;
    while (begin < i_Text.size())
    {
        const std::size_t end = std::min(i_Text.find(' ', begin), i_Text.size());
        const std::string word = i_Text.substr(begin, end - begin);
        if (!line.empty() && i_Indent + line.size() + 1 + word.size() > s_Width)
        {
            result += line + '\n' + std::string(i_Indent, ' ');
            line.clear();
        }
        line += (line.empty() ? "" : " ") + word;
        begin = end + 1;
    }
    return result + line;
}

std::string printTokens(const ExpressionFacts& i_Facts)
{
    std::string text;
    for (const TokenFact& token : i_Facts.tokens)
    {
        text += (text.empty() ? "" : "  ") + oneLine(token.text);
    }
    return text;
}

std::string printPostfix(const ExpressionFacts& i_Facts)
{
    std::string text;
    for (const TreeNode& node : i_Facts.nodes)
    {
        text += (text.empty() ? "" : "  ") + oneLine(node.text);
    }
    return text;
}

void printForest(const ExpressionFacts& i_Facts, const std::string& i_Indent, std::string& io_Text)
{
    TreePrinter printer(i_Facts, io_Text);
    if (!i_Facts.stack.empty())
    {
        printer.print(i_Facts.stack.back(), i_Indent);
    }
    for (std::size_t i = 0; i + 1 < i_Facts.stack.size(); ++i)
    {
        io_Text += i_Indent + "left over:\n";
        printer.print(i_Facts.stack[i], i_Indent + "  ");
    }
    for (std::size_t i = 0; i < i_Facts.nodes.size(); ++i)
    {
        if (i_Facts.nodes[i].failed)
        {
            io_Text += i_Indent + "lost:\n";
            printer.print(i, i_Indent + "  ");
        }
    }
}

std::string describeStep(const StepFact& i_Step, bool i_IsFirst, bool i_IsPredicate)
{
    std::string text = i_Step.isDeep ? "// " : "";
    text += i_Step.axis + "::" + oneLine(i_Step.test);
    if (i_Step.code != 0)
    {
        return text + "   error " + std::to_string(i_Step.code) + ": " + xmlErrorText(i_Step.code) +
               ", so the path selects nothing";
    }
    if (i_Step.isDeep && i_Step.axis != "attribute")
    {
        text += i_IsFirst && !i_IsPredicate ? "   the document element or any level below" : "   any level below";
    }
    else if (i_IsFirst && !i_IsPredicate)
    {
        text += "   the document element";
    }
    return text;
}

void printBranch(const BranchFact& i_Branch, bool i_IsPredicate, const std::string& i_Indent, std::string& io_Text)
{
    for (std::size_t i = 0; i < i_Branch.steps.size(); ++i)
    {
        const StepFact& step = i_Branch.steps[i];
        io_Text += i_Indent + std::to_string(i + 1) + ". " + describeStep(step, i == 0, i_IsPredicate) + '\n';
        for (const std::string& predicate : step.predicates)
        {
            io_Text += i_Indent + "     [" + oneLine(predicate) + "]\n";
        }
    }
}

void printPaths(const ExpressionFacts& i_Facts, const std::string& i_Indent, std::string& io_Text)
{
    for (const PathFact& path : i_Facts.paths)
    {
        io_Text += i_Indent + "Path " + oneLine(path.text) + '\n';
        for (std::size_t i = 0; i < path.branches.size(); ++i)
        {
            const bool isSeveral = path.branches.size() > 1;
            if (isSeveral)
            {
                io_Text +=
                    i_Indent + "  branch " + std::to_string(i + 1) + ": " + oneLine(path.branches[i].text) + '\n';
            }
            printBranch(path.branches[i], i_Facts.isPredicate, i_Indent + (isSeveral ? "    " : "  "), io_Text);
        }
    }
}

/// The conversions without duplicates.
void printConversions(const ExpressionFacts& i_Facts, const std::string& i_Indent, std::string& io_Text)
{
    std::vector<std::string> lines;
    for (const ConversionFact& conversion : i_Facts.conversions)
    {
        std::string line =
            conversion.function + ": argument " + std::to_string(conversion.argument) + " by " + conversion.kind;
        if (i_Facts.hasDocument || i_Facts.paths.empty())
        {
            line += " is " + (conversion.kind == "string()" ? '\'' + oneLine(conversion.result) + '\''
                                                            : oneLine(conversion.result));
        }
        if (std::find(lines.begin(), lines.end(), line) == lines.end())
        {
            lines.push_back(std::move(line));
        }
    }
    if (!lines.empty())
    {
        io_Text += i_Indent + "Conversions\n";
    }
    for (const std::string& line : lines)
    {
        io_Text.append(i_Indent).append("  ").append(line).append("\n");
    }
}

void printPredicates(const ExpressionFacts& i_Facts, std::string& io_Text)
{
    for (const ExpressionFacts& predicate : i_Facts.predicates)
    {
        io_Text += "Predicate [" + oneLine(predicate.text) + "]\n";
        if (predicate.isRefused())
        {
            io_Text += "  not recognised, so the path selects nothing\n";
            continue;
        }
        if (predicate.tokens.size() > 1)
        {
            io_Text += "  Tokens   " + printTokens(predicate) + '\n';
            io_Text += "  Postfix  " + printPostfix(predicate) + '\n';
        }
        io_Text +=
            "  Tree" + std::string(predicate.hasDocument ? ", for the first node that is asked about" : "") + '\n';
        printForest(predicate, "    ", io_Text);
        printPaths(predicate, "  ", io_Text);
        printConversions(predicate, "  ", io_Text);
    }
}

void printDifferences(const ExpressionFacts& i_Facts, std::string& io_Text)
{
    if (i_Facts.differences.empty())
    {
        return;
    }
    io_Text += "Differences from XPath 1.0 that it touches (docs/dialect.md)\n";
    const auto& known = DialectDocument::own().differences();
    for (const Hint& hint : i_Facts.differences)
    {
        const auto found = known.find(hint.difference);
        const std::string summary =
            found == known.end() || found->second.summary.empty() ? "" : ". " + found->second.summary;
        std::string name = differenceName(hint.difference);
        name.resize(std::max<std::size_t>(name.size(), 5), ' ');
        io_Text += "  " + name + "  " + wrap(hint.text + summary, 9) + '\n';
    }
}

std::string describeAnswer(const ExpressionFacts& i_Facts)
{
    if (i_Facts.code != 0)
    {
        return "error " + std::to_string(i_Facts.code) + ": " + xmlErrorText(i_Facts.code);
    }
    const TreeNode* const pResult = i_Facts.result();
    const std::size_t count = i_Facts.values.size();
    const bool isScalar = pResult != nullptr && !FactQueries::isPath(*pResult);
    if (isScalar && count == 1)
    {
        return std::string(typeName(pResult->type)) + ' ' + oneLine(i_Facts.values.front());
    }
    return count == 0 ? "no value" : std::to_string(count) + (count == 1 ? " value" : " values");
}

} // namespace

std::string printExplanation(const ExpressionFacts& i_Facts)
{
    std::string text = "Expression  " + oneLine(i_Facts.text) + '\n';
    text += "Tokens      " + printTokens(i_Facts) + '\n';
    text += "Postfix     " + printPostfix(i_Facts) + '\n';
    text += "Tree\n";
    printForest(i_Facts, "  ", text);
    printPaths(i_Facts, "", text);
    printPredicates(i_Facts, text);
    printConversions(i_Facts, "", text);
    printDifferences(i_Facts, text);
    if (i_Facts.hasDocument)
    {
        text += "Answer      " + describeAnswer(i_Facts) + '\n';
    }
    if (i_Facts.unobserved)
    {
        text += describeUnobserved(i_Facts) + '\n';
    }
    return text;
}

std::string describeUnobserved(const ExpressionFacts& i_Facts)
{
    const AnswerFact& answer = *i_Facts.unobserved;
    std::string text = "Defect      not traced, the plug-in answers otherwise: ";
    if (answer.code != i_Facts.code)
    {
        return text + (answer.code == 0 ? "no error"
                                        : "error " + std::to_string(answer.code) + ": " + xmlErrorText(answer.code));
    }
    const auto here =
        std::mismatch(answer.values.begin(), answer.values.end(), i_Facts.values.begin(), i_Facts.values.end()).first;
    text += std::to_string(answer.values.size()) + (answer.values.size() == 1 ? " value" : " values");
    const std::size_t number = static_cast<std::size_t>(here - answer.values.begin()) + 1;
    return text + (here == answer.values.end() ? "" : ", number " + std::to_string(number) + " is " + oneLine(*here));
}
