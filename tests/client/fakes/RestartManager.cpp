// Fakes of the functions of rstrtmgr.dll. The variables:
//     FAKE_FILE_USERS      the programs that have each file open: a name and a process id for each one
//     FAKE_USERS_AT_FIRST  the number of programs at the first call of RmGetList, if these are not all of
//     them.
//                          One more program opens the file before each further call
//     FAKE_ERROR           a function and the error that it returns
#include <windows.h>

#include <restartmanager.h>

#include <algorithm>
#include <cwchar>
#include <filesystem>

#include "client/fakes/Answers.h"

namespace {

using ZOTDam::Test::Pairs;
using ZOTDam::Test::Variable;

constexpr DWORD SessionHandle = 17;

bool isStarted = false;
bool isFileRegistered = false;
std::size_t newUsers = 0;  // the programs that have opened the file since the first call

DWORD ErrorOf(const wchar_t* function) {
    for (const auto& [name, error] : Pairs(L"FAKE_ERROR"))
        if (name == function)
            return std::stoul(error);
    return ERROR_SUCCESS;
}

bool IsSession(DWORD handle) {
    return isStarted && handle == SessionHandle;
}

// Windows does not find a file by a relative path.
bool IsPathOfFile(const wchar_t* path) {
    return std::filesystem::path{path}.is_absolute() && exists(std::filesystem::path{path});
}

std::vector<RM_PROCESS_INFO> AllUsers() {
    std::vector<RM_PROCESS_INFO> users;
    for (const auto& [name, id] : Pairs(L"FAKE_FILE_USERS")) {
        RM_PROCESS_INFO& user = users.emplace_back();
        user.Process.dwProcessId = std::stoul(id);
        name.copy(user.strAppName, CCH_RM_MAX_APP_NAME);
    }
    return users;
}

std::vector<RM_PROCESS_INFO> UsersOfRegisteredFile() {
    std::vector<RM_PROCESS_INFO> users = isFileRegistered ? AllUsers() : std::vector<RM_PROCESS_INFO>{};
    const std::wstring usersAtFirst = Variable(L"FAKE_USERS_AT_FIRST");
    if (!usersAtFirst.empty())
        users.resize(std::min<std::size_t>(users.size(), std::stoul(usersAtFirst) + newUsers++));
    return users;
}

}  // namespace

DWORD WINAPI RmStartSession(DWORD* handle, DWORD flags, WCHAR key[]) {
    if (const DWORD error = ErrorOf(L"RmStartSession"); error != ERROR_SUCCESS || isStarted || flags != 0)
        return error != ERROR_SUCCESS ? error : ERROR_BAD_ARGUMENTS;
    isStarted = true;
    *handle = SessionHandle;
    std::wmemset(key, L'0', CCH_RM_SESSION_KEY);
    key[CCH_RM_SESSION_KEY] = L'\0';
    return ERROR_SUCCESS;
}

DWORD WINAPI RmRegisterResources(DWORD handle, UINT nFiles, LPCWSTR fileNames[], UINT, RM_UNIQUE_PROCESS[],
                                 UINT, LPCWSTR[]) {
    if (!IsSession(handle))
        return ERROR_INVALID_HANDLE;
    isFileRegistered = nFiles == 1 && IsPathOfFile(*fileNames);
    return ErrorOf(L"RmRegisterResources");
}

DWORD WINAPI RmGetList(DWORD handle, UINT* needed, UINT* pnProcInfo, RM_PROCESS_INFO affectedApps[],
                       DWORD* reasons) {
    if (!IsSession(handle))
        return ERROR_INVALID_HANDLE;
    if (const DWORD error = ErrorOf(L"RmGetList"); error != ERROR_SUCCESS)
        return error;
    const std::vector<RM_PROCESS_INFO> users = UsersOfRegisteredFile();
    *needed = static_cast<UINT>(users.size());
    *reasons = RmRebootReasonNone;
    if (*pnProcInfo < users.size())
        return ERROR_MORE_DATA;
    std::ranges::copy(users, affectedApps);
    *pnProcInfo = *needed;
    return ERROR_SUCCESS;
}

DWORD WINAPI RmEndSession(DWORD handle) {
    if (!IsSession(handle))
        return ERROR_INVALID_HANDLE;
    isStarted = isFileRegistered = false;
    return ERROR_SUCCESS;
}
