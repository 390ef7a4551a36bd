#pragma once

#include "support/Process.h"

#include <string>
#include <utility>
#include <vector>

// The tool as a process, for the tests that look at what it prints.

using Texts = std::vector<std::string>;

inline ProcessResult runHost(Texts i_Arguments, const ProcessSettings& i_Settings = {})
{
    i_Arguments.insert(i_Arguments.begin(), HOST_PROGRAM);
    return runProcess(i_Arguments, i_Settings);
}

/// With a plug-in that answers what the expression asks it to answer.
inline ProcessResult runWithFake(Texts i_Arguments, const ProcessSettings& i_Settings = {})
{
    i_Arguments.insert(i_Arguments.begin(), std::string("--plugin=") + FAKE_MODULE);
    return runHost(std::move(i_Arguments), i_Settings);
}

/// The line about a document that cannot be read.
inline std::string documentError(const std::string& i_Name, const std::string& i_Reason)
{
    return "xmlvalue: error -15103: the document could not be read as XML: " + i_Name + " (" + i_Reason + ")\n";
}
