#include "editing/dictionary.h"

#include "core/manipulatorattribute.h"
#include "data/content/graph.h"
#include "data/content/layoutmanipulators.h"
#include "data/content/nodemanipulators.h"
#include "data/content/parametermanipulators.h"
#include "data/diagnosticlog.h"
#include "support/editing.h"
#include "support/shelfcases.h"
#include <gtest/gtest.h>
#include <algorithm>

using namespace Ksx::Data::Content;
using Ksx::Core::DictionaryKey;
using Ksx::Core::DictionaryOf;
using Orv::LogRecord;
using Orv::Core::ManipulatorAttribute;
using Orv::Core::ManipulatorContext;
using Orv::Core::ManipulatorList;
using Orv::Data::ContainerList;
using Orv::Data::DataMessage;
using Orv::Data::DataPointerBox;
using TestSupport::attach;
using TestSupport::edit;
using TestSupport::editAndRefuse;
using TestSupport::makeCommand;
using TestSupport::pick;
using TestSupport::RecordingListener;

namespace {

using Outputs = ContainerList<CompOutput>;
using OutputDictionary = DictionaryOf<CompOutput>;
using OutputsEdit = ManipulatorList<CompOutput>;
using Uids = std::vector<UInt>;
using Lines = std::vector<std::string>;

// Keeps what is logged while it lives, a line per report.
class CapturedLog
{
public:
    CapturedLog()
        : m_number(Orv::DiagnosticLog::addSink([this](const LogRecord& record) {
              texts.push_back(record.text);
              records.push_back(record);
          }))
    {}
    ~CapturedLog() { Orv::DiagnosticLog::removeSink(m_number); }
    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;

    Lines texts;
    std::vector<LogRecord> records;

private:
    int m_number;
};

std::unique_ptr<CompOutput> anOutput(UInt uid)
{
    auto output = std::make_unique<CompOutput>();
    output->uid().assign(uid);
    return output;
}

// The list's dictionary, made if there is none.
template <class Item>
DictionaryOf<Item>& dictionaryOf(const ContainerList<Item>& list)
{
    DictionaryOf<Item>* dictionary = nullptr;
    edit([&](ManipulatorContext& context) {
        dictionary = &DictionaryOf<Item>::of(ManipulatorList<Item>(list, context));
    });
    return *dictionary;
}

// The keys of the records, in the order of the list.
template <class DictionaryClass>
auto keysOf(const DictionaryClass& dictionary)
{
    std::vector<typename DictionaryClass::Key> keys;
    for (std::size_t i = 0; i < dictionary.size(); ++i)
        keys.push_back(dictionary.keyAt(i));
    return keys;
}

// A list of outputs with its dictionary.
struct OutputList
{
    explicit OutputList(const Uids& uids)
    {
        for (const UInt uid : uids)
            list.pushBack(anOutput(uid));
        dictionary = &dictionaryOf<CompOutput>(list);
    }

    const CompOutput* find(UInt uid) const { return dictionary->find(uid).get(); }
    // Runs an edit on the list; the command remembers what is needed to undo it.
    std::shared_ptr<Orv::Core::CommandDataModification>
    run(const std::function<void(OutputsEdit&)>& function)
    {
        auto command = makeCommand([&](ManipulatorContext& context) {
            OutputsEdit manipulator(list, context);
            function(manipulator);
        });
        command->execute();
        return command;
    }
    void rename(std::size_t index, UInt uid)
    {
        run([=](OutputsEdit& edit) { edit.at(index).uid().set(uid); });
    }
    void erase(std::size_t index)
    {
        run([=](OutputsEdit& edit) { edit.erase(index, 1); });
    }

    CompNodeOutputList list;
    OutputDictionary* dictionary;
};

Lines oneLine(const std::string& text)
{
    return {text};
}

} // namespace

// --- building and looking up

TEST(Dictionary, IsFilledFromTheList)
{
    EXPECT_EQ(keysOf(*OutputList({30, 10, 20}).dictionary), (Uids{30, 10, 20}));
}

