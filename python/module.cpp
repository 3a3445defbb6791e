// The module `kestrix._kestrix`: packages, graphs and all that is in them as objects of Python.
#include "objects.h"

PYBIND11_MODULE(_kestrix, module)
{
    using namespace Ksx::Python;
    module.doc() = "The part of the module kestrix that is compiled.";
    module.attr("__version__") = KESTRIX_VERSION;
    bindSessions(module);
    bindPackages(module);
    bindGraphs(module);
    bindNodes(module);
    bindInterfaces(module);
    bindParameters(module);
    bindFunctions(module);
    bindResources(module);
}
