// Pointers to the OnItem of each interface. Their value is a function whose name contains the position of
// OnItem in the table of the class.
#include "ZOTDam.h"

namespace ZOTDam {

auto onFunctionBase = &IGetFunctionBaseCallback::OnItem;
auto onFunctionInfo = &IGetFunctionInfoCallback::OnItem;
auto onParameter = &IGetParameterCallback::OnItem;
auto onCommandInfo = &IGetCommandInfoCallback::OnItem;
auto onSpecScheme = &IGetSpecSchemeCallback::OnItem;

}  // namespace ZOTDam
