#pragma once

namespace ZOTDam {

// Runs an operation for which every failure, of whatever kind, means false.
template <class Operation>
bool FalseOnException(Operation&& operation) noexcept {
    try {
        return operation();
    } catch (...) {
        return false;
    }
}

}  // namespace ZOTDam