TEST(Dictionary, FindsEachItemByItsKey)
{
    const OutputList outputs({30, 10, 20});
    EXPECT_EQ(outputs.find(30), &outputs.list.at(0));
    EXPECT_EQ(outputs.find(10), &outputs.list.at(1));
    EXPECT_EQ(outputs.find(20), &outputs.list.at(2));
}

TEST(Dictionary, AnswersAnEmptyBoxForAnUnknownKey)
{
    EXPECT_FALSE(OutputList({30}).dictionary->find(31));
}

TEST(Dictionary, ContainsTheKeysOfItsItems)
{
    const OutputList outputs({30});
    EXPECT_TRUE(outputs.dictionary->contains(30));
    EXPECT_FALSE(outputs.dictionary->contains(31));
}

TEST(Dictionary, OfAnEmptyListIsEmpty)
{
    EXPECT_EQ(OutputList({}).dictionary->size(), 0u);
}

TEST(Dictionary, IsMadeOncePerList)
{
    const OutputList outputs({1});
    EXPECT_EQ(&dictionaryOf<CompOutput>(outputs.list), outputs.dictionary);
}

TEST(Dictionary, IsNotSharedByTwoLists)
{
    EXPECT_NE(OutputList({1}).dictionary, nullptr);
    const OutputList one({1});
    const OutputList other({2});
    EXPECT_NE(one.dictionary, other.dictionary);
    EXPECT_FALSE(one.dictionary->contains(2));
}

TEST(Dictionary, ListensFirstAndIsOwnedByTheShadow)
{
    const OutputList outputs({1});
    EXPECT_TRUE(outputs.dictionary->isOwnedByShadow());
    EXPECT_EQ(outputs.dictionary->getPriority(), 0xFFFF);
    EXPECT_EQ(outputs.dictionary->getFilter().typeMask, 152u);
    EXPECT_EQ(outputs.dictionary->getFilter().memberMask, 0xFFFFFFFFu);
    EXPECT_EQ(outputs.dictionary->getFilter().consumeMask, 0u);
}

TEST(Dictionary, ListensFirstToTheKeyOfEachItem)
{
    const OutputList outputs({1});
    const auto& listeners = outputs.list.at(0).uid().shadow()->listeners();
    ASSERT_EQ(listeners.size(), 1u);
    EXPECT_EQ(listeners.front().priority, 0xFFFF);
    EXPECT_EQ(listeners.front().listener->getFilter().typeMask, 2u);
    EXPECT_EQ(listeners.front().listener->getFilter().memberMask, 0xFFFFFFFFu);
    EXPECT_FALSE(listeners.front().listener->isOwnedByShadow());
}

TEST(Dictionary, HoldsAHundredThousandItems)
{
    Uids uids(100000);
    for (std::size_t i = 0; i < uids.size(); ++i)
        uids[i] = static_cast<UInt>(i) * 2654435761u;
    OutputList outputs(uids);
    outputs.rename(70000, 1);
    EXPECT_EQ(outputs.find(1), &outputs.list.at(70000));
    EXPECT_EQ(outputs.find(99999u * 2654435761u), &outputs.list.at(99999));
}

// --- the eleven lists

template <class Item>
class DictionaryOfClass : public testing::Test
{
public:
    using Key = typename DictionaryKey<Item>::Type;

    static Key key(UInt number)
    {
        if constexpr (std::is_same_v<Key, UInt>)
            return number;
        else
            return "key" + std::to_string(number);
    }
    static auto& keyAttribute(const Item& item)
    {
        return const_cast<Orv::Data::Attribute<Key>&>(DictionaryKey<Item>::of(item));
    }
    static std::unique_ptr<Item> anItem(UInt number)
    {
        auto item = std::make_unique<Item>();
        keyAttribute(*item).assign(key(number));
        return item;
    }

    // A list of the class, as every other one bound under a name of its own.
    struct ListMeta_
    {
        static constexpr Orv::Data::ObjectMeta record =
            Orv::Data::makeMeta("list", Orv::Data::Required);
    };
    Orv::Data::ChildValueTypeBinder<Orv::Data::MetaBinder<ContainerList<Item>, ListMeta_>> list;
};

