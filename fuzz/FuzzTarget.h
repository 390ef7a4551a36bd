#pragma once

#include "base/String.h"

#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>

/// What every target is made of: one function, run by the fuzzer and by the replay program alike.

/// Runs one input and checks what must hold for it. A property that does not hold ends the process.
void fuzzOne(std::string_view i_Bytes);

[[noreturn]] inline void reportBroken(const char* i_File, int i_Line, const char* i_Property,
                                      const std::string& i_About)
{
    std::cerr << i_File << ':' << i_Line << ": broken: " << i_Property << '\n' << i_About << std::endl;
    std::abort();
}

/// Ends the process where the property does not hold; what it is about is made only then.
#define FUZZ_CHECK(i_Property, i_About)                                                                                \
    if (!(i_Property)) [[unlikely]]                                                                                    \
    reportBroken(__FILE__, __LINE__, #i_Property, (i_About))

/// An expression: UTF-8, or UTF-16 in any order of units behind the mark FF FE.
inline String expressionText(std::string_view i_Bytes)
{
    if (!i_Bytes.starts_with("\xFF\xFE"))
    {
        return {i_Bytes.data(), i_Bytes.size()};
    }
    std::u16string units;
    for (std::size_t i = 2; i + 1 < i_Bytes.size(); i += 2)
    {
        units.push_back(static_cast<char16_t>(static_cast<unsigned char>(i_Bytes[i]) |
                                              static_cast<unsigned char>(i_Bytes[i + 1]) << 8U));
    }
    return String::fromUtf16(units.data(), units.size());
}
