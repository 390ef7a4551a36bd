#pragma once

#include "base/String.h"

/// Paths of documents and of the files that they refer to.
///
/// Tested by: tests/common/xmlproxy/XmlFilePathTest.cpp
namespace XmlFilePath
{

bool isRelative(const String& i_Path);

/// Returns the path, with `./` in front if it is relative, so that it is not a URL. Empty for the empty path.
String toIdentifier(const String& i_Path);

/// Returns \p i_Path, which starts at the folder of the file \p i_Base unless it is absolute, without any `x/..`. An
/// empty base stands for a file in the working directory.
String resolve(const String& i_Base, const String& i_Path);

/// Whether a file is in the folder of another one or below it, after following all links. False if the system does not
/// know one of them.
bool isInFolderOf(const String& i_Path, const String& i_Other);

/// Whether the path is one of the system's own files, which look regular but are not: those below `/dev`, `/proc` and
/// `/sys`. A relative path starts at the working directory. Links are not followed.
bool isOfTheSystem(const String& i_Path);

/// False if the working directory has been removed.
bool hasWorkingFolder();

} // namespace XmlFilePath