using KeyedClasses =
    testing::Types<CompNode, CompOutput, GraphOutput, ParamInput, ParamNode, ParamsGraph,
                   ParamsGraphData, ParamsGraphNode, GUIObject, Parameter, Connexion>;
TYPED_TEST_SUITE(DictionaryOfClass, KeyedClasses, );

TYPED_TEST(DictionaryOfClass, FindsItsItems)
{
    this->list.pushBack(this->anItem(1));
    this->list.pushBack(this->anItem(2));
    const auto& dictionary = dictionaryOf<TypeParam>(this->list);
    EXPECT_EQ(dictionary.find(this->key(2)).get(), &this->list.at(1));
}

TYPED_TEST(DictionaryOfClass, FollowsAChangeOfTheKey)
{
    this->list.pushBack(this->anItem(1));
    const auto& dictionary = dictionaryOf<TypeParam>(this->list);
    edit([&](ManipulatorContext& context) {
        ManipulatorAttribute<typename TestFixture::Key>(this->keyAttribute(this->list.at(0)),
                                                        context)
            .set(this->key(5));
    });
    EXPECT_EQ(dictionary.find(this->key(5)).get(), &this->list.at(0));
}

TYPED_TEST(DictionaryOfClass, FollowsAnInsertion)
{
    const auto& dictionary = dictionaryOf<TypeParam>(this->list);
    edit([&](ManipulatorContext& context) {
        ManipulatorList<TypeParam>(this->list, context).pushBack(this->anItem(3));
    });
    EXPECT_EQ(dictionary.find(this->key(3)).get(), &this->list.at(0));
}

static_assert(std::is_same_v<OutputDictionary::Key, UInt>);
static_assert(std::is_same_v<DictionaryOf<Parameter>::Key, std::string>);
static_assert(std::is_same_v<DictionaryOf<Connexion>::Key, std::string>);

// --- following the list

TEST(Dictionary, FollowsInsertions)
{
    OutputList outputs({1, 2});
    outputs.run([](OutputsEdit& edit) {
        edit.insert(++edit.begin(), anOutput(8));
        edit.pushBack(anOutput(9));
    });
    EXPECT_EQ(keysOf(*outputs.dictionary), (Uids{1, 8, 2, 9}));
    EXPECT_EQ(outputs.find(8), &outputs.list.at(1));
    EXPECT_EQ(outputs.find(9), &outputs.list.at(3));
}

TEST(Dictionary, ForgetsErasedItems)
{
    OutputList outputs({1, 2, 3, 4});
    outputs.run([](OutputsEdit& edit) { edit.erase(1, 2); });
    EXPECT_EQ(keysOf(*outputs.dictionary), (Uids{1, 4}));
    EXPECT_FALSE(outputs.dictionary->contains(2));
    EXPECT_FALSE(outputs.dictionary->contains(3));
}

TEST(Dictionary, IsEmptyBehindAClear)
{
    OutputList outputs({1, 2, 3});
    outputs.run([](OutputsEdit& edit) { edit.clear(); });
    EXPECT_EQ(outputs.dictionary->size(), 0u);
    EXPECT_FALSE(outputs.dictionary->contains(1));
}

TEST(Dictionary, PutsAnItemBackWhenItsEraseIsUndone)
{
    OutputList outputs({1, 2, 3});
    outputs.run([](OutputsEdit& edit) { edit.erase(1, 1); })->undo();
    EXPECT_EQ(keysOf(*outputs.dictionary), (Uids{1, 2, 3}));
    EXPECT_EQ(outputs.find(2), &outputs.list.at(1));
}

TEST(Dictionary, FollowsAnItemThatCameBack)
{
    OutputList outputs({1, 2, 3});
    outputs.run([](OutputsEdit& edit) { edit.erase(1, 1); })->undo();
    outputs.rename(1, 7);
    EXPECT_EQ(outputs.find(7), &outputs.list.at(1));
    EXPECT_FALSE(outputs.dictionary->contains(2));
}

