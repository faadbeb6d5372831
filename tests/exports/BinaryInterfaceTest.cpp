// Tests of the DLL's binary interface. Clients that were built without the DLL's headers rely on it.
#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

#include "support/DataFiles.h"
#include "support/EveryExport.h"
#include "support/FunctionDefaultsTest.h"
#include "support/LoadedImage.h"
#include "support/SettingsTest.h"

namespace ZOTDam::Test {

class BinaryInterfaceTest : public SettingsTest {
protected:
    LoadedImage Image() { return LoadedImage{Dll().Handle()}; }
};

// ---- The file ----

TEST_F(BinaryInterfaceTest, ModuleExportsExactlyEighteenNames) {
    EXPECT_EQ(
        Image().ExportedNames(),
        (std::vector<std::string>{"AddFunctionDefault", "GetCommandInfo", "GetCommonSetting",
                                  "GetDiffFuncList", "GetFuncCount", "GetFuncCurValue", "GetFunctionBase",
                                  "GetFunctionBaseUnSupported", "GetFunctionInfo", "GetParameter",
                                  "GetParameterDefault", "GetSpecScheme", "InitCommonSetting", "ResetDefault",
                                  "SetCommonSetting", "SetParameter", "TEVGetParam", "ZOTDamExit"}));
    EXPECT_EQ(Image().ExportCount(), 18u);
}

TEST_F(BinaryInterfaceTest, ModuleImportsOnlySystemModules) {
    const auto isOfTheSystem = [](std::string name) {
        std::ranges::transform(name, name.begin(), [](unsigned char character) {
            return static_cast<char>(std::tolower(character));
        });
        constexpr std::array<std::string_view, 7> modules = {"kernel32.dll", "msvcrt.dll", "ole32.dll",
                                                             "oleaut32.dll", "rpcrt4.dll", "shlwapi.dll",
                                                             "user32.dll"};
        return std::ranges::find(modules, name) != modules.end() || name.starts_with("api-ms-win-crt-");
    };
    for (const std::string& name : Image().ImportedModules())
        EXPECT_TRUE(isOfTheSystem(name)) << name;
}

TEST_F(BinaryInterfaceTest, FileIsDllFor64BitWindows) {
    const IMAGE_NT_HEADERS& headers = Image().Headers();
    EXPECT_EQ(headers.FileHeader.Machine, IMAGE_FILE_MACHINE_AMD64);
    EXPECT_TRUE(headers.FileHeader.Characteristics & IMAGE_FILE_DLL);
    EXPECT_TRUE(headers.OptionalHeader.DllCharacteristics & IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE);
    EXPECT_TRUE(headers.OptionalHeader.DllCharacteristics & IMAGE_DLLCHARACTERISTICS_NX_COMPAT);
}

class VersionResourceTest : public BinaryInterfaceTest {
protected:
    VersionResourceTest() {
        const std::wstring file = Library::ProgramFolder() / L"ZOTDam.dll";
        resource.resize(GetFileVersionInfoSizeW(file.c_str(), nullptr));
        GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(resource.size()), resource.data());
    }

    template <class Value>
    const Value* Query(const wchar_t* path) const {
        void* value = nullptr;
        UINT size = 0;
        VerQueryValueW(resource.data(), path, &value, &size);
        return size != 0 ? static_cast<const Value*>(value) : nullptr;
    }

private:
    std::vector<BYTE> resource;
};

TEST_F(VersionResourceTest, VersionResourceHasFileAndProductVersion) {
    const auto* const version = Query<VS_FIXEDFILEINFO>(L"\\");
    ASSERT_NE(version, nullptr);
    EXPECT_EQ(version->dwSignature, VS_FFI_SIGNATURE);
    EXPECT_NE(version->dwFileVersionMS, 0u);
    EXPECT_EQ(version->dwFileVersionMS, version->dwProductVersionMS);
    EXPECT_EQ(version->dwFileVersionLS, version->dwProductVersionLS);
    EXPECT_EQ(version->dwFileType, DWORD{VFT_DLL});
}

TEST_F(VersionResourceTest, VersionResourceHasOriginalFileName) {
    const auto* const name = Query<wchar_t>(L"\\StringFileInfo\\040904B0\\OriginalFilename");
    ASSERT_NE(name, nullptr);
    EXPECT_STREQ(name, L"ZOTDam.dll");
}

// ---- Results ----

TEST_F(BinaryInterfaceTest, EveryExportReturnsBoolOfZeroOrOne) {
    WriteDefaults(TwoFunctions);
    CallEveryExport(Dll(), Balanced);
    CallEveryExport(Dll(), Balanced);  // after ZOTDamExit, which the first round called
}

