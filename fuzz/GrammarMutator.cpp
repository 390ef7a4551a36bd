// For the targets that read an expression: now and then an input is replaced by a text of the
// grammar, or gets one at its end, which single bytes and words seldom make.
#include "RandomCases.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* io_pData, std::size_t i_Size, std::size_t i_MaxSize);
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* io_pData, std::size_t i_Size, std::size_t i_MaxSize,
                                               unsigned i_Seed)
{
    constexpr unsigned percentMade = 6;
    constexpr unsigned percentAppended = 30;
    Random random(i_Seed);
    if (!random.chance(percentMade))
    {
        return LLVMFuzzerMutate(io_pData, i_Size, i_MaxSize);
    }
    ExpressionMaker maker(random);
    const std::string text = random.chance(75) ? maker.grammatical() : maker.mutated();
    const std::size_t begin = random.chance(percentAppended) ? std::min(i_Size, i_MaxSize) : 0;
    const std::size_t length = std::min(text.size(), i_MaxSize - begin);
    std::copy_n(text.begin(), length, io_pData + begin);
    return std::max<std::size_t>(begin + length, 1);
}
