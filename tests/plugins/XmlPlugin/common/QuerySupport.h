#pragma once

#include "boundary/XmlFileParser.h"
#include "boundary/XmlNodeSink.h"
#include "compile/XPathExpressionsParser.h"
#include "support/TemporaryFolder.h"
#include "values/XPathOutputList.h"
#include "xmlproxy/Node.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

/// Support of the tests: a parsed document, and queries on it in one line.

/// The tree of a document given as text.
class TestDocument
{
public:
    explicit TestDocument(std::string_view i_Xml)
    {
        const TemporaryFolder folder;
        XmlPlugin::XmlNodeSink sink;
        const XmlPlugin::XmlFileParser parser(String(folder.write("document.xml", i_Xml).c_str()), sink);
        if (parser.status() != 0)
        {
            throw std::runtime_error("a test document is not well-formed");
        }
        m_pRoot.reset(sink.release());
    }

    Node* root() const noexcept { return m_pRoot.get(); }

private:
    std::unique_ptr<Node> m_pRoot;
};

/// What an expression answers: its values in order with " | " between, "(none)" for no value,
/// "error CODE" for a failure.
inline std::string answer(Node* i_pRoot, std::string_view i_Expression)
{
    XmlPlugin::XPathExpressionsParser parser(String(i_Expression.data(), i_Expression.size()));
    XmlPlugin::XPathOutputList records;
    TErrorCode code = parser.runParser(i_pRoot);
    if (code == 0)
    {
        code = parser.getValues(records);
    }
    if (code != 0)
    {
        return "error " + std::to_string(code);
    }
    if (records.empty())
    {
        return "(none)";
    }
    std::string text;
    for (const XmlPlugin::XPathOutputElement* pRecord : records)
    {
        if (pRecord != records.front())
        {
            text += " | ";
        }
        text += pRecord->m_Value.toNarrow();
    }
    return text;
}
