// From the file to the finished tree.

#include "Support.h"
#include "xmlproxy/Node.h"

#include <benchmark/benchmark.h>

namespace
{

void load(benchmark::State& io_State, Shape i_Shape)
{
    const DocumentSize size{0, static_cast<std::size_t>(io_State.range(0))};
    const DocumentFacts facts = documentFacts(i_Shape, size);
    require(countElements(documentTree(i_Shape, size)) == facts.elements, "the tree has all elements of the document");
    for (auto _ : io_State)
    {
        std::unique_ptr<Node> pRoot = parseDocument(i_Shape, size);
        io_State.PauseTiming();
        pRoot.reset();
        io_State.ResumeTiming();
    }
    io_State.SetBytesProcessed(static_cast<std::int64_t>(facts.bytes) * io_State.iterations());
}

BENCHMARK_CAPTURE(load, config, Shape::Config)
    ->Arg(1 << 10)
    ->Arg(1 << 20)
    ->Arg(16 << 20)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(load, wide, Shape::Wide)->Arg(1 << 20)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(load, deep, Shape::Deep)->Arg(1 << 20)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(load, text, Shape::TextHeavy)->Arg(1 << 20)->Unit(benchmark::kMicrosecond);

} // namespace
