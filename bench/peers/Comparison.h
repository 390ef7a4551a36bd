#pragma once

#include "Child.h"
#include "Documents.h"
#include "Results.h"

#include <cstddef>
#include <string>
#include <vector>

/// How much is measured.
struct Extent
{
    std::size_t elements = 100000;                     ///< of the document for warm queries
    std::vector<std::size_t> megabytes = {1, 16, 128}; ///< of the documents that are read cold
    std::vector<std::string> shapes;                   ///< "config", "wide", "deep", "text"; empty: all
    int rounds = 3;                                    ///< processes per peer and measurement
    double seconds = 0.2;                              ///< per expression in one process
    int limit = 60;                                    ///< maximum seconds per process
    std::vector<std::string> peers;                    ///< empty: all
};

/// A kind of document that is read cold.
struct ShapeRow
{
    std::string name;
    Shape shape;
    std::string query; ///< has an answer in each document of the kind
};

/// The parts of the comparison. Each measurement runs in a process of its own, and the peers take turns. The answers of
/// all peers are compared before the first measurement.
///
/// Ownership: borrows the results, which must outlive it.
/// Threads: one at a time.
class Comparison
{
public:
    /// \p i_Program is the path of this program; the libraries of the peers and the plug-in are in its folder.
    /// \p i_Folder is the folder for the documents.
    Comparison(std::string i_Program, std::string i_Folder, Extent i_Extent, Results& io_Results);

    void warm();
    void scalar();
    void cold();
    void small();
    void memory();
    void growth();
    void trace();

private:
    std::string path(const std::string& i_Name) const { return m_Folder + "/" + i_Name + ".xml"; }
    std::vector<std::string> chosen(const std::vector<std::string>& i_Peers) const;
    Task task(const std::string& i_What, const std::string& i_Peer, const std::string& i_Document,
              const std::vector<std::string>& i_Expressions, double i_Amount) const;
    std::vector<std::string> run(const Task& i_Task, const std::vector<std::string>& i_Before = {}) const;
    void compareAnswers(const std::vector<std::string>& i_Peers, const std::string& i_Document,
                        const std::vector<std::string>& i_Expressions) const;
    void measureExpressions(const std::string& i_Part, const std::vector<std::string>& i_Peers,
                            const std::string& i_Document, const std::vector<std::string>& i_Expressions);
    void measureOnce(const std::string& i_Part, const std::string& i_Row, const Task& i_Task, const std::string& i_Peer,
                     const std::vector<std::string>& i_Metrics, double i_Divisor);
    void coldShape(const ShapeRow& i_Shape, std::size_t i_Megabytes);
    void coldPeer(const std::string& i_Row, const std::string& i_Peer, const std::string& i_Query,
                  std::size_t i_Megabytes);
    void growthOf(const std::string& i_Name, Shape i_Shape, const std::vector<std::string>& i_Expressions);
    double instructions(const std::string& i_Peer, const std::string& i_Document, const std::string& i_Expression,
                        int i_Runs) const;

    std::string m_Program;
    std::string m_Libraries;
    std::string m_Folder;
    Extent m_Extent;
    Results& m_Results;
};
