#include "output/TextOutput.h"

#include "system/Console.h"

#include <utility>

namespace
{

std::string prefixOf(const std::string& i_Name, bool i_WithNames, const Palette& i_Palette)
{
    return i_WithNames ? i_Palette.fileName(i_Name) + i_Palette.separator(":") : std::string();
}

} // namespace

TextOutput::TextOutput(bool i_WithNames, char i_End, std::optional<std::string> i_NullValue, Palette i_Palette)
    : m_WithNames(i_WithNames), m_End(i_End), m_NullValue(std::move(i_NullValue)), m_Palette(i_Palette)
{
}

void TextOutput::beginFile(const std::string& i_Name)
{
    m_Prefix = prefixOf(i_Name, m_WithNames, m_Palette);
}

void TextOutput::add(const std::string&, const Outcome& i_Outcome)
{
    for (const std::string& value : i_Outcome.values)
    {
        Console::write(m_Prefix + value + m_End);
    }
    if (m_NullValue && i_Outcome.code == 0 && i_Outcome.values.empty())
    {
        Console::write(m_Prefix + *m_NullValue + m_End);
    }
}

CountOutput::CountOutput(bool i_WithNames, char i_End, Palette i_Palette)
    : m_WithNames(i_WithNames), m_End(i_End), m_Palette(i_Palette)
{
}

void CountOutput::beginFile(const std::string& i_Name)
{
    m_Prefix = prefixOf(i_Name, m_WithNames, m_Palette);
    m_Count = 0;
    m_HasCount = false;
}

void CountOutput::add(const std::string&, const Outcome& i_Outcome)
{
    m_Count += i_Outcome.values.size();
    m_HasCount = m_HasCount || i_Outcome.code == 0;
}

void CountOutput::endFile()
{
    if (m_HasCount)
    {
        Console::write(m_Prefix + std::to_string(m_Count) + m_End);
    }
}
