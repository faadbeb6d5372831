#pragma once

namespace ZOTDam {

// Runs an operation and returns its result. Returns false when the operation throws an exception.
template <class Operation>
bool FalseOnException(Operation&& operation) noexcept {
    try {
        return operation();
    } catch (...) {
        return false;
    }
}

}  // namespace ZOTDam
