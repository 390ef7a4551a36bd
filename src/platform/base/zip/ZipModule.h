#pragma once

#include "base/zip/ZipArchive.h"

#include <memory>

/// The archive library, loaded by the first archive where it is in a module of its own. It stays loaded.
namespace ZipModule
{

/// Null when the file is no archive. Throws `std::runtime_error` with the module's name when that cannot be loaded,
/// `std::bad_alloc` when memory is exhausted.
std::unique_ptr<ZipArchive> open(const String& i_Path);

} // namespace ZipModule
