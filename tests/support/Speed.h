// Speed: how many of its cases a random test runs where they take long.
//
// Under sanitizers the tests that ask for it (CasesOf) run a fiftieth. Where the processor is emulated, every random test
// runs a part only: KANVO_TEST_EMULATED in the environment says one case in how many (the test presets of the targets set
// it). Whoever leaves something out for these reasons asks here.
#ifndef SPEED_H
#define SPEED_H

#include <cstdint>
#include <cstdlib>

#if defined(__SANITIZE_ADDRESS__)
#define SPEED_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(memory_sanitizer) || __has_feature(undefined_behavior_sanitizer)
#define SPEED_SANITIZED 1
#endif
#endif
#ifndef SPEED_SANITIZED
#define SPEED_SANITIZED 0
#endif

namespace support
{

constexpr bool Sanitized = SPEED_SANITIZED != 0;

//! The number of cases of a random test, or a fiftieth of it under sanitizers.
constexpr std::uint64_t CasesOf(std::uint64_t cases)
{
    return Sanitized ? cases / 50 : cases;
}

//! A number from the environment, or the given one.
inline std::uint64_t FromEnvironment(const char* name, std::uint64_t otherwise)
{
    const char* const text = std::getenv(name);
    return text != nullptr && *text != '\0' ? std::strtoull(text, nullptr, 0) : otherwise;
}

//! One case of a random test in so many is run on this processor: 1 on a real one.
inline std::uint64_t OneCaseIn()
{
    const std::uint64_t part = FromEnvironment("KANVO_TEST_EMULATED", 1);
    return part != 0 ? part : 1;
}

//! Whether things take many times as long as they should.
inline bool Slow()
{
    return Sanitized || OneCaseIn() > 1;
}

}  // namespace support

#endif
