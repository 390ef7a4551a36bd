#pragma once

#include "trace/Trace.h"

#include <cstddef>
#include <string>
#include <vector>

/// Support of the tests: keeps every trace record, as one line
/// `component|scope|level|source|line|text`, as long as it lives.
class RecordedTrace final : public TraceSink
{
public:
    explicit RecordedTrace(int i_Level = TraceInformation) { Tracer::install(this, i_Level); }
    ~RecordedTrace() override { Tracer::install(nullptr, TraceOff); }
    RecordedTrace(const RecordedTrace&) = delete;
    RecordedTrace& operator=(const RecordedTrace&) = delete;

    void write(const TraceRecord& i_Record) override
    {
        lines.push_back(std::to_string(i_Record.component) + "|" + String(i_Record.scope).toNarrow() + "|" +
                        std::to_string(i_Record.level) + "|" + String(i_Record.source).toNarrow() + "|" +
                        std::to_string(i_Record.line) + "|" + i_Record.text.toNarrow());
    }

    std::vector<std::string> lines;
};

/// Whether the line is a record of \p i_Record: a scope, a bar and the beginning of the text.
inline bool isRecord(const std::string& i_Line, const std::string& i_Record)
{
    const std::size_t bar = i_Record.find('|');
    const std::size_t scope = i_Line.find('|') + 1;
    return i_Line.compare(scope, bar + 1, i_Record, 0, bar + 1) == 0 &&
           i_Line.compare(i_Line.rfind('|') + 1, i_Record.size() - bar - 1, i_Record, bar + 1) == 0;
}

/// How many of the records, as `isRecord` takes them, were written in this order, with others between them.
inline std::size_t countInOrder(const RecordedTrace& i_Trace, const std::vector<const char*>& i_Records)
{
    std::size_t found = 0;
    for (const std::string& line : i_Trace.lines)
    {
        if (found < i_Records.size() && isRecord(line, i_Records[found]))
        {
            ++found;
        }
    }
    return found;
}
