#include "support/RandomClient.h"

#include <algorithm>
#include <climits>
#include <set>

#include "support/ClientMap.h"

namespace ZOTDam::Test {

namespace {

// Reads twice with no other call in between, so the results must be equal.
template <class Read>
void ExpectSameTwice(Read read) {
    const auto first = read();
    EXPECT_TRUE(read() == first) << "a second look shows something else";
}

void CopyText(const std::wstring& text, Text& field) {
    field[text.copy(field, TextCapacity - 1)] = L'\0';
}

}  // namespace

const std::vector<RandomClient::Call> RandomClient::Calls = {
    &RandomClient::CountFunctions,    &RandomClient::ReadFunctionBase,      &RandomClient::ReadUnsupported,
    &RandomClient::ReadFunctionInfo,  &RandomClient::AddDefaults,           &RandomClient::ReadParameters,
    &RandomClient::StoreParameters,   &RandomClient::ReadDefaultParameters, &RandomClient::Reset,
    &RandomClient::ReadCurrentValues, &RandomClient::ReadCommands,          &RandomClient::ReadDifferences,
    &RandomClient::ReadSpecSchemes,   &RandomClient::ReadSetting,           &RandomClient::StoreSetting,
    &RandomClient::CopySettings,      &RandomClient::CallWithinItems};

void RandomClient::CallEverything(const std::function<void()>& between) {
    std::vector<Call> calls = Calls;
    for (int more = random.Below(6); more > 0; --more)
        calls.push_back(random.ElementOf(Calls));
    for (std::size_t last = calls.size() - 1; last > 0; --last)
        std::swap(calls[last], calls[static_cast<std::size_t>(random.Below(last + 1))]);
    for (const Call call : calls) {
        (this->*call)();
        if (random.OneIn(15))
            between();
    }
    EXPECT_TRUE(CheckingClient::Call(dll.ZOTDamExit));
    if (random.OneIn(4))
        CallAfterTheEnd();
}

// ---- The catalogues ----

void RandomClient::CountFunctions() {
    ExpectSameTwice([this] { return dll.GetFuncCount(); });
}

void RandomClient::ReadFunctionBase() {
    ExpectSameTwice([this] { return client.Read(dll.GetFunctionBase); });
}

void RandomClient::ReadUnsupported() {
    ExpectSameTwice([this] { return client.Read(dll.GetFunctionBaseUnSupported); });
}

void RandomClient::ReadFunctionInfo() {
    ExpectSameTwice([this] { return client.Read(dll.GetFunctionInfo); });
}

void RandomClient::AddDefaults() {
    FunctionBaseHolder holder;
    auto keep = MakeCallback<IGetFunctionBaseCallback>([&](const FunctionBaseRecord* record) {
        if (random.OneIn(4))
            return;
        holder.records.push_back(*record);
        if (random.OneIn(4))
            ChangeRecord(*holder.records.begin(), *record);
    });
    EXPECT_TRUE(
        CheckingClient::Call(random.OneIn(2) ? dll.GetFunctionBase : dll.GetFunctionBaseUnSupported, &keep));
    if (random.OneIn(6))
        holder.records.push_back(FunctionBaseRecord{});
    EXPECT_EQ(CheckingClient::Call(dll.AddFunctionDefault, &holder), !holder.records.empty());
}

void RandomClient::ChangeRecord(FunctionBaseRecord& record, const FunctionBaseRecord& other) {
    switch (random.Below(5)) {
        case 0:
            record.id = Number();
            break;
        case 1:
            CopyText(Value(), record.name);
            break;
        case 2:
            record.displayNode = random.OneIn(2) ? other.defaultNode : CountedPointer<IXMLDOMNode>{};
            break;
        case 3:
            record.defaultNode = record.displayNode;
            break;
        default:
            record.commandFamilies.push_back({});
    }
}

void RandomClient::ReadSpecSchemes() {
    ExpectSameTwice([this] { return client.Read(dll.GetSpecScheme); });
}

// ---- Parameters ----

void RandomClient::ReadParameters() {
    const GUID scheme = Scheme();
    // The first call may complete the stored values, so that more of them can be read.
    client.Read(dll.GetParameter, scheme);
    ExpectSameTwice([&] { return client.Read(dll.GetParameter, scheme); });
}

void RandomClient::ReadDefaultParameters() {
    const GUID scheme = Scheme();
    ExpectSameTwice([&] { return client.Read(dll.GetParameterDefault, scheme); });
}

void RandomClient::StoreParameters() {
    std::set<std::int32_t> ids;
    std::vector<ClientEntry> entries;
    for (int count = random.Below(6); count > 0; --count)
        if (const std::int32_t id = Number(); ids.insert(id).second)
            entries.push_back({id, {Number(), Number()}});
    const GUID scheme = Scheme();
    EXPECT_EQ(CheckingClient::Call(dll.SetParameter, &scheme, ClientMap{entries}.get()), !entries.empty());
}

// A step, like the functions that change the client.
// NOLINTNEXTLINE(readability-make-member-function-const)
void RandomClient::Reset() {
    CheckingClient::Call(dll.ResetDefault);
}

void RandomClient::ReadCurrentValues() {
    const GUID scheme = Scheme();
    if (!random.OneIn(8))
        CheckingClient::Call(dll.TEVGetParam, &scheme);
    for (const std::uint32_t position : {0u, 1u, 2u, 20u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
        ExpectSameTwice([&] { return client.ReadCurrentValue(position); });
}

void RandomClient::ReadCommands() {
    client.Read(dll.GetCommandInfo, Scheme());
}

void RandomClient::ReadDifferences() {
    const GUID schemeA = Scheme();
    const GUID schemeB = Scheme();
    client.ReadDifferences(schemeA, schemeB, Mode());
    EXPECT_FALSE(CheckingClient::Call(dll.GetDiffFuncList, &schemeA, &schemeB, Mode(), nullptr, nullptr));
}

// ---- Common settings ----

void RandomClient::ReadSetting() {
    const std::wstring name = Name();
    ExpectSameTwice([&] { return client.ReadSetting(name.c_str()); });
}

void RandomClient::StoreSetting() {
    CheckingClient::Call(dll.SetCommonSetting, Name().c_str(), Value().c_str());
}

// NOLINTNEXTLINE(readability-make-member-function-const): as for Reset
void RandomClient::CopySettings() {
    CheckingClient::Call(dll.InitCommonSetting);
}

// ---- Nested calls, and calls after the end ----

void RandomClient::CallWithinItems() {
    const CheckingClient busy{dll, [this] {
                                  if (random.OneIn(4))
                                      CallAnother();
                              }};
    switch (random.Below(4)) {
        case 0:
            busy.Read(dll.GetFunctionBase);
            break;
        case 1:
            busy.Read(dll.GetFunctionInfo);
            break;
        case 2:
            busy.Read(dll.GetParameter, Scheme());
            break;
        default:
            busy.Read(dll.GetCommandInfo, Scheme());
    }
}

// Excludes the last call, which would nest further calls without end.
void RandomClient::CallAnother() {
    const Call call = Calls[static_cast<std::size_t>(random.Below(Calls.size() - 1))];
    (this->*call)();
}

void RandomClient::CallAfterTheEnd() {
    const ParamHolder params{{{1, {2, 3}}}};
    const GUID scheme = Scheme();
    EXPECT_EQ(dll.GetFuncCount(), CatalogueUnavailable);
    EXPECT_FALSE(CheckingClient::Call(dll.SetParameter, &scheme, params.get()));
    EXPECT_FALSE(CheckingClient::Call(dll.TEVGetParam, &scheme));
    EXPECT_FALSE(CheckingClient::Call(dll.ResetDefault));
    EXPECT_FALSE(CheckingClient::Call(dll.InitCommonSetting));
    EXPECT_FALSE(CheckingClient::Call(dll.SetCommonSetting, L"Setting", L"value"));
    EXPECT_TRUE(client.ReadSetting(L"Setting").empty());
    EXPECT_TRUE(CheckingClient::Call(dll.ZOTDamExit));
}

// ---- Arguments ----

GUID RandomClient::Scheme() {
    GUID other = Balanced;
    other.Data1 = random.Number();
    return random.ElementOf({Balanced, Balanced, HighPerformance, PowerSaver, GUID{}, other});
}

std::int32_t RandomClient::Number() {
    return random.OneIn(10) ? random.ElementOf({-1, INT_MIN, INT_MAX, 100000}) : random.Below(12);
}

std::uint32_t RandomClient::Mode() {
    return random.ElementOf({1u, 1u, 2u, 2u, 0u, 3u, 0xFFFFFFFFu});
}

std::wstring RandomClient::Name() {
    return random.ElementOf<std::wstring>({L"Setting", L"Setting", L"Other", L"setting", L"Missing", L"lang",
                                           L"xml:lang", L"", L"xmlns", L"a:b", L"1a", L"a b", L"gr\xfcn",
                                           L"\xd83d\xde00", L"\xd83d", L"<", std::wstring(300, L'n')});
}

std::wstring RandomClient::Value() {
    return random.ElementOf<std::wstring>(
        {L"value", L"", L" ", L"<&>\"'", L"]]>", L"\r\n\t", L"\x1", L"\xfffe", L"\xd83d", L"\xd83d\xde00",
         L"gr\xfcn", std::wstring(259, L'v'), std::wstring(260, L'v'), std::wstring(70000, L'v')});
}

}  // namespace ZOTDam::Test
