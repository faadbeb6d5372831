/* The exports of ZOTDam.dll as function pointers, for programs that load the DLL while they run. Programs
   that link ZOTDam.lib do not need this header. */
#ifndef ZOTDAM_EXPORTS_H
#define ZOTDAM_EXPORTS_H

#include "ZOTDam.h"

/* Calls X(result, name, (arguments)) for each export. */
/* clang-format off */
#define EXPORTS(X)                                                                                            \
    X(uint32_t, GetFuncCount, (void))                                                                         \
    X(bool, GetFunctionBase, (IGetFunctionBaseCallback*))                                                     \
    X(bool, GetFunctionBaseUnSupported, (IGetFunctionBaseCallback*))                                          \
    X(bool, GetFunctionInfo, (IGetFunctionInfoCallback*))                                                     \
    X(bool, AddFunctionDefault, (const FunctionBaseHolder*))                                                  \
    X(bool, GetParameter, (const GUID*, IGetParameterCallback*))                                              \
    X(bool, GetParameterDefault, (const GUID*, IGetParameterDefaultCallback*))                                \
    X(bool, SetParameter, (const GUID*, const ParamMapHolder*))                                               \
    X(bool, ResetDefault, (void))                                                                             \
    X(bool, TEVGetParam, (const GUID*))                                                                       \
    X(bool, GetFuncCurValue, (uint32_t, FuncCurValue*))                                                       \
    X(bool, GetCommandInfo, (const GUID*, IGetCommandInfoCallback*))                                          \
    X(bool, GetDiffFuncList, (const GUID*, const GUID*, uint32_t, wchar_t*, wchar_t*))                        \
    X(bool, GetSpecScheme, (IGetSpecSchemeCallback*))                                                         \
    X(bool, GetCommonSetting, (const wchar_t*, wchar_t*))                                                     \
    X(bool, SetCommonSetting, (const wchar_t*, const wchar_t*))                                               \
    X(bool, InitCommonSetting, (void))                                                                        \
    X(bool, ZOTDamExit, (void))
/* clang-format on */

#define DECLARE_POINTER(result, name, arguments)                            \
    _Static_assert(_Generic(&(name), result(*) arguments : 1, default : 0), \
                   #name " has another type in ZOTDam.h");                  \
    result(*name) arguments;

struct Exports {
    EXPORTS(DECLARE_POINTER)
};

#undef DECLARE_POINTER

#endif
