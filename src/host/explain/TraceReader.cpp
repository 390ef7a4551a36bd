#include "explain/TraceReader.h"

#include "advice/ExpressionText.h"
#include "explain/PathReader.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <string_view>

namespace
{

/// Stores the text after \p i_Start. Returns false if the record begins differently.
bool textAfter(const std::string& i_Text, std::string_view i_Start, std::string& o_Rest)
{
    if (!i_Text.starts_with(i_Start))
    {
        return false;
    }
    o_Rest = i_Text.substr(i_Start.size());
    return true;
}

/// Stores the text between \p i_Start and the last \p i_End. Returns false if the record has another form.
bool between(const std::string& i_Text, std::string_view i_Start, std::string_view i_End, std::string& o_Middle)
{
    const std::size_t end = i_Text.rfind(i_End);
    if (!i_Text.starts_with(i_Start) || end == std::string::npos || end < i_Start.size())
    {
        return false;
    }
    o_Middle = i_Text.substr(i_Start.size(), end - i_Start.size());
    return true;
}

int toNumber(std::string_view i_Text)
{
    int number = 0;
    std::from_chars(i_Text.data(), i_Text.data() + i_Text.size(), number);
    return number;
}

bool isSpecialNumber(const TreeNode& i_Node)
{
    return i_Node.value && i_Node.type == ValueType::Number &&
           (*i_Node.value == "Infinity" || *i_Node.value == "-Infinity" || *i_Node.value == "NaN");
}

/// The result of number() for an argument. For special values, the records show only the 0 that is stored with them.
std::string numberOf(const TreeNode& i_Argument, const std::string& i_Told)
{
    if (isSpecialNumber(i_Argument))
    {
        return *i_Argument.value;
    }
    const std::string text(ExpressionText::withoutQuotes(i_Argument.value.value_or(i_Argument.text)));
    return i_Argument.type == ValueType::String && !ExpressionText::isNumber(text) ? "NaN" : i_Told;
}

std::string textOfValue(const std::string& i_Text, ValueType i_Type)
{
    if (i_Type == ValueType::Boolean)
    {
        return i_Text == "0" ? "false" : "true";
    }
    return i_Text;
}

} // namespace

void TraceReader::write(const TraceRecord& i_Record)
{
    using Reader = void (TraceReader::*)(const std::string&);
    struct Row
    {
        std::wstring_view scope;
        Reader reader;
    };
    static constexpr Row s_Rows[] = {
        {L"XPathExpressionsParser::doParse()", &TraceReader::readEvaluation},
        {L"XPathTokenizer::XPathTokenizer(String xpath)", &TraceReader::readTokenizer},
        {L"XPathExpressionsParser::XPathExpressionsParser(const String & i_XPath)", &TraceReader::readDump},
        {L" XPathExpressionsParser::stackExpression", &TraceReader::readToken},
        {L"XPathPredicate::fiterNodes", &TraceReader::readPredicate},
        {L"bool XPathOperator::convertTypeParameters(const XPathExpressionsVector &expressionsVector)",
         &TraceReader::readConversion},
        {L"XPathFunction::createOutputExpression", &TraceReader::readCreated},
        {L"XPath::XPath(const String &)", &TraceReader::readPath},
        {L" XPath::splitXPath()", &TraceReader::readSplit},
        {L"XPathStep::create", &TraceReader::readStep},
        {L"PathArgument::EvaluateXPath()", &TraceReader::readPathEnd},
        {L"XPath::getValues(std::list<String>&)", &TraceReader::readPathEnd}};
    const std::wstring_view scope(i_Record.scope);
    for (const Row& row : s_Rows)
    {
        if (row.scope == scope)
        {
            (this->*row.reader)(i_Record.text.toNarrow());
            return;
        }
    }
}

// --- Reading ------------------------------------------------------------------------------------

void TraceReader::readTokenizer(const std::string& i_Text)
{
    if (std::string text; textAfter(i_Text, " xpath to XPathTokenizer ", text))
    {
        m_Tokenized = text;
        m_Tokens[text].clear();
    }
}

void TraceReader::readToken(const std::string& i_Text)
{
    TokenFact token;
    token.isOperator = true;
    if (between(i_Text, "Expression ", " pushed to expressionVector", token.text))
    {
        token.isOperator = false;
    }
    else if (!textAfter(i_Text, "gotOper for ", token.text))
    {
        token.text = i_Text.substr(0, 1); // a parenthesis or a comma
    }
    m_Tokens[m_Tokenized].push_back(token);
}

/// The record has `(text,is operator,type)|` for each token. It comes before the records of the single tokens and has
/// their types, so its entries are kept until then.
void TraceReader::readDump(const std::string& i_Text)
{
    std::string dump;
    if (!textAfter(i_Text, "Expr transformed =", dump))
    {
        return;
    }
    // The postfix list keeps the order of the operands.
    std::size_t place = 0;
    for (TokenFact& token : m_Tokens[m_Tokenized])
    {
        if (token.isOperator)
        {
            continue;
        }
        const std::string entry = "(" + std::string(ExpressionText::withoutQuotes(token.text)) + ",0,";
        const std::size_t found = dump.find(entry, place);
        if (found == std::string::npos)
        {
            return;
        }
        place = found + entry.size();
        token.type = static_cast<ValueType>(toNumber(std::string_view(dump).substr(place)));
    }
}

