// A document that is in the cache: found, and asked through the whole of the plug-in.

#include "Support.h"
#include "boundary/XPathEngine.h"
#include "boundary/XmlCache.h"
#include "values/XPathOutputList.h"
#include "xmlproxy/Node.h"

#include <benchmark/benchmark.h>

namespace
{

/// So many other documents are in the cache.
void fillCache(int i_Documents)
{
    XmlPlugin::XmlCache::destroyInstance();
    Node* pRoot = nullptr;
    for (int i = 1; i <= i_Documents; ++i)
    {
        XmlPlugin::XmlCache::getInstance()->getDocument(documentFile(Shape::Wide, {static_cast<std::size_t>(i), 0}),
                                                        pRoot);
    }
}

void cacheHit(benchmark::State& io_State)
{
    fillCache(static_cast<int>(io_State.range(0)));
    const String& file = documentFile(Shape::Config, {10, 0});
    Node* pFirst = nullptr;
    Node* pSecond = nullptr;
    require(XmlPlugin::XmlCache::getInstance()->getDocument(file, pFirst) == 0 && pFirst != nullptr, "a document");
    require(XmlPlugin::XmlCache::getInstance()->getDocument(file, pSecond) == 0 && pSecond == pFirst, "its tree again");
    for (auto _ : io_State)
    {
        benchmark::DoNotOptimize(XmlPlugin::XmlCache::getInstance()->getDocument(file, pSecond));
    }
    XmlPlugin::XmlCache::destroyInstance();
}

void queryOnHit(benchmark::State& io_State)
{
    fillCache(0);
    const String& file = documentFile(Shape::Config, {10, 0});
    const String path(L"/root/group/@name");
    XmlPlugin::XPathEngine engine;
    XmlPlugin::XPathOutputList checked;
    require(engine.start(path, file, checked) == 0 && checked.size() == 1, "one value");
    for (auto _ : io_State)
    {
        XmlPlugin::XPathOutputList records;
        benchmark::DoNotOptimize(engine.start(path, file, records));
    }
    XmlPlugin::XmlCache::destroyInstance();
}

BENCHMARK(cacheHit)->Arg(0)->Arg(100);
BENCHMARK(queryOnHit);

} // namespace
