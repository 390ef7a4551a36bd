// A predicate over a list of 10,000 siblings, compiled before.

#include "Support.h"
#include "paths/XPathPredicate.h"
#include "paths/XPathStep.h"
#include "xmlproxy/Node.h"

#include <benchmark/benchmark.h>

namespace
{

constexpr DocumentSize s_Size{10001, 0};

void filter(benchmark::State& io_State, const char* i_Predicate, std::size_t i_Kept)
{
    XmlPlugin::NodeVector all;
    XmlPlugin::XPathStep::listElementChildren(&documentTree(Shape::Wide, s_Size), all);
    const String text = wide(i_Predicate);
    XmlPlugin::XPathPredicate predicate(viewOf(text));
    XmlPlugin::NodeVector checked = all;
    require(predicate.fiterNodes(checked) == 0 && checked.size() == i_Kept, i_Predicate);
    for (auto _ : io_State)
    {
        XmlPlugin::NodeVector nodes = all;
        benchmark::DoNotOptimize(predicate.fiterNodes(nodes));
    }
    io_State.SetItemsProcessed(static_cast<std::int64_t>(all.size()) * io_State.iterations());
}

BENCHMARK_CAPTURE(filter, attributeIs, "[@n='5000']", 1U)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(filter, attributeAbove, "[@n>4999]", 5000U)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(filter, hasAttribute, "[@v]", 10000U)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(filter, place, "[5000]", 1U)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(filter, position, "[position()=5000]", 1U)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(filter, last, "[last()]", 1U)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(filter, otherForm, "[position() mod 2 = 0 and @n>4999]", 2500U)->Unit(benchmark::kMicrosecond);

} // namespace
