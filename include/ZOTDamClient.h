// Helper classes for C++ clients of ZOTDam.h. They initialise COM, load the library and look up its exports,
// create callbacks from lambdas, and build the argument of SetParameter.
//
//     ZOTDam::Library library;
//     auto print = ZOTDam::MakeCallback<ZOTDam::IGetParameterCallback>(
//         [](std::int32_t id, const ZOTDam::ParamValue* value) { ... });
//     library.GetParameter(&scheme, &print);
#pragma once

#include <objbase.h>
#include <windows.h>

#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "ZOTDam.h"

namespace ZOTDam {

// Initialises COM on the current thread for the lifetime of the object.
class ComScope {
public:
    ComScope() noexcept : result{CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)} {}
    ComScope(const ComScope&) = delete;
    ComScope& operator=(const ComScope&) = delete;
    ~ComScope() {
        if (SUCCEEDED(result))
            CoUninitialize();
    }

private:
    HRESULT result;  // fails if the thread is already in a multithreaded apartment, which is harmless
};

// Returns the path in UTF-8, for messages.
inline std::string Utf8(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

// The DLL cannot be loaded, or an export is missing. The message names the file or the export.
class LibraryError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A loaded DLL. The destructor frees it. The constructor throws LibraryError when the DLL cannot be loaded.
// Export throws LibraryError when the DLL does not have the export.
class Module {
public:
    explicit Module(const std::filesystem::path& file)
        : handle{LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)} {
        if (handle == nullptr)
            throw LibraryError{"The library " + Utf8(file) + " was not found or cannot be loaded."};
    }
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;
    ~Module() { FreeLibrary(handle); }

    HMODULE Handle() const noexcept { return handle; }

    template <class Function>
    Function Export(const char* name) const {
        const FARPROC address = GetProcAddress(handle, name);
        if (address == nullptr)
            throw LibraryError{std::string{"The library does not export "} + name + "."};
        return reinterpret_cast<Function>(reinterpret_cast<void*>(address));
    }

private:
    HMODULE handle;
};

// The loaded ZOTDam.dll, with a member for each export. The rules in ZOTDam.h apply to the calls. Use an
// object only on the thread that created it, and do not create a second one while it exists: the destructor
// calls ZOTDamExit, which ends all other use of the DLL in the process. Then it frees the DLL and
// uninitialises COM.
class Library {
    ComScope com;
    Module module;

public:
    // Loads ZOTDam.dll from the folder of the running program. Throws LibraryError when the DLL cannot be
    // loaded or an export is missing.
    Library() : Library{ProgramFolder() / L"ZOTDam.dll"} {}

    // Loads the file. Throws LibraryError in the same cases.
    explicit Library(const std::filesystem::path& file) : module{file} {}
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library() { ZOTDamExit(); }

    HMODULE Handle() const noexcept { return module.Handle(); }

#define ZOTDAM_EXPORT(name) const decltype(&ZOTDam::name) name = module.Export<decltype(&ZOTDam::name)>(#name)
    ZOTDAM_EXPORT(GetFuncCount);
    ZOTDAM_EXPORT(GetFunctionBase);
    ZOTDAM_EXPORT(GetFunctionBaseUnSupported);
    ZOTDAM_EXPORT(GetFunctionInfo);
    ZOTDAM_EXPORT(AddFunctionDefault);
    ZOTDAM_EXPORT(GetParameter);
    ZOTDAM_EXPORT(GetParameterDefault);
    ZOTDAM_EXPORT(SetParameter);
    ZOTDAM_EXPORT(ResetDefault);
    ZOTDAM_EXPORT(TEVGetParam);
    ZOTDAM_EXPORT(GetFuncCurValue);
    ZOTDAM_EXPORT(GetCommandInfo);
    ZOTDAM_EXPORT(GetDiffFuncList);
    ZOTDAM_EXPORT(GetSpecScheme);
    ZOTDAM_EXPORT(GetCommonSetting);
    ZOTDAM_EXPORT(SetCommonSetting);
    ZOTDAM_EXPORT(InitCommonSetting);
    ZOTDAM_EXPORT(ZOTDamExit);
#undef ZOTDAM_EXPORT

    static std::filesystem::path ProgramFolder() {
        std::wstring path(MAX_PATH, L'\0');
        while (GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())) == path.size())
            path.resize(path.size() * 2);
        return std::filesystem::path{path.c_str()}.parent_path();
    }
};

template <class Interface, class Function, class Method = decltype(&Interface::OnItem)>
class Callback;

// A callback object. Its OnItem calls a copy of a function or a lambda. The object must exist until the
// export returns.
template <class Interface, class Function, class... Arguments>
class Callback<Interface, Function, void (Interface::*)(Arguments...)> final : public Interface {
public:
    explicit Callback(Function onItem) : function{std::move(onItem)} {}
    void OnItem(Arguments... arguments) override { function(arguments...); }

private:
    Function function;
};

// Returns a callback object for the interface. The parameters of `onItem` are those of the interface's
// OnItem, and its result is ignored.
template <class Interface, class Function>
Callback<Interface, Function> MakeCallback(Function onItem) {
    return Callback<Interface, Function>{std::move(onItem)};
}

// The argument of SetParameter, built from a map of function ids and parameters. The tree of the argument has
// no left children: the right child of each node is the node with the next id. The object must exist until
// SetParameter returns. The constructor throws std::bad_alloc.
class ParamHolder {
public:
    explicit ParamHolder(const std::map<std::int32_t, ParamValue>& params) : nodes(params.size() + 1) {
        ParamTreeNode* const nil = nodes.data();
        *nil = {nil, nil, nil, 1, 1, 0, {}};
        for (ParamTreeNode* node = nil; const auto& [functionId, value] : params) {
            ParamTreeNode* const parent = std::exchange(node, node + 1);
            *node = {nil, parent, nil, 1, 0, functionId, value};
            (parent == nil ? nil->parent : parent->right) = node;
            nil->right = node;
        }
        nil->left = nil->parent;
        holder = {nullptr, {nil, params.size()}};
    }
    ParamHolder(const ParamHolder&) = delete;
    ParamHolder& operator=(const ParamHolder&) = delete;

    const ParamMapHolder* get() const noexcept { return &holder; }

private:
    std::vector<ParamTreeNode> nodes;
    ParamMapHolder holder;
};

}  // namespace ZOTDam
