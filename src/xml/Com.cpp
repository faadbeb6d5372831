#include "xml/Com.h"

namespace ZOTDam {

namespace {

_COM_SMARTPTR_TYPEDEF(ISupportErrorInfo, __uuidof(ISupportErrorInfo));

bool SupportsErrorInfo(IUnknown* source, REFIID calledInterface) {
    const ISupportErrorInfoPtr support{source};
    return support && support->InterfaceSupportsErrorInfo(calledInterface) == S_OK;
}

}  // namespace

void ThrowComError(HRESULT failure, IUnknown* source, REFIID calledInterface) {
    IErrorInfo* information = nullptr;
    if (SupportsErrorInfo(source, calledInterface))
        GetErrorInfo(0, &information);
    throw _com_error{failure, information};
}

}  // namespace ZOTDam
