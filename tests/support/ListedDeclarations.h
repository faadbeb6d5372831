// Makes the DOM list a namespace declaration as the first attribute of every element, for a scope. The DOM
// does not remove the declaration. COM must be initialised.
#pragma once

#include <oleauto.h>

#include <string>

#include "support/DomMethods.h"
#include "support/XmlFile.h"

namespace ZOTDam::Test {

class ListedDeclarations {
public:
    // The name of the declaration, such as "xmlns:p".
    explicit ListedDeclarations(std::wstring listedName) : name{std::move(listedName)} { current = this; }
    ListedDeclarations(const ListedDeclarations&) = delete;
    ListedDeclarations& operator=(const ListedDeclarations&) = delete;

private:
    using Map = IXMLDOMNamedNodeMap;
    using Node = IXMLDOMNode;

    static OwnedInterface<IXMLDOMAttribute> NewAttribute() {
        IXMLDOMAttribute* attribute = nullptr;
        const OwnedBstr anyName{SysAllocString(L"declaration")};
        NewDocument()->createAttribute(anyName.get(), &attribute);
        return OwnedInterface<IXMLDOMAttribute>{attribute};
    }

    static HRESULT ReturnDeclaration(Node** node) {
        *node = current->declaration.get();
        (*node)->AddRef();
        return S_OK;
    }

    static HRESULT WINAPI GetName(Node* node, BSTR* name) {
        if (node != current->declaration.get())
            return current->namePatch.Original<decltype(GetName)>()(node, name);
        *name = SysAllocString(current->name.c_str());
        return S_OK;
    }

    static HRESULT WINAPI GetLength(Map* map, long* length) {
        const HRESULT result = current->lengthPatch.Original<decltype(GetLength)>()(map, length);
        ++*length;
        return result;
    }

    static HRESULT WINAPI GetItem(Map* map, long index, Node** item) {
        return index == 0 ? ReturnDeclaration(item)
                          : current->itemPatch.Original<decltype(GetItem)>()(map, index - 1, item);
    }

    static HRESULT WINAPI GetNamedItem(Map* map, BSTR name, Node** item) {
        return name == current->name ? ReturnDeclaration(item)
                                     : current->findPatch.Original<decltype(GetNamedItem)>()(map, name, item);
    }

    static HRESULT WINAPI RemoveNamedItem(Map* map, BSTR name, Node** item) {
        return name == current->name
                   ? E_FAIL
                   : current->removePatch.Original<decltype(RemoveNamedItem)>()(map, name, item);
    }

    inline static ListedDeclarations* current = nullptr;
    std::wstring name;
    OwnedInterface<IXMLDOMAttribute> declaration = NewAttribute();
    DomMethodPatch namePatch{DomMethod::GetAttributeName, &GetName};
    DomMethodPatch lengthPatch{DomMethod::GetLength, &GetLength};
    DomMethodPatch itemPatch{DomMethod::GetItem, &GetItem};
    DomMethodPatch findPatch{DomMethod::GetNamedItem, &GetNamedItem};
    DomMethodPatch removePatch{DomMethod::RemoveNamedItem, &RemoveNamedItem};
};

}  // namespace ZOTDam::Test
