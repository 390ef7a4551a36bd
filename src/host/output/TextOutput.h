#pragma once

#include "output/Output.h"
#include "output/Palette.h"

#include <optional>

/// Prints one value per line, after the file's name if that is wanted.
///
/// Tested by: tests/host/HostTest.cpp, tests/host/TerminalTest.cpp
class TextOutput final : public Output
{
public:
    TextOutput(bool i_WithNames, char i_End, std::optional<std::string> i_NullValue, Palette i_Palette);

    void beginFile(const std::string& i_Name) override;
    void add(const std::string& i_Expression, const Outcome& i_Outcome) override;
    void endFile() override {}

private:
    bool m_WithNames;
    char m_End;
    std::optional<std::string> m_NullValue;
    Palette m_Palette;
    std::string m_Prefix;
};

/// Prints one line per file with the number of values, unless no expression could be evaluated in it.
class CountOutput final : public Output
{
public:
    CountOutput(bool i_WithNames, char i_End, Palette i_Palette);

    void beginFile(const std::string& i_Name) override;
    void add(const std::string& i_Expression, const Outcome& i_Outcome) override;
    void endFile() override;

private:
    bool m_WithNames;
    char m_End;
    Palette m_Palette;
    std::string m_Prefix;
    std::size_t m_Count = 0;
    bool m_HasCount = false;
};
