#pragma once

#include <map>
#include <string>
#include <vector>

/// Everything that was measured: part, row, peer, and what of it.
///
/// Ownership: a value.
/// Threads: one at a time.
class Results
{
public:
    /// \p i_Value in nanoseconds, bytes a byte, or whatever \p i_Metric says.
    void add(const std::string& i_Part, const std::string& i_Row, const std::string& i_Peer,
             const std::string& i_Metric, double i_Value);
    /// The median of what was added, or -1.
    double get(const std::string& i_Part, const std::string& i_Row, const std::string& i_Peer,
               const std::string& i_Metric) const;

    /// Prints one metric of a part: a row a line, a column a peer, as values and as multiples of the
    /// peer \p i_Base (no multiples when that is empty).
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
        std::vector<std::string> rows; ///< in the order of their measuring
        std::vector<std::string> peers;
        std::map<Key, std::vector<double>> values;
    };

    std::map<std::string, Part> m_Parts;
};
