// Replaces std::map with a map whose default constructor and move constructor allocate memory, as those of
// MSVC's library do. The compiler includes this file before each source of the DLL in the build of the tests.
#pragma once

#include <map>
#include <memory>

namespace std {  // NOLINT(cert-dcl58-cpp): the sources name the map std::map

template <class Key, class Value>
class AllocatingMap : public map<Key, Value> {
public:
    AllocatingMap() = default;
    AllocatingMap(const AllocatingMap& other) : map<Key, Value>{other} {}
    AllocatingMap(AllocatingMap&& other) : AllocatingMap{} { this->swap(other); }
    AllocatingMap& operator=(AllocatingMap other) noexcept {
        this->swap(other);
        return *this;
    }
    ~AllocatingMap() = default;

private:
    unique_ptr<int> headNode = make_unique<int>();
};

}  // namespace std

#define map AllocatingMap
