#include "ksx/core/behavior/behaviors.h"

#include "behavior/retrievecompexternallinkdependency.h"
#include "behavior/retrievecompfilterdependency.h"
#include "behavior/retrievecompinputbridgedependency.h"
#include "behavior/retrievecompinstancedependency.h"
#include "behavior/retrievefunctioninstancedependency.h"
#include "behavior/synccompinstance.h"
#include "behavior/syncfunctioninstance.h"
#include "behavior/syncfunctiontype.h"
#include "behavior/syncgraphprimaryinput.h"
#include "behavior/syncgraphrootoutput.h"

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
