#pragma once

#include "input/Options.h"

#include <string>

/// The colours of the tool's texts, or no colours at all.
///
/// Tested by: tests/host/TerminalTest.cpp
class Palette
{
public:
    explicit constexpr Palette(bool i_IsOn) noexcept : m_IsOn(i_IsOn) {}

    /// The palette for a stream. With `ColorChoice::Auto`, only a terminal has colours, unless the environment forbids
    /// them (NO_COLOR set and not empty, or TERM set to dumb).
    static Palette choose(ColorChoice i_Choice, bool i_IsTerminal);

    bool isOn() const noexcept { return m_IsOn; }
    std::string fileName(const std::string& i_Text) const { return mark("35", i_Text); }
    std::string separator(const std::string& i_Text) const { return mark("36", i_Text); }
    std::string error(const std::string& i_Text) const { return mark("1;31", i_Text); }
    std::string hint(const std::string& i_Text) const { return mark("1;36", i_Text); }

private:
    std::string mark(const char* i_pCode, const std::string& i_Text) const
    {
        return m_IsOn ? std::string("\x1B[") + i_pCode + 'm' + i_Text + "\x1B[m" : i_Text;
    }

    bool m_IsOn;
};

/// Whether the environment says that the terminal cannot do more than print.
bool isTerminalDumb();
