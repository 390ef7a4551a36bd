#pragma once

/// Which files the external entities of a document may be. Never a network, never anything but a
/// regular file, and never one that is being read already.
enum class ExternalEntities
{
    Files,         ///< any file that the process may read
    FilesInFolder, ///< files in the document's folder or below, with all links followed
    None           ///< a document that refers to one has an error
};
