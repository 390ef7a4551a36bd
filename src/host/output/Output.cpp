#include "output/Output.h"

#include "input/Options.h"
#include "output/JsonOutput.h"
#include "output/Palette.h"
#include "output/TextOutput.h"
#include "system/Console.h"

namespace
{

class NoOutput final : public Output
{
public:
    void beginFile(const std::string&) override {}
    void add(const std::string&, const Outcome&) override {}
    void endFile() override {}
};

bool wantsNames(const Options& i_Options, std::size_t i_FileCount)
{
    const bool isSeveral = i_FileCount > 1 || i_Options.recursive || !i_Options.filesFrom.empty();
    return i_Options.fileNames == FileNames::Always || (i_Options.fileNames == FileNames::WhenSeveral && isSeveral);
}

} // namespace

std::unique_ptr<Output> makeOutput(const Options& i_Options, std::size_t i_FileCount)
{
    const char end = i_Options.nullEnded ? '\0' : '\n';
    if (i_Options.quiet)
    {
        return std::make_unique<NoOutput>();
    }
    if (i_Options.json)
    {
        return std::make_unique<JsonOutput>(i_Options.count, end);
    }
    const bool withNames = wantsNames(i_Options, i_FileCount);
    const Palette palette = Palette::choose(i_Options.color, Console::isOutputTerminal());
    if (i_Options.count)
    {
        return std::make_unique<CountOutput>(withNames, end, palette);
    }
    return std::make_unique<TextOutput>(withNames, end, i_Options.nullValue, palette);
}
