// From the text of an expression to its tokens.

#include "Support.h"
#include "compile/XPathTokenizer.h"

#include <benchmark/benchmark.h>
#include <string>

namespace
{

void tokenize(benchmark::State& io_State, const char* i_Expression, std::size_t i_Tokens)
{
    const String text = wide(i_Expression);
    XmlPlugin::XPathTokenizer checked(text);
    require(checked.start() == 0, i_Expression);
    require(checked.outVector().size() == i_Tokens,
            std::string(i_Expression) + " has " + std::to_string(checked.outVector().size()) + " tokens");
    for (auto _ : io_State)
    {
        XmlPlugin::XPathTokenizer tokenizer(text);
        benchmark::DoNotOptimize(tokenizer.start());
    }
}

// The numbers are those of the tokens, with the parentheses that the tokenizer puts around the text.
BENCHMARK_CAPTURE(tokenize, number, "1", 1U);
BENCHMARK_CAPTURE(tokenize, sum, "1+2*3", 5U);
BENCHMARK_CAPTURE(tokenize, call, "concat('a','b','c')", 8U);
BENCHMARK_CAPTURE(tokenize, path, "/root/group/item/@id", 1U);
BENCHMARK_CAPTURE(tokenize, predicate, "//item[@id='x500']/@name", 1U);
BENCHMARK_CAPTURE(tokenize, pathUnion, "/root/group/@name | /root/group/item/@id", 1U);
BENCHMARK_CAPTURE(tokenize, nested, "((((1+2)*(3+4))+((5+6)*(7+8)))>count(//item))", 36U);

} // namespace
