#pragma once

#include "base/String.h"

/// Paths of documents and of the files that they refer to.
///
/// Tested by: tests/common/xmlproxy/XmlFilePathTest.cpp
namespace XmlFilePath
{

bool isRelative(const String& i_Path);

/// The path with `./` before a relative one, which then is no URL. Empty for the empty path.
String toIdentifier(const String& i_Path);

/// \p i_Path, which starts beside the file \p i_Base unless it is absolute, with each `x/..` taken
/// out. An empty base is a file in the working directory.
String resolve(const String& i_Base, const String& i_Path);

/// Whether a file lies in the folder that another one lies in, or below, with all links followed.
/// False when the system does not know one of them.
bool isInFolderOf(const String& i_Path, const String& i_Other);

/// Whether the path, from the working directory if it is relative, is one of the system's own files,
/// which look regular and are not: those below `/dev`, `/proc` and `/sys`. Links are not followed.
bool isOfTheSystem(const String& i_Path);

/// False when the working directory was removed.
bool hasWorkingFolder();

} // namespace XmlFilePath
