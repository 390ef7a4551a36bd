#include "advice/RefusalAdvisor.h"

#include "advice/ExpressionText.h"
#include "advice/Suspects.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <algorithm>
#include <stdexcept>

namespace
{

constexpr std::size_t s_MaximumSuspects = 16;
constexpr std::size_t s_None = std::string::npos;
constexpr int s_DeepestNesting = 256;

/// \p i_Expression with all suspects replaced, except the one at \p i_Kept.
std::string replaceAllBut(std::size_t i_Kept, const std::string& i_Expression, const std::vector<Suspect>& i_Suspects)
{
    std::string result;
    std::size_t place = 0;
    for (std::size_t i = 0; i < i_Suspects.size(); ++i)
    {
        const Suspect& suspect = i_Suspects[i];
        result.append(i_Expression, place, suspect.begin - place);
        result += i == i_Kept ? i_Expression.substr(suspect.begin, suspect.length) : suspect.replacement;
        place = suspect.begin + suspect.length;
    }
    return result.append(i_Expression, place, s_None);
}

void addOnce(const Hint& i_Hint, std::vector<Hint>& io_Hints)
{
    const auto isSame = [&](const Hint& i_Other)
    { return i_Other.difference == i_Hint.difference && i_Other.text == i_Hint.text; };
    if (std::none_of(io_Hints.begin(), io_Hints.end(), isSame))
    {
        io_Hints.push_back(i_Hint);
    }
}

bool isTooDeep(const std::string& i_Expression)
{
    int depth = 0;
    int deepest = 0;
    for (const char byte : ExpressionText::withoutLiterals(i_Expression))
    {
        depth += byte == '(' || byte == '[' ? 1 : 0;
        depth -= byte == ')' || byte == ']' ? 1 : 0;
        deepest = std::max(deepest, depth);
    }
    return deepest > s_DeepestNesting;
}

} // namespace

std::vector<Hint> RefusalAdvisor::whyRefused(const std::string& i_Expression)
{
    if (isTooDeep(i_Expression))
    {
        return {{19, "parentheses, calls and predicates may be nested at most 256 levels deep"}};
    }
    try
    {
        return askThePlugin(i_Expression);
    }
    catch (const std::runtime_error&)
    {
        return {}; // no place for the document: the error itself is told all the same
    }
}

std::vector<Hint> RefusalAdvisor::askThePlugin(const std::string& i_Expression)
{
    std::vector<Suspect> suspects = findSuspects(i_Expression);
    suspects.resize(std::min(suspects.size(), s_MaximumSuspects), {0, 0, "", {}});
    std::vector<Hint> hints;
    if (suspects.empty() || !isRecognised(replaceAllBut(s_None, i_Expression, suspects)))
    {
        return hints;
    }
    for (std::size_t i = 0; i < suspects.size(); ++i)
    {
        if (!isRecognised(replaceAllBut(i, i_Expression, suspects)))
        {
            addOnce(suspects[i].hint, hints);
        }
    }
    return hints;
}

bool RefusalAdvisor::isRecognised(const std::string& i_Expression)
{
    if (m_pDocument == nullptr)
    {
        m_pDocument = std::make_unique<MinimalDocument>();
    }
    return m_Evaluator.probe(m_pDocument->path(), i_Expression).code != XML_PLUGIN_ERROR_XPATH_NOT_RECOGNISED;
}
