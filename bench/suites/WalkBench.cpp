// A location path over a tree of 10,000 elements: steps walked, records made and put in order.

#include "Support.h"
#include "paths/XPath.h"
#include "values/XPathOutputList.h"
#include "xmlproxy/Node.h"

#include <benchmark/benchmark.h>

namespace
{

constexpr DocumentSize s_Size{10000, 0};

std::size_t recordsOf(const char* i_Path, Node& i_Root)
{
    XmlPlugin::XPath path(wide(i_Path));
    XmlPlugin::XPathOutputList records;
    require(path.getValues(&i_Root, records) == 0, i_Path);
    return records.size();
}

void walk(benchmark::State& io_State, const char* i_Path, std::size_t (*i_pExpected)())
{
    Node& root = documentTree(Shape::Config, s_Size);
    require(recordsOf(i_Path, root) == i_pExpected(), i_Path);
    XmlPlugin::XPath path(wide(i_Path));
    for (auto _ : io_State)
    {
        XmlPlugin::XPathOutputList records;
        benchmark::DoNotOptimize(path.getValues(&root, records));
    }
    io_State.SetItemsProcessed(static_cast<std::int64_t>(s_Size.elements) * io_State.iterations());
}

/// Counted on the tree itself.
std::size_t elementsNamed(std::wstring_view i_Name)
{
    std::size_t count = 0;
    for (const Node* pGroup : documentTree(Shape::Config, s_Size).children())
    {
        count += viewOf(pGroup->name()) == i_Name ? 1U : 0U;
        for (const Node* pItem : pGroup->children())
        {
            count += viewOf(pItem->name()) == i_Name ? 1U : 0U;
        }
    }
    return count;
}

std::size_t items()
{
    return elementsNamed(L"item");
}

std::size_t groups()
{
    return elementsNamed(L"group");
}

std::size_t groupsAndItems()
{
    return groups() + items();
}

std::size_t oneElement()
{
    return 1;
}

BENCHMARK_CAPTURE(walk, children, "/root/group/item/@id", items)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(walk, descendants, "//item/@id", items)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(walk, deepPath, "//group//item/@id", items)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(walk, wildcard, "/root/*/@name", groups)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(walk, twoBranches, "/root/group/@name | /root/group/item/@id", groupsAndItems)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(walk, parents, "/root/group/item/../@name", groups)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(walk, ancestors, "//item[@id='x5000']/ancestor::group/@name", oneElement)
    ->Unit(benchmark::kMicrosecond);

} // namespace
