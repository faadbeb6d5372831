// What -fstack-protector asks of a runtime. The compiler's own would import another module of the system.
#include <cstdint>

// NOLINTBEGIN(bugprone-reserved-identifier): the names of the runtime

extern "C" {

extern const std::uintptr_t __stack_chk_guard;
const std::uintptr_t __stack_chk_guard = 0x00a50dff5a0a3c96;

[[noreturn]] void __stack_chk_fail() {
    __builtin_trap();
}

}  // extern "C"

// NOLINTEND(bugprone-reserved-identifier)
