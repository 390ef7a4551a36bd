#pragma once

#include "output/Output.h"

/// Prints one JSON object per file and expression, each on a line of its own; errors are objects too. The output is
/// always valid UTF-8, whatever the names are.
///
/// Tested by: tests/host/HostTest.cpp, tests/host/FilesTest.cpp
class JsonOutput final : public Output
{
public:
    JsonOutput(bool i_CountOnly, char i_End) : m_CountOnly(i_CountOnly), m_End(i_End) {}

    void beginFile(const std::string& i_Name) override { m_Name = i_Name; }
    void add(const std::string& i_Expression, const Outcome& i_Outcome) override;
    void endFile() override {}

private:
    bool m_CountOnly;
    char m_End;
    std::string m_Name;
};
