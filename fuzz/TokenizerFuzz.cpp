// Input: an expression. The tokenizer's two passes, its memory, quick code against general code, and its answer while
// traced.
#include "FuzzTarget.h"

#include "Evaluations.h"
#include "Printers.h"
#include "compile/XPathExpressionsParser.h"
#include "compile/XPathTokenizer.h"
#include "values/XPathQuickCode.h"

#include <cstdint>
#include <string>

using namespace XmlPlugin;

namespace
{

/// Texts up to this length are also read without the memory of the look-ahead.
constexpr int s_ShortLength = 40;
/// Recording every production of a longer text takes too long.
constexpr int s_TracedLength = 120;

using Recogniser = std::uint32_t (XPathTokenizer::*)(std::uint32_t, bool);

struct Production
{
    const char* m_Name;
    Recogniser m_Recogniser;
};

#define PRODUCTION(name)                                                                                               \
    {                                                                                                                  \
#name, &XPathTokenizer::name                                                                                   \
    }
constexpr Production s_Productions[] = {PRODUCTION(isExpr),
                                        PRODUCTION(isOrExpr),
                                        PRODUCTION(isAndExpr),
                                        PRODUCTION(isEqualityExpr),
                                        PRODUCTION(isRelationalExpr),
                                        PRODUCTION(isAdditiveExpr),
                                        PRODUCTION(isMultiplicativeExpr),
                                        PRODUCTION(isUnaryExpr),
                                        PRODUCTION(isUnionExpr),
                                        PRODUCTION(isPathExpr),
                                        PRODUCTION(isFilterExpr),
                                        PRODUCTION(isPrimaryExpr),
                                        PRODUCTION(isFunctionCall),
                                        PRODUCTION(isArgument),
                                        PRODUCTION(isPredicate),
                                        PRODUCTION(isPredicateExpr),
                                        PRODUCTION(isLocationPath),
                                        PRODUCTION(isAbsoluteLocationPath),
                                        PRODUCTION(isAbbreviatedAbsoluteLocationPath),
                                        PRODUCTION(isRelativeLocationPath),
                                        PRODUCTION(isStep),
                                        PRODUCTION(isAbbreviatedStep),
                                        PRODUCTION(isAxisSpecifier),
                                        PRODUCTION(isAbbreviatedAxisSpecifier),
                                        PRODUCTION(isAxisName),
                                        PRODUCTION(isNodeTest),
                                        PRODUCTION(isNodeType),
                                        PRODUCTION(isNameTest),
                                        PRODUCTION(isLiteral),
                                        PRODUCTION(isNumber),
                                        PRODUCTION(isDigits),
                                        PRODUCTION(isFunctionName),
                                        PRODUCTION(isVariableReference),
                                        PRODUCTION(isQName),
                                        PRODUCTION(isPrefixedName),
                                        PRODUCTION(isNCName)};
#undef PRODUCTION

/// What a tokenizer makes of its text, as text.
std::string outcome(XPathTokenizer& io_Tokenizer)
{
    const TErrorCode code = io_Tokenizer.start();
    if (code != 0)
    {
        return std::to_string(code) + " up to " + std::to_string(io_Tokenizer.recognisedUpTo());
    }
    return "tokens: " + printElements(io_Tokenizer.outVector());
}

std::string outcome(const String& i_Text)
{
    XPathTokenizer tokenizer(i_Text);
    return outcome(tokenizer);
}

/// The expression in postfix order.
std::string compiled(const String& i_Text)
{
    const XPathExpressionsParser parser(i_Text);
    return std::to_string(parser.status()) + ": " + printElements(parser.postfix());
}

void checkTokens(const String& i_Text)
{
    XPathTokenizer tokenizer(i_Text);
    const TErrorCode code = tokenizer.start();
    const std::size_t count = tokenizer.outVector().size();
    FUZZ_CHECK(code == 0 || code == XML_PLUGIN_ERROR_XPATH_NOT_RECOGNISED, std::to_string(code));
    FUZZ_CHECK((code == 0) == (count > 0), i_Text.toNarrow());
    const auto length = static_cast<std::size_t>(i_Text.length());
    FUZZ_CHECK(count <= (length + 2) * XPathTokenizer::s_TokensPerCharacter + XPathTokenizer::s_TokensOnTop,
               std::to_string(count));
    FUZZ_CHECK(tokenizer.recognisedUpTo() <= length, i_Text.toNarrow());
}

bool has(const std::wstring& i_Text, const wchar_t* i_Part)
{
    return i_Text.find(i_Part) != std::wstring::npos;
}

std::wstring withoutBlanks(std::wstring_view i_Text)
{
    std::wstring text(i_Text);
    std::erase(text, L' ');
    return text;
}

/// The tokens are the text, where no difference of the language leaves something out (several
/// "and"), puts something in ("-") or takes the quotes away (unions of literals).
void checkNothingIsLost(const String& i_Text)
{
    const std::wstring text = withoutBlanks(viewOf(i_Text));
    if (has(text, L"and") || has(text, L"-") || has(text, L"|"))
    {
        return;
    }
    XPathTokenizer tokenizer(i_Text);
    if (tokenizer.start() != 0)
    {
        return;
    }
    std::wstring tokens;
    for (const auto& pToken : tokenizer.outVector())
    {
        tokens += withoutBlanks(viewOf(pToken->text()));
    }
    FUZZ_CHECK(tokens == text, i_Text.toNarrow() + "\n" + printElements(tokenizer.outVector()));
}

/// At every place every production takes with emission what it takes without, and looking ahead
/// leaves nothing behind. The places are those of the text in its parentheses.
void checkPasses(const String& i_Text, const std::string& i_Expected)
{
    XPathTokenizer looking(i_Text);
    XPathTokenizer emitting(i_Text);
    for (std::uint32_t offset = 0; offset <= static_cast<std::uint32_t>(i_Text.length()) + 2; ++offset)
    {
        for (const Production& production : s_Productions)
        {
            const std::uint32_t length = (looking.*production.m_Recogniser)(offset, false);
            FUZZ_CHECK((emitting.*production.m_Recogniser)(offset, true) == length,
                       std::string(production.m_Name) + " at " + std::to_string(offset) + " of " + i_Text.toNarrow());
        }
    }
    const std::string afterwards = outcome(looking);
    const bool isRefused = !i_Expected.starts_with("tokens");
    FUZZ_CHECK(isRefused ? !afterwards.starts_with("tokens") : afterwards == i_Expected, afterwards);
}

} // namespace

