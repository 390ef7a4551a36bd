// Input: an expression up to the first line feed, and the bytes of the document that it is asked of.
#include "EvaluationChecks.h"
#include "InputFile.h"
#include "TreeChecks.h"

#include "boundary/XPathEngine.h"
#include "boundary/XmlCache.h"
#include "boundary/XmlValue.h"

#include <string>
#include <vector>

using namespace XmlPlugin;

namespace
{

constexpr std::size_t s_SmallTree = 12;
constexpr int s_ShortText = 60;

/// The code and the records of one query, the nodes by name and number.
std::string ask(const String& i_Text, const String& i_Path)
{
    XPathOutputList records;
    const TErrorCode code = XPathEngine().start(i_Text, i_Path, records);
    std::string answer = std::to_string(code) + "\n";
    std::int32_t last = 0;
    for (const XPathOutputElement* pRecord : records)
    {
        FUZZ_CHECK(pRecord == records.front() || last < pRecord->m_OrderKey, answer);
        last = pRecord->m_OrderKey;
        answer += std::to_string(last) + "|" + pRecord->m_NodeText.toNarrow() + "|" + pRecord->m_Value.toNarrow();
        if (pRecord->m_pNode)
        {
            answer += "|" + pRecord->m_pNode->name().toNarrow() + std::to_string(pRecord->m_pNode->sequence());
        }
        answer += "\n";
    }
    FUZZ_CHECK(code == 0 || records.empty(), answer);
    return answer;
}

template <typename Expression>
void setProperties(Expression& io_Expression, const String& i_Text, const String& i_Path, const wchar_t* i_pMustExist)
{
    io_Expression.setProperty(L"file", i_Path.c_str());
    io_Expression.setProperty(L"xpath", i_Text.c_str());
    io_Expression.setProperty(L"mustExist", i_pMustExist);
}

/// What the two expressions give a host: the list, with "mustExist" the list unless it is empty,
/// and the one value where there is one.
void checkHostView(const String& i_Text, const String& i_Path)
{
    XmlValues list;
    XmlValue one;
    PluginSDK::StringVector values;
    PluginSDK::String value;
    setProperties(list, i_Text, i_Path, nullptr);
    setProperties(one, i_Text, i_Path, nullptr);
    const TErrorCode code = list.evaluate(values);
    const TErrorCode oneCode = one.evaluate(value);
    FUZZ_CHECK(code == 0 || values.count() == 0, std::to_string(code));
    const TErrorCode expected = code == 0 && values.count() > 1 ? XML_PLUGIN_ERROR_MORE_THAN_ONE_VALUE : code;
    FUZZ_CHECK(oneCode == expected, std::to_string(oneCode));
    const std::wstring text = oneCode == 0 && values.count() == 1 ? values.get(0) : L"";
    FUZZ_CHECK(value.c_str() == text, String(text.c_str()).toNarrow());

    setProperties(list, i_Text, i_Path, L"true");
    PluginSDK::StringVector again;
    const TErrorCode mustCode = list.evaluate(again);
    FUZZ_CHECK(mustCode == (code == 0 && values.count() == 0 ? XML_PLUGIN_ERROR_NO_VALUE : code),
               std::to_string(mustCode));
    FUZZ_CHECK(again.count() == values.count(), std::to_string(again.count()));
}

} // namespace

void fuzzOne(std::string_view i_Bytes)
{
    const std::size_t end = std::min(i_Bytes.find('\n'), i_Bytes.size());
    const String text = expressionText(i_Bytes.substr(0, end));
    const String path = InputFile::holding(i_Bytes.substr(std::min(end + 1, i_Bytes.size())));

    enum Check : unsigned
    {
        CachedTree,
        HostView,
        NewTree,
        Evaluation,
        Count
    };
    const CheckChoice choice(i_Bytes, Count);

    const std::string fresh = ask(text, path);
    if (choice.isDue(CachedTree))
    {
        FUZZ_CHECK(ask(text, path) == fresh, fresh);
    }
    if (choice.isDue(HostView))
    {
        checkHostView(text, path);
    }
    if (choice.isDue(NewTree))
    {
        XmlCache::destroyInstance();
        FUZZ_CHECK(ask(text, path) == fresh, fresh);
    }
    if (choice.isDue(Evaluation))
    {
        Node* pRoot = nullptr;
        XmlCache::getInstance()->getDocument(path, pRoot);
        const std::vector<Node*> elements = elementsOf(pRoot, s_SmallTree + 1);
        if (!elements.empty() && elements.size() <= s_SmallTree && text.length() <= s_ShortText)
        {
            checkEvaluation(text, elements, CheckChoice(i_Bytes, EvaluationChecks), CheckChoice(i_Bytes, 2), false);
        }
    }
    XmlCache::destroyInstance();
}
