#include "ksx/core/behavior/behaviors.h"

#include "ksx/core/behavior/retrievecompexternallinkdependency.h"
#include "ksx/core/behavior/retrievecompfilterdependency.h"
#include "ksx/core/behavior/retrievecompinputbridgedependency.h"
#include "ksx/core/behavior/retrievecompinstancedependency.h"
#include "ksx/core/behavior/retrievefunctioninstancedependency.h"
#include "ksx/core/behavior/synccompinstance.h"
#include "ksx/core/behavior/syncfunctioninstance.h"
#include "ksx/core/behavior/syncfunctiontype.h"
#include "ksx/core/behavior/syncgraphprimaryinput.h"
#include "ksx/core/behavior/syncgraphrootoutput.h"

namespace Ksx::Core::Behavior {

namespace {

template <class T>
void addRetriever(DataNotifier& notifier, const DictionaryCallback& dictionary)
{
    notifier.add(std::make_unique<DataDynamicFactory<T, DictionaryCallback>>(dictionary));
}

} // namespace

void addBehaviors(DataNotifier& notifier, DependenciesDictionary& dictionary)
{
    notifier.add(std::make_unique<DataDynamicFactory<SyncCompInstance>>());
    notifier.add(std::make_unique<DataDynamicFactory<SyncFunctionInstance>>());
    notifier.add(std::make_unique<DataStaticFactory<SyncGraphRootOutput>>());
    notifier.add(std::make_unique<DataStaticFactory<SyncFunctionType>>());
    notifier.add(std::make_unique<DataStaticFactory<SyncGraphPrimaryInput>>());
    const DictionaryCallback callback =
        [&dictionary](const Data::Content::Package& package, Uid dependency,
                      const Orv::Data::BaseObject& user, bool isUsed) {
            if (isUsed)
                dictionary.addUse(package, dependency, user);
            else
                dictionary.removeUse(package, dependency, user);
        };
    addRetriever<RetrieveCompExternalLinkDependency>(notifier, callback);
    addRetriever<RetrieveCompFilterDependency>(notifier, callback);
    addRetriever<RetrieveCompInputBridgeDependency>(notifier, callback);
    addRetriever<RetrieveCompInstanceDependency>(notifier, callback);
    addRetriever<RetrieveFunctionInstanceDependency>(notifier, callback);
}

} // namespace Ksx::Core::Behavior
