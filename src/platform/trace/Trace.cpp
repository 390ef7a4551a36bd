#include "trace/Trace.h"

#include <array>
#include <charconv>
#include <cstdint>

namespace
{

TraceSink* s_pSink = nullptr;

constexpr int s_Precision = 6;

} // namespace

int Tracer::s_Level = TraceOff;

TraceSink::~TraceSink() = default;

void Tracer::install(TraceSink* i_pSink, int i_Level)
{
    const bool isOn = i_pSink != nullptr && i_Level > TraceOff;
    s_pSink = isOn ? i_pSink : nullptr;
    s_Level = isOn ? i_Level : static_cast<int>(TraceOff);
}

TraceSink* Tracer::sink() noexcept
{
    return s_pSink;
}

Trace::Record::Record(Trace i_Trace, TraceLevel i_Level)
    : m_Record{i_Trace.m_Tracer.component(), i_Trace.m_Scope, i_Level, L"", 0, String()}
{
}

Trace::Record::~Record()
{
    TraceSink* const pSink = Tracer::sink();
    if (pSink != nullptr && isEnabled(m_Record.level))
    {
        pSink->write(m_Record);
    }
}

Trace::Record& Trace::Record::operator<<(Position i_Position) noexcept
{
    m_Record.source = i_Position.source;
    m_Record.line = i_Position.line;
    return *this;
}

Trace::Record& Trace::Record::operator<<(const wchar_t* i_Text)
{
    m_Record.text += String(i_Text);
    return *this;
}

Trace::Record& Trace::Record::operator<<(const String& i_Text)
{
    m_Record.text += i_Text;
    return *this;
}

Trace::Record& Trace::Record::operator<<(bool i_Value)
{
    return *this << (i_Value ? L"true" : L"false");
}

Trace::Record& Trace::Record::operator<<(int i_Value)
{
    return *this << String::valueOf(i_Value);
}

Trace::Record& Trace::Record::operator<<(unsigned i_Value)
{
    return *this << String::valueOf(i_Value);
}

Trace::Record& Trace::Record::operator<<(long i_Value)
{
    return *this << String::valueOf(i_Value);
}

Trace::Record& Trace::Record::operator<<(unsigned long i_Value)
{
    return *this << String::valueOf(i_Value);
}

Trace::Record& Trace::Record::operator<<(long long i_Value)
{
    return *this << String::valueOf(i_Value);
}

Trace::Record& Trace::Record::operator<<(unsigned long long i_Value)
{
    return *this << String::valueOf(i_Value);
}

Trace::Record& Trace::Record::operator<<(double i_Value)
{
    std::array<char, 32> text{};
    const auto result =
        std::to_chars(text.data(), text.data() + text.size(), i_Value, std::chars_format::general, s_Precision);
    return *this << String(text.data(), static_cast<std::size_t>(result.ptr - text.data()));
}

Trace::Record& Trace::Record::operator<<(const void* i_pAddress)
{
    if (i_pAddress == nullptr)
    {
        return *this << L"0";
    }
    std::array<char, 2 * sizeof(void*)> digits{};
    const auto address = reinterpret_cast<std::uintptr_t>(i_pAddress);
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), address, 16);
    return *this << L"0x" << String(digits.data(), static_cast<std::size_t>(result.ptr - digits.data()));
}
