#include "doctor/FileUsers.h"

#include <windows.h>

#include <restartmanager.h>

#include <vector>

#include "SystemFunction.h"
#include "Text.h"

namespace ZOTDam::Client {

namespace {

template <class Function>
Function FindRmFunction(const char* name) {
    return FindSystemFunction<Function>(L"rstrtmgr.dll", name);
}

// A session of the Restart Manager, which is loaded only when a file is in use. If the system has the first
// function, it also has the others.
class RestartManager {
public:
    RestartManager() {
        const auto start = FindRmFunction<decltype(&RmStartSession)>("RmStartSession");
        wchar_t key[CCH_RM_SESSION_KEY + 1] = {};
        isStarted = start != nullptr && start(&session, 0, key) == ERROR_SUCCESS;
    }
    RestartManager(const RestartManager&) = delete;
    RestartManager& operator=(const RestartManager&) = delete;
    ~RestartManager() {
        if (isStarted)
            FindRmFunction<decltype(&RmEndSession)>("RmEndSession")(session);
    }

    // `file` is an absolute path. Returns no processes if the Restart Manager reports an error.
    std::vector<RM_PROCESS_INFO> UsersOf(const std::filesystem::path& file) const {
        const wchar_t* path = file.c_str();
        if (!isStarted || FindRmFunction<decltype(&RmRegisterResources)>("RmRegisterResources")(
                              session, 1, &path, 0, nullptr, 0, nullptr) != ERROR_SUCCESS)
            return {};
        return ReadList();
    }

private:
    // Programs may open the file between two calls, so that the list again does not fit.
    std::vector<RM_PROCESS_INFO> ReadList() const {
        constexpr int attempts = 10;
        const auto getList = FindRmFunction<decltype(&RmGetList)>("RmGetList");
        std::vector<RM_PROCESS_INFO> users(8);
        DWORD result = ERROR_MORE_DATA;
        for (int i = 0; i < attempts && result == ERROR_MORE_DATA; ++i) {
            UINT needed = 0;
            auto count = static_cast<UINT>(users.size());
            DWORD reasons = 0;
            result = getList(session, &needed, &count, users.data(), &reasons);
            users.resize(result == ERROR_MORE_DATA ? needed : count);
        }
        return result == ERROR_SUCCESS ? users : std::vector<RM_PROCESS_INFO>{};
    }

    DWORD session = 0;
    bool isStarted = false;
};

}  // namespace

std::string ProgramsUsing(const std::filesystem::path& file) {
    std::string programs;
    for (const RM_PROCESS_INFO& user : RestartManager{}.UsersOf(absolute(file)))
        if (user.Process.dwProcessId != 0)  // some systems return empty records
            programs += (programs.empty() ? "" : ", ") + ToUtf8(user.strAppName) + " (process " +
                        std::to_string(user.Process.dwProcessId) + ")";
    return programs.empty() ? "another program" : programs;
}

}  // namespace ZOTDam::Client
