#pragma once

#include "trace/Trace.h"

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
