#include "catalogue/FunctionTable.h"

#include "catalogue/FunctionReader.h"
#include "platform/FalseOnException.h"
#include "xml/Documents.h"

namespace ZOTDam {

bool EnsureFunctionTable(CFunctionTable& table) noexcept {
    if (table.IsLoaded())
        return true;
    table.Clear();
    return FalseOnException([&] {
        const CXmlZOTDefault* defaults = DefaultsDocument.Get();
        if (defaults == nullptr)
            return false;
        const IXMLDOMElementPtr functions = defaults->FindFunctions();
        return functions && LoadFunctionTable(functions, table);
    });
}

}  // namespace ZOTDam
