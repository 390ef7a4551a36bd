// From the finished tree to its memory given back.

#include "Support.h"
#include "xmlproxy/Node.h"

#include <benchmark/benchmark.h>

namespace
{

void freeTree(benchmark::State& io_State, Shape i_Shape)
{
    const DocumentSize size{0, static_cast<std::size_t>(io_State.range(0))};
    const DocumentFacts facts = documentFacts(i_Shape, size);
    require(countElements(*parseDocument(i_Shape, size)) == facts.elements,
            "the tree has all elements of the document");
    for (auto _ : io_State)
    {
        io_State.PauseTiming();
        std::unique_ptr<Node> pRoot = parseDocument(i_Shape, size);
        io_State.ResumeTiming();
        pRoot.reset();
    }
    io_State.SetItemsProcessed(static_cast<std::int64_t>(facts.elements) * io_State.iterations());
}

// Reading takes far longer than what is timed: the number of runs is fixed.
BENCHMARK_CAPTURE(freeTree, config, Shape::Config)->Arg(1 << 20)->Iterations(10)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(freeTree, wide, Shape::Wide)->Arg(1 << 20)->Iterations(10)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(freeTree, deep, Shape::Deep)->Arg(1 << 20)->Iterations(10)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(freeTree, text, Shape::TextHeavy)->Arg(1 << 20)->Iterations(10)->Unit(benchmark::kMicrosecond);

} // namespace
