// Tests of the list that AddFunctionDefault receives. The list belongs to the client, and the call only reads
// it, along its links.
#include "support/ClientList.h"
#include "support/FunctionDefaultsTest.h"

namespace ZOTDam::Test {

class FunctionDefaultsInputTest : public FunctionDefaultsTest {
protected:
    void ExpectRejected(const FunctionBaseHolder* holder) {
        const std::string before = Defaults();
        EXPECT_FALSE(Dll().AddFunctionDefault(holder));
        EXPECT_EQ(Defaults(), before);
        EXPECT_EQ(Dll().GetFuncCount(), 10u);
    }

    static CommandFamily FamilyWithCheck() {
        CommandFamily family = FamilyWith({1});
        family.checkExistItems.push_back({1, L"a", L"b", L"c", L"d"});
        return family;
    }
};

// ---- No records ----

TEST_F(FunctionDefaultsInputTest, NullHolderIsRejected) {
    ExpectRejected(nullptr);
}

TEST_F(FunctionDefaultsInputTest, EmptyListIsRejected) {
    const FunctionBaseHolder empty;
    ExpectRejected(&empty);
}

TEST_F(FunctionDefaultsInputTest, EmptyListDoesNotLoadFile) {
    RemoveDefaults();
    const FunctionBaseHolder empty;
    EXPECT_FALSE(Dll().AddFunctionDefault(&empty));
    WriteFunctions(Functions({1}));
    EXPECT_EQ(Dll().GetFuncCount(), 1u);
}

TEST_F(FunctionDefaultsInputTest, EmptiedListIsRejected) {
    FunctionBaseHolder holder = HolderOf({Record(1)});
    holder.records.clear();
    ExpectRejected(&holder);
}

TEST_F(FunctionDefaultsInputTest, ListIsRejectedAfterExit) {
    const FunctionBaseHolder holder = HolderOf({Record(1)});
    const std::string before = Defaults();
    EXPECT_TRUE(Dll().ZOTDamExit());
    EXPECT_FALSE(Dll().AddFunctionDefault(&holder));
    EXPECT_EQ(Defaults(), before);
}

// ---- Counts and links ----

TEST_F(FunctionDefaultsInputTest, ListWithZeroCountIsEmptyDespiteLinks) {
    FunctionBaseHolder holder = HolderOf({Record(1)});
    const ClaimedCount none{holder.records, 0};
    ExpectRejected(&holder);
}

TEST_F(FunctionDefaultsInputTest, ListWithZeroCountIsNotTraversed) {
    FunctionBaseHolder holder;
    ListLinks* const sentinel = std::exchange(Raw(holder.records).head, nullptr);
    ExpectRejected(&holder);
    Raw(holder.records).head = sentinel;
}

TEST_F(FunctionDefaultsInputTest, EmptyRingWithNonzeroCountRemovesFunctions) {
    FunctionBaseHolder holder;
    const ClaimedCount one{holder.records, 1};
    Replace(holder);
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults("")});
}

TEST_F(FunctionDefaultsInputTest, NonzeroCountDoesNotLimitRecords) {
    FunctionBaseHolder holder = HolderOf({Record(1), Record(2), Record(3)});
    for (const std::uint64_t count : {1ull, 2ull, 1000ull, ~0ull}) {
        const ClaimedCount claimed{holder.records, count};
        Replace(holder);
        EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(1) + Written(2) + Written(3))});
        RemoveDefaults();
        WriteFunctions(Functions({1}));
    }
}

TEST_F(FunctionDefaultsInputTest, FamiliesWithZeroCountAreIgnored) {
    FunctionBaseHolder holder = HolderOf({Record(1), Record(2)});
    const ClaimedCount none{holder.records.begin()->commandFamilies, 0};
    Replace(holder);
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(2))});
}

TEST_F(FunctionDefaultsInputTest, NonzeroCountDoesNotLimitFamilies) {
    FunctionBaseHolder holder = HolderOf({RecordWith(1, {FamilyWith({1}), FamilyWith({2})})});
    const ClaimedCount many{holder.records.begin()->commandFamilies, 1000};
    Replace(holder);
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(WrittenWith(1, WrittenCommand(1) + WrittenCommand(2)))});
}

TEST_F(FunctionDefaultsInputTest, CommandsWithZeroCountAreIgnored) {
    FunctionBaseHolder holder = HolderOf({RecordWith(1, {FamilyWith({1, 2}), FamilyWith({3})})});
    const ClaimedCount none{holder.records.begin()->commandFamilies.begin()->commandItems, 0};
    Replace(holder);
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(WrittenWith(1, WrittenCommand(3)))});
}