TEST(Dictionary, ForgetsAnItemAgainWhenItsEraseIsRedone)
{
    OutputList outputs({1, 2, 3});
    const auto command = outputs.run([](OutputsEdit& edit) { edit.erase(1, 1); });
    command->undo();
    command->redo();
    EXPECT_EQ(keysOf(*outputs.dictionary), (Uids{1, 3}));
    EXPECT_FALSE(outputs.dictionary->contains(2));
}

TEST(Dictionary, KeepsTheOrderOfMovedItems)
{
    OutputList outputs({1, 2, 3, 4});
    outputs.run([](OutputsEdit& edit) { edit.move(0, 2); });
    EXPECT_EQ(keysOf(*outputs.dictionary), (Uids{2, 3, 1, 4}));
    EXPECT_EQ(outputs.find(1), &outputs.list.at(2));
}

TEST(Dictionary, ForgetsTheRightItemBehindAMove)
{
    OutputList outputs({1, 2, 3, 4});
    outputs.run([](OutputsEdit& edit) { edit.move(3, -3); });
    outputs.erase(0);
    EXPECT_FALSE(outputs.dictionary->contains(4));
    EXPECT_TRUE(outputs.dictionary->contains(1));
}

TEST(Dictionary, FollowsManyEditsOfTheListAtOnce)
{
    OutputList outputs({1, 2, 3, 4, 5, 6});
    outputs.run([](OutputsEdit& edit) {
        edit.move(0, 4);                        // 2 3 4 5 1 6
        edit.erase(1, 1);                       // 2 4 5 1 6
        edit.insert(edit.begin(), anOutput(7)); // 7 2 4 5 1 6
        edit.move(5, -3);                       // 7 2 6 4 5 1
        edit.erase(4, 1);                       // 7 2 6 4 1
    });
    EXPECT_EQ(keysOf(*outputs.dictionary), (Uids{7, 2, 6, 4, 1}));
    EXPECT_FALSE(outputs.dictionary->contains(3));
    EXPECT_FALSE(outputs.dictionary->contains(5));
    EXPECT_EQ(outputs.find(1), &outputs.list.at(4));
}

TEST(Dictionary, NeverHearsOfAnItemThatCameAndWent)
{
    const CapturedLog log;
    OutputList outputs({1});
    outputs.run([](OutputsEdit& edit) {
        edit.pushBack(anOutput(2));
        edit.erase(1, 1);
    });
    EXPECT_EQ(keysOf(*outputs.dictionary), Uids{1});
    EXPECT_FALSE(outputs.dictionary->contains(2));
    EXPECT_EQ(log.texts, Lines());
}

TEST(Dictionary, IsUnchangedByAnEditThatIsRefused)
{
    OutputList outputs({1, 2});
    editAndRefuse([&](ManipulatorContext& context) {
        OutputsEdit edit(outputs.list, context);
        edit.erase(0, 1);
        edit.at(0).uid().set(8);
        edit.pushBack(anOutput(9));
    });
    EXPECT_EQ(keysOf(*outputs.dictionary), (Uids{1, 2}));
    EXPECT_EQ(outputs.find(2), &outputs.list.at(1));
    EXPECT_FALSE(outputs.dictionary->contains(9));
}

TEST(Dictionary, MadeInARefusedEditFindsTheListAgain)
{
    CompNodeOutputList list;
    list.pushBack(anOutput(1));
    editAndRefuse([&](ManipulatorContext& context) {
        OutputsEdit edit(list, context);
        edit.pushBack(anOutput(9));
        OutputDictionary::of(edit);
    });
    edit([&](ManipulatorContext& context) { OutputsEdit(list, context).pushBack(anOutput(2)); });
    const OutputDictionary& dictionary = dictionaryOf<CompOutput>(list);
    EXPECT_EQ(keysOf(dictionary), (Uids{1, 2}));
    EXPECT_FALSE(dictionary.contains(9));
}

TEST(Dictionary, MadeWithinAnEditHearsOfTheRestAlone)
{
    const CapturedLog log;
    CompNodeOutputList list;
    list.pushBack(anOutput(1));
    RecordingListener other;
    attach(list, other); // so that there are messages of what came before
    attach(list.at(0).uid(), other);
    edit([&](ManipulatorContext& context) {
        OutputsEdit edit(list, context);
        edit.pushBack(anOutput(2));
        edit.at(0).uid().set(5);
        OutputDictionary::of(edit);
        edit.pushBack(anOutput(3));
    });
    EXPECT_EQ(keysOf(dictionaryOf<CompOutput>(list)), (Uids{5, 2, 3}));
    EXPECT_EQ(log.texts, Lines());
}

