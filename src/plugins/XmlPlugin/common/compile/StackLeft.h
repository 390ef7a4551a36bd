#pragma once

#include <cstddef>

namespace XmlPlugin
{

/// Whether the calling thread's stack has room for another level of nesting, which takes a few kilobytes. True where
/// the system does not tell where the stack ends.
///
/// Threads: any number; each asks the system once.
/// Tested by: tests/plugins/XmlPlugin/common/compile/XPathTokenizerTest.cpp
bool hasStackLeft() noexcept;

} // namespace XmlPlugin
