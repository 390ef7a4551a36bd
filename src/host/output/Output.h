#pragma once

#include "plugin/Evaluator.h"

#include <memory>
#include <string>

struct Options;

/// Prints the results to standard output, in the format that the options select.
///
/// For each file, the calls must be `beginFile`, then `add` for each expression, then `endFile`.
/// Threads: one at a time.
/// Tested by: tests/host/HostTest.cpp
class Output
{
public:
    virtual ~Output() = default;

    /// \p i_Name is the name of the file as the user knows it, in UTF-8.
    virtual void beginFile(const std::string& i_Name) = 0;
    virtual void add(const std::string& i_Expression, const Outcome& i_Outcome) = 0;
    virtual void endFile() = 0;
};

std::unique_ptr<Output> makeOutput(const Options& i_Options, std::size_t i_FileCount);
