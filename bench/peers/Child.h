#pragma once

#include <string>
#include <vector>

/// The task of a process that measures one peer. The process writes one line per result to its standard output, with
/// numbers separated by blanks.
///
/// answers  per expression: number of values, hash of the values; or "none" without an answer
/// warm     per expression: nanoseconds of `query`, nanoseconds of `evaluate` (medians); or "none"
/// cold     nanoseconds of load, query and unload with the library held: the median, after one run for warming up
/// unheld   same, without holding the library
/// fresh    nanoseconds of processor time in a new process until the document is freed: counted from the moment when
///          the peer's libraries are loaded but not yet called, and from the start of the process
/// small    nanoseconds per document, from the second of many small ones on (median)
/// memory   bytes by which load and query raised the peak of the resident memory
/// repeat   nothing; runs `query` of the first expression "amount" times, after one run for warming up
struct Task
{
    std::string what;
    std::string library;  ///< of the peer
    std::string argument; ///< for its `createPeer`
    double amount = 0;    ///< seconds per expression (warm), runs (cold, small, repeat)
    std::string document;
    std::vector<std::string> expressions;
};

/// Convert a task to the arguments of a process and back.
std::vector<std::string> toArguments(const Task& i_Task);
Task toTask(const std::vector<std::string>& i_Arguments);

/// Performs a task and writes its results to standard output. Returns the exit status of the process: 0, or 1 with a
/// line on standard error.
int runChild(const Task& i_Task);