void TraceReader::readPredicate(const std::string& i_Text)
{
    std::string rest;
    if (textAfter(i_Text, "m_Expression ", rest))
    {
        m_PredicateTexts.push_back(rest);
    }
    else if (m_PredicateTexts.empty())
    {
        return;
    }
    else if (textAfter(i_Text, "result after runParser = ", rest))
    {
        ExpressionFacts& facts = m_Predicates[m_PredicateTexts.back()];
        ++facts.codes[toNumber(rest)];
    }
    else if (textAfter(i_Text, "result = ", rest) || i_Text == "XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION")
    {
        m_PredicateTexts.pop_back();
    }
}

void TraceReader::readEvaluation(const std::string& i_Text)
{
    std::string rest;
    if (textAfter(i_Text, " m_XPathExpressionsVector.size()", rest))
    {
        beginEvaluation();
        return;
    }
    if (m_Frames.empty())
    {
        return;
    }
    if (i_Text.starts_with("isOperator = false"))
    {
        setOperandType();
    }
    else if (between(i_Text, "pExpression =", "Start Node = ", rest))
    {
        endOperator();
        addNode(rest);
    }
    else if (textAfter(i_Text, "Arguments to read= ", rest))
    {
        beginOperator(rest);
    }
    else if (textAfter(i_Text, "pXPathOp->getOutputArgument() = ", rest))
    {
        setResult(rest);
    }
    else if (textAfter(i_Text, "pXPathOp->getDataType() = ", rest))
    {
        setType(rest);
    }
    else if (textAfter(i_Text, "result =", rest))
    {
        endEvaluation();
    }
    else
    {
        Frame& frame = m_Frames.back();
        if (!frame.operators.empty() && frame.argumentsSeen < frame.taken.size())
        {
            frame.evaluated = frame.taken[frame.taken.size() - 1 - frame.argumentsSeen++];
        }
        else if (i_Text.starts_with("Argument to evaluate "))
        {
            endOperator();
            frame.evaluated = frame.stack.empty() ? std::nullopt : std::optional(frame.stack.back());
        }
    }
}

void TraceReader::readConversion(const std::string& i_Text)
{
    if (m_Frames.empty() || m_Frames.back().pFacts == nullptr || m_Frames.back().operators.empty())
    {
        return;
    }
    Frame& frame = m_Frames.back();
    std::string rest;
    if (between(i_Text, "", " has been function prepared ", rest))
    {
        frame.conversion = rest;
    }
    else if (between(i_Text, "Expression ", " after converting created and added to function parameters", rest))
    {
        frame.lastCreated.clear(); // that was the conversion's
        addConversion(frame, rest);
    }
}

/// The first argument is converted first, and reported last. A plain number tells nothing new if a number is wanted.
void TraceReader::addConversion(Frame& io_Frame, const std::string& i_Told)
{
    ExpressionFacts& facts = *io_Frame.pFacts;
    const TreeNode& node = facts.nodes[io_Frame.operators.back()];
    const std::size_t argument = ++io_Frame.converted;
    if (argument > node.children.size())
    {
        return;
    }
    const TreeNode& given = facts.nodes[node.children[argument - 1]];
    const bool isNumber = io_Frame.conversion == "number()";
    if (isNumber && given.type == ValueType::Number && !isSpecialNumber(given))
    {
        return;
    }
    facts.conversions.insert(facts.conversions.begin() + static_cast<std::ptrdiff_t>(io_Frame.firstConversion),
                             {node.text, argument, io_Frame.conversion, isNumber ? numberOf(given, i_Told) : i_Told});
}

void TraceReader::readCreated(const std::string& i_Text)
{
    if (std::string rest; !m_Frames.empty() && between(i_Text, " expression ", " created ", rest))
    {
        m_Frames.back().lastCreated = rest;
    }
}

void TraceReader::readPath(const std::string& i_Text)
{
    if (m_PathText.empty() && textAfter(i_Text, "XPath query = ", m_PathText))
    {
        m_IsPathOpen = true;
    }
}

void TraceReader::readSplit(const std::string& i_Text)
{
    if (m_IsPathOpen && i_Text.starts_with(" m_XPathParser.getStepCount = "))
    {
        m_Branches.emplace_back();
    }
}

void TraceReader::readStep(const std::string& i_Text)
{
    std::string text;
    const std::size_t end = i_Text.rfind(" result = ");
    if (m_IsPathOpen && !m_Branches.empty() && between(i_Text, "step = ", " result = ", text))
    {
        m_Branches.back().push_back({text, toNumber(std::string_view(i_Text).substr(end + 10))});
    }
}