TEST(Dictionary, IsUpToDateForAllOtherListeners)
{
    OutputList outputs({1});
    RecordingListener listener(0xFFFFFFFFu, 0xFFFFFFFFu, 0x8000);
    bool isFound = false;
    listener.reaction = [&](const DataMessage&) { isFound = outputs.find(2) != nullptr; };
    attach(outputs.list, listener);
    outputs.run([](OutputsEdit& edit) { edit.pushBack(anOutput(2)); });
    EXPECT_TRUE(isFound);
}

TEST(Dictionary, FollowsWhatAListenerDoesInTurn)
{
    OutputList outputs({1});
    RecordingListener listener(8);
    listener.reaction = [&](const DataMessage& message) {
        auto& context = static_cast<ManipulatorContext&>(*message.context.access());
        OutputsEdit(outputs.list, context).at(1).uid().set(22);
    };
    attach(outputs.list, listener);
    outputs.run([](OutputsEdit& edit) { edit.pushBack(anOutput(2)); });
    EXPECT_EQ(outputs.find(22), &outputs.list.at(1));
    EXPECT_FALSE(outputs.dictionary->contains(2));
}

// --- following the keys

TEST(Dictionary, FindsARenamedItemByItsNewKeyOnly)
{
    OutputList outputs({1, 2});
    outputs.rename(0, 7);
    EXPECT_EQ(outputs.find(7), &outputs.list.at(0));
    EXPECT_FALSE(outputs.dictionary->contains(1));
    EXPECT_EQ(keysOf(*outputs.dictionary), (Uids{7, 2}));
}

TEST(Dictionary, GoesByTheLastOfSeveralKeys)
{
    const CapturedLog log;
    OutputList outputs({1, 2});
    outputs.run([](OutputsEdit& edit) {
        edit.at(0).uid().set(2);
        edit.at(0).uid().set(7);
    });
    EXPECT_EQ(outputs.find(7), &outputs.list.at(0));
    EXPECT_EQ(outputs.find(2), &outputs.list.at(1));
    EXPECT_EQ(log.texts, Lines());
}

TEST(Dictionary, TakesTheSameKeyAgainInSilence)
{
    const CapturedLog log;
    OutputList outputs({1, 2});
    outputs.rename(0, 1);
    EXPECT_EQ(outputs.find(1), &outputs.list.at(0));
    EXPECT_EQ(log.texts, Lines());
}

TEST(Dictionary, GivesTheKeyBackWhenARenameIsUndone)
{
    OutputList outputs({1, 2});
    outputs.run([](OutputsEdit& edit) { edit.at(0).uid().set(7); })->undo();
    EXPECT_EQ(outputs.find(1), &outputs.list.at(0));
    EXPECT_FALSE(outputs.dictionary->contains(7));
}

TEST(Dictionary, ForgetsAnItemThatIsRenamedAndErasedAtOnce)
{
    const CapturedLog log;
    OutputList outputs({1, 2});
    outputs.run([](OutputsEdit& edit) {
        edit.at(0).uid().set(7);
        edit.erase(0, 1);
    });
    EXPECT_EQ(keysOf(*outputs.dictionary), Uids{2});
    EXPECT_FALSE(outputs.dictionary->contains(1));
    EXPECT_FALSE(outputs.dictionary->contains(7));
    EXPECT_EQ(log.texts, Lines());
}

TEST(Dictionary, EntersAnItemThatIsInsertedAndRenamedAtOnce)
{
    OutputList outputs({1});
    outputs.run([](OutputsEdit& edit) {
        edit.pushBack(anOutput(2));
        edit.at(1).uid().set(7);
    });
    EXPECT_EQ(outputs.find(7), &outputs.list.at(1));
    EXPECT_FALSE(outputs.dictionary->contains(2));
}

