// A client that calls every export in random order with random arguments, and checks all results.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "support/CheckingClient.h"
#include "support/Random.h"

namespace ZOTDam::Test {

class RandomClient {
public:
    RandomClient(const Library& library, Random& source) : dll{library}, random{source}, client{library} {}

    // Calls each export at least once, and ZOTDamExit last. `between` runs at random between two calls.
    void CallEverything(const std::function<void()>& between);

private:
    using Call = void (RandomClient::*)();
    static const std::vector<Call> Calls;

    void CountFunctions();
    void ReadFunctionBase();
    void ReadUnsupported();
    void ReadFunctionInfo();
    void AddDefaults();
    void ReadParameters();
    void ReadDefaultParameters();
    void StoreParameters();
    void Reset();
    void ReadCurrentValues();
    void ReadCommands();
    void ReadDifferences();
    void ReadSpecSchemes();
    void ReadSetting();
    void StoreSetting();
    void CopySettings();
    void CallWithinItems();
    void CallAnother();
    void CallAfterTheEnd();

    void ChangeRecord(FunctionBaseRecord& record, const FunctionBaseRecord& other);
    GUID Scheme();
    std::int32_t Number();
    std::uint32_t Mode();
    std::wstring Name();
    std::wstring Value();

    const Library& dll;
    Random& random;
    CheckingClient client;
};

}  // namespace ZOTDam::Test
