#include "trace/Trace.h"

namespace
{

std::string& records()
{
    static std::string s_Records;
    return s_Records;
}

} // namespace

Tracer::Tracer(int i_Component) : m_Component(i_Component) {}

Tracer& Tracer::getInstance(int i_Component)
{
    static Tracer s_Tracers[] = {Tracer(5), Tracer(0)};
    return i_Component == 5 ? s_Tracers[0] : s_Tracers[1];
}

int Tracer::component() const
{
    return m_Component;
}

Trace::Trace(Tracer& i_Tracer, const wchar_t* i_Scope)
    : m_Scope(std::to_string(i_Tracer.component()) + ' ' + String(i_Scope).toNarrow())
{
}

Trace::~Trace() = default;

Trace::Position Trace::pos(const wchar_t* i_Source, int i_Line)
{
    return {i_Source, i_Line};
}

Trace& Trace::operator<<(TraceLevel i_Level)
{
    m_Record = m_Scope + ' ' + std::to_string(static_cast<int>(i_Level));
    return *this;
}

Trace& Trace::operator<<(Position i_Position)
{
    m_Record += ' ' + String(i_Position.m_Source).toNarrow() + ':' + std::to_string(i_Position.m_Line) + ' ';
    return *this;
}

Trace& Trace::operator<<(const wchar_t* i_Text)
{
    return *this << String(i_Text);
}

Trace& Trace::operator<<(const String& i_Text)
{
    m_Record += i_Text.toNarrow();
    return *this;
}

Trace& Trace::operator<<(bool i_Value)
{
    m_Record += i_Value ? "true" : "false";
    return *this;
}

Trace& Trace::operator<<(int i_Value)
{
    m_Record += std::to_string(i_Value);
    return *this;
}

Trace& Trace::operator<<(unsigned i_Value)
{
    m_Record += std::to_string(i_Value);
    return *this;
}

Trace& Trace::operator<<(long i_Value)
{
    m_Record += std::to_string(i_Value);
    return *this;
}

Trace& Trace::operator<<(unsigned long i_Value)
{
    m_Record += std::to_string(i_Value);
    return *this;
}

Trace& Trace::operator<<(long long i_Value)
{
    m_Record += std::to_string(i_Value);
    return *this;
}

Trace& Trace::operator<<(unsigned long long i_Value)
{
    m_Record += std::to_string(i_Value);
    return *this;
}

Trace& Trace::operator<<(double i_Value)
{
    m_Record += std::to_string(i_Value);
    return *this;
}

Trace& Trace::operator<<(const void* i_pAddress)
{
    m_Record += i_pAddress == nullptr ? "null" : "an address";
    return *this;
}

Trace& Trace::operator<<(Marker)
{
    records() += m_Record + '\n';
    return *this;
}

const std::string& writtenRecords()
{
    return records();
}
