#pragma once

#include "system/TemporaryFile.h"

#include <string>

/// A document with one element, for questions about an expression alone: the plug-in reads an expression only together
/// with a document.
///
/// Ownership: owns a temporary file.
/// Threads: one at a time.
/// Tested by: tests/host/explain/ExplainTest.cpp, tests/host/FilesTest.cpp
class MinimalDocument
{
public:
    /// Throws std::runtime_error with the reason if the file cannot be written.
    MinimalDocument()
    {
        m_File.append("<document/>");
        m_File.close();
    }

    /// The path of the file, in UTF-8.
    std::string path() const { return m_File.path(); }

private:
    TemporaryFile m_File;
};
