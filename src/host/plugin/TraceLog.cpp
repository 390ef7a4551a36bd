#include "plugin/TraceLog.h"

#include "system/Console.h"
#include "system/FileSystem.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace
{

constexpr const wchar_t* s_Scope = L"XPathTokenizer::start()";
constexpr std::string_view s_Text = "Recognised up to offset = ";
constexpr std::string_view s_FaultLine = " parsing XML file at line ";
constexpr std::string_view s_FaultText = " message is: ";

const char* levelName(int i_Level)
{
    switch (i_Level)
    {
    case TraceError:
        return "ERROR";
    case TraceWarning:
        return "WARNING";
    default:
        return "INFO";
    }
}

/// `LEVEL source(line) [scope] text`
std::string toLine(const TraceRecord& i_Record)
{
    return std::string(levelName(i_Record.level)) + ' ' + String(i_Record.source).toNarrow() + '(' +
           std::to_string(i_Record.line) + ") [" + String(i_Record.scope).toNarrow() + "] " + i_Record.text.toNarrow();
}

/// The offset in a record of the tokenizer, if the record has one.
std::optional<int> offsetIn(const TraceRecord& i_Record)
{
    if (i_Record.level != TraceError || String(i_Record.scope).trim() != String(s_Scope))
    {
        return std::nullopt;
    }
    const std::string text = i_Record.text.trim().toNarrow();
    int offset = 0;
    if (!text.starts_with(s_Text))
    {
        return std::nullopt;
    }
    const char* const pEnd = text.data() + text.size();
    const auto [pRest, error] = std::from_chars(text.data() + s_Text.size(), pEnd, offset);
    return error == std::errc() && pRest == pEnd && offset >= 0 ? std::optional<int>(offset) : std::nullopt;
}

/// `line N: text` from a record that says what is wrong with a document, without the line if the document as a whole is
/// wrong. Empty for any other record.
std::string faultIn(const TraceRecord& i_Record)
{
    if (i_Record.level != TraceError)
    {
        return "";
    }
    const std::string record = i_Record.text.toNarrow();
    const std::size_t line = record.find(s_FaultLine);
    const std::size_t text = line == std::string::npos ? line : record.find(s_FaultText, line);
    if (text == std::string::npos)
    {
        return "";
    }
    const std::size_t number = line + s_FaultLine.size();
    const std::string place = "line " + record.substr(number, text - number) + ": ";
    return (place == "line 0: " ? std::string() : place) + record.substr(text + s_FaultText.size());
}

} // namespace

TraceLog::TraceLog(int i_PrintedLevel, const std::string& i_Path)
    : m_PrintedLevel(i_PrintedLevel), m_IsToFile(!i_Path.empty())
{
    if (m_IsToFile)
    {
        m_File.open(FileSystem::fromUtf8(i_Path), std::ios::binary | std::ios::trunc);
        if (!m_File)
        {
            throw std::runtime_error("cannot write the trace file " + i_Path + ": " +
                                     std::generic_category().message(errno));
        }
    }
    observe(nullptr);
}

TraceLog::~TraceLog()
{
    Tracer::install(nullptr, TraceOff);
}

void TraceLog::reset() noexcept
{
    m_RecognisedUpTo.reset();
    m_DocumentFault.clear();
}

void TraceLog::observe(TraceSink* i_pObserver)
{
    m_pObserver = i_pObserver;
    install();
}

void TraceLog::mute(bool i_IsMuted)
{
    m_IsMuted = i_IsMuted;
    install();
}

void TraceLog::install()
{
    // Errors are always wanted: they give the position in a rejected expression or a damaged document.
    const int printed = m_IsMuted ? TraceOff : m_PrintedLevel;
    Tracer::install(this, m_pObserver != nullptr ? TraceInformation : std::max<int>(printed, TraceError));
}

void TraceLog::write(const TraceRecord& i_Record)
{
    if (const std::optional<int> offset = offsetIn(i_Record))
    {
        m_RecognisedUpTo = offset;
    }
    if (m_DocumentFault.empty())
    {
        m_DocumentFault = faultIn(i_Record);
    }
    if (i_Record.level <= m_PrintedLevel && !m_IsMuted)
    {
        print(toLine(i_Record));
    }
    if (m_pObserver != nullptr)
    {
        m_pObserver->write(i_Record);
    }
}

void TraceLog::print(const std::string& i_Line)
{
    if (m_IsToFile)
    {
        m_File << Console::onOneLine(i_Line) << '\n';
    }
    else
    {
        Console::writeErrorLine(Console::onOneLine(i_Line));
    }
}

bool TraceLog::flush()
{
    return !m_IsToFile || m_File.flush().good();
}
