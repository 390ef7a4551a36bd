#include "Results.h"

#include "Clock.h"

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

namespace
{

void addOnce(std::vector<std::string>& io_Names, const std::string& i_Name)
{
    if (std::find(io_Names.begin(), io_Names.end(), i_Name) == io_Names.end())
    {
        io_Names.push_back(i_Name);
    }
}

} // namespace

void Results::add(const std::string& i_Part, const std::string& i_Row, const std::string& i_Peer,
                  const std::string& i_Metric, double i_Value)
{
    Part& part = m_Parts[i_Part];
    addOnce(part.rows, i_Row);
    addOnce(part.peers, i_Peer);
    part.values[{i_Row, i_Peer, i_Metric}].push_back(i_Value);
}

double Results::get(const std::string& i_Part, const std::string& i_Row, const std::string& i_Peer,
                    const std::string& i_Metric) const
{
    const auto pPart = m_Parts.find(i_Part);
    if (pPart == m_Parts.end())
    {
        return -1;
    }
    const auto pValues = pPart->second.values.find({i_Row, i_Peer, i_Metric});
    return pValues == pPart->second.values.end() ? -1 : median(pValues->second);
}

void Results::print(const std::string& i_Part, const std::string& i_Metric, const std::string& i_Base, double i_Unit,
                    const std::string& i_UnitName) const
{
    const auto pPart = m_Parts.find(i_Part);
    if (pPart == m_Parts.end())
    {
        return;
    }
    std::printf("\n%s, %s: %s%s\n%-42s", i_Part.c_str(), i_Metric.c_str(), i_UnitName.c_str(),
                i_Base.empty() ? "" : (" (multiple of " + i_Base + ")").c_str(), "");
    for (const std::string& peer : pPart->second.peers)
    {
        std::printf(" %18s", peer.c_str());
    }
    std::printf("\n");
    for (const std::string& row : pPart->second.rows)
    {
        const double base = i_Base.empty() ? -1 : get(i_Part, row, i_Base, i_Metric);
        std::printf("%-42s", row.c_str());
        for (const std::string& peer : pPart->second.peers)
        {
            const double value = get(i_Part, row, peer, i_Metric);
            if (value < 0)
            {
                std::printf(" %18s", "-");
            }
            else if (base > 0)
            {
                std::printf(" %9.4g (%6.3g)", value / i_Unit, value / base);
            }
            else
            {
                std::printf(" %18.4g", value / i_Unit);
            }
        }
        std::printf("\n");
    }
    std::fflush(stdout);
}

std::string Results::toJson() const
{
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (const auto& [name, part] : m_Parts)
    {
        for (const std::string& row : part.rows)
        {
            for (const auto& [key, values] : part.values)
            {
                if (key.row == row)
                {
                    all.push_back({{"part", name},
                                   {"row", row},
                                   {"peer", key.peer},
                                   {"metric", key.metric},
                                   {"value", median(values)},
                                   {"runs", values.size()}});
                }
            }
        }
    }
    return all.dump(1) + '\n';
}
