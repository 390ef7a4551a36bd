#include "explain/ExplanationDot.h"

#include "advice/ExpressionText.h"
#include "explain/ExplanationText.h"
#include "explain/FactQueries.h"
#include "system/Console.h"

#include <string_view>

namespace
{

/// \p i_Text as a quoted text of the Graphviz language. It may have several lines.
std::string quoted(std::string_view i_Text)
{
    std::string result = "\"";
    for (const char byte : i_Text)
    {
        if (byte == '\n')
        {
            result += "\\l";
            continue;
        }
        if (byte == '"' || byte == '\\')
        {
            result += '\\';
        }
        result += byte;
    }
    return result + '"';
}

std::string nodeName(std::size_t i_Node)
{
    return "n" + std::to_string(i_Node);
}

std::string oneLine(std::string_view i_Text)
{
    return Console::onOneLine(ExpressionText::trim(i_Text));
}

/// All steps of a path, one per line.
std::string stepsOf(const PathFact& i_Path)
{
    std::string text;
    for (const BranchFact& branch : i_Path.branches)
    {
        text += i_Path.branches.size() > 1 ? "branch " + oneLine(branch.text) + '\n' : "";
        for (const StepFact& step : branch.steps)
        {
            text += (step.isDeep ? "// " : "/ ") + step.axis + "::" + oneLine(step.test);
            for (const std::string& predicate : step.predicates)
            {
                text += " [" + oneLine(predicate) + ']';
            }
            text += '\n';
        }
    }
    return text;
}

std::string shapeOf(const ExpressionFacts& i_Facts, std::size_t i_Node)
{
    const TreeNode& node = i_Facts.nodes[i_Node];
    if (node.isOperator)
    {
        return node.failed ? "shape=ellipse, style=dashed" : "shape=ellipse";
    }
    return FactQueries::isPath(node) ? "shape=box" : "shape=plaintext";
}

std::string labelOf(const ExpressionFacts& i_Facts, std::size_t i_Node)
{
    const TreeNode& node = i_Facts.nodes[i_Node];
    const std::optional<std::string> value = node.isOperator ? FactQueries::valueOf(i_Facts, i_Node) : std::nullopt;
    return oneLine(node.text) + (value ? " = " + oneLine(*value) : "");
}

void printSteps(const ExpressionFacts& i_Facts, std::size_t i_Node, std::string& io_Text)
{
    const PathFact* const pPath =
        FactQueries::isPath(i_Facts.nodes[i_Node]) ? FactQueries::pathOf(i_Facts, i_Facts.nodes[i_Node]) : nullptr;
    if (pPath != nullptr)
    {
        const std::string name = "p" + std::to_string(i_Node);
        io_Text += "  " + name + " [shape=note, label=" + quoted(stepsOf(*pPath)) + "];\n";
        io_Text += "  " + nodeName(i_Node) + " -> " + name + " [style=dotted, arrowhead=none];\n";
    }
}

} // namespace

std::string printExplanationDot(const ExpressionFacts& i_Facts)
{
    std::string text = "digraph expression {\n  label=" + quoted(oneLine(i_Facts.text)) + ";\n";
    if (i_Facts.unobserved)
    {
        text += "  // " + describeUnobserved(i_Facts) + '\n';
    }
    for (std::size_t i = 0; i < i_Facts.nodes.size(); ++i)
    {
        text += "  " + nodeName(i) + " [" + shapeOf(i_Facts, i) + ", label=" + quoted(labelOf(i_Facts, i)) + "];\n";
        for (const std::size_t child : i_Facts.nodes[i].children)
        {
            text += "  " + nodeName(i) + " -> " + nodeName(child) + ";\n";
        }
        printSteps(i_Facts, i, text);
    }
    return text + "}\n";
}
