#pragma once

#include <map>
#include <string>
#include <vector>

/// All measured values, by part, row, peer and metric.
///
/// Ownership: a value.
/// Threads: one at a time.
class Results
{
public:
    /// Adds \p i_Value, in nanoseconds, bytes per byte, or the unit that \p i_Metric implies.
    void add(const std::string& i_Part, const std::string& i_Row, const std::string& i_Peer,
             const std::string& i_Metric, double i_Value);
    /// The median of the values added, or -1 if there are none.
    double get(const std::string& i_Part, const std::string& i_Row, const std::string& i_Peer,
               const std::string& i_Metric) const;

    /// Prints one metric of a part, with one line per row and one column per peer, as values and as multiples of the
    /// peer \p i_Base (no multiples if that is empty).
    void print(const std::string& i_Part, const std::string& i_Metric, const std::string& i_Base, double i_Unit,
               const std::string& i_UnitName) const;
    /// All values as JSON: part, row, peer, metric, value and number of runs.
    std::string toJson() const;

private:
    struct Key
    {
        std::string row;
        std::string peer;
        std::string metric;
        auto operator<=>(const Key&) const = default;
    };
    struct Part
    {
        std::vector<std::string> rows; ///< in the order of measurement
        std::vector<std::string> peers;
        std::map<Key, std::vector<double>> values;
    };

    std::map<std::string, Part> m_Parts;
};
