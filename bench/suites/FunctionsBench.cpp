// Functions and operators of a compiled expression, with the printing of the result.

#include "Support.h"
#include "compile/XPathExpressionsParser.h"
#include "values/XPathOutputList.h"
#include "xmlproxy/Node.h"

#include <benchmark/benchmark.h>

namespace
{

void evaluate(benchmark::State& io_State, const char* i_Expression, const char* i_Value)
{
    Node& root = documentTree(Shape::Config, {10, 0});
    require(valueOf(i_Expression, &root) == i_Value, i_Expression);
    XmlPlugin::XPathExpressionsParser parser(wide(i_Expression));
    for (auto _ : io_State)
    {
        XmlPlugin::XPathOutputList records;
        benchmark::DoNotOptimize(parser.runParser(&root));
        benchmark::DoNotOptimize(parser.getValues(records));
    }
}

BENCHMARK_CAPTURE(evaluate, sum, "1+2*3", "7");
BENCHMARK_CAPTURE(evaluate, fraction, "1 div 3", "0.333333");
BENCHMARK_CAPTURE(evaluate, concat, "concat('a','b','c')", "abc");
BENCHMARK_CAPTURE(evaluate, substring, "substring('12345',2,3)", "234");
BENCHMARK_CAPTURE(evaluate, substringBefore, "substring-before('2024-05-17','-')", "2024");
BENCHMARK_CAPTURE(evaluate, contains, "contains('harbour','bo')", "true");
BENCHMARK_CAPTURE(evaluate, normalizeSpace, "normalize-space('  a  b  ')", "a b");
BENCHMARK_CAPTURE(evaluate, round, "round(2.5)", "3");
BENCHMARK_CAPTURE(evaluate, count, "count(/root/group)", "1");
BENCHMARK_CAPTURE(evaluate, comparison, "/root/group/@name = 'g0'", "true");

} // namespace
