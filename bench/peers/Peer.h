#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// One of those that are compared: a way to read a document and to answer an expression on it.
///
/// Life: `start`, then `load`, `prepare` and `query` or `evaluate` in turn, then `unload`; and so on.
/// Ownership: a peer owns its document and the list that received the last values.
/// Threads: one at a time.
class Peer
{
public:
    virtual ~Peer() = default;

    /// Initialises the library, once; until then nothing but its loading has been done.
    virtual void start() {}
    /// Reads the document, or remembers its path when it is read with the first query only.
    virtual void load(const std::string& i_Path) = 0;
    /// Frees the document, with all that the library lets go of with it.
    virtual void unload() = 0;
    /// Frees the document where others can stay; by itself the same as `unload`.
    virtual void forget() { unload(); }
    /// Keeps the parser library initialised to the end of the process, where the peer has one to hold.
    virtual void holdLibrary() {}

    /// Brings an expression into the form that the library takes (its characters, nothing more).
    virtual void prepare(const std::string& i_Expression) = 0;
    /// Compiles the prepared expression, evaluates it, and puts its values into a list of wide texts made new for it.
    /// Returns their number. Throws std::runtime_error when there is no answer.
    virtual std::size_t query() = 0;
    /// The same without reading the values of the nodes that were found.
    virtual std::size_t evaluate() { return query(); }
    /// The values of the last `query`, as UTF-8.
    virtual std::vector<std::string> values() const = 0;
};

/// Each peer is a library of its own, so that no process carries more than the one it measures. It
/// exports this as "createPeer"; the argument is the peer's own (the plug-in to load), or empty.
extern "C" Peer* createPeer(const char* i_Argument);
using CreatePeer = Peer* (*)(const char*);
