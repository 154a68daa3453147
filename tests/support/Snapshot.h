// Snapshot: an object's own bytes at a moment, to prove that a call left it as it was.
#ifndef SNAPSHOT_H
#define SNAPSHOT_H

#include <cstdint>
#include <cstring>
#include <vector>

namespace support
{

class Snapshot
{
public:
    Snapshot() = default;
    template <class Object>
    explicit Snapshot(const Object& object)
    {
        Take(object);
    }

    template <class Object>
    void Take(const Object& object)
    {
        m_object = reinterpret_cast<const std::uint8_t*>(&object);
        m_bytes.resize(sizeof object);
        std::memcpy(m_bytes.data(), m_object, m_bytes.size());
    }
    bool IsUnchanged() const { return std::memcmp(m_bytes.data(), m_object, m_bytes.size()) == 0; }

private:
    const std::uint8_t*       m_object = nullptr;
    std::vector<std::uint8_t> m_bytes;
};

}  // namespace support

#endif