TEST_F(FunctionDefaultsInputTest, NonzeroCountDoesNotLimitCommands) {
    FunctionBaseHolder holder = HolderOf({RecordWith(1, {FamilyWith({1, 2})})});
    const ClaimedCount one{holder.records.begin()->commandFamilies.begin()->commandItems, 1};
    Replace(holder);
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(WrittenWith(1, WrittenCommand(1) + WrittenCommand(2)))});
}

TEST_F(FunctionDefaultsInputTest, CountOfChecksIsIgnored) {
    FunctionBaseHolder holder = HolderOf({RecordWith(1, {FamilyWithCheck()})});
    for (const std::uint64_t count : {0ull, ~0ull}) {
        const ClaimedCount claimed{holder.records.begin()->commandFamilies.begin()->checkExistItems, count};
        Replace(holder);
        EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(1))});
    }
}

// ---- Read-only access ----

TEST_F(FunctionDefaultsInputTest, ReadOnlyListIsAccepted) {
    const FunctionBaseHolder holder =
        HolderOf({RecordWith(1, {FamilyWithCheck(), FamilyWith({})}), RecordWith(2, {}), Record(3)});
    const ReadOnlyRecords records{holder.records};
    EXPECT_TRUE(Dll().AddFunctionDefault(records.get()));
    EXPECT_EQ(Defaults(), SavedXml{OldDefaults(Written(1) + Written(3))});
}

TEST_F(FunctionDefaultsInputTest, ReadOnlyListWithNodesIsAccepted) {
    const FunctionBaseHolder holder = HolderOf({RecordWithDefault(1, 2, 3)});
    const ReadOnlyRecords records{holder.records};
    EXPECT_TRUE(Dll().AddFunctionDefault(records.get()));
    EXPECT_EQ(Defaults(),
              SavedXml{OldDefaults(Written(1, R"(<Default ACParamIndex="2" DCParamIndex="3"/>)"))});
}

TEST_F(FunctionDefaultsInputTest, ReadOnlyEmptyListIsRejected) {
    const ReadOnlyRecords records{{}};
    ExpectRejected(records.get());
}

class NodeReferenceTest : public FunctionDefaultsInputTest {
protected:
    static ULONG References(IXMLDOMNode* node) {
        node->AddRef();
        return node->Release();
    }

    // Two records share a node. The third has its own.
    NodeReferenceTest() {
        FunctionBaseRecord record = RecordWithDefault(1, 2, 3);
        record.displayNode = record.defaultNode;
        shared = record.displayNode.get();
        FunctionBaseRecord other = RecordWithDefault(2, 4, 5);
        own = other.defaultNode.get();
        holder = HolderOf({record, record, other});
    }

    void ExpectSameReferences(bool (*act)(const Library& dll, const FunctionBaseHolder* holder)) {
        const ULONG before = References(shared);
        EXPECT_EQ(before, 4u);
        EXPECT_EQ(References(own), 1u);
        act(Dll(), &holder);
        EXPECT_EQ(References(shared), before);
        EXPECT_EQ(References(own), 1u);
    }

    FunctionBaseHolder holder;
    IXMLDOMNode* shared = nullptr;
    IXMLDOMNode* own = nullptr;
};

TEST_F(NodeReferenceTest, SuccessfulCallKeepsReferenceCounts) {
    ExpectSameReferences([](const Library& dll, const FunctionBaseHolder* records) {
        return dll.AddFunctionDefault(records);
    });
}

TEST_F(NodeReferenceTest, InvalidNameKeepsReferenceCounts) {
    Assign((++holder.records.begin())->name, L"\x1");
    ExpectSameReferences([](const Library& dll, const FunctionBaseHolder* records) {
        return dll.AddFunctionDefault(records);
    });
}

TEST_F(NodeReferenceTest, RejectedListKeepsReferenceCounts) {
    ExpectSameReferences([](const Library& dll, const FunctionBaseHolder* records) {
        return dll.ZOTDamExit() && dll.AddFunctionDefault(records);
    });
}

TEST_F(FunctionDefaultsInputTest, SecondCallWithSameListChangesNothing) {
    const FunctionBaseHolder holder = HolderOf({RecordWithDefault(1, 2, 3), Record(2)});
    Replace(holder);
    const std::string once = Defaults();
    Replace(holder);
    EXPECT_EQ(Defaults(), once);
}

}  // namespace ZOTDam::Test
