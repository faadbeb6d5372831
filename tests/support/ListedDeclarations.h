// Makes the DOM list a namespace declaration as the first attribute of every element, in the attribute map
// and in every selection, for a scope. The DOM does not remove the declaration. COM must be initialised.
#pragma once

#include <windows.h>

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
    using Selection = IXMLDOMNodeList;
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

    template <class List, DomMethodPatch ListedDeclarations::*Patch>
    static HRESULT WINAPI GetLength(List* list, long* length) {
        const HRESULT result =
            (current->*Patch).template Original<HRESULT WINAPI(List*, long*)>()(list, length);
        ++*length;
        return result;
    }

    template <class List, DomMethodPatch ListedDeclarations::*Patch>
    static HRESULT WINAPI GetItem(List* list, long index, Node** item) {
        const auto original = (current->*Patch).template Original<HRESULT WINAPI(List*, long, Node**)>();
        return index == 0 ? ReturnDeclaration(item) : original(list, index - 1, item);
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
    DomMethodPatch lengthPatch{DomMethod::GetLength, &GetLength<Map, &ListedDeclarations::lengthPatch>};
    DomMethodPatch itemPatch{DomMethod::GetItem, &GetItem<Map, &ListedDeclarations::itemPatch>};
    DomMethodPatch selectionLengthPatch{DomMethod::GetSelectionLength,
                                        &GetLength<Selection, &ListedDeclarations::selectionLengthPatch>};
    DomMethodPatch selectionItemPatch{DomMethod::GetSelectionItem,
                                      &GetItem<Selection, &ListedDeclarations::selectionItemPatch>};
    DomMethodPatch findPatch{DomMethod::GetNamedItem, &GetNamedItem};
    DomMethodPatch removePatch{DomMethod::RemoveNamedItem, &RemoveNamedItem};
};

}  // namespace ZOTDam::Test
