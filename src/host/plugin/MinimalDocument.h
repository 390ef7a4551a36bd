#pragma once

#include "system/TemporaryFile.h"

#include <string>

/// A document of one element, for questions about an expression alone: the plug-in reads an expression only when it
/// has a document to ask.
///
/// Ownership: owns a temporary file.
/// Threads: one at a time.
/// Tested by: tests/host/explain/ExplainTest.cpp, tests/host/FilesTest.cpp
class MinimalDocument
{
public:
    /// Throws std::runtime_error with the reason when the file cannot be written.
    MinimalDocument()
    {
        m_File.append("<document/>");
        m_File.close();
    }

    /// In UTF-8.
    std::string path() const { return m_File.path(); }

private:
    TemporaryFile m_File;
};
