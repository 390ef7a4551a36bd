#pragma once

#include "base/String.h"

#include <string>

enum TraceLevel : int
{
    TraceError = 1,
    TraceWarning = 2,
    TraceInformation = 3
};

class MINIMAL_API Tracer
{
public:
    static Tracer& getInstance(int i_Component);
    Tracer(const Tracer&) = delete;
    Tracer& operator=(const Tracer&) = delete;

    int component() const;

private:
    explicit Tracer(int i_Component);
    int m_Component;
};

/// The scope of one operation. It cannot tell whether somebody listens, is not copied, and is changed by writing to it.
class MINIMAL_API Trace
{
public:
    struct Position
    {
        const wchar_t* m_Source;
        int m_Line;
    };
    enum Marker
    {
        end
    };

    Trace(Tracer& i_Tracer, const wchar_t* i_Scope);
    ~Trace();
    Trace(const Trace&) = delete;
    Trace& operator=(const Trace&) = delete;

    static Position pos(const wchar_t* i_Source, int i_Line);

    Trace& operator<<(TraceLevel i_Level);
    Trace& operator<<(Position i_Position);
    Trace& operator<<(const wchar_t* i_Text);
    Trace& operator<<(const String& i_Text);
    Trace& operator<<(int i_Value);
    Trace& operator<<(unsigned i_Value);
    Trace& operator<<(long i_Value);
    Trace& operator<<(unsigned long i_Value);
    Trace& operator<<(long long i_Value);
    Trace& operator<<(unsigned long long i_Value);
    Trace& operator<<(bool i_Value);
    Trace& operator<<(double i_Value);
    Trace& operator<<(const void* i_pAddress);
    Trace& operator<<(Marker i_End);

private:
    std::string m_Scope;
    std::string m_Record;
};

/// All finished records so far, one per line: component, scope, level, source and line, text.
MINIMAL_API const std::string& writtenRecords();
