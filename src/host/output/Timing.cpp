#include "output/Timing.h"

#include "plugin/Evaluator.h"
#include "plugin/MinimalDocument.h"

#include <algorithm>

namespace
{

constexpr const char* s_Trivial = "true()";
/// The shortest of a few runs is closest to the actual work.
constexpr int s_Runs = 3;

Timing::Duration measure(Evaluator& io_Evaluator, const std::string& i_Path, const std::string& i_Expression)
{
    const auto start = std::chrono::steady_clock::now();
    io_Evaluator.probe(i_Path, i_Expression);
    return std::chrono::steady_clock::now() - start;
}

} // namespace

void Timing::parse(const std::string& i_Path)
{
    m_Parse += measure(m_Evaluator, i_Path, s_Trivial);
    ++m_Files;
}

void Timing::compile(const std::string& i_Expression)
{
    if (m_Compile.contains(i_Expression))
    {
        return;
    }
    m_Evaluator.probe(m_Document.path(), s_Trivial);
    Duration least = Duration::max();
    for (int i = 0; i < s_Runs; ++i)
    {
        least = std::min(least, measure(m_Evaluator, m_Document.path(), i_Expression));
    }
    m_Compile[i_Expression] = least;
}

void Timing::evaluated(const std::string& i_Expression, Duration i_Time)
{
    m_Walk += std::max(i_Time - m_Compile[i_Expression], Duration::zero());
}

std::string Timing::summary() const
{
    Duration compile{};
    for (const auto& [expression, time] : m_Compile)
    {
        compile += time;
    }
    return "parse " + text(m_Parse) + ", compile " + text(compile) + ", walk " + text(m_Walk) + " (" +
           std::to_string(m_Files) + (m_Files == 1 ? " file)" : " files)");
}

std::string Timing::text(Duration i_Time)
{
    const auto micro = std::chrono::duration_cast<std::chrono::microseconds>(i_Time).count();
    const std::string decimals = std::to_string(1000 + micro % 1000).substr(1);
    return std::to_string(micro / 1000) + '.' + decimals + " ms";
}
