// The runtime symbols that -fstack-protector requires. The compiler's own runtime is not used, because the
// DLL would then import another module.
#include <cstdint>

// NOLINTBEGIN(bugprone-reserved-identifier, readability-identifier-naming): the runtime has these names

extern "C" {

extern const std::uintptr_t __stack_chk_guard;
const std::uintptr_t __stack_chk_guard = 0x00a50dff5a0a3c96;

[[noreturn]] void __stack_chk_fail() {
    __builtin_trap();
}

}  // extern "C"

// NOLINTEND(bugprone-reserved-identifier, readability-identifier-naming)
