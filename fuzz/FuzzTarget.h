#pragma once

#include "xmlproxy/XmlText.h"

#include <cstddef>
#include <cstdint>
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

/// Whether every input gets every check; the replay program says so.
inline bool g_IsEveryCheckDue = false;

/// Which of the costly checks an input gets. While fuzzing, each input gets one, chosen by its own bytes: the fuzzer
/// then runs many times as many inputs, and whoever replays a find gets the same check.
class CheckChoice
{
public:
    /// \p i_Count: how many checks there are, at least 1.
    CheckChoice(std::string_view i_Bytes, unsigned i_Count) noexcept
    {
        std::uint32_t hash = 2166136261U; // FNV-1a
        for (const char byte : i_Bytes)
        {
            hash = (hash ^ static_cast<unsigned char>(byte)) * 16777619U;
        }
        m_Chosen = (hash >> 8U) % i_Count;
    }

    /// Whether the check with this number, from 0, is due.
    bool isDue(unsigned i_Check) const noexcept { return g_IsEveryCheckDue || i_Check == m_Chosen; }

private:
    unsigned m_Chosen;
};

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
    return fromUtf16(units.data(), units.size());
}
