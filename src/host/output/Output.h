#pragma once

#include "plugin/Evaluator.h"

#include <memory>
#include <string>

struct Options;

/// Prints what was found to the standard output, in one of the forms that the options ask for.
///
/// The calls come in the order `beginFile`, `add` for each expression, `endFile`, for each file.
/// Threads: one at a time.
/// Tested by: tests/host/HostTest.cpp
class Output
{
public:
    virtual ~Output() = default;

    /// \p i_Name is the file as the user knows it, in UTF-8.
    virtual void beginFile(const std::string& i_Name) = 0;
    virtual void add(const std::string& i_Expression, const Outcome& i_Outcome) = 0;
    virtual void endFile() = 0;
};

std::unique_ptr<Output> makeOutput(const Options& i_Options, std::size_t i_FileCount);
