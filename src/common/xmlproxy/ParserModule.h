#pragma once

#include <cstdint>

class ParserLibrary;

/// What the module beside the plug-in offers: one function, which is looked up by name.
namespace ParserModule
{

/// File name of the module, in the folder of the plug-in.
constexpr const char* s_FileName = "XmlPluginXerces.so";

constexpr const char* s_EntryName = "createXercesLibrary";

/// A new object, which belongs to the caller and ends before the module is unloaded; null when memory is exhausted. The
/// module has code of the document layer of its own, and makes names for the caller's trees: \p i_NameSecret is the
/// caller's `XmlName::secret`.
using Entry = ParserLibrary* (*)(std::uint64_t i_NameSecret);

} // namespace ParserModule
