#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// One of the programs compared: a way to read a document and to evaluate an expression on it.
///
/// Lifecycle: `start`; then any number of rounds of `load`, `prepare` and `query` or `evaluate` in turn, `unload`.
/// Ownership: a peer owns its document and the list that received the last values.
/// Threads: one at a time.
class Peer
{
public:
    virtual ~Peer() = default;

    /// Initialises the library. Called once; before that, the library has only been loaded.
    virtual void start() {}
    /// Reads the document, or remembers its path if the library reads it with the first query.
    virtual void load(const std::string& i_Path) = 0;
    /// Frees the document and everything that the library releases with it.
    virtual void unload() = 0;
    /// Frees only the document, if others can stay loaded. Does the same as `unload` by default.
    virtual void forget() { unload(); }
    /// Keeps the parser library initialised until the process ends, if the peer has one.
    virtual void holdLibrary() {}

    /// Converts an expression to the characters that the library takes, and does nothing more.
    virtual void prepare(const std::string& i_Expression) = 0;
    /// Compiles the prepared expression, evaluates it, and puts its values into a new list of wide texts. Returns their
    /// number. Throws std::runtime_error if there is no answer.
    virtual std::size_t query() = 0;
    /// Same, without reading the values of the nodes found.
    virtual std::size_t evaluate() { return query(); }
    /// The values of the last `query`, as UTF-8.
    virtual std::vector<std::string> values() const = 0;
};

/// Each peer is a library of its own, so that no process loads more than the one that it measures. The library exports
/// this function as "createPeer". Its argument depends on the peer (the plug-in to load) or is empty.
extern "C" Peer* createPeer(const char* i_Argument);
using CreatePeer = Peer* (*)(const char*);
