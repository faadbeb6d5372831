// Tests of OnItem callbacks that call exports or throw exceptions during an enumeration.
#include "support/DataFiles.h"
#include "support/ExportTest.h"
#include "support/HeapAllocations.h"

namespace ZOTDam::Test {

// Tests with an OnItem of GetParameter that performs an action at the first item.
class OnItemTest : public ExportTest {
protected:
    OnItemTest() { WriteDefaults(TwoFunctions); }

    template <class Action>
    Params ItemsWhile(Action&& atFirstItem) {
        Params items;
        auto callback = MakeCallback<IGetParameterCallback>([&](std::int32_t id, const ParamValue* value) {
            if (items.empty())
                atFirstItem();
            items.emplace_back(id, *value);
        });
        EXPECT_TRUE(Dll().GetParameter(&Balanced, &callback));
        return items;
    }

    const Params defaults = {{1, {2, 3}}, {2, {4, 5}}};
};

TEST_F(OnItemTest, CallbackCanStoreParameters) {
    EXPECT_EQ(ItemsWhile([this] {
                  EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}, {2, {7, 8}}}));
              }),
              defaults);
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {5, 6}}, {2, {7, 8}}}));
}

TEST_F(OnItemTest, CallbackCanReadSameScheme) {
    EXPECT_EQ(ItemsWhile([this] { EXPECT_EQ(GetParameter(Balanced), defaults); }), defaults);
}

TEST_F(OnItemTest, CallbackCanReadAnotherScheme) {
    EXPECT_EQ(ItemsWhile([this] { EXPECT_EQ(GetParameter(HighPerformance), defaults); }), defaults);
    EXPECT_NE(UserSettings().find(HighPerformanceText), std::string::npos);
}

TEST_F(OnItemTest, CallbackCanReset) {
    EXPECT_EQ(ItemsWhile([this] { EXPECT_TRUE(Dll().ResetDefault()); }), defaults);
    EXPECT_EQ(UserSettings().find("<PowerScheme "), std::string::npos);
}

TEST_F(OnItemTest, ExitInOnItemDoesNotEndEnumeration) {
    EXPECT_EQ(ItemsWhile([this] { EXPECT_TRUE(Dll().ZOTDamExit()); }), defaults);
    EXPECT_EQ(Dll().GetFuncCount(), CatalogueUnavailable);
}

TEST_F(OnItemTest, DefaultsAreEnumeratedDespiteExitInOnItem) {
    Params items;
    auto callback = MakeCallback<IGetParameterDefaultCallback>([&](std::int32_t id, const ParamValue* value) {
        EXPECT_TRUE(Dll().ZOTDamExit());
        items.emplace_back(id, *value);
    });
    EXPECT_TRUE(Dll().GetParameterDefault(&Balanced, &callback));
    EXPECT_EQ(items, defaults);
}

// An exception that a client throws from OnItem.
struct ClientFailure {
    int item;
};

class ThrowingOnItemTest : public OnItemTest {
protected:
    // Calls the export with an OnItem that throws at the given item. Returns the item in the exception.
    int CatchAt(decltype(&ZOTDam::GetParameter) enumerate, int failingItem) {
        int item = 0;
        auto callback = MakeCallback<IGetParameterCallback>([&](std::int32_t, const ParamValue*) {
            if (++item == failingItem)
                throw ClientFailure{item};
        });
        try {
            enumerate(&Balanced, &callback);
        } catch (const ClientFailure& failure) {
            EXPECT_EQ(item, failure.item);
            return failure.item;
        }
        return 0;
    }
};

TEST_F(ThrowingOnItemTest, ExceptionReachesClientAndEndsEnumeration) {
    EXPECT_EQ(CatchAt(Dll().GetParameter, 1), 1);
    EXPECT_EQ(CatchAt(Dll().GetParameter, 2), 2);
    EXPECT_EQ(CatchAt(Dll().GetParameterDefault, 1), 1);
    EXPECT_EQ(CatchAt(Dll().GetParameterDefault, 2), 2);
}

TEST_F(ThrowingOnItemTest, LibraryStaysUsableAfterException) {
    EXPECT_EQ(CatchAt(Dll().GetParameter, 1), 1);
    EXPECT_EQ(GetParameter(Balanced), defaults);
    EXPECT_TRUE(SetParameter(Balanced, {{1, {5, 6}}}));
    EXPECT_EQ(GetParameter(Balanced), (Params{{1, {5, 6}}, {2, {4, 5}}}));
}

TEST_F(ThrowingOnItemTest, ExceptionLeaksNoHeapAllocation) {
    GetParameter(Balanced);
    HeapAllocations::Track(Dll().Handle());
    EXPECT_EQ(CatchAt(Dll().GetParameter, 1), 1);
    EXPECT_EQ(CatchAt(Dll().GetParameterDefault, 2), 2);
    EXPECT_EQ(HeapAllocations::Count(), 0u);
}

}  // namespace ZOTDam::Test