TEST(Dictionary, IgnoresOtherMembersOfItsItems)
{
    CompNodeConnexionsList list;
    list.pushBack(std::make_unique<Connexion>());
    const auto& dictionary = dictionaryOf<Connexion>(list);
    edit([&](ManipulatorContext& context) {
        ManipulatorList<Connexion>(list, context).at(0).connRef().value().set(4);
    });
    EXPECT_EQ(dictionary.find("").get(), &list.at(0));
}

TEST(Dictionary, HearsOfKeysThatArePresentationOnly)
{
    Graph graph;
    graph.GUIObjects().pushBack(std::make_unique<GUIObject>());
    const auto& dictionary = dictionaryOf<GUIObject>(graph.GUIObjects());
    edit([&](ManipulatorContext& context) {
        ManipulatorAttribute<UInt>(graph.GUIObjects().at(0).uid(), context).set(6);
    });
    EXPECT_TRUE(dictionary.contains(6));
}

// --- keys that are taken

TEST(Dictionary, ReportsADuplicateOnceAndKeepsTheFirst)
{
    const CapturedLog log;
    const OutputList outputs({1, 5, 5});
    EXPECT_EQ(log.texts, oneLine("Duplicate identifier '5'"));
    EXPECT_EQ(outputs.find(5), &outputs.list.at(1));
}

TEST(Dictionary, ReportsWithItsSourceAndLine)
{
    const CapturedLog log;
    const OutputList outputs({5, 5});
    ASSERT_EQ(log.records.size(), 1u);
    EXPECT_EQ(log.records[0].level, Orv::LogLevel::Inconsistency);
    EXPECT_STREQ(log.records[0].source, "kestrix/common/include/ksx/core/dictionary");
    EXPECT_EQ(log.records[0].line, 426);
}

TEST(Dictionary, ReportsATextKeyAsItStands)
{
    const CapturedLog log;
    CompNodeConnexionsList list;
    list.pushBack(std::make_unique<Connexion>());
    list.pushBack(std::make_unique<Connexion>());
    list.at(0).identifier().assign("in put");
    list.at(1).identifier().assign("in put");
    dictionaryOf<Connexion>(list);
    EXPECT_EQ(log.texts, oneLine("Duplicate identifier 'in put'"));
}

TEST(Dictionary, ReportsAnInsertedDuplicate)
{
    OutputList outputs({1, 5});
    const CapturedLog log;
    outputs.run([](OutputsEdit& edit) { edit.insert(edit.begin(), anOutput(5)); });
    EXPECT_EQ(log.texts, oneLine("Duplicate identifier '5'"));
    EXPECT_EQ(log.records[0].line, 426);
    EXPECT_EQ(outputs.find(5), &outputs.list.at(2));
}

TEST(Dictionary, ReportsARenameToATakenKeyAndKeepsTheFirst)
{
    OutputList outputs({1, 5});
    const CapturedLog log;
    outputs.rename(0, 5);
    EXPECT_EQ(log.texts, oneLine("Duplicate renamed identifier '5'"));
    EXPECT_EQ(outputs.find(5), &outputs.list.at(1));
    EXPECT_FALSE(outputs.dictionary->contains(1));
}

TEST(Dictionary, LosesAKeyWithTheErasedFirstOwner)
{
    OutputList outputs({5, 5});
    const CapturedLog log;
    outputs.erase(0);
    EXPECT_FALSE(outputs.dictionary->contains(5));
    EXPECT_EQ(log.texts, Lines());
}

TEST(Dictionary, LosesAKeyWithTheErasedSecondOwner)
{
    OutputList outputs({5, 5});
    const CapturedLog log;
    outputs.erase(1);
    EXPECT_FALSE(outputs.dictionary->contains(5));
    EXPECT_EQ(log.texts, Lines());
}

TEST(Dictionary, ReportsTheEraseOfAnItemWhoseKeyIsLost)
{
    OutputList outputs({5, 5});
    outputs.erase(0);
    const CapturedLog log;
    outputs.erase(0);
    EXPECT_EQ(log.texts, oneLine("Unknown identifier '5'"));
    EXPECT_EQ(outputs.dictionary->size(), 0u);
}

