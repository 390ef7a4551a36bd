// From the text of an expression to its elements in postfix order, as queries have them read.

#include "Support.h"
#include "compile/XPathTokenizer.h"

#include <benchmark/benchmark.h>
#include <string>

namespace
{

bool read(const String& i_Text, XmlPlugin::XPathExpressionsVector& o_Postfix)
{
    XmlPlugin::XPathElements elements;
    XmlPlugin::XPathTokenizer tokenizer(viewOf(i_Text), elements);
    return tokenizer.readPostfix(o_Postfix);
}

void tokenize(benchmark::State& io_State, const char* i_Expression, std::size_t i_Elements)
{
    const String text = wide(i_Expression);
    XmlPlugin::XPathExpressionsVector postfix;
    require(read(text, postfix), i_Expression);
    require(postfix.size() == i_Elements,
            std::string(i_Expression) + " has " + std::to_string(postfix.size()) + " elements");
    for (auto _ : io_State)
    {
        benchmark::DoNotOptimize(read(text, postfix));
    }
}

/// The general code, which reads what quick code leaves to it.
void recognise(benchmark::State& io_State, const char* i_Expression, std::size_t i_Tokens)
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

BENCHMARK_CAPTURE(tokenize, number, "1", 1U);
BENCHMARK_CAPTURE(tokenize, sum, "1+2*3", 5U);
BENCHMARK_CAPTURE(tokenize, call, "concat('a','b','c')", 4U);
BENCHMARK_CAPTURE(tokenize, path, "/root/group/item/@id", 1U);
BENCHMARK_CAPTURE(tokenize, place, "/root/group[position()=2]/item[3]/@id", 1U);
BENCHMARK_CAPTURE(tokenize, predicate, "//item[@id='x500']/@name", 1U);
BENCHMARK_CAPTURE(tokenize, pathUnion, "/root/group/@name | /root/group/item/@id", 1U);
BENCHMARK_CAPTURE(tokenize, nested, "((((1+2)*(3+4))+((5+6)*(7+8)))>count(//item))", 18U);
BENCHMARK_CAPTURE(recognise, path, "/root/group/item/@id", 1U);
BENCHMARK_CAPTURE(recognise, nested, "((((1+2)*(3+4))+((5+6)*(7+8)))>count(//item))", 36U);

} // namespace
