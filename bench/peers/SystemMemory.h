#pragma once

#include <string>

/// Touches as much memory as the largest of the compared trees takes for this document, but at most half of the free
/// memory, and releases it to the system.
///
/// The host of a virtual machine takes back memory that has been free for some seconds, and supplies it again on the
/// first access, which then costs up to fifty times as much. After this call, the next process or allocation finds
/// memory that the machine still has.
void supplyMemoryFor(const std::string& i_Document);