TEST(Dictionary, LosesAKeyWithTheRenamedFirstOwner)
{
    OutputList outputs({5, 5});
    const CapturedLog log;
    outputs.rename(0, 6);
    EXPECT_FALSE(outputs.dictionary->contains(5));
    EXPECT_EQ(outputs.find(6), &outputs.list.at(0));
    EXPECT_EQ(log.texts, Lines());
}

TEST(Dictionary, ReportsTheRenameOfAnItemWhoseKeyIsLost)
{
    OutputList outputs({5, 5});
    outputs.rename(0, 6);
    const CapturedLog log;
    outputs.rename(1, 7);
    EXPECT_EQ(log.texts, oneLine("Unknown renamed identifier '5'"));
    EXPECT_EQ(outputs.find(7), &outputs.list.at(1));
}

TEST(Dictionary, ReportsBothWhenALostItemIsRenamedToATakenKey)
{
    OutputList outputs({5, 5});
    outputs.rename(0, 6);
    const CapturedLog log;
    outputs.rename(1, 6);
    EXPECT_EQ(log.texts,
              (Lines{"Unknown renamed identifier '5'", "Duplicate renamed identifier '6'"}));
    EXPECT_EQ(outputs.find(6), &outputs.list.at(0));
}

TEST(Dictionary, EntersALostItemAgainBehindARename)
{
    OutputList outputs({5, 5});
    outputs.erase(0);
    outputs.rename(0, 5);
    EXPECT_EQ(outputs.find(5), &outputs.list.at(0));
}

TEST(Dictionary, ReportsARenameOfAnItemThatHasDied)
{
    OutputList outputs({1});
    CompNodeOutputList first; // its listener is served before that of the key
    RecordingListener killer(8, 0xFFFFFFFFu, 0xFFFF);
    killer.reaction = [&](const DataMessage&) { outputs.list.clear(); }; // behind everyone's back
    attach(first, killer);
    const CapturedLog log;
    edit([&](ManipulatorContext& context) {
        OutputsEdit(first, context).pushBack(anOutput(3));
        OutputsEdit(outputs.list, context).at(0).uid().set(2);
    });
    EXPECT_EQ(log.texts, oneLine("Rename identifier on deleted object"));
    EXPECT_EQ(log.records[0].line, 352);
    EXPECT_EQ(log.records[0].level, Orv::LogLevel::Inconsistency);
    EXPECT_FALSE(outputs.dictionary->find(1));
}

// --- its life

TEST(Dictionary, DiesWithTheList)
{
    DataPointerBox<OutputDictionary> box;
    {
        const OutputList outputs({1});
        box.reset(outputs.dictionary);
    }
    EXPECT_FALSE(box);
}

TEST(Dictionary, DiesWhenTheListIsTakenOut)
{
    GraphCompositeNodesList nodes;
    nodes.pushBack(std::make_unique<CompNode>());
    nodes.at(0).compOutputs().pushBack(anOutput(1));
    const DataPointerBox<OutputDictionary> box(
        &dictionaryOf<CompOutput>(nodes.at(0).compOutputs()));
    const auto command = makeCommand([&](ManipulatorContext& context) {
        ManipulatorList<CompNode>(nodes, context).erase(0, 1);
    });
    command->execute();
    EXPECT_FALSE(box);
}

TEST(Dictionary, IsMadeAnewWhenTheListComesBack)
{
    GraphCompositeNodesList nodes;
    nodes.pushBack(std::make_unique<CompNode>());
    nodes.at(0).compOutputs().pushBack(anOutput(1));
    dictionaryOf<CompOutput>(nodes.at(0).compOutputs());
    const auto command = makeCommand([&](ManipulatorContext& context) {
        ManipulatorList<CompNode>(nodes, context).erase(0, 1);
    });
    command->execute();
    command->undo();
    EXPECT_TRUE(dictionaryOf<CompOutput>(nodes.at(0).compOutputs()).contains(1));
}

// --- against a plain map, through random edits

