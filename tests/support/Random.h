// Random choices. The same seed always produces the same choices.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <random>

namespace ZOTDam::Test {

class Random {
public:
    explicit Random(unsigned seed) : engine{seed} {}

    int Below(std::size_t limit) { return static_cast<int>(engine() % limit); }
    bool OneIn(std::size_t count) { return Below(count) == 0; }
    std::uint32_t Number() { return static_cast<std::uint32_t>(engine()); }

    template <class Choices>
    const auto& ElementOf(const Choices& choices) {
        return *std::next(std::begin(choices), Below(std::size(choices)));
    }
    template <class Choice>
    const Choice& ElementOf(std::initializer_list<Choice> choices) {
        return *(choices.begin() + Below(choices.size()));
    }

private:
    std::mt19937 engine;
};

}  // namespace ZOTDam::Test
