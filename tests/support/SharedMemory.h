// Memory that several processes share.
#pragma once

#include <windows.h>

#include <string>

namespace ZOTDam::Test {

// One object for all processes that use its name. It is initialised with zeros and exists as long as a
// process has it open.
template <class Object>
class SharedMemory {
public:
    explicit SharedMemory(const std::wstring& name)
        : mapping{CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(Object),
                                     name.c_str())},
          object{static_cast<Object*>(MapViewOfFile(mapping, FILE_MAP_ALL_ACCESS, 0, 0, sizeof(Object)))} {}
    SharedMemory(const SharedMemory&) = delete;
    SharedMemory& operator=(const SharedMemory&) = delete;
    ~SharedMemory() {
        UnmapViewOfFile(object);
        CloseHandle(mapping);
    }

    Object& operator*() const noexcept { return *object; }
    Object* operator->() const noexcept { return object; }

private:
    HANDLE mapping;
    Object* object;
};

}  // namespace ZOTDam::Test
