#include "explain/FunctionList.h"

#include "xpathlanguage/XPathFunctionTable.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

std::string functionList()
{
    using Row = std::array<std::string, 4>;
    std::vector<Row> rows{{"FUNCTION", "ARGUMENTS", "PRIORITY", "ANSWER"}};
    for (const XPathLanguage::Function& function : XPathLanguage::s_Functions)
    {
        rows.push_back(
            {function.call(), function.arguments(), std::to_string(function.priority), std::string(function.answer)});
    }
    std::array<std::size_t, 3> widths{}; // the last column has none
    for (const Row& row : rows)
    {
        for (std::size_t i = 0; i < widths.size(); ++i)
        {
            widths[i] = std::max(widths[i], row[i].size());
        }
    }
    std::string list;
    for (const Row& row : rows)
    {
        for (std::size_t i = 0; i < widths.size(); ++i)
        {
            list += row[i];
            list.append(widths[i] - row[i].size() + 2, ' ');
        }
        list += row.back() + '\n';
    }
    return list;
}
