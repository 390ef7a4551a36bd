// Makes a dictionary for libFuzzer: fuzz_dictionary OUTPUT [--language] FILE...
//
// With --language it holds the words of the query language: functions, axes and operators. The entries of the files
// follow; each entry stands there once.
#include "xpathlanguage/XPathAxisTable.h"
#include "xpathlanguage/XPathFunctionTable.h"
#include "xpathlanguage/XPathOperatorTable.h"

#include <fstream>
#include <iostream>
#include <set>
#include <string>
#include <string_view>

namespace
{

using Entries = std::set<std::string>;

void add(std::string_view i_Text, Entries& io_Entries)
{
    io_Entries.insert('"' + std::string(i_Text) + '"');
}

void addLanguage(Entries& io_Entries)
{
    for (const XPathLanguage::Function& function : XPathLanguage::s_Functions)
    {
        const bool isAlone = function.parameters.empty();
        add(std::string(function.name.text()) + (isAlone ? "()" : "("), io_Entries);
    }
    for (const XPathLanguage::Axis& axis : XPathLanguage::s_Axes)
    {
        add(std::string(axis.name.text()) + "::", io_Entries);
    }
    for (const XPathLanguage::Operator& row : XPathLanguage::s_Operators)
    {
        const std::string text(row.text.text());
        const bool isWord = text.front() >= 'a' && text.front() <= 'z';
        add(isWord ? ' ' + text + ' ' : text, io_Entries);
    }
}

bool addFile(const char* i_pPath, Entries& io_Entries)
{
    std::ifstream file(i_pPath);
    for (std::string line; std::getline(file, line);)
    {
        if (line.starts_with('"'))
        {
            io_Entries.insert(line);
        }
    }
    return file.eof();
}

} // namespace

int main(int i_Count, char** i_pArguments)
{
    Entries entries;
    for (int i = 2; i < i_Count; ++i)
    {
        if (std::string_view(i_pArguments[i]) == "--language")
        {
            addLanguage(entries);
        }
        else if (!addFile(i_pArguments[i], entries))
        {
            std::cerr << "fuzz_dictionary: cannot read " << i_pArguments[i] << '\n';
            return 1;
        }
    }
    std::ofstream output(i_Count > 1 ? i_pArguments[1] : "", std::ios::binary);
    for (const std::string& entry : entries)
    {
        output << entry << '\n';
    }
    output.close();
    if (!output)
    {
        std::cerr << "fuzz_dictionary: cannot write the dictionary\n";
        return 1;
    }
    return 0;
}