/// The paths in predicates are split while this path is walked.
void TraceReader::readPathEnd(const std::string& i_Text)
{
    if (i_Text.starts_with("Evaluating the xpath ["))
    {
        m_IsPathOpen = false;
    }
    if (std::string rest; textAfter(i_Text, " Output node list size ", rest) && !m_Frames.empty())
    {
        Frame& frame = m_Frames.back();
        if (frame.pFacts != nullptr && frame.evaluated)
        {
            frame.pFacts->nodes[*frame.evaluated].value = rest;
        }
    }
}

PathFact TraceReader::path() const
{
    std::vector<std::vector<std::pair<std::string, TErrorCode>>> branches;
    for (const auto& branch : m_Branches)
    {
        auto& steps = branches.emplace_back();
        std::transform(branch.begin(), branch.end(), std::back_inserter(steps),
                       [](const StepRecord& i_Step) { return std::pair(i_Step.text, i_Step.code); });
    }
    return readPathFact(m_PathText, branches);
}

// --- The evaluation -----------------------------------------------------------------------------

/// Only the first evaluation of the expression and of each predicate is read.
ExpressionFacts* TraceReader::factsToFill(bool& o_IsKnown)
{
    o_IsKnown = false;
    if (m_PredicateTexts.empty())
    {
        o_IsKnown = m_IsDone;
        m_IsDone = true;
        m_Expression.text = m_Tokenized;
        return &m_Expression;
    }
    ExpressionFacts& facts = m_Predicates[m_PredicateTexts.back()];
    o_IsKnown = !facts.nodes.empty();
    facts.text = m_PredicateTexts.back();
    return &facts;
}

void TraceReader::beginEvaluation()
{
    bool isKnown = false;
    ExpressionFacts* const pFacts = factsToFill(isKnown);
    m_Frames.push_back({});
    m_Frames.back().pFacts = isKnown ? nullptr : pFacts;
    if (!isKnown)
    {
        pFacts->tokens = m_Tokens[pFacts->text];
    }
}

void TraceReader::endEvaluation()
{
    endOperator();
    Frame& frame = m_Frames.back();
    if (frame.pFacts != nullptr)
    {
        frame.pFacts->stack = frame.stack;
    }
    m_Frames.pop_back();
}

void TraceReader::addNode(const std::string& i_Text)
{
    Frame& frame = m_Frames.back();
    if (frame.pFacts == nullptr)
    {
        return;
    }
    TreeNode node;
    node.text = i_Text;
    frame.pFacts->nodes.push_back(std::move(node));
    frame.stack.push_back(frame.pFacts->nodes.size() - 1);
}

void TraceReader::setOperandType()
{
    Frame& frame = m_Frames.back();
    if (frame.pFacts == nullptr)
    {
        return;
    }
    const std::vector<TokenFact>& tokens = frame.pFacts->tokens;
    while (frame.token < tokens.size() && tokens[frame.token].isOperator)
    {
        ++frame.token;
    }
    if (frame.token < tokens.size())
    {
        frame.pFacts->nodes.back().type = tokens[frame.token++].type;
    }
}

/// The node of the last record is an operator; it takes its arguments from the stack.
void TraceReader::beginOperator(const std::string& i_Text)
{
    Frame& frame = m_Frames.back();
    if (frame.pFacts == nullptr || frame.stack.empty())
    {
        return;
    }
    const std::size_t self = frame.stack.back();
    frame.stack.pop_back();
    TreeNode& node = frame.pFacts->nodes[self];
    node.isOperator = true;
    node.type = ValueType::None;
    node.wanted = static_cast<std::size_t>(std::max(toNumber(i_Text), 0));
    const std::size_t count = std::min(node.wanted, frame.stack.size());
    node.children.assign(frame.stack.end() - static_cast<std::ptrdiff_t>(count), frame.stack.end());
    frame.stack.resize(frame.stack.size() - count);
    frame.taken = node.children;
    frame.argumentsSeen = 0;
    frame.converted = 0;
    frame.firstConversion = frame.pFacts->conversions.size();
    frame.lastCreated.clear();
    node.failed = true; // until its result is told
    frame.operators.assign(1, self);
}

void TraceReader::endOperator()
{
    m_Frames.back().operators.clear();
}

void TraceReader::setResult(const std::string& i_Text)
{
    Frame& frame = m_Frames.back();
    if (frame.pFacts == nullptr || frame.operators.empty())
    {
        return;
    }
    TreeNode& node = frame.pFacts->nodes[frame.operators.back()];
    node.failed = false;
    node.value = frame.lastCreated.empty() ? i_Text : frame.lastCreated;
    frame.stack.push_back(frame.operators.back());
}

void TraceReader::setType(const std::string& i_Text)
{
    Frame& frame = m_Frames.back();
    if (frame.pFacts == nullptr || frame.operators.empty())
    {
        return;
    }
    TreeNode& node = frame.pFacts->nodes[frame.operators.back()];
    node.type = static_cast<ValueType>(toNumber(i_Text));
    node.value = node.type == ValueType::None ? std::nullopt : std::optional(textOfValue(*node.value, node.type));
}
