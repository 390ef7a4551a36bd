#pragma once

#include <string>

/// Touches as much memory as the largest of the compared trees takes for this document, and gives it back to the
/// system; at the most half of what is free.
///
/// The host of a virtual machine takes back memory that has been free for some seconds, and supplies it again within
/// the first access, which then costs up to fifty times as much. Behind this call the next process or allocation finds
/// memory that the machine still has.
void supplyMemoryFor(const std::string& i_Document);
