#pragma once

#include <cstdint>

class ParserLibrary;

/// The interface of the module next to the plug-in: one function, which is looked up by name.
namespace ParserModule
{

/// File name of the module, which is in the folder of the plug-in.
constexpr const char* s_FileName = "XmlPluginXerces.so";

constexpr const char* s_EntryName = "createXercesLibrary";

/// Creates an object, which the caller owns and must destroy before the module is unloaded; null if memory is
/// exhausted. The module has its own copy of the document layer's code, and creates names for the caller's trees.
/// Therefore \p i_NameSecret must be the caller's `XmlName::secret`.
using Entry = ParserLibrary* (*)(std::uint64_t i_NameSecret);

} // namespace ParserModule
