// Random choices. The same seed always produces the same choices.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <random>

namespace ZOTDam::Test {

class Chance {
public:
    explicit Chance(unsigned seed) : random{seed} {}

    int Below(std::size_t limit) { return static_cast<int>(random() % limit); }
    bool OneIn(std::size_t count) { return Below(count) == 0; }
    std::uint32_t Number() { return static_cast<std::uint32_t>(random()); }

    template <class Choices>
    const auto& Of(const Choices& choices) {
        return *std::next(std::begin(choices), Below(std::size(choices)));
    }
    template <class Choice>
    const Choice& Of(std::initializer_list<Choice> choices) {
        return *(choices.begin() + Below(choices.size()));
    }

private:
    std::mt19937 random;
};

}  // namespace ZOTDam::Test