TEST_F(BinaryInterfaceTest, TrueIsOneAndFalseIsZero) {
    const ParamHolder params{{{1, {5, 6}}}};
    EXPECT_EQ(RawResult(Dll().SetParameter, &Balanced, params.get()), 1);
    EXPECT_EQ(RawResult(Dll().SetParameter, &Balanced, nullptr), 0);
    EXPECT_EQ(RawResult(Dll().GetParameter, &Balanced, nullptr), 0);
    EXPECT_EQ(RawResult(Dll().TEVGetParam, &Balanced), 0);
    EXPECT_EQ(RawResult(Dll().ZOTDamExit), 1);
}

// ---- Callbacks of other shapes ----

class CallbackAbiTest : public BinaryInterfaceTest {
protected:
    CallbackAbiTest() { WriteDefaults(TwoFunctions); }

    bool EnumerateInto(void* callback) {
        return Dll().GetParameterDefault(&Balanced, static_cast<IGetParameterCallback*>(callback));
    }
};

TEST_F(CallbackAbiTest, ReturnValueOfOnItemIsIgnored) {
    struct FalseCallback {
        virtual bool OnItem(std::int32_t, const ParamValue*) {
            ++calls;
            return false;
        }
        int calls = 0;
    } callback;
    EXPECT_TRUE(EnumerateInto(&callback));
    EXPECT_EQ(callback.calls, 2);
}

TEST_F(CallbackAbiTest, OnlyFirstVtableEntryIsCalled) {
    struct ExtendedCallback {
        virtual void OnItem(std::int32_t, const ParamValue*) { ++calls; }
        virtual void OnOther() { ++otherCalls; }
        virtual ~ExtendedCallback() = default;
        int calls = 0;
        int otherCalls = 0;
    } callback;
    EXPECT_TRUE(EnumerateInto(&callback));
    EXPECT_EQ(callback.calls, 2);
    EXPECT_EQ(callback.otherCalls, 0);
}

// A callback whose OnItem, in machine code, overwrites the registers and stack slots that the calling
// convention allows a callee to change.
class ClobberingCallback {
public:
    ClobberingCallback()
        : code{VirtualAlloc(nullptr, sizeof ClobberCode, MEM_COMMIT, PAGE_EXECUTE_READWRITE)} {
        std::copy(std::begin(ClobberCode), std::end(ClobberCode), static_cast<BYTE*>(code));
        table = {code};
        object.table = table.data();
    }
    ClobberingCallback(const ClobberingCallback&) = delete;
    ClobberingCallback& operator=(const ClobberingCallback&) = delete;
    ~ClobberingCallback() { VirtualFree(code, 0, MEM_RELEASE); }

    void* get() noexcept { return &object; }
    int Calls() const noexcept { return object.calls; }

private:
    static constexpr BYTE ClobberCode[] = {
        0xff, 0x41, 0x08,              // inc dword ptr [rcx+8], the call count
        0x48, 0x83, 0xc8, 0xff,        // or rax, -1
        0x48, 0x83, 0xc9, 0xff,        // or rcx, -1
        0x48, 0x83, 0xca, 0xff,        // or rdx, -1
        0x49, 0x83, 0xc8, 0xff,        // or r8, -1
        0x49, 0x83, 0xc9, 0xff,        // or r9, -1
        0x49, 0x83, 0xca, 0xff,        // or r10, -1
        0x49, 0x83, 0xcb, 0xff,        // or r11, -1
        0x48, 0x89, 0x44, 0x24, 0x08,  // mov [rsp+8], rax, and likewise for all four home slots
        0x48, 0x89, 0x44, 0x24, 0x10,  //
        0x48, 0x89, 0x44, 0x24, 0x18,  //
        0x48, 0x89, 0x44, 0x24, 0x20,  //
        0x66, 0x0f, 0x76, 0xc0,        // pcmpeqd xmm0, xmm0, and likewise up to xmm5
        0x66, 0x0f, 0x76, 0xc9,        //
        0x66, 0x0f, 0x76, 0xd2,        //
        0x66, 0x0f, 0x76, 0xdb,        //
        0x66, 0x0f, 0x76, 0xe4,        //
        0x66, 0x0f, 0x76, 0xed,        //
        0xc3,                          // ret
    };

    struct Object {
        void** table = nullptr;
        std::int32_t calls = 0;
    };

    void* code;
    std::array<void*, 1> table{};
    Object object;
};

TEST_F(CallbackAbiTest, VolatileRegistersMayChangeDuringOnItem) {
    ClobberingCallback garbling;
    EXPECT_TRUE(EnumerateInto(garbling.get()));
    EXPECT_EQ(garbling.Calls(), 2);
    EXPECT_EQ(GetParameterDefault(Balanced), (Params{{1, {2, 3}}, {2, {4, 5}}}));
}

}  // namespace ZOTDam::Test
