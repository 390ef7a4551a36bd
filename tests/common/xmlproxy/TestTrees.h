#pragma once

#include "xmlproxy/AttributeTable.h"
#include "xmlproxy/Node.h"
#include "xmlproxy/NodeSink.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#ifndef _WIN32
#include <pthread.h>
#endif

/// Support of the tests: trees as text, a sink that keeps everything, a thread with a stack of a
/// known size.

inline std::string narrow(std::wstring_view i_Text)
{
    return String(i_Text.data(), i_Text.size()).toNarrow();
}

/// A node without its children.
inline std::string printNode(const Node& i_Node)
{
    if (i_Node.getType() == Node::CharacterDataNode)
    {
        return "\"" + i_Node.name().toNarrow() + "\"";
    }
    std::string text = i_Node.name().toNarrow() + "#" + std::to_string(i_Node.sequence());
    const AttributeTable* pTable = i_Node.attributes();
    if (pTable && pTable->count() > 0)
    {
        text += "{";
        for (int index = 0; index < pTable->count(); ++index)
        {
            text += index > 0 ? " " : "";
            text += narrow(pTable->nameAt(index)) + "=" + narrow(pTable->valueAt(index)) + "#" +
                    narrow(pTable->ordinalAt(index));
        }
        text += "}";
    }
    return text;
}

/// `name#sequence{attribute=value#ordinal}(children)`; a text node is `"text"`. Without recursion: trees may be deep.
inline std::string printTree(const Node& i_Root)
{
    std::string text = printNode(i_Root);
    // The way down; a copy's nodes have no parent pointers to go back by.
    std::vector<const Node*> parents;
    const Node* pNode = &i_Root;
    for (;;)
    {
        const Node* pNext = nullptr;
        if (!pNode->children().empty())
        {
            text += "(";
            parents.push_back(pNode);
            pNext = pNode->children().front();
        }
        while (!pNext && !parents.empty())
        {
            pNext = pNode->nextSibling();
            text += pNext ? " " : ")";
            if (!pNext)
            {
                pNode = parents.back();
                parents.pop_back();
            }
        }
        if (!pNext)
        {
            return text;
        }
        text += printNode(*pNext);
        pNode = pNext;
    }
}

/// Keeps every tree and every message (as `level line text`).
class RecordingSink final : public NodeSink
{
public:
    TErrorCode setRoot(Node* i_pRoot) override
    {
        roots.emplace_back(i_pRoot);
        return 0;
    }
    TErrorCode onWarning(const String& i_Message, int i_Line) override { return record("warning", i_Message, i_Line); }
    TErrorCode onError(const String& i_Message, int i_Line) override { return record("error", i_Message, i_Line); }
    TErrorCode onCriticalError(const String& i_Message, int i_Line) override
    {
        return record("critical", i_Message, i_Line);
    }

    /// All trees, one a line.
    std::string trees() const
    {
        std::string text;
        for (const auto& pRoot : roots)
        {
            text += (text.empty() ? "" : "\n") + printTree(*pRoot);
        }
        return text;
    }

    std::vector<std::unique_ptr<Node>> roots;
    std::vector<std::string> messages;

private:
    TErrorCode record(const char* i_Level, const String& i_Message, int i_Line)
    {
        messages.push_back(std::string(i_Level) + " " + std::to_string(i_Line) + " " + i_Message.toNarrow());
        return 0;
    }
};

/// Runs \p i_Work on a thread of its own with a stack of 8 MiB (on Windows on this thread, whose
/// stack is smaller).
template <typename Work>
void runOnSmallStack(Work i_Work)
{
#ifdef _WIN32
    i_Work();
#else
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, std::size_t{8} << 20);
    pthread_t thread;
    const auto start = [](void* i_pWork) -> void*
    {
        (*static_cast<Work*>(i_pWork))();
        return nullptr;
    };
    pthread_create(&thread, &attributes, start, &i_Work);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
#endif
}