namespace {

// Makes random edits whose keys stay unique, and remembers the commands.
class RandomEditor
{
public:
    RandomEditor(OutputList& outputs, std::mt19937::result_type seed)
        : m_outputs(outputs), m_random(TestSupport::seededRandom(seed))
    {}

    void step()
    {
        const int choice = pick(m_random, 0, 9);
        if (choice == 0 && m_done > 0)
            EXPECT_TRUE(m_commands[--m_done]->undo());
        else if (choice == 1 && m_done < m_commands.size())
            EXPECT_TRUE(m_commands[m_done++]->redo());
        else
            execute();
    }
    UInt lastKey() const { return m_nextKey; }

private:
    void execute()
    {
        m_commands.resize(m_done);
        m_commands.push_back(m_outputs.run([this](OutputsEdit& edit) {
            bool wasMove = false;
            for (int left = pick(m_random, 1, 5); left > 0; --left)
                wasMove = editOnce(edit, wasMove);
        }));
        ++m_done;
    }
    std::size_t anyIndex(const OutputsEdit& edit)
    {
        return pick<std::size_t>(m_random, 0, edit.get()->size() - 1);
    }
    // Answers whether it moved an item. Two moves in a row are undone as one.
    bool editOnce(OutputsEdit& edit, bool wasMove)
    {
        const int choice = edit.get()->isEmpty() ? 0 : pick(m_random, 0, 4);
        if (choice == 2 && !wasMove) {
            const auto from = static_cast<std::ptrdiff_t>(anyIndex(edit));
            edit.move(static_cast<std::size_t>(from),
                      static_cast<std::ptrdiff_t>(anyIndex(edit)) - from);
            return true;
        }
        if (choice == 3)
            edit.at(anyIndex(edit)).uid().set(++m_nextKey);
        else if (choice == 4)
            eraseSome(edit);
        else
            insertOne(edit);
        return false;
    }
    void insertOne(OutputsEdit& edit)
    {
        std::vector<std::unique_ptr<Orv::Data::BaseObject>> items;
        items.push_back(anOutput(++m_nextKey));
        edit.insert(pick<std::size_t>(m_random, 0, edit.get()->size()), std::move(items));
    }
    void eraseSome(OutputsEdit& edit)
    {
        const std::size_t index = anyIndex(edit);
        const std::size_t most = std::min<std::size_t>(3, edit.get()->size() - index);
        edit.erase(index, pick<std::size_t>(m_random, 0, most));
    }

    OutputList& m_outputs;
    std::mt19937 m_random;
    std::vector<std::shared_ptr<Orv::Core::CommandDataModification>> m_commands;
    std::size_t m_done = 0;
    UInt m_nextKey = 100;
};

std::map<UInt, const CompOutput*> rebuiltMap(const OutputList& outputs)
{
    std::map<UInt, const CompOutput*> map;
    for (const CompOutput& output : outputs.list)
        map.emplace(output.uid().get(), &output);
    return map;
}

std::map<UInt, const CompOutput*> dictionaryMap(const OutputList& outputs, UInt lastKey)
{
    std::map<UInt, const CompOutput*> map;
    for (UInt key = 0; key <= lastKey; ++key)
        if (outputs.dictionary->contains(key))
            map.emplace(key, outputs.find(key));
    return map;
}

Uids uidsOf(const OutputList& outputs)
{
    Uids uids;
    for (const CompOutput& output : outputs.list)
        uids.push_back(output.uid().get());
    return uids;
}

} // namespace

class DictionaryProperty : public testing::TestWithParam<unsigned>
{};

TEST_P(DictionaryProperty, EqualsAMapRebuiltFromTheList)
{
    const CapturedLog log;
    OutputList outputs({1, 2, 3, 4, 5, 6, 7, 8});
    RandomEditor editor(outputs, GetParam());
    for (int left = 300; left > 0 && !HasFailure(); --left) {
        editor.step();
        EXPECT_EQ(dictionaryMap(outputs, editor.lastKey()), rebuiltMap(outputs));
        EXPECT_EQ(keysOf(*outputs.dictionary), uidsOf(outputs));
        EXPECT_EQ(log.texts, Lines());
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, DictionaryProperty, testing::Range(1u, 21u));
