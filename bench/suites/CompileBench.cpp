// From the text of an expression to what can be run: the tokens, and their postfix order.

#include "Support.h"
#include "compile/XPathExpressionsParser.h"

#include <benchmark/benchmark.h>

namespace
{

void compile(benchmark::State& io_State, const char* i_Expression, const char* i_Value)
{
    require(valueOf(i_Expression, &documentTree(Shape::Config, {1000, 0})) == i_Value, i_Expression);
    const String text = wide(i_Expression);
    for (auto _ : io_State)
    {
        XmlPlugin::XPathExpressionsParser parser(text);
        benchmark::DoNotOptimize(parser.status());
    }
}

BENCHMARK_CAPTURE(compile, sum, "1+2*3", "7");
BENCHMARK_CAPTURE(compile, call, "concat('a','b','c')", "abc");
BENCHMARK_CAPTURE(compile, path, "/root/group[2]/@name", "g1");
BENCHMARK_CAPTURE(compile, pathUnion, "/root/group[2]/@name | /root/group[1]/item[12345]/@id", "g1");
BENCHMARK_CAPTURE(compile, comparison, "count(/root/group) > 5 and 2*3+1 = 7", "true");

} // namespace