void fuzzOne(std::string_view i_Bytes)
{
    enum Check : unsigned
    {
        NothingIsLost,
        GeneralCode,
        Traced,
        Passes,
        WithoutMemory,
        Count
    };
    const CheckChoice choice(i_Bytes, Count);
    const String text = expressionText(i_Bytes);
    checkTokens(text);
    if (choice.isDue(NothingIsLost))
    {
        checkNothingIsLost(text);
    }
    if (choice.isDue(GeneralCode))
    {
        const std::string postfix = compiled(text);
        const XPathQuickCode::Forbidden general;
        FUZZ_CHECK(compiled(text) == postfix, postfix);
    }
    if (choice.isDue(Traced) && text.length() <= s_TracedLength)
    {
        const std::string expected = outcome(text);
        const std::string postfix = compiled(text);
        // Traced, every production is gone through.
        const SwallowedTrace trace;
        FUZZ_CHECK(outcome(text) == expected, expected);
        FUZZ_CHECK(compiled(text) == postfix, postfix);
    }
    if (text.length() > s_ShortLength)
    {
        return;
    }
    if (choice.isDue(Passes))
    {
        checkPasses(text, outcome(text));
    }
    if (choice.isDue(WithoutMemory))
    {
        const std::string expected = outcome(text);
        XPathTokenizer forgetful(text);
        forgetful.forgetLookAhead();
        const std::string plain = outcome(forgetful);
        FUZZ_CHECK(plain == expected, plain + "\n" + expected);
    }
}
