#include "doctor/FileUsers.h"

#include <windows.h>

#include <restartmanager.h>

#include <vector>

#include "Text.h"
#include "ZOTDamClient.h"

namespace ZOTDam::Client {

namespace {

std::filesystem::path SystemFolder() {
    wchar_t folder[MAX_PATH] = {};
    GetSystemDirectoryW(folder, MAX_PATH);
    return folder;
}

// A session of the Restart Manager, which is loaded only when a file is in use.
class RestartManager {
public:
    RestartManager() : module{SystemFolder() / L"rstrtmgr.dll"} {
        wchar_t key[CCH_RM_SESSION_KEY + 1] = {};
        isStarted =
            module.Export<decltype(&RmStartSession)>("RmStartSession")(&session, 0, key) == ERROR_SUCCESS;
    }
    RestartManager(const RestartManager&) = delete;
    RestartManager& operator=(const RestartManager&) = delete;
    ~RestartManager() {
        if (isStarted)
            module.Export<decltype(&RmEndSession)>("RmEndSession")(session);
    }

    std::vector<RM_PROCESS_INFO> UsersOf(const std::filesystem::path& file) const {
        const wchar_t* path = file.c_str();
        const auto addFile = module.Export<decltype(&RmRegisterResources)>("RmRegisterResources");
        const auto getList = module.Export<decltype(&RmGetList)>("RmGetList");
        if (!isStarted || addFile(session, 1, &path, 0, nullptr, 0, nullptr) != ERROR_SUCCESS)
            return {};
        std::vector<RM_PROCESS_INFO> users;
        DWORD result = ERROR_MORE_DATA;
        for (UINT needed = 8; result == ERROR_MORE_DATA;) {
            users.resize(needed);
            auto count = static_cast<UINT>(users.size());
            DWORD reasons = 0;
            result = getList(session, &needed, &count, users.data(), &reasons);
            users.resize(result == ERROR_SUCCESS ? count : 0);
        }
        return users;
    }

private:
    Module module;
    DWORD session = 0;
    bool isStarted = false;
};

}  // namespace

std::string ProgramsUsing(const std::filesystem::path& file) {
    std::string programs;
    try {
        for (const RM_PROCESS_INFO& user : RestartManager{}.UsersOf(file))
            if (user.Process.dwProcessId != 0)  // some systems return empty records
                programs += (programs.empty() ? "" : ", ") + ToUtf8(user.strAppName) + " (process " +
                            std::to_string(user.Process.dwProcessId) + ")";
    } catch (const LibraryError&) {
        // This system has no Restart Manager.
    }
    return programs.empty() ? "another program" : programs;
}

}  // namespace ZOTDam::Client
