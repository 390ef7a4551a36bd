#include "DocumentExamples.h"

#include "base/String.h"
#include "boundary/XPathEngine.h"
#include "boundary/XmlPlugin.h"
#include "boundary/XmlValue.h"
#include "pluginsdk/String.h"
#include "pluginsdk/StringVector.h"
#include "values/XPathOutputList.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>

namespace
{

const std::string s_NotSet = "not set";

std::string readFile(const std::string& i_Path)
{
    std::ifstream stream(i_Path, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

/// The text behind \p i_Mark when \p i_Line begins with it, else null.
const char* behind(const std::string& i_Line, const std::string& i_Mark)
{
    return i_Line.starts_with(i_Mark) ? i_Line.c_str() + i_Mark.size() : nullptr;
}

std::string withTabs(std::string i_Text)
{
    for (std::size_t place = i_Text.find("\\t"); place != std::string::npos; place = i_Text.find("\\t", place))
    {
        i_Text.replace(place, 2, "\t");
    }
    return i_Text;
}

std::string lineOf(const String& i_Value)
{
    return (i_Value.isEmpty() ? "(empty text)" : i_Value.toNarrow()) + "\n";
}

std::string errorLine(TErrorCode i_Code)
{
    return "error " + std::to_string(i_Code) + "\n";
}

std::string orNoValue(const std::string& i_Lines)
{
    return i_Lines.empty() ? "(no value)\n" : i_Lines;
}

std::string runEngine(const String& i_Expression, const String& i_File)
{
    XmlPlugin::XPathOutputList records;
    const TErrorCode code = XmlPlugin::XPathEngine().start(i_Expression, i_File, records);
    if (code != 0)
    {
        return errorLine(code);
    }
    std::string lines;
    for (const XmlPlugin::XPathOutputElement* pRecord : records)
    {
        lines += lineOf(pRecord->m_Value);
    }
    return orNoValue(lines);
}

std::string evaluate(PluginSDK::Expression& io_Expression)
{
    if (auto* pScalar = dynamic_cast<PluginSDK::ScalarExpression*>(&io_Expression))
    {
        PluginSDK::String value;
        const TErrorCode code = pScalar->evaluate(value);
        return code == 0 ? lineOf(String(value.c_str())) : errorLine(code);
    }
    PluginSDK::StringVector values;
    const TErrorCode code = dynamic_cast<PluginSDK::VectorExpression&>(io_Expression).evaluate(values);
    if (code != 0)
    {
        return errorLine(code);
    }
    std::string lines;
    for (std::size_t i = 0; i < values.count(); ++i)
    {
        lines += lineOf(String(values.get(i)));
    }
    return orNoValue(lines);
}

} // namespace

// --- Reading ------------------------------------------------------------------------------------

DocumentExamples::DocumentExamples(std::string i_Text) : m_Text(std::move(i_Text))
{
    readLines();
    checkLast();
}

DocumentExamples DocumentExamples::ofFile(const std::string& i_Name)
{
    return DocumentExamples(readFile(std::string(SOURCE_FOLDER) + "/docs/" + i_Name));
}

void DocumentExamples::addProblem(int i_Line, const std::string& i_Text)
{
    m_Problems.push_back("line " + std::to_string(i_Line) + ": " + i_Text);
}

void DocumentExamples::readLines()
{
    std::istringstream stream(m_Text);
    std::string line;
    std::string mark;
    std::vector<std::string> block;
    bool isInBlock = false;
    int firstLine = 0;
    for (int number = 1; std::getline(stream, line); ++number)
    {
        if (!line.empty() && line.back() == '\r')
        {
            line.pop_back();
        }
        if (line.starts_with("```"))
        {
            if (isInBlock)
            {
                readBlock(mark, block, firstLine);
            }
            isInBlock = !isInBlock;
            mark = line.substr(3);
            block.clear();
            firstLine = number + 1;
        }
        else if (isInBlock)
        {
            block.push_back(line);
        }
        else if (line.starts_with("#"))
        {
            m_Headings.push_back(line.substr(line.find_first_not_of("# ")));
        }
    }
    if (isInBlock)
    {
        addProblem(firstLine - 1, "a block is not closed");
    }
}

void DocumentExamples::readBlock(const std::string& i_Mark, const std::vector<std::string>& i_Lines, int i_FirstLine)
{
    if (i_Mark == "xpath")
    {
        readExamples(i_Lines, i_FirstLine);
    }
    else if (const char* pName = behind(i_Mark, "xml "))
    {
        std::string xml;
        for (const std::string& line : i_Lines)
        {
            xml += line + "\n";
        }
        if (!m_Documents.emplace(pName, m_Folder.write(pName, xml)).second)
        {
            addProblem(i_FirstLine - 1, "a second document of this name");
        }
    }
    else if (!i_Mark.empty())
    {
        addProblem(i_FirstLine - 1, "a block of an unknown kind: " + i_Mark);
    }
}

void DocumentExamples::readExamples(const std::vector<std::string>& i_Lines, int i_FirstLine)
{
    DocumentExample pattern;
    pattern.m_Heading = m_Headings.empty() ? "" : m_Headings.back();
    bool isBegun = false;
    for (std::size_t i = 0; i < i_Lines.size(); ++i)
    {
        const std::string& line = i_Lines[i];
        const int number = i_FirstLine + static_cast<int>(i);
        const char* pText = nullptr;
        if ((pText = behind(line, "> ")))
        {
            readExpression(pattern, pText, number);
            isBegun = true;
        }
        else if (!isBegun && (pText = behind(line, "document: ")))
        {
            pattern.m_Document = pText;
        }
        else if (!isBegun && (pText = behind(line, "type: ")))
        {
            pattern.m_Type = pText;
        }
        else if (!isBegun && line == "mustExist: true")
        {
            pattern.m_MustExist = true;
        }
        else if (!isBegun)
        {
            addProblem(number, "neither a setting nor an expression: " + line);
        }
        else if ((pText = behind(line, "XPath 1.0: ")))
        {
            m_Examples.back().m_Standard = pText;
        }
        else if (!m_Examples.back().m_Standard.empty() || line.empty())
        {
            addProblem(number, "no answer can stand here");
        }
        else
        {
            m_Examples.back().m_Answer += line + "\n";
        }
    }
    if (!isBegun)
    {
        addProblem(i_FirstLine, "a block without an expression");
    }
}

void DocumentExamples::readExpression(DocumentExample& io_Example, const std::string& i_Line, int i_LineNumber)
{
    checkLast();
    io_Example.m_Line = i_LineNumber;
    io_Example.m_Expression = withTabs(i_Line);
    m_Examples.push_back(io_Example);
    if (io_Example.m_Document.empty())
    {
        addProblem(i_LineNumber, "an example without a document");
    }
    else if (io_Example.m_Document != s_NotSet && pathOf(io_Example.m_Document).empty())
    {
        addProblem(i_LineNumber, "there is no document " + io_Example.m_Document);
    }
}

void DocumentExamples::checkLast()
{
    if (!m_Examples.empty() && m_Examples.back().m_Answer.empty())
    {
        addProblem(m_Examples.back().m_Line, "an example without an answer");
    }
}

/// The file of a document; empty when there is none. "missing.xml" is never there.
std::string DocumentExamples::pathOf(const std::string& i_Document) const
{
    const auto found = m_Documents.find(i_Document);
    if (found != m_Documents.end())
    {
        return found->second;
    }
    if (i_Document == "missing.xml")
    {
        return m_Folder.file(i_Document);
    }
    const std::string path = std::string(SOURCE_FOLDER) + "/examples/" + i_Document;
    return std::filesystem::exists(path) ? path : std::string();
}

// --- Running ------------------------------------------------------------------------------------

std::string DocumentExamples::run(const DocumentExample& i_Example) const
{
    const String expression(i_Example.m_Expression.c_str());
    const String file(pathOf(i_Example.m_Document).c_str());
    if (i_Example.m_Type.empty())
    {
        return runEngine(expression, file);
    }

    PluginSDK::XmlPlugin plugin;
    PluginSDK::Expression* pExpression = nullptr;
    const String type(i_Example.m_Type.c_str());
    if (const TErrorCode code = plugin.createExpression(type.c_str(), &pExpression); code != 0)
    {
        return errorLine(code);
    }
    if (i_Example.m_Document != s_NotSet)
    {
        pExpression->setProperty(L"file", file.c_str());
    }
    if (i_Example.m_Expression != "(" + s_NotSet + ")")
    {
        pExpression->setProperty(L"xpath", expression.c_str());
    }
    if (i_Example.m_MustExist)
    {
        pExpression->setProperty(L"mustExist", L"true");
    }
    const std::string answer = evaluate(*pExpression);
    plugin.destroyExpression(pExpression);
    return answer;
}
