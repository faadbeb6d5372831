#pragma once

namespace ZOTDam {

// Runs an operation and returns its result, or false when it throws any exception.
template <class Operation>
bool FalseOnException(Operation&& operation) noexcept {
    try {
        return operation();
    } catch (...) {
        return false;
    }
}

}  // namespace ZOTDam
