#pragma once

#include <string>
#include <vector>

/// What a process that measures one peer is told to do. The processes talk in lines: the child writes
/// one line a result on its standard output, numbers separated by blanks.
///
/// answers  for each expression: number of values, hash of the values; or "none" without an answer
/// warm     for each expression: nanoseconds of `query`, nanoseconds of `evaluate` (medians); or "none"
/// cold     nanoseconds of load, query and unload with the library held: the median after one run before
/// unheld   the same without holding the library
/// fresh    nanoseconds of processor time in a process that has just begun until the document is freed:
///          from where the peer's libraries are loaded and nothing in them was called yet, and from
///          the start of the process
/// small    nanoseconds a document for the second and later of many small ones (median)
/// memory   bytes by which the resident memory's peak grew with load and query
/// repeat   nothing; does the first expression's `query` "amount" times after one more
struct Task
{
    std::string what;
    std::string library;  ///< the peer's
    std::string argument; ///< for its `createPeer`
    double amount = 0;    ///< seconds for each expression (warm), runs (cold, small, repeat)
    std::string document;
    std::vector<std::string> expressions;
};

/// Puts a task into the arguments of a process and back.
std::vector<std::string> toArguments(const Task& i_Task);
Task toTask(const std::vector<std::string>& i_Arguments);

/// Does a task and writes its results. Exit status of the process: 0, or 1 with a line on standard error.
int runChild(const Task& i_Task);
