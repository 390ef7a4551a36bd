#pragma once

/// Which files the external entities of a document may refer to. Never anything on a network, never anything but a
/// regular file, and never a file that is already being read.
enum class ExternalEntities
{
    Files,         ///< any file that the process may read
    FilesInFolder, ///< files in the document's folder or below it, after following all links
    None           ///< a document that refers to one has an error
};
