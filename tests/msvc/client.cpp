// A client with the binary interface of MSVC. It needs no runtime library. It counts the functions of which
// it receives a complete record. The exit code is this number, or 0 when an export failed.
#include <objbase.h>

#include "ZOTDam.h"

// The compiler refers to it in the tables of classes with pure virtual functions.
extern "C" int _purecall() {
    ExitProcess(0);
}

namespace {

class FunctionCounter final : public ZOTDam::IGetFunctionInfoCallback {
public:
    void OnItem(std::uint32_t functionId, const ZOTDam::FunctionRecord* record) override {
        const bool isNew = functionId > lastId;
        lastId = functionId;
        if (isNew && record->name[0] != L'\0' && HasOptions(record->acDisplayItems) &&
            HasOptions(record->dcDisplayItems))
            ++count;
    }

    std::uint32_t Count() const noexcept { return count; }

private:
    static bool HasOptions(const ZOTDam::List<ZOTDam::DisplayItem>& options) noexcept {
        std::size_t labels = 0;
        for (const ZOTDam::DisplayItem& option : options)
            labels += option.label[0] != L'\0' ? 1U : 0U;
        return labels > 0 && labels == options.size();
    }

    std::uint32_t lastId = 0;
    std::uint32_t count = 0;
};

std::uint32_t CountFunctions() {
    FunctionCounter counter;
    const bool isEnumerated = ZOTDam::GetFunctionInfo(&counter);
    return isEnumerated && counter.Count() == ZOTDam::GetFuncCount() ? counter.Count() : 0;
}

}  // namespace

// The entry point of the program. The data files are in the current folder.
extern "C" [[noreturn]] void Start() {
    SetEnvironmentVariableW(L"ProgramFiles", L"Program Files");
    SetEnvironmentVariableW(L"ProgramData", L"ProgramData");
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    const std::uint32_t count = CountFunctions();
    const bool isReleased = ZOTDam::ZOTDamExit();
    CoUninitialize();
    ExitProcess(isReleased ? count : 0);
}
