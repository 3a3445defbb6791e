// Walks over all nodes of a package and what feeds them, twice, and prints the cpu time of each walk.
// walk_graphs.py does the same in Python.
//   walkgraphs PACKAGE
#include "data/content/package.h"
#include "ksx/core/compgraphcontroller.h"
#include "ksx/core/compnodecontroller.h"
#include "ksx/core/inputconnectorcontroller.h"
#include "ksx/core/session.h"
#include <ctime>
#include <iostream>

using Ksx::Core::Session;

namespace {

struct Walk
{
    std::size_t nodes = 0;
    std::size_t connections = 0;
    std::uint64_t sum = 0; // of the uids of sources
};

Walk walk(const Session& session, const Session::PackageBox& package)
{
    Walk walk;
    for (const auto* graph : session.graphs(package))
        for (const auto* node : graph->nodes()) {
            ++walk.nodes;
            for (std::size_t i = 0; i < node->inputConnectorCount(); ++i)
                for (const auto* source : node->inputConnector(i)->targets()) {
                    ++walk.connections;
                    walk.sum += source->node().uid();
                }
        }
    return walk;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: walkgraphs PACKAGE\n";
        return 2;
    }
    Session session;
    const QString path = QString::fromLocal8Bit(argv[1]);
    if (!session.openAlone({path}))
        return 1;
    const auto package = session.package(path);
    for (const char* which : {"first", "second"}) {
        const std::clock_t begin = std::clock();
        const Walk walked = walk(session, package);
        const double seconds = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
        std::cout << which << ": " << walked.nodes << " nodes, " << walked.connections
                  << " connections, sum " << walked.sum << ", " << seconds << " s\n";
    }
    return 0;
}
