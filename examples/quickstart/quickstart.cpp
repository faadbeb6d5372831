// Adopts all functions of the base catalogue, lists them, changes parameters of a scheme, and reads them
// again. The program is C++14 and links ZOTDam.lib. FOLDER must contain the folders "Program Files" and
// "ProgramData" of an installation:
//     quickstart_cpp FOLDER
#include <windows.h>

#include <msxml2.h>
#include <objbase.h>

#include <cstdio>
#include <string>

#include "ZOTDam.h"

namespace {

constexpr GUID Balanced = {0x381b4222, 0xf694, 0x41f0, {0x96, 0x85, 0xff, 0x5b, 0xb2, 0x60, 0xdf, 0x2e}};

const char* YesOrNo(bool answer) {
    return answer ? "yes" : "no";
}

// ---- Adopting functions ---------------------------------------------------------------------------------

// A real program performs the checks of a record and keeps only the supported functions.
struct Keep : ZOTDam::IGetFunctionBaseCallback {
    void OnItem(const ZOTDam::FunctionBaseRecord* record) override { holder.records.push_back(*record); }
    ZOTDam::FunctionBaseHolder holder;
};

void AdoptAll() {
    Keep keep;
    ZOTDam::GetFunctionBase(&keep);
    const bool accepted = ZOTDam::AddFunctionDefault(&keep.holder);
    std::printf("%u functions adopted: %s\n", static_cast<unsigned>(keep.holder.records.size()),
                YesOrNo(accepted));
}  // the copies release their nodes here, while COM is still initialised

// ---- Listing functions ----------------------------------------------------------------------------------

struct PrintFunction : ZOTDam::IGetFunctionInfoCallback {
    void OnItem(std::uint32_t id, const ZOTDam::FunctionRecord* record) override {
        char name[3 * ZOTDam::TextCapacity] = "";
        WideCharToMultiByte(CP_UTF8, 0, record->name, -1, name, sizeof name, nullptr, nullptr);
        std::printf("%u: %s, options: %u and %u\n", id, name,
                    static_cast<unsigned>(record->acDisplayItems.size()),
                    static_cast<unsigned>(record->dcDisplayItems.size()));
    }
};

// ---- Parameters -----------------------------------------------------------------------------------------

struct PrintParameter : ZOTDam::IGetParameterCallback {
    void OnItem(std::int32_t id, const ZOTDam::ParamValue* value) override {
        std::printf("%d: position %d plugged in, %d on battery\n", id, value->ACParamIndex,
                    value->DCParamIndex);
    }
};

void ListParameters() {
    PrintParameter print;
    ZOTDam::GetParameter(&Balanced, &print);
}

// Changes functions 1 and 2. The tree consists of the root, its right child, and the nil node.
void ChangeParameters() {
    ZOTDam::ParamTreeNode nil;
    ZOTDam::ParamTreeNode root;
    ZOTDam::ParamTreeNode right;
    root = {&nil, &nil, &right, 0, 0, 1, {0, 2}};
    right = {&nil, &root, &nil, 0, 0, 2, {5, 5}};
    nil = {&root, &root, &right, 0, 1, 0, {}};
    const ZOTDam::ParamMapHolder holder = {nullptr, {&nil, 2}};
    std::printf("changes accepted: %s\n", YesOrNo(ZOTDam::SetParameter(&Balanced, &holder)));
}

// ---- The program ----------------------------------------------------------------------------------------

// These two environment variables of the process determine the folders of the library's files. A program that
// works on the files of the machine does not change them.
void WorkOn(const std::string& folder) {
    SetEnvironmentVariableA("ProgramFiles", (folder + "\\Program Files").c_str());
    SetEnvironmentVariableA("ProgramData", (folder + "\\ProgramData").c_str());
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2 || FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)))
        return 2;
    WorkOn(argv[1]);
    AdoptAll();
    std::printf("%u functions in the catalogue\n", ZOTDam::GetFuncCount());
    PrintFunction printFunction;
    ZOTDam::GetFunctionInfo(&printFunction);
    ListParameters();
    ChangeParameters();
    ListParameters();
    ZOTDam::ZOTDamExit();
    CoUninitialize();
    return 0;
}
